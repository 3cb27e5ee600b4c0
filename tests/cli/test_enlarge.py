"""`vantrel enlarge`."""

import numpy as np
import pytest
from PIL import Image

import library
import scans

pytestmark = pytest.mark.usefixtures("leftovers")


@pytest.mark.parametrize("method", ["linear", "cubic"])
@pytest.mark.parametrize("gray", [False, True])
@pytest.mark.parametrize("width", [120, 121])
def test_enlarge_is_what_the_library_returns(tool, drawn, tmp_path, method, gray, width):
    pixels = drawn[0][100:180, 200 : 200 + width]
    pixels = scans.gray_of(pixels) if gray else np.ascontiguousarray(pixels)
    path = scans.save(pixels, tmp_path / "s.png", dpi=150)
    report = tool("enlarge", path, "-o", tmp_path / "e.png", "--method", method, "--json", ok=True).json[0]
    status, expected = library.call(method, pixels)
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
    Image.fromarray(scans.bilevel(drawn[0])).save(tmp_path / "s.png")
    result = tool("enlarge", tmp_path / "s.png", "-o", tmp_path / "e.png", "--json")
    assert result.code == 1 and result.json[0]["result"] == 0 and "bilevel" in result.json[0]["error"]


def test_enlarge_with_an_unknown_method(tool, scan, tmp_path):
    tool("enlarge", scan, "-o", tmp_path / "e.png", "--method", "best").fails_with("--method", code=2)
