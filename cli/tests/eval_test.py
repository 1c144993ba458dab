"""Expressions on the command line."""

import unittest

from program import ProgramTest


class EvalTest(ProgramTest):
    def test_plain_results(self):
        for arguments, shown in ((["1 + 2"], "3"), (["x / 3", "--var", "x=1"], "0.3333333333333333"),
                                 (['s // "!"', "--text", "s=héé"], "héé!"), (["x", "--null", "x"], "null"),
                                 (["--var", "x=2", "--", "-x"], "-2")):
            self.assertEqual(self.kelvarin("eval", *arguments).stdout, shown + "\n")

    def test_json_of_every_type(self):
        def value(*arguments):
            return self.kelvarin_json("eval", *arguments)

        self.assertEqual(value("2 * 3", "--backend", "fast"), {"value": 6, "type": "number", "backend": "Fast Parser"})
        self.assertEqual(value("k + 1", "--var", "k=4", "--meta", "K")["type"], "key")
        self.assertEqual(value("s", "--text", "s=")["value"], "")
        self.assertEqual(value("s", "--text", "s=", "--null", "s")["value"], None)
        self.assertEqual(value("s", "--text", "s=", "--null", "s")["type"], "text")
        for word in ("nan", "inf", "-inf"):
            self.assertEqual((value("x", "--var", "x=" + word)["value"], value("x", "--var", "x=" + word)["special"]),
                             (word, True))
        self.assertEqual(value("x + 1", "--var", "x=1", "--meta", "U")["value"], "2")

    def test_rows_count(self):
        self.assertEqual(self.kelvarin("eval", "_n * 2", "--rows", "3").stdout, "0\n2\n4\n")
        rows = self.kelvarin_json("eval", "_n == 1 ? _infinity : _n", "--rows", "3")
        self.assertEqual((rows["values"], rows["special"]), ([0, "inf", 2], [1]))

    def test_failures_have_text_token_and_position(self):
        error = self.kelvarin_json("eval", "1 + nope", status=1)
        self.assertEqual((error["token"], error["position"]), ("nope", 4))
        self.assertIn("\n  Error Token:nope\n  Error at position:4", error["error"])
        # A back-end that is asked for is not replaced by another.
        self.kelvarin_json("eval", '"a"', "--backend", "fast", status=1)
        self.assertEqual(self.kelvarin_json("eval", "1", "--backend", "string")["backend"], "String Parser")

    def test_options_reach_the_expression(self):
        key = ["eval", "x", "--var", "x=-1", "--meta", "K"]
        self.assertIn("Out of range: variable", self.kelvarin_json(*key, status=1)["error"])
        self.assertEqual(self.kelvarin_json(*key, "--opt", "castToKey1=1")["value"], None)
        self.assertEqual(self.kelvarin_json(*key, "--opt", "castToKey1=0")["value"], 0)

    def test_wrong_usage(self):
        for arguments in (["x", "--var", "x=one"], ["1", "--opt", "colour=red"], ["1", "--opt", "addN=2"],
                          ["1", "--meta", "Z"], ["x", "--var", "x=1", "--text", "x=1"]):
            self.assertIn("error: ", self.kelvarin("eval", *arguments, status=2).stderr)

    def test_hostile_expressions_end(self):
        for expression in ("(" * 10000 + "1" + ")" * 10000, "1+" * 20000 + "1", "eye(2147483648)", '"\\', "1,2"):
            self.assertTrue(self.kelvarin_json("eval", expression, status=1)["error"])


if __name__ == "__main__":
    unittest.main()
