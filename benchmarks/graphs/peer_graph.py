"""Does the work of a graph in another engine: peer_graph.py duckdb|polars|arrow WORK THREADS INPUT OUTPUT.

Prints the seconds that it took, by the clock and of the processors, without the start of Python and the loading of the
library. `arrow` computes nothing: it reads the input and writes the columns that OUTPUT has already, which is what the
library of the Parquet files takes for itself.
"""

import os
import sys
import time

from graphs.work import COLUMNS, CONDITION, WORKS


def run_duckdb(work, threads, source, target):
    import duckdb
    connection = duckdb.connect(config={"threads": threads})
    if source.endswith(".csv"):
        table, form = f"read_csv('{source}', header=true, columns={COLUMNS[work.table]})", "FORMAT csv, HEADER"
    else:
        table, form = f"read_parquet('{source}')", "FORMAT parquet"
    query = f"""SELECT *, price*quantity AS total,
                  price*quantity*(CASE WHEN quantity>10 THEN 0.9::DOUBLE ELSE 1::DOUBLE END) AS disc,
                  ln(price+1)*sqrt(quantity) AS score
                FROM {table} WHERE price*quantity >= {CONDITION}"""
    if work.peer_steps:
        query = f"SELECT * FROM {table}"
        for name, text in work.peer_steps:
            query = f"SELECT *, {text} AS {name} FROM ({query})" if name else f"SELECT * FROM ({query}) WHERE {text}"
    return timed(lambda: connection.execute(f"COPY ({query}) TO '{target}' ({form})"))


def run_polars(work, threads, source, target):
    os.environ["POLARS_MAX_THREADS"] = str(threads)
    import polars
    from polars import col
    if source.endswith(".csv"):
        types = {"BIGINT": polars.Int64, "DOUBLE": polars.Float64, "VARCHAR": polars.String}
        rows = polars.scan_csv(source, schema={name: types[sql] for name, sql in COLUMNS[work.table].items()})
    else:
        rows = polars.scan_parquet(source)
    if work.peer_steps:
        for name, text in work.peer_steps:
            expression = polars.sql_expr(text)
            rows = rows.with_columns(expression.alias(name)) if name else rows.filter(expression)
    else:
        total = col("price") * col("quantity")
        rows = rows.with_columns(
            total=total, disc=total * polars.when(col("quantity") > 10).then(0.9).otherwise(1.0),
            score=(col("price") + 1).log() * col("quantity").sqrt()).filter(col("total") >= CONDITION)
    if target.endswith(".csv"):
        return timed(lambda: rows.sink_csv(target, engine="streaming"))
    return timed(lambda: rows.sink_parquet(target, compression="snappy", engine="streaming"))


def run_arrow(_, threads, source, target):
    import pyarrow
    from pyarrow import parquet
    pyarrow.set_cpu_count(threads)
    result = parquet.read_table(target)

    def work():
        for _ in parquet.ParquetFile(source).iter_batches(use_threads=threads > 1):
            pass
        parquet.write_table(result, target + ".again", compression="snappy")

    taken = timed(work)
    os.remove(target + ".again")
    return taken


def timed(work):
    start, start_of_processors = time.perf_counter(), time.process_time()
    work()
    return time.perf_counter() - start, time.process_time() - start_of_processors


if __name__ == "__main__":
    engine, name, count, *files = sys.argv[1:]
    print(*{"duckdb": run_duckdb, "polars": run_polars, "arrow": run_arrow}[engine](WORKS[name], int(count), *files))
