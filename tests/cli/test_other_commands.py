"""crop, enlarge, cut, split and detect, and clip from a second scan."""

import json
from pathlib import Path

import numpy as np
import pytest
from PIL import Image

import scans
import vantrel_lib
from test_clip import block_centre, corners_of, lengths

pytestmark = pytest.mark.usefixtures("leftovers")

SAMPLES = Path(__file__).resolve().parents[2] / "samples"
TRUTH = json.loads((SAMPLES / "truth.json").read_text())["scans"]


def bilevel(pixels):
    return scans.gray_of(pixels) > 120


def box_of(rectangle):
    """As Pillow has it: the right and lower bounds excluded."""
    return rectangle["left"], rectangle["top"], rectangle["right"] + 1, rectangle["bottom"] + 1


# crop


@pytest.mark.parametrize("kind", ["colour", "gray", "bilevel"])
@pytest.mark.parametrize("rect", [(0, 0, 699, 439), (13, 20, 13, 20), (101, 7, 408, 300), (37, 400, 699, 439)])
def test_crop_is_the_rectangle(tool, drawn, tmp_path, kind, rect):
    pixels = {"colour": lambda p: p, "gray": scans.gray_of, "bilevel": bilevel}[kind](drawn[0])
    Image.fromarray(pixels).save(tmp_path / "s.png", dpi=(240, 240))
    left, top, right, bottom = rect
    text = f"{left},{top},{right},{bottom}"
    report = tool("crop", "--rect", text, tmp_path / "s.png", "-o", tmp_path / "c.png", "--json", ok=True).json[0]
    expected = pixels[top : bottom + 1, left : right + 1]
    with Image.open(tmp_path / "c.png") as image:
        assert np.array_equal(np.asarray(image), expected)
        assert [round(value) for value in image.info["dpi"]] == [240, 240]
    assert report["rectangle"] == dict(zip(("left", "top", "right", "bottom"), rect))
    status, of_library = vantrel_lib.call("crop", pixels, left, 439 - top, right, 439 - bottom)
    assert status == 1 and np.array_equal(of_library, expected)


def test_crop_overlay(tool, scan, tmp_path):
    arguments = ("--rect", "100,50,400,300", scan, "-o", tmp_path / "c.png", "--overlay", tmp_path / "v.png")
    tool("crop", *arguments, ok=True)
    overlay, pixels = scans.load(tmp_path / "v.png"), scans.load(scan)
    assert overlay[50, 250].tolist() == [0, 160, 60] == overlay[170, 400].tolist()
    assert np.array_equal(overlay[100:200, 150:350], pixels[100:200, 150:350])


@pytest.mark.parametrize("rect", ["0,0,700,10", "0,0,10,440", "650,430,750,450"])
def test_crop_outside_the_scan(tool, scan, tmp_path, rect):
    tool("crop", "--rect", rect, scan, "-o", tmp_path / "c.png").fails_with(scan, "outside the scan of 700 x 440")
    assert not (tmp_path / "c.png").exists()


def test_crop_beyond_16_bits(tool, tmp_path):
    long = scans.save(np.full((3, 40000), 240, np.uint8), tmp_path / "long.png")
    tool("crop", "--rect", "32700,0,32800,1", long, "-o", tmp_path / "c.png").fails_with(long, "32767")
    tool("crop", "--rect", "32700,0,32767,1", long, "-o", tmp_path / "c.png", ok=True)


@pytest.mark.parametrize("rect", ["1,2,3", "1,2,3,4,5", "10,0,5,5", "0,10,5,5", "-1,0,5,5", "a,b,c,d", ""])
def test_crop_with_a_wrong_rectangle(tool, scan, tmp_path, rect):
    tool("crop", f"--rect={rect}", scan, "-o", tmp_path / "c.png").fails_with("--rect", code=2)


def test_crop_needs_a_rectangle(tool, scan, tmp_path):
    tool("crop", scan, "-o", tmp_path / "c.png").fails_with("--rect", code=2)


