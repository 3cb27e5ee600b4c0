#!/usr/bin/python3
"""Draws what the finder sees of one drawn scan, step by step, for docs/finder.md.

step_pictures.py [--set photos] [--seed 1000009] [--drawing PROGRAM] [--steps PROGRAM] [--out docs/pictures]

finder-copy.jpg is the light plane of the copy, finder-edges.png its edges by direction, finder-lines.jpg the lines
through them, the most voted the darkest. finder-barriers.jpg is the barrier map. finder-candidates.jpg shows candidates
from lines in red, from regions in blue; finder-finalists.jpg the finalists on the scan, the likeliest with their
confidences; finder-result.jpg the card, its sides as in pictures.py, and a corner of it enlarged: the true border is
the wide green line.
"""

import argparse
import colorsys
import json
import subprocess
import sys
import tempfile
from pathlib import Path

import numpy as np
from PIL import Image, ImageDraw, ImageFont

ROOT = Path(__file__).resolve().parents[1]
if __name__ == "__main__":
    sys.path[:0] = [str(ROOT), str(ROOT / "tests" / "support")]

from evaluation import building  # noqa: E402  (the folders are put on the path above)
from evaluation.pictures import FONT, TRUTH, outline, side_colour  # noqa: E402
from evaluation.sources import Drawn  # noqa: E402

SET, SEED = "photos", 1000009  # a scan on which every step has something to do
LINE, REGION, OTHER, WHITE = (215, 40, 40), (40, 90, 220), (150, 150, 150), (255, 255, 255)
RANKS = ((230, 20, 30), (20, 100, 240), (0, 150, 60), (170, 60, 200), (220, 130, 0))  # of the likeliest finalists
KEY = 56  # the width in which their confidences stand
DETAIL, ENLARGED = 24, 10  # a corner: pixels of the scan, and how large each is shown
DIRECTIONS = 256  # bins of a half-turn, as in src/anywhere/directions.h


def seen(scan, pixels, program, scratch):
    """The finder's steps on a scan, as vantrel_show_steps tells them."""
    path = Path(scratch) / scan.picture
    Image.fromarray(pixels).save(path, "PPM")
    return json.loads(subprocess.run([program, path], check=True, capture_output=True).stdout)


def plane(steps, name):
    """A map of the copy, stretched to 0 to 255."""
    values = np.array(steps[name], dtype=float).reshape(steps["rows"], steps["cols"])
    low, high = values.min(), np.quantile(values, 0.998)
    return Image.fromarray(np.uint8(np.clip((values - low) / max(high - low, 1), 0, 1) * 255))


def reduced(pixels, steps):
    """The scan in colour, as small as the copy."""
    factor = steps["factor"]
    return Image.fromarray(pixels[:steps["rows"] * factor, :steps["cols"] * factor]).reduce(factor)


def pale(image):
    """A backdrop on which lines show."""
    return Image.blend(image.convert("RGB"), Image.new("RGB", image.size, WHITE), 0.6)


def copy(_, steps):
    return plane(steps, "light")


def edges(_, steps):
    """Each edge in the colour of its direction, the fainter the weaker it is."""
    picture = np.full((steps["rows"], steps["cols"], 3), 255.0)
    for x, y, magnitude, direction in steps["edges"]:
        colour = np.array(colorsys.hsv_to_rgb(direction / DIRECTIONS, 1.0, 0.8)) * 255
        strength = min(1.0, 0.35 + 0.15 * magnitude / steps["threshold"])
        picture[int(y), int(x)] = 255 - (255 - colour) * strength
    return Image.fromarray(np.uint8(picture))


def lines(_, steps):
    """The weakest lines first, so that the strongest lie on top."""
    image = pale(plane(steps, "light"))
    draw = ImageDraw.Draw(image)
    found = [line for line in steps["lines"] if not line["frame"]]
    far = sum(image.size)
    for rank, line in reversed(list(enumerate(found))):
        (x, y), offset = line["normal"], line["offset"]
        share = rank / max(len(found) - 1, 1)
        colour = tuple(round(part + (235 - part) * share ** 0.5) for part in LINE)
        draw.line([(x * offset - y * far, y * offset + x * far), (x * offset + y * far, y * offset - x * far)], colour)
    return image


