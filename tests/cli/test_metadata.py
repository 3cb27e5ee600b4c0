"""What is kept of a file beside its pixels: what colours mean, how and when the picture was taken, which way is up."""

import io

import numpy as np
import pytest
from PIL import Image, ImageCms, PngImagePlugin

import profiles
import scans

HOLDS_METADATA = ["jpg", "png", "tif", "webp"]
WIDTH, HEIGHT = 60, 40


def picture():
    """Smooth colours, different at all corners."""
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH]
    return np.stack([60 + 2 * x, 220 - 3 * y, 40 + 2 * x + y], axis=2).astype(np.uint8)


def seen(path):
    """The colours of a file as a reader sees them that minds profiles: in sRGB."""
    with Image.open(path) as image:
        icc = image.info.get("icc_profile")
        if not icc:
            return np.asarray(image.convert("RGB")).astype(int)
        source = ImageCms.ImageCmsProfile(io.BytesIO(icc))
        mode = image.mode if image.mode in ("L", "CMYK") else "RGB"
        converted = ImageCms.profileToProfile(image.convert(mode), source, ImageCms.createProfile("sRGB"), outputMode="RGB")
        return np.asarray(converted).astype(int)


def whole(tool, path, out, *options):
    tool("crop", path, "--rect", f"0,0,{WIDTH - 1},{HEIGHT - 1}", "-o", out, *options, ok=True)
    return out


def save(image, path, **options):
    """Nearly without loss also where the format has none."""
    lossless = {".jpg": {"quality": 100, "subsampling": 0}, ".webp": {"lossless": True}}
    image.save(path, **lossless.get(path.suffix, {}), **options)
    return path


# Colours.


@pytest.mark.parametrize("source", HOLDS_METADATA)
@pytest.mark.parametrize("target", HOLDS_METADATA + ["bmp", "ppm"])
def test_colours_of_a_wide_profile_look_the_same(tool, tmp_path, source, target):
    path = save(Image.fromarray(picture()), tmp_path / f"in.{source}", icc_profile=profiles.wide_rgb())
    out = whole(tool, path, tmp_path / f"out.{target}")
    wanted = seen(path)
    assert np.abs(wanted - picture().astype(int)).max() > 15  # it does matter
    assert np.abs(seen(out) - wanted).mean() < 2
    with Image.open(out) as image:
        assert (image.info.get("icc_profile") == profiles.wide_rgb()) == (target in HOLDS_METADATA)


@pytest.mark.parametrize("command", ["crop", "clip", "cut", "enlarge", "split"])
def test_every_command_keeps_the_profile(tool, drawn, tmp_path, command):
    path = tmp_path / "in.png"
    Image.fromarray(drawn[0]).save(path, icc_profile=profiles.wide_rgb(), dpi=(300, 300))
    (tmp_path / "out").mkdir()
    out = tmp_path / "out" if command == "split" else tmp_path / "out" / "a.png"
    tool(command, path, "-o", out, *(["--rect", "5,5,300,200"] if command == "crop" else []))
    written = list((tmp_path / "out").iterdir())
    assert written or command in ("cut", "split")
    for result in written:
        with Image.open(result) as image:
            assert image.info["icc_profile"] == profiles.wide_rgb()


def test_the_overlay_keeps_the_profile(tool, drawn, tmp_path):
    Image.fromarray(drawn[0]).save(tmp_path / "in.png", icc_profile=profiles.wide_rgb())
    tool("detect", tmp_path / "in.png", "--overlay", tmp_path / "seen.png")
    with Image.open(tmp_path / "seen.png") as image:
        assert image.info["icc_profile"] == profiles.wide_rgb()


@pytest.mark.parametrize("target", HOLDS_METADATA + ["bmp", "pgm"])
def test_gray_levels_of_a_profile_look_the_same(tool, tmp_path, target):
    path = save(Image.fromarray(picture()[:, :, 0]), tmp_path / "in.png", icc_profile=profiles.gray())
    out = whole(tool, path, tmp_path / f"out.{target}")
    assert np.abs(seen(path) - picture()[:, :, :1].astype(int)).max() > 30
    assert np.abs(seen(out) - seen(path)).max() <= 3


def test_gray_levels_drawn_on_in_colour_look_the_same(tool, tmp_path):
    gray = np.full((200, 300), 90, np.uint8)
    path = save(Image.fromarray(gray), tmp_path / "in.png", icc_profile=profiles.gray())
    tool("crop", path, "--rect", "100,80,110,90", "-o", tmp_path / "a.png", "--overlay", tmp_path / "seen.png", ok=True)
    assert np.abs(seen(tmp_path / "seen.png")[0, 0] - seen(path)[0, 0]).max() <= 2


