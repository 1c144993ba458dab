"""Help: every command's fits a screen and has two examples, which run; so do those of the topics."""

import gzip
import os
import re
import shutil
import subprocess
import unittest

from program import PROGRAM, ProgramTest

EXAMPLES = os.path.join(os.path.dirname(__file__), "..", "..", "examples")
# Not commands below, but headings of every help.
OTHER_HEADINGS = {"Options", "Arguments", "Example", "Examples", "Exit status"}
# Examples that show how two things differ end with 1; windows need a screen.
MAY_END_WITH_1 = re.compile(r"kelvarin (graph|gel) diff ")
NEEDS_SCREEN = re.compile(r"kelvarin (gui|edit)\b")


def commands_below(text):
    """The names in the lists of commands."""
    names, heading = [], None
    for line in text.split("\n"):
        if match := re.match(r"^([A-Z][\w ]*):", line):
            heading = match[1]
        elif line == "":
            heading = None
        elif heading and heading not in OTHER_HEADINGS and (match := re.match(r"^  ([a-z][\w-]*)(\s|$)", line)):
            names.append(match[1])
    return names if "SUBCOMMAND" in text.split("Usage:")[-1].split("\n")[0] else []


def examples_of(text):
    joined = text.replace("\\\n", " ")
    part = re.split(r"^Examples?:$", joined, flags=re.MULTILINE)[-1]
    return [line.strip() for line in part.split("\n") if re.match(r"^  (kelvarin|\w.*(\| *|<\()kelvarin) ", line)]


