#!/usr/bin/python3
"""What the library answers on every sample, held against tests/samples/expected.json; answers may only get better.

ratchet.py             measures all samples and says what is worse, and what is better, than expected
ratchet.py --tighten   also writes what got better into expected.json, and nothing that got worse

Kinds of values in a sample's record:
- "code", "verdict", "count" and other plain values must stay as they are;
- names ending in "_error" must not grow;
- "sides" (side -> found): a visible border that was found must stay found, an invisible one must stay unfound.
"""

import argparse
import json
import math
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))

from library import Library  # noqa: E402  (the folder is put on the path above)
from measure import SAMPLES, measure, truths  # noqa: E402

EXPECTED = Path(__file__).resolve().parent / "expected.json"


def rounded_up(value):
    """To the hundredth above, which is what expected.json keeps of an error."""
    return math.ceil(value * 100 - 1e-9) / 100


def compare(expected, measured, visible=()):
    """Two lists of readable lines: what is worse than expected, and what is better."""
    worse, better = [], []
    for name in sorted(set(expected) | set(measured)):
        if name not in measured:
            worse.append(f"{name}: no longer measured, expected {expected[name]}")
        elif name not in expected:
            (better if name.endswith("_error") else worse).append(f"{name}: {measured[name]}, nothing expected yet")
        elif name == "sides":
            for side, found in measured[name].items():
                if found != expected[name].get(side):
                    right = found == (side in visible)
                    (better if right else worse).append(f"{side} border: " + ("found" if found else "not found"))
        elif name.endswith("_error"):
            now = rounded_up(measured[name])
            if now > expected[name]:
                worse.append(f"{name}: {now}, expected at most {expected[name]}")
            elif now < expected[name]:
                better.append(f"{name}: {now}, expected {expected[name]}")
        elif measured[name] != expected[name]:
            worse.append(f"{name}: {measured[name]}, expected {expected[name]}")
    return worse, better


def tightened(expected, measured, visible=()):
    """The expected record with everything that got better taken over."""
    record = dict(expected)
    for name, value in measured.items():
        if name.endswith("_error"):
            record[name] = min(rounded_up(value), expected.get(name, math.inf))
        elif name == "sides":
            old = expected.get(name, {})
            record[name] = {side: found if found == (side in visible) else old.get(side, found)
                            for side, found in value.items()}
        else:
            record.setdefault(name, value)
    return record


def read_expected():
    """The committed expectations: path of the sample -> record."""
    return json.loads(EXPECTED.read_text()) if EXPECTED.exists() else {}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--tighten", action="store_true", help="write what got better into expected.json")
    parser.add_argument("--library", help="the libvantrel.so to measure")
    options = parser.parse_args()
    library, expected, truth = Library(options.library), read_expected(), truths()
    failed = False
    for path in SAMPLES:
        visible = truth[path].get("visible", ())
        measured = measure(library, path, truth[path])
        worse, better = compare(expected.get(path, {}), measured, visible) if path in expected else ([], ["new"])
        failed = failed or bool(worse)
        for line in ["worse: " + line for line in worse] + ["better: " + line for line in better]:
            print(f"{path}: {line}")
        expected[path] = tightened(expected.get(path, {}), measured, visible)
    if options.tighten:
        EXPECTED.write_text(json.dumps(expected, indent=2) + "\n")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
