"""Columnar files and expressions on Spark."""

import pyarrow
import pytest
from conftest import is_same
from engines import (CONDITION, OUTPUTS, RANDOM_GROUPS, assert_only_whole_files, assert_same, assert_same_tables, graph_actions,
                     orders, read_folder, spark_session, write_random_tables)

import kelvarin

pyspark = pytest.importorskip("pyspark")
import kelvarin.spark  # noqa: E402


@pytest.fixture(scope="module")
def spark():
    with spark_session("local[2]", **{"spark.sql.python.filterPushdown.enabled": "true"}) as session:
        kelvarin.spark.register(session)
        yield session


def load(spark, path, **options):
    return spark.read.format("kelvarin").options(**options).load(str(path))


def with_unsigned(table, like):
    return table.cast(pyarrow.schema([(field.name, field.type) for field in like.schema]))


def test_what_the_program_wrote_is_read(spark, folder, write_graph, kelvarin_program):
    import pyarrow.parquet
    table = orders(5000)
    pyarrow.parquet.write_table(table, folder / "in.parquet")
    write_graph("<ReadParquet name='in' file='in.parquet'/>",
                "<writeColumnarGel name='out' file='t.cgel_kelvarin' nRowsInBlock='700'/>")
    kelvarin_program("run", "g.kelvarin", "--quiet")
    frame = load(spark, folder / "t.cgel_kelvarin", rows_in_split=1000)
    assert [field.dataType.simpleString() for field in frame.schema] == ["bigint", "double", "double", "string"]
    assert frame.rdd.getNumPartitions() > 4
    assert is_same(with_unsigned(frame.toArrow(), table), table)
    chosen = load(spark, folder / "t.cgel_kelvarin", columns="shop, id").toArrow()
    assert is_same(with_unsigned(chosen, table.select(["shop", "id"])), table.select(["shop", "id"]))


def test_200_random_tables_go_to_files_and_back(spark, folder):
    for group in range(RANDOM_GROUPS):
        tables, out = write_random_tables(folder / f"in{group}", group), folder / f"out{group}"
        load(spark, folder / f"in{group}", rows_in_split=2000).write.format("kelvarin").mode("append").save(str(out))
        assert_same_tables(read_folder(out), tables)
        assert_only_whole_files(out)


def test_blocks_are_ruled_out_before_there_are_tasks(spark, folder):
    path = folder / "t.cgel_kelvarin"
    table = orders(10_000)
    kelvarin.write(table, path, sorted_by="id", block_rows=500)
    part = kelvarin.spark.read(spark, str(path), where=[("id", ">=", 2100), ("id", "<", 2600)], rows_in_split=500)
    assert part.rdd.getNumPartitions() == 2 and part.count() == 500
    assert kelvarin.spark.read(spark, str(path), where=[("id", "in", [3, 9999])], rows_in_split=500).count() == 2
    pushed = load(spark, path, push_filters="true", rows_in_split=500).where("id >= 2100 and id < 2600")
    assert pushed.rdd.getNumPartitions() == 2 and pushed.count() == 500
    # NaN is above every number in Spark, and beside the bounds of a block.
    above = kelvarin.spark.read(spark, str(path), where=[("price", ">", 1e9)])
    assert above.count() == sum(price is not None and price != price for price in table["price"].to_pylist()) > 0
    missing = kelvarin.spark.read(spark, str(path), where=[("shop", "is null", None)])
    assert missing.count() == table["shop"].null_count


def test_queries_of_one_frame_do_not_disturb_one_another(spark, folder):
    path = folder / "t.cgel_kelvarin"
    kelvarin.write(orders(10_000), path, sorted_by="id", block_rows=500)
    frame = load(spark, path, rows_in_split=500)
    few, last = frame.where("id < 600"), frame.where("id >= 9000")
    assert (few.count(), frame.count(), few.union(last).count(), last.count()) == (600, 10_000, 1600, 1000)


def test_calculate(spark, folder, kelvarin_program):
    path = folder / "t.cgel_kelvarin"
    table = orders(5000)
    kelvarin.write(table, path, block_rows=300)
    frame = load(spark, path, rows_in_split=600)
    expected = kelvarin.calculate(table, OUTPUTS, CONDITION).to_arrow()
    found = kelvarin.spark.calculate(frame, OUTPUTS, CONDITION)
    assert [field.dataType.simpleString() for field in found.schema][-3:] == ["double", "string", "double"]
    assert_same(found.toArrow(), expected)
    numbered = kelvarin.spark.calculate(load(spark, path, rows_in_split=600, row_number="row").where("id % 3 = 0"),
                                        {"n": "_n * 2"}, row_number="row")
    assert [row.n for row in numbered.sort("id").collect()] == [2.0 * row for row in range(0, 5000, 3)]


@pytest.mark.parametrize(("outputs", "options", "token"), [
    ({"x": "price + rand(1)"}, {}, "rand"), ({"x": "randN(0, 1)"}, {}, "randN"),
    ({"x": "_n + 1"}, {}, "_n"), ({"x": "price *"}, {}, None)])
