"""Comparisons: what this system takes beside what something else takes for the same, measured in the same rounds.

A suite returns a list of Comparison; bench.py prints them as one table.
"""

import dataclasses
import math
import statistics
import time


@dataclasses.dataclass
class Comparison:
    group: str            # the part of the table
    what: str
    against: str
    ours: float
    theirs: float
    unit: str             # of both
    wanted: float | None = None  # the ratio ours / theirs should not exceed this

    @property
    def ratio(self):
        return self.ours / self.theirs

    @property
    def is_met(self):
        return None if self.wanted is None else self.ratio <= self.wanted

    def as_json(self):
        return dataclasses.asdict(self) | {"ratio": self.ratio, "isMet": self.is_met}


def medians_of_rounds(contenders, rounds, clock=time.perf_counter):
    """Times every contender once a round, so that a slow minute of the machine slows all of them.

    `contenders` maps names to functions; one that returns a number has measured itself. Gives seconds by name.
    The clock time.process_time does not count what other programs take, and counts all threads of this one.
    """
    seconds = {name: [] for name in contenders}
    for _ in range(rounds):
        for name, run in contenders.items():
            start = clock()
            own = run()
            seconds[name].append(clock() - start if own is None else own)
    return {name: statistics.median(values) for name, values in seconds.items()}


def geometric_mean(comparisons, wanted=None, what="geometric mean"):
    """The comparisons of one group against one thing as one."""
    first = comparisons[0]
    ours, theirs = (math.exp(statistics.fmean(math.log(value) for value in values))
                    for values in ([c.ours for c in comparisons], [c.theirs for c in comparisons]))
    return Comparison(first.group, what, first.against, ours, theirs, first.unit, wanted)


def largest(comparisons):
    """Of the comparisons of one group against one thing the one that is worst for us."""
    worst = max(comparisons, key=lambda comparison: comparison.ratio)
    return dataclasses.replace(worst, what=f"largest: {worst.what}")


def print_table(comparisons):
    headings = ("what", "against", "ours", "theirs", "ratio", "wanted")
    lines = [(c.what, c.against, f"{c.ours:.4g} {c.unit}", f"{c.theirs:.4g} {c.unit}", f"{c.ratio:.2f}",
              "" if c.wanted is None else f"<= {c.wanted:g}{'' if c.is_met else '  no'}") for c in comparisons]
    widths = [max(len(line[i]) for line in (headings, *lines)) for i in range(len(headings))]
    group = None
    for comparison, line in zip(comparisons, lines):
        if comparison.group != group:
            group = comparison.group
            print(f"\n{group}\n  {shown(headings, widths)}")
        print(f"  {shown(line, widths)}")


def shown(cells, widths):
    is_left = (True, True, False, False, False, True)
    return "  ".join(cell.ljust(width) if left else cell.rjust(width)
                     for cell, width, left in zip(cells, widths, is_left)).rstrip()
