"""A flatbed scanner on paper: glass, card, shadow, optics, noise and dust, in that order.

Pictures on the way are float arrays, height x width x channels (3, or 1 for gray), 0 .. 255.
"""

from dataclasses import dataclass

import numpy as np
from PIL import Image, ImageDraw

from .geometry import bounding_box, mapping, rectangle


@dataclass(frozen=True)
class Optics:
    """How the scanner renders what lies on it."""

    supersampling: int = 4  # samples per pixel and direction, along the card's borders above all
    blur: float = 0.7  # standard deviation of the point spread, in pixels
    noise: float = 3.0  # standard deviation per channel, in levels
    shadow: float = 0.25  # share of light lost right beside the card
    shadow_offset: tuple = (3.0, 5.0)  # pixels
    shadow_blur: float = 5.0  # pixels
    dust: int = 120  # specks on a megapixel


def smooth(picture, sigma):
    """A Gaussian blur of a height x width (x channels) float array; borders are repeated."""
    if sigma <= 0:
        return picture
    radius = max(1, int(np.ceil(3 * sigma)))
    taps = np.exp(-0.5 * (np.arange(-radius, radius + 1) / sigma) ** 2)
    taps /= taps.sum()
    for axis in (0, 1):
        pad = [(0, 0)] * picture.ndim
        pad[axis] = (radius, radius)
        padded = np.pad(picture, pad, mode="edge")
        length = picture.shape[axis]
        shifted = (padded[i:i + length] if axis == 0 else padded[:, i:i + length] for i in range(len(taps)))
        picture = sum(tap * part for tap, part in zip(taps, shifted))
    return picture


def drawn_glass(size, random, mean=46.0):
    """Empty glass under a dark lid: a fall of light across the width, faint sensor columns and a warm tint."""
    width, height = size
    across = np.linspace(1, -1, width) * 3.0 + random.normal(0, 0.6, width)
    down = np.linspace(-1, 1, height) * 1.0
    level = mean + across[None, :] + down[:, None]
    tint = np.array([1.0, -2.0, 2.5]) * min(1.0, mean / 46.0)
    return np.clip(level[:, :, None] + tint, 0, 255)


def real_glass(path, size):
    """A piece of a real scan of bare glass, its noise and dust included."""
    with Image.open(path) as picture:
        return np.asarray(picture.convert("RGB").crop((0, 0) + tuple(size)), dtype=float)


def _project(art, size, corners, supersampling):
    """The art laid onto a picture of `size` with its corners at `corners`: (colour times coverage, coverage)."""
    s = supersampling
    large = (size[0] * s, size[1] * s)
    corners = np.asarray(corners, dtype=float)
    inverse = mapping(corners * s, rectangle(0, 0, art.width, art.height))
    colour = art.transform(large, Image.Transform.PERSPECTIVE, inverse, Image.Resampling.BILINEAR)
    whole = Image.new("L", art.size, 255)
    coverage = whole.transform(large, Image.Transform.PERSPECTIVE, inverse, Image.Resampling.NEAREST)
    return (np.asarray(colour.reduce(s), dtype=float).reshape(size[1], size[0], -1),
            np.asarray(coverage.reduce(s), dtype=float)[:, :, None] / 255)


def _dust(size, random, per_megapixel):
    """Specks and a few fibres: how much of each pixel they cover, 0 .. 1."""
    width, height = size
    large = Image.new("L", (width * 2, height * 2), 0)
    draw = ImageDraw.Draw(large)
    for _ in range(round(per_megapixel * width * height / 1e6)):
        x, y = random.uniform(0, 2 * width), random.uniform(0, 2 * height)
        opacity = int(random.integers(60, 256))
        if random.random() < 0.85:
            radius = random.uniform(0.5, 1.6)
            draw.ellipse([x - radius, y - radius, x + radius, y + radius], fill=opacity)
        else:
            heading, points = random.uniform(0, 2 * np.pi), [(x, y)]
            for _ in range(4):
                heading += random.normal(0, 0.5)
                x, y = x + 5 * np.cos(heading), y + 5 * np.sin(heading)
                points.append((x, y))
            draw.line(points, fill=opacity, width=1)
    return np.asarray(large.reduce(2), dtype=float)[:, :, None] / 255


def _shifted(coverage, dx, dy):
    """The coverage moved to the right and down; what moves in is empty."""
    height, width = coverage.shape[:2]
    padded = np.pad(coverage, ((max(dy, 0), max(-dy, 0)), (max(dx, 0), max(-dx, 0)), (0, 0)))
    top, left = max(-dy, 0), max(-dx, 0)
    return padded[top:top + height, left:left + width]


def _window(size, corners, optics):
    """The part of the picture that the card and its shadow touch, as two slices: rows, columns."""
    margin = 3 * max(optics.blur, optics.shadow_blur) + max(abs(offset) for offset in optics.shadow_offset) + 2
    left, top, right, bottom = bounding_box(corners)

    def span(low, high, length):
        return slice(max(0, int(low - margin)), min(length, int(high + margin) + 1))

    return span(top, bottom, size[1]), span(left, right, size[0])


def lay_card(picture, art, corners, optics=Optics()):
    """Lays a card onto the picture with its shadow around it, in place; returns the card's coverage."""
    height, width = picture.shape[:2]
    rows, columns = _window((width, height), corners, optics)
    part = picture[rows, columns]
    corners = np.asarray(corners, dtype=float) - (columns.start, rows.start)
    layers = _project(art, (part.shape[1], part.shape[0]), corners, optics.supersampling)
    colour, coverage = (smooth(layer, optics.blur) for layer in layers)
    if optics.shadow:
        dx, dy = (round(offset) for offset in optics.shadow_offset)
        part = part * (1 - optics.shadow * smooth(_shifted(coverage, dx, dy), optics.shadow_blur))
    picture[rows, columns] = part * (1 - coverage) + colour
    whole = np.zeros((height, width, 1))
    whole[rows, columns] = coverage
    return whole


def expose(picture, random, optics=Optics(), noisy=1.0):
    """Dust and sensor noise. `noisy` weights both per pixel: 0 where a piece of a real scan brings its own."""
    height, width = picture.shape[:2]
    if optics.dust:
        dust = _dust((width, height), random, optics.dust) * noisy
        picture = picture + dust * np.where(picture < 128, 0.7 * (190 - picture), -0.12 * picture)
    common = random.normal(0, optics.noise * 0.8, (height, width, 1))
    own = random.normal(0, optics.noise * 0.6, picture.shape)
    return np.clip(np.rint(picture + (common + own) * noisy), 0, 255).astype(np.uint8)
