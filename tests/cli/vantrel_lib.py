"""The shared library called by exported name, in a process of its own.

Run as a program it reads a pickled call from standard input and writes the pickled answer; so a sanitizer's runtime can
be loaded before the library without burdening pytest.
"""

import ctypes
import os
import pickle
import subprocess
import sys

import numpy as np

HEADER = np.dtype(
    [
        ("size", "<u4"),
        ("width", "<i4"),
        ("height", "<i4"),
        ("planes", "<u2"),
        ("bits", "<u2"),
        ("compression", "<u4"),
        ("bytes", "<u4"),
        ("x_per_metre", "<i4"),
        ("y_per_metre", "<i4"),
        ("colours", "<u4"),
        ("important", "<u4"),
    ]
)


class Bitmap(ctypes.Structure):
    _fields_ = [("info", ctypes.c_void_p), ("palette", ctypes.c_void_p), ("bits", ctypes.c_void_p)]


class Rect(ctypes.Structure):
    _fields_ = [(name, ctypes.c_int16) for name in ("left", "top", "right", "bottom", "reserved")]


def stride_of(width, bits):
    return (width * bits + 31) // 32 * 4


def pack(pixels, per_metre=11811):
    """An image block as bytes: rows from the bottom, padded, blue first; booleans become 1 bit, True white."""
    height, width = pixels.shape[:2]
    if pixels.dtype == bool:
        bits, rows = 1, np.packbits(pixels, axis=1)
    elif pixels.ndim == 2:
        bits, rows = 8, pixels
    else:
        bits, rows = 24, pixels[:, :, ::-1].reshape(height, -1)
    stride = stride_of(width, bits)
    block = np.zeros((height, stride), np.uint8)
    block[:, : rows.shape[1]] = rows[::-1]
    colours = 0 if bits == 24 else 1 << bits
    ramp = np.linspace(0, 255, colours).astype(np.uint8) if colours else np.zeros(0, np.uint8)
    palette = np.stack([ramp, ramp, ramp, np.zeros_like(ramp)], axis=1).tobytes() if colours else b""
    header = np.array(
        (40, width, height, 1, bits, 0, block.size, per_metre, per_metre, colours, 0), dtype=HEADER
    ).tobytes()
    return header + palette + block.tobytes()


def unpack(bitmap):
    """The pixels of a result, as `pack` takes them."""
    header = np.frombuffer(ctypes.string_at(bitmap.info, 40), HEADER)[0]
    width, height, bits = int(header["width"]), int(header["height"]), int(header["bits"])
    stride = stride_of(width, bits)
    rows = np.frombuffer(ctypes.string_at(bitmap.bits, stride * height), np.uint8).reshape(height, stride)[::-1]
    if bits == 1:
        return np.unpackbits(rows, axis=1)[:, :width].astype(bool)
    if bits == 8:
        return rows[:, :width].copy()
    return rows[:, : 3 * width].reshape(height, width, 3)[:, :, ::-1].copy()


class Library:
    def __init__(self, path):
        self.library = ctypes.CDLL(path)

    def _handle(self, pixels):
        block = ctypes.create_string_buffer(pack(pixels))
        return ctypes.byref(ctypes.c_void_p(ctypes.addressof(block))), block

    def _result(self, status, out):
        pixels = unpack(out) if out.info else None
        self.library.FreeCardImg(ctypes.byref(ctypes.c_void_p(out.info)))
        return status, pixels

    def _through_handles(self, name, images, *numbers):
        """A call of the form name(handle..., out, number...)."""
        handles = [self._handle(image) if image is not None else (None, None) for image in images]
        out = Bitmap()
        arguments = [handle for handle, _ in handles]
        entry = getattr(self.library, name)
        return self._result(entry(*arguments, ctypes.byref(out), *numbers), out)

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
        block = ctypes.create_string_buffer(pack(image))
        start = ctypes.addressof(block)
        colours = 0 if image.ndim == 3 else 2 if image.dtype == bool else 256
        source, out = Bitmap(start, start + 40, start + 40 + 4 * colours), Bitmap()
        self.library.CutRectImage.argtypes = [ctypes.c_void_p, ctypes.c_void_p, Rect]
        rect = Rect(left, top, right, bottom, 0)
        return self._result(self.library.CutRectImage(ctypes.byref(source), ctypes.byref(out), rect), out)


def call(name, *arguments):
    """Calls a method of Library; returns (status, pixels)."""
    environment = dict(os.environ)
    if os.environ.get("VANTREL_PRELOAD"):
        environment["LD_PRELOAD"] = os.environ["VANTREL_PRELOAD"]
        environment["ASAN_OPTIONS"] = "detect_leaks=0"
    process = subprocess.run(
        [sys.executable, __file__],
        input=pickle.dumps((name, arguments)),
        stdout=subprocess.PIPE,
        env=environment,
        check=True,
    )
    return pickle.loads(process.stdout)


if __name__ == "__main__":
    called, given = pickle.load(sys.stdin.buffer)
    answer = getattr(Library(os.environ["VANTREL_LIBRARY"]), called)(*given)
    sys.stdout.buffer.write(pickle.dumps(answer))
