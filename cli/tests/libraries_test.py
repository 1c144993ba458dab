"""Which libraries a start loads: those of what it does, and no more."""

import os
import re
import unittest

from program import ProgramTest, calculator, graph

LOADED = re.compile(r"calling init: \S*/lib(\w+)")


class LibrariesTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.csv", "a\n1\n")

    def loaded(self, *arguments):
        result = self.kelvarin(*arguments, env={**os.environ, "LD_DEBUG": "libs"})
        libraries = set(LOADED.findall(result.stderr))
        self.assertIn("Qt6Core", libraries)
        return libraries

    def run_of(self, sink):
        actions = "<ReadCSV name='in' file='in.csv'/>" + calculator("c", ["a"], [("name='b'", "a+1")]) + sink
        self.write("g.kelvarin", graph(actions, ["in c", "c out"]))
        return self.loaded("run", "g.kelvarin", "--quiet")

    def test_an_expression_needs_neither_a_screen_nor_arrow(self):
        for command in (["eval", "1+1"], ["functions"], ["--version"]):
            libraries = self.loaded(*command)
            self.assertFalse(libraries & {"Qt6Gui", "Qt6Widgets", "Qt6Svg", "arrow", "parquet"}, command)

    def test_a_run_loads_no_widgets(self):
        self.assertFalse(self.run_of("<WriteCSV name='out' file='out.csv'/>") & {"Qt6Widgets", "arrow", "parquet"})

    def test_arrow_is_loaded_for_its_files(self):
        libraries = self.run_of("<WriteParquet name='out' file='out.parquet'/>")
        self.assertTrue({"KelvarinArrow", "arrow", "parquet"} <= libraries)
        self.assertNotIn("Qt6Widgets", libraries)


if __name__ == "__main__":
    unittest.main()
