"""`vantrel split`."""

from pathlib import Path

import numpy as np
import pytest
from PIL import Image

import scans
from geometry import corners_of, lengths
from sample_scans import SAMPLES, TRUTH, box_of

pytestmark = pytest.mark.usefixtures("leftovers")


def reading_order(cards):
    """Of the drawn sheets: by rows, and in a row from the left."""
    return sorted(cards, key=lambda card: (round(card["top"] / 800), card["column"]))


@pytest.mark.parametrize("name", ["two-columns.png", "one-column.png"])
def test_split_writes_one_file_a_card_in_reading_order(tool, tmp_path, name):
    path, truth = SAMPLES / "sheets" / name, reading_order(TRUTH[f"sheets/{name}"]["cards"])
    report = tool("split", path, "-o", tmp_path, "--method", "sheet", "--json", ok=True).json[0]
    stem = path.stem
    assert [Path(output["path"]).name for output in report["outputs"]] == [
        f"{stem}-{number + 1}.png" for number in range(len(truth))
    ]
    assert len(report["cards"]) == len(truth)
    with Image.open(path) as sheet:
        for card, true, output in zip(report["cards"], truth, report["outputs"]):
            assert card["column"] == true["column"] + 1 and card["straightened"] is False
            left, top, right, bottom = box_of(card["rectangle"])
            assert abs((left + right) - (true["left"] + true["right"])) < 80
            assert abs((top + bottom) - (true["top"] + true["bottom"])) < 80
            with Image.open(output["path"]) as picture:
                assert picture.mode == sheet.mode
                assert np.array_equal(np.asarray(picture), np.asarray(sheet.crop((left, top, right, bottom))))
                assert [round(value) for value in picture.info["dpi"]] == [300, 300]


def test_split_straightens_cards(tool, tmp_path):
    path, truth = SAMPLES / "sheets" / "dark-strip.jpg", TRUTH["sheets/dark-strip.jpg"]["cards"]
    plain, straight = tmp_path / "plain", tmp_path / "straight"
    plain.mkdir()
    straight.mkdir()
    arguments = ("--method", "sheet", "--format", "png")
    tool("split", path, "-o", plain, *arguments, ok=True)
    result = tool("split", path, "-o", straight, *arguments, "--straighten", "--json", ok=True).json[0]
    assert [card["straightened"] for card in result["cards"]] == [True, True, True]
    for number, card in enumerate(truth, 1):
        corners = np.array([card["corners"][f"{v}-{h}"] for v in ("top", "bottom") for h in ("left", "right")])
        width, height = lengths(corners)
        picture = scans.load(straight / f"dark-strip-{number}.png")
        assert abs(picture.shape[1] - width) < 4 and abs(picture.shape[0] - height) < 4
        # The glass shows in the corners of what is only cut out, and nowhere on what is straightened.
        rim = np.concatenate([picture[2], picture[-3], picture[:, 2], picture[:, -3]])
        assert np.percentile(rim, 1) > 120
        assert scans.load(plain / f"dark-strip-{number}.png")[:20, :20].min() < 100


def test_split_straightens_nothing_on_a_bilevel_sheet(tool, tmp_path):
    path = SAMPLES / "sheets" / "two-columns.png"
    result = tool("split", path, "-o", tmp_path, "--method", "sheet", "--straighten", ok=True)
    assert "8 cards by their marks" in result.text and ", 0 straightened" in result.text


@pytest.mark.parametrize("name", ["two-columns.png", "one-column.png", "dark-strip.jpg"])
def test_split_finds_every_card_by_what_shows_more(tool, tmp_path, name):
    path, truth = SAMPLES / "sheets" / name, reading_order(TRUTH[f"sheets/{name}"]["cards"])
    report = tool("split", path, "-o", tmp_path, "--format", "png", "--json", ok=True).json[0]
    assert report["method"] in ("anywhere", "sheet")
    assert len(report["outputs"]) == len(truth)
    for output, true in zip(report["outputs"], truth):
        assert abs(output["width"] - (true["right"] - true["left"])) < 80
        assert abs(output["height"] - (true["bottom"] - true["top"])) < 80


