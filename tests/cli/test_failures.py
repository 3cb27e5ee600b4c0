"""Every failure says what is wrong and, unless that says it, what to try."""

import numpy as np
import pytest
from PIL import Image

import scans
from sample_scans import SAMPLES

SAVED = ("-o", "out/")
SHEET = SAMPLES / "sheets" / "two-columns.png"
ANYWHERE = "(try vantrel auto, which looks anywhere on the scan)"
NOISY = "(try vantrel auto, or --scale 2 where the scan is noisy)"
LID = "(try a lid that is darker than the card, or vantrel crop around the card first)"
RESOLUTION = "(try vantrel auto, or --dpi with the true resolution)"
LEVELS = "(try vantrel auto, or a scan in gray or colour)"
LESS = "(try a smaller --min-sides or --min-confidence)"

# What is typed, and the one line that comes back, without "vantrel: " and the input's name.
NOTHING_FOUND = [
    (("auto", "noise.png"), f"nothing on the scan is bordered like a card {LID}"),
    (("auto", SAMPLES / "anywhere" / "text-page.jpg"), f"nothing on the scan is bordered like a card {LID}"),
    (("clip", "--method", "anywhere", "noise.png"), f"nothing on the scan is bordered like a card {LID}"),
    (("clip", "--method", "dark-glass", "noise.png"), f"no side of a card was found {NOISY}"),
    (("clip", "--method", "dark-glass", "small.png"), f"no edge near the border of the scan {ANYWHERE}"),
    (("clip", "--method", "dark-glass", "bits.png"), f"a bilevel scan has no gray levels to search: nothing to correct {LEVELS}"),
    (("clip", "--method", "flat", "bits.png"), f"a bilevel scan has no gray levels to search: nothing to correct {LEVELS}"),
    (("clip", "--method", "flat", "noise.png"), f"no side of a card was found {NOISY}"),
    (("clip", "--method", "flat", "tiny.png"), "a colour scan must be at least 128 x 128 (try a scan of a higher resolution)"),
    (("cut", "noise.png"), f"no side of a card on a flat background was found {ANYWHERE}"),
    (("cut", "bits.png"), f"a bilevel scan has no levels to search {LEVELS}"),
    (("cut", "tiny.png"), "a colour scan must be at least 128 x 128 (try a scan of a higher resolution)"),
    (("cut", "long.png"), "a side is longer than 32767 pixels (try vantrel auto, or a scan of a lower resolution)"),
    (("split", "--method", "sheet", "--dpi", "300", "noise.png"),
     f"there are marks, but by their size, print or borders not those of a card {RESOLUTION}"),
    (("split", "--method", "sheet", "none.png"),
     "the resolution is not known: sheets need 250 dpi or more (--dpi tells it) (try vantrel auto, which needs no resolution)"),
    (("split", "--method", "sheet", "--dpi", "200", "noise.png"),
     "the resolution is 200 dpi: sheets need 250 dpi or more (--dpi tells it) (try vantrel auto, which needs no resolution)"),
    (("split", "--method", "sheet", "--min-sides", "2", SHEET),
     f"8 cards by their marks, whose sides are not seen: fewer sides, or less sure, than is asked for {LESS}"),
    (("auto", "--min-sides", "2", SHEET), "only marks, as on a sheet of cards that is split (try split --method sheet)"),
    (("cut", "--min-sides", "4", "slip.png"),
     "only a guess (card 683 x 363 at 40, 0, 3 of 4 sides found (top: the frame of the scan); fewer sides than the 4 of --min-sides) "
     + LESS),
    (("enlarge", "bits.png"), "not enlarged: a bilevel picture has no levels between its pixels (try a scan in gray or colour)"),
    (("enlarge", "long.png"), "not enlarged: a side is longer than 2000 pixels (try vantrel crop first)"),
]

# Of guesses, whose confidence is the finder's affair, the end of the line.
GUESSES = [
    (("auto", "--min-sides", "4", "cut-off.jpg"), f"; fewer sides than the 4 of --min-sides) {LESS}"),
    (("auto", "--min-confidence", "0.99", "cut-off.jpg"), f"; less sure than --min-confidence asks for) {LESS}"),
    (("auto", "edge.png"), f"; too few of its sides were seen) {LID}"),
    (("clip", "--method", "dark-glass", "edge.png"), f"; too few of its sides were seen) {ANYWHERE}"),
    (("cut", "text-page.jpg"), f"; no border on the scan confirms it) {ANYWHERE}"),
]

