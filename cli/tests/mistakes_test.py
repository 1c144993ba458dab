"""Typing errors and misuses: each gets an answer that leads to what was meant, a check the same as a run."""

import os
import subprocess
import tempfile
import unittest
from concurrent.futures import ThreadPoolExecutor
from xml.sax.saxutils import escape

from program import PROGRAM

TABLE = "id,name,price,qty,day,net price\n1,Ann,2.5,3,2024-01-31,9\n2,Bob,,4,2024-02-29,8\n"
READ, WRITE, LINKS = "<ReadCSV name='in' file='in.csv'/>", "<WriteCSV name='out' file='out.csv'/>", ("in c", "c out")
INPUTS = "".join(f"<InputVar column='{name}' isNumber='{number}'/>"
                 for name, number in (("id", 1), ("price", 1), ("qty", 1), ("name", 0), ("day", 0)))


def graph(action, links=LINKS, read=READ, write=WRITE, top=""):
    ends = "".join("<Link from='%s' to='%s'/>" % tuple(link.split()) for link in links)
    return f"<KelvarinGraph version='1.0'>\n{top}<Actions>\n{read}\n{action}\n{write}\n</Actions>\n<Links>{ends}</Links>\n" \
           "</KelvarinGraph>\n"


def computing(expression, output="name='y'", head="", inputs=INPUTS):
    return f"<Calculator name='c' {head}><InputVars>{inputs}</InputVars><OutputVars><OutputVar {output}>" \
           f"{escape(expression)}</OutputVar></OutputVars></Calculator>"


def filtering(expression):
    return f"<FilterRows name='c'><Expression>{escape(expression)}</Expression><InputVars>{INPUTS}</InputVars></FilterRows>"


ONE = computing("1")
ONE_PRICE = computing("price", inputs="<InputVar column='price'/>")

# The expression, and what the answer holds. All fail but the last group.
NAMES = [
    ("prcie * 2", "Did you mean price?"), ("quantity * 2", "The variables are: price, x, name"), ("null", "use _null"),
    ("if(price > 2, 1, 0)", "use ?:"), ("len(name)", "use strlen"), ("length(name)", "use strlen"), ("NULL", "isNull(x)"),
    ("upper(name)", "use toupper"), ("concat(name, \"x\")", "use //"), ("name == Bob", 'written "Bob"'),
    ("today()", "use _nowS"), ("now()", "use _now"), ("none", 'written "none"'), ("TRUE", "use true"),
    ("date(2024,1,31)", "toDate"), ("coalesce(x,1)", "use nvl"), ("regex(name,\"a\")", "use regexMatch or"),
    ("other + 1", "--var other=1", "--text other=abc"), ("foo(2)", "--var foo=1"),
]
SIGNS = [
    ("price * * 2", "Here:\n  price * * 2\n          ^"), ("(price + 2", "Missing parenthesis"), ("price +", "end of expression"),
    ("price + 2)", "Unexpected parenthesis"), ("price > 2 then 1 else 0", "(condition ? a : b)"), ("“Ann”", "straight double"),
    ("price × 2", "x * y"), ("price – 2", "minus of the keyboard"), ("3,5 + 1", "3.5"), ("price => 3", ">="),
    ("price =< 3", "<="), ("price ! = 3", "'=' assigns"), ("price > 1 ? 1", "else clause"), ("price; 2", "commas"),
    ("5 mod 2", "x % y"), ("10%", "x / 100"), ("a.b", "no points"), ("sum(1;2)", "commas"), ("not x", "not(x)"),
    ("case when x then 1 end", "(condition ? a : b)"), ("x++", "x + 1"), ("price AND x", "small letters"),
    ("price 2", "price * 2"), ("2price", "2 * price"), ("price(2)", "price * (...)"), ("(x)(2)", "(...) * (...)"),
    ("name \"a\"", 'name // "a"'), ("1.000.000", "1000000"), ("1 000 000", "1000000"), ("1,000,000", "1000000"),
    ("1e400", "too large"), ('name // "abc', "opens at position 8", "\n          ^\n"), ("", "The expression is empty"),
]
CALLS = [
    ("substr(name, 0)", "substr(x,s,l)"), ("left(name)", "left(x,l)"), ("max()", "max(x,y,z...)"), ("sqrt()", "sqrt(x)"),
    ("sqrt(1,2)", "sqrt(x)"), ("randN()", "randN(x)"), ("round(price, 2)", "round2(x,d)"), ("trim(name, \"A\")", "trim2(x,y)"),
    ("indexOf(name, \"n\", 1)", "indexOf2(x,y,p)"), ("lastIndexOf(name, \"n\", 1)", "lastIndexOf2(x,y,p)"),
    ("substring(name, 1)", "right(x, strlen(x) - s)"), ("itoa(atan2(1, 2))", "from numbers alone"), ("log(8, 2)", "ln(x) / ln(b)"),
]
TYPES = [
    ("name + \"x\"", "a // b"), ("name & \"x\"", "atof(s)"), ("\"a\" > 1", "double quotes"), ("\"2024\" - 1", "atof(s)"),
    ("x and price", "isTrue(x)"), ("name // 1", "itoa(x)"), ("toET(\"2024-01-31\")", "--opt dateFormat=yyyy-MM-dd"),
]
EVALUATED = [
    ("price = 3", "'=='"), ("3 < price < 5", "'3 < price && price < 5'"), ("x == price == 3", "'x == price && price == 3'"),
]

