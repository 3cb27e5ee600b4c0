"""`vantrel clip` on cards that lie anywhere."""

import re

import numpy as np
import pytest
from PIL import Image

import scans
from geometry import block_centre, corners_of, lengths
from sample_scans import SAMPLES

pytestmark = pytest.mark.usefixtures("leftovers")

FOUND, WEAK, GUESSED = (0, 160, 60), (255, 170, 0), (220, 40, 40)


def small_card():
    """A card that fills less than a third of the glass, and its corners."""
    return scans.draw_scan(800, 600, 10, fill=0.5, seed=7)


def two_cards():
    """Two cards side by side, the right one higher and larger, and the corners of each from the left."""
    sheet = scans.blank_scan(1300, 700, scans.GLASS)
    left, left_corners = scans.draw_scan(600, 400, 6, fill=0.7, seed=8)
    right, right_corners = scans.draw_scan(640, 420, -4, fill=0.8, seed=9)
    sheet[220:620, 10:610] = left
    sheet[170:590, 650:1290] = right
    return sheet, left_corners + (10, 220), right_corners + (650, 170)


@pytest.fixture
def small(tmp_path):
    pixels, truth = small_card()
    return scans.save(pixels, tmp_path / "small.png"), truth


@pytest.mark.parametrize("method", [(), ("--method", "auto"), ("--method", "anywhere")])
def test_card_is_found_wherever_it_lies(tool, small, tmp_path, method):
    path, truth = small
    report = tool("clip", path, "-o", tmp_path / "card.png", "--json", *method, ok=True).json[0]
    assert (report["method"], report["result"], report["verdict"]) == ("anywhere", 1, "corners-found")
    assert np.abs(corners_of(report) - truth).max() < 1.5
    assert abs(report["tilt"] - 10) < 0.5 and report["confidence"] >= 0.5
    assert (report["scale"], report["searched"]) == (1, {"width": 800, "height": 600})
    assert report["sides"] is None
    card = scans.load(tmp_path / "card.png")
    width, height = lengths(truth)
    assert abs(card.shape[1] - width) <= 3 and abs(card.shape[0] - height) <= 3
    x, y = block_centre(card)
    assert abs(x - 0.375) * width < 2 and abs(y - 0.35) * height < 2


def test_text_tells_how_sure_it_is(tool, small, tmp_path):
    text = tool("clip", small[0], "-o", tmp_path / "card.png", ok=True).text
    assert "of 4 sides found" in text and re.search(r"tilt 10\.0 degrees, confidence (0\.[5-9]\d|1\.00)( \((likely|doubtful)\))? ->", text)


def test_box_holds_the_corners(tool, small):
    report = tool("clip", small[0], "--detect-only", "--json", ok=True).json[0]
    corners, box = corners_of(report), report["box"]
    assert box["left"] <= corners[:, 0].min() < box["left"] + 1 and box["right"] < corners[:, 0].max() <= box["right"] + 1
    assert box["top"] <= corners[:, 1].min() < box["top"] + 1 and box["bottom"] < corners[:, 1].max() <= box["bottom"] + 1


def test_card_on_dark_glass_is_told_like_others(tool, scan):
    report = tool("clip", scan, "--method", "dark-glass", "--detect-only", "--json", ok=True).json[0]
    assert report["method"] == "dark-glass" and len(report["cards"]) == 1
    assert report["cards"][0]["corners"] == report["corners"]
    assert {side["state"] for side in report["cards"][0]["sides"].values()} == {"found"}
    assert report["cards"][0]["alternatives"] == []


@pytest.mark.parametrize("name", ["gray.png", "colour.jpg"])
def test_flat_ground_is_looked_at_when_asked(tool, tmp_path, name):
    path = SAMPLES / "cut" / name
    arguments = ("-o", tmp_path / "clip.png", "--method", "flat", "--json")
    report = tool("clip", path, *arguments, ok=True).json[0]
    cut = tool("cut", path, "-o", tmp_path / "cut.png", "--json", ok=True).json[0]
    assert (report["method"], report["box"], report["tilt"]) == ("flat-light", cut["rectangle"], 0)
    assert np.array_equal(scans.load(tmp_path / "clip.png"), scans.load(tmp_path / "cut.png"))
    tool("clip", path, "-o", tmp_path / "frame.png", "--method", "flat", "--size", "scan", ok=True)
    assert scans.load(tmp_path / "frame.png").shape == scans.load(path).shape


