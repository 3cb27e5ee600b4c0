#!/usr/bin/python3
"""Draws the sample scans and writes what is true of them.

draw.py             draws every scan into this folder and writes truth.json
draw.py NAME ...    draws these only, such as clip/tilt-5.jpg
draw.py --check     draws into memory, compares with the committed files, writes nothing; exit status 1 on a difference

Needs NumPy, Pillow and the DejaVu fonts: Debian's python3-numpy, python3-pil, fonts-dejavu-core.
"""

import argparse
import io
import json
import sys
from functools import partial
from pathlib import Path

import numpy as np
from PIL import Image

from drawing import anywhere_scans, clip_scans, cut_scans, sheet_scans
from drawing.real_scans import REAL_SCANS

HERE = Path(__file__).resolve().parent
CONVENTION = ("x to the right, y down from the top of the picture, both from its outer edge: the centre of the first "
              "pixel is (0.5, 0.5)")


def catalogue():
    """Every drawn scan: path -> (function that draws it, function that says what is true of it)."""
    entries = {}
    for folder, kind, scans in (("clip", clip_scans, clip_scans.CLIP_SCANS), ("cut", cut_scans, cut_scans.CUT_SCANS),
                                ("sheets", sheet_scans, sheet_scans.SHEET_SCANS),
                                ("anywhere", anywhere_scans, anywhere_scans.ANYWHERE_SCANS)):
        for scan in scans:
            entries[f"{folder}/{scan.name}"] = (partial(kind.draw, scan), partial(kind.truth, scan))
    return entries


def whole_truth():
    """The content of truth.json."""
    drawn = {path: says() for path, (_, says) in catalogue().items()}
    return {"coordinates": CONVENTION, "scans": {**drawn, **REAL_SCANS}}


def encode(picture, path, dpi):
    """The picture in the format that its path asks for."""
    stream = io.BytesIO()
    if path.endswith(".jpg"):
        picture.save(stream, "JPEG", quality=88, dpi=(dpi, dpi))
    else:
        picture.save(stream, "PNG", optimize=True, dpi=(dpi, dpi))
    return stream.getvalue()


def truth_text():
    return json.dumps(whole_truth(), indent=2) + "\n"


def differences(paths=None):
    """What redrawing these, or all, would change: one line each. Codecs may differ in a few levels; pictures may not."""
    found = []
    if (HERE / "truth.json").read_text() != truth_text():
        found.append("truth.json: the drawing code says otherwise")
    entries = catalogue()
    for path in paths or entries:
        draw, says = entries[path]
        drawn = Image.open(io.BytesIO(encode(draw(), path, says()["dpi"])))
        with Image.open(HERE / path) as committed:
            if (committed.mode, committed.size) != (drawn.mode, drawn.size):
                found.append(f"{path}: {committed.mode} {committed.size}, drawn as {drawn.mode} {drawn.size}")
                continue
            change = np.abs(np.asarray(committed, dtype=int) - np.asarray(drawn, dtype=int)).mean()
        if change > 0.5:
            found.append(f"{path}: differs by {change:.2f} levels on the mean")
    return found


def main():
    parser = argparse.ArgumentParser(description="Draws the sample scans and writes what is true of them.")
    parser.add_argument("names", nargs="*", help="scans to draw; all and truth.json when none is given")
    parser.add_argument("--check", action="store_true", help="compare with the committed files, write nothing")
    options = parser.parse_args()
    if options.check:
        found = differences()
        print("\n".join(found) or "the committed samples are what the script draws")
        return 1 if found else 0
    entries = catalogue()
    unknown = [name for name in options.names if name not in entries]
    if unknown:
        parser.error("no such scan: " + ", ".join(unknown))
    for path in options.names or entries:
        draw, says = entries[path]
        (HERE / path).parent.mkdir(exist_ok=True)
        data = encode(draw(), path, says()["dpi"])
        (HERE / path).write_bytes(data)
        print(f"{path}: {len(data) // 1024} KiB")
    if not options.names:
        (HERE / "truth.json").write_text(truth_text())
    return 0


if __name__ == "__main__":
    sys.exit(main())
