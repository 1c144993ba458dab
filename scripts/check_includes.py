#!/usr/bin/env python3
"""Checks that the modules of the source tree include each other only downwards.

Usage: check_includes.py [ROOT]. Prints one line for every finding, and ends with 1 if there is any.
The table below is also the one of docs/architecture.md, which must have the same lines.
"""

import os
import re
import sys

import source_tree

# Module -> modules it may include, beside itself and everything that those may include in turn.
# Every folder with sources is a module; its tests/ belongs to it. A module comes after all that it
# may include.
ALLOWED = {
    "base": [],
    "expression/tokens": [],
    "jit": ["base", "expression/tokens"],
    "host/xml": ["base"],
    "host/xml_source": ["host/xml"],
    "host/contract": ["host/xml"],
    "host/files": ["host/contract"],
    "host/pictures": ["host/contract"],
    "host/widgets": ["host/contract"],
    "host/testing": ["host/contract"],
    "host/widget_testing": ["host/testing", "host/widgets"],
    "host/engine": ["host/files"],
    "host/reports": ["host/engine"],
    "host/tables/sort_order": ["host/contract"],
    "host/tables/settings": ["host/contract"],
    "host/tables/files": ["host/files", "host/tables/settings", "host/tables/sort_order"],
    "host/tables/inline": ["host/tables/settings", "host/tables/sort_order"],
    "host/tables/text_input": ["host/tables/files"],
    "host/tables/csv": ["host/tables/text_input"],
    "host/tables/arrow": ["host/tables/files"],
    "host/tables/arrow_formats": ["host/tables/arrow"],
    "host/tables": ["host/tables/arrow", "host/tables/csv", "host/tables/inline"],
    "expression/errors": ["expression/tokens"],
    "expression/dates": ["base"],
    "expression/functions": ["expression/dates", "host/contract", "jit"],
    "expression/backends": ["expression/errors", "expression/functions"],
    "expression/batches": ["expression/backends"],
    "expression/help": ["expression/errors", "expression/functions"],
    "expression/evaluator": ["expression/batches"],
    "expression/options": ["expression/evaluator"],
    "expression": ["expression/evaluator", "expression/help"],
    "actions/frame": ["expression/help", "expression/options"],
    "actions/calculator": ["actions/frame"],
    "actions/calculator_vectorized": ["actions/calculator"],
    "actions/filter_rows": ["actions/frame"],
    "columnar/format": ["base"],
    "columnar/codecs": ["columnar/format"],
    "columnar/files": ["columnar/format"],
    "columnar/writer": ["columnar/codecs", "host/contract"],
    "columnar/reader": ["columnar/codecs", "columnar/files", "host/contract"],
    "columnar/actions": ["actions/frame", "columnar/reader", "columnar/writer", "host/files"],
    "ui/language": ["expression/help", "expression/options"],
    "ui/widgets": ["host/widgets", "ui/language"],
    "ui/error_dialog": ["ui/widgets"],
    "ui/help_browser": ["ui/widgets"],
    "ui/debugger": ["actions/frame", "ui/widgets"],
    "ui/panels": ["ui/widgets"],
    "ui/editors": ["actions/calculator_vectorized", "actions/filter_rows", "ui/debugger", "ui/error_dialog",
                   "ui/help_browser", "ui/panels"],
    "ui/columnar": ["columnar/actions", "ui/error_dialog", "ui/help_browser", "ui/panels"],
    "ui": ["ui/columnar", "ui/editors"],
    "plugin": ["actions/calculator_vectorized", "actions/filter_rows", "columnar/actions"],
    "gui/threads": ["host/contract"],
    "gui/document": ["gui/threads", "host/engine", "host/xml_source"],
    "gui/services": ["gui/document"],
    "gui/log": ["gui/services", "host/widgets"],
    "gui/find": ["gui/document", "host/widgets"],
    "gui/forms": ["host/engine", "host/widgets"],
    "gui/canvas": ["gui/document", "host/pictures", "host/widgets"],
    "gui/palette": ["gui/document", "host/widgets"],
    "gui/arrange": ["gui/document"],
    "gui/preview": ["gui/services", "host/widgets"],
    "gui/run": ["gui/log"],
    "gui/host_editors": ["gui/forms", "host/tables"],
    "gui/drops": ["gui/document", "gui/host_editors", "gui/palette"],
    "gui/dialogs": ["host/widgets"],
    "gui/saving": ["gui/dialogs", "gui/document"],
    "gui/properties": ["gui/document", "gui/forms"],
    "gui/recovery": ["gui/dialogs", "gui/properties"],
    "gui/tour": ["host/widgets"],
    "gui/edit": ["gui/log", "gui/recovery", "gui/saving"],
    "gui/window": ["gui/arrange", "gui/canvas", "gui/drops", "gui/find", "gui/log", "gui/palette", "gui/preview", "gui/recovery", "gui/run", "gui/saving", "gui/tour"],
    "gui": ["gui/edit", "gui/host_editors", "gui/window"],
    "cli/reports": ["host/reports", "host/tables/files"],
    "cli": ["cli/reports", "expression/help", "expression/options", "host/tables"],
    "cli/gel": ["cli", "columnar/reader", "columnar/writer"],
    "cli/install": ["cli", "columnar/reader"],
    "cli/calc": ["cli/gel"],
    "cli/graphs": ["cli", "host/xml_source"],
    "cli/graph_tests": ["cli"],
    "cli/help": ["cli"],
    "cli/look": ["cli/gel"],
    "cli/program": ["cli/calc", "cli/graph_tests", "cli/graphs", "cli/help", "cli/install", "cli/look"],
    "include/kelvarin": [],
    "library/errors": ["host/engine", "include/kelvarin"],
    "library/arrow_streams": ["host/tables/arrow", "library/errors"],
    "library/runs": ["host/reports", "host/tables", "library/arrow_streams"],
    "library/expressions": ["expression/options", "library/runs"],
    "library/tables": ["columnar/reader", "expression/tokens", "library/runs"],
    "library": ["columnar/codecs", "library/expressions", "library/tables"],
    "fuzz": ["columnar/reader"],
    "benchmarks/gel": ["columnar/reader", "columnar/writer"],
    "benchmarks/expressions": ["expression/backends"],
    "benchmarks/preview": ["gui/preview", "host/tables"],
    "benchmarks/texts": ["actions/calculator"],
    "benchmarks": ["expression/evaluator", "host/engine", "host/tables"],
    "packaging": [],
    "python/src": ["include/kelvarin"],
}