class HelpTest(ProgramTest):
    @classmethod
    def pages(cls):
        """The help of all commands, by their words."""
        found, open_commands = {}, [()]
        while open_commands:
            words = open_commands.pop()
            result = subprocess.run([PROGRAM, *words, "--help"], capture_output=True, text=True, timeout=60)
            assert result.returncode == 0, result.stderr
            found[words] = result.stdout
            open_commands += [(*words, name) for name in commands_below(result.stdout)]
        return found

    def setUp(self):
        super().setUp()
        shutil.copytree(EXAMPLES, self.path("examples"))
        sales = "day,shop,item,price,quantity\n" + "".join(
            f"2024-0{1 + i % 9}-1{i % 9},shop {i % 3},item {i % 7},{i}.5,{i % 4}\n" for i in range(200))
        orders = "id,item,price,quantity\n1,kettle,24.90,2\n2,cup,3.50,12\n3,teapot,39.00,1\n"
        trips = "distance in km,hours\n120,1.5\n"
        for name, text in (("sales.csv", sales), ("orders.csv", orders), ("trips.csv", trips),
                           ("sales.tsv", sales.replace(",", "\t"))):
            self.write(name, text)
        for name, text in (("sales.csv.gz", sales), ("old.csv.gz", "a;b\n1,5;2\n")):
            with gzip.open(self.path(name), "wt") as file:
                file.write(text)
        for name in ("sales", "before", "after"):
            self.kelvarin("gel", "import", "sales.csv", name)
        for name in ("sales", "trips"):
            self.kelvarin("calc", name + ".csv", "-o", name + ".parquet")
        self.kelvarin("calc", "total=price*quantity", "sales.csv", "-o", "-", "--save", "sales.kelvarin", "--no-run")
        os.makedirs(self.path(".config/fish/completions"))
        os.mkdir(self.path("bin"))
        os.symlink(PROGRAM, self.path("bin/kelvarin"))

    def run_example(self, line):
        environment = {**os.environ, "HOME": self.folder, "PATH": self.path("bin") + os.pathsep + os.environ["PATH"]}
        result = subprocess.run(["bash", "-o", "pipefail", "-c", line], cwd=self.folder, capture_output=True, text=True,
                                timeout=60, stdin=subprocess.DEVNULL, env=environment)
        allowed = (0, 1) if MAY_END_WITH_1.match(line) else (0,)
        self.assertIn(result.returncode, allowed, f"{line}\n{result.stdout[-2000:]}\n{result.stderr}")

    def test_every_help_fits_a_screen_and_its_examples_run(self):
        pages = self.pages()
        self.assertGreater(len(pages), 18)
        for words, text in pages.items():
            with self.subTest(" ".join(words)):
                lines = text.rstrip("\n").split("\n")
                self.assertLessEqual(len(lines), 40, text)
                self.assertLessEqual(max(map(len, lines)), 100, max(lines, key=len))
                examples = examples_of(text)
                self.assertGreaterEqual(len(examples), 2, text)
                self.assertTrue(any(" ".join(["kelvarin", *words]) in line for line in examples), text)
                for line in examples:
                    if not NEEDS_SCREEN.match(line) and "git show" not in line:
                        self.run_example(line)

    def test_topics(self):
        overview = self.kelvarin("help").stdout
        self.assertTrue(overview.startswith(self.kelvarin("--help").stdout), overview)
        topics = re.findall(r"^  ([\w-]+) ", overview.split("Topics,")[1], flags=re.MULTILINE)
        self.assertGreaterEqual(set(topics), {"expressions", "types", "dates", "graphs", "csv", "exit-status", "columnar",
                                              "environment", "tests"})
        for topic in topics:
            with self.subTest(topic):
                text = self.kelvarin("help", topic).stdout
                lines = text.rstrip("\n").split("\n")
                self.assertLessEqual((len(lines) <= 48, max(map(len, lines)) <= 100), (True, True), text)
                self.assertGreaterEqual(len(examples_of(text)), 2, text)
                for line in examples_of(text):
                    self.run_example(line)
        self.assertEqual(self.kelvarin("help", "exit", "status").stdout, self.kelvarin("help", "exit-status").stdout)

    def test_help_of_commands_and_unknown_names(self):
        self.assertEqual(self.kelvarin("help", "gel", "head").stdout, self.kelvarin("gel", "head", "--help").stdout)
        for words, near in ((["rnu"], "run"), (["dats"], "dates"), (["gel", "inof"], "info")):
            self.assertIn(f"Did you mean {near}", self.kelvarin("help", *words, status=2).stderr)

    def test_a_line_that_asks_for_nothing_gets_help(self):
        for words in ((), ("gel",), ("graph",)):
            got = self.kelvarin(*words)
            self.assertEqual((got.stdout, got.stderr), (self.kelvarin(*words, "--help").stdout, ""))
        self.assertIn("no option '--quite'", self.kelvarin("gel", "--quite", status=2).stderr)

    def test_version_in_all_its_spellings(self):
        texts = {self.kelvarin(word).stdout for word in ("version", "--version", "-V")}
        self.assertEqual(len(texts), 1)
        self.assertIn("elvarin", texts.pop())

    def test_words_and_numbers_of_other_programs_are_answered(self):
        for words, answer in ((["convert", "a.csv"], "Here it is: kelvarin calc FILE -o"), (["describe"], "kelvarin stats FILE"),
                              (["--quiet", "calc"], "stands behind it: calc --quiet"),
                              (["head", "-n", "few", "x"], "'few' is no whole number of 0 or more"),
                              (["run", "x", "--threads", "0"], "'0' is no whole number from 1 to 1024"),
                              (["head", "x", "--type", "zip=txt"], "'zip=txt' does not say the type")):
            self.assertIn(answer, self.kelvarin(*words, status=2).stderr)

    def test_mistyped_values_get_the_nearest(self):
        self.assertIn("Did you mean fast", self.kelvarin("eval", "1", "--backend", "fats", status=2).stderr)

    def test_rows_as_people_ask_for_them(self):
        self.assertEqual(len(self.kelvarin("gel", "head", "-n", "5", "sales.cgel_kelvarin").stdout.split("\n")), 7)


if __name__ == "__main__":
    unittest.main()
