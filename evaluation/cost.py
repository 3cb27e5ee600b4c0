"""What a search costs on A4 at 300 dpi in colour: the processor's time, and the memory beyond the scan."""

import subprocess
import tempfile

import numpy as np
from PIL import Image

from evaluation import methods
from evaluation.sources import FIRST_SEED, LARGE, Drawn

SIZE, DPI = (2480, 3508), 300.0
SCANS = 8
REPEATS = 3


def large_scans(program, scratch):
    """Drawn scans at that size: large ones of the first seeds, made as large."""
    for _, pixels in Drawn(str(program), LARGE, FIRST_SEED, SCANS, str(scratch)):
        image = Image.fromarray(pixels)
        upright = image if image.height >= image.width else image.transpose(Image.Transpose.ROTATE_90)
        yield np.asarray(upright.resize(SIZE, Image.Resampling.BICUBIC))


def peak_bytes(peak_program, contender, pixels, scratch):
    """The most bytes allocated at a time during one search."""
    with tempfile.NamedTemporaryFile(dir=scratch, suffix=".ppm") as picture:
        Image.fromarray(pixels).save(picture, "PPM")
        picture.flush()
        command = [str(peak_program), contender.library, str(methods.OURS[contender.method]), picture.name]
        return int(subprocess.run(command, check=True, capture_output=True, text=True).stdout)


def time_of(contender, pixels):
    """The quickest of a few calls, in nanoseconds of the processor."""
    return min(methods.ask(contender, pixels, DPI).nanoseconds for _ in range(REPEATS))


def measure(contenders, program, peak_program, scratch):
    """By contender: nanoseconds a pixel (median, worst), milliseconds (median), and for ours bytes a pixel (worst)."""
    times, bytes_of = {one.name: [] for one in contenders}, {one.name: [] for one in contenders}
    for pixels in large_scans(program, scratch):
        for one in contenders:
            times[one.name].append(time_of(one, pixels))
            if one.method in methods.OURS:
                bytes_of[one.name].append(peak_bytes(peak_program, one, pixels, scratch))
    return {name: cost_of(times[name], bytes_of[name], SIZE[0] * SIZE[1]) for name in times}


def cost_of(times, peaks, pixels):
    cost = {"median_ns": float(np.median(times)) / pixels, "worst_ns": max(times) / pixels,
            "milliseconds": float(np.median(times)) / 1e6}
    if peaks:
        cost["bytes"] = max(peaks) / pixels
    return cost