# What the tests of a module may include as well: of all modules, and of one.
OF_ALL_TESTS = ["host/testing"]
OF_TESTS = {"expression/help": ["expression/evaluator"], "host/widgets": ["host/pictures"]}
OF_TESTS |= {module: ["host/widget_testing"] for module in ALLOWED if module.startswith(("ui", "gui"))}
OF_TESTS["ui/debugger"] += ["actions/calculator_vectorized", "actions/filter_rows"]
for module in ("gui/document", "gui/edit", "gui/palette", "gui/window"):
    OF_TESTS[module] += ["host/tables"]
OF_TESTS["gui/preview"] += ["actions/filter_rows", "host/tables"]


THIS_FILE = os.path.join("scripts", "check_includes.py")
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')
TABLE_LINE = re.compile(r"^\| `([\w/]+)` \| (.*) \|$", re.MULTILINE)


def module_of(path):
    folders = os.path.dirname(path).split(os.sep)
    return "/".join(folders[:folders.index("tests")] if "tests" in folders else folders)


def reachable(module):
    found = {module}
    for below in ALLOWED.get(module, []):
        found |= reachable(below)
    return found


def rights_of(path, module):
    rights = reachable(module)
    if "tests" in path.split(os.sep):
        for extra in OF_ALL_TESTS + OF_TESTS.get(module, []):
            rights |= reachable(extra)
    return rights


def included_file(root, path, name):
    """The file of the tree that the include means; None for a library's or a generated one."""
    for target in (name, os.path.normpath(os.path.join(os.path.dirname(path), name))):
        if os.path.exists(os.path.join(root, target)):
            return target
    return None


def problems_of_sources(root):
    modules = set()
    for path, lines in source_tree.source_files(root):
        module = module_of(path)
        modules.add(module)
        if module not in ALLOWED:
            yield path, 1, f"the module {module} is not in the table"
            continue
        rights = rights_of(path, module)
        for number, line in enumerate(lines, start=1):
            include = INCLUDE.match(line)
            target = include and included_file(root, path, include.group(1))
            if target and module_of(target) not in rights:
                yield path, number, f'{module} may not include "{target}"'
    for module in sorted(ALLOWED.keys() - modules):
        yield THIS_FILE, 1, f"no source lies in {module}"


def problems_of_table(root):
    """A module that comes after all that it may include cannot be part of a cycle."""
    known = set()
    for module, below in ALLOWED.items():
        for name in below:
            if name not in known:
                yield THIS_FILE, 1, f"{module} comes before {name}"
        known.add(module)
    document = os.path.join("docs", "architecture.md")
    with open(os.path.join(root, document), encoding="utf-8") as file:
        lines = TABLE_LINE.findall(file.read())
    documented = {name: re.findall(r"`([\w/]+)`", below) for name, below in lines}
    for module in sorted(ALLOWED.keys() | documented.keys()):
        if sorted(documented.get(module, ["?"])) != sorted(ALLOWED.get(module, ["?"])):
            yield document, 1, f"the line of {module} in the table is not that of check_includes.py"


def main():
    root = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else source_tree.default_root())
    problems = [*problems_of_table(root), *problems_of_sources(root)]
    for path, number, problem in problems:
        print(f"{path}:{number}: {problem}")
    if problems:
        sys.exit(f"{len(problems)} findings. docs/architecture.md says what may include what.")


if __name__ == "__main__":
    main()