def test_three_places_with_print_make_a_sheet_only_for_who_says_so(tool, tmp_path):
    with Image.open(SAMPLES / "sheets" / "two-columns.png") as sheet:
        page = Image.new("L", sheet.size, 255)
        for card in reading_order(TRUTH["sheets/two-columns.png"]["cards"])[:3]:
            box = tuple(round(card[side]) for side in ("left", "top", "right", "bottom"))
            page.paste(sheet.convert("L").crop(box), box)
    page.save(tmp_path / "page.png", dpi=(300, 300))
    for command in ((), ("split",)):
        report = tool(*command, tmp_path / "page.png", "-o", f"{tmp_path}/", "--json").json[0]
        assert (report["outcome"], report["advice"]) == ("nothing-found", "split --method sheet")
    report = tool("split", tmp_path / "page.png", "-o", tmp_path, "--method", "sheet", "--json", ok=True).json[0]
    assert (report["outcome"], len(report["outputs"])) == ("doubtful", 3)


def test_split_finds_cards_by_their_borders(tool, tmp_path):
    path, truth = SAMPLES / "sheets" / "dark-strip.jpg", TRUTH["sheets/dark-strip.jpg"]["cards"]
    for dpi in (100, 300):  # the resolution plays no part
        arguments = ("--method", "anywhere", "--dpi", dpi, "--format", "png", "--force", "--json")
        report = tool("split", path, "-o", tmp_path, *arguments, ok=True).json[0]
        assert (report["method"], report["result"]) == ("anywhere", 1)
        assert len(report["outputs"]) == len(truth)
        for output, card in zip(report["outputs"], truth):
            corners = np.array([card["corners"][f"{v}-{h}"] for v in ("top", "bottom") for h in ("left", "right")])
            width, height = lengths(corners)
            assert abs(output["width"] - width) < 8 and abs(output["height"] - height) < 8


def test_split_writes_no_more_cards_than_asked_for(tool, tmp_path):
    path = SAMPLES / "sheets" / "dark-strip.jpg"
    for method in ("sheet", "anywhere"):
        out = tmp_path / method
        out.mkdir()
        report = tool("split", path, "-o", out, "--method", method, "--cards", 2, "--json", ok=True).json[0]
        assert len(report["outputs"]) == len(list(out.iterdir())) == 2


def test_split_turns_every_card(tool, tmp_path):
    path = SAMPLES / "sheets" / "dark-strip.jpg"
    for method in ("sheet", "anywhere"):
        arguments = ("--method", method, "--force", "--portrait", "--json")
        report = tool("split", path, "-o", tmp_path, *arguments, ok=True).json[0]
        assert report["outputs"] and all(output["height"] > output["width"] for output in report["outputs"])


def test_split_needs_a_resolution(tool, tmp_path):
    with Image.open(SAMPLES / "sheets" / "one-column.png") as sheet:
        sheet.save(tmp_path / "none.png")
        sheet.save(tmp_path / "low.png", dpi=(200, 200))
    out = tmp_path / "out"
    out.mkdir()
    sheet = ("-o", out, "--method", "sheet")
    tool("split", tmp_path / "none.png", *sheet).fails_with("none.png", "not known", "--dpi")
    result = tool("split", tmp_path / "low.png", *sheet, "--json")
    assert result.code == 1 and "200 dpi" in result.json[0]["error"] and result.json[0]["result"] == -3
    assert list(out.iterdir()) == []
    report = tool("split", tmp_path / "none.png", *sheet, "--dpi", 300, "--json", ok=True).json[0]
    assert len(report["cards"]) == 4 and report["outputs"][0]["dpi"] == [300, 300]


def test_split_of_a_blank_sheet(tool, tmp_path):
    path = scans.save(scans.blank_scan(1500, 2000, 255), tmp_path / "blank.png")
    tool("split", path, "-o", tmp_path).fails_with(path, "blank")


