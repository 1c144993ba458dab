"""A check and a run of the same graph agree: what runs is checked without an error, and the other way round."""

import os
import unittest

from program import ProgramTest, calculator, graph

READ = "<ReadCSV name='in' file='in.csv'/>"
WRITE = "<WriteCSV name='out' file='out.csv'/>"
CHAIN = ["in c", "c out"]


def computing(expression, output="name='y'", inputs=("id", "price"), attributes=""):
    return graph(READ + calculator("c", inputs, [(output, expression)], attributes) + WRITE, CHAIN)


def filtering(expression, attributes=""):
    return graph(READ + f"<FilterRows name='c' {attributes}><Expression>{expression}</Expression><InputVars>"
                 "<InputVar column='id'/><InputVar column='name' isNumber='0'/></InputVars></FilterRows>" + WRITE, CHAIN)


def writing(sink):
    return graph(READ + sink, ["in w"])


def gel(attributes, content=""):
    return writing(f"<writeColumnarGel name='w' {attributes}>{content}</writeColumnarGel>")


TYPED = "<WriteParquet name='w' file='t.parquet'><Column name='{}' type='{}'/></WriteParquet>"
TEXT = "<InputVar column='name' isNumber='0'/>"

RIGHT = {
    "a number": computing("id + price"),
    "a number for a text": computing("id + price", "name='y' meta='U'"),
    "a condition for a number": computing("id &gt; 1"),
    "a text": computing("name // \"x\"", "name='y' meta='U'").replace("<InputVars>", "<InputVars>" + TEXT),
    "a text column as a number": computing("name + 1", inputs=["name"]),
    "an update": computing("id * 2", "name='id' update='1'"),
    "an output without an expression": computing(""),
    "no outputs": graph(READ + "<Calculator name='c'/>" + WRITE, CHAIN),
    "failing rows that are allowed": computing("name * 2", "name='y'", ["id"], "abortWhenError='0'").replace(
        "<InputVars>", "<InputVars>" + TEXT),
    "a filter": filtering("id &lt; 3"),
    "a filter without an expression": filtering(""),
    "a text as a condition": filtering("name"),
    "a sample of rows": filtering("_n &lt; 2"),
    "unknown attributes": computing("id", attributes="addM='1'"),
    "an odd unit of time": computing("id", attributes="elapsedTimeUnit='9'"),
    "an odd type": computing("id", "name='y' meta='X'"),
    "a split": gel("file='t.cgel_kelvarin' split='2' splitVar='name'"),
    "rows that are tested": gel("file='t.cgel_kelvarin' writeAllRows='0' testCol='id' testValue='1'"),
    "a folder to be created": gel("file='new/deep/t.cgel_kelvarin' createDir='1'"),
    "a folder to be created for a table of another format": writing(
        "<WriteArrow name='w' file='new/deep/t.arrow' createDir='1'/>"),
    "types in the file": writing(TYPED.format("id", "int32")),
    "a file for each value": writing("<WriteCSV name='w' file='t.csv' split='2' splitVar='id'/>"),
    "a vector": graph(READ + "<InlineTable name='v'><Column name='a' meta='U'/><Column name='c' meta='U'/>"
                      "<Row><V>v</V><V>id</V></Row><Row><V>v</V><V>price</V></Row></InlineTable>"
                      "<CalculatorVectorized name='c'><InputVars/><OutputVars><OutputVar name='\"d\"//v'>v*2</OutputVar>"
                      "</OutputVars></CalculatorVectorized>" + WRITE, ["in c", "v c.1", "c out"]),
}

