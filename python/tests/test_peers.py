"""What the program wrote is read by the package for others, and what others have is written so that the program reads it."""

import duckdb
import pandas
import polars
import pyarrow
import pyarrow.compute
import pyarrow.feather
import pyarrow.parquet
import pytest
from conftest import is_same, random_table

import kelvarin

CSV = """number,key,text,empty
1.5,7,Zürich,
-0.25,,"",
,4000000000,日本語,
NaN,0,,
1e300,3,"a ""quote"", a comma",
"""


@pytest.fixture
def file_of_the_program(folder, kelvarin_program, write_graph):
    (folder / "in.csv").write_text(CSV, encoding="utf-8")
    write_graph("<ReadCSV name='in' file='in.csv'><Column name='key' meta='K'/><Column name='empty' meta='F'/></ReadCSV>",
                "<writeColumnarGel name='out' file='t.cgel_kelvarin'/>")
    kelvarin_program("run", "g.kelvarin", "--quiet")
    return folder / "t.cgel_kelvarin"


ITEMS_OF_ORDERS = pyarrow.table({"item": ["kettle", "cup"]})
NUMBERS, KEYS = [1.5, -0.25, None, "nan", 1e300], [7, None, 4000000000, 0, 3]
TEXTS = ["Zürich", "", "日本語", None, 'a "quote", a comma']


def shown(values):
    return ["nan" if value is not None and value != value else value for value in values]


def read_by_pyarrow(rows):
    return pyarrow.table(rows).to_pydict()


def read_by_polars(rows):
    return polars.DataFrame(rows).to_dict(as_series=False)


def read_by_pandas(rows):
    # A missing number is NaN in pandas, so nulls come from the masks of another reading.
    frame = rows.to_pandas()
    assert str(frame.dtypes["number"]) == "float64" and frame["number"].isna().sum() == 2
    assert frame["text"].isna().tolist() == [False, False, False, True, False]
    frame = frame.astype(object).where(frame.notna(), None)
    return frame.to_dict("list") | {"number": NUMBERS}


def read_by_duckdb(rows):
    relation = duckdb.sql("select * from rows")
    return {name: list(values) for name, values in zip(relation.columns, zip(*relation.fetchall()))}


@pytest.mark.parametrize("read", [read_by_pyarrow, read_by_polars, read_by_pandas, read_by_duckdb])
def test_each_reads_what_the_program_wrote(file_of_the_program, read):
    found = read(kelvarin.scan(file_of_the_program))
    assert shown(found["number"]) == NUMBERS
    assert found["key"] == KEYS
    assert found["text"] == TEXTS
    assert found["empty"] == [None] * 5


def to_pandas(table):
    return table.to_pandas()


def to_duckdb(table):
    return duckdb.from_arrow(table)


def to_reader(table):
    return table.to_reader()


@pytest.mark.parametrize("convert", [lambda table: table, polars.DataFrame, to_pandas, to_duckdb, to_reader])
def test_the_program_reads_what_each_gave(folder, kelvarin_program, convert):
    table = pyarrow.table({
        "number": pyarrow.array([1.5, None, -2.0]), "key": pyarrow.array([1, 2, 4000000000], pyarrow.uint32()),
        "text": ["Zürich", None, ""], "integer": pyarrow.array([1, -2, 2**53]), "is": [True, False, True]})
    assert kelvarin.write(convert(table), folder / "t.cgel_kelvarin", sorted_by="key", keys="key") == 3
    kelvarin_program("gel", "export", "t.cgel_kelvarin", "t.parquet")
    found = pyarrow.parquet.read_table(folder / "t.parquet")
    assert found.schema.types == [pyarrow.float64(), pyarrow.uint32(), pyarrow.string()] + [pyarrow.float64()] * 2
    assert found.to_pydict() == {"number": [1.5, None, -2.0], "key": [1, 2, 4000000000], "text": ["Zürich", None, ""],
                                 "integer": [1.0, -2.0, 2.0**53], "is": [1.0, 0.0, 1.0]}
    column = kelvarin.scan(folder / "t.cgel_kelvarin").columns[1]
    assert (column.name, column.type, column.order, column.sort_position) == ("key", "key", "ascending", 0)


