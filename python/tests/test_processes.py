"""Interrupts, threads, forks and the end of the interpreter, each in a process of its own."""

import os
import signal
import subprocess
import sys
import threading
import time

import pyarrow
import pytest

import kelvarin

SLOW = {  # work of many seconds, which a line announces
    "write": "kelvarin.write(endless(), path)",
    "calculate": "kelvarin.calculate(endless(), {'y': 'x + 1'}).to_arrow()",
    "a filter": "kelvarin.calculate(endless(), where='x < 0').to_arrow()",
    "a reader of another library": "pyarrow.table(kelvarin.calculate(endless(), {'y': 'x + 1'}, where='x < 0'))",
    "run": "kelvarin.run(graph, {'in': endless()}, ['out'])",
    "run of a slow graph": "kelvarin.run(slow_graph)",
}
PRELUDE = """
import sys, threading
import pyarrow, kelvarin
path, graph, slow_graph = sys.argv[1:]

def endless():
    batch = pyarrow.record_batch({"x": pyarrow.array(range(10_000)).cast("float64")})
    def batches():
        while True:
            yield batch
    return pyarrow.RecordBatchReader.from_batches(batch.schema, batches())

print("begins", flush=True)
"""


@pytest.fixture
def graphs(folder, write_graph):
    slow = folder / "slow.kelvarin"
    (folder / "in.csv").write_text("x\n" + "1\n" * 3_000_000, encoding="utf-8")
    slow.write_bytes(write_graph(
        "<ReadCSV name='in' file='in.csv'/>",
        "<Calculator name='c'><InputVars><InputVar column='x'/></InputVars><OutputVars>"
        "<OutputVar name='y' meta='U'>regexReplace(padLeft(itoa(x), 500, \"a\"), \"(a|1)+\", \"z\")</OutputVar></OutputVars></Calculator>",
        "<Discard name='out'/>").read_bytes())
    return write_graph("<ReadCSV name='in' file='absent.csv'/>", "<Discard name='out'/>"), slow


@pytest.mark.parametrize("work", SLOW)
def test_ctrl_c_ends_work_within_a_second(folder, graphs, work):
    script = PRELUDE + f"try:\n    {SLOW[work]}\nexcept KeyboardInterrupt:\n    print('interrupted', flush=True)\n"
    process = subprocess.Popen([sys.executable, "-c", script, str(folder / "t.cgel_kelvarin"), *map(str, graphs)],
                               stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    assert process.stdout.readline() == "begins\n"
    time.sleep(0.5)
    start = time.monotonic()
    process.send_signal(signal.SIGINT)
    out, errors = process.communicate(timeout=30)
    seconds = time.monotonic() - start
    assert "interrupted" in out or "KeyboardInterrupt" in errors, errors
    assert process.returncode == 0 or "KeyboardInterrupt" in errors, errors
    assert seconds < 1.5, work  # with the end of the interpreter
    assert not [file for file in folder.iterdir() if file.name.startswith("t.")]


@pytest.fixture
def table_file(folder):
    path = folder / "t.cgel_kelvarin"
    kelvarin.write(pyarrow.table({"a": pyarrow.array(range(300_000)).cast("float64")}), path, block_rows=1000)
    return path


def script_of(text, *arguments):
    result = subprocess.run([sys.executable, "-c", text, *map(str, arguments)], capture_output=True, text=True, timeout=60,
                            check=False)
    assert result.returncode == 0, result.stderr
    return result.stdout


def test_the_interpreter_ends_with_open_streams(table_file):
    assert script_of("""
import sys, pyarrow, kelvarin
scan = kelvarin.scan(sys.argv[1], batch_rows=100)
readers = [pyarrow.RecordBatchReader.from_stream(scan) for _ in range(3)]
readers.append(pyarrow.RecordBatchReader.from_stream(kelvarin.calculate(scan, {"y": "a + 1"})))
print(*[next(reader).num_rows for reader in readers[:3]])
next(readers[3])
unread = kelvarin.scan(sys.argv[1]).__arrow_c_stream__()
""", table_file) == "100 100 100\n"


def test_a_child_of_a_fork_reads_on_its_own(table_file):
    assert script_of("""
import os, sys, kelvarin
scan = kelvarin.scan(sys.argv[1])
assert scan.to_arrow().num_rows == 300_000
child = os.fork()
if child == 0:
    again = kelvarin.scan(sys.argv[1])
    found = kelvarin.calculate(again, {"y": "a * 2"}, where="a < 10").to_arrow()["y"].to_pylist()
    os._exit(0 if found == [2.0 * a for a in range(10)] else 1)
print(os.waitstatus_to_exitcode(os.waitpid(child, 0)[1]))
""", table_file) == "0\n"


def test_threads_read_one_scan(table_file):
    scan = kelvarin.scan(table_file)
    sums = []

    def add():
        for _ in range(5):
            sums.append(pyarrow.compute.sum(scan.to_arrow()["a"]).as_py())
    threads = [threading.Thread(target=add) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert sums == [sum(range(300_000))] * 20


def test_the_lock_is_free_while_the_library_works(table_file):
    turns = 0

    def count():
        nonlocal turns
        while is_reading:
            turns += 1
            time.sleep(0.001)
    is_reading = True
    counter = threading.Thread(target=count)
    counter.start()
    longest = kelvarin.Program({f"y{index}": f"sin(a) + cos(a * {index})" for index in range(30)})
    longest.apply(kelvarin.scan(table_file)).read()
    is_reading = False
    counter.join()
    assert turns > 20


def test_streams_that_are_dropped_leave_no_threads(table_file):
    before = len(os.listdir("/proc/self/task"))
    for _ in range(300):
        reader = pyarrow.RecordBatchReader.from_stream(kelvarin.scan(table_file, batch_rows=100, threads=2))
        next(reader)
        del reader
    time.sleep(0.2)
    assert len(os.listdir("/proc/self/task")) <= before + 4
