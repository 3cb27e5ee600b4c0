"""PDF output: all cards of a batch in one file, a page a card, at true size and with the pixels as they are."""

import io
import json
import re
import resource
import subprocess

import numpy as np
import pytest
from PIL import Image, ImageCms

import profiles
import scans
from sample_scans import SAMPLES

pytestmark = pytest.mark.usefixtures("leftovers")

STRIP = SAMPLES / "sheets" / "dark-strip.jpg"  # three cards
EMPTY = SAMPLES / "anywhere" / "empty-lid.jpg"


def page_sizes(path):
    """In points, of every page."""
    text = subprocess.run(["pdfinfo", "-l", "9999", path], check=True, capture_output=True, text=True).stdout
    return [(float(w), float(h)) for w, h in re.findall(r"^Page.*size: +([\d.]+) x ([\d.]+) pts", text, re.M)]


def pictures(path, folder):
    """The pixels that the pages hold, as they are stored."""
    folder.mkdir()
    subprocess.run(["pdfimages", "-png", path, folder / "p"], check=True)
    return [np.asarray(Image.open(picture)) for picture in sorted(folder.iterdir())]


def encodings(path):
    """Of every picture its colour space, bits and encoding."""
    text = subprocess.run(["pdfimages", "-list", path], check=True, capture_output=True, text=True).stdout
    return [(line.split()[5], line.split()[7], line.split()[8]) for line in text.splitlines()[2:]]


@pytest.fixture
def part(tool, tmp_path):
    """The tool cutting 60 x 30 pixels from (10, 20) out of scans."""

    def cut(*arguments, **options):
        return tool("crop", "--rect", "10,20,69,49", *arguments, **options)

    return cut


def test_a_page_a_card_in_the_order_of_the_inputs(tool, drawn, tmp_path):
    out = tmp_path / "cards.pdf"
    files = [STRIP, drawn[2], SAMPLES / "anywhere" / "portrait.jpg"]
    result = tool(*files, "-o", out, "-j", 2, "--json", ok=True)
    outputs = [output for report in result.json for output in report["outputs"]]
    assert [output["page"] for output in outputs] == [1, 2, 3, 4, 5]
    assert [len(report["outputs"]) for report in result.json] == [3, 1, 1]
    assert {output["path"] for output in outputs} == {str(out)}
    assert page_sizes(out) == [
        pytest.approx((output["width"] * 72 / output["dpi"][0], output["height"] * 72 / output["dpi"][1]), abs=0.01)
        for output in outputs
    ]
    tool(*files, "-o", tmp_path / "cards", "--format", "png", ok=True)
    kept = [scans.load(tmp_path / "cards" / f"dark-strip-{n}.png") for n in (1, 2, 3)]
    kept += [scans.load(tmp_path / "cards" / name) for name in ("scan.png", "portrait.png")]
    for stored, single in zip(pictures(out, tmp_path / "stored"), kept, strict=True):
        assert np.array_equal(stored if stored.ndim == single.ndim else stored[:, :, 0], single)


def test_true_size_by_the_resolution(part, scan, tmp_path):
    part(scan, "-o", tmp_path / "a.pdf", ok=True)
    assert page_sizes(tmp_path / "a.pdf") == [pytest.approx((14.4, 7.2), abs=0.01)]  # 60 x 30 at 300 dpi
    part(scan, "--dpi", 150, "-o", tmp_path / "b.pdf", ok=True)
    assert page_sizes(tmp_path / "b.pdf") == [pytest.approx((28.8, 14.4), abs=0.01)]
    scans.save(scans.load(scan), tmp_path / "unknown.png", dpi=None)
    told = part(tmp_path / "unknown.png", "-o", tmp_path / "c.pdf", ok=True)
    assert page_sizes(tmp_path / "c.pdf") == [pytest.approx((14.4, 7.2), abs=0.01)]
    assert "300 dpi, which the scan does not tell -> " in told.text
    assert "which the scan does not tell" not in part(scan, "-o", tmp_path / "d.pdf", ok=True).text


