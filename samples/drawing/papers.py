"""Papers other than cards, flat and free of noise: a receipt, and a page full of text."""

import numpy as np
from PIL import Image, ImageDraw, ImageFont

from .card import FONTS

DOTS_PER_MM = 12
INK = (52, 52, 58)
WORDS = ("barometer", "glass", "the", "of", "wind", "falls", "over", "harbour", "a", "needle", "to", "north", "and", "sea",
         "reading", "at", "noon", "brass", "with", "steady", "pressure", "in", "weather", "table", "is", "kept")


def _font(name, height_mm):
    return ImageFont.truetype(FONTS + name, round(height_mm * DOTS_PER_MM))


def draw_receipt(size_mm, random):
    """A till's receipt: a head, lines of wares with prices, a sum."""
    width, height = (round(length * DOTS_PER_MM) for length in size_mm)
    art = Image.new("RGB", (width, height), (236, 236, 232))
    draw = ImageDraw.Draw(art)
    draw.text((0.2 * width, 6 * DOTS_PER_MM), "Larkspur & Gale", font=_font("DejaVuSerif-Bold.ttf", 4.2), fill=INK)
    small, top = _font("DejaVuSansMono.ttf", 2.6), 18.0
    while top < size_mm[1] - 16:
        draw.text((6 * DOTS_PER_MM, top * DOTS_PER_MM), WORDS[random.integers(len(WORDS))], font=small, fill=INK)
        draw.text((width - 20 * DOTS_PER_MM, top * DOTS_PER_MM), f"{random.uniform(1, 90):6.2f}", font=small, fill=INK)
        top += 5
    draw.text((6 * DOTS_PER_MM, (size_mm[1] - 11) * DOTS_PER_MM), "SUM 314.15", font=_font("DejaVuSansMono-Bold.ttf", 3.4),
              fill=INK)
    return art


def draw_page(size_mm, random):
    """A page of text in paragraphs."""
    width, height = (round(length * DOTS_PER_MM) for length in size_mm)
    art = Image.new("RGB", (width, height), (243, 243, 240))
    draw = ImageDraw.Draw(art)
    font, top, left_margin = _font("DejaVuSerif.ttf", 3.6), 24.0, 22 * DOTS_PER_MM
    while top < size_mm[1] - 24:
        for _ in range(int(random.integers(4, 9))):
            left, last = left_margin, width - 24 * DOTS_PER_MM
            while left < last and top < size_mm[1] - 24:
                word = WORDS[random.integers(len(WORDS))]
                draw.text((left, top * DOTS_PER_MM), word, font=font, fill=INK)
                left += font.getlength(word + " ")
            top += 5.4
        top += 4
    return art


def wood(size, random):
    """A board: grain along its width, in bands that wander."""
    width, height = size
    x, y = np.meshgrid(np.linspace(0, 1, width), np.arange(height, dtype=float))
    wander = sum(random.uniform(4, 12) * np.sin(2 * np.pi * (random.uniform(0.3, 1.2) * x + random.uniform(0, 1)))
                 for _ in range(3))
    rings = np.sin((y + wander) / random.uniform(9, 13)) + 0.6 * np.sin((y + 1.4 * wander) / random.uniform(3, 5))
    fibres = np.repeat(random.normal(0, 1, (height, width // 12 + 1)), 12, axis=1)[:, :width]
    return np.array([146.0, 104.0, 66.0]) + (9 * rings + 4 * fibres)[:, :, None] * np.array([1.0, 0.8, 0.6])


def table(size, random):
    """A gray table top under a lamp: light falls off towards a corner."""
    width, height = size
    x, y = np.meshgrid(np.linspace(-0.4, 1, width), np.linspace(-0.3, 1, height))
    level = 132 - 46 * (x * x + y * y) + random.normal(0, 2, (height, width))
    return level[:, :, None] * np.array([1.0, 0.97, 0.92])
