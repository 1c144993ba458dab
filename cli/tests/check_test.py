"""What a check finds without running."""

import unittest

from program import EXAMPLE, ProgramTest, calculator, graph

TABLE = "<InlineTable name='t'><Column name='x' meta='F'/><Column name='s' meta='U'/>" \
        "<Row><V>1</V><V>a</V></Row></InlineTable>"


class CheckTest(ProgramTest):
    def check(self, text, status=1):
        self.write("g.kelvarin", text)
        result = self.kelvarin("check", "g.kelvarin", status=status)
        self.assertEqual(self.files(), ["g.kelvarin"])
        return result.stderr

    def test_a_sound_graph(self):
        self.assertIn("no problem found", self.kelvarin("check", EXAMPLE).stdout)

    def test_dates_that_no_format_reads(self):
        filter_on_dates = "<FilterRows name='f' dateFormat='YYYY-MM-DD' referenceTime='20200101 00:00:00'><InputVars>" \
                          "<InputVar column='s' meta='D'/></InputVars><Expression>s &gt; 0</Expression></FilterRows>"
        text = graph(TABLE + filter_on_dates + "<WriteCSV name='o' file='-'/>", ["t f", "f o"])
        advice = "Date format 'YYYY-MM-DD': did you mean 'yyyy-MM-dd'?"
        self.assertIn(advice, self.check(text, status=0))
        run = self.kelvarin("run", "g.kelvarin").stderr
        self.assertIn(advice, run)
        self.assertIn("1 value(s) could not be read and count as missing, the first one 'a' on data row 0", run)

    def test_faults_of_the_graph(self):
        cycle = graph(calculator("a", [], [("name='y'", "1")]) + calculator("b", [], [("name='z'", "1")]),
                      ["a b", "b a"])
        self.assertRegex(self.check(cycle), r"g\.kelvarin:\d+:\d+: .*cycle: .*a.*b")
        missing = graph("<ReadCSV name='r' file='absent.csv'/><Discard name='d'/>", ["r d"])
        self.assertIn("absent.csv", self.check(missing))

    def test_only_the_branch_of_a_variable_table_is_read(self):
        self.write("g.kelvarin", graph(
            TABLE + "<InlineTable name='v'><Column name='alias' meta='U'/><Column name='column' meta='U'/>"
            "<Row><V>speed</V><V>x</V></Row></InlineTable>" + calculator("c", [], [("name='y'", "speed * 2")]) +
            "<Discard name='d'/>", ["t c", "v c.1", "c d"]))
        actions = {a["name"]: a for a in self.kelvarin_json("check", "g.kelvarin")["actions"]}
        self.assertEqual(actions["v"]["rowsOut"], [1])
        self.assertEqual(actions["t"]["rowsOut"], [0])


if __name__ == "__main__":
    unittest.main()
