"""Workers that are killed while an engine reads, computes and writes, and what is left then."""

import subprocess
import threading
import time

import numpy
import psutil
import pyarrow
import pyarrow.compute
from conftest import PROGRAM
from engines import CONDITION, OUTPUTS, assert_only_whole_files, graph_actions, orders

import kelvarin

PHASES = ("reading", "computing", "writing")
ROWS_AT_ONCE = 1_000_000


class Faults:
    """A table, what the program makes of it, and an engine that has to make the same while its workers are killed.

    Args:
        engine: One of the classes below.
        folder: For all files.
        rows: Of the table.
        rows_in_split: So that there are several tasks for each worker.
    """

    def __init__(self, engine, folder, rows, rows_in_split):
        self.engine = engine
        self.folder = folder
        self.path = folder / "in.cgel_kelvarin"
        self.rows_in_split = rows_in_split
        if not self.path.exists():
            self._prepare(rows)
        self.read = _summary(kelvarin.scan(self.path), ("id",))
        self.expected = folder / "expected.cgel_kelvarin"
        self.computed = _summary(kelvarin.scan(self.expected), ("id", "rest"))

    def _prepare(self, rows):
        schema = orders(1).schema
        parts = (orders(min(ROWS_AT_ONCE, rows - begin), begin + 1) for begin in range(0, rows, ROWS_AT_ONCE))
        numbered = (_shifted(part, number * ROWS_AT_ONCE) for number, part in enumerate(parts))
        batches = (batch for part in numbered for batch in part.combine_chunks().to_batches())
        kelvarin.write(pyarrow.RecordBatchReader.from_batches(schema, batches), self.path, sorted_by="id", block_rows=5000)
        actions = graph_actions("<ReadColumnarGel name='in' fileName='in.cgel_kelvarin'/>",
                                "<writeColumnarGel name='out' file='expected.cgel_kelvarin' nRowsInBlock='5000'/>")
        links = "<Link from='in' to='c'/><Link from='c' to='f'/><Link from='f' to='out'/>"
        (self.folder / "g.kelvarin").write_text(
            f"<KelvarinGraph version='1.0'><Actions>{''.join(actions)}</Actions><Links>{links}</Links></KelvarinGraph>")
        subprocess.run([PROGRAM, "run", "--quiet", "g.kelvarin"], cwd=self.folder, check=True, timeout=600)

    def check(self, phase, draw, kills=True):
        """Kills a worker in this phase and compares what comes out. Returns the number of kills."""
        killer = Killer(self.engine, draw) if kills else None
        try:
            self._work(phase)
        finally:
            killed = killer.end() if killer else 0
        return killed

    def _work(self, phase):
        if phase == "reading":
            assert self.engine.summary(self.engine.read(self), ("id",)) == self.read
            return
        frame = self.engine.calculate(self.engine.read(self))
        if phase == "computing":
            assert self.engine.summary(frame, ("id", "rest")) == self.computed
            return
        out = self.folder / "out"
        self.engine.write(frame, out)
        assert_only_whole_files(out)
        _compare(sorted(out.glob("*.cgel_kelvarin")), self.expected)


class Killer(threading.Thread):
    """Kills one worker as soon as the engine has done a part of its tasks."""

    def __init__(self, engine, draw):
        super().__init__(daemon=True)
        self._engine, self._draw = engine, draw
        self._ended = threading.Event()
        self.killed = 0
        self.start()

    def run(self):
        while not self._ended.wait(0.02):
            if self._engine.is_at_work():
                time.sleep(self._draw.random() * self._engine.seconds)
                workers = self._engine.workers()
                if workers:
                    self._draw.choice(workers).kill()
                    self.killed += 1
                    return

    def end(self):
        self._ended.set()
        self.join()
        return self.killed


class Spark:
    """Spark in local-cluster mode; a worker is a process of Java with the Python processes that it has started."""

    seconds = 0.5

    def __init__(self, session):
        import kelvarin.spark
        self.session = session
        kelvarin.spark.register(session)

    def read(self, faults):
        return self.session.read.format("kelvarin").option("rows_in_split", faults.rows_in_split).load(str(faults.path))

    def calculate(self, frame):
        return kelvarin.spark.calculate(frame, OUTPUTS, CONDITION)

    def summary(self, frame, columns):
        return tuple(frame.selectExpr("count(*)", *(f"sum({column})" for column in columns)).first())

    def write(self, frame, out):
        frame.write.format("kelvarin").mode("overwrite").save(str(out))

    def is_at_work(self):
        tracker = self.session.sparkContext.statusTracker()
        stages = [tracker.getStageInfo(stage) for stage in tracker.getActiveStageIds()]
        return any(stage and stage.numTasks > 2 and stage.numCompletedTasks > 0 for stage in stages)

    def workers(self):
        return _processes("CoarseGrainedExecutorBackend")


class Ray:
    """Ray with two nodes; a worker is a process that carries out tasks."""

    seconds = 0.3

    def read(self, faults):
        return kelvarin.ray.read(faults.path, rows_in_split=faults.rows_in_split)

    def calculate(self, dataset):
        return kelvarin.ray.calculate(dataset, OUTPUTS, CONDITION)

    def summary(self, dataset, columns):
        def sums(table):
            found = {column: [pyarrow.compute.sum(table[column]).as_py() or 0] for column in columns}
            return pyarrow.table({"rows": [table.num_rows], **found})
        parts = dataset.map_batches(sums, batch_format="pyarrow", batch_size=None).take_all()
        return tuple(sum(part[name] for part in parts) for name in ("rows", *columns))

    def write(self, dataset, out):
        kelvarin.ray.write(dataset, out, mode="overwrite")

    def is_at_work(self):
        return bool(self.workers())

    def workers(self):
        return _processes("ray::ReadColumnar") + _processes("ray::MapBatches") + _processes("ray::Write")


def _processes(name):
    """Those with the name that were started from here."""
    found = []
    for process in psutil.Process().children(recursive=True):
        try:
            if any(name in word for word in process.cmdline()):
                found.append(process)
        except psutil.Error:
            pass
    return found


def _shifted(table, first):
    ids = pyarrow.compute.add(table["id"].cast(pyarrow.int64()), first).cast(pyarrow.uint32())
    return table.set_column(0, "id", ids)


def _batches(rows):
    return pyarrow.RecordBatchReader.from_stream(rows)


def _summary(scan, columns):
    sums = [0] * len(columns)
    rows = 0
    for batch in _batches(scan):
        rows += batch.num_rows
        sums = [total + (pyarrow.compute.sum(batch[column]).as_py() or 0) for total, column in zip(sums, columns)]
    return rows, *sums


def _compare(parts, expected):
    """The rows of the parts are those of the file, in any order of the parts, which are sorted on their key."""
    parts = sorted((kelvarin.scan(part) for part in parts), key=lambda part: part.blocks[0].statistics["id"].min)
    first = 0
    for part in parts:
        wanted = kelvarin.scan(expected, rows=(first, first + part.rows)).to_arrow()
        found = part.to_arrow()
        assert all(_is_same_column(found[name], wanted[name]) for name in wanted.schema.names), part.path
        first += part.rows
    assert first == kelvarin.scan(expected).rows


def _is_same_column(one, other):
    if pyarrow.types.is_floating(one.type):
        return one.is_null().equals(other.is_null()) and numpy.array_equal(
            one.fill_null(0).to_numpy(), other.fill_null(0).to_numpy(), equal_nan=True)
    return one.combine_chunks().equals(other.combine_chunks())