@pytest.mark.parametrize("ending", ["jpg", "tif"])
def test_inks_of_a_profile_become_its_colours(tool, tmp_path, ending):
    inks = Image.fromarray(picture()).convert("CMYK")
    path = tmp_path / f"in.{ending}"
    inks.save(path, icc_profile=profiles.cmyk(), **({"quality": 100, "subsampling": 0} if ending == "jpg" else {}))
    out = whole(tool, path, tmp_path / "out.png")
    plain = np.asarray(Image.open(path).convert("RGB")).astype(int)
    assert np.abs(seen(path) - plain).mean() > 15
    assert np.abs(seen(out) - seen(path)).mean() < 2
    with Image.open(out) as image:
        assert "icc_profile" not in image.info


def test_a_profile_that_is_none_is_dropped(tool, tmp_path):
    path = save(Image.fromarray(picture()), tmp_path / "in.jpg", icc_profile=b"no profile at all" * 20)
    with Image.open(whole(tool, path, tmp_path / "out.png")) as image:
        assert "icc_profile" not in image.info


# Which way is up.


@pytest.mark.parametrize("source", ["jpg", "png", "webp", "tif"])
@pytest.mark.parametrize("orientation", range(1, 9))
def test_the_picture_is_brought_upright(tool, tmp_path, source, orientation):
    upright = Image.fromarray(picture())
    stored = upright
    # What transposes the picture back is done to it first.
    undo = {2: [0], 3: [3], 4: [1], 5: [5], 6: [2], 7: [6], 8: [4]}
    for step in undo.get(orientation, []):
        stored = stored.transpose(step)
    exif = Image.Exif()
    exif[0x0112] = orientation
    path = save(stored, tmp_path / f"in.{source}", **({"tiffinfo": {274: orientation}} if source == "tif" else {"exif": exif}))
    out = whole(tool, path, tmp_path / "out.jpg", "--quality", 100)
    with Image.open(out) as image:
        assert image.size == (WIDTH, HEIGHT)
        assert image.getexif().get(0x0112, 1) == 1
        assert np.abs(np.asarray(image).astype(int) - picture()).mean() < 4


# Camera, date, XMP.

XMP = b'<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">' \
    b'<rdf:Description xmlns:dc="http://purl.org/dc/elements/1.1/" xmlns:tiff="http://ns.adobe.com/tiff/1.0/" ' \
    b'tiff:Orientation="6"><dc:source>a drawer</dc:source></rdf:Description></rdf:RDF></x:xmpmeta>'


def shot(path):
    """A picture with what a camera says."""
    exif = Image.Exif()
    exif[0x010F], exif[0x0110], exif[0x0132] = "Maker", "Model 7", "2024:05:06 07:08:09"
    exif[0x0112] = 1
    exif[0x8769] = {0x9003: "2024:05:06 07:08:09", 0x829A: 0.01, 0xA002: WIDTH, 0xA003: HEIGHT}
    options = {"exif": exif.tobytes()}
    if path.suffix == ".tif":
        options = {"tiffinfo": {271: "Maker", 272: "Model 7", 306: "2024:05:06 07:08:09", 700: XMP}}
    elif path.suffix == ".webp":
        options["xmp"] = XMP
    return save(Image.fromarray(picture()), path, **options)


@pytest.mark.parametrize("source", HOLDS_METADATA)
@pytest.mark.parametrize("target", HOLDS_METADATA)
def test_camera_and_date_are_kept(tool, tmp_path, source, target):
    path = shot(tmp_path / f"in.{source}")
    out = tmp_path / f"out.{target}"
    tool("crop", path, "--rect", "0,0,29,19", "-o", out, "--dpi", 240, ok=True)
    with Image.open(out) as image:
        assert image.size == (30, 20)
        exif = image.getexif()
        assert [str(exif[tag]).rstrip("\0") for tag in (0x010F, 0x0110, 0x0132)] == ["Maker", "Model 7", "2024:05:06 07:08:09"]
        assert float(exif[0x011A]) == 240
        if source != "tif":
            details = exif.get_ifd(0x8769)
            assert details[0x9003] == "2024:05:06 07:08:09" and float(details[0x829A]) == 0.01
            assert (details[0xA002], details[0xA003]) == (30, 20)
        assert np.asarray(image.convert("RGB")).shape == (20, 30, 3)


