#!/usr/bin/env python3
"""Takes the sample of the example: every 17th flight of the full table, and the columns that the graph uses.

Usage: take_sample.py FULL_FLIGHTS.csv SAMPLE.csv
"""

import csv
import sys

COLUMNS = ["month", "day", "hour", "carrier", "flight", "origin", "dest", "dep_delay", "arr_delay",
           "air_time", "distance"]
STEP = 17


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    with open(sys.argv[1], newline="", encoding="utf-8") as full, \
            open(sys.argv[2], "w", newline="", encoding="utf-8") as sample:
        rows = csv.DictReader(full)
        out = csv.DictWriter(sample, COLUMNS, extrasaction="ignore", lineterminator="\n")
        out.writeheader()
        for number, row in enumerate(rows):
            if number % STEP == 0:
                out.writerow(row)


if __name__ == "__main__":
    main()