def barriers(_, steps):
    return plane(steps, "barriers")


def candidates(pixels, steps):
    image = pale(reduced(pixels, steps))
    draw = ImageDraw.Draw(image)
    for one in steps["candidates"]:
        outline(draw, one["quad"], 1, [REGION if one["region"] else LINE] * 4, 1)
    return image


def finalists(pixels, steps):
    """All of them thinly in gray, on top the likeliest, with their confidences beside the picture."""
    image = pale(reduced(pixels, steps))
    draw = ImageDraw.Draw(image)
    for rank, one in reversed(list(enumerate(steps["finalists"]))):
        colour = RANKS[rank] if rank < len(RANKS) else OTHER
        outline(draw, one["refined"], 1 / steps["factor"], [colour] * 4, 3 if rank == 0 else 1)
    page = Image.new("RGB", (image.width + KEY, image.height), WHITE)
    page.paste(image, (0, 0))
    draw, font = ImageDraw.Draw(page), ImageFont.truetype(FONT, 15)
    for rank, (one, colour) in enumerate(zip(steps["finalists"], RANKS)):
        draw.text((image.width + 10, 4 + 20 * rank), f"{one['confidence']:.2f}", colour, font)
    return page


def detail(pixels, best, truth):
    """The first corner on the scan, pixel by pixel, with the true border under the found one."""
    x, y = (round(value) - DETAIL // 2 for value in best["refined"][0])
    box = (x, y, x + DETAIL, y + DETAIL)
    image = Image.fromarray(pixels).crop(box).resize((DETAIL * ENLARGED,) * 2, Image.Resampling.NEAREST)
    draw = ImageDraw.Draw(image)

    def moved(corners):
        return [(a - x, b - y) for a, b in corners]

    for card in truth:
        outline(draw, moved(card.corners), ENLARGED, [TRUTH] * 4, 9)
    outline(draw, moved(best["refined"]), ENLARGED, [side_colour(share) for share in best["shares"]], 3)
    return image


def result(pixels, steps, truth):
    """The likeliest finalist on the scan; beside it a corner."""
    best = steps["finalists"][0]
    image = reduced(pixels, steps)
    outline(ImageDraw.Draw(image), best["refined"], 1 / steps["factor"],
            [side_colour(share) for share in best["shares"]], 3)
    corner = detail(pixels, best, truth)
    page = Image.new("RGB", (image.width + 8 + corner.width, max(image.height, corner.height)), WHITE)
    page.paste(image, (0, 0))
    page.paste(corner, (image.width + 8, 0))
    return page


def write(image, name, folder):
    """Into the folder: thin marks on white as a PNG, what has the scan for a backdrop as a JPEG."""
    path = Path(folder) / (f"finder-{name}.png" if name == "edges" else f"finder-{name}.jpg")
    if path.suffix == ".png":
        image.quantize(64, dither=Image.Dither.NONE).save(path, optimize=True)
    else:
        image.save(path, quality=85, optimize=True, subsampling=0)
    print(f"wrote {path}: {path.stat().st_size} bytes")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--set", default=SET)
    parser.add_argument("--seed", type=int, default=SEED)
    parser.add_argument("--drawing", type=Path, help="the program that draws scans, instead of building it")
    parser.add_argument("--steps", type=Path, help="the program that tells the steps, instead of building it")
    parser.add_argument("--out", type=Path, default=ROOT / "docs" / "pictures")
    options = parser.parse_args()
    drawing = (options.drawing or building.drawer()).resolve()
    program = (options.steps or building.steps_program()).resolve()
    options.out.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory() as scratch:
        scan, pixels = next(iter(Drawn(str(drawing), options.set, options.seed, 1, scratch)))
        steps = seen(scan, pixels, program, scratch)
    for step in (copy, edges, lines, barriers, candidates, finalists):
        write(step(pixels, steps), step.__name__, options.out)
    write(result(pixels, steps, scan.cards), "result", options.out)


if __name__ == "__main__":
    main()
