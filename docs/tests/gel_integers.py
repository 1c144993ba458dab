"""Whole numbers in encoded values of columnar Gel files, read by what docs/gel-format.md says and nothing else."""

from itertools import accumulate

from gel_codes import codes_of, demand, packed_bits


def zigzag_integer(code):
    return -(code + 1 >> 1) if code & 1 else code >> 1


def short_number(cursor):
    value = shift = 0
    while True:
        byte = cursor.take(1)[0]
        value |= (byte & 0x7F) << shift
        shift += 7
        demand(value < 2**64, "a number of more than 64 bits")
        if byte < 0x80:
            return value


def huffman_symbols(cursor, count):
    head = cursor.unpack("H")
    last = head & 0x7FFF
    demand(last < 4096, f"an alphabet of {last + 1} symbols")
    if head & 0x8000:
        return [last] * count
    lengths = packed_bits(cursor, 4, last + 1)
    demand(max(lengths) <= 14 and sum(2**-length for length in lengths if length) == 1, "lengths of Huffman codes")
    symbol_of, code, before = {}, -1, 0
    for length, symbol in sorted((length, symbol) for symbol, length in enumerate(lengths) if length):
        code = code + 1 << length - before
        before = length
        symbol_of[length, code] = symbol
    symbols = [0] * count
    for first, size in enumerate(cursor.array(4, "H" if count <= 100000 else "I")):
        stream = cursor.take(size)
        at = 0
        for index in range(first, count, 4):
            code = length = 0
            while (length, code) not in symbol_of:
                demand(at < 8 * size, "a stream of Huffman codes is too short")
                code = code << 1 | stream[at >> 3] >> (at & 7) & 1
                length, at = length + 1, at + 1
            symbols[index] = symbol_of[length, code]
        demand(-(-at // 8) == size, "bytes after the last Huffman code")
    return symbols


def runs_of(cursor, bits, count):
    values, shift = [0] * count, 0
    while shift < bits:
        left = bits - shift
        width = 32 if left >= 32 else 16 if left > 24 else left
        values = [value | code << shift for value, code in zip(values, codes_of(cursor, width, count))]
        shift += width
    return values


def packed_numbers(cursor, count):
    head = cursor.unpack("B")
    bits = head & 0x7F
    demand(bits <= 64, f"numbers of {bits} bits")
    upper = huffman_symbols(cursor, count) if head & 0x80 else [0] * count
    values = [low | high << bits for low, high in zip(runs_of(cursor, bits, count), upper)]
    demand(max(values) < 2**64, "a number of more than 64 bits")
    return values


def integer_column(cursor, count, limit):
    """`count` numbers below the limit."""
    layout = cursor.unpack("B")
    demand(count > 0 and layout <= 3, f"layout {layout} of {count} numbers")
    if layout == 0:
        numbers = [short_number(cursor)] * count
    elif layout == 1:
        base = short_number(cursor)
        numbers = [base + number & 2**64 - 1 for number in packed_numbers(cursor, count)]
    elif layout == 2:
        demand(count > 1, "differences of one number")
        first, code = short_number(cursor), short_number(cursor)
        steps = [first] + [zigzag_integer(code) + number for number in packed_numbers(cursor, count - 1)]
        numbers = [number & 2**64 - 1 for number in accumulate(steps)]
    else:
        size = short_number(cursor) + 1
        demand(size <= 4096, f"a dictionary of {size} numbers")
        entries = [entry & 2**64 - 1 for entry in accumulate(short_number(cursor) for _ in range(size))]
        indices = packed_numbers(cursor, count)
        demand(max(indices) < size, "an index beyond the dictionary")
        numbers = [entries[index] for index in indices]
    demand(max(numbers) < limit, "a number beyond its limit")
    return numbers
