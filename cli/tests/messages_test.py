"""Messages lead to the cause: where it is, what the values were, what may have been meant, and what to try."""

import re
import shlex
import unittest

from program import ProgramTest, calculator, graph

TABLE = "<InlineTable name='t'><Column name='x' meta='F'/><Column name='s' meta='U'/><Column name='net price' meta='F'/>" \
        "%s</InlineTable>\n"
ROWS = "<Row><V>1</V><V>it's</V><V>9</V></Row><Row><V>2</V><V null='1'/><V>8</V></Row><Row><V>3</V><V>a</V><V>7</V></Row>"
INPUTS = "<InputVars><InputVar column='x'/><InputVar column='s' isNumber='0'/></InputVars>"


def computing(expression, output="name='y'", attributes="", inputs=INPUTS, rows=ROWS):
    return graph(TABLE % rows + f"<Calculator name='c' {attributes}>\n{inputs}\n<OutputVars>\n"
                 f"<OutputVar {output}>{expression}</OutputVar></OutputVars></Calculator><Discard name='d'/>", ["t c", "c d"])


def filtering(expression, attributes=""):
    return graph(TABLE % ROWS + f"<FilterRows name='c' {attributes}>\n<Expression>{expression}</Expression>{INPUTS}"
                 "</FilterRows><Discard name='d'/>", ["t c", "c d"])


