"""`vantrel auto`, and the tool without a subcommand: what it chooses, and how sure it is."""

import re

import numpy as np
import pytest

import scans
from geometry import corners_of, lengths
from sample_scans import SAMPLES
from test_anywhere import small_card, two_cards

pytestmark = pytest.mark.usefixtures("leftovers")


@pytest.fixture
def small(tmp_path):
    pixels, truth = small_card()
    return scans.save(pixels, tmp_path / "small.png"), truth


def test_one_card_takes_the_name_that_was_given(tool, small, tmp_path):
    path, truth = small
    for arguments in (("auto", path), (path,)):
        report = tool(*arguments, "-o", tmp_path / "card.png", "--force", "--json", ok=True).json[0]
        assert [output["path"] for output in report["outputs"]] == [str(tmp_path / "card.png")]
        assert np.abs(corners_of(report) - truth).max() < 1.5
        assert (report["method"], report["ground"]) == ("anywhere", "dark")
        width, height = lengths(truth)
        assert abs(report["outputs"][0]["width"] - width) <= 3


def test_several_cards_are_numbered(tool, tmp_path):
    path = scans.save(two_cards()[0], tmp_path / "two.png")
    text = tool(path, "-o", tmp_path / "card.png", "--verbose", ok=True).text
    assert "2 cards, on a dark ground: found by borders anywhere" in text
    assert sorted(p.name for p in tmp_path.iterdir()) == ["card-1.png", "card-2.png", "two.png"]
    tool(path, "-o", tmp_path / "one.png", "--cards", 1, ok=True)
    assert (tmp_path / "one.png").exists()
    tool(path, "-o", "-").fails_with("--cards 1")


def test_lines_are_short_unless_more_is_asked_for(tool, tmp_path):
    names = ("wood.jpg", "a4-white.jpg", "cut-off.jpg")
    for name in names:
        (tmp_path / name).symlink_to(SAMPLES / "anywhere" / name)
    glass = np.full((440, 700), 40, np.uint8)
    glass[30:, 40:] = 220
    scans.save(glass, tmp_path / "edge.png")
    scans.save(two_cards()[0], tmp_path / "two.png")
    (tmp_path / "sheet.png").symlink_to(SAMPLES / "sheets" / "two-columns.png")
    files = (*names, "edge.png", "two.png", "sheet.png")
    lines = tool(*files, "-o", "out/", ok=True, cwd=tmp_path).text.splitlines()
    assert [line.split(", confidence")[0] for line in lines] == [
        "wood.jpg: 4 sides by borders",
        "a4-white.jpg: 4 sides by borders",
        "cut-off.jpg: 3 of 4 sides by borders (right: guessed)",
        "edge.png: 2 of 4 sides on dark glass (bottom, right: the frame of the scan) (doubtful) -> out/edge.png",
        "two.png: 2 cards by borders",
        "sheet.png: 8 cards by their marks, whose sides are not seen (doubtful) -> out/sheet-1.png ... out/sheet-8.png",
    ]
    assert re.fullmatch(r"wood.jpg: 4 sides by borders, confidence (0.9\d|1.00) -> out/wood.jpg", lines[0])
    assert max(map(len, lines[:2])) <= 80
    told = tool(*files, "-o", "out/", "--force", "-v", ok=True, cwd=tmp_path).text.splitlines()
    wood = r"wood.jpg: 4 of 4 sides found, tilt -9.0 degrees, confidence .*, on a coloured ground: found by borders anywhere on the scan"
    assert re.fullmatch(wood + r" -> out/wood.jpg \(\d+ ms\)", told[0])
    assert "found by the method for dark glass, which saw more sides than" in told[3]
    assert "found as on a sheet of cards" in told[5]
    tool("wood.jpg", "-q", "-v", "--detect-only", cwd=tmp_path).fails_with("-q", "-v", "do not go together", code=2)