def test_crop_of_several_scans_and_pipes(tool, scan, tmp_path):
    (tmp_path / "out").mkdir()
    small = scans.save(scans.blank_scan(50, 50), tmp_path / "small.png")
    result = tool("crop", scan, small, "-o", tmp_path / "out", "--rect", "0,0,99,99")
    assert result.code == 1 and "small.png" in result.err
    assert [p.name for p in (tmp_path / "out").iterdir()] == ["scan.png"]
    piped = tool("crop", "-", "-o", "-", "--rect", "0,0,99,99", input=scan.read_bytes(), ok=True)
    assert piped.out == (tmp_path / "out" / "scan.png").read_bytes()


# enlarge


@pytest.mark.parametrize("method", ["linear", "cubic"])
@pytest.mark.parametrize("gray", [False, True])
@pytest.mark.parametrize("width", [120, 121])
def test_enlarge_is_what_the_library_returns(tool, drawn, tmp_path, method, gray, width):
    pixels = drawn[0][100:180, 200 : 200 + width]
    pixels = scans.gray_of(pixels) if gray else np.ascontiguousarray(pixels)
    path = scans.save(pixels, tmp_path / "s.png", dpi=150)
    report = tool("enlarge", path, "-o", tmp_path / "e.png", "--method", method, "--json", ok=True).json[0]
    status, expected = vantrel_lib.call(method, pixels)
    assert status == 1 == report["result"] and report["method"] == method
    assert np.array_equal(scans.load(tmp_path / "e.png"), expected)
    assert expected.shape[:2] == (160, 2 * width + 2 * (width % 2))
    assert report["outputs"][0]["dpi"] == [300, 300]


def test_enlarge_is_linear_by_default(tool, drawn, tmp_path):
    path = scans.save(drawn[0][:50, :60], tmp_path / "s.png")
    tool("enlarge", path, "-o", tmp_path / "a.png", ok=True)
    tool("enlarge", path, "-o", tmp_path / "b.png", "--method", "linear", ok=True)
    tool("enlarge", path, "-o", tmp_path / "c.png", "--method", "cubic", ok=True)
    assert (tmp_path / "a.png").read_bytes() == (tmp_path / "b.png").read_bytes() != (tmp_path / "c.png").read_bytes()


def test_enlarge_up_to_2000_pixels(tool, tmp_path):
    limit = scans.save(scans.blank_scan(2000, 3), tmp_path / "limit.png")
    over = scans.save(scans.blank_scan(3, 2001), tmp_path / "over.png")
    tool("enlarge", limit, "-o", tmp_path / "a.png", ok=True)
    assert scans.load(tmp_path / "a.png").shape == (6, 4000, 3)
    tool("enlarge", over, "-o", tmp_path / "b.png").fails_with(over, "not enlarged", "2000")
    assert not (tmp_path / "b.png").exists()


def test_enlarge_of_a_bilevel_picture(tool, drawn, tmp_path):
    Image.fromarray(bilevel(drawn[0])).save(tmp_path / "s.png")
    result = tool("enlarge", tmp_path / "s.png", "-o", tmp_path / "e.png", "--json")
    assert result.code == 1 and result.json[0]["result"] == 0 and "bilevel" in result.json[0]["error"]


def test_enlarge_with_an_unknown_method(tool, scan, tmp_path):
    tool("enlarge", scan, "-o", tmp_path / "e.png", "--method", "best").fails_with("--method", code=2)


# cut


@pytest.mark.parametrize("name", ["gray.png", "gray-tilted.png", "colour.jpg"])
def test_cut_is_what_the_library_returns(tool, tmp_path, name):
    path, truth = SAMPLES / "cut" / name, TRUTH[f"cut/{name}"]["rectangle"]
    report = tool("cut", path, "-o", tmp_path / "c.png", "--json", ok=True).json[0]
    pixels = scans.load(path)
    status, expected = vantrel_lib.call("cut", pixels)
    assert status == 1 == report["result"]
    assert np.array_equal(scans.load(tmp_path / "c.png"), expected)
    left, top, right, bottom = box_of(report["rectangle"])
    assert np.array_equal(pixels[top:bottom, left:right], expected)
    assert report["sides"] == {"top": True, "bottom": True, "left": True, "right": True}
    for bound, true in zip((left, top, right, bottom), truth.values()):
        assert abs(bound - true) < 12


