"""Columnar files and expressions on Dask.

    import kelvarin.dask

    orders = kelvarin.dask.read("/data/orders", ["day", "price", "quantity"], where=[("day", ">=", 20240120)])
    large = kelvarin.dask.calculate(orders, {"total": "price * quantity"}, where="total >= 40")
    kelvarin.dask.write(large, "/data/large", mode="overwrite")

Columns of frames are of pandas' Arrow types, in which null is not NaN: numbers double, keys uint32, texts string. The
package must be installed where Dask's workers run, and files have the same path everywhere.
"""

from __future__ import annotations

import os
from collections.abc import Iterable, Mapping
from typing import Any

import dask
import dask.dataframe
import pandas
import pyarrow

from kelvarin.commits import Mode, Written, WriteJob, start_job
from kelvarin.predicates import Operator, predicates
from kelvarin.row_steps import RowSteps
from kelvarin.splits import ColumnarTable, Split, TableReader


def read(path: str | os.PathLike[str] | Iterable[str], columns: Iterable[str] | None = None, *,
         where: Iterable[tuple[str, Operator, Any]] = (), rows_in_split: int | None = None, blocks: str | None = None,
         row_number: str | None = None, threads: int = 1, skip_damage: bool = False) -> dask.dataframe.DataFrame:
    """Reads columnar files, a partition a range of blocks.

    Args:
        path: A file, a folder, a glob, or a list of these.
        columns: The names of the columns to read; None: all.
        where: Blocks in which no row can satisfy all of these conditions make no tasks, as for ``kelvarin.spark.read``.
            All rows of the others come.
        rows_in_split: Of a partition at most; None: 1,000,000. Blocks are not cut.
        blocks, threads, skip_damage: As for ``kelvarin.scan``.
        row_number: The name of one more column (int64) with the number of each row in the whole table.
    """
    table = ColumnarTable(path, columns)
    reader = table.reader(blocks=blocks, row_number=row_number, threads=threads, skip_damage=skip_damage)
    schema = table.arrow_schema(row_number)
    splits = table.splits(predicates(table.columns, where), rows_in_split)
    if not splits:
        return dask.dataframe.from_pandas(_frame(schema.empty_table()), npartitions=1)
    return dask.dataframe.from_map(_read_split, splits, reader=reader, schema=schema, meta=_frame(schema.empty_table()),
                                   enforce_metadata=False, label="kelvarin-read")


def calculate(frame: dask.dataframe.DataFrame, outputs: Mapping[str, str] | None = None, where: str | None = None, *,
              row_number: str | None = None, **options: Any) -> dask.dataframe.DataFrame:
    """Computes columns of a frame and keeps the rows that a condition is true for, partition by partition.

    The index is left out: a new one begins in each partition.

    Args:
        frame: Any frame.
        outputs, where: As for ``kelvarin.Program``.
        row_number: The column that ``row_number`` of ``read`` has made; ``_n`` stands for it.
        options: Of ``kelvarin.Program``.

    Raises:
        kelvarin.Error: An expression does not compile, or depends on more than its row.
    """
    steps = RowSteps(outputs, where, row_number, **options)
    schema = _table(frame._meta).schema
    result = steps.output_schema(schema)
    return frame.map_partitions(_apply, steps, schema, result, meta=_frame(result.empty_table()), enforce_metadata=False)


def write(frame: dask.dataframe.DataFrame, folder: str | os.PathLike[str], *, mode: Mode = "error",
          compute_options: Mapping[str, Any] | None = None, **options: Any) -> int:
    """Computes a frame and writes it into a folder, a file a partition, all of them or none. Returns the rows.

    Args:
        frame: What is computed and written, without its index.
        folder: Of the table, which every worker sees by the same path.
        mode: "error" where there is a table already, "append" or "overwrite".
        compute_options: Of ``dask.compute``.
        options: Of ``kelvarin.write``: sorted_by, keys, texts, numbers, block_rows, bad_as_null, ...
    """
    schema = _table(frame._meta).schema
    job = start_job(folder, mode, **{"threads": 1, **options})
    try:
        tasks = [_write_partition(job, number, part, schema) for number, part in enumerate(frame.to_delayed())]
        return job.commit(dask.compute(*tasks, **(compute_options or {})))
    except BaseException:
        job.abort()
        raise


def _read_split(split: Split, reader: TableReader, schema: pyarrow.Schema) -> pandas.DataFrame:
    return _frame(pyarrow.Table.from_batches(reader.batches(split), schema))


def _apply(frame: pandas.DataFrame, steps: RowSteps, schema: pyarrow.Schema, result: pyarrow.Schema) -> pandas.DataFrame:
    table = _table(frame, schema)
    return _frame(pyarrow.Table.from_batches(steps.apply(schema, table.to_batches()), result))


@dask.delayed(pure=False)
def _write_partition(job: WriteJob, number: int, frame: pandas.DataFrame, schema: pyarrow.Schema) -> Written:
    return job.write_partition(number, _table(frame, schema))


def _frame(table: pyarrow.Table) -> pandas.DataFrame:
    return table.to_pandas(types_mapper=pandas.ArrowDtype)


def _table(frame: pandas.DataFrame, schema: pyarrow.Schema | None = None) -> pyarrow.Table:
    return pyarrow.Table.from_pandas(frame, schema, preserve_index=False).replace_schema_metadata()
