"""The scans for the segmentation: sheets with several cards of 3.55 x 2.2 inches."""

from dataclasses import dataclass, replace

import numpy as np
from PIL import Image

from .card import CARD_US_MM, PEOPLE, draw_card
from .geometry import CORNERS, SIDES, bounding_box, tilted_card
from .scanner import Optics, drawn_glass, expose, lay_card

DPI = 300
CARD = (3.55 * DPI, 2.2 * DPI)
UNDER_LID = Optics(supersampling=3, noise=1.0, shadow=0.04, dust=2)
ON_GLASS = Optics(supersampling=3, noise=1.5, dust=60)


@dataclass(frozen=True)
class SheetScan:
    """One drawn sheet; `columns` are centres, and every column holds a card at each of the centres in `rows`."""

    name: str
    seed: int
    says: str
    mode: str
    size: tuple
    columns: tuple
    rows: tuple
    background: float = 236.0
    optics: Optics = UNDER_LID
    tilts: tuple = ()  # whole degrees; without them every card lies a little unevenly


SHEET_SCANS = (
    SheetScan("two-columns.png", 301, "1 bit, letter size: eight cards in two columns", "1", (2550, 3300),
              (650.0, 1900.0), (450.0, 1250.0, 2050.0, 2850.0)),
    SheetScan("one-column.png", 302, "8 bits: four cards in one column", "L", (1500, 3300), (750.0,),
              (460.0, 1240.0, 2070.0, 2850.0)),
    SheetScan("dark-strip.jpg", 303, "8 bits: three cards askew in one column on a narrow strip of dark glass", "L",
              (1200, 2520), (600.0,), (440.0, 1260.0, 2080.0), 46.0, ON_GLASS, (2.0, -2.0, 1.0)),
)


def placements(sheet):
    """For every card of a sheet, in reading order: its column, and its corners. They lie a little unevenly."""
    random = np.random.default_rng(sheet.seed)
    placed = []
    for row in sheet.rows:
        for column, across in enumerate(sheet.columns):
            centre = np.array([across, row]) + random.uniform(-25, 25, 2)
            tilt = sheet.tilts[len(placed)] if sheet.tilts else random.uniform(-0.6, 0.6)
            placed.append((column, tilted_card(centre, CARD, tilt)))
    return placed


def draw(sheet):
    """The sheet as a picture."""
    random = np.random.default_rng(sheet.seed + 1000)
    scene = drawn_glass(sheet.size, random, sheet.background)
    for number, (_, corners) in enumerate(placements(sheet)):
        face = replace(PEOPLE[number % len(PEOPLE)], size_mm=CARD_US_MM)
        lay_card(scene, draw_card(face), corners, sheet.optics)
    gray = Image.fromarray(expose(scene, random, sheet.optics), "RGB").convert("L")
    if sheet.mode == "1":
        return gray.point(lambda level: 255 * (level > 170)).convert("1", dither=Image.Dither.NONE)
    if sheet.name.endswith(".png"):
        return gray.point(lambda level: min(255, (level + 4) // 8 * 8))  # few levels: small files
    return gray


def truth(sheet):
    """What is known about the sheet, for the record."""
    names = ("left", "top", "right", "bottom")
    cards = [{"column": column, **dict(zip(names, (round(value, 4) for value in bounding_box(corners)))),
              "corners": {name: [round(float(value), 4) for value in corner] for name, corner in zip(CORNERS, corners)}}
             for column, corners in placements(sheet)]
    visible = SIDES if sheet.background < 128 else ()
    return {"says": sheet.says, "size": list(sheet.size), "dpi": DPI, "visible": list(visible), "cards": cards}
