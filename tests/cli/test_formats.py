"""Reading and writing image files: depths, resolutions, pages, and files that are damaged."""

import struct
import zlib

import numpy as np
import pytest
from PIL import Image, ImageDraw

import scans


@pytest.fixture(scope="module")
def card(drawn):
    return drawn[0]


def untouched(tool, path, out, *options):
    """Decodes and encodes a file: on a blank picture, which is kept as it is."""
    result = tool("clip", path, "-o", out, "--keep-unclipped", "--json", *options, ok=True)
    report = result.json[0]
    assert report["outcome"] == "kept", report
    return report


def picture(width=61, height=37):
    """A small picture on which no edge is steep enough for a border, different in every channel and direction."""
    y, x = np.mgrid[0:height, 0:width]
    return np.stack([100 + x, 140 + y, 200 - x + y // 2], axis=2).astype(np.uint8)


def bits(width=61, height=37):
    """A bilevel picture with nothing symmetrical about it."""
    y, x = np.mgrid[0:height, 0:width]
    return (x * 3 + y * y) % 7 < 3


LOSSLESS = ["png", "tif", "tiff", "bmp", "pnm", "ppm"]
HOLDS_RESOLUTION = ["png", "tif", "bmp", "jpg"]


# From format to format.


@pytest.mark.parametrize("source", LOSSLESS)
@pytest.mark.parametrize("target", LOSSLESS + ["webp"])
def test_colour_stays_the_same(tool, tmp_path, source, target):
    pixels = picture()
    path = scans.save(pixels, tmp_path / f"in.{source}", dpi=0)
    report = untouched(tool, path, tmp_path / f"out.{target}")
    assert report["scan"]["depth"] == 24
    assert np.array_equal(scans.load(tmp_path / f"out.{target}"), pixels)


@pytest.mark.parametrize("source", ["png", "tif", "bmp", "pgm"])
@pytest.mark.parametrize("target", ["png", "tif", "bmp", "pgm", "pnm"])
def test_gray_stays_8_bits(tool, tmp_path, source, target):
    pixels = picture()[:, :, 0]
    path = scans.save(pixels, tmp_path / f"in.{source}", dpi=0)
    assert untouched(tool, path, tmp_path / f"out.{target}")["scan"]["depth"] == 8
    with Image.open(tmp_path / f"out.{target}") as image:
        assert image.mode in ("L", "P")
        assert np.array_equal(np.asarray(image.convert("L")), pixels)
        assert image.mode == "L" or target == "bmp"


@pytest.mark.parametrize("source", ["png", "tif", "bmp", "pbm"])
@pytest.mark.parametrize("target", ["png", "tif", "bmp", "pbm"])
def test_bilevel_stays_1_bit(tool, tmp_path, source, target):
    Image.fromarray(bits()).save(tmp_path / f"in.{source}")
    assert untouched(tool, tmp_path / f"in.{source}", tmp_path / f"out.{target}")["scan"]["depth"] == 1
    with Image.open(tmp_path / f"out.{target}") as image:
        assert image.mode == "1"
        assert np.array_equal(np.asarray(image), bits())


@pytest.mark.parametrize("compression", ["group3", "group4", "packbits", "tiff_lzw", "tiff_adobe_deflate"])
def test_bilevel_tiff_of_every_compression(tool, tmp_path, compression):
    Image.fromarray(bits()).save(tmp_path / "in.tif", compression=compression)
    untouched(tool, tmp_path / "in.tif", tmp_path / "out.png")
    assert np.array_equal(scans.load(tmp_path / "out.png") > 0, bits())


def test_tiff_output_is_compressed(tool, tmp_path):
    Image.fromarray(bits()).save(tmp_path / "bits.png")
    scans.save(picture(), tmp_path / "colour.png")
    for name, compression in (("bits", "group4"), ("colour", "tiff_lzw")):
        untouched(tool, tmp_path / f"{name}.png", tmp_path / f"{name}.tif")
        with Image.open(tmp_path / f"{name}.tif") as image:
            assert image.info["compression"] == compression


@pytest.mark.parametrize("mode", ["RGB", "L"])
def test_jpeg_is_read_and_written_closely(tool, tmp_path, mode):
    pixels = picture() if mode == "RGB" else picture()[:, :, 0]
    path = scans.save(pixels, tmp_path / "in.jpg", quality=98, subsampling=0)
    untouched(tool, path, tmp_path / "out.png")
    decoded = scans.load(path).astype(int)
    assert scans.load(tmp_path / "out.png").ndim == pixels.ndim
    assert np.abs(scans.load(tmp_path / "out.png") - decoded).max() <= 2
    untouched(tool, scans.save(pixels, tmp_path / "in.png"), tmp_path / "out.jpg")
    with Image.open(tmp_path / "out.jpg") as image:
        assert image.format == "JPEG" and image.mode == mode
    assert np.abs(scans.load(tmp_path / "out.jpg").astype(int) - pixels).mean() < 2


def test_bilevel_as_jpeg_becomes_gray(tool, tmp_path):
    Image.fromarray(np.ones((16, 16), bool)).save(tmp_path / "in.png")
    untouched(tool, tmp_path / "in.png", tmp_path / "out.jpg")
    with Image.open(tmp_path / "out.jpg") as image:
        assert image.mode == "L" and np.asarray(image).min() > 250


# Palettes, transparency, 16 bits.


@pytest.mark.parametrize("ending", ["png", "tif", "bmp"])
@pytest.mark.parametrize("colours", [200, 13])
def test_palettes_are_resolved(tool, tmp_path, ending, colours):
    image = Image.fromarray(picture()).quantize(colours)
    image.save(tmp_path / f"in.{ending}")
    assert untouched(tool, tmp_path / f"in.{ending}", tmp_path / "out.ppm")["scan"]["depth"] == 24
    assert np.array_equal(scans.load(tmp_path / "out.ppm"), np.asarray(image.convert("RGB")))


def test_bilevel_palette_of_colours_becomes_colour(tool, tmp_path):
    image = Image.fromarray(bits().astype(np.uint8), "P")
    image.putpalette([200, 0, 0, 0, 0, 200])
    image.save(tmp_path / "in.png", bits=1)
    assert untouched(tool, tmp_path / "in.png", tmp_path / "out.ppm")["scan"]["depth"] == 24
    assert np.array_equal(scans.load(tmp_path / "out.ppm"), np.asarray(image.convert("RGB")))


def on_white(rgb, alpha):
    alpha = alpha[:, :, None].astype(float) / 255
    return rgb * alpha + 255 * (1 - alpha)


@pytest.mark.parametrize("ending", ["png", "tif", "webp"])
def test_transparency_is_resolved_on_white(tool, tmp_path, ending):
    rgb = picture()
    alpha = np.linspace(160, 255, 61).astype(np.uint8)[None].repeat(37, axis=0)
    options = {"lossless": True, "exact": True} if ending == "webp" else {}
    Image.fromarray(np.dstack([rgb, alpha])).save(tmp_path / f"in.{ending}", **options)
    untouched(tool, tmp_path / f"in.{ending}", tmp_path / "out.ppm")
    assert np.abs(scans.load(tmp_path / "out.ppm") - on_white(rgb, alpha)).max() <= 1.5


def test_gray_with_transparency_stays_gray(tool, tmp_path):
    gray = picture()[:, :, 0]
    alpha = np.linspace(160, 255, 61).astype(np.uint8)[None].repeat(37, axis=0)
    Image.fromarray(np.dstack([gray, alpha]), "LA").save(tmp_path / "in.png")
    assert untouched(tool, tmp_path / "in.png", tmp_path / "out.pgm")["scan"]["depth"] == 8
    assert np.abs(scans.load(tmp_path / "out.pgm") - on_white(gray[:, :, None], alpha)[:, :, 0]).max() <= 1.5


def test_transparent_palette_is_resolved_on_white(tool, tmp_path):
    image = Image.fromarray((bits() * 1).astype(np.uint8), "P")
    image.putpalette([30, 60, 90, 120, 150, 180])
    image.save(tmp_path / "in.png", transparency=b"\x00\xff")
    untouched(tool, tmp_path / "in.png", tmp_path / "out.ppm")
    expected = np.where(bits()[:, :, None], (120, 150, 180), 255)
    assert np.array_equal(scans.load(tmp_path / "out.ppm"), expected)


def png_of_16_bits(pixels):
    """A PNG file of 16-bit samples, which Pillow cannot write in colour."""
    height, width = pixels.shape[:2]
    rows = b"".join(b"\0" + row.astype(">u2").tobytes() for row in pixels)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    header = struct.pack(">IIBBBBB", width, height, 16, 2 if pixels.ndim == 3 else 0, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


@pytest.mark.parametrize("gray", [False, True])
def test_16_bit_png_is_reduced(tool, tmp_path, gray):
    pixels = picture()[:, :, 0] if gray else picture()
    (tmp_path / "in.png").write_bytes(png_of_16_bits(pixels.astype(np.uint16) * 256 + 77))
    assert untouched(tool, tmp_path / "in.png", tmp_path / "out.pnm")["scan"]["depth"] == (8 if gray else 24)
    assert np.array_equal(scans.load(tmp_path / "out.pnm"), pixels)


def test_16_bit_gray_tiff_and_pgm_are_reduced(tool, tmp_path):
    pixels = picture()[:, :, 0]
    Image.fromarray(pixels.astype(np.uint16) * 256 + 77).save(tmp_path / "in.tif")
    data = (pixels.astype(np.uint16) * 256 + 77).astype(">u2").tobytes()
    (tmp_path / "in.pgm").write_bytes(b"P5 61 37 65535\n" + data)
    for ending in ("tif", "pgm"):
        assert untouched(tool, tmp_path / f"in.{ending}", tmp_path / f"{ending}.png")["scan"]["depth"] == 8
        assert np.array_equal(scans.load(tmp_path / f"{ending}.png"), pixels)


def test_untouched_scan_keeps_all_that_the_same_format_holds(tool, tmp_path):
    file = png_of_16_bits(picture().astype(np.uint16) * 256 + 77)
    (tmp_path / "in.png").write_bytes(file)
    untouched(tool, tmp_path / "in.png", tmp_path / "out.png")
    assert (tmp_path / "out.png").read_bytes() == file


# Resolution.


def dpi_of(path):
    with Image.open(path) as image:
        x, y = image.info.get("dpi", (0, 0))
        return round(x), round(y)


@pytest.mark.parametrize("dpi", [72, 96, 150, 200, 300, 600, 1200])
@pytest.mark.parametrize("ending", HOLDS_RESOLUTION)
def test_resolution_is_kept(tool, tmp_path, ending, dpi):
    path = scans.save(picture(), tmp_path / f"in.{ending}", dpi=dpi)
    report = untouched(tool, path, tmp_path / "out.png")
    assert report["scan"]["dpi"] == [dpi, dpi] == report["outputs"][0]["dpi"]
    assert dpi_of(tmp_path / "out.png") == (dpi, dpi)
    untouched(tool, scans.save(picture(), tmp_path / "from.png", dpi=dpi), tmp_path / f"out2.{ending}")
    assert dpi_of(tmp_path / f"out2.{ending}") == (dpi, dpi)


@pytest.mark.parametrize("ending", HOLDS_RESOLUTION)
def test_resolution_of_the_card_is_that_of_the_scan(tool, card, tmp_path, ending):
    path = scans.save(card, tmp_path / "in.png", dpi=240)
    for size in ("card", "scan"):
        tool("clip", path, "-o", tmp_path / f"{size}.{ending}", "--size", size, ok=True)
        assert dpi_of(tmp_path / f"{size}.{ending}") == (240, 240)


@pytest.mark.parametrize("ending", HOLDS_RESOLUTION)
def test_unequal_resolutions_are_kept(tool, tmp_path, ending):
    Image.fromarray(picture()).save(tmp_path / "in.tif", dpi=(204, 98))
    untouched(tool, tmp_path / "in.tif", tmp_path / f"out.{ending}")
    assert dpi_of(tmp_path / f"out.{ending}") == (204, 98)


@pytest.mark.parametrize("ending", HOLDS_RESOLUTION)
def test_dpi_sets_the_resolution(tool, tmp_path, ending):
    path = scans.save(picture(), tmp_path / f"in.{ending}", dpi=300)
    report = untouched(tool, path, tmp_path / f"out.{ending}", "--dpi", 150)
    assert report["scan"]["dpi"] == [150, 150] and dpi_of(tmp_path / f"out.{ending}") == (150, 150)


@pytest.mark.parametrize("ending", ["png", "tif", "jpg"])
def test_no_resolution_is_invented(tool, tmp_path, ending):
    path = scans.save(picture(), tmp_path / "in.ppm", dpi=0)
    report = untouched(tool, path, tmp_path / f"out.{ending}")
    assert report["scan"]["dpi"] == [0, 0]
    assert untouched(tool, tmp_path / f"out.{ending}", tmp_path / "again.ppm")["scan"]["dpi"] == [0, 0]


# Pages.


@pytest.fixture
def three_pages(tmp_path):
    pages = [Image.fromarray(picture()), Image.fromarray(bits()), Image.fromarray(picture()[:, :, 0])]
    pages[0].save(tmp_path / "pages.tif", save_all=True, append_images=pages[1:], dpi=(300, 300))
    return tmp_path / "pages.tif"


@pytest.mark.parametrize("page, depth", [(1, 24), (2, 1), (3, 8)])
def test_page_is_read(tool, three_pages, tmp_path, page, depth):
    report = untouched(tool, three_pages, tmp_path / "out.png", "--page", page)
    assert (report["page"], report["pages"], report["scan"]["depth"]) == (page, 3, depth)
    expected = [picture(), bits() * 255, picture()[:, :, 0]][page - 1]
    assert np.array_equal(scans.load(tmp_path / "out.png"), expected)


def test_first_page_is_the_default(tool, three_pages, tmp_path):
    result = tool("clip", three_pages, "-o", tmp_path / "out.png", "--keep-unclipped", ok=True)
    assert "page 1 of 3" in result.text
    assert np.array_equal(scans.load(tmp_path / "out.png"), picture())
    # One page of a file is written as a file of one page.
    untouched(tool, three_pages, tmp_path / "out.tif", "--page", 2)
    with Image.open(tmp_path / "out.tif") as image:
        assert image.n_frames == 1


def test_page_that_is_not_there(tool, three_pages, tmp_path, scan):
    tool("clip", three_pages, "-o", tmp_path / "out.png", "--page", 4).fails_with(three_pages, "no page 4", "has 3")
    tool("clip", scan, "-o", tmp_path / "out.png", "--page", 2).fails_with(scan, "no page 2", "has 1")
    assert not (tmp_path / "out.png").exists()


def test_page_is_in_the_names_of_files_in_a_folder(tool, three_pages, tmp_path):
    (tmp_path / "out").mkdir()
    untouched(tool, three_pages, tmp_path / "out", "--page", 2)
    assert [p.name for p in (tmp_path / "out").iterdir()] == ["pages-page2.tif"]


# Damaged files.


def encodings(folder):
    """One file of every format and compression that is read."""
    noise = np.random.default_rng(3).integers(0, 256, (90, 120, 3), np.uint8)
    colour, gray, mono = Image.fromarray(noise), Image.fromarray(noise[:, :, 0]), Image.fromarray(noise[:, :, 0] > 128)
    ImageDraw.Draw(colour).rectangle((20, 20, 60, 60), fill=(200, 0, 0))
    for name, image, options in [
        ("colour.png", colour, {}),
        ("gray.png", gray, {}),
        ("mono.png", mono, {}),
        ("colour.jpg", colour, {}),
        ("gray.jpg", gray, {}),
        ("progressive.jpg", colour, {"progressive": True}),
        ("colour.bmp", colour, {}),
        ("gray.bmp", gray, {}),
        ("mono.bmp", mono, {}),
        ("colour.ppm", colour, {}),
        ("gray.pgm", gray, {}),
        ("mono.pbm", mono, {}),
        ("lossy.webp", colour, {}),
        ("lossless.webp", colour, {"lossless": True}),
        ("colour.tif", colour, {}),
        ("gray.tif", gray, {}),
        ("mono.tif", mono, {}),
        ("lzw.tif", colour, {"compression": "tiff_lzw"}),
        ("deflate.tif", gray, {"compression": "tiff_adobe_deflate"}),
        ("packbits.tif", gray, {"compression": "packbits"}),
        ("jpeg.tif", colour, {"compression": "jpeg"}),
        ("group3.tif", mono, {"compression": "group3"}),
        ("group4.tif", mono, {"compression": "group4"}),
    ]:
        image.save(folder / name, **options)
        yield folder / name


def test_truncated_files_are_refused(tool, tmp_path, leftovers):
    whole, cut, out = tmp_path / "whole", tmp_path / "cut", tmp_path / "out"
    for folder in (whole, cut, out):
        folder.mkdir()
    truncated = []
    for path in encodings(whole):
        data = path.read_bytes()
        # A byte less is enough, except where the last bytes carry nothing.
        for keep in (len(data) - 1, len(data) * 9 // 10, len(data) // 2, len(data) // 10, 20):
            name = f"{path.stem}-{path.suffix[1:]}-{keep}{path.suffix}"
            (cut / name).write_bytes(data[:keep])
            truncated.append(cut / name)
    result = tool("clip", *truncated, "-o", out, "--keep-unclipped", "--json")
    assert result.code == 1
    read = [report["file"] for report in result.json if report["outcome"] != "failed"]
    assert read == []
    for report in result.json:
        assert "truncated or damaged" in report["error"] or "not an image" in report["error"], report
    assert list(out.iterdir()) == []
    lines = result.err.splitlines()
    assert len(lines) == len(truncated) + 1
    assert all(line.startswith(f"vantrel: {path}: ") for line, path in zip(lines, truncated))


def test_whole_files_are_not_taken_for_truncated(tool, tmp_path):
    whole = list(encodings(tmp_path))
    reports = tool("clip", *whole, "--detect-only", "--json").json
    assert len(reports) == len(whole)
    assert all(report["outcome"] in ("done", "nothing-found") for report in reports), reports


def test_damaged_content_is_refused(tool, tmp_path):
    for path in encodings(tmp_path):
        if path.suffix not in (".png", ".webp") and path.name not in ("lzw.tif", "deflate.tif"):
            continue
        data = bytearray(path.read_bytes())
        for i in range(len(data) // 3, len(data) // 3 + 400):
            data[i] ^= 0x5A
        path.write_bytes(data)
        if path.name == "lossy.webp":
            # A lossy stream has no checksum: any bytes are some picture. It must only not do harm.
            tool("clip", path, "--detect-only")
        else:
            tool("clip", path, "--detect-only").fails_with(path, "truncated or damaged")


@pytest.mark.parametrize(
    "content, reason",
    [
        (b"", "empty"),
        (b"x", "not an image"),
        (b"This is a letter, not a picture.\n" * 20, "not an image"),
        (b"%PDF-1.4\n" + b"0" * 400, "not an image"),
        (b"GIF89a" + b"\0" * 100, "not an image"),
        (b"\x89PNG\r\n\x1a\n", "truncated or damaged"),
        (b"BM" + b"\0" * 30, "truncated or damaged"),
        (b"BM and some text that only begins like a picture" * 9, "truncated or damaged"),
        (b"\xff\xd8\xff\xe0" + b"\0" * 60, "truncated or damaged"),
        (b"II*\0\x08\0\0\0" + b"\0" * 40, "truncated or damaged"),
        (b"P6 100000 100000 255\n" + b"\0" * 100, "truncated or damaged"),
        (b"RIFF\xff\xff\xff\x7fWEBPVP8 " + b"\0" * 60, "truncated or damaged"),
    ],
)
def test_what_is_no_image(tool, tmp_path, content, reason):
    (tmp_path / "in.png").write_bytes(content)
    tool("clip", tmp_path / "in.png", "-o", tmp_path / "out.png").fails_with(tmp_path / "in.png", reason)
    assert not (tmp_path / "out.png").exists()


def test_codec_messages_stay_out_of_standard_error(tool, drawn, tmp_path):
    # A colour profile that libpng warns about, on a file that is otherwise fine.
    Image.fromarray(drawn[0]).save(tmp_path / "in.png", icc_profile=b"\0\0\0\x10not a profile at all" * 4)
    result = tool("clip", tmp_path / "in.png", "-o", tmp_path / "out.png", ok=True)
    assert result.err == ""
