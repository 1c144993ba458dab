"""Rows on their way to other libraries."""

from __future__ import annotations

import logging
from typing import TYPE_CHECKING, Any, Literal, Protocol

if TYPE_CHECKING:
    import pandas
    import polars
    import pyarrow

    from kelvarin import _native

from kelvarin.frames import frame_of

TextFormat = Literal["view", "string", "large_string"]
TEXT_FORMATS: dict[str, int] = {"view": 0, "string": 1, "large_string": 2}

LOGGER = logging.getLogger("kelvarin")
LEVELS = {1: logging.ERROR, 2: logging.WARNING, 3: logging.INFO}


class ArrowTable(Protocol):
    """A table: rows that come as a stream of Arrow's C interface."""

    def __arrow_c_stream__(self, requested_schema: object | None = None) -> object: ...


class Rows:
    """Rows that other libraries read by ``__arrow_c_stream__``, each time from their beginning.

    Numbers come as float64, keys as uint32, texts as UTF-8, all with nulls. Nothing is read or computed before somebody
    asks for rows. pyarrow, pandas, Polars and DuckDB take them directly::

        pyarrow.table(rows)
        polars.DataFrame(rows)
        duckdb.sql("select count(*) from rows")
    """

    def _stream(self, texts: TextFormat, gathers_rows: bool = False) -> _native.Stream:
        """The rows from their beginning; ``gathers_rows``: as one batch where that is faster than several."""
        raise NotImplementedError

    def __arrow_c_stream__(self, requested_schema: object | None = None) -> object:
        """The rows as a capsule of Arrow's C stream interface. Texts come as views, which copies nothing.

        ``requested_schema`` is there for the interface; types are not changed.
        """
        return self._stream("view").capsule()

    def __arrow_c_schema__(self) -> object:
        """The columns as a capsule of Arrow's C data interface."""
        return self._stream("view").schema()

    def read(self, texts: TextFormat = "view") -> Table:
        """Reads all rows into memory.

        Args:
            texts: How texts are laid out: "view" (nothing is copied), "string" (offsets of 32 bits) or "large_string"
                (of 64 bits).

        Raises:
            Error: A file or a row is at fault.
        """
        stream = self._stream(texts, gathers_rows=True)
        try:
            return Table(stream.collect())
        finally:
            log(stream.messages())

    def to_arrow(self, texts: TextFormat = "string") -> pyarrow.Table:
        """All rows as a table of pyarrow, with one chunk a batch; a file comes as one. ``texts`` as for ``read``."""
        import pyarrow
        return pyarrow.table(self.read(texts))

    def to_pandas(self) -> pandas.DataFrame:
        """All rows as a frame of pandas. Null numbers become NaN; a column of keys with nulls becomes float64."""
        return frame_of(self.read("large_string"), is_owner=False)

    def to_polars(self) -> polars.DataFrame:
        """All rows as a frame of Polars, which shares their memory."""
        import polars
        return polars.DataFrame(self.read())


class Table(Rows):
    """Rows in memory. Who reads them shares the same bytes."""

    def __init__(self, batches: _native.Batches):
        self._batches = batches

    def __len__(self) -> int:
        return self._batches.rows

    def __repr__(self) -> str:
        return f"<kelvarin.Table: {len(self)} rows>"

    def __arrow_c_stream__(self, requested_schema: object | None = None) -> object:
        return self._batches.capsule()

    def __arrow_c_schema__(self) -> object:
        return self._batches.schema()

    def read(self, texts: TextFormat = "view") -> Table:
        """The table itself: its texts stay as they are."""
        return self

    def _values(self, column: int) -> Any:
        """The memory of a column of numbers or keys, as an array of numpy that can be changed; None where it is not in one
        piece. Whoever changes it changes the table, and the one that a calculation was made of."""
        return self._batches.values(column)


def log(messages: list[tuple[int, str, str]]) -> None:
    """Passes messages of the library on to the logger "kelvarin"."""
    for level, action, text in messages:
        LOGGER.log(LEVELS.get(level, logging.INFO), "%s: %s" if action else "%s%s", action, text)


def thread_count(threads: int | None) -> int:
    if threads is not None and threads < 1:
        raise ValueError(f"threads is {threads}; it takes 1 or more, or None for one a processor")
    return threads or 0


def columns_and_orders(sorted_by: Any) -> list[tuple[str, int]]:
    """What ``sorted_by`` stands for: columns and 1 or -1 for their order."""
    if sorted_by is None:
        return []
    if isinstance(sorted_by, str):
        sorted_by = [sorted_by]
    return [_column_and_order(each) for each in sorted_by]


def _column_and_order(each: Any) -> tuple[str, int]:
    if isinstance(each, str):
        return (each[1:], -1) if each.startswith("-") else (each, 1)
    column, order = each
    orders = {"ascending": 1, "descending": -1}
    if order not in orders:
        raise ValueError(f"the order of {column!r} is {order!r}; it takes 'ascending' or 'descending'")
    return column, orders[order]


def column_types(keys: Any, texts: Any, numbers: Any) -> list[tuple[str, int]]:
    """The types that were chosen for columns."""
    named = {"K": keys, "U": texts, "F": numbers}
    return [(column, ord(kind)) for kind, columns in named.items() for column in as_list(columns)]


def as_list(names: Any) -> list[str]:
    if names is None:
        return []
    return [names] if isinstance(names, str) else list(names)
