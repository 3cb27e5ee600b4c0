"""Where a card lies: corners, tilts and plane projective mappings.

Points are (x, y) pairs, y counted from the top of the picture, in pixel-edge coordinates: the picture spans
0 .. width by 0 .. height, and the centre of its first pixel is (0.5, 0.5).
"""

import math

import numpy as np

SIDES = ("top", "bottom", "left", "right")
CORNERS = ("top-left", "top-right", "bottom-left", "bottom-right")


def rectangle(left, top, right, bottom):
    """The four corners of an upright rectangle, ordered as CORNERS."""
    return np.array([[left, top], [right, top], [left, bottom], [right, bottom]], dtype=float)


def tilted_card(centre, size, degrees):
    """The corners of a card of `size` around `centre`, turned clockwise by `degrees`."""
    half_width, half_height = size[0] / 2, size[1] / 2
    turn = math.radians(degrees)
    rotation = np.array([[math.cos(turn), -math.sin(turn)], [math.sin(turn), math.cos(turn)]])
    return rectangle(-half_width, -half_height, half_width, half_height) @ rotation.T + np.asarray(centre, dtype=float)


def mapping(points, images):
    """The eight coefficients (a .. h) of the plane projective mapping that takes each of four points to its image:
    x' = (a x + b y + c) / (g x + h y + 1), y' = (d x + e y + f) / (g x + h y + 1)."""
    rows, right = [], []
    for (x, y), (u, v) in zip(points, images):
        rows.append([x, y, 1, 0, 0, 0, -u * x, -u * y])
        rows.append([0, 0, 0, x, y, 1, -v * x, -v * y])
        right += [u, v]
    return np.linalg.solve(np.array(rows, dtype=float), np.array(right, dtype=float))


def bounding_box(corners):
    """(left, top, right, bottom) of the corners."""
    low, high = np.min(corners, axis=0), np.max(corners, axis=0)
    return float(low[0]), float(low[1]), float(high[0]), float(high[1])