def test_cut_from_a_larger_scan(tool, tmp_path):
    small, large = SAMPLES / "cut" / "colour.jpg", SAMPLES / "cut" / "colour-twin.jpg"
    arguments = (small, "--hi-res", large, "--scale", 2, "-o", tmp_path / "c.png", "--json")
    report = tool("cut", *arguments, ok=True).json[0]
    status, expected = vantrel_lib.call("cut", scans.load(small), scans.load(large), 2)
    assert status == 1
    assert np.array_equal(scans.load(tmp_path / "c.png"), expected)
    left, top, right, bottom = box_of(report["rectangle"])
    assert np.array_equal(scans.load(large)[top:bottom, left:right], expected)
    assert report["outputs"][0]["dpi"] == [400, 400] and report["scan"]["dpi"] == [200, 200]


def test_cut_of_a_plain_scan(tool, blank, tmp_path):
    gray = scans.save(np.full((200, 300), 240, np.uint8), tmp_path / "gray.png")
    tall = scans.save(scans.blank_scan(300, 400), tmp_path / "tall.png")
    for path in (blank, gray, tall):
        tool("cut", path, "-o", tmp_path / "c.png").fails_with(path, "no side")
        assert not (tmp_path / "c.png").exists()
        tool("cut", path, "-o", tmp_path / "c.png", "--keep-unclipped", ok=True)
        assert (tmp_path / "c.png").read_bytes() == path.read_bytes()
        (tmp_path / "c.png").unlink()


def test_cut_of_what_cannot_be_searched(tool, drawn, tmp_path):
    small = scans.save(scans.blank_scan(127, 200), tmp_path / "small.png")
    tool("cut", small, "-o", tmp_path / "c.png").fails_with(small, "128 x 128")
    wide = scans.save(np.full((2, 32768), 240, np.uint8), tmp_path / "wide.png")
    tool("cut", wide, "-o", tmp_path / "c.png").fails_with(wide, "32767")
    Image.fromarray(bilevel(drawn[0])).save(tmp_path / "b.png")
    tool("cut", tmp_path / "b.png", "-o", tmp_path / "c.png").fails_with("b.png", "bilevel")


def test_cut_detects_and_draws(tool, tmp_path):
    path = SAMPLES / "cut" / "gray.png"
    result = tool("cut", path, "--detect-only", "--overlay", tmp_path / "v.png", ok=True)
    assert "4 of 4 sides found" in result.text
    report = tool("cut", path, "--detect-only", "--json", ok=True).json[0]
    overlay = scans.load(tmp_path / "v.png")
    assert overlay[report["rectangle"]["top"], 300].tolist() == [0, 160, 60]


def test_cut_with_wrong_options(tool, scan, tmp_path):
    tool("cut", scan, "-o", tmp_path / "c.png", "--scale", 2).fails_with("--hi-res", code=2)
    tool("cut", scan, "-o", tmp_path / "c.png", "--hi-res", scan).fails_with("--scale", code=2)
    tool("cut", scan, "-o", tmp_path / "c.png", "--hi-res", scan, "--scale", 1).fails_with("--scale 2", code=2)
    tool("cut", scan, "-o", tmp_path / "c.png", "--hi-res", scan, "--scale", 2).fails_with("does not fit")


# split


def reading_order(cards):
    """Of the drawn sheets: by rows, and in a row from the left."""
    return sorted(cards, key=lambda card: (round(card["top"] / 800), card["column"]))


@pytest.mark.parametrize("name", ["two-columns.png", "one-column.png"])
def test_split_writes_one_file_a_card_in_reading_order(tool, tmp_path, name):
    path, truth = SAMPLES / "sheets" / name, reading_order(TRUTH[f"sheets/{name}"]["cards"])
    report = tool("split", path, "-o", tmp_path, "--json", ok=True).json[0]
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
    tool("split", path, "-o", plain, "--format", "png", ok=True)
    result = tool("split", path, "-o", straight, "--format", "png", "--straighten", "--json", ok=True).json[0]
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
    result = tool("split", path, "-o", tmp_path, "--straighten", ok=True)
    assert "8 cards, 0 straightened" in result.text


