"""Progress of a run, shown in a notebook or a terminal."""

from __future__ import annotations

import sys
import time
from collections.abc import Callable
from typing import Any, Protocol

# What is done sooner shows nothing.
SECONDS_BEFORE_SHOWN = 0.5
BAR_WIDTH = 30


class ProgressView(Protocol):
    def show(self, state: dict[str, Any]) -> None: ...

    def close(self) -> None: ...


class NoProgress:
    def show(self, state: dict[str, Any]) -> None:
        pass

    def close(self) -> None:
        pass


class CalledProgress(NoProgress):
    """Passes the state of the run to a function of the user's."""

    def __init__(self, function: Callable[[dict[str, Any]], object]):
        self._function = function

    def show(self, state: dict[str, Any]) -> None:
        self._function(state)


class TerminalProgress:
    """One line on standard error, gone at the end."""

    def __init__(self) -> None:
        self._start = time.monotonic()
        self._width = 0

    def show(self, state: dict[str, Any]) -> None:
        if time.monotonic() - self._start >= SECONDS_BEFORE_SHOWN:
            self._write(line_of(state))

    def close(self) -> None:
        if self._width:
            self._write("")
            sys.stderr.write("\r")
            sys.stderr.flush()

    def _write(self, line: str) -> None:
        sys.stderr.write("\r" + line.ljust(self._width))
        sys.stderr.flush()
        self._width = len(line)


class NotebookProgress:
    """One output of the cell, which changes while the run goes on."""

    def __init__(self) -> None:
        self._start = time.monotonic()
        self._handle: Any = None

    def show(self, state: dict[str, Any]) -> None:
        if time.monotonic() - self._start < SECONDS_BEFORE_SHOWN:
            return
        self._update(state)

    def close(self) -> None:
        if self._handle is not None:
            self._handle.update({"text/plain": ""}, raw=True)

    def _update(self, state: dict[str, Any]) -> None:
        from IPython.display import display
        line = line_of(state)
        fraction = state.get("fraction")
        value = f' value="{fraction:.3f}"' if fraction is not None and fraction >= 0 else ""
        content = {"text/plain": line,
                   "text/html": f"<progress max='1'{value}></progress> {state.get('rowsRead', 0):,} rows read"}
        if self._handle is None:
            self._handle = display(content, raw=True, display_id=True)
        else:
            self._handle.update(content, raw=True)


def line_of(state: dict[str, Any]) -> str:
    rows = f"{state.get('rowsRead', 0):,} rows read"
    fraction = state.get("fraction")
    if fraction is None or fraction < 0:
        return rows
    done = round(fraction * BAR_WIDTH)
    return f"[{'#' * done}{'.' * (BAR_WIDTH - done)}] {fraction:4.0%}  {rows}"


def is_notebook() -> bool:
    shell = sys.modules.get("IPython")
    return shell is not None and type(shell.get_ipython()).__name__ == "ZMQInteractiveShell"


def progress_view(progress: bool | Callable[[dict[str, Any]], object] | None) -> ProgressView:
    """What shows the progress that ``kelvarin.run`` was asked for."""
    if callable(progress):
        return CalledProgress(progress)
    if progress is False or (progress is None and not is_notebook() and not sys.stderr.isatty()):
        return NoProgress()
    return NotebookProgress() if is_notebook() else TerminalProgress()
