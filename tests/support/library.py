"""The built library, called from Python: images go in as arrays or Pillow pictures, results come out as arrays.

An array is height x width of booleans (1 bit, True white) or of bytes (gray), or height x width x 3 bytes (RGB), its
first row the top of the picture; a Pillow picture of mode 1, L or RGB is taken as such an array.

The library is the file named by VANTREL_LIBRARY, else the newest build/*/src/libvantrel.so without sanitizers. A
sanitized library needs its runtime, VANTREL_PRELOAD, in the process before everything else: `call` starts a process of
its own for that, so that the caller is not burdened with it.
"""

import ctypes
import os
import pickle
import subprocess
import sys
from pathlib import Path

import numpy as np

ROOT = Path(__file__).resolve().parents[2]
SIDES = ("top", "bottom", "left", "right")
CORNERS = ("top-left", "top-right", "bottom-left", "bottom-right")
VERDICTS = ("corners found", "too small", "lines degenerate", "no edges", "side too long", "out of memory", "not gray")
RESOLUTION = 11811  # 300 dots per inch, in pixels per metre


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


class View(ctypes.Structure):
    """vantrel_image"""

    _fields_ = [("data", ctypes.c_void_p), ("width", ctypes.c_int32), ("height", ctypes.c_int32),
                ("stride", ctypes.c_ssize_t), ("format", ctypes.c_int), ("dpi", ctypes.c_double)]


class Options(ctypes.Structure):
    """vantrel_find_options"""

    _fields_ = [("size", ctypes.c_size_t), ("methods", ctypes.POINTER(ctypes.c_int)), ("method_count", ctypes.c_size_t),
                ("analysis_dpi", ctypes.c_double), ("most_cards", ctypes.c_int32), ("straighten", ctypes.c_int32)]


class Side(ctypes.Structure):
    """vantrel_side"""

    _fields_ = [("found", ctypes.c_int32), ("confidence", ctypes.c_double)]


class Card(ctypes.Structure):
    """vantrel_card"""

    _fields_ = [("size", ctypes.c_size_t), ("quad", ctypes.c_double * 8), ("side", Side * 4), ("tilt", ctypes.c_double),
                ("confidence", ctypes.c_double), ("method", ctypes.c_int)]

    @property
    def sides(self):
        """side name -> found"""
        return {name: bool(side.found) for name, side in zip(SIDES, self.side)}

    @property
    def corner_points(self):
        """Four rows of (x, y), ordered as CORNERS."""
        return np.array(self.quad, dtype=float).reshape(4, 2)[[0, 1, 3, 2]]


class Line(ctypes.Structure):
    """vantrel_line"""

    _fields_ = [("a", ctypes.c_double), ("b", ctypes.c_double), ("c", ctypes.c_double)]


class DarkSide(ctypes.Structure):
    """vantrel_dark_side; the band is left, top, right, bottom"""

    _fields_ = [("line", Line), ("band", ctypes.c_int32 * 4), ("found", ctypes.c_int32), ("votes", ctypes.c_double)]


class DarkGlass(ctypes.Structure):
    """vantrel_dark_glass"""

    _fields_ = [("size", ctypes.c_size_t), ("reduction", ctypes.c_int32), ("width", ctypes.c_int32),
                ("height", ctypes.c_int32), ("has_lines", ctypes.c_int32), ("has_corners", ctypes.c_int32),
                ("side", DarkSide * 4), ("corners", ctypes.c_double * 8), ("box", ctypes.c_int32 * 4),
                ("tilt", ctypes.c_double)]


GRAY, RGB = 1, 3  # vantrel_format
DARK_GLASS, FLAT_LIGHT, SHEET, ANYWHERE = 1, 2, 3, 4  # vantrel_method


def stride_of(width, bits):
    return (width * bits + 31) // 32 * 4


