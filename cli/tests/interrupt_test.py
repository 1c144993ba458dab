"""Signals and limits that end the program: promptly, with 130, whatever it waits for, and without unfinished files."""

import os
import resource
import signal
import subprocess
import time
import unittest

from program import PROGRAM, ProgramTest, calculator, graph, open_terminal

COPY = graph("<ReadCSV name='in' file='${in}'/><WriteCSV name='out' file='${out}'/>", ["in out"],
             [("in", "/dev/stdin"), ("out", "out.csv")])
WAITING = graph("<ReadColumnarGel name='in' fileName='later.cgel_kelvarin' timeOut='600'/>"
                "<WriteCSV name='out' file='out.csv'/>", ["in out"])
SECONDS = 5  # a second is promised; the machine may be busy


class InterruptTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("copy.kelvarin", COPY)
        self.write("waiting.kelvarin", WAITING)
        self.write("out.csv", "as before\n")
        os.mkfifo(self.path("pipe"))
        self.open_end, self.other_end = os.pipe()  # nobody writes, nobody reads
        self.addCleanup(os.close, self.open_end)
        self.addCleanup(os.close, self.other_end)

    def start(self, *arguments, **options):
        process = subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, text=True, stderr=subprocess.PIPE,
                                   **{"stdin": self.open_end, "stdout": self.other_end, **options})
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.kill)
        return process

    def wait_until_it_waits(self, process):
        """All of its threads sleep, and go on sleeping."""
        asleep = 0
        while asleep < 5 and process.poll() is None:
            states = set()
            for task in os.listdir(f"/proc/{process.pid}/task"):
                with open(f"/proc/{process.pid}/task/{task}/stat", encoding="utf-8") as file:
                    states.add(file.read().rsplit(")", 1)[1].split()[0])
            asleep = asleep + 1 if states == {"S"} else 0
            time.sleep(0.05)
        self.assertIsNone(process.poll(), "it ended by itself")

    def assert_ends(self, process, number):
        start = time.monotonic()
        process.send_signal(number)
        _, errors = process.communicate(timeout=60)
        self.assertEqual(process.returncode, 130, errors)
        self.assertLess(time.monotonic() - start, SECONDS, errors)
        return errors

    def assert_nothing_changed(self):
        self.assertEqual(self.files(), ["copy.kelvarin", "out.csv", "pipe", "waiting.kelvarin"])
        self.assertEqual(self.read("out.csv"), "as before\n")

    def test_every_signal_ends_a_waiting_run(self):
        for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP, signal.SIGQUIT, signal.SIGXCPU, signal.SIGXFSZ):
            with self.subTest(number.name):
                process = self.start("run", "copy.kelvarin", "--json", stdout=subprocess.PIPE)
                self.wait_until_it_waits(process)
                process.send_signal(number)
                report, errors = process.communicate(timeout=60)
                self.assertEqual(process.returncode, 130, errors)
                self.assertIn('"stopped"', report)
                self.assertIn("Interrupted", errors)
                self.assert_nothing_changed()

    def test_whatever_is_waited_for(self):
        for arguments in (["run", "copy.kelvarin", "--set", "in=pipe"], ["run", "waiting.kelvarin"],
                          ["run", "copy.kelvarin", "--set", "in=/dev/zero", "--set", "out=pipe"], ["check", "copy.kelvarin"],
                          ["run", "pipe"]):
            with self.subTest(arguments):
                process = self.start(*arguments)
                self.wait_until_it_waits(process)
                self.assert_ends(process, signal.SIGTERM)
                self.assert_nothing_changed()

    def test_standard_input_is_not_waited_for_any_longer(self):
        for arguments in (["run", "copy.kelvarin", "--set", "in=-"], ["calc", "b=a+1"], ["count", "-"], ["calc", "--from=arrow"]):
            for beginning in (b"", b"a\n1\n"):
                with self.subTest((arguments, beginning)):
                    reading, writing = os.pipe()
                    os.write(writing, beginning)
                    process = self.start(*arguments, stdin=reading, stdout=subprocess.DEVNULL)
                    os.close(reading)
                    self.wait_until_it_waits(process)
                    self.assertNotIn("cut off", self.assert_ends(process, signal.SIGINT))
                    os.close(writing)

    def test_slow_expressions_end_in_order(self):
        self.write("rows.csv", "a\n" + "".join(f"t{row}\n" for row in range(200_000)))
        self.write("slow.kelvarin", graph(
            "<ReadCSV name='in' file='rows.csv'/>" + calculator(
                "c", ["a' isNumber='0"],
                [("name='y' meta='U'", 'regexReplace("%s" // a, "[a-c]+([0-9]+)(c|d)+", "x")' % ("ab1cd" * 1000))]) +
            "<Discard name='out'/>", ["in c", "c out"]))
        process = self.start("run", "slow.kelvarin", "--progress", "json")
        self.assertIn('"seconds"', process.stderr.readline())
        self.assertNotIn("cut off", self.assert_ends(process, signal.SIGINT))

    def test_output_that_nobody_takes(self):
        rows = self.path("../rows.csv")
        with open(rows, "w", encoding="utf-8") as file:
            file.write("a\n" + "some text\n" * 200_000)
        self.addCleanup(os.remove, rows)
        process = self.start("run", "copy.kelvarin", "--set", "in=../rows.csv", "--set", "out=-")
        self.wait_until_it_waits(process)
        self.assertIn("cut off", self.assert_ends(process, signal.SIGINT))

    def test_second_signal_removes_unfinished_files(self):
        files = self.files()
        for _ in range(5):
            process = self.start("run", "copy.kelvarin")
            self.wait_until_it_waits(process)
            if self.files() == files:
                self.skipTest("unfinished files have no names here")
            process.send_signal(signal.SIGINT)
            self.assert_ends(process, signal.SIGTERM)
            self.assert_nothing_changed()

    def test_ignored_signal_stays_ignored(self):
        process = self.start("run", "waiting.kelvarin",
                             preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        self.wait_until_it_waits(process)
        process.send_signal(signal.SIGHUP)
        time.sleep(0.5)
        self.assertIsNone(process.poll())
        self.assert_ends(process, signal.SIGINT)

    def test_file_size_limit(self):
        text = "a,b\n" + "".join(f"{i * 7919 % 100003},{i}\n" for i in range(50_000))
        with open(self.path("../rows.csv"), "w", encoding="utf-8") as file:
            file.write(text)
        self.addCleanup(os.remove, self.path("../rows.csv"))

        def limited(*arguments):
            return subprocess.run([PROGRAM, *arguments], cwd=self.folder, capture_output=True, text=True, timeout=60,
                                  preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (10_000, 10_000)))

        result = limited("run", "copy.kelvarin", "--set", "in=../rows.csv")
        self.assertEqual(result.returncode, 130, result.stderr)
        self.assertRegex(result.stderr, "error: The file '.*out.csv' cannot be written: File too large")
        self.assert_nothing_changed()
        result = limited("gel", "import", "../rows.csv", "table.cgel_kelvarin")
        self.assertEqual(result.returncode, 130, result.stderr)
        self.assertIn("error: Cannot write to file '", result.stderr)

    @unittest.skipUnless(os.geteuid() == 0, "mounting a small file system takes root")
    def test_question_about_a_full_disk(self):
        os.mkdir(self.path("small"))
        if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", self.path("small")],
                          capture_output=True).returncode != 0:
            self.skipTest("no file system can be mounted here")
        try:
            person, terminal = open_terminal()
            self.write("rows.csv", "a\n" + "some text\n" * 50_000)
            process = subprocess.Popen(
                [PROGRAM, "run", "copy.kelvarin", "--set", "in=rows.csv", "--set", "out=small/out.csv"],
                cwd=self.folder, stdin=terminal, stderr=terminal, stdout=subprocess.DEVNULL)
            os.close(terminal)
            shown = b""
            while b"Retry or stop?" not in shown:
                shown += os.read(person, 1000)
            start = time.monotonic()
            process.send_signal(signal.SIGTERM)
            self.assertEqual(process.wait(timeout=60), 130)
            self.assertLess(time.monotonic() - start, SECONDS)
            self.assertEqual(os.listdir(self.path("small")), [])
            os.close(person)
        finally:
            subprocess.run(["umount", self.path("small")], check=True)


if __name__ == "__main__":
    unittest.main()
