"""Computes over tables by expressions on the command line."""

import os
import subprocess
import unittest

from program import PROGRAM, ProgramTest, open_terminal

ORDERS = "id,item,price,quantity\n1,kettle,24.9,2\n2,cup,3.5,12\n3,teapot,39,1\n"
ODD_NAMES = "größe,\"a \"\"b\"\"\",it's,back`tick,and,e,_n\n1,2,3,4,5,6,7\n"


class CalcTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("orders.csv", ORDERS)

    def calc(self, *arguments, status=0, **options):
        return self.kelvarin("calc", *arguments, status=status, **options)

    def rows(self, *arguments, status=0):
        return self.calc(*arguments, status=status).stdout.splitlines()

    def pipe(self, text, *arguments):
        return subprocess.run([PROGRAM, "calc", *arguments], cwd=self.folder, input=text, capture_output=True, text=True,
                              timeout=60)

    def test_names_bind_themselves_and_types_are_inferred(self):
        self.assertEqual(self.rows("total=price*quantity", "grade=total>40?\"high\":\"low\"", "orders.csv", "--filter",
                                   "total >= 40"),
                         ["id,item,price,quantity,total,grade", "1,kettle,24.9,2,49.8,high", "2,cup,3.5,12,42,high"])
        self.calc("n=price", "k:K=id+1", "same=k", "word:text=quantity+1", "t=item//\"!\"", "orders.csv", "-o", "t.cgel_kelvarin")
        columns = self.kelvarin_json("gel", "info", "t.cgel_kelvarin")["columns"]
        self.assertEqual("".join(column["meta"] for column in columns), "FUFF" + "FKKUU")
        self.assertEqual(self.rows("t.cgel_kelvarin", "--filter", "k == 3")[1], "2,cup,3.5,12,3.5,3,3,13,cup!")

    def test_outputs_use_and_replace_those_before_them(self):
        steps = ["price=price*2", "total=price*quantity", "half=quantity/2", "price=price+half", "tax=total*0.1", "more=half"]
        self.assertEqual(self.rows(*steps, "orders.csv", "--save", "g.kelvarin")[:2],
                         ["id,item,price,quantity,total,half,tax,more", "1,kettle,50.8,2,99.6,1,9.96,1"])
        self.assertEqual(self.read("g.kelvarin").count("<Calculator "), 3)
        self.assertIn("there is one of this name before it, and nothing has used that",
                      self.calc("a=1", "a=2", "orders.csv", status=1).stderr)

    def test_every_filter_has_to_be_true(self):
        self.assertEqual(self.rows("orders.csv", "--filter", "price > 3", "--filter", "quantity < 12 # few", "--filter",
                                   "item"), ["id,item,price,quantity", "1,kettle,24.9,2", "3,teapot,39,1"])
        self.assertEqual(self.rows("n=_n", "orders.csv", "--filter", "n > 0", "--filter", "_n < 1")[1:], ["2,cup,3.5,12,1"])

    def test_names_in_backquotes(self):
        self.write("odd.csv", ODD_NAMES)
        self.assertEqual(self.rows("`a sum`=`a \"b\"`+`it's`+`back``tick`+`and`+`größe`", "more=größe+e+`a sum`", "odd.csv",
                                   "--filter", "`_n` == 7 and _n == 0")[1], "1,2,3,4,5,6,7,15,22")
        self.write("t.csv", "unit price,unit_price,n\n2,3,x\n")
        self.assertEqual(self.rows("p=`unit price`*10+unit_price", "t=\"`n`\"//n # `", "t.csv")[1], "2,3,x,23,`n`x")
        self.assertIn("Undefined token", self.kelvarin("eval", "`a`+1", "--var", "a=1", status=1).stderr.replace(
            "Unexpected", "Undefined"))

    def test_errors_point_into_what_was_typed(self):
        self.write("t.csv", "unit price,n\n2,(x\n")
        for expression, mark, text in (
                ("2*`unit price` + prise", "                 ^^^^^", "Undefined token \"prise\" found at position 17"),
                ("2*`unit prise`", "  ^", "Did you mean 'unit price'?"),
                ("`unit price` `unit price`", "             ^^^^^^^^^^^^", "`unit price` * `unit price`"),
                ("n//`unit price", "   ^", "no closing backquote"),
                ("`unit price` + regexMatch(\"a\", n)", "               ^^^^^^^^^^", "`unit price` = 2"),
        ):
            shown = self.calc("x=" + expression, "t.csv", status=1).stderr
            self.assertRegex(shown, r"(?m)^ *" + "".join("\\" + c if c in "`*+()\"" else c for c in expression))
            line = next(line for line in shown.splitlines() if line.strip() == expression)
            self.assertIn("\n" + line[:len(line) - len(expression)] + mark + "\n", shown + "\n")
            self.assertIn(text, shown)
        self.assertIn("error: Filter: Undefined token", self.calc("t.csv", "--filter", "m > 1", status=1).stderr)

    def test_a_saved_graph_does_the_same(self):
        os.mkdir(self.path("data"))
        self.write("data/t.csv", "unit price,n,s\n2,1,a\n3,,b\n")
        arguments = ("x=`unit price`*rate", "r=s//\"<&'\"", "x=x+rand(1)", "data/t.csv", "--filter", "x > 2", "--set", "rate=2",
                     "--opt", "seed=7")
        written = self.calc(*arguments, "-o", "data/out.csv", "--save", "g.kelvarin").stderr
        self.assertIn("info: The graph is saved in 'g.kelvarin'.\n", written)
        self.assertIn("info: 2 rows written to 'data/out.csv'.\n", written)
        expected = self.read("data/out.csv")
        self.assertIn(" file='data/t.csv'", self.read("g.kelvarin"))
        self.assertIn(">unit_price*rate</OutputVar>", self.read("g.kelvarin"))
        os.remove(self.path("data/out.csv"))
        self.assertIn("no problem found", self.kelvarin("check", "g.kelvarin").stdout)
        self.kelvarin("run", "g.kelvarin")
        self.assertEqual(self.read("data/out.csv"), expected)
        self.assertEqual(self.calc(*arguments, "--save", "g.kelvarin").stdout, expected)
        self.assertEqual(self.kelvarin("run", "g.kelvarin", "--quiet").stdout, expected)
        self.assertEqual(self.calc(*arguments, "--save", "g.kelvarin", "--no-run").stdout, "")
        graph = self.pipe("n\n1\n", "m=n+1", "--save", "piped.kelvarin")
        again = subprocess.run([PROGRAM, "run", "piped.kelvarin"], cwd=self.folder, input="n\n1\n", capture_output=True, text=True)
        self.assertEqual((graph.stdout, again.stdout), ("n,m\n1,2\n", "n,m\n1,2\n"))

    def test_standard_input_is_read_once_from_its_start(self):
        rows = "".join(f"{i}\n" for i in range(300000))
        self.assertEqual(self.pipe("n\n" + rows, "m=n*2", "--filter", "n % 100000 == 0").stdout,
                         "n,m\n0,0\n100000,200000\n200000,400000\n")
        self.assertEqual(self.pipe("n\n1\n", "--filter", "n < 3", "-i", "-", "--to", "tsv").stdout, "n\n1\n")
        with open(self.path("orders.csv"), encoding="utf-8") as file:
            shown = subprocess.run([PROGRAM, "calc", "x=_n"], cwd=self.folder, stdin=file, capture_output=True, text=True)
        self.assertEqual(shown.stdout.splitlines()[3], "3,teapot,39,1,2")
        closed = subprocess.run(["sh", "-c", '"$0" calc x=1 <&-', PROGRAM], capture_output=True, text=True, timeout=60)
        self.assertEqual((closed.returncode, "is empty" in closed.stderr), (1, True))
        # Rows go on as they come, behind those from which the types were inferred, where nothing is left to a guess.
        dialect = ("--separator", ",", "--quote", "\"", "--encoding", "UTF-8")
        with subprocess.Popen([PROGRAM, "calc", "m=n*2", *dialect], cwd=self.folder, stdin=subprocess.PIPE, stdout=subprocess.PIPE) as process:
            process.stdin.write(b"n\n" + b"1\n" * 12000)
            process.stdin.flush()
            self.assertEqual([process.stdout.readline() for _ in range(12001)][-1], b"1,2\n")
            process.stdin.close()
        with subprocess.Popen([PROGRAM, "calc", "m=n*2", "--quiet"], cwd=self.folder, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as process:
            process.stdout.close()
            with self.assertRaises(BrokenPipeError):
                process.stdin.write(b"n\n" + rows.encode() * 100)
            self.assertEqual((process.wait(timeout=60), process.stderr.read()), (0, b""))

    def test_what_stands_for_null_is_said_in_words_of_the_command_line(self):
        self.write("t.csv", "n\n1\nNA\n")
        self.assertIn("say --null NA", self.calc("m=n", "t.csv").stderr)
        self.assertEqual(self.rows("m=n+1", "t.csv", "--null", "NA"), ["n,m", "1,2", ","])
        self.write("late.csv", "n\n" + "1\n" * 10000 + "NA\n")
        self.assertIn("say --null NA; else correct it", self.calc("m=n+1", "late.csv", status=1).stderr)
        self.calc("m=n", "t.csv", "--save", "g.kelvarin", "--no-run")
        self.assertIn("set nullText='NA'", self.kelvarin("run", "g.kelvarin").stderr)
        with open(self.path("odd.csv"), "wb") as file:
            file.write(b"a;b\n1;x\n2;\xe9\n")
        self.assertIn("say --encoding windows-1252", self.calc("odd.csv", "--encoding", "UTF-8", status=1).stderr)

    def test_what_is_typed_is_no_parameter(self):
        self.write("${x}.csv", "n,${y}\n1,2\n${x},3\n$,4\n")
        arguments = ("m=n+1", "./${x}.csv", "--null", "${x}", "--null", "$", "--columns", "${y},n", "--set", "x=7")
        expected = ["${y},n,m", "2,1,2", "3,,", "4,,"]
        self.assertEqual(self.rows(*arguments, "--save", "g.kelvarin"), expected)
        self.assertEqual(self.kelvarin("run", "g.kelvarin", "--quiet").stdout.splitlines(), expected)
        self.assertEqual(self.kelvarin("head", "${x}.csv", "--null", "${x}", "--null", "$", "--columns", "n").stdout, "n\n1\n\n\n")

    def test_kinds_of_tables(self):
        self.calc("total=price*quantity", "orders.csv", "-o", "t.parquet")
        self.calc("t.parquet", "-o", "t", "--to", "gel", "--filter", "total > 40")
        self.calc("t.cgel_kelvarin", "-o", "t.arrow")
        self.calc("t.arrow", "-o", "plain", "--to", "parquet")
        self.assertEqual(self.rows("plain", "--to", "tsv")[1], "1\tkettle\t24.9\t2\t49.8")
        self.calc("orders.csv", "-o", "calc.cgel_kelvarin")
        self.kelvarin("gel", "import", "orders.csv", "import.cgel_kelvarin")
        for extension in (".cgel_kelvarin", ".000.cs_kelvarin"):
            with open(self.path("calc" + extension), "rb") as one, open(self.path("import" + extension), "rb") as other:
                self.assertEqual(one.read(), other.read())
        self.write("none.csv", "a,b\n")
        self.assertEqual(self.rows("c=a*2", "d=b//\"x\"", "none.csv", "--filter", "c > 1"), ["a,b,c,d"])
        self.assertIn("No space left on device", self.calc("orders.csv", "-o", "/dev/full", "--to", "csv", status=1).stderr)

    def test_files_by_value_and_types_in_them(self):
        self.calc("big=price>20", "orders.csv", "-o", "by_.parquet", "--split-by", "big", "--store", "big=boolean",
                  "--store", "id=int64")
        self.assertEqual(self.rows("by_1.parquet"), ["id,item,price,quantity,big", "1,kettle,24.9,2,1", "3,teapot,39,1,1"])
        self.assertEqual(self.rows("by_0.parquet")[1:], ["2,cup,3.5,12,0"])
        self.assertIn("tables of the kind csv", self.calc("orders.csv", "-o", "t.csv", "--store", "id=int64", status=2).stderr)
        self.assertIn("--output", self.calc("orders.csv", "--split-by", "id", status=2).stderr)
        message = self.calc("orders.csv", "-o", "t.parquet", "--store", "price=int64", status=1).stderr
        self.assertIn("row 1, column 'price': '24.9' cannot be written with the type int64", message)
    def test_dates(self):
        self.write("due.csv", "the day,n\n05.01.2026,1\n,2\n01.02.2026,3\n")
        dates = ["--date", "the day", "--opt", "dateFormat=dd.MM.yyyy", "--opt", "elapsedTimeUnit=3"]
        line = ["calc", "weekday=etDayOfWeek(`the day`)", "days=`the day`-toET(\"01.01.2026\")", "copy=`the day`",
                "--filter", "`the day`>0", "due.csv", *dates]
        rows = "the day,n,weekday,days,copy\n05.01.2026,1,0,4,%s\n01.02.2026,3,6,31,%s\n"
        found = self.kelvarin(*line).stdout
        copies = [row.split(",")[-1] for row in found.split("\n")[1:3]]
        self.assertEqual(found, rows % tuple(copies))
        self.assertEqual(float(copies[1]) - float(copies[0]), 27)
        self.kelvarin(*line, "--save", "due.kelvarin", "--no-run")
        self.assertEqual(self.kelvarin("run", "due.kelvarin").stdout, found)
        made = ["calc", "first=left(`the day`,10)", "x=first", "due.csv", "--date", "first", *dates[2:]]
        self.assertIn(f"05.01.2026,1,05.01.2026,{copies[0]}\n", self.kelvarin(*made).stdout)
        for column, fault in (("n", "--date n: its values are numbers"), ("the dya", "--date the dya: ")):
            self.assertIn(fault, self.kelvarin("calc", "x=n", "due.csv", "--date", column, status=1).stderr)

    def test_mistakes(self):
        self.write("a=1.csv", "n\n1\n")
        for arguments, status, text in (
                (("a=1.csv",), 1, "There is a file 'a=1.csv'"),
                (("x==3", "orders.csv"), 2, "a condition stands behind --filter"),
                (("price*2",), 1, "'price*2' was taken for the file to read"),
                (("m:Z=1", "orders.csv"), 2, "has the type 'Z'"),
                (("m=", "orders.csv"), 2, "has no expression"),
                (("m=1", "orders.csv", "-o", "t.xyz"), 2, "The extension of 't.xyz'"),
                (("m=1", "orders.csv", "-o", "orders.csv"), 2, "would be replaced by what is made of it"),
                (("m=1", "orders.csv", "--save", "orders.csv"), 2, "would replace the table"),
                (("m=1", "orders.csv", "--to", "gel"), 2, "cannot go to standard output"),
                (("m=price", "orders.csv", "--set", "price=1"), 1, "is a column and a parameter"),
                (("m=1", "orders.csv", "--opt", "sed=1"), 2, "no expression option 'sed'"),
                (("m:F=item", "orders.csv"), 1, "a Number was expected"),
                (("m:K=price", "orders.csv"), 1, "cannot be converted to key on row 0"),
                (("m=1", "order.csv"), 1, "Did you mean 'orders.csv'"),
        ):
            self.assertIn(text, self.calc(*arguments, status=status).stderr, arguments)
        self.assertEqual(self.read("orders.csv"), ORDERS)
        self.assertEqual(self.rows("m=n+1", "-i", "a=1.csv"), ["n,m", "1,2"])
        self.assertEqual(self.rows("m=n+1", "./a=1.csv"), ["n,m", "1,2"])
        master, terminal = open_terminal()
        self.assertIn("standard input is a terminal", subprocess.run(
            [PROGRAM, "calc", "m=1"], stdin=terminal, capture_output=True, text=True, timeout=60).stderr)
        os.close(master)
        os.close(terminal)

    def test_text_in_front_of_rows_is_said_once(self):
        self.write("t.csv", "a,b\n007,\n")
        self.assertEqual(self.calc("c=a//b", "t.csv").stderr.count("007"), 1)


if __name__ == "__main__":
    unittest.main()
