"""The check of the relocations notices each way to ask the loader for an own function, and lets everything else pass."""

import os
import subprocess

import pytest

import check_relocations

CXX, READELF = os.environ["CXX"], os.environ["READELF"]
DOOR = '__attribute__((visibility("default"), noinline)) int door(int a) { return a * a + 1; }\n'
CORE = '__attribute__((visibility("hidden"), noinline)) int core(int a) { return a * a + 1; }\n'


def run(folder, source):
    (folder / "probe.cpp").write_text(source)
    command = [CXX, "-O1", "-shared", "-fPIC", "-fvisibility=hidden", "probe.cpp", "-o", "probe.so"]
    subprocess.run(command, cwd=folder, check=True)
    return check_relocations.main(READELF, str(folder / "probe.so"))


@pytest.mark.parametrize("use, kind", [
    ("OTHER int other(int a) { return door(a) + 1; }", "JUMP_SLOT"),
    ("OTHER int (*other())(int) { return door; }", "GLOB_DAT"),
    ("OTHER int (*table[])(int) = {door};", "R_"),
])
def test_an_own_function_asked_of_the_loader_is_noticed(tmp_path, capsys, use, kind):
    assert run(tmp_path, DOOR + use.replace("OTHER", '__attribute__((visibility("default")))')) == 1
    output = capsys.readouterr().out
    assert "door(int): asked of the loader" in output and kind in output


def test_a_function_behind_the_doors_passes(tmp_path):
    assert run(tmp_path, CORE + '__attribute__((visibility("default"))) int door(int a) { return core(a) + 1; }') == 0


def test_foreign_functions_and_own_data_pass(tmp_path):
    source = """
    #include <cstdlib>
    __attribute__((visibility("default"))) int shared_number;
    __attribute__((visibility("default"))) int door() { return std::rand() + shared_number; }
    """
    assert run(tmp_path, source) == 0


def test_a_library_that_exports_nothing_fails(tmp_path):
    assert run(tmp_path, CORE) == 1
