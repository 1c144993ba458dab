#!/usr/bin/env python3
"""Types the commands of the documents into a shell: they work, and print what the documents show.

Usage: run_commands.py PROGRAM DOCUMENT...

Each document has a shell of its own, in a temporary folder with a copy of examples/. Its blocks follow one another:

- `csv orders.csv`, or any other language with a second word, is a file of that name in the temporary folder;
- `sh` is commands, each of which ends with status 0;
- `console` is commands after "$ ", each followed by what it prints on either output. "..." stands for anything.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

FENCE = re.compile(r"^```(\w+)(?: ([\w.]+))?\n(.*?)^```$", re.MULTILINE | re.DOTALL)
CONTINUED = re.compile(r"\\\n\s*")
EXAMPLES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../examples")
END = "-- end of output, status "
SECONDS = 150


def commands_of(document, folder):
    """Pairs of a command and what it prints, None where nothing is shown; writes the document's files."""
    with open(document, encoding="utf-8") as file:
        blocks = FENCE.findall(file.read())
    for language, name, text in blocks:
        if name:
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write(text)
        elif language == "sh":
            for line in CONTINUED.sub("", text).splitlines():
                if line and not line.startswith("#"):
                    yield line, None
        elif language == "console":
            parts = re.split(r"^\$ (.*)\n", CONTINUED.sub("", text), flags=re.MULTILINE)
            yield from zip(parts[1::2], parts[2::2])


def faults_of(program, document):
    with tempfile.TemporaryDirectory() as folder:
        shutil.copytree(EXAMPLES, os.path.join(folder, "examples"))
        commands = list(commands_of(document, folder))
        script = "".join(f"{command}\necho '{END}'$?\n" for command, _ in commands)
        path = os.path.dirname(program) + os.pathsep + os.environ["PATH"]
        result = subprocess.run(["bash"], input=script, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                                cwd=folder, env={**os.environ, "PATH": path, "LC_ALL": "C.UTF-8"}, timeout=SECONDS)
    print(f"{document}: {len(commands)} commands")
    ends = re.split(re.escape(END) + r"(\d+)\n", result.stdout)
    if len(ends) != 2 * len(commands) + 1:
        yield f"the shell ended early:\n{ends[-1]}"
    for (command, shown), printed, status in zip(commands, ends[::2], ends[1::2], strict=False):
        if shown is None and status != "0":
            yield f"$ {command}\nended with {status}:\n{printed}"
        elif shown is not None and not re.fullmatch(re.escape(shown).replace(re.escape("..."), ".*"), printed, re.DOTALL):
            yield f"$ {command}\nthe document shows\n{shown}but it prints\n{printed}"


def main():
    program, documents = os.path.abspath(sys.argv[1]), sys.argv[2:]
    faults = [f"{document}: {fault}" for document in documents for fault in faults_of(program, document)]
    print("\n".join(faults))
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main()
