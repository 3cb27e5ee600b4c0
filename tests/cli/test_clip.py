"""What `vantrel clip` writes and says."""

import numpy as np
import pytest
from PIL import Image

import library
import scans
from geometry import block_centre, corners_of, lengths

ON_GLASS = ("--method", "dark-glass")

# The card at its own size.


def test_card_comes_out_upright_at_its_own_size(tool, drawn, scan, tmp_path):
    _, truth, _ = drawn
    result = tool("clip", scan, "-o", tmp_path / "card.png", ok=True)
    card = scans.load(tmp_path / "card.png")
    width, height = lengths(truth)
    assert abs(card.shape[1] - width) <= 2 and abs(card.shape[0] - height) <= 2
    # The block is drawn over 0.3 to 0.45 of the width and 0.3 to 0.4 of the height.
    x, y = block_centre(card)
    assert abs(x - 0.375) * width < 1.5
    assert abs(y - 0.35) * height < 1.5
    assert result.text.startswith(f"{scan}: card {card.shape[1]} x {card.shape[0]}, 4 of 4 sides found, tilt 2.0 degrees")
    assert str(tmp_path / "card.png") in result.text and result.err == ""


def test_size_is_the_rounded_mean_of_opposite_edges(tool, scan, tmp_path):
    report = tool("clip", scan, "-o", tmp_path / "card.png", "--json", ok=True).json[0]
    width, height = lengths(corners_of(report))
    output = report["outputs"][0]
    assert (output["width"], output["height"]) == (round(width), round(height))


@pytest.mark.parametrize("tilt", [-3, -1, 0, 1, 2, 4])
def test_no_rim_of_background_is_left(tool, tmp_path, tilt):
    pixels, truth = scans.draw_scan(900, 560, tilt, seed=20 + tilt)
    report = tool("clip", scans.save(pixels, tmp_path / "s.png"), "-o", tmp_path / "c.png", "--json", ok=True).json[0]
    assert report["sides_found"] == 4
    assert np.abs(corners_of(report) - truth).max() < 1.0
    assert abs(report["tilt"] - tilt) < 0.3
    card = scans.load(tmp_path / "c.png").astype(int)
    glass, paper = scans.GLASS, np.array(scans.CARD)
    for rim in (card[0], card[-1], card[:, 0], card[:, -1]):
        # A border sampled in its middle would keep half of the contrast.
        assert (rim > glass + 0.55 * (paper - glass)).all()
        assert (np.median(rim, axis=0) > glass + 0.75 * (paper - glass)).all()


def test_gray_scan_gives_the_gray_of_the_colour_result(tool, drawn, tmp_path):
    gray = scans.gray_of(drawn[0])
    tool("clip", scans.save(gray, tmp_path / "g.png"), "-o", tmp_path / "c.png", ok=True)
    with Image.open(tmp_path / "c.png") as image:
        assert image.mode == "L"
    tool("clip", drawn[2], "-o", tmp_path / "colour.png", ok=True)
    difference = scans.load(tmp_path / "c.png").astype(int) - scans.gray_of(scans.load(tmp_path / "colour.png"))
    assert np.abs(difference).max() <= 2


# The card on the frame of the scan: the library's own result, byte by byte.


@pytest.mark.parametrize("gray", [False, True])
def test_size_scan_is_what_the_library_returns(tool, drawn, tmp_path, gray):
    pixels = scans.gray_of(drawn[0]) if gray else drawn[0]
    status, expected = library.call("clip", pixels)
    assert status == 1
    tool("clip", *ON_GLASS, scans.save(pixels, tmp_path / "s.png"), "-o", tmp_path / "c.png", "--size", "scan", ok=True)
    assert np.array_equal(scans.load(tmp_path / "c.png"), expected)


def test_size_scan_keeps_the_frame(tool, drawn, tmp_path):
    tool("clip", *ON_GLASS, drawn[2], "-o", tmp_path / "c.png", "--size", "scan", ok=True)
    card = scans.load(tmp_path / "c.png")
    assert card.shape == drawn[0].shape
    assert (card[:2] == 255).all() and (card[:, -2:] == 255).all()


