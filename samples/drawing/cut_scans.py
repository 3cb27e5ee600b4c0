"""The scans for the card cut: an upright card under a flat light lid."""

from dataclasses import dataclass

import numpy as np
from PIL import Image

from .card import PEOPLE, draw_card
from .geometry import tilted_card
from .scanner import Optics, drawn_glass, expose, lay_card

DPI = 200
SIZE = (762, 640)  # the card's upper border lies a fifth below the top, where the finder looks for it
CENTRE = (381.4, 344.7)
UNDER_LID = Optics(noise=2.0, shadow=0.1, shadow_offset=(2.0, 3.0), shadow_blur=3.0, dust=40)


@dataclass(frozen=True)
class CutScan:
    """One drawn scan; `scale` enlarges the whole scene."""

    name: str
    seed: int
    says: str
    mode: str
    lid: float
    tilt: float = 0.0
    scale: int = 1
    person: int = 0


CUT_SCANS = (
    CutScan("gray.png", 201, "8 bits, upright", "L", 196.0, person=1),
    CutScan("gray-tilted.png", 202, "8 bits, turned by half a degree", "L", 196.0, tilt=0.5, person=2),
    CutScan("colour.jpg", 203, "24 bits, upright", "RGB", 186.0, person=3),
    CutScan("colour-twin.jpg", 204, "the same scene as colour.jpg at twice its resolution", "RGB", 186.0, scale=2,
            person=3),
)


def _corners(scan):
    per_mm = DPI / 25.4
    width, height = PEOPLE[scan.person].size_mm
    return tilted_card(CENTRE, (width * per_mm, height * per_mm), scan.tilt) * scan.scale


def rectangle_of(scan):
    """(left, top, right, bottom): each side where the card's border has its middle."""
    top_left, top_right, bottom_left, bottom_right = _corners(scan)
    return (float(top_left[0] + bottom_left[0]) / 2, float(top_left[1] + top_right[1]) / 2,
            float(top_right[0] + bottom_right[0]) / 2, float(bottom_left[1] + bottom_right[1]) / 2)


def draw(scan):
    """The scan as a picture."""
    random = np.random.default_rng(scan.seed)
    scene = drawn_glass((SIZE[0] * scan.scale, SIZE[1] * scan.scale), random, scan.lid)
    lay_card(scene, draw_card(PEOPLE[scan.person]), _corners(scan), UNDER_LID)
    return Image.fromarray(expose(scene, random, UNDER_LID), "RGB").convert(scan.mode)


def truth(scan):
    """What is known about the scan, for the record."""
    names = ("left", "top", "right", "bottom")
    return {"says": scan.says, "size": [side * scan.scale for side in SIZE], "dpi": DPI * scan.scale,
            "rectangle": dict(zip(names, (round(value, 4) for value in rectangle_of(scan))))}
