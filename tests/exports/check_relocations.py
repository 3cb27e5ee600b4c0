#!/usr/bin/python3
"""usage: check_relocations.py READELF LIBRARY

The library asks the loader for none of its own functions: a host with a function of the same name would have that one
called in its place. Its exported data it may ask for, since a host that is not position independent holds a copy of it.
"""

import re
import subprocess
import sys


def read(readelf, option, library):
    return subprocess.run([readelf, "-W", option, library], check=True, capture_output=True, text=True).stdout


def exported_functions(readelf, library):
    """The names, without their versions, of the functions that the library defines for others."""
    symbols = re.findall(r"^ *\d+: \w+ +\w+ +(\w+) +\w+ +\w+ +(\w+) ([^@\s]+)", read(readelf, "--dyn-syms", library), re.M)
    return {name for kind, section, name in symbols if kind in ("FUNC", "IFUNC") and section != "UND"}


def relocated_names(readelf, library):
    """For each relocation by symbol: (its type, the symbol's name without its version)."""
    return re.findall(r"^[0-9a-f]+ +[0-9a-f]+ (R_\w+) +[0-9a-f]+ +([^@\s]+)", read(readelf, "--relocs", library), re.M)


def main(readelf, library):
    exported = exported_functions(readelf, library)
    found = sorted({f"{name}: asked of the loader ({kind})" for kind, name in relocated_names(readelf, library)
                    if name in exported})
    text = "\n".join(found) or f"{len(exported)} functions exported, none asked of the loader"
    print(subprocess.run(["c++filt"], input=text, check=True, capture_output=True, text=True).stdout)
    return 1 if found or not exported else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