def test_ground_is_told(tool):
    files = [SAMPLES / "anywhere" / name for name in ("white-on-white.jpg", "dark-on-gray.jpg", "wood.jpg")]
    reports = tool(*files, "--detect-only", "--json", ok=True).json
    assert [report["ground"] for report in reports] == ["light", "gray", "coloured"]


def test_a_sheet_of_print_is_taken_apart_with_doubt(tool, tmp_path):
    report = tool(SAMPLES / "sheets" / "two-columns.png", "-o", tmp_path, "--json", ok=True).json[0]
    assert (report["method"], report["outcome"], len(report["outputs"])) == ("sheet", "doubtful", 8)


def test_a_page_of_text_and_an_empty_lid_give_nothing(tool, tmp_path):
    for name in ("text-page.jpg", "empty-lid.jpg"):
        result = tool(SAMPLES / "anywhere" / name, "-o", tmp_path / "c.png", "--json")
        report = result.json[0]
        assert (result.code, report["outcome"], report["outputs"]) == (1, "nothing-found", [])
        assert ("blank" in report["error"]) == (name == "empty-lid.jpg")


def test_outcome_and_certainty_agree(tool):
    names = {"done": "sure", "likely": "likely", "doubtful": "doubtful"}
    files = sorted((SAMPLES / "anywhere").iterdir())
    for report in tool("auto", *files, "--detect-only", "--json", "--cards", 1).json:
        certainties = [card["certainty"] for card in report["cards"] if card["certainty"] != "guess"]
        found = report["outcome"] in names
        assert found == bool(certainties) == (report["verdict"] == "corners-found")
        assert not found or names[report["outcome"]] == certainties[0]


def test_doubt_is_told_and_is_no_failure(tool, tmp_path):
    path = SAMPLES / "anywhere" / "cut-off.jpg"
    assert "(doubtful)" in tool(path, "-o", tmp_path / "c.png", ok=True).text


@pytest.mark.parametrize("demand, refusal", [(("--min-sides", 4), "--min-sides"), (("--min-confidence", 0.9), "--min-confidence")])
@pytest.mark.parametrize("command", ["auto", "clip", "split"])
def test_what_is_demanded_is_found_or_nothing_is(tool, tmp_path, command, demand, refusal):
    path = SAMPLES / "anywhere" / "cut-off.jpg"
    result = tool(command, path, "-o", tmp_path, *demand, "--json")
    report = result.json[0]
    assert (result.code, report["outcome"], report["outputs"]) == (1, "nothing-found", [])
    assert refusal in report["error"] and report["cards"][0]["certainty"] == "guess"
    assert refusal in report["cards"][0]["refusal"] and report.get("verdict") != "corners-found"




def test_dark_glass_is_contradicted_by_borders_elsewhere(tool, tmp_path):
    """A small card and one long dark edge: the method for dark glass takes that for a side, and the frame for the rest."""
    pixels, _ = scans.draw_scan(900, 700, 12, fill=0.45, seed=7)
    pixels[:, 880:] = 250
    path = scans.save(pixels, tmp_path / "s.png")
    report = tool("clip", path, "--method", "dark-glass", "--detect-only", "--json").json[0]
    assert report["outcome"] == "nothing-found" and report["verdict"] != "corners-found"
    assert tool(path, "--detect-only", "--json", ok=True).json[0]["method"] == "anywhere"


@pytest.mark.parametrize("level", [0, 128, 255])
def test_split_finds_no_cards_on_empty_pages(tool, tmp_path, level):
    random = np.random.default_rng(level)
    page = np.clip(random.normal(level, 2, (3300, 2550)), 0, 255).astype(np.uint8)
    path = scans.save(page, tmp_path / "page.png")
    for method in ("auto", "sheet"):
        tool("split", path, "--method", method, "-o", tmp_path).fails_with(path, "blank")


def test_split_leaves_the_empty_glass_beside_a_card_alone(tool, tmp_path):
    random = np.random.default_rng(3)
    page = np.clip(random.normal(238, 2, (3300, 2550)), 0, 255).astype(np.uint8)
    page[1200:1850, 300:1330] = 120
    page[1300:1340, 400:900] = page[1500:1520, 400:1000] = 20
    path = scans.save(page, tmp_path / "page.png")
    for method in ("auto", "sheet"):
        report = tool("split", path, "--method", method, "--detect-only", "--json", ok=True).json[0]
        assert len(report["cards"]) == 1, (method, report["cards"])


