"""The contact sheet: a batch at a glance."""

import signal
import subprocess

import numpy as np
import pytest
from PIL import Image

import profiles
import scans
from conftest import TOOL
from sample_scans import SAMPLES
from test_metadata import seen

pytestmark = pytest.mark.usefixtures("leftovers")

# A field: a stripe of 4 rows, 8 columns to each side of a picture of 240 x 240, and two lines of text.
WIDTH, HEIGHT, PICTURE, MARGIN = 256, 296, 240, 8
GREEN, AMBER, RED, BLUE = (0, 160, 60), (255, 170, 0), (220, 40, 40), (40, 110, 230)


def field(sheet, column, row):
    return sheet[row * HEIGHT : (row + 1) * HEIGHT, column * WIDTH : (column + 1) * WIDTH]


def stripe(cell):
    colours = {tuple(colour) for colour in cell[0:4, MARGIN:-MARGIN].reshape(-1, 3).tolist()}
    assert len(colours) == 1
    return colours.pop()


def picture(cell):
    return cell[MARGIN : MARGIN + PICTURE, MARGIN : MARGIN + PICTURE]


def text(cell):
    return cell[MARGIN + PICTURE :]


def test_every_input_has_its_field(tool, drawn, tmp_path):
    (tmp_path / "broken.png").write_bytes(b"no picture")
    portrait, cut_off, empty = (SAMPLES / "anywhere" / name for name in ("portrait.jpg", "cut-off.jpg", "empty-lid.jpg"))
    out = tmp_path / "sheet.png"
    result = tool(portrait, cut_off, empty, tmp_path / "broken.png", drawn[2], "--detect-only", "--sheet", out)
    assert result.code == 1
    sheet = scans.load(out)
    assert sheet.shape == (2 * HEIGHT, 3 * WIDTH, 3)
    cells = [field(sheet, i % 3, i // 3) for i in range(6)]
    assert [stripe(cell) for cell in cells[:4]] == [GREEN, AMBER, RED, RED]
    assert (cells[5] == 255).all()  # no sixth input
    assert (picture(cells[3]) == 255).all() and (text(cells[3]) < 128).any()  # what is no picture has its name alone
    assert all((text(cell) < 128).any() and (text(cell)[:, :4] == 255).all() for cell in cells[:5])
    # 900 x 660, so 240 x 176 in the middle of its field; what was searched for borders is shaded, its middle is not.
    shown = picture(cells[2])
    assert (shown[:32] == 255).all() and (shown[208:] == 255).all() and not (shown[32:208] == 255).all()
    small = np.asarray(Image.open(empty).convert("RGB").resize((240, 176), Image.BOX)).astype(int)
    assert np.abs(shown[32:208] - small)[30:-30, 60:-60].mean() <= 3
    # The outline of what was found is drawn.
    assert (np.abs(picture(cells[4]).astype(int) - GREEN).max(axis=2) < 60).sum() > 100


@pytest.mark.parametrize("kind", ["wide", "gray"])
def test_colours_of_a_profile_look_the_same(tool, tmp_path, kind):
    """The sheet has no profile: what it shows is sRGB."""
    colour = kind == "wide"
    pixels, _ = scans.draw_scan(card=(90, 190, 120))
    stored = pixels if colour else scans.gray_of(pixels)
    path = tmp_path / "in.png"
    Image.fromarray(stored).save(path, icc_profile=profiles.wide_rgb() if colour else profiles.gray())
    tool(path, "--detect-only", "--sheet", tmp_path / "s.png", ok=True)
    with Image.open(tmp_path / "s.png") as image:
        assert "icc_profile" not in image.info
    shown = picture(scans.load(tmp_path / "s.png"))[45:195].astype(int)  # 700 x 440, so 240 x 150

    def small(pixels):
        image = Image.fromarray(pixels.astype(np.uint8)).convert("RGB")
        return np.asarray(image.resize((240, 150), Image.BOX)).astype(int)

    inner = np.s_[22:42, 40:200]  # of the card, without print or what is drawn
    wanted = small(seen(path))[inner]
    assert np.abs(wanted - small(stored)[inner]).mean() > 8  # it does matter
    assert np.abs(shown[inner] - wanted).mean() < 3


def test_format_is_that_of_the_name(tool, drawn, tmp_path):
    tool(drawn[2], "-o", tmp_path / "c.png", "--sheet", tmp_path / "s.jpg", ok=True)
    with Image.open(tmp_path / "s.jpg") as image:
        assert image.format == "JPEG" and image.size == (WIDTH, HEIGHT)
    tool(drawn[2], "--detect-only", "--sheet", tmp_path / "s.xyz").fails_with("--sheet", "ending", code=2)
    tool(drawn[2], "--detect-only", "--sheet", "-").fails_with("--sheet", code=2)


def test_skipped_inputs_are_named(tool, drawn, tmp_path):
    (tmp_path / "c.png").write_bytes(b"precious")
    tool(drawn[2], "-o", tmp_path / "c.png", "--skip-existing", "--sheet", tmp_path / "s.png", ok=True)
    cell = scans.load(tmp_path / "s.png")
    assert stripe(cell) == BLUE and (picture(cell) == 255).all() and (text(cell) < 128).any()


def test_nobody_loses_a_file(tool, scan, tmp_path):
    content = scan.read_bytes()
    tool(scan, "--detect-only", "--sheet", scan).fails_with("is an input")
    assert scan.read_bytes() == content
    tool(scan, "-o", tmp_path / "c.png", "--sheet", tmp_path / "c.png").fails_with("is written for the contact sheet")
    tool(scan, "-o", tmp_path / "c.pdf", "--sheet", tmp_path / "c.pdf").fails_with("one file", code=2)
    sheet = tmp_path / "s.png"
    sheet.write_bytes(b"precious")
    tool(scan, "--detect-only", "--sheet", sheet).fails_with("exists already")
    assert sheet.read_bytes() == b"precious"
    tool(scan, "-o", tmp_path / "d.png", "--sheet", sheet, "--force", ok=True)
    assert scans.load(sheet).shape == (HEIGHT, WIDTH, 3)


def test_dry_run_tells_of_it(tool, drawn, tmp_path):
    sheet = tmp_path / "s.png"
    told = tool(drawn[2], "--detect-only", "--sheet", sheet, "--dry-run", ok=True).text.splitlines()
    assert told[-1] == f"contact sheet {sheet}" and not sheet.exists()
    sheet.write_bytes(b"precious")
    told = tool(drawn[2], "--detect-only", "--sheet", sheet, "--dry-run", ok=True).text.splitlines()
    assert told[-1] == f"contact sheet {sheet}: fails without --force, it is there"


def test_interruption_leaves_sheet_and_review(drawn, tmp_path):
    many = [str(drawn[2])] * 400
    arguments = ["--detect-only", "--json-lines", "-j", "1", "--sheet", tmp_path / "s.png", "--review", tmp_path / "review",
                 "--review-below", "1.01"]
    process = subprocess.Popen([TOOL, "clip", *many, *arguments], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    for _ in range(3):
        process.stdout.readline()
    process.send_signal(signal.SIGINT)
    process.stdout.read()
    assert process.wait(60) == -signal.SIGINT
    sheet = scans.load(tmp_path / "s.png")
    cells = [field(sheet, x, y) for y in range(sheet.shape[0] // HEIGHT) for x in range(sheet.shape[1] // WIDTH)]
    done = sum(not (cell == 255).all() for cell in cells)
    assert 2 <= done < 400 and all(stripe(cell) == GREEN for cell in cells[:done])
    assert (tmp_path / "review" / "index.html").read_text().count("<figure") >= 2