@pytest.mark.parametrize("source", ["webp", "tif"])
@pytest.mark.parametrize("target", HOLDS_METADATA)
def test_xmp_is_kept(tool, tmp_path, source, target):
    file = whole(tool, shot(tmp_path / f"in.{source}"), tmp_path / f"out.{target}").read_bytes()
    assert file.count(b"a drawer") == 1
    assert b'Orientation="6"' not in file and b"Orientation>6" not in file


@pytest.mark.parametrize("behind", [False, True])
def test_xmp_of_a_png_file_is_kept_among_texts(tool, tmp_path, behind):
    """Plain texts do not count; of those of its own kind a file may have some before it. They may stand behind the pixels."""
    for others, kept in ((19, 1), (20, 0)):
        texts = PngImagePlugin.PngInfo()
        for i in range(1000):
            texts.add_text(f"plain {i}", "a text", zip=i % 2 == 0)
        for i in range(others):
            texts.add_itxt(f"other {i}", "a text", zip=True)
        texts.add_itxt("XML:com.adobe.xmp", XMP.decode(), zip=True)
        path = save(Image.fromarray(picture()), tmp_path / f"in-{others}.png", pnginfo=texts)
        if behind:
            path.write_bytes(pixels_before_texts(path.read_bytes()))
        file = whole(tool, path, tmp_path / f"out-{others}.png").read_bytes()
        assert file.count(b"a drawer") == kept and b"a text" not in file


def pixels_before_texts(png):
    texts, pixels, end = (png.index(kind) - 4 for kind in (b"zTXt", b"IDAT", b"IEND"))
    return png[:texts] + png[pixels:end] + png[texts:pixels] + png[end:]


def test_formats_without_metadata_have_none(tool, tmp_path):
    for ending in ("bmp", "ppm"):
        assert b"Maker" not in whole(tool, shot(tmp_path / "in.jpg"), tmp_path / f"out.{ending}").read_bytes()


def test_the_thumbnail_of_another_picture_goes(tool, tmp_path):
    # Some bytes of a picture in a second directory, as cameras add them.
    thumbnail = io.BytesIO()
    Image.fromarray(picture()).resize((16, 12)).save(thumbnail, "JPEG")
    exif = Image.Exif()
    exif[0x010F] = "Maker"
    data = bytearray(exif.tobytes()[6:])
    at = int.from_bytes(data[4:8], "big" if data[:2] == b"MM" else "little")
    order = "big" if data[:2] == b"MM" else "little"
    count = int.from_bytes(data[at : at + 2], order)
    data[at + 2 + 12 * count : at + 6 + 12 * count] = len(data).to_bytes(4, order)
    entries = [(0x0103, 3, 6), (0x0201, 4, len(data) + 2 + 36 + 4), (0x0202, 4, len(thumbnail.getvalue()))]
    data += len(entries).to_bytes(2, order)
    for tag, kind, value in entries:
        size = 2 if kind == 3 else 4
        data += tag.to_bytes(2, order) + kind.to_bytes(2, order) + (1).to_bytes(4, order)
        data += value.to_bytes(size, order) + bytes(4 - size)
    data += bytes(4) + thumbnail.getvalue()
    path = save(Image.fromarray(picture()), tmp_path / "in.jpg", exif=b"Exif\0\0" + bytes(data))
    assert path.read_bytes().count(b"\xff\xd8\xff") == 2
    file = whole(tool, path, tmp_path / "out.jpg").read_bytes()
    assert file.count(b"\xff\xd8\xff") == 1 and b"Maker" in file


def test_damaged_exif_data_do_no_harm(tool, tmp_path):
    path = save(Image.fromarray(picture()), tmp_path / "in.jpg", exif=b"Exif\0\0II*\0\xff\xff\xff\xff" + b"\x80" * 50)
    whole(tool, path, tmp_path / "out.jpg")
    assert np.abs(scans.load(tmp_path / "out.jpg").astype(int) - picture()).mean() < 4


# Resolution.


def test_the_resolution_may_stand_in_exif_data(tool, tmp_path):
    for dpi, wanted in ((300, 300), (72, 0)):  # 72 stands for none
        exif = Image.Exif()
        exif[0x011A], exif[0x011B], exif[0x0128] = float(dpi), float(dpi), 2
        path = save(Image.fromarray(picture()), tmp_path / "in.webp", exif=exif)
        result = tool("crop", path, "--rect", "0,0,9,9", "-o", tmp_path / f"{dpi}.png", "--json", ok=True)
        assert result.json[0]["scan"]["dpi"] == [wanted, wanted]