def test_sides_are_told_as_found_weak_or_guessed(tool, small):
    for card in tool("clip", small[0], "--detect-only", "--method", "anywhere", "--json", ok=True).json[0]["cards"]:
        assert card["method"] == "anywhere" and (card["certainty"] == "guess") == (card["confidence"] < 0.5)
        assert list(card["sides"]) == ["top", "bottom", "left", "right"]
        for side in card["sides"].values():
            share = side["confidence"]
            assert side["state"] == ("found" if share >= 0.8 else "weak" if share >= 0.5 else "guessed")


def test_guess_is_no_success(tool, tmp_path):
    random = np.random.default_rng(5)
    noise = np.clip(random.normal(128, 6, (300, 400, 3)), 0, 255).astype(np.uint8)
    path = scans.save(noise, tmp_path / "noise.png")
    for method in ("auto", "anywhere"):
        result = tool("clip", path, "-o", tmp_path / "c.png", "--method", method, "--json")
        report = result.json[0]
        assert result.code == 1 and report["outcome"] == "nothing-found" and not (tmp_path / "c.png").exists()
        assert report["method"] is None and report["confidence"] is None
        assert all(card["certainty"] == "guess" for card in report["cards"])
        tool("clip", path, "-o", tmp_path / "c.png", "--method", method).fails_with(path)


def test_several_cards_are_numbered_in_reading_order(tool, tmp_path):
    pixels, left, right = two_cards()
    path = scans.save(pixels, tmp_path / "two.png")
    out = tmp_path / "out"
    out.mkdir()
    arguments = ("-o", out, "--method", "anywhere", "--json")
    report = tool("clip", path, *arguments, "--cards", "all", ok=True).json[0]
    assert [output["path"] for output in report["outputs"]] == [str(out / "two-1.png"), str(out / "two-2.png")]
    for card, truth in zip(report["cards"], (left, right)):
        assert np.abs(corners_of(card) - truth).max() < 1.5
    assert report["corners"] == report["cards"][0]["corners"]
    assert tool("clip", path, "-o", out, "--method", "anywhere", "--cards", 2, "--force", ok=True).text.startswith(
        f"{path}: 2 cards"
    )
    one = tool("clip", path, "-o", tmp_path / "one.png", "--method", "anywhere", "--json", ok=True).json[0]
    assert len(one["cards"]) == 1 and len(one["outputs"]) == 1


@pytest.mark.parametrize(
    "arguments, part",
    [
        (["--cards", "0"], "--cards"),
        (["--cards", "some"], "--cards"),
        (["--cards", "65"], "--cards"),
        (["--cards", "all"], "folder"),
        (["--method", "sheet"], "--method"),
        (["--alternatives", "6"], "--alternatives"),
        (["--rotate", "45"], "--rotate"),
        (["--portrait", "--landscape"], "--portrait"),
        (["--portrait", "--rotate", "90"], "--rotate"),
        (["--cards", "2", "--keep-unclipped"], "--keep-unclipped"),
    ],
)
def test_wrong_options(tool, small, tmp_path, arguments, part):
    tool("clip", small[0], "-o", tmp_path / "c.png", *arguments).fails_with(part, code=2)


def test_alternatives_are_told_when_asked_for(tool, small, tmp_path):
    own = tool("clip", small[0], "--detect-only", "--method", "anywhere", "--json", ok=True).json[0]
    assert all(card["alternatives"] == [] for card in own["cards"])
    arguments = ("--detect-only", "--method", "anywhere", "--alternatives", 5, "--overlay", tmp_path / "v.png", "--json")
    for card in tool("clip", small[0], *arguments, ok=True).json[0]["cards"]:
        likelihoods = [other["confidence"] for other in card["alternatives"]]
        assert len(likelihoods) <= 5 and likelihoods == sorted(likelihoods, reverse=True)
        assert all(set(other) == {"confidence", "tilt", "corners", "sides"} for other in card["alternatives"])


@pytest.mark.parametrize("option, turns", [("--rotate=0", 0), ("--rotate=90", 3), ("--rotate=180", 2), ("--rotate=270", 1),
                                           ("--portrait", 3), ("--landscape", 0)])
def test_card_is_turned_as_asked(tool, small, tmp_path, option, turns):
    path = scans.save(scans.load(small[0]), tmp_path / "dpi.png")
    tool("clip", path, "-o", tmp_path / "a.png", ok=True)
    tool("clip", path, "-o", tmp_path / "b.png", option, ok=True)
    assert np.array_equal(scans.load(tmp_path / "b.png"), np.rot90(scans.load(tmp_path / "a.png"), turns))
    with Image.open(tmp_path / "b.png") as picture:
        assert [round(value) for value in picture.info["dpi"]] == [300, 300]


