"""Measures another file format on a table: peer_file.py duckdb|vortex|vortex-compact JSON.

The JSON has the file with the table ("parquet"), a folder, the names of three columns, the range of the first one, and
whether to check what was read. Each piece of work is done twice and the second time is taken: processor time of all
threads, without the start of Python. Prints {"bytes", "times"} as JSON. The process stays on one core, as it was started.

Reading ends with Arrow record batches of what was asked for; nothing is done with them but counting their rows.
"""

import contextlib
import json
import os
import sys
import time

import pyarrow
import pyarrow.parquet


class DuckFile:
    """DuckDB's own file, with one table, after a checkpoint. The database that opens it runs already."""

    def __init__(self, path):
        import duckdb
        self.path = path + ".duckdb"
        self.database = duckdb.connect(config={"threads": 1})

    @contextlib.contextmanager
    def opened(self, options=""):
        self.database.execute(f"ATTACH '{self.path}' AS file {options}")
        yield
        self.database.execute("DETACH file")

    def write(self, table):
        if os.path.exists(self.path):
            os.remove(self.path)
        self.database.register("made", table)
        with self.opened():
            self.database.execute("CREATE TABLE file.made AS FROM made; CHECKPOINT file")

    def read(self, columns=None, range_of_first=None):
        query = f"SELECT {', '.join(columns or ('*',))} FROM file.made"
        if range_of_first:
            query += " WHERE {0} >= {1} AND {0} < {2}".format(columns[0], *range_of_first)
        with self.opened("(READ_ONLY)"):
            yield from self.database.sql(query).to_arrow_reader()


class VortexFile:
    """As Vortex writes it by default, or smaller and slower."""

    def __init__(self, path, compact=False):
        self.path = path + ".vortex"
        self.compact = compact

    def write(self, table):
        import vortex
        options = vortex.io.VortexWriteOptions
        (options.compact() if self.compact else options.default()).write(table, self.path)

    def read(self, columns=None, range_of_first=None):
        import vortex
        condition = None
        if range_of_first:
            key = vortex.expr.column(columns[0])
            low, high = (vortex.expr.literal(vortex.uint(32), bound) for bound in range_of_first)
            condition = vortex.expr.and_(vortex.expr.gt_eq(key, low), vortex.expr.lt(key, high))
        yield from vortex.open(self.path).to_arrow(columns, expr=condition)


FORMATS = {"duckdb": DuckFile, "vortex": VortexFile, "vortex-compact": lambda path: VortexFile(path, compact=True)}


def processor_seconds(work):
    work()
    start = time.process_time()
    work()
    return time.process_time() - start


def rows_of(batches):
    return sum(batch.num_rows for batch in batches)


def measure(file, table, columns, range_of_first):
    times = {"write": processor_seconds(lambda: file.write(table)), "scan": processor_seconds(lambda: rows_of(file.read()))}
    if columns:
        times["three columns"] = processor_seconds(lambda: rows_of(file.read(columns)))
        times["range"] = processor_seconds(lambda: rows_of(file.read(columns, range_of_first)))
    return times


def check(file, table, columns, range_of_first):
    """Files that do not give back what was written make every time worthless."""
    read = pyarrow.Table.from_batches(file.read()).cast(table.schema)
    if not read.equals(table):
        raise RuntimeError(f"{file.path} has other values than were written")
    if columns:
        keys = table.column(columns[0]).to_numpy()
        expected = ((keys >= range_of_first[0]) & (keys < range_of_first[1])).sum()
        if rows_of(file.read(columns, range_of_first)) != expected:
            raise RuntimeError(f"{file.path} has another number of rows in the range")


def main():
    name, content = sys.argv[1:]
    asked = json.loads(content)
    columns, range_of_first = asked["threeColumns"], asked.get("range")
    table = pyarrow.parquet.read_table(asked["parquet"]).combine_chunks()
    file = FORMATS[name](os.path.join(asked["folder"], f"{asked['table']}-{name}"))
    times = measure(file, table, columns, range_of_first)
    if asked["round"] == 0:
        check(file, table, columns, range_of_first)
    print(json.dumps({"bytes": os.path.getsize(file.path), "times": times}))
    os.remove(file.path)


if __name__ == "__main__":
    main()
