"""Bytes of columnar Gel files with their bounds checked, and codes of a few bits in them."""

import struct


class Damaged(Exception):
    pass


def demand(condition, message):
    if not condition:
        raise Damaged(message)


class Bytes:
    """A cursor that never reads beyond its end."""

    def __init__(self, data):
        self.data, self.at = data, 0

    def take(self, count):
        demand(0 <= count <= self.left(), f"{count} bytes wanted, {self.left()} left")
        self.at += count
        return self.data[self.at - count:self.at]

    def unpack(self, form):
        values = struct.unpack("<" + form, self.take(struct.calcsize("<" + form)))
        return values[0] if len(values) == 1 else values

    def array(self, count, letter):
        return list(struct.unpack(f"<{count}{letter}", self.take(count * struct.calcsize(letter))))

    def left(self):
        return len(self.data) - self.at

    def finish(self, what):
        demand(self.left() == 0, f"{self.left()} bytes are left after {what}")


def packed_bits(cursor, bits, count):
    data = cursor.take(-(-count * bits // 8))
    mask = (1 << bits) - 1
    values = []
    for at in range(0, len(data), bits or 1):  # so many bytes are 8 values
        group = int.from_bytes(data[at:at + bits], "little")
        values += [group >> shift & mask for shift in range(0, 8 * bits, bits)]
    return values[:count] if bits else [0] * count


def codes_of(cursor, bits, count):
    demand(bits <= 24 or bits == 32, f"codes of {bits} bits")
    low = 0 if bits < 8 else 8 if bits < 16 else 16 if bits <= 24 else 32
    codes = cursor.array(count, {8: "B", 16: "H", 32: "I"}[low]) if low else [0] * count
    return [code | high << low for code, high in zip(codes, packed_bits(cursor, bits - low, count))]


def indices_of(cursor, most_bits, rows, size):
    """Codes that are indices of `size` entries."""
    bits = cursor.unpack("B")
    demand(bits <= most_bits and size <= 1 << bits, f"{size} entries in codes of {bits} bits")
    indices = codes_of(cursor, bits, rows)
    demand(max(indices) < size, "a code beyond the dictionary")
    return indices
