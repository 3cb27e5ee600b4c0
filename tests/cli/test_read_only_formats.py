"""Formats that are read and not written, where the build found their libraries; else the message names them."""

import base64
import io
import os
import struct

import numpy as np
import pytest
from PIL import Image

import scans

# 64 x 48, four areas of a colour each, with the EXIF data of a maker.
HEIC = base64.b64decode(
    "AAAAHGZ0eXBoZWljAAAAAG1pZjFoZWljbWlhZgAAAeRtZXRhAAAAAAAAACFoZGxyAAAAAAAAAABwaWN0AAAAAAAAAAAAAAAAAAAAAA5waXRtAAAA"
    "AAACAAAAEGlkYXQAAAAAAEAAMAAAAExpbG9jAQAAAERAAAMAAQAAAAAAAAIIAAEAAAAAAAAAjwACAAEAAAAAAAAAAQAAAAAAAAAIAAMAAAAAAAAC"
    "lwABAAAAAAAAACQAAABNaWluZgAAAAAAAwAAABVpbmZlAgAAAQABAABodmMxAAAAABVpbmZlAgAAAAACAABncmlkAAAAABVpbmZlAgAAAQADAABF"
    "eGlmAAAAANhpcHJwAAAAtmlwY28AAAB2aHZjQwEDcAAAAAAAAAAAAB7wAPz9+PgAAA8DIAABABhAAQwB//8DcAAAAwCQAAADAAADAB66AkAhAAEA"
    "KkIBAQNwAAADAJAAAAMAAAMAHqAggQWW6uSmubgQEDAgAAADACAAAAMAISIAAQAGRAHBc8CJAAAAFGlzcGUAAAAAAAAAQAAAAEAAAAAUaXNwZQAA"
    "AAAAAABAAAAAMAAAABBwaXhpAAAAAAMICAgAAAAaaXBtYQAAAAAAAAACAAECgQIAAgIDhAAAAChpcmVmAAAAAAAAAA5kaW1nAAIAAQABAAAADmNk"
    "c2MAAwABAAIAAAC7bWRhdAAAAIsoAa8J4CM1LV/t1f//De8hX+kdO7v1KP/lTi7Ypb7/G19+kniQ//uIH8ccj/+qIRKIUaSKlWf9S0SZ5DoQ8M34"
    "9GTlcuBfhDbaEUlGbCdhDK/D8fweodgftqsggNlhKZ2KTJ55XHvw10CFnnS+ZA7cON5YE4R19H3WF1DTThv7si9SdPx2mOnKnuNAAAAAAE1NACoA"
    "AAAIAAEBDwACAAAABgAAABoAAAAATWFrZXIA"
)


def picture():
    y, x = np.mgrid[0:40, 0:60]
    return np.stack([60 + 2 * x, 220 - 3 * y, 40 + 2 * x + y], axis=2).astype(np.uint8)


def saved(format, image=None, **options):
    buffer = io.BytesIO()
    (image or Image.fromarray(picture())).save(buffer, format, **options)
    return buffer.getvalue()


@pytest.fixture
def read(tool, tmp_path):
    """The pixels of a file; None where this build does not read it, and says so."""

    def read(content, name, width=60, height=40):
        (tmp_path / "in").write_bytes(content)
        result = tool("crop", tmp_path / "in", "--rect", f"0,0,{width - 1},{height - 1}", "-o", tmp_path / "out.png", "--force")
        if result.code != 0 and "is not read by this build" in result.err:
            result.fails_with(f"{name} is not read by this build")
            pytest.skip(f"built without {name}")
        assert result.code == 0, result.err
        return scans.load(tmp_path / "out.png")

    return read


@pytest.mark.parametrize("interlaced", [False, True])
def test_gif(read, interlaced):
    file = saved("GIF", interlace=int(interlaced))
    assert np.array_equal(read(file, "GIF"), np.asarray(Image.open(io.BytesIO(file)).convert("RGB")))


def test_gray_gif_stays_gray(read):
    gray = picture()[:, :, 0]
    assert np.array_equal(read(saved("GIF", Image.fromarray(gray)), "GIF"), gray)


def test_gif_is_seen_through_on_white(read):
    image = Image.fromarray(picture()).quantize(20)
    file = saved("GIF", image, transparency=3)
    with Image.open(io.BytesIO(file)) as stored:
        whole = stored.convert("RGBA")
        expected = Image.alpha_composite(Image.new("RGBA", whole.size, "white"), whole).convert("RGB")
    assert np.array_equal(read(file, "GIF"), np.asarray(expected))


def test_jpeg_2000(read):
    assert np.array_equal(read(saved("JPEG2000"), "JPEG 2000"), picture())


