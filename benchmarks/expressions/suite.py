"""Expressions over three columns of doubles in memory, 2 million rows, one thread."""

import functools
import os
import time

import numexpr
import numpy

import comparison
from comparison import Comparison, geometric_mean
from expressions.cases import CASES
from expressions.contenders import Library, Table, by_columns, by_peers, by_rows

ROWS = 2_000_000
ROWS_IN_CACHE = 1024
TIMES_IN_CACHE = 200
MOST_SECONDS_TO_COMPILE = 100e-6

BY_ROWS = "Expressions, a row a call"
BY_COLUMNS = "Expressions, 2 million rows a call"
IN_CACHE = f"Expressions, {ROWS_IN_CACHE} rows a call"
COMPILING = "Compiling an expression"


# One thread computes at any time.
medians_of_rounds = functools.partial(comparison.medians_of_rounds, clock=time.process_time)


def run(options):
    rounds = options.rounds or (3 if options.quick else 9)
    numexpr.set_num_threads(1)
    library = Library(os.path.join(options.build, "lib", "libexpression_contenders.so"))
    table = Table(ROWS)
    small = Table(ROWS_IN_CACHE)
    found = []
    for case in CASES:
        found += compare_rows(library, case, table, rounds)
        found += compare_columns(library, case, table, rounds)
        found += compare_in_cache(library, case, small, 3 * rounds)
        found.append(compiling(library, case, rounds))
    return with_means(found)


def compare_rows(library, case, table, rounds):
    contenders, results = by_rows(library, case, table)
    seconds = medians_of_rounds(contenders, rounds)
    require_same_bits(case, results["ours"], results["C function"])
    require_near(case, results["ours"], results["muParser"])
    wanted = {"C function": 1.0 if case.branches else None}
    return [nanoseconds(BY_ROWS, case, seconds, other, table.count, wanted.get(other))
            for other in seconds if other != "ours"]


def compare_columns(library, case, table, rounds):
    contenders, results = by_columns(library, case, table)
    peers, peer_results = by_peers(case, table)
    seconds = medians_of_rounds(contenders | peers, rounds)
    require_same_bits(case, results["ours"], results["C loop -O2"])
    for other in (results["C loop -O3 v3"], *peer_results.values()):
        require_near(case, results["ours"], numpy.asarray(other))
    wanted = {name: 1.0 for name in peers}
    if not case.calls_library:
        wanted["C loop -O3 v3"] = 1.2
    return [nanoseconds(BY_COLUMNS, case, seconds, other, table.count, wanted.get(other))
            for other in seconds if other != "ours"]


def compare_in_cache(library, case, table, rounds):
    contenders, _ = by_columns(library, case, table, TIMES_IN_CACHE)
    seconds = medians_of_rounds(contenders, rounds)
    wanted = {} if case.calls_library else {"C loop -O3 v3": 1.2}
    return [nanoseconds(IN_CACHE, case, seconds, other, table.count * TIMES_IN_CACHE, wanted.get(other))
            for other in seconds if other != "ours"]


def compiling(library, case, rounds):
    text = case.text.encode()
    seconds = medians_of_rounds({"ours": lambda: library.calls.secondsToCompile(text, 50)}, rounds)["ours"]
    return Comparison(COMPILING, case.name, "100 us", seconds * 1e6, MOST_SECONDS_TO_COMPILE * 1e6, "us", 1.0)


def nanoseconds(group, case, seconds, other, rows, wanted):
    return Comparison(group, case.name, other, seconds["ours"] / rows * 1e9, seconds[other] / rows * 1e9, "ns", wanted)


def with_means(found):
    """The comparisons by group and opponent, each list ended by its mean."""
    wanted = {(BY_ROWS, "C function"): 1.1, (BY_ROWS, "muParser"): 0.25}
    lists = {}
    for line in found:
        lists.setdefault((line.group, line.against), []).append(line)
    ordered = []
    for group in (BY_ROWS, BY_COLUMNS, IN_CACHE, COMPILING):
        for key, lines in lists.items():
            if key[0] == group:
                ordered += [*lines, geometric_mean(lines, wanted.get(key))]
    return ordered


def require_same_bits(case, ours, theirs):
    if not numpy.array_equal(ours.view(numpy.uint64), theirs.view(numpy.uint64)):
        raise RuntimeError(f"{case.name}: not the bits of the C function")


def require_near(case, ours, theirs):
    if not numpy.allclose(ours, theirs, rtol=1e-9, atol=1e-12):
        raise RuntimeError(f"{case.name}: another result")
