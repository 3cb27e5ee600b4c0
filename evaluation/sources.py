"""Where scans come from: sets that are drawn from seeds, or a folder of pictures with their truth."""

import json
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path

import numpy as np
from PIL import Image, ImageOps

from evaluation.records import Scan, TrueCard, points
from evaluation.polygons import segment_within

# What the judgement of candidates is fitted on comes from seeds 1 to 999999; these are never fitted on.
FIRST_SEED = 1_000_001

LARGE = "fine"  # scans of ten megapixels and more: a quarter as many are drawn
WITH_CARDS = ("flat", "singles", "white", "photos", "receipts", "several", LARGE)
WITHOUT_CARDS = ("bare", "strips", "pages")
SETS = (*WITH_CARDS, *WITHOUT_CARDS)


@dataclass(frozen=True)
class Drawn:
    """Scans of one set, drawn by a program when they are needed and thrown away afterwards."""

    program: str
    set: str
    first: int
    count: int
    scratch: str

    def __iter__(self):
        """(scan, RGB pixels)"""
        with tempfile.TemporaryDirectory(dir=self.scratch) as folder:
            subprocess.run([self.program, "--set", self.set, "--first", str(self.first), "--count", str(self.count),
                            "--out", folder], check=True, stdout=subprocess.DEVNULL)
            for line in (Path(folder) / "truth.jsonl").read_text().splitlines():
                scan = Scan.read(json.loads(line))
                yield scan, pixels_of(Path(folder) / scan.picture)


def drawn(program, sets, count, scratch, first=FIRST_SEED):
    """The sets in shares that can be drawn and judged side by side."""
    shares = []
    for name in sets:
        total, share = (max(count // 4, 1), 2) if name == LARGE else (count, 8)
        shares += [Drawn(str(program), name, first + done, min(share, total - done), str(scratch))
                   for done in range(0, total, share)]
    return shares


@dataclass(frozen=True)
class Given:
    """Some pictures of a folder, each an entry of its truth.json."""

    folder: str
    entries: tuple  # (index, JSON text)

    def __iter__(self):
        for index, text in self.entries:
            entry = json.loads(text)
            pixels, dpi = opened(Path(self.folder) / entry["picture"])
            yield given_scan(self.folder, index, entry, pixels, dpi), pixels


def given(folder, share=8):
    """A folder with a truth.json: [{"picture": name, "size": [w, h], "cards": [[[x, y] x 4], ...]}, ...]."""
    entries = json.loads((Path(folder) / "truth.json").read_text())
    entries = [(index, json.dumps(entry)) for index, entry in enumerate(entries)]
    return [Given(str(folder), tuple(entries[done:done + share])) for done in range(0, len(entries), share)]


def given_scan(folder, index, entry, pixels, dpi):
    """Its cards' corners are those of a picture of the size that the truth tells, so they are scaled to the pixels'."""
    height, width = pixels.shape[:2]
    told_width, told_height = entry.get("size", (width, height))
    x_scale, y_scale = width / told_width, height / told_height
    if abs(x_scale / y_scale - 1) > 0.01:
        raise ValueError(f"{entry['picture']} has {width} x {height} pixels, the truth is of another shape")
    cards = []
    for card in entry["cards"]:
        corners = points((x * x_scale, y * y_scale) for x, y in card)
        sides = zip(corners, corners[1:] + corners[:1])
        cards.append(TrueCard(corners, tuple(segment_within(a, b, (width, height)) is not None for a, b in sides)))
    return Scan(entry["picture"], Path(folder).resolve().name, index, width, height, dpi, cards=tuple(cards))


def pixels_of(picture):
    return np.asarray(Image.open(picture).convert("RGB"))


def opened(picture):
    """RGB pixels as one looks at them, and dots per inch or 0."""
    with Image.open(picture) as image:
        dpi = float(min(image.info.get("dpi", (0, 0))))
        return np.asarray(ImageOps.exif_transpose(image).convert("RGB")), dpi
