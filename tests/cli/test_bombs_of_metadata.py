"""Small files whose metadata become far more than they are: they are left out, at once, and the picture stays."""

import io
import struct
import zlib

import pytest
from PIL import Image

import profiles
from cost import SANITIZED, Cost
from test_bombs import chunk

pytestmark = pytest.mark.skipif(SANITIZED, reason="a sanitizer takes more memory than is allowed here")

LONG, ASCII, SHORT, UNDEFINED = 4, 2, 3, 7
EXIF, GPS, SUB_IMAGES, MAKER_NOTE, XMP = 0x8769, 0x8825, 0x014A, 0x927C, 0x02BC
MAKE, DESCRIPTION, ORIENTATION, COMMENT = 0x010F, 0x010E, 0x0112, 0x9C9B


def crop(path, out):
    """At once; the size of what was written, and its EXIF data."""
    assert Cost("crop", "--rect", "0,0,29,19", path, "-o", out).code == 0
    with Image.open(out) as image:
        assert image.size == (30, 20)
        exif = image.getexif()
        exif.get_ifd(EXIF)  # is read now
        return exif


def entry(order, tag, kind, count, value):
    """The value itself, or where it is."""
    return struct.pack(order + "HHI", tag, kind, count) + (value if isinstance(value, bytes) else struct.pack(order + "I", value))


def directory(order, entries, following=0):
    return struct.pack(order + "H", len(entries)) + b"".join(entry(order, *each) for each in entries) + struct.pack(order + "I", following)


def block(order, build):
    """EXIF data of directories, and what lies behind them: `build(place)` makes both, where place() is behind all directories."""
    head = (b"II*\0" if order == "<" else b"MM\0*") + struct.pack(order + "I", 8)
    directories, _ = build(0)
    directories, rest = build(len(head) + len(directories))
    return head + directories + rest


