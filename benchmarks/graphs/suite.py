"""Whole graphs, from file to file, as processes that take turns: read, compute three columns, keep some rows, write.

All are timed by the clock without the start of the program, or of Python, and the loading of libraries and plug-ins. The
processor time of ours is that of the whole process.
"""

import collections
import json
import os
import statistics
import sys
import tempfile

import polars

from comparison import Comparison
from graphs import measured_process
from graphs.data import computing, write_graph, write_orders
from graphs.peer_graph import CONDITION

ROWS = 5_000_000
MOST_MEGABYTES = 100
EXPRESSIONS = {"total": "price*quantity", "disc": "price*quantity*(quantity>10 ? 0.9 : 1)",
               "score": "ln(price+1)*sqrt(quantity)"}
PEERS = {"DuckDB": "duckdb", "Polars": "polars"}
OURS = "ours"

Form = collections.namedtuple("Form", "name source sink file peer_file")
FORMS = (
    Form("CSV to CSV", "<ReadCSV name='in' file='orders.csv'/>", "<WriteCSV name='out' file='ours.csv'/>",
         "orders.csv", "{}.csv"),
    Form("Gel to Gel (peers: Parquet)", "<ReadColumnarGel name='in' fileName='orders.cgel_kelvarin'/>",
         "<writeColumnarGel name='out' file='ours.cgel_kelvarin'/>", "orders.parquet", "{}.parquet"),
    Form("Parquet to Parquet", "<ReadParquet name='in' file='orders.parquet'/>",
         "<WriteParquet name='out' file='ours.parquet'/>", "orders.parquet", "{}.parquet"),
)


def run(options):
    rows = 1_000_000 if options.quick else ROWS
    rounds = options.rounds or (3 if options.quick else 5)
    program = os.path.abspath(os.path.join(options.build, "bin", "kelvarin"))
    processors = sorted(os.sched_getaffinity(0))
    found = []
    with tempfile.TemporaryDirectory(dir=options.folder) as folder:
        write_orders(folder, rows, program)
        for form in FORMS:
            graph = os.path.join(folder, "graph.kelvarin")
            actions = form.source + computing(EXPRESSIONS, f"total >= {CONDITION}") + form.sink
            write_graph(graph, actions, ("in", "compute", "keep", "out"))
            for threads in range(1, min(2, len(processors)) + 1):
                commands = commands_of(form, folder, [program, "run", "--quiet", "--json", graph], threads)
                found += compare(f"Graphs, {rows / 1e6:g} million rows, {form.name}, {threads} thread(s)",
                                 measure(commands, processors[:threads], rounds))
            check_results(form, folder, program)
    return found


def commands_of(form, folder, ours, threads):
    commands = {OURS: ours}
    for name, argument in PEERS.items():
        script = os.path.join(os.path.dirname(__file__), "peer_graph.py")
        commands[name] = [sys.executable, "-B", script, argument, str(threads), os.path.join(folder, form.file),
                          os.path.join(folder, form.peer_file.format(argument))]
    return commands


def measure(commands, processors, rounds):
    """(seconds, seconds of the processors, megabytes) by name, medians of the rounds."""
    runs = {name: [] for name in commands}
    for _ in range(rounds):
        for name, command in commands.items():
            result = measured_process.run(processors, command)
            if name == OURS:
                seconds = (json.loads(result["output"])["seconds"], result["processorSeconds"])
            else:
                seconds = tuple(float(word) for word in result["output"].split())
            runs[name].append((*seconds, result["megabytes"]))
    return {name: tuple(statistics.median(values) for values in zip(*measured)) for name, measured in runs.items()}


def compare(group, measured):
    ours = measured.pop(OURS)
    measures = (("time", "s", 1.0), ("processor time", "s", None), ("peak memory", "MB", None))
    found = [Comparison(group, what, peer, ours[index], theirs[index], unit, wanted)
             for index, (what, unit, wanted) in enumerate(measures) for peer, theirs in measured.items()]
    found.append(Comparison(group, "peak memory", f"{MOST_MEGABYTES} MB", ours[-1], MOST_MEGABYTES, "MB", 1.0))
    return found


def check_results(form, folder, program):
    """Stops when the files that were written do not hold the same rows."""
    ours = os.path.join(folder, "ours" + os.path.splitext(form.peer_file)[1])
    if not os.path.exists(ours):
        measured_process.run(os.sched_getaffinity(0), [program, "gel", "export", os.path.join(
            folder, "ours.cgel_kelvarin"), ours])
    files = {OURS: ours} | {name: os.path.join(folder, form.peer_file.format(file)) for name, file in PEERS.items()}
    expected = None
    for name, file in files.items():
        table = (polars.scan_csv if file.endswith(".csv") else polars.scan_parquet)(file)
        numbers = table.select(polars.len().cast(polars.Float64), polars.col("id").sum().cast(polars.Float64),
                               polars.col("city").str.len_bytes().sum().cast(polars.Float64).alias("bytes"),
                               *(polars.col(column).sum() for column in EXPRESSIONS)).collect().row(0)
        expected = expected or numbers
        if any(abs(a - b) > 1e-9 * abs(b) for a, b in zip(numbers, expected)):
            raise RuntimeError(f"{form.name}: {name} wrote other rows: {numbers} instead of {expected}")
        os.remove(file)
