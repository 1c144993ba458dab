"""Everyone who computes the expressions, each as a function to be timed that leaves its result in memory.

All work on one thread, over rows that they already hold in their own form. Values are fetched afterwards, untimed.
"""

import ctypes

import duckdb
import numpy
import polars
import pyarrow

from texts.cases import NUMBERS, TEXTS, Case, rows_of

POINTER, SIZE = ctypes.c_void_p, ctypes.c_size_t


class Table:
    """Rows in the forms that the contenders read."""

    def __init__(self, library, count):
        self.count = count
        self.frame = rows_of(count)
        self.connection = duckdb.connect(config={"threads": 1})
        self.connection.register("source", self.frame.to_arrow())
        self.connection.execute("CREATE TABLE t AS SELECT * FROM source")
        texts = [self.frame[name].to_arrow().cast(pyarrow.large_string()).buffers() for name in TEXTS]
        numbers = [self.frame[name].cast(polars.Float64).to_numpy() for name in NUMBERS]
        self.own = library.makeTable(count, addresses(offsets for _, offsets, _ in texts),
                                     addresses(characters for *_, characters in texts),
                                     (POINTER * len(numbers))(*(column.ctypes.data for column in numbers)))


def addresses(buffers):
    found = [buffer.address for buffer in buffers]
    return (POINTER * len(found))(*found)


def library_of(file):
    """contenders.cpp."""
    calls = ctypes.CDLL(file)
    for name, result, *arguments in (
            ("makeTable", POINTER, SIZE, POINTER, POINTER, POINTER), ("byBatch", POINTER, ctypes.c_char_p, ctypes.c_bool),
            ("byStringParser", POINTER, ctypes.c_char_p, ctypes.c_bool), ("byLoop", POINTER, ctypes.c_char_p),
            ("runContender", None, POINTER, POINTER), ("bytesOfTexts", SIZE, POINTER),
            ("fetchTexts", None, POINTER, POINTER, POINTER), ("fetchNumbers", None, POINTER, POINTER),
            ("forgetContender", None, POINTER)):
        function = getattr(calls, name)
        function.restype, function.argtypes = result, arguments
    return calls


class OwnContender:
    """One of contenders.cpp."""

    def __init__(self, library, handle, case: Case, table: Table):
        if handle is None:
            raise RuntimeError(f"{case.name}: '{case.text}' is not taken")
        self.library, self.handle, self.case, self.table = library, handle, case, table

    def run(self):
        self.library.runContender(self.handle, self.table.own)

    def values(self):
        if not self.case.yields_text:
            numbers = numpy.empty(self.table.count)
            self.library.fetchNumbers(self.handle, numbers.ctypes.data)
            return polars.Series(numbers)
        characters = numpy.empty(self.library.bytesOfTexts(self.handle), numpy.uint8)
        offsets = numpy.empty(self.table.count + 1, numpy.int64)
        self.library.fetchTexts(self.handle, offsets.ctypes.data, characters.ctypes.data)
        return polars.from_arrow(pyarrow.LargeStringArray.from_buffers(
            self.table.count, pyarrow.py_buffer(offsets), pyarrow.py_buffer(characters)))

    def close(self):
        self.library.forgetContender(self.handle)


class Peer:
    """A library that computes a column."""

    def __init__(self, compute):
        self.compute, self.result = compute, None

    def run(self):
        self.result = self.compute()

    def values(self):
        return polars.from_arrow(self.result) if isinstance(self.result, pyarrow.ChunkedArray) else self.result

    def close(self):
        self.result = None


def contenders_of(library, case: Case, table: Table):
    text, name = case.text.encode(), case.name.encode()
    handles = {"ours": library.byBatch(text, case.yields_text),
               "String Parser": library.byStringParser(text, case.yields_text), "std::string": library.byLoop(name)}
    found = {who: OwnContender(library, handle, case, table) for who, handle in handles.items()}
    query = f"SELECT {case.sql} AS r FROM t"
    found["DuckDB"] = Peer(lambda: table.connection.sql(query).to_arrow_table()["r"])
    found["Polars"] = Peer(lambda: table.frame.select(case.polars.alias("r"))["r"])
    return found
