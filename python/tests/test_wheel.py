"""The installed package: what it loads, beside which libraries, and on which interpreters it runs."""

import os
import pathlib
import re
import subprocess
import sys

import kelvarin
import pytest
from conftest import package_folder

# What every system that a wheel may be installed on has.
BASE = re.compile(r"(ld-linux-x86-64|libc|libm|libdl|libpthread|librt|libgcc_s|libstdc\+\+)\.so|libpython3")

# Writes a table of its own, reads it back, computes, and passes Parquet files through a graph.
EVERYTHING = """
import os, sys
import kelvarin

GRAPH = \"\"\"<KelvarinGraph version='1.0'><Actions>
<InlineTable name='orders'><Column name='price' meta='F'/><Column name='item' meta='U'/>
<Row><V>24.9</V><V>kettle</V></Row><Row><V null='1'/><V>cup</V></Row></InlineTable>
<{sink}/></Actions><Links><Link from='orders' to='out'/></Links></KelvarinGraph>\"\"\"

folder = sys.argv[1]
def run(sink, outputs=()):
    return kelvarin.run(os.path.join(folder, "g.kelvarin"), outputs=outputs, document=GRAPH.replace("{sink}", sink))

orders = run("Discard name='out'", ["out"])["out"]
path = os.path.join(folder, "orders.cgel_kelvarin")
assert kelvarin.write(orders, path) == 2
scan = kelvarin.scan(path)
assert scan.blocks[0].statistics["price"] == kelvarin.Statistics(24.9, 24.9, True), scan.blocks[0]
assert len(kelvarin.calculate(scan, {"label": 'item // "!"'}, where="isNull(price)").read()) == 1
try:
    kelvarin.calculate(scan, {"y": "price +"})
    raise SystemExit("no error")
except kelvarin.Error as error:
    assert error.output == "y"
run("WriteParquet name='out' file='orders.parquet'")
assert os.path.getsize(os.path.join(folder, "orders.parquet")) > 0
"""


def script_of(text, folder, python=sys.executable, packages=(package_folder().parent,)):
    """In an environment that has nothing but the packages."""
    result = subprocess.run([python, "-B", "-c", text, str(folder)], capture_output=True, text=True, timeout=60, check=False,
                            env={"PYTHONPATH": os.pathsep.join(map(str, packages))})
    assert result.returncode == 0, result.stderr
    return result.stdout


def test_nothing_is_loaded_but_the_package_and_the_base_libraries(folder):
    script = EVERYTHING + "print(open('/proc/self/maps').read())"
    mapped = {pathlib.Path(path) for path in re.findall(r"(/\S+\.so[.\w]*)$", script_of(script, folder), re.MULTILINE)}
    package = package_folder()
    names = {path.name for path in mapped if package in path.parents}
    assert {"libkelvarin.so", "libKelvarinCore.so", "libKelvarinMathParser.so", "libKelvarinArrow.so"} <= names
    foreign = [path for path in mapped if package not in path.parents and not BASE.match(path.name) and
               "lib-dynload" not in path.parts and path.parts[1:2] != ("dev",)]
    # The interpreter's own modules need libraries of their own.
    bare = script_of("import ctypes, ssl, zlib, bz2, lzma; print(open('/proc/self/maps').read())", folder)
    assert [path for path in foreign if str(path) not in bare] == []


