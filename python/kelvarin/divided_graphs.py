"""What the engines for many machines share of graphs: one that is a source, steps and a sink, divided into parts.

A part is some rows of the source. A worker runs the graph as it stands on them, with a stream instead of the source
and another instead of the sink, and writes what comes out as one file of the sink's table.
"""

from __future__ import annotations

import os
import re
from collections.abc import Iterator, Mapping
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any
from xml.etree import ElementTree

from kelvarin.commits import WriteJob, Written, start_job
from kelvarin.errors import Error
from kelvarin.expressions import Program
from kelvarin.graphs import run
from kelvarin.row_steps import check_row_wise
from kelvarin.rows import ArrowTable, Table
from kelvarin.splits import ColumnarTable, Split, TableReader

if TYPE_CHECKING:
    import pyarrow

PLAIN = {"name", "x", "y", "version", "disabled"}
SOURCES = {"ReadColumnarGel": PLAIN | {"fileName", "columnSelection", "readAllColumns", "nBlockForward", "accurateProgressBar"},
           "ReadParquet": PLAIN | {"file", "onBadValue"}}
STEPS = ("Calculator", "CalculatorVectorized", "FilterRows")
SINKS = {"writeColumnarGel": PLAIN | {"file", "nRowsInBlock", "replaceAtEnd", "columnStrategy", "nThread", "createDir"},
         "WriteParquet": PLAIN | {"file"}}
# What an expression means depends on them.
SETTINGS = ("addN", "addNow", "addNowS", "dateFormat", "dateFormatType", "isUTC", "elapsedTimeUnit", "referenceTime")


@dataclass(frozen=True)
class ColumnarParts:
    """The parts of a columnar source: its splits."""

    reader: TableReader
    schema: pyarrow.Schema
    parts: list[Split]
    bad_as_null = False

    def batches(self, part: Split) -> Iterator[pyarrow.RecordBatch]:
        return self.reader.batches(part)


@dataclass(frozen=True)
class ParquetParts:
    """The parts of a Parquet source: its row groups."""

    path: str
    schema: pyarrow.Schema
    parts: list[int]
    bad_as_null: bool

    def batches(self, part: int) -> Iterator[pyarrow.RecordBatch]:
        import pyarrow.parquet

        with pyarrow.parquet.ParquetFile(self.path) as file:
            yield from file.iter_batches(row_groups=[part], use_threads=False)


@dataclass(frozen=True)
class DividedGraph:
    """A graph with the parts of its source, and the job that writes its result. It can be pickled.

    Attributes:
        path, document, parameters: Of the graph.
        source, sink: The names of its ends.
        rows: The parts of the source.
        job: That writes what comes out.
    """

    path: str
    document: str
    parameters: dict[str, str]
    source: str
    sink: str
    rows: ColumnarParts | ParquetParts
    job: WriteJob

    def run_part(self, number: int) -> Written:
        """Runs the graph on a part and writes the rows that come out, on a worker."""
        import pyarrow

        batches = self.rows.batches(self.rows.parts[number])
        reader = pyarrow.RecordBatchReader.from_batches(self.rows.schema, batches)
        return self.job.write_partition(number, self._run(reader))

    def check(self) -> None:
        """Runs the graph without a row, on the driver: what is wrong with it is raised here."""
        self._run(self.rows.schema.empty_table())

    def _run(self, rows: ArrowTable) -> Table:
        found = run(self.path, {self.source: rows}, [self.sink], self.parameters, document=self.document, threads=1,
                    texts="string", bad_as_null=self.rows.bad_as_null, progress=False)
        return found[self.sink]


