"""Outputs that would get in the way of other files: of the same graph, of another process, or of an earlier run."""

import os
import subprocess
import unittest

from program import PROGRAM, ProgramTest, graph

SOURCE = "<ReadCSV name='in' file='in.csv'/>"


class FilesTest(ProgramTest):
    def refuse(self, actions, *expected, links=("in a", "in b")):
        """A run and a check end with 1, report what is expected, and leave every file as it was."""
        self.write("g.kelvarin", graph(actions, links))
        before = {name: os.lstat(self.path(name)).st_size for name in self.files()}
        for command in ("check", "run"):
            stderr = self.kelvarin(command, "g.kelvarin", status=1).stderr
            for text in expected:
                self.assertIn(text, stderr, command)
        self.assertEqual({name: os.lstat(self.path(name)).st_size for name in self.files()}, before)

    def bytes_of(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def make_input(self):
        self.write("in.csv", "a,b\n" + "".join(f"{i},text {i}\n" for i in range(1000)))

    def test_two_actions_write_one_file_whatever_it_is_called(self):
        self.make_input()
        os.mkdir(self.path("d"))
        os.symlink("d", self.path("l"))
        os.symlink("d/o.csv", self.path("link.csv"))
        self.write("d/hard.csv", "x")
        os.link(self.path("d/hard.csv"), self.path("hard2.csv"))
        csv, gel = "<WriteCSV name='%s' file='%s'/>", "<writeColumnarGel name='%s' file='%s'/>"
        for first, second in ((csv % ("a", "d/o.csv"), csv % ("b", "l/o.csv")),
                              (csv % ("a", "d/o.csv"), csv % ("b", "d/../l/./o.csv")),
                              (csv % ("a", "link.csv"), csv % ("b", "d/o.csv")),
                              (csv % ("a", "d/hard.csv"), csv % ("b", "hard2.csv")),
                              (csv % ("a", "d/hard.csv"), gel % ("b", "d/hard.csv")),
                              (gel % ("a", "d/o.cgel_kelvarin"), csv % ("b", "l/o.007.cs_kelvarin")),
                              (gel % ("a", "l/o.x"), gel % ("b", "d/o.y"))):
            self.refuse(SOURCE + first + second, "The actions 'a' and 'b' write the same file: '")
        for first, second in (("d/o.000.cs", "d/o.001.cs"), ("/dev/null", "/dev/null")):
            self.write("g.kelvarin", graph(SOURCE + csv % ("a", first) + csv % ("b", second), ("in a", "in b")))
            self.kelvarin("run", "g.kelvarin")

    def test_an_output_never_replaces_a_source_of_its_graph(self):
        self.make_input()
        self.kelvarin("gel", "import", "in.csv", "t")
        self.kelvarin("gel", "export", "t.cgel_kelvarin", "in.parquet")
        os.symlink("in.csv", self.path("link.csv"))
        gel = "<ReadColumnarGel name='in' fileName='t.cgel_kelvarin'/>"
        expected = "The action 'a' would replace what the action 'in' of this graph reads: '"
        for source, sink in ((SOURCE, "<WriteCSV name='a' file='in.csv'/>"),
                             (SOURCE, "<WriteCSV name='a' file='link.csv'/>"),
                             ("<ReadParquet name='in' file='in.parquet'/>", "<WriteArrow name='a' file='in.parquet'/>"),
                             (gel, "<writeColumnarGel name='a' file='t.cgel_kelvarin'/>"),
                             (gel, "<writeColumnarGel name='a' file='t.cgel_kelvarin' replaceAtEnd='1'/>"),
                             (gel, "<WriteCSV name='a' file='t.000.cs_kelvarin'/>")):
            self.refuse(source + sink, expected, links=("in a",))

    def test_a_file_whose_name_comes_with_the_rows_is_not_lost_either(self):
        for name in "ab":
            self.write(name + ".csv", "v\n" + "".join(f"{name}{i}\n" for i in range(5000)))
            self.kelvarin("gel", "import", name + ".csv", name)
        names = "<InlineTable name='names'><Column name='f' meta='U'/><Row><V>a.cgel_kelvarin</V></Row>" \
                "<Row><V>b.cgel_kelvarin</V></Row></InlineTable>"
        reader = "<ReadColumnarGel name='in' fileNameFromPin='1' readIncompleteFile='1'/>"
        sink = "<writeColumnarGel name='out' file='b.cgel_kelvarin'/>"
        for links in (("names in", "in out"), ("names in", "in seen", "rows out"), ("rows out", "names in", "in seen")):
            actions = names + reader + sink
            if "rows out" in links:  # which may begin before the reader knows its files
                actions += "<InlineTable name='rows'><Column name='v' meta='U'/><Row><V>x</V></Row></InlineTable>" \
                           "<Discard name='seen'/>"
            self.write("g.kelvarin", graph(actions, links))
            self.assertIn("The action 'out' would replace what the action 'in' of this graph reads: '",
                          self.kelvarin("run", "g.kelvarin", status=1).stderr)
            self.kelvarin("gel", "export", "b.cgel_kelvarin", "back.csv")
            self.assertEqual(self.read("back.csv"), self.read("b.csv"))
            self.assertFalse([name for name in os.listdir(self.folder) if name.startswith(".")])

    def test_standard_output_has_one_writer(self):
        self.make_input()
        self.refuse(SOURCE + "<WriteCSV name='a' file='-'/><WriteCSV name='b' file='/dev/stdout'/>",
                    "The actions 'a' and 'b' both write to standard output")
        self.write("g.kelvarin", graph(SOURCE + "<WriteCSV name='a' file='-'/>", ("in a",)))
        report = self.kelvarin_json("run", "g.kelvarin", status=1)
        self.assertEqual((report["status"], report["log"][0]["action"]), ("failed", "a"))
        self.assertIn("where --json puts its object", report["log"][0]["text"])
        self.assertEqual(self.kelvarin("run", "g.kelvarin").stdout, self.read("in.csv"))

    def test_standard_input_has_one_reader(self):
        self.make_input()
        readers = "<ReadCSV name='a' file='-'/><ReadArrow name='b' file='-'/><Discard name='c'/><Discard name='d'/>"
        self.write("g.kelvarin", graph(readers, ("a c", "b d")))
        expected = "The actions 'a' and 'b' both read standard input, of which each row comes once."
        for command in ("run", "check"):
            with open(self.path("in.csv"), encoding="utf-8") as file:
                for source in (file, subprocess.DEVNULL):
                    result = subprocess.run([PROGRAM, command, "g.kelvarin"], cwd=self.folder, stdin=source,
                                            capture_output=True, text=True, timeout=60)
                    self.assertIn(expected, result.stderr)
                    self.assertNotEqual(result.returncode, 0)
        # One that is not run takes nothing.
        with open(self.path("in.csv"), encoding="utf-8") as file:
            result = subprocess.run([PROGRAM, "run", "g.kelvarin", "--to", "c"], cwd=self.folder, stdin=file,
                                    capture_output=True, text=True, timeout=60)
        self.assertEqual(result.returncode, 0, result.stderr)

    def test_a_foreign_file_is_replaced_with_a_warning(self):
        self.make_input()
        self.write("q.csv", "precious")
        self.write("g.kelvarin", graph(SOURCE + "<writeColumnarGel name='a' file='q.csv'/>", ("in a",)))
        for command in ("check", "run"):
            self.assertIn("q.csv' is no columnar file, and it is replaced by one.",
                          self.kelvarin(command, "g.kelvarin").stderr)
        self.assertNotIn("no columnar file", self.kelvarin("run", "g.kelvarin").stderr)

    def test_tables_of_like_names_keep_their_side_files(self):
        for name in "ab":
            self.write(name + ".csv", "v\n" + "".join(f"{name}{i}\n" for i in range(100)))
        for imported, name in (("a", "x.2023"), ("b", "x.2024"), ("a", "p.gel"), ("b", "p.cgel_kelvarin")):
            self.assertIn("rows written to '%s'." % (name.removesuffix(".cgel_kelvarin") + ".cgel_kelvarin"),
                          self.kelvarin("gel", "import", imported + ".csv", name).stderr)
        for imported, name in (("a", "x.2023"), ("b", "x.2024"), ("a", "p.gel"), ("b", "p")):
            self.kelvarin("gel", "export", name + ".cgel_kelvarin", "back.csv")
            self.assertEqual(self.read("back.csv"), self.read(imported + ".csv"), name)
        sink = "<writeColumnarGel name='a' file='y.%s'/>"
        source = "<ReadCSV name='in' file='%s.csv'/>"
        self.write("g.kelvarin", graph(source % "a" + sink % "2023", ("in a",)))
        self.kelvarin("run", "g.kelvarin")
        self.write("g.kelvarin", graph(source % "b" + sink % "2024", ("in a",)))
        self.assertIn("y.2023' has side files of the same names", self.kelvarin("run", "g.kelvarin", status=1).stderr)
        self.kelvarin("gel", "export", "y.2023", "back.csv")
        self.assertEqual(self.read("back.csv"), self.read("a.csv"))

    def test_a_damaged_list_of_an_exchange_is_told_and_nothing_is_touched(self):
        self.make_input()
        self.kelvarin("gel", "import", "in.csv", "t")
        self.write(".t.cgel_kelvarin.exchange", "GLGJ and nonsense")
        self.write("read.kelvarin", graph("<ReadColumnarGel name='in' fileName='t.cgel_kelvarin'/><Discard name='out'/>",
                                          ("in out",)))
        before = {name: self.bytes_of(name) for name in self.files()}
        for arguments in (["gel", "info", "t.cgel_kelvarin"], ["gel", "import", "in.csv", "t"], ["run", "read.kelvarin"]):
            stderr = self.kelvarin(*arguments, status=1).stderr
            self.assertIn(".t.cgel_kelvarin.exchange', is damaged.", stderr)
        self.assertEqual({name: self.bytes_of(name) for name in self.files()}, before)

    def test_the_name_of_the_folder_makes_no_difference(self):
        self.make_input()
        os.mkdir(self.path("kelvarin data"))
        self.write("g.kelvarin", graph(SOURCE + "<writeColumnarGel name='a' file='kelvarin data/x.dat'/>", ("in a",)))
        self.kelvarin("run", "g.kelvarin")
        self.assertEqual(sorted(os.listdir(self.path("kelvarin data"))), ["x.000.cs", "x.dat"])
        os.rename(self.path("kelvarin data/x.000.cs"), self.path("kelvarin data/x.000.cs_kelvarin"))  # as once
        os.rename(self.path("kelvarin data"), self.path("elsewhere"))
        self.assertIn("no damage", self.kelvarin("gel", "verify", "elsewhere/x.dat").stdout)
        self.kelvarin("gel", "export", "elsewhere/x.dat", "back.csv")
        self.assertEqual(self.read("back.csv"), self.read("in.csv"))

    def test_two_processes_that_write_one_table_leave_one_of_the_two(self):
        columns = 60
        for name in "ab":
            self.write(name + ".csv", ",".join(f"c{i}" for i in range(columns)) + "\n"
                       + "".join(",".join(f"{name}{row}" for _ in range(columns)) + "\n" for row in range(40)))
            for end in "01":
                self.write(name + end + ".kelvarin", graph(
                    "<ReadCSV name='in' file='%s.csv'/><writeColumnarGel name='out' file='o.cgel_kelvarin' "
                    "columnStrategy='2' deleteTimeOut='20' replaceAtEnd='%s'/>" % (name, end), ("in out",)))
        for first, second in (("a0", "b0"), ("a1", "b1"), ("a0", "b1")) * 3:
            runs = [subprocess.Popen([PROGRAM, "run", "--quiet", name + ".kelvarin"], cwd=self.folder,
                                     stderr=subprocess.DEVNULL) for name in (first, second)]
            self.assertEqual([run.wait() for run in runs], [0, 0])
            self.assertIn("no damage", self.kelvarin("gel", "verify", "o.cgel_kelvarin").stdout)
            self.kelvarin("gel", "export", "o.cgel_kelvarin", "back.csv")
            self.assertIn(self.read("back.csv"), [self.read("a.csv"), self.read("b.csv")])
            self.assertEqual(len([name for name in os.listdir(self.folder) if "o." in name]), columns + 1)

    def test_what_a_killed_run_has_left_goes_with_the_next_one(self):
        self.make_input()
        self.write("g.kelvarin", graph(SOURCE + "<WriteCSV name='a' file='o.csv'/>", ("in a",)))
        self.kelvarin("run", "g.kelvarin")
        self.assertEqual(self.files(), ["g.kelvarin", "in.csv", "o.csv"])
        leftovers = [".kelvarin-%s-77.part" % mark for mark in (hash_of("o.csv"), hash_of("other.csv"))]
        for name in leftovers:
            self.write(name, "half")
        self.kelvarin("run", "g.kelvarin")
        self.assertEqual(self.files(), [leftovers[1], "g.kelvarin", "in.csv", "o.csv"])


def hash_of(name):
    """The mark of an output in the names of its temporary files."""
    value = 0xCBF29CE484222325
    for byte in name.encode():
        value = (value ^ byte) * 0x100000001B3 % 2**64
    return "%x" % value


if __name__ == "__main__":
    unittest.main()