# What is no scan, and what cannot be written; names come first here, too.
FILES = [
    (("auto", "missing.png"), "No such file or directory"),
    (("auto", "empty.png"), "the file is empty"),
    (("auto", "words.png"), "not an image (PNG, JPEG, TIFF, BMP, PNM or WebP)"),
    (("auto", "broken.png"), "the PNG data is truncated or damaged"),
    (("auto", "card.png", "--page", "3"), "no page 3 (it has 1)"),
    (("auto", "long.png", "--most-megapixels", "1"), "40000 x 300 are more than 1 megapixels (--most-megapixels allows more)"),
    (("auto", "blank.png"), "the scan is blank"),
    (("cut", "blank.png"), "no side of a card was found: the scan is blank"),
    (("crop", "card.png", "--rect", "0,0,900,900"), "the rectangle reaches outside the scan of 700 x 440"),
    (("clip", "card.png", "--scale", "500"), "too small to be reduced 500 times"),
    (("clip", "card.png", "--scale", "2", "--analyse", "noise.png"), "noise.png: does not fit: 500 x 400 times 2 is not 700 x 440"),
    (("auto", "card.png", "-o", "card.png"), "card.png: is an input (card.png) and stays as it is"),
    (("auto", "card.png", "-o", "noise.png"), "noise.png: exists already (--force replaces it)"),
    (("auto", "two.png", "-o", "-"), "2 cards do not go to standard output (try --cards 1)"),
]

# Nothing was done: status 2, and no input's name.
USAGE = [
    (("card.png",), "-o OUT is needed, or --detect-only to write nothing"),
    (("card.png", "out.png"), "-o OUT is needed, or --detect-only to write nothing (did you mean -o out.png?)"),
    (("card.png", "blank.png", "-o", "out.png"), "-o out.png: there is no such folder (several files need one)"),
    (("card.png", "blank.png", "-o", "-"), "several inputs need a folder as output, not standard output"),
    (("card.png", "-o", "out.xyz"), "-o out.xyz: the ending names no format (PNG, JPEG, TIFF, BMP, PNM, WebP or PDF)"),
    (("card.png", "-o", "out.png", "--format", "jpeg"), "-o out.png: the ending is not that of --format"),
    (("card.png", "-o", "-", "--overlay", "-"), "-o and --overlay cannot both be standard output"),
    (("card.png", "-o", "-", "--json"), "--json needs standard output for itself"),
    (("-", "-", *SAVED), "standard input can be read only once"),
    (("-", "--page", "all", *SAVED), "--page all needs files"),
    (("folder", *SAVED), "folder: holds no pictures (--recursive looks into its folders)"),
    (("-r", "folder", *SAVED), "folder: holds no pictures"),
    (("split", "card.png", "-o", "-"), "-o needs a folder"),
    (("card.png", "--detect-only", "--sheet", "-"), "--sheet needs a file"),
    (("card.png", "-o", "a.pdf", "--sheet", "a.pdf"), "-o and --sheet a.pdf are one file"),
    (("card.png", "--detect-only", "--review", "card.png"), "--review card.png: is no folder and cannot be made one"),
    (("clip", "--cards", "3", "--keep-unclipped", "card.png", *SAVED), "--keep-unclipped needs --cards 1"),
    (("clip", "--scale", "2", "--analyse", "a.png", "card.png", "blank.png", *SAVED), "--analyse goes with one input"),
    (("clip", "--scale", "1", "--analyse", "a.png", "card.png", *SAVED), "--analyse needs --scale 2 or more"),
    (("crop", "--rect", "5,0,2,9", "card.png", *SAVED), "--rect: the order is left, top, right, bottom"),
    (("crop", "--rect", "-1,0,2,9", "card.png", *SAVED), "--rect: bounds count from 0"),
    (("clpi", "card.png"), "unknown subcommand 'clpi', and no file or folder (did you mean 'clip'?) (see vantrel --help)"),
    (("CLIP", "card.png"), "unknown subcommand 'CLIP', and no file or folder (did you mean 'clip'?) (see vantrel --help)"),
    (("card.png", "-rotate", "90", *SAVED), "unknown option '-rotate' (did you mean '--rotate'?) (see vantrel auto --help)"),
    (("clip", "-output", "a.png", "card.png"), "unknown option '-output' (did you mean '--output'?) (see vantrel clip --help)"),
    (("-version",), "unknown option '-version' (did you mean '--version'?) (see vantrel auto --help)"),
    (("--Version",), "unknown option '--Version' (did you mean '--version'?) (see vantrel auto --help)"),
    (("clip", "--detct-only"), "unknown option '--detct-only' (did you mean '--detect-only'?) (see vantrel clip --help)"),
    (("clip",), "INPUT is needed (see vantrel clip --help)"),
    ((), "a subcommand or an INPUT is needed (see vantrel --help)"),
]


