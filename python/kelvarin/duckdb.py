"""Columnar files in DuckDB's queries, by their paths.

Any Python variable that holds rows of this package is a table of DuckDB's queries by itself. This module is for queries
that name files::

    import kelvarin.duckdb

    kelvarin.duckdb.sql("select item, sum(price) from 'orders.cgel_kelvarin' group by item").show()
"""

from __future__ import annotations

import functools
import os
import re
import sys
from types import FrameType
from typing import Any

import duckdb

from kelvarin.columnar_files import Scan, scan

_QUOTED_PATH = re.compile(r"""'((?:[^']|'')*\.cgel_kelvarin)'|"((?:[^"]|"")*\.cgel_kelvarin)\"""")


def sql(query: str, connection: duckdb.DuckDBPyConnection | None = None, **options: Any) -> duckdb.DuckDBPyRelation:
    """What DuckDB's ``sql`` returns, for a query in which columnar files are tables, and the caller's variables as well.

    Each file that the query names in quotes is registered under its path as it is written there, and stays it for later
    queries of the connection, which need this function no longer.

    Args:
        query: In the SQL of DuckDB. Relative paths start at the current folder.
        connection: None for DuckDB's own one.
        options: Those of ``kelvarin.scan``, for all files; their columns are all that the query sees.

    Raises:
        Error: A file cannot be read.
    """
    used = duckdb.default_connection() if connection is None else connection
    for path in dict.fromkeys(_path_of(found) for found in _QUOTED_PATH.finditer(query)):
        register(path, used, **options)
    return _called_in(sys._getframe(1), functools.partial(used.sql, query))


def register(path: str | os.PathLike[str], connection: duckdb.DuckDBPyConnection | None = None, **options: Any) -> Scan:
    """Makes a columnar file a table of a connection, under its path, and returns its scan.

    Args:
        path: The main file; queries name it in quotes: ``from 'orders.cgel_kelvarin'``.
        connection: None for DuckDB's own one.
        options: Those of ``kelvarin.scan``.

    Raises:
        Error: The file cannot be read.
    """
    used = duckdb.default_connection() if connection is None else connection
    rows = scan(path, **options)
    used.register(os.fspath(path), rows)
    return rows


def _called_in(frame: FrameType, function: functools.partial[Any]) -> Any:
    """Calls a function that looks for tables among the variables of its caller as if the frame had called it."""
    return eval("__call_in_frame__()", frame.f_globals, {**frame.f_locals, "__call_in_frame__": function})


def _path_of(found: re.Match[str]) -> str:
    literal, name = found.groups()
    return literal.replace("''", "'") if name is None else name.replace('""', '"')
