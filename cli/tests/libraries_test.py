"""Which libraries a start loads: those of what it does, and no more."""

import os
import re
import shutil
import subprocess
import unittest

from program import PROGRAM, ProgramTest, calculator, graph

# What only a window needs.
WINDOWS = {"Qt6Widgets", "KelvarinWidgets", "KelvarinEditors", "KelvarinGui"}
# Opened at the first picture.
PICTURES = {"Qt6Gui", "KelvarinPictures"}
LOADED = re.compile(r"calling init: \S*/lib(\w+)")


class LibrariesTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.csv", "a\n1\n")

    def loaded(self, *arguments, **environment):
        result = self.kelvarin(*arguments, env={**os.environ, "LD_DEBUG": "libs", **environment})
        libraries = set(LOADED.findall(result.stderr))
        self.assertIn("Qt6Core", libraries)
        return libraries

    def write_graph(self, sink):
        actions = "<ReadCSV name='in' file='in.csv'/>" + calculator("c", ["a"], [("name='b'", "a+1")]) + sink
        self.write("g.kelvarin", graph(actions, ["in c", "c out"]))

    def run_of(self, sink):
        self.write_graph(sink)
        return self.loaded("run", "g.kelvarin", "--quiet")

    def test_an_expression_needs_neither_a_screen_nor_arrow(self):
        for command in (["eval", "1+1"], ["functions"], ["--version"]):
            libraries = self.loaded(*command)
            self.assertFalse(libraries & {"Qt6Gui", "Qt6Widgets", "Qt6Svg", "arrow", "parquet"}, command)

    def test_runs_and_checks_load_no_widgets(self):
        self.assertFalse(self.run_of("<WriteCSV name='out' file='out.csv'/>") & (WINDOWS | PICTURES | {"arrow", "parquet"}))
        self.assertFalse(self.loaded("check", "g.kelvarin") & (WINDOWS | PICTURES))
        self.assertFalse(self.loaded("eval", "1+1") & WINDOWS)

    def test_a_window_loads_its_libraries(self):
        self.write_graph("<WriteCSV name='out' file='out.csv'/>")
        screen = {"QT_QPA_PLATFORM": "offscreen", "XDG_CONFIG_HOME": self.folder}
        self.assertEqual(self.loaded("gui", "g.kelvarin", "--close-after", "0", **screen) & WINDOWS,
                         WINDOWS - {"KelvarinEditors"})
        without_editor = self.loaded("edit", "g.kelvarin", "--close-after", "0", **screen)
        self.assertEqual(without_editor & WINDOWS, WINDOWS - {"KelvarinEditors"})
        self.assertEqual(self.loaded("edit", "g.kelvarin", "c", "--close-after", "0", **screen) & WINDOWS, WINDOWS)

    def test_without_a_screen_there_is_a_reason_and_no_crash(self):
        self.write_graph("<WriteCSV name='out' file='out.csv'/>")
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
        for screen in ({}, {"DISPLAY": ":no-such-screen"}, {"QT_QPA_PLATFORM": "no-such-platform"}):
            for command in ("edit", "gui"):
                result = self.kelvarin(command, "g.kelvarin", status=1, env={**environment, **screen})
                self.assertRegex(result.stderr, "^error: (There is no screen|No window can be opened)")
                self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
        result = self.kelvarin("edit", "absent.kelvarin", status=1, env={**environment, "QT_QPA_PLATFORM": "offscreen"})
        self.assertIn("absent.kelvarin", result.stderr)

    def install(self, *absent):
        """A copy of the program and its libraries without some of them."""
        target = self.path("installed")
        libraries = os.path.join(os.path.dirname(os.path.dirname(PROGRAM)), "lib")
        shutil.copytree(libraries, os.path.join(target, "lib"), ignore=lambda *_: absent)
        os.mkdir(os.path.join(target, "bin"))
        program = shutil.copy(PROGRAM, os.path.join(target, "bin"))
        # Before the folders of the build, which the program remembers.
        environment = {**os.environ, "LD_LIBRARY_PATH": os.path.join(target, "lib"),
                       "QT_QPA_PLATFORM": "offscreen", "XDG_CONFIG_HOME": self.folder}
        return program, environment

    def run_installed(self, installed, *arguments):
        program, environment = installed
        return subprocess.run([program, *arguments], cwd=self.folder, env=environment, capture_output=True,
                              text=True, timeout=60, check=False)

    def test_without_the_graphical_part_only_windows_are_missing(self):
        self.write_graph("<WriteCSV name='out' file='out.csv'/>")
        server = self.install("libKelvarinGui.so", "libKelvarinEditors.so", "libKelvarinWidgets.so",
                              "kelvarin-arrange")
        for command in (["run", "g.kelvarin"], ["check", "g.kelvarin"], ["eval", "1+1"], ["functions"],
                        ["actions"]):
            result = self.run_installed(server, *command)
            self.assertEqual(result.returncode, 0, result.stderr)
        for command in ("gui", "edit"):
            result = self.run_installed(server, command, "g.kelvarin")
            self.assertEqual(result.returncode, 1)
            self.assertRegex(result.stderr, r"^error: No window can be opened: \S*/libKelvarinGui.so could not be "
                                            r"loaded .*Install the graphical part")

    def test_a_window_opens_without_editors_and_without_the_program_that_arranges(self):
        self.write_graph("<WriteCSV name='out' file='out.csv'/>")
        poor = self.install("libKelvarinEditors.so", "kelvarin-arrange")
        result = self.run_installed(poor, "gui", "g.kelvarin", "--close-after", "500")
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_arrow_is_loaded_for_its_files(self):
        libraries = self.run_of("<WriteParquet name='out' file='out.parquet'/>")
        self.assertTrue({"KelvarinArrow", "arrow", "parquet"} <= libraries)
        self.assertNotIn("Qt6Widgets", libraries)


if __name__ == "__main__":
    unittest.main()
