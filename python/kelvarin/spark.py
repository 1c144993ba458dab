"""Columnar files, expressions and graphs on Spark 4.

    import kelvarin.spark

    kelvarin.spark.register(spark)
    orders = kelvarin.spark.read(spark, "/data/orders", ["day", "price", "quantity"], where=[("day", ">=", 20240120)])
    large = kelvarin.spark.calculate(orders, {"total": "price * quantity"}, where="total >= 40")
    large.write.format("kelvarin").mode("overwrite").save("/data/large")

Numbers are of type double, keys long, texts string. The package must be installed where Spark's Python workers run, and
files have the same path everywhere.
"""

from __future__ import annotations

import json
import os
from collections.abc import Callable, Iterable, Iterator, Mapping
from dataclasses import dataclass
from typing import Any

import pyarrow
from pyspark import TaskContext
from pyspark.sql import DataFrame, SparkSession
from pyspark.sql import datasource as source
from pyspark.sql.pandas.types import from_arrow_type, to_arrow_schema
from pyspark.sql.types import DoubleType, LongType, StringType, StructField, StructType

from kelvarin.commits import Mode, Written, WriteJob, start_job
from kelvarin.divided_graphs import divided
from kelvarin.errors import Error
from kelvarin.predicates import Operator, Predicate, predicates
from kelvarin.row_steps import RowSteps
from kelvarin.rows import as_list
from kelvarin.splits import ColumnarTable, Split, TableReader

NAME = "kelvarin"
TYPES = {"number": DoubleType, "key": LongType, "text": StringType}
# Spark has one integer type for keys and all others: the metadata of a column say that it comes from keys.
MARKED_KEY = {NAME: "key"}
PUSHED: dict[type[source.Filter], Operator] = {
    source.EqualTo: "==", source.EqualNullSafe: "==", source.LessThan: "<", source.LessThanOrEqual: "<=",
    source.GreaterThan: ">", source.GreaterThanOrEqual: ">=", source.In: "in", source.StringStartsWith: "starts with",
    source.IsNull: "is null", source.IsNotNull: "is not null",
}
SPARK_CONDITIONS: dict[Operator, Callable[[Any, Any], Any]] = {
    "==": lambda column, value: column == value, "<": lambda column, value: column < value,
    "<=": lambda column, value: column <= value, ">": lambda column, value: column > value,
    ">=": lambda column, value: column >= value, "in": lambda column, value: column.isin(list(value)),
    "starts with": lambda column, value: column.startswith(value),
    "is null": lambda column, value: column.isNull(), "is not null": lambda column, value: column.isNotNull(),
}


def register(spark: SparkSession) -> None:
    """Makes the format "kelvarin" known to a session.

    Options of reading, beside the path (a file, a folder or a glob):
        columns: Names of the columns to read, "a,b" or as a JSON list; all if it is absent.
        blocks: A block filter such as "price_max > 5". All rows of the blocks that it keeps come.
        rows_in_split: Of a task at most, 1,000,000 if it is absent. Blocks are not cut.
        row_number: The name of one more column (long) with the number of each row in the whole table, counted from 0.
        threads: How many decode in one task, 1 if it is absent.
        skip_damage: "true" leaves damaged rows out instead of failing.
        where: A JSON list such as ``[["day", ">=", 20240120], ["shop", "in", ["Lyon", "Basel"]]]``: blocks in which
            no row can satisfy all of it make no tasks. All rows of the others come; ``read`` filters them as well.
        push_filters: "true" does the same with the filters that Spark pushes, for which its setting
            ``spark.sql.python.filterPushdown.enabled`` must be true. **Only for a frame that is used in one query with
            one filter**: Spark 4.3 keeps what it has pushed for one query of a frame, and other queries of the same
            frame, and other branches of the same query, would miss rows.

    Options of writing, beside the folder: ``keys``, ``texts``, ``numbers`` and ``sorted_by`` with names as ``columns``;
    ``block_rows``; ``bad_as_null``. Each partition becomes a file. Modes are "append" and "overwrite".
    """
    spark.dataSource.register(ColumnarDataSource)


