#!/usr/bin/env python3
"""Times one expression over a vector of columns against one output a column.

Usage: vector_benchmark.py PROGRAM [--elements 1000] [--rows 20000] [--rounds 5]

Three graphs take turns: rows of so many columns that nobody computes with; a Calculator with an output for each column;
a CalculatorVectorized with one output over a vector of them all. What the last two take beyond the first, in the fastest
of the rounds, is what the actions cost.
"""

import argparse
import json
import os
import subprocess
import tempfile

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


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("program")
    for name, default in (("elements", 1000), ("rows", 20000), ("rounds", 5)):
        arguments.add_argument(f"--{name}", type=int, default=default)
    given = arguments.parse_args()
    cells = given.elements * given.rows
    with tempfile.TemporaryDirectory() as folder:
        with open(os.path.join(folder, "x.csv"), "w", encoding="utf-8") as out:
            out.write("x\n" + "".join(f"{row}.5\n" for row in range(given.rows)))
        print(f"{'expression':<28}{'plain ns':>10}{'vector ns':>11}{'ratio':>8}   an expression of one row")
        for expression in EXPRESSIONS:
            texts = graphs(given.elements, expression)
            times = {name: [] for name in texts}
            for _ in range(given.rounds):
                for name, text in texts.items():
                    times[name].append(seconds_of(given.program, text, folder))
            least = {name: min(values) for name, values in times.items()}
            plain, vector = ((least[name] - least["columns"]) / cells * 1e9 for name in ("plain", "vector"))
            print(f"{expression.format('v'):<28}{plain:>10.1f}{vector:>11.1f}{vector / plain:>8.2f}")


if __name__ == "__main__":
    main()
