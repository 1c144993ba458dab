"""What the tests of the engines for many machines share: tables, the program as the one that is right, and sessions."""

import contextlib
import os
import pathlib
import random

import pyarrow
import pyarrow.compute
from conftest import is_same, random_kinds, random_table

import kelvarin

OUTPUTS = {"total": "price * quantity", "label": 'shop // "!"', "rest": "id % 7"}
CONDITION = "isNull(total) || total >= 40"


def orders(rows, seed=1):
    """A sorted key, numbers with nulls and NaN, texts with nulls."""
    import numpy

    draw = numpy.random.default_rng(seed)
    price = draw.integers(0, 4000, rows) / 16
    price[draw.random(rows) < 0.01] = numpy.nan
    shops = pyarrow.array(["", "Lyon", "Zürich", "日本語", None])
    return pyarrow.table({
        "id": pyarrow.array(numpy.arange(rows), pyarrow.uint32()),
        "price": pyarrow.array(price, mask=draw.random(rows) < 0.02),
        "quantity": pyarrow.array(draw.integers(0, 9, rows).astype("float64")),
        "shop": shops.take(pyarrow.array(draw.integers(0, len(shops), rows))),
    })


def graph_actions(source, sink):
    """Three outputs and a filter, between a source and a sink."""
    variables = "".join(f"<InputVar column='{column}' isNumber='{int(column != 'shop')}'/>"
                        for column in ("id", "price", "quantity", "shop"))
    outputs = "".join(f"<OutputVar name='{name}' meta='{'U' if name == 'label' else 'F'}'>{expression}</OutputVar>"
                      for name, expression in OUTPUTS.items())
    return [source, f"<Calculator name='c'><InputVars>{variables}</InputVars><OutputVars>{outputs}</OutputVars></Calculator>",
            f"<FilterRows name='f'><InputVars><InputVar column='total'/></InputVars>"
            f"<Expression><![CDATA[{CONDITION}]]></Expression></FilterRows>", sink]


def in_order(table, columns=("id",)):
    """The rows sorted, with keys as unsigned integers and texts as strings, in the order of their columns' names."""
    names = sorted(table.schema.names)
    types = {"id": pyarrow.uint32()}
    table = table.select(names)
    table = table.cast(pyarrow.schema([
        (name, types.get(name, pyarrow.string() if table.schema.field(name).type in (
            pyarrow.string_view(), pyarrow.large_string()) else table.schema.field(name).type)) for name in names]))
    return table.sort_by([(column, "ascending") for column in columns])


def assert_same(found, expected):
    assert found.num_rows == expected.num_rows
    assert is_same(in_order(found), in_order(expected))


RANDOM_GROUPS, TABLES_IN_GROUP = 5, 40


def write_random_tables(folder, group):
    """Tables of the same random columns, a file each in blocks of another size, and returns them. A group is one job."""
    kinds = random_kinds(random.Random(group))
    tables = []
    for number in range(TABLES_IN_GROUP):
        table = random_table(group * TABLES_IN_GROUP + number, kinds=kinds)
        for name, values in (("table", [number] * table.num_rows), ("row", range(table.num_rows))):
            table = table.append_column(name, pyarrow.array(values, pyarrow.uint32()))
        kelvarin.write(table, folder / f"{number}.cgel_kelvarin", block_rows=50 + 37 * number, create_folder=True)
        tables.append(table)
    return tables


def assert_same_tables(found, tables):
    found = in_order(found, ("table", "row"))
    first = 0
    for number, table in enumerate(tables):
        assert is_same(found.slice(first, table.num_rows), in_order(table, ("table", "row"))), number
        first += table.num_rows
    assert found.num_rows == first


def read_folder(folder):
    return pyarrow.concat_tables([kelvarin.scan(file).to_arrow() for file in sorted(folder.glob("*.cgel_kelvarin"))])


def assert_only_whole_files(folder):
    """Nothing of a job that has ended remains but its files."""
    names = sorted(path.name for path in pathlib.Path(folder).iterdir())
    assert all(name.startswith("part-") and name.endswith(("_kelvarin", ".parquet")) for name in names), names


@contextlib.contextmanager
def spark_session(master, **settings):
    """A session that is stopped at the end, together with its workers."""
    import pyspark
    from pyspark.sql import SparkSession

    os.environ["SPARK_HOME"] = os.path.dirname(pyspark.__file__)
    os.environ["PYSPARK_PYTHON"] = "python3"
    builder = SparkSession.builder.master(master).appName("kelvarin")
    chosen = {"spark.ui.enabled": "false", "spark.driver.memory": "1g", "spark.sql.shuffle.partitions": "4",
              "spark.driver.host": "127.0.0.1", "spark.ui.showConsoleProgress": "false",
              "spark.sql.execution.arrow.pyspark.enabled": "true", **settings}
    for name, value in chosen.items():
        builder = builder.config(name, value)
    session = builder.getOrCreate()
    session.sparkContext.setLogLevel("OFF")
    try:
        yield session
    finally:
        session.stop()
        gateway = pyspark.SparkContext._gateway
        if gateway is not None:
            gateway.shutdown()
            gateway.proc.stdin.close()
            gateway.proc.wait(30)
            pyspark.SparkContext._gateway = pyspark.SparkContext._jvm = None


@contextlib.contextmanager
def ray_cluster(nodes=2):
    """Nodes on this machine, which are stopped at the end."""
    import ray
    import ray.cluster_utils

    os.environ["RAY_USAGE_STATS_ENABLED"] = "0"
    cluster = ray.cluster_utils.Cluster()
    try:
        for _ in range(nodes):
            cluster.add_node(num_cpus=1, object_store_memory=300 * 2**20, include_dashboard=False)
        ray.init(cluster.address, logging_level="error", log_to_driver=False)
        ray.data.DataContext.get_current().enable_progress_bars = False
        yield cluster
    finally:
        ray.shutdown()
        cluster.shutdown()