@pytest.mark.parametrize("order", ["pyarrow first", "kelvarin first"])
@pytest.mark.parametrize("which", ["another version", "the same version"])
def test_another_arrow_in_the_process_is_not_disturbed(folder, order, which):
    peers = os.environ["KELVARIN_OTHER_PACKAGES"] if which == "the same version" else _folder_of("pyarrow")
    use = """
import pyarrow, pyarrow.parquet
def use_pyarrow():
    table = pyarrow.table({"a": [1.0, None], "s": ["x", "y"]})
    pyarrow.parquet.write_table(table, folder + "/other.parquet", compression="zstd")
    assert pyarrow.parquet.read_table(folder + "/other.parquet").equals(table)
"""
    before, after = (use, "") if order == "pyarrow first" else ("", use)
    calls = "use_pyarrow()\n" if before else ""
    script = f"import sys\nfolder = sys.argv[1]\n{before}{calls}{EVERYTHING}{after}use_pyarrow()\n{EVERYTHING}use_pyarrow()\n"
    script += "assert pyarrow.table(scan).num_rows == 2\n"
    script += "assert pyarrow.parquet.read_table(folder + '/orders.parquet')['item'].to_pylist() == ['kettle', 'cup']\n"
    script_of(script, folder, packages=(package_folder().parent, peers))


def test_regular_expressions_are_those_of_the_package(folder):
    """A library with the functions of another RE2, each of which ends the process, is in the global scope first."""
    (library,) = (package_folder() / "lib").glob("libre2*")
    listed = subprocess.run(["nm", "--dynamic", "--defined-only", library], capture_output=True, text=True, check=True).stdout
    functions = re.findall(r" T kelvarin(_Z\w+)$", listed, re.MULTILINE)
    assert any("3RE2C1E" in name for name in functions)
    source = folder / "other.c"
    source.write_text("#include <stdlib.h>\n" + "".join(f"void {name}(void) {{ abort(); }}\n" for name in functions))
    subprocess.run(["cc", "-shared", "-fPIC", "-o", folder / "libother.so", source], check=True)
    script_of("""
import ctypes, sys
ctypes.CDLL(sys.argv[1] + "/libother.so", ctypes.RTLD_GLOBAL)
import kelvarin
words = kelvarin.run(sys.argv[1], outputs=["out"], document=\"\"\"<KelvarinGraph version='1.0'><Actions><InlineTable name='in'>
<Column name='s' meta='U'/><Row><V>cup</V></Row></InlineTable><Discard name='out'/></Actions>
<Links><Link from='in' to='out'/></Links></KelvarinGraph>\"\"\")["out"].read()
assert len(kelvarin.calculate(words, where='regexMatch(s, "c.p")').read()) == 1
try:
    kelvarin.calculate(words, {"y": 'regexMatch(s, "(c")'}).read()
except kelvarin.Error as error:
    assert error.output == "y", error
""", folder)


def test_the_wheel_for_later_versions_runs_on_the_first_of_them(folder):
    python = os.environ["KELVARIN_STABLE_PYTHON"]
    (extension,) = pathlib.Path(os.environ["KELVARIN_STABLE_PACKAGE"], "kelvarin").glob("_native*.so")
    assert extension.name == "_native.abi3.so"
    version = script_of(EVERYTHING + "print(kelvarin.__version__)", folder, python, [os.environ["KELVARIN_STABLE_PACKAGE"]])
    assert version.strip() == kelvarin.__version__


def test_the_notebook_runs(folder, monkeypatch):
    import nbformat
    from nbclient import NotebookClient
    monkeypatch.setenv("JUPYTER_PATH", os.path.join(_folder_of("ipykernel"), "share", "jupyter"))
    monkeypatch.setenv("IPYTHONDIR", str(folder / "ipython"))
    source = pathlib.Path(__file__).parent.parent / "examples" / "orders.ipynb"
    notebook = nbformat.read(source, as_version=4)
    assert all(not cell.get("outputs") for cell in notebook.cells)
    NotebookClient(notebook, timeout=60, kernel_name="python3", resources={"metadata": {"path": str(folder)}}).execute()
    outputs = [output for cell in notebook.cells for output in cell.get("outputs", ())]
    assert not [output for output in outputs if output.output_type == "error"]
    shown = "".join(str(output.get("data", output.get("text"))) for output in outputs)
    assert "kettle" in shown and "kelvarin.Result: result" in shown


def _folder_of(package):
    module = __import__(package)
    return str(pathlib.Path(module.__file__).parent.parent)
