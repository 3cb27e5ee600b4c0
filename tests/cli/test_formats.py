"""Reading and writing image files: depths, resolutions, and pages."""

import struct
import zlib

import numpy as np
import pytest
from PIL import Image

import scans


@pytest.fixture(scope="module")
def card(drawn):
    return drawn[0]


def untouched(tool, path, out, *options):
    """Decodes and encodes a file: on a blank picture, which is kept as it is."""
    result = tool("clip", path, "-o", out, "--method", "dark-glass", "--keep-unclipped", "--json", *options, ok=True)
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
        # Leptonica's BMP palette begins with white, which Pillow takes for a palette of any two colours.
        assert image.mode == ("P" if target == "bmp" and source != "bmp" else "1")
        assert np.array_equal(np.asarray(image.convert("1")), bits())
    if target == "bmp":
        assert (tmp_path / "out.bmp").read_bytes()[28] == 1


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


def test_the_reduction_is_told(tool, tmp_path):
    (tmp_path / "in.png").write_bytes(png_of_16_bits(picture().astype(np.uint16) * 256 + 77))
    for name, told in (("in.png", True), ("out.png", False)):
        arguments = (tmp_path / name, "--rect", "0,0,60,36", "-o", tmp_path / f"out{'' if told else '2'}.png")
        assert ("reduced to 8 bits" in tool("crop", *arguments, ok=True).text) == told
        report = tool("crop", *arguments, "--force", "--json", ok=True).json[0]
        assert report["scan"]["reduced"] is told and report["version"] == 1


