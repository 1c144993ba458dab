#!/usr/bin/env python3
"""Makes the data of this example: a day of 200 light sensors, one row an hour.

Usage: make_data.py [FOLDER]. Writes readings.csv and vectors.csv into the folder; without it, into `data` beside this
script.
"""

import csv
import math
import os
import random
import sys

SENSORS = [f"s{number:03}" for number in range(1, 201)]
HOURS = 24


def rows():
    """Counts of the converters: what each sensor shows, and what it would show in full light at that hour."""
    chance = random.Random(200)
    full_light = {sensor: chance.uniform(3000, 4000) for sensor in SENSORS}
    for hour in range(HOURS):
        dark = chance.randint(60, 70)
        light = max(0.0, math.sin((hour - 6) / 12 * math.pi))
        full = {sensor: round(full_light[sensor] - 2 * hour + chance.uniform(-5, 5)) for sensor in SENSORS}
        raw = {sensor: round(dark + (full[sensor] - dark) * light * chance.uniform(0.8, 1)) for sensor in SENSORS}
        raw[chance.choice(SENSORS)] = ""  # every hour one sensor does not answer
        yield [f"2024-06-21 {hour:02}:00", dark] + [raw[s] for s in SENSORS] + [full[s] for s in SENSORS]


def write(file, lines):
    with open(file, "w", encoding="utf-8", newline="") as out:
        csv.writer(out, lineterminator="\n").writerows(lines)


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), "data")
    full = [f"{sensor}_full" for sensor in SENSORS]
    write(os.path.join(folder, "readings.csv"), [["time", "dark"] + SENSORS + full, *rows()])
    write(os.path.join(folder, "vectors.csv"),
          [["alias", "column"]] + [["raw", sensor] for sensor in SENSORS] + [["full", column] for column in full])


if __name__ == "__main__":
    main()
