"""Colour profiles, made for the tests: what is stored means other colours than the same numbers in sRGB."""

import itertools
import struct

ADOBE_LIKE = ((0.60974, 0.31111, 0.01947), (0.20528, 0.62567, 0.06087), (0.14919, 0.06322, 0.74457))
D50 = (0.9642, 1.0, 0.8249)


def fixed(value):
    return struct.pack(">i", round(value * 65536))


def xyz(values):
    return b"XYZ \0\0\0\0" + b"".join(map(fixed, values))


def gamma(value):
    return b"curv\0\0\0\0" + struct.pack(">IH", 1, round(value * 256)) + b"\0\0"


def description(text):
    text = text.encode() + b"\0"
    return b"desc\0\0\0\0" + struct.pack(">I", len(text)) + text + bytes(78)


def profile(space, connection, kind, tags):
    tags = {b"desc": description("made for a test"), b"cprt": b"text\0\0\0\0none\0", b"wtpt": xyz(D50), **tags}
    table, data = struct.pack(">I", len(tags)), b""
    start = 128 + 4 + 12 * len(tags)
    for name, content in tags.items():
        content += bytes(-len(content) % 4)
        table += name + struct.pack(">II", start + len(data), len(content))
        data += content
    head = struct.pack(">I4sI4s4s4s12x4s4s", start + len(data), b"lcms", 0x02400000, kind, space, connection, b"acsp", b"\0" * 4)
    head += bytes(68 - len(head)) + b"".join(map(fixed, D50))
    return head + bytes(128 - len(head)) + table + data


def wide_rgb():
    """Primaries as those of Adobe RGB (1998), with a gamma of 2.2."""
    tags = {name + b"XYZ": xyz(colour) for name, colour in zip((b"r", b"g", b"b"), ADOBE_LIKE)}
    tags |= {name + b"TRC": gamma(2.2) for name in (b"r", b"g", b"b")}
    return profile(b"RGB ", b"XYZ ", b"mntr", tags)


def gray(value=1.0):
    """Levels of gray of such a gamma: 1 is linear, far from sRGB."""
    return profile(b"GRAY", b"XYZ ", b"mntr", {b"kTRC": gamma(value)})


def cmyk():
    """Ink as a table of its 16 extremes, to Lab: cyan, magenta, yellow and black that are none of a naive conversion."""
    inks = {(0, 0, 0): (255, 128, 128), (1, 0, 0): (150, 95, 85), (0, 1, 0): (120, 195, 125), (0, 0, 1): (225, 122, 210),
            (1, 1, 0): (70, 150, 85), (1, 0, 1): (125, 70, 155), (0, 1, 1): (115, 190, 170), (1, 1, 1): (50, 128, 128)}
    grid = b""
    for c, m, y, k in itertools.product((0, 1), repeat=4):
        lightness, a, b = inks[c, m, y]
        grid += bytes((lightness // 8, 128, 128) if k else (lightness, a, b))
    identity = bytes(range(256))
    table = b"mft1\0\0\0\0" + bytes((4, 3, 2, 0)) + b"".join(map(fixed, (1, 0, 0, 0, 1, 0, 0, 0, 1)))
    return profile(b"CMYK", b"Lab ", b"prtr", {b"A2B0": table + identity * 4 + grid + identity * 3})
