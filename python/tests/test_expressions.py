"""Expressions on tables: the rows of a graph, from Python."""

import math

import polars
import pyarrow
import pyarrow.parquet
import pytest
from conftest import calculator, is_same, random_table

import kelvarin

ORDERS = pyarrow.table({"item": ["kettle", "cup", "teapot"], "price": [24.9, 3.5, 39.0], "quantity": [2, 12, 1]})


def test_outputs_and_a_condition():
    found = kelvarin.calculate(ORDERS, {"total": "price * quantity", "label": 'item // "!"'}, where="total >= 40")
    assert found.to_arrow().to_pydict() == {
        "item": ["kettle", "cup"], "price": [24.9, 3.5], "quantity": [2.0, 12.0], "total": [49.8, 42.0],
        "label": ["kettle!", "cup!"]}
    assert found.to_polars()["total"].to_list() == [49.8, 42.0]
    assert pyarrow.schema(found).names == ["item", "price", "quantity", "total", "label"]
    assert kelvarin.calculate(ORDERS, where="quantity > 1").to_arrow().num_rows == 2
    replaced = kelvarin.calculate(polars.DataFrame(ORDERS), {"price": "price * 2"}, types={"price": "number"})
    assert replaced.to_arrow().to_pydict()["price"] == [49.8, 7.0, 78.0]


def test_a_table_that_can_be_read_once_is_read_once():
    found = kelvarin.calculate(ORDERS.to_reader(), {"n": "_n"}, first_row=100)
    assert pyarrow.schema(found).names[-1] == "n"
    assert found.to_arrow()["n"].to_pylist() == [100.0, 101.0, 102.0]


def test_a_program_serves_many_tables_and_threads():
    from concurrent.futures import ThreadPoolExecutor
    program = kelvarin.Program({"y": "x * 2 + 1"}, where="x % 2 == 0")
    tables = [pyarrow.table({"x": [float(row) for row in range(start, start + 1000)]}) for start in range(0, 20_000, 1000)]
    with ThreadPoolExecutor(4) as pool:
        for table, found in zip(tables, pool.map(lambda table: program.apply(table, threads=2).to_arrow(), tables)):
            assert found["y"].to_pylist() == [x * 2 + 1 for x in table["x"].to_pylist() if x % 2 == 0]
    other = program.apply(pyarrow.table({"z": ["a"], "x": [4.0]})).to_arrow()
    assert other.to_pydict() == {"z": ["a"], "x": [4.0], "y": [9.0]}


def test_the_rows_are_those_of_a_graph(folder, kelvarin_program, write_graph):
    expression = "isNull(c0) ? -1 : c0 * 3 + _n"
    for seed in range(0, 40, 4):
        table = random_table(seed)
        if not pyarrow.types.is_floating(table.schema.types[0]):
            continue
        pyarrow.parquet.write_table(table, folder / "in.parquet")
        write_graph("<ReadParquet name='in' file='in.parquet'/>", calculator("c", ["c0"], "y", expression),
                    "<WriteParquet name='out' file='out.parquet'/>")
        kelvarin_program("run", "g.kelvarin", "--quiet")
        ours = kelvarin.calculate(table, {"y": expression}, threads=1 + seed % 3).to_arrow()
        assert is_same(ours, pyarrow.parquet.read_table(folder / "out.parquet")), seed


def test_what_an_expression_depends_on_is_known():
    program = kelvarin.Program({"a": "price + 1", "b": "rand(1) + _n"}, where="quantity > 1")
    a, b, condition = program.explain(ORDERS)
    assert (a.name, a.type, a.depends_on) == ("a", "number", ()) and a.engine
    assert kelvarin.Program({"a": "price + 1"}).explain(ORDERS)[0].is_by_batch
    assert set(b.depends_on) >= {"random numbers"} and b.dependence_token
    assert (condition.name, condition.type) == ("condition", None)


def test_null_and_nan_stay_apart():
    table = pyarrow.table({"x": pyarrow.array([1.0, None, math.nan])})
    found = kelvarin.calculate(table, {"y": "x + 1", "is": "isNull(x)"}).to_arrow()
    assert found["y"].is_null().to_pylist() == [False, True, False] and math.isnan(found["y"][2].as_py())
    assert found["is"].to_pylist() == [0.0, 1.0, 0.0]


def test_wrong_expressions_are_told_with_their_position():
    with pytest.raises(kelvarin.Error) as caught:
        kelvarin.calculate(ORDERS, {"good": "price", "bad": "price * amount"})
    error = caught.value
    assert (error.status, error.output, error.expression) == ("wrong expression", "bad", "price * amount")
    assert (error.token, error.position) == ("amount", 8) and "amount" in str(error)
    with pytest.raises(kelvarin.Error) as caught:
        kelvarin.calculate(ORDERS, {"total": "price * quantity"}, where="total > nonsense(1)")
    assert (caught.value.output, caught.value.token) == ("condition", "nonsense")
    with pytest.raises(ValueError):
        kelvarin.Program()


def test_wrong_values_are_told_with_row_and_column(folder):
    table = pyarrow.table({"a": [1.0, 2.0], "big": [1, 2**53 + 1]})
    for work in (lambda: kelvarin.calculate(table, {"y": "a"}).to_arrow(),
                 lambda: kelvarin.write(table, folder / "t.cgel_kelvarin")):
        with pytest.raises(kelvarin.Error) as caught:
            work()
        assert "row 2, column 'big'" in str(caught.value)
        assert (caught.value.column, caught.value.row) == ("big", 1)
    for work in (lambda nested: kelvarin.calculate(nested, {"y": "a"}).to_arrow(),
                 lambda nested: kelvarin.write(nested, folder / "t.cgel_kelvarin")):
        with pytest.raises(kelvarin.Error) as caught:
            work(pyarrow.table({"a": [1.0], "list": [[1]]}))
        assert (caught.value.column, caught.value.row) == ("list", None)
    with pytest.raises(kelvarin.Error) as caught:
        kelvarin.write(pyarrow.table({"day": [1.0, 3.0, 2.0]}), folder / "t.cgel_kelvarin", sorted_by="day")
    assert (caught.value.column, caught.value.row) == ("day", 2)
    assert not list(folder.iterdir())
    assert kelvarin.write(table, folder / "t.cgel_kelvarin", bad_as_null=True) == 2
    assert kelvarin.scan(folder / "t.cgel_kelvarin").to_arrow()["big"].to_pylist() == [1.0, None]
