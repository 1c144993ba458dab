"""What the engines for many machines share of writing: one file a partition, and all of them or none.

A job writes into `FOLDER/_job-ID/`, each attempt of a task into a folder of its own there. The driver learns by messages
which attempts count. Its commit writes down which files become part of the table, and which no longer are, in the
journal `FOLDER/_commit-ID.json`, which comes under its name by one rename: from then on the job counts. Then the files
come into the folder, and the job's own folder goes. Whoever reads a folder with a journal, because the driver died in
between, sees the table as it will be, and the next job that writes there does first what the journal says.
"""

from __future__ import annotations

import json
import os
import shutil
import uuid
from collections.abc import Iterable
from dataclasses import dataclass
from typing import Any, Literal, get_args

from kelvarin.columnar_files import write
from kelvarin.errors import Error
from kelvarin.rows import ArrowTable

Mode = Literal["error", "append", "overwrite"]
JOB_PREFIX, JOURNAL_PREFIX = "_job-", "_commit-"
MAIN_SUFFIX, SIDE_SUFFIX, PARQUET_SUFFIX = ".cgel_kelvarin", ".cs_kelvarin", ".parquet"


@dataclass(frozen=True)
class Written:
    """What one attempt of a task has written: its message to the driver.

    Attributes:
        partition: The number of the partition.
        attempt: The folder of the attempt in that of the job.
        files: Their names, which they keep.
        rows: How many they hold.
    """

    partition: int
    attempt: str
    files: tuple[str, ...]
    rows: int


@dataclass(frozen=True)
class WriteJob:
    """One job that writes a table of columnar files into a folder. It can be pickled, and goes to the workers.

    Attributes:
        folder: Of the table, which the driver and all workers see by the same path.
        id: Of the job; no two have the same.
        overwrites: Whether the files of the table that is there are replaced, or new ones added.
        is_parquet: Whether the files are of Parquet, and no columnar files.
        options: Of ``kelvarin.write``.
    """

    folder: str
    id: str
    overwrites: bool
    is_parquet: bool
    options: dict[str, Any]

    @property
    def job_folder(self) -> str:
        return os.path.join(self.folder, JOB_PREFIX + self.id)

    def write_partition(self, partition: int, rows: ArrowTable) -> Written:
        """Writes the rows of a partition, on a worker. Without rows there is no file."""
        attempt = f"{partition:05}-{uuid.uuid4().hex}"
        attempt_folder = os.path.join(self.job_folder, attempt)
        # Fails where the job has ended without this attempt.
        os.mkdir(attempt_folder)
        name = f"part-{partition:05}-{self.id}{PARQUET_SUFFIX if self.is_parquet else MAIN_SUFFIX}"
        path = os.path.join(attempt_folder, name)
        count = _write_parquet(rows, path) if self.is_parquet else write(rows, path, **self.options)
        return Written(partition, attempt, tuple(sorted(os.listdir(attempt_folder))), count)

    def commit(self, messages: Iterable[Written | None]) -> int:
        """Makes what the messages name part of the table, and returns its rows. Everything else of the job is removed.

        Raises:
            Error: Two attempts say that they have written the same partition: neither becomes part of it.
        """
        written = [message for message in messages if message is not None]
        if len({message.partition for message in written}) != len(written):
            self.abort()
            raise Error("A partition was reported by two attempts. Nothing was written.")
        journal = {
            "job": JOB_PREFIX + self.id,
            "remove": _files_in(self.folder) if self.overwrites else [],
            "add": [[message.attempt, name] for message in written for name in message.files],
        }
        _write_whole(os.path.join(self.folder, f"{JOURNAL_PREFIX}{self.id}.json"), json.dumps(journal))
        finish_commits(self.folder)
        return sum(message.rows for message in written)

    def abort(self) -> None:
        """Removes all that the job has written."""
        shutil.rmtree(self.job_folder, ignore_errors=True)


