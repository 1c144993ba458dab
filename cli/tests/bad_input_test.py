"""Bad input of every kind: a message with its position, status 1, and nothing replaced or half written."""

import os
import signal
import subprocess
import time
import unittest

from program import PROGRAM, ProgramTest, calculator, graph

WRITE = "<WriteCSV name='out' file='out.csv'/>"
READ = "<ReadCSV name='in' file='in.csv'/>"


class BadInputTest(ProgramTest):
    """Every case runs a graph whose sink would replace out.csv."""

    def fails(self, text, *patterns, arguments=()):
        self.write("g.kelvarin", text)
        self.write("out.csv", "old\n")
        before = self.files()
        result = self.kelvarin("run", "g.kelvarin", *arguments, status=1)
        for pattern in patterns:
            self.assertRegex(result.stderr, pattern)
        self.assertIn("error: ", result.stderr)
        self.assertEqual(self.read("out.csv"), "old\n")
        self.assertEqual(self.files(), before)
        report = self.kelvarin_json("run", "g.kelvarin", *arguments, status=1)
        self.assertEqual((report["status"], report["runState"]), ("failed", 5))
        self.assertTrue(any(line["level"] == 1 for line in report["log"]))

    def test_graph_files(self):
        self.fails("<KelvarinGraph version='1.0'>\n<Actions>\n</Links>", r"g\.kelvarin:3:\d+: ")
        self.fails(graph(READ + WRITE + "\n<ReadCVS name='x' file='x'/>", ["in out"]), r"g\.kelvarin:5:\d+: .*ReadCVS.*ReadCSV")
        self.fails(graph("<ReadCSV name='in' file='${folder}/in.csv'/>" + WRITE, ["in out"], [("base", "x")]),
                   r"g\.kelvarin:\d+:\d+: .*'folder'.*base")
        self.fails("<KelvarinGraph/>", r"g\.kelvarin: the graph has no actions")
        missing = self.kelvarin("run", "absent.kelvarin", status=1)
        self.assertIn("absent.kelvarin", missing.stderr)

    def test_columns_and_expressions(self):
        self.write("in.csv", "a,b\n1,2\n")

        def computing(*outputs):
            return graph(READ + calculator("c", ["a"], outputs) + WRITE, ["in c", "c out"])

        self.fails(graph(READ + calculator("c", ["z"], [("name='y'", "z")]) + WRITE, ["in c", "c out"]),
                   "Error: Column 'z' not found")
        self.fails(computing(("name='y'", "a"), ("name='y'", "a + 1")),
                   "Error: Updating/Creating the column 'y' several times.")
        self.fails(computing(("name='b'", "a")), "Error: Updating/Creating the column 'b' several times.")
        self.fails(computing(("name='y'", "+".join(["a"] * 12000))), "Math Parser Error in expression named 'y'", "too long")

    def test_csv_files(self):
        copy = graph(READ + WRITE, ["in out"])
        self.write("in.csv", 'a,b\n1,"x\ny"\n2,y,z\n')
        self.fails(copy, r"in\.csv', line 4", "2 columns")
        self.write("in.csv", "a,b\n" + "1,x\n" * 12000 + "one,x\n")
        self.fails(copy, r"in\.csv', line 12002", "'a'", "'one'")
        self.write("in.csv", 'a,b\n1,x\n2,"y\n3,z\n')
        self.fails(copy, r"in\.csv', line 3", "never closed")
        os.remove(self.path("in.csv"))
        self.fails(copy, r"in\.csv")
        os.mkdir(self.path("in.csv"))
        self.fails(copy, "it is a folder")

    def test_plugins(self):
        copy = graph(READ + WRITE, ["in out"])
        self.fails(copy, "nothing.so", arguments=["--plugin", self.path("nothing.so")])
        other = self.write("other.so", "no library")
        self.fails(copy, r"other\.so", arguments=["--plugin", other])
        # A sound plug-in, made for something else.
        folder = subprocess.run(["qtpaths6", "--query", "QT_INSTALL_PLUGINS"], capture_output=True, text=True, check=True)
        platform = os.path.join(folder.stdout.strip(), "platforms", "libqoffscreen.so")
        self.fails(copy, "another interface: .*KelvarinPluginInterface/1.0", arguments=["--plugin", platform])

    def test_sink_that_cannot_be_written(self):
        self.write("in.csv", "a\n1\n")
        self.fails(graph(READ + "<WriteCSV name='out' file='absent/out.csv'/>", ["in out"]), "absent/out.csv")

    @unittest.skipUnless(os.geteuid() == 0, "mounting a small file system takes root")
    def test_full_disk(self):
        os.mkdir(self.path("small"))
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "size=256k", "tmpfs", self.path("small")],
                                 capture_output=True)
        if mounted.returncode != 0:
            self.skipTest("no file system can be mounted here")
        try:
            self.write("small/out.csv", "old\n")
            self.write("in.csv", "a,b\n" + "1,some text\n" * 60000)
            self.write("g.kelvarin", graph(READ + "<WriteCSV name='out' file='small/out.csv'/>", ["in out"]))
            result = self.kelvarin("run", "g.kelvarin", "--disk-wait", "1", status=1)
            self.assertRegex(result.stderr, r"disk is full: \d+ more bytes.*small")
            self.assertEqual(self.read("small/out.csv"), "old\n")
            self.assertEqual(os.listdir(self.path("small")), ["out.csv"])
        finally:
            subprocess.run(["umount", self.path("small")], check=True)

    def has_open(self, process, name):
        descriptors = "/proc/%d/fd/" % process.pid
        try:
            return any(os.readlink(descriptors + number) == self.path(name) for number in os.listdir(descriptors))
        except OSError:  # one was closed meanwhile, or the process has ended
            return False

    def test_interrupt_leaves_nothing(self):
        self.write("in.csv", "a,b\n" + "12345,some text\n" * 3_000_000)
        self.write("g.kelvarin", graph(
            READ + calculator("c", ["a"], [("name='y' meta='U'", 'a &lt; 0 ? "x" : "y"')]) + WRITE, ["in c", "c out"]))
        before = self.files()
        for number in (signal.SIGINT, signal.SIGTERM):
            process = subprocess.Popen([PROGRAM, "run", "g.kelvarin", "--json"], cwd=self.folder, text=True,
                                       stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            while not self.has_open(process, "in.csv") and process.poll() is None:
                time.sleep(0.01)  # the sink has made its file, which has no name, before
            process.send_signal(number)
            out, err = process.communicate(timeout=20)
            self.assertEqual(process.returncode, 130, err)
            self.assertIn('"stopped"', out)
            self.assertEqual(self.files(), before)


if __name__ == "__main__":
    unittest.main()