class Block:
    """The owner of an image block; lives as long as this object."""

    def __init__(self, image, per_metre=RESOLUTION):
        pixels = np.asarray(image)
        self.height, self.width = pixels.shape[:2]
        if pixels.dtype == bool:
            self.bits, rows = 1, np.packbits(pixels, axis=1)
        elif pixels.ndim == 2:
            self.bits, rows = 8, pixels
        else:
            self.bits, rows = 24, pixels[:, :, ::-1].reshape(self.height, -1)
        memory = np.zeros((self.height, stride_of(self.width, self.bits)), np.uint8)
        memory[:, :rows.shape[1]] = rows[::-1]
        colours = 1 << self.bits if self.bits <= 8 else 0
        ramp = np.linspace(0, 255, colours).round().astype(np.uint8)
        palette = np.stack([ramp, ramp, ramp, np.zeros_like(ramp)], axis=1)
        header = Header(40, self.width, self.height, 1, self.bits, 0, memory.size, per_metre, per_metre, colours, 0)
        packed = bytes(header) + palette.tobytes() + memory.tobytes()
        self._buffer = ctypes.create_string_buffer(packed, len(packed))
        self._pointer = ctypes.c_void_p(ctypes.addressof(self._buffer))
        start = self._pointer.value
        self._record = BitmapPtr(start, start + 40, start + 40 + 4 * colours)

    @property
    def handle(self):
        """The packed handle: the address of a pointer to the block."""
        return ctypes.byref(self._pointer)

    @property
    def record(self):
        """The address of the record."""
        return ctypes.byref(self._record)


def pixels_of(record):
    """The array behind a result's record."""
    header = Header.from_address(record.info)
    stride = stride_of(header.width, header.bits)
    raw = ctypes.string_at(record.bits, stride * header.height)
    rows = np.frombuffer(raw, np.uint8).reshape(header.height, stride)[::-1]
    if header.bits == 1:
        return np.unpackbits(rows, axis=1)[:, :header.width].astype(bool)
    if header.bits == 8:
        return rows[:, :header.width].copy()
    return rows[:, :3 * header.width].reshape(header.height, header.width, 3)[:, :, ::-1].copy()


def default_path():
    """Where the library is."""
    if "VANTREL_LIBRARY" in os.environ:
        return Path(os.environ["VANTREL_LIBRARY"])
    built = [path for path in ROOT.glob("build/*/src/libvantrel.so") if path.parts[-3] not in ("asan", "tsan")]
    if not built:
        raise FileNotFoundError("no build/*/src/libvantrel.so; build the library or set VANTREL_LIBRARY")
    return max(built, key=lambda path: path.stat().st_mtime)


class Findings:
    """The handle of vantrel_find, released at the end of a `with`."""

    def __init__(self, so, view, options):
        self._so, self._handle = so, ctypes.c_void_p()
        status = so.vantrel_find(ctypes.byref(view), ctypes.byref(options), ctypes.byref(self._handle))
        if status != 0:
            raise RuntimeError(f"vantrel_find: {status}")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._so.vantrel_cards_release(self._handle)

    def _records(self, name, *indices):
        """Card records of a function that tells of one by its last index, until there is none."""
        records = [Card(ctypes.sizeof(Card))]
        while self._so[name](self._handle, *map(ctypes.c_size_t, (*indices, len(records) - 1)),
                             ctypes.byref(records[-1])) == 0:
            records.append(Card(ctypes.sizeof(Card)))
        return records[:-1]

    def cards(self):
        return self._records("vantrel_cards_get")

    def alternatives(self, card):
        """The quadrilaterals that a card was preferred to."""
        return self._records("vantrel_cards_alternative", card)

    def dark_glass(self):
        """What was seen on dark glass."""
        seen = DarkGlass(ctypes.sizeof(DarkGlass))
        self._so.vantrel_cards_dark_glass(self._handle, ctypes.byref(seen))
        return seen


