"""Encoded texts of columnar Gel files, read by what docs/gel-format.md says and nothing else."""

import datetime
from itertools import accumulate

from gel_codes import Bytes, codes_of, demand, indices_of, packed_bits
from gel_integers import huffman_symbols, integer_column, short_number


def lengths_of(cursor, count):
    """None for the null text."""
    width = cursor.unpack("B")
    demand(width in (0, 1, 2, 4), f"lengths of {width} bytes")
    lengths = [cursor.unpack("I")] * count if width == 0 else cursor.array(count, {1: "B", 2: "H", 4: "I"}[width])
    null = (1 << 8 * (width or 4)) - 1
    return [None if length == null else length for length in lengths]


def plain_texts(cursor, rows):
    return [None if length is None else cursor.take(length) for length in lengths_of(cursor, rows)]


def front_coded_texts(cursor, count):
    lengths = lengths_of(cursor, count)
    bits = cursor.unpack("B")
    demand(bits <= 8, f"counts of {bits} bits")
    texts, before = [], b""
    for length, shared in zip(lengths, codes_of(cursor, bits, count)):
        demand(shared <= min(len(before), length or 0), "more bytes in common than a text has")
        before = before[:shared] + cursor.take((length or 0) - shared)
        texts.append(None if length is None else before)
    return texts


def coded_entries(cursor, count):
    begin = Bytes(cursor.data[cursor.at:])
    shared = huffman_symbols(cursor, count)
    sizes = huffman_symbols(cursor, count)
    demand(max(shared) < 256, "more bytes in common than there can be")
    own_size = sum(max(size - 1, 0) for size in sizes)
    demand_small(begin, sum(shared) + own_size + 4 * count)
    symbols = huffman_symbols(cursor, own_size) if own_size else []
    demand(max(symbols, default=0) < 256, "a byte of more than 8 bits")
    own = Bytes(bytes(symbols))
    texts, before = [], b""
    for common, size in zip(shared, sizes):
        demand(common <= (len(before) if size else 0), "more bytes in common than a text has")
        before = before[:common] + own.take(max(size - 1, 0))
        texts.append(before if size else None)
    return texts


def dictionary_texts(cursor, rows):
    size = cursor.unpack("H") + 1
    indices = indices_of(cursor, 16, rows, size)
    entries = front_coded_texts(cursor, size)
    return [entries[index] for index in indices]


def demand_small(cursor, size):
    demand(size <= 2**26 + 256 * cursor.left(), "more memory than so few bytes account for")


def encoded_dictionary_texts(cursor, rows, inside):
    begin = Bytes(cursor.data[cursor.at:])
    stated, last = cursor.unpack("IH")
    demand(stated == rows, "another number of texts")
    constant = cursor.data[cursor.at:cursor.at + 1] == b"\0"
    indices = integer_column(cursor, rows, last + 1)
    if not constant:
        demand_small(begin, 4 * rows)
    entries = nested_texts(cursor, last + 1, (0, 3, 5, 6) if inside else (0, 2, 3, 5, 6))
    return [entries[index] for index in indices]


def nested_texts(cursor, count, allowed):
    nested = Bytes(cursor.take(short_number(cursor)))
    encoding = nested.unpack("B")
    demand(encoding in allowed, f"encoding {encoding} inside another one")
    texts = decode_texts(nested, encoding, count, True)
    nested.finish("nested texts")
    return texts


def compile_moment(pattern):
    """The begin and end of each component, and what stands between them."""
    components, size, literals = {}, 0, []
    for byte in pattern:
        width = 4 if byte == 0 else 2 if byte < 6 else 1
        if byte > 6:
            literals.append((size, byte))
        elif byte == 6 and 6 in components:
            demand(components[6][1] == size, "digits of a fraction apart")
            components[6] = components[6][0], size + 1
        else:
            demand(byte not in components, "a component twice")
            components[byte] = size, size + width
        size += width
    date, time = {0, 1, 2} & components.keys(), {3, 4} & components.keys()
    demand(len(date) in (0, 3) and len(time) in (0, 2) and (date or time), "components of no moment")
    demand(5 not in components or time, "seconds without minutes")
    demand(6 not in components or 5 in components and components[6][1] - components[6][0] <= 7, "a fraction of nothing")
    demand(size <= 32, "a moment that is too long")
    return components, size, literals


def moment_limit(components):
    fraction = components.get(6, (0, 0))
    day = 86400 if 5 in components else 1440 if 3 in components else 1
    return (3652425 if 0 in components else 1) * day * 10 ** (fraction[1] - fraction[0])


