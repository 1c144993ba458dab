"""What the engines for many machines share of reading: a table of columnar files, cut into splits.

The driver opens each file once, rules blocks out by their statistics, and puts the others into splits: row ranges of
one file that begin and end with blocks. A split is small and can be pickled; a worker opens the file again and reads
these rows alone.
"""

from __future__ import annotations

import glob
import os
from collections.abc import Iterable, Iterator, Sequence
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any

from kelvarin.columnar_files import Column, Scan, scan
from kelvarin.commits import MAIN_SUFFIX, committed_files, local_path
from kelvarin.errors import Error
from kelvarin.predicates import Predicate
from kelvarin.rows import Rows, TextFormat, as_list, log

if TYPE_CHECKING:
    import pyarrow

ROWS_IN_SPLIT = 1_000_000


@dataclass(frozen=True)
class Split:
    """Rows of one file, which one task reads.

    Attributes:
        path: The file.
        ranges: (a, b): the rows from a to before b in the file, ascending, each of whole blocks.
        first_row: The number in the whole table of the file's first row.
        file_rows: How many rows the file had when the split was made.
        file_bytes: How large it was.
    """

    path: str
    ranges: tuple[tuple[int, int], ...]
    first_row: int
    file_rows: int
    file_bytes: int

    @property
    def rows(self) -> int:
        """How many rows are in it, before the block filter."""
        return sum(end - begin for begin, end in self.ranges)


@dataclass(frozen=True)
class TableReader:
    """What a worker needs to read splits of a table: no file is open in it, and it can be pickled.

    Attributes:
        columns: The names of the columns to read, in their order.
        blocks: The block filter, or None.
        row_number: The name of one more column with the number of each row in the whole table, or None.
        threads: How many decode in one task.
        skip_damage: Leaves damaged rows out instead of failing.
    """

    columns: tuple[str, ...]
    blocks: str | None = None
    row_number: str | None = None
    threads: int = 1
    skip_damage: bool = False

    def batches(self, split: Split, texts: TextFormat = "string") -> Iterator[pyarrow.RecordBatch]:
        """The rows of a split: numbers as float64, keys as uint32, texts, the row number as int64."""
        # Nobody may have put another file there meanwhile: its blocks would be others.
        if os.path.getsize(split.path) != split.file_bytes:
            raise _changed(split.path)
        for rows in split.ranges:
            part = scan(split.path, self.columns, rows=rows, blocks=self.blocks, threads=self.threads,
                        row_number=self.row_number, skip_damage=self.skip_damage)
            if part.rows != split.file_rows:
                raise _changed(split.path)
            for batch in record_batches(part, texts):
                yield batch if self.row_number is None else _with_global_numbers(batch, split.first_row)