class Library:
    """The loaded library. A call that makes an image returns its code and the result's pixels, or None without one."""

    def __init__(self, path=None):
        self._so = ctypes.CDLL(str(Path(path or default_path()).resolve()))

    def _result(self, call):
        """Runs `call(out)`; returns its code and the pixels in `out`, and releases the block."""
        out = BitmapPtr()
        code = call(ctypes.byref(out))
        pixels = pixels_of(out) if out.info else None
        self._so.FreeCardImg(ctypes.byref(out))
        return code, pixels

    def _through_handles(self, name, images, *numbers):
        """A call of the form name(handle..., out, number...)."""
        blocks = [Block(image) if image is not None else None for image in images]
        handles = [block.handle if block else None for block in blocks]
        return self._result(lambda out: self._so[name](*handles, out, *numbers))

    def clip(self, analyse, cut=None, scale=1):
        return self._through_handles("AutoClipRedundantImg", [analyse, cut], scale)

    def cut(self, image, high=None, scale=1):
        return self._through_handles("AutoClipRedundantImg_ORVA", [image, high], scale)

    def linear(self, image):
        return self._through_handles("BiLinear", [image])

    def cubic(self, image):
        return self._through_handles("BiCubic", [image])

    def crop(self, image, left, top, right, bottom):
        """`top` and `bottom` are memory rows, counted from the bottom of the picture."""
        block, crop = Block(image), self._so["CutRectImage"]
        crop.argtypes = [ctypes.c_void_p, ctypes.c_void_p, Rect]
        return self._result(lambda out: crop(block.record, out, Rect(left, top, right, bottom, 0)))

    def gray(self, image):
        """A colour picture in the library's own gray; any other as it is."""
        block = Block(image)
        if block.bits != 24:
            return np.asarray(image)
        convert = self._so["_Z10Color2GrayP9BITMAPPTRS0_"]
        convert.restype = ctypes.c_bool
        done, gray = self._result(lambda out: convert(block.record, out))
        if not done:
            raise MemoryError("Color2Gray")
        return gray

    def find_corners(self, image):
        """The corner finder's record for a gray or colour picture."""
        block, found = Block(self.gray(image)), CornerSearch()
        self._so.vantrel_find_corners(block.record, ctypes.byref(found))
        return found

    def view(self, image, dpi=0.0):
        """A gray or colour picture as vantrel_find takes it; lives as long as this object."""
        pixels = np.ascontiguousarray(np.asarray(image), dtype=np.uint8)
        height, width = pixels.shape[:2]
        view = View(pixels.ctypes.data, width, height, pixels.strides[0], GRAY if pixels.ndim == 2 else RGB, dpi)
        view.pixels = pixels
        return view

    def findings(self, view, method=DARK_GLASS, analysis_dpi=0.0):
        """vantrel_find with one method on a view; with None, what is surest."""
        methods = None if method is None else (ctypes.c_int * 1)(method)
        count = 0 if method is None else 1
        return Findings(self._so, view, Options(ctypes.sizeof(Options), methods, count, analysis_dpi, 0, 0))

    def find(self, image, dpi=0.0, method=DARK_GLASS, analysis_dpi=0.0):
        """vantrel_find on a gray or colour picture: its cards, and what was seen on dark glass."""
        with self.findings(self.view(image, dpi), method, analysis_dpi) as found:
            return found.cards(), found.dark_glass()

    def card_rectangle(self, image):
        """The card finder's answer on a light lid, CutCard or CutCard24 by depth: (done, box)."""
        block, rect = Block(image), Rect()
        find = self._so["_Z9CutCard24P9BITMAPPTRR6MYRECT" if block.bits == 24 else "_Z7CutCardP9BITMAPPTRR6MYRECT"]
        find.restype = ctypes.c_bool
        return find(block.record, ctypes.byref(rect)), rect.box(block.height)

    def cards(self, image, dpi):
        """CardSeg: its code and, for each of the two columns, the boxes of its cards from the top."""
        block, regions = Block(image, round(dpi / 0.0254)), Regions()
        code = self._so["_Z7CardSegP9BITMAPPTRR11RectRegions"](block.record, ctypes.byref(regions))
        columns = [[rect.box(block.height) for rect in column[:count]][::-1]
                   for column, count in zip(regions.columns, regions.counts)]
        return code, columns


def call(name, *arguments):
    """What a method of Library that makes an image answers, in a process of its own."""
    environment = dict(os.environ)
    if os.environ.get("VANTREL_PRELOAD"):
        environment["LD_PRELOAD"] = os.environ["VANTREL_PRELOAD"]
        environment["ASAN_OPTIONS"] = "detect_leaks=0"  # Python leaks at its end by design
    process = subprocess.run([sys.executable, __file__], input=pickle.dumps((name, arguments)), stdout=subprocess.PIPE,
                             env=environment, check=True)
    return pickle.loads(process.stdout)


if __name__ == "__main__":  # the process of `call`: a pickled call on standard input, the pickled answer on output
    called, given = pickle.load(sys.stdin.buffer)
    sys.stdout.buffer.write(pickle.dumps(getattr(Library(), called)(*given)))
