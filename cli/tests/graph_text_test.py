"""Graph files as texts: made, laid out, shown, compared, upgraded, and described for editors."""

import os
import random
import re
import shutil
import subprocess
import unittest
from pathlib import Path

from program import EXAMPLE, ProgramTest, calculator, graph

ROOT = Path(__file__).resolve().parents[2]
GRAPHS = sorted((ROOT / "examples").glob("*/*.kelvarin"))
SCHEMA = ROOT / "docs" / "kelvarin-graph.xsd"

MESSY = """<?xml version="1.0"?>
<!-- about
     the whole -->
<KelvarinGraph><Links><Link toPin='0' to='out' from="in"/>  <!-- behind --></Links>


<!-- actions --><Actions>
<InlineTable   sortedOn=''
   mystery="&quot;a&#9;b&apos;"  name="in">
   <Column meta='U' name='t'/> <Column name='n'/>

   <!-- rows -->
   <Row><V> a &lt; b </V><V/></Row><Row><V
     null='1'/><V></V></Row>
   <Row><V><![CDATA[x < y]]></V><V>aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa</V></Row>
</InlineTable>
<Unknown><child a='1'>text<b/></child></Unknown>
<WriteCSV name='out' file='-' separator=';' quote='"' header='1' nullText='none at all' mystery='a value that is long enough'/>
</Actions><Notes/></KelvarinGraph>"""

LAID_OUT = """<?xml version='1.0' encoding='UTF-8'?>
<!-- about
     the whole -->
<KelvarinGraph>
  <!-- actions -->
  <Actions>
    <InlineTable name='in' sortedOn='' mystery='"a&#9;b&apos;'>
      <Column name='t' meta='U'/>
      <Column name='n'/>

      <!-- rows -->
      <Row><V> a &lt; b </V><V/></Row>
      <Row><V null='1'/><V/></Row>
      <Row>
        <V><![CDATA[x < y]]></V>
        <V>aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa</V>
      </Row>
    </InlineTable>
    <Unknown>
      <child a='1'>text<b/></child>
    </Unknown>
    <WriteCSV name='out' file='-' separator=';' quote='"' header='1' nullText='none at all'
              mystery='a value that is long enough'/>
  </Actions>
  <Links>
    <Link from='in' to='out' toPin='0'/> <!-- behind -->
  </Links>
  <Notes/>
</KelvarinGraph>
"""

OLD = """<KelvarinGraph>
  <Actions>
    <InlineTable name='in'>
      <Column name='a' meta='F'/>
      <Row><V>1</V></Row>
      <Row><V>5</V></Row>
    </InlineTable>
    <FilterRows name='f' version='1.0' Expression='a &lt; 3'>
      <!-- kept -->
      <InputVar column='a'/>
    </FilterRows>
    <Calculator name='c'>
      <InputVars>
        <InputVar column='a'/>
      </InputVars>
      <OutputVars>
        <OutputVar name='t' isNumber='0' expression='"x" // itoa(a)'/>
        <OutputVar name='n' meta='U' isNumber='1' expression='ignored'>a + 1</OutputVar>
      </OutputVars>
    </Calculator>
    <WriteCSV name='out' file='-'/>
  </Actions>
  <Links>
    <Link from='in' to='f'/>
    <Link from='f' to='c'/>
    <Link from='c' to='out'/>
  </Links>
</KelvarinGraph>
"""


