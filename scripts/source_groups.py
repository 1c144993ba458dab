#!/usr/bin/env python3
"""Groups of sources that can be read as if they were one: most time goes into the headers of
libraries, which are then read once a group.

Usage: source_groups.py FOLDER SOURCE... prints SOURCE=GROUP, separated by semicolons; sources are
below the folder, groups are numbers.
"""

import os
import re
import sys

LARGEST_GROUP = 14
LOCAL_PART = re.compile(r"^namespace \{$(.*?)^\}  // namespace$", re.MULTILINE | re.DOTALL)
LOCAL_NAME = re.compile(
    r"^(?![ }#]|static_assert|template)(?:[\w:<>,*& ]*[ *&])?(\w+)(?=[({;\[]| [={:])", re.MULTILINE)


def local_names(path):
    with open(path, encoding="utf-8") as file:
        parts = LOCAL_PART.findall(file.read())
    return {name for part in parts for name in LOCAL_NAME.findall(part)}


def groups_of(folder, sources):
    """Lists of sources. No two sources of a list have a local name in common."""
    groups = []
    for source in sources:
        names = local_names(os.path.join(folder, source))
        for group, taken in groups:
            if len(group) < LARGEST_GROUP and not names & taken:
                group.append(source)
                taken |= names
                break
        else:
            groups.append(([source], names))
    return [group for group, _ in groups]


if __name__ == "__main__":
    print(";".join(f"{source}={number}"
                   for number, group in enumerate(groups_of(sys.argv[1], sys.argv[2:]))
                   for source in group))
