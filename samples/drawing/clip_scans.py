"""The scans for the main operation: a card askew on dark glass, seen by the corner finder."""

from dataclasses import dataclass
from pathlib import Path

import numpy as np
from PIL import Image

from .card import PEOPLE, draw_card
from .geometry import CORNERS, SIDES, tilted_card
from .scanner import Optics, drawn_glass, expose, lay_card, real_glass

SIZE = (1240, 820)  # at 300 dots per inch
GLASS = Path(__file__).resolve().parent.parent / "glass"


@dataclass(frozen=True)
class ClipScan:
    """One drawn scan. `pull` moves single corners (name: (dx, dy)) for a view in perspective."""

    name: str
    seed: int
    says: str
    tilt: float = 0.0
    shift: tuple = (0.0, 0.0)
    pull: tuple = ()
    glass: object = 46.0  # mean level of drawn glass, or the file of a real one
    person: int = 0
    mode: str = "RGB"
    card: bool = True
    visible: tuple = SIDES  # the sides whose borders stand out from the glass
    optics: Optics = Optics()
    dpi: int = 300

    @property
    def size(self):
        """(width, height): 105 x 69 mm, the glass around a card of 85 x 55 mm."""
        return SIZE[0] * self.dpi // 300, SIZE[1] * self.dpi // 300


WHITE_LID = Optics(shadow=0.12)

CLIP_SCANS = (
    ClipScan("level.jpg", 101, "level, dark glass"),
    ClipScan("tilt-1.jpg", 102, "turned by 1 degree", tilt=1.0, shift=(9.3, -6.4), person=1),
    ClipScan("tilt-2.jpg", 103, "turned by -2 degrees", tilt=-2.0, shift=(-14.6, 4.7), person=2),
    ClipScan("tilt-2.5.jpg", 104, "turned by 2.5 degrees, between two angles of the search", tilt=2.5, person=3),
    ClipScan("tilt-2.5-150dpi.jpg", 104, "the same at half the resolution", tilt=2.5, person=3, dpi=150),
    ClipScan("tilt-3.jpg", 105, "turned by 3 degrees", tilt=3.0, shift=(6.0, -8.0), person=4),
    ClipScan("tilt-5.jpg", 106, "turned by -5 degrees", tilt=-5.0, shift=(11.5, 3.5), person=5),
    ClipScan("tilt-8.jpg", 107, "turned by 8 degrees: its long borders leave their bands", tilt=8.0, person=6),
    ClipScan("perspective.jpg", 108, "one end farther from the sensor than the other", tilt=1.0, person=7,
             pull=(("top-right", (-8.0, 20.0)), ("bottom-right", (-6.0, -18.0)))),
    ClipScan("black-glass.jpg", 109, "on a real scanner's black glass", tilt=-3.0, shift=(4.0, 7.0), person=1,
             glass="black-glass.jpg"),
    ClipScan("violet-glass.jpg", 110, "on the same scanner's violet glass", tilt=2.0, shift=(-7.0, -5.0), person=2,
             glass="violet-glass.jpg"),
    ClipScan("gray.png", 111, "8 bits, turned by -1 degree", tilt=-1.0, shift=(3.0, 3.0), person=3, mode="L",
             optics=Optics(noise=1.5)),
    ClipScan("bilevel.png", 112, "1 bit, turned by 3 degrees: copied, never analysed", tilt=3.0, person=4, mode="1"),
    ClipScan("blank.jpg", 113, "a blank white page: nothing to find", glass=238.0, card=False, visible=(),
             optics=Optics(dust=0)),
    ClipScan("white-glass.jpg", 114, "a white card under a white lid: no border stands out", tilt=2.0, glass=214.0,
             person=5, visible=(), optics=WHITE_LID),
)


def corners_of(scan):
    """The card's true corners."""
    per_mm = scan.dpi / 25.4
    centre = (scan.size[0] / 2 + scan.shift[0], scan.size[1] / 2 + scan.shift[1])
    width, height = PEOPLE[scan.person].size_mm
    corners = tilted_card(centre, (width * per_mm, height * per_mm), scan.tilt)
    for name, move in scan.pull:
        corners[CORNERS.index(name)] += move
    return corners


def draw(scan):
    """The scan as a picture."""
    random = np.random.default_rng(scan.seed)
    real = isinstance(scan.glass, str)
    glass = real_glass(GLASS / scan.glass, scan.size) if real else drawn_glass(scan.size, random, scan.glass)
    noisy = 1.0
    if scan.card:
        art = draw_card(PEOPLE[scan.person])
        coverage = lay_card(glass, art, corners_of(scan), scan.optics)
        noisy = coverage if real else 1.0
    elif real:
        noisy = 0.0
    picture = Image.fromarray(expose(glass, random, scan.optics, noisy), "RGB")
    if scan.mode == "1":
        return picture.convert("L").point(lambda level: 255 * (level > 128)).convert("1", dither=Image.Dither.NONE)
    return picture.convert(scan.mode)


def truth(scan):
    """What is known about the scan, for the record."""
    record = {"says": scan.says, "size": list(scan.size), "dpi": scan.dpi, "visible": list(scan.visible)}
    if scan.card:
        record["corners"] = {name: [round(float(value), 4) for value in corner]
                             for name, corner in zip(CORNERS, corners_of(scan))}
    return record
