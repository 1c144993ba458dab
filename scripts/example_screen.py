"""A screen with copies of the examples, and the windows of kelvarin in which they are opened.

Used by the scenarios and scripts/pictures. The copies may be changed.
"""

import csv
import glob
import os
import pathlib
import re
import shutil

from screen_reader import Atspi, ReadScreen

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PROGRAM = os.path.join(ROOT, "build/release/bin/kelvarin")
FLIGHTS = "flights/flights.kelvarin"
DATA = "flights/data/flights.csv"
CALCULATOR = "speed and delays"
SPEED = "distance / (minutes / 60)"  # its first output

# The flights with a formula that fails at the first one that was an hour early.
FAILING = "flights/failing.kelvarin"
MADE_UP = "dep_delay - arr_delay"
FAULTY = 'dep_delay + (arr_delay &lt; -60 ? "early" : 1)'

# Widgets, as a screen reader says them.
FIELD = "text", "Expression"
FIRST_ROWS = "table", "Values of the first rows"
VARIABLES = "table", "Input variables"
COMPLETIONS = "tree", "Completions"
PREVIEW = "table", "Rows of the preview"
LOG = "table", "Log"
CANVAS = "list", "Canvas"


class ExampleScreen(ReadScreen):
    def __init__(self, width, height, dark=False, program=PROGRAM):
        super().__init__(width, height, dark)
        self.kelvarin = program

    def __enter__(self):
        super().__enter__()
        for example in ("flights", "columnar"):
            shutil.copytree(os.path.join(ROOT, "examples", example), self._path(example))
        with open(self._path(DATA), encoding="utf-8") as rows:
            self.rows = list(csv.DictReader(rows))
        graph = pathlib.Path(self._path(FLIGHTS)).read_text(encoding="utf-8")
        pathlib.Path(self._path(FAILING)).write_text(graph.replace(MADE_UP, FAULTY), encoding="utf-8")
        return self

    def edit(self, graph, action):
        self.start(self.kelvarin, "edit", graph, action)
        self.window(rf"^{re.escape(os.path.basename(graph))} - {re.escape(action)}$")

    def draw(self, *graph):
        """Without a graph the start page comes."""
        self.start(self.kelvarin, "gui", *graph)
        if graph:
            self.window(rf"^{re.escape(os.path.basename(graph[0]))} - kelvarin")
            self.widget("list item", "flights")
        else:
            self.widget("push button", "New graph")

    def drop(self, file, x, y):
        """Drags the file from another program's window; 0 when it was taken."""
        source = self._start(os.path.join(ROOT, "scripts/file_drag.py"), self._path(file))
        area = self.geometry(self.window("^File to drag$"))
        self._order("mousemove", str(area["X"] + 8), str(area["Y"] + 8), "mousedown", "1")
        self._order("mousemove", str(x), str(y), "mousemove", str(x + 1), str(y), "mouseup", "1")
        self.wait(lambda: source.poll() is not None, "a window that takes the file")
        return source.returncode

    def step_to_row(self, row):
        """From the preview, by the menu of a cell."""
        self.click_widget(self.cell(*PREVIEW, row, "carrier"), button=3)
        self.click_first_entry()
        self.wait_for_label(f"Row {row}, the one that was asked for.")

    def point_at(self, position):
        """At a character of the expression."""
        character = Atspi.Text.get_character_extents(self.widget(*FIELD), position,
                                                     Atspi.CoordType.SCREEN)
        self.point(character.x + character.width // 2, character.y + character.height // 2)

    def kill(self, kept):
        """As a crash would end it, once this is in the recovery file."""
        files = os.path.join(self.folder, "data/**/*.recovery")

        def is_kept():
            return any(kept.encode() in pathlib.Path(file).read_bytes()
                       for file in glob.glob(files, recursive=True))
        self.wait(is_kept, f"a recovery file with '{kept}'")
        self.program.kill()
        self.program.wait()
