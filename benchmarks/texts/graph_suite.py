"""The twelve expressions from CSV to CSV, each as a graph of its own and all in one, as processes that take turns.

Timed as the other graphs are. The files that are written must have the same values in the same rows.
"""

import os
import sys
import tempfile
import xml.sax.saxutils

import polars

from comparison import Comparison, geometric_mean, largest
from graphs.data import write_graph
from graphs.suite import OURS, PEERS, measure, ours_of
from texts.cases import CASES, DATE_OPTIONS, SQL_TYPES, TEXTS, rows_of

SOURCE = "rows.csv"
WANTED, WANTED_OF_MEAN = 1.15, 1.0


def run(options):
    rows = 200_000 if options.quick else 2_000_000
    rounds = options.rounds or (1 if options.quick else 3)
    processors = sorted(os.sched_getaffinity(0))
    counts = range(1, min(2, len(processors)) + 1)
    found = {(cores, peer): [] for cores in counts for peer in PEERS}
    memory = []
    with tempfile.TemporaryDirectory(dir=options.folder) as folder:
        rows_of(rows).write_csv(os.path.join(folder, SOURCE))
        for name, cases in [(case.name, [case]) for case in CASES] + [("all twelve", CASES)]:
            for cores in counts:
                group = f"Texts and dates, {rows / 1e6:g} million rows, CSV to CSV, {cores} core(s)"
                measured = measure(commands_of(cases, folder, options, cores), processors[:cores], rounds)
                for peer in PEERS:
                    ours, theirs = measured[OURS], measured[peer]
                    found[cores, peer].append(Comparison(group, name, peer, ours[0], theirs[0], "s", WANTED))
                    if cases is CASES:
                        memory.append(Comparison(group, f"{name}, peak memory", peer, ours[2], theirs[2], "MB"))
            check_results(folder, name)
    return [line for cores in counts for line in with_means(found, memory, cores)]


def with_means(found, memory, cores):
    lists = [lines for (count, _), lines in found.items() if count == cores]
    lines = [line for each in lists for line in (*each, geometric_mean(each[:len(CASES)], WANTED_OF_MEAN), largest(each))]
    return lines + [line for line in memory if line.group == lines[0].group]


def commands_of(cases, folder, options, cores):
    source, duckdb, polars_file = (os.path.join(folder, name) for name in (SOURCE, result_of("DuckDB"), result_of("Polars")))
    script = [sys.executable, "-B", os.path.join(os.path.dirname(__file__), "peer_graph.py")]
    threads = ("--threads", str(options.threads)) if options.threads else ()
    return {OURS: ours_of(options.build, write_ours(cases, folder), *threads),
            "DuckDB": [*script, "duckdb", str(cores), query_of(cases, source, duckdb)],
            "Polars": [*script, "polars", str(cores), source, polars_file, *(case.name for case in cases)]}


def result_of(name):
    return f"{name}.csv"


def write_ours(cases, folder):
    options = "".join(f" {name}='{value}'" for name, value in DATE_OPTIONS.items())
    inputs = "".join(f"<InputVar column='{name}' isNumber='{int(name not in TEXTS)}'/>" for name in SQL_TYPES)
    outputs = "".join(f"<OutputVar name='{case.name}' meta='{'U' if case.yields_text else 'F'}'>"
                      f"{xml.sax.saxutils.escape(case.text)}</OutputVar>" for case in cases)
    graph = os.path.join(folder, "graph.kelvarin")
    write_graph(graph, f"<ReadCSV name='in' file='{SOURCE}'/><Calculator name='compute'{options}>"
                       f"<InputVars>{inputs}</InputVars><OutputVars>{outputs}</OutputVars></Calculator>"
                       f"<WriteCSV name='out' file='{result_of(OURS)}'/>", ("in", "compute", "out"))
    return graph


def query_of(cases, source, target):
    columns = ", ".join(f'{case.sql} AS "{case.name}"' for case in cases)
    return (f"COPY (SELECT *, {columns} FROM read_csv('{source}', header=true, columns={SQL_TYPES})) "
            f"TO '{target}' (FORMAT csv, HEADER)")


def check_results(folder, name):
    """Stops when the files that were written do not hold the same values."""
    expected = None
    for who in (OURS, *PEERS):
        file = os.path.join(folder, result_of(who))
        table = polars.read_csv(file).with_columns(polars.exclude(polars.String).cast(polars.Float64))
        expected = table if expected is None else expected
        if not table.equals(expected):
            raise RuntimeError(f"{name}: {who} wrote other rows")
        os.remove(file)
