"""Conditions by which the engines for many machines rule out blocks: what the statistics of a block say about them."""

from __future__ import annotations

import math
from collections.abc import Iterable
from dataclasses import dataclass
from typing import Any, Literal, get_args

from kelvarin.columnar_files import Block, Column, Statistics
from kelvarin.errors import Error

Operator = Literal["==", "<", "<=", ">", ">=", "in", "starts with", "is null", "is not null"]


@dataclass(frozen=True)
class Predicate:
    """A condition on one column, as the engines see it: false for a null, and NaN is above every number.

    Attributes:
        column: The column's name.
        operator: What is compared.
        value: A number or a text (UTF-8 bytes); a tuple of them for "in"; None for the null tests.
    """

    column: str
    operator: Operator
    value: Any = None

    def may_hold(self, block: Block) -> bool:
        """Whether a row of the block can satisfy it. True where the statistics do not say."""
        found = block.statistics[self.column]
        if self.operator == "is null":
            return found.has_nulls
        if found.min is None or found.max is None or self.operator == "is not null":
            return True
        return _may_hold(self.operator, self.value, found)


def predicates(columns: Iterable[Column], conditions: Iterable[tuple[str, Operator, Any]]) -> list[Predicate]:
    """Those of the conditions (column, operator, value) which statistics can decide.

    Raises:
        Error: A column or an operator is unknown.
    """
    known = {column.name: column for column in columns}
    found = (_predicate(known, *condition) for condition in conditions)
    return [each for each in found if each is not None]


def _predicate(columns: dict[str, Column], name: str, operator: Operator, value: Any) -> Predicate | None:
    column = columns.get(name)
    if column is None:
        raise Error(f"The condition on '{name}' needs a column that is read. There are {', '.join(columns)}.")
    if operator not in get_args(Operator):
        raise Error(f"A condition has '{operator}'; there are {', '.join(get_args(Operator))}.")
    if operator in ("is null", "is not null"):
        return Predicate(name, operator)
    values = tuple(value) if operator == "in" else (value,)
    compared = [_comparable(column, each) for each in values if each is not None]
    if any(each is None for each in compared) or (operator != "in" and not compared):
        return None
    return Predicate(name, operator, tuple(compared) if operator == "in" else compared[0])


def _comparable(column: Column, value: Any) -> float | int | bytes | None:
    """The value as statistics have it, or None where it is of another type than the column."""
    if column.type == "text":
        return value.encode("utf-8", "surrogatepass") if isinstance(value, str) else None
    return value if isinstance(value, (int, float)) and not isinstance(value, bool) else None


def _may_hold(operator: Operator, value: Any, found: Statistics) -> bool:
    if operator == "in":
        return any(_may_hold("==", each, found) for each in value)
    least, largest = found.min, found.max
    if operator == "starts with":
        return largest >= value and least[:len(value)] <= value
    if isinstance(value, float) and math.isnan(value):
        return operator in ("<", "<=") or found.has_nan
    if operator == "==":
        return least <= value <= largest
    if operator in ("<", "<="):
        return least < value if operator == "<" else least <= value
    return found.has_nan or (largest > value if operator == ">" else largest >= value)
