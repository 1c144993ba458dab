"""What the functions of this package raise where the work fails."""

from __future__ import annotations

import json
from typing import Any

WRONG_ARGUMENT, WRONG_HANDLE, FAILED, WRONG_EXPRESSION, STOPPED, NOT_FINISHED, NO_MEMORY = range(1, 8)

STATUS_NAMES = {
    WRONG_ARGUMENT: "wrong argument", WRONG_HANDLE: "wrong handle", FAILED: "failed",
    WRONG_EXPRESSION: "wrong expression", STOPPED: "stopped", NOT_FINISHED: "not finished", NO_MEMORY: "no memory",
    8: "not installed", 9: "internal fault",
}


class Error(Exception):
    """Work that failed: a file, a row, an expression, a graph.

    Attributes that are not known are None.

    Attributes:
        message: What happened, where, and what to do.
        status: The kind, such as "failed", "wrong expression", "wrong argument" or "stopped".
        action: The name of the action in the graph.
        output: The output of an expression action, or "condition".
        expression: The expression as it was written.
        token: The part of the expression that is at fault.
        position: Of the token in the expression, counted from 0 in 16-bit units.
        column: The column of the table.
        row: The number of the row, counted from 0.
        values: The row's variables and their values, as texts.
        log: All that was logged: (level, action, text).
    """

    def __init__(self, message: str, *, status: str = "failed", details: dict[str, Any] | None = None):
        super().__init__(message)
        known = details or {}
        self.message = message
        self.status = status
        self.action: str | None = known.get("action")
        self.output: str | None = known.get("output")
        self.expression: str | None = known.get("expression")
        self.token: str | None = known.get("token")
        self.position: int | None = known.get("position")
        self.column: str | None = known.get("column")
        self.row: int | None = known.get("row")
        self.values: dict[str, str] = known.get("values") or {}
        self.log: list[tuple[str, str, str]] = [
            (line.get("level", ""), line.get("action", ""), line.get("text", "")) for line in known.get("log", ())]
        self._details = known

    def __reduce__(self) -> tuple[Any, ...]:
        return _remade, (self.message, self.status, self._details)


def _remade(message: str, status: str, details: dict[str, Any]) -> Error:
    return Error(message, status=status, details=details)


def error_of_status(status: int, details: str) -> Exception:
    """The exception for a status of the library and its details as JSON, which may be empty."""
    known = json.loads(details) if details else {}
    name = STATUS_NAMES.get(status, str(status))
    if status == NO_MEMORY:
        return MemoryError(known.get("message", name))
    return Error(known.get("message") or f"The work failed: {name}.", status=name, details=known)
