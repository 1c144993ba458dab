"""How much of a graph's work can be spread over many processors, and how fast it would be on them.

Samples of a run with two threads say where its processor time goes, but for the start of the program. Serial is what the
engine's thread does outside of tasks: it counts, judges what was read, and completes files. What else one thread at a time
does (reading, writing CSV, and each thread of the columnar writer) goes beside it, but no run is faster than the longest of them. On P
processors a run takes the serial share and the P-th part of the rest (Amdahl), or that longest share.
"""

import collections
import os
import shutil
import subprocess
import sys
import tempfile

from comparison import Comparison
from graphs.data import write_table
from graphs.suite import FORMS, ROWS, ours_of, write_form

SAMPLES_A_SECOND = 1999
STACK_BYTES = 16384
PROCESSORS = (4, 8, 16, 64)
MOST_SERIAL = 8  # per cent; of columnar files it is stated only
# The function that says what a thread was at; the first one that is found in its stack counts.
STAGES = (("reading", "::readUnit"), ("writing", "OutputQueue::Task::"), ("tasks", "BatchPipeline::Task::"), ("tasks", "TaskPool::"),
          ("columns of the writer", "ColumnSetWorker::"), ("descriptors of the writer", "::writeMeta"),
          ("tasks", "GroupEncoding::"), ("serial: writing", "OutputFile::"), ("serial: judging", "::accept"),
          ("serial: all else", "runOnThisStack"))
START = "start"


def run(options):
    if shutil.which("perf") is None:
        print("bench: spread: perf is missing, which takes the samples; on Debian it is in linux-perf", file=sys.stderr)
        return []
    rows = 1_000_000 if options.quick else ROWS
    found = []
    with tempfile.TemporaryDirectory(dir=options.folder) as folder:
        for table in ("orders", "texts"):
            write_table(folder, table, rows, {"": os.path.join(options.build, "bin", "kelvarin")})
        for number, form in enumerate(FORMS):  # each makes a new file: to replace one costs more
            graph = write_form(form, folder, f"result{number}")
            shares = shares_of(folder, ours_of(options.build, graph, "--threads", "2"))
            found += compare(f"Spread over processors, {rows / 1e6:g} million rows, {form.name}", shares,
                             MOST_SERIAL if "Gel" not in form.name else None)
    return found


def shares_of(folder, command):
    """Of the processor time of a run, the share of each stage."""
    data = os.path.join(folder, "samples")
    subprocess.run(["perf", "record", "--quiet", "--output", data, "--freq", str(SAMPLES_A_SECOND), "--event", "cpu-clock",
                    "--call-graph", f"dwarf,{STACK_BYTES}", "--", *command], check=True, stdout=subprocess.DEVNULL)
    samples = subprocess.run(["perf", "script", "--input", data, "--no-inline", "--fields", "tid,ip,sym"], check=True,
                             stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
    counts = collections.Counter(stage_of(stack) for stack in samples.split("\n\n") if stack.strip())
    del counts[START]
    return {stage: count / counts.total() for stage, count in counts.items()}


def stage_of(stack):
    return next((stage for stage, function in STAGES if function in stack), START)


def compare(group, shares, most_serial):
    found = [Comparison(group, "serial", f"{MOST_SERIAL} %", 100 * serial_share(shares), MOST_SERIAL, "%",
                        most_serial and 1.0)]
    found += [Comparison(group, stage, "all", 100 * share, 100, "%") for stage, share in sorted(shares.items())]
    return found + [Comparison(group, "speed-up", f"{count} processors", speed_up(shares, count), count, "times")
                    for count in PROCESSORS]


def serial_share(shares):
    return sum(share for stage, share in shares.items() if stage.startswith("serial"))


def speed_up(shares, processors):
    serial = serial_share(shares)
    longest = max([share for stage, share in shares.items() if not stage.startswith(("serial", "tasks"))], default=0)
    return 1 / max(serial + (1 - serial) / processors, longest)
