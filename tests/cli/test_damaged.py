"""Files that are truncated, damaged or no images at all."""

import numpy as np
import pytest
from PIL import Image, ImageDraw


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
    assert all(report["outcome"] in ("done", "nothing-found") for report in reports), reports


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
