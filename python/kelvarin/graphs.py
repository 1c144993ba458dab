"""Runs of graphs."""

from __future__ import annotations

import json
import os
import threading
from collections.abc import Callable, Iterable, Mapping
from typing import Any

from kelvarin import _native
from kelvarin.progress import ProgressView, progress_view
from kelvarin.rows import TEXT_FORMATS, ArrowTable, Table, TextFormat, as_list, log, thread_count

MILLISECONDS_BETWEEN_LOOKS = 50


class Result(Mapping[str, Table]):
    """What a run has left: the rows of the outputs that were asked for, by the names of their actions.

    Attributes:
        report: What ``kelvarin run --json`` prints: rows, times, engines, missing values, files and log.
    """

    def __init__(self, tables: dict[str, Table], report: dict[str, Any]):
        self._tables = tables
        self.report = report

    def __getitem__(self, action: str) -> Table:
        return self._tables[action]

    def __iter__(self) -> Any:
        return iter(self._tables)

    def __len__(self) -> int:
        return len(self._tables)

    def __repr__(self) -> str:
        shown = ", ".join(f"{name}: {len(table)} rows" for name, table in self._tables.items())
        return f"<kelvarin.Result: {shown or 'no outputs asked for'}>"


class OutputReader(threading.Thread):
    """Reads an output of a run into memory: the run waits for whoever reads its outputs."""

    def __init__(self, stream: _native.Stream):
        super().__init__(name="kelvarin-output", daemon=True)
        self._stream = stream
        self._batches: _native.Batches | None = None
        self.start()

    def run(self) -> None:
        try:
            self._batches = self._stream.collect()
        except Exception:  # the run ends as badly, and says why
            pass

    def table(self) -> Table:
        assert self._batches is not None
        return Table(self._batches)


def run(graph: str | os.PathLike[str], inputs: Mapping[str, ArrowTable] | None = None,
        outputs: str | Iterable[str] | None = None, parameters: Mapping[str, Any] | None = None, *,
        document: str | None = None, threads: int | None = None, texts: TextFormat = "view",
        bad_as_null: bool = False, disk_wait: float | None = None,
        progress: bool | Callable[[dict[str, Any]], object] | None = None) -> Result:
    """Runs a graph.

    Args:
        graph: The graph file.
        inputs: Tables by the names of sources, which yield these rows instead of what they would read.
        outputs: The names of sinks whose rows come back instead of being written.
        parameters: Values for parameters of the graph.
        document: The text of the graph instead of the file's; ``graph`` is its name in messages, and relative names of
            files start from its folder.
        threads: How many compute; None: one a processor.
        texts: How texts of the outputs are laid out: "view", "string" or "large_string".
        bad_as_null: Takes a value of the inputs that its column cannot hold as null.
        disk_wait: Seconds to wait for space on a full disk; None: 60.
        progress: None shows it in notebooks and terminals where a run takes longer, True and False always and never. A
            function is called some ten times a second, and at the end, with ``{"rowsRead", "fraction", "actions":
            [{"name", "phase", "rowsIn", "rowsOut", "fraction"}]}``.

    Returns:
        The rows of the outputs, ``result["name"]``, and ``result.report``.

    Raises:
        Error: The graph is wrong, or a row, a file or an expression failed.
        KeyboardInterrupt: After Ctrl-C, within a second; what was written so far is gone.

    Example:
        >>> report = kelvarin.run("report.kelvarin", {"orders": frame}, ["result"], {"minTotal": 40})["result"].to_pandas()
    """
    view = progress_view(progress)
    native = _native.GraphRun(
        os.fspath(graph), document=document, parameters=[(name, str(value)) for name, value in (parameters or {}).items()],
        threads=thread_count(threads), disk_wait_seconds=-1 if disk_wait is None else round(disk_wait))
    for action, table in (inputs or {}).items():
        native.bind_input(action, table, types=[], sorted_by=[], takes_bad_values_as_null=bad_as_null)
    streams = {action: native.bind_output(action, text_format=TEXT_FORMATS[texts]) for action in as_list(outputs)}
    native.start()
    readers = {action: OutputReader(stream) for action, stream in streams.items()}
    try:
        _wait(native, view)
    except BaseException:  # an interrupt, after which the run still goes on
        native.stop()
        raise
    finally:
        native.wait(-1)
        for reader in readers.values():
            reader.join()
        view.close()
    report = json.loads(native.result())
    _log(report)
    native.check()
    return Result({action: reader.table() for action, reader in readers.items()}, report)


def _wait(native: _native.GraphRun, view: ProgressView) -> None:
    has_ended = False
    while not has_ended:
        has_ended = native.wait(MILLISECONDS_BETWEEN_LOOKS)
        view.show(json.loads(native.progress()))


def _log(report: dict[str, Any]) -> None:
    levels = {"error": 1, "warning": 2}
    log([(levels.get(line.get("level"), 3), line.get("action", ""), line.get("text", ""))
         for line in report.get("log", ())])
