"""The check of the hardening notices each thing that is missing, on small files built without it."""

import os
import subprocess

import pytest

from check_hardening import complaints

CC, READELF = os.environ["CC"], os.environ["READELF"]
SOURCE = """
#include <stdio.h>
#include <string.h>
void copy(const char* text) {
  char own[16];
  strcpy(own, text);
  puts(own);
}
int main(void) { return 0; }
"""
HARDENED = ["-O1", "-fstack-protector-strong", "-U_FORTIFY_SOURCE", "-D_FORTIFY_SOURCE=2", "-Wl,-z,relro",
            "-Wl,-z,now", "-Wl,-z,noexecstack"]


def build(folder, *flags):
    (folder / "probe.c").write_text(SOURCE)
    subprocess.run([CC, *HARDENED, *flags, "probe.c", "-o", "probe"], cwd=folder, check=True)
    return folder / "probe"


@pytest.mark.parametrize("kind", [["-shared", "-fPIC"], ["-fPIE", "-pie"]])
def test_a_hardened_file_passes(tmp_path, kind):
    assert complaints(READELF, build(tmp_path, *kind), fortified=True) == []


@pytest.mark.parametrize("flag, complaint", [
    ("-Wl,-z,norelro", "no RELRO segment"),
    ("-Wl,-z,lazy", "no immediate binding"),
    ("-Wl,-z,execstack", "GNU_STACK is writable and executable"),
    ("-fno-stack-protector", "the stack is not guarded"),
    ("-U_FORTIFY_SOURCE", "no fortified function"),
])
def test_what_is_missing_is_noticed(tmp_path, flag, complaint):
    assert complaints(READELF, build(tmp_path, "-shared", "-fPIC", flag), fortified=True) == [complaint]


def test_a_segment_that_is_writable_and_executable_is_noticed(tmp_path):
    library = build(tmp_path, "-shared", "-fPIC", "-nostdlib", "-Wl,-N")
    assert "LOAD is writable and executable" in complaints(READELF, library)


def test_a_program_at_a_fixed_place_is_noticed(tmp_path):
    assert complaints(READELF, build(tmp_path, "-no-pie")) == ["not position independent"]


@pytest.mark.skipif(not os.environ["BRANCHES"], reason="the compiler cannot protect branches here")
def test_an_archive_member_without_protected_branches_is_noticed(tmp_path):
    (tmp_path / "probe.c").write_text(SOURCE)
    for name, flag in ("good", "-fcf-protection"), ("bad", "-fcf-protection=none"):
        subprocess.run([CC, flag, "-c", "probe.c", "-o", f"{name}.o"], cwd=tmp_path, check=True)
        subprocess.run(["ar", "rc", f"{name}.a", "good.o", f"{name}.o"], cwd=tmp_path, check=True)
    assert complaints(READELF, tmp_path / "good.a", branches=True) == []
    (complaint,) = complaints(READELF, tmp_path / "bad.a", branches=True)
    assert complaint.endswith("bad.a(bad.o): no mark of protected branches")
