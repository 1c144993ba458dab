"""The Python package: reading into Polars and pandas against their Parquet readers, expressions on an Arrow table against
Polars, DuckDB and numexpr, and what a call costs. Each number of cores is a process of its own, measured_process.py.
"""

import json
import os
import pathlib
import subprocess
import sys
import tempfile

from comparison import Comparison, geometric_mean

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
TABLES = ("texts_by_id", "sales", "wide")
CORES = (1, 2)
# With the package installed, and the libraries that its tests use.
PACKAGES = (ROOT / "build/python/site", ROOT / ".deps/python", ROOT / "benchmarks")

WANTED_READING = 0.7
WANTED_MEAN = 1.0
WANTED_CALL_MICROSECONDS = 50


def run(options):
    rounds = options.rounds or (3 if options.quick else 7)
    with tempfile.TemporaryDirectory(dir=options.folder) as folder:
        tasks = [{"table": name, "folder": folder} for name in TABLES]
        with made_tables(options, folder):
            for task in tasks:
                measured("make", task, os.cpu_count())
        found = []
        for cores in CORES:
            for task in tasks:
                found += reading(measured("read", task | {"rounds": rounds}, cores), task["table"], cores)
        for cores in CORES:
            rows = 500_000 if options.quick else 5_000_000
            found += expressions(measured("calculate", {"rows": rows, "rounds": rounds}, cores), rows, cores)
        return found + calls(measured("calls", {"folder": folder}, 1))


class made_tables:  # pylint: disable=invalid-name
    """gel_benchmark makes the tables and stops before it measures; their Parquet files are in the folder meanwhile."""

    def __init__(self, options, folder):
        program = os.path.join(options.build, "bin", "gel_benchmark")
        scale = ("--rows", "0.1") if options.quick else ()
        self._commands = [[program, "--json", "--turns", "--folder", folder, "--tables", name, "--rounds", "1", *scale]
                          for name in TABLES]
        self._folder = folder

    def __enter__(self):
        for name, command in zip(TABLES, self._commands):
            with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as program:
                made = json.loads(program.stdout.readline())["parquet"]
                os.link(made, os.path.join(self._folder, f"{name}.made"))
                program.kill()
        return self

    def __exit__(self, *_):
        for name in TABLES:
            os.remove(os.path.join(self._folder, f"{name}.made"))


def measured(what, task, cores):
    script = pathlib.Path(__file__).with_name("measured_process.py")
    environment = {**os.environ, "PYTHONPATH": os.pathsep.join(map(str, PACKAGES)), "POLARS_MAX_THREADS": str(cores)}
    chosen = sorted(os.sched_getaffinity(0))[:cores]
    result = subprocess.run([sys.executable, "-B", script, what, json.dumps(task | {"cores": cores})], check=True,
                            stdout=subprocess.PIPE, text=True, env=environment,
                            preexec_fn=lambda: os.sched_setaffinity(0, chosen))
    return json.loads(result.stdout)


def reading(seconds, table, cores):
    group = f"Python: reading {table}, {cores} core{'s' if cores > 1 else ''}, against Parquet with Snappy"
    return [Comparison(group, f"into {library}", f"its Parquet reader{what}", ours * 1e3, theirs * 1e3, "ms",
                       WANTED_READING if not what else None)
            for library, (ours, theirs, arrow) in seconds.items()
            for what, theirs in (("", theirs), (" (pyarrow's)", arrow)) if theirs is not None]


def expressions(seconds, rows, cores):
    group = f"Python: calculate on an Arrow table of {rows} rows, {cores} core{'s' if cores > 1 else ''}"
    found = []
    for peer in ("Polars", "DuckDB", "numexpr"):
        each = [Comparison(group, case, peer, times["ours"] * 1e3, times[peer] * 1e3, "ms")
                for case, times in seconds.items()]
        found += [*each, geometric_mean(each, WANTED_MEAN)]
    return found


def calls(microseconds):
    group = "Python: what a call costs, without the work (wanted: 50 us)"
    return [Comparison(group, name, "50 us", value, WANTED_CALL_MICROSECONDS, "us", 1.0)
            for name, value in microseconds.items()]
