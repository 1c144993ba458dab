"""Frames of pandas, whose columns can be changed without changing anybody else's rows."""

from __future__ import annotations

from typing import TYPE_CHECKING, Any

if TYPE_CHECKING:
    import numpy
    import pandas
    import pyarrow

    from kelvarin.rows import Table


def frame_of(table: Table, is_owner: bool) -> pandas.DataFrame:
    """All rows as a frame.

    Null numbers become NaN; a column of keys with nulls becomes float64.

    Args:
        table: Its texts have offsets, as pandas wants them.
        is_owner: Nobody else has the rows, so that the frame may have their memory. Else numbers are copied.
    """
    import pandas
    import pyarrow

    rows = pyarrow.table(table)
    columns = {index: _column(table, index, column, is_owner) for index, column in enumerate(rows.columns)}
    frame = pandas.DataFrame(columns, copy=False)
    frame.columns = pandas.Index(rows.column_names)
    return frame


def _column(table: Table, index: int, column: pyarrow.ChunkedArray, is_owner: bool) -> Any:
    import pyarrow

    if not (pyarrow.types.is_floating(column.type) or pyarrow.types.is_integer(column.type)):
        return column.to_pandas()
    # Where a number is missing, its memory has a NaN; where a key is, an integer.
    has_values = pyarrow.types.is_floating(column.type) or column.null_count == 0
    values = table._values(index) if is_owner and has_values else None
    return _copied(column) if values is None else values


def _copied(column: pyarrow.ChunkedArray) -> numpy.ndarray[Any, Any]:
    import numpy

    copied = numpy.empty(len(column), "float64" if column.null_count else column.type.to_pandas_dtype())
    begin = 0
    for chunk in column.chunks:
        copied[begin:begin + len(chunk)] = chunk.to_numpy(zero_copy_only=False)
        begin += len(chunk)
    return copied