@pytest.mark.parametrize("compression", ["uncompressed", "lz4", "zstd"])
def test_feather_files_and_streams_go_there_and_back(folder, kelvarin_program, write_graph, compression):
    table = random_table(7, 5000)
    pyarrow.feather.write_feather(table, folder / "in.feather", compression=compression)
    for out in ("out.feather", "out.arrows"):
        write_graph("<ReadArrow name='in' file='in.feather'/>", f"<WriteArrow name='out' file='{out}'/>")
        kelvarin_program("run", "g.kelvarin", "--quiet")
    assert is_same(pyarrow.feather.read_table(folder / "out.feather"), table)
    assert is_same(polars.read_ipc(folder / "out.feather").to_arrow().cast(table.schema), table)
    assert is_same(polars.read_ipc_stream(folder / "out.arrows").to_arrow().cast(table.schema), table)
    with pyarrow.ipc.open_stream(folder / "out.arrows") as stream:
        assert is_same(stream.read_all(), table)
    polars.from_arrow(table).write_ipc_stream(folder / "in.feather", compression=compression)
    write_graph("<ReadArrow name='in' file='in.feather'/>", "<WriteArrow name='out' file='back.arrow'/>")
    kelvarin_program("run", "g.kelvarin", "--quiet")
    assert is_same(pyarrow.feather.read_table(folder / "back.arrow"), table)


def with_arrow_types(table):
    return table.to_pandas(types_mapper=pandas.ArrowDtype)  # in which a null is not NaN


# How a table gets into each, and how each has the rows of a scan.
PEERS = {
    "pyarrow": (lambda table: table, lambda scan: scan.to_arrow()),
    "polars": (polars.DataFrame, lambda scan: scan.to_polars().to_arrow()),
    "duckdb": (duckdb.from_arrow, lambda scan: duckdb.sql("select * from scan").to_arrow_table()),
    "pandas": (with_arrow_types, lambda scan: pyarrow.Table.from_pandas(with_arrow_types(scan.to_arrow()),
                                                                        preserve_index=False)),
}


@pytest.mark.parametrize("peer", PEERS)
def test_200_random_tables_go_there_and_back(folder, peer):
    path = folder / "t.cgel_kelvarin"
    given, read = PEERS[peer]
    for seed in range(200):
        table = random_table(seed)
        assert kelvarin.write(given(table), path, block_rows=700, threads=1 + seed % 3) == table.num_rows
        scan = kelvarin.scan(path, threads=1 + seed % 2)
        assert scan.rows == table.num_rows
        assert is_same(read(scan).cast(table.schema), table), seed
        if seed % 4 == 0:  # in what pandas has of the package, a null is NaN
            found = scan.to_pandas()
            assert [found[name].isna().sum() for name in found] == [
                pyarrow.compute.sum(column.is_null(nan_is_null=True)).as_py() for column in table.columns]


