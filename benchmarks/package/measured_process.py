"""One measurement of the Python package: measured_process.py make|read|calculate|calls JSON. Prints JSON.

The process stays on the cores that it was started on, and everybody gets as many threads.
"""

import json
import os
import sys
import time

import duckdb
import numexpr
import numpy
import pandas
import polars
import pyarrow
import pyarrow.parquet

import kelvarin
from comparison import medians_of_rounds
from expressions.cases import CASES

# Null is not NaN, and a compiler may add in another order.
TOLERANCE = 1e-9


def paths_of(task):
    return [os.path.join(task["folder"], task["table"] + suffix) for suffix in (".cgel_kelvarin", ".parquet")]


def make(task):
    """Both files from the same rows."""
    table = pyarrow.parquet.read_table(os.path.join(task["folder"], task["table"] + ".made"))
    ours, theirs = paths_of(task)
    kelvarin.write(table, ours)
    pyarrow.parquet.write_table(table, theirs, compression="snappy")
    return {}


def seconds_of(run, clock):
    """A function that measures itself, without the end of its result."""
    def measure():
        start = clock()
        result = run()
        seconds = clock() - start
        del result
        return seconds
    return measure


def medians(contenders, rounds, cores=1):
    """On one core processor time, which does not count what other programs take."""
    clock = time.process_time if cores == 1 else time.perf_counter
    return medians_of_rounds({name: seconds_of(run, clock) for name, run in contenders.items()}, rounds)


def read(task):
    """Seconds of ours, of the library's own reader, and of pyarrow's where that is another one."""
    ours, theirs = paths_of(task)
    threads = task["cores"]
    pyarrow.set_cpu_count(threads)
    contenders = {
        "ours Polars": lambda: kelvarin.scan(ours, threads=threads).to_polars(),
        "Polars": lambda: polars.read_parquet(theirs),
        "pyarrow Polars": lambda: polars.from_arrow(pyarrow.parquet.read_table(theirs)),
        "ours pandas": lambda: kelvarin.scan(ours, threads=threads).to_pandas(),
        "pandas": lambda: pandas.read_parquet(theirs),
    }
    check_reading(ours, theirs)
    seconds = medians(contenders, task["rounds"], threads)
    return {"Polars": [seconds["ours Polars"], seconds["Polars"], seconds["pyarrow Polars"]],
            "pandas": [seconds["ours pandas"], seconds["pandas"], None]}


def check_reading(ours, theirs):
    frame = kelvarin.scan(ours).to_polars()
    if not frame.equals(polars.read_parquet(theirs).cast(dict(zip(frame.columns, frame.dtypes)))):
        raise RuntimeError(f"{ours} has other rows than {theirs}")
    pandas.testing.assert_frame_equal(kelvarin.scan(ours).to_pandas(), pandas.read_parquet(theirs), check_dtype=False)


def calculate(task):
    """Seconds by expression and contender."""
    threads, rows = task["cores"], task["rows"]
    random = numpy.random.default_rng(seed=11)
    c = numpy.where(random.random(rows) < 0.1, 1.0, random.uniform(0, 3, rows))
    table = pyarrow.table({"a": random.uniform(-1, 1, rows), "b": random.uniform(-1, 1, rows), "c": c})
    arrays = {name: table[name].to_numpy() for name in table.column_names}
    numexpr.set_num_threads(threads)
    connection = duckdb.connect(config={"threads": threads})
    connection.register("source", table)
    found = {}
    for case in CASES:
        contenders = {
            "ours": lambda case=case: kelvarin.calculate(table, {"y": case.text}, threads=threads).to_arrow(),
            "Polars": lambda case=case: polars.from_arrow(table).with_columns(y=case.polars).to_arrow(),
            "DuckDB": lambda case=case: connection.sql(f"SELECT {case.sql} AS y FROM source").to_arrow_table(),
            "numexpr": lambda case=case: numexpr.evaluate(case.numexpr, local_dict=arrays),
        }
        check_results(case, {name: run() for name, run in contenders.items()})
        found[case.name] = medians(contenders, task["rounds"], threads)
    return found


def check_results(case, results):
    values = {name: result if isinstance(result, numpy.ndarray) else result["y"].to_numpy()
              for name, result in results.items()}
    for name, computed in values.items():
        if not numpy.allclose(computed, values["ours"], rtol=TOLERANCE, atol=TOLERANCE, equal_nan=True):
            raise RuntimeError(f"{name} computes something else for {case.name}")


def calls(task):
    """Microseconds of calls that have next to nothing to do."""
    table = pyarrow.table({"a": [1.0], "b": [2.0]})
    path = os.path.join(task["folder"], "one.cgel_kelvarin")
    kelvarin.write(table, path)
    program = kelvarin.Program({"y": "a + b"}, where="a > 0")
    program.apply(table).read()
    kept = program.apply(table).read()
    return {
        "opening a file: scan(path)": microseconds(lambda: kelvarin.scan(path)),
        "a program on a table of one row: apply(table)": microseconds(lambda: program.apply(table)),
        "and reading it: apply(table).read()": microseconds(lambda: program.apply(table, threads=1).read()),
        "compiling as well: calculate(table, ...)":
            microseconds(lambda: kelvarin.calculate(table, {"y": "a + b"}, where="a > 0")),
        "a table in memory to pyarrow: table(rows)": microseconds(lambda: pyarrow.table(kept)),
    }


def microseconds(run, repetitions=300):
    return medians({"": run}, repetitions)[""] * 1e6


def main():
    what, content = sys.argv[1:]
    print(json.dumps({"make": make, "read": read, "calculate": calculate, "calls": calls}[what](json.loads(content))))


if __name__ == "__main__":
    main()
