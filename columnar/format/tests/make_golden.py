#!/usr/bin/env python3
"""Makes the columnar files in golden/, from docs/gel-format.md and nothing else.

It shares no line with the program, so that files which both understand show that the description is
true. Every storage code and every encoding occurs, both forms of the header, a column set without
columns, and chunk positions as deltas. The files are kept for ever: a program that does not read them
any more cannot read its users' files.

usage: make_golden.py FOLDER
"""
import math
import os
import struct
import sys
from pathlib import Path

ROWS, ROWS_IN_BLOCK = 300, 150
NULL_KEY, OTHER_NULL_KEY = 0xFFFFFFFF, 0xFFFFFFFE
NULL_NUMBER = 0xFFFFFFFFFFFFFFFF  # numbers are handled by their bits
SETS = 3  # the second one is empty


def bits(number):
    return struct.unpack('<Q', struct.pack('<d', number))[0]


# The table, a function of the row for each column.

def key(row):
    if row == 7:
        return OTHER_NULL_KEY
    return NULL_KEY if row % 10 == 3 else 4000000000 if row == 50 else row * row * 31 % 5000


def ascending(row):
    return NULL_KEY if row < 2 else row * 3


def descending(row):
    return NULL_KEY if row >= 298 else 100000 - 2 * row


def plain(row):
    return bits(row / 3.0)


def scaled(row):
    return NULL_NUMBER if row % 7 == 0 else bits((500 + 25 * row) / 100.0)


def few(row):
    return [bits(-0.0), 0x7FF8000000000123, bits(1e300)][row % 3]


def significance(row):
    return bits(1000.0 + row * 1e-9)


def sparse(row):
    return bits(float(row)) if row % 50 == 1 else bits(0.0)


def near(row):
    return NULL_NUMBER if row % 9 == 4 else bits(((row * 7 % 30) - (row * 3 % 20)) / 100.0)


def text(row):
    return {5: None, 6: b''}.get(row % 11, 'row é {}'.format(row).encode())


def city(row):
    return [b'Bern', b'Berlin', None, b''][row % 4]


# Snappy streams of literals alone, and the checksum.

def snappy(raw):
    out, size = bytearray(), len(raw)
    while size >= 0x80:
        out.append(size & 0x7F | 0x80)
        size >>= 7
    out.append(size)
    for start in range(0, len(raw), 60):
        piece = raw[start:start + 60]
        out.append((len(piece) - 1) << 2)
        out += piece
    return bytes(out)


def checksum(data):
    data += bytes(-len(data) % 8)
    first = second = 0
    for (word,) in struct.iter_unpack('<H', data):
        first += word
        second += first
    while first > 0xFFFF:
        first = (first & 0xFFFF) + (first >> 16)
    while second > 0xFFFF:
        second = (second & 0xFFFF) + (second >> 16)
    return second << 16 | first


def u32s(words):
    return struct.pack('<%dI' % len(words), *words)


def padded(data):
    return data + bytes(-len(data) % 4)


# The integer codecs.

def tail(keys):
    out = bytearray()
    for value in keys:
        while value >= 0x80:
            out.append(value & 0x7F)
            value >>= 7
        out.append(value | 0x80)
    return padded(bytes(out))


def packed_group(keys, width):
    words = [0] * (4 * width)
    for lane in range(4):
        row = sum((value & (1 << width) - 1) << width * i for i, value in enumerate(keys[lane::4]))
        for word in range(width):
            words[4 * word + lane] = row >> 32 * word & 0xFFFFFFFF
    return u32s(words)


def packed_exceptions(parts, width):
    out = u32s([len(parts)])
    while len(parts) >= 128:
        out += packed_group(parts[:128], width)
        parts = parts[128:]
    for start in range(0, len(parts), 32):
        piece = parts[start:start + 32]
        row = sum(value << width * i for i, value in enumerate(piece))
        count = width if len(piece) == 32 else (len(piece) * width + 31) // 32
        out += u32s([row >> 32 * word & 0xFFFFFFFF for word in range(count)])
    return out


