"""What a user asks of a run beside its result: rejected rows, a part of the rows, the same run again, and reports."""

import csv
import json
import os
import re
import subprocess
import time
import unittest

from program import PROGRAM, ProgramTest, calculator, graph

# Fails where s is "a", for a text cannot be multiplied.
FAILS = 's == "a" ? s * 2 : 1'
SKIP = "abortWhenError='0'"


def computing(name, outputs, attributes=SKIP):
    return calculator(name, ["s' isNumber='0", "id", "x"],
                      [("name='%s'" % name, "<![CDATA[%s]]>" % expression) for name, expression in outputs], attributes)


def filtering(name, condition, attributes=SKIP):
    return ("<FilterRows name='%s' %s><InputVars><InputVar column='s' isNumber='0'/><InputVar column='id'/></InputVars>"
            "<Expression><![CDATA[%s]]></Expression></FilterRows>" % (name, attributes, condition))


READ = "<ReadCSV name='in' file='in.csv'/>"
WRITE = "<WriteCSV name='out' file='out.csv'/>"


class ReportsTest(ProgramTest):
    def write_rows(self, count, failing):
        self.write("in.csv", "id,s,x\n" + "".join(
            "%d,%s,%s\n" % (i, "a" if i in failing else "b", i / 4 if i % 5 else "") for i in range(count)))

    def write_graph(self, actions, *links):
        self.write("g.kelvarin", graph(actions, links))

    def run_graph(self, *options, status=0):
        return self.kelvarin("run", "g.kelvarin", *options, status=status)

    def lines(self, name):
        return [json.loads(line) for line in self.read(name).splitlines()]


