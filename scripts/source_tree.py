"""The text files of a checkout, for the scripts that check or measure them."""

import os

SKIPPED = {".git", ".deps", "__pycache__", "build", "out", "data"}
SOURCES = (".h", ".cpp")


def default_root():
    return os.path.abspath(os.path.join(os.path.dirname(__file__), ".."))


def files(root):
    """Paths below `root`, relative to it, in a fixed order."""
    for folder, folders, names in os.walk(root):
        folders[:] = sorted(name for name in folders if name not in SKIPPED)
        for name in sorted(set(names) - SKIPPED):
            yield os.path.relpath(os.path.join(folder, name), root)


def text_files(root):
    """Yields path and bytes of every file without null bytes."""
    for path in files(root):
        with open(os.path.join(root, path), "rb") as file:
            content = file.read()
        if b"\0" not in content:
            yield path, content


def source_files(root):
    """Yields path and lines of every C++ source."""
    for path, content in text_files(root):
        if path.endswith(SOURCES):
            yield path, content.decode("utf-8", errors="replace").splitlines()


def is_test(path):
    return "tests" in path.split(os.sep) or path.startswith(os.path.join("host", "testing", ""))
