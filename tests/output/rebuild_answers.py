#!/usr/bin/env python3
"""Rebuilds the records of answer files from the database they were made of.

Takes the folder of a program that has just created its answers: TLDB0010.MDB, TALVEN.INI and the
answer files that the customer master names. Every record is put together anew from the order's
rows and compared byte for byte, record numbers included. The first difference ends the check.

Taken from the record itself, as the database no longer tells: the processing date, which must be
the last write date of the order's lines, and whether the order had been answered before.

An order that was answered again later with other dates or quantities can't be rebuilt for its
earlier records; --last then checks only the last record of each order.

Exit status: 0 all records agree, 1 a difference or no record at all, 2 nothing to check with.
"""

import argparse
import os
import sqlite3
import sys
from collections import defaultdict
from decimal import Decimal
from pathlib import Path

SHORT, LONG = 1236, 1350
SLOTS, SLOTS_START, SLOT_LENGTH = 31, 164, 33

# The fields in front of the slots: first byte, length in characters and bytes, name.
HEAD = [
    (1, 5, "recordNumber"), (6, 4, "informationKind"), (10, 6, "processingDate"),
    (16, 12, "vanCode"), (28, 12, "customerSideCode"), (40, 8, "customerSectionCode"),
    (48, 23, "orderNumber"), (71, 19, "makerNumber"), (90, 1, "answerKind"),
    (91, 1, "deliveryKind"), (92, 3, "unit"), (95, 12, "orderQuantity"), (107, 7, "buyer"),
    (114, 25, "customerProductCode"), (139, 25, "ownProductCode"),
]
NAME_START, NAME_LENGTH = 1217, 20


# --- Shift-JIS as Windows writes it -------------------------------------------------------------

def ibm_extensions():
    """The characters that Windows writes in its rows FA to FC, where Python prefers ED and EE."""
    codes = {}
    for lead in range(0xFA, 0xFD):
        for trail in range(0x40, 0xFD):
            code = bytes((lead, trail))
            try:
                codes.setdefault(code.decode("cp932"), code)
            except UnicodeDecodeError:
                pass
    return codes


IBM_EXTENSIONS = ibm_extensions()


def encode_character(character):
    try:
        code = character.encode("cp932")
        if code.decode("cp932") != character:
            return b"?"  # Python lets look-alikes pass, such as the wave dash
    except UnicodeError:
        return b"?"
    if len(code) == 1 and code[0] > 0x7F and not 0xA1 <= code[0] <= 0xDF:
        return b"?"
    return IBM_EXTENSIONS.get(character, code) if code[0] in (0xED, 0xEE) else code


def encode(text):
    return b"".join(map(encode_character, text))


def text_field(value, length):
    """`length` is counted in UTF-16 units of the text first, in bytes of the field then."""
    cut = value.encode("utf-16-le")[:2 * length].decode("utf-16-le", "surrogatepass")
    return encode(cut)[:length].ljust(length)


def date_field(stored):
    padded = stored[:8].ljust(8)
    short = padded[2:] if len(padded.strip(" ")) >= 2 else ""
    return encode(("000000" + short)[-6:])


def quantity_field(value):
    text = format(Decimal(format(float(value or 0), ".15g")), "f").lstrip("-")
    whole, _, decimals = text.partition(".")
    return (whole.rjust(9, "0")[-9:] + decimals.ljust(3, "0")[:3]).encode()


# --- Where things are ---------------------------------------------------------------------------

def read_ini(path):
    """Section and key in upper case -> value."""
    data = path.read_bytes()
    try:
        text = data.decode("utf-8-sig")
    except UnicodeDecodeError:
        text = data.decode("cp932", "replace")
    values, section = {}, ""
    for line in map(str.strip, text.replace("\r", "\n").split("\n")):
        key, equals, value = line.partition("=")
        if line.startswith("["):
            section = line[1:].partition("]")[0].strip().upper()
        elif equals and not line.startswith(";"):
            values.setdefault((section, key.strip().upper()), value.strip())
    return values


def existing(folder, name):
    exact = folder / name
    if exact.exists() or not folder.is_dir():
        return exact
    return next((entry for entry in sorted(folder.iterdir())
                 if entry.name.lower() == name.lower()), exact)


def local_path(path, ini):
    """The machine's path of one in the customer master; None for a share that is not mapped."""
    if path.startswith("/"):
        return Path(path.replace("\\", "/"))
    roots = {key.rstrip(":\\"): value for (section, key), value in ini.items()
             if section == "DRIVES" and value}
    upper = path.upper()
    if path.startswith("\\\\"):
        share = next((name for name in roots
                      if name.startswith("\\\\") and (upper + "\\").startswith(name + "\\")), None)
        if share is None:
            return None
        root, rest = Path(roots[share]), path[len(share):]
    elif path[1:2] == ":":
        data = os.environ.get("XDG_DATA_HOME") or os.path.expanduser("~/.local/share")
        root = Path(roots.get(upper[0]) or f"{data}/talven/{path[0].lower()}")
        rest = path[2:]
    else:
        root, rest = Path("."), path
    for name in filter(None, rest.split("\\")):
        root = existing(root, name)
    return root


