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

    def test_explains_how_expressions_are_evaluated(self):
        texts = "<Calculator name='t1'><InputVars><InputVar column='x'/><InputVar column='s' isNumber='0'/></InputVars>" \
                "<OutputVars><OutputVar name='u' meta='U'>toupper(s)</OutputVar>" \
                "<OutputVar name='r'>%s</OutputVar></OutputVars></Calculator>"
        condition = "<FilterRows name='f'><InputVars><InputVar column='s' isNumber='0'/></InputVars>" \
                    "<Expression>strlen(s) &gt; 1</Expression></FilterRows>"
        links = ["t t1", "t1 f", "f d"]
        self.write("g.kelvarin", graph(TABLE + texts % "x * 2" + condition + "<Discard name='d'/>", links))
        shown = self.kelvarin("check", "g.kelvarin", "--explain").stdout
        self.assertIn("  t1, u: String Parser (its result is a text), by the batch\n"
                      "  t1, r: Fastest Parser, by the batch\n"
                      "  f, condition: String Parser because of 'strlen', by the batch\n", shown)
        self.assertNotIn("by the batch", self.kelvarin("check", "g.kelvarin").stdout)
        # One expression keeps the others of its action from batches.
        self.write("g.kelvarin", graph(TABLE + texts % "x + rand1()" + condition + "<Discard name='d'/>", links))
        shown = self.kelvarin("check", "g.kelvarin", "--explain", "--quiet").stdout
        self.assertEqual("how a run evaluates the expressions:\n"
                         "  t1, u: String Parser (its result is a text), row by row as the other outputs of the action\n"
                         "  t1, r: Fast Parser because of 'rand1', row by row because of 'rand1'\n"
                         "  f, condition: String Parser because of 'strlen', by the batch\n", shown)
        for command in "check", "run":
            outputs = self.kelvarin_json(command, "g.kelvarin")["actions"][1]["outputs"]
            self.assertEqual([(output["byBatch"], output["batchRefusal"]) for output in outputs],
                             [(False, ""), (False, "rand1")], command)
            self.assertEqual(outputs[0]["nulls"], None if command == "check" else 0)

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
