#!/usr/bin/env python3
"""Runs every complete graph of the documents.

Usage: run_examples.py PROGRAM DOCUMENT...

A fenced block of xml that is a whole KelvarinGraph is checked and run in a temporary folder, one for each document, in the
document's order, so that a graph may read what an earlier one wrote. A fenced block with a second word after its language,
such as `csv orders.csv`, is a file of that name: one to read, or what a graph before it must have written. A graph with a
name is such a file, too, and is not run here.
"""

import os
import re
import subprocess
import sys
import tempfile

FENCE = re.compile(r"^```(\w+)(?: ([\w.]+))?\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def run(program, command, graph, folder):
    return subprocess.run([program, command, graph], cwd=folder, capture_output=True, text=True, timeout=60)


def fault_of_file(path, text):
    if not os.path.exists(path):
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return
    with open(path, encoding="utf-8") as file:
        written = file.read()
    if written != text:
        yield f"{os.path.basename(path)}: the document shows\n{text}but the graphs wrote\n{written}"


def faults_of(program, document):
    with open(document, encoding="utf-8") as file:
        blocks = FENCE.findall(file.read())
    graphs = 0
    with tempfile.TemporaryDirectory() as folder:
        for language, name, text in blocks:
            if name:
                yield from fault_of_file(os.path.join(folder, name), text)
            if name or language != "xml" or not text.startswith("<KelvarinGraph"):
                continue
            graphs += 1
            graph = f"graph{graphs}.kelvarin"
            with open(os.path.join(folder, graph), "w", encoding="utf-8") as file:
                file.write(text)
            for command in ("check", "run"):
                result = run(program, command, graph, folder)
                if result.returncode != 0 or "warning: " in result.stderr:
                    yield f"graph {graphs}: kelvarin {command} ended with {result.returncode}:\n{result.stderr}"
    print(f"{document}: {graphs} graphs")


def main():
    program, documents = os.path.abspath(sys.argv[1]), sys.argv[2:]
    faults = [f"{document}: {fault}" for document in documents for fault in faults_of(program, document)]
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