def test_split_detects_and_draws(tool, tmp_path):
    path = SAMPLES / "sheets" / "two-columns.png"
    sheet = (path, "--method", "sheet", "--detect-only")
    result = tool("split", *sheet, "--overlay", tmp_path / "v.png", ok=True)
    assert "8 cards" in result.text and [p.name for p in tmp_path.iterdir()] == ["v.png"]
    report = tool("split", *sheet, "--json", ok=True).json[0]
    overlay = scans.load(tmp_path / "v.png")
    for card in report["cards"]:
        r = card["rectangle"]
        assert overlay[r["top"], (r["left"] + r["right"]) // 2].tolist() == [0, 160, 60]


def test_split_never_overwrites(tool, tmp_path):
    path = SAMPLES / "sheets" / "one-column.png"
    (tmp_path / "one-column-3.png").write_bytes(b"precious")
    tool("split", path, "-o", tmp_path).fails_with(path, "one-column-3.png", "exists already")
    assert (tmp_path / "one-column-3.png").read_bytes() == b"precious"
    # An input that is called like an output.
    sheet = tmp_path / "sheet.png"
    sheet.write_bytes(path.read_bytes())
    other = tmp_path / "sheet-2.png"
    other.write_bytes(path.read_bytes())
    result = tool("split", sheet, other, "-o", tmp_path, "--force")
    assert result.code == 1 and "is an input" in result.err
    assert other.read_bytes() == path.read_bytes()


@pytest.mark.parametrize("out", ["-", "card.png"])
def test_split_needs_a_folder(tool, scan, tmp_path, out):
    tool("split", scan, "-o", out, cwd=tmp_path).fails_with("-o", code=2)


def drawn_sheet(seed, ground):
    """Six cards of three sizes, askew, on a noisy ground; and the corners of each in reading order."""
    random = np.random.default_rng(seed)
    sheet = np.clip(random.normal(ground, 2.5, (1500, 1400, 3)), 0, 255).astype(np.uint8)
    truth = []
    for row in range(3):
        for column in range(2):
            fill, tilt = random.choice([0.6, 0.7, 0.8]), random.uniform(-9, 9)
            pixels, corners = scans.draw_scan(640, 440, tilt, fill, int(random.integers(1000)), ground)
            x, y = 20 + 680 * column + int(random.integers(20)), 20 + 480 * row
            sheet[y : y + 440, x : x + 640] = pixels
            truth.append(corners + (x, y))
    return sheet, truth


@pytest.mark.parametrize("ground", [46, 120, 165])
def test_split_cuts_nothing_off_cards_of_known_corners(tool, tmp_path, ground):
    """No corner of a card that is written is off by 2 % of the diagonal."""
    pixels, truth = drawn_sheet(ground, ground)
    path = scans.save(pixels, tmp_path / "sheet.png")
    report = tool("split", path, "-o", tmp_path / "out", "--json", ok=True).json[0]
    cards = [card for card in report["cards"] if card["certainty"] != "guess"]
    assert len(cards) == len(report["outputs"]) == len(truth)
    found = set()
    for card, output in zip(cards, report["outputs"]):
        corners = corners_of(card)
        errors = [np.linalg.norm(corners - true, axis=1).max() / np.linalg.norm(true[0] - true[3]) for true in truth]
        nearest = int(np.argmin(errors))
        assert errors[nearest] < 0.02, (card, errors[nearest])
        assert np.abs(np.array([output["width"], output["height"]]) / lengths(truth[nearest]) - 1).max() < 0.02
        found.add(nearest)
    assert len(found) == len(truth)  # each once


# What is no sheet of cards.

NO_CARDS = ("marks, but by their size, print or borders not those of a card", "(try vantrel auto, or --dpi")


@pytest.mark.parametrize("name", ["a4-white", "dark-on-gray", "free-sheet", "photograph", "portrait", "receipt-in-corner", "wood"])
def test_marks_on_a_scan_of_another_kind_are_no_cards(tool, tmp_path, name):
    """At 300 dpi, as is alleged, no card fits where the marks are."""
    path = SAMPLES / "anywhere" / f"{name}.jpg"
    tool("split", path, "-o", tmp_path, "--method", "sheet", "--dpi", 300).fails_with(*NO_CARDS)
    assert list(tmp_path.iterdir()) == []


def test_borders_within_a_place_contradict_it(tool, tmp_path):
    """There is room for a card of the sheet's size around a smaller one, but its borders are seen."""
    random = np.random.default_rng(1)
    page = np.clip(random.normal(238, 2, (900, 1400)), 0, 255).astype(np.uint8)
    page[300:630, 400:900] = 90
    page[360:380, 450:800] = page[420:440, 450:700] = page[560:580, 600:860] = 20
    path = scans.save(page, tmp_path / "page.png")
    tool("split", path, "-o", tmp_path, "--method", "sheet").fails_with(*NO_CARDS)
    report = tool("split", path, "--detect-only", "--json", ok=True).json[0]
    assert (report["method"], len(report["cards"])) == ("anywhere", 1)
