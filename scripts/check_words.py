#!/usr/bin/env python3
"""Checks that sources, scripts and developer documents use the words of the field.

Usage: check_words.py [ROOT] [--count]. Prints one line for every finding, and ends with 1 if there is
any; with --count only the number of findings for each folder.
"""

import argparse
import collections
import os
import re
import sys

import source_tree

# A word and what the field says instead.
WORDS = [
    (r"\b[Pp]laces?\b|[a-z]Places?([A-Z]|\b)|\bplaces?[A-Z]|_places?\b",
     "index, position, offset, address or location"),
    (r"\b[Rr]ooms?\b|Room([A-Z]|\b)|makeRoom", "module, capacity, space or buffer"),
    (r"[Ii]n[ ]?[Hh]and\b", "available, known, or batch"),
    (r"behind (the|each) other", "contiguous, or one after another"),
    (r"[Hh]and(ed|s)?[ -]?[Oo]ver", "pass, move, detach, bounded queue or double buffer"),
    (r"\bk(Most|Least)", "kMax or kMin"),
]
# Plain English in what users read, so texts in quotes may hold them.
WORDS_OUTSIDE_TEXTS = [
    (r"\b[Tt](ells?|old)\b", "report, say or show"),
    (r"\bgives\b", "returns, yields or makes"),
]
# English of another meaning, a library's name of an operation, and the rows and columns in hand.
ALLOWED = re.compile(
    r"decimal places?|\b[Ii]n[ _]place\b|\b[Tt](ake[sn]?|aking|ook) (its |their )?place\b"
    r"|[Pp]lace[Hh]older|\bTell\(\)"
    r"|(?i:rows|columns)[ _-]?[Ii]n[ _-]?[Hh]and")
QUOTED = r'|R"\(.*?\)"|"""|"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\''
CPP_TOKEN = re.compile("//.*" + QUOTED)
SCRIPT_TOKEN = re.compile("#.*" + QUOTED)
# Every text in quotes is a user's here, or a test's that expects one.
USERS_TEXTS = re.compile(r"(^|/)tests/|messages\.h$|^expression/help/")

DEVELOPER_DOCUMENTS = {
    "CONTRIBUTING.md", "docs/architecture.md", "docs/decisions.md", "docs/gel-format.md",
    "benchmarks/README.md", "fuzz/README.md",
}
CODE = (".h", ".cpp", ".py", ".cmake", "CMakeLists.txt", "CMakePresets.json")


def is_checked(path):
    if path == os.path.join("scripts", "check_words.py"):
        return False
    return path.endswith(CODE) or path.startswith("scripts" + os.sep) or path in DEVELOPER_DOCUMENTS


def without_texts(path, line):
    if path.endswith(".md"):
        return line
    is_cpp = path.endswith(source_tree.SOURCES)
    token, comment = (CPP_TOKEN, "//") if is_cpp else (SCRIPT_TOKEN, "#")
    return token.sub(lambda found: found.group() if found.group().startswith(comment) else "", line)


def findings(text, words):
    for pattern, instead in words:
        for found in re.finditer(pattern, text):
            yield found.group(), instead


def problems_of(path, content):
    for found, instead in findings(ALLOWED.sub("", path), WORDS):
        yield 1, found, instead
    for number, line in enumerate(content.decode("utf-8", errors="replace").splitlines(), start=1):
        line = ALLOWED.sub("", line)
        bare = without_texts(path, line)
        if USERS_TEXTS.search(path):
            line = bare
        yield from ((number, *finding) for finding in findings(line, WORDS))
        yield from ((number, *finding) for finding in findings(bare, WORDS_OUTSIDE_TEXTS))


def problems(root):
    """Yields path, line, the word and what to write instead."""
    for path, content in source_tree.text_files(root):
        if is_checked(path):
            yield from ((path, *problem) for problem in problems_of(path, content))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("root", nargs="?", default=source_tree.default_root())
    parser.add_argument("--count", action="store_true", help="print the findings a folder only")
    options = parser.parse_args()
    folders = collections.Counter()
    for path, number, word, instead in problems(options.root):
        folders[os.path.dirname(path)] += 1
        if not options.count:
            print(f'{path}:{number}: "{word}"; write {instead}')
    if options.count:
        for folder, count in sorted(folders.items()):
            print(f"{count:5} {folder}")
    if folders:
        sys.exit(f"{folders.total()} findings.")


if __name__ == "__main__":
    main()
