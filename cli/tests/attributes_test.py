"""Attributes of actions: slips of the pen are reported, and graph parameters stand for values everywhere."""

import unittest

from program import ProgramTest, graph

TABLE = "<InlineTable name='in'><Column name='id' meta='${key}'/><Column name='day' meta='U'/>%s</InlineTable>" % "".join(
    f"<Row><V>{i}</V><V>2024-0{1 + i // 4}-15</V></Row>" for i in range(12))
TIMES = "elapsedTimeUnit='${unit}' referenceTime='${start}' dateFormat='${format}'"
PARAMETERS = [("column", "day"), ("unit", "3"), ("start", "20240101 00:00:00"), ("format", "yyyy-MM-dd"), ("rows", "4"),
              ("off", "0"), ("value", "2024-02-15"), ("key", "K")]


class AttributesTest(ProgramTest):
    def log(self, text, command="run"):
        self.write("g.kelvarin", text)
        return [(line["level"], line["action"], line["text"].split(": ", 1)[1])
                for line in self.kelvarin_json(command, "g.kelvarin")["log"]]

    def test_what_means_nothing_is_warned_about(self):
        self.write("in.csv", "id,day\n7,x\n")
        text = graph("<ReadCSV name='in' file='in.csv' sep=';' x='1.5' y='2' version='1'>"
                     "<Column name='id' meta='F' type='K'/></ReadCSV>\n"
                     "<FilterRows name='f' refTime='20240101' elapsedTimeUnit='9'><Expression>id > 1</Expression>"
                     "<InputVars><InputVar column='id' lable='a' meta='Float'/></InputVars></FilterRows>\n"
                     "<writeColumnarGel name='w' file='w.cgel_kelvarin' colour=''/>",
                     ["in f", "f w"])
        expected = [
            (2, "in", "the attribute 'sep' is not known in <ReadCSV> and has no effect. Did you mean separator?"),
            (2, "in", "the attribute 'type' is not known in <Column> and has no effect. Known: name, meta."),
            (2, "f", "the attribute 'refTime' is not known in <FilterRows> and has no effect. Did you mean referenceTime?"),
            (2, "f", "elapsedTimeUnit='9' of <FilterRows> is not 0 (seconds), 1 (minutes), 2 (hours), 3 (days) or 4 (weeks). With "
                     "any other unit every elapsed time is 0."),
            (2, "f", "the attribute 'lable' is not known in <InputVar> and has no effect. Did you mean label or label2?"),
            (2, "f", "meta='Float' of <InputVar> is not F (number), K (key), U (text) or D (date). Its first letter counts.")]
        log = self.log(text)
        self.assertEqual(log[:-1], expected)
        self.assertIn("'colour' is not known in <writeColumnarGel> and has no effect. Known: name, version, x, y, disabled, nThread",
                      log[-1][2])
        checked = self.kelvarin("check", "g.kelvarin")
        self.assertIn("warning: g.kelvarin:4:1: the attribute 'sep'", checked.stderr)
        self.assertIn("no error found", checked.stdout)

    def test_values_that_cannot_be_used_are_errors(self):
        def calculator(attributes):
            return graph(f"<InlineTable name='t'><Column name='a' meta='F'/></InlineTable>\n<Calculator name='c' {attributes}/>"
                         "<Discard name='d'/>", ["t c", "c d"], [("s", "x")])

        def writer(attributes):
            return graph(f"<InlineTable name='t'><Column name='a' meta='F'/></InlineTable>\n<writeColumnarGel name='w' "
                         f"file='w.cgel_kelvarin' {attributes}/>", ["t w"])

        cases = [
            (calculator("useJIT='maybe'"), "useJIT='maybe' of <Calculator> is not 0 or 1."),
            (calculator("seed='${s}'"), "seed='${s}' ('x') of <Calculator> is not a whole number."),
            (calculator("castToKey2='9'"), "castToKey2='9' of <Calculator> is not 0, 1 or 2."),
            (calculator("dateFormatType='7'"), "is not 0 (as dateFormat says) or one of the locale's formats 1 to 6."),
            (writer("split='7'"), "split='7' of <writeColumnarGel> is not 0 (one file), 1 (by size) or 2 (by the value of splitVar)."),
            (writer("columnStrategy='9'"), "is not 0 (one column set), 1 (those listed in ColumnStrategy) or 2"),
            (writer("nRowsInBlock='0'"), "nRowsInBlock='0' of <writeColumnarGel> is not 1 or more."),
            (writer("nRowsInBlock='4.5'"), "nRowsInBlock='4.5' of <writeColumnarGel> is not a whole number."),
            (writer("segmentSize='1e10'"), "segmentSize='1e10' of <writeColumnarGel> is not a number below 2147483648."),
        ]
        for text, message in cases:
            self.write("g.kelvarin", text)
            for command in ("run", "check"):
                line = self.kelvarin_json(command, "g.kelvarin", status=1)["log"][0]
                self.assertIn(message, line["text"])
                self.assertTrue(line["text"].startswith("g.kelvarin:5:1: "), line["text"])
                self.assertEqual(line["line"], 5)

    def errors(self, actions):
        self.write("g.kelvarin", graph(actions, []))
        checked = self.kelvarin("check", "g.kelvarin", status=1)
        ran = self.kelvarin("run", "g.kelvarin", status=1)
        self.assertEqual(checked.stderr, ran.stderr)
        return [line.removeprefix("error: g.kelvarin:") for line in checked.stderr.splitlines() if "g.kelvarin:" in line]

    def test_values_that_mean_nothing_are_errors(self):
        self.write("in.csv", "id,day\n7,x\n")
        self.assertEqual(self.errors(
            "<ReadCSV name='a' file='in.csv' header='maybe' separator='ab' onBadValue='zero'>\n"
            "<Column name='id' meta='X'/>\n<Column meta='F'/>\n<Column name='id' meta='F'/></ReadCSV>\n"
            "<WriteCSV name='b' file='-' quote='xy'/>\n<WriteCSV name='c' file='-' nullText='a,b'/>\n"
            "<ReadParquet name='d' file='p' onBadValue='0'/>\n"
            "<writeColumnarGel name='w' file='w.cgel_kelvarin' nRowsInBlock='4.5'/>"), [
                "4:1: The separator 'ab' is not one ASCII character other than a line break. Write for instance ',' or ';', "
                "or '\\t' for TAB.",
                "4:1: onBadValue is 'zero'. It takes 'abort' or 'null'.",
                "5:1: The column 'id' is declared with the type 'X'. Types are F (number), K (key) and U (text).",
                "6:1: <Column> needs the attribute 'name'.",
                "7:1: The column 'id' is declared twice.",
                "4:1: header='maybe' of <ReadCSV> is not 0 or 1.",
                "8:1: The quote 'xy' is neither empty (no quoting) nor one ASCII character other than a line break and the "
                "separator.",
                "9:1: The nullText 'a,b' holds a separator, a quote or a line break, so that no field can be equal to it.",
                "10:1: onBadValue is '0'. It takes 'abort' or 'null'.",
                "11:1: nRowsInBlock='4.5' of <writeColumnarGel> is not a whole number."])

    def test_elements_and_texts_that_mean_nothing_are_errors(self):
        self.assertEqual(self.errors(
            "<ReadCSV name='a' file='in.csv'><Colum name='id'/><Column name='x' meta='F'>7<V/></Column></ReadCSV>\n"
            "<WriteCSV name='b' file='-'><Separator>;</Separator></WriteCSV>\n<Discard name='c'>text</Discard>\n"
            "<ReadArrow name='d' file='x'><Columns/></ReadArrow>\n<WriteParquet name='e' file='y'>snappy</WriteParquet>\n"
            "<InlineTable name='f'><Column name='a'/><Rows/><Row>7<W/></Row></InlineTable>\n"
            "<Calculator name='g'><InputVars><InputVr column='a'/></InputVars></Calculator>\n"
            "<FilterRows name='h'><InputVars/><InputVar column='a'/></FilterRows>\n"
            "<ReadColumnarGel name='i' fileName='x'><CFilterRows><OutputVars/></CFilterRows></ReadColumnarGel>\n"
            "<writeColumnarGel name='j' file='z'><C n='a' s='1'/></writeColumnarGel>"), [
                "4:33: Unknown element <Colum> inside <ReadCSV>. Known there: Column.",
                "4:51: The text '7' stands inside <Column>, where no text has a meaning.",
                "4:78: Unknown element <V> inside <Column>. No element may stand there.",
                "5:29: Unknown element <Separator> inside <WriteCSV>. No element may stand there.",
                "6:1: The text 'text' stands inside <Discard>, where no text has a meaning.",
                "7:30: Unknown element <Columns> inside <ReadArrow>. Known there: Column.",
                "8:1: The text 'snappy' stands inside <WriteParquet>, where no text has a meaning.",
                "9:41: Unknown element <Rows> inside <InlineTable>. Did you mean <Row>? Known there: Column, Row.",
                "9:48: The text '7' stands inside <Row>, where no text has a meaning.",
                "9:54: Unknown element <W> inside <Row>. Known there: V.",
                "10:33: Unknown element <InputVr> inside <InputVars>. Known there: InputVar.",
                "11:34: Unknown element <InputVar> inside <FilterRows>. Did you mean <InputVars>? "
                "Known there: Expression, InputVars.",
                "12:53: Unknown element <OutputVars> inside <CFilterRows>. Did you mean <InputVars>? "
                "Known there: Expression, InputVars.",
                "13:37: Unknown element <C> inside <writeColumnarGel>. Known there: ColumnStrategy."])

    def test_a_formula_in_the_wrong_element_is_an_error(self):
        for action, element in (("<Calculator name='c'>id * 2</Calculator>", "Calculator"),
                                ("<FilterRows name='c'><InputVars>id * 2</InputVars></FilterRows>", "InputVars")):
            self.write("g.kelvarin", graph("<InlineTable name='t'><Column name='id' meta='F'/></InlineTable>" + action +
                                           "<Discard name='d'/>", ["t c", "c d"]))
            for command in ("run", "check"):
                self.assertIn(f"The text 'id * 2' stands inside <{element}>, where no text has a meaning.",
                              self.kelvarin(command, "g.kelvarin", status=1).stderr)

    def test_one_of_two_expressions_is_warned_about(self):
        text = graph(TABLE + "<Calculator name='c'><InputVars><InputVar column='id'/></InputVars><OutputVars>"
                     "<OutputVar name='o' expression='id + 1'>id</OutputVar><OutputVar name='p' expression='id'>id</OutputVar>"
                     "</OutputVars></Calculator><FilterRows name='f' Expression='o &gt; 0'><Expression>o &gt; 1</Expression>"
                     "<InputVars><InputVar column='o'/></InputVars></FilterRows><Discard name='d' colour=''/>",
                     ["in c", "c f", "f d"], PARAMETERS)
        self.assertEqual(self.log(text, "check"), [
            (2, "c", "The output 'o' has an expression in its text and another one in the attribute 'expression'. "
                     "The text counts; take the attribute away."),
            (2, "f", "The filter has an expression in the attribute 'Expression' and another one in the element <Expression>. "
                     "The attribute counts; take one of them away."),
            (2, "d", "the attribute 'colour' is not known in <Discard> and has no effect. Known: name, version, x, y, disabled.")])

    def test_known_attributes_are_not(self):
        variable = "<InputVar column='id' label='id' label2='' isNumber='1' meta='U' value='1'/>"
        output = "<OutputVar name='o' meta='F' isInput='0' update='0' notes='' isNumber='1'>id</OutputVar>" \
                 "<OutputVar name='p' expression='1'/>"
        times = ("addNow='0' addNowS='0' seed='1' elapsedTimeUnit='1' dateFormatType='0' isUTC='1' emptyETToNull='1' "
                 "referenceTime='20240101 00:00:00' dateFormat='yyyy' castToET1='0' castToET2='0'")
        engine = "addN='1' abortWhenError='1' useJIT='1' " + times
        self.assertEqual([], self.log(graph(
            TABLE + f"<Calculator name='c' castToKey1='2' castToKey2='2' castToKey3='0' {engine}>"
            f"<InputVars>{variable}</InputVars><OutputVars>{output}</OutputVars></Calculator>"
            f"<FilterRows name='f' truncate='0' comments='' Expression='o > 0' {engine}>"
            "<InputVar column='o'><SL><S>o</S></SL></InputVar></FilterRows>"
            "<writeColumnarGel name='w' version='3.19' file='w.cgel_kelvarin' splitVar='' nThread='-1' nRowsInBlock='5000' "
            "columnStrategy='0' createDir='0' checkNameCollision='1' alwaysDelete='0' segmentSize='100.0' split='0' "
            "advancedNaming='0' writeAllRows='1' testCol='' testValue='' deleteTimeOut='1'>"
            "<ColumnStrategy><C n='id' s='1'/></ColumnStrategy></writeColumnarGel>", ["in c", "c f", "f w"], PARAMETERS)))
        self.assertEqual([], self.log(graph(
            "<ReadColumnarGel name='r' version='2.3' fileName='w.cgel_kelvarin' fileNameFromPin='0' abortIfMissing='1' "
            "accurateProgressBar='1' readIncompleteFile='0' skipCorruptedBlocks='0' filterRows='1' nBlockForward='2' "
            f"columnSelection='0' timeOut='0' readAllColumns='1'><CFilterRows addN='1' {times}><Expression>1</Expression>"
            "<InputVars><CInputVar column='id' varNameMax='a' varNameMin='b' varNameHasNull='c' isNumber='1' meta='U' "
            "valueMax='1' valueMin='0'/></InputVars></CFilterRows></ReadColumnarGel><Discard name='d' x='1' y='2'/>",
            ["r d"])))

    def test_parameters_stand_for_any_value(self):
        self.write("g.kelvarin", graph(
            TABLE + "<writeColumnarGel name='w' file='${column}.cgel_kelvarin' nRowsInBlock='${rows}' "
            "writeAllRows='${off}' testCol='${column}' testValue='${value}' columnStrategy='1'>"
            "<ColumnStrategy><C n='${column}' s='0'/></ColumnStrategy></writeColumnarGel>"
            "<writeColumnarGel name='parts' file='p_.cgel_kelvarin' nRowsInBlock='${rows}' split='2' splitVar='${column}'/>"
            f"<FilterRows name='f' {TIMES}><Expression>day >= 74</Expression>"
            "<InputVars><InputVar column='${column}' meta='D'/></InputVars></FilterRows>"
            "<WriteCSV name='c' file='-' header='${off}'/>", ["in w", "in f", "in parts", "f c"], PARAMETERS))
        rows = "8,2024-03-15\n9,2024-03-15\n10,2024-03-15\n11,2024-03-15\n"
        self.assertEqual(self.kelvarin("run", "g.kelvarin").stdout, rows)
        self.assertEqual(self.kelvarin("gel", "head", "day.cgel_kelvarin").stdout, "day\n" + "2024-02-15\n" * 4)
        self.assertEqual(self.kelvarin_json("gel", "info", "day.cgel_kelvarin")["nRowsInBlock"], 4)
        self.write("r.kelvarin", graph(
            "<ReadColumnarGel name='r' fileName='p_2024-03-15.cgel_kelvarin' filterRows='1'>"
            f"<CFilterRows {TIMES}><Expression>day_max >= 74</Expression>"
            "<InputVars><CInputVar column='${column}' meta='D'/></InputVars></CFilterRows></ReadColumnarGel>"
            "<WriteCSV name='c' file='-' header='${off}'/>", ["r c"], PARAMETERS))
        self.assertEqual(self.kelvarin("run", "r.kelvarin").stdout, rows)
        self.assertEqual(self.kelvarin("run", "r.kelvarin", "--set", "start=20240201 00:00:00").stdout, "")


if __name__ == "__main__":
    unittest.main()
