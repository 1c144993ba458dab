#!/usr/bin/env python3
"""Runs the example in a copy of its folder and computes its results again. Usage: sensors_test.py PROGRAM"""

import csv
import filecmp
import json
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

EXAMPLE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PROGRAM = os.path.abspath(sys.argv.pop(1))


class SensorsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = os.path.join(folder.name, "sensors")
        shutil.copytree(EXAMPLE, self.folder)

    def kelvarin(self, command):
        result = subprocess.run([PROGRAM, command, "sensors.kelvarin", "--json"], cwd=self.folder, capture_output=True,
                                text=True, timeout=60)
        self.assertEqual(result.returncode, 0, result.stderr)
        report = json.loads(result.stdout)
        self.assertEqual(report["log"], [])
        return next(action for action in report["actions"] if action["name"] == "normalise")

    def test_every_sensor_is_normalised_by_its_own_column(self):
        self.assertEqual(self.kelvarin("run")["backends"], ["Fastest Parser"])
        with open(os.path.join(self.folder, "out", "shares.csv"), encoding="utf-8", newline="") as file:
            rows = list(csv.DictReader(file))
        self.assertEqual(len(rows), 24)
        for row in rows:
            for sensor in (f"s{number:03}" for number in range(1, 201)):
                share = row[sensor + "_share"]
                if row[sensor] == "":
                    self.assertEqual(share, "")
                    continue
                raw, full, dark = (float(row[name]) for name in (sensor, sensor + "_full", "dark"))
                self.assertEqual(float(share), (raw - dark) / (full - dark))

    def test_a_check_names_the_new_columns(self):
        names = self.kelvarin("check")["newColumns"]
        self.assertEqual(names, [f"s{number:03}_share" for number in range(1, 201)])

    def test_the_data_is_what_its_script_makes(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([sys.executable, os.path.join(EXAMPLE, "make_data.py"), folder], check=True, timeout=60)
            for name in ("readings.csv", "vectors.csv"):
                self.assertTrue(filecmp.cmp(os.path.join(EXAMPLE, "data", name), os.path.join(folder, name), False))


if __name__ == "__main__":
    unittest.main()