def read(spark: SparkSession, path: str, columns: Iterable[str] | None = None, *,
         where: Iterable[tuple[str, Operator, Any]] = (), **options: Any) -> DataFrame:
    """Reads columnar files, without the blocks that a condition rules out.

    Args:
        path: A file, a folder or a glob.
        columns: The names of the columns to read; None: all. Those of ``where`` must be among them.
        where: Conditions that a row must satisfy, all of them: ``[("day", ">=", 20240120), ("shop", "in", ["Lyon"])]``.
            Operators are ==, <, <=, >, >=, in, "starts with", "is null" and "is not null" (value None).
        options: Those of ``register``.

    Example:
        >>> kelvarin.spark.read(spark, "/data/orders", ["day", "price"], where=[("day", ">=", 20240120)])
    """
    conditions = [(column, operator, value) for column, operator, value in where]
    register(spark)
    reader = spark.read.format(NAME).options(**options)
    if columns is not None:
        reader = reader.option("columns", json.dumps(as_list(columns)))
    frame = reader.option("where", json.dumps(conditions)).load(path)
    for column, operator, value in conditions:
        frame = frame.where(SPARK_CONDITIONS[operator](frame[column], value))
    return frame


def calculate(frame: DataFrame, outputs: Mapping[str, str] | None = None, where: str | None = None, *,
              row_number: str | None = None, **options: Any) -> DataFrame:
    """Computes columns of a frame and keeps the rows that a condition is true for, partition by partition.

    Rows, null rules and messages are those of ``kelvarin.calculate``; integers become double, dates texts, as there.

    Args:
        frame: Any frame.
        outputs, where: As for ``kelvarin.Program``.
        row_number: The column that the option ``row_number`` of reading has made; ``_n`` stands for it.
        options: Of ``kelvarin.Program``: types, settings, keys, texts, numbers, bad_as_null.

    Raises:
        kelvarin.Error: An expression does not compile, or depends on more than its row.
    """
    schema = _arrow_schema(frame.schema, as_list(options.pop("keys", None)))
    steps = RowSteps(outputs, where, row_number, **options)

    def apply(batches: Iterator[pyarrow.RecordBatch]) -> Iterator[pyarrow.RecordBatch]:
        return map(with_signed_keys, steps.apply(schema, (batch.cast(schema) for batch in batches)))

    return frame.mapInArrow(apply, _spark_schema(steps.output_schema(schema)))


def run(spark: SparkSession, graph: str | os.PathLike[str], parameters: Mapping[str, Any] | None = None, *,
        rows_in_split: int | None = None) -> int:
    """Runs a graph of a source, steps and a sink on Spark, with the same rows as ``kelvarin.run``. Returns their number.

    The sink becomes a folder of its name with a file for each part, in the order of the rows; a folder that is there is
    replaced. Sources are ReadColumnarGel, by splits, and ReadParquet, by row groups; steps are Calculator,
    CalculatorVectorized and FilterRows; sinks are writeColumnarGel and WriteParquet.

    Args:
        graph: The graph file.
        parameters: Values for parameters of the graph.
        rows_in_split: Rows of a part at most, where the source is a columnar file; None: 1,000,000.

    Raises:
        kelvarin.Error: The graph is wrong, has another shape, or has an action that cannot be divided, with its name
            and why.
    """
    divided_graph = divided(graph, parameters, rows_in_split)
    try:
        parts = len(divided_graph.rows.parts)
        numbers = spark.sparkContext.parallelize(range(parts), max(parts, 1))
        return divided_graph.job.commit(numbers.map(divided_graph.run_part).collect())
    except BaseException:
        divided_graph.job.abort()
        raise


class ColumnarDataSource(source.DataSource):
    """The format "kelvarin" for a session of Spark; see ``register``."""

    @classmethod
    def name(cls) -> str:
        return NAME

    def schema(self) -> StructType:
        fields = [StructField(column.name, TYPES[column.type](), True, MARKED_KEY if column.type == "key" else {})
                  for column in self._table().columns]
        number = self.options.get("row_number")
        return StructType([*fields, StructField(number, LongType())] if number else fields)

    def reader(self, schema: StructType) -> ColumnarReader:
        table = self._table()
        reader = table.reader(
            blocks=self.options.get("blocks"), row_number=self.options.get("row_number"),
            threads=int(self.options.get("threads", 1)), skip_damage=_is_true(self.options.get("skip_damage")))
        rows = self.options.get("rows_in_split")
        where = predicates(table.columns, json.loads(self.options.get("where") or "[]"))
        made = FilteringReader if _is_true(self.options.get("push_filters")) else ColumnarReader
        return made(table, reader, int(rows) if rows else None, where)

    def writer(self, schema: StructType, overwrite: bool) -> ColumnarWriter:
        rows = self.options.get("block_rows")
        options = {
            **{name: _names(self.options.get(name)) for name in ("texts", "numbers", "sorted_by")},
            "block_rows": int(rows) if rows else None, "bad_as_null": _is_true(self.options.get("bad_as_null")),
            "threads": int(self.options.get("threads", 1))}
        mode: Mode = "overwrite" if overwrite else "append"
        job = start_job(self.options["path"], mode, **options)
        return ColumnarWriter(job, _arrow_schema(schema, _names(self.options.get("keys"))))

    def _table(self) -> ColumnarTable:
        return ColumnarTable(self.options["path"], _names(self.options.get("columns")) or None)


