"""A screen whose program is seen as a screen reader sees it: widgets by their roles and names.

Used by the scenarios, scripts/pictures and scripts/recovery_test. Widgets are found by what users
read, wherever a layout puts them, and then clicked and typed into by real events. Nothing is looked
at once: each operation waits until what it needs is there.
"""

import math
import os
import subprocess

import gi
from screen import PATIENCE, Screen, StepFailed

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

DEEPEST = 40  # levels of widgets within each other


class ReadScreen(Screen):
    """With the bus on which a program describes its widgets."""

    def _environment(self, display):
        environment = {**super()._environment(display), "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        environment["DBUS_SESSION_BUS_ADDRESS"] = self._start_bus(environment)
        os.environ.update({name: environment[name] for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")})
        Atspi.init()
        return environment

    def _start_bus(self, environment):
        reading, writing = os.pipe()
        bus = subprocess.Popen(["dbus-daemon", "--session", "--nofork", f"--print-address={writing}"],
                               env=environment, pass_fds=[writing], stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
        self.processes.append(bus)
        os.close(writing)
        with os.fdopen(reading) as address:
            line = address.readline().strip()
        if not line:
            raise StepFailed("dbus-daemon does not start")
        return line

    def calm(self):
        """Each step waits for what it needs, so none waits for the whole screen."""

    def wait(self, condition, what):
        """For a condition that may ask about widgets which come and go meanwhile."""
        def holds():
            try:
                return condition()
            except GLib.Error:
                return None
        return self._wait(holds, what)

    def wait_for_end(self):
        """For the program to end by itself, without a fault."""
        try:
            status = self.program.wait(PATIENCE)
        except subprocess.TimeoutExpired as late:
            raise StepFailed(f"the program did not end within {PATIENCE} seconds") from late
        del self.program
        if status != 0:
            raise StepFailed(f"the program ended with status {status}")

    def widget(self, role, name):
        """The visible widget with this role whose name begins so."""
        def found():
            for widget in visible_widgets():
                if widget.get_role_name() == role and (widget.get_name() or "").startswith(name):
                    return widget
            return None
        return self.wait(found, f"a {role} '{name}'")

    def wait_for_text(self, role, name, text):
        widget = self.widget(role, name)
        self.wait(lambda: text_of(widget) == text, f"'{text}' in the field '{name}'")

    def wait_for_label(self, part):
        """For a label that says so, among other things."""
        self.wait(lambda: any(part in (widget.get_name() or "") for widget in visible_widgets()
                              if widget.get_role_name() == "label"), f"a label with '{part}'")

    def wait_for_focus(self, role, name):
        widget = self.widget(role, name)
        self.wait(lambda: widget.get_state_set().contains(Atspi.StateType.FOCUSED), f"the focus in '{name}'")

    def click_on(self, role, name, count=1):
        self.click_widget(self.widget(role, name), count)

    def click_widget(self, widget, count=1, button=1):
        area = widget.get_extents(Atspi.CoordType.SCREEN)
        self.click(area.x + area.width // 2, area.y + area.height // 2, count, button)

    def click_first_entry(self):
        """Of the menu that is open, which is no widget that a screen reader finds."""
        area = self.geometry(self.popup())
        self.click(area["X"] + area["WIDTH"] // 4, area["Y"] + 12)

    def focus_first_link(self, label):
        """By a click beside the text, and the key that goes to the first link."""
        area = label.get_extents(Atspi.CoordType.SCREEN)
        self.click(area.x + 2, area.y + area.height - 1)
        self.keys("Tab")

    def cell(self, role, name, row, column):
        """Of a table or tree: `row` is a number or the text of its first cell, `column` its header."""
        return self.wait(lambda: self._cell_now(role, name, row, column),
                         f"the {column} of '{row}' in the {role} '{name}'")

    def wait_for_value(self, role, name, row, column, number):
        """For a cell with this number."""
        def holds():
            cell = self._cell_now(role, name, row, column)
            return cell is not None and is_number(cell.get_name(), number)
        self.wait(holds, f"{number} as {column} of '{row}' in the {role} '{name}'")

    def _cell_now(self, role, name, row, column):
        grid = self.widget(role, name).get_table_iface()
        headers = [grid.get_column_description(i) for i in range(grid.get_n_columns())]
        if column not in headers:
            return None
        for candidate in [row] if isinstance(row, int) else range(grid.get_n_rows()):
            first = grid.get_accessible_at(candidate, 0)
            if first is not None and row in (candidate, first.get_name()):
                return grid.get_accessible_at(candidate, headers.index(column))
        return None


def is_number(text, number):
    try:
        return math.isclose(float(text), number, rel_tol=1e-9)
    except ValueError:
        return False


def visible_widgets():
    yield from widgets_below(Atspi.get_desktop(0))


def widgets_below(widget, depth=0):
    """What is visible of a widget, itself included, in the order of the screen reader."""
    if widget is None or depth > DEEPEST:
        return
    if depth == 0:
        widget.set_cache_mask(Atspi.Cache.NONE)
    if depth > 1 and not widget.get_state_set().contains(Atspi.StateType.SHOWING):
        return
    yield widget
    if widget.get_role_name() in ("table", "tree table", "tree"):
        return  # its cells are asked for by their headers
    for i in range(widget.get_child_count()):
        yield from widgets_below(widget.get_child_at_index(i), depth + 1)


def text_of(widget):
    return Atspi.Text.get_text(widget, 0, -1)