def test_reads_back_as_it_was_written(part, tool, scan, tmp_path):
    part(scan, "-o", tmp_path / "a.pdf", ok=True)
    back = tool("crop", tmp_path / "a.pdf", "--rect", "0,0,59,29", "-o", tmp_path / "back.png", "--json").json[0]
    if "is not read by this build" in (back["error"] or ""):
        pytest.skip("built without PDF")
    assert back["scan"]["width"] == 60 and back["scan"]["height"] == 30
    part(scan, "-o", tmp_path / "a.png", ok=True)
    assert np.abs(scans.load(tmp_path / "back.png").astype(int) - scans.load(tmp_path / "a.png")).max() <= 1


def test_kinds_of_picture_stay_what_they_are(part, tmp_path):
    shades = np.arange(100 * 100, dtype=np.int64).reshape(100, 100) * 37 % 256
    gray = shades.astype(np.uint8)
    scans.save(gray, tmp_path / "gray.png")
    scans.save(gray > 99, tmp_path / "bits.png")
    scans.save(np.dstack([gray, gray[::-1], gray.T]), tmp_path / "colour.png")
    files = [tmp_path / f"{name}.png" for name in ("gray", "bits", "colour")]
    part(*files, "-o", tmp_path / "all.pdf", ok=True)
    assert encodings(tmp_path / "all.pdf") == [("gray", "8", "image"), ("gray", "1", "image"), ("rgb", "8", "image")]
    for file, stored in zip(files, pictures(tmp_path / "all.pdf", tmp_path / "stored"), strict=True):
        whole = scans.load(file)[20:50, 10:70]
        stored = stored if stored.dtype != bool else stored * np.uint8(255)
        assert np.array_equal(stored if stored.ndim == whole.ndim else stored[:, :, 0], whole)
    part(*files, "-o", tmp_path / "small.pdf", "--quality", 70, ok=True)
    assert encodings(tmp_path / "small.pdf") == [("gray", "8", "jpeg"), ("gray", "1", "image"), ("rgb", "8", "jpeg")]


def test_colour_profile_is_kept(part, scan, tmp_path):
    Image.open(scan).save(tmp_path / "wide.png", icc_profile=profiles.wide_rgb(), dpi=(300, 300))
    part(tmp_path / "wide.png", "-o", tmp_path / "a.pdf", ok=True)
    assert encodings(tmp_path / "a.pdf") == [("icc", "8", "image")]
    drawn = subprocess.run(["pdftoppm", "-png", "-r", "300", tmp_path / "a.pdf"], check=True, capture_output=True).stdout
    shown = np.asarray(Image.open(io.BytesIO(drawn)).convert("RGB")).astype(int)
    source = Image.open(tmp_path / "wide.png").convert("RGB").crop((10, 20, 70, 50))
    wide = ImageCms.ImageCmsProfile(io.BytesIO(profiles.wide_rgb()))
    expected = np.asarray(ImageCms.profileToProfile(source, wide, ImageCms.createProfile("sRGB"))).astype(int)
    assert np.abs(shown[:30, :60] - expected).max() <= 3


def test_what_fails_has_no_page(tool, drawn, tmp_path):
    (tmp_path / "broken.png").write_bytes(b"no picture")
    result = tool(drawn[2], EMPTY, tmp_path / "broken.png", drawn[2], "-o", tmp_path / "c.pdf", "--json-lines", "-j", 3)
    assert result.code == 1 and len(page_sizes(tmp_path / "c.pdf")) == 2
    reports = [json.loads(line) for line in result.text.splitlines()]  # no report overtakes another
    assert [[output["page"] for output in report["outputs"]] for report in reports] == [[1], [], [], [2]]
    assert tool(EMPTY, tmp_path / "broken.png", "-o", tmp_path / "none.pdf").code == 1
    assert not (tmp_path / "none.pdf").exists()


def test_pipe(tool, drawn, tmp_path):
    result = tool(drawn[2], STRIP, "-o", "-", "--format", "pdf", ok=True)
    assert result.out.startswith(b"%PDF-") and "-> -, pages 2 to 4" in result.err
    tool(drawn[2], STRIP, "-o", tmp_path / "c.pdf", ok=True)
    assert result.out == (tmp_path / "c.pdf").read_bytes()  # the same at every run
    tool(drawn[2], STRIP, "-o", "-").fails_with("standard output", code=2)


