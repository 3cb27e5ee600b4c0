"""The tool when a request for memory fails: it says so, fails, and leaves nothing half done.

Requests fail one at a time, and from one on for good. Of the thousands of each route a sample is taken, another one for
every route; with VANTREL_EVERY_REQUEST in the environment all of them. Most requests are for the options, which all
routes have in common: one route samples those too.
"""

import os
import subprocess
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest
from PIL import Image

from conftest import TOOL
from test_read_only_formats import HEIC

PRELOAD = os.environ.get("VANTREL_FAILING_MALLOC")
pytestmark = pytest.mark.skipif(not PRELOAD, reason="a sanitizer has allocators of its own")

SAMPLE = None if os.environ.get("VANTREL_EVERY_REQUEST") else 12
BEHIND_OPTIONS = 900
FORMATS = ("png", "jpg", "tif", "bmp", "ppm", "webp")
FORMATS_READ = ("gif", "jp2", "heic", "pdf")

ROUTES = {
    "clip on glass": ("clip", "IN.png", "--method", "dark-glass", "-o", "OUT/card.png"),
    "clip anywhere": ("clip", "IN.png", "--method", "anywhere", "-o", "OUT/card.png"),
    "clip flat": ("clip", "FLAT.png", "--method", "flat", "-o", "OUT/card.png", "--keep-unclipped"),
    "clip stretched": ("clip", "IN.png", "--method", "dark-glass", "--size", "scan", "-o", "OUT/card.png"),
    "clip with a second scan": ("clip", "IN.png", "--second", "TWICE.png", "--scale", "2", "-o", "OUT/card.png"),
    "clip with an overlay": ("clip", "IN.png", "-o", "OUT/card.png", "--overlay", "OUT/seen.png"),
    "clip turned": ("clip", "IN.png", "--portrait", "-o", "OUT/card.png"),
    "clip several, told as JSON": ("clip", "IN.png", "IN.jpg", "--json", "-o", "OUT"),
    "clip bits": ("clip", "BITS.tif", "-o", "OUT/card.tif", "--keep-unclipped"),
    "clip a page": ("clip", "PAGES.tif", "--page", "2", "-o", "OUT/card.tif"),
    "clip to standard output": ("clip", "IN.png", "-o", "-"),
    "choose": ("auto", "IN.png", "-o", "OUT/card.png"),
    "choose, told in lines of JSON": ("IN.png", "IN.jpg", "--json-lines", "-o", "OUT"),
    "cut": ("cut", "FLAT.png", "-o", "OUT/card.png", "--keep-unclipped"),
    "split": ("split", "IN.png", "-o", "OUT"),
    "split a sheet": ("split", "SHEET.png", "--method", "sheet", "--straighten", "-o", "OUT"),
    "enlarge": ("enlarge", "IN.png", "-o", "OUT/large.png"),
    "enlarge smoothly": ("enlarge", "IN.png", "--method", "cubic", "-o", "OUT/large.png"),
    "a contact sheet": ("clip", "IN.png", "--detect-only", "--sheet", "OUT/sheet.png"),
    "cards to a PDF file": ("crop", "IN.png", "IN.jpg", "--rect", "5,5,60,40", "-o", "OUT/all.pdf"),
    "crop": ("crop", "IN.png", "--rect", "5,5,60,40", "-o", "OUT/part.png"),
    "detect": ("detect", "IN.png", "--overlay", "OUT/seen.png"),
    **{f"read {f}": ("crop", f"IN.{f}", "--rect", "5,5,60,40", "-o", "OUT/part.png") for f in FORMATS + FORMATS_READ},
    **{f"write {f}": ("crop", "IN.png", "--rect", "5,5,60,40", "-o", f"OUT/part.{f}") for f in FORMATS},
}


@pytest.fixture(scope="module")
def inputs(tmp_path_factory):
    """A card on dark glass in every format, twice as large, in bits, on two pages; one on a flat ground; a sheet."""
    folder = tmp_path_factory.mktemp("inputs")
    pixels = np.full((120, 160, 3), 40, np.uint8)
    pixels[12:108, 16:144] = 230
    scan = Image.fromarray(pixels)
    for name in FORMATS + FORMATS_READ:
        if name != "heic":
            scan.save(folder / f"IN.{name}")
    (folder / "IN.heic").write_bytes(HEIC)
    scan.resize((320, 240)).save(folder / "TWICE.png")
    scan.convert("1").save(folder / "BITS.tif")
    scan.save(folder / "PAGES.tif", save_all=True, append_images=[scan])
    flat = np.full((300, 300), 235, np.uint8)
    flat[60:270, 20:280] = 150
    Image.fromarray(flat).save(folder / "FLAT.png")
    sheet = np.full((1500, 1500), 255, np.uint8)
    sheet[540:1200, 180:1245:15] = 0
    Image.fromarray(sheet).save(folder / "SHEET.png", dpi=(300, 300))
    return folder


