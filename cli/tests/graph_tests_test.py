"""`kelvarin test`: graphs with inputs and expected outputs."""

import os
import signal
import subprocess
import time
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from program import PROGRAM, ProgramTest

GRAPH = """<KelvarinGraph version='1.0'>
  <Parameters><Parameter name='least' value='10'/></Parameters>
  <Actions>
    <ReadCSV name='orders' file='data/orders.csv'/>
    <ReadCSV name='rates' file='../shared/rates.csv'/>
    <Discard name='unused'/>
    <FilterRows name='large'>
      <Expression>price >= least</Expression>
      <InputVars><InputVar column='price'/></InputVars>
    </FilterRows>
    <WriteCSV name='result' file='out/result.csv'/>
    <WriteParquet name='copy' file='out/result.parquet'/>
    <WriteCSV name='shown' file='-'/>
  </Actions>
  <Links>
    <Link from='rates' to='unused'/><Link from='orders' to='large'/><Link from='large' to='result'/>
    <Link from='large' to='copy'/><Link from='large' fromPin='1' to='shown'/>
  </Links>
</KelvarinGraph>
"""
ORDERS = "item,price\ncup,3.5\nkettle,24.9\nteapot,39\n"


class GraphTestsTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.put("g/orders.kelvarin", GRAPH)
        self.put("g/data/orders.csv", ORDERS)
        self.put("g/out/result.csv", "of an earlier run\n")
        self.put("shared/rates.csv", "rate\n1\n")

    def put(self, name, text):
        os.makedirs(os.path.dirname(self.path(name)), exist_ok=True)
        self.write(name, text)

    def case(self, name, settings="", **files):
        """Files by their names, with __ for a slash and _dot_ for a dot."""
        folder = f"g/orders.test/{name}/"
        os.makedirs(self.path(folder), exist_ok=True)
        if settings:
            self.put(folder + "case.xml", settings if settings.startswith("<Case") else f"<Case>{settings}</Case>")
        for file, text in files.items():
            self.put(folder + file.replace("__", "/").replace("_dot_", "."), text)

    def written(self):
        return {path.name: path.read_bytes() for path in Path(self.path("g/out")).iterdir()}

    def lines(self, *arguments, status=0):
        return self.kelvarin("test", "g", *arguments, status=status).stdout.split("\n")

    def test_what_passes_and_leaves_no_trace(self):
        large = "item,price\nkettle,24.9\nteapot,39\n"
        self.case("as it stands", expected__out__result_dot_csv=large, expected__stdout_dot_csv="item,price\ncup,3.5\n",
                  expected__out__result_dot_parquet_dot_csv=large)
        self.case("own input", "<Parameter name='least' value='2'/>", input__data__orders_dot_csv="item,price\npen,2\n",
                  expected__out__result_dot_csv="item,price\npen,2.0\n", expected__stdout_dot_csv="item,price\n")
        self.case("any order", "<Compare file='out/result.csv' tolerance='0.01' anyOrder='1'/>",
                  expected__out__result_dot_csv="item,price\nteapot,39.1\nkettle,24.9\n")
        self.case("must fail", "<Fails message='Column &apos;price&apos; not found'/>", input__data__orders_dot_csv="item\na\n")
        self.case("nothing to compare")
        lines = self.lines("--jobs", "3")
        self.assertEqual(lines[:5], [f"ok    orders/{name}" for name in
                                     ("any order", "as it stands", "must fail", "nothing to compare", "own input")])
        self.assertEqual(self.read("g/out/result.csv"), "of an earlier run\n")
        self.assertEqual(os.listdir(self.path("g/out")), ["result.csv"])
        self.assertIn("5 tests, 0 failed", lines)

    def test_what_fails_says_where(self):
        expected = {
            "value": ("item,price\nkettle,24\nteapot,39\n", "out/result.csv: row 1, column 'price': expected 24, found 24.9"),
            "row": ("item,price\nkettle,24.9\nteapot,39\nvase,50\n", "row 3 is expected and missing: 'vase', 50"),
            "more": ("item,price\nkettle,24.9\n", "row 2 is not expected: 'teapot', 39"),
            "column": ("item,price,size\nkettle,24.9,1\n", "the column 'size' is expected and missing"),
            "extra": ("item\nkettle\n", "the column 'price' is not expected"),
            "order": ("price,item\n24.9,kettle\n", "'price' expected where 'item' is"),
            "null": ("item,price\n,24.9\nteapot,39\n", "column 'item': expected null, found 'kettle'"),
        }
        for name, (text, _) in expected.items():
            self.case(name, expected__out__result_dot_csv=text)
        self.case("absent", expected__out__other_dot_csv="a\n1\n")
        self.case("well", "<Fails message='x'/>")
        self.case("unsaid", "<Says message='no such words'/>")
        self.case("wrong", "<Compares/>")
        self.case("broken", input__data__orders_dot_csv="item,price\na\n")
        text = "\n".join(self.lines(status=1))
        for name, (_, message) in expected.items():
            self.assertRegex(text, rf"FAIL  orders/{name}\n +out/result.csv: ")
            self.assertIn(message, text)
        for part in ("out/other.csv: expected, but the run has not written it", "the run ended well, where it should fail",
                     "no message of the run has the text 'no such words'", "case.xml:1:7: Unknown element <Compares>",
                     f"{self.path('g/data/orders.csv')}", "12 tests, 12 failed"):
            self.assertIn(part, text)
        self.assertNotIn("kelvarin_test_", text)

    def test_a_run_with_seed_and_time_is_repeated(self):
        self.put("g/orders.kelvarin", GRAPH.replace("price >= least", "rand(1) &lt; 0.5 &amp;&amp; _nowS == \"2026-01-31\"").replace(
            "<FilterRows name='large'", "<FilterRows name='large' addNowS='1' dateFormat='yyyy-MM-dd'"))
        kept = {}
        for seed in range(8):
            self.kelvarin("run", "g/orders.kelvarin", "--quiet", "--seed", str(seed), "--now", "2026-01-31T12:00:00Z")
            kept[seed] = self.read("g/out/result.csv")
            self.case(f"seed {seed}", f"<Case seed='{seed}' now='2026-01-31T12:00:00Z'/>", expected__out__result_dot_csv=kept[seed])
        self.assertGreater(len(set(kept.values())), 2)
        for name, case, fault in (("word", "seed='x'", "The seed 'x' is no whole number"), ("day", "now='2026-01-31'", "is no time"),
                                  ("typed", "sead='1'", "Unknown attribute 'sead'. A <Case> has: seed, now.")):
            self.case(name, f"<Case {case}/>")
            self.assertIn(f"case.xml:1:1: {fault}" if name != "day" else fault, "\n".join(self.lines(status=1)))
        self.assertIn("11 tests, 3 failed", self.lines(status=1))

    def test_reports_for_programs(self):
        self.case("good")
        self.case("bad #1", expected__stdout_dot_csv="item,price\ncup,4\n")
        tap = self.kelvarin("test", "g/orders.kelvarin", "--tap", "--junit", "report.xml", status=1).stdout
        self.assertTrue(tap.startswith("TAP version 13\n1..2\nnot ok 1 - orders/bad \\#1\n  ---\n"), tap)
        self.assertIn("\nok 2 - orders/good\n", tap)
        suite = ElementTree.parse(self.path("report.xml")).getroot()
        self.assertEqual((suite.get("tests"), suite.get("failures")), ("2", "1"))
        self.assertEqual([len(case) for case in suite], [1, 0])
        self.assertIn("expected 4, found 3.5", suite[0][0].text)

    def test_columnar_files_are_read_and_compared(self):
        self.kelvarin("gel", "import", "g/data/orders.csv", "g/data/orders.cgel_kelvarin")
        self.put("g/store.kelvarin", GRAPH.replace("<ReadCSV name='orders' file='data/orders.csv'/>",
                                                   "<ReadColumnarGel name='orders' fileName='data/orders.cgel_kelvarin'/>")
                 .replace("<WriteParquet name='copy' file='out/result.parquet'/>",
                          "<writeColumnarGel name='copy' file='out/store.cgel_kelvarin'/>"))
        expected = "g/store.test/expected/out/store.cgel_kelvarin.csv"
        self.put(expected, "item,price\nkettle,24.9\nteapot,39\n")
        # Of an earlier run, which must not be changed by the test.
        self.kelvarin("gel", "import", "g/data/orders.csv", "g/out/store.cgel_kelvarin")
        before = self.written()
        self.assertEqual(self.lines()[0], "ok    store")
        self.put(expected, "item,price\nkettle,24.9\nteapot,38\n")
        self.assertIn("store.cgel_kelvarin.csv: row 2, column 'price': expected 38, found 39", "\n".join(self.lines(status=1)))
        self.assertEqual(self.written(), before)

    def test_update_writes_what_is_expected(self):
        self.case("new")
        self.assertIn("stdout.csv' written", "\n".join(self.lines("--update")))
        self.assertEqual(self.read("g/orders.test/new/expected/stdout.csv"), "item,price\ncup,3.5\n")
        self.assertEqual(sorted(os.listdir(self.path("g/orders.test/new/expected/out"))), ["result.csv", "result.parquet"])
        self.lines()

    def test_one_test_without_a_folder_of_its_own_and_mistakes(self):
        self.put("g/orders.test/expected/stdout.csv", "item,price\ncup,3.5\n")
        self.assertEqual(self.lines()[0], "ok    orders")
        self.assertIn("no tests", self.kelvarin("test", "shared", status=1).stderr)
        os.rename(self.path("g/orders.kelvarin"), self.path("g/other.kelvarin"))
        self.assertIn("orders.kelvarin", self.kelvarin("test", "g", status=1).stderr)

    def test_an_interrupt_ends_all_runs_and_removes_their_folders(self):
        for name in ("one", "two"):
            self.case(name)
        os.remove(self.path("g/data/orders.csv"))
        os.mkfifo(self.path("g/data/orders.csv"))  # which nobody ever writes to
        process = subprocess.Popen([PROGRAM, "test", "g", "--jobs", "2"], cwd=self.folder, stdout=subprocess.PIPE, text=True,
                                   env={**os.environ, "TMPDIR": self.path("shared")})
        while len(os.listdir(self.path("shared"))) < 3:
            time.sleep(0.01)
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.communicate(timeout=20)[0].count("interrupted"), 2)
        self.assertEqual(process.returncode, 130)
        self.assertEqual(os.listdir(self.path("shared")), ["rates.csv"])

    def test_a_graph_that_would_write_elsewhere_is_not_run(self):
        self.put("g/orders.kelvarin", GRAPH.replace("out/result.csv", self.path("elsewhere.csv")))
        self.case("one")
        self.assertIn("'result' would write", "\n".join(self.lines(status=1)))
        self.assertFalse(os.path.exists(self.path("elsewhere.csv")))


if __name__ == "__main__":
    unittest.main()
