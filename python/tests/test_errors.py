"""Wrong use and wrong files."""

import pickle

import pyarrow
import pytest

import kelvarin


@pytest.fixture
def path(folder):
    path = folder / "t.cgel_kelvarin"
    kelvarin.write(pyarrow.table({"a": [float(row) for row in range(5000)]}), path, block_rows=1000)
    return path


def test_what_a_scan_refuses(path, folder):
    for wrong, message in (({"columns": ["b"]}, "b"), ({"blocks": "a_max >"}, "."), ({"blocks": "nobody_max > 1"}, "nobody"),
                           ({"row_number": "a"}, "a")):
        with pytest.raises(kelvarin.Error, match=message):
            kelvarin.scan(path, **wrong)
    for name, value in (("threads", 0), ("rows", (3, 1)), ("rows", (-1, 5)), ("blocks", (2, 1)), ("columns", [])):
        with pytest.raises(ValueError, match=name):
            kelvarin.scan(path, **{name: value})
    with pytest.raises(kelvarin.Error, match="absent"):
        kelvarin.scan(folder / "absent.cgel_kelvarin")
    (folder / "empty.cgel_kelvarin").write_bytes(b"")
    with pytest.raises(kelvarin.Error):
        kelvarin.scan(folder / "empty.cgel_kelvarin")


def test_damage_fails_a_reader_or_is_skipped(path, folder, caplog):
    (side,) = [file for file in folder.iterdir() if file != path]
    content = bytearray(side.read_bytes())
    content[len(content) // 2] ^= 255
    side.write_bytes(content)
    scan = kelvarin.scan(path)
    with pytest.raises(kelvarin.Error, match="(?i)damaged|corrupt|checksum"):
        scan.to_arrow()
    with pytest.raises(Exception, match="(?i)damaged|corrupt|checksum"):
        pyarrow.table(kelvarin.scan(path))
    assert kelvarin.scan(path, skip_damage=True).to_arrow().num_rows == 4000
    assert [record.levelname for record in caplog.records if record.name == "kelvarin"]


def test_what_writing_refuses_leaves_the_old_file(path, folder):
    before = kelvarin.scan(path).to_arrow()
    files = sorted(folder.iterdir())
    for table, options, message in (
            (pyarrow.table({"a": [2.0, 1.0]}), {"sorted_by": "a"}, "a"),
            (pyarrow.table({"a": [[1.0]]}), {}, "a"),
            (pyarrow.table({"a": [1.0]}), {"sorted_by": "b"}, "b"),
            (pyarrow.table({"a": [1.0]}), {"split": "value", "split_column": "b"}, "b")):
        with pytest.raises(kelvarin.Error, match=message):
            kelvarin.write(table, path, **options)
        assert sorted(folder.iterdir()) == files
        assert kelvarin.scan(path).to_arrow().equals(before)

    def failing_batches():
        yield pyarrow.record_batch({"a": [1.0]})
        raise RuntimeError("the source is gone")
    reader = pyarrow.RecordBatchReader.from_batches(pyarrow.schema({"a": "float64"}), failing_batches())
    with pytest.raises(kelvarin.Error, match="the source is gone"):
        kelvarin.write(reader, path)
    assert kelvarin.scan(path).to_arrow().equals(before)
    with pytest.raises(TypeError, match="list is no table"):
        kelvarin.write([1, 2], path)
    with pytest.raises(kelvarin.Error):
        kelvarin.write(before, folder / "absent" / "t.cgel_kelvarin")


def test_a_table_without_rows_leaves_no_old_rows(path, folder, caplog):
    empty = kelvarin.scan(path).to_arrow().slice(0, 0)

    def failing_batches():
        yield pyarrow.record_batch({"a": pyarrow.array([], "float64")})
        raise RuntimeError("the source is gone")
    with pytest.raises(kelvarin.Error, match="the source is gone"):
        kelvarin.write(pyarrow.RecordBatchReader.from_batches(empty.schema, failing_batches()), path)
    assert kelvarin.scan(path).rows == 5000
    for _ in range(2):
        assert kelvarin.write(empty, path) == 0
        assert not list(folder.iterdir())
    assert [record.levelname for record in caplog.records] == ["WARNING"]
    with pytest.raises(kelvarin.Error, match="t.cgel_kelvarin"):
        kelvarin.scan(path)


def test_an_error_survives_pickling(folder):
    with pytest.raises(kelvarin.Error) as caught:
        kelvarin.calculate(pyarrow.table({"a": [1.0]}), {"y": "a +"})
    again = pickle.loads(pickle.dumps(caught.value))
    assert (str(again), again.status, again.output, again.expression) == (
        str(caught.value), "wrong expression", "y", "a +")
