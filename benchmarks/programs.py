"""The benchmark programs of this system itself, joined to the table. Each prints JSON."""

import json
import os
import subprocess

from comparison import Comparison, geometric_mean


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
