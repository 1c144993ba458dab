"""Columnar files of the program, read by a reader that knows only docs/gel-format.md: page and program agree."""

import csv
import math
import os
import random
import re
import struct
import unittest
from dataclasses import dataclass
from itertools import accumulate

import gel_reader
import gel_texts
from gel_codes import Bytes, Damaged
from program import ProgramTest, graph

PAGE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../gel-format.md")
MISSING_KEY = 0xFFFFFFFF
NOT_A_NUMBER = float("nan")


@dataclass
class Given:
    """A column as it is put in: numbers, keys and texts; None is missing."""

    name: str
    meta: str
    values: list


def bits(number):
    """Of the many NaNs a table of text can only ask for some."""
    if number is not None and math.isnan(number):
        return "nan"
    return gel_reader.NULL_NUMBER if number is None else struct.pack("<d", number)


def field(value):
    """As CSV: null is the unquoted empty field, every text is quoted."""
    if value is None:
        return ""
    return '"' + value.replace('"', '""') + '"' if isinstance(value, str) else repr(value)


def stored(given):
    if given.meta == "K":
        return [MISSING_KEY if key is None else key for key in given.values]
    if given.meta == "U":
        return [None if text is None else text.encode() for text in given.values]
    return given.values


# What the page says about column statistics, from the values


def bound_of(text):
    if text is None:
        return 0, b""
    if len(text) <= 80:
        return 1, text
    whole = text[:80].decode(errors="ignore").encode()
    return 2, whole


def statistics_of(meta, values):
    """The missing flag and the statistics."""
    if meta == "K":
        keys = [key for key in values if key < 0xFFFFFFFE]
        return len(keys) < len(values), (min(keys, default=MISSING_KEY), max(keys, default=MISSING_KEY))
    present = [value for value in values if value is not None]
    missing = len(present) < len(values)
    if meta == "U":
        return missing, (bound_of(min(present, default=None)), bound_of(max(present, default=None)))
    numbers = sorted((n for n in present if not math.isnan(n)), key=lambda n: (n, math.copysign(1, n)))
    flags = (1 if numbers else 0) | (2 if len(numbers) < len(present) else 0)
    return missing, (flags, numbers[0] if numbers else 0.0, numbers[-1] if numbers else 0.0)


def same(left, right):
    return repr(left) == repr(right)


# Writing by the page: descriptors of one's own in a file of the program


def snappy_of(raw):
    """A stream of one literal."""
    length, size = b"", len(raw)
    while size >= 0x80:
        length, size = length + bytes([size & 0x7F | 0x80]), size >> 7
    return length + bytes([size]) + b"\xfc" + struct.pack("<I", len(raw) - 1) + raw


def record_of(descriptors):
    payload = snappy_of(b"".join(descriptors))
    return struct.pack("<II", len(payload), gel_reader.checksum(payload)) + payload


