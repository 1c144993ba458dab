#!/usr/bin/env python3
"""Copies the product's libraries, and those of others that they need, into a folder that works wherever it lies.

Usage: bundle_libraries.py BUILD_LIB OUT PATCHELF. Prints the tag of the oldest systems that can load them all, for
instance "manylinux_2_34_x86_64".

Run paths are relative. The libraries of others get names of their own, so that nothing else in the process takes them,
nor they anything else's; so do the symbols of those that are found in the global scope of processes in other versions. Only the C and C++ base libraries stay outside. The terms of the others' licences lie beside.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOTS = ("libkelvarin.so", "plugins/libKelvarinMathParser.so", "libKelvarinArrow.so")
OWN = re.compile(r"lib[kK]elvarin")
# Every system that a wheel of this kind may be installed on has these.
BASE = {"libc.so.6", "libm.so.6", "libdl.so.2", "libpthread.so.0", "librt.so.1", "libgcc_s.so.1", "libstdc++.so.6",
        "ld-linux-x86-64.so.2"}
# Of libraries whose symbols have no versions: how their symbols begin, behind the letters for a kind of symbol.
UNVERSIONED = {"libre2.": re.compile(r"_Z\w*3re2\d")}
SYMBOL_PREFIX = "kelvarin"
NEWEST_GLIBCXX = (3, 4, 30)  # that systems with the C library of the tag have


def output_of(*command):
    return subprocess.run(list(map(str, command)), stdout=subprocess.PIPE, text=True, check=True).stdout


def resolved(library):
    """The paths of all that a library needs, by name."""
    found = dict(re.findall(r"^\s*(\S+) => (/\S+)", output_of("ldd", library), re.MULTILINE))
    return {name: pathlib.Path(path) for name, path in found.items() if name not in BASE}


def bundled_name(name):
    """libQt6Core.so.6 -> libQt6Core-kelvarin.so.6"""
    return name if OWN.match(name) else name.replace(".so", "-kelvarin.so", 1)


def copy(sources, out):
    """`sources` by name below the folder; returns the copies by the name that others need them by."""
    copies = {}
    for name, source in sources.items():
        target = out / os.path.dirname(name) / bundled_name(os.path.basename(name))
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy(source.resolve(), target)
        target.chmod(0o755)
        copies[os.path.basename(name)] = target
    subprocess.run(["strip", "--strip-unneeded", *copies.values()], check=True)
    return copies


def make_relocatable(copies, out, patchelf):
    for target in copies.values():
        needed = [name for name in output_of(patchelf, "--print-needed", target).split() if name not in BASE]
        renames = [word for name in needed if copies[name].name != name
                   for word in ("--replace-needed", name, copies[name].name)]
        origin = "$ORIGIN" if target.parent == out else "$ORIGIN/.."
        subprocess.run([patchelf, "--set-soname", target.name, "--force-rpath", "--set-rpath", origin, *renames, target],
                       check=True)


def rename_symbols(copies, patchelf):
    """Symbols of a process are looked up in its global scope first, where another version of the library may be."""
    for library, pattern in UNVERSIONED.items():
        users = [target for name, target in copies.items()
                 if name.startswith(library) or library in output_of(patchelf, "--print-needed", target)]
        symbols = {line.split()[-1].split("@")[0] for line in output_of("nm", "--dynamic", *users).splitlines()
                   if line and not line.endswith(":")}
        with tempfile.NamedTemporaryFile("w", suffix=".symbols") as names:
            names.writelines(f"{name} {SYMBOL_PREFIX}{name}\n" for name in sorted(symbols) if pattern.match(name))
            names.flush()
            subprocess.run([patchelf, "--rename-dynamic-symbols", names.name, *users], check=True)


def newest_version(copies, name):
    """The newest version of the symbols of a base library that any of the copies needs."""
    pattern = re.compile(rf"\({name}_(\d+(?:\.\d+)*)\)")
    symbols = output_of("objdump", "--dynamic-syms", *copies.values())
    return max(tuple(map(int, version.split("."))) for version in pattern.findall(symbols))


def copy_licences(sources, out):
    """What the packages of the system say about their licences."""
    folder = out / "licences"
    folder.mkdir()
    shutil.copy(pathlib.Path(__file__).resolve().parent.parent / "LICENSE", folder / "kelvarin")
    for path in sources.values():
        owner = subprocess.run(["dpkg", "--search", path.resolve()], capture_output=True, text=True, check=False).stdout
        package = owner.split(":")[0]
        copyright_file = pathlib.Path("/usr/share/doc", package, "copyright")
        if package and copyright_file.exists():
            shutil.copy(copyright_file, folder / package)
    arrow = next((path.resolve().parent for name, path in sources.items() if name.startswith("libarrow.")), None)
    for file in sorted((arrow / "licences").glob("*")) if arrow else ():
        shutil.copy(file, folder / f"arrow-{file.name}")


def main():
    libraries, out = map(pathlib.Path, sys.argv[1:3])
    patchelf = sys.argv[3]
    sources = {name: libraries / name for name in ROOTS}
    for root in ROOTS:
        sources |= resolved(libraries / root)
    shutil.rmtree(out, ignore_errors=True)
    out.mkdir(parents=True)
    copies = copy(sources, out)
    rename_symbols(copies, patchelf)
    make_relocatable(copies, out, patchelf)
    copy_licences(sources, out)
    if newest_version(copies, "GLIBCXX") > NEWEST_GLIBCXX:
        sys.exit("bundle_libraries: the C++ library of this system is newer than that of the systems in the tag.")
    major, minor = newest_version(copies, "GLIBC")
    print(f"manylinux_{major}_{minor}_x86_64")


if __name__ == "__main__":
    main()
