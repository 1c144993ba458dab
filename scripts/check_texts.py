#!/usr/bin/env python3
"""Checks every text file of the tree for what must not get in.

Usage: check_texts.py [ROOT]. Prints one line for every finding, and ends with 1 if there is any.
"""

import os
import re
import sys

SKIPPED_FOLDERS = {".git", ".deps", "build", "out", "data"}
SOURCES = (".h", ".cpp")
LONGEST_SOURCE = 600
LONGEST_LINE = 120

# What stays readable from a clone alone: no path of one machine, and links only to lasting places.
FORBIDDEN = [
    (re.compile(r"\b(TODO|FIXME|XXX|HACK)\b"), "an open end; finish it or file an issue"),
    (re.compile(r"(?<![\w.])/(home|root|work|Users)/\w"), "a path of one machine"),
    (re.compile(r"https?://(?!www\.apache\.org/|www\.w3\.org/)"), "a link to a place that may not last"),
    (re.compile(r"\bParts? \d\.\d"), "a reference to a document that is not in the tree"),
]
FORBIDDEN_IN_SOURCES = [
    (re.compile(r"^\s*using namespace "), "using namespace"),
    (re.compile(r"[ \t]+$"), "blanks at the end of the line"),
    (re.compile(r"\t"), "a tab"),
]


def text_files(root):
    for folder, folders, names in os.walk(root):
        folders[:] = sorted(name for name in folders if name not in SKIPPED_FOLDERS)
        for name in sorted(names):
            path = os.path.join(folder, name)
            with open(path, "rb") as file:
                content = file.read()
            if b"\0" not in content:
                yield os.path.relpath(path, root), content


def problems_of(path, content):
    try:
        lines = content.decode("utf-8").split("\n")
    except UnicodeDecodeError as error:
        yield 1, f"not UTF-8 at byte {error.start}"
        return
    is_source = path.endswith(SOURCES)
    if is_source and len(lines) > LONGEST_SOURCE:
        yield len(lines), f"a source of more than {LONGEST_SOURCE} lines; split it"
    is_this_file = path == os.path.join("scripts", "check_texts.py")
    for number, line in enumerate(lines, start=1):
        if is_source and len(line) > LONGEST_LINE and '"' not in line:
            yield number, f"more than {LONGEST_LINE} columns"
        for pattern, what in FORBIDDEN + (FORBIDDEN_IN_SOURCES if is_source else []):
            if pattern.search(line) and not is_this_file:
                yield number, what


def main():
    root = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), ".."))
    count = 0
    for path, content in text_files(root):
        for number, problem in problems_of(path, content):
            print(f"{path}:{number}: {problem}")
            count += 1
    if count:
        sys.exit(f"{count} findings.")


if __name__ == "__main__":
    main()
