"""The scans for the search anywhere: cards on any ground, of any size and tilt, several, cut off, and none."""

from dataclasses import dataclass, replace

import numpy as np
from PIL import Image

from .card import PEOPLE, draw_card
from .geometry import CORNERS, rectangle, tilted_card
from .papers import draw_page, draw_receipt, table, wood
from .scanner import Optics, drawn_glass, expose, lay_card

A4_MM = (210.0, 297.0)
A4_150 = (1240, 1754)
LID = Optics(supersampling=3, noise=1.2, shadow=0.22, shadow_offset=(2.0, 3.0), shadow_blur=3.0, dust=10)
FAINT = replace(LID, shadow=0.12)
PHOTO = Optics(blur=1.0, noise=2.0, shadow=0.3, shadow_offset=(5.0, 6.0), shadow_blur=6.0, dust=0)
DARK = replace(PEOPLE[6], paper=(44, 48, 62), ink=(222, 222, 216), colour=(196, 206, 226))


@dataclass(frozen=True)
class Lying:
    """A card on the scan. `corners` places it where a tilt about its centre does not say it, ordered as CORNERS."""

    centre: tuple = (0.0, 0.0)
    tilt: float = 0.0
    face: object = PEOPLE[0]
    stands: bool = False
    corners: tuple = ()


@dataclass(frozen=True)
class AnywhereScan:
    """One drawn scan; `ground` is the mean level of a lid, or a function that draws something else."""

    name: str
    seed: int
    says: str
    cards: tuple = ()
    size: tuple = (900, 660)
    ground: object = 236.0
    optics: Optics = LID
    dpi: int = 150
    receipt_mm: tuple = ()  # a receipt instead of cards, its upper left corner in that of the glass
    page: bool = False  # a page of text that covers the glass


FREE_SHEET = (Lying((330.0, 240.0), 7.5, PEOPLE[0]), Lying((890.0, 300.0), -11.0, PEOPLE[1]),
              Lying((262.0, 760.0), -84.0, PEOPLE[2]), Lying((815.0, 780.0), 3.0, DARK),
              Lying((345.0, 1280.0), -24.0, PEOPLE[4]), Lying((905.0, 1420.0), 16.0, PEOPLE[5]))

ANYWHERE_SCANS = (
    AnywhereScan("a4-white.jpg", 401, "a small card askew under the white lid of an A4 scanner",
                 (Lying((742.0, 538.0), 17.0, PEOPLE[0]),), A4_150),
    AnywhereScan("white-on-white.jpg", 402, "a white card under a white lid: only a faint shadow tells of it",
                 (Lying((470.0, 320.0), -6.0, replace(PEOPLE[1], paper=(238, 238, 236))),), optics=FAINT),
    AnywhereScan("dark-on-gray.jpg", 403, "a dark card on gray", (Lying((430.0, 345.0), 12.0, DARK),), ground=148.0),
    AnywhereScan("wood.jpg", 404, "a card on a wooden board", (Lying((455.0, 318.0), -9.0, PEOPLE[3]),), ground=wood),
    AnywhereScan("portrait.jpg", 405, "a standing card on dark glass", (Lying((250.0, 390.0), 5.0, PEOPLE[4], stands=True),),
                 (660, 760), 46.0),
    AnywhereScan("receipt-in-corner.jpg", 406, "a receipt pushed into the upper left corner of dark glass", size=(760, 1180),
                 ground=58.0, receipt_mm=(80.0, 158.0)),
    AnywhereScan("photograph.jpg", 407, "a photograph at an angle, under a lamp",
                 (Lying(face=PEOPLE[5], corners=((238.0, 196.0), (672.0, 141.0), (176.0, 466.0), (781.0, 442.0))),),
                 ground=table, optics=PHOTO, dpi=72),
    AnywhereScan("free-sheet.jpg", 408, "six cards of any tilt on an A4 sheet", FREE_SHEET, A4_150, 226.0),
    AnywhereScan("cut-off.jpg", 409, "a card that reaches beyond the right border of the scan",
                 (Lying((735.0, 330.0), 4.0, PEOPLE[7]),), ground=70.0),
    AnywhereScan("text-page.jpg", 410, "a page of text: nothing to find", size=(827, 1169), dpi=100, page=True),
    AnywhereScan("empty-lid.jpg", 411, "an empty white lid: nothing to find"),
)


def _whole_corners(scan, card):
    """The corners of a card, be they on the scan or not."""
    if card.corners:
        return np.array(card.corners)
    width, height = (length * scan.dpi / 25.4 for length in card.face.size_mm)
    return tilted_card(card.centre, (height, width) if card.stands else (width, height), card.tilt)


def _up_to_frame(corners, width):
    """What of a card lies left of the scan's right border: its upper and lower side end there."""
    (tl, tr, bl, br) = corners
    if tr[0] <= width:
        return corners
    ends = [near + (far - near) * (width - near[0]) / (far[0] - near[0]) for near, far in ((tl, tr), (bl, br))]
    return np.array([tl, ends[0], bl, ends[1]])


def _as_it_lies(corners):
    """The corners from the one that is at the top left after the least turn that makes the card upright."""
    tl, tr, bl, br = corners
    along = tr - tl
    if abs(along[0]) >= abs(along[1]):
        return corners
    return np.array([bl, tl, br, tr] if along[1] > 0 else [tr, br, tl, bl])


def placements(scan):
    """The corners of every card on a scan, in the order in which they are described."""
    if scan.receipt_mm:
        width, height = (length * scan.dpi / 25.4 for length in scan.receipt_mm)
        return [rectangle(0, 0, width, height)]
    return [_as_it_lies(_up_to_frame(_whole_corners(scan, card), scan.size[0])) for card in scan.cards]


def draw(scan):
    """The scan as a picture."""
    random = np.random.default_rng(scan.seed)
    scene = scan.ground(scan.size, random) if callable(scan.ground) else drawn_glass(scan.size, random, scan.ground)
    for card in scan.cards:
        art = draw_card(card.face)
        if card.stands:
            art = art.transpose(Image.Transpose.ROTATE_90)
        lay_card(scene, art, _whole_corners(scan, card), scan.optics)
    if scan.receipt_mm:
        lay_card(scene, draw_receipt(scan.receipt_mm, random), placements(scan)[0], scan.optics)
    if scan.page:
        lay_card(scene, draw_page(A4_MM, random), rectangle(-4, -4, scan.size[0] + 4, scan.size[1] + 4), scan.optics)
    return Image.fromarray(expose(scene, random, scan.optics), "RGB")


def truth(scan):
    """What is known about the scan, for the record."""
    cards = [{"corners": {name: [round(float(value), 4) for value in corner] for name, corner in zip(CORNERS, corners)}}
             for corners in placements(scan)]
    return {"says": scan.says, "size": list(scan.size), "dpi": scan.dpi, "cards": cards}
