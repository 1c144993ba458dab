#!/usr/bin/env python3
"""Follows "Add a function" of CONTRIBUTING.md on copies of the sources that it names.

Usage: add_function.py SOURCE_FOLDER OUTPUT_FOLDER. Writes rounding.cpp, help_on_specials.cpp and the folder cases.
"""

import pathlib
import shutil
import sys
import textwrap

TABLE_END = "\n};\n"


def pieces_of(document):
    """The four indented blocks of the section, in their order."""
    section = document.split("## Add a function\n")[1].split("\n## ")[0]
    blocks, block = [], []
    for line in section.splitlines() + ["end"]:
        if line.startswith(" " * 7) or (block and not line):
            block.append(line)
        elif block:
            blocks.append(textwrap.dedent("\n".join(block)).strip() + "\n")
            block = []
    if len(blocks) != 4:
        sys.exit(f"CONTRIBUTING.md: 'Add a function' has {len(blocks)} indented blocks instead of 4.")
    return blocks


def with_row(source, table, row):
    """The source with a row at the end of the table."""
    start = source.index(table)
    end = source.index(TABLE_END, start) + 1
    return source[:end] + row + source[end:]


def main():
    source, output = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    body, line, help_line, case = pieces_of((source / "CONTRIBUTING.md").read_text(encoding="utf-8"))

    theme = (source / "expression/functions/rounding.cpp").read_text(encoding="utf-8")
    before_table = theme.index("// clang-format off\nconstexpr FunctionLine kLines[]")
    theme = theme[:before_table] + body + "\n" + theme[before_table:]
    (output / "rounding.cpp").write_text(with_row(theme, "constexpr FunctionLine kLines[]", line), encoding="utf-8")

    help_lines = (source / "expression/help/help_on_specials.cpp").read_text(encoding="utf-8")
    help_lines = with_row(help_lines, "constexpr HelpEntry kFurtherFunctions[]", help_line)
    (output / "help_on_specials.cpp").write_text(help_lines, encoding="utf-8")

    shutil.copytree(source / "expression/tests/cases", output / "cases", dirs_exist_ok=True)
    with open(output / "cases/rounding.txt", "a", encoding="utf-8") as cases:
        cases.write(case)


if __name__ == "__main__":
    main()