def test_split_needs_a_resolution(tool, tmp_path):
    with Image.open(SAMPLES / "sheets" / "one-column.png") as sheet:
        sheet.save(tmp_path / "none.png")
        sheet.save(tmp_path / "low.png", dpi=(200, 200))
    out = tmp_path / "out"
    out.mkdir()
    tool("split", tmp_path / "none.png", "-o", out).fails_with("none.png", "not known", "--dpi")
    result = tool("split", tmp_path / "low.png", "-o", out, "--json")
    assert result.code == 1 and "200 dpi" in result.json[0]["error"] and result.json[0]["result"] == -3
    assert list(out.iterdir()) == []
    report = tool("split", tmp_path / "none.png", "-o", out, "--dpi", 300, "--json", ok=True).json[0]
    assert len(report["cards"]) == 4 and report["outputs"][0]["dpi"] == [300, 300]


def test_split_of_a_blank_sheet(tool, tmp_path):
    path = scans.save(scans.blank_scan(1500, 2000, 255), tmp_path / "blank.png")
    tool("split", path, "-o", tmp_path).fails_with(path, "no card")


def test_split_detects_and_draws(tool, tmp_path):
    path = SAMPLES / "sheets" / "two-columns.png"
    result = tool("split", path, "--detect-only", "--overlay", tmp_path / "v.png", ok=True)
    assert "8 cards" in result.text and [p.name for p in tmp_path.iterdir()] == ["v.png"]
    report = tool("split", path, "--detect-only", "--json", ok=True).json[0]
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


@pytest.mark.parametrize("out", ["-", "missing", "card.png"])
def test_split_needs_a_folder(tool, scan, tmp_path, out):
    tool("split", scan, "-o", out, cwd=tmp_path).fails_with("-o", code=2)


# detect


def test_detect_runs_every_detector(tool, scan, drawn, tmp_path):
    result = tool("detect", scan, "--overlay", tmp_path / "v.png", ok=True)
    report = result.json[0]
    clip = tool("clip", scan, "--detect-only", "--json", ok=True).json[0]
    for name in ("result", "verdict", "sides", "corners", "box", "tilt"):
        assert report["corner_finder"][name] == clip[name]
    cut = tool("cut", scan, "--detect-only", "--json").json[0]
    assert report["card_rectangle"] == {"rectangle": cut["rectangle"], "sides": cut["sides"]}
    sheet = tool("split", scan, "--detect-only", "--json").json[0]
    assert report["sheet"]["result"] == sheet["result"] == 1
    assert [card["rectangle"] for card in report["sheet"]["cards"]] == [card["rectangle"] for card in sheet["cards"]]
    assert set(report["clip_rows"]) == {"upper", "lower"}
    assert isinstance(report["gradient_corners"]["found"], bool)
    assert scans.load(tmp_path / "v.png").shape == (440, 700, 3)
    assert report["outcome"] == "done" and report["outputs"] == []


def test_detect_finds_corners_by_gradients(tool, tmp_path):
    # The borders lie in the outermost fifteenth of the rows and twenty-fifth of the columns, where it looks.
    pixels, truth = scans.draw_scan(700, 440, 0, fill=0.95)
    report = tool("detect", scans.save(pixels, tmp_path / "s.png"), ok=True).json[0]["gradient_corners"]
    assert report["found"]
    assert np.abs(corners_of(report) - truth).max() < 5


def test_detect_sees_border_rows(tool, tmp_path):
    pixels = np.full((400, 500), 60, np.uint8)
    pixels[80:380] = 200
    report = tool("detect", scans.save(pixels, tmp_path / "s.png"), ok=True).json[0]["clip_rows"]
    assert abs(report["lower"] - 380) <= 2 and abs(report["upper"] - 80) <= 2


