"""`vantrel clip --second`."""

import numpy as np
import pytest

import scans
from geometry import block_centre, corners_of

pytestmark = pytest.mark.usefixtures("leftovers")


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
