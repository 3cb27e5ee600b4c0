#!/usr/bin/python3
"""usage: check_hardening.py READELF [--branches] [--fortified] FILE...

Reads back from built files what hardens them. Of linked files: relocated data is write-protected (RELRO), which takes
immediate binding; no memory is writable and executable, the stack included; the stack is guarded; a program may be put
anywhere (PIE). With --fortified: the C library's checked functions are used; not every file calls one that has a checked
form. Of archives, with --branches: each member marks the targets of indirect branches and keeps to a shadow stack. Linked
files lose that mark where the system's own start files lack it, so it is not asked of them.
"""

import re
import subprocess
import sys
from pathlib import Path


def read(readelf, option, file):
    return subprocess.run([readelf, "-W", option, file], check=True, capture_output=True, text=True).stdout


def complaints_on_linked(readelf, file, fortified):
    segments = read(readelf, "--segments", file)
    dynamic = read(readelf, "--dynamic", file)
    undefined = re.findall(r" UND (\w+)", read(readelf, "--dyn-syms", file))
    flags = re.findall(r"^ +(\w+) +(?:0x[0-9a-f]+ +){5}([RWE ]{3}) ", segments, flags=re.M)
    if not any(kind == "GNU_RELRO" for kind, _ in flags):
        yield "no RELRO segment"
    if "BIND_NOW" not in dynamic and not re.search(r"FLAGS_1.*\bNOW\b", dynamic):
        yield "no immediate binding"
    if not any(kind == "GNU_STACK" for kind, _ in flags):
        yield "nothing said about the stack: it is executable"
    yield from (f"{kind} is writable and executable" for kind, access in flags if "W" in access and "E" in access)
    if "__stack_chk_fail" not in undefined:
        yield "the stack is not guarded"
    if fortified and not any(name.startswith("__") and name.endswith("_chk") for name in undefined):
        yield "no fortified function"
    if " INTERP " in segments and not re.search(r"FLAGS_1.*\bPIE\b", dynamic):
        yield "not position independent"


def complaints_on_archive(readelf, file):
    for member in re.split(r"^File: ", read(readelf, "--notes", file), flags=re.M)[1:]:
        if not re.search(r"x86 feature: IBT, SHSTK", member):
            yield f"{member.split(maxsplit=1)[0]}: no mark of protected branches"


def complaints(readelf, file, branches=False, fortified=False):
    if Path(file).read_bytes().startswith(b"!<arch>"):
        return list(complaints_on_archive(readelf, file)) if branches else []
    return list(complaints_on_linked(readelf, file, fortified))


def main(readelf, *arguments):
    options = {option[2:]: True for option in arguments if option.startswith("--")}
    files = [file for file in arguments if not file.startswith("--")]
    found = [f"{file}: {complaint}" for file in files for complaint in complaints(readelf, file, **options)]
    print("\n".join(found) or f"{len(files)} files, all hardened")
    return 1 if found or not files else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
