"""The orders that the graphs read: as CSV and Parquet for everyone, and as a columnar file for this system."""

import os
import subprocess
import xml.sax.saxutils

import numpy
import polars

CITIES = 1000


def orders(rows):
    random = numpy.random.default_rng(seed=7)
    names = numpy.array([f"{kind}{number:03}" for kind in ("Port ", "Sankt ", "Villa", "Bad ") for number in range(250)])
    days = numpy.datetime64("2020-01-01") + random.integers(0, 1826, rows)
    return polars.DataFrame({
        "id": numpy.arange(1, rows + 1),
        "city": polars.Series(names)[random.integers(0, CITIES, rows)],
        "price": random.integers(1, 20_000, rows) / 100.0,
        "quantity": random.integers(1, 21, rows),
        "date": polars.Series(days.astype("datetime64[D]")).dt.to_string("%Y-%m-%d"),
    })


def write_orders(folder, rows, program):
    """orders.csv, orders.parquet and orders.cgel_kelvarin in the folder."""
    table = orders(rows)
    table.write_csv(os.path.join(folder, "orders.csv"), float_precision=2)
    table.write_parquet(os.path.join(folder, "orders.parquet"), compression="snappy")
    graph = os.path.join(folder, "orders.kelvarin")
    write_graph(graph, "<ReadCSV name='in' file='orders.csv'/><writeColumnarGel name='out' file='orders.cgel_kelvarin'/>",
                ("in", "out"))
    subprocess.run([program, "run", "--quiet", graph], check=True)


def write_graph(file, actions, chain):
    links = "".join(f"<Link from='{a}' to='{b}'/>" for a, b in zip(chain, chain[1:]))
    with open(file, "w", encoding="utf-8") as out:
        out.write(f"<KelvarinGraph version='1.0'><Actions>{actions}</Actions><Links>{links}</Links></KelvarinGraph>\n")


def computing(expressions, condition):
    """A Calculator named `compute` and a FilterRows named `keep` over price and quantity."""
    inputs = "<InputVars><InputVar column='price'/><InputVar column='quantity'/></InputVars>"
    outputs = "".join(f"<OutputVar name='{name}'>{xml.sax.saxutils.escape(text)}</OutputVar>"
                      for name, text in expressions.items())
    return (f"<Calculator name='compute'>{inputs}<OutputVars>{outputs}</OutputVars></Calculator><FilterRows name='keep'>"
            f"<Expression>{xml.sax.saxutils.escape(condition)}</Expression><InputVars><InputVar column='total'/></InputVars>"
            "</FilterRows>")