class GraphTextTest(ProgramTest):
    def test_fmt_lays_out_and_keeps_what_it_does_not_know(self):
        self.write("g.kelvarin", MESSY)
        check = self.kelvarin("graph", "fmt", "--check", "g.kelvarin", status=1)
        self.assertIn("g.kelvarin", check.stderr)
        self.assertEqual(self.read("g.kelvarin"), MESSY)
        self.kelvarin("graph", "fmt", "g.kelvarin")
        self.assertEqual(self.read("g.kelvarin"), LAID_OUT)
        self.kelvarin("graph", "fmt", "--check", "g.kelvarin")
        crlf = subprocess.run([os.environ["KELVARIN_PROGRAM"], "graph", "fmt", "-"], input=MESSY.replace("\n", "\r\n"),
                              capture_output=True, text=True, timeout=60)
        self.assertEqual(crlf.stdout, LAID_OUT)

    def test_fmt_twice_is_fmt_once_and_means_the_same(self):
        # Of actions with everything set, and of the examples.
        saved = sorted((ROOT / "cli/tests/saved_actions").glob("*.xml"))
        texts = [f"<KelvarinGraph version='1.0'><Actions>{path.read_text()}</Actions></KelvarinGraph>" for path in saved]
        texts += [path.read_text() for path in GRAPHS]
        names = [self.write(f"{i}.kelvarin", text) for i, text in enumerate(texts)]
        self.kelvarin("graph", "fmt", "--quiet", *names)
        self.kelvarin("graph", "fmt", "--check", *names)
        for name, text in zip(names, texts):
            self.write("before.kelvarin", text)
            self.assertEqual(self.kelvarin("graph", "diff", "before.kelvarin", name).stdout, "")

    def test_fmt_of_any_layout_keeps_comments_and_meaning_and_is_done_after_one_time(self):
        numbers = random.Random(7)
        additions = ("\n", "\n\n\n", " ", "\t", "<!-- c -->", "\n<!-- a\n  b -->\n", "<!-- x --><!-- y -->", " <!-- z -->\n", "<?i i?>")
        sources = [path.read_text() for path in GRAPHS] + [MESSY, OLD]
        texts = []
        for _ in range(60):
            text = numbers.choice(sources)
            for _ in range(numbers.randint(1, 12)):
                # Between elements; in front of the closing tag of a text it would be a part of it.
                tags = re.finditer(r"<(?!/(V|S|Expression|OutputVar|child)\b|b/)[/\w]", text)
                at = numbers.choice([tag.start() for tag in tags])
                text = text[:at] + numbers.choice(additions) + text[at:]
            texts.append(text)
        names = [self.write(f"{i}.kelvarin", text) for i, text in enumerate(texts)]
        self.kelvarin("graph", "fmt", "--quiet", *names)
        self.kelvarin("graph", "fmt", "--check", *names)
        for name, text in zip(names, texts):
            laid_out = self.read(name)
            self.assertEqual([laid_out.count(mark) for mark in ("<!--", "<?i i?>")],
                             [text.count(mark) for mark in ("<!--", "<?i i?>")])
            self.assertNotRegex(laid_out, r"\n\n\n|[ \t]\n(?!null)")

    def test_faults_are_reported_and_nothing_is_written(self):
        self.write("broken.kelvarin", "<KelvarinGraph>\n <Actions>\n</KelvarinGraph>")
        self.write("other.kelvarin", "<html/>")
        for command in ("fmt", "show", "upgrade"):
            self.assertIn("broken.kelvarin:3:", self.kelvarin("graph", command, "broken.kelvarin", status=1).stderr)
            self.assertIn("KelvarinGraph", self.kelvarin("graph", command, "other.kelvarin", status=1).stderr)
        self.kelvarin("graph", "diff", "other.kelvarin", EXAMPLE, status=2)
        self.assertEqual(self.read("broken.kelvarin"), "<KelvarinGraph>\n <Actions>\n</KelvarinGraph>")

    def test_new_graphs_run(self):
        self.write("t.csv", "id;the price,x\na,1\n")
        self.write("o's.csv", "item,the price,round\ncup,1.5,2\n")
        self.kelvarin("graph", "new", "a.kelvarin")
        self.assertIn("item,price,quantity,total\nkettle,24.9,2,49.8\n", self.kelvarin("run", "a.kelvarin").stdout)
        self.assertIn("--force", self.kelvarin("graph", "new", "a.kelvarin", status=1).stderr)
        for i, table in enumerate(("t.csv", "o's.csv")):
            self.kelvarin("graph", "new", f"{i}.kelvarin", "--from", table)
            check = self.kelvarin("check", f"{i}.kelvarin")
            self.assertNotIn("warning", check.stderr)
            self.assertEqual(len(self.kelvarin("run", f"{i}.kelvarin").stdout.split("\n")), 3)
            self.kelvarin("graph", "fmt", "--check", f"{i}.kelvarin")
        self.write("gaps.tsv", "# of today\na\tthe price\n1\tNA\n2\t1.000,5\n" )
        self.kelvarin("graph", "new", "gaps.kelvarin", "--from", "gaps.tsv", "--null", "NA", "--comment", "#", "--decimal", ",",
                      "--thousands", ".", "--short-rows", "null", "--long-rows", "ignore", "--file-column", "the file with this row")
        self.kelvarin("graph", "fmt", "--check", "gaps.kelvarin")
        self.assertIn("\n2,1000.5,", self.kelvarin("run", "gaps.kelvarin").stdout)
        self.kelvarin("calc", "t.csv", "-o", "t.parquet", "--quiet")
        self.assertIn("no", self.kelvarin("graph", "new", "x.kelvarin", "--from", "t.parquet", "--null", "x", status=1).stderr)
        self.assertIn("--from", self.kelvarin("graph", "new", "x.kelvarin", "--null", "x", status=2).stderr)
        self.assertIn("t.unknown", self.kelvarin("graph", "new", "x.kelvarin", "--from", "t.unknown", status=1).stderr)
        self.kelvarin("graph", "new", "x.kelvarin", "--from", "absent.csv", status=1)
        self.assertFalse(os.path.exists(self.path("x.kelvarin")))

    def test_show(self):
        text = self.kelvarin("graph", "show", EXAMPLE).stdout
        for part in ("6 actions, 5 links, 3 parameters", "  minDelay = 30", "late? (FilterRows)\n  <- 'speed and delays'\n",
                     "<- 'late?' pin 1", "OutputVar name='time_of_day' meta='U': hour < 6 ?"):
            self.assertIn(part, text)
        mermaid = self.kelvarin("graph", "show", "--mermaid", EXAMPLE).stdout
        self.assertTrue(mermaid.startswith("flowchart LR\n"))
        self.assertIn("|\"1:0\"|", mermaid)
        self.write("odd.kelvarin", graph("<Discard name='a &quot;b&quot; \\ &lt;c&gt;' disabled='1'/>"))
        dot = self.kelvarin("graph", "show", "--dot", "odd.kelvarin").stdout
        self.assertIn('"a \\"b\\" \\\\ <c>" [label="a \\"b\\" \\\\ <c>\\nDiscard", style=dashed];', dot)
        self.assertIn('a0["a #quot;b#quot; \\ &lt;c&gt;<br/>Discard"]:::off',
                      self.kelvarin("graph", "show", "--mermaid", "odd.kelvarin").stdout)

    def test_show_cuts_long_tables(self):
        rows = "".join(f"<Row><V>{i}</V><V null='1'/></Row>" for i in range(30))
        self.write("t.kelvarin", graph(f"<InlineTable name='t'><Column name='a'/><Column name='b'/>{rows}</InlineTable>"))
        text = self.kelvarin("graph", "show", "t.kelvarin").stdout
        self.assertIn("    Column name='b'\n    Row: 0 | null\n", text)
        self.assertIn("    Row: 7 | null\n    ... and 22 more\n", text)

    def difference(self, before, after):
        self.write("before.kelvarin", before)
        self.write("after.kelvarin", after)
        return self.kelvarin("graph", "diff", "before.kelvarin", "after.kelvarin", status=1).stdout.split("\n")[:-1]

    def test_diff_tells_what_changed(self):
        text = Path(EXAMPLE).read_text()
        self.assertEqual(self.difference(text, text.replace("value='30'", "value='60'")),
                         ["~ parameter minDelay: '30' -> '60'"])
        self.assertEqual(self.difference(text, text.replace("late?", "delayed")), ["~ action 'delayed' (FilterRows), before 'late?'"])
        self.assertEqual(
            self.difference(text, text.replace("(minutes / 60)", "minutes")),
            ["~ action 'speed and delays' (Calculator)",
             "    ~ OutputVars/OutputVar ground_speed_mph: 'distance / (minutes / 60)' -> 'distance / minutes'"])
        self.assertEqual(self.difference(text, text.replace(" nullText='NA'", "")),
                         ["~ action 'flights' (ReadCSV)", "    - nullText = 'NA'"])
        without = re.sub(r"    <(WriteParquet|Link from='late\?' fromPin='0' to='late as).*\n", "", text)
        self.assertEqual(self.difference(text, without),
                         ["- action 'late as Parquet' (WriteParquet)", "- link 'late?' -> 'late as Parquet'"])
        self.assertEqual([line[0] for line in self.difference(without, text)], ["+", " ", "+"])
        self.assertEqual(self.difference(text, text.replace("fromPin='1'", "fromPin='0'")),
                         ["- link 'late?' pin 1 -> 'others'", "+ link 'late?' -> 'others'"])
        outputs = [("name='a'", "1"), ("name='b'", "2")]
        one, other = (graph(calculator("c", [], order)) for order in (outputs, outputs[::-1]))
        self.assertIn("the order", self.difference(one, other)[1])

    def test_diff_passes_over_what_does_nothing(self):
        text = Path(EXAMPLE).read_text()
        same = text.replace("x='0' y='0'", "x='7' separator=',' header='1'").replace(
            "</Links>", "</Links><Notes><Note x='1' y='1' w='1' h='1'>hello</Note></Notes>").replace(" fromPin='0'", "")
        self.write("same.kelvarin", same.replace("\n", "\r\n\r\n"))
        self.assertEqual(self.kelvarin("graph", "diff", EXAMPLE, "same.kelvarin").stdout, "")

    def test_upgrade_writes_older_forms_anew(self):
        self.write("old.kelvarin", OLD)
        before = self.kelvarin("run", "old.kelvarin", "--quiet").stdout
        self.assertIn("f'", self.kelvarin("graph", "upgrade", "--check", "old.kelvarin", status=1).stderr)
        self.assertEqual(self.read("old.kelvarin"), OLD)
        changes = self.kelvarin("graph", "upgrade", "old.kelvarin").stderr
        self.assertEqual(changes.count("info: old.kelvarin: "), 9, changes)
        text = self.read("old.kelvarin")
        for part in ("<KelvarinGraph version='1.0'>", "<Expression>a &lt; 3</Expression>", "<!-- kept -->",
                     "\n      <InputVars>\n        <InputVar column='a'/>\n      </InputVars>\n", "version='2.08'",
                     "<OutputVar name='t' meta='U'>\"x\" // itoa(a)</OutputVar>", "<OutputVar name='n'>a + 1</OutputVar>"):
            self.assertIn(part, text)
        self.assertEqual(self.kelvarin("run", "old.kelvarin").stdout, before)
        self.assertIn("nothing to do", self.kelvarin("graph", "upgrade", "old.kelvarin").stderr)
        self.assertEqual(self.read("old.kelvarin"), text)
        self.write("before.kelvarin", OLD)
        self.kelvarin("graph", "diff", "before.kelvarin", "old.kelvarin")
        with open(self.path("old.kelvarin"), "wb") as file:
            file.write(text.encode("utf-16"))
        self.assertIn("UTF-8", self.kelvarin("graph", "upgrade", "old.kelvarin").stderr)
        self.assertEqual(self.read("old.kelvarin"), text)

    def test_every_older_form_that_actions_declare_can_be_upgraded(self):
        def older(element, path):
            for attribute in element.get("attributes", []):
                if "older files" in attribute["meaning"]:
                    yield f"{path}@{attribute['name']}"
            for child in element.get("children", []):
                if "older files" in child["meaning"]:
                    yield f"{path}/{child['name']}"
                yield from older(child, f"{path}/{child['name']}")

        found = {form for action in self.kelvarin_json("actions") for form in older(action, action["typeName"])}
        outputs = {f"{name}/OutputVars/OutputVar@{attribute}" for name in ("Calculator", "CalculatorVectorized")
                   for attribute in ("expression", "isNumber")}
        self.assertEqual(found, outputs | {"FilterRows@Expression", "FilterRows/InputVar"})

    def test_the_schema_is_the_committed_one_and_finds_slips_of_the_pen(self):
        schema = self.kelvarin("graph", "schema").stdout
        self.assertEqual(schema, SCHEMA.read_text(), "kelvarin graph schema > docs/kelvarin-graph.xsd")
        if shutil.which("xmllint") is None:
            self.skipTest("no xmllint")

        def validate(*files):
            return subprocess.run(["xmllint", "--noout", "--schema", str(SCHEMA), *map(str, files)], capture_output=True,
                                  text=True, timeout=60)

        documents = [re.findall(r"^```xml\n(<KelvarinGraph.*?)^```$", path.read_text(), re.MULTILINE | re.DOTALL)
                     for path in sorted((ROOT / "docs").rglob("*.md"))]
        files = [self.write(f"{i}.kelvarin", text) for i, text in enumerate(sum(documents, []))]
        self.assertGreater(len(files), 8)
        result = validate(*GRAPHS, *files, self.write("old.kelvarin", OLD))
        self.assertEqual(result.returncode, 0, result.stderr)
        text = Path(EXAMPLE).read_text()
        for slip in (text.replace("nullText=", "nulltext="), text.replace("<InputVar ", "<InputVr "),
                     text.replace("WriteParquet", "writeParquet"), text.replace("fromPin='1'", "fromPin='one'"),
                     text.replace("<ReadCSV ", "<ReadCSV header='yes' "), text.replace("name='late?'", "")):
            self.assertNotEqual(validate(self.write("slip.kelvarin", slip)).returncode, 0, slip[:400])


if __name__ == "__main__":
    unittest.main()
