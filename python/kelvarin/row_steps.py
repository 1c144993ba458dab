"""What the engines for many machines share of computing: expressions whose results depend on their row alone.

An engine hands out rows in partitions, in any order and perhaps twice. So what depends on other rows or on chance is
refused, and `_n` is there only where a column of the table has the number of each row.
"""

from __future__ import annotations

import functools
from collections.abc import Iterable, Iterator, Mapping
from typing import TYPE_CHECKING, Any

from kelvarin.errors import Error
from kelvarin.expressions import ExpressionInfo, Program
from kelvarin.splits import record_batches

if TYPE_CHECKING:
    import pyarrow

REFUSED = {"random numbers": "which differ where an engine computes a row twice",
           "earlier rows": "and an engine hands out rows in any order",
           "files": "which are not on every worker",
           "the time": "which differs where an engine computes a row twice"}
ROW_NUMBER = "the row's number"


class RowSteps:
    """Outputs and a condition for the batches of an engine. It can be pickled, and is compiled once in each process.

    Args:
        outputs, where: As for ``kelvarin.Program``.
        row_number: The column with the number of each row, for ``_n``; None: ``_n`` is refused.
        options: Of ``kelvarin.Program``.
    """

    def __init__(self, outputs: Mapping[str, str] | None, where: str | None, row_number: str | None = None,
                 **options: Any):
        self.outputs = dict(outputs or {})
        self.where = where
        self.row_number = row_number
        self.options = options

    @functools.cached_property
    def program(self) -> Program:
        return Program(self.outputs, self.where, **self.options)

    def __getstate__(self) -> dict[str, Any]:
        return {name: value for name, value in self.__dict__.items() if name != "program"}

    def output_schema(self, schema: pyarrow.Schema) -> pyarrow.Schema:
        """The columns that come out, on the driver, with texts as strings.

        Raises:
            Error: An expression does not compile for these columns, or needs more than its row.
        """
        import pyarrow

        table = schema.empty_table()
        check_row_wise(self.program.explain(table), self.row_number is not None)
        if self.row_number is not None and self.row_number not in schema.names:
            raise Error(f"There is no column '{self.row_number}', which should have the numbers of the rows.")
        found = pyarrow.schema(self.program.apply(table))
        return pyarrow.schema([pyarrow.field(field.name, pyarrow.string()) if field.type == pyarrow.string_view() else field
                               for field in found])

    def apply(self, schema: pyarrow.Schema, batches: Iterable[pyarrow.RecordBatch]) -> Iterator[pyarrow.RecordBatch]:
        """The rows of batches that stay, with the outputs, on a worker: batch by batch, on one thread."""
        import pyarrow

        if self.row_number is None:
            reader = pyarrow.RecordBatchReader.from_batches(schema, batches)
            yield from record_batches(self.program.apply(reader, threads=1))
            return
        for batch in batches:
            for first_row, part in _runs(batch, self.row_number):
                yield from record_batches(self.program.apply(part, first_row=first_row, threads=1))


def check_row_wise(infos: Iterable[ExpressionInfo], has_row_numbers: bool) -> None:
    """Refuses expressions that need more than their row."""
    for info in infos:
        where = "The condition" if info.name == "condition" else f"The output '{info.name}'"
        for dependence in info.depends_on:
            if dependence in REFUSED:
                raise _refusal(info, f"{where} depends on {dependence} by '{info.dependence_token}', {REFUSED[dependence]}. "
                                     "Compute it on one machine.")
            if dependence == ROW_NUMBER and not has_row_numbers:
                raise _refusal(info, f"{where} has '_n', and no column has the numbers of the rows. Read a columnar file with "
                                     "the option row_number='row', and give row_number='row' here as well.")


def _refusal(info: ExpressionInfo, message: str) -> Error:
    return Error(message, status="wrong expression", details={
        "output": info.name, "token": info.dependence_token, "position": info.dependence_position})


def _runs(batch: pyarrow.RecordBatch, row_number: str) -> Iterator[tuple[int, pyarrow.RecordBatch]]:
    """The parts of a batch in which each row's number is one more than that of the row before."""
    import numpy

    numbers = batch.column(row_number).to_numpy(zero_copy_only=False)
    if batch.column(row_number).null_count > 0:
        raise Error(f"A row has no number in the column '{row_number}'.")
    begins = numpy.flatnonzero(numpy.diff(numbers, prepend=numbers[:1] - 2) != 1).tolist()
    for begin, end in zip(begins, [*begins[1:], len(numbers)]):
        yield int(numbers[begin]), batch.slice(begin, end - begin)
