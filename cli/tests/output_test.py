"""Where results go: readers that have seen enough, full disks, and what a terminal shows."""

import os
import select
import subprocess
import time
import unittest

from program import PROGRAM, ProgramTest, calculator, graph, open_terminal

ROWS = 200_000


class OutputTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.csv", "a,b\n" + "12345,some text\n" * ROWS)
        self.write("g.kelvarin", graph("<ReadCSV name='in' file='in.csv'/><WriteCSV name='out' file='${out}'/>",
                                       ["in out"], [("out", "-")]))
        self.write("both.kelvarin", graph("<ReadCSV name='in' file='in.csv'/><WriteCSV name='out' file='-'/>"
                                          "<WriteCSV name='file' file='file.csv'/>", ["in out", "in file"]))
        self.write("wide.kelvarin", graph(
            "<ReadCSV name='in' file='in.csv'/>"
            + calculator("c", ["a"], [(f"name='a column with a long name {i}'", f"a+{i}") for i in range(2000)])
            + "<WriteCSV name='out' file='/dev/null'/>", ["in c", "c out"]))
        self.kelvarin("gel", "import", "in.csv", "t.cgel_kelvarin")

    COMMANDS = (["run", "g.kelvarin", "--quiet"], ["run", "g.kelvarin", "--quiet", "--set", "out=/dev/stdout"],
                ["run", "g.kelvarin", "--quiet", "--json", "--set", "out=out.csv"], ["check", "wide.kelvarin", "--json"],
                ["eval", "_n", "--rows", "1000000000"], ["functions", "--json"], ["actions", "--json"],
                ["gel", "head", "t.cgel_kelvarin", "--rows", str(ROWS)], ["gel", "info", "t.cgel_kelvarin", "--blocks"],
                ["gel", "verify", "t.cgel_kelvarin", "--quiet"], ["gel", "export", "t.cgel_kelvarin", "-", "--quiet"])

    def ended(self, arguments, stdout):
        return subprocess.run([PROGRAM, *arguments], cwd=self.folder, stdout=stdout, stderr=subprocess.PIPE, text=True,
                              stdin=subprocess.DEVNULL, timeout=60)

    def test_reader_that_has_seen_enough(self):
        for arguments in self.COMMANDS:
            with self.subTest(arguments):
                process = subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, stdout=subprocess.PIPE,
                                           stderr=subprocess.PIPE, stdin=subprocess.DEVNULL)
                process.stdout.read(1)
                process.stdout.close()
                errors = process.stderr.read()
                process.stderr.close()
                self.assertEqual((process.wait(timeout=60), errors), (0, b""))

    def test_the_other_outputs_of_the_run_are_whole(self):
        process = subprocess.Popen([PROGRAM, "run", "both.kelvarin", "--quiet"], cwd=self.folder, stdout=subprocess.PIPE)
        process.stdout.close()
        self.assertEqual(process.wait(timeout=60), 0)
        self.assertEqual(self.read("file.csv"), self.read("in.csv"))

    def test_full_standard_output(self):
        for arguments in self.COMMANDS:
            with self.subTest(arguments), open("/dev/full", "w", encoding="utf-8") as full:
                result = self.ended(arguments, full)
                self.assertEqual(result.returncode, 1, result.stderr)
                self.assertIn("No space left on device", result.stderr)

    def next_line(self, stream):
        line = b""
        while not line.endswith(b"\n"):
            self.assertTrue(select.select([stream], [], [], 30)[0], "the row does not come")
            line += os.read(stream.fileno(), 1)
        return line

    def test_rows_of_a_slow_pipe_come_at_once(self):
        kinds = {"in batches": ("x", "2*a"), "row by row": ("x", "2*a+0*rand(1)")}
        columns = "<ReadCSV name='in' file='/dev/stdin'><Column name='a' meta='F'/></ReadCSV>"
        for kind, (name, expression) in kinds.items():
            self.write("slow.kelvarin", graph(columns + calculator("c", ["a"], [(f"name='{name}'", expression)])
                                              + "<WriteCSV name='out' file='-'/>", ["in c", "c out"]))
            for threads in ("1", "2", "3"):
                with self.subTest(kind, threads=threads), subprocess.Popen(
                        [PROGRAM, "run", "slow.kelvarin", "--quiet", "--threads", threads], cwd=self.folder, bufsize=0,
                        stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
                    process.stdin.write(b"a\n1000000000000\n")
                    self.assertEqual(self.next_line(process.stdout), b"a,x\n")
                    self.assertEqual(self.next_line(process.stdout), b"1000000000000,2000000000000\n")
                    for row in range(1, 40):
                        process.stdin.write(b"%d\n" % row)
                        self.assertEqual(self.next_line(process.stdout), b"%d,%d\n" % (row, 2 * row))
                    process.stdin.close()
                    self.assertEqual(process.wait(), 0)

    def test_graphs_are_joined_by_pipes(self):
        rows = "a,b\n" + "".join(f"{row},text {row}\n" for row in range(200_000))
        self.write("in.csv", rows)
        for name, source, sink in (("first", "<ReadCSV name='in' file='in.csv'/>", "<WriteArrow name='out' file='-'/>"),
                                   ("file", "<ReadCSV name='in' file='in.csv'/>",
                                    "<WriteArrow name='out' file='-' format='file'/>"),
                                   ("between", "<ReadArrow name='in' file='-'/>", "<WriteArrow name='out' file='-'/>"),
                                   ("text", "<ReadArrow name='in' file='-'/>", "<WriteCSV name='out' file='-'/>"),
                                   ("last", "<ReadCSV name='in' file='-'/>", "<WriteCSV name='out' file='out.csv'/>")):
            self.write(f"{name}.kelvarin", graph(source + sink, ["in out"]))
        for first in ("first", "file"):
            command = " | ".join(f"{PROGRAM} run {name}.kelvarin --quiet" for name in (first, "between", "text", "last"))
            result = subprocess.run(["bash", "-c", "set -o pipefail; " + command], cwd=self.folder, capture_output=True,
                                    text=True, timeout=60)
            self.assertEqual((result.returncode, result.stdout, result.stderr), (0, "", ""))
            self.assertEqual(self.read("out.csv"), rows)
        refused = self.run_program("run", "text.kelvarin")
        self.assertEqual(refused.returncode, 1)
        self.assertIn("The standard input cannot be read, it is damaged or of another format: there is nothing in it",
                      refused.stderr)

    def test_rows_before_a_failure_are_on_standard_output(self):
        self.write("bad.csv", "a\n1\n2\nthree\n")
        self.write("bad.kelvarin", graph("<ReadCSV name='in' file='bad.csv'><Column name='a' meta='F'/></ReadCSV>"
                                         "<WriteCSV name='out' file='${out}'/>", ["in out"], [("out", "-")]))
        for threads in ("1", "3"):
            result = self.kelvarin("run", "bad.kelvarin", "--threads", threads, status=1)
            self.assertEqual(result.stdout, "a\n1\n2\n")
            before = self.files()
            self.kelvarin("run", "bad.kelvarin", "--threads", threads, "--set", "out=out.csv", status=1)
            self.assertEqual(self.files(), before)

    def shown_on_terminal(self, graph_file, environment, pipe=None):
        reader, terminal = open_terminal()
        surroundings = {name: value for name, value in os.environ.items() if name not in ("TERM", "NO_COLOR")}
        process = subprocess.Popen([PROGRAM, "run", graph_file], cwd=self.folder, stderr=terminal,
                                   env={**surroundings, **environment}, stdin=subprocess.DEVNULL)
        os.close(terminal)
        if pipe:
            with open(self.path(pipe), "rb") as rows:  # slowly, so that there is progress to show
                while rows.read(1 << 22):
                    time.sleep(0.1)
        shown = b""
        try:
            while more := os.read(reader, 10_000):
                shown += more
        except OSError:
            pass  # the terminal's other end is closed
        os.close(reader)
        self.assertEqual(process.wait(timeout=60), 0, shown)
        return shown

    def test_terminals(self):
        os.mkfifo(self.path("pipe"))
        self.write("many.csv", "a,b\n" + "12345,some text\n" * 1_500_000)
        self.write("many.kelvarin", graph("<ReadCSV name='in' file='many.csv'/><WriteCSV name='out' file='pipe'/>", ["in out"]))
        for environment, has_progress in (({"TERM": "xterm"}, True), ({"TERM": "xterm", "NO_COLOR": "1"}, True),
                                          ({"TERM": "dumb"}, False), ({}, False)):
            with self.subTest(environment):
                shown = self.shown_on_terminal("many.kelvarin", environment, "pipe")
                self.assertEqual(b"\r\x1b[K" in shown, has_progress, shown)
                self.assertEqual(b"rows/s" in shown, has_progress, shown)
                self.assertEqual(b"\x1b" in shown, has_progress, shown)

    def test_colours(self):
        self.write("warned.kelvarin", graph("<InlineTable name='in' colour='red'><Column name='a'/></InlineTable>"
                                            "<Discard name='out'/>", ["in out"]))
        for environment, is_coloured in (({"TERM": "xterm"}, True), ({"TERM": "xterm", "NO_COLOR": "1"}, False)):
            shown = self.shown_on_terminal("warned.kelvarin", environment)
            self.assertIn(b"warning: ", shown)
            self.assertEqual(b"\x1b[1;33m" in shown, is_coloured, shown)


if __name__ == "__main__":
    unittest.main()
