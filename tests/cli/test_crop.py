"""`vantrel crop`."""

import numpy as np
import pytest
from PIL import Image

import library
import scans

pytestmark = pytest.mark.usefixtures("leftovers")


@pytest.mark.parametrize("kind", ["colour", "gray", "bilevel"])
@pytest.mark.parametrize("rect", [(0, 0, 699, 439), (13, 20, 13, 20), (101, 7, 408, 300), (37, 400, 699, 439)])
def test_crop_is_the_rectangle(tool, drawn, tmp_path, kind, rect):
    pixels = {"colour": lambda p: p, "gray": scans.gray_of, "bilevel": scans.bilevel}[kind](drawn[0])
    Image.fromarray(pixels).save(tmp_path / "s.png", dpi=(240, 240))
    left, top, right, bottom = rect
    text = f"{left},{top},{right},{bottom}"
    report = tool("crop", "--rect", text, tmp_path / "s.png", "-o", tmp_path / "c.png", "--json", ok=True).json[0]
    expected = pixels[top : bottom + 1, left : right + 1]
    with Image.open(tmp_path / "c.png") as image:
        assert np.array_equal(np.asarray(image), expected)
        assert [round(value) for value in image.info["dpi"]] == [240, 240]
    assert report["rectangle"] == dict(zip(("left", "top", "right", "bottom"), rect))
    status, of_entry = library.call("crop", pixels, left, 439 - top, right, 439 - bottom)
    assert status == 1 and np.array_equal(of_entry, expected)


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
    pixels = np.arange(120000, dtype=np.uint32).reshape(3, 40000).astype(np.uint8)
    long = scans.save(pixels, tmp_path / "long.png")
    tool("crop", "--rect", "32700,1,32800,2", long, "-o", tmp_path / "c.png", ok=True)
    assert np.array_equal(scans.load(tmp_path / "c.png"), pixels[1:3, 32700:32801])


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
