"""What other programs make of the sheet's files: "csv IN OUT ENCODING SEPARATOR" reads a CSV file
and saves it as a spreadsheet would, columns turned round; "xlsx IN" prints a workbook."""
import csv
import re
import sys
import xml.etree.ElementTree as xml
import zipfile


def resave(source, target, encoding, separator):
    with open(source, encoding="utf-8-sig", newline="") as file:
        rows = [row[::-1] for row in csv.reader(file, strict=True)]
    if len({len(row) for row in rows}) != 1:
        sys.exit("rows of different lengths")
    for row in rows:
        for at, cell in enumerate(row):
            formula = re.fullmatch('="((?:[^"]|"")*)"', cell)
            if formula:  # it shows what the formula gives
                row[at] = formula[1].replace('""', '"')
    with open(target, "w", encoding=encoding, newline="") as file:
        csv.writer(file, delimiter=separator, lineterminator="\n").writerows(rows)


def show(book):
    names = {"m": "http://schemas.openxmlformats.org/spreadsheetml/2006/main"}
    with zipfile.ZipFile(book) as files:
        sheet = xml.fromstring(files.read("xl/worksheets/sheet1.xml"))
        styles = xml.fromstring(files.read("xl/styles.xml"))
    pane = sheet.find(".//m:pane", names)
    print("frozen", pane.get("ySplit"), pane.get("xSplit"), pane.get("state"))
    print("protected", sheet.find("m:sheetProtection", names).get("sheet"))
    marks = []
    for style in styles.findall("m:cellXfs/m:xf", names):
        protection = style.find("m:protection", names)
        is_locked = protection is None or protection.get("locked") != "0"
        marks.append("" if is_locked else "*")  # may be filled in
    for row in sheet.findall(".//m:row", names):
        cells = []
        for cell in row.findall("m:c", names):
            text = cell.find("m:is/m:t", names)
            number = cell.find("m:v", names)
            shown = text.text if text is not None else "" if number is None else "#" + number.text
            cells.append(marks[int(cell.get("s", 0))] + shown)
        print("|".join(cells))


sys.stdout.reconfigure(encoding="utf-8")
if sys.argv[1] == "csv":
    resave(*sys.argv[2:])
else:
    show(sys.argv[2])