class MessagesTest(ProgramTest):
    def said(self, text, command="run", status=1, arguments=()):
        self.write("g.kelvarin", text)
        return self.kelvarin(command, "g.kelvarin", *arguments, status=status).stderr

    def line(self, text, command="run"):
        """The first error or warning of a graph that fails."""
        self.write("g.kelvarin", text)
        log = self.kelvarin_json(command, "g.kelvarin", status=1)["log"]
        return next(line for line in log if line["level"] < 3)

    def test_an_expression_that_does_not_compile(self):
        for command in ("run", "check"):
            said = self.said(computing("x + nope * 2"), command)
            self.assertRegex(said, r'Undefined token "nope" found at position 4')
            self.assertRegex(said, r"g\.kelvarin:8:1: in the output 'y' of the action 'c' \(Calculator\)")
            self.assertIn("\n      x + nope * 2\n          ^^^^\n", said)
            line = self.line(computing("x + nope * 2"), command)
            self.assertEqual((line["action"], line["line"], line["output"], line["token"], line["position"]),
                             ("c", 8, "y", "nope", 4))
        # Reasons are shown in quiet runs, too.
        loud = self.said(computing("x + nope * 2"))
        self.assertEqual(self.said(computing("x + nope * 2"), arguments=["--quiet"]), loud.split("action  ")[0])

    def test_a_row_that_fails(self):
        expression = "s == \"a\" ? s * 2 : x"
        said = self.said(computing(expression))
        self.assertIn("On data row 2 (counted from 0): x = 3, s = \"a\"", said)
        self.assertEqual(self.line(computing(expression))["row"], 2)
        command = re.search(r"Try it: (.*)", said).group(1)
        words = shlex.split(command)
        self.assertEqual(words[:2], ["kelvarin", "eval"])
        again = self.kelvarin(*words[1:], status=1).stderr
        first = re.search(r"named 'y':\n (.*)", said).group(1)
        self.assertIn(first, again)

    def test_no_inner_bytes_of_a_missing_text(self):
        for expression in ("_nullS ? 1 : 2", "(true ? _nullS : s) &amp;&amp; true", "sizeof(_nullS)"):
            said = self.said(computing(expression))
            self.assertIn('Value "null" is of type \'s\'', said)
            self.assertNotRegex(said, "[\x00\ufffd\xff\x7f]|\\\\x")
        said = self.said(computing("isNull(s) ? s * 2 : x"))
        self.assertIn("s = null", said)
        self.assertNotRegex(said, "[\x00\ufffd\xff\x7f]|\\\\x")
        again = self.kelvarin(*shlex.split(re.search(r"Try it: (.*)", said).group(1))[1:], status=1).stderr
        self.assertNotRegex(again, "[\x00\ufffd\xff\x7f]|\\\\x")

    def test_columns(self):
        said = self.said(computing("1", inputs="<InputVars>\n<InputVar column='X '/></InputVars>"))
        self.assertIn("error: Error: Column 'X ' not found\n", said)
        self.assertIn("g.kelvarin:7:1: in the action 'c'", said)
        self.assertIn("Did you mean 'x'? The table's columns: 'x', 's', 'net price'.", said)
        said = self.said(computing("net price * 2", inputs="<InputVars><InputVar column='net price'/></InputVars>"))
        self.assertIn("<InputVar column='net price' label='net_price'/>", said)
        self.assertIn("update='1'", self.said(computing("x", "name='x'")))
        said = self.said(graph(TABLE % ROWS + "<writeColumnarGel name='w' file='w.cgel_kelvarin' split='2' splitVar='z'/>", ["t w"]))
        self.assertIn("The table has no column 'z'. The table's columns: 'x', 's', 'net price'.", said)

    def test_numbers_for_texts_are_warnings_of_a_check(self):
        said = self.said(computing("x", "name='y' meta='U'"), "check", status=0)
        self.assertIn("warning: Math Parser Error in expression named 'y':\n The expression evaluated to a Number and a "
                      "String was expected\n", said)
        self.assertIn("in the output 'y'", said)

    def test_what_is_left_out(self):
        self.assertIn("every row goes to output pin 0", self.said(filtering(""), status=0))
        self.assertIn("'y' has no expression", self.said(computing(""), status=0))
        self.assertIn("The output number 1 (counted from 1) has no name.", self.said(computing("x", "meta='F'")))
        self.assertIn("is assumed", self.said(graph(TABLE % ROWS + "<Calculator name='c'/><Discard name='d'/>", ["t c", "c d"]),
                                              status=0))
        self.kelvarin("gel", "import", self.write("a.csv", "a\n1\n"), "a.cgel_kelvarin")
        for attributes, expression in (("", "a_max > 0"), ("filterRows='1'", "")):
            said = self.said(graph(f"<ReadColumnarGel name='r' fileName='a.cgel_kelvarin' {attributes}><CFilterRows><Expression>"
                                   f"{expression}</Expression><InputVars><CInputVar column='a'/></InputVars></CFilterRows>"
                                   "</ReadColumnarGel><Discard name='d'/>", ["r d"]), status=0)
            self.assertIn("every block is read", said)
            self.assertIn("in the action 'r' (ReadColumnarGel)", said)

    def test_settings_that_others_turn_off(self):
        sink = "<writeColumnarGel name='w' file='w.cgel_kelvarin' splitVar='s' testCol='s'>" \
               "<ColumnStrategy><C n='x' s='0'/></ColumnStrategy></writeColumnarGel>"
        said = self.said(graph(TABLE % ROWS + sink, ["t w"]), "check", status=0)
        for setting in ("split='2'", "writeAllRows='0'", "columnStrategy='1'"):
            self.assertIn(f"no effect without {setting}", said)
        self.assertNotIn("no effect", self.said(graph(TABLE % ROWS + sink, ["t w"]), status=0))

    def test_failed_rows_of_a_filter(self):
        said = self.said(filtering("s == \"a\" ? s * 2 : x", "abortWhenError='0'"), status=0)
        self.assertIn("FilterRows: the expression failed on 1 row(s), which went to output pin 1 (the second pin)", said)
        self.assertIn("data row 2 (counted from 0)", said)
        self.assertIn("in the action 'c' (FilterRows)", said)

    def test_data_cannot_command_the_terminal(self):
        self.write("a.csv", "a\n1\n\x1b]0;title\x07\u202e\u009b2J\n")
        said = self.said(graph("<ReadCSV name='in' file='a.csv'><Column name='a' meta='F'/></ReadCSV><Discard name='d'/>",
                               ["in d"]))
        self.assertIn("\\x1b]0;title\\x07\\u{202e}\\x9b2J", said)
        self.assertIsNone(re.search("[\x00-\x08\x0b-\x1f\x7f-\x9f\u202e]", said))

    def test_the_signs_of_markup_in_an_expression(self):
        for sign in ("x > 1 && x > 2", "x < 2"):
            self.assertIn("&amp;", self.said(computing(sign)))
            self.assertIn("<![CDATA[", self.said(computing(sign)))
        self.said(computing("<![CDATA[x < 2 && x > 1]]>"), status=0)

    def test_what_flows(self):
        self.write("g.kelvarin", computing("x", "name='s' update='1' meta='F'").replace(
            "</OutputVars>", "<OutputVar name='k' meta='K'>x</OutputVar></OutputVars>"))
        self.assertIn("  t (InlineTable): 3 columns: x F, s U, net price F\n  c (Calculator): 4 columns: ~ s F, + k K\n",
                      self.kelvarin("check", "g.kelvarin").stdout)
        actions = self.kelvarin_json("check", "g.kelvarin")["actions"]
        self.assertEqual(actions[1]["pins"], [{"columns": [{"name": "x", "meta": "F"}, {"name": "s", "meta": "F"},
                                                           {"name": "net price", "meta": "F"}, {"name": "k", "meta": "K"}]}])


if __name__ == "__main__":
    unittest.main()