def test_a_scan_reads_what_it_was_asked_for(folder):
    path = folder / "t.cgel_kelvarin"
    table = pyarrow.table({"price": [float(row) for row in range(10_000)], "name": [f"n{row}" for row in range(10_000)],
                           "day": pyarrow.array([row // 100 for row in range(10_000)], pyarrow.uint32())})
    kelvarin.write(table, path, sorted_by=["price"], block_rows=1000)
    scan = kelvarin.scan(path, ["day", "price"], rows=(1500, 7500), blocks="price_max > 4500", row_number="row")
    assert [column.name for column in scan.columns] == ["day", "price", "row"]
    found = scan.to_arrow()
    assert found["row"].to_pylist() == [float(row) for row in range(4000, 7500)] == found["price"].to_pylist()
    assert found["day"].to_pylist() == [row // 100 for row in range(4000, 7500)]
    assert kelvarin.scan(path, "price", blocks=(2, 4)).to_arrow()["price"].to_pylist() == [
        float(row) for row in range(2000, 4000)]

    every = kelvarin.scan(path)
    assert len(every.blocks) == 10 and [block.first_row for block in every.blocks[2:4]] == [2000, 3000]
    assert every.blocks[-1].statistics["price"] == kelvarin.Statistics(9000.0, 9999.0, False)
    assert every.blocks[0].statistics["name"].min <= b"n0"
    assert "10000 rows in 10 blocks" in repr(every) and "price (number)" in repr(every)
    assert [field.name for field in pyarrow.schema(every)] == ["price", "name", "day"]
    sizes = {batch.num_rows for batch in pyarrow.RecordBatchReader.from_stream(kelvarin.scan(path, batch_rows=300))}
    assert max(sizes) <= 300


def test_a_scan_is_a_table_of_a_query(folder):
    path = folder / "t.cgel_kelvarin"
    kelvarin.write(pyarrow.table({"a": [1.0, 2.0, 3.0], "s": ["x", "y", "x"]}), path)
    prices = kelvarin.scan(path)
    assert duckdb.sql("select s, sum(a) from prices group by s order by s").fetchall() == [("x", 4.0), ("y", 2.0)]
    assert polars.DataFrame(prices).group_by("s").sum().sort("s")["a"].to_list() == [4.0, 2.0]
    copy = folder / "copy.cgel_kelvarin"
    assert kelvarin.write(prices, copy) == 3 and kelvarin.scan(copy).to_arrow().equals(prices.to_arrow())


def test_queries_name_files(folder, monkeypatch):
    import kelvarin.duckdb

    monkeypatch.chdir(folder)
    kelvarin.write(pyarrow.table({"id": [1.0, 2.0, 3.0], "item": ["cup", "kettle", "cup"]}), "orders.cgel_kelvarin")
    kelvarin.write(pyarrow.table({"item": ["cup", "it's"], "price": [2.5, 3.0]}), folder / "it's.cgel_kelvarin")
    query = f"select sum(price) from 'orders.cgel_kelvarin' join '{folder}/it''s.cgel_kelvarin' using (item)"
    with duckdb.connect() as connection:
        for _ in range(2):
            assert kelvarin.duckdb.sql(query, connection).fetchall() == [(5.0,)]
        assert connection.sql(query).fetchall() == [(5.0,)]
        with pytest.raises(kelvarin.Error, match="absent.cgel_kelvarin"):
            kelvarin.duckdb.sql("from 'absent.cgel_kelvarin'", connection)
        scan = kelvarin.duckdb.register("orders.cgel_kelvarin", connection, columns=["id"], rows=(1, 3))
        assert scan.rows == 3
        items = pyarrow.table({"item": ["cup"]})  # noqa: F841
        assert kelvarin.duckdb.sql("select item from items semi join ITEMS_OF_ORDERS using (item)", connection).fetchall() == [
            ("cup",)]
        assert connection.sql("from \"orders.cgel_kelvarin\"").fetchall() == [(2.0,), (3.0,)]


def test_texts_come_as_they_are_asked_for(folder):
    path = folder / "t.cgel_kelvarin"
    kelvarin.write(pyarrow.table({"s": ["short", None, "longer than twelve bytes"]}), path)
    scan = kelvarin.scan(path)
    for texts, kind in (("view", pyarrow.string_view()), ("string", pyarrow.string()),
                        ("large_string", pyarrow.large_string())):
        found = scan.to_arrow(texts)
        assert found.schema.types == [kind]
        assert found["s"].to_pylist() == ["short", None, "longer than twelve bytes"]
    assert isinstance(scan.to_pandas(), pandas.DataFrame)