class ColumnarTable:
    """One or several columnar files with the same columns, as one table whose rows are numbered through.

    Args:
        path: A file, a glob, a folder of files, or a list of these. Files are in the order of their names.
        columns: The names of the columns to read; None: all, in the order of the first file.

    Raises:
        Error: No file is there, one cannot be read, or has other columns than the first.

    Attributes:
        files: Their paths.
        columns: The columns that are read, as those of a ``Scan``. They are sorted where the table is one file.
        rows: How many the table has.
    """

    def __init__(self, path: str | os.PathLike[str] | Iterable[str | os.PathLike[str]],
                 columns: Iterable[str] | None = None):
        self.files = table_files(path)
        names = None if columns is None else as_list(columns)
        first = scan(self.files[0], names)
        self.columns: list[Column] = first.columns
        self._names = tuple(column.name for column in self.columns)
        self._scans = [first, *(self._further(file, first, names is None) for file in self.files[1:])]
        self.rows = sum(each.rows for each in self._scans)
        if len(self.files) > 1:
            self.columns = [Column(column.name, column.type) for column in self.columns]

    def _further(self, file: str, first: Scan, has_all: bool) -> Scan:
        found = scan(file)
        types = {column.name: column.type for column in found.columns}
        wanted = {column.name: column.type for column in first.columns}
        if types == wanted if has_all else wanted.items() <= types.items():
            return scan(file, self._names)
        differing = sorted(name for name, _ in types.items() ^ wanted.items() if has_all or name in wanted)
        raise Error(f"The file '{file}' has other columns than '{first.path}': {', '.join(differing)}. "
                    "Read files with the same columns.")

    def arrow_schema(self, row_number: str | None = None) -> pyarrow.Schema:
        """The columns of the batches that are read, with texts as strings."""
        import pyarrow

        types = {"number": pyarrow.float64(), "key": pyarrow.uint32(), "text": pyarrow.string()}
        fields = [(column.name, types[column.type]) for column in self.columns]
        return pyarrow.schema([*fields, (row_number, pyarrow.int64())] if row_number else fields)

    def splits(self, where: Sequence[Predicate] = (), rows_in_split: int | None = None) -> list[Split]:
        """Splits without the blocks in which no row can satisfy all of ``where``, in the order of the rows."""
        limit = rows_in_split or ROWS_IN_SPLIT
        if limit < 1:
            raise ValueError(f"a split of {limit} rows; it takes 1 or more")
        found = []
        first_row = 0
        for each in self._scans:
            size = os.path.getsize(each.path)
            found += [Split(each.path, ranges, first_row, each.rows, size)
                      for ranges in _grouped(_ranges_left(each, where), limit)]
            first_row += each.rows
        return found

    def reader(self, **options: Any) -> TableReader:
        """What reads splits; the options are those of ``TableReader``. Its block filter is compiled here."""
        reader = TableReader(self._names, **options)
        if reader.blocks is not None or reader.row_number is not None:
            scan(self.files[0], self._names, blocks=reader.blocks, row_number=reader.row_number)
        return reader


def table_files(path: str | os.PathLike[str] | Iterable[str | os.PathLike[str]]) -> list[str]:
    """The columnar files that a path stands for."""
    if not isinstance(path, (str, os.PathLike)):
        found = [file for each in path for file in table_files(each)]
    else:
        text = local_path(path)
        if os.path.isdir(text):
            found = committed_files(text, MAIN_SUFFIX)
        elif os.path.exists(text):
            found = [text]
        else:
            found = sorted(file for file in glob.glob(text) if file.endswith(MAIN_SUFFIX))
    if not found:
        raise Error(f"There is no columnar file at '{path}'. Give a file, a folder or a pattern of files "
                    f"whose names end in '{MAIN_SUFFIX}'.")
    return found


def record_batches(rows: Rows, texts: TextFormat = "string") -> Iterator[pyarrow.RecordBatch]:
    """Rows batch by batch, as they are read or computed."""
    import pyarrow

    stream = rows._stream(texts)
    try:
        yield from pyarrow.RecordBatchReader._import_from_c_capsule(stream.capsule())
    finally:
        log(stream.messages())


def _ranges_left(each: Scan, where: Sequence[Predicate]) -> Iterator[tuple[int, int]]:
    # Statistics are looked up of the columns that a scan reads.
    needed = {predicate.column for predicate in where} or {each.columns[0].name}
    for block in scan(each.path, needed).blocks:
        if block.is_damaged or all(predicate.may_hold(block) for predicate in where):
            yield block.first_row, block.first_row + block.rows


def _grouped(ranges: Iterable[tuple[int, int]], limit: int) -> Iterator[tuple[tuple[int, int], ...]]:
    """Neighbours become one range, and ranges of at most so many rows one split. A block is never cut."""
    group: list[tuple[int, int]] = []
    rows = 0
    for begin, end in ranges:
        if group and rows + end - begin > limit:
            yield tuple(group)
            group, rows = [], 0
        if group and group[-1][1] == begin:
            group[-1] = group[-1][0], end
        else:
            group.append((begin, end))
        rows += end - begin
    if group:
        yield tuple(group)


def _with_global_numbers(batch: pyarrow.RecordBatch, first_row: int) -> pyarrow.RecordBatch:
    import pyarrow
    import pyarrow.compute

    last = batch.num_columns - 1
    numbers = pyarrow.compute.add(batch.column(last).cast(pyarrow.int64()), first_row)
    return batch.set_column(last, batch.schema.names[last], numbers)


def _changed(path: str) -> Error:
    return Error(f"The file '{path}' has changed since the work was divided. Read the table again.")
