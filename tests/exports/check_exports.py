#!/usr/bin/python3
"""usage: check_exports.py NM LIBRARY EXPORT_MAP HEADER...

Holds the built library against its list of exports, both ways, by full signatures; and every function that the headers
mark as exported against the same list, by name.
"""

import re
import subprocess
import sys
from pathlib import Path


def listed_exports(text):
    """The names of the version script: plain ones, and C++ signatures in quotes."""
    text = re.sub(r"/\*.*?\*/", "", text, flags=re.S)
    signatures = set(re.findall(r'"([^"]+)";', text))
    outside = re.sub(r'extern "C\+\+" \{.*?\};', "", text, flags=re.S)
    exported = re.search(r"global:(.*?)local:", outside, flags=re.S).group(1)
    return signatures | set(re.findall(r"\b(\w+);", exported))


def built_exports(nm, library):
    """The names that the library defines for others. The version node's own name is none."""
    lines = subprocess.run([nm, "-D", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    symbols = [line.split(maxsplit=2)[1:] for line in lines.splitlines()]
    # Without their versions: not every nm demangles names that bear one.
    names = [re.sub(r"@@?VANTREL_\d+$", "", name) for kind, name in symbols if kind != "A"]
    plain = subprocess.run(["c++filt"], input="\n".join(names), check=True, capture_output=True, text=True).stdout
    return set(plain.split("\n"))


def declared_exports(headers):
    """The names of functions and data that the headers mark for export."""
    names = set()
    for header in headers:
        text = re.sub(r"/\*.*?\*/|//[^\n]*", "", Path(header).read_text(), flags=re.S)
        names |= set(re.findall(r"^(?:extern )?VANTREL_API [^(;\[]*?(\w+)(?:\(|\[)", text, flags=re.M))
    return names


def main(nm, library, export_map, *headers):
    listed = listed_exports(Path(export_map).read_text())
    built = built_exports(nm, library)
    bare = {re.sub(r"\(.*", "", name) for name in listed}
    complaints = [f"listed, but not exported by the library: {name}" for name in sorted(listed - built)]
    complaints += [f"exported by the library, but not listed: {name}" for name in sorted(built - listed)]
    complaints += [f"declared for export, but not listed: {name}" for name in sorted(declared_exports(headers) - bare)]
    print("\n".join(complaints) or f"{len(listed)} names listed, all exported, and no others")
    return 1 if complaints or not listed else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
