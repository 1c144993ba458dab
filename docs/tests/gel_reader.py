#!/usr/bin/env python3
"""An independent reader of columnar Gel files, written from docs/gel-format.md and nothing else.

Usage: gel_reader.py FILE          prints the table's columns, blocks and rows

Keys are the integers of the file, the missing ones 0xFFFFFFFE and 0xFFFFFFFF included; numbers are floats, None where
missing; texts are bytes, None where null. Whatever the page does not allow raises Damaged.
"""

import os
import struct
import sys
from dataclasses import dataclass, field
from itertools import accumulate

from gel_codes import Bytes, Damaged, codes_of, demand, indices_of, packed_bits
from gel_integers import integer_column, short_number, zigzag_integer
from gel_texts import decode_texts

MAGIC = 0x0059F440
NULL_NUMBER = b"\xff" * 8
END_MARKER = b"\xff" * 8
STATISTICS_BYTES = {"K": 8, "F": 17, "U": 164}


# Checksum and Snappy


def checksum(data):
    words = struct.unpack(f"<{-(-len(data) // 8) * 4}H", data + bytes(-len(data) % 8))
    first = sum(words)
    second = sum(accumulate(words))

    def fold(value):
        return (value - 1) % 0xFFFF + 1 if value else 0

    return fold(second) << 16 | fold(first)


def snappy(data, limit):
    """The text of a raw Snappy stream, and the stream's length; bytes after it are left alone."""
    stream = Bytes(data)
    length = shift = 0
    while True:
        byte = stream.take(1)[0]
        length |= (byte & 0x7F) << shift
        shift += 7
        demand(shift <= 35 and length < 2**32, "Snappy's length is too long")
        if byte < 0x80:
            break
    demand(length <= limit, f"a Snappy stream of {length} bytes, at most {limit} are possible")
    text = bytearray()
    while len(text) < length:
        tag = stream.take(1)[0]
        if tag & 3 == 0:
            size = tag >> 2
            if size >= 60:
                size = int.from_bytes(stream.take(size - 59), "little")
            text += stream.take(size + 1)
            continue
        if tag & 3 == 1:
            size, distance = (tag >> 2 & 7) + 4, (tag >> 5) << 8 | stream.take(1)[0]
        else:
            size, distance = (tag >> 2) + 1, int.from_bytes(stream.take(2 if tag & 3 == 2 else 4), "little")
        demand(0 < distance <= len(text), "a Snappy copy from before the begin")
        while size > 0:
            piece = text[len(text) - distance:][:size]
            text += piece
            size -= len(piece)
    demand(len(text) == length, "Snappy's text is longer than announced")
    return bytes(text), stream.at


# Keys


def unpack_bits(words, bits, count):
    """Values of one lane: one after the other from the lowest bit on in a row of words."""
    row = int.from_bytes(struct.pack(f"<{len(words)}I", *words), "little")
    return [row >> bits * i & (1 << bits) - 1 for i in range(count)]


def unpack_128(cursor, bits):
    words = cursor.array(4 * bits, "I")
    values = [0] * 128
    for lane in range(4):
        values[lane::4] = unpack_bits(words[lane::4], bits, 32)
    return values


def fill_word(cursor, begin):
    demand(not any(cursor.take(-(cursor.at - begin) % 4)), "bytes that fill a word are not 0")


