"""One expression over a vector of columns against one output a column.

Three graphs take turns: rows of so many columns that nobody computes with; a Calculator with an output for each column;
a CalculatorVectorized with one output over a vector of them all. What the last two take beyond the first is what the
actions cost.
"""

import json
import os
import subprocess
import tempfile

from comparison import Comparison, medians_of_rounds

ELEMENTS = 1000
EXPRESSIONS = ("{} * 2 + 1", "{0} / ({0} + 1) - 3 * {0}", "sin({})")


def graph(elements, actions, links):
    columns = "".join(f"<OutputVar name='c{i}'>x + {i}</OutputVar>" for i in range(elements))
    return ("<KelvarinGraph version='1.0'><Actions><ReadCSV name='x' file='x.csv'/><Calculator name='columns'><InputVars>"
            f"<InputVar column='x'/></InputVars><OutputVars>{columns}</OutputVars></Calculator>{actions}"
            f"<Discard name='end'/></Actions><Links><Link from='x' to='columns'/>{links}</Links></KelvarinGraph>")


def graphs(elements, expression):
    ends = "<Link from='columns' to='compute'/><Link from='compute' to='end'/>"
    inputs = "".join(f"<InputVar column='c{i}'/>" for i in range(elements))
    outputs = "".join(f"<OutputVar name='o{i}'>{expression.format(f'c{i}')}</OutputVar>" for i in range(elements))
    plain = f"<Calculator name='compute'><InputVars>{inputs}</InputVars><OutputVars>{outputs}</OutputVars></Calculator>"
    rows = "".join(f"<Row><V>v</V><V>c{i}</V></Row>" for i in range(elements))
    vector = (f"<InlineTable name='vectors'><Column name='alias'/><Column name='column'/>{rows}</InlineTable>"
              f"<CalculatorVectorized name='compute'><OutputVars><OutputVar name='\"o\" // _n'>{expression.format('v')}"
              "</OutputVar></OutputVars></CalculatorVectorized>")
    return {"columns": graph(elements, "", "<Link from='columns' to='end'/>"), "plain": graph(elements, plain, ends),
            "vector": graph(elements, vector, ends + "<Link from='vectors' to='compute' toPin='1'/>")}


def seconds_of(program, text, folder):
    file = os.path.join(folder, "g.kelvarin")
    with open(file, "w", encoding="utf-8") as out:
        out.write(text)
    result = subprocess.run([program, "run", file, "--json", "--quiet"], capture_output=True, text=True, check=True)
    return json.loads(result.stdout)["seconds"]


def run(options):
    rows = 2000 if options.quick else 20_000
    program = os.path.abspath(os.path.join(options.build, "bin", "kelvarin"))
    found = []
    with tempfile.TemporaryDirectory(dir=options.folder) as folder:
        with open(os.path.join(folder, "x.csv"), "w", encoding="utf-8") as out:
            out.write("x\n" + "".join(f"{row}.5\n" for row in range(rows)))
        for expression in EXPRESSIONS:
            texts = graphs(ELEMENTS, expression)
            contenders = {name: lambda text=text: seconds_of(program, text, folder) for name, text in texts.items()}
            seconds = medians_of_rounds(contenders, options.rounds or (3 if options.quick else 5))
            plain, vector = ((seconds[name] - seconds["columns"]) / rows / ELEMENTS * 1e9 for name in ("plain", "vector"))
            found.append(Comparison(f"One expression over {ELEMENTS} columns, each evaluation", expression.format("v"),
                                    "Calculator, 1000 outputs", vector, plain, "ns"))
    return found
