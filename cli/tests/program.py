"""Runs the program in a temporary folder. The environment variable KELVARIN_PROGRAM names it."""

import json
import os
import subprocess
import tempfile
import unittest

PROGRAM = os.environ["KELVARIN_PROGRAM"]
EXAMPLE = os.path.abspath(os.path.join(os.path.dirname(__file__), "../../examples/flights/flights.kelvarin"))


def graph(actions, links=(), parameters=()):
    """A graph file's text. Links are texts such as "a b" or "a.1 b.0"."""

    def link(text):
        ends = [(end.split(".") + ["0"])[:2] for end in text.split()]
        return "<Link from='%s' fromPin='%s' to='%s' toPin='%s'/>" % (*ends[0], *ends[1])

    return "<KelvarinGraph version='1.0'>\n<Parameters>%s</Parameters>\n<Actions>\n%s\n</Actions>\n<Links>%s</Links>\n" \
           "</KelvarinGraph>\n" % ("".join("<Parameter name='%s' value='%s'/>" % p for p in parameters), actions,
                                   "".join(map(link, links)))


def calculator(name, inputs, outputs, attributes=""):
    """Inputs are column names; outputs are pairs of attributes and expression."""
    return "<Calculator name='%s' %s><InputVars>%s</InputVars><OutputVars>%s</OutputVars></Calculator>" % (
        name, attributes, "".join("<InputVar column='%s'/>" % i for i in inputs),
        "".join("<OutputVar %s>%s</OutputVar>" % o for o in outputs))


def open_terminal():
    """Both ends of a terminal, the person's and the program's; skips the test where the system has none to give."""
    try:
        return os.openpty()
    except OSError as error:
        raise unittest.SkipTest(f"no terminal: {error}") from error


class ProgramTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def path(self, name):
        return os.path.join(self.folder, name)

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8", newline="") as file:
            file.write(text)
        return self.path(name)

    def read(self, name):
        with open(self.path(name), encoding="utf-8", newline="") as file:
            return file.read()

    def files(self):
        return sorted(os.listdir(self.folder))

    def run_program(self, *arguments, **options):
        return subprocess.run([PROGRAM, *arguments], cwd=self.folder, capture_output=True, text=True, timeout=60,
                              stdin=subprocess.DEVNULL, **options)

    def kelvarin(self, *arguments, status=0, **options):
        result = self.run_program(*arguments, **options)
        self.assertEqual(result.returncode, status, f"{arguments}\n{result.stdout}\n{result.stderr}")
        return result

    def kelvarin_json(self, *arguments, status=0):
        return json.loads(self.kelvarin(*arguments, "--json", status=status).stdout)
