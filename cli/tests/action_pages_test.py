"""The pages about actions name the attributes and elements that the actions declare, with their defaults, and no others."""

import os
import re
import unittest

from program import ProgramTest

PAGES = os.path.join(os.path.dirname(__file__), "..", "..", "docs", "actions")
# A page that leaves a part to another one.
CONTINUED = {"FilterRows": ["Calculator"], "CalculatorVectorized": ["Calculator"], "ReadColumnarGel": ["Calculator"]}
SHARED = {name: "ParquetAndArrow" for name in ("ReadParquet", "WriteParquet", "ReadArrow", "WriteArrow")}
NAME = re.compile(r"`([^`]+)`")


def read(page):
    with open(os.path.join(PAGES, page + ".md"), encoding="utf-8") as file:
        return file.read()


def tables(text):
    """The tables of attributes: for each row the names, and the default where the table has that column."""
    columns = None
    for line in text.split("\n"):
        cells = [cell.strip() for cell in line.strip("| ").split("|")]
        if not line.startswith("|"):
            columns = None
        elif columns is None:
            columns = cells
        elif columns[0].startswith("attribute") and not line.startswith("|---"):
            default = cells[1].strip("`") if columns[1] == "default" else None
            yield NAME.findall(cells[0]), default


def declared(attributes, children):
    """Every name of an action, with the defaults that it has."""
    names = {}
    for attribute in attributes:
        names.setdefault(attribute["name"], set()).add(attribute["default"])
    for child in children:
        names.setdefault(child["name"], set())
        for name, defaults in declared(child["attributes"], child["children"]).items():
            names.setdefault(name, set()).update(defaults)
    return names


class ActionPagesTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.actions = {action["typeName"]: declared(action["attributes"], action["children"])
                        for action in self.kelvarin_json("actions")}

    def test_every_declared_name_stands_in_the_page(self):
        for action, names in self.actions.items():
            page = SHARED.get(action, action)
            text = "".join(map(read, [page, *CONTINUED.get(action, [])]))
            for name in names:
                with self.subTest(action):
                    self.assertTrue(re.search(rf"`{name}`|<{name}\b", text), f"{name} of {action} is not in {page}.md")

    def test_every_attribute_of_a_page_is_declared_with_its_default(self):
        rows = 0
        for page in sorted(set(SHARED.get(action, action) for action in self.actions)):
            known = {}
            for action in self.actions:
                if SHARED.get(action, action) == page:
                    for name, defaults in self.actions[action].items():
                        known.setdefault(name, set()).update(defaults)
            for names, default in tables(read(page)):
                rows += 1
                for name in names:
                    with self.subTest(page):
                        self.assertIn(name, known)
                        if default is not None and None not in known[name]:
                            self.assertIn(default, known[name], name)
        self.assertGreater(rows, 50)


if __name__ == "__main__":
    unittest.main()