def plain_keys(keys):
    whole = len(keys) // 128 * 128
    groups, about, exceptions = b'', b'', {}
    for start in range(0, whole, 128):
        group = keys[start:start + 128]
        widest = max(value.bit_length() for value in group)
        width = min(13, widest)  # what is larger becomes an exception
        groups += packed_group(group, width)
        positions = [i for i, value in enumerate(group) if value >> width]
        about += bytes([width, len(positions)])
        if positions:
            about += bytes([widest] + positions)
            if widest - width > 1:
                exceptions.setdefault(widest - width, []).extend(group[i] >> width for i in positions)
    page = u32s([len(groups) // 4 + 1]) + groups + u32s([len(about)]) + padded(about)
    page += u32s([sum(1 << width - 1 for width in exceptions)])
    for width in sorted(exceptions):
        page += packed_exceptions(exceptions[width], width)
    return u32s([whole]) + page + tail(keys[whole:])


def deltas(keys):
    return [(value - before) % 2 ** 32 for value, before in zip(keys, [0] + keys)]


def sorted_keys(keys):
    whole = len(keys) // 128 * 128
    out, packed = u32s([whole]), deltas(keys[:whole])
    for start in range(0, whole, 128 * 16):
        groups = [packed[i:i + 128] for i in range(start, min(start + 128 * 16, whole), 128)]
        widths = [max(value.bit_length() for value in group) for group in groups]
        head = bytes(widths + [0] * (16 - len(widths)))
        out += b''.join(head[i:i + 4][::-1] for i in range(0, 16, 4))
        out += b''.join(packed_group(group, width) for group, width in zip(groups, widths))
    return out + tail(deltas(keys[whole:]))


# The encodings. Every code here has less than 8 bits or whole bytes; small ones fill bytes from the
# lowest bit on.

def small_codes(codes, width):
    row = sum(code << width * i for i, code in enumerate(codes))
    return row.to_bytes((len(codes) * width + 7) // 8, 'little')


def hundredths(number):
    return round(struct.unpack('<d', struct.pack('<Q', number))[0] * 100)


def plain_numbers(numbers):
    return b'\0' + struct.pack('<%dQ' % len(numbers), *numbers)


def frame_of_reference(numbers):
    codes = [0xFFFF if n == NULL_NUMBER else hundredths(n) - 500 for n in numbers]
    return b'\1' + struct.pack('<BBBq', 2, 16, 1, 500) + struct.pack('<%dH' % len(codes), *codes)


def delta(numbers):
    codes, before = [], 0
    for number in numbers:
        step = 0 if number == NULL_NUMBER else hundredths(number) - before
        before += step
        codes.append(0x7F if number == NULL_NUMBER else 2 * step if step >= 0 else -2 * step - 1)
    return b'\5' + struct.pack('<BBBq', 2, 7, 1, 0) + small_codes(codes, 7)


def dictionary(numbers):
    entries = sorted(set(numbers))
    codes = small_codes([entries.index(n) for n in numbers], 2)
    return b'\2' + bytes([len(entries) - 1, 2]) + codes + plain_numbers(entries)


def byte_stream_split(numbers):
    as_bytes = [struct.pack('>Q', n) for n in numbers]
    planes = b''.join(bytes(n[plane] for n in as_bytes) for plane in range(2))
    return b'\3\2' + planes + b''.join(n[:1:-1] for n in as_bytes)


def sparse_numbers(numbers):
    most = bits(0.0)
    marks = small_codes([int(n != most) for n in numbers], 1)
    return b'\4' + struct.pack('<Q', most) + marks + plain_numbers([n for n in numbers if n != most])


def stored_texts(texts):
    lengths = bytes(0xFF if t is None else len(t) for t in texts)
    return b'\1' + lengths + b''.join(t or b'' for t in texts)


def plain_texts(texts):
    return b'\0' + stored_texts(texts)


def text_dictionary(texts):
    entries = list(dict.fromkeys(texts))
    commons, before = [], b''
    for entry in (t or b'' for t in entries):
        commons.append(len(os.path.commonprefix([before, entry])))
        before = entry
    lengths = bytes(0xFF if t is None else len(t) for t in entries)
    rests = b''.join((t or b'')[common:] for t, common in zip(entries, commons))
    return (b'\1' + struct.pack('<HB', len(entries) - 1, 8) + bytes(entries.index(t) for t in texts) +
            b'\1' + lengths + b'\3' + small_codes(commons, 3) + rests)


# The column statistics.

def key_statistics(keys):
    present = [k for k in keys if k < OTHER_NULL_KEY]
    low, high = (min(present), max(present)) if present else (NULL_KEY, NULL_KEY)
    return struct.pack('<BII', len(present) < len(keys), low, high)


def number_statistics(numbers):
    doubles = [struct.unpack('<d', struct.pack('<Q', n))[0] for n in numbers if n != NULL_NUMBER]
    present = [d for d in doubles if not math.isnan(d)]
    flags = (1 if present else 0) | (2 if len(present) < len(doubles) else 0)
    low, high = (min(present), max(present)) if present else (0.0, 0.0)
    return struct.pack('<BBdd', NULL_NUMBER in numbers, flags, low, high)


def text_statistics(texts):
    present = [t for t in texts if t is not None]
    bounds = b''.join(bytes([1, len(t)]) + t.ljust(80, b'\0') for t in (min(present), max(present)))
    return bytes([None in texts]) + bounds


# Name, position in the rows, column set, type, storage code, values, encoding, statistics.
COLUMNS = [
    ('k', 7, 0, 'K', 1, key, plain_keys, key_statistics),
    ('up', 8, 0, 'K', 2, ascending, sorted_keys, key_statistics),
    ('down', 9, 0, 'K', 3, descending, lambda keys: sorted_keys(keys[::-1]), key_statistics),
    ('plain', 5, 0, 'F', 0, plain, plain_numbers, number_statistics),
    ('scaled', 6, 0, 'F', 0, scaled, frame_of_reference, number_statistics),
    ('few', 2, 2, 'F', 0, few, dictionary, number_statistics),
    ('bytes', 3, 2, 'F', 0, significance, byte_stream_split, number_statistics),
    ('sparse', 4, 2, 'F', 0, sparse, sparse_numbers, number_statistics),
    ('near', 10, 2, 'F', 0, near, delta, number_statistics),
    ('text', 0, 2, 'U', 0, text, plain_texts, text_statistics),
    ('city', 1, 2, 'U', 0, city, text_dictionary, text_statistics),
]


def block(first, sides, has_deltas):
    """The descriptor of the block that begins at a row. Its chunks go to the side files."""
    rows = range(first, min(first + ROWS_IN_BLOCK, ROWS))
    descriptor = struct.pack('<I', len(rows))
    for number in range(SETS):
        begin = before = len(sides[number])
        used = has_deltas and number == 2
        descriptor += struct.pack('<Q', begin | used << 63)
        for column in (c for c in COLUMNS if c[2] == number):
            values = [column[5](row) for row in rows]
            position = len(sides[number]) - (before if used else begin)
            before = len(sides[number])
            descriptor += struct.pack('<I', position) + column[7](values)
            stream = snappy(column[6](values))
            sides[number] += struct.pack('<I', checksum(stream)) + stream
    return descriptor


def metadata():
    out = struct.pack('<IB', ROWS_IN_BLOCK, SETS)
    for name, position, _, kind, code, *_ in COLUMNS:
        out += struct.pack('<IB3xiI', position, ord(kind), 0, len(name)) + name.encode() + bytes([code])
    return out + u32s([sum(c[2] == number for c in COLUMNS) for number in range(SETS)])


def write_file(folder, name, is_finished):
    sides = [bytearray() for _ in range(SETS)]
    descriptors = block(0, sides, False) + block(ROWS_IN_BLOCK, sides, True)
    stream = snappy(descriptors)
    record = struct.pack('<II', len(stream), checksum(stream)) + stream
    about = metadata()
    width = len(descriptors) // 2
    capacity = max(16 * 2 ** 20 // width, 1000) * width
    worst = 32 + capacity + capacity // 6 + 8
    sizes = (len(record), len(descriptors)) if is_finished else (capacity, worst)
    slots = len(COLUMNS) * 8  # readers do not use them
    head = struct.pack('<IBIQIII', 0x0059F440, is_finished, 29 - 9 + slots + len(about),
                       ROWS if is_finished else 0, len(COLUMNS), *sizes)
    end = b'\xFF' * 8 if is_finished else b''
    Path(folder, name + '.cgel_kelvarin').write_bytes(head + bytes(slots) + about + record + end)
    for number, content in enumerate(sides):
        if content:
            Path(folder, '%s.%03d.cs_kelvarin' % (name, number)).write_bytes(content)


if __name__ == '__main__':
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    write_file(sys.argv[1], 'finished', True)
    write_file(sys.argv[1], 'killed', False)
