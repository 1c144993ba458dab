"""What the graphs compute: steps over a table, written so that all sides take them from here.

A step is a name and the expression of a new column, or None and a condition for the rows to keep. Each is an action of
its own. Expressions are arithmetic that means the same to everyone; where they are not, the peers have a text of theirs.
"""

import collections
import re
import xml.sax.saxutils

Work = collections.namedtuple("Work", "table steps peer_steps")

CONDITION = 1000
ORDERS = (("total", "price*quantity"), ("disc", "price*quantity*(quantity>10 ? 0.9 : 1)"),
          ("score", "ln(price+1)*sqrt(quantity)"), (None, f"total >= {CONDITION}"))
TEN_STEPS = (("s1", "price*quantity"), (None, "s1 >= 100"), ("s2", "s1*0.9+price"), ("s3", "s2-quantity*2"), (None, "s3 < 3000"),
             ("s4", "s3/(quantity+1)"), ("s5", "s1+s2+s3"), (None, "s4 > 1"), ("s6", "s5*s4-s2"), ("s7", "s6/(s5+1)"))
PASSING_TEXTS = ((None, "x >= 500"),)

WORKS = {
    "orders": Work("orders", ORDERS, None),
    "ten steps": Work("orders", TEN_STEPS, TEN_STEPS),
    "texts": Work("texts", PASSING_TEXTS, PASSING_TEXTS),
}

# Of the tables, with the types that SQL has for them.
COLUMNS = {
    "orders": {"id": "BIGINT", "city": "VARCHAR", "price": "DOUBLE", "quantity": "BIGINT", "date": "VARCHAR"},
    "texts": {"id": "BIGINT", "x": "DOUBLE", "name": "VARCHAR", "note": "VARCHAR", "day": "VARCHAR"},
}


def actions_and_chain(work):
    """XML of the actions, and their names in order. Columns that follow one another are one Calculator for the orders."""
    found, names = "", []
    known = list(COLUMNS[work.table])
    for computed in grouped(work.steps, 10 if work.peer_steps is None else 1):
        names.append(f"step{len(names)}")
        used = {word for _, text in computed for word in re.findall(r"\w+", text)}
        inputs = "".join(f"<InputVar column='{column}'/>" for column in known if column in used)
        found += action_xml(names[-1], computed, f"<InputVars>{inputs}</InputVars>")
        known += [name for name, _ in computed if name]
    return found, names


def grouped(steps, most_columns):
    groups = []
    for name, text in steps:
        if name is not None and groups and groups[-1][-1][0] is not None and len(groups[-1]) < most_columns:
            groups[-1].append((name, text))
        else:
            groups.append([(name, text)])
    return groups


def action_xml(name, computed, inputs):
    def escaped(text):
        return xml.sax.saxutils.escape(text)

    if computed[0][0] is None:
        return f"<FilterRows name='{name}'><Expression>{escaped(computed[0][1])}</Expression>{inputs}</FilterRows>"
    outputs = "".join(f"<OutputVar name='{column}'>{escaped(text)}</OutputVar>" for column, text in computed)
    return f"<Calculator name='{name}'>{inputs}<OutputVars>{outputs}</OutputVars></Calculator>"
