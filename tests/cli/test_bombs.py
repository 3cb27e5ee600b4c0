"""Small files of pictures too large: refused at once, before anything is decoded or memory taken for it.

Within a second of processor time and 100 MB, of any format; and the limits can be raised and lowered.
"""

import io
import struct
import time
import zlib

import numpy as np
import pytest
from PIL import Image

import read_bombs
import scans
from cost import SANITIZED, looked_at, repeated

SIDE = 30000
ZEROS = zlib.compress(bytes(4 << 20), 9)
ZEROS_OF_300_MB = repeated(b"\0", 300)
TWO_GIGABYTES = 2000


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png(width, height, depth, colour, interlaced=0, data=ZEROS):
    head = struct.pack(">IIBBBBB", width, height, depth, colour, 0, 0, interlaced)
    palette = chunk(b"PLTE", bytes(6)) if colour == 3 else b""
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + palette + chunk(b"IDAT", data) + chunk(b"IEND", b"")


def tiff(width, height, bits, samples, compression, rows, tile=None):
    data = ZEROS
    tags = {256: width, 257: height, 258: bits, 259: compression, 262: 2 if samples == 3 else 1, 277: samples}
    tags.update({322: tile, 323: tile, 324: 8, 325: len(data)} if tile else {273: 8, 278: rows, 279: len(data)})
    entries = b"".join(struct.pack("<HHII", tag, 4, 1, value) for tag, value in sorted(tags.items()))
    return b"II*\0" + struct.pack("<I", 8 + len(data)) + data + struct.pack("<H", len(tags)) + entries + bytes(4)


def patched(name, options, at, kind, values, folder):
    """A file of a picture of 64 x 64 whose header says otherwise."""
    path = folder / f"small.{name}"
    Image.new("RGB", (64, 64), (90, 120, 200)).save(path, **options)
    file = bytearray(path.read_bytes())
    place = at(file)
    file[place : place + struct.calcsize(kind)] = struct.pack(kind, *values)
    return bytes(file)


def bombs(folder):
    yield "gray.png", png(SIDE, SIDE, 8, 0)
    yield "deep.png", png(SIDE, SIDE, 16, 6)
    yield "bits.png", png(4 * SIDE, SIDE, 1, 0)
    yield "palette.png", png(SIDE, SIDE, 1, 3, interlaced=1)
    yield "thin.png", png(1, 200000000, 8, 0)  # rows are filled up to four bytes
    yield "wide.png", png(0x7FFFFFFF, 1, 8, 2)
    yield "rest.png", png(64, 64, 8, 0, data=repeated(b"\0", TWO_GIGABYTES))
    yield "interlaced-rest.png", png(64, 64, 8, 6, interlaced=1, data=repeated(b"\0", TWO_GIGABYTES))
    yield "text.png", png(64, 64, 8, 0)[:33] + struct.pack(">I", 0x65000000) + b"iTXt" + bytes(1000)
    yield "strip.tif", tiff(SIDE, SIDE, 8, 1, 8, SIDE)
    yield "rows.tif", tiff(SIDE, SIDE, 8, 3, 8, 1)
    yield "tile.tif", tiff(64, 64, 8, 1, 8, 0, tile=SIDE + 400 - SIDE % 16)
    yield "huge.tif", tiff(0xFFFFFFFF, 0xFFFFFFFF, 8, 1, 8, 1)
    yield "group4.tif", tiff(4 * SIDE, SIDE, 1, 1, 4, SIDE)
    # The last takes more than it may only by its coefficients, which are all kept.
    for kind, marker, side in (("baseline", b"\xff\xc0", 60000), ("progressive", b"\xff\xc2", 60000), ("passes", b"\xff\xc2", 11000)):
        options = {"progressive": kind != "baseline"}
        yield f"{kind}.jpg", patched("jpg", options, lambda f, m=marker: f.index(m) + 5, ">HH", (side, side), folder)
    # The widest there can be: 14 bits less 1 for width and height, and for the lossy kind 14 bits.
    yield "lossless.webp", patched("webp", {"lossless": True}, lambda f: f.index(b"VP8L") + 9, "<I", (16381 | 16381 << 14,), folder)
    yield "argb.webp", patched("webp", {"lossless": True}, lambda f: f.index(b"VP8L") + 9, "<I", (9999 | 9999 << 14,), folder)
    yield "lossy.webp", patched("webp", {}, lambda f: f.index(b"\x9d\x01\x2a") + 3, "<HH", (16382, 16382), folder)
    for name, head in (("raw.pgm", b"P5 30000 30000 255\n"), ("deep.ppm", b"P6 20000 20000 65535\n"),
                       ("text.pgm", b"P2 30000 30000 255\n"), ("bits.pbm", b"P4 120000 30000\n")):
        yield name, head + bytes(1000)
    yield "head.bmp", patched("bmp", {}, lambda f: 18, "<ii", (SIDE, SIDE), folder)
    yield "run.bmp", patched("bmp", {}, lambda f: 28, "<HI", (8, 1), folder)


@pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more memory than is allowed here")
def test_bombs_are_refused_at_once(tmp_path):
    told = {}
    for name, content in bombs(tmp_path):
        (tmp_path / name).write_bytes(content)
        told[name] = looked_at(tmp_path / name).said
        assert any(reason in told[name] for reason in ("megapixels", "megabytes", "truncated or damaged")), told[name]
    for name in ("gray.png", "strip.tif", "tile.tif", "baseline.jpg", "progressive.jpg", "passes.jpg", "lossless.webp", "argb.webp", "lossy.webp", "raw.pgm"):
        assert "allows more" in told[name], told[name]


@pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more memory than is allowed here")
def test_texts_and_profiles_that_grow_are_left_out(tool, tmp_path):
    """A picture beside which some kilobytes would become far more than it may take, by one chunk or by many."""
    profile = chunk(b"iCCP", b"p\0\0" + ZEROS_OF_300_MB)
    text = chunk(b"iTXt", b"t\0\1\0\0\0" + ZEROS)
    plain_text = chunk(b"zTXt", b"t\0\0" + ZEROS)
    for name, aside in (("profile", profile), ("texts", 1000 * text), ("plain texts", 1000 * plain_text)):
        buffer = io.BytesIO()
        Image.new("L", (64, 64), 90).save(buffer, "PNG")
        file = buffer.getvalue()
        (tmp_path / f"{name}.png").write_bytes(file[:33] + aside + file[33:])
        said = looked_at(tmp_path / f"{name}.png").said
        assert "blank" in said, said


@pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more memory than is allowed here")
def test_bombs_of_formats_that_are_only_read_are_refused_at_once(tmp_path):
    for name, reason, content in read_bombs.bombs():
        (tmp_path / name).write_bytes(content)
        said = looked_at(tmp_path / name).said
        assert said.endswith(reason + "\n") or "is not read by this build" in said, (name, said)
        assert said.startswith(f"vantrel: {tmp_path / name}: "), (name, said)


def test_a_drawing_may_hold_images_of_many_sizes_and_letters_beside_long_paths(tool, tmp_path):
    images = [b"q %d 0 0 %d 0 0 cm BI /W %d /H %d /BPC 8 /CS /G /F /AHx ID %s> EI Q " % (s, s, s, s, b"00" * s * s) for s in (60, 4, 8)]
    drawing = images[0] + 3000 * images[1] + 100 * images[2] + b"BT /F 1 Tf (aaa) Tj ET " + 20000 * b"0 0 1 1 re f "
    (tmp_path / "in.pdf").write_bytes(read_bombs.pdf(drawing=drawing, others=read_bombs.FONT))
    result = tool("crop", "--rect", "0,0,412,412", "-o", tmp_path / "out.png", tmp_path / "in.pdf")
    if "is not read by this build" in result.err:
        pytest.skip(result.err)
    assert result.code == 0, result.err
    pixels = scans.load(tmp_path / "out.png")
    assert pixels[300, 100].max() == 0 and pixels[100, 300].min() == 255


