"""The built library, called from Python: images go in as Pillow pictures, records come out as plain values.

The library is the file named by VANTREL_LIBRARY, else the newest build/*/src/libvantrel.so without sanitizers.
"""

import ctypes
import os
from pathlib import Path

import numpy as np
from PIL import Image

ROOT = Path(__file__).resolve().parents[2]
SIDES = ("top", "bottom", "left", "right")
CORNERS = ("top-left", "top-right", "bottom-left", "bottom-right")
VERDICTS = ("corners found", "too small", "lines degenerate", "no edges", "side too long", "out of memory", "not gray")


class Header(ctypes.Structure):
    """BITMAPINFOHEADER"""

    _fields_ = [("size", ctypes.c_uint32), ("width", ctypes.c_int32), ("height", ctypes.c_int32),
                ("planes", ctypes.c_uint16), ("bits", ctypes.c_uint16), ("compression", ctypes.c_uint32),
                ("image_bytes", ctypes.c_uint32), ("x_per_metre", ctypes.c_int32), ("y_per_metre", ctypes.c_int32),
                ("colours_used", ctypes.c_uint32), ("colours_important", ctypes.c_uint32)]


class BitmapPtr(ctypes.Structure):
    """BITMAPPTR"""

    _fields_ = [("info", ctypes.c_void_p), ("palette", ctypes.c_void_p), ("bits", ctypes.c_void_p)]


class Border(ctypes.Structure):
    """vantrel_border"""

    _fields_ = [("a", ctypes.c_double), ("b", ctypes.c_double), ("c", ctypes.c_double), ("found", ctypes.c_int)]


class CornerSearch(ctypes.Structure):
    """vantrel_corner_search"""

    _fields_ = [("verdict", ctypes.c_int), ("side", Border * 4), ("corners", ctypes.c_float * 8),
                ("box", ctypes.c_float * 8)]

    @property
    def sides(self):
        """side name -> found"""
        return {name: bool(border.found) for name, border in zip(SIDES, self.side)}

    @property
    def corner_points(self):
        """Four rows of (x, y), ordered as CORNERS."""
        return np.array(self.corners, dtype=float).reshape(4, 2)


class Rect(ctypes.Structure):
    """MYRECT"""

    _fields_ = [(name, ctypes.c_int16) for name in ("left", "top", "right", "bottom", "reserved")]

    def box(self, height):
        """(left, top, right, bottom) in the samples' coordinates: y from the top, right and bottom exclusive."""
        return self.left, height - 1 - self.top, self.right + 1, height - self.bottom


class Regions(ctypes.Structure):
    """RectRegions"""

    _fields_ = [("counts", ctypes.c_int32 * 2), ("columns", (Rect * 5) * 2)]


def _stride(width, bits):
    return (width * bits + 31) // 32 * 4


def _rows_of(picture):
    """The picture's rows from its top, as bytes: (bits per pixel, height x used bytes)."""
    if picture.mode == "1":
        used = (picture.width + 7) // 8
        return 1, np.frombuffer(picture.tobytes(), dtype=np.uint8).reshape(picture.height, used)
    pixels = np.asarray(picture)
    if picture.mode == "L":
        return 8, pixels
    if picture.mode == "RGB":
        return 24, pixels[:, :, ::-1].reshape(picture.height, 3 * picture.width)
    raise ValueError("a 1-bit, gray or RGB picture is expected, not " + picture.mode)


class Block:
    """An image block made from a Pillow picture (modes 1, L and RGB); lives as long as this object."""

    def __init__(self, picture, dpi=300):
        bits, rows = _rows_of(picture)
        self.size = picture.size
        colours = 1 << bits if bits <= 8 else 0
        stride = _stride(picture.width, bits)
        memory = np.zeros((picture.height, stride), dtype=np.uint8)
        memory[:, :rows.shape[1]] = rows[::-1]
        per_metre = round(dpi / 0.0254)
        header = Header(40, *picture.size, 1, bits, 0, stride * picture.height, per_metre, per_metre, colours, 0)
        ramp = np.linspace(0, 255, colours).round().astype(np.uint8) if colours else np.empty(0, dtype=np.uint8)
        palette = np.stack([ramp, ramp, ramp, np.zeros_like(ramp)], axis=1)
        self.bytes = bytes(header) + palette.tobytes() + memory.tobytes()
        self._buffer = ctypes.create_string_buffer(self.bytes, len(self.bytes))
        self._pointer = ctypes.c_void_p(ctypes.addressof(self._buffer))
        base = self._pointer.value
        self.record = BitmapPtr(base, base + 40, base + 40 + 4 * colours)

    @property
    def handle(self):
        """The packed handle: the address of a pointer to the block."""
        return ctypes.byref(self._pointer)