# Nothing found.


def test_blank_scan_is_refused(tool, blank, tmp_path, leftovers):
    result = tool("clip", blank, "-o", tmp_path / "c.png")
    result.fails_with(blank, "blank")
    assert result.out == b"" and not (tmp_path / "c.png").exists()


@pytest.mark.parametrize("size", ["card", "scan"])
def test_scan_without_any_side_is_refused(tool, tmp_path, size):
    # Specks near the border: edges enough to look for lines, but none that make one.
    pixels = scans.blank_scan(400, 300, 40)
    pixels[20:24, 20:24] = pixels[270:274, 350:354] = 220
    path = scans.save(pixels, tmp_path / "specks.png")
    report = tool("clip", path, *ON_GLASS, "--detect-only", "--json").json[0]
    assert (report["verdict"], report["result"], report["sides_found"]) == ("no-side", 1, 0)
    assert report["outcome"] == "nothing-found"
    tool("clip", path, "-o", tmp_path / "c.png", *ON_GLASS, "--size", size).fails_with(path, "no side of a card was found")
    assert not (tmp_path / "c.png").exists()


def test_small_card_is_refused_on_dark_glass(tool, tmp_path):
    pixels, _ = scans.draw_scan(700, 440, 0, fill=0.3)
    path = scans.save(pixels, tmp_path / "small.png")
    result = tool("clip", path, "-o", tmp_path / "c.png", *ON_GLASS)
    assert result.code == 1 and not (tmp_path / "c.png").exists()


def test_keep_unclipped_copies_the_scan(tool, blank, tmp_path):
    result = tool("clip", blank, "-o", tmp_path / "c.png", "--keep-unclipped", ok=True)
    assert (tmp_path / "c.png").read_bytes() == blank.read_bytes()
    assert "kept as it is" in result.text
    report = tool("clip", blank, "-o", tmp_path / "c.bmp", "--keep-unclipped", "--json", ok=True).json[0]
    assert report["outcome"] == "kept" and "blank" in report["error"]
    assert np.array_equal(scans.load(tmp_path / "c.bmp"), scans.load(blank))


def test_keep_unclipped_leaves_a_found_card_alone(tool, scan, tmp_path):
    tool("clip", scan, "-o", tmp_path / "a.png", ok=True)
    tool("clip", scan, "-o", tmp_path / "b.png", "--keep-unclipped", ok=True)
    assert (tmp_path / "a.png").read_bytes() == (tmp_path / "b.png").read_bytes()


def test_bilevel_scan_has_nothing_to_correct_on_dark_glass(tool, drawn, tmp_path):
    bilevel = Image.fromarray(scans.gray_of(drawn[0]) > 120)
    bilevel.save(tmp_path / "b.png", dpi=(300, 300))
    tool("clip", tmp_path / "b.png", "-o", tmp_path / "c.png", *ON_GLASS).fails_with("b.png", "bilevel")
    assert not (tmp_path / "c.png").exists()
    arguments = ("-o", tmp_path / "c.tif", "--keep-unclipped", "--json", *ON_GLASS)
    report = tool("clip", tmp_path / "b.png", *arguments, ok=True).json[0]
    assert report["result"] == 0 and report["outputs"][0]["depth"] == 1
    with Image.open(tmp_path / "c.tif") as kept:
        assert kept.mode == "1" and kept.info["compression"] == "group4"
        assert np.array_equal(np.asarray(kept), np.asarray(bilevel))


# Corners from a reduced copy.


@pytest.fixture
def half_degree(tmp_path):
    """The pixels of a scan whose card is found on a copy only, and its file at 300 dpi."""
    pixels, _ = scans.draw_scan(1203, 751, -2.5, seed=25)
    return pixels, scans.save(pixels, tmp_path / "half-degree.png")


