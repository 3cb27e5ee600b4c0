"""What the library makes of each sample, as records for the ratchet."""

import json
import sys

import numpy as np
from PIL import Image

from library import ANYWHERE, CORNERS, ROOT, VERDICTS

SAMPLE_FOLDER = ROOT / "samples"
sys.path.insert(0, str(SAMPLE_FOLDER))

from drawing import card, clip_scans  # noqa: E402  (the folder is put on the path above)

BOUNDS = ("left", "top", "right", "bottom")
MARGINS = (105, 60)  # 0.35 and 0.2 inches beside and above a card that is to be straightened: its borders must be on
# the picture, and within its outer eighth of rows
TWINS = {"cut/colour.jpg": "cut/colour-twin.jpg"}
ART = {"clip/" + scan.name: card.PEOPLE[scan.person] for scan in clip_scans.CLIP_SCANS if scan.card}


def truths():
    """path of the sample -> what is true of it."""
    return json.loads((SAMPLE_FOLDER / "truth.json").read_text())["scans"]


def open_sample(path):
    """The sample as the library takes it: 1 bit, gray or RGB."""
    with Image.open(SAMPLE_FOLDER / path) as picture:
        picture.load()
        return picture


SURE = 0.5  # from here on a card found anywhere is no guess


def corner_error(found, truth):
    """The greatest distance of a corner from its true place, in pixels."""
    true = np.array([truth["corners"][name] for name in CORNERS])
    return float(np.hypot(*(found.corner_points - true).T).max())


def picture_error(result, face):
    """How far the clipped card is from its flat face, in levels on the mean, at a quarter of the size. Turned
    or mirrored it is above 20, shifted by eight pixels above 10."""
    height, width = result.shape[:2]
    flat = Image.new("L", (width, height), 255)
    flat.paste(card.draw_card(face).convert("L").resize((width - 2, height - 2), Image.Resampling.BOX), (0, 2))
    pair = [np.asarray(picture.convert("L").reduce(4), dtype=float) for picture in (Image.fromarray(result), flat)]
    return float(np.abs(pair[0] - pair[1]).mean())


def same(first, second):
    """Whether two pictures are equal to the bit."""
    first, second = np.asarray(first), np.asarray(second)
    return first.dtype == second.dtype and np.array_equal(first, second)


def measure_clip(library, path, truth):
    """AutoClipRedundantImg's answer and the corner finder's."""
    picture = open_sample(path)
    code, result = library.clip(picture)
    record = {"code": code}
    if code == 0:
        record["copy"] = same(picture, result)
    if picture.mode == "1":
        return record
    record.update(measure_find(library, path, truth))
    record.update(measure_surest(library, path, truth))
    found = library.find_corners(picture)
    record["verdict"] = VERDICTS[found.verdict]
    record["sides"] = found.sides
    if "corners" in truth and all(found.sides.values()):
        record["corner_error"] = corner_error(found, truth)
        record["picture_error"] = picture_error(result, ART[path])
    return record


def measure_find(library, path, truth):
    """What vantrel_find answers with the method for dark glass: the sides it sees, and on which reduction."""
    cards, seen = library.find(open_sample(path), float(truth.get("dpi", 0)))
    record = {"found_cards": len(cards), "found_reduction": seen.reduction}
    if cards:
        record["found_sides"] = [name for name, found in cards[0].sides.items() if found]
        if "corners" in truth and len(record["found_sides"]) == 4:
            record["found_error"] = corner_error(cards[0], truth)
    return record


def measure_surest(library, path, truth):
    """How far off the card is that vantrel_find answers by default, where there is one."""
    cards, _ = library.find(open_sample(path), float(truth.get("dpi", 0)), method=None)
    known = "corners" in truth and truth["visible"]
    return {"surest_error": corner_error(cards[0], truth)} if known and len(cards) == 1 else {}


