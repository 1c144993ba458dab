"""Everyone who computes the expressions, each as a function to be timed that leaves its result in memory.

The programs of the peers run on one thread, over data that they already hold in their own form.
"""

import ctypes

import duckdb
import numexpr
import numpy
import polars

from expressions.cases import Case

POINTER, SIZE, INT = ctypes.c_void_p, ctypes.c_size_t, ctypes.c_int


class Library:
    """contenders.cpp."""

    def __init__(self, file):
        self.calls = ctypes.CDLL(file)
        for name, result, *arguments in (
                ("nativeExpression", POINTER, ctypes.c_char_p), ("interpretedExpression", POINTER, ctypes.c_char_p),
                ("cRow", POINTER, ctypes.c_char_p), ("cLoop", POINTER, ctypes.c_char_p, ctypes.c_bool),
                ("secondsToCompile", ctypes.c_double, ctypes.c_char_p, INT),
                ("nativeRows", None, POINTER, POINTER, SIZE, POINTER),
                ("cRows", None, POINTER, POINTER, SIZE, POINTER),
                ("interpretedRows", None, POINTER, POINTER, SIZE, POINTER),
                ("nativeColumns", None, POINTER, POINTER, SIZE, POINTER, INT),
                ("cColumns", None, POINTER, POINTER, SIZE, POINTER, INT)):
            function = getattr(self.calls, name)
            function.restype, function.argtypes = result, arguments

    def handle(self, name, *arguments):
        found = getattr(self.calls, name)(*arguments)
        if found is None:
            raise RuntimeError(f"{name}: '{arguments[0].decode()}' is not taken")
        return found


class Table:
    """Random rows of a, b and c, in the forms that the contenders read."""

    def __init__(self, rows):
        random = numpy.random.default_rng(seed=11)
        self.a = random.uniform(-1, 1, rows)
        self.b = random.uniform(-1, 1, rows)
        self.c = numpy.where(random.random(rows) < 0.1, 1.0, random.uniform(0, 3, rows))
        self.rows = numpy.ascontiguousarray(numpy.column_stack((self.a, self.b, self.c)))
        self.pointers = (ctypes.c_void_p * 3)(*(column.ctypes.data for column in (self.a, self.b, self.c)))
        self.count = rows
        self.frame = polars.DataFrame({"a": self.a, "b": self.b, "c": self.c})
        self.connection = duckdb.connect(config={"threads": 1})
        self.connection.register("source", self.frame.to_arrow())
        self.connection.execute("CREATE TABLE t AS SELECT * FROM source")


def by_rows(library: Library, case: Case, table: Table):
    """One row a call: ours, a C function, the interpreting library; with the results that they leave."""
    text, calls = case.text.encode(), library.calls
    handles = {"ours": (calls.nativeRows, library.handle("nativeExpression", text)),
               "C function": (calls.cRows, library.handle("cRow", case.name.encode())),
               "muParser": (calls.interpretedRows, library.handle("interpretedExpression", text))}
    results = {name: numpy.empty(table.count) for name in handles}

    def timed(name):
        function, handle = handles[name]
        return lambda: function(handle, table.rows.ctypes.data, table.count, results[name].ctypes.data)

    return {name: timed(name) for name in handles}, results


def by_columns(library: Library, case: Case, table: Table, repetitions=1):
    """All rows a call: ours and the C loops."""
    text, name = case.text.encode(), case.name.encode()
    handles = {"ours": (library.calls.nativeColumns, library.handle("nativeExpression", text)),
               "C loop -O2": (library.calls.cColumns, library.handle("cLoop", name, False)),
               "C loop -O3 v3": (library.calls.cColumns, library.handle("cLoop", name, True))}
    results = {loop: numpy.empty(table.count) for loop in handles}

    def timed(loop):
        function, handle = handles[loop]
        return lambda: function(handle, table.pointers, table.count, results[loop].ctypes.data, repetitions)

    return {loop: timed(loop) for loop in handles}, results


def by_peers(case: Case, table: Table):
    """All rows a call: libraries of other languages."""
    results = {"numexpr": numpy.empty(table.count), "DuckDB": None, "Polars": None}
    columns = {"a": table.a, "b": table.b, "c": table.c}

    def run_numexpr():
        numexpr.evaluate(case.numexpr, local_dict=columns, out=results["numexpr"])

    def run_duckdb():
        results["DuckDB"] = table.connection.sql(f"SELECT {case.sql} AS r FROM t").to_arrow_table()["r"]

    def run_polars():
        results["Polars"] = table.frame.select(case.polars.alias("r"))["r"]

    return {"numexpr": run_numexpr, "DuckDB": run_duckdb, "Polars": run_polars}, results