@pytest.mark.skipif(SANITIZED, reason="a sanitizer has allocators of its own")
def test_a_decoder_that_takes_too_much_ends_the_tool_in_good_order(tool, tmp_path, leftovers):
    content = {name: content for name, _, content in read_bombs.bombs()}["objects.pdf"]
    scans.save(scans.blank_scan(120, 100), tmp_path / "in.png")
    (tmp_path / "objects.pdf").write_bytes(content)
    for order in (("in.png", "objects.pdf"), ("objects.pdf", "in.png")):
        (tmp_path / order[0][:2]).mkdir()
        arguments = ("crop", *(tmp_path / name for name in order), "--rect", "0,0,99,79", "-o", tmp_path / order[0][:2], "-j", 1)
        result = tool(*arguments)
        if "is not read by this build" in result.err:
            pytest.skip(result.err)
        assert result.code == 1 and f"{tmp_path / 'objects.pdf'}: {read_bombs.MEMORY}" in result.err
    assert [path.name for path in (tmp_path / "in").iterdir()] == ["in.png"]
    assert scans.load(tmp_path / "in" / "in.png").shape[:2] == (80, 100)
    assert not list((tmp_path / "ob").iterdir())


def test_a_decoder_may_take_too_long(tool, tmp_path):
    (tmp_path / "in.pdf").write_bytes(read_bombs.fills())
    arguments = ("crop", "--rect", "0,0,9,9", "-o", tmp_path / "out.png", tmp_path / "in.pdf")
    begun = time.monotonic()
    result = tool(*arguments, "--most-seconds", 1)
    if "is not read by this build" in result.err:
        pytest.skip(result.err)
    text = "reading it takes more than 1.0 seconds of the processor (--most-seconds allows more)"
    assert (result.code, result.err) == (1, f"vantrel: {tmp_path / 'in.pdf'}: {text}\n")
    assert time.monotonic() - begun > 1
    assert [path.name for path in tmp_path.iterdir()] == ["in.pdf"]


def test_a_decoder_may_be_given_more_time_than_the_size_of_a_page_lets_expect(tool, tmp_path):
    (tmp_path / "in.pdf").write_bytes(read_bombs.fills(2500))
    arguments = ("crop", "--rect", "0,0,9,9", "-o", tmp_path / "out.png", tmp_path / "in.pdf")
    result = tool(*arguments)
    if "is not read by this build" in result.err:
        pytest.skip(result.err)
    assert result.code == 1 and result.err.endswith("takes more than 0.6 seconds of the processor (--most-seconds allows more)\n")
    tool(*arguments, "--most-seconds", 300, ok=True)
    assert scans.load(tmp_path / "out.png").shape[:2] == (10, 10)


def test_a_file_may_be_too_large(tool, tmp_path):
    pixels = np.random.default_rng(1).integers(0, 256, (800, 800, 3), np.uint8)
    scans.save(pixels, tmp_path / "in.png")
    arguments = ("crop", "--rect", "0,0,9,9", "-o", "-", "--most-megabytes")
    for source, given in ((tmp_path / "in.png", {}), ("-", {"input": (tmp_path / "in.png").read_bytes()})):
        tool(*arguments, 1, source, **given).fails_with("the file has more than 1 megabytes", "--most-megabytes")
        tool(*arguments, 2, source, ok=True, **given)


def test_a_picture_may_take_too_much_memory(tool, tmp_path):
    scans.save(scans.blank_scan(1200, 1000), tmp_path / "in.png")
    arguments = ("crop", "--rect", "0,0,9,9", "-o", "-", "--most-megabytes")
    tool(*arguments, 3, tmp_path / "in.png").fails_with("1200 x 1000 in 24 bits a pixel take more than 3 megabytes")
    tool(*arguments, 4, tmp_path / "in.png", ok=True)
