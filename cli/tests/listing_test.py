"""The lists of functions and actions."""

import re
import subprocess
import unittest

from program import PROGRAM, ProgramTest, graph

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

    def test_one_action_with_its_attributes_and_elements(self):
        page = self.kelvarin("actions", "Calculator").stdout
        self.assertTrue(page.startswith("Calculator: Add/update a column based on an expression\n"), page)
        for part in ("  Pins       2 in, 1 out\n", "Attributes of <Calculator>\n", "(0, 1 or 2; default 2)",
                     "<InputVar> inside <InputVars>, any number\n", "Its text is the expression.", "(a whole number; default -1)"):
            self.assertIn(part, page)
        (read,) = self.kelvarin_json("actions", "ReadCSV")
        self.assertEqual([a["name"] for a in read["attributes"]],
                         ["file", "separator", "quote", "header", "nullText", "encoding", "nullTexts", "decimal",
                          "thousands", "skipLines", "comment", "short", "long", "fileColumn", "sortedOn", "columns", "onBadValue"])
        self.assertEqual(read["attributes"][3], {"name": "header", "type": "flag", "values": "0 or 1", "default": "1",
                                                 "meaning": "the first line has the column names"})
        column = read["children"][0]
        self.assertEqual((column["name"], column["repeats"], column["text"]), ("Column", True, ""))
        self.assertEqual(column["attributes"][1]["values"], "F (number), K (key) or U (text)")
        self.assertRegex(self.kelvarin("actions", "readcsv", status=1).stderr, "did you mean ReadCSV")

    def test_the_example_of_every_action_runs(self):
        actions = self.kelvarin_json("actions")
        examples = {action["typeName"]: action["example"] for action in actions}
        table = ("<InlineTable name='rows'><Column name='item'/><Column name='price' meta='F'/>"
                 "<Column name='fee' meta='F'/><Row><V>cup</V><V>3.5</V><V>1</V></Row></InlineTable>")
        sinks = ("<WriteCSV name='a' file='prices.csv'/><WriteParquet name='b' file='prices.parquet'/>"
                 "<WriteArrow name='c' file='prices.arrow'/><writeColumnarGel name='d' file='prices.cgel_kelvarin'/>")
        self.kelvarin("run", self.write("files.kelvarin", graph(table + sinks, ["rows a", "rows b", "rows c", "rows d"])))
        for action in actions:
            with self.subTest(action["typeName"]):
                example = action["example"]
                name = re.search("name='(.*?)'", example)[1]
                before, after = action["pinsIn"] > 0, action["pinsOut"] > 0
                extra = "<Discard name='last'/>" if after else ""
                links = [f"rows {name}"] * before + [f"{name} last"] * after
                if action["typeName"] == "CalculatorVectorized":
                    extra += ("<InlineTable name='vectors'><Column name='alias'/><Column name='column'/>"
                              "<Row><V>amount</V><V>price</V></Row><Row><V>amount</V><V>fee</V></Row></InlineTable>")
                    links.append(f"vectors {name}.1")
                text = graph((table if before else "") + example + extra, links)
                run = self.kelvarin("run", self.write("g.kelvarin", text))
                self.assertNotIn("warning", run.stderr)
                self.assertIn(example, self.kelvarin("actions", action["typeName"]).stdout)

    def test_a_reader_that_goes_away_is_no_crash(self):
        for command in ("functions", "actions"):
            process = subprocess.Popen([PROGRAM, command], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            process.stdout.close()
            self.assertEqual(process.stderr.read(), b"")
            process.stderr.close()
            self.assertGreaterEqual(process.wait(timeout=60), 0)

    def test_functions(self):
        functions = {f["name"]: f for f in self.kelvarin_json("functions")}
        nvl = functions["nvl"]
        self.assertEqual((nvl["kind"], nvl["group"], nvl["signature"], nvl["args"]),
                         ("function", "Special", "nvl(x,y)", 2))
        self.assertEqual(nvl["backends"], ["Fastest Parser", "Fast Parser", "String Parser"])
        self.assertEqual(nvl["help"], "nvl(a,b) - if a is null return b, otherwise return a")
        self.assertEqual(nvl["comment"], "if x is NULL return y, otherwise return x")
        self.assertEqual((functions["_nullS"]["kind"], functions["_nullS"]["args"]), ("constant", None))
        self.assertEqual((functions["sum"]["args"], functions["atan2"]["args"]), (None, 1))
        self.assertEqual((functions["{k}"]["kind"], functions["//"]["kind"]), ("postfix", "operator"))
        groups = list(dict.fromkeys(f["group"] for f in functions.values()))
        self.assertEqual(groups[:3] + groups[8:9], ["On Numbers", "On Strings", "String Encode/Decode", "Special"])

    def test_one_function_with_its_notes(self):
        text = self.kelvarin("functions", "hdist2").stdout
        self.assertTrue(text.startswith("hdist2(lat1Lon1,lat2Long2) - return earth distance\n"))
        for part in ("Arguments  2\n", "Back-ends  String Parser\n", "Null       A null in any argument gives null.",
                     "gives  264.59", "round((lat + 90) * 1e5) * 1e8 + round((lon + 180) * 1e5)"):
            self.assertIn(part, text)
        self.assertIn("natural logarithm", self.kelvarin("functions", "log").stdout)
        self.assertIn("unary minus", self.kelvarin("functions", "--", "-").stdout)

    def test_search(self):
        for words, name in (("days between", "dateDiffInDay"), ("day of the week", "dateDayOfWeek"), ("UPPERCASE", "toupper"),
                            ("random integer", "randN"), ("end of month", "dateEOM"), ("square root", "sqrt"),
                            ("replace missing value", "nvl"), ("length of text", "strlen"), ("regexp group", "regexExtract")):
            with self.subTest(words):
                found = [function["name"] for function in self.kelvarin_json("functions", *words.split())]
                self.assertIn(name, found[:3])
                self.assertIn(f"  {name}", self.kelvarin("functions", words).stdout)
        self.assertRegex(self.kelvarin("functions", "round").stdout, "^round.*\n(.*\n)+  See also +round2, roundUp, roundDown\n")
        self.assertIn("more\n", self.kelvarin("functions", "return").stdout)

    def test_names_from_elsewhere_and_misspellings(self):
        for foreign, name in (("IFNULL", "nvl"), ("len", "strlen"), ("EOMONTH", "dateEOM"), ("ROUNDUP", "roundUp"),
                              ("IF", "?:"), ("CONCAT", "//"), ("INSTR", "indexOf"), ("MOD", "%"), ("isnull", "isNull")):
            self.assertEqual(self.kelvarin_json("functions", foreign)[0]["name"], name)
        self.assertIn('atof(datePrint(date, "yyyy"))', self.kelvarin("functions", "YEAR").stdout)
        self.assertRegex(self.kelvarin("functions", "isNlul", status=1).stderr, "Did you mean .*isNull")
        self.assertIn("'kelvarin functions'", self.kelvarin("functions", "qqqqqqqqqqqq", status=1).stderr)


if __name__ == "__main__":
    unittest.main()
