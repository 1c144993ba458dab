"""Columnar files and expressions on Ray Data.

    import kelvarin.ray

    orders = kelvarin.ray.read("/data/orders", ["day", "price", "quantity"], where=[("day", ">=", 20240120)])
    large = kelvarin.ray.calculate(orders, {"total": "price * quantity"}, where="total >= 40")
    kelvarin.ray.write(large, "/data/large", mode="overwrite")

Columns are Arrow's: numbers float64, keys uint32, texts string. The package must be installed on every node, and files
have the same path everywhere.
"""

from __future__ import annotations

import os
from collections.abc import Iterable, Mapping
from typing import Any

import pyarrow
import ray.data
from ray.data.block import Block, BlockAccessor, BlockMetadata
from ray.data.datasource import Datasink, Datasource, ReadTask, WriteResult

from kelvarin.commits import Mode, Written, WriteJob, start_job
from kelvarin.predicates import Operator, predicates
from kelvarin.row_steps import RowSteps
from kelvarin.splits import ROWS_IN_SPLIT, ColumnarTable, Split, TableReader

BYTES_OF_VALUE = {"number": 8, "key": 4, "text": 16}


def read(path: str | os.PathLike[str] | Iterable[str], columns: Iterable[str] | None = None, *,
         where: Iterable[tuple[str, Operator, Any]] = (), rows_in_split: int | None = None, blocks: str | None = None,
         row_number: str | None = None, threads: int = 1, skip_damage: bool = False,
         **options: Any) -> ray.data.Dataset:
    """Reads columnar files, a task a range of blocks.

    Args:
        path: A file, a folder, a glob, or a list of these.
        columns: The names of the columns to read; None: all.
        where: Blocks in which no row can satisfy all of these conditions make no tasks, as for ``kelvarin.spark.read``.
            All rows of the others come.
        rows_in_split: Of a task at most; None: by the parallelism that Ray asks for, at most 1,000,000. Blocks are not cut.
        blocks, threads, skip_damage: As for ``kelvarin.scan``.
        row_number: The name of one more column (int64) with the number of each row in the whole table.
        options: Of ``ray.data.read_datasource``.
    """
    datasource = ColumnarDatasource(path, columns, where, rows_in_split, blocks=blocks, row_number=row_number,
                                    threads=threads, skip_damage=skip_damage)
    return ray.data.read_datasource(datasource, **options)


def calculate(dataset: ray.data.Dataset, outputs: Mapping[str, str] | None = None, where: str | None = None, *,
              row_number: str | None = None, map_options: Mapping[str, Any] | None = None,
              **options: Any) -> ray.data.Dataset:
    """Computes columns of a dataset and keeps the rows that a condition is true for, batch by batch.

    Args:
        dataset: Any dataset of tables. Its columns are looked up, for which Ray may compute a first batch.
        outputs, where: As for ``kelvarin.Program``.
        row_number: The column that ``row_number`` of ``read`` has made; ``_n`` stands for it.
        map_options: Of ``map_batches``.
        options: Of ``kelvarin.Program``.

    Raises:
        kelvarin.Error: An expression does not compile, or depends on more than its row.
    """
    steps = RowSteps(outputs, where, row_number, **options)
    schema = pyarrow.schema(list(zip(dataset.schema().names, dataset.schema().types)))
    result = steps.output_schema(schema)

    def apply(table: pyarrow.Table) -> pyarrow.Table:
        return pyarrow.Table.from_batches(steps.apply(schema, table.cast(schema).to_batches()), result)

    return dataset.map_batches(apply, batch_format="pyarrow", **(map_options or {}))


def write(dataset: ray.data.Dataset, folder: str | os.PathLike[str], *, mode: Mode = "error",
          rows_in_file: int | None = None, ray_options: Mapping[str, Any] | None = None, **options: Any) -> None:
    """Writes a dataset into a folder, a file a task, all of them or none.

    Args:
        dataset: What is computed and written.
        folder: Of the table, which every node sees by the same path.
        mode: "error" where there is a table already, "append" or "overwrite".
        rows_in_file: At least so many go into one file, where the dataset has them; None: as Ray divides the rows.
        ray_options: Of ``write_datasink``.
        options: Of ``kelvarin.write``: sorted_by, keys, texts, numbers, block_rows, bad_as_null, ...
    """
    dataset.write_datasink(ColumnarDatasink(folder, mode, rows_in_file, **{"threads": 1, **options}),
                           **(ray_options or {}))


class ColumnarDatasource(Datasource):
    """A read task a split; see ``read``."""

    def __init__(self, path: str | os.PathLike[str] | Iterable[str], columns: Iterable[str] | None,
                 where: Iterable[tuple[str, Operator, Any]], rows_in_split: int | None, **options: Any):
        super().__init__()
        table = ColumnarTable(path, columns)
        self._reader = table.reader(**options)
        self._schema = table.arrow_schema(self._reader.row_number)
        self._row_bytes = sum(BYTES_OF_VALUE[column.type] for column in table.columns)
        self._table: ColumnarTable | None = table
        self._where = predicates(table.columns, where)
        self._rows = sum(split.rows for split in table.splits(self._where))
        self._rows_in_split = rows_in_split

    def __getstate__(self) -> dict[str, Any]:
        # Opened files stay on the driver.
        return {**self.__dict__, "_table": None}

    def estimate_inmemory_data_size(self) -> int:
        return self._row_bytes * self._rows

    def get_read_tasks(self, parallelism: int, per_task_row_limit: int | None = None,
                       data_context: Any = None) -> list[ReadTask]:
        assert self._table is not None
        limit = self._rows_in_split or max(1, min(ROWS_IN_SPLIT, -(-self._rows // max(parallelism, 1))))
        return [ReadTask(SplitTask(self._reader, split),
                         BlockMetadata(split.rows, self._row_bytes * split.rows, [split.path], None), self._schema,
                         per_task_row_limit)
                for split in self._table.splits(self._where, limit)]


class SplitTask:
    """Reads one split, on a worker."""

    def __init__(self, reader: TableReader, split: Split):
        self._reader = reader
        self._split = split

    def __call__(self) -> Iterable[Block]:
        for batch in self._reader.batches(self._split):
            yield pyarrow.Table.from_batches([batch])


class ColumnarDatasink(Datasink[list[Written]]):
    """Writes one file a task; see ``kelvarin.commits`` for what counts."""

    def __init__(self, folder: str | os.PathLike[str], mode: Mode, rows_in_file: int | None, **options: Any):
        self._arguments = os.fspath(folder), mode, options
        self._rows_in_file = rows_in_file
        self._job: WriteJob | None = None

    def on_write_start(self, schema: pyarrow.Schema | None = None) -> None:
        folder, mode, options = self._arguments
        self._job = start_job(folder, mode, **options)

    def write(self, blocks: Iterable[Block], ctx: Any) -> list[Written]:
        assert self._job is not None
        tables = [BlockAccessor.for_block(block).to_arrow() for block in blocks]
        tables = [table for table in tables if table.num_rows > 0]
        if not tables:
            return []
        rows = pyarrow.concat_tables(tables, promote_options="permissive")
        return [self._job.write_partition(ctx.task_idx, rows)]

    def on_write_complete(self, write_result: WriteResult[list[Written]]) -> None:
        assert self._job is not None
        self._job.commit(written for each in write_result.write_returns for written in each)

    def on_write_failed(self, error: Exception) -> None:
        if self._job is not None:
            self._job.abort()

    @property
    def min_rows_per_write(self) -> int | None:
        return self._rows_in_file