# --- Records from the database ------------------------------------------------------------------

def text_of(value):
    return "" if value is None else str(value)


def right_trimmed(value):
    return text_of(value).rstrip(" ")


class Orders:
    """The orders of the customers who share an answer file, found by their record's order number
    field."""

    def __init__(self, database, customers):
        self.database = database
        self.customers = {customer["CustCD"].upper(): customer for customer in customers}
        self.by_number = defaultdict(list)
        marks = ",".join("?" * len(self.customers))
        for row in database.execute(
                "SELECT DISTINCT AccNo, CustCD, OdrNo, PayKeyNo FROM TLSP0010"
                f" WHERE DpoFlg = 0 AND upper(CustCD) IN ({marks})", list(self.customers)):
            customer = self.customers[row["CustCD"].upper()]
            number = row["PayKeyNo"] if customer["CustKBN"] == 2 else row["OdrNo"]
            field = text_field(right_trimmed(number), 23)
            if row["AccNo"] not in self.by_number[field]:
                self.by_number[field].append(row["AccNo"])

    def lines(self, acc_no):
        rows = self.database.execute(
            "SELECT * FROM TLSP0010 WHERE AccNo = ? AND ShpSts < 3 AND DpoFlg = 0"
            " AND AnsVal <> 0", (acc_no,)).fetchall()
        rows = [row for row in rows if row["CustCD"].upper() in self.customers]
        rows = [row for row in rows
                if self.customers[row["CustCD"].upper()]["LinKBN"] == 1 or row["AnsLimDate"]]
        return sorted(rows, key=lambda row: (row["AccSubNo"], -(row["IndVal"] or 0),
                                             text_of(row["AnsLimDate"]), row["ShpSubNo"]))

    def record(self, acc_no, number, date, kind):
        """The order's record without line end, and the lines that it lists."""
        lines = self.lines(acc_no)
        if not lines or len(lines) > SLOTS:
            return None, lines
        first = lines[0]
        customer = self.customers[first["CustCD"].upper()]
        setting = right_trimmed(customer["HenpVerPath"])
        is_edi = self.database.execute(
            "SELECT 1 FROM TLAC0010 WHERE AccNo = ? AND EDIKBN = 1", (acc_no,)).fetchone()
        eiaj = self.database.execute(
            "SELECT CockKBN, KobaiTanto FROM TLEI0010 WHERE AccNo = ? AND DpoFlg = 0",
            (acc_no,)).fetchone() if is_edi else None
        values = {
            "recordNumber": str(number % 100000).rjust(5, "0"), "informationKind": "0702",
            "processingDate": date, "vanCode": customer["VanCD"],
            "customerSideCode": setting[2:14].strip(" "),
            "customerSectionCode": first["CustSecCD"],
            "orderNumber": first["PayKeyNo"] if customer["CustKBN"] == 2 else first["OdrNo"],
            "makerNumber": first["MfactNo"], "answerKind": kind,
            "deliveryKind": eiaj["CockKBN"] if eiaj else "", "unit": first["Unit"],
            "orderQuantity": quantity_field(first["AccVal"]).decode(),
            "buyer": eiaj["KobaiTanto"] if eiaj else "",
            "customerProductCode": first["AccHinCD"], "ownProductCode": first["HinCD"],
        }
        record = bytearray(b" " * LONG)
        for start, length, name in HEAD:
            field = text_field(right_trimmed(values[name]), length)
            record[start - 1:start - 1 + length] = field
        for slot in range(SLOTS):
            start = SLOTS_START - 1 + SLOT_LENGTH * slot
            record[start:start + SLOT_LENGTH] = self.slot(lines[slot] if slot < len(lines) else None)
        name = text_field(right_trimmed(first["CustSecName"]), NAME_LENGTH)
        record[NAME_START - 1:NAME_START - 1 + NAME_LENGTH] = name
        record[SHORT:] = b"\x81\x40" * ((LONG - SHORT) // 2)
        length = SHORT if setting[1:2] == "0" else LONG
        line = bytes(record[:length]).replace(b"\r", b" ").replace(b"\n", b" ")
        return line, lines

    @staticmethod
    def slot(line):
        if line is None:
            return b"000000" + b" " * 8 + b"0" * 18 + b" "
        answered = text_of(line["AnsLimDate"])
        return (date_field(text_of(line["LimDate"])) + text_field(text_of(line["PayNo"]), 8)
                + date_field(answered if answered.strip(" ") else "99999999")
                + quantity_field(line["AnsVal"]) + text_field(text_of(line["AnsMark"]), 1))


def last_number(data):
    """The number that the program reads back from a file of short records."""
    start = max(len(data) - SHORT - 2, 0)
    digits = ""
    for byte in data[start:start + 5].lstrip(b" "):
        if not 48 <= byte <= 57:
            break
        digits += chr(byte)
    return int(digits or 0)


# --- The comparison -----------------------------------------------------------------------------

class Difference(Exception):
    pass


def field_at(position):
    for start, length, name in HEAD + [(NAME_START, NAME_LENGTH, "customerSectionName")]:
        if start <= position < start + length:
            return name
    slot = (position - SLOTS_START) // SLOT_LENGTH + 1
    return f"slot {slot}" if 1 <= slot <= SLOTS else "reserve"


def first_difference(actual, expected):
    at = next((at for at, pair in enumerate(zip(actual, expected)) if pair[0] != pair[1]),
              min(len(actual), len(expected)))
    return at if len(actual) != len(expected) or at < len(actual) else None


def check_record(orders, before, actual, seen):
    """Raises Difference unless the bytes are the record of one of the file's orders."""
    if len(actual) not in (SHORT, LONG):
        raise Difference(f"{len(actual)} bytes long")
    candidates = orders.by_number.get(actual[47:70], [])
    if not candidates:
        raise Difference(f"no order {actual[47:70].decode('cp932', 'replace').strip()!r}")
    number = last_number(before) + 1 if len(actual) == SHORT else 1
    kind = actual[89:90].decode("cp932", "replace")
    nearest = None
    for acc_no in candidates:
        lines = orders.lines(acc_no)
        date = max((text_of(line["UpdDate"]) for line in lines), default="")
        expected, _ = orders.record(acc_no, number, date[2:], kind)
        if expected is None:
            continue
        at = first_difference(actual, expected)
        if at is None:
            check_states(acc_no, kind, lines, seen)
            return
        if nearest is None or at > nearest[0]:
            nearest = at, acc_no, expected
    if nearest is None:
        raise Difference("the order has no answered line")
    at, acc_no, expected = nearest
    raise Difference(f"byte {at + 1} ({field_at(at + 1)}) of order {acc_no}:"
                     f" {actual[at:at + 16]!r}, the database gives {expected[at:at + 16]!r}")


def check_states(acc_no, kind, lines, seen):
    if kind not in ("1", "2"):
        raise Difference(f"answer kind {kind!r} of order {acc_no}")
    if kind == "1" and acc_no in seen:
        raise Difference(f"order {acc_no} is answered again as if for the first time")
    if any(line["ShpSts"] == 1 and line["AnsLimUmu"] != 3 for line in lines):
        raise Difference(f"order {acc_no} has a line that is not marked answered")
    seen.add(acc_no)


def check_file(orders, path, only_last):
    data = path.read_bytes()
    if not data.endswith(b"\r\n"):
        raise Difference(f"{path}: no CR LF at the end")
    records = data[:-2].split(b"\r\n")
    last_of = {record[47:70]: at for at, record in enumerate(records)}
    seen, checked, position = set(), 0, 0
    for at, record in enumerate(records):
        if not only_last or last_of[record[47:70]] == at:
            try:
                check_record(orders, data[:position], record, set() if only_last else seen)
            except Difference as difference:
                raise Difference(f"{path}: record {at + 1}: {difference}") from None
            checked += 1
        position += len(record) + 2
    return checked


def check_folder(folder, only_last):
    ini = read_ini(folder / "TALVEN.INI") if (folder / "TALVEN.INI").is_file() else {}
    database = sqlite3.connect(f"{(folder / 'TLDB0010.MDB').resolve().as_uri()}?mode=ro", uri=True)
    database.row_factory = sqlite3.Row
    users = defaultdict(list)
    for customer in database.execute(
            "SELECT * FROM TLMT0040 WHERE DpoFlg = 0 AND NokiInfKBN = 1"):
        path = local_path(text_of(customer["NokiInfPath"]).strip(" "), ini)
        if path is not None and path.is_file() and path.stat().st_size:
            users[path].append(customer)
    return sum(check_file(Orders(database, customers), path, only_last)
               for path, customers in sorted(users.items()))


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=Path, help="holds TLDB0010.MDB and TALVEN.INI")
    parser.add_argument("--last", action="store_true",
                        help="check only the last record of each order")
    arguments = parser.parse_args()
    try:
        checked = check_folder(arguments.folder, arguments.last)
    except Difference as difference:
        print(difference, file=sys.stderr)
        return 1
    except (OSError, sqlite3.Error) as error:
        print(f"{arguments.folder}: {error}", file=sys.stderr)
        return 2
    print(f"{arguments.folder}: {checked} records agree with the database")
    return 0 if checked else 1


if __name__ == "__main__":
    sys.exit(main())