def test_what_needs_more_than_its_row_is_refused(spark, folder, outputs, options, token):
    path = folder / "t.cgel_kelvarin"
    kelvarin.write(orders(10), path)
    with pytest.raises(kelvarin.Error) as caught:
        kelvarin.spark.calculate(load(spark, path), outputs, **options)
    assert caught.value.output == "x" and (token is None or caught.value.token == token)


def test_writing_appends_overwrites_and_leaves_nothing_of_a_failure(spark, folder):
    path, out = folder / "t.cgel_kelvarin", folder / "out"
    table = orders(4000)
    kelvarin.write(table, path, block_rows=500)
    frame = load(spark, path, rows_in_split=1000)
    frame.write.format("kelvarin").option("sorted_by", "id").mode("append").save(str(out))
    assert len(list(out.glob("*.cgel_kelvarin"))) == 4 and kelvarin.scan(next(iter(out.glob("*0*.cgel*")))).columns[0].order
    frame.write.format("kelvarin").mode("append").save(str(out))
    assert read_folder(out).num_rows == 8000 == load(spark, out).count()
    frame.write.format("kelvarin").mode("overwrite").save(str(out))
    assert_same(read_folder(out), table)
    failing = frame.selectExpr("id", "if(id = 3999, 9007199254740993, id) as big")
    with pytest.raises(Exception, match="big"):
        failing.write.format("kelvarin").mode("overwrite").save(str(out))
    assert_same(read_folder(out), table)
    assert_only_whole_files(out)


def test_what_cannot_be_read_is_told(spark, folder):
    with pytest.raises(Exception, match="no columnar file"):
        load(spark, folder / "absent")
    kelvarin.write(orders(10), folder / "a.cgel_kelvarin")
    kelvarin.write(pyarrow.table({"other": [1.0]}), folder / "b.cgel_kelvarin")
    with pytest.raises(Exception, match="other columns"):
        load(spark, folder)


@pytest.mark.parametrize(("source", "sink", "suffix"), [
    ("<ReadColumnarGel name='in' fileName='in.cgel_kelvarin'/>",
     "<writeColumnarGel name='out' file='${out}.cgel_kelvarin' nRowsInBlock='100'/>", "cgel_kelvarin"),
    ("<ReadParquet name='in' file='in.parquet'/>", "<WriteParquet name='out' file='${out}.parquet'/>", "parquet")])
def test_graphs_give_the_rows_of_the_program(spark, folder, write_graph, kelvarin_program, source, sink, suffix):
    import pyarrow.parquet
    table = orders(3000)
    kelvarin.write(table, folder / "in.cgel_kelvarin", block_rows=300)
    pyarrow.parquet.write_table(table, folder / "in.parquet", row_group_size=700)
    graph = write_graph(*graph_actions(source, sink))
    text = graph.read_text(encoding="utf-8")
    graph.write_text(text.replace("<Actions>", "<Parameters><Parameter name='out' value='one'/></Parameters><Actions>"),
                     encoding="utf-8")
    kelvarin_program("run", "g.kelvarin", "--quiet")
    rows = kelvarin.spark.run(spark, graph, {"out": "many"}, rows_in_split=700)
    parts = sorted((folder / f"many.{suffix}").glob(f"*.{suffix}"))
    read = pyarrow.parquet.read_table if suffix == "parquet" else lambda path: kelvarin.scan(path).to_arrow()
    found, expected = pyarrow.concat_tables(map(read, parts)), read(folder / f"one.{suffix}")
    assert rows == expected.num_rows and len(parts) > 3
    assert is_same(found, expected)
    assert_only_whole_files(folder / f"many.{suffix}")


@pytest.mark.parametrize(("step", "says"), [
    ("<FilterRows name='f' truncate='1'><InputVars/><Expression>1</Expression></FilterRows>", "'f' .FilterRows.*truncate"),
    ("<FilterRows name='f'><InputVars/><Expression>_n &lt; 10</Expression></FilterRows>", "'f' .FilterRows.*_n"),
    ("<Calculator name='c'><InputVars/><OutputVars><OutputVar name='y'>rand(1)</OutputVar></OutputVars></Calculator>",
     "'c' .Calculator.*rand"),
    ("<CalculatorVectorized name='v'><InputVars><InputVar label='p'><SL><S>price</S><S>quantity</S></SL></InputVar></InputVars>"
     "<OutputVars><OutputVar name='&quot;y&quot;//_n'>a = p</OutputVar></OutputVars></CalculatorVectorized>", "'v' .*a|="),
])
def test_graphs_that_cannot_be_divided_are_refused(spark, folder, write_graph, step, says):
    kelvarin.write(orders(10), folder / "in.cgel_kelvarin")
    graph = write_graph("<ReadColumnarGel name='in' fileName='in.cgel_kelvarin'/>", step,
                        "<writeColumnarGel name='out' file='out.cgel_kelvarin'/>")
    with pytest.raises(kelvarin.Error, match=says) as caught:
        kelvarin.spark.run(spark, graph)
    assert caught.value.action and not (folder / "out.cgel_kelvarin").exists()
    graph = write_graph("<ReadCSV name='in' file='in.csv'/>", "<WriteCSV name='out' file='out.csv'/>")
    with pytest.raises(kelvarin.Error, match="'in' .ReadCSV"):
        kelvarin.spark.run(spark, graph)
