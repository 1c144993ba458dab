"""Does the work of a graph of text expressions in another engine.

peer_graph.py duckdb THREADS QUERY; peer_graph.py polars THREADS INPUT OUTPUT CASE...

Prints the seconds that it took, by the clock and of the processors, without the start of Python and the loading of the
library.
"""

import os
import sys

from graphs.peer_graph import timed


def run_duckdb(threads, query):
    import duckdb
    connection = duckdb.connect(config={"threads": int(threads)})
    return timed(lambda: connection.execute(query))


def run_polars(threads, source, target, *names):
    os.environ["POLARS_MAX_THREADS"] = threads
    import polars
    from texts.cases import CASES, POLARS_TYPES, SQL_TYPES
    schema = {name: POLARS_TYPES[sql] for name, sql in SQL_TYPES.items()}
    rows = polars.scan_csv(source, schema=schema).with_columns(
        case.polars.alias(case.name) for case in CASES if case.name in names)
    return timed(lambda: rows.sink_csv(target, engine="streaming"))


if __name__ == "__main__":
    engine, *arguments = sys.argv[1:]
    print(*{"duckdb": run_duckdb, "polars": run_polars}[engine](*arguments))
