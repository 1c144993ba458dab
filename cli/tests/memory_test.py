"""Memory that does not suffice: an allocation of a command fails, each in turn, or all from one on, or all above a size.

Whatever fails, the program says so and ends with 1, or does its work as if nothing had been; it leaves no unfinished
file, never aborts and never hangs. Sites are distinguished by their calls; of these a sample is tried, or all with
FAILING_MEMORY_ALL set in the environment. FAILING_MEMORY_LIBRARY names the library that makes allocations fail.
"""

import concurrent.futures
import os
import resource
import shutil
import subprocess
import tempfile
import unittest

from program import PROGRAM, calculator, graph

LIBRARY = os.environ["FAILING_MEMORY_LIBRARY"]
TRIES = 20  # a command, unless all are wanted
CHECKED_SECONDS = 60  # more is a hang

# Calls of libraries that end the process where they get no memory, whatever their caller does. It must leave no
# unfinished file there, too, and say that it ends.
CRASHING = {
    "_ZN10QArrayData": "Qt's lists made of braced ones, and detached containers, do not look at what they got",
    "_ZN7QThread13currentThreadEv": "Qt does not survive its first look at a thread",
    "_ZN7QObjectC": "the same, for the first object of a thread",
    "QPluginLoader": "Qt does not survive looking for plug-ins without any memory",
    "QLibraryInfo": "the same",
    "_ZN7QLocaleC": "the same, where it asks for the first locale",
}
CALLS_LOOKED_AT = 10
CRASHED = "crashes"

READ = "<ReadCSV name='in' file='../in.csv'/>"
WORK = calculator("c", ["a", "t' isNumber='0"], [("name='y'", "a*2+_n"), ("name='u' meta='U'", 't // "!"')]) \
    + "<FilterRows name='f'><Expression>a &lt; 1500</Expression><InputVars><InputVar column='a'/></InputVars></FilterRows>"
LINKS = ["in c", "c f", "f out"]

GRAPHS = {
    "csv": graph(READ + WORK + "<WriteCSV name='out' file='o.csv'/>", LINKS),
    "parquet": graph(READ + WORK + "<WriteParquet name='out' file='o.parquet'/>", LINKS),
    "arrow": graph("<ReadParquet name='in' file='../in.parquet'/><WriteArrow name='out' file='o.arrow'/>", ["in out"]),
    "gel": graph("<ReadArrow name='in' file='../in.arrow'/>" + WORK
                 + "<writeColumnarGel name='out' file='o.cgel_kelvarin' nRowsInBlock='200'/>", LINKS),
    "shared": graph("<ReadColumnarGel name='in' fileName='../in.cgel_kelvarin'/><WriteCSV name='p' file='p.csv'/>"
                    "<WriteCSV name='q' file='q.csv'/>", ["in p", "in q"]),
}

COMMANDS = {
    **{f"run {name}": ["run", f"{name}.kelvarin"] for name in GRAPHS},
    "run --json": ["run", "csv.kelvarin", "--json"],
    "check": ["check", "csv.kelvarin"],
    "eval": ["eval", 'n*2+strlen("abc")', "--var", "n=3"],
    "head": ["gel", "head", "../in.cgel_kelvarin"],
    "info": ["gel", "info", "../in.cgel_kelvarin", "--blocks"],
    "verify": ["gel", "verify", "../in.cgel_kelvarin"],
    "export": ["gel", "export", "../in.cgel_kelvarin", "o.csv"],
    "import": ["gel", "import", "../in.csv", "o.cgel_kelvarin"],
    "functions": ["functions", "sqrt"],
}


class MemoryTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = folder.name
        with open(os.path.join(cls.folder, "in.csv"), "w", encoding="utf-8") as file:
            file.write("a,t\n" + "".join(f"{i},text {i % 50}\n" for i in range(2000)))
        cls.make("gel", "import", "in.csv", "in.cgel_kelvarin")
        cls.make("gel", "export", "in.cgel_kelvarin", "in.parquet")
        cls.make("gel", "export", "in.cgel_kelvarin", "in.arrow")

    @classmethod
    def make(cls, *arguments):
        subprocess.run([PROGRAM, *arguments, "--quiet"], cwd=cls.folder, check=True)

    def run_in_new_folder(self, arguments, **environment):
        """The result, and the files that the command has left with their bytes."""
        folder = tempfile.mkdtemp(dir=self.folder)
        try:
            for name, text in GRAPHS.items():
                with open(os.path.join(folder, name + ".kelvarin"), "w", encoding="utf-8") as file:
                    file.write(text)
            result = subprocess.run(
                [PROGRAM, *arguments], cwd=folder, capture_output=True, text=True, timeout=CHECKED_SECONDS,
                stdin=subprocess.DEVNULL,
                env={**os.environ, "LD_PRELOAD": LIBRARY, "ARROW_DEFAULT_MEMORY_POOL": "system",
                     **{"FAILING_MEMORY_" + name: str(value) for name, value in environment.items()}})
            files = {}
            for name in os.listdir(folder):
                with open(os.path.join(folder, name), "rb") as file:
                    files[name] = file.read()
            return result, files
        finally:
            shutil.rmtree(folder)

    def sites(self, arguments):
        """The numbers of allocations, the first of each site."""
        with tempfile.NamedTemporaryFile(dir=self.folder) as listed:
            self.run_in_new_folder(arguments, LIST=listed.name)
            with open(listed.name, encoding="utf-8") as file:
                return sorted(int(line) for line in file)

    def fault_of(self, arguments, expected, **failing):
        """What is wrong with how the command ends; none when all is well."""
        try:
            result, files = self.run_in_new_folder(arguments, **failing)
        except subprocess.TimeoutExpired:
            return "hangs"
        fault = self.judged(result, files, *expected)
        if fault:
            traced, _ = self.run_in_new_folder(arguments, TRACE=1, **failing)
            calls = [line for line in traced.stderr.splitlines() if "[0x" in line and LIBRARY not in line]
            if fault == CRASHED and any(name in call for name in CRASHING for call in calls[:CALLS_LOOKED_AT]):
                return None
            fault += "\n" + traced.stderr
        return fault

    def judged(self, result, files, normal, normal_files):
        if any(name.endswith(".part") for name in files):
            return f"leaves {sorted(files)}"
        if result.returncode == 0:
            is_same = files == normal_files and ('"seconds"' in normal.stdout or result.stdout == normal.stdout)
            return None if is_same else f"0 with another result: {result.stdout[:300]}, {sorted(files)}"
        if "error: " not in result.stderr and '"error"' not in result.stdout:
            return f"no message, status {result.returncode}: {result.stderr}"
        if result.returncode < 0:
            return CRASHED
        return None if result.returncode == 1 else f"status {result.returncode}: {result.stderr}"

    def check_all(self, name, tries):
        arguments = COMMANDS[name]
        expected = self.run_in_new_folder(arguments)
        self.assertEqual(expected[0].returncode, 0, expected[0].stderr)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            faults = pool.map(lambda failing: self.fault_of(arguments, expected, **failing), tries)
            found = [f"{name}, {failing}: {fault}" for failing, fault in zip(tries, faults) if fault]
        self.assertEqual(found, [], f"{len(found)} of {len(tries)} are wrong, the first one:\n" + "".join(found[:1]))

    def test_each_allocation_in_turn(self):
        for name, arguments in COMMANDS.items():
            with self.subTest(name):
                numbers = self.sites(arguments)
                step = 1 if "FAILING_MEMORY_ALL" in os.environ else max(1, len(numbers) // TRIES)
                self.check_all(name, [{"AT": number} for number in numbers[::step]])

    def test_all_from_one_on(self):
        for name in ("run csv", "run gel", "run shared", "export", "head"):
            with self.subTest(name):
                numbers = self.sites(COMMANDS[name])
                self.check_all(name, [{"FROM": number} for number in numbers[::max(1, len(numbers) // 8)]])

    def test_all_above_a_size(self):
        for name in COMMANDS:
            with self.subTest(name):
                self.check_all(name, [{"ABOVE": 1 << power} for power in (8, 12, 14, 16, 18, 20)])


if __name__ == "__main__":
    unittest.main()