@pytest.fixture(scope="module")
def place(tmp_path_factory):
    folder = tmp_path_factory.mktemp("failures")
    random = np.random.default_rng(1)
    card, _ = scans.draw_scan()
    scans.save(card, folder / "card.png")
    scans.save(scans.draw_scan(fill=0.5)[0], folder / "small.png")
    scans.save(card[:100, :100], folder / "tiny.png")
    Image.fromarray(card).convert("1").save(folder / "bits.png", dpi=(300, 300))
    scans.save(scans.blank_scan(), folder / "blank.png")
    scans.save(random.integers(0, 256, (400, 500, 3)).astype(np.uint8), folder / "noise.png")
    scans.save(card, folder / "none.png", dpi=None)
    Image.new("L", (40000, 300), 200).save(folder / "long.png")
    edge = np.full((440, 700), 40, np.uint8)
    edge[30:] = 220
    scans.save(edge, folder / "edge.png")
    scans.save(scans.load(SAMPLES / "cut" / "gray.png")[200:], folder / "slip.png")
    two = np.full((900, 700, 3), 40, np.uint8)
    two[100:360, 100:520] = two[500:760, 100:520] = 220
    scans.save(two, folder / "two.png")
    for name in ("cut-off.jpg", "text-page.jpg"):
        (folder / name).symlink_to(SAMPLES / "anywhere" / name)
    (folder / "empty.png").touch()
    (folder / "words.png").write_text("no picture")
    (folder / "broken.png").write_bytes((folder / "card.png").read_bytes()[:3000])
    (folder / "folder").mkdir()
    return folder


def told(tool, place, words, code):
    """The line on standard error, the only one, after the tool's name."""
    result = tool(*words, cwd=place)
    assert (result.code, result.out) == (code, b""), (words, result.err)
    lines = result.err.splitlines()
    assert len(lines) == 1 and lines[0].startswith("vantrel: "), (words, result.err)
    return lines[0].removeprefix("vantrel: ")


def input_of(words):
    return next(str(word) for word in words if str(word).endswith((".png", ".jpg")))


def saved(words):
    return words if "-o" in words else (*words, *SAVED)


@pytest.mark.parametrize("words, line", NOTHING_FOUND)
def test_what_finds_nothing_says_what_to_try(tool, place, words, line):
    assert told(tool, place, saved(words), 1) == f"{input_of(words)}: {line}"


@pytest.mark.parametrize("words, end", GUESSES)
def test_guesses_say_what_to_try(tool, place, words, end):
    line = told(tool, place, saved(words), 1)
    assert line.startswith(f"{input_of(words)}: only a guess (") and line.endswith(end), line


@pytest.mark.parametrize("words, line", FILES)
def test_files_that_fail_say_why(tool, place, words, line):
    assert told(tool, place, saved(words), 1) == f"{input_of(words)}: {line}"


@pytest.mark.parametrize("words, line", USAGE)
def test_wrong_usage_says_what_is_right(tool, place, words, line):
    assert told(tool, place, words, 2) == line


def test_nothing_was_written(place):
    assert not [path for path in (place / "out").rglob("*") if path.is_file()]
