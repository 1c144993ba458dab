"""Statistics of all columns, and the number of rows, of a CSV and a Parquet file: whole processes against DuckDB and Polars."""

import os
import subprocess
import sys
import tempfile

from comparison import Comparison, medians_of_rounds
from graphs.data import write_table

STATISTICS = {
    "DuckDB": "import duckdb; duckdb.sql(\"summarize select * from '{file}'\").fetchall()",
    "Polars": "import polars; polars.scan_{kind}('{file}').collect().describe()",
}
COUNT = {
    "DuckDB": "import duckdb; duckdb.sql(\"select count(*) from '{file}'\").fetchall()",
    "Polars": "import polars; polars.scan_{kind}('{file}').select(polars.len()).collect()",
}


def run(options):
    rows, rounds = (500_000, 2) if options.quick else (2_000_000, 3)
    program = os.path.abspath(os.path.join(options.build, "bin", "kelvarin"))
    found = []
    with tempfile.TemporaryDirectory(dir=options.folder) as folder:
        for table in ("orders", "texts"):
            write_table(folder, table, rows, {})
            for kind in ("csv", "parquet"):
                for command, peers in (("stats", STATISTICS), ("count", COUNT)):
                    found += compared(program, command, peers, os.path.join(folder, f"{table}.{kind}"), kind,
                                      options.rounds or rounds)
    return found


def compared(program, command, peers, file, kind, rounds):
    contenders = {"ours": lambda: call([program, command, file, "--quiet"])}
    for name, text in peers.items():
        contenders[name] = lambda text=text: call([sys.executable, "-c", text.format(file=file, kind=kind)])
    seconds = medians_of_rounds(contenders, rounds)
    group = f"Looking into a table of {os.path.basename(file).split('.')[0]}, whole processes"
    return [Comparison(group, f"{command} of {kind}", name, seconds["ours"], seconds[name], "s", 1.0) for name in peers]


def call(command):
    subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
