#!/usr/bin/env python3
"""Checks every text file of the tree for what must not get in.

Usage: check_texts.py [ROOT]. Prints one line for every finding, and ends with 1 if there is any.
"""

import os
import re
import sys

import source_tree

LONGEST_SOURCE = 600
LONGEST_LINE = 100
GOOGLE_TEST = re.compile(r"^(TEST|TEST_F|TEST_P|RC_GTEST_\w+)\(", re.MULTILINE)

# What stays readable from a clone alone: no path of one machine, and links only to what lasts.
FORBIDDEN = [
    (re.compile(r"\b(TODO|FIXME|XXX|HACK)\b"), "an open end; finish it or file an issue"),
    (re.compile(r"(?<![\w.])/(home|root|work|Users)/\w"), "a path of one machine"),
    (re.compile(r"https?://(?!www\.(apache|debian|freedesktop|w3)\.org/)"), "a link that may not last"),
    (re.compile(r"\bParts? \d\.\d"), "a reference to a document that is not in the tree"),
]
FORBIDDEN_IN_SOURCES = [
    (re.compile(r"^\s*using namespace "), "using namespace"),
    (re.compile(r"[ \t]+$"), "blanks at the end of the line"),
    (re.compile(r"\t"), "a tab"),
]


def breaks_test_naming(path, text):
    """A test, and nothing else, has a name that ends in _test or begins with test."""
    stem, kind = os.path.splitext(os.path.basename(path))
    is_named_so = stem.endswith("_test") or stem.startswith("test")
    if kind == ".cpp":
        return is_named_so != bool(GOOGLE_TEST.search(text))
    if kind == ".py":
        return is_named_so and not source_tree.is_test(path)
    return kind == ".h" and is_named_so


def problems_of(path, content):
    try:
        text = content.decode("utf-8")
    except UnicodeDecodeError as error:
        yield 1, f"not UTF-8 at byte {error.start}"
        return
    lines = text.split("\n")
    is_source = path.endswith(source_tree.SOURCES)
    if breaks_test_naming(path, text):
        yield 1, "a name that ends in _test or begins with test is for a test, and a test has one"
    if is_source and len(lines) > LONGEST_SOURCE:
        yield len(lines), f"a source of more than {LONGEST_SOURCE} lines; split it"
    is_this_file = path == os.path.join("scripts", "check_texts.py")
    for number, line in enumerate(lines, start=1):
        if is_source and len(line) > LONGEST_LINE:
            yield number, f"more than {LONGEST_LINE} columns"
        for pattern, what in FORBIDDEN + (FORBIDDEN_IN_SOURCES if is_source else []):
            if pattern.search(line) and not is_this_file:
                yield number, what


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else source_tree.default_root()
    count = 0
    for path, content in source_tree.text_files(root):
        for number, problem in problems_of(path, content):
            print(f"{path}:{number}: {problem}")
            count += 1
    if count:
        sys.exit(f"{count} findings.")


if __name__ == "__main__":
    main()