# The graph, the status of both a run and a check, and what their answers hold.
EXPRESSIONS_OF_GRAPHS = [
    (graph(computing("price * quantity")), 1, "Here:", "kelvarin eval"),
    (graph(computing("price", inputs="<InputVar column='Price'/>")), 1, "Did you mean 'price'?"),
    (graph(computing("price", inputs="<InputVar column='price '/>")), 1, "Did you mean 'price'?"),
    (graph(computing("net price * 2", inputs="<InputVar column='net price'/>")), 1, "label='net_price'"),
    (graph(computing("price + 1", inputs="")), 1, "Add <InputVar column='price'/>"),
    (graph(computing("day + 1")), 1, "atof(s)"), (graph(computing("name")), 1, "meta='U'"),
    (graph(computing("${minimum}")), 1, "without ${...}"), (graph(computing("price 2")), 1, "price * 2"),
    (graph(computing("qty", "name='qty'")), 1, "update='1'"), (graph(computing("qty", "name='y' update='1'")), 1, "no column 'y'"),
    (graph(computing("qty", "")), 1, "has no name"), (graph(computing("")), 0, "no expression"),
    (graph(computing("price", "name='y' meta='f'")), 0, "counts as U"),
    (graph(computing("1 < price < 3")), 0, "do not chain"),
    (graph(filtering("name = \"Ann\"")), 0, "'=='", "The assigned value is the condition"),
    (graph(filtering("day")), 0, "the condition is a text"), (graph(filtering("price > 2 AND qty > 1")), 1, "small letters"),
    (graph(filtering("id < 2").replace("&lt;", "<")), 1, "write & as &amp; and < as &lt;"),
    (graph(filtering("price > \"2\"")), 1, "atof(s)"), (graph(filtering("name == \"Ann\" || 1")), 1, "isTrue(x)"),
    (graph(computing("toET(day)", head="dateFormat='yyyy-mm-dd'")), 0, "did you mean 'yyyy-MM-dd'?", "No reference time"),
    (graph(computing("toET(day)", head="dateFormat='yyyy-MM-dd' referenceTime='2000-01-01'")), 0, "20000101 00:00:00"),
    (graph(computing("toET(day)", head="dateFormat='yyyy-MM-dd' referenceTime='noon'")), 0, "'noon'", "yyyyMMdd hh:mm:ss"),
    (graph(computing("toET(day)", head="dateformat='yyyy-MM-dd'")), 1, "Did you mean dateFormat", "Date format is unknown"),
]
STRUCTURES = [
    (graph(ONE.replace("</OutputVars>", "<Output>2</Output></OutputVars>")), 1, "Unknown element <Output>"),
    (graph(ONE.replace("OutputVars>", "Outputs>")), 1, "Did you mean <OutputVars>?"),
    (graph(ONE.replace("Calculator", "calculator")), 1, "did you mean Calculator?"),
    (graph(ONE.replace("Calculator", "Calculate")), 1, "did you mean Calculator?"),
    (graph(ONE, ("in C", "c out")), 1, "did you mean 'c'?"), (graph(ONE, ("in c",)), 1, "Nothing is linked"),
    (graph(ONE, ("c out",)), 0, "Nothing is linked"), (graph(ONE, ("c in", "c out")), 1, "no input pins"),
    (graph(ONE, ("in c", "in c", "c out")), 1, "linked already"), ("hello", 1, "no graph file", "<KelvarinGraph version='1.0'>"),
    ("", 1, "no XML element"), (graph(ONE)[:-20], 1, "ends before"),
    (graph(ONE).replace("name='out'", "name='in'"), 1, "is taken"),
    (graph("<InlineTable name='t'><Column name='a' meta='F'/><Row><V>x</V></Row></InlineTable>", ("in out",)), 1, "not a number"),
    (graph("<InlineTable name='t'><Column name='a'/><Row><V>1</V><V>2</V></Row></InlineTable>", ("in out",)), 1, "2 values"),
]
GEL = "<writeColumnarGel name='c' file='t.cgel_kelvarin' %s/>"
FILES = [
    (graph(ONE, read="<ReadCSV name='in' file='In.csv'/>"), 1, "Did you mean 'in.csv'?"),
    (graph(ONE, read="<ReadCSV name='in' file='in.cvs'/>"), 1, "Did you mean 'in.csv'?"),
    (graph(ONE, read="<ReadParquet name='in' file='in.cvs'/>"), 1, "Did you mean 'in.csv'?"),
    (graph(ONE, read="<ReadColumnarGel name='in' fileName='in.cvs'/>"), 1, "does not exists", "Did you mean 'in.csv'?"),
    (graph(ONE, read="<ReadCSV name='in' file='sales.csv'/>"), 1, "Its folder has, for instance, 'in.csv'"),
    (graph(ONE, read="<ReadCSV name='in' file='no/such/in.csv'/>"), 1, "There is no folder", "/no'"),
    (graph(ONE, read="<ReadCSV name='in' file='in.csv/x.csv'/>"), 1, "is a file, not a folder"),
    (graph(ONE, read="<ReadCSV name='in'/>"), 1, "no file is given"), (graph(ONE, write="<WriteCSV name='out'/>"), 1, "no file is given"),
    (graph(ONE, write="<WriteCSV name='out' file='nowhere/out.csv'/>"), 1, "nowhere"),
    (graph(ONE, write="<WriteParquet name='out' file='out.csv'/>"), 0, "written as a Parquet file", ".csv"),
    (graph(ONE, write="<WriteCSV name='out' file='out.parquet'/>"), 0, "written as CSV", ".parquet"),
    (graph(ONE, write="<writeColumnarGel name='out' file='out.csv'/>"), 0, "written as a columnar file", ".csv"),
    (graph(ONE, read="<ReadParquet name='in' file='in.csv'/>"), 1, "looks like a text file; ReadCSV"),
    (graph(ONE, read="<ReadArrow name='in' file='g.kelvarin'/>"), 1, "looks like a graph file"),
    (graph(ONE, read="<ReadColumnarGel name='in' fileName='in.csv'/>"), 1, "looks like a text file; ReadCSV"),
    (graph(ONE, read="<ReadColumnarGel name='in' file='in.csv'/>"), 1, "Did you mean fileName"),
    (graph(ONE_PRICE, read="<ReadCSV name='in' file='in.csv' separator=';'/>"), 1, "Is separator=',' meant?"),
    (graph(ONE_PRICE, read="<ReadCSV name='in' file='in.csv' header='0'/>"), 1, "'col1'"),
    (graph(ONE, read="<ReadCSV name='in' file='in.csv'><Column name='prize' meta='F'/></ReadCSV>"), 1, "Its columns are"),
    (graph(ONE, read="<ReadCSV name='in' file='in.csv'><Column name='name' meta='F'/></ReadCSV>"), 1, "'Ann' is not a number"),
    (graph(GEL % "split='2' splitVar='nme'", ("in c",), write=""), 1, "Did you mean 'name'?"),
    (graph(GEL % "writeAllRows='0' testCol='naem' testValue='Ann'", ("in c",), write=""), 1, "Did you mean 'name'?"),
    (graph(GEL % "nRowsInBlock='0'", ("in c",), write=""), 1, "is not 1 or more"),
]

