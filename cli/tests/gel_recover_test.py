"""Recovers tables whose writer was killed, or whose descriptors or values are damaged."""

import csv
import os
import random
import signal
import struct
import subprocess
import time
import unittest

from program import PROGRAM, ProgramTest, graph

COLUMNS = "".join(f"<Column name='{name}' meta='{meta}'/>" for name, meta in
                  (("id", "K"), ("price", "F"), ("flag", "F"), ("name", "U")))


def row(i):
    return [str(i), f"{i * 37 % 1000 / 4:g}", str(i % 2), "" if i % 7 == 3 else f"name {i * i % 89}"]


class GelRecoverTest(ProgramTest):
    def make(self, rows, rows_in_block, strategy=0):
        """A table of several types, and with strategy 2 a column set for each column."""
        self.write("t.csv", "id,price,flag,name\n" + "".join(",".join(row(i)) + "\n" for i in range(rows)))
        self.write("make.kelvarin", graph(
            f"<ReadCSV name='in' file='t.csv' sortedOn='id 0'>{COLUMNS}</ReadCSV>"
            f"<writeColumnarGel name='out' file='t.cgel_kelvarin' nRowsInBlock='{rows_in_block}' "
            f"columnStrategy='{strategy}'/>", ["in out"]))
        self.kelvarin("run", "make.kelvarin", "--quiet")
        self.sides = sorted(name for name in self.files() if name.endswith(".cs_kelvarin"))
        main = self.bytes("t.cgel_kelvarin")
        self.head = struct.unpack_from("<I", main, 5)[0] + 9
        self.ends = []  # of each block's chunks, by side file
        if rows_in_block > 1:
            self.table = self.kelvarin_json("gel", "info", "t.cgel_kelvarin", "--blocks")

    def bytes(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def put(self, name, data):
        with open(self.path(name), "wb") as file:
            file.write(data)

    def kill_writer(self, kept=None):
        """Leaves what a writer has on the disk before it writes its first descriptor record."""
        main = self.bytes("t.cgel_kelvarin")
        self.put("t.cgel_kelvarin", main[:4] + b"\0" + main[5:9] + bytes(8) + main[17:kept or self.head])

    def recovered(self, status=0, out="back.csv"):
        result = self.kelvarin("gel", "recover", "t.cgel_kelvarin", out, status=status)
        if not out.endswith(".csv"):
            self.assertIn("no damage", self.kelvarin("gel", "verify", out).stdout)
            self.kelvarin("gel", "export", out, "back.csv")
        with open(self.path("back.csv"), encoding="utf-8", newline="") as file:
            return list(csv.reader(file))[1:], result.stderr

    def expect(self, rows, **options):
        found, shown = self.recovered(**options)
        self.assertEqual(found, [row(i) for i in rows])
        return shown

    def block_ends(self, side):
        """Where each block ends in a set's side file."""
        columns = [i for i, column in enumerate(self.table["columns"]) if column["set"] == side]
        ends, end = [], 0
        for block in self.table["blocks"]:
            end += sum(block["columns"][i]["bytes"] for i in columns)
            ends.append(end)
        return ends

    def test_a_killed_writer_loses_no_whole_block(self):
        for strategy in (0, 2):
            for rows in (1, 100, 1000, 1003, 1127):
                self.make(rows, 100, strategy)
                self.kill_writer()
                shown = self.expect(range(rows), out="back.cgel_kelvarin")
                blocks = -(-rows // 100)
                self.assertIn("had no sound descriptor", shown)
                self.assertIn(f"in {blocks} block{'s' * (blocks > 1)} recovered to 'back.cgel_kelvarin'", shown)

    def test_side_files_that_end_anywhere(self):
        chance = random.Random(5)
        for strategy in (0, 2):
            self.make(1000, 64, strategy)
            self.kill_writer(self.head + 5)
            whole = {side: self.bytes(side) for side in self.sides}
            for _ in range(25):
                kept = []
                for number, side in enumerate(self.sides):
                    size = chance.randrange(len(whole[side]) + 1)
                    self.put(side, whole[side][:size])
                    kept.append(sum(end <= size for end in self.block_ends(number)))
                blocks = min(kept)
                if blocks == 0:
                    shown = self.kelvarin("gel", "recover", "t.cgel_kelvarin", "none.csv", status=1).stderr
                    self.assertIn("has no whole block of rows", shown)
                else:
                    self.expect(range(min(64 * blocks, 1000)))

    def test_damaged_descriptors_of_a_finished_table(self):
        for strategy in (0, 2):
            self.make(1000, 64, strategy)
            main = self.bytes("t.cgel_kelvarin")
            self.put("t.cgel_kelvarin", main[:self.head + 9] + bytes([main[self.head + 9] ^ 1]) + main[self.head + 10:])
            self.assertIn("in 16 blocks", self.expect(range(1000)))
            self.put("t.cgel_kelvarin", main[:self.head])
            self.expect(range(1000))
            self.put("t.cgel_kelvarin", main)
            self.assertNotIn("descriptor", self.expect(range(1000)))

    def test_a_damaged_record_among_others(self):
        columns = 100  # so wide that 1000 blocks fill a record
        lines = [",".join(f"{i} {column}" for column in range(columns)) for i in range(2300)]
        self.write("t.csv", ",".join(f"c{column}" for column in range(columns)) + "\n" + "\n".join(lines) + "\n")
        self.write("make.kelvarin", graph("<ReadCSV name='in' file='t.csv'/><writeColumnarGel name='out' "
                                          "file='t.cgel_kelvarin' nRowsInBlock='1'/>", ["in out"]))
        self.kelvarin("run", "make.kelvarin", "--quiet")
        main = self.bytes("t.cgel_kelvarin")
        records, at = [], struct.unpack_from("<I", main, 5)[0] + 9
        while main[at:at + 8] != b"\xff" * 8:
            records.append(at)
            at += 8 + struct.unpack_from("<I", main, at)[0]
        self.assertEqual(len(records), 3)
        for number, at in enumerate(records):
            self.put("t.cgel_kelvarin", main[:at + 20] + bytes([main[at + 20] ^ 1]) + main[at + 21:])
            shown = self.kelvarin("gel", "recover", "t.cgel_kelvarin", "back.csv").stderr
            self.assertIn(f"Of them, {300 if number == 2 else 1000} blocks had no sound descriptor", shown)
            self.assertEqual(self.read("back.csv").splitlines()[1:], lines)

    def test_damaged_values(self):
        for strategy in (0, 2):
            for has_descriptors in (True, False):
                self.make(1000, 64, strategy)
                if not has_descriptors:
                    main = self.bytes("t.cgel_kelvarin")
                    self.put("t.cgel_kelvarin", main[:self.head])
                begin, end = self.block_ends(0)[4:6]
                side = self.bytes(self.sides[0])
                lost_one = [i for i in range(1000) if i // 64 != 5]
                # A value, the length of a stream, and all bytes of a part of the block.
                for first, last in ((begin + 12, begin + 13), (begin + 4, begin + 6), (begin, (begin + end) // 2)):
                    changed = bytes(byte ^ 0x55 for byte in side[first:last])
                    self.put(self.sides[0], side[:first] + changed + side[last:])
                    shown = self.expect(lost_one, status=1)
                    self.assertIn("1 block with 64 rows of 't.cgel_kelvarin' could not be recovered.", shown)

    def test_rows_are_never_mixed_up(self):
        """Whatever is damaged, each row that is given is a row of the table, and they are in order."""
        chance = random.Random(6)
        rows = [row(i) for i in range(1000)]
        for strategy in (0, 2):
            self.make(1000, 64, strategy)
            self.kill_writer()
            whole = {side: self.bytes(side) for side in self.sides}
            for _ in range(20):
                for side in self.sides:
                    data = bytearray(whole[side][:chance.randrange(len(whole[side]) // 2, len(whole[side]) + 1)])
                    for _ in range(chance.randrange(3)):
                        at = chance.randrange(len(data))
                        data[at:at + 40] = chance.randbytes(len(data[at:at + 40]))
                    self.put(side, data)
                result = self.run_program("gel", "recover", "t.cgel_kelvarin", "back.csv")
                self.assertIn(result.returncode, (0, 1), result.stderr)
                if "no whole block" in result.stderr:
                    continue
                with open(self.path("back.csv"), encoding="utf-8", newline="") as file:
                    found = list(csv.reader(file))[1:]
                numbers = [int(values[0]) for values in found]
                self.assertEqual(numbers, sorted(set(numbers)))
                self.assertEqual(found, [rows[number] for number in numbers])

    def test_a_long_search_ends_at_an_interrupt(self):
        """In order, which the process does well before it would be cut off."""
        self.make(1000, 64)
        self.kill_writer()
        side = self.bytes(self.sides[0])
        self.put(self.sides[0], side[:400] + bytes(100) + side[500:])
        os.truncate(self.path(self.sides[0]), 4 << 30)  # takes many seconds to search
        self.write("back.csv", "as before\n")
        process = subprocess.Popen([PROGRAM, "gel", "recover", "t.cgel_kelvarin", "back.csv"], cwd=self.folder,
                                   text=True, stderr=subprocess.PIPE)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.kill)
        while self.seconds_computed(process) < 0.3:
            self.assertIsNone(process.poll(), "it ended by itself")
            time.sleep(0.02)
        process.send_signal(signal.SIGINT)
        errors = process.communicate(timeout=60)[1]
        self.assertEqual(process.returncode, 130, errors)
        self.assertIn("Interrupted.", errors)
        self.assertNotIn("cut off", errors)
        self.assertEqual(self.read("back.csv"), "as before\n")

    @staticmethod
    def seconds_computed(process):
        with open(f"/proc/{process.pid}/stat", encoding="utf-8") as file:
            user_ticks = int(file.read().rsplit(")", 1)[1].split()[11])
        return user_ticks / os.sysconf("SC_CLK_TCK")

    def test_wrong_usage(self):
        self.make(100, 64)
        before = {name: self.bytes(name) for name in self.files()}
        os.symlink("t.cgel_kelvarin", self.path("link.cgel_kelvarin"))
        for out in ("t.cgel_kelvarin", "./t.cgel_kelvarin", "link.cgel_kelvarin"):
            shown = self.kelvarin("gel", "recover", "t.cgel_kelvarin", out, status=2).stderr
            self.assertIn("would share the file", shown)
        shown = self.kelvarin("gel", "recover", "t.cgel_kelvarin", "t.000", status=2).stderr
        self.assertIn("It is one of: cgel_kelvarin, csv", shown)
        self.assertEqual({name: self.bytes(name) for name in before}, before)
        os.remove(self.path("t.000.cs_kelvarin"))
        self.assertIn("Cannot open the column-set file 't.000.cs_kelvarin'",
                      self.kelvarin("gel", "recover", "t.cgel_kelvarin", "back.csv", status=1).stderr)
        self.put("t.cgel_kelvarin", before["t.cgel_kelvarin"][:40])
        self.assertIn("its header or column list is damaged",
                      self.kelvarin("gel", "recover", "t.cgel_kelvarin", "back.csv", status=1).stderr)
        self.assertIn("The exit status is 0 when all that the file\ndescribes was recovered",
                      self.kelvarin("gel", "recover", "--help").stdout)


if __name__ == "__main__":
    unittest.main()