def start_job(path: str | os.PathLike[str], mode: Mode, *, is_parquet: bool = False,
              **options: Any) -> WriteJob:
    """Begins a job, on the driver.

    Args:
        path: The folder of the table, which is made where it does not exist.
        mode: "append" adds files, "overwrite" replaces those that are there, "error" fails where there are some.
        is_parquet: Writes files of Parquet.
        options: Of ``kelvarin.write``.
    """
    if mode not in get_args(Mode):
        raise ValueError(f"mode is {mode!r}; it takes {', '.join(get_args(Mode))}")
    folder = local_path(path)
    os.makedirs(folder, exist_ok=True)
    if mode == "error" and committed_files(folder, PARQUET_SUFFIX if is_parquet else MAIN_SUFFIX):
        raise Error(f"The folder '{folder}' has a table already. Take the mode 'append' or 'overwrite', or another folder.")
    finish_commits(folder)
    job = WriteJob(folder, uuid.uuid4().hex, mode == "overwrite", is_parquet, options)
    os.mkdir(job.job_folder)
    return job


def local_path(path: str | os.PathLike[str]) -> str:
    """A path as the file system takes it; engines like to put "file:" before it."""
    text = os.fspath(path)
    for scheme in ("file://", "file:"):
        if text.startswith(scheme):
            return text[len(scheme):]
    if "://" in text:
        raise Error(f"'{text}' is no path of a file system. Columnar files are read and written where every worker "
                    "sees them by the same path.")
    return os.path.abspath(text)


def committed_files(folder: str, suffix: str) -> list[str]:
    """The files of a table in a folder whose names end like this, in their order; those of commits in progress as well."""
    files = {name: os.path.join(folder, name) for name in _files_in(folder)}
    for _, journal in _journals(folder):
        for name in journal["remove"]:
            files.pop(name, None)
        for attempt, name in journal["add"]:
            if name not in files:
                files[name] = os.path.join(folder, journal["job"], attempt, name)
    return [path for name, path in sorted(files.items()) if name.endswith(suffix)]


def finish_commits(folder: str) -> None:
    """Ends commits whose journal was written."""
    for path, journal in _journals(folder):
        for name in journal["remove"]:
            _remove(os.path.join(folder, name))
        # Side files first, and all attempts stay whole meanwhile: a main file has its side files beside it.
        for attempt, name in sorted(journal["add"], key=lambda added: not added[1].endswith(SIDE_SUFFIX)):
            _appear(os.path.join(folder, journal["job"], attempt, name), os.path.join(folder, name))
        shutil.rmtree(os.path.join(folder, journal["job"]), ignore_errors=True)
        _remove(path)


def _files_in(folder: str) -> list[str]:
    return sorted(name for name in os.listdir(folder)
                  if name.endswith((MAIN_SUFFIX, SIDE_SUFFIX, PARQUET_SUFFIX)) and not name.startswith(("_", ".")))


def _write_parquet(rows: ArrowTable, path: str) -> int:
    import pyarrow.parquet

    with pyarrow.RecordBatchReader.from_stream(rows) as reader, pyarrow.parquet.ParquetWriter(path, reader.schema) as writer:
        count = 0
        for batch in reader:
            writer.write_batch(batch)
            count += batch.num_rows
    return count


def _journals(folder: str) -> list[tuple[str, dict[str, Any]]]:
    found = []
    for name in sorted(os.listdir(folder)):
        if name.startswith(JOURNAL_PREFIX) and name.endswith(".json"):
            path = os.path.join(folder, name)
            with open(path, encoding="utf-8") as file:
                found.append((path, json.load(file)))
    return found


def _write_whole(path: str, text: str) -> None:
    new = path + ".new"
    with open(new, "w", encoding="utf-8") as file:
        file.write(text)
        file.flush()
        os.fsync(file.fileno())
    os.replace(new, path)


def _appear(source: str, target: str) -> None:
    """Gives a file a second name, or makes a copy where the file system has no links."""
    if os.path.exists(target):
        return
    try:
        os.link(source, target)
    except OSError:
        shutil.copyfile(source, target + ".new")
        os.replace(target + ".new", target)


def _remove(path: str) -> None:
    if os.path.exists(path):
        os.remove(path)
