"""What files of HEIC may say of how a picture is put together, turned and cut; what they may not is in read_bombs."""

import numpy as np
import pytest
from PIL import Image

import profiles
import scans
from cost import SANITIZED
from heic_files import HALF_SEEN, coarse, grid, heic, in_two_pieces, layers
from read_bombs import TIME


@pytest.fixture
def read(tool, tmp_path):
    """The pixels of a file, 64 x 48."""

    def read(content, *options):
        (tmp_path / "in.heic").write_bytes(content)
        out = tmp_path / "out.png"
        result = tool("crop", tmp_path / "in.heic", "--rect", "0,0,63,47", "-o", out, "--force", *options)
        if "is not read by this build" in result.err:
            pytest.skip(result.err)
        assert result.code == 0, result.err
        return scans.load(out)

    return read


def test_a_tile_may_be_turned_mirrored_and_cut_once_each(read):
    plain = read(heic())
    for turns in ([b"irot"], [b"imir"], [b"clap"], [b"irot", b"clap", b"imir"]):
        pixels = read(heic(turns=turns))
        assert pixels.shape == plain.shape
        assert np.array_equal(pixels, plain) == (turns == [b"clap"]), turns


def test_layers_may_cover_each_other(read):
    """The same one over itself, as often as is allowed."""
    assert np.array_equal(read(heic(kind=b"iovl", grid=layers(256), outside=True, parts=256)), read(heic()))


def test_the_data_of_a_tile_may_stand_in_pieces(read):
    assert np.array_equal(read(in_two_pieces(heic())), read(heic()))


def test_what_is_not_seen_is_white_and_the_profile_is_kept(read, tmp_path):
    pixels = read(HALF_SEEN).astype(int)
    for (y, x), colour in {(10, 10): (200, 80, 40), (10, 50): (40, 80, 200), (40, 10): (255, 255, 255), (40, 50): (255, 255, 255)}.items():
        assert np.abs(pixels[y, x] - colour).max() <= 4
    with Image.open(tmp_path / "out.png") as image:
        assert image.info["icc_profile"] == profiles.wide_rgb()


@pytest.mark.skipif(SANITIZED, reason="a sanitizer starts the threads itself")
def test_the_time_of_the_decoders_threads_counts(read, tool, tmp_path):
    read(coarse(1, 1))
    (tmp_path / "in.heic").write_bytes(coarse(8, 12))
    result = tool("crop", "--rect", "0,0,9,9", "-o", tmp_path / "out.png", "--force", tmp_path / "in.heic", "--most-seconds", 1)
    assert result.code == 1 and result.err.endswith("takes more than 1.0" + TIME + "\n"), result.err