def test_cut_keeps_to_the_frame_where_it_saw_no_side(tool, tmp_path):
    # A card whose upper part is cut off.
    path = scans.save(scans.load(SAMPLES / "cut" / "gray.png")[200:], tmp_path / "slip.png")
    report = tool("cut", path, "--detect-only", "--json", ok=True).json[0]
    assert [side for side, found in report["sides"].items() if not found] == ["top"]
    assert report["rectangle"] == {"left": 40, "top": 0, "right": 722, "bottom": 362}
    assert "3 of 4 sides found (top: the frame of the scan)" in tool("cut", path, "--detect-only", ok=True).text
    tool("cut", path, "--detect-only", "--min-sides", 4).fails_with("--min-sides")


@pytest.mark.parametrize("words", [("cut",), ("clip", "--method", "flat")])
def test_rectangle_without_a_border_is_a_guess(tool, tmp_path, words):
    """Of a slip one side alone is seen, of a page of text a block; neither is a card's rectangle."""
    slip = np.full((900, 700), 245, np.uint8)
    slip[:640, 120:600] = 150
    for path in (scans.save(slip, tmp_path / "slip.png"), SAMPLES / "anywhere" / "text-page.jpg"):
        tool(*words, path, "-o", tmp_path / "c.png").fails_with("only a guess", "confirms it", "(try vantrel auto, ")
        assert not (tmp_path / "c.png").exists()


def test_one_side_on_dark_glass_is_a_guess(tool, tmp_path):
    glass = np.full((440, 700), 40, np.uint8)
    glass[30:] = 220
    path = scans.save(glass, tmp_path / "edge.png")
    told = ("only a guess (1 of 4 sides", "too few of its sides", "(try vantrel auto, ")
    tool("clip", "--method", "dark-glass", path, "-o", tmp_path / "c.png").fails_with(*told)
    assert not (tmp_path / "c.png").exists()


# Without a subcommand.


def test_options_may_come_first(tool, small, tmp_path):
    tool("--json", small[0], "-o", tmp_path / "c.png", ok=True)
    assert (tmp_path / "c.png").exists()


@pytest.mark.parametrize(
    "arguments, parts",
    [
        (("clpi", "a.png"), ("unknown subcommand 'clpi'", "did you mean 'clip'")),
        (("hlep",), ("unknown subcommand 'hlep'",)),
        (("clip", "a.png", "--detct-only"), ("unknown option '--detct-only'", "did you mean '--detect-only'", "vantrel clip --help")),
        (("a.png", "--outptu", "b.png"), ("unknown option '--outptu'", "did you mean '--output'")),
        (("help", "splitt"), ("did you mean 'split'",)),
        (("clip",), ("INPUT is needed",)),
        (("clip", "a.png", "--size", "big"), ("--size: 'big' is none of card,scan",)),
        (("clip", "a.png", "--jobs", "0"), ("--jobs: '0' is no number from 1 to 1024",)),
        (("clip", "a.png", "--scale"), ("--scale needs a value",)),
        (("clip", "a.png", "--analyse", "b.png"), ("--analyse needs --scale",)),
        (("clip", "a.png", "--portrait", "--landscape"), ("--portrait and --landscape do not go together",)),
        ((), ("subcommand",)),
    ],
)
def test_slips_of_the_pen(tool, tmp_path, arguments, parts):
    tool(*arguments, cwd=tmp_path).fails_with(*parts, code=2)


def test_help_comes_in_every_way(tool):
    assert tool("help", ok=True).text == tool("--help", ok=True).text
    assert tool("help", "clip", ok=True).text == tool("clip", "--help", ok=True).text
    assert tool("-V", ok=True).text == tool("--version", ok=True).text
