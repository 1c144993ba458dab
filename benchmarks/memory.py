"""Memory over 100 million rows, which go through a pipe into a graph: as much at the end as after the first million.

The rows are the same million again and again, so that making them costs nothing.
"""

import os
import subprocess
import tempfile

from comparison import Comparison
from graphs.data import orders, write_graph
from graphs.work import Work, actions_and_chain

MILLION = 1_000_000
WORK = Work("orders", (("total", "price*quantity"), ("score", "ln(price+1)*sqrt(quantity)"), (None, "total >= 1000")), None)


def run(options):
    millions = 10 if options.quick else 100
    program = os.path.abspath(os.path.join(options.build, "bin", "kelvarin"))
    table = orders(MILLION)
    block = table.write_csv(float_precision=2, include_header=False).encode()
    with tempfile.TemporaryDirectory(dir=options.folder) as folder:
        pipe, graph = (os.path.join(folder, name) for name in ("orders.csv", "graph.kelvarin"))
        os.mkfifo(pipe)
        actions, names = actions_and_chain(WORK)
        write_graph(graph, f"<ReadCSV name='in' file='{pipe}'/>{actions}<Discard name='out'/>", ("in", *names, "out"))
        with subprocess.Popen([program, "run", "--quiet", graph]) as process:
            early, late = fed(process, pipe, ",".join(table.columns).encode() + b"\n", block, millions)
        if process.returncode != 0:
            raise RuntimeError("the graph failed")
    return [Comparison(f"Memory of CSV to Discard over {millions} million rows", "peak at the end",
                       "peak after 1 million", late, early, "MB", 1.1)]


def fed(process, pipe, header, block, millions):
    """Megabytes at most, after the first million rows and at the end."""
    with open(pipe, "wb", buffering=0) as out:
        write_all(out, header + block)
        early = peak_megabytes(process)
        for _ in range(millions - 1):
            write_all(out, block)
        late = peak_megabytes(process)
    return early, late


def write_all(out, content):
    rest = memoryview(content)
    while rest:
        rest = rest[out.write(rest):]


def peak_megabytes(process):
    with open(f"/proc/{process.pid}/status", encoding="utf-8") as file:
        return next(int(line.split()[1]) / 1024 for line in file if line.startswith("VmHWM"))
