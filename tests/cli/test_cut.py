"""`vantrel cut`."""

import numpy as np
import pytest
from PIL import Image

import library
import scans
from sample_scans import SAMPLES, TRUTH, box_of

pytestmark = pytest.mark.usefixtures("leftovers")


@pytest.mark.parametrize("name", ["gray.png", "gray-tilted.png", "colour.jpg"])
def test_cut_is_what_the_library_returns(tool, tmp_path, name):
    path, truth = SAMPLES / "cut" / name, TRUTH[f"cut/{name}"]["rectangle"]
    report = tool("cut", path, "-o", tmp_path / "c.png", "--json", ok=True).json[0]
    pixels = scans.load(path)
    status, expected = library.call("cut", pixels)
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
    status, expected = library.call("cut", scans.load(small), scans.load(large), 2)
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
    Image.fromarray(scans.bilevel(drawn[0])).save(tmp_path / "b.png")
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
