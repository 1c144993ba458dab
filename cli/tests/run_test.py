"""What a run prints, writes and reports."""

import os
import unittest

from program import EXAMPLE, ProgramTest, graph

COPY = graph("<ReadCSV name='in' file='in.csv'/><WriteCSV name='out' file='${out}'/>", ["in out"], [("out", "out.csv")])


class RunTest(ProgramTest):
    def test_example_reports_rows_and_backends(self):
        report = self.kelvarin_json("run", EXAMPLE, "--set", f"out={self.folder}")
        self.assertEqual((report["status"], report["runState"]), ("ok", 0))
        self.assertGreater(report["seconds"], 0)
        actions = {action["name"]: action for action in report["actions"]}
        self.assertEqual(list(actions), ["flights", "speed and delays", "late?", "late", "late as Parquet", "others"])
        self.assertEqual(actions["flights"]["rowsOut"], [19811])
        self.assertEqual(actions["speed and delays"]["rowsIn"], [19811, 0])
        late, others = actions["late?"]["rowsOut"]
        self.assertEqual(late + others, 19811)
        self.assertEqual(actions["late as Parquet"]["rowsIn"], [late])
        self.assertEqual(len(actions["speed and delays"]["backends"]), 3)
        self.assertEqual(actions["speed and delays"]["backends"][2], "String Parser")
        self.assertNotEqual(actions["late?"]["backends"], ["String Parser"])
        # Recomputed here from the written files.
        with open(self.path("late.csv"), encoding="utf-8") as file:
            header, *rows = [line.rstrip("\n").split(",") for line in file]
        self.assertEqual(len(rows), late)
        for row in rows[:50]:
            flight = dict(zip(header, row))
            self.assertGreaterEqual(float(flight["arr_delay"]), 30)
            self.assertAlmostEqual(float(flight["ground_speed_mph"]),
                                   float(flight["distance"]) / (float(flight["air_time"]) / 60))
            hour = int(flight["hour"])
            self.assertEqual(flight["time_of_day"], ["night", "morning", "afternoon", "evening"][hour // 6])

    def test_reports_engines_missing_values_and_files(self):
        # Blocks of rows, where native code evaluates them together, and a text that goes row by row.
        self.write("in.csv", "a,t\n" + "".join(f"{i if i % 4 else ''},{'x' if i % 3 else ''}\n"
                                               for i in range(9000)))
        self.write("g.kelvarin", graph(
            "<ReadCSV name='in' file='in.csv'/>"
            "<Calculator name='c' abortWhenError='0'><InputVars><InputVar column='a'/>"
            "<InputVar column='t' isNumber='0'/></InputVars><OutputVars>"
            "<OutputVar name='twice'>a * 2</OutputVar><OutputVar name='root'>sqrt(100 - a)</OutputVar>"
            "<OutputVar name='key' meta='K'>nvl(a, 0)</OutputVar>"
            "<OutputVar name='text' meta='U'>toupper(t)</OutputVar></OutputVars></Calculator>"
            "<FilterRows name='f'><InputVars><InputVar column='a'/></InputVars>"
            "<Expression>a &gt;= 0</Expression></FilterRows>"
            "<WriteCSV name='out' file='out.csv'/><WriteCSV name='off' file='off.csv' disabled='1'/>",
            ["in c", "c f", "f out", "c off"]))
        actions = {action["name"]: action for action in self.kelvarin_json("run", "g.kelvarin")["actions"]}
        outputs = {output["name"]: output for output in actions["c"]["outputs"]}
        missing = 2250
        self.assertEqual([(name, output["nulls"]) for name, output in outputs.items()],
                         [("twice", missing), ("root", missing), ("key", 0), ("text", 3000)])
        self.assertEqual(outputs["root"]["nans"], sum(1 for i in range(101, 9000) if i % 4))
        self.assertEqual(outputs["twice"]["nans"], 0)
        self.assertEqual(outputs["text"]["engine"], "String Parser")
        self.assertEqual(outputs["text"]["reason"], "its result is a text")
        self.assertEqual(actions["f"]["outputs"][0]["name"], "condition")
        self.assertIsNone(actions["f"]["outputs"][0]["nulls"])
        self.assertEqual(actions["out"]["files"],
                         [{"path": self.path("out.csv"), "bytes": os.path.getsize(self.path("out.csv"))}])
        self.assertNotIn("files", actions["off"])
        self.assertFalse(os.path.exists(self.path("off.csv")))
        self.assertGreaterEqual(actions["in"]["seconds"], 0)

    def test_reports_blocks_that_a_filter_skips(self):
        self.write("in.csv", "n\n" + "".join(f"{i}\n" for i in range(5000)))
        self.write("make.kelvarin", graph(
            "<ReadCSV name='in' file='in.csv'/>"
            "<writeColumnarGel name='out' file='t.cgel_kelvarin' nRowsInBlock='1000'/>", ["in out"]))
        self.kelvarin("run", "make.kelvarin")
        self.write("g.kelvarin", graph(
            "<ReadColumnarGel name='in' fileName='t.cgel_kelvarin' filterRows='1'><CFilterRows>"
            "<Expression>n_min &lt; 1500</Expression><InputVars><CInputVar column='n'/></InputVars>"
            "</CFilterRows></ReadColumnarGel><Discard name='out'/>", ["in out"]))
        read = self.kelvarin_json("run", "g.kelvarin")["actions"][0]
        self.assertEqual((read["blocksRead"], read["blocksSkipped"]), (2, 3))

    def test_parameters_and_table_of_rows(self):
        self.write("in.csv", "a,b\n1,x\n2,y\n")
        self.write("copy.kelvarin", COPY)
        result = self.kelvarin("run", "copy.kelvarin", "--set", "out=other.csv")
        self.assertEqual(self.read("other.csv"), "a,b\n1,x\n2,y\n")
        self.assertEqual(result.stdout, "")
        self.assertRegex(result.stderr, r"(?m)^in +ReadCSV +- +2$")
        self.assertRegex(result.stderr, r"(?m)^out +WriteCSV +2 +-$")
        self.assertEqual(self.kelvarin("run", "copy.kelvarin", "--quiet").stderr, "")
        unknown = self.kelvarin("run", "copy.kelvarin", "--set", "nope=1", status=1)
        self.assertRegex(unknown.stderr, "'nope'.*declares: out")

    def test_to_an_action_runs_what_feeds_it_and_opens_nothing_else(self):
        self.write("in.csv", "a\n1\n2\n")
        self.write("g.kelvarin", graph(
            "<WriteCSV name='whole' file='whole.csv'/><ReadCSV name='in' file='in.csv'/>"
            "<FilterRows name='f'><InputVars><InputVar column='a'/></InputVars>"
            "<Expression>a &gt; limit</Expression></FilterRows><ReadCSV name='lost' file='lost.csv'/>"
            "<WriteCSV name='out' file='out.csv'/><Discard name='rest' surprise='1'/>",
            ["in whole", "in f", "f out", "lost rest"], [("limit", "0")]))
        report = self.kelvarin_json("run", "g.kelvarin", "--to", "f", "--set", "limit=1")
        rows = {action["name"]: (action["rowsIn"], action["rowsOut"]) for action in report["actions"]}
        self.assertEqual(rows, {"in": ([], [2]), "f": ([2, 0], [1, 1])})
        self.assertEqual(report["log"], [])
        self.assertFalse(os.path.exists(self.path("whole.csv")) or os.path.exists(self.path("out.csv")))
        self.kelvarin("run", "g.kelvarin", "--to", "out")
        self.assertEqual(self.read("out.csv"), "a\n1\n2\n")
        self.assertFalse(os.path.exists(self.path("whole.csv")))
        self.assertIn("did you mean 'whole'?", self.kelvarin("run", "g.kelvarin", "--to", "hole", status=1).stderr)

    def test_standard_output_carries_the_rows_only(self):
        self.write("in.csv", "a\n1\n")
        self.write("copy.kelvarin", COPY)
        self.assertEqual(self.kelvarin("run", "copy.kelvarin", "--set", "out=-").stdout, "a\n1\n")

    def test_relative_paths_start_at_the_graph(self):
        os.mkdir(self.path("below"))
        self.write("below/in.csv", "a\n1\n")
        self.write("below/copy.kelvarin", COPY)
        self.kelvarin("run", "below/copy.kelvarin")
        self.assertEqual(self.read("below/out.csv"), "a\n1\n")

    def test_wrong_usage_ends_with_two_and_a_hint(self):
        for arguments in (["run"], ["fly", "x"], ["run", "g", "--speed", "1"], ["run", "g", "--set", "novalue"]):
            result = self.kelvarin(*arguments, status=2)
            self.assertTrue(result.stderr.startswith("error: "), result.stderr)
            self.assertEqual(result.stdout, "")
        self.assertIn("kelvarin run --help", self.kelvarin("run", status=2).stderr)
        self.assertIn("no command 'chekc'. Did you mean check?", self.kelvarin("chekc", status=2).stderr)
        for command in ("run", "check", "eval", "functions", "actions"):
            self.assertIn("Examples:\n  kelvarin " + command, self.kelvarin(command, "--help").stdout)


if __name__ == "__main__":
    unittest.main()