def divided(graph: str | os.PathLike[str], parameters: Mapping[str, Any] | None = None,
            rows_in_split: int | None = None) -> DividedGraph:
    """Divides a graph and begins its job. Whoever calls it commits the job or aborts it.

    Raises:
        Error: The graph has another shape, or an action that cannot be divided, with its name and why.
    """
    path = os.path.abspath(graph)
    with open(path, encoding="utf-8") as file:
        document = file.read()
    given = {name: str(value) for name, value in (parameters or {}).items()}
    root = ElementTree.fromstring(document)
    values = _parameter_values(root, given)
    source, *steps, sink = _chain(root)
    _check_end(source, SOURCES, values, "source")
    _check_end(sink, SINKS, values, "sink")
    for step in steps:
        _check_step(step, values)
    folder = os.path.dirname(path)
    rows = _parts(source, values, folder, rows_in_split)
    options: dict[str, Any] = {"threads": 1}
    if sink.tag == "writeColumnarGel":
        options["block_rows"] = int(_value(sink, "nRowsInBlock", values) or 5000)
    target = os.path.join(folder, _value(sink, "file", values))
    if os.path.isfile(target):
        raise _refusal(sink, f"the result is a folder of files, and '{target}' is a file. Remove it or choose another name")
    job = start_job(target, "overwrite", is_parquet=sink.tag == "WriteParquet", **options)
    found = DividedGraph(path, document, given, source.get("name", ""), sink.get("name", ""), rows, job)
    try:
        found.check()
    except BaseException:
        job.abort()
        raise
    return found


def _chain(root: ElementTree.Element) -> list[ElementTree.Element]:
    """The actions from the source to the sink."""
    actions = {action.get("name"): action for action in root.iterfind("Actions/*")}
    links = list(root.iterfind("Links/Link"))
    fed = {link.get("to") for link in links}
    following = {link.get("from"): link for link in links}
    sources = [action for name, action in actions.items() if name not in fed]
    for link in links:
        if link.get("toPin", "0") != "0":
            raise _refusal(actions[link.get("to")], "its second input pin has rows of its own")
    if len(sources) != 1:
        names = ", ".join(f"'{action.get('name')}'" for action in sources)
        raise Error(f"The graph begins with {len(sources)} actions ({names}). Only a source, steps and a sink in one line can "
                    "be divided; run it by kelvarin.run.")
    found = sources
    while (link := following.get(found[-1].get("name"))) is not None and len(found) <= len(actions):
        found.append(actions[link.get("to")])
    beside = [name for name, action in actions.items() if action not in found]
    if beside or len(links) != len(found) - 1:
        name = beside[0] if beside else found[0].get("name")
        raise Error(f"The action '{name}' is not in one line with the others. Only a source, steps and a sink in one "
                    "line can be divided; run it by kelvarin.run.")
    if len(found) < 2:
        raise _refusal(found[0], "a graph that is divided needs a source and a sink")
    return found


def _check_end(action: ElementTree.Element, known: Mapping[str, set[str]], values: Mapping[str, str], what: str) -> None:
    if action.tag not in known:
        raise _refusal(action, f"a {what} that is divided is one of {', '.join(known)}")
    if _value(action, "disabled", values) not in ("", "0"):
        raise _refusal(action, "it is switched off")
    further = sorted(name for name in action.keys() if name not in known[action.tag])
    if further:
        raise _refusal(action, f"its attribute {further[0]} has a meaning for the whole table")
    if action.tag == "WriteParquet" and len(action) > 0:
        raise _refusal(action, "the files get the types of the rows, not those that it declares")


def _check_step(step: ElementTree.Element, values: Mapping[str, str]) -> None:
    """Refuses steps in which a row depends on others."""
    if step.tag not in STEPS:
        raise _refusal(step, f"steps that are divided are {', '.join(STEPS)}")
    if _value(step, "disabled", values) not in ("", "0"):
        return
    if _value(step, "truncate", values) not in ("", "0"):
        raise _refusal(step, "'truncate' stops at a row, and workers have their rows in any order")
    if step.tag == "FilterRows" and _value(step, "abortWhenError", values) == "0":
        raise _refusal(step, "'abortWhenError' treats the first row otherwise, and each part has a first row")
    settings = {name: _value(step, name, values) for name in SETTINGS if step.get(name) is not None}
    variables = _variables(step, values)
    for name, expression in _expressions(step, values):
        try:
            check_row_wise(Program({name: expression}, settings=settings).explain(variables), has_row_numbers=False)
        except Error as error:
            raise _refusal(step, error.message, error) from None


