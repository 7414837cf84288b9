#!/usr/bin/env python3
"""Rebuilds the records of the tour's answer files from its database and compares every byte.

Shares no code with the program. Only the order, the processing date and whether the order had been
answered before are taken from the record itself.

usage: rebuild_answers.py FOLDER
"""

import sqlite3
import sys
from decimal import Decimal
from pathlib import Path

SHORT, LONG = 1236, 1350
SLOTS = 31
EMPTY_SLOT = b"000000" + b" " * 8 + b"0" * 18 + b" "

LINES = """
    SELECT L.*, C.VanCD, C.HenpVerPath, C.CustKBN, E.CockKBN, E.KobaiTanto
    FROM TLSP0010 L JOIN TLMT0040 C ON C.CustCD = L.CustCD JOIN TLAC0010 O ON O.AccNo = L.AccNo
    LEFT JOIN TLEI0010 E ON E.AccNo = L.AccNo AND O.EDIKBN = 1 AND E.DpoFlg = 0
    WHERE L.AccNo = ? AND L.ShpSts < 3 AND L.DpoFlg = 0 AND C.DpoFlg = 0 AND C.NokiInfKBN = 1
        AND L.AnsVal <> 0 AND (C.LinKBN = 1 OR L.AnsLimDate <> '')
    ORDER BY L.AccSubNo, L.IndVal DESC, L.AnsLimDate, L.ShpSubNo"""


def text(value, length):
    return (value or "").rstrip(" ").encode("cp932")[:length].ljust(length)


def date(stored):
    return text(stored[2:8] or "000000", 6)


def quantity(value):
    whole, _, decimals = format(Decimal(format(value or 0, ".15g")), "f").partition(".")
    return (whole.rjust(9, "0")[-9:] + decimals.ljust(3, "0")[:3]).encode()


def slot(line):
    return (date(line["LimDate"]) + text(line["PayNo"], 8) + date(line["AnsLimDate"] or "99999999")
            + quantity(line["AnsVal"]) + text(line["AnsMark"], 1))


def rebuild(lines, number, actual):
    first = lines[0]
    setting = first["HenpVerPath"] or ""
    order_number = first["PayKeyNo"] if first["CustKBN"] == 2 else first["OdrNo"]
    deliveries = [slot(line) for line in lines] + [EMPTY_SLOT] * (SLOTS - len(lines))
    record = (
        b"%05d0702" % (number % 100000) + actual[9:15] + text(first["VanCD"], 12)
        + text(setting[2:14].strip(" "), 12) + text(first["CustSecCD"], 8) + text(order_number, 23)
        + text(first["MfactNo"], 19) + actual[89:90] + text(first["CockKBN"], 1)
        + text(first["Unit"], 3) + quantity(first["AccVal"]) + text(first["KobaiTanto"], 7)
        + text(first["AccHinCD"], 25) + text(first["HinCD"], 25) + b"".join(deliveries)
        + b" " * 30 + text(first["CustSecName"], 20) + b"\x81\x40" * 57)
    return record[:SHORT if setting[1:2] == "0" else LONG]


def check_record(database, actual, number):
    """Returns what is wrong with a record, the number-th of its file; None when nothing is."""
    order_number = actual[47:70].decode("cp932").rstrip(" ")
    found = database.execute("SELECT DISTINCT AccNo FROM TLSP0010 WHERE ? IN (OdrNo, PayKeyNo)",
                             (order_number,)).fetchall()
    if len(found) != 1:
        return f"{len(found)} orders of number {order_number!r}"
    lines = database.execute(LINES, (found[0]["AccNo"],)).fetchall()
    if any(line["ShpSts"] == 1 and line["AnsLimUmu"] != 3 for line in lines):
        return "a line is not marked answered"
    if actual[9:15].decode() not in {line["UpdDate"][2:] for line in lines}:
        return "the processing date is not that of the last write"
    expected = rebuild(lines, number if len(actual) == SHORT else 1, actual)
    if actual[89:90] not in b"12" or len(actual) != len(expected):
        return f"kind {actual[89:90]}, {len(actual)} bytes instead of {len(expected)}"
    return next((f"byte {at + 1}: {actual[at:at + 16]} instead of {expected[at:at + 16]}"
                 for at in range(len(actual)) if actual[at] != expected[at]), None)


def main():
    folder = Path(sys.argv[1])
    database = sqlite3.connect(f"{(folder / 'TLDB0010.MDB').resolve().as_uri()}?mode=ro", uri=True)
    database.row_factory = sqlite3.Row
    checked = 0
    for path in sorted(path for path in folder.glob("drives/**/*") if path.is_file()):
        for number, actual in enumerate(path.read_bytes().split(b"\r\n")[:-1], 1):
            fault = check_record(database, actual, number)
            if fault:
                sys.exit(f"{path}: record {number}: {fault}")
            checked += 1
    print(f"{checked} records agree with the database")
    return 0 if checked else 1


if __name__ == "__main__":
    sys.exit(main())