@dataclass
class MainFile:
    """A main file in its parts."""

    head: bytes
    descriptors: list

    @staticmethod
    def read(path):
        with open(path, "rb") as file:
            data = file.read()
        begin = struct.unpack_from("<I", data, 5)[0] + 9
        raw = gel_reader.snappy(data[begin + 8:], 2**30)[0]
        width = gel_reader.descriptor_width(gel_reader.read_main(path).sets)
        return MainFile(data[:begin], [raw[at:at + width] for at in range(0, len(raw), width)])

    def unfinished_head(self):
        """As it is while the file is written."""
        columns = struct.unpack_from("<I", self.head, 17)[0]
        capacity = 2**24 // len(self.descriptors[0]) * len(self.descriptors[0])
        sizes = struct.pack("<QIII", 0, columns, capacity, 32 + capacity + capacity // 6 + 8)
        return self.head[:4] + b"\0" + self.head[5:9] + sizes + bytes(8 * columns) + self.head[29 + 8 * columns:]


def with_deltas(descriptor, sets):
    """The same descriptor, each chunk's position counted from the chunk before."""
    changed, at = bytearray(descriptor), 4
    for columns in sets:
        offset = struct.unpack_from("<Q", changed, at)[0]
        struct.pack_into("<Q", changed, at, offset | 1 << 63)
        at, before = at + 8, 0
        for column in columns:
            position = struct.unpack_from("<I", changed, at)[0]
            struct.pack_into("<I", changed, at, position - before)
            at, before = at + 5 + gel_reader.STATISTICS_BYTES[column.type], position
    return bytes(changed)


class GelFormatTest(ProgramTest):
    def make(self, columns, rows_in_block=5000, sorted_on="", sets=None, strategy=None):
        """Writes the columns with the program; `sets` has each column's set."""
        with open(self.path("in.csv"), "w", encoding="utf-8", newline="") as file:
            file.write(",".join(column.name for column in columns) + "\n")
            for row in zip(*(column.values for column in columns)):
                file.write(",".join(map(field, row)) + "\n")
        types = "".join(f"<Column name='{column.name}' meta='{column.meta}'/>" for column in columns)
        listed = "".join(f"<C n='{name}' s='{number}'/>" for name, number in (sets or {}).items())
        strategy = (1 if sets else 0) if strategy is None else strategy
        actions = f"<ReadCSV name='in' file='in.csv' sortedOn='{sorted_on}'>{types}</ReadCSV>" \
                  f"<writeColumnarGel name='out' file='t.cgel_kelvarin' nRowsInBlock='{rows_in_block}' " \
                  f"columnStrategy='{strategy}'><ColumnStrategy>{listed}</ColumnStrategy></writeColumnarGel>"
        self.kelvarin("run", "--quiet", self.write("g.kelvarin", graph(actions, ["in out"])))

    def table(self):
        return gel_reader.read_table(self.path("t.cgel_kelvarin"))

    def check(self, columns, table):
        """The table has these columns' values, blocks and statistics."""
        self.assertTrue(table.complete and table.ended)
        self.assertEqual([(column.name, column.type) for column in table.columns],
                         [(given.name, given.meta) for given in columns])
        for given, column in zip(columns, table.columns):
            expected = stored(given)
            if given.meta == "F":
                differing = [i for i, (put, got) in enumerate(zip(expected, column.values)) if bits(put) != bits(got)]
            else:
                differing = [i for i, (put, got) in enumerate(zip(expected, column.values)) if put != got]
            self.assertEqual((differing[:3], len(column.values)), ([], len(expected)), given.name)
        self.check_blocks(columns, table)

    def check_blocks(self, columns, table):
        by_name = {given.name: stored(given) for given in columns}
        row = 0
        for block in table.blocks:
            for entry in (entry for entries in block.entries for entry in entries):
                values = by_name[entry.column.name][row:row + block.rows]
                expected = statistics_of(entry.column.type, values)
                self.assertTrue(same(expected, (entry.missing, entry.statistics)),
                                f"{entry.column.name}: {expected} and {entry}")
            row += block.rows

    def round_trip(self, columns, **options):
        self.make(columns, **options)
        table = self.table()
        self.check(columns, table)
        return table

    def write_bytes(self, name, *parts):
        with open(self.path(name), "wb") as file:
            file.write(b"".join(parts))

    def read_bytes(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def rows_by_program(self, *options, log=""):
        """What the program reads of the file."""
        result = self.kelvarin("gel", "export", "t.cgel_kelvarin", "out.csv", *options)
        self.assertIn(log, result.stderr)
        with open(self.path("out.csv"), encoding="utf-8", newline="") as file:
            return list(csv.reader(file))[1:]

    def small_columns(self, rows=11):
        return [Given("k", "K", [i * i for i in range(rows)]), Given("f", "F", [i / 3 for i in range(rows)]),
                Given("u", "U", [None if i == 4 else f"text {i}" for i in range(rows)])]

    def test_numbers_in_every_encoding(self):
        chance = random.Random(1)
        for rows in (1, 127, 128, 129, 5000, 5001):
            pick = lambda give: [give(i) for i in range(rows)]
            columns = [Given(f"scaled{wide}", "F", pick(lambda i: (chance.randrange(2**wide - 1) - 700) / 100))
                       for wide in (8, 9, 11, 12, 14, 15, 16, 17, 20, 23, 24, 25, 32)]
            columns += [Given(f"few{many}", "F", pick(lambda i: math.sqrt(chance.randrange(many))))
                        for many in (1, 2, 3, 9, 30, 60, 100, 256)]
            columns += [
                Given("missing", "F", pick(lambda i: None if i % 9 == 2 else chance.randrange(200) / 10)),
                Given("random", "F", pick(lambda i: struct.unpack("<d", chance.randbytes(6) + b"\xe0\x40")[0])),
                Given("significant", "F", pick(lambda i: 1 + chance.random() / 3)),
                Given("plain", "F", pick(lambda i: chance.uniform(-1, 1) * 10.0 ** chance.randrange(-99, 99))),
                Given("sparse", "F", pick(lambda i: chance.random() if chance.random() < 0.1 else 0.0)),
                Given("rare", "F", pick(lambda i: chance.randrange(60000) / 4 if chance.random() < 0.02 else None)),
                Given("near", "F", pick(lambda i: i * 37 + chance.randrange(50) / 10)),
                Given("close", "F", pick(lambda i: None if i % 11 == 5 else float(round(math.sin(i / 300) * 1e6)))),
                Given("product", "F", pick(lambda i: chance.randrange(50000) / 100 * chance.randrange(1, 20))),
                Given("sum", "F", list(accumulate(pick(lambda i: chance.randrange(9999) / 100)))),
                Given("share", "F", pick(lambda i: chance.randrange(99999) / (300 if i % 150 == 7 else 100))),
                Given("holes", "F", pick(lambda i: None if i % 70 == 3 else float(chance.randrange(2**29)))),
                Given("steps", "F", pick(lambda i: 1.7e12 + 86400000 * chance.randrange(4000))),
                Given("binary", "F", pick(lambda i: chance.randrange(-2**20, 2**20) / 2**30)),
                Given("single", "F", pick(lambda i: struct.unpack("<f", struct.pack("<f", chance.random()))[0])),
                Given("levels", "F", pick(lambda i: math.sqrt(chance.randrange(600)))),
                Given("special", "F", pick(lambda i: chance.choice(
                    [NOT_A_NUMBER, None, -0.0, 0.0, math.inf, -math.inf, 5e-324, 1.7976931348623157e308]))),
                Given("zeros", "F", pick(lambda i: chance.choice([-0.0, 0.0]))),
                Given("nothing", "F", [None] * rows),
                Given("nan", "F", pick(lambda i: NOT_A_NUMBER if i % 2 else None))]
            table = self.round_trip(columns)
        heads = [column.heads[0] for column in table.columns]
        self.assertEqual({head[0] for head in heads}, {0, 1, 2, 3, 4, 6})
        self.assertLess({9, 12, 15, 16, 17, 20, 24, 32}, {head[2] for head in heads if head[0] == 1})

    def test_texts_in_every_encoding(self):
        chance = random.Random(2)
        words = [chr(chance.choice([97, 0xE9, 0x4E2D, 0x1F600, 0x10FFFF])) * (i % 25) + str(i) for i in range(400)]
        for rows in (1, 129, 5003):
            pick = lambda give: [give(i) for i in range(rows)]
            columns = [
                Given("same", "U", ["one"] * rows), Given("null", "U", [None] * rows), Given("empty", "U", [""] * rows),
                Given("some", "U", pick(lambda i: chance.choice([None, "", " ", "a", "\n", '","']))),
                Given("byte", "U", pick(lambda i: chance.choice(words[:200]))),
                Given("word", "U", pick(lambda i: chance.choice(words))),
                Given("coded", "U", pick(lambda i: f"{chance.randrange(900) ** 5:b}"[:40])),
                Given("unique", "U", pick(lambda i: f"{chance.getrandbits(99):x}"[:i % 30])),
                Given("fixed", "U", pick(lambda i: f"{chance.getrandbits(60):016x}")),
                Given("long", "U", pick(lambda i: None if i % 5 == 1 else f"{i}" * chance.randrange(90))),
                Given("longest", "U", pick(lambda i: f"{i}-" * (40000 if i == 0 else i % 4)))]
            table = self.round_trip(columns)
        heads = [column.heads[0] for column in table.columns]
        self.assertLessEqual({0, 1, 2, 4}, {head[0] for head in heads})

    def test_texts_of_templates(self):
        chance = random.Random(5)
        names = ["ada", "eva", "Zoë", "kim"]
        day = lambda: f"{chance.randrange(0, 10000):04}-{chance.randrange(1, 13):02}-{chance.randrange(1, 29):02}"
        time = lambda: f"{chance.randrange(24):02}:{chance.randrange(60):02}:{chance.randrange(60):02}"
        for rows in (40, 3000):
            pick = lambda give: [give(i) for i in range(rows)]
            columns = [
                Given("day", "U", pick(lambda i: day() if i % 90 else "0000-02-29")),
                Given("moment", "U", pick(lambda i: f"{day()}T{time()}.{chance.randrange(1000):03}Z")),
                Given("minute", "U", pick(lambda i: time()[:5])),
                Given("money", "U", pick(lambda i: chance.choice(["", "-"]) + f"{chance.randrange(99999) / 100:.2f}")),
                Given("hash", "U", pick(lambda i: f"{chance.getrandbits(160):040x}")),
                Given("capital", "U", pick(lambda i: f"0x{chance.getrandbits(32):08X}")),
                Given("rising", "U", pick(lambda i: f"INV{i:07}")),
                Given("falling", "U", pick(lambda i: f"no. {9 * (rows - i) - chance.randrange(3)}")),
                Given("version", "U", pick(lambda i: f"{chance.randrange(3)}.0{chance.randrange(2000)}")),
                Given("few", "U", pick(lambda i: f"n{chance.randrange(9) ** 9}")),
                Given("dates", "U", pick(lambda i: f"2024-01-{min(31, 1 + int(chance.expovariate(0.3))):02}")),
                Given("mail", "U", pick(lambda i: f"{chance.choice(names)}.{chance.choice(names)}{i % 7}@mail.example")),
                Given("mixed", "U", pick(lambda i: chance.choice([None, "", "?!", day(), day(), f"{i}"])))]
            table = self.round_trip(columns)
            heads = {column.name: column.heads[0][0] for column in table.columns}
            self.assertEqual({heads[name] for name in ("day", "moment", "money", "hash", "capital", "rising")}, {2})

    def test_examples_of_shaped_texts(self):
        texts = Given("t", "U", ["a-07", "a-12", "a-09"])
        raw = bytes.fromhex("02 03000000 0C000000 01 02 0002612D 0102 0000 010703A800")
        self.assertEqual(self.forge(texts, raw), [b"a-07", b"a-12", b"a-09"])
        column = bytes.fromhex("01 07 09 002526 06")
        self.assertEqual(gel_texts.integer_column(Bytes(column), 3, 302), [7, 300, 301])
        few_bytes = bytes.fromhex("02 00000010 00000000 01 00 0000")
        self.assertIsNone(self.forge(Given("t", "U", [""] * 3), few_bytes), "another number of texts")

    def test_example_of_coded_entries(self):
        texts = Given("t", "U", [None, "ab", "abb", "b"])
        entries = (bytes.fromhex("02 00 01 01 0100010001000100 00000100 03 00 02 21 0100010001000100 01030000 62 00")
                   + bytes(48) + bytes.fromhex("10 01 0100010001000100 00010101"))
        raw = bytes.fromhex("04 04000000 0300 01 00 02 E4") + bytes([len(entries) + 1, 6]) + entries
        self.assertEqual(self.forge(texts, raw), [None, b"ab", b"abb", b"b"])
        more_in_common = raw.replace(bytes.fromhex("00000100 03"), bytes.fromhex("00010100 03"))
        self.assertIsNone(self.forge(texts, more_in_common), "the text before has no bytes")

    def test_bounds_of_long_texts(self):
        for high in ("z" * 80, "z" * 81, "é" * 41, "z" + "é" * 40, "a" * 78 + "😀", "a" * 79 + "中",
                     "\U0010ffff" * 21):
            self.round_trip([Given("t", "U", ["", high]), Given("u", "U", [high, None])])

    def test_keys_packed_with_exceptions(self):
        chance = random.Random(3)
        for rows, block in ((1, 5000), (127, 5000), (128, 5000), (129, 5000), (9000, 4000), (70001, 70001)):
            pick = lambda give: [give(i) for i in range(rows)]
            columns = [
                Given("small", "K", pick(lambda i: i * 7 % 100)), Given("zero", "K", [0] * rows),
                Given("missing", "K", [None] * rows),
                Given("any", "K", pick(lambda i: chance.randrange(4294967294))),
                Given("wide", "K", pick(lambda i: chance.getrandbits(3 if i % 5 else chance.randrange(32)))),
                Given("rare", "K", pick(lambda i: None if i % 50 == 3 else chance.randrange(16 + i % 17)))]
            self.round_trip(columns[3:] if rows > 70000 else columns, rows_in_block=block)

    def test_sorted_keys(self):
        chance = random.Random(4)
        for rows, block in ((1, 5000), (127, 5000), (128, 5000), (129, 5000), (6000, 2500)):
            keys = sorted(chance.randrange(chance.choice([50, 10**5, 4294967294])) for _ in range(rows))
            keys = [None] * min(3, rows - 1) + keys[min(3, rows - 1):]
            other = Given("x", "K", [i % 3 for i in range(rows)])
            for sorted_on, storage, values in (("k 0", 2, keys), ("k 9", 3, keys[::-1])):
                table = self.round_trip([other, Given("k", "K", values)], rows_in_block=block, sorted_on=sorted_on)
                self.assertEqual([column.storage for column in table.columns], [1, storage])

    def test_sets_order_and_slots(self):
        columns = [Given("u", "U", ["a" * (i % 7) for i in range(300)]), Given("f", "F", [i / 7 for i in range(300)]),
                   Given("left out", "F", [0.0] * 300), Given("k", "K", list(range(300))),
                   Given("g", "F", [i * 1.0 for i in range(300)]), Given("p", "K", [300 - i for i in range(300)])]
        table = self.round_trip(columns[:2] + columns[3:], rows_in_block=128, sorted_on="k 0")
        self.assertEqual([column.name for column in table.sets[0]], ["p", "k", "f", "g", "u"])
        sets = {"u": 3, "f": 1, "left out": -1, "k": 1, "g": 3, "p": 1}
        self.make(columns, rows_in_block=128, sorted_on="k 0", sets=sets)
        table = self.table()
        self.check(columns[:2] + columns[3:], table)
        self.assertEqual([[column.name for column in members] for members in table.sets],
                         [[], ["p", "k", "f"], [], ["g", "u"]])
        self.assertEqual([column.position for column in table.columns], [0, 1, 3, 4, 5])
        self.assertEqual([name for name in self.files() if "cs_" in name], ["t.001.cs_kelvarin", "t.003.cs_kelvarin"])
        sizes = {"K": 4 * 128, "F": 8 * 128, "U": max(sum(4 + i % 7 for i in range(at, min(at + 128, 300)))
                                                      for at in (0, 128, 256))}
        slots = iter(table.slots)
        for number, members in enumerate(table.sets):
            for index, column in enumerate(members):
                self.assertEqual(next(slots), self.largest_chunk(table, number, index), column.name)
            for column in members:
                self.assertEqual(next(slots), sizes[column.type], column.name)

    def largest_chunk(self, table, number, index):
        ends = [block.offsets[number] for block in table.blocks[1:]]
        ends.append(os.path.getsize(gel_reader.side_file(self.path("t.cgel_kelvarin"), number)))
        positions = [[entry.position for entry in block.entries[number]] for block in table.blocks]
        return max((begins + [end - block.offsets[number]])[index + 1] - begins[index]
                   for block, begins, end in zip(table.blocks, positions, ends))

    def test_a_set_for_each_column(self):
        table = self.round_trip(self.small_columns(), strategy=2)
        self.assertEqual([len(members) for members in table.sets], [1, 1, 1])

    def test_records_are_full_but_the_last(self):
        columns = [Given(f"u{i}", "U", [f"{i} {row}" for row in range(1003)]) for i in range(100)]
        self.make(columns, rows_in_block=1)
        table = gel_reader.read_main(self.path("t.cgel_kelvarin"))
        self.assertEqual(table.records, [1000, 3])
        for number in (0, 999, 1000, 1002):
            entry = table.blocks[number].entries[0][7]
            self.assertEqual(entry.statistics[0], (1, f"7 {number}".encode()))

    def test_names_of_side_files(self):
        for main, number, side in (("sales.cgel_kelvarin", 0, "sales.000.cs_kelvarin"), ("x.dat", 12, "x.012.cs"),
                                   ("a.b/c", 1, "a.b/c.001.cs"), ("a.b\\c", 2, "a.b\\c.002.cs"),
                                   ("kelvarin/a.b.c", 254, "kelvarin/a.b.254.cs")):
            self.assertEqual(gel_reader.side_file(main, number), side)

    def test_positions_as_deltas(self):
        columns = self.small_columns(700)
        self.make(columns, rows_in_block=128, sets={"k": 0, "f": 2, "u": 2})
        expected = self.rows_by_program()
        main = MainFile.read(self.path("t.cgel_kelvarin"))
        changed = [with_deltas(descriptor, self.table().sets) for descriptor in main.descriptors]
        self.assertNotEqual(changed, main.descriptors)
        # Records of any number of descriptors can be read.
        self.write_bytes("t.cgel_kelvarin", main.head, record_of(changed[:2]), record_of(changed[2:]), b"\xff" * 8)
        self.assertEqual(self.table().records, [2, 4])
        self.check(columns, self.table())
        self.kelvarin("gel", "verify", "t.cgel_kelvarin")
        self.assertEqual(self.rows_by_program(), expected)

    def test_files_that_are_not_complete(self):
        columns = self.small_columns(1000)
        self.make(columns, rows_in_block=128)
        main = MainFile.read(self.path("t.cgel_kelvarin"))
        side = self.read_bytes("t.000.cs_kelvarin")
        first, rest = record_of(main.descriptors[:3]), record_of(main.descriptors[3:])
        ended = main.head[:4] + b"\0" + main.head[5:]
        for parts, rows in (((ended, first, rest, b"\xff" * 8), 1000), ((main.unfinished_head(), first, rest), 1000),
                            ((main.unfinished_head(), first, rest[:-1]), 384), ((main.unfinished_head(), first), 384),
                            ((main.unfinished_head(), first, rest[:7]), 384), ((main.unfinished_head(),), 0)):
            self.write_bytes("t.cgel_kelvarin", *parts)
            self.write_bytes("t.000.cs_kelvarin", side, side[:100] if rows == 1000 else b"")
            table = self.table()
            self.assertFalse(table.complete)
            for given, column in zip(columns, table.columns):
                self.assertEqual(column.values, stored(given)[:rows])
            keys = [row[0] for row in self.rows_by_program("--salvage", log="is incomplete")]
            self.assertEqual(keys, [str(key) for key in columns[0].values[:rows]])

    def test_the_example_of_the_page(self):
        with open(PAGE, encoding="utf-8") as file:
            section = file.read().split("\n## A whole file\n")[1]
        dumps = re.findall(r"^```text\n(.*?)^```$", section, re.MULTILINE | re.DOTALL)
        for name, dump in zip(("t.cgel_kelvarin", "t.000.cs_kelvarin"), dumps, strict=True):
            data = b""
            for line in dump.splitlines():
                offset, content = re.match(r"([0-9A-F]{4})  ((?:[0-9A-F]{2}(?: |$))+)", line).groups()
                self.assertEqual(int(offset, 16), len(data), line)
                data += bytes.fromhex(content)
            self.write_bytes(name, data)
        table = self.table()
        self.check([Given("shop", "U", ["Lyon", None, "Basel"]), Given("id", "K", [7, 300, 301]),
                    Given("price", "F", [9.5, None, 12.25])], table)
        self.assertEqual([(block.offsets, [entry.position for entry in block.entries[0]]) for block in table.blocks],
                         [([0], [0, 14, 34]), ([48], [0, 14, 29])])
        self.kelvarin("gel", "verify", "t.cgel_kelvarin")
        self.assertEqual(self.rows_by_program(), [["Lyon", "7", "9.5"], ["", "300", ""], ["Basel", "301", "12.25"]])

    def forge(self, column, raw, change=lambda main: None):
        """A table of one column whose only chunk has these bytes; what reader and program make of it."""
        self.make([column])
        main = MainFile.read(self.path("t.cgel_kelvarin"))
        change(main)
        stream = snappy_of(raw)
        self.write_bytes("t.cgel_kelvarin", main.head, record_of(main.descriptors), b"\xff" * 8)
        self.write_bytes("t.000.cs_kelvarin", struct.pack("<I", gel_reader.checksum(stream)) + stream)
        try:
            values = self.table().columns[0].values
        except Damaged:
            values = None
        accepted = self.run_program("gel", "verify", "t.cgel_kelvarin").returncode == 0
        self.assertEqual(accepted, values is not None, raw)
        if values is not None:
            self.kelvarin("gel", "export", "t.cgel_kelvarin", "out.csv")
        return values

    def test_what_a_writer_leaves_over_has_one_rule(self):
        double = lambda *numbers: struct.pack(f"<{len(numbers)}d", *numbers)
        numbers = Given("n", "F", [2.5, 2.5, 7.0])
        same_number = Given("n", "F", [2.5] * 3)
        dictionary = bytes([2, 2, 2])  # three entries, codes of two bits
        for raw, read in ((dictionary + b"\x10\0" + double(2.5, 7.0, 99.0), True),  # no row has the last entry
                          (dictionary + b"\xd0\0" + double(2.5, 7.0, 99.0), True),  # bits behind the last code
                          (dictionary + b"\x30\0" + double(2.5, 7.0, 99.0), False),  # no such entry
                          (dictionary + b"\x10\0" + double(2.5, 7.0, 99.0) + b"\0", False),
                          (b"\4" + double(2.5) + b"\4\0" + double(7.0), True),
                          (b"\4" + double(2.5) + b"\x0c\0" + double(7.0), False),  # a bit behind the last row
                          (b"\4" + double(2.5) + b"\4\0" + double(7.0, 7.0), False)):
            self.assertEqual(self.forge(numbers, raw), numbers.values if read else None)
        for raw in (b"\4" + double(2.5) + b"\0\0",  # no row has another number
                    b"\4" + double(2.5) + b"\0\1" + bytes(11), b"\4" + double(9.0) + b"\7\0" + double(2.5, 2.5, 2.5)):
            self.assertEqual(self.forge(same_number, raw), same_number.values)
        walk = Given("n", "F", [2.5, 2.4, 2.6])  # differences, which no writer of today stores
        self.assertEqual(self.forge(walk, b"\5\1\3\0" + struct.pack("<q", 25) + b"\x08\1"), walk.values)
        texts = Given("t", "U", ["ab", "ab", "c"])
        entries = b"\1" + bytes([2, 1, 1]) + b"\0" + b"abcx"
        self.assertEqual(self.forge(texts, b"\1\2\0\2\x10" + entries), [b"ab", b"ab", b"c"])
        self.assertIsNone(self.forge(texts, b"\1\2\0\2\x30" + entries))

    def test_texts_are_any_bytes(self):
        """Also those that are no UTF-8, such as forms that are longer than they need to be."""
        def change(main):
            main.descriptors = [descriptor.replace(b"ab", b"\xc0\x80") for descriptor in main.descriptors]
        self.assertEqual(self.forge(Given("t", "U", ["ab"] * 2), b"\0\0\2\0\0\0\xc0\x80\xc0\x80", change),
                         [b"\xc0\x80"] * 2)

    def test_fill_is_zero(self):
        keys = Given("k", "K", list(range(128)))
        self.make([keys])
        raw = gel_reader.snappy(self.read_bytes("t.000.cs_kelvarin")[4:], 2**20)[0]
        self.assertEqual(self.forge(keys, raw), keys.values)
        words = struct.unpack_from("<I", raw, 4)[0]
        fill = 4 + 4 * words + 4 + 2  # behind width and exceptions of the only group
        self.assertEqual(raw[fill:fill + 2], b"\0\0")
        self.assertIsNone(self.forge(keys, raw[:fill] + b"\1" + raw[fill + 1:]))
        tail = Given("k", "K", [1, 2])
        self.assertEqual(self.forge(tail, b"\0\0\0\0\x81\x82\0\0"), [1, 2])
        self.assertIsNone(self.forge(tail, b"\0\0\0\0\x81\x82\1\0"))

    def test_bytes_behind_the_end(self):
        """Those of the main file mean nothing; those of a side file belong to its last chunk."""
        columns = self.small_columns()
        self.make(columns, rows_in_block=4)
        main, side = self.read_bytes("t.cgel_kelvarin"), self.read_bytes("t.000.cs_kelvarin")
        self.write_bytes("t.cgel_kelvarin", main, b"anything")
        self.check(columns, self.table())
        self.kelvarin("gel", "verify", "t.cgel_kelvarin")
        self.assertTrue(self.damaged("t.000.cs_kelvarin", side + b"\0"))
        self.kelvarin("gel", "verify", "t.cgel_kelvarin", status=1)

    def test_the_last_set_has_columns(self):
        self.make(self.small_columns(), sets={"k": 0, "f": 1, "u": 1})
        main = MainFile.read(self.path("t.cgel_kelvarin"))
        head = main.head[:-8] + struct.pack("<II", 3, 0)
        self.assertTrue(self.damaged("t.cgel_kelvarin", head + record_of(main.descriptors) + b"\xff" * 8))
        self.assertIn("its header or column list is damaged",
                      self.kelvarin("gel", "verify", "t.cgel_kelvarin", status=1).stderr)

    def damaged(self, name, data):
        """Whether the reader notices that the file has these bytes now."""
        self.write_bytes(name, data)
        try:
            self.table()
        except Damaged:
            return True
        return False

    def test_every_changed_or_missing_byte_is_noticed(self):
        self.make(self.small_columns(), rows_in_block=4)
        begin = struct.unpack_from("<I", self.read_bytes("t.cgel_kelvarin"), 5)[0] + 9
        for name, first in (("t.cgel_kelvarin", begin), ("t.000.cs_kelvarin", 0)):
            whole = self.read_bytes(name)
            for offset in range(first, len(whole)):
                changed = whole[:offset] + bytes([whole[offset] ^ 0x24]) + whole[offset + 1:]
                self.assertTrue(self.damaged(name, changed), f"{name}: byte {offset} is changed")
                self.assertTrue(self.damaged(name, whole[:offset]), f"{name}: cut at {offset}")
            self.assertFalse(self.damaged(name, whole))

    def test_a_changed_head_is_no_other_table(self):
        columns = self.small_columns()
        self.make(columns, rows_in_block=4, sets={"k": 0, "f": 1, "u": 1})
        whole = self.read_bytes("t.cgel_kelvarin")
        expected = [column.values for column in self.table().columns]
        for offset in range(struct.unpack_from("<I", whole, 5)[0] + 9):
            changed = whole[:offset] + bytes([whole[offset] ^ 0x81]) + whole[offset + 1:]
            if not self.damaged("t.cgel_kelvarin", changed):
                values = [column.values for column in self.table().columns]
                self.assertCountEqual(map(repr, values), map(repr, expected), f"byte {offset}")


if __name__ == "__main__":
    unittest.main()