def twelve_directories(order, size, each=250):
    """All that a decoder looks for, each full of tags that name the same bytes."""
    length = len(directory(order, [(0, 0, 0, 0)] * each))
    at = [8 + i * length for i in range(12)]

    def build(place):
        first = [(EXIF, LONG, 1, at[1]), (GPS, LONG, 1, at[2]), (SUB_IMAGES, LONG, 9, place)]
        same = [(COMMENT, SHORT, size // 2, place)] * each
        return directory(order, first + same[len(first):]) + directory(order, same) * 11, struct.pack(order + "9I", *at[3:]) + b"\1" * size

    return block(order, build)


def maker_note(make, head, entries, base=None, rest=b""):
    """A maker's tag, which begins with a head; `entries(place)` has places from the base in it, or from the beginning."""
    name = make.ljust(12, b"\0")
    length = len(head + directory("<", entries(0)))

    def build(place):
        note = head + directory("<", entries(place + len(name) + length if base is None else length - base))
        first = [(MAKE, ASCII, len(make) + 1, place), (EXIF, LONG, 1, 8 + len(directory("<", [(0, 0, 0, 0)] * 2)))]
        return directory("<", first) + directory("<", [(MAKER_NOTE, UNDEFINED, length, place + len(name))]), name + note + rest

    return block("<", build)


def save(path, exif):
    """A picture of 60 x 40 with such data, as they are; its last pixel is black."""
    buffer = io.BytesIO()
    image = Image.new("L", (60, 40), 90)
    image.putpixel((59, 39), 0)
    if path.suffix == ".png":
        image.save(buffer, "PNG")
        file = buffer.getvalue()
        path.write_bytes(file[:33] + chunk(b"eXIf", exif) + file[33:])
    else:
        image.save(path, exif=b"Exif\0\0" + exif if path.suffix == ".jpg" else exif)
    return path


@pytest.mark.parametrize("order", ["<", ">"])
@pytest.mark.parametrize("ending", ["png", "webp", "jpg"])
def test_many_tags_of_the_same_bytes_are_left_out(tmp_path, order, ending):
    size, each = (25000, 160) if ending == "jpg" else (400000, 250)
    path = save(tmp_path / f"in.{ending}", twelve_directories(order, size, each))
    assert not crop(path, tmp_path / "out.png")


def test_many_tags_of_the_same_bytes_of_a_tiff_file_are_left_out(tmp_path):
    size, count = 400000, 250
    tags = [(256, 60), (257, 40), (258, 8), (259, 1), (262, 1), (273, None), (277, 1), (278, 40), (279, 2400), (EXIF, 8)]
    exif = directory("<", [(COMMENT, ASCII, size, 0)] * count)
    place = 8 + len(exif)
    picture = place + len(directory("<", [(0, 0, 0, 0)] * len(tags)))
    exif = directory("<", [(COMMENT, ASCII, size, picture)] * count)
    first = directory("<", [(tag, LONG, 1, picture if value is None else value) for tag, value in tags])
    (tmp_path / "in.tif").write_bytes(b"II*\0" + struct.pack("<I", place) + exif + first + b"\1" * size)
    assert COMMENT not in crop(tmp_path / "in.tif", tmp_path / "out.png").get_ifd(EXIF)


@pytest.mark.parametrize("count, kept", [(5, True), (250, False)])
def test_some_tags_may_name_the_same_bytes(tmp_path, count, kept):
    first = [(DESCRIPTION, ASCII, 4, b"abc\0"), (ORIENTATION, SHORT, 1, b"\0\3\0\0")]
    exif = block(">", lambda place: (directory(">", first + [(0xFDE0 + i, ASCII, 100000, place) for i in range(count)]), b"A" * 100000))
    exif = crop(save(tmp_path / "in.png", exif), tmp_path / "out.png")
    assert dict(exif) == ({DESCRIPTION: "abc", ORIENTATION: 1} if kept else {})
    with Image.open(tmp_path / "out.png") as image:
        assert image.getpixel((0, 0)) == (0 if kept else 90)


@pytest.mark.parametrize("count, kept", [(4000, True), (400000, False)])
def test_arrays_of_makers_become_many_tags(tmp_path, count, kept):
    exif = maker_note(b"Canon", b"", lambda place: [(1, SHORT, count, place)], rest=b"\1\2" * count)
    exif = crop(save(tmp_path / "in.png", exif), tmp_path / "out.png")
    assert (MAKER_NOTE in exif.get_ifd(EXIF)) == kept and (MAKE in exif) == kept


NIKON = b"Nikon\0\2\x10\0\0" + b"II*\0\x08\0\0\0"
HEADS = {
    "Canon": (b"", None),
    "NIKON": (NIKON, 10),
    "OLYMPUS": (b"OLYMPUS\0II\3\0", 0),
    "OM Digital": (b"OM SYSTEM\0\0\0II\4\0", 0),
    "FUJIFILM": (b"FUJIFILM\x0c\0\0\0", 0),
    "Panasonic": (b"Panasonic\0\0\0", None),
    "SONY": (b"SONY DSC \0\0\0", None),
    "PENTAX": (b"AOC\0II", None),
    "SIGMA": (b"SIGMA\0\0\0\1\0", None),
}


@pytest.mark.parametrize("make", HEADS)
@pytest.mark.parametrize("count, kept", [(3, True), (250, False)])
def test_tags_of_makers_count(tmp_path, make, count, kept):
    head, base = HEADS[make]
    size = 400000
    exif = maker_note(make.encode(), head, lambda place: [(0x0E0E, ASCII, size, place)] * count, base, rest=b"A" * size)
    exif = crop(save(tmp_path / "in.png", exif), tmp_path / "out.png")
    assert (MAKER_NOTE in exif.get_ifd(EXIF)) == kept and (MAKE in exif) == kept


@pytest.mark.parametrize("make, tag", [("OLYMPUS", 0x2010), ("OM Digital", 0x2020), ("NIKON", 0x0011)])
def test_directories_below_those_of_makers_count(tmp_path, make, tag):
    head, base = HEADS[make]
    size, count = 400000, 250
    entries = [(0x0E0E, ASCII, size, 0)] * count
    where = []

    def link(place):
        where.append(place)
        return [(tag, LONG, 1, place)]

    maker_note(make.encode(), head, link, base)
    below = [(0x0E0E, ASCII, size, where[-1] + len(directory("<", entries)))] * count
    exif = maker_note(make.encode(), head, link, base, rest=directory("<", below) + b"A" * size)
    assert not crop(save(tmp_path / "in.png", exif), tmp_path / "out.png")


def test_many_directories_are_left_out(tmp_path):
    """Each begins some bytes after the other, and has a full number of tags of its own."""
    first = directory("<", [(EXIF, LONG, 1, 3200 + 2 + 12 * i) for i in range(250)])
    overlapping = (b"\0\0" + struct.pack("<HHII", 250, 1, 1, 0) * 8000).rjust(3200 - 8 - len(first) + 2 + 12 * 8000, b"\0")
    exif = b"II*\0" + struct.pack("<I", 8) + first + overlapping
    assert not crop(save(tmp_path / "in.png", exif), tmp_path / "out.png")


def test_thumbnails_that_are_named_often_are_left_out(tmp_path):
    size = 400000
    first = len(directory("<", [(0, 0, 0, 0)]))
    thumbnails = lambda place: directory("<", [(0x0202, LONG, 1, size)] + [(0x0201, LONG, 1, place)] * 249)
    exif = block("<", lambda place: (directory("<", [(DESCRIPTION, ASCII, 4, b"abc\0")], 8 + first) + thumbnails(place), b"\1" * size))
    assert not crop(save(tmp_path / "in.png", exif), tmp_path / "out.png")


def packet(count):
    head = b'<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">' \
        b'<rdf:Description rdf:about="" xmlns:dc="http://purl.org/dc/elements/1.1/">'
    tags = b"".join(b"<dc:a%d>x</dc:a%d>" % (i, i) for i in range(count))
    return head + tags + b"</rdf:Description></rdf:RDF></x:xmpmeta>"


@pytest.mark.parametrize("count, packets", [(30000, 1), (2000, 20)])
def test_packets_in_exif_data_are_not_decoded(tmp_path, count, packets):
    """What else stands there is known, as which way is up."""
    text = packet(count)
    tags = [(DESCRIPTION, ASCII, 4, b"abc\0"), (ORIENTATION, SHORT, 1, b"\3\0\0\0")]
    exif = block("<", lambda place: (directory("<", tags + [(XMP, 1, len(text), place)] * packets), text))
    path = save(tmp_path / "in.png", exif + bytes(packets * len(text)))
    written = crop(path, tmp_path / "out.png")
    assert written[DESCRIPTION] == "abc" and written[ORIENTATION] == 1
    with Image.open(tmp_path / "out.png") as image:
        assert image.getpixel((0, 0)) == 0 and image.getpixel((29, 19)) == 90


def test_many_tags_are_written_at_once(tmp_path):
    exif = maker_note(b"Canon", b"", lambda place: [(1, SHORT, 10000, place)], rest=b"\1\2" * 10000)
    exif = crop(save(tmp_path / "in.png", exif), tmp_path / "out.tif")
    assert len(exif.get_ifd(EXIF)[MAKER_NOTE]) > 20000


def save_xmp(path, text):
    save(path, b"")
    file = path.read_bytes()
    path.write_bytes(file[:33] + chunk(b"iTXt", b"XML:com.adobe.xmp\0\1\0\0\0" + zlib.compress(text)) + file[33:])
    return path


def test_a_packet_that_names_the_orientation_often_is_written_at_once(tmp_path):
    names = b"tiff:Orientation" * 60000
    crop(save_xmp(tmp_path / "in.png", names + b"='6'" + b"tiff:Orientation8" * 60000), tmp_path / "out.webp")
    with Image.open(tmp_path / "out.webp") as image:
        assert image.info["xmp"] == names + b"='1'" + b"tiff:Orientation1" * 60000


def test_the_orientation_of_a_packet_is_near_its_name(tmp_path):
    near, far = b"tiff:Orientation=" + b" " * 6 + b"%d", b"tiff:Orientation=" + b" " * 7 + b"%d"
    crop(save_xmp(tmp_path / "in.png", near % 6 + far % 6), tmp_path / "out.webp")
    with Image.open(tmp_path / "out.webp") as image:
        assert image.info["xmp"] == near % 1 + far % 6


@pytest.mark.parametrize("count", [1, 60000])
def test_a_packet_is_written_as_it_stands(tmp_path, count):
    text = packet(count)
    crop(save_xmp(tmp_path / "in.png", text), tmp_path / "out.tif")
    assert (tmp_path / "out.tif").read_bytes().count(text) == 1


# Profiles. What they make of ink is none of a naive conversion.


def floats(*values):
    return struct.pack(f">{len(values)}f", *values)


def parts(head, contents):
    """Places and lengths of the parts behind the head, and the parts, each of which stands there once."""
    different = list(dict.fromkeys(contents))
    places, place = {}, len(head) + 8 * len(contents)
    for content in different:
        places[content] = struct.pack(">II", place, len(content))
        place += len(content)
    return head + b"".join(places[content] for content in contents) + b"".join(different)


def steps(*contents):
    """To Lab, in floating point."""
    return profiles.profile(b"CMYK", b"Lab ", b"prtr", {b"D2B0": parts(b"mpet" + struct.pack(">4xHHI", 4, 3, len(contents)), contents)})


def matrix(columns, rows, value=0.25):
    return b"matf" + struct.pack(">4xHH", columns, rows) + floats(*[value] * (columns * rows), *[0.1] * rows)


def curves(segments, kind=b"parf" + struct.pack(">4xHH", 0, 0) + floats(1, 1, 0, 0)):
    limits = floats(*[(i + 1) / segments for i in range(segments - 1)])
    return parts(b"cvst" + struct.pack(">4xHH", 4, 4), [b"curf" + struct.pack(">4xHH", segments, 0) + limits + kind * segments] * 4)


def table(into, out, points, values):
    return b"clut" + struct.pack(">4xHH", into, out) + bytes([points] * into + [0] * (16 - into)) + floats(*[0.5] * values)


def whole_numbers(kind, points, values):
    """To Lab, by a table of so many values."""
    if kind == b"mAB ":
        nothing = b"curv" + bytes(8)
        table_at = 32 + 3 * len(nothing)
        data = bytes([points] * 4 + [0] * 12) + b"\1\0\0\0" + b"\x40" * values
        data += bytes(-len(data) % 4)
        places = struct.pack(">5I", 32, 0, 0, table_at, table_at + len(data))
        tag = kind + bytes(4) + bytes((4, 3, 0, 0)) + places + nothing * 3 + data + nothing * 4
    else:
        wide = kind == b"mft2"
        head = kind + bytes(4) + bytes((4, 3, points, 0)) + b"".join(map(profiles.fixed, (1, 0, 0, 0, 1, 0, 0, 0, 1)))
        line = struct.pack(">HH", 0, 65535) if wide else bytes(range(256))
        tag = head + (struct.pack(">HH", 2, 2) if wide else b"") + line * 4 + b"\x40" * (values * (1 + wide)) + line * 3
    return profiles.profile(b"CMYK", b"Lab ", b"prtr", {b"A2B0": tag})


def colour_of_ink(folder, **options):
    Image.new("CMYK", (60, 40), (90, 200, 30, 40)).save(folder / "ink.jpg", **options)
    crop(folder / "ink.jpg", folder / "ink.png")
    with Image.open(folder / "ink.png") as image:
        (folder / "ink.png").unlink()
        return image.getpixel((9, 9))


TO_LAB = matrix(4, 3)
PROFILES = {
    "some steps": (True, steps(*[curves(1)] * 15, TO_LAB)),
    "more steps": (False, steps(*[curves(1)] * 16, TO_LAB)),
    "a step many times": (False, steps(*[curves(1)] * 3000, TO_LAB)),
    "some segments": (True, steps(curves(64), TO_LAB)),
    "more segments": (False, steps(curves(65), TO_LAB)),
    "very many segments": (False, steps(curves(20000), TO_LAB)),
    "four channels": (True, steps(matrix(4, 4), table(4, 3, 2, 48))),
    "five channels": (False, steps(matrix(4, 5), table(5, 3, 2, 96))),
    "thirteen channels": (False, steps(matrix(4, 13), table(13, 3, 2, 3 << 13))),
    "a table that is not there": (False, steps(table(4, 3, 70, 48))),
    "many samples": (False, steps(curves(1, b"samf" + struct.pack(">4xI", 30000000)), TO_LAB)),
    **{f"{kind}": (True, whole_numbers(kind, 5, 3 * 5**4)) for kind in (b"mft1", b"mft2", b"mAB ")},
    **{f"{kind} without values": (False, whole_numbers(kind, 85, 3 * 5**4)) for kind in (b"mft1", b"mft2", b"mAB ")},
}


@pytest.mark.parametrize("name", PROFILES)
def test_profiles_of_too_much_work_are_none(tmp_path, name):
    used, profile = PROFILES[name]
    assert (colour_of_ink(tmp_path, icc_profile=profile) != colour_of_ink(tmp_path)) == used