def test_card_stays_as_it_lay(tool, tmp_path):
    pixels, _ = small_card()
    tool("clip", scans.save(np.rot90(pixels).copy(), tmp_path / "s.png"), "-o", tmp_path / "c.png", ok=True)
    card = scans.load(tmp_path / "c.png")
    assert card.shape[0] > card.shape[1]


def test_card_is_stretched_onto_the_frame(tool, small, tmp_path):
    tool("clip", small[0], "-o", tmp_path / "c.png", "--size", "scan", ok=True)
    card = scans.load(tmp_path / "c.png")
    assert card.shape == (600, 800, 3)
    x, y = block_centre(card)
    assert abs(x - 0.375) * 800 < 3 and abs(y - 0.35) * 600 < 3


@pytest.mark.parametrize("gray", [False, True])
def test_card_is_found_on_a_copy_and_cut_from_the_scan(tool, tmp_path, gray):
    pixels, truth = scans.draw_scan(1600, 1200, 10, fill=0.5, seed=7)
    path = scans.save(scans.gray_of(pixels) if gray else pixels, tmp_path / "s.png")
    report = tool("clip", path, "-o", tmp_path / "c.png", "--scale", 2, "--json", ok=True).json[0]
    assert (report["method"], report["scale"], report["searched"]) == ("anywhere", 2, {"width": 800, "height": 600})
    assert np.abs(corners_of(report) - truth).max() < 3
    assert abs(report["outputs"][0]["width"] - lengths(truth)[0]) < 6


@pytest.mark.parametrize("scale", [(), ("--scale", 2)])
def test_bilevel_scan_gives_a_bilevel_card(tool, tmp_path, scale):
    pixels, truth = small_card()
    Image.fromarray(scans.bilevel(pixels)).save(tmp_path / "b.png", dpi=(300, 300))
    report = tool("clip", tmp_path / "b.png", "-o", tmp_path / "c.png", "--json", *scale, ok=True).json[0]
    assert np.abs(corners_of(report) - truth).max() < 3
    with Image.open(tmp_path / "c.png") as card:
        assert card.mode == "1"
        levels = np.asarray(card)
    width, height = lengths(truth)
    assert abs(levels.shape[1] - width) <= 5 and abs(levels.shape[0] - height) <= 5
    assert levels[: levels.shape[0] // 4].mean() > 0.95
    assert not levels[int(height * 0.33) : int(height * 0.37), int(width * 0.33) : int(width * 0.42)].any()


def test_overlay_draws_the_sides_as_they_were_found(tool, small, tmp_path):
    path, truth = small
    arguments = ("--detect-only", "--method", "anywhere", "--overlay", tmp_path / "v.png", "--json")
    card = tool("clip", path, *arguments, ok=True).json[0]["cards"][0]
    picture = scans.load(tmp_path / "v.png")
    colours = {"found": FOUND, "weak": WEAK, "guessed": GUESSED}
    tl, tr, bl, br = corners_of(card)
    for name, middle in {"top": tl + tr, "bottom": bl + br, "left": tl + bl, "right": tr + br}.items():
        x, y = (middle / 2).astype(int)
        around = picture[y - 3 : y + 4, x - 3 : x + 4].reshape(-1, 3)
        assert colours[card["sides"][name]["state"]] in [tuple(pixel) for pixel in around]


def test_overlay_shows_a_second_scan_on_the_first(tool, tmp_path):
    pixels, _ = scans.draw_scan(1600, 1200, 10, fill=0.5, seed=7)
    full, half = scans.save(pixels, tmp_path / "s.png"), scans.save(scans.reduced(pixels, 2), tmp_path / "r.png")
    arguments = (half, "--second", full, "--scale", 2, "--detect-only", "--overlay", tmp_path / "v.png", "--json")
    report = tool("clip", *arguments, ok=True).json[0]
    picture = scans.load(tmp_path / "v.png")
    assert picture.shape == (600, 800, 3)
    tl, tr = corners_of(report)[:2] / 2
    x, y = ((tl + tr) / 2).astype(int)
    around = picture[y - 3 : y + 4, x - 3 : x + 4].reshape(-1, 3).tolist()
    assert list(FOUND) in around or list(WEAK) in around
