"""JPEG 2000 files that tell of far more packets than they have, or of far more places to look for them."""

import io
import struct

import numpy as np
import pytest
from PIL import Image

import scans
from cost import SANITIZED, looked_at

DAMAGED = "the JPEG 2000 data is truncated or damaged"
RLCP, RPCL = 1, 2
MOST_LAYERS = 65535


def marker(number, data=b""):
    return struct.pack(">HH", number, 2 + len(data)) + data


def style(layers=1, levels=1, order=RLCP, precincts=b""):
    """How all samples are coded."""
    return marker(0xFF52, bytes((len(precincts) > 0, order)) + struct.pack(">HBBBBBB", layers, 0, levels, 4, 4, 0, 1) + precincts)


def style_of_sample(levels):
    return marker(0xFF53, bytes((1, 0, levels, 4, 4, 0, 1)))


def orders(count, order):
    """The same packets over and over."""
    return marker(0xFF5F, struct.pack(">BBHBBB", 0, 0, 1, 2, 4, order) * count)


def packets(head, size=64, tiles=1, samples=4, part=b""):
    """Square tiles in a square, coded as the head says, or what stands before the data of each tile; these end early."""
    side = size * tiles
    sizes = struct.pack(">HIIIIIIIIH", 0, side, side, 0, 0, size, size, 0, 0, samples) + b"\7\1\1" * samples
    stream = b"\xff\x4f" + marker(0xFF51, sizes) + head + marker(0xFF5C, b"\x40" + b"\x48" * 97)
    data = part + b"\xff\x93" + bytes(16)
    for tile in range(tiles * tiles):
        stream += marker(0xFF90, struct.pack(">HIBB", tile, 12 + len(data), 0, 1)) + data
    boxes = {
        b"jP  ": b"\r\n\x87\n",
        b"ftyp": b"jp2 \0\0\0\0jp2 ",
        b"jp2h": struct.pack(">I4sIIHBBBB", 22, b"ihdr", side, side, samples, 7, 7, 0, 0) + struct.pack(">I4s3BI", 15, b"colr", 1, 0, 0, 16),
        b"jp2c": stream + b"\xff\xd9",
    }
    return b"".join(struct.pack(">I", 8 + len(content)) + name + content for name, content in boxes.items())


BOMBS = {
    "layers": packets(style(MOST_LAYERS, 32)),
    "layers of tiles": packets(style(MOST_LAYERS), tiles=10),
    "layers of a tile": packets(style(), part=style(MOST_LAYERS, 32)),
    "forms of a sample": packets(style(MOST_LAYERS) + style_of_sample(32)),
    "precincts": packets(style(MOST_LAYERS, 0, precincts=b"\x33")),
    "behind an unknown marker": packets(style() + struct.pack(">HH", 0xFF6F, 16) + style(MOST_LAYERS, 32)),
    "flat and upright precincts": packets(style(order=RPCL, precincts=b"\xf0\x1f"), size=5000, samples=1),
    "in many orders": packets(style(order=RPCL, precincts=b"\xf0\x1f") + orders(31, RPCL), size=1000, samples=1),
}


@pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more memory than is allowed here")
@pytest.mark.parametrize("name", BOMBS)
def test_packets_that_cannot_be_there_are_refused_at_once(tmp_path, name):
    assert len(BOMBS[name]) < 6000
    (tmp_path / "in.jp2").write_bytes(BOMBS[name])
    said = looked_at(tmp_path / "in.jp2").said
    assert said.endswith(DAMAGED + "\n") or "is not read by this build" in said, said


def read(tool, folder, file):
    (folder / "in.jp2").write_bytes(file)
    result = tool("crop", "--rect", "0,0,63,63", "--force", "-o", folder / "out.png", folder / "in.jp2")
    if "is not read by this build" in result.err:
        pytest.skip(result.err)
    return result


def test_some_millions_are_gone_through(tool, tmp_path):
    """Seven forms of four samples are 1834980 packets and some places, eight are 2097120; the file has few bytes."""
    assert read(tool, tmp_path, packets(style(MOST_LAYERS, 6))).code == 0
    read(tool, tmp_path, packets(style(MOST_LAYERS, 7))).fails_with(DAMAGED)


@pytest.mark.parametrize("order", ["LRCP", "RLCP", "RPCL", "PCRL", "CPRL"])
def test_a_file_of_many_packets_is_read(tool, tmp_path, order):
    pixels = np.random.default_rng(1).integers(0, 256, (128, 128, 3), np.uint8)
    options = {"progression": order, "precinct_size": (32, 32), "codeblock_size": (16, 16), "tile_size": (64, 64), "num_resolutions": 5}
    buffer = io.BytesIO()
    Image.fromarray(pixels).save(buffer, "JPEG2000", quality_mode="rates", quality_layers=[*range(40, 0, -4), 1], **options)
    assert read(tool, tmp_path, buffer.getvalue()).code == 0
    assert np.array_equal(scans.load(tmp_path / "out.png"), pixels[:64, :64])


def test_what_stands_behind_the_code_stream_tells_nothing(tool, tmp_path):
    buffer = io.BytesIO()
    pixels = np.random.default_rng(1).integers(0, 256, (64, 64, 3), np.uint8)
    Image.fromarray(pixels).save(buffer, "JPEG2000")
    box = struct.pack(">I", 8 + 300) + b"free" + (2 * style(MOST_LAYERS, 32)).ljust(300)
    assert read(tool, tmp_path, buffer.getvalue() + box).code == 0
    assert np.array_equal(scans.load(tmp_path / "out.png"), pixels)
