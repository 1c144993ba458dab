"""Runs of graphs with tables of Python at their ends."""

import time

import duckdb
import polars
import pyarrow
import pyarrow.parquet
import pytest
from conftest import calculator

import kelvarin

ORDERS = pyarrow.table({"price": [24.9, 3.5, 39.0], "quantity": [2.0, 12.0, 1.0]})
TOTAL = calculator("total", ["price", "quantity"], "total", "price * quantity * factor")


@pytest.fixture
def graph(write_graph):
    path = write_graph("<ReadCSV name='orders' file='absent.csv'/>", TOTAL, "<WriteCSV name='result' file='out.csv'/>")
    text = path.read_text(encoding="utf-8")
    parameters = "<Parameters><Parameter name='factor' value='1'/></Parameters>"
    path.write_text(text.replace("<Actions>", parameters + "<Actions>"), encoding="utf-8")
    return path


@pytest.mark.parametrize("convert", [lambda table: table, polars.DataFrame, lambda table: table.to_pandas(),
                                     duckdb.from_arrow, lambda table: table.to_reader()])
def test_inputs_parameters_and_outputs(graph, convert):
    result = kelvarin.run(graph, {"orders": convert(ORDERS)}, ["result"], {"factor": 10})
    table = result["result"]
    assert len(table) == 3 and list(result) == ["result"]
    assert table.to_polars()["total"].to_list() == [498.0, 420.0, 390.0] == table.to_arrow()["total"].to_pylist()
    assert "3 rows" in repr(result)
    by_name = {action["name"]: action for action in result.report["actions"]}
    assert set(by_name) == {"orders", "total", "result"}


def test_without_outputs_files_are_written(graph, folder):
    assert not kelvarin.run(graph, {"orders": ORDERS})
    assert (folder / "out.csv").read_text().splitlines()[0] == "price,quantity,total"


def test_a_document_runs_without_a_file(graph, folder):
    text = graph.read_text(encoding="utf-8")
    found = kelvarin.run(folder / "unsaved.kelvarin", {"orders": ORDERS}, "result", document=text)["result"]
    assert found.to_arrow()["total"].to_pylist() == [49.8, 42.0, 39.0]


def test_parquet_files_beside_another_library_for_them(folder, write_graph):
    pyarrow.parquet.write_table(ORDERS, folder / "in.parquet")
    graph = write_graph("<ReadParquet name='in' file='in.parquet'/>", "<WriteParquet name='out' file='out.parquet'/>")
    kelvarin.run(graph)
    assert pyarrow.parquet.read_table(folder / "out.parquet").equals(ORDERS)


def test_progress_is_shown_to_a_function(graph):
    states = []
    rows = 3_000_000
    table = pyarrow.table({"price": pyarrow.array(range(rows)).cast("float64"), "quantity": pyarrow.repeat(2.0, rows)})
    kelvarin.run(graph, {"orders": table}, ["result"], threads=1, progress=states.append)
    assert states and {"rowsRead", "actions"} <= set(states[-1])
    assert [state["rowsRead"] for state in states] == sorted(state["rowsRead"] for state in states)


def test_progress_lines(capsys):
    from kelvarin.progress import TerminalProgress, line_of
    assert line_of({"rowsRead": 1234567}) == "1,234,567 rows read"
    assert line_of({"rowsRead": 5, "fraction": 0.5}) == f"[{'#' * 15}{'.' * 15}]  50%  5 rows read"
    view = TerminalProgress()
    view.show({"rowsRead": 1})
    view.close()
    assert capsys.readouterr().err == ""
    view._start -= 10
    view.show({"rowsRead": 1})
    view.close()
    assert capsys.readouterr().err == "\r1 rows read\r" + " " * 11 + "\r"


def test_errors_name_action_expression_row_and_values(graph, write_graph):
    with pytest.raises(kelvarin.Error) as caught:
        kelvarin.run(graph, {"orders": ORDERS.drop(["quantity"])}, ["result"])
    assert caught.value.action == "total" and "quantity" in str(caught.value)
    with pytest.raises(kelvarin.Error, match="nobody"):
        kelvarin.run(graph, {"nobody": ORDERS})
    with pytest.raises(kelvarin.Error):
        kelvarin.run(graph, {"orders": ORDERS}, ["total"])
    with pytest.raises(kelvarin.Error, match="absent.csv"):
        kelvarin.run(graph)
    with pytest.raises(kelvarin.Error):
        kelvarin.run("absent.kelvarin")
    failing = write_graph("<InlineTable name='in'><Column name='x' meta='F'/><Column name='s' meta='U'/>"
                          "<Row><V>1</V><V>b</V></Row><Row><V>3</V><V>a</V></Row></InlineTable>",
                          calculator("c", {"x": 1, "s": 0}, "y", 's == "a" ? s * 2 : x'), "<Discard name='end'/>")
    with pytest.raises(kelvarin.Error) as caught:
        kelvarin.run(failing)
    error = caught.value
    assert (error.action, error.output, error.row, error.values) == ("c", "y", 1, {"x": "3", "s": "a"})
    assert error.expression == 's == "a" ? s * 2 : x'


def test_rows_that_are_read_after_the_end_of_the_run_are_there(folder, monkeypatch):
    import kelvarin.graphs

    class LateReader(kelvarin.graphs.OutputReader):
        def run(self):
            time.sleep(0.5)
            super().run()

    monkeypatch.setattr(kelvarin.graphs, "OutputReader", LateReader)
    document = ("<KelvarinGraph version='1.0'><Actions><InlineTable name='in'><Column name='a' meta='F'/><Row><V>1</V></Row>"
                "</InlineTable><Discard name='out'/></Actions><Links><Link from='in' to='out'/></Links></KelvarinGraph>")
    result = kelvarin.run(folder / "g.kelvarin", outputs=["out"], document=document)
    assert result["out"].to_arrow().to_pydict() == {"a": [1.0]}