def test_copy_is_searched_where_the_scan_shows_less(tool, half_degree):
    itself = tool("clip", half_degree[1], *ON_GLASS, "--detect-only", "--scale", 1, "--json").json[0]
    assert (itself["scale"], itself["searched"], itself["sides_found"]) == (1, {"width": 1203, "height": 751}, 0)
    copy = tool("clip", *ON_GLASS, half_degree[1], "--detect-only", "--scale", 2, "--json", ok=True).json[0]
    own = tool("clip", *ON_GLASS, half_degree[1], "--detect-only", "--json", ok=True).json[0]
    assert (own["scale"], own["searched"], own["sides_found"]) == (2, {"width": 601, "height": 375}, 4)
    for member in ("sides", "corners", "box", "tilt"):
        assert own[member] == copy[member]


def test_card_found_on_a_copy_is_cut_from_the_scan(tool, half_degree, tmp_path):
    pixels, path = half_degree
    tool("clip", *ON_GLASS, path, "-o", tmp_path / "own.png", ok=True)
    tool("clip", *ON_GLASS, path, "-o", tmp_path / "copy.png", "--scale", 2, ok=True)
    assert (tmp_path / "own.png").read_bytes() == (tmp_path / "copy.png").read_bytes()
    tool("clip", *ON_GLASS, path, "-o", tmp_path / "frame.png", "--size", "scan", ok=True)
    status, expected = library.call("clip", scans.reduced(pixels, 2), pixels, 2)
    assert status == 1 and np.array_equal(scans.load(tmp_path / "frame.png"), expected)


@pytest.mark.parametrize("dpi", [0, 100, 900])
def test_scale_is_all_the_reduction_there_is(tool, tmp_path, dpi):
    pixels, _ = scans.draw_scan(1803, 1121, 2, seed=4)
    path = scans.save(pixels, tmp_path / "s.png", dpi=dpi)
    report = tool("clip", *ON_GLASS, path, "--detect-only", "--scale", 2, "--json").json[0]
    assert (report["scale"], report["searched"]) == (2, {"width": 901, "height": 560})