def exceptions_of(cursor, bits):
    count = cursor.unpack("I")
    values = []
    demand(count * bits <= 32 * cursor.left(), "more exceptions than bytes")
    while count - len(values) >= 128:
        values += unpack_128(cursor, bits)
    while len(values) < count:
        some = min(32, count - len(values))
        values += unpack_bits(cursor.array(-(-some * bits // 32), "I"), bits, some)
    return values


def key_page(cursor, count):
    begin = cursor.at
    packed_words = cursor.unpack("I")
    packed = Bytes(cursor.take(4 * packed_words - 4))
    heads_length = cursor.unpack("I")
    begin = cursor.at
    heads = Bytes(cursor.take(heads_length))
    fill_word(cursor, begin)
    lists = {1: None}
    bitmap = cursor.unpack("I")
    for width in range(2, 33):
        if bitmap >> width - 1 & 1:
            lists[width] = iter(exceptions_of(cursor, width))
    values = []
    for _ in range(count // 128):
        bits, exceptions = heads.unpack("BB")
        demand(bits <= 32, "a key of more than 32 bits")
        group = unpack_128(packed, bits)
        if exceptions:
            width = heads.unpack("B") - bits
            demand(width in lists, "exceptions without a list")
            for position in heads.take(exceptions):
                demand(position < 128, "an exception outside its group")
                high = 1 if width == 1 else next(lists[width], None)
                demand(high is not None, "a list of exceptions is too short")
                group[position] |= high << bits
        values += group
    packed.finish("the packed groups")
    heads.finish("the groups' widths")
    demand(all(next(rest, None) is None for rest in lists.values() if rest), "exceptions of no group")
    return values


def plain_groups(cursor, count):
    values = []
    while len(values) < count:
        values += key_page(cursor, min(65536, count - len(values)))
    return values


def sorted_groups(cursor, count):
    values = []
    widths = []
    for group in range(count // 128):
        if group % 16 == 0:
            widths = [byte for word in cursor.array(4, "I") for byte in word.to_bytes(4, "big")]
            demand(not any(widths[count // 128 - group:]), "a width of a group that is not there")
        bits = widths[group % 16]
        demand(bits <= 32, "a key of more than 32 bits")
        values += unpack_128(cursor, bits)
    return values


def key_tail(cursor, count):
    begin = cursor.at
    values = []
    for _ in range(count):
        value = shift = 0
        while True:
            byte = cursor.take(1)[0]
            value |= (byte & 0x7F) << shift
            shift += 7
            if byte & 0x80:
                break
        demand(value < 2**32, "a key of more than 32 bits")
        values.append(value)
    fill_word(cursor, begin)
    return values


def read_keys(data, rows, storage):
    cursor = Bytes(data)
    packed = cursor.unpack("I")
    demand(packed == rows // 128 * 128, f"{packed} packed keys in a block of {rows} rows")
    if storage == 1:
        keys = plain_groups(cursor, packed) + key_tail(cursor, rows - packed)
    else:
        parts = sorted_groups(cursor, packed), key_tail(cursor, rows - packed)
        keys = [key & 0xFFFFFFFF for part in parts for key in accumulate(part)]
    cursor.finish("the keys")
    return keys[::-1] if storage == 3 else keys


# Numbers


def numbers_of(data):
    bits = [data[at:at + 8] for at in range(0, len(data), 8)]
    return [None if number == NULL_NUMBER else struct.unpack("<d", number)[0] for number in bits]


def plain_numbers(cursor, rows):
    return numbers_of(cursor.take(8 * rows))


def scaled_codes(cursor, rows):
    """The base, the power of ten and the codes, None where a number is missing."""
    exponent, bits, missing, base = cursor.unpack("BBBq")
    demand(exponent <= 15 and missing <= 1 and abs(base) <= 2**50, "scaled numbers beyond their range")
    codes, null = codes_of(cursor, bits, rows), (1 << bits) - 1
    return base, 10.0**exponent, [None if missing and code == null else code for code in codes]


def frame_of_reference_numbers(cursor, rows):
    base, power, codes = scaled_codes(cursor, rows)
    return [None if code is None else float(base + code) / power for code in codes]


def delta_numbers(cursor, rows):
    integer, power, codes = scaled_codes(cursor, rows)
    numbers = []
    for code in codes:
        if code is not None:
            integer += zigzag_integer(code)
        numbers.append(None if code is None else float(integer) / power)
    return numbers


def inner_numbers(cursor, count):
    encoding = cursor.unpack("B")
    demand(encoding <= 1, f"encoding {encoding} inside another one")
    return NUMBER_ENCODINGS[encoding](cursor, count)


def dictionary_numbers(cursor, rows):
    size = cursor.unpack("B") + 1
    indices = indices_of(cursor, 8, rows, size)
    entries = inner_numbers(cursor, size)
    return [entries[index] for index in indices]


def byte_stream_split_numbers(cursor, rows):
    planes = cursor.unpack("B")
    demand(1 <= planes <= 7, "planes of no number")
    high = [cursor.take(rows) for _ in range(planes)]
    low = cursor.take(rows * (8 - planes))
    numbers = bytearray(8 * rows)
    for byte in range(8 - planes):
        numbers[byte::8] = low[byte::8 - planes]
    for index, plane in enumerate(high):
        numbers[7 - index::8] = plane
    return numbers_of(bytes(numbers))


def sparse_numbers(cursor, rows):
    common = plain_numbers(cursor, 1)[0]
    others = packed_bits(cursor, 1, -(-rows // 8) * 8)
    demand(not any(others[rows:]), "bits after the last row")
    rest = iter(inner_numbers(cursor, sum(others)))
    return [next(rest) if other else common for other in others[:rows]]


def marks_of(cursor, bits, rows):
    if bits == 0:
        return [0] * rows
    demand(bits in (1, 2, 4, 8, 16), f"marks of {bits} bits")
    in_item = max(1, 8 // bits)
    items = integer_column(cursor, -(-rows // in_item), 1 << bits * in_item)
    marks = [item >> bits * index & (1 << bits) - 1 for item in items for index in range(in_item)]
    demand(not any(marks[rows:]), "marks after the last row")
    return marks[:rows]


def integers_of(cursor, count, kind):
    if count == 0:
        return []
    first, step = zigzag_integer(short_number(cursor)), short_number(cursor)
    demand(step > 0, "no step")
    if kind == 2:
        return [first + steps * step & 2**64 - 1 for steps in integer_column(cursor, count, 2**64)]
    demand(-2**53 <= first <= 2**53, "the first integer is no double")
    integers = [first + steps * step for steps in integer_column(cursor, count, 2**64)]
    demand(max(integers) <= 2**53, "an integer that is no double")
    return integers


def number_bits(integer, kind, exponent):
    if kind == 2:
        return integer << exponent & 2**64 - 1
    return struct.unpack("<Q", struct.pack("<d", float(integer) / (10.0, 2.0)[kind] ** exponent))[0]


def integer_numbers(cursor, rows):
    size = cursor.left()
    stated, kind, exponent, bits = cursor.unpack("IBBB")
    demand(stated == rows and 8 * rows <= 2**25 + 256 * size, "another number of numbers")
    demand(kind <= 2 and exponent <= (15, 63, 63)[kind], "a scale of no number")
    marks = marks_of(cursor, bits, rows)
    other = (1 << bits) - 1 if bits else None
    integers = iter(integers_of(cursor, rows - marks.count(other), kind))
    others = iter(())
    if other in marks:
        encoding = cursor.unpack("B")
        demand(encoding <= 5, f"encoding {encoding} inside another one")
        others = iter(NUMBER_ENCODINGS[encoding](cursor, marks.count(other)))
    numbers = []
    for mark in marks:
        if mark == other:
            numbers.append(next(others))
            continue
        corrected = number_bits(next(integers), kind, exponent) + zigzag_integer(mark) & 2**64 - 1
        numbers += numbers_of(struct.pack("<Q", corrected))
    return numbers


NUMBER_ENCODINGS = [plain_numbers, frame_of_reference_numbers, dictionary_numbers, byte_stream_split_numbers,
                    sparse_numbers, delta_numbers, integer_numbers]


def decode_chunk(data, rows, column):
    """The values of one column in one block."""
    demand(len(data) >= 4 and struct.unpack_from("<I", data)[0] == checksum(data[4:]), "checksum of a chunk")
    text, length = snappy(data[4:], 2**32 - 1)
    demand(length == len(data) - 4, "bytes after a chunk")
    column.heads.append(text[:3])
    if column.storage:
        return read_keys(text, rows, column.storage)
    cursor = Bytes(text)
    encoding = cursor.unpack("B")
    if column.type == "F":
        demand(encoding < len(NUMBER_ENCODINGS), f"encoding {encoding} of numbers")
        values = NUMBER_ENCODINGS[encoding](cursor, rows)
    else:
        demand(encoding <= 4, f"encoding {encoding} of texts")
        values = decode_texts(cursor, encoding, rows, False)
    cursor.finish("the values")
    return values


# The main file


@dataclass
class Column:
    name: str
    type: str
    argument: int
    position: int
    storage: int
    set: int = 0
    values: list = field(default_factory=list)
    heads: list = field(default_factory=list)  # the first bytes of each chunk, uncompressed


@dataclass
class Entry:
    column: Column
    position: int
    missing: bool
    statistics: tuple


@dataclass
class Block:
    rows: int
    offsets: list
    entries: list  # of each set


@dataclass
class Table:
    complete: bool
    rows_in_block: int
    sets: list
    blocks: list
    columns: list
    slots: list
    records: list  # the number of descriptors in each
    ended: bool


def side_file(path, set_number):
    cut = path.rfind(".")
    stem = path[:cut] if cut > max(path.rfind("/"), path.rfind("\\")) else path
    endings = [".cs", ".cs_kelvarin"]
    if "kelvarin" in os.path.basename(path):
        endings.reverse()
    names = [f"{stem}.{set_number:03}{ending}" for ending in endings]
    return next(filter(os.path.exists, names), names[0])


def read_metadata(cursor, column_count):
    rows_in_block, set_count = cursor.unpack("IB")
    demand(rows_in_block > 0 and set_count > 0, "no rows in a block, or no sets")
    columns = []
    for _ in range(column_count):
        position, kind, zeros, argument, length = cursor.unpack("IB3siI")
        name = cursor.take(length).decode("utf-8", errors="replace")
        storage = cursor.unpack("B")
        demand(zeros == bytes(3) and chr(kind) in "FKU", f"column {name} has no known type")
        demand((storage in (1, 2, 3)) if chr(kind) == "K" else storage == 0, f"storage code {storage} of {name}")
        columns.append(Column(name, chr(kind), argument, position, storage))
    counts = cursor.array(set_count, "I") if set_count > 1 else [column_count]
    demand(sum(counts) == column_count and counts[-1] > 0, "the sets do not have all columns")
    sets, begin = [], 0
    for number, count in enumerate(counts):
        sets.append(columns[begin:begin + count])
        for column in sets[-1]:
            column.set = number
        begin += count
    return rows_in_block, sets


def read_statistics(cursor, column):
    if column.type == "K":
        return cursor.unpack("II")
    if column.type == "F":
        return cursor.unpack("Bdd")
    low_state, low_length, low, high_state, high_length, high = cursor.unpack("BB80sBB80s")
    demand(low_state <= 2 and low_length <= 80 and not any(low[low_length:]), "a bound of no text")
    demand(high_state <= 2 and high_length <= 80 and not any(high[high_length:]), "a bound of no text")
    return (low_state, low[:low_length]), (high_state, high[:high_length])


def read_descriptor(cursor, sets):
    block = Block(cursor.unpack("I"), [], [])
    for columns in sets:
        offset = cursor.unpack("Q")
        block.offsets.append(offset & 2**63 - 1)
        entries, before = [], 0
        for column in columns:
            position, missing = cursor.unpack("IB")
            demand(missing <= 1, "a flag that is neither 0 nor 1")
            before = position + (before if offset >> 63 else 0)
            entries.append(Entry(column, before, bool(missing), read_statistics(cursor, column)))
        block.entries.append(entries)
    return block


def descriptor_width(sets):
    return 4 + sum(8 + sum(5 + STATISTICS_BYTES[column.type] for column in columns) for columns in sets)


def read_records(cursor, sets, complete):
    """The descriptors of each record, and whether the end marker was met. A record may be cut in an incomplete file."""
    width = descriptor_width(sets)
    limit = max(16 * 2**20 // width, 1000) * width
    records = []
    while cursor.left() >= 8:
        if cursor.data[cursor.at:cursor.at + 8] == END_MARKER:
            return records, True
        length, expected = cursor.unpack("II")
        if length > cursor.left() and not complete:
            break
        payload = cursor.take(length)
        demand(checksum(payload) == expected, "checksum of a descriptor record")
        raw, used = snappy(payload, limit)
        demand(used == length and len(raw) % width == 0 and raw, "a descriptor record of no descriptors")
        descriptors = Bytes(raw)
        records.append([read_descriptor(descriptors, sets) for _ in range(len(raw) // width)])
    demand(not complete, "the end marker is missing")
    return records, False


def read_main(path):
    with open(path, "rb") as file:
        cursor = Bytes(file.read())
    magic, complete, length, rows, column_count, _, _ = cursor.unpack("IBIQIII")
    demand(magic == MAGIC, "not a columnar Gel file")
    demand(complete <= 1, "the complete flag is neither 0 nor 1")
    slots = cursor.array(2 * column_count, "I")
    rows_in_block, sets = read_metadata(Bytes(cursor.take(length + 9 - cursor.at)), column_count)
    records, ended = read_records(cursor, sets, complete)
    blocks = [block for record in records for block in record]
    demand(all(block.rows == rows_in_block for block in blocks[:-1]), "a short block before the last one")
    demand(all(0 < block.rows <= rows_in_block for block in blocks), "a block of too many rows or none")
    demand(not complete or sum(block.rows for block in blocks) == rows, "rows of the blocks and of the header")
    columns = sorted((column for members in sets for column in members), key=lambda column: column.position)
    sizes = [len(record) for record in records]
    return Table(bool(complete), rows_in_block, sets, blocks, columns, slots, sizes, ended)


# The side files


def read_block(table, number, members, data):
    """Decodes the columns of one set in one block."""
    block = table.blocks[number]
    at = members[0].set
    entries, begin = block.entries[at], block.offsets[at]
    following = number + 1 < len(table.blocks)
    ends = [begin + entry.position for entry in entries[1:]]
    ends.append(table.blocks[number + 1].offsets[at] if following else len(data))
    demand(entries[0].position == 0, "the first chunk of a block is not at its begin")
    for entry, end in zip(entries, ends):
        offset = begin + entry.position
        demand(offset <= end <= len(data), "a chunk outside its file")
        if not table.complete and not following and entry is entries[-1]:
            end = offset + 4 + snappy(data[offset + 4:], 2**32 - 1)[1]
        entry.column.values += decode_chunk(data[offset:end], block.rows, entry.column)


def read_table(path):
    table = read_main(path)
    for number, members in enumerate(table.sets):
        if not members:
            continue
        with open(side_file(path, number), "rb") as file:
            data = file.read()
        demand(not table.blocks or table.blocks[0].offsets[number] == 0, "the first block is not at the begin")
        for block in range(len(table.blocks)):
            read_block(table, block, members, data)
    return table


def main():
    table = read_table(sys.argv[1])
    print("complete" if table.complete else "not complete", len(table.blocks), "blocks of", table.rows_in_block, "rows")
    for column in table.columns:
        print(column.type, column.argument, "storage", column.storage, "set", column.set, column.name)
    for row in zip(*(column.values for column in table.columns)):
        print(*row, sep="\t")


if __name__ == "__main__":
    main()
