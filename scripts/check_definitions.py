#!/usr/bin/env python3
"""Checks that no two headers define the same name in the same namespace.

Usage: check_definitions.py [ROOT]. The linker keeps one of two inline definitions, whichever it
meets first, and says nothing: one module would then report the message of another. Prints one line
for every finding, and ends with 1 if there is any.
"""

import collections
import re
import sys

import source_tree

NAMESPACE = re.compile(r"^namespace ([\w:]+) \{$|^(\})  // namespace", re.MULTILINE)
DEFINITION = re.compile(
    r"^(?:\[\[nodiscard\]\] )?inline (?:constexpr )?[\w:<>,*& ]*?[ *&](\w+)"
    r"(\([^)]*\)|\[\w*\] =| =|\{)",
    re.MULTILINE)


def definitions(text):
    """Yields namespace, name and parameters of what a header defines inline, and its line."""
    namespaces = []
    position = 0
    for border in [*NAMESPACE.finditer(text), None]:
        end = border.start() if border else len(text)
        for found in DEFINITION.finditer(text, position, end):
            parameters = " ".join(found[2].split()) if found[2].startswith("(") else ""
            line = text.count("\n", 0, found.start()) + 1
            yield ("::".join([*namespaces, found[1]]), parameters), line
        if border is None:
            return
        position = border.end()
        if border[1]:
            namespaces.append(border[1])
        elif namespaces:
            namespaces.pop()


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else source_tree.default_root()
    found = collections.defaultdict(dict)
    for path, lines in source_tree.source_files(root):
        if path.endswith(".h") and not source_tree.is_test(path):
            for definition, line in definitions("\n".join(lines)):
                found[definition].setdefault(path, line)
    count = 0
    for (name, parameters), lines in sorted(found.items()):
        if len(lines) > 1:
            count += 1
            others = ", ".join(sorted(lines)[1:])
            path = min(lines)
            print(f"{path}:{lines[path]}: {name}{parameters} is also defined in {others}")
    if count:
        sys.exit(f"{count} names are defined in several headers. Give each a namespace of its own.")


if __name__ == "__main__":
    main()