def date_of(days):
    """Year, month and day. Python's calendar begins with year 1, but repeats itself after 400 years."""
    shift = 400 if days < 366 else 0
    date = datetime.date.fromordinal(days - 365 + shift // 400 * 146097)
    return date.year - shift, date.month, date.day


def print_moment(compiled, moment):
    components, size, literals = compiled
    text = bytearray(size)
    for position, byte in literals:
        text[position] = byte
    parts = {}
    for component, unit in ((6, None), (5, 60), (4, 60), (3, 24)):
        if component in components:
            begin, end = components[component]
            moment, parts[component] = divmod(moment, unit or 10 ** (end - begin))
    if 0 in components:
        parts[0], parts[1], parts[2] = date_of(moment)
    for component, part in parts.items():
        begin, end = components[component]
        text[begin:end] = b"%0*d" % (end - begin, part)
    return bytes(text)


def varying_digits(number):
    width = 1
    while number >= (10 ** (width + 1) - 10) // 9:
        width += 1
    return b"%0*d" % (width, number - (10**width - 10) // 9)


def read_piece(cursor):
    """A function that reads the values of a piece for so many rows."""
    kind = cursor.unpack("B")
    demand(kind <= 8, f"a piece of kind {kind}")
    if kind in (0, 7):
        literal = cursor.take(cursor.unpack("B"))
    width = cursor.unpack("B") if kind in (1, 4, 5, 6) else 1
    demand(1 <= width <= {1: 18, 6: 17}.get(kind, 16), f"{width} digits")
    separator = cursor.take(1) if kind == 6 else b""

    def numbers(limit, printed):
        return lambda columns, rows: [printed(number) for number in integer_column(columns, rows, limit)]

    def decimal(number):
        return b"%d%s%0*d" % (number // 10**width, separator, width, number % 10**width)

    def texts(columns, rows):
        values = nested_texts(columns, rows, (0, 1, 3, 4))
        demand(None not in values, "a null text in a field")
        return values

    if kind == 0:
        return lambda columns, rows: [literal] * rows
    if kind == 7:
        compiled = compile_moment(literal)
        return numbers(moment_limit(compiled[0]), lambda number: print_moment(compiled, number))
    if kind == 8:
        return texts
    return {1: numbers(10**width, lambda number: b"%0*d" % (width, number)),
            2: numbers(10**18, lambda number: b"%d" % number),
            3: numbers((10**19 - 10) // 9, varying_digits),
            4: numbers(16**width, lambda number: b"%0*x" % (width, number)),
            5: numbers(16**width, lambda number: b"%0*X" % (width, number)),
            6: numbers(10**18, decimal)}[kind]


def shaped_texts(cursor, rows):
    begin = Bytes(cursor.data[cursor.at:])
    stated, size = cursor.unpack("II")
    demand(stated == rows, "another number of texts")
    demand_small(begin, size + 4 * rows)
    templates = []
    for _ in range(cursor.unpack("B")):
        pieces = cursor.unpack("B")
        demand(pieces <= 96, f"{pieces} pieces")
        templates.append([read_piece(cursor) for _ in range(pieces)])
    demand(1 <= len(templates) <= 16, f"{len(templates)} templates")
    numbers = integer_column(cursor, rows, len(templates) + 2)
    texts = []
    for number, pieces in enumerate(templates):
        count = numbers.count(number)
        demand(count > 0, "a template of no text")
        columns = [piece(cursor, count) for piece in pieces]
        texts.append([b"".join(values) for values in zip(*columns)] if columns else [b""] * count)
    texts.append([None] * numbers.count(len(templates)))
    others = numbers.count(len(templates) + 1)
    texts.append(nested_texts(cursor, others, (0, 1, 3, 4)) if others else [])
    demand(sum(len(text) for group in texts for text in group if text) == size, "another number of bytes")
    demand(None not in texts[-1], "a null text among those of no shape")
    each = [iter(group) for group in texts]
    return [next(each[number]) for number in numbers]


def symbol_table(cursor):
    """Pairs of bytes and whether a text ends behind them; None instead of the bytes for the null text."""
    has_null, plain, ending = cursor.unpack("BHH")
    demand(has_null <= 1 and 0 < plain + ending <= 4096 - has_null, "the size of a table of symbols")
    sizes = huffman_symbols(cursor, plain + ending)
    own_size = sum(size & 15 for size in sizes)
    own = Bytes(bytes(huffman_symbols(cursor, own_size) if own_size else []))
    table, before = [], b""
    for index, size in enumerate(sizes):
        demand(size >> 4 <= len(before), "more bytes in common than a symbol has")
        before = before[:size >> 4] + own.take(size & 15)
        ends = index >= plain
        demand(len(before) <= 12 if ends else 0 < len(before) <= 15, f"a symbol of {len(before)} bytes")
        table.append((before, ends))
    return table + [(None, True)] * has_null


def symbols_of_part(cursor):
    """Bytes and whether a text ends behind them, for each symbol of a part."""
    count = cursor.unpack("I")
    table = symbol_table(cursor)
    symbols = huffman_symbols(cursor, count)
    demand(0 <= max(symbols, default=-1) < len(table), "a symbol beyond the table, or none")
    demand(count == 1 or len(set(symbols)) > 1, "one symbol only")
    return [table[index] for index in symbols]


def symbol_texts(cursor, rows):
    size = cursor.unpack("I")
    texts, parts = [], []
    while cursor.left():
        for symbol, ends in symbols_of_part(cursor):
            parts.append(symbol)
            if ends:
                demand(parts == [None] or None not in parts, "a null text with bytes")
                texts.append(None if parts == [None] else b"".join(parts))
                parts = []
    demand(len(texts) == rows and not parts, f"{len(texts)} texts of symbols in a block of {rows} rows")
    demand(sum(len(text or b"") for text in texts) == size, "the size of texts of symbols")
    return texts


TEXT_ENCODINGS = {0: plain_texts, 1: dictionary_texts, 2: shaped_texts, 3: symbol_texts, 5: front_coded_texts,
                  6: coded_entries}


def decode_texts(cursor, encoding, count, inside):
    if encoding == 4:
        return encoded_dictionary_texts(cursor, count, inside)
    return TEXT_ENCODINGS[encoding](cursor, count)