def _picture_of(record):
    """A Pillow picture from a result's record."""
    header = Header.from_address(record.info)
    stride = _stride(header.width, header.bits)
    raw = ctypes.string_at(record.bits, stride * header.height)
    rows = np.frombuffer(raw, dtype=np.uint8).reshape(header.height, stride)[::-1]
    if header.bits == 1:
        return Image.frombytes("1", (header.width, header.height), rows[:, :(header.width + 7) // 8].tobytes())
    if header.bits == 8:
        return Image.fromarray(np.ascontiguousarray(rows[:, :header.width]), "L")
    pixels = rows[:, :3 * header.width].reshape(header.height, header.width, 3)
    return Image.fromarray(np.ascontiguousarray(pixels[:, :, ::-1]), "RGB")


def default_path():
    """Where the library is."""
    if "VANTREL_LIBRARY" in os.environ:
        return Path(os.environ["VANTREL_LIBRARY"])
    built = [path for path in ROOT.glob("build/*/src/libvantrel.so") if path.parts[-3] not in ("asan", "tsan")]
    if not built:
        raise FileNotFoundError("no build/*/src/libvantrel.so; build the library or set VANTREL_LIBRARY")
    return max(built, key=lambda path: path.stat().st_mtime)


class Library:
    """The loaded library."""

    def __init__(self, path=None):
        self._so = ctypes.CDLL(str(Path(path or default_path()).resolve()))

    def _result(self, call):
        """Runs `call(out)`; returns its code and the picture in `out` (or None), and releases the block."""
        out = BitmapPtr()
        code = call(ctypes.byref(out))
        if not out.info:
            return code, None
        picture = _picture_of(out)
        self._so.FreeCardImg(ctypes.byref(out))
        return code, picture

    def gray(self, picture):
        """The picture in the library's own gray, for a colour picture; itself otherwise."""
        if picture.mode != "RGB":
            return picture
        block = Block(picture)
        convert = self._so["_Z10Color2GrayP9BITMAPPTRS0_"]
        convert.restype = ctypes.c_bool
        done, gray = self._result(lambda out: convert(ctypes.byref(block.record), out))
        if not done:
            raise MemoryError("Color2Gray")
        return gray

    def find_corners(self, picture):
        """The corner finder's record for a gray or colour picture."""
        block = Block(self.gray(picture))
        found = CornerSearch()
        self._so.vantrel_find_corners(ctypes.byref(block.record), ctypes.byref(found))
        return found

    def clip(self, picture):
        """AutoClipRedundantImg on one picture: its code and the result's picture."""
        block = Block(picture)
        return self._result(lambda out: self._so.AutoClipRedundantImg(block.handle, None, out, 1))

    def card_rectangle(self, picture):
        """The card finder's answer on a light lid, CutCard or CutCard24 by depth: (done, box)."""
        block, rect = Block(picture), Rect()
        find = self._so["_Z9CutCard24P9BITMAPPTRR6MYRECT" if picture.mode == "RGB" else "_Z7CutCardP9BITMAPPTRR6MYRECT"]
        find.restype = ctypes.c_bool
        return find(ctypes.byref(block.record), ctypes.byref(rect)), rect.box(picture.height)

    def cut(self, picture, twin=None, scale=1):
        """AutoClipRedundantImg_ORVA, cutting from `twin` when there is one: its code and the result's picture."""
        block, second = Block(picture), Block(twin) if twin else None
        handle = second.handle if second else None
        return self._result(lambda out: self._so.AutoClipRedundantImg_ORVA(block.handle, handle, out, scale))

    def cards(self, picture, dpi):
        """CardSeg: its code and, for each of the two columns, the boxes of its cards from the top."""
        block, regions = Block(picture, dpi), Regions()
        code = self._so["_Z7CardSegP9BITMAPPTRR11RectRegions"](ctypes.byref(block.record), ctypes.byref(regions))
        columns = [[rect.box(picture.height) for rect in column[:count]][::-1]
                   for column, count in zip(regions.columns, regions.counts)]
        return code, columns
