#!/usr/bin/env python3
"""Types the commands of the README into a shell, in a copy of the examples: it shows what they really print.

Usage: readme_test.py PROGRAM. In what the README shows, "..." stands for anything.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

EXAMPLE = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PROGRAM = os.path.abspath(sys.argv.pop(1))
CONSOLE = re.compile(r"^```console\n(.*?)^```$", re.MULTILINE | re.DOTALL)
END = "-- end of output --"


def session():
    """Pairs of a command and what it prints."""
    with open(os.path.join(EXAMPLE, "README.md"), encoding="utf-8") as file:
        shown = "".join(CONSOLE.findall(file.read()))
    parts = re.split(r"^\$ (.*)\n", shown, flags=re.MULTILINE)
    return list(zip(parts[1::2], parts[2::2]))


class ReadmeTest(unittest.TestCase):
    maxDiff = None

    def test_every_command_prints_what_is_shown(self):
        commands = session()
        self.assertGreater(len(commands), 10)
        script = "".join(f"{command}\necho '{END}'\n" for command, _ in commands)
        with tempfile.TemporaryDirectory() as folder:
            shutil.copytree(os.path.dirname(EXAMPLE), os.path.join(folder, "examples"))
            path = os.path.dirname(PROGRAM) + os.pathsep + os.environ["PATH"]
            result = subprocess.run(["sh"], input=script, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                    cwd=folder, env={**os.environ, "PATH": path}, timeout=100)
        printed = result.stdout.split(END + "\n")
        for (command, shown), text in zip(commands, printed, strict=False):
            pattern = re.escape(shown).replace(re.escape("..."), ".*")
            self.assertRegex(text, re.compile(rf"\A{pattern}\Z"), f"$ {command}")


if __name__ == "__main__":
    unittest.main()
