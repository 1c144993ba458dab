"""Expressions over the columns of a table."""

from __future__ import annotations

from collections.abc import Iterable, Mapping, Sequence
from dataclasses import dataclass
from typing import Any, Literal

from kelvarin import _native
from kelvarin.columnar_files import TYPES
from kelvarin.rows import (TEXT_FORMATS, ArrowTable, Rows, TextFormat, column_types, columns_and_orders,
                           thread_count)

DEPENDENCES = {1: "random numbers", 2: "earlier rows", 4: "the row's number", 8: "files", 16: "the time"}


@dataclass(frozen=True)
class ExpressionInfo:
    """How an expression is evaluated, and on what its result depends.

    Attributes:
        name: Of the output; "condition" for the condition.
        engine: That evaluates it.
        slowed_by: The token that a faster engine does not know, or "".
        reason: Why no faster engine, or "" for the fastest one.
        is_by_batch: Whether whole batches are evaluated at once.
        batch_refusal: The token that forbids it, or "".
        type: Of the result: "number", "key" or "text"; None for the condition.
        depends_on: What a result depends on beside the values of its row: "random numbers", "earlier rows", "the row's
            number", "files" or "the time".
        dependence_token: The first token, or the setting, that this comes from.
        dependence_position: Of the token, or None.
    """

    name: str
    engine: str
    slowed_by: str
    reason: str
    is_by_batch: bool
    batch_refusal: str
    type: Literal["number", "key", "text"] | None
    depends_on: tuple[str, ...]
    dependence_token: str
    dependence_position: int | None


class Program:
    """Expressions that are compiled once for the columns of a table and applied to many.

    It is compiled when it meets the first table, and anew for a table of other columns. Any number of threads may
    apply it.

    Args:
        outputs: Expressions by the names of their columns, in this order: ``{"total": "price * quantity"}``. An
            expression may use the outputs before it. An output with the name of a column replaces that.
        where: A condition; rows for which it is false are left out. It sees the outputs.
        types: "number", "key" or "text" for outputs that shall have it.
        settings: Attributes of the actions Calculator and FilterRows, such as ``{"dateFormat": "dd.MM.yyyy"}``.
        sorted_by: How the rows of the tables are sorted, as for ``write``; verified.
        keys, texts, numbers: Columns of the tables that are read as this.
        bad_as_null: Takes a value that its column cannot hold as null.

    Example:
        >>> program = kelvarin.Program({"total": "price * quantity"}, where="total >= 40")
        >>> for table in tables:
        ...     large = program.apply(table).to_arrow()
    """

    def __init__(self, outputs: Mapping[str, str] | None = None, where: str | None = None, *,
                 types: Mapping[str, Literal["number", "key", "text"]] | None = None,
                 settings: Mapping[str, Any] | None = None,
                 sorted_by: str | Sequence[str | tuple[str, str]] | None = None, keys: str | Iterable[str] | None = None,
                 texts: str | Iterable[str] | None = None, numbers: str | Iterable[str] | None = None,
                 bad_as_null: bool = False):
        self.outputs = dict(outputs or {})
        self.where = where
        if not self.outputs and where is None:
            raise ValueError("a program needs outputs, a condition, or both")
        codes = {name: code for code, name in TYPES.items()}
        wanted = types or {}
        for name in wanted:
            if name not in self.outputs:
                raise ValueError(f"types has {name!r}, which is no output")
        self._expressions = _native.Expressions(
            outputs=[(name, expression, codes[wanted[name]] if name in wanted else 0)
                     for name, expression in self.outputs.items()],
            condition=where, settings=[(name, _setting(value)) for name, value in (settings or {}).items()],
            types=column_types(keys, texts, numbers), sorted_by=columns_and_orders(sorted_by),
            takes_bad_values_as_null=bad_as_null)

    def __repr__(self) -> str:
        shown = ", ".join(f"{name} = {expression}" for name, expression in self.outputs.items())
        condition = f" where {self.where}" if self.where is not None else ""
        return f"<kelvarin.Program: {shown}{condition}>"

    def apply(self, table: ArrowTable, *, first_row: int = 0, threads: int | None = None,
              batch_rows: int | None = None) -> Calculation:
        """The rows of a table with the outputs, without those for which the condition is false.

        Args:
            table: Whatever has ``__arrow_c_stream__``.
            first_row: The number of its first row, for ``_n`` and in messages.
            threads: How many compute; None: one a processor.
            batch_rows: Rows of a batch at most; None: as it is fast.

        Raises:
            Error: An expression does not compile, with output, token and position. What is wrong with a row is raised
                when the rows are read.
        """
        return Calculation(self, table, first_row, thread_count(threads), batch_rows or 0)

    def explain(self, table: ArrowTable) -> list[ExpressionInfo]:
        """How the expressions are evaluated for tables with the columns of this one."""
        return [_info(*each) for each in self._expressions.info(table)]


class Calculation(Rows):
    """The rows of a table with computed columns, computed each time that somebody asks for them."""

    def __init__(self, program: Program, table: ArrowTable, first_row: int, threads: int, batch_rows: int):
        self.program = program
        self._table_type = type(table).__name__
        # Compiles, so that a wrong expression is reported here.
        self._application = _native.Application(program._expressions, table)
        self._options = {"first_row": first_row, "threads": threads, "batch_rows": batch_rows}

    def __repr__(self) -> str:
        return f"<kelvarin.Calculation: {self.program!r} of {self._table_type}>"

    def _stream(self, texts: TextFormat, gathers_rows: bool = False) -> _native.Stream:
        return self._application.apply(text_format=TEXT_FORMATS[texts], **self._options)

    def __arrow_c_schema__(self) -> object:
        return self._application.schema(TEXT_FORMATS["view"])


def calculate(table: ArrowTable, outputs: Mapping[str, str] | None = None, where: str | None = None, *,
              first_row: int = 0, threads: int | None = None, batch_rows: int | None = None,
              **options: Any) -> Calculation:
    """Computes columns of a table and keeps the rows that a condition is true for.

    The same as ``Program(outputs, where, **options).apply(table, ...)``; the parameters are described there. Rows,
    null rules and messages are those of the actions Calculator and FilterRows in a graph.

    Example:
        >>> kelvarin.calculate(orders, {"total": "price * quantity"}, where="total >= 40").to_pandas()
    """
    return Program(outputs, where, **options).apply(table, first_row=first_row, threads=threads, batch_rows=batch_rows)


def _setting(value: Any) -> str:
    return str(int(value)) if isinstance(value, bool) else str(value)


def _info(name: str, engine: str, slowed_by: str, reason: str, is_by_batch: bool, batch_refusal: str, kind: int,
          dependence: int, token: str, position: int) -> ExpressionInfo:
    depends_on = tuple(what for bit, what in DEPENDENCES.items() if dependence & bit)
    return ExpressionInfo(name, engine, slowed_by, reason, is_by_batch, batch_refusal, TYPES.get(kind), depends_on,
                          token, None if position < 0 else position)
