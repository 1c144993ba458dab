#!/usr/bin/env python3
"""Checks that the rooms of the source tree include each other only downwards.

Usage: check_includes.py [ROOT]. Prints one line for every include that is not allowed, and ends with 1 if there is any.
The table below is the one of docs/architecture.md.
"""

import os
import re
import sys

# Room -> rooms it may include, beside itself and everything that those may include in turn.
ALLOWED = {
    "base": [],
    "expression/tokens": [],
    "jit": ["base", "expression/tokens"],
    "host/contract": ["base"],
    "host/engine": ["host/contract"],
    "host/tables": ["host/contract"],
    "host/testing": ["host/contract"],
    "expression": ["jit", "expression/tokens", "host/contract"],
    "actions/frame": ["expression", "host/contract"],
    "actions/calculator": ["actions/frame"],
    "actions/calculator_vectorized": ["actions/calculator"],
    "actions/filter_rows": ["actions/frame"],
    "columnar/format": ["base"],
    "columnar/codecs": ["base", "columnar/format"],
    "columnar/files": ["base", "columnar/format"],
    "columnar/writer": ["columnar/format", "columnar/codecs", "host/contract"],
    "columnar/reader": ["columnar/files", "columnar/format", "columnar/codecs", "host/contract"],
    "columnar/actions": ["columnar/files", "columnar/writer", "columnar/reader", "expression", "actions/frame"],
    "ui": ["actions/calculator_vectorized", "actions/filter_rows", "columnar/actions"],
    "plugin": ["ui"],
    "cli": ["host/engine", "host/tables", "expression", "columnar/reader", "columnar/writer"],
    "fuzz": ["columnar/reader"],
    "benchmarks": ["host/engine", "host/tables", "actions/calculator_vectorized", "actions/filter_rows",
                   "columnar/reader", "columnar/writer"],
}

# For tests only: tests of a room may include these as well.
TEST_ROOMS = ["host/testing"]

SKIPPED_FOLDERS = {".git", ".deps", "build"}
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')
GENERATED = re.compile(r"(^|/)(moc_[^/]*|ui_[^/]*|[^/]*\.moc)$")


def room_of(path):
    """The longest room that the path lies in, or None."""
    rooms = [room for room in ALLOWED if path.startswith(room + "/")]
    return max(rooms, key=len, default=None)


def reachable(room):
    found = {room}
    waiting = [room]
    while waiting:
        for below in ALLOWED[waiting.pop()]:
            if below not in found:
                found.add(below)
                waiting.append(below)
    return found


def source_files(root):
    for folder, folders, names in os.walk(root):
        folders[:] = sorted(name for name in folders if name not in SKIPPED_FOLDERS)
        for name in sorted(names):
            if name.endswith((".h", ".cpp")):
                yield os.path.relpath(os.path.join(folder, name), root)


def problems_of(root, path):
    room = room_of(path)
    if room is None:
        yield 1, "lies in no room; add the room to scripts/check_includes.py"
        return
    rights = reachable(room)
    if "/tests/" in path:
        rights |= set().union(*(reachable(extra) for extra in TEST_ROOMS))
    with open(os.path.join(root, path), encoding="utf-8") as file:
        for number, line in enumerate(file, start=1):
            include = INCLUDE.match(line)
            if include is None or GENERATED.search(include.group(1)):
                continue
            target = include.group(1)
            if not os.path.exists(os.path.join(root, target)):
                target = os.path.normpath(os.path.join(os.path.dirname(path), target))
            if not os.path.exists(os.path.join(root, target)):
                continue  # a library's
            target_room = room_of(target)
            if target_room not in rights:
                yield number, f'{room} may not include "{target}" of {target_room}'


def main():
    root = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), ".."))
    count = 0
    for path in source_files(root):
        for number, problem in problems_of(root, path):
            print(f"{path}:{number}: {problem}")
            count += 1
    if count:
        sys.exit(f"{count} includes go the wrong way. docs/architecture.md says what may include what.")


if __name__ == "__main__":
    main()
