"""The example of docs/c-interface.md is compiled as C11 and prints what the page says."""

import os
import re
import subprocess
import unittest

from program import PROGRAM, ProgramTest

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../..")
LIBRARIES = os.path.join(os.path.dirname(os.path.dirname(PROGRAM)), "lib")
STRICT = ["-std=c11", "-Wall", "-Wextra", "-Wpedantic", "-Werror"]


def page():
    with open(os.path.join(ROOT, "docs/c-interface.md"), encoding="utf-8") as file:
        return file.read()


class CInterfaceTest(ProgramTest):
    def compile(self, name, source, *options):
        self.write(name, source)
        subprocess.run(["cc", *STRICT, *os.environ.get("CFLAGS", "").split(), "-I", os.path.join(ROOT, "include"),
                        self.path(name), *options], cwd=self.folder, check=True)

    def test_the_example_prints_what_the_page_says(self):
        example = re.search(r"```c\n(.*?)```", page(), re.DOTALL).group(1)
        shown = re.search(r"\$ \./example\n((?:    .*\n)+)", page()).group(1)
        self.compile("example.c", example, "-L", LIBRARIES, "-lkelvarin", "-o", "example",
                     "-Wl,-rpath," + LIBRARIES)
        self.write("sales.csv", "price,count\n2,30\n10,2\n4,10\n")
        self.kelvarin("gel", "import", "sales.csv", "sales.cgel_kelvarin")
        result = subprocess.run([self.path("example")], cwd=self.folder, capture_output=True, text=True, check=False)
        self.assertEqual(result.stderr, "")
        self.assertEqual(result.stdout, re.sub("^    ", "", shown, flags=re.MULTILINE))

    def test_the_header_stands_alone(self):
        uses = "int main(void) { return kelvarin_abi() == KELVARIN_ABI ? 0 : 1; }\n"
        self.compile("alone.c", '#include "kelvarin/kelvarin.h"\n' + uses, "-c")

    def test_nothing_but_the_interface_is_visible(self):
        library = os.path.join(LIBRARIES, "libkelvarin.so")
        symbols = subprocess.run(["nm", "--dynamic", "--defined-only", library], capture_output=True, text=True,
                                 check=True).stdout
        names = {line.split()[-1] for line in symbols.splitlines()}
        with open(os.path.join(ROOT, "include/kelvarin/kelvarin.h"), encoding="utf-8") as file:
            declared = set(re.findall(r"KELVARIN_API [^;(]*?(kelvarin_\w+)\(", file.read()))
        self.assertGreater(len(declared), 40)
        self.assertEqual(names - {"KELVARIN_1"}, {name + "@@KELVARIN_1" for name in declared})


if __name__ == "__main__":
    unittest.main()
