"""Runs the graph in DuckDB or in Polars' streaming engine: peer_graph.py duckdb|polars THREADS INPUT OUTPUT.

Prints the seconds that it took, by the clock and of the processors, without the start of Python and the loading of the
library.
"""

import os
import sys
import time

CONDITION = 1000


def run_duckdb(threads, source, target):
    import duckdb
    connection = duckdb.connect(config={"threads": threads})
    if source.endswith(".csv"):
        columns = "{'id':'BIGINT','city':'VARCHAR','price':'DOUBLE','quantity':'BIGINT','date':'VARCHAR'}"
        table, form = f"read_csv('{source}', header=true, columns={columns})", "FORMAT csv, HEADER"
    else:
        table, form = f"read_parquet('{source}')", "FORMAT parquet"
    query = f"""COPY (SELECT *, price*quantity AS total,
                        price*quantity*(CASE WHEN quantity>10 THEN 0.9::DOUBLE ELSE 1::DOUBLE END) AS disc,
                        ln(price+1)*sqrt(quantity) AS score
                      FROM {table} WHERE price*quantity >= {CONDITION}) TO '{target}' ({form})"""
    return timed(lambda: connection.execute(query))


def run_polars(threads, source, target):
    os.environ["POLARS_MAX_THREADS"] = str(threads)
    import polars
    from polars import col
    if source.endswith(".csv"):
        rows = polars.scan_csv(source, schema={"id": polars.Int64, "city": polars.String, "price": polars.Float64,
                                               "quantity": polars.Int64, "date": polars.String})
    else:
        rows = polars.scan_parquet(source)
    total = col("price") * col("quantity")
    rows = rows.with_columns(
        total=total, disc=total * polars.when(col("quantity") > 10).then(0.9).otherwise(1.0),
        score=(col("price") + 1).log() * col("quantity").sqrt()).filter(col("total") >= CONDITION)
    if target.endswith(".csv"):
        return timed(lambda: rows.sink_csv(target, engine="streaming"))
    return timed(lambda: rows.sink_parquet(target, compression="snappy", engine="streaming"))


def timed(work):
    start, start_of_processors = time.perf_counter(), time.process_time()
    work()
    return time.perf_counter() - start, time.process_time() - start_of_processors


if __name__ == "__main__":
    name, count, *files = sys.argv[1:]
    print(*{"duckdb": run_duckdb, "polars": run_polars}[name](int(count), *files))
