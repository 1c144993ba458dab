"""Looks into tables: schema, head, tail, sample, count, stats, previews, and what gel knows of its files."""

import json
import os
import re
import subprocess
import unittest

from program import EXAMPLE, PROGRAM, ProgramTest, calculator, graph, open_terminal

ROWS = "".join(f"{i},{i / 4},{'' if i % 7 == 3 else 'name %d' % (i % 5)}\n" for i in range(12000))
TABLE = "id,price,name\n" + ROWS
KINDS = ("t.csv", "t.parquet", "t.arrow", "t.cgel_kelvarin")
DOCUMENT = os.path.join(os.path.dirname(__file__), "../../docs/looking.md")


class LookTest(ProgramTest):
    def make(self):
        self.write("t.csv", TABLE)
        self.kelvarin("gel", "import", "t.csv", "t.cgel_kelvarin", "--quiet", "--rows-in-block", "5000")
        for name in ("t.parquet", "t.arrow"):
            self.kelvarin("gel", "export", "t.cgel_kelvarin", name, "--quiet")

    def on_terminal(self, *arguments, columns):
        """What a terminal of this width gets."""
        person, program = open_terminal()
        with open(person, "rb", closefd=True) as screen:
            process = subprocess.Popen([PROGRAM, *arguments], cwd=self.folder, stdout=program, stderr=subprocess.DEVNULL,
                                       stdin=subprocess.DEVNULL, env=dict(os.environ, COLUMNS=str(columns)))
            os.close(program)
            output = b""
            try:
                while piece := os.read(screen.fileno(), 65536):
                    output += piece
            except OSError:
                pass  # the program has ended
            self.assertEqual(process.wait(timeout=60), 0)
        return output.decode().replace("\r\n", "\n")

    def test_rows_at_both_ends_are_the_same_of_every_kind(self):
        self.make()
        lines = TABLE.splitlines(keepends=True)
        for name in KINDS:
            for count in ("-3", "-n3", "--rows=3"):
                self.assertEqual(self.kelvarin("head", name, count).stdout.replace(".0,", ","),
                                 "".join(lines[:4]).replace(".0,", ","), name)
            self.assertEqual(self.kelvarin("tail", "-n", "7001", name).stdout.replace(".0,", ","),
                             "".join(lines[:1] + lines[-7001:]).replace(".0,", ","), name)
            self.assertEqual(len(self.kelvarin("head", name).stdout.splitlines()), 11)
            self.assertEqual(self.kelvarin("tail", "-0", name).stdout, lines[0])
            self.assertEqual(self.kelvarin("count", name).stdout, "12000\n")
        self.assertEqual(self.kelvarin("gel", "tail", "t.cgel_kelvarin", "-n", "2").stdout.replace(".0,", ","),
                         "".join(lines[:1] + lines[-2:]).replace(".0,", ","))

    def test_chosen_columns_are_the_same_of_every_kind(self):
        self.make()
        for name in KINDS:
            for command in ("head", "tail", "sample", "calc"):
                shown = self.kelvarin(command, name, "--columns", "name,id").stdout.splitlines()
                self.assertEqual(shown[0], "name,id", name)
                self.assertRegex(shown[1], r"^(name \d)?,\d+$")
            self.assertEqual(self.kelvarin("tail", "-1", name, "--columns=name").stdout, "name\nname 4\n")
            self.assertEqual([row["column"] for row in json.loads(self.kelvarin(
                "stats", name, "--columns", "price,id", "--format=json").stdout)], ["price", "id"])
            refused = self.kelvarin("head", name, "--columns", "id,prise", status=1).stderr
            self.assertIn("prise" if name.endswith("gel_kelvarin") else "'prise', which is to be read. Did you mean price?", refused)
        self.write("odd.csv", 'a,"x,y",${z}\n1,2,3\n')
        self.assertEqual(self.kelvarin("head", "odd.csv", "--columns", "${z},x\\,y").stdout, '${z},"x,y"\n3,2\n')
        self.kelvarin("gel", "import", "odd.csv", "odd", "--columns", "${z},a")
        self.assertEqual(self.kelvarin("head", "odd.cgel_kelvarin", "--columns", "${z}").stdout, "${z}\n3\n")

    def test_unreadable_is_about_files_that_have_such_columns(self):
        self.make()
        for name in ("t.parquet", "t.arrow"):
            for rule in ("error", "text", "skip"):
                self.assertEqual(self.kelvarin("head", "-1", name, "--unreadable", rule).stdout, "id,price,name\n0,0,name 0\n")
        for name in ("t.csv", "t.cgel_kelvarin"):
            self.assertIn("--unreadable is about types of Parquet and Arrow files",
                          self.kelvarin("head", name, "--unreadable", "text", status=2).stderr)
    def test_what_does_not_fit_is_read_as_options_say(self):
        self.write("late.csv", "code,a=b\n" + "1,2\n" * 20000 + "x,3\n4\n")
        short = ["--short-rows", "null"]
        got = self.kelvarin("stats", "late.csv", *short, status=1).stderr
        self.assertIn("(--type NAME=text), or say --bad-values null.", got)
        self.assertIn("say --short-rows null.", self.kelvarin("count", "late.csv", status=1).stderr)
        self.assertEqual(self.kelvarin("count", "late.csv", *short).stdout, "20002\n")
        for options, last in ((["--bad-values", "null"], ",3\n4,\n"), (["--type", "code=text"], "x,3\n4,\n"),
                              (["--type", "code=U", "--type", "a=b=text"], "x,3\n4,\n")):
            self.assertEqual(self.kelvarin("tail", "-2", "late.csv", *short, *options).stdout, "code,a=b\n" + last)
        self.assertIn("a=b,text", self.kelvarin("schema", "late.csv", *short, "--type", "a=b=text").stdout)
        self.kelvarin("calc", "x=strlen(code)", "late.csv", "-o", "late.parquet", *short, "--type", "code=text")
        self.assertEqual(self.kelvarin("count", "late.parquet").stdout, "20002\n")
        self.write("zip.csv", "zip\n007\n")
        self.assertIn("say --type 'zip=number'.", self.kelvarin("head", "zip.csv").stderr)
        self.assertIn("<Column name='zip' meta='F'/>", self.kelvarin(
            "run", self.write("g.kelvarin", graph("<ReadCSV name='r' file='zip.csv'/><Discard name='d'/>", ["r d"]))).stderr)

    def test_files_that_look_like_options(self):
        for name in ("-5", "-x"):
            self.write(name, "a\n1\n")
            for words in (["head", "--", name], ["head", "-2", f"./{name}"], ["tail", "-n", "3", "--", name]):
                self.assertEqual(self.kelvarin(*words).stdout, "a\n1\n", words)

    def test_a_sample_depends_on_its_seed_alone(self):
        self.make()
        first = self.kelvarin("sample", "-100", "t.csv", "--seed", "3").stdout
        for name in KINDS:
            for threads in ("1", "3"):
                self.assertEqual(first, self.kelvarin("sample", "-100", name, "--seed=3", "--threads", threads).stdout)
        self.assertNotEqual(first, self.kelvarin("sample", "-100", "t.csv").stdout)
        identifiers = [int(line.split(",")[0]) for line in first.splitlines()[1:]]
        self.assertEqual((len(identifiers), identifiers), (100, sorted(set(identifiers))))
        self.assertTrue(4000 < sum(identifiers) / 100 < 8000)

    def test_statistics_are_those_of_the_values_whatever_the_file(self):
        self.make()
        found = {name: self.kelvarin("stats", name, "--format=json", "--threads", threads).stdout
                 for name, threads in zip(KINDS, "1324")}
        self.assertEqual(len(set(found.values())), 1, found)
        identifier, price, name = json.loads(found["t.csv"])
        self.assertEqual([price[key] for key in ("nulls", "nans", "distinct", "min", "max", "median", "mean")],
                         [0, 0, 12000, 0, 2999.75, 1499.875, 1499.875])
        self.assertAlmostEqual(price["deviation"], 866.0615, 3)
        self.assertEqual((identifier["q25"], identifier["q75"], identifier["quantilesExact"]), (2999.75, 8999.25, True))
        names = [line.split(",")[2] for line in ROWS.splitlines()]
        self.assertEqual([name[key] for key in ("nulls", "distinct", "min", "max", "longest", "times")],
                         [names.count(""), 5, "name 0", "name 4", 6, max(map(names.count, sorted(set(names))[1:]))])
        self.assertIsNone(name["mean"])

    def test_estimates_say_so_and_are_the_same_for_any_number_of_threads(self):
        self.write("t.csv", "n,t\n" + "".join(f"{i},{'often' if i % 9 == 0 else 'text %d' % i}\n" for i in range(100000)))
        first = self.kelvarin("stats", "t.csv", "--format=json").stdout
        for threads in ("1", "2", "5"):
            self.assertEqual(first, self.kelvarin("stats", "t.csv", "--format=json", "--threads", threads).stdout)
        with open(self.path("t.csv"), encoding="utf-8") as file:
            piped = subprocess.run([PROGRAM, "stats", "-", "--format=json"], stdin=file, capture_output=True, text=True,
                                   timeout=60)
        self.assertEqual(first, piped.stdout)
        number, text = json.loads(first)
        for column, distinct in ((number, 100000), (text, 88889)):
            self.assertFalse(column["distinctExact"])
            self.assertLess(abs(column["distinct"] - distinct), 0.03 * distinct)
        self.assertEqual(text["mostFrequent"], "often")
        self.assertTrue(0.8 * 11112 < text["times"] <= 11112)
        self.assertLess(abs(number["median"] - 50000), 300)
        shown = self.kelvarin("stats", "t.csv", "--format=table").stdout
        self.assertIn("~ of distinct values: estimated (HyperLogLog", shown)
        self.assertIn("100000 rows in 't.csv'", shown)

    def test_a_terminal_gets_a_table_of_its_width(self):
        self.write("t.csv", 'number,text,more\n1,null,a\n2.5,,b\n,"",c\n4,\x1b[2J,d\n')
        self.assertEqual(self.on_terminal("head", "t.csv", columns=80),
                         'number  text     more\n'
                         '     1  "null"   a\n'
                         '   2.5  null     b\n'
                         '  null  ""       c\n'
                         '     4  \\x1b[2J  d\n')
        narrow = self.on_terminal("head", "t.csv", columns=20)
        self.assertTrue(narrow.startswith("number  text\n"), narrow)
        self.assertTrue(narrow.splitlines()[-1].startswith("... and 1 more colu"), narrow)
        self.assertTrue(all(len(line) <= 20 for line in narrow.splitlines()), narrow)

    def test_json_keeps_what_csv_cannot(self):
        self.write("t.csv", 'number,text\n1,null\n,"a ""b"""\nnan,\n')
        self.assertEqual(json.loads(self.kelvarin("head", "t.csv", "--format", "json").stdout),
                         [{"number": 1, "text": "null"}, {"number": None, "text": 'a "b"'},
                          {"number": "nan", "text": None}])
        self.assertEqual(self.kelvarin("head", "-0", "t.csv", "--format", "json").stdout, "[]\n")

    def test_standard_input_and_names_that_say_nothing(self):
        self.write("table", "a\tb\n1\t2\n")
        self.assertEqual(self.kelvarin("head", "table").stdout, "a,b\n1,2\n")
        self.assertEqual(self.kelvarin("head", "table", "--from", "tsv").stdout, "a,b\n1,2\n")
        self.make()
        os.rename(self.path("t.parquet"), self.path("parquet"))
        self.assertEqual(self.kelvarin("count", "parquet").stdout, "12000\n")
        self.assertIn("Only CSV and Arrow can be read", self.kelvarin("head", "-", "--from", "parquet", status=2).stderr)
        self.assertIn("no option '--fromat'", self.kelvarin("head", "t.csv", "--fromat", "csv", status=2).stderr)
        self.assertNotEqual(self.run_program("stats", "absent.csv").returncode, 0)
        result = subprocess.run(f"'{PROGRAM}' head -n 12000 t.csv --quiet | head -1", shell=True, cwd=self.folder,
                                capture_output=True, text=True, timeout=60)
        self.assertEqual((result.stdout, result.stderr), ("id,price,name\n", ""))

    def test_schema_of_tables_and_graphs(self):
        self.write("g.kelvarin", graph(
            "<InlineTable name='in' sortedOn='id 0'><Column name='id' meta='K'/><Column name='t' meta='U'/>"
            "<Row><V>1</V><V null='1'/></Row></InlineTable>" + calculator("calc", ["id"], [("name='twice'", "id*2")])
            + "<writeColumnarGel name='out' file='g.cgel_kelvarin'/>", ["in calc", "calc out"]))
        self.assertEqual(self.kelvarin("schema", "g.kelvarin").stdout,
                         "action,output,name,type,sorted\nin,0,id,key,ascending\nin,0,t,text,\n"
                         "calc,0,id,key,ascending\ncalc,0,t,text,\ncalc,0,twice,number,\n")
        self.kelvarin("run", "g.kelvarin")
        self.assertEqual(self.kelvarin("schema", "g.cgel_kelvarin").stdout,
                         "name,type,nulls,sorted\nid,key,false,ascending\nt,text,true,\ntwice,number,false,\n")

    def test_a_preview_shows_rows_and_writes_nothing(self):
        self.write("g.kelvarin", graph(
            "<InlineTable name='a:1'><Column name='n' meta='F'/>" + "".join(f"<Row><V>{i}</V></Row>" for i in range(20))
            + "</InlineTable><FilterRows name='even'><Expression>n%2==0</Expression><InputVars><InputVar column='n'/>"
            "</InputVars></FilterRows><WriteCSV name='out' file='out.csv'/>", ["a:1 even", "even out"]))
        self.assertEqual(self.kelvarin("run", "g.kelvarin", "--preview", "even", "-n", "2").stdout, "n\n0\n2\n")
        self.assertEqual(self.kelvarin("run", "g.kelvarin", "--preview", "even:1", "-n", "2").stdout, "n\n1\n3\n")
        self.assertEqual(self.kelvarin("run", "g.kelvarin", "--preview", "a:1").stdout.count("\n"), 11)
        self.assertEqual(self.files(), ["g.kelvarin"])
        for given, text in (("even:2", "2 output pins"), ("evne", "even"), ("out", "no output pin")):
            self.assertIn(text, self.kelvarin("run", "g.kelvarin", "--preview", given, status=1).stderr)
        self.kelvarin("run", "g.kelvarin", "--preview", "even", "--json", status=2)

    def test_gel_diff_tells_what_differs(self):
        self.make()
        self.assertIn("12000 rows", self.kelvarin("gel", "diff", "t.cgel_kelvarin", "t.cgel_kelvarin").stdout)
        changed = TABLE.splitlines()
        changed[7002] = "7001,-1,other"
        changed[9001] = "9000,-1,name 0"
        self.write("u.csv", "\n".join(changed[:-1]) + "\n")
        self.kelvarin("gel", "import", "u.csv", "u.cgel_kelvarin", "--quiet", "--rows-in-block", "777")
        found = self.kelvarin_json("gel", "diff", "t.cgel_kelvarin", "u.cgel_kelvarin", status=1)
        self.assertEqual(found["rows"], [12000, 11999])
        self.assertEqual(found["differingRows"], {"price": 2, "name": 1})
        self.assertEqual(found["first"], {"row": 7001, "column": "price", "left": 1750.25, "right": -1})
        self.assertEqual(found["columns"], [])
        text = self.kelvarin("gel", "diff", "t.cgel_kelvarin", "u.cgel_kelvarin", status=1).stdout
        self.assertIn("first difference in row 7001, column 'price': 1750.25, -1", text)
        self.write("v.csv", "name,id\nx,1\n")
        self.kelvarin("gel", "import", "v.csv", "v.cgel_kelvarin", "--quiet")
        found = self.kelvarin_json("gel", "diff", "v.cgel_kelvarin", "t.cgel_kelvarin", status=1)
        self.assertEqual([(column["column"], column["difference"]) for column in found["columns"]],
                         [("name", "position"), ("id", "position"), ("price", "onlyRight")])
        self.kelvarin("gel", "diff", "t.cgel_kelvarin", "absent.cgel_kelvarin", status=2)

    def test_gel_layout_adds_up_to_the_files(self):
        self.make()
        pieces = json.loads(self.kelvarin("gel", "layout", "t.cgel_kelvarin", "--format=json").stdout)
        ends = {}
        for piece in pieces:
            self.assertEqual(piece["offset"], ends.get(piece["file"], 0))
            ends[piece["file"]] = piece["offset"] + piece["bytes"]
        self.assertEqual(ends, {name: os.path.getsize(self.path(name)) for name in ("t.cgel_kelvarin", "t.000.cs_kelvarin")})
        self.assertNotIn("nothing refers to it", [piece["what"] for piece in pieces])
        values = [piece for piece in pieces if piece["what"] == "chunk: values"]
        self.assertEqual([(piece["block"], piece["column"]) for piece in values][:4],
                         [(0, "id"), (0, "price"), (0, "name"), (1, "id")])
        with open(self.path("t.000.cs_kelvarin"), "ab") as file:
            file.write(b"more")
        pieces = json.loads(self.kelvarin("gel", "layout", "t.cgel_kelvarin", "--format=json").stdout)
        self.assertEqual(sum(piece["bytes"] for piece in pieces if piece["file"].startswith("t.000")),
                         os.path.getsize(self.path("t.000.cs_kelvarin")))

    def test_gel_stats_are_those_of_the_file(self):
        self.make()
        lines = json.loads(self.kelvarin("gel", "stats", "t.cgel_kelvarin", "--format=json").stdout)
        self.assertEqual(len(lines), 9)
        self.assertEqual({key: lines[5][key] for key in ("row", "rows", "column", "nulls", "min", "max")},
                         {"row": 5000, "rows": 5000, "column": "name", "nulls": True, "min": "name 0", "max": "name 4"})

    def test_every_example_of_the_document_and_of_help_runs(self):
        with open(DOCUMENT, encoding="utf-8") as file:
            text = file.read()
        for name, content in re.findall(r"^```\w+ (\S+)\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
            self.write(name, content)
        examples = 0
        for block in re.findall(r"^```console\n(.*?)^```$", text, re.MULTILINE | re.DOTALL):
            for command, shown in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", block, re.MULTILINE):
                result = subprocess.run(re.sub(r"\bkelvarin (?=[a-z])", f"'{PROGRAM}' ", command), shell=True, cwd=self.folder,
                                        capture_output=True, text=True, timeout=60)
                self.assertEqual(result.stdout, shown, command + "\n" + result.stderr)
                examples += 1
        self.assertGreater(examples, 10)
        for command in ("schema", "head", "tail", "sample", "count", "stats"):
            help_text = self.kelvarin(command, "--help").stdout
            self.assertEqual(help_text.split("Examples:")[1].count("kelvarin " + command), 2, help_text)
            self.assertLessEqual(len(help_text.splitlines()), 32)
        self.assertEqual(self.kelvarin("run", EXAMPLE, "--preview", "late?", "-n", "1").stdout.count("\n"), 2)


if __name__ == "__main__":
    unittest.main()