def tiled(samples, bits, kind, photometric, side=32):
    """An uncompressed TIFF file in tiles, whatever its samples are."""
    height, width, count = samples.shape
    across, down = -(-width // side), -(-height // side)
    padded = np.zeros((down * side, across * side, count), samples.dtype)
    padded[:height, :width] = samples
    tiles = [padded[y : y + side, x : x + side].tobytes() for y in range(0, down * side, side) for x in range(0, across * side, side)]
    tags = {256: (3, [width]), 257: (3, [height]), 258: (3, [bits] * count), 259: (3, [1]), 262: (3, [photometric]),
            277: (3, [count]), 322: (3, [side]), 323: (3, [side]), 324: (4, [0] * len(tiles)),
            325: (4, [len(t) for t in tiles]), 339: (3, [kind] * count)}
    start = 8 + 2 + 12 * len(tags) + 4
    values, where = b"", {}
    packed = lambda kind, numbers: struct.pack(f"<{len(numbers)}{'H' if kind == 3 else 'I'}", *numbers)
    for tag, (size, numbers) in tags.items():
        if len(packed(size, numbers)) > 4:
            where[tag] = start + len(values)
            values += packed(size, numbers)
    data = start + len(values)
    offsets = [data + sum(len(t) for t in tiles[:i]) for i in range(len(tiles))]
    tags[324] = (4, offsets)
    if 324 in where:
        at = where[324] - start
        values = values[:at] + packed(4, offsets) + values[at + 4 * len(tiles) :]
    entries = b"".join(
        struct.pack("<HHI", tag, size, len(numbers))
        + (struct.pack("<I", where[tag]) if tag in where else packed(size, numbers).ljust(4, b"\0"))
        for tag, (size, numbers) in sorted(tags.items())
    )
    return b"II*\0" + struct.pack("<IH", 8, len(tags)) + entries + bytes(4) + values + b"".join(tiles)


@pytest.mark.parametrize("gray", [False, True])
@pytest.mark.parametrize("white", [1, 255, 65535])
def test_floating_point_tiff_in_tiles(tool, tmp_path, gray, white):
    samples = picture()[:, :, :1] if gray else picture()
    samples[0, 0] = 255
    file = tiled((samples * (white / 255)).astype("<f4"), 32, 3, 1 if gray else 2)
    (tmp_path / "in.tif").write_bytes(file)
    untouched(tool, tmp_path / "in.tif", tmp_path / "out.pnm")
    assert np.array_equal(scans.load(tmp_path / "out.pnm"), samples[:, :, 0] if gray else samples)


@pytest.mark.parametrize("bits, gray", [(8, True), (8, False), (16, True), (16, False), (32, True)])
def test_tiff_in_tiles(tool, tmp_path, bits, gray):
    samples = picture()[:, :, :1] if gray else picture()
    deep = (samples.astype(np.uint64) * ((2**bits - 1) // 255)).astype(f"<u{bits // 8}")
    (tmp_path / "in.tif").write_bytes(tiled(deep, bits, 1, 1 if gray else 2))
    untouched(tool, tmp_path / "in.tif", tmp_path / "out.pnm")
    assert np.array_equal(scans.load(tmp_path / "out.pnm"), samples[:, :, 0] if gray else samples)


def test_samples_that_no_white_is_known_for_are_refused(tool, tmp_path):
    (tmp_path / "in.tif").write_bytes(tiled(np.full((8, 8, 1), 1e6, "<f4"), 32, 3, 1))
    tool("clip", tmp_path / "in.tif", "--detect-only").fails_with("this kind of TIFF is not read", "beyond 65535")


@pytest.mark.parametrize("ending, least", [("jpg", 3), ("webp", 3)])
def test_quality_makes_files_smaller(tool, drawn, tmp_path, ending, least):
    for quality in (30, 95):
        tool("clip", drawn[2], "-o", tmp_path / f"{quality}.{ending}", "--quality", quality, ok=True)
    sizes = [(tmp_path / f"{quality}.{ending}").stat().st_size for quality in (30, 95)]
    assert least * sizes[0] < sizes[1]
    tool("clip", drawn[2], "-o", tmp_path / f"c.{ending}", "--quality", 0).fails_with("--quality", code=2)


def test_16_bit_gray_tiff_and_pgm_are_reduced(tool, tmp_path):
    pixels = picture()[:, :, 0]
    Image.fromarray(pixels.astype(np.uint16) * 256 + 77).save(tmp_path / "in.tif")
    data = (pixels.astype(np.uint16) * 256 + 77).astype(">u2").tobytes()
    (tmp_path / "in.pgm").write_bytes(b"P5 61 37 65535\n" + data)
    for ending in ("tif", "pgm"):
        assert untouched(tool, tmp_path / f"in.{ending}", tmp_path / f"{ending}.png")["scan"]["depth"] == 8
        assert np.array_equal(scans.load(tmp_path / f"{ending}.png"), pixels)


def tiff(samples, photometric, extra=None):
    """An uncompressed TIFF file of 8- or 16-bit samples: kinds of transparency that Pillow cannot write."""
    height, width, count = samples.shape
    data = samples.tobytes()
    tags = {256: (3, width), 257: (3, height), 259: (3, 1), 262: (3, photometric), 277: (3, count), 278: (3, height)}
    tags[279] = (4, len(data))
    if extra is not None:
        tags[338] = (3, extra)
    end = 8 + 2 + 12 * (len(tags) + 2) + 4
    depths = struct.pack(f"<{count}H", *[8 * samples.itemsize] * count)
    tags[273] = (4, end + len(depths))
    entries = {tag: struct.pack("<HHII", tag, kind, 1, value) for tag, (kind, value) in tags.items()}
    value = struct.pack("<I", end) if count > 2 else depths.ljust(4, b"\0")
    entries[258] = struct.pack("<HHI", 258, 3, count) + value
    directory = struct.pack("<H", len(entries)) + b"".join(entries[tag] for tag in sorted(entries)) + b"\0\0\0\0"
    return b"II*\0" + struct.pack("<I", 8) + directory + depths + data


@pytest.mark.parametrize("gray", [False, True])
@pytest.mark.parametrize("premultiplied", [False, True])
def test_both_kinds_of_tiff_transparency(tool, tmp_path, gray, premultiplied):
    samples = picture()[:, :, :1] if gray else picture()
    alpha = np.linspace(160, 255, 61).astype(np.uint8)[None].repeat(37, axis=0)
    stored = np.rint(samples * (alpha[:, :, None] / 255.0)).astype(np.uint8) if premultiplied else samples
    file = tiff(np.dstack([stored, alpha]), 1 if gray else 2, 1 if premultiplied else 2)
    (tmp_path / "in.tif").write_bytes(file)
    assert untouched(tool, tmp_path / "in.tif", tmp_path / "out.pnm")["scan"]["depth"] == (8 if gray else 24)
    expected = on_white(samples, alpha)
    assert np.abs(scans.load(tmp_path / "out.pnm") - (expected[:, :, 0] if gray else expected)).max() <= 2


def test_16_bit_colour_tiff_and_ppm_are_reduced(tool, tmp_path):
    pixels = picture()
    (tmp_path / "in.tif").write_bytes(tiff((pixels * np.uint16(257)).astype("<u2"), 2))
    (tmp_path / "in.ppm").write_bytes(b"P6 61 37 65535\n" + (pixels * np.uint16(257)).astype(">u2").tobytes())
    for ending in ("tif", "ppm"):
        assert untouched(tool, tmp_path / f"in.{ending}", tmp_path / f"{ending}.png")["scan"]["depth"] == 24
        assert np.array_equal(scans.load(tmp_path / f"{ending}.png"), pixels)


def bmp(rows, bits_a_pixel, height):
    header = struct.pack("<IiiHHIIiiII", 40, 2, height, 1, bits_a_pixel, 0, len(rows), 11811, 11811, 0, 0)
    return b"BM" + struct.pack("<IHHI", 54 + len(rows), 0, 0, 54) + header + rows


def test_bmp_of_32_bits_ignores_the_fourth_byte(tool, tmp_path):
    (tmp_path / "in.bmp").write_bytes(bmp(bytes([10, 20, 30, 0] * 2 + [200, 150, 100, 0] * 2), 32, 2))
    untouched(tool, tmp_path / "in.bmp", tmp_path / "out.ppm")
    assert scans.load(tmp_path / "out.ppm").tolist() == [[[100, 150, 200]] * 2, [[30, 20, 10]] * 2]


def test_bmp_from_the_top_down(tool, tmp_path):
    (tmp_path / "in.bmp").write_bytes(bmp(bytes([1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0]), 24, -2))
    untouched(tool, tmp_path / "in.bmp", tmp_path / "out.ppm")
    assert scans.load(tmp_path / "out.ppm").tolist() == [[[3, 2, 1], [6, 5, 4]], [[9, 8, 7], [12, 11, 10]]]


def test_bmp_of_16_bits_is_refused(tool, tmp_path):
    (tmp_path / "in.bmp").write_bytes(bmp(bytes(8), 16, 2))
    tool("clip", tmp_path / "in.bmp", "--detect-only").fails_with("in.bmp", "16 bits")


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
    result = tool("clip", three_pages, "-o", tmp_path / "out.png", "--method", "dark-glass", "--keep-unclipped", ok=True)
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


def test_page_whose_directory_lacks_its_last_byte_is_one(tool, tmp_path):
    path = tmp_path / "in.tif"
    Image.fromarray(bits()).save(path, compression="group4")  # the directory stands behind the pixels
    path.write_bytes(path.read_bytes()[:-1])
    report = untouched(tool, path, tmp_path / "out.png")
    assert (report["page"], report["pages"]) == (1, 1)
    assert np.array_equal(scans.load(tmp_path / "out.png"), bits() * 255)
    tool("clip", path, "-o", tmp_path / "no.png", "--page", 2).fails_with("no page 2", "has 1")


def test_page_is_in_the_names_of_files_in_a_folder(tool, three_pages, tmp_path):
    (tmp_path / "out").mkdir()
    untouched(tool, three_pages, tmp_path / "out", "--page", 2)
    assert [p.name for p in (tmp_path / "out").iterdir()] == ["pages-page2.tif"]