@pytest.mark.parametrize("scale", [2, 3, 4])
def test_scale_finds_on_a_copy_and_cuts_the_full_scan(tool, tmp_path, scale):
    pixels, truth = scans.draw_scan(1803, 1121, 2, seed=4)
    path = scans.save(pixels, tmp_path / "s.png")
    report = tool("clip", path, "-o", tmp_path / "c.png", "--scale", scale, "--json", ok=True).json[0]
    assert report["scale"] == scale
    assert report["searched"] == {"width": 1803 // scale, "height": 1121 // scale}
    assert np.abs(corners_of(report) - truth).max() < scale
    width, height = lengths(truth)
    card = scans.load(tmp_path / "c.png")
    assert abs(card.shape[1] - width) < 2 * scale and abs(card.shape[0] - height) < 2 * scale
    x, y = block_centre(card)
    assert abs(x - 0.375) * width < scale and abs(y - 0.35) * height < scale


def test_reduced_copy_is_the_mean_of_blocks(tool, tmp_path):
    # With a copy reduced by hand the same corners are found as with the tool's own.
    pixels, _ = scans.draw_scan(1803, 1121, 2, seed=4)
    path = scans.save(pixels, tmp_path / "s.png")
    reduced = scans.save(scans.reduced(pixels, 3), tmp_path / "r.png", dpi=100)
    own = tool("clip", *ON_GLASS, path, "-o", tmp_path / "a.png", "--scale", 3, "--json", ok=True).json[0]
    given = tool("clip", *ON_GLASS, path, "-o", tmp_path / "b.png", "--scale", 3, "--analyse", reduced, "--json", ok=True).json[0]
    assert own["sides"] == given["sides"] and own["corners"] == given["corners"]
    assert (tmp_path / "a.png").read_bytes() == (tmp_path / "b.png").read_bytes()
    assert given["searched"] == {"width": 601, "height": 373}


@pytest.mark.parametrize("gray", [False, True])
def test_analyse_with_size_scan_is_what_the_library_returns(tool, tmp_path, gray):
    pixels, _ = scans.draw_scan(1400, 880, 2, seed=5)
    reduced = np.rint(pixels.reshape(440, 2, 700, 2, 3).mean(axis=(1, 3))).astype(np.uint8)
    if gray:
        pixels, reduced = scans.gray_of(pixels), scans.gray_of(reduced)
    status, expected = library.call("clip", reduced, pixels, 2)
    assert status == 1
    path, small = scans.save(pixels, tmp_path / "s.png"), scans.save(reduced, tmp_path / "r.png")
    tool("clip", *ON_GLASS, path, "-o", tmp_path / "c.png", "--scale", 2, "--analyse", small, "--size", "scan", ok=True)
    assert np.array_equal(scans.load(tmp_path / "c.png"), expected)


@pytest.mark.parametrize("gray_scan", [False, True])
def test_analysed_scan_may_have_another_depth(tool, tmp_path, gray_scan):
    pixels, _ = scans.draw_scan(1400, 880, 2, seed=5)
    reduced = np.rint(pixels.reshape(440, 2, 700, 2, 3).mean(axis=(1, 3))).astype(np.uint8)
    pixels, reduced = (scans.gray_of(pixels), reduced) if gray_scan else (pixels, scans.gray_of(reduced))
    path, small = scans.save(pixels, tmp_path / "s.png"), scans.save(reduced, tmp_path / "r.png")
    for size in ("card", "scan"):
        arguments = ("-o", tmp_path / "c.png", "--force", "--scale", 2, "--analyse", small, "--size", size)
        tool("clip", path, *arguments, ok=True)
        assert scans.load(tmp_path / "c.png").ndim == pixels.ndim


def test_analysed_scan_of_another_size_is_refused(tool, scan, tmp_path, leftovers):
    other = scans.save(scans.blank_scan(200, 440), tmp_path / "other.png")
    result = tool("clip", scan, "-o", tmp_path / "c.png", "--scale", 2, "--analyse", other)
    result.fails_with(scan, other, "200 x 440", "700 x 440")


def test_analysed_scan_that_cannot_be_read_is_named(tool, scan, tmp_path):
    missing = tmp_path / "missing.png"
    tool("clip", scan, "-o", tmp_path / "c.png", "--scale", 2, "--analyse", missing).fails_with(scan, missing, "No such file")


def test_scan_too_small_for_the_scale(tool, blank, tmp_path):
    tool("clip", blank, "-o", tmp_path / "c.png", "--scale", 250).fails_with(blank, "too small")


# Detection only, JSON, overlay.


def test_detect_only_writes_nothing(tool, scan, tmp_path):
    before = sorted(tmp_path.iterdir())
    result = tool("clip", scan, "--detect-only", ok=True)
    assert "4 of 4 sides found" in result.text
    assert sorted(tmp_path.iterdir()) == before


def test_json_tells_all_that_was_found(tool, drawn, scan, tmp_path):
    _, truth, _ = drawn
    report = tool("clip", *ON_GLASS, scan, "-o", tmp_path / "c.png", "--json", "--overlay", tmp_path / "v.png", ok=True).json[0]
    assert (report["file"], report["page"], report["pages"]) == (str(scan), 1, 1)
    assert (report["outcome"], report["error"], report["result"], report["verdict"]) == ("done", None, 1, "corners-found")
    assert report["scan"] == {"width": 700, "height": 440, "depth": 24, "dpi": [300, 300], "reduced": False}
    assert report["outputs"][0]["path"] == str(tmp_path / "c.png")
    assert report["outputs"][0]["dpi"] == [300, 300]
    assert report["overlay"] == str(tmp_path / "v.png")
    assert report["milliseconds"] > 0
    assert report["sides_found"] == 4 and all(side["found"] for side in report["sides"].values())
    found = corners_of(report)
    assert np.abs(found - truth).max() < 1.0
    # Every corner lies on its two lines, in positions of pixel centres with rows counted from the bottom.
    assert (report["scale"], report["searched"]) == (1, {"width": 700, "height": 440})
    for name, (x, y) in report["corners"].items():
        for side in name.split("_"):
            line = report["sides"][side]
            assert abs(line["a"] * (x - 0.5) + line["b"] * (440 - y - 0.5) - line["c"]) < 0.1
    box = report["box"]
    assert abs(box["left"] - found[:, 0].min()) <= 1 and abs(box["right"] - found[:, 0].max()) <= 1
    assert abs(box["top"] - found[:, 1].min()) <= 1 and abs(box["bottom"] - found[:, 1].max()) <= 1


def test_sides_that_are_not_found_are_told(tool, tmp_path):
    # The card crosses the left border of the scan: there is no left side to find.
    pixels, _ = scans.draw_scan(800, 440, 0)
    cropped = pixels[:, 100:]
    path = scans.save(cropped, tmp_path / "s.png")
    result = tool("clip", path, "-o", tmp_path / "c.png", *ON_GLASS, ok=True)
    assert "3 of 4 sides found (left: the frame of the scan)" in result.text
    report = tool("clip", path, *ON_GLASS, "--detect-only", "--json", ok=True).json[0]
    assert [name for name, side in report["sides"].items() if not side["found"]] == ["left"]
    assert report["corners"]["top_left"][0] == 0.5


def test_json_of_a_refused_scan(tool, blank):
    result = tool("clip", blank, "--detect-only", "--json")
    report = result.json[0]
    assert result.code == 1 and "blank" in result.err
    assert (report["outcome"], report["verdict"], report["result"]) == ("nothing-found", "no-edges", 0)
    assert report["corners"] is None and report["box"] is None and report["outputs"] == []


def near(pixel, colour, tolerance=40):
    return np.abs(pixel.astype(int) - colour).max() <= tolerance


GREEN, AMBER, RED = (0, 160, 60), (255, 170, 0), (220, 40, 40)


def test_overlay_shows_lines_corners_and_bands(tool, tmp_path):
    pixels, _ = scans.draw_scan(800, 440, 0)
    path = scans.save(pixels[:, 100:], tmp_path / "s.png")
    overlay = tmp_path / "v.png"
    arguments = (*ON_GLASS, "--detect-only", "--overlay", overlay, "--json")
    report = tool("clip", path, *arguments, ok=True).json[0]
    picture = scans.load(overlay)
    assert picture.shape == (440, 700, 3)
    # The right side was found, the left one was not.
    right = int(report["corners"]["top_right"][0])
    assert any(near(picture[200, x], GREEN) for x in range(right - 2, right + 3))
    assert any(near(picture[200, x], AMBER) for x in range(0, 4))
    assert not any(near(picture[200, x], GREEN) for x in range(0, 100))
    # Outside the bands the scan is as it was; inside it is tinted.
    assert np.array_equal(picture[200:240, 300:400], pixels[200:240, 400:500])
    assert picture[5, 350, 2] > pixels[5, 450, 2] + 15
    assert picture[220, 100, 0] < pixels[220, 200, 0] - 15
    # Each corner has its number beside it.
    for name in ("top_left", "top_right", "bottom_left", "bottom_right"):
        x, y = (int(value) for value in report["corners"][name])
        around = picture[max(0, y - 60) : y + 60, max(0, x - 60) : x + 60].reshape(-1, 3)
        assert sum(near(pixel, RED) for pixel in around) > 60


def test_overlay_is_written_when_nothing_is_found(tool, blank, tmp_path):
    assert tool("clip", blank, "-o", tmp_path / "c.png", "--overlay", tmp_path / "v.png").code == 1
    assert scans.load(tmp_path / "v.png").shape == (200, 300, 3)
    assert not (tmp_path / "c.png").exists()


def test_overlay_of_a_reduced_search_has_the_size_of_the_scan(tool, scan, tmp_path):
    tool("clip", scan, "--detect-only", "--scale", 2, "--overlay", tmp_path / "v.png", ok=True)
    assert scans.load(tmp_path / "v.png").shape == (440, 700, 3)
