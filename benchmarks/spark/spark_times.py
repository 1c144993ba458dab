"""Seconds of Spark with one and two workers: scans of columnar files, of Parquet by the same means, and of Spark's own
Parquet; the package's expressions; and what a split costs. scripts/spark_times runs it.

Every figure is the median of rounds in which the candidates take turns.
"""

import argparse
import pathlib
import pickle
import statistics
import sys
import tempfile
import time

import pyarrow
import pyarrow.parquet
from engines import CONDITION, OUTPUTS, orders, spark_session
from parquet_source import ParquetDataSource

import kelvarin
import kelvarin.spark
from kelvarin.splits import ColumnarTable

COLUMNS = ["id", "price", "shop"]
ROWS_AT_ONCE = 1_000_000


def prepare(folder, rows):
    columnar, parquet = folder / "t.cgel_kelvarin", folder / "t.parquet"
    parts = []
    for begin in range(0, rows, ROWS_AT_ONCE):
        part = orders(min(ROWS_AT_ONCE, rows - begin), begin)
        parts.append(part.set_column(0, "id", pyarrow.array(range(begin, begin + len(part)), pyarrow.uint32())))
    table = pyarrow.concat_tables(parts)
    kelvarin.write(table, columnar, sorted_by="id")
    # Spark has no unsigned integers: each reader gets the type that it takes without a conversion.
    signed = table.set_column(0, "id", table["id"].cast("int64"))
    pyarrow.parquet.write_table(signed, parquet, compression="snappy", row_group_size=ROWS_AT_ONCE)
    return columnar, parquet


def candidates(spark, columnar, parquet, where):
    def by_source(path, name):
        import json
        frame = spark.read.format(name).option("columns", json.dumps(COLUMNS)).option("where", json.dumps(where)).load(str(path))
        return _filtered(frame, where)
    return {
        "columnar": lambda: by_source(columnar, "kelvarin"),
        "Parquet by a Python data source": lambda: by_source(parquet, "parquet_by_python"),
        "Spark's own Parquet": lambda: _filtered(spark.read.parquet(str(parquet)).select(*COLUMNS), where),
    }


def _filtered(frame, where):
    for column, operator, value in where:
        frame = frame.where(f"{column} {operator} {value}")
    return frame


def query(frame):
    return tuple(frame.selectExpr("count(*)", "count(shop)", "sum(id)", "count(price)").first())


def rounds(works, count):
    seconds = {name: [] for name in works}
    results = {}
    for _ in range(count + 1):
        for name, work in works.items():
            begin = time.monotonic()
            results[name] = work()
            seconds[name].append(time.monotonic() - begin)
    assert len(set(results.values())) == 1, results
    return {name: statistics.median(each[1:]) for name, each in seconds.items()}


def measure(workers, columnar, parquet, rows, count):
    with spark_session(f"local-cluster[{workers},1,1024]", **{"spark.executor.memory": "1g"}) as spark:
        kelvarin.spark.register(spark)
        spark.dataSource.register(ParquetDataSource)
        for title, where in (("a tenth of the rows", [["id", ">=", rows * 4 // 10], ["id", "<", rows // 2]]), ("all rows", [])):
            works = {name: lambda make=make: query(make()) for name, make in
                     candidates(spark, columnar, parquet, where).items()}
            found = rounds(works, count)
            for name, seconds in found.items():
                print(f"{workers} worker(s), {title}, {name}: {seconds:.2f} s, "
                      f"{found['columnar'] / seconds:.2f} of it for columnar", flush=True)
        frame = spark.read.format("kelvarin").load(str(columnar))
        computed = kelvarin.spark.calculate(frame, OUTPUTS, CONDITION)
        found = rounds({"three outputs and a filter": lambda: computed.count()}, count)
        out = columnar.parent / "out"
        found |= rounds({"the same, written": lambda: computed.write.format("kelvarin").mode("overwrite").save(str(out))}, count)
        tasks = 200
        numbers = spark.sparkContext.parallelize(range(tasks), tasks)
        found |= {"a task without work": rounds({"": lambda: numbers.map(abs).count()}, count)[""] / tasks}
        for name, seconds in found.items():
            print(f"{workers} worker(s), {name}: {seconds:.4g} s", flush=True)


def split_costs(columnar):
    begin = time.monotonic()
    table = ColumnarTable(columnar)
    opened = time.monotonic() - begin
    begin = time.monotonic()
    splits = table.splits(rows_in_split=1)
    seconds = time.monotonic() - begin
    print(f"driver: {opened * 1000:.2f} ms to open {len(splits)} blocks, {seconds / len(splits) * 1e6:.1f} us a split of one "
          f"block, {len(pickle.dumps(splits[-1]))} bytes each")


def main():
    parser = argparse.ArgumentParser(prog="scripts/spark_times")
    parser.add_argument("--rows", type=int, default=20_000_000)
    parser.add_argument("--rounds", type=int, default=5)
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory(dir=pathlib.Path.cwd() / "build") as folder:
        columnar, parquet = prepare(pathlib.Path(folder), arguments.rows)
        sizes = [sum(path.stat().st_size for path in pathlib.Path(folder).glob(pattern)) for pattern in ("*kelvarin", "*.parquet")]
        print(f"{arguments.rows} rows: columnar {sizes[0] / 1e6:.0f} MB, Parquet with Snappy {sizes[1] / 1e6:.0f} MB")
        split_costs(columnar)
        for workers in (1, 2):
            measure(workers, columnar, parquet, arguments.rows, arguments.rounds)


if __name__ == "__main__":
    sys.exit(main())
