"""Columnar files and expressions on Ray Data."""

import pytest
from engines import (CONDITION, OUTPUTS, RANDOM_GROUPS, assert_only_whole_files, assert_same, assert_same_tables, orders, ray_cluster,
                     read_folder, write_random_tables)

import kelvarin

pytest.importorskip("ray")
import kelvarin.ray  # noqa: E402


@pytest.fixture(scope="module", autouse=True)
def cluster():
    with ray_cluster() as found:
        yield found


def collected(dataset):
    import pyarrow
    import ray
    return pyarrow.concat_tables(ray.get(dataset.to_arrow_refs()), promote_options="permissive")


def test_reading_computing_and_writing(folder):
    path, out = folder / "t.cgel_kelvarin", folder / "out"
    table = orders(5000)
    kelvarin.write(table, path, sorted_by="id", block_rows=300)
    dataset = kelvarin.ray.read(path, rows_in_split=600)
    assert_same(collected(dataset), table)
    assert_same(collected(kelvarin.ray.read(path, ["shop", "id"])), table.select(["shop", "id"]))
    found = kelvarin.ray.calculate(dataset, OUTPUTS, CONDITION)
    expected = kelvarin.calculate(table, OUTPUTS, CONDITION).to_arrow()
    assert_same(collected(found), expected)
    kelvarin.ray.write(found, out)
    assert_same(read_folder(out), expected)
    with pytest.raises(kelvarin.Error, match="already"):
        kelvarin.ray.write(found, out)
    kelvarin.ray.write(dataset, out, mode="overwrite", rows_in_file=10_000)
    assert_same(read_folder(out), table)
    assert_only_whole_files(out)


def test_conditions_and_row_numbers(folder):
    path = folder / "t.cgel_kelvarin"
    kelvarin.write(orders(10_000), path, sorted_by="id", block_rows=500)
    assert kelvarin.ray.read(path, where=[("id", ">=", 2100), ("id", "<", 2600)]).count() == 1000
    numbered = kelvarin.ray.calculate(kelvarin.ray.read([path, path], ["id"], row_number="row"), {"n": "_n"}, row_number="row")
    assert sorted(collected(numbered)["n"].to_pylist()) == list(range(20_000))
    with pytest.raises(kelvarin.Error) as caught:
        kelvarin.ray.calculate(kelvarin.ray.read(path), where="rand(1) < 0.5")
    assert (caught.value.output, caught.value.token) == ("condition", "rand")


def test_200_random_tables_go_to_files_and_back(folder):
    for group in range(RANDOM_GROUPS):
        tables = write_random_tables(folder / f"in{group}", group)
        kelvarin.ray.write(kelvarin.ray.read(folder / f"in{group}", rows_in_split=2000), folder / f"out{group}")
        assert_same_tables(read_folder(folder / f"out{group}"), tables)