def measure_anywhere(library, path, truth):
    """The cards of the method anywhere, and those found by default: how many true ones are missed and how many are
    invented, and how far off the worst is of those that are met, all corners within a tenth of a short side."""
    record = {}
    for name, method in (("anywhere", ANYWHERE), ("surest", None)):
        cards, _ = library.find(open_sample(path), float(truth["dpi"]), method=method)
        sure = [card for card in cards if card.method != ANYWHERE or card.confidence >= SURE]
        errors = [min((corner_error(found, card) for found in sure), default=np.inf) for card in truth["cards"]]
        met = [error for error, card in zip(errors, truth["cards"]) if error < 0.1 * short_side(card)]
        record[f"{name}_missed_error"] = len(errors) - len(met)
        record[f"{name}_invented_error"] = len(sure) - len(met)
        if met:
            record[f"{name}_corner_error"] = max(met)
    return record


def short_side(card):
    """The length of a card's shortest side."""
    tl, tr, bl, br = (np.array(card["corners"][name]) for name in CORNERS)
    return min(np.hypot(*side) for side in (tr - tl, br - bl, bl - tl, br - tr))


def box_of(record):
    """(left, top, right, bottom) of a true rectangle."""
    return np.array([record[name] for name in BOUNDS])


def measure_cut(library, path, truth):
    """AutoClipRedundantImg_ORVA's answer, alone and with the twin at twice the resolution where there is one."""
    picture = open_sample(path)
    _, box = library.card_rectangle(picture)
    code, crop = library.cut(picture)
    errors = np.abs(np.array(box) - box_of(truth["rectangle"]))
    record = {"code": code, "crop": same(crop, picture.crop(box)),
              **{f"{name}_error": float(error) for name, error in zip(BOUNDS, errors)}}
    if path in TWINS:
        twin = open_sample(TWINS[path])
        record["twin_code"], crop = library.cut(picture, twin, 2)
        # The inclusive bounds are what is doubled, in rows counted from the bottom: the cut ends one pixel early.
        left, top, right, bottom = box
        record["twin_crop"] = same(crop, twin.crop((2 * left, 2 * top + 1, 2 * right - 1, 2 * bottom)))
    return record


def measure_sheet(library, path, truth):
    """CardSeg's answer: how many cards, and how far off the worst bound and the worst centre of a card are."""
    code, columns = library.cards(open_sample(path), truth["dpi"])
    record = {"code": code, "counts": [len(column) for column in columns]}
    true = [[box_of(card) for card in truth["cards"] if card["column"] == index] for index in (0, 1)]
    if record["counts"] == [len(column) for column in true]:
        off = np.concatenate([np.array(found) - np.array(column) for found, column in zip(columns, true) if column])
        centres = (off[:, :2] + off[:, 2:]) / 2
        record["bound_error"] = float(np.abs(off).max())
        record["centre_error"] = float(np.hypot(*centres.T).max())
    if truth["visible"]:
        record.update(measure_straightening(library, path, truth, columns))
    return record


def measure_straightening(library, path, truth, columns):
    """The corner finder on each found card with a margin: which borders it finds on all, and how far off it is."""
    picture, sides, errors = open_sample(path), {}, [0.0]
    for box, card in zip(columns[0], truth["cards"]):
        left, top = (max(0, low - margin) for low, margin in zip(box[:2], MARGINS))
        right, bottom = (min(length, high + margin) for length, high, margin in zip(picture.size, box[2:], MARGINS))
        found = library.find_corners(picture.crop((left, top, right, bottom)))
        sides = {side: hit and sides.get(side, True) for side, hit in found.sides.items()}
        moved = {"corners": {name: (x - left, y - top) for name, (x, y) in card["corners"].items()}}
        errors.append(corner_error(found, moved))
    return {"sides": sides, **({"corner_error": max(errors)} if all(sides.values()) else {})}


MEASURES = {"clip": measure_clip, "real": measure_clip, "cut": measure_cut, "sheets": measure_sheet,
            "anywhere": measure_anywhere}


def measure(library, path, truth):
    """The record of one sample."""
    return MEASURES[path.split("/")[0]](library, path, truth)


SAMPLES = tuple(truths())
