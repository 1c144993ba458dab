"""Graphs with vectors of columns: what a run returns and logs, and what a check shows before it."""

import csv
import io
import os
import subprocess
import unittest

from program import PROGRAM, ProgramTest, calculator, graph

CAST = ("alias", "column", "cast")


def table(name, columns, rows, meta="U"):
    heads = "".join(f"<Column name='{column}' meta='{meta}'/>" for column in columns)
    return f"<InlineTable name='{name}'>{heads}" + "".join(
        "<Row>" + "".join(f"<V>{value}</V>" for value in row) + "</Row>" for row in rows) + "</InlineTable>"


def vectorized(outputs, attributes=""):
    """Outputs are pairs of attributes and expression; None leaves the action as it is when new."""
    inside = "" if outputs is None else "<OutputVars>%s</OutputVars>" % "".join(
        "<OutputVar %s>%s</OutputVar>" % output for output in outputs)
    return f"<CalculatorVectorized name='c' {attributes}>{inside}</CalculatorVectorized>"


class VectorizedTest(ProgramTest):
    def write_graph(self, outputs, vectors, columns=CAST[:2], sink="<WriteCSV name='o' file='-'/>"):
        data = table("t", ["a", "b", "c", "d", "e"], [[1, 2, 3, 4, 5], [10, 20, 30, 40, 50]], "F")
        self.write("g.kelvarin", graph(data + table("v", columns, vectors) + vectorized(outputs) + sink,
                                       ["t c", "v c.1", "c o"]))

    def run_graph(self, *arguments, status=0):
        self.write_graph(*arguments)
        return self.kelvarin("run", "g.kelvarin", status=status)

    def new_columns(self, *arguments):
        """Name and values of the columns after the five of the input, and what the run logged as a warning."""
        result = self.run_graph(*arguments)
        columns = list(zip(*csv.reader(io.StringIO(result.stdout))))[5:]
        warnings = [line for line in result.stderr.splitlines() if line.startswith("warning: ")]
        return {column[0]: list(column[1:]) for column in columns}, warnings

    def test_elements_scalars_and_names(self):
        vectors = [["x", "a"], ["x", "b"], ["y", "c"], ["y", "d"], ["s", "e"]]
        outputs = [("name='x // \"_\" // y'", "x + y * s"), ("name='\"n\" // _n'", "_n")]
        columns, warnings = self.new_columns(outputs, vectors)
        self.assertEqual(list(columns.items()), [("a_c", ["16", "1510"]), ("n0", ["0", "1"]),
                                                 ("b_d", ["22", "2020"]), ("n1", ["0", "1"])])
        self.assertEqual(warnings, [])

    def test_a_new_action_numbers_its_columns(self):
        columns, _ = self.new_columns(None, [["x", "a", "F"], ["x", "b", ""], ["x", "c", "U"]], CAST)
        self.assertEqual(list(columns), ["NewVar_0", "NewVar_1", "NewVar_2"])

    def test_runs_of_aliases_and_wrong_sizes(self):
        one = [("name='A // \"2\"'", "A * 2")]
        wrong = self.run_graph(one, [["A", "a"], ["A", "b"], ["B", "c"], ["B", "d"], ["B", "e"]],
                               status=1)
        self.assertIn("error: Error: Vector of wrong size when defining variable 'A'?\n", wrong.stderr)
        columns, warnings = self.new_columns(one, [["A", "a"], ["B", "b"], ["A", "c"]])
        self.assertEqual(columns, {"a2": ["2", "20"]})
        self.assertEqual(warnings, [
            "warning: Warning: No vector as input?",
            "warning: The variable 'A' is defined twice, by column 'a' and by column 'c': expressions see the first "
            "one. Give the other a label of its own."])
        columns, warnings = self.new_columns([("name='\"only\"'", "_n")], [])
        self.assertEqual((columns, warnings), ({"only": ["0", "1"]}, ["warning: Warning: No vector as input?"]))

    def test_faults_stop_the_run(self):
        pair = [["x", "a"], ["x", "b"]]
        narrow = self.run_graph([("name='\"n\"'", "1")], [["x"]], ["alias"], status=1)
        self.assertIn("Error: The table on Pin 1 must have at least 3 columns (AliasName,VarName,castToNumber).",
                      narrow.stderr)
        for name, text in (("_n // 3 // x - 1", "Math Parser Error in name expression '_n // 3 // x - 1':\n"),
                           ("1 + 1", "Math Parser Error in expression '1 + 1':\nResult is not a string\n"),
                           ("y", "At position 0.\n"),
                           ("x", "Error: Updating/Creating the column 'a' several times.\n"),
                           ("\"same\"", "Error: Updating/Creating the column 'same' several times.\n")):
            self.assertIn(text, self.run_graph([(f"name='{name}'", "1")], pair, status=1).stderr)
        failed = self.run_graph([("name='\"o\" // _n'", "x &gt; 1 ? \"text\" : x")], pair, status=1)
        self.assertIn("error: Math Parser Error in expression 'o1':\n The expression evaluated to a String and a "
                      "Number was expected\n On Data Row 0 at position ", failed.stderr)

    def test_a_table_that_cannot_be_read_has_one_error(self):
        self.write("t.csv", "a,b\n1,2\n")
        self.write("v.csv", 'alias,column\nx,"a\n')
        read = "<ReadCSV name='t' file='t.csv'/><ReadCSV name='v' file='v.csv'/><FilterRows name='f' Expression='1'/>"
        sink = "<Discard name='o'/>"
        for action in (calculator("c", ["a"], [("name='y'", "x + 1")]), vectorized([("name='\"n\" // _n'", "x + 1")])):
            self.write("g.kelvarin", graph(read + action + sink, ["t c", "v f", "f c.1", "c o"]))
            for command in ("run", "check"):
                log = self.kelvarin(command, "g.kelvarin", status=1).stderr
                self.assertIn("the quote opened here is never closed", log)
                self.assertEqual((log.count("error: "), log.count("warning: ")), (1, 0), log)

    def test_a_check_shows_the_names(self):
        self.write_graph([("name='x // _n'", "x")], [["x", "a"], ["x", "b"]])
        self.assertIn("  c (CalculatorVectorized): 7 columns: + a0 F, + b1 F\n", self.kelvarin("check", "g.kelvarin").stdout)
        self.assertEqual(self.kelvarin("check", "g.kelvarin", "--quiet").stdout, "")
        actions = {a["name"]: a for a in self.kelvarin_json("check", "g.kelvarin")["actions"]}
        self.assertEqual(actions["c"]["newColumns"], ["a0", "b1"])
        self.assertEqual((actions["t"]["rowsOut"], actions["v"]["rowsOut"]), ([0], [2]))
        self.assertNotIn("newColumns", actions["t"])
        self.write_graph([("name='\"o\" // _n'", "x")], [["x", "a"]] * 60)
        self.assertIn("+ o29 F, ... and 30 more, which --json lists\n", self.kelvarin("check", "g.kelvarin").stdout)
        self.assertEqual(len(self.kelvarin_json("check", "g.kelvarin")["actions"][2]["newColumns"]), 60)

    def test_a_long_table_is_read_at_once(self):
        self.write("v.csv", "alias,column\n" + "x,a\n" * 100_000)
        read = "<ReadCSV name='v' file='v.csv'/>"
        adding = vectorized([("name='\"o\" // _n'", "x + 1")])
        self.write("g.kelvarin", graph(table("t", ["a"], [[1]], "F") + read + adding + "<Discard name='o'/>",
                                       ["t c", "v c.1", "c o"]))
        report = self.kelvarin_json("run", "g.kelvarin")
        self.assertEqual(report["actions"][1]["rowsOut"], [100_000])
        self.assertLess(report["seconds"], 10)  # a fraction of it, but hours where a search is linear

    def test_memory_does_not_grow_with_the_rows(self):
        def peak(rows):
            elements = 2000
            self.write("t.csv", "a\n" + "1\n" * rows)
            vectors = table("v", ["alias", "column"], [["x", "a"]] * elements)
            outputs = [(f"name='\"{meta}\" // _n' meta='{meta}'", text)
                       for meta, text in (("F", "x + 1"), ("K", "x"), ("U", "\"some longer text\""))]
            read = "<ReadCSV name='t' file='t.csv'/>"
            self.write("g.kelvarin", graph(read + vectors + vectorized(outputs) + "<Discard name='o'/>",
                                           ["t c", "v c.1", "c o"]))
            process = subprocess.Popen([PROGRAM, "run", "g.kelvarin", "--quiet"], cwd=self.folder)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
            self.assertEqual(process.returncode, 0)
            return usage.ru_maxrss  # in KiB

        some = peak(1000)
        self.assertLess(some, peak(10) + 40_000)
        self.assertLess(peak(5000), some + 10_000)


if __name__ == "__main__":
    unittest.main()
