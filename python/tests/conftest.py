"""What the tests of the package share."""

import os
import pathlib
import random
import subprocess

import pyarrow
import pytest

PROGRAM = os.environ["KELVARIN_PROGRAM"]


@pytest.fixture
def folder(tmp_path):
    return tmp_path


@pytest.fixture
def kelvarin_program(folder):
    """Runs the product's program in the folder of the test, which must end well."""
    def run(*arguments):
        result = subprocess.run([PROGRAM, *map(str, arguments)], cwd=folder, capture_output=True, text=True, timeout=120,
                                check=False)
        assert result.returncode == 0, result.stderr
        return result.stdout
    return run


@pytest.fixture
def write_graph(folder):
    """Writes g.kelvarin, a chain of the actions in their order, and returns its path."""
    def write(*actions):
        names = [action.split("name='")[1].split("'")[0] for action in actions]
        links = "".join(f"<Link from='{one}' to='{other}'/>" for one, other in zip(names, names[1:]))
        path = folder / "g.kelvarin"
        path.write_text(f"<KelvarinGraph version='1.0'><Actions>{''.join(actions)}</Actions>"
                        f"<Links>{links}</Links></KelvarinGraph>", encoding="utf-8")
        return path
    return write


def calculator(name, inputs, output, expression):
    """`inputs` are columns of numbers, or say by column whether it is one."""
    are_numbers = inputs if isinstance(inputs, dict) else dict.fromkeys(inputs, 1)
    variables = "".join(f"<InputVar column='{column}' isNumber='{value}'/>" for column, value in are_numbers.items())
    return (f"<Calculator name='{name}'><InputVars>{variables}</InputVars>"
            f"<OutputVars><OutputVar name='{output}'>{expression}</OutputVar></OutputVars></Calculator>")


TEXTS = ["", "a", "Zürich", "日本語", "with, comma", 'a "quote"', "line\nbreak", "x" * 300, "tab\t", "nul\0inside"]


KINDS = 6


def random_table(seed, rows=None, kinds=None):
    """Numbers, keys and texts, with nulls, NaN and infinity, in several chunks. `kinds` are below 6, one a column."""
    random_numbers = random.Random(seed)
    rows = random_numbers.choice((1, 2, 7, 300, 5000)) if rows is None else rows
    null_share = random_numbers.choice((0, 0, 0.1, 1))

    def column(value, kind):
        return pyarrow.array([None if random_numbers.random() < null_share else value() for _ in range(rows)], kind)

    specials = [float("nan"), float("inf"), float("-inf"), 0.0, -0.0, 5e-324, 1.7976931348623157e308]
    makers = [
        lambda: column(lambda: random_numbers.uniform(-1e6, 1e6), pyarrow.float64()),
        lambda: column(lambda: random_numbers.choice(specials), pyarrow.float64()),
        lambda: column(lambda: float(random_numbers.randrange(5)), pyarrow.float64()),
        lambda: column(lambda: random_numbers.randrange(2**32 - 2), pyarrow.uint32()),
        lambda: column(lambda: random_numbers.choice(TEXTS), pyarrow.string()),
        lambda: column(lambda: f"{random_numbers.getrandbits(64):x}", pyarrow.string()),
    ]
    if kinds is None:
        kinds = random_kinds(random_numbers)
    table = pyarrow.table({f"c{index}": makers[kind]() for index, kind in enumerate(kinds)})
    if rows > 10:
        cut = random_numbers.randrange(rows)
        table = pyarrow.concat_tables([table.slice(0, cut), table.slice(cut)])
    return table


def random_kinds(random_numbers):
    return random_numbers.choices(range(KINDS), k=random_numbers.randrange(1, KINDS + 1))


def is_same(one, other):
    """Whether two tables have the same rows, bit by bit but for the sign and payload of NaN."""
    return (one.schema.names == other.schema.names and one.schema.types == other.schema.types and
            one.num_rows == other.num_rows and
            all(_are_same(one.column(name).combine_chunks(), other.column(name).combine_chunks())
                for name in one.schema.names))


def _are_same(one, other):
    if not pyarrow.types.is_floating(one.type):
        return one.equals(other)
    if one.is_null().to_pylist() != other.is_null().to_pylist():
        return False
    return list(map(repr, one.to_pylist())) == list(map(repr, other.to_pylist()))


def package_folder():
    import kelvarin
    return pathlib.Path(kelvarin.__file__).parent
