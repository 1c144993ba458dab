#!/usr/bin/env python3
"""Runs the benchmarks and prints one table. Started by scripts/bench, which builds and fetches what it needs."""

import argparse
import importlib
import json
import os
import platform
import sys

from comparison import print_table

# Read once by the library when it is loaded.
os.environ.setdefault("POLARS_MAX_THREADS", "1")

SUITES = {
    "expressions": ("expressions.suite", "run"),
    "engines": ("programs", "engines"),
    "rows": ("programs", "rows"),
    "texts": ("texts.suite", "run"),
    "text-graphs": ("texts.graph_suite", "run"),
    "vectors": ("vectors", "run"),
    "graphs": ("graphs.suite", "run"),
    "spread": ("graphs.spread", "run"),
    "memory": ("memory", "run"),
    "looking": ("looking", "run"),
    "gel": ("gel.suite", "run"),
    "python": ("package.suite", "run"),
}


def parsed_arguments():
    parser = argparse.ArgumentParser(
        prog="scripts/bench", description="Measures this system against others and prints one table. A ratio is the "
        "median of ours by the median of theirs, in rounds that take turns; below 1 ours is better.")
    parser.add_argument("--quick", action="store_true", help="fewer rounds and rows")
    parser.add_argument("--only", action="append", choices=SUITES, metavar="NAME", help=", ".join(SUITES))
    parser.add_argument("--json", metavar="FILE", help="write the table as JSON too")
    parser.add_argument("--rounds", type=int, metavar="N", help="of every measurement")
    parser.add_argument("--build", default="build/release", metavar="FOLDER", help="with the programs; default: %(default)s")
    parser.add_argument("--base", metavar="FOLDER", help="with the programs of an earlier build, to compare graphs with")
    parser.add_argument("--threads", type=int, metavar="N", help="of our graphs; default: one for each core")
    parser.add_argument("--folder", metavar="FOLDER", help="for the files of the graphs, up to 4 GB")
    return parser.parse_args()


def main():
    options = parsed_arguments()
    found = []
    for name in options.only or SUITES:
        print(f"bench: {name}", file=sys.stderr)
        module, function = SUITES[name]
        found += getattr(importlib.import_module(module), function)(options)
    print_table(found)
    if options.json:
        write_json(options, found)


def write_json(options, found):
    content = {"processor": processor(), "quick": options.quick, "comparisons": [c.as_json() for c in found]}
    with open(options.json, "w", encoding="utf-8") as out:
        json.dump(content, out, indent=1)
        out.write("\n")


def processor():
    try:
        with open("/proc/cpuinfo", encoding="utf-8") as file:
            return next(line.split(":", 1)[1].strip() for line in file if line.startswith("model name"))
    except (OSError, StopIteration):
        return platform.processor()


if __name__ == "__main__":
    main()
