"""Whole graphs, from file to file, as processes that take turns: read, compute, keep some rows, write.

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
from graphs.data import write_graph, write_table
from graphs.work import WORKS, actions_and_chain

ROWS = 5_000_000
PEERS = {"DuckDB": "duckdb", "Polars": "polars"}
SUFFIX_BEFORE = "_before"
OURS, BEFORE, MANY, LIBRARY = "ours", "before", "16 threads", "the library alone"
# More of processor time than the program before takes, on one core and on two.
WANTED_BEFORE = (1.03, 1.05)
WANTED_OF_SECOND_CORE = 0.59  # 1.7 times as fast

# `file` is what peers read. Of times to those of each peer, on one core and on two; of memory the most megabytes.
Form = collections.namedtuple("Form", "name work source sink file wanted megabytes speeds_up")

CSV = ("<ReadCSV name='in' file='{}.csv'/>", "<WriteCSV name='out' file='{}.csv'/>", ".csv")
GEL = ("<ReadColumnarGel name='in' fileName='{}.cgel_kelvarin'/>", "<writeColumnarGel name='out' file='{}.cgel_kelvarin'/>",
       ".parquet")
PARQUET = ("<ReadParquet name='in' file='{}.parquet'/>", "<WriteParquet name='out' file='{}.parquet'/>", ".parquet")

FORMS = (
    Form("CSV to CSV", "orders", *CSV, {"DuckDB": (1, 1), "Polars": (0.45, 0.7)}, 100, True),
    Form("Gel to Gel (peers: Parquet)", "orders", *GEL, {"DuckDB": (0.7, 0.65), "Polars": (0.7, 0.65)}, 100, True),
    Form("Parquet to Parquet", "orders", *PARQUET, {"DuckDB": (1, 1), "Polars": (1.2, 1.2)}, None, False),
    Form("CSV to CSV, ten steps", "ten steps", *CSV, {"DuckDB": (1, 1), "Polars": (0.9, 0.8)}, 100, True),
    Form("CSV to CSV, texts that pass", "texts", *CSV, {"DuckDB": (1, 1), "Polars": (0.9, 0.8)}, 100, True),
)


def run(options):
    rows = 1_000_000 if options.quick else ROWS
    rounds = options.rounds or (3 if options.quick else 5)
    programs = {"": program_of(options.build)}
    if options.base:  # it may not know what the columnar files of today hold
        programs[SUFFIX_BEFORE] = program_of(options.base)
    processors = sorted(os.sched_getaffinity(0))
    found = []
    with tempfile.TemporaryDirectory(dir=options.folder) as folder:
        for table in ("orders", "texts"):
            write_table(folder, table, rows, programs)
        for form in FORMS:
            group = f"Graphs, {rows / 1e6:g} million rows, {form.name}"
            measured = []
            for cores in range(1, min(2, len(processors)) + 1):
                commands = commands_of(form, folder, options, cores)
                measured.append(measure(commands, processors[:cores], rounds))
                found += compare(form, f"{group}, {cores} core(s)", measured[-1], cores)
            if len(measured) == 2:
                found.append(Comparison(group, "time, two cores", "one core", measured[1][OURS][0], measured[0][OURS][0], "s",
                                        WANTED_OF_SECOND_CORE if form.speeds_up else None))
            check_results(form, folder, programs[""], commands)
    return found


def program_of(build):
    return os.path.abspath(os.path.join(build, "bin", "kelvarin"))


def write_form(form, folder, target, suffix=""):
    """The graph of a form that writes the file `target`, without its extension; returns the graph's file."""
    work = WORKS[form.work]
    table = work.table + (suffix if form.sink == GEL[1] else "")
    actions, names = actions_and_chain(work)
    graph = os.path.join(folder, f"{target}.kelvarin")
    write_graph(graph, form.source.format(table) + actions + form.sink.format(target), ("in", *names, "out"))
    return graph