class SplitPartition(source.InputPartition):
    """A split as a partition of Spark."""

    def __init__(self, split: Split):
        super().__init__(split)
        self.split = split


class ColumnarReader(source.DataSourceReader):
    """Reads splits. On the driver it makes them, without the blocks that conditions rule out."""

    def __init__(self, table: ColumnarTable, reader: TableReader, rows_in_split: int | None, where: list[Predicate]):
        self._table: ColumnarTable | None = table
        self._reader = reader
        self._rows_in_split = rows_in_split
        self._where = where

    def partitions(self) -> list[source.InputPartition]:
        assert self._table is not None
        return [SplitPartition(split) for split in self._table.splits(self._where, self._rows_in_split)]

    def read(self, partition: source.InputPartition) -> Iterator[pyarrow.RecordBatch]:
        assert isinstance(partition, SplitPartition)
        return map(with_signed_keys, self._reader.batches(partition.split))

    def __getstate__(self) -> dict[str, Any]:
        # Opened files stay on the driver.
        return {**self.__dict__, "_table": None}


class FilteringReader(ColumnarReader):
    """Takes Spark's filters as well. Where a reader does, Spark asks one more Python process before each query."""

    def pushFilters(self, filters: list[source.Filter]) -> Iterable[source.Filter]:
        assert self._table is not None
        names = {column.name for column in self._table.columns}
        conditions = (_condition(each) for each in filters)
        self._where = [*self._where, *predicates(self._table.columns, (
            each for each in conditions if each is not None and each[0] in names))]
        # Statistics rule out blocks and not rows, so that Spark still has to look at each row.
        return filters


@dataclass
class WrittenPartition(source.WriterCommitMessage):
    """What a task has written, as a message of Spark."""

    written: Written


class ColumnarWriter(source.DataSourceArrowWriter):
    """Writes one file a partition; see ``kelvarin.commits`` for what counts."""

    def __init__(self, job: WriteJob, schema: pyarrow.Schema):
        self._job = job
        self._schema = schema

    def write(self, iterator: Iterator[pyarrow.RecordBatch]) -> WrittenPartition:
        context = TaskContext.get()
        assert context is not None
        rows = pyarrow.RecordBatchReader.from_batches(self._schema, (batch.cast(self._schema) for batch in iterator))
        return WrittenPartition(self._job.write_partition(context.partitionId(), rows))

    def commit(self, messages: list[source.WriterCommitMessage | None]) -> None:
        self._job.commit(message.written for message in messages if isinstance(message, WrittenPartition))

    def abort(self, messages: list[source.WriterCommitMessage | None]) -> None:
        self._job.abort()


def with_signed_keys(batch: pyarrow.RecordBatch) -> pyarrow.RecordBatch:
    """A batch with keys as Spark has them, which knows no unsigned integers."""
    fields = [field.with_type(pyarrow.int64()) if field.type == pyarrow.uint32() else field for field in batch.schema]
    return batch.cast(pyarrow.schema(fields))


def _spark_schema(schema: pyarrow.Schema) -> StructType:
    return StructType([StructField(field.name, LongType(), True, MARKED_KEY) if field.type == pyarrow.uint32() else
                       StructField(field.name, from_arrow_type(field.type)) for field in schema])


def _arrow_schema(schema: StructType, keys: list[str]) -> pyarrow.Schema:
    """The columns of a frame, with those as unsigned integers that are named as keys or were keys in a file."""
    unknown = set(keys) - set(schema.names)
    if unknown:
        raise Error(f"keys has {', '.join(sorted(unknown))}, which are no columns of the frame.")
    marked = {field.name for field in schema.fields if field.metadata.get(NAME) == "key"}
    return pyarrow.schema([
        pyarrow.field(field.name, pyarrow.uint32() if field.name in marked or field.name in keys else field.type)
        for field in to_arrow_schema(schema)])


def _condition(each: source.Filter) -> tuple[str, Operator, Any] | None:
    operator = PUSHED.get(type(each))
    if operator is None or len(each.attribute) != 1:
        return None
    value = getattr(each, "value", None)
    is_null_test = isinstance(each, source.EqualNullSafe) and value is None
    return each.attribute[0], "is null" if is_null_test else operator, value


def _names(text: str | None) -> list[str]:
    if not text:
        return []
    return json.loads(text) if text.startswith("[") else [name.strip() for name in text.split(",")]


def _is_true(text: str | None) -> bool:
    return text is not None and text.lower() in ("true", "1")
