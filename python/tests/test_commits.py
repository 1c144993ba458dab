"""What counts of a job that several tasks write, whatever its driver and its attempts do."""

import pyarrow
import pytest
from engines import assert_only_whole_files, read_folder

import kelvarin
from kelvarin.commits import committed_files, start_job
from kelvarin.splits import ColumnarTable


def rows(*numbers):
    return pyarrow.table({"x": pyarrow.array(map(float, numbers), "float64")})


def numbers_in(folder):
    return sorted(number for file in ColumnarTable(folder).files for number in kelvarin.scan(file).to_arrow()["x"].to_pylist())


def test_only_attempts_that_were_reported_count(folder):
    job = start_job(folder, "error")
    job.write_partition(0, rows(1, 2))
    second = job.write_partition(0, rows(1, 2))
    assert not committed_files(folder, ".cgel_kelvarin")
    empty = job.write_partition(2, rows())
    assert job.commit([second, None, empty]) == 2
    assert numbers_in(folder) == [1, 2]
    assert_only_whole_files(folder)
    with pytest.raises(FileNotFoundError):
        job.write_partition(1, rows(3))
    assert_only_whole_files(folder)


def test_a_partition_that_is_reported_twice_fails_the_job(folder):
    job = start_job(folder, "error")
    with pytest.raises(kelvarin.Error, match="two attempts"):
        job.commit([job.write_partition(0, rows(1)), job.write_partition(0, rows(1))])
    assert not list(folder.iterdir())


@pytest.mark.parametrize("ends_after", range(10))
def test_a_driver_that_ends_within_its_commit_has_committed_all_or_nothing(folder, monkeypatch, ends_after):
    first = start_job(folder, "error")
    first.commit([first.write_partition(0, rows(1)), first.write_partition(1, rows(2))])
    second = start_job(folder, "overwrite")
    messages = [second.write_partition(0, rows(3)), second.write_partition(1, rows(4))]
    import os
    steps = iter(range(100))

    def interrupted(function):
        def call(*arguments):
            if next(steps) >= ends_after:
                raise KeyboardInterrupt
            return function(*arguments)
        return call

    with monkeypatch.context() as patch, pytest.raises(KeyboardInterrupt):
        patch.setattr(os, "replace", interrupted(os.replace))
        patch.setattr(os, "link", interrupted(os.link))
        patch.setattr(os, "remove", interrupted(os.remove))
        second.commit(messages)
    assert numbers_in(folder) == ([1, 2] if ends_after == 0 else [3, 4])
    third = start_job(folder, "append")
    third.commit([third.write_partition(0, rows(5))])
    expected = [1, 2, 5] if ends_after == 0 else [3, 4, 5]
    assert numbers_in(folder) == expected
    if ends_after > 0:
        assert_only_whole_files(folder)
        assert sorted(read_folder(folder)["x"].to_pylist()) == expected
