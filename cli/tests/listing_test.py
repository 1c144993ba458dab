"""The lists of functions and actions."""

import unittest

from program import ProgramTest

PLUGIN_ACTIONS = ["Calculator", "FilterRows", "ReadColumnarGel", "writeColumnarGel", "CalculatorVectorized"]
HOST_ACTIONS = {"ReadCSV", "WriteCSV", "ReadParquet", "WriteParquet", "ReadArrow", "WriteArrow", "InlineTable", "Discard"}


class ListingTest(ProgramTest):
    def test_actions(self):
        actions = self.kelvarin_json("actions")
        self.assertEqual([a["typeName"] for a in actions[:5]], PLUGIN_ACTIONS)
        self.assertEqual({a["typeName"] for a in actions[5:]}, HOST_ACTIONS)
        self.assertEqual([a["source"] for a in actions], ["plugin"] * 5 + ["host"] * len(HOST_ACTIONS))
        pins = {a["typeName"]: (a["pinsIn"], a["pinsOut"]) for a in actions}
        self.assertEqual([pins[name] for name in ("Calculator", "FilterRows", "writeColumnarGel", "ReadCSV", "WriteArrow")],
                         [(2, 1), (2, 2), (1, 0), (0, 1), (1, 0)])
        calculator = actions[0]
        self.assertEqual(calculator["help"], "5_5_6_calculator_high_speed__")
        self.assertEqual((calculator["version"], calculator["tags"]), (2.08, ["150_Standard"]))
        self.assertEqual(calculator["toolTip"], "Add/update a column based on an expression")
        self.assertIn("Calculator", self.kelvarin("actions").stdout)

    def test_functions(self):
        functions = {f["name"]: f for f in self.kelvarin_json("functions")}
        nvl = functions["nvl"]
        self.assertEqual((nvl["kind"], nvl["signature"], nvl["args"]), ("function", "nvl(a,b)", 2))
        self.assertEqual(nvl["backends"], ["Fastest Parser", "Fast Parser", "String Parser"])
        self.assertEqual(nvl["help"], "nvl(a,b) - if a is null return b, otherwise return a")
        self.assertEqual((functions["_nullS"]["kind"], functions["_nullS"]["args"]), ("constant", None))
        self.assertEqual([f["name"] for f in self.kelvarin_json("functions", "nvl2")], ["nvl2"])
        self.assertIn("Did you mean isNull?", self.kelvarin("functions", "isnull", status=1).stderr)


if __name__ == "__main__":
    unittest.main()
