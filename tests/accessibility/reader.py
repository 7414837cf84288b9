"""What a screen reader does at the bus: finds objects, asks them, acts, listens. Nothing of the
program is used but what it tells there."""

import sys
import time
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, Gio, GLib  # noqa: E402

warnings.simplefilter("ignore", DeprecationWarning)
State = Atspi.StateType
PATIENCE_S = 20


class Failure(Exception):
    """What is not as it must be."""


def expect(holds, what):
    if not holds:
        raise Failure(what)


def listen_to_programs():
    """Says on the session's bus that there is a screen reader."""
    status = Gio.DBusProxy.new_for_bus_sync(
        Gio.BusType.SESSION, Gio.DBusProxyFlags.NONE, None,
        "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", None)
    enabled = GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True)))
    status.call_sync("Set", enabled, Gio.DBusCallFlags.NONE, -1, None)
    Atspi.init()


def wait_for(condition, what):
    """The first answer that is one; an object may vanish while it is asked."""
    end = time.monotonic() + PATIENCE_S
    while time.monotonic() < end:
        try:
            answer = condition()
            if answer:
                return answer
        except GLib.Error:
            pass
        turn = GLib.timeout_add(10, lambda: False)
        GLib.MainContext.default().iteration(True)
        if GLib.MainContext.default().find_source_by_id(turn):
            GLib.source_remove(turn)
    raise Failure("waited in vain for " + what)


def role(thing):
    return thing.get_role_name()


def has(thing, state):
    return thing.get_state_set().contains(state)


def children(thing):
    return [thing.get_child_at_index(i) for i in range(thing.get_child_count())]


def everything(thing):
    """The object and all below it that is on the screen."""
    yield thing
    for child in children(thing):
        if child is not None and has(child, State.SHOWING):
            yield from everything(child)


def text(thing):
    return Atspi.Text.get_text(thing, 0, -1)


def can(thing, interface):
    return interface in thing.get_interfaces()


class Reader:
    """At the program of this name."""

    def __init__(self, program):
        self.program = program
        self.events = []
        self._listener = Atspi.EventListener.new(
            lambda event: self.events.append((event.type, event.source, event.detail1)))
        for kind in ("object:state-changed", "object:property-change", "object:text-changed"):
            self._listener.register(kind)

    def windows(self):
        desktop = Atspi.get_desktop(0)
        return [window for program in children(desktop)
                if program is not None and program.get_name() == self.program
                for window in children(program) if window is not None]

    def window(self, title):
        """The window on the screen whose title contains this."""
        def look():
            return next((window for window in self.windows()
                         if title in window.get_name() and has(window, State.SHOWING)), None)
        return wait_for(look, "the window " + title)

    def find(self, window, kind, name=""):
        """What is of this role in the window, with a name that begins so."""
        def look():
            return next((thing for thing in everything(window)
                         if role(thing) == kind and thing.get_name().startswith(name)), None)
        return wait_for(look, f"{kind} {name}")

    def press(self, window, button):
        Atspi.Action.do_action(self.find(window, "push button", button), 0)

    def type(self, window, box, typed):
        Atspi.EditableText.set_text_contents(self.find(window, "text", box), typed)

    def heard(self, kind, what):
        """The source of an event that begins so and that the condition holds for."""
        def is_it(event):
            try:
                return event[0].startswith(kind) and what(*event[1:])
            except GLib.Error:
                return False  # its source has gone since
        return wait_for(lambda: next(filter(is_it, self.events), (None, None))[1], kind)

    def check_names(self, window):
        """Whatever can be reached by key or shows a text has a name."""
        for thing in everything(window):
            if has(thing, State.FOCUSABLE) and role(thing) != "table cell":
                expect(thing.get_name(), f"a {role(thing)} of {window.get_name()} has no name")
                expect("MSG" not in thing.get_name(), "a control is called MSG")


class Table:
    """A grid; rows and columns count from 0."""

    def __init__(self, table):
        self.table = table

    def rows(self):
        return Atspi.Table.get_n_rows(self.table)

    def cell(self, row, column):
        return Atspi.Table.get_accessible_at(self.table, row, column)

    def column(self, heading):
        count = Atspi.Table.get_n_columns(self.table)
        names = [Atspi.Table.get_column_header(self.table, i).get_name() for i in range(count)]
        return next(i for i, name in enumerate(names) if name.startswith(heading))

    def row_heading(self, row):
        return Atspi.Table.get_row_header(self.table, row).get_name()

    def check_children(self):
        """They are what is on the screen, and say where they are."""
        shown = children(self.table)
        expect(0 < len(shown) < 400, f"{len(shown)} children")
        window = self.table.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
        for index, part in enumerate(shown):
            expect(has(part, State.SHOWING), f"child {index} is not on the screen")
            expect(part.get_index_in_parent() == index, f"child {index} is lost")
            place = part.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
            expect(place.y < window.y + window.height and place.y + place.height > window.y,
                   f"child {index} stands outside")
            if role(part) != "table cell":
                expect(part.get_name(), f"heading {index} has no name")
                continue
            row = Atspi.Table.get_row_at_index(self.table, index)
            column = Atspi.Table.get_column_at_index(self.table, index)
            expect(self.cell(row, column).get_name() == part.get_name(), f"child {index}")
            expect(can(part, "Text"), f"cell {index} has no text")
            expect(has(part, State.EDITABLE) == can(part, "EditableText"), f"cell {index}")
        return [part for part in shown if role(part) == "table cell"]


def die(what):
    sys.exit("accessibility: " + what)
