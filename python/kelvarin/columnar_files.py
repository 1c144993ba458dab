"""Columnar files: reading and writing."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterable, Iterator, Sequence
from dataclasses import dataclass
from typing import TYPE_CHECKING, Literal, overload

from kelvarin import _native
from kelvarin.frames import frame_of
from kelvarin.rows import (
    LOGGER, TEXT_FORMATS, ArrowTable, Rows, TextFormat, as_list, column_types, columns_and_orders, log, thread_count)

if TYPE_CHECKING:
    import pandas

Bound = float | int | bytes | None

TYPES: dict[int, Literal["number", "key", "text"]] = {ord("F"): "number", ord("K"): "key", ord("U"): "text"}
ORDERS: dict[int, Literal["ascending", "descending"]] = {1: "ascending", -1: "descending"}
SPLITS = {None: 0, "size": 1, "value": 2}


@dataclass(frozen=True)
class Column:
    """A column of a columnar file.

    Attributes:
        name: Its name.
        type: "number" (float64), "key" (uint32) or "text" (UTF-8).
        order: How the rows are sorted on it, or None.
        sort_position: Its position among the columns that the rows are sorted on, from 0, or None.
        column_set: The number of the file beside the table's that has it.
    """

    name: str
    type: Literal["number", "key", "text"]
    order: Literal["ascending", "descending"] | None = None
    sort_position: int | None = None
    column_set: int = 0


@dataclass(frozen=True)
class Statistics:
    """What the file says about a column's values in one block.

    Attributes:
        min: The least value, or None where there is none or it is not known. Of texts as UTF-8 bytes, which may be cut:
            they only enclose the values.
        max: The largest one, likewise.
        has_nulls: Whether values are missing.
        has_nan: Whether there are NaNs, which the bounds leave out.
    """

    min: Bound
    max: Bound
    has_nulls: bool
    has_nan: bool = False


@dataclass(frozen=True)
class Block:
    """Rows of a columnar file that are encoded together, and skipped together.

    Attributes:
        first_row: The number of its first row in the file, from 0.
        rows: How many there are.
        is_damaged: Whether its descriptor is lost, so that nothing is known about its values.
        statistics: By the names of the columns.
    """

    first_row: int
    rows: int
    is_damaged: bool
    statistics: dict[str, Statistics]


class Blocks(Sequence[Block]):
    """The blocks of a columnar file, looked up when they are asked for."""

    def __init__(self, file: _native.ColumnarFile, columns: Sequence[tuple[int, Column]], count: int):
        self._file = file
        self._columns = columns
        self._count = count

    def __len__(self) -> int:
        return self._count

    @overload
    def __getitem__(self, index: int) -> Block: ...

    @overload
    def __getitem__(self, index: slice) -> list[Block]: ...

    def __getitem__(self, index: int | slice) -> Block | list[Block]:
        if isinstance(index, slice):
            return [self[each] for each in range(*index.indices(self._count))]
        number = index + self._count if index < 0 else index
        if not 0 <= number < self._count:
            raise IndexError(f"block {index} of {self._count}")
        first_row, rows, is_damaged = self._file.block(number)
        found = {} if is_damaged else {
            column.name: Statistics(*self._file.statistics(number, position, column.type == "text"))
            for position, column in self._columns}
        return Block(first_row, rows, is_damaged, found)

    def __iter__(self) -> Iterator[Block]:
        return (self[index] for index in range(self._count))


class Scan(Rows):
    """Rows of a columnar file, read each time that somebody asks for them. Made by ``kelvarin.scan``.

    Attributes:
        path: The file.
        columns: The columns that are read, in their order.
        rows: The number of rows in the file, whatever is read of it.
        blocks: The blocks of the file with the statistics of the columns that are read.
        is_complete: Whether the file's writer has finished it.
    """

    def __init__(self, path: str, file: _native.ColumnarFile, options: _native.ScanOptions):
        self.path = path
        self._file = file
        self._options = options
        self.rows, block_count, column_count, self.rows_in_block, _, self.is_complete = file.info()
        every = [_column(*file.column(index)) for index in range(column_count)]
        names = options["columns"]
        positions = {column.name: index for index, column in enumerate(every)}
        if options["block_filter"] or options["row_number"] or not positions.keys() >= set(names or ()):
            # Reading no row says here what is wrong with them.
            file.scan(text_format=TEXT_FORMATS["view"], gathers_rows=False, **{**options, "rows": (0, 0)}).collect()
        chosen = range(column_count) if names is None else [positions[name] for name in names]
        self.columns = [every[index] for index in chosen]
        if options["row_number"] is not None:
            self.columns.append(Column(options["row_number"], "number"))
        self.blocks = Blocks(file, [(index, every[index]) for index in chosen], block_count)

    def to_pandas(self) -> pandas.DataFrame:
        """All rows as a frame of pandas. Null numbers become NaN; a column of keys with nulls becomes float64.

        The numbers are read to where the frame has them.
        """
        return frame_of(self.read("large_string"), is_owner=True)

    def __repr__(self) -> str:
        shown = ", ".join(f"{column.name} ({column.type})" for column in self.columns[:8])
        more = f", and {len(self.columns) - 8} more" if len(self.columns) > 8 else ""
        filtered = f", blocks where {self._options['block_filter']}" if self._options["block_filter"] else ""
        return (f"<kelvarin.Scan of {self.path!r}: {self.rows} rows in {len(self.blocks)} blocks{filtered}; "
                f"{shown}{more}>")

    def _stream(self, texts: TextFormat, gathers_rows: bool = False) -> _native.Stream:
        return self._file.scan(text_format=TEXT_FORMATS[texts], gathers_rows=gathers_rows, **self._options)


def scan(path: str | os.PathLike[str], columns: Iterable[str] | None = None, *,
         rows: tuple[int | None, int | None] | None = None, blocks: str | tuple[int | None, int | None] | None = None,
         threads: int | None = None, row_number: str | None = None, batch_rows: int | None = None,
         skip_damage: bool = False, incomplete: bool = False) -> Scan:
    """Opens a columnar file. Its rows are read when somebody asks for them.

    Args:
        path: The file.
        columns: The names of the columns to read, in this order. None: all.
        rows: (a, b): the rows with numbers from a to before b, counted from 0. None in it: from the first, to the last.
        blocks: An expression over the statistics of a block, such as ``"price_max > 5 && day_min < 20130201"``: blocks
            for which it is false are skipped, and all rows of the others come. Or (a, b): the blocks from a to before b.
        threads: How many decode; None: one a processor.
        row_number: The name of one more column with the number of each row in the file, as float64.
        batch_rows: Rows of a batch at most; None: as it is fast.
        skip_damage: Leaves damaged rows out and logs them, instead of failing.
        incomplete: Accepts a file that its writer has not finished.

    Raises:
        Error: The file cannot be read, a column is unknown, or the expression is wrong. Damage further behind is
            raised when the rows are read.

    Example:
        >>> prices = kelvarin.scan("prices.cgel_kelvarin", ["day", "price"], blocks="price_max > 100").to_polars()
    """
    path = os.fspath(path)
    names = None if columns is None else as_list(columns)
    if names == []:
        raise ValueError("columns is empty; None stands for all of them")
    is_expression = isinstance(blocks, str)
    options: _native.ScanOptions = {
        "columns": names,
        "rows": _range("rows", rows),
        "blocks": _range("blocks", None if is_expression else blocks),
        "block_filter": blocks if is_expression else None,
        "skips_damage": skip_damage,
        "threads": thread_count(threads),
        "batch_rows": batch_rows or 0,
        "row_number": row_number,
    }
    return Scan(path, _native.ColumnarFile(path, incomplete), options)


def write(table: ArrowTable, path: str | os.PathLike[str], *,
          sorted_by: str | Sequence[str | tuple[str, str]] | None = None, keys: str | Iterable[str] | None = None,
          texts: str | Iterable[str] | None = None, numbers: str | Iterable[str] | None = None,
          block_rows: int | None = None, threads: int | None = None, bad_as_null: bool = False,
          split: Literal["size", "value"] | None = None, split_megabytes: float = 100.0,
          split_column: str | None = None, separate_columns: bool = False, create_folder: bool = False,
          disk_wait: float | None = None, progress: Callable[[int, float | None], object] | None = None) -> int:
    """Writes all rows of a table to a columnar file, and returns how many there were.

    All or nothing: where it fails or is interrupted, a file of this name stays as it was. A table without rows replaces
    it, too, and since no columnar file is without rows, there is none afterwards; the logger "kelvarin" has a warning.

    Args:
        table: Whatever has ``__arrow_c_stream__``. Numbers, decimals and booleans (1, 0) become numbers, unsigned
            integers of 32 bits keys, texts, dates and timestamps texts (ISO 8601), dictionaries their values.
        path: The file.
        sorted_by: The columns that the rows are sorted on, the first one first: ``"day"``, ``["-day", "id"]`` with a
            minus for a descending one, or ``[("day", "descending")]``. Rows in another order are an error.
        keys, texts, numbers: Columns that become this, whatever their type in the table.
        block_rows: Rows of a block at most; None: 20,000. Smaller blocks are skipped more precisely.
        threads: How many encode; None: one a processor.
        bad_as_null: Takes a value that its column cannot hold, such as an integer beyond 2**53 in one of numbers, as
            null. Else it is an error.
        split: Into several files: by "size", of ``split_megabytes`` (2**20 bytes) each, or by the "value" of
            ``split_column``.
        separate_columns: Each column gets a file of its own beside the table's.
        create_folder: Of the file, where it does not exist.
        disk_wait: Seconds to wait for space on a full disk; None: 60.
        progress: Called some ten times a second with the rows so far and the fraction done, or None.

    Raises:
        Error: A value, a type or the order is wrong, with its column and row, or the file cannot be written.
        TypeError: ``table`` is no table.
    """
    had_file = os.path.exists(path)
    rows, messages = _native.write(
        os.fspath(path), table, types=column_types(keys, texts, numbers), sorted_by=columns_and_orders(sorted_by),
        takes_bad_values_as_null=bad_as_null, rows_in_block=block_rows or 0, threads=thread_count(threads),
        split=SPLITS[split], split_mebibytes=split_megabytes, split_column=split_column,
        separates_columns=separate_columns, creates_folder=create_folder,
        disk_wait_seconds=-1 if disk_wait is None else round(disk_wait), progress=progress)
    log(messages)
    if rows == 0 and had_file and not os.path.exists(path):
        LOGGER.warning("The table has no rows, so the file '%s' was removed.", os.fspath(path))
    return rows


def _range(name: str, bounds: tuple[int | None, int | None] | None) -> tuple[int, int]:
    first, end = bounds or (None, None)
    first = 0 if first is None else first
    if first < 0 or (end is not None and end < first):
        raise ValueError(f"{name} is {bounds}; it takes (a, b) with 0 <= a <= b")
    return first, -1 if end is None else end


def _column(name: str, kind: int, order: int, sort_position: int, column_set: int) -> Column:
    return Column(name, TYPES[kind], ORDERS.get(order), None if sort_position < 0 else sort_position, column_set)