# The CSV file, the status for a graph that doubles its prices, and what the answers hold.
DATA = [
    ("id,price\n1\n", 1, "'price' is missing"), ("id;price\n1;2,5\n", 1, "Is separator=';' meant?"),
    ("id,price,price\n1,2,3\n", 1, "several columns"), ('id,price\n1,"2.5\n', 1, "never closed"), ("", 1, "is empty"),
    ('id,price\n1,"2,5"\n', 0, "before their decimals"), ("id,price\n1,€2.5\n", 0, "olumn 'price'"),
    ("id,price\n1,N/A\n2,3\n", 0, "nullText='N/A'"), ("ID,Price\n1,2\n", 1, "Did you mean 'Price'?"),
    ("id, price\n1,2\n", 1, "' price' begins or ends with a blank"),
]

# The arguments, the status, and what the answer holds.
COMMANDS = [
    (["rnu", "g.kelvarin"], 2, "Did you mean run?"), (["run"], 2, "GRAPH is required"), (["run", "in.csv"], 1, "no graph file"),
    (["check", "h.kelvarin"], 1, "Did you mean 'g.kelvarin'?"), (["check", "missing.kelvarin"], 1, "'g.kelvarin'"),
    (["run", "g.kelvarin", "--qiet"], 2, "Did you mean --quiet"), (["eval"], 2, "EXPR is required"),
    (["eval", '-"a"'], 2, "kelvarin eval -- '-\"a\"'"), (["functions", "sbustr"], 1, "Did you mean substr?"),
    (["gel", "info", "in.csv"], 1, "looks like a text file"), (["gel", "info", "in.cvs"], 1, "Did you mean 'in.csv'?"),
    (["gel", "inof", "x"], 2, "Did you mean info?"), (["gel", "import", "in.csv"], 2, "FILE is required"),
    (["gel", "import", "imn.csv", "x"], 1, "Did you mean 'in.csv'?"), (["gel", "export", "ni.csv", "x.csv"], 1, "Did you mean 'in.csv'?"),
    (["gel", "head", "in.csv", "--rows", "many"], 2, "no whole number"), (["eval", "1", "--opt", "sede=1"], 2, "There are: castToKey1"),
    (["eval", "1", "--backend", "fat"], 2, "auto,fastest,fast,string"), (["eval", "1", "--opt", "seed=x"], 2, "whole number"),
    (["eval", "1", "--var", "a=b"], 2, "not a number"), (["eval", "1", "--var", "a"], 2, "NAME=VALUE"),
    (["eval", "1", "--meta", "Q"], 2, "not in {F,K,U}"), (["actions", "--jsn"], 2, "Did you mean --json?"),
    (["--verison"], 2, "Did you mean --version?"), (["run", "g.kelvarin", "--set", "x"], 2, "NAME=VALUE"),
    (["run", "g.kelvarin", "--set", "minprice=4"], 1, "it declares: minPrice"),
]


