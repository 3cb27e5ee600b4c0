"""Scans drawn for the tests: a bright card, turned a little, on a dark and noisy glass."""

import numpy as np
from PIL import Image

CARD = (228, 222, 205)
GLASS = 46


def card_corners(width, height, tilt, fill=0.9):
    """The corners of a card in the middle of a scan, as (x, y) where pixel i covers [i, i + 1).

    In the order of the library: top-left, top-right, bottom-left, bottom-right.
    """
    half_w, half_h = width * fill / 2, height * fill / 2
    turn = np.radians(tilt)
    cos, sin = np.cos(turn), np.sin(turn)
    centre = np.array([width / 2, height / 2])
    offsets = [(-half_w, -half_h), (half_w, -half_h), (-half_w, half_h), (half_w, half_h)]
    return np.array([centre + (x * cos - y * sin, x * sin + y * cos) for x, y in offsets])


def card_positions(width, height, corners):
    """For the centre of every pixel its position on the card: 0 to 1 from left to right and from top to bottom."""
    origin, right, down = corners[0], corners[1] - corners[0], corners[2] - corners[0]
    x, y = np.meshgrid(np.arange(width) + 0.5, np.arange(height) + 0.5)
    matrix = np.linalg.inv(np.column_stack([right, down]))
    dx, dy = x - origin[0], y - origin[1]
    return matrix[0, 0] * dx + matrix[0, 1] * dy, matrix[1, 0] * dx + matrix[1, 1] * dy


def coverage(u, v, width, height):
    """How much of every pixel the card covers, with a soft edge of one pixel."""
    near = [np.clip(p * size + 0.5, 0, 1) for p, size in ((u, width), (1 - u, width), (v, height), (1 - v, height))]
    return np.minimum.reduce(near)


def draw_scan(width=700, height=440, tilt=2.0, fill=0.9, seed=1, glass=GLASS, card=CARD):
    """A colour scan as an array of height x width x 3 bytes, and the true corners."""
    random = np.random.default_rng(seed)
    corners = card_corners(width, height, tilt, fill)
    u, v = card_positions(width, height, corners)
    picture = np.zeros((height, width, 3))
    picture[:] = card
    # A dark block in the upper left and lines of text: what is up and what is left shows in the result.
    picture[(u > 0.3) & (u < 0.45) & (v > 0.3) & (v < 0.4)] = (40, 60, 160)
    picture[(u > 0.3) & (u < 0.7) & (v > 0.5) & (v < 0.65) & (np.floor(v * 60) % 2 == 0)] = (60, 50, 50)
    alpha = coverage(u, v, width * fill, height * fill)[:, :, None]
    picture = picture * alpha + glass * (1 - alpha)
    picture += random.normal(0, 2.5, picture.shape)
    return np.clip(np.rint(picture), 0, 255).astype(np.uint8), corners


def gray_of(colour):
    """The library's weights."""
    red, green, blue = (colour[:, :, i].astype(np.int32) for i in range(3))
    return ((2 * blue + 9 * green + 5 * red) // 16).astype(np.uint8)


def reduced(picture, times):
    """Every pixel the truncated mean of times x times; what is left over is dropped."""
    height, width = (size // times for size in picture.shape[:2])
    blocks = picture[: height * times, : width * times].astype(np.int32)
    return (blocks.reshape(height, times, width, times, -1).sum(axis=(1, 3)) // times**2).astype(np.uint8).reshape(
        height, width, *picture.shape[2:]
    )


def save(array, path, dpi=300, **options):
    image = Image.fromarray(array)
    if dpi:
        options["dpi"] = (dpi, dpi)
    image.save(path, **options)
    return path


def load(path):
    """The pixels of a file as an array; 1-bit pictures become 0 and 255."""
    with Image.open(path) as image:
        return np.asarray(image.convert("L") if image.mode == "1" else image).copy()


def blank_scan(width=300, height=200, level=240):
    return np.full((height, width, 3), level, np.uint8)


def bilevel(colour):
    """True where the scan is bright."""
    return gray_of(colour) > 120
