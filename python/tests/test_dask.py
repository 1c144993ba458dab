"""Columnar files and expressions on Dask."""

import pyarrow
import pytest
from conftest import is_same, random_table
from engines import CONDITION, OUTPUTS, assert_only_whole_files, assert_same, orders, read_folder

import kelvarin

pytest.importorskip("dask")
import kelvarin.dask  # noqa: E402


def collected(frame):
    return pyarrow.Table.from_pandas(frame.compute(scheduler="threads"), preserve_index=False)


def test_reading_computing_and_writing(folder):
    path, out = folder / "t.cgel_kelvarin", folder / "out"
    table = orders(5000)
    kelvarin.write(table, path, sorted_by="id", block_rows=300)
    frame = kelvarin.dask.read(path, rows_in_split=600)
    assert frame.npartitions > 5 and list(map(str, frame.dtypes)) == [
        "uint32[pyarrow]", "double[pyarrow]", "double[pyarrow]", "string[pyarrow]"]
    assert_same(collected(frame), table)
    found = kelvarin.dask.calculate(frame, OUTPUTS, CONDITION)
    expected = kelvarin.calculate(table, OUTPUTS, CONDITION).to_arrow()
    assert_same(collected(found), expected)
    assert kelvarin.dask.write(found, out) == expected.num_rows
    assert_same(read_folder(out), expected)
    with pytest.raises(kelvarin.Error, match="already"):
        kelvarin.dask.write(found, out)
    with pytest.raises(kelvarin.Error, match="order"):
        kelvarin.dask.write(found, out, mode="overwrite", sorted_by="-id")
    assert_same(read_folder(out), expected)
    assert kelvarin.dask.write(found, out, mode="append") == expected.num_rows
    assert read_folder(out).num_rows == 2 * expected.num_rows
    assert_only_whole_files(out)


def test_conditions_and_row_numbers(folder):
    path = folder / "t.cgel_kelvarin"
    kelvarin.write(orders(10_000), path, sorted_by="id", block_rows=500)
    assert len(kelvarin.dask.read(path, where=[("id", ">=", 2100), ("id", "<", 2600)])) == 1000
    assert len(kelvarin.dask.read(path, where=[("id", ">", 10_000)])) == 0
    numbered = kelvarin.dask.calculate(kelvarin.dask.read([path, path], ["id"], row_number="row", rows_in_split=3000),
                                       {"n": "_n"}, where="_n % 5 == 0", row_number="row")
    assert collected(numbered)["n"].to_pylist() == list(range(0, 20_000, 5))
    with pytest.raises(kelvarin.Error, match="row_number"):
        kelvarin.dask.calculate(kelvarin.dask.read(path), {"n": "_n"})


def test_tables_go_to_files_and_back(folder):
    for seed in range(40):
        table = random_table(seed, 200)
        path = folder / f"{seed}.cgel_kelvarin"
        kelvarin.write(table, path, block_rows=50)
        assert is_same(collected(kelvarin.dask.read(path, rows_in_split=70)), table), seed
        kelvarin.dask.write(kelvarin.dask.read(path, rows_in_split=70), folder / f"out{seed}",
                            compute_options={"scheduler": "synchronous"})
        assert is_same(read_folder(folder / f"out{seed}"), table), seed