class RejectsTest(ReportsTest):
    def setUp(self):
        super().setUp()
        self.failing = {3, 4, 9000, 15000, 15001}
        self.write_rows(20000, self.failing)
        self.write_graph(
            READ + filtering("f", 'id > 10000 && s == "a" ? s * 2 : 1') +
            computing("c", [("y", FAILS), ("z", 's == "a" && id > 8000 ? s * 3 : x')]) + WRITE, "in c", "c f", "f out")

    def test_rows_are_those_that_failed_by_action_in_every_format(self):
        self.run_graph("--rejects", "r.jsonl")
        rows = self.lines("r.jsonl")
        expected = [(row, "f", "condition") for row in (15000, 15001)]
        for row in sorted(self.failing):
            expected += [(row, "c", name) for name in ("y", "z") if name == "y" or row > 8000]
        self.assertEqual([(row["row"], row["action"], row["expression"]) for row in rows], expected)
        self.assertIn("is of type 's' whereas type 'f' was expected", rows[0]["message"])
        self.assertEqual(rows[2]["values"], {"id": 3, "s": "a", "x": 0.75})
        self.assertIsNone(rows[-1]["values"]["y"] if "y" in rows[-1]["values"] else None)
        self.run_graph("--rejects", "r.csv")
        with open(self.path("r.csv"), encoding="utf-8", newline="") as file:
            cells = list(csv.DictReader(file))
        self.run_graph("--rejects", "r.parquet")
        self.write("show.kelvarin", graph("<ReadParquet name='in' file='r.parquet'/><WriteCSV name='out' file='-'/>",
                                          ["in out"]))
        self.assertEqual(self.kelvarin("run", "show.kelvarin").stdout, self.read("r.csv"))
        self.assertEqual([{**row, "row": str(row["row"]), "values": json.dumps(row["values"], separators=(",", ":"))}
                          for row in rows], cells)

    def test_the_file_is_the_same_for_any_number_of_threads(self):
        files = set()
        for threads in ("1", "2", "5"):
            self.run_graph("--rejects", "r.csv", "--threads", threads)
            files.add(self.read("r.csv"))
        self.assertEqual(len(files), 1)

    def test_values_of_every_kind_and_a_run_without_failures(self):
        self.write("in.csv", 's,id,k,x\n"a""\u00e4\n",0,,nan\na,1,7,inf\nb,1e300,8,-0.5\n')
        self.write_graph("<ReadCSV name='in' file='in.csv'><Column name='k' meta='K'/></ReadCSV>" +
                         computing("c", [("y", 's == "b" ? 1 : s * 2')]) + WRITE, "in c", "c out")
        self.run_graph("--rejects", "r.jsonl")
        self.assertEqual([row["values"] for row in self.lines("r.jsonl")],
                         [{"s": 'a"\u00e4\n', "id": 0, "k": None, "x": "nan"}, {"s": "a", "id": 1, "k": 7, "x": "inf"}])
        self.write("in.csv", "s,id,k,x\nb,1,2,3\n")
        report = json.loads(self.run_graph("--rejects", "r.jsonl", "--json").stdout)
        self.assertEqual((self.read("r.jsonl"), report["rejectedRows"]), ("", 0))

    def test_a_filter_stops_at_its_first_row_and_a_failed_run_keeps_what_came_before(self):
        self.write_rows(10, {0, 3})
        self.write_graph(READ + filtering("f", FAILS) + WRITE, "in f", "f out")
        self.assertIn("On Data Row 0", self.run_graph("--rejects", "r.csv", status=1).stderr)
        self.assertEqual(self.read("r.csv"), "row,action,expression,message,values\n")
        self.write_graph(READ + computing("c", [("y", FAILS)]) + filtering("f", 'id > 4 ? s * 2 : 1', "") + WRITE,
                         "in c", "c f", "f out")
        self.run_graph("--rejects", "r.jsonl", status=1)
        self.assertEqual([row["row"] for row in self.lines("r.jsonl")], [0, 3])
        self.assertFalse(os.path.exists(self.path("out.csv")))
        # Without the attribute nothing goes on, whatever is asked for.
        self.write_graph(READ + computing("c", [("y", FAILS)], "") + WRITE, "in c", "c out")
        self.run_graph("--rejects", "r.jsonl", "--max-errors", "5", status=1)
        self.assertEqual(self.read("r.jsonl"), "")

    def test_so_many_errors_end_the_run(self):
        report = json.loads(self.run_graph("--max-errors", "3", "--json", "--rejects", "r.jsonl", status=1).stdout)
        self.assertEqual((report["status"], report["rejectedRows"]), ("failed", 3))
        self.assertRegex(report["log"][0]["text"], "^3 rows have failed.*--max-errors.*row 9000 .*action 'c'.*'y'")
        self.assertEqual({row["row"] for row in self.lines("r.jsonl")}, {3, 4, 9000})
        self.assertFalse(os.path.exists(self.path("out.csv")))
        self.run_graph("--max-errors", "8")  # in two actions, 7 rows

    def test_files_of_the_graph_are_safe_and_wrong_names_are_told_before(self):
        before = self.read("in.csv")
        for option in ("--rejects", "--summary", "--log-file"):
            if option != "--rejects":
                self.assertIn("is one of the action 'out'", self.run_graph(option, "out.csv", status=1).stderr)
            else:
                self.assertIn("is one of the action 'in'", self.run_graph(option, "./in.csv", status=1).stderr)
        self.assertEqual(self.read("in.csv"), before)
        self.assertIn("nowhere", self.run_graph("--rejects", "nowhere/r.csv", status=1).stderr)
        self.assertIn(".parquet", self.run_graph("--rejects", "r.txt", status=2).stderr)
        self.assertIn("2026-01-31T12:00:00Z", self.run_graph("--now", "2026-01-31 12:00", status=2).stderr)
        self.run_graph("--limit", "0", status=2)


