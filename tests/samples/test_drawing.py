"""The committed samples are what the drawing script draws, and the truth on record is the geometry that it used.

All of them by samples/draw.py --check, which takes half a minute; here some of each kind.
"""

import sys

import numpy as np

from library import CORNERS, ROOT
from measure import open_sample, truths

sys.path.insert(0, str(ROOT / "samples"))

import draw  # noqa: E402  (the folder is put on the path above)
from drawing.geometry import mapping, rectangle  # noqa: E402


SOME = ["clip/level.jpg", "clip/perspective.jpg", "clip/black-glass.jpg", "clip/bilevel.png", "clip/blank.jpg", "cut/gray-tilted.png",
        "cut/colour.jpg", "sheets/dark-strip.jpg", "anywhere/wood.jpg", "anywhere/receipt-in-corner.jpg", "anywhere/text-page.jpg"]


def test_redrawing_changes_nothing():
    assert draw.differences(SOME) == []


def test_a_mapping_takes_its_points_to_their_images():
    points, images = rectangle(0, 0, 8, 5), np.array([[1, 2], [9, 1], [0.5, 7], [10, 8]])
    a, b, c, d, e, f, g, h = mapping(points, images)
    for (x, y), image in zip(points, images):
        below = g * x + h * y + 1
        assert np.allclose(((a * x + b * y + c) / below, (d * x + e * y + f) / below), image)


def crossing(levels):
    """Where a row of levels rises through the middle between its ends, in pixel-edge coordinates."""
    middle = (levels[:6].mean() + levels[-6:].mean()) / 2
    after = int(np.argmax(levels > middle))
    before, behind = levels[after - 1], levels[after]
    return after - 0.5 + (middle - before) / (behind - before)


def test_the_card_on_record_is_where_the_picture_shows_it():
    """Found by hand in the picture, without the library: the level card's left and top borders."""
    truth = truths()["clip/level.jpg"]
    gray = np.asarray(open_sample("clip/level.jpg").convert("L"), dtype=float)
    left, top = truth["corners"][CORNERS[0]]
    across = gray[350:450, int(left) - 20:int(left) + 20].mean(axis=0)
    down = gray[int(top) - 20:int(top) + 20, 550:650].mean(axis=1)
    assert abs(int(left) - 20 + crossing(across) - left) < 0.2
    assert abs(int(top) - 20 + crossing(down) - top) < 0.2
