"""Lengths and places on cards."""

import numpy as np

BLOCK = (40, 60, 160)


def lengths(corners):
    tl, tr, bl, br = corners
    top, bottom = np.linalg.norm(tr - tl), np.linalg.norm(br - bl)
    left, right = np.linalg.norm(bl - tl), np.linalg.norm(br - tr)
    return (top + bottom) / 2, (left + right) / 2


def corners_of(report):
    return np.array([report["corners"][name] for name in ("top_left", "top_right", "bottom_left", "bottom_right")])


def block_centre(card):
    """The middle of the drawn blue block, in fractions of the card."""
    distance = np.abs(card.astype(int) - BLOCK).sum(axis=2)
    y, x = np.nonzero(distance < 60)
    assert len(y) > 50
    return (x.mean() + 0.5) / card.shape[1], (y.mean() + 0.5) / card.shape[0]
