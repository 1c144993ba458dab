"""Expressions over a million rows of texts and dates in memory, one thread."""

import os
import time

import polars

from comparison import Comparison, geometric_mean, largest, medians_of_rounds
from texts.cases import CASES
from texts.contenders import Table, contenders_of, library_of

GROUP = "Texts and dates, {:g} million rows in memory"
PEERS = ("DuckDB", "Polars")
WANTED_OF_PEERS = (1.1, 0.8)  # of each expression, and of the mean
WANTED_OF_PARSER = (0.25, 0.25)


def run(options):
    rounds = options.rounds or (3 if options.quick else 9)
    library = library_of(os.path.join(options.build, "lib", "libtext_contenders.so"))
    table = Table(library, 200_000 if options.quick else 1_000_000)
    found = []
    for case in CASES:
        found += compare(library, case, table, rounds)
    return with_means(found)


def compare(library, case, table, rounds):
    contenders = contenders_of(library, case, table)
    seconds = medians_of_rounds({name: contender.run for name, contender in contenders.items()}, rounds, time.process_time)
    expected = contenders["ours"].values()
    for name, contender in contenders.items():
        require_same(case, name, expected, contender.values())
        contender.close()
    return [Comparison(GROUP.format(table.count / 1e6), case.name, other, seconds["ours"] / table.count * 1e9,
                       seconds[other] / table.count * 1e9, "ns", wanted_of(other)[0])
            for other in seconds if other != "ours"]


def require_same(case, name, expected, values):
    values = values if case.yields_text else values.cast(polars.Float64)
    if not values.equals(expected):
        row = (values != expected).arg_true()[0]
        raise RuntimeError(f"{case.name}: {name} has {values[row]!r} in row {row} instead of {expected[row]!r}")


def wanted_of(other):
    return WANTED_OF_PEERS if other in PEERS else WANTED_OF_PARSER if other == "String Parser" else (None, None)


def with_means(found):
    """The comparisons, each opponent's ended by its mean and its largest ratio."""
    ordered = []
    for other in dict.fromkeys(line.against for line in found):
        lines = [line for line in found if line.against == other]
        ordered += [*lines, geometric_mean(lines, wanted_of(other)[1]), largest(lines)]
    return ordered