class PartAndRepetitionTest(ReportsTest):
    def test_a_limit_is_as_if_the_sources_had_no_more_rows(self):
        self.write_rows(30000, set())
        make = graph(READ + "<writeColumnarGel name='gel' file='in.cgel_kelvarin' nRowsInBlock='1000'/>"
                     "<WriteParquet name='p' file='in.parquet'/>", ["in gel", "in p"])
        self.write("make.kelvarin", make)
        self.kelvarin("run", "make.kelvarin")
        sources = {"csv": READ, "parquet": "<ReadParquet name='in' file='in.parquet'/>",
                   "gel": "<ReadColumnarGel name='in' fileName='in.cgel_kelvarin'/>"}
        wanted = "id,n\n" + "".join("%d,%d\n" % (i, i // 2) for i in range(0, 7001, 2))
        for kind, source in sources.items():
            for threads in ("1", "3"):
                self.write_graph(
                    source + filtering("even", "id % 2 == 0") +
                    calculator("c", ["id"], [("name='n'", "_n")]) +
                    "<Calculator name='d'><InputVars><InputVar column='id'/></InputVars><OutputVars>"
                    "<OutputVar name='t' meta='U'>itoa(id) // \"x\"</OutputVar></OutputVars></Calculator>" + WRITE +
                    "<WriteCSV name='texts' file='texts.csv'/>", "in even", "even c", "even d", "c out", "d texts")
                rows = {action["name"]: action["rowsOut"] for action in json.loads(
                    self.run_graph("--limit", "7001", "--json", "--threads", threads).stdout)["actions"]}
                self.assertEqual((kind, rows["in"], rows["even"]), (kind, [7001], [3501, 3500]))
                out = [line.split(",") for line in self.read("out.csv").splitlines()]
                self.assertEqual("".join("%s,%s\n" % (line[0], line[-1]) for line in out), wanted)
                self.assertEqual(self.read("texts.csv").count("\n"), 3502)

    def test_faults_behind_the_limit_are_not_met(self):
        self.write("in.csv", "id,s\n1,b\n2,b\n3,b,surplus\n")
        self.write_graph(READ + WRITE, "in out")
        self.assertIn(":4", self.run_graph(status=1).stderr)
        self.run_graph("--limit", "2")
        self.assertEqual(self.read("out.csv"), "id,s\n1,b\n2,b\n")
        self.run_graph("--limit", "3", status=1)

    def test_seed_and_time_make_every_function_repeat(self):
        functions = json.loads(self.kelvarin("functions", "--json").stdout)
        words = re.compile(r"random|current time|unique")
        changing = {f["name"]: f for f in functions if words.search(f["help"] + f["comment"])}
        self.assertEqual(set(changing), {"rand", "rand1", "randN", "_now", "_nowS", "_uniqueID"})
        outputs = [("name='%s_%s' meta='%s'" % (name.strip("_"), meta, meta),
                    name if f["kind"] == "constant" else "%s(%s)" % (name, "1000" if f["args"] else ""))
                   for name, f in changing.items() for meta in "FU"
                   if meta == "U" or name not in ("_nowS", "_uniqueID")]
        self.write_rows(300, set())
        self.write_graph(
            READ + calculator("c", ["id"], outputs, "addNow='1' addNowS='1' dateFormat='yyyy-MM-dd hh:mm:ss' isUTC='1'") +
            WRITE + "<writeColumnarGel name='gel' file='o.cgel_kelvarin'/><WriteParquet name='p' file='o.parquet'/>",
            "in c", "c out", "c gel", "c p")

        def run(*options):
            self.run_graph(*options)
            files = [name for name in self.files() if name.startswith("o")]
            contents = {}
            for name in files:
                with open(self.path(name), "rb") as file:
                    contents[name] = file.read()
            return contents

        fixed = ("--seed", "7", "--now", "2020-02-29T12:30:00+01:00")
        first = run(*fixed)
        self.assertGreater(len(first), 3)
        self.assertIn(b"2020-02-29 11:30:00", first["out.csv"])
        time.sleep(1.1)
        self.assertEqual(run(*fixed, "--threads", "1"), first)
        other = run("--seed", "8", *fixed[2:])
        self.assertNotEqual(other["out.csv"], first["out.csv"])
        self.assertNotEqual(run()["out.csv"], first["out.csv"])

    def test_a_seed_of_the_action_stays(self):
        self.write_rows(3, set())
        self.write_graph(READ + calculator("c", ["id"], [("name='r'", "rand1()")], "seed='5'") + WRITE, "in c", "c out")
        self.run_graph()
        first = self.read("out.csv")
        self.run_graph("--seed", "9")
        self.assertEqual(self.read("out.csv"), first)


class ReportOfRunTest(ReportsTest):
    def setUp(self):
        super().setUp()
        self.write_rows(2000, {5, 6})
        self.write_graph(READ + computing("c", [("y", FAILS), ("z", "x * 2")]) + WRITE, "in c", "c out")

    def test_warnings_decide_where_the_user_is_strict(self):
        result = self.run_graph("--strict", status=1)
        self.assertRegex(result.stderr.splitlines()[-1], "^error: .*1 warning.*--strict")
        self.assertTrue(os.path.exists(self.path("out.csv")))
        self.write_rows(10, set())
        self.assertNotIn("strict", self.run_graph("--strict").stderr)

    def test_the_log_file_has_every_line(self):
        self.run_graph("--quiet", "--log-file", "log.txt", "--rejects", "r.csv")
        self.kelvarin("run", "absent.kelvarin", "--log-file", "log.txt", status=1)
        lines = [line.split("\t") for line in self.read("log.txt").splitlines()]
        self.assertEqual([(level, action) for _, level, action, _, _ in lines],
                         [("warning", "c"), ("info", ""), ("error", "")])
        self.assertRegex(lines[0][3], r"^g\.kelvarin:\d+:\d+$")
        self.assertRegex(lines[0][0], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}(Z|[+-]\d\d:\d\d)$")
        self.assertIn("2 rows were rejected", lines[1][4])
        self.assertIn("cannot", self.run_graph("--log-file", "nowhere/log.txt", status=1).stderr)

    def test_explanation_and_summary(self):
        result = self.run_graph("--explain", "--summary", "s.json")
        self.assertRegex(result.stderr, r"(?m)^  in \(ReadCSV\): [\d.]+ s, [\d.]+ ns a row of 2000$")
        self.assertRegex(result.stderr, r"(?m)^    y: String Parser because of 's', row by row because of '\*', 2 missing, 2 failed$")
        self.assertRegex(result.stderr, r"(?m)^    z: Fastest Parser, .*, 400 missing$")
        summary = json.loads(self.read("s.json"))
        self.assertEqual((summary["status"], summary["actions"][1]["outputs"][0]["failures"]), ("ok", 2))
        self.kelvarin("run", "absent.kelvarin", "--summary", "s.json", status=1)
        self.assertEqual(json.loads(self.read("s.json"))["status"], "failed")

    def test_progress_beats_while_nothing_moves(self):
        os.mkfifo(self.path("in.pipe"))
        self.write_graph(READ.replace("in.csv", "in.pipe") + WRITE, "in out")
        run = subprocess.Popen([PROGRAM, "run", "g.kelvarin", "--progress", "json", "--quiet"], cwd=self.folder,
                               stderr=subprocess.PIPE, text=True)
        with open(self.path("in.pipe"), "w", encoding="utf-8") as pipe:
            first = json.loads(run.stderr.readline())
            pipe.write("a\n1\n2\n")
        rest = [json.loads(line) for line in run.stderr.read().splitlines()]
        run.stderr.close()
        self.assertEqual(run.wait(timeout=30), 0)
        self.assertGreaterEqual(first["seconds"], 1.0)
        self.assertEqual((first["rowsRead"], first["remaining"], first["bytesRead"]), (0, None, None))
        self.assertEqual((rest[-1]["status"], rest[-1]["done"], rest[-1]["rowsRead"]), ("ok", 1.0, 2))
        self.assertEqual(rest[-1]["actions"][1], {"name": "out", "rowsIn": [2], "rowsOut": []})


if __name__ == "__main__":
    unittest.main()
