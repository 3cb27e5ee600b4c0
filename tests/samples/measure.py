"""What the library makes of each sample, as records for the ratchet."""

import json
import sys

import numpy as np
from PIL import Image

from library import CORNERS, ROOT, VERDICTS

SAMPLE_FOLDER = ROOT / "samples"
sys.path.insert(0, str(SAMPLE_FOLDER))

from drawing import card, clip_scans  # noqa: E402  (the folder is put on the path above)

ART = {"clip/" + scan.name: card.PEOPLE[scan.person] for scan in clip_scans.CLIP_SCANS if scan.card}


def truths():
    """path of the sample -> what is true of it."""
    return json.loads((SAMPLE_FOLDER / "truth.json").read_text())["scans"]


def open_sample(path):
    """The sample as the library takes it: 1 bit, gray or RGB."""
    with Image.open(SAMPLE_FOLDER / path) as picture:
        picture.load()
        return picture


def corner_error(found, truth):
    """The greatest distance of a corner from its true place, in pixels."""
    true = np.array([truth["corners"][name] for name in CORNERS])
    return float(np.hypot(*(found.corner_points - true).T).max())


def picture_error(result, face):
    """How far the clipped card is from its flat face, in levels on the mean, at a quarter of the size. Turned,
    mirrored or shifted by more than a few pixels, it is well above 10."""
    width, height = result.size
    flat = Image.new("L", result.size, 255)
    flat.paste(card.draw_card(face).convert("L").resize((width - 2, height - 2), Image.Resampling.BOX), (0, 2))
    pair = [np.asarray(picture.convert("L").reduce(4), dtype=float) for picture in (result, flat)]
    return float(np.abs(pair[0] - pair[1]).mean())


def same(first, second):
    """Whether two pictures are equal to the bit."""
    return first.mode == second.mode and first.size == second.size and first.tobytes() == second.tobytes()


def measure_clip(library, path, truth):
    """AutoClipRedundantImg's answer and the corner finder's."""
    picture = open_sample(path)
    code, result = library.clip(picture)
    record = {"code": code}
    if code == 0:
        record["copy"] = same(picture, result)
    if picture.mode == "1":
        return record
    found = library.find_corners(picture)
    record["verdict"] = VERDICTS[found.verdict]
    record["sides"] = found.sides
    if "corners" in truth and all(found.sides.values()):
        record["corner_error"] = corner_error(found, truth)
        record["picture_error"] = picture_error(result, ART[path])
    return record


def measure(library, path, truth):
    """The record of one sample."""
    return measure_clip(library, path, truth)


SAMPLES = tuple(path for path in truths())
