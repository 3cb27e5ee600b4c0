"""Files that are truncated, damaged or no images at all."""

import io
import os
import struct
import subprocess
import zlib

import numpy as np
import pytest
from PIL import Image, ImageDraw

import scans
from conftest import TOOL

SANITIZED = bool(os.environ.get("VANTREL_PRELOAD"))


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
        ("deflate-colour.tif", colour, {"compression": "tiff_adobe_deflate"}),
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
    truncated = {}
    for path in encodings(whole):
        data = path.read_bytes()
        for keep in {len(data) - 1, len(data) * 9 // 10, len(data) // 2, len(data) // 10, 20}:
            name = f"{path.stem}-{path.suffix[1:]}-{keep}{path.suffix}"
            (cut / name).write_bytes(data[:keep])
            truncated[cut / name] = path
    result = tool("clip", *truncated, "-o", out, "--format", "ppm", "--keep-unclipped", "--json")
    assert result.code == 1
    failed = [report for report in result.json if report["outcome"] == "failed"]
    for report in failed:
        assert "truncated or damaged" in report["error"] or "not an image" in report["error"], report
    # Some TIFF files end with a byte that carries nothing.
    for report in result.json:
        if report["outcome"] != "failed":
            assert report["file"].endswith(f"-{truncated_size(truncated, report['file']) - 1}.tif"), report
    assert len(failed) >= len(truncated) - 4
    assert len(result.err.splitlines()) == len(failed) + 1
    assert len(list(out.iterdir())) == len(truncated) - len(failed)


def truncated_size(truncated, cut):
    """The size of the whole file that was cut."""
    return next(whole.stat().st_size for path, whole in truncated.items() if str(path) == cut)


def test_whole_files_are_not_taken_for_truncated(tool, tmp_path):
    whole = list(encodings(tmp_path))
    reports = tool("clip", *whole, "--detect-only", "--json").json
    assert len(reports) == len(whole)
    assert all(report["outcome"] in ("done", "likely", "doubtful", "nothing-found") for report in reports), reports


@pytest.mark.parametrize("name", ["colour.png", "gray.png", "mono.png", "deflate.tif", "deflate-colour.tif"])
def test_damaged_content_is_refused(tool, tmp_path, name):
    """Of the formats with checksums: any bytes are some picture to the others."""
    for path in encodings(tmp_path):
        if path.name == name:
            data = bytearray(path.read_bytes())
            for i in range(len(data) // 3, len(data) // 3 + 400):
                data[i] ^= 0x5A
            path.write_bytes(data)
            tool("clip", path, "--detect-only").fails_with(path, "truncated or damaged")
            return
    raise AssertionError(name)


def test_damaged_content_does_no_harm(tool, tmp_path):
    random = np.random.default_rng(5)
    for path in encodings(tmp_path):
        data = bytearray(path.read_bytes())
        for i in random.integers(0, len(data), 12):
            data[i] = random.integers(0, 256)
        path.write_bytes(data)
    files = sorted(p for p in tmp_path.iterdir() if p.is_file())
    reports = tool("clip", *files, "--detect-only", "--json").json
    assert len(reports) == len(files)


@pytest.mark.parametrize(
    "content, reason",
    [
        (b"", "empty"),
        (b"x", "not an image"),
        (b"This is a letter, not a picture.\n" * 20, "not an image"),
        (b"%PDF-1.4\n" + b"0" * 400, "PDF"),
        (b"GIF89a" + b"\0" * 100, "GIF"),
        (b"\0\0\0\x0cjP  \r\n\x87\n" + b"\0" * 100, "JPEG 2000"),
        (b"\0\0\0\x18ftypheic" + b"\0" * 100, "HEIC"),
        (b"\x89PNG\r\n\x1a\n", "truncated or damaged"),
        (b"BM" + b"\0" * 30, "truncated or damaged"),
        (b"BM and some text that only begins like a picture" * 9, "truncated or damaged"),
        (b"\xff\xd8\xff\xe0" + b"\0" * 60, "truncated or damaged"),
        (b"II*\0\x08\0\0\0" + b"\0" * 40, "truncated or damaged"),
        (b"P6 100000 100000 255\n" + b"\0" * 100, "more than 300 megapixels"),
        (b"P6 1000 1000 255\n" + b"\0" * 100, "truncated or damaged"),
        (b"RIFF\xff\xff\xff\x7fWEBPVP8 " + b"\0" * 60, "truncated or damaged"),
    ],
)
def test_what_is_no_image(tool, tmp_path, content, reason):
    (tmp_path / "in.png").write_bytes(content)
    tool("clip", tmp_path / "in.png", "-o", tmp_path / "out.png").fails_with(tmp_path / "in.png", reason)
    assert not (tmp_path / "out.png").exists()


def tiny_files_of_huge_pictures():
    """Headers that announce 400 to 900 megapixels, with next to nothing behind them."""
    nothing = b"\0" * 1000
    for name, header in [
        ("raw.pgm", b"P5 30000 30000 255\n"),
        ("deep.pgm", b"P5 20000 20000 65535\n"),
        ("raw.ppm", b"P6 20000 20000 255\n"),
        ("bits.pbm", b"P4 30000 30000\n"),
        ("text.pgm", b"P2 20000 20000 255\n"),
        ("text.ppm", b"P3 20000 20000 255\n"),
        ("text.pbm", b"P1 20000 20000\n"),
        ("any.pnm", b"P7\nWIDTH 20000\nHEIGHT 20000\nDEPTH 1\nMAXVAL 255\nTUPLTYPE GRAYSCALE\nENDHDR\n"),
    ]:
        yield name, header + nothing

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    head = struct.pack(">IIBBBBB", 30000, 30000, 8, 0, 0, 0, 0)
    data = zlib.compress(bytes(1000000))
    yield "huge.png", b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", data) + chunk(b"IEND", b"")
    for name, compression, tiled in [("strip.tif", 8, False), ("tile.tif", 8, True)]:
        side = 64 if tiled else 30000
        tags = [(256, side), (257, side), (258, 8), (259, compression), (262, 1), (277, 1)]
        pieces = [(322, 30000), (323, 30000), (324, 8), (325, len(data))]
        tags += pieces if tiled else [(273, 8), (278, side), (279, len(data))]
        entries = b"".join(struct.pack("<HHII", tag, 4, 1, value) for tag, value in sorted(tags))
        directory = struct.pack("<H", len(tags)) + entries + struct.pack("<I", 0)
        yield name, b"II*\0" + struct.pack("<I", 8 + len(data)) + data + directory
    for format, name in [("JPEG", "huge.jpg"), ("WEBP", "huge.webp")]:
        buffer = io.BytesIO()
        Image.new("RGB", (64, 64)).save(buffer, format, **({"lossless": True} if format == "WEBP" else {}))
        file = bytearray(buffer.getvalue())
        if format == "JPEG":
            at = file.index(b"\xff\xc0") + 5
            file[at : at + 4] = struct.pack(">HH", 60000, 60000)
            yield name, bytes(file)


@pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more address space than there is")
@pytest.mark.parametrize("megapixels", [300, 2000])
def test_huge_pictures_in_tiny_files_are_refused_at_once(tmp_path, megapixels):
    """Within 300 MB of address space, of which the tool and its threads take most."""
    for name, content in tiny_files_of_huge_pictures():
        if megapixels == 2000 and name.split(".")[0] not in ("raw", "deep", "bits", "text", "any"):
            continue  # of the others only decoding tells that there is not so much
        path = tmp_path / name
        path.write_bytes(content)
        command = f"ulimit -v 300000; exec '{TOOL}' clip '{path}' --detect-only -j 1 --most-megapixels {megapixels}"
        command += " --most-megabytes 10000" if megapixels == 2000 else ""
        process = subprocess.run(["sh", "-c", command], capture_output=True, text=True)
        assert process.returncode == 1, (name, process.stderr)
        assert "truncated or damaged" in process.stderr or "megapixels" in process.stderr, (name, process.stderr)


def test_the_most_megapixels_can_be_raised(tool, tmp_path):
    scans.save(scans.blank_scan(1500, 1000), tmp_path / "in.png")
    tool("crop", tmp_path / "in.png", "--rect", "0,0,9,9", "-o", tmp_path / "a.png", "--most-megapixels", 2, ok=True)
    refused = tool("crop", tmp_path / "in.png", "--rect", "0,0,9,9", "-o", tmp_path / "b.png", "--most-megapixels", 1)
    refused.fails_with("1500 x 1000", "more than 1 megapixels", "--most-megapixels")


def test_codec_messages_stay_out_of_standard_error(tool, drawn, tmp_path):
    # A colour profile that libpng warns about, on a file that is otherwise fine.
    Image.fromarray(drawn[0]).save(tmp_path / "in.png", icc_profile=b"\0\0\0\x10not a profile at all" * 4)
    result = tool("clip", tmp_path / "in.png", "-o", tmp_path / "out.png", ok=True)
    assert result.err == ""