def test_heic_with_its_metadata(read, tool, tmp_path):
    pixels = read(HEIC, "HEIC", 64, 48).astype(int)
    for (y, x), colour in {(10, 10): (200, 180, 90), (10, 50): (40, 180, 90), (40, 10): (200, 60, 90), (40, 50): (40, 60, 90)}.items():
        assert np.abs(pixels[y, x] - colour).max() <= 4
    with Image.open(tmp_path / "out.png") as image:
        assert image.getexif()[0x010F] == "Maker"


def test_pages_of_pdf(read, tool, tmp_path):
    pages = [Image.new("RGB", (60, 40), colour) for colour in ((200, 30, 40), (20, 90, 220))]
    file = saved("PDF", pages[0], save_all=True, append_images=pages[1:], resolution=150)
    # At 300 dots per inch, whatever the page is made of.
    assert np.abs(read(file, "PDF", 120, 80)[40, 60].astype(int) - (200, 30, 40)).max() <= 3
    (tmp_path / "in.pdf").write_bytes(file)
    arguments = ("crop", tmp_path / "in.pdf", "--rect", "0,0,119,79", "-o", tmp_path / "second.png", "--json")
    report = tool(*arguments, "--page", 2, ok=True).json[0]
    assert report["pages"] == 2 and report["scan"]["dpi"] == [300, 300] and report["scan"]["width"] == 120
    assert np.abs(scans.load(tmp_path / "second.png")[40, 60].astype(int) - (20, 90, 220)).max() <= 3
    tool("crop", tmp_path / "in.pdf", "--rect", "0,0,9,9", "-o", tmp_path / "third.png", "--page", 3).fails_with("no page 3")


def test_a_pdf_file_whose_table_is_broken_is_mended(read):
    file = saved("PDF", Image.new("RGB", (60, 40), (200, 30, 40)), resolution=150)
    broken = file[: file.rindex(b"startxref")] + b"startxref\n5\n%%EOF\n"
    assert np.array_equal(read(broken, "PDF", 120, 80), read(file, "PDF", 120, 80))


def test_a_pdf_file_that_counts_more_pages_than_it_has(tool, tmp_path):
    file = saved("PDF", Image.new("RGB", (60, 40), (200, 30, 40)), resolution=150)
    assert file.count(b"/Count 1\n") == 1
    (tmp_path / "in.pdf").write_bytes(file.replace(b"/Count 1\n", b"/Count 2\n"))
    (tmp_path / "out").mkdir()
    arguments = ("crop", tmp_path / "in.pdf", "--rect", "0,0,9,9", "-o", tmp_path / "out")
    result = tool(*arguments, "--page", "all", "--json", ok=True)
    assert [(report["page"], report["pages"]) for report in result.json] == [(1, 1)]


@pytest.mark.parametrize("format", ["GIF", "JPEG2000", "PDF", "HEIC"])
def test_damaged_files_are_refused(tool, tmp_path, format):
    whole = HEIC if format == "HEIC" else saved(format)
    for keep in (len(whole) // 3, len(whole) // 2):
        (tmp_path / "in").write_bytes(whole[:keep])
        tool("crop", tmp_path / "in", "--rect", "0,0,9,9", "-o", tmp_path / "out.png").fails_with("in: ")
    assert not (tmp_path / "out.png").exists()


def test_a_gif_of_a_huge_screen_is_refused(read, tool, tmp_path):
    file = bytearray(saved("GIF"))
    file[6:10] = struct.pack("<HH", 65535, 65535)
    (tmp_path / "in.gif").write_bytes(file)
    read(saved("GIF"), "GIF")
    tool("crop", tmp_path / "in.gif", "--rect", "0,0,9,9", "-o", tmp_path / "b.png").fails_with("megapixels", "allows more")


@pytest.mark.parametrize("name, format", [("GIF", "GIF"), ("JPEG 2000", "JPEG2000"), ("HEIC", "HEIC"), ("PDF", "PDF")])
def test_a_build_without_the_libraries_names_the_format(tool, tmp_path, name, format):
    (tmp_path / "other").write_bytes(HEIC if format == "HEIC" else saved(format))
    (tmp_path / "in.png").write_bytes(saved("PNG"))
    for pages in ((), ("--page", "2"), ("--page", "all")):
        result = tool("clip", tmp_path / "other", "--detect-only", *pages, path=os.environ["VANTREL_PLAIN_TOOL"])
        result.fails_with(f"{tmp_path / 'other'}: {name} is not read by this build")
    arguments = ("crop", tmp_path / "in.png", tmp_path / "other", "--rect", "0,0,9,9", "-o", tmp_path / "out")
    result = tool(*arguments, path=os.environ["VANTREL_PLAIN_TOOL"])
    assert result.code == 1 and f"other: {name} is not read by this build" in result.err
    assert [path.name for path in (tmp_path / "out").iterdir()] == ["in.png"]
