"""Answers delivery lines at the real program as somebody who sees nothing: by what it tells on the
accessibility bus. drive.py BIN FOLDER: the folder is emptied; to be run in a session of its own
(dbus-run-session) on a display."""

import datetime
import os
import pathlib
import shutil
import subprocess
import sys

from reader import (Atspi, Failure, Reader, State, Table, can, die, everything, expect, has,
                    listen_to_programs, role, text, wait_for)

CUSTOMER = "C0001"


def search(reader):
    window = reader.window("検索条件")
    reader.check_names(window)
    reader.press(window, "得意先参照")
    picker = reader.window("得意先")
    reader.check_names(picker)
    customers = Table(reader.find(picker, "table"))
    cells = customers.check_children()
    expect(not any(has(cell, State.EDITABLE) for cell in cells), "a picker can be typed into")
    row = next(row for row in range(customers.rows()) if customers.cell(row, 0).get_name() == CUSTOMER)
    expect(Atspi.Table.add_row_selection(customers.table, row), "the customer can't be selected")
    reader.press(picker, "確定")
    window = reader.window("検索条件")
    box = reader.find(window, "text", "得意先ｺｰﾄﾞ")
    wait_for(lambda: text(box) == CUSTOMER, "the customer picked")
    reader.press(window, "一覧表示")


def rows_where(grid, column, words):
    return [row for row in range(grid.rows()) if words in grid.cell(row, column).get_name()]


def read_list(reader, window, grid):
    """What colours, stars and locks say."""
    reader.check_names(window)
    cells = grid.check_children()
    expect(grid.rows() * 9 > 2 * len(cells), "the list is no longer than the screen")
    quantity, date = grid.column("回答数量"), grid.column("回答納期")
    expect(rows_where(grid, grid.column("EDI"), "EDI"), "no line says EDI")
    defective = rows_where(grid, quantity, "不良品")
    shipped = rows_where(grid, quantity, "出荷済")
    expect(defective and shipped, "no line says 不良品, or 出荷済")
    for row in range(grid.rows()):
        cell = grid.cell(row, quantity)
        expect(has(cell, State.EDITABLE) != (row in shipped), f"row {row}'s lock")
    for row in shipped[:1]:
        expect(not can(grid.cell(row, date), "EditableText"), "a shipped line can be typed into")
    expect(not has(grid.cell(grid.rows() - 1, 0), State.SHOWING), "the last row is not in view")

    # Going down brings other cells in, and leaves none of the first behind.
    last = grid.cell(grid.rows() - 1, quantity)
    expect(last.get_component_iface().grab_focus(), "no way to a cell")
    wait_for(lambda: has(last, State.FOCUSED) and has(last, State.SHOWING), "the last cell")
    grid.check_children()
    expect(not has(grid.cell(0, quantity), State.SHOWING), "the first row is left behind")
    reader.heard("object:state-changed:focused",
                 lambda source, value: value and source.get_name() == last.get_name())


def read_detail(reader, window, grid):
    """A line with all that is known of it."""
    select(grid, [0])
    reader.press(window, "詳細")
    detail = reader.window("回答詳細")
    reader.check_names(detail)
    expect(text(reader.find(detail, "text", "注文№")) in grid.cell(0, grid.column("注文№")).get_name(),
           "the detail of another line")
    reader.press(detail, "戻る")
    wait_for(lambda: has(window, State.ACTIVE), "the list")


def select(grid, rows):
    for row in range(grid.rows()):
        if Atspi.Table.is_row_selected(grid.table, row):
            Atspi.Table.remove_row_selection(grid.table, row)
    for row in rows:
        expect(Atspi.Table.add_row_selection(grid.table, row), f"row {row} can't be selected")


def open_rows(grid):
    """Two rows of different orders, ready to be answered."""
    states = grid.column("回答 出荷")
    defects = grid.column("回答数量")
    orders = grid.column("注文№")
    found = {}
    for row in rows_where(grid, states, "未回答"):
        if "済" not in grid.cell(row, states).get_name() + grid.cell(row, defects).get_name():
            found.setdefault(text(grid.cell(row, orders)).split("\n")[0], row)
    count = {order: len(rows_where(grid, orders, order)) for order in found}
    return [row for order, row in found.items() if count[order] == 1][:2]