@pytest.mark.parametrize("command", [("split",), ("clip", "--cards", "all"), ("auto",)])
def test_every_subcommand_writes_one(tool, tmp_path, command):
    tool(*command, STRIP, "-o", tmp_path / "c.pdf", ok=True)
    assert len(page_sizes(tmp_path / "c.pdf")) == 3


def test_scan_that_is_kept_is_a_page(tool, drawn, tmp_path):
    result = tool("clip", EMPTY, drawn[2], "--keep-unclipped", "-o", tmp_path / "c.pdf", "--json", ok=True)
    assert result.json[0]["outcome"] == "kept" and result.json[0]["outputs"][0]["width"] == 900
    assert len(page_sizes(tmp_path / "c.pdf")) == 2


def test_files_of_a_folder_have_one_page(tool, drawn, tmp_path):
    result = tool(STRIP, drawn[2], "-o", tmp_path / "out", "--format", "pdf", "--json", ok=True)
    assert sorted(p.name for p in (tmp_path / "out").iterdir()) == ["dark-strip-1.pdf", "dark-strip-2.pdf", "dark-strip-3.pdf", "scan.pdf"]
    assert all(len(page_sizes(p)) == 1 for p in (tmp_path / "out").iterdir())
    assert result.json[0]["outputs"][0]["page"] is None


def test_existing_file_is_kept_unless_forced(tool, drawn, tmp_path):
    out = tmp_path / "c.pdf"
    out.write_bytes(b"precious")
    tool(drawn[2], STRIP, "-o", out).fails_with(out, "exists already")
    skipped = tool(drawn[2], STRIP, "-o", out, "--skip-existing", "--json", ok=True)
    assert [report["outcome"] for report in skipped.json] == ["skipped", "skipped"]
    assert tool(EMPTY, EMPTY, "-o", out, "--force").code == 1
    assert out.read_bytes() == b"precious"
    tool(drawn[2], STRIP, "-o", out, "--force", ok=True)
    assert len(page_sizes(out)) == 4


def test_input_is_never_overwritten(tool, drawn, tmp_path):
    Image.open(drawn[2]).save(tmp_path / "in.pdf", resolution=300)
    (tmp_path / "link.pdf").hardlink_to(tmp_path / "in.pdf")
    content = (tmp_path / "in.pdf").read_bytes()
    tool(drawn[2], tmp_path / "in.pdf", "-o", tmp_path / "link.pdf", "--force").fails_with("is an input")
    assert (tmp_path / "in.pdf").read_bytes() == content


def test_overlay_of_the_same_name_is_an_error(tool, scan, tmp_path):
    tool(scan, "-o", tmp_path / "c.pdf", "--overlay", tmp_path / "." / "c.pdf").fails_with("is written for")
    assert not (tmp_path / "c.pdf").exists()


def test_file_that_finds_no_room_is_not_claimed(tool, drawn, tmp_path):
    def limit():
        resource.setrlimit(resource.RLIMIT_FSIZE, (1000, 1000))

    out = tmp_path / "c.pdf"
    result = tool(drawn[2], STRIP, "-o", out, "--json", preexec_fn=limit)
    assert result.code == 1 and "cannot be written" in result.err and not out.exists()
    assert [(report["outcome"], report["outputs"]) for report in result.json] == [("failed", []), ("failed", [])]


def test_dry_run_names_it(tool, drawn, tmp_path):
    out = tmp_path / "c.pdf"
    assert tool("split", drawn[2], STRIP, "-o", out, "--dry-run", ok=True).text == f"{drawn[2]} -> {out}\n{STRIP} -> {out}\n"
    assert not out.exists()


def test_folder_of_pictures_leaves_documents_alone(tool, drawn, tmp_path):
    folder = tmp_path / "scans"
    folder.mkdir()
    (folder / "a.png").write_bytes(drawn[2].read_bytes())
    for _ in range(2):
        tool(folder, "-o", folder / "cards.pdf", "--force", ok=True)
        assert len(page_sizes(folder / "cards.pdf")) == 1