WRONG = {
    "an unknown name": computing("id + prise"),
    "an unknown function": computing("flor(id)"),
    "a missing operand": computing("id +"),
    "a text for a number": computing("\"x\""),
    "a text that is multiplied": computing("name * 2", inputs=["id"]).replace("<InputVars>", "<InputVars>" + TEXT),
    "an unknown column": computing("idd", inputs=["idd"]),
    "a column to update that is not there": computing("id", "name='z' update='1'"),
    "a column that exists": computing("id", "name='price'"),
    "an output without a name": computing("id", "meta='F'"),
    "an unknown date format": computing("toET(\"2024-01-01\")"),
    "a filter with a missing bracket": filtering("(id &lt; 3"),
    "a filter that fails on every row": filtering("name * 2", "abortWhenError='0'"),
    "a source that is not there": graph("<ReadCSV name='in' file='absent.csv'/>" + WRITE, ["in out"]),
    "a folder that is not there": writing("<WriteCSV name='w' file='absent/out.csv'/>"),
    "a folder instead of the file": writing("<WriteCSV name='w' file='folder'/>"),
    "a type of an unknown column": writing(TYPED.format("idd", "int32")),
    "a type that the column cannot have": writing(TYPED.format("id", "date")),
    "a split by an unknown column": writing("<WriteCSV name='w' file='t.csv' split='2' splitVar='idd'/>"),
    "a split of standard output": writing("<WriteCSV name='w' file='-' split='2' splitVar='id'/>"),
    "a file instead of the folder": writing("<WriteParquet name='w' file='in.csv/out.parquet'/>"),
    "no file": writing("<WriteCSV name='w'/>"),
    "a columnar folder that is not there": gel("file='absent/t.cgel_kelvarin'"),
    "no columnar file": gel(""),
    "a split column that is not there": gel("file='t.cgel_kelvarin' split='2' splitVar='nme'"),
    "a test column that is not there": gel("file='t.cgel_kelvarin' writeAllRows='0' testCol='nme'"),
    "a naming expression": gel("file='t&quot;+nope+&quot;' split='2' splitVar='name' advancedNaming='1'"),
    "a wrong split": gel("file='t.cgel_kelvarin' split='7'"),
    "a wrong strategy": gel("file='t.cgel_kelvarin' columnStrategy='9'"),
    "a wrong key cast": computing("id", attributes="castToKey2='9'"),
    "a wrong block size": gel("file='t.cgel_kelvarin' nRowsInBlock='x'"),
    "no rows in a block": gel("file='t.cgel_kelvarin' nRowsInBlock='0'"),
    "a wrong switch": computing("id", attributes="useJIT='maybe'"),
    "a wrong date format": computing("id", attributes="dateFormatType='7'"),
    "an unknown element": gel("file='t.cgel_kelvarin'", "<Strategy/>"),
    "no columns in the strategy": gel("file='t.cgel_kelvarin' columnStrategy='1'",
                                      "<ColumnStrategy><C n='nme' s='0'/></ColumnStrategy>"),
}

# What only rows can show: a check finds nothing, and the run fails.
ONLY_ROWS_SHOW = {
    "a number that is no key": computing("id - 5", "name='y' meta='K'"),
    "a misfit behind the rows that are looked at": graph(
        "<ReadCSV name='in' file='late.csv'/><Discard name='out'/>", ["in out"]),
    "two values with one file name": gel("file='t.cgel_kelvarin' split='2' splitVar='alike'"),
}


class VerdictTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("in.csv", "id,price,name,alike\n1,2.5,a,a/b\n2,,b,a_b\n3,1,,c\n")
        self.write("late.csv", "n\n" + "1\n" * 10001 + "x\n")
        os.mkdir(self.path("folder"))

    def compare(self, graphs, check_status, run_status):
        for name, text in graphs.items():
            with self.subTest(name):
                self.write("g.kelvarin", text)
                before = self.files()
                self.kelvarin("check", "g.kelvarin", status=check_status)
                self.assertEqual(self.files(), before)
                self.kelvarin("run", "g.kelvarin", status=run_status)

    def test_right_graphs(self):
        self.compare(RIGHT, 0, 0)

    def test_wrong_graphs(self):
        self.compare(WRONG, 1, 1)

    def test_what_only_rows_show(self):
        self.compare(ONLY_ROWS_SHOW, 0, 1)


if __name__ == "__main__":
    unittest.main()