def test_detect_on_bilevel_and_small_scans(tool, drawn, tmp_path):
    Image.fromarray(bilevel(drawn[0])).save(tmp_path / "b.png", dpi=(300, 300))
    report = tool("detect", tmp_path / "b.png", ok=True).json[0]
    assert report["corner_finder"] is None and report["clip_rows"] is None and report["card_rectangle"] is None
    assert report["sheet"]["result"] == 1
    small = scans.save(scans.blank_scan(40, 30), tmp_path / "small.png", dpi=0)
    report = tool("detect", small, ok=True).json[0]
    assert report["card_rectangle"] is None and report["corner_finder"]["verdict"] == "no-edges"
    assert report["sheet"] == {"result": -3, "cards": []}


def test_detect_of_several_scans(tool, scan, blank, tmp_path):
    result = tool("detect", scan, blank, tmp_path / "missing.png")
    assert result.code == 1 and [report["outcome"] for report in result.json] == ["done", "done", "failed"]
    assert tool("detect", scan, "--json", ok=True).json[0]["outcome"] == "done"


# clip from a second scan


@pytest.mark.parametrize("size", ["card", "scan"])
def test_clip_cuts_the_second_scan(tool, tmp_path, size):
    pixels, truth = scans.draw_scan(1400, 880, 2, seed=5)
    reduced = np.rint(pixels.reshape(440, 2, 700, 2, 3).mean(axis=(1, 3))).astype(np.uint8)
    full, small = scans.save(pixels, tmp_path / "s.png"), scans.save(reduced, tmp_path / "r.png", dpi=150)
    arguments = ("--scale", 2, "--size", size, "--json")
    by_second = tool("clip", small, "--second", full, "-o", tmp_path / "a.png", *arguments, ok=True).json[0]
    tool("clip", full, "--analyse", small, "-o", tmp_path / "b.png", *arguments, ok=True)
    assert (tmp_path / "a.png").read_bytes() == (tmp_path / "b.png").read_bytes()
    assert by_second["scan"]["width"] == 700 and by_second["outputs"][0]["dpi"] == [300, 300]
    assert np.abs(corners_of(by_second) - truth).max() < 2
    if size == "card":
        x, y = block_centre(scans.load(tmp_path / "a.png"))
        assert abs(x - 0.375) * 1260 < 2.5 and abs(y - 0.35) * 792 < 2.5


def test_overlay_of_a_second_scan_lies_on_the_first(tool, tmp_path):
    pixels, _ = scans.draw_scan(1400, 880, 0, seed=5)
    full, small = scans.save(pixels, tmp_path / "s.png"), scans.save(pixels[::2, ::2], tmp_path / "r.png")
    arguments = (small, "--second", full, "--scale", 2, "--detect-only", "--overlay", tmp_path / "v.png", "--json")
    report = tool("clip", *arguments, ok=True).json[0]
    overlay = scans.load(tmp_path / "v.png")
    assert overlay.shape == (440, 700, 3)
    top = int(report["corners"]["top_left"][1] / 2)
    assert any(overlay[y, 350].tolist() == [0, 160, 60] for y in range(top - 2, top + 3))


def test_second_scan_with_wrong_options(tool, scan, tmp_path):
    out = ("-o", tmp_path / "c.png")
    tool("clip", scan, "--second", scan, *out).fails_with("--scale", code=2)
    tool("clip", scan, "--second", scan, "--scale", 1, *out).fails_with("--scale 2", code=2)
    tool("clip", scan, "--second", scan, "--analyse", scan, "--scale", 2, *out).fails_with("--analyse", code=2)
    tool("clip", scan, scan, "--second", scan, "--scale", 2, *out).fails_with("one input", code=2)
    tool("clip", scan, "--second", scan, "--scale", 2, *out).fails_with("does not fit")
    content = scan.read_bytes()
    other = scans.save(scans.blank_scan(350, 220), tmp_path / "small.png")
    tool("clip", other, "--second", scan, "--scale", 2, "-o", scan, "--force").fails_with("is an input")
    assert scan.read_bytes() == content
