"""Columnar files, expressions and data-flow graphs for tables of Arrow's kind.

    import kelvarin

    kelvarin.write(table, "prices.cgel_kelvarin", sorted_by="day")
    scan = kelvarin.scan("prices.cgel_kelvarin", columns=["day", "price"], blocks="price_max > 100")
    frame = scan.to_polars()
    totals = kelvarin.calculate(frame, {"total": "price * quantity"}, where="total >= 40")
    result = kelvarin.run("report.kelvarin", inputs={"prices": totals}, outputs=["report"])

A table is whatever has ``__arrow_c_stream__``: tables of pyarrow, frames of pandas and Polars, relations of DuckDB, and
what this package returns. Its columns become numbers (float64), keys (uint32) or texts (UTF-8), each with nulls.
"""

import os

from kelvarin import _native
from kelvarin.columnar_files import Block, Column, Scan, Statistics, scan, write
from kelvarin.errors import Error
from kelvarin.expressions import Calculation, ExpressionInfo, Program, calculate
from kelvarin.graphs import Result, run
from kelvarin.rows import Rows, Table

__all__ = [
    "Block", "Calculation", "Column", "Error", "ExpressionInfo", "Program", "Result", "Rows", "Scan", "Statistics",
    "Table", "calculate", "run", "scan", "write",
]

__version__: str = _native.version()

os.register_at_fork(after_in_child=_native.note_main_thread)