def answers(calls, document="", table=TABLE):
    """The status and the messages of each call, in a folder with a table and a graph."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in (("in.csv", table), ("g.kelvarin", document)):
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write(text)
        return [(result.returncode, result.stderr) for result in
                (subprocess.run([PROGRAM, *call], cwd=folder, capture_output=True, text=True, timeout=60,
                                stdin=subprocess.DEVNULL) for call in calls)]


class MistakesTest(unittest.TestCase):
    def see(self, cases):
        """A case is a name, the arguments of answers(), the status and the fragments."""
        with ThreadPoolExecutor(4) as pool:
            results = list(pool.map(lambda case: answers(*case[1]), cases))
        for (name, _, status, fragments), found in zip(cases, results):
            for found_status, text in found:
                with self.subTest(name):
                    self.assertEqual(found_status, status, text)
                    for fragment in ("error: " if status else ": ", *fragments):
                        self.assertIn(fragment, text)

    def see_expressions(self, cases, status):
        known = ["--var", "price=3", "--var", "x=1", "--text", "name=Ann"]
        self.see([(text, ([["eval", text, *known]],), status, fragments) for text, *fragments in cases])

    def see_graphs(self, cases):
        both = [["check", "g.kelvarin"], ["run", "g.kelvarin"]]
        self.see([(text, (both, text), status, fragments) for text, status, *fragments in cases])

    def test_expressions(self):
        self.see_expressions(NAMES + SIGNS + CALLS + TYPES, 1)
        self.see_expressions(EVALUATED, 0)

    def test_graphs(self):
        self.see_graphs(EXPRESSIONS_OF_GRAPHS + STRUCTURES + FILES)

    def test_data(self):
        document = graph(computing("price * 2", inputs="<InputVar column='price'/>"))
        both = [["run", "g.kelvarin"], ["check", "g.kelvarin"]]
        self.see([(table, (both, document, table), status, fragments) for table, status, *fragments in DATA])

    def test_commands(self):
        document = graph(ONE, top="<Parameters><Parameter name='minPrice' value='3'/></Parameters>")
        self.see([(" ".join(call), ([call], document), status, fragments) for call, status, *fragments in COMMANDS])

    def test_a_folder_of_many_files_is_no_hindrance(self):
        with tempfile.TemporaryDirectory() as folder:
            for i in range(3000):
                open(os.path.join(folder, f"measurements-{i:05}.csv"), "w").close()
            result = subprocess.run([PROGRAM, "gel", "info", "measurement-00007.csv"], cwd=folder, capture_output=True,
                                    text=True, timeout=20)
            self.assertIn("Did you mean 'measurements-00007.csv'", result.stderr)


if __name__ == "__main__":
    unittest.main()