class Run:
    """One run of the tool; `said` is what the preloaded allocators say."""

    def __init__(self, inputs, out, arguments, **failing):
        out.mkdir()
        places = {name: str(inputs / name) for name in os.listdir(inputs)}
        arguments = [places.get(a, a.replace("OUT", str(out))) for a in arguments]
        reading, writing = os.pipe()
        environment = dict(os.environ, LD_PRELOAD=PRELOAD, FAILING_REPORT=str(writing), MALLOC_PERTURB_="165")
        environment.update({f"FAILING_{name.upper()}": str(value) for name, value in failing.items()})
        command = [TOOL, *arguments, "-j", "1"]
        process = subprocess.run(command, capture_output=True, env=environment, pass_fds=[writing], timeout=120)
        os.close(writing)
        self.said = os.read(reading, 100).decode()
        os.close(reading)
        self.code, self.out, self.err = process.returncode, process.stdout, process.stderr.decode()
        self.files = {path.name: path.read_bytes() for path in out.iterdir()}


def fail_each(inputs, tmp_path, arguments, sample, ever=False, with_options=False, **failing):
    """Returns how many requests there are, and how many of those that failed did no harm."""
    whole = Run(inputs, tmp_path / "whole", arguments, **failing)
    if "is not read by this build" in whole.err:
        pytest.skip(whole.err)
    assert whole.code == 0, whole.err
    expected = [whole.files] + [run.files for run in without_each_input(inputs, tmp_path, arguments)]
    total = int(whole.said)
    first = 0 if sample is None or with_options else max(0, total - BEHIND_OPTIONS)
    step = 1 if sample is None else max(1, (total - first) // sample)
    if ever:
        failing["ever"] = 1
    harmless = 0

    def run_with(number):
        return number, Run(inputs, tmp_path / str(number), arguments, request=number, **failing)

    # A run is mostly the loading of the tool: as many at a time as there are processors.
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        runs = pool.map(run_with, range(first + hash_of(arguments) % step, total, step))
    for number, run in runs:
        context = (number, run.code, run.out[-200:], run.err)
        if run.said != "failed":
            continue  # so late that it was not asked for this time
        if run.code == 0:
            # What was asked for could be done without.
            harmless += 1
            assert run.files == whole.files, context
            continue
        assert run.code == 1, context
        assert "not enough memory" in run.err, context
        assert all("not enough memory" in line or "inputs:" in line for line in run.err.splitlines()), context
        # What was complete before stays: an output of another input, or one that only the report of was left.
        assert any(run.files.items() <= files.items() for files in expected), context
    return total, harmless


def without_each_input(inputs, tmp_path, arguments):
    """Where all go into one file: what that is when one of them fails."""
    if "OUT/all.pdf" in arguments:
        for name in set(arguments) & set(os.listdir(inputs)):
            yield Run(inputs, tmp_path / f"without {name}", [a for a in arguments if a != name])


def hash_of(arguments):
    """The same number in every run, for the sample."""
    return sum(" ".join(arguments).encode())


@pytest.mark.parametrize("name", ROUTES)
def test_any_request_may_fail(inputs, tmp_path, name):
    total, harmless = fail_each(inputs, tmp_path, ROUTES[name], SAMPLE, with_options=name == "crop")
    print(f"{name}: {total} requests")
    assert total > 1000
    assert harmless < (5 if SAMPLE else total // 50)


@pytest.mark.parametrize("name", ["clip with an overlay", "clip several, told as JSON", "split", "detect", "read tif"])
def test_memory_may_end_for_good(inputs, tmp_path, name):
    fail_each(inputs, tmp_path, ROUTES[name], SAMPLE and 8, ever=True)


@pytest.mark.parametrize("name", [*FORMATS, "gif", "jp2", "pdf"])
def test_memory_for_pixels_may_be_missing(inputs, tmp_path, name):
    """Large requests are refused to the image libraries too, and the next input is worked on."""
    large = Image.fromarray(np.random.default_rng(1).integers(0, 256, (900, 900, 3), np.uint8))
    (tmp_path / "in").mkdir()
    large.save(tmp_path / "in" / f"LARGE.{name}", **({"resolution": 300} if name == "pdf" else {}))
    written = name if name in FORMATS else "png"
    arguments = ("crop", f"LARGE.{name}", "--rect", "0,0,799,799", "--overlay", f"OUT/seen.{written}", "-o", f"OUT/part.{written}")
    total, _ = fail_each(tmp_path / "in", tmp_path, arguments, None, least=1 << 20)
    assert total >= 4


def test_the_other_inputs_are_worked_on(inputs, tmp_path):
    """Where it is the tool's own request that fails, for one input."""
    arguments = ("enlarge", "IN.png", "IN.bmp", "-o", "OUT")
    whole = Run(inputs, tmp_path / "whole", arguments)
    both = 0
    for number in range(int(whole.said) - 500, int(whole.said), 9):
        run = Run(inputs, tmp_path / str(number), arguments, request=number)
        both += run.code == 1 and len(run.files) == 1 and "IN.png: not enough memory" in run.err
    assert both > 0