def type_quantity(reader, grid, row):
    cell = grid.cell(row, grid.column("回答数量"))
    before = text(cell)
    Atspi.EditableText.set_text_contents(cell, "abc")
    warning = reader.heard("object:state-changed:showing",
                           lambda source, _: role(source) == "notification")
    expect("数値" in warning.get_name(), "the refusal says " + warning.get_name())
    expect(role(warning.get_parent()) == "alert", "the status bar's warning is no alert")
    expect(warning.get_parent().get_name() == warning.get_name(), "the alert's text")
    expect(text(cell) != "abc", "a quantity of letters")

    typed = float(before.replace(",", "")) - 1
    reader.events.clear()
    Atspi.EditableText.set_text_contents(cell, f"{typed:g}")
    wait_for(lambda: text(cell) == f"{typed:,.3f}", "the quantity typed")
    reader.heard("object:property-change:accessible-name",
                 lambda source, _: source.get_name() == text(cell))
    expect("変更あり" in grid.row_heading(row), "the row's heading says nothing of the change")


def set_date(reader, window, grid, rows, day):
    select(grid, rows)
    reader.press(window, "納期設定")
    box = next_box(reader)
    reader.check_names(box)
    reader.type(box, "", day.strftime("%y%m%d"))
    reader.press(box, "OK")
    date = grid.column("回答納期")
    for row in rows:
        wait_for(lambda: text(grid.cell(row, date)) == day.strftime("%y/%m/%d"), "the date set")
        expect("指定納期と異なる" in grid.cell(row, grid.column("EDI")).get_name(),
               "another date than the specified one is not told of")


def next_box(reader):
    """The box in front of the screens."""
    def look():
        return next((window for window in reader.windows()
                     if has(window, State.SHOWING) and has(window, State.ACTIVE)
                     and "納期回答入力 －" not in window.get_name()), None)
    return wait_for(look, "a box")


def create(reader, window, grid, rows):
    reader.press(window, "納期回答作成")
    for _ in range(5):
        box = next_box(reader)
        words = " ".join(thing.get_name() for thing in everything(box))
        if "納期回答作成処理が終了しました" in words:
            break
        reader.press(box, "はい")
        wait_for(lambda: box not in reader.windows(), "the next box")
    expect("納期回答作成処理が終了しました" in words, "the summary says " + words)
    print("accessibility: the summary is heard:", words.replace("\n", " "))
    reader.press(box, "OK")
    for row in rows:
        wait_for(lambda: "回答作成済" in grid.row_heading(row), "the row's mark")


def drive(folder):
    reader = Reader("TL030101")
    search(reader)
    window = reader.window("回答一覧")
    grid = Table(reader.find(window, "table"))
    wait_for(lambda: grid.rows() > 20, "the list")
    read_list(reader, window, grid)
    read_detail(reader, window, grid)
    rows = open_rows(grid)
    expect(len(rows) == 2, "two orders of one line")
    set_date(reader, window, grid, rows, datetime.date.today() + datetime.timedelta(days=400))
    create(reader, window, grid, rows)
    answers = [name for name in (folder / "drives").rglob("*") if name.is_file()]
    expect(len(answers) == 1 and answers[0].stat().st_size > 1000, "the answers are not written")

    others = open_rows(grid)
    type_quantity(reader, grid, others[0])
    reader.press(window, "戻る")
    reader.press(next_box(reader), "はい")  # the change is lost
    reader.press(reader.window("検索条件"), "終了")


def main(bin_folder, folder):
    shutil.rmtree(folder, ignore_errors=True)
    tool = [bin_folder / "tldb", "demo", folder, "--lines", "2000", "--seed", "1"]
    subprocess.run(tool, check=True, stdout=subprocess.DEVNULL)
    listen_to_programs()
    environment = dict(os.environ, LISTENED_TO="1", XDG_CONFIG_HOME=str(folder / "config"))
    tests = [bin_folder / "unit_tests", "--gtest_filter=GridAccessible*", "--gtest_brief=1"]
    on_display = dict(environment, QT_QPA_PLATFORM="xcb")
    if subprocess.run(tests, env=on_display, timeout=60).returncode != 0:
        die("a grid does not tell what it must")
    program = subprocess.Popen([bin_folder / "TL030101", "--home", folder], env=environment)
    try:
        drive(folder)
        expect(program.wait(timeout=20) == 0, "the program ended badly")
    except Failure as failure:
        die(str(failure))
    finally:
        program.kill()
    print("accessibility: done")


if __name__ == "__main__":
    main(*(pathlib.Path(name).resolve() for name in sys.argv[1:]))