def commands_of(form, folder, options, cores):
    """Ours first, whose result others need."""
    threads = ("--threads", str(options.threads)) if options.threads else ()
    commands = {OURS: ours_of(options.build, write_form(form, folder, "ours"), *threads)}
    if cores > 1:
        commands[MANY] = ours_of(options.build, write_form(form, folder, "many"), "--threads", "16")
    if options.base:
        commands[BEFORE] = ours_of(options.base, write_form(form, folder, "before", SUFFIX_BEFORE))
    table = os.path.join(folder, WORKS[form.work].table + form.file)
    script = os.path.join(os.path.dirname(__file__), "peer_graph.py")

    def peer(name, target):
        return [sys.executable, "-B", script, name, form.work, str(cores), table, os.path.join(folder, target + form.file)]

    for name, argument in PEERS.items():
        commands[name] = peer(argument, argument)
    if form.sink == PARQUET[1]:
        commands[LIBRARY] = peer("arrow", "ours")
    return commands


def ours_of(build, graph, *arguments):
    return [program_of(build), "run", "--quiet", "--json", *arguments, graph]


def measure(commands, processors, rounds):
    """(seconds, seconds of the processors, megabytes) by name, medians of the rounds."""
    runs = {name: [] for name in commands}
    for _ in range(rounds):
        for name, command in commands.items():
            result = measured_process.run(processors, command)
            if name in (OURS, BEFORE, MANY):
                seconds = (json.loads(result["output"])["seconds"], result["processorSeconds"])
            else:
                seconds = tuple(float(word) for word in result["output"].split())
            runs[name].append((*seconds, result["megabytes"]))
    return {name: tuple(statistics.median(values) for values in zip(*measured)) for name, measured in runs.items()}


def compare(form, group, measured, cores):
    """Peers by their wishes; a Parquet form may take as much memory on two cores as DuckDB does."""
    ours = measured[OURS]
    wanted = {("time", peer): ratios[cores - 1] for peer, ratios in form.wanted.items()}
    wanted["processor time", BEFORE] = WANTED_BEFORE[cores - 1]
    if form.megabytes is None and cores == 2:
        wanted["peak memory", "DuckDB"] = 1.0
    found = [Comparison(group, what, other, ours[index], theirs[index], unit, wanted.get((what, other)))
             for index, (what, unit) in enumerate((("time", "s"), ("processor time", "s"), ("peak memory", "MB")))
             for other, theirs in measured.items() if other not in (OURS, MANY)]
    if form.megabytes is not None:
        found.append(Comparison(group, "peak memory", f"{form.megabytes} MB", ours[2], form.megabytes, "MB", 1.0))
    if MANY in measured:
        found += [Comparison(group, f"time, {MANY}", "one for each core", measured[MANY][0], ours[0], "s", 1.1),
                  Comparison(group, f"peak memory, {MANY}", "250 MB", measured[MANY][2], 250, "MB", 1.0)]
    return found


def check_results(form, folder, program, commands):
    """Stops when the files that were written do not hold the same rows."""
    files = {name: os.path.join(folder, argument + form.file) for name, argument in PEERS.items()}
    for name, target in {OURS: "ours", MANY: "many", BEFORE: "before"}.items():
        if name in commands:
            files[name] = as_peers_read_it(folder, target, form.file, program)
    expected = None
    for name, file in files.items():
        numbers = sums_of(file)
        expected = expected or numbers
        if len(numbers) != len(expected) or any(abs(a - b) > 1e-9 * abs(b) for a, b in zip(numbers, expected)):
            raise RuntimeError(f"{form.name}: {name} wrote other rows: {numbers} instead of {expected}")
        os.remove(file)


def as_peers_read_it(folder, target, extension, program):
    file = os.path.join(folder, target + extension)
    if not os.path.exists(file):
        table = os.path.join(folder, target + ".cgel_kelvarin")
        measured_process.run(os.sched_getaffinity(0), [program, "gel", "export", "--quiet", table, file])
    return file


def sums_of(file):
    """The number of rows, and of each column the sum of the numbers, or of the bytes of the texts."""
    table = (polars.scan_csv if file.endswith(".csv") else polars.scan_parquet)(file)
    sums = [polars.col(name).str.len_bytes().cast(polars.Float64).sum() if kind == polars.String
            else polars.col(name).cast(polars.Float64).sum() for name, kind in table.collect_schema().items()]
    return table.select(polars.len().alias("row count").cast(polars.Float64), *sums).collect().row(0)
