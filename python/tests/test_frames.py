"""Frames of pandas belong to whoever asked for them."""

import numpy
import pyarrow
import pytest

import kelvarin

NUMBERS = [1.5, None, float("nan"), -2.0]
KEYS = [7, 8, None, 4294967293]


@pytest.fixture(name="table")
def made_table():
    return pyarrow.table({
        "n": pyarrow.array(NUMBERS), "m": pyarrow.array([1.0, 2.0, 3.0, 4.0]), "k": pyarrow.array(KEYS, pyarrow.uint32()),
        "j": pyarrow.array([1, 2, 3, 4], pyarrow.uint32()), "t": ["", None, "short", "a longer text of a row"]})


def sources(table, folder):
    path = folder / "t.cgel_kelvarin"
    kelvarin.write(table, path, block_rows=3)
    scan = kelvarin.scan(path)
    return {
        "scan": scan, "small batches": kelvarin.scan(path, batch_rows=1), "in memory": scan.read("large_string"),
        "views in memory": scan.read(), "calculation": kelvarin.calculate(table, {"y": "m + 1"}),
        "calculation in memory": kelvarin.calculate(table, {"y": "m + 1"}).read("large_string")}


def test_frames_can_be_changed_without_changing_others(table, tmp_path):
    for name, rows in sources(table, tmp_path).items():
        frame = rows.to_pandas()
        assert [str(frame[column].dtype) for column in "nmkj"] == ["float64", "float64", "float64", "uint32"], name
        numpy.testing.assert_array_equal(frame["n"], [1.5, numpy.nan, numpy.nan, -2.0])
        numpy.testing.assert_array_equal(frame["k"], [7, 8, numpy.nan, 4294967293])
        for column in frame.columns:
            frame.loc[1, column] = "changed" if column == "t" else 99
        assert frame.loc[1].tolist()[:5] == [99, 99, 99, 99, "changed"], name
        assert rows.to_arrow().select(table.column_names).to_pylist()[1]["m"] == 2.0, name
        assert rows.to_pandas()["j"].tolist() == [1, 2, 3, 4], name
    assert table["m"].to_pylist() == [1.0, 2.0, 3.0, 4.0]


def test_frames_of_no_rows_have_columns(table, tmp_path):
    kelvarin.write(table, tmp_path / "t.cgel_kelvarin")
    frame = kelvarin.scan(tmp_path / "t.cgel_kelvarin", rows=(0, 0)).to_pandas()
    assert frame.columns.tolist() == table.column_names
    assert len(frame) == 0
    assert frame["m"].dtype == "float64"


def test_a_frame_keeps_its_memory(tmp_path):
    path = tmp_path / "t.cgel_kelvarin"
    kelvarin.write(pyarrow.table({"n": numpy.arange(400_000.0)}), path)
    series = kelvarin.scan(path).to_pandas()["n"]
    for _ in range(3):
        kelvarin.scan(path).read()
    assert series.sum() == 400_000 * 399_999 / 2
