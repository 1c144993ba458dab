"""The tables that the graphs read: as CSV and Parquet for everyone, and as a columnar file for this system."""

import os
import subprocess

import numpy
import polars

CITIES = 1000


def orders(rows):
    random = numpy.random.default_rng(seed=7)
    return polars.DataFrame({
        "id": numpy.arange(1, rows + 1),
        "city": city_names()[random.integers(0, CITIES, rows)],
        "price": random.integers(1, 20_000, rows) / 100.0,
        "quantity": random.integers(1, 21, rows),
        "date": days(random, rows),
    })


def texts(rows):
    """Of the three texts one repeats, one is different on every row, and one is a date."""
    random = numpy.random.default_rng(seed=8)
    return polars.DataFrame({"id": numpy.arange(1, rows + 1), "x": random.integers(0, 100_000, rows) / 100.0,
                             "name": city_names()[random.integers(0, CITIES, rows)], "day": days(random, rows)}).select(
        "id", "x", "name", polars.format("parcel {} for {}", "id", "name").alias("note"), "day")


def city_names():
    return polars.Series(f"{kind}{number:03}" for kind in ("Port ", "Sankt ", "Villa", "Bad ") for number in range(250))


def days(random, rows):
    found = numpy.datetime64("2020-01-01") + random.integers(0, 1826, rows)
    return polars.Series(found.astype("datetime64[D]")).dt.to_string("%Y-%m-%d")


def write_table(folder, name, rows, programs):
    """name.csv, name.parquet and, by each program, a columnar file in the folder; {suffix: program}."""
    table = {"orders": orders, "texts": texts}[name](rows)
    table.write_csv(os.path.join(folder, f"{name}.csv"), float_precision=2)
    table.write_parquet(os.path.join(folder, f"{name}.parquet"), compression="snappy")
    for suffix, program in programs.items():
        graph = os.path.join(folder, f"{name}{suffix}.kelvarin")
        write_graph(graph, f"<ReadCSV name='in' file='{name}.csv'/>"
                           f"<writeColumnarGel name='out' file='{name}{suffix}.cgel_kelvarin'/>", ("in", "out"))
        subprocess.run([program, "run", "--quiet", graph], check=True)


def write_graph(file, actions, chain):
    links = "".join(f"<Link from='{a}' to='{b}'/>" for a, b in zip(chain, chain[1:]))
    with open(file, "w", encoding="utf-8") as out:
        out.write(f"<KelvarinGraph version='1.0'><Actions>{actions}</Actions><Links>{links}</Links></KelvarinGraph>\n")
