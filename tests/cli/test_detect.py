"""`vantrel detect`."""

import numpy as np
import pytest
from PIL import Image

import scans
from geometry import corners_of

pytestmark = pytest.mark.usefixtures("leftovers")


def test_detect_runs_every_detector(tool, scan, drawn, tmp_path):
    result = tool("detect", scan, "--overlay", tmp_path / "v.png", ok=True)
    report = result.json[0]
    clip = tool("clip", scan, "--method", "dark-glass", "--detect-only", "--json", ok=True).json[0]
    for name in ("result", "verdict", "sides", "corners", "box", "tilt"):
        assert report["corner_finder"][name] == clip[name]
    cut = tool("cut", scan, "--detect-only", "--json").json[0]
    assert report["card_rectangle"] == {"rectangle": cut["rectangle"], "sides": cut["sides"]}
    sheet = tool("split", scan, "--detect-only", "--method", "sheet", "--json").json[0]
    assert report["sheet"]["result"] == sheet["result"] == 1
    assert [card["rectangle"] for card in report["sheet"]["cards"]] == [card["rectangle"] for card in sheet["cards"]]
    anywhere = tool("clip", scan, "--detect-only", "--method", "anywhere", "--cards", "all", "--json").json[0]
    assert report["anywhere"]["cards"] == anywhere["cards"]
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
    Image.fromarray(scans.bilevel(drawn[0])).save(tmp_path / "b.png", dpi=(300, 300))
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
