"""Drawn scans: the same seed draws the same bytes, and the corners on record are where the pictures show them."""

import json
import os
import subprocess

import numpy as np
import pytest

PROGRAM = os.environ["VANTREL_DRAW_SCANS"]
SETS = ["flat", "singles", "white", "photos", "receipts", "several", "bare", "strips", "pages", "fine"]
EMPTY_SETS = {"bare", "strips", "pages"}
REACH = 5  # pixels to either hand of a border, within which it is measured
LEAST_STEP = 60  # levels: from there on, rounding to whole ones does not matter
EVEN_GROUNDS = {"dark glass", "black", "gray lid", "white lid", "real glass"}
EVEN_CARDS = {"plain", "blank", "boxes", "receipt"}  # without print close to the border
PLAIN_SEEDS = [34, 84, 102, 317, 367, 423, 477, 496, 521, 531, 588]  # of singles: all up to 600 without what disturbs
DISTURBING = {"shadow", "edge line", "curled", "gloss", "raster", "low contrast", "lit edge", "strip"}


def draw(folder, name, first=1, count=1, *options):
    """The truth of the scans drawn, as records."""
    command = [PROGRAM, "--set", name, "--first", str(first), "--count", str(count), "--out", str(folder), *options]
    subprocess.run(command, check=True)
    return [json.loads(line) for line in (folder / "truth.jsonl").read_text().splitlines()]


def picture(folder, record):
    """Rows, columns, RGB."""
    data = (folder / record["picture"]).read_bytes()
    magic, size, most, pixels = data.split(b"\n", 3)
    width, height = map(int, size.split())
    assert (magic, most, width, height) == (b"P6", b"255", record["width"], record["height"])
    return np.frombuffer(pixels, np.uint8).reshape(height, width, 3)


@pytest.mark.parametrize("name", SETS)
def test_a_seed_draws_the_same_again_with_as_many_cards_as_the_set_should_have(tmp_path, name):
    records = draw(tmp_path / "both", name, 3, 2)
    again = draw(tmp_path / "again", name, 3)
    assert [record["seed"] for record in records] == [3, 4] and records[:1] == again
    pictures = [(tmp_path / "both" / record["picture"]).read_bytes() for record in records]
    assert (tmp_path / "again" / again[0]["picture"]).read_bytes() == pictures[0] != pictures[1]
    for record in records:
        assert record["set"] == name and record["dpi"] > 0 and record["ground"]
        assert 0 < picture(tmp_path / "both", record).std() < 128
        cards = len(record["cards"])
        assert cards == 0 if name in EMPTY_SETS else cards >= 1 if name == "several" else cards == 1


@pytest.mark.parametrize("name", ["singles", "photos", "several"])
def test_corners_go_clockwise_from_the_top_left(tmp_path, name):
    for record in draw(tmp_path, name, 50, 20, "--truth-only"):
        for card in record["cards"]:
            corners = np.array(card["corners"])
            sides = np.roll(corners, -1, axis=0) - corners
            following = np.roll(sides, -1, axis=0)
            assert (sides[:, 0] * following[:, 1] > sides[:, 1] * following[:, 0]).all()
            assert sides[0][0] > 0 > sides[2][0]  # the top leads to the right, the bottom back


def test_pictures_can_be_left_out(tmp_path):
    draw(tmp_path, "singles", 1, 2, "--truth-only")
    assert [path.name for path in tmp_path.iterdir()] == ["truth.jsonl"]


def test_a_set_that_there_is_not_is_refused(tmp_path):
    command = [PROGRAM, "--set", "nothing", "--out", str(tmp_path)]
    assert subprocess.run(command, stderr=subprocess.DEVNULL).returncode == 2


def off_the_border(gray, start, end):
    """How far the border that the picture shows lies below the line from start to end, a nearly level one, in pixels, in
    the median of its columns, which specks and holes leave alone: the sum of a column's levels between its two plain ends
    says where in it the step must be."""
    slope = (end[1] - start[1]) / (end[0] - start[0])
    margin = 0.15 * (end[0] - start[0])
    errors = []
    for x in range(int(start[0] + margin), int(end[0] - margin)):
        true = start[1] + slope * (x + 0.5 - start[0])
        top = int(true) - REACH
        if not (0 <= x < gray.shape[1] and 0 <= top - 2 and top + 2 * REACH + 2 <= gray.shape[0]):
            continue
        column = gray[top - 2:top + 2 * REACH + 2, x]
        above, below = column[:4].mean(), column[-4:].mean()
        if abs(above - below) < LEAST_STEP:
            continue
        inner = column[2:-2]
        errors.append(top + (inner - below).sum() / (above - below) - true)
    return np.median(errors) if len(errors) > 40 else None


def test_borders_lie_where_the_truth_says(tmp_path):
    """On crisp scans of evenly coloured cards on even grounds, without a shadow or bent sides."""
    measured = []
    for seed in PLAIN_SEEDS:
        record = draw(tmp_path, "singles", seed, 1, "--crisp")[-1]
        assert record["ground"] in EVEN_GROUNDS and record["card"] in EVEN_CARDS and not DISTURBING & set(record["effects"])
        gray = picture(tmp_path, record).astype(float).mean(axis=2)
        corners, visible = record["cards"][0]["corners"], record["cards"][0]["visible"]
        swapped = [corner[::-1] for corner in corners]
        for side, (picture_rows, start, end) in enumerate(
                [(gray, corners[0], corners[1]), (gray.T, swapped[1], swapped[2]),
                 (gray, corners[3], corners[2]), (gray.T, swapped[0], swapped[3])]):
            level = abs(end[1] - start[1]) < 0.9 * abs(end[0] - start[0])
            error = off_the_border(picture_rows, start, end) if visible[side] and level else None
            if error is not None:
                measured.append(error)
    assert len(measured) >= 16
    assert np.abs(measured).max() < 0.02
