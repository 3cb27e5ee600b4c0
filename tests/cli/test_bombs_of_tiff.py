"""Small TIFF files whose strips or tiles become far more than the picture has: refused at once. What is like them is read."""

import struct
import zlib

import numpy as np
import pytest

import scans
from cost import SANITIZED, Cost, looked_at, repeated

DAMAGED = "the TIFF data is truncated or damaged"
# 64 x 64: a black rectangle from 16, 16 up to, and without, 40, 40.
JBIG = bytes.fromhex("000001000000004000000040000000400000030c17d397951e690cc8ff02")


def tiff(tags, data):
    """A little-endian file; the tags' values are numbers, or lists of them."""
    tags = {277: 1, **tags}
    ifd = 8 + len(data) + len(data) % 2
    behind = ifd + 2 + 12 * len(tags) + 4
    entries, lists = b"", b""
    for tag, value in sorted(tags.items()):
        if isinstance(value, list) and len(value) > 1:
            entries += struct.pack("<HHII", tag, 4, len(value), behind + len(lists))
            lists += struct.pack(f"<{len(value)}I", *value)
        else:
            entries += struct.pack("<HHII", tag, 4, 1, value[0] if isinstance(value, list) else value)
    return b"II*\0" + struct.pack("<I", ifd) + data.ljust(ifd - 8, b"\0") + struct.pack("<H", len(tags)) + entries + bytes(4) + lists


def in_one_strip(data, compression, bits=1, **others):
    tags = {256: 64, 257: 64, 258: bits, 259: compression, 262: 0, 273: 8, 278: 64, 279: len(data)}
    return tiff({**tags, **{int(tag[1:]): value for tag, value in others.items()}}, data)


def reversed_bits(data):
    return bytes(int(f"{byte:08b}"[::-1], 2) for byte in data)


def jbig(width=64, height=64, planes=1, late_height=None):
    head = struct.pack(">BBBBIII", 0, 0, planes, 0, width, height, late_height or height) + JBIG[16:19]
    if late_height is None:
        return head + JBIG[19:]
    return head + bytes([JBIG[19] | 0x20]) + JBIG[20:] + b"\xff\x05" + struct.pack(">I", late_height) + b"\xff\x02"


@pytest.fixture
def refused(tmp_path):
    def refused(file, reason):
        (tmp_path / "in.tif").write_bytes(file)
        assert looked_at(tmp_path / "in.tif").said == f"vantrel: {tmp_path / 'in.tif'}: {reason}\n"

    return refused


@pytest.fixture
def read(tool, tmp_path):
    def read(file, width=64, height=64):
        (tmp_path / "in.tif").write_bytes(file)
        tool("crop", tmp_path / "in.tif", "--rect", f"0,0,{width - 1},{height - 1}", "-o", tmp_path / "out.png", "--force", ok=True)
        return scans.load(tmp_path / "out.png")

    return read


@pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more memory than is allowed here")
@pytest.mark.parametrize("asked", [
    {"width": 1000000, "height": 1000000},
    {"width": 200000, "height": 200000},
    {"height": 0xFFFFFFFF},
    {"height": 0xFFFFFFFF, "late_height": 0xFFFFFF},
    {"planes": 255, "width": 10000, "height": 10000},
])
def test_jbig_data_that_ask_for_more_than_their_strip(refused, asked):
    refused(in_one_strip(jbig(**asked), 34661, _266=2), DAMAGED)
    refused(in_one_strip(reversed_bits(jbig(**asked)), 34661), DAMAGED)


@pytest.mark.parametrize("told", [{}, {"height": 0xFFFFFFFF, "late_height": 64}])
def test_jbig_data_that_ask_for_their_strip(read, told):
    rectangle = np.full((64, 64), 255, np.uint8)
    rectangle[16:40, 16:40] = 0
    for file in (in_one_strip(jbig(**told), 34661, _266=2), in_one_strip(reversed_bits(jbig(**told)), 34661)):
        assert np.array_equal(read(file), rectangle)


def in_one_tile(width, height, bits=8, samples=1, kind=1):
    data = repeated(b"\0", 65)
    tags = {256: 64, 257: 64, 258: [bits] * samples, 259: 8, 262: 2 if samples == 3 else 1, 277: samples}
    return tiff({**tags, 322: width, 323: height, 324: 8, 325: len(data), 339: [kind] * samples}, data)


@pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more memory than is allowed here")
def test_tiles_that_reach_far_beyond_the_picture(refused, read):
    refused(in_one_tile(12800, 12800, 64, 3, 3), "12800 x 12800 in 192 bits a pixel take more than 500 megabytes (--most-megabytes allows more)")
    refused(in_one_tile(17312, 17312), "this kind of TIFF is not read: tiles far larger than the picture")
    refused(in_one_tile(8192, 8208), "this kind of TIFF is not read: tiles far larger than the picture")
    for side, bits, samples, kind in ((8192, 8, 1, 1), (4096, 8, 3, 1), (1024, 64, 3, 3)):
        assert np.array_equal(np.unique(read(in_one_tile(side, side, bits, samples, kind))), [0])


def shared(packed, compression, count, width, rows, bits=8):
    """So many strips of the same bytes."""
    tags = {256: width, 257: count * rows, 258: bits, 259: compression, 262: 1, 278: rows}
    return tiff({**tags, 273: count * [8], 279: count * [len(packed)]}, packed)


# What becomes one byte of 0x55, behind much that becomes nothing.
ONE_PIXEL = {
    "blocks": (8, b"\x78\x9c" + 60000 * b"\0\0\0\xff\xff" + b"\1\1\0\xfe\xff\x55\0\x56\0\x56"),
    "runs": (32773, 300000 * b"\x80" + b"\0\x55"),
    "clear codes": (5, int("100000000" * 240000 + "001010101" + "100000001" + "000000", 2).to_bytes(270003, "big")),
}


@pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more memory than is allowed here")
@pytest.mark.parametrize("kind", ONE_PIXEL)
def test_strips_that_share_much_that_becomes_nothing(refused, read, kind):
    compression, packed = ONE_PIXEL[kind]
    refused(shared(packed, compression, 30000, 1, 1), DAMAGED)
    assert (read(shared(packed, compression, 1, 1, 1), 1, 1) == 0x55).all()


def test_strips_that_share_their_bytes(read):
    """White ones, and pixels that take more packed than they are."""
    white = zlib.compress(bytes([255]) * 2480 * 8)
    assert (read(shared(white, 8, 400, 2480, 8), 2480, 3200) == 255).all()
    pixel = zlib.compress(b"\x55", 0) + bytes(1000)
    assert (read(shared(pixel, 8, 5000, 1, 1), 1, 5000) == 0x55).all()
    noise = np.random.default_rng(1).integers(0, 256, (8, 640), np.uint8)
    assert np.array_equal(read(shared(zlib.compress(noise.tobytes()), 8, 30, 640, 8), 640, 240), np.tile(noise, (30, 1)))


def levels_of_4_bits(levels, rows):
    """Gray levels, in strips of so many rows."""
    height, width = levels.shape
    packed = (levels[:, ::2] << 4 | levels[:, 1::2]).astype(np.uint8)
    strips = [zlib.compress(packed[top : top + rows].tobytes()) for top in range(0, height, rows)]
    starts = np.cumsum([8, *map(len, strips)]).tolist()
    tags = {256: width, 257: height, 258: 4, 259: 8, 262: 1, 278: rows, 273: starts[:-1], 279: list(map(len, strips))}
    return tiff(tags, b"".join(strips))


@pytest.mark.parametrize("rows", [7, 700, 2000])
def test_levels_of_4_bits_are_read_some_rows_at_a_time(read, rows):
    levels = np.random.default_rng(2).integers(0, 16, (2000, 1200), np.uint8)
    assert np.array_equal(read(levels_of_4_bits(levels, rows), 1200, 2000), levels * 17)


@pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more memory than is allowed here")
def test_levels_of_4_bits_take_little_more_memory_than_the_picture(tmp_path):
    (tmp_path / "in.tif").write_bytes(levels_of_4_bits(np.zeros((4000, 8000), np.uint8), 500))
    assert Cost("crop", tmp_path / "in.tif", "--rect", "0,0,9,9", "-o", tmp_path / "out.png").code == 0


def test_levels_of_4_bits_may_take_too_much_memory(tool, tmp_path):
    arguments = ("crop", "--rect", "0,0,9,9", "-o", "-", tmp_path / "in.tif", "--most-megabytes")
    for rows, least, bits in ((10, 2, 8), (1000, 5, 32)):
        (tmp_path / "in.tif").write_bytes(levels_of_4_bits(np.zeros((1000, 1200), np.uint8), rows))
        tool(*arguments, least - 1).fails_with(f"1200 x 1000 in {bits} bits a pixel take more than {least - 1} megabytes")
        tool(*arguments, least, ok=True)
