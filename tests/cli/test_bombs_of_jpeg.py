"""JPEG files of far more segments than the picture needs: it is read without them, at once."""

import io
import struct

import numpy as np
import pytest
from PIL import Image

import profiles
import scans
from cost import SANITIZED, looked_at

PIECE = b"ICC_PROFILE\0"
MANY = 230000


def segment(marker, data=b""):
    return struct.pack(">BBH", 0xFF, marker, 2 + len(data)) + data


def picture(**options):
    buffer = io.BytesIO()
    Image.new("RGB", (64, 64), (90, 120, 200)).save(buffer, "JPEG", **options)
    return buffer.getvalue()


def with_segments(segments, **options):
    file = picture(**options)
    return file[:2] + segments + file[2:]


def pieces(profile, count):
    size = -(-len(profile) // count)
    return [segment(0xE2, PIECE + bytes((i + 1, count)) + profile[i * size : (i + 1) * size]) for i in range(count)]


def profile_kept(tool, folder, segments):
    (folder / "in.jpg").write_bytes(with_segments(segments))
    tool("crop", "--rect", "0,0,9,9", "--force", "-o", folder / "out.png", folder / "in.jpg", ok=True)
    with Image.open(folder / "out.png") as image:
        return image.info.get("icc_profile")


@pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more time than is allowed here")
@pytest.mark.parametrize("segments", [MANY * segment(0xE1), 50000 * segment(0xE2, PIECE + b"\1\1")], ids=["APP1", "APP2"])
def test_many_segments_are_passed_over(tmp_path, segments):
    passes = picture(progressive=True)
    second_pass = passes.index(b"\xff\xc4", passes.index(b"\xff\xda"))
    for name, file in (("before", with_segments(segments)), ("between", passes[:second_pass] + segments + passes[second_pass:])):
        (tmp_path / f"{name}.jpg").write_bytes(file)
        assert "blank" in looked_at(tmp_path / f"{name}.jpg").said


def test_metadata_are_found_behind_many_segments(tool, tmp_path):
    exif = Image.Exif()
    exif[0x010F] = "Maker"
    profile = profiles.wide_rgb()
    file = with_segments(MANY * segment(0xE1), exif=exif.tobytes(), icc_profile=profile)
    (tmp_path / "in.jpg").write_bytes(file)
    tool("crop", "--rect", "0,0,9,9", "-o", tmp_path / "out.jpg", tmp_path / "in.jpg", ok=True)
    with Image.open(tmp_path / "out.jpg") as image:
        assert (image.size, image.getexif()[0x010F], image.info["icc_profile"]) == ((10, 10), "Maker", profile)


@pytest.mark.parametrize("count", [1, 2, 7, 255])
def test_a_profile_comes_in_pieces_of_any_order(tool, tmp_path, count):
    profile = profiles.wide_rgb()
    parts = pieces(profile, count)
    for order in (parts, parts[::-1], parts[count // 2 :] + [segment(0xE2, b"MPF\0"), segment(0xE2)] + parts[: count // 2]):
        assert profile_kept(tool, tmp_path, b"".join(order)) == profile


def test_a_profile_whose_pieces_do_not_fit_is_none(tool, tmp_path):
    parts = pieces(profiles.wide_rgb(), 3)
    unfit = {
        "a piece is missing": parts[:2],
        "a piece comes twice": [*parts, parts[0]],
        "another count": [*parts[:2], pieces(profiles.wide_rgb(), 4)[2]],
        "numbered from 0": [segment(0xE2, PIECE + b"\0\3"), *parts],
        "a number beyond": [*parts, segment(0xE2, PIECE + b"\4\3")],
        "none": [segment(0xE2, PIECE + b"\1\0")],
    }
    for why, segments in unfit.items():
        assert profile_kept(tool, tmp_path, b"".join(segments)) is None, why


def test_a_segment_may_reach_beyond_the_end(tool, tmp_path):
    for marker in (0xE1, 0xE2):
        (tmp_path / "in.jpg").write_bytes(b"\xff\xd8" + segment(marker, bytes(100))[:-1])
        tool("crop", "--rect", "0,0,9,9", "-o", "-", tmp_path / "in.jpg").fails_with("the JPEG data is truncated or damaged")
        (tmp_path / "in.jpg").write_bytes(b"\xff\xd8\xff" + bytes((marker, 0)))
        tool("crop", "--rect", "0,0,9,9", "-o", "-", tmp_path / "in.jpg").fails_with("the JPEG data is truncated or damaged")


def test_a_picture_in_passes_takes_its_coefficients_too(tool, tmp_path):
    """Two bytes each; of the colours there are half as many, as the file keeps a quarter of each."""
    noise = np.random.default_rng(1).integers(0, 256, (1000, 1000, 3), np.uint8)
    arguments = ("crop", "--rect", "0,0,9,9", "-o", "-", tmp_path / "in.jpg", "--most-megabytes")
    scans.save(noise // 16 + 100, tmp_path / "in.jpg", progressive=True, subsampling=2)
    tool(*arguments, 5).fails_with("1000 x 1000 in 48 bits a pixel take more than 5 megabytes")
    tool(*arguments, 7, ok=True)
    scans.save(noise // 16 + 100, tmp_path / "in.jpg", subsampling=2)
    tool(*arguments, 3, ok=True)


def file_of_passes(count):
    """Gray blocks of no differences and no waves, which are told of as often as that."""
    table = bytes((1, *bytes(15), 0))  # one code, a zero bit, for a block that is at its end
    file = b"\xff\xd8" + segment(0xDB, b"\0" + b"\1" * 64) + segment(0xC2, struct.pack(">BHHB3B", 8, 64, 64, 1, 1, 0x11, 0))
    file += segment(0xC4, b"\x00" + table) + segment(0xC4, b"\x10" + table)
    file += segment(0xDA, bytes((1, 1, 0, 0, 0, 0))) + bytes(8)
    return file + (segment(0xDA, bytes((1, 1, 0, 1, 63, 0))) + bytes(8)) * count + b"\xff\xd9"


def test_a_coefficient_comes_once_and_then_by_a_bit_at_a_time(tool, tmp_path):
    """It may have 13 of these; what repeats it instead costs the same and adds nothing."""
    arguments = ("crop", "--rect", "0,0,9,9", "-o", tmp_path / "out.png", tmp_path / "in.jpg")
    (tmp_path / "in.jpg").write_bytes(file_of_passes(15))
    tool(*arguments).fails_with("the JPEG data is truncated or damaged")
    (tmp_path / "in.jpg").write_bytes(file_of_passes(14))
    tool(*arguments, ok=True)
    assert (scans.load(tmp_path / "out.png") == 128).all()
