#!/usr/bin/python3
"""Draws what was found on drawn scans into contact sheets for docs/finder.md.

pictures.py [--results build/evaluation/results.json] [--method anywhere] [--drawing PROGRAM] [--out docs/pictures]

finder-found.jpg shows the first scans of each set, finder-failures.jpg the worst of each. The true border is a thin
green line; found sides are red, weak ones orange, guessed ones yellow; alternatives are thin blue lines.
"""

import argparse
import json
import sys
import tempfile
from io import BytesIO
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
if __name__ == "__main__":
    sys.path[:0] = [str(ROOT), str(ROOT / "tests" / "support")]

from PIL import Image, ImageDraw, ImageFont  # noqa: E402  (the folders are put on the path above)

from evaluation import building, summary  # noqa: E402
from evaluation.judging import RIGHT  # noqa: E402
from evaluation.running import Result  # noqa: E402
from evaluation.sources import Drawn  # noqa: E402
from evaluation.tables import per_set  # noqa: E402

TRUTH, ALTERNATIVE = (40, 220, 60), (60, 150, 255)
SIDE_COLOURS = ((0.8, (230, 20, 30)), (0.5, (255, 140, 0)), (0.0, (250, 230, 0)))  # found, weak, guessed: least share
CELL, CAPTION, COLUMNS = 280, 16, 6
MOST_BYTES = 290_000  # of a sheet
FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"


def side_colour(share):
    return next(colour for least, colour in SIDE_COLOURS if share >= least)


def outline(draw, corners, scale, colours, width):
    """A closed line, each side in its colour."""
    ends = [(x * scale, y * scale) for x, y in corners]
    for start, end, colour in zip(ends, ends[1:] + ends[:1], colours):
        draw.line([start, end], fill=colour, width=width)


def overlay(pixels, scan, found, side):
    """A scan reduced to a square of `side` with the truth and the answer on it."""
    image = Image.fromarray(pixels)
    scale = side / max(image.size)
    image = image.resize([max(round(length * scale), 1) for length in image.size], Image.Resampling.BOX)
    draw = ImageDraw.Draw(image)
    for card in found:
        for other in card.alternatives:
            outline(draw, other.corners, scale, [ALTERNATIVE] * 4, 1)
    for card in found:
        outline(draw, card.corners, scale, [side_colour(share) for share in card.shares], 3)
    for card in scan.cards:
        outline(draw, card.corners, scale, [TRUTH] * 4, 1)
    return image


def caption(result, name):
    """The set and seed, the Jaccard index of the worst card, the confidence of the surest one reported."""
    found = result.answers[name].found
    words = [f"{result.scan.set} {result.scan.seed}"]
    if result.scan.cards:
        words.append(f"J {merit(result, name):.2f}")
    words.append(f"conf. {found[0].confidence:.2f}" if found else "nothing")
    return ", ".join(words)


def merit(result, name):
    """The less, the worse: the least Jaccard index of a card; without a card, one less the surest false alarm."""
    judged = result.judged(name)
    if judged.cards:
        return min(card.jaccard for card in judged.cards)
    return 1 - max((claim.confidence for claim in judged.claims), default=0.0)


def is_failure(result, name):
    return merit(result, name) <= (RIGHT if result.scan.cards else 1 - summary.LIKELY)


def redrawn(result, program, scratch):
    """The pixels of a drawn scan."""
    return next(pixels for _, pixels in Drawn(str(program), result.scan.set, result.scan.seed, 1, scratch))


def sheet(results, name, program, scratch):
    """The scans side by side, each with its caption."""
    rows = -(-len(results) // COLUMNS)
    page = Image.new("RGB", (COLUMNS * (CELL + 4), rows * (CELL + CAPTION + 4)), (255, 255, 255))
    draw, font = ImageDraw.Draw(page), ImageFont.truetype(FONT, 11)
    for index, result in enumerate(results):
        left, top = index % COLUMNS * (CELL + 4), index // COLUMNS * (CELL + CAPTION + 4)
        picture = overlay(redrawn(result, program, scratch), result.scan, result.answers[name].found, CELL)
        page.paste(picture, (left + (CELL - picture.width) // 2, top + (CELL - picture.height) // 2))
        draw.text((left + 2, top + CELL + 1), caption(result, name), fill=(0, 0, 0), font=font)
    return page


def write(page, path):
    """As a JPEG of the best quality that is small enough."""
    for quality in range(85, 20, -5):
        packed = BytesIO()
        page.save(packed, "JPEG", quality=quality, optimize=True, subsampling=0)
        if packed.tell() <= MOST_BYTES:
            break
    path.write_bytes(packed.getvalue())
    print(f"wrote {path}: {packed.tell()} bytes")


def examples(results, _, share):
    """The first scans of each set."""
    return [result for _, part in per_set(results) for result in part[:share]]


def failures(results, name, share):
    """The worst scans of each set, those alone that are wrong."""
    wrong = [result for result in results if is_failure(result, name)]
    return [result for _, part in per_set(wrong)
            for result in sorted(part, key=lambda result: (merit(result, name), result.scan.seed))[:share]]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--results", type=Path, default=building.FOLDER / "results.json")
    parser.add_argument("--method", default="anywhere")
    parser.add_argument("--drawing", type=Path, help="the program that draws scans, instead of building it")
    parser.add_argument("--out", type=Path, default=ROOT / "docs" / "pictures")
    parser.add_argument("--share", type=int, default=4, help="scans of each set on a sheet")
    options = parser.parse_args()
    program = (options.drawing or building.drawer()).resolve()
    results = [Result.read(record) for record in json.loads(options.results.read_text())["results"]]
    with tempfile.TemporaryDirectory() as scratch:
        for title, choose in (("found", examples), ("failures", failures)):
            chosen = choose(results, options.method, options.share)
            if chosen:
                page = sheet(chosen, options.method, program, scratch)
                write(page, options.out / f"finder-{title}.jpg")
            else:
                print(f"no {title} to draw")


if __name__ == "__main__":
    main()