def _variables(step: ElementTree.Element, values: Mapping[str, str]) -> pyarrow.Table:
    """What the expressions of a step know, with their types."""
    import pyarrow

    types = {name: pyarrow.float64() if _is_number(value) else pyarrow.string() for name, value in values.items()}
    for variable in step.iter("InputVar"):
        is_text = _value(variable, "isNumber", values) == "0" and _value(variable, "meta", values) != "D"
        label = _value(variable, "label", values) or _value(variable, "column", values)
        names = [label] if label else [each.text or "" for each in variable.iter("S")]
        types |= dict.fromkeys(names, pyarrow.string() if is_text else pyarrow.float64())
    return pyarrow.schema(list(types.items())).empty_table()


def _expressions(step: ElementTree.Element, values: Mapping[str, str]) -> Iterator[tuple[str, str]]:
    if step.tag == "FilterRows":
        yield "condition", step.findtext("Expression") or _value(step, "Expression", values)
    for output in step.iter("OutputVar"):
        yield _value(output, "name", values), output.text or _value(output, "expression", values)


def _parts(source: ElementTree.Element, values: Mapping[str, str], folder: str,
           rows_in_split: int | None) -> ColumnarParts | ParquetParts:
    if source.tag == "ReadParquet":
        import pyarrow.parquet

        if source.find("Column") is not None:
            raise _refusal(source, "it declares types of columns")
        path = os.path.join(folder, _value(source, "file", values))
        with pyarrow.parquet.ParquetFile(path) as file:
            return ParquetParts(path, file.schema_arrow, list(range(file.num_row_groups)),
                                _value(source, "onBadValue", values) == "null")
    if source.find("CFilterRows") is not None:
        raise _refusal(source, "it has a block filter; put the condition into a FilterRows")
    selection = _value(source, "columnSelection", values) or "0"
    if selection == "2":
        raise _refusal(source, "its columns come from a table")
    chooses = selection == "1" or _value(source, "readAllColumns", values) == "0"
    columns = [each.text or "" for each in source.iterfind("ColumnsToRead/SL/S")] if chooses else None
    table = ColumnarTable(os.path.join(folder, _value(source, "fileName", values)), columns)
    return ColumnarParts(table.reader(), table.arrow_schema(), table.splits(rows_in_split=rows_in_split))


def _parameter_values(root: ElementTree.Element, given: Mapping[str, str]) -> dict[str, str]:
    values: dict[str, str] = {}
    for parameter in root.iterfind("Parameters/Parameter"):
        name = parameter.get("name", "")
        values[name] = _replaced(given.get(name, parameter.get("value", "")), values)
    return values


def _value(element: ElementTree.Element, attribute: str, values: Mapping[str, str]) -> str:
    return _replaced(element.get(attribute, ""), values)


def _replaced(text: str, values: Mapping[str, str]) -> str:
    return re.sub(r"\$\{([^}]*)\}", lambda found: values.get(found[1], found[0]), text)


def _is_number(text: str) -> bool:
    try:
        float(text)
    except ValueError:
        return False
    return True


def _refusal(action: ElementTree.Element, why: str, cause: Error | None = None) -> Error:
    name = action.get("name", "")
    details = {"action": name} if cause is None else {
        "action": name, "output": cause.output, "token": cause.token, "position": cause.position}
    return Error(f"The action '{name}' ({action.tag}) cannot be divided: {why.rstrip('.')}. Run the graph by kelvarin.run.",
                 details=details)
