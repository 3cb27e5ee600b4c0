#!/usr/bin/python3
"""Measures what the tool claims: how often what it tells of as done, likely or doubtful is right, by each method.

claims.py                       builds the tool, draws every set, writes the table of docs/claims.md; takes a while
claims.py --count 10 --auto 20  fewer scans, in tens, printed only
claims.py --tool PROGRAM --drawing PROGRAM     programs that are built already

A claim is off when a corner, or the border within the frame, misses that of the true card by more than 2 % of its
diagonal, or when there is no card. The seeds are those of which nothing was fitted or chosen.
"""

import argparse
import json
import subprocess
import sys
import tempfile
from collections import Counter
from concurrent.futures import ThreadPoolExecutor
from math import inf
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
if __name__ == "__main__":
    sys.path[:0] = [str(ROOT), str(ROOT / "tests" / "support")]

from evaluation import building, sources  # noqa: E402  (the folder is put on the path above)
from evaluation.judging import offset, pair  # noqa: E402
from evaluation.records import Found, Scan, points  # noqa: E402

COUNT = 100  # scans of a set, for every method
AUTO = 600  # and for the choice of the tool itself: few sure claims are off, and few scans would not show how few
OFF = 0.02
MOST_WRONG = 200  # of so many sure claims one may be off
PAGE = ROOT / "docs" / "claims.md"
START, END = "<!-- table -->", "<!-- end of table -->"
CERTAINTIES = ("sure", "likely", "doubtful")
COMMANDS = {
    "auto": ("auto",),
    "anywhere": ("clip", "--method", "anywhere", "--cards", "all"),
    "dark-glass": ("clip", "--method", "dark-glass"),
    "flat": ("clip", "--method", "flat"),
    "cut": ("cut",),
    "split": ("split",),
    "split, sheet": ("split", "--method", "sheet", "--dpi", "300"),
}


def corners_of(card):
    """Of a card of the JSON, told by its corners or by its rectangle."""
    if "corners" in card:
        return points(card["corners"][name] for name in ("top_left", "top_right", "bottom_right", "bottom_left"))
    left, top, right, bottom = (card["rectangle"][name] for name in ("left", "top", "right", "bottom"))
    return points(((left, top), (right + 1, top), (right + 1, bottom + 1), (left, bottom + 1)))


def claims_of(report):
    """(certainty, corners) of each card that is claimed in a report of the tool."""
    if report["outcome"] not in ("done", "likely", "doubtful"):
        return []
    cards = report.get("cards", [report])
    told = [(card.get("certainty", "doubtful"), corners_of(card)) for card in cards]  # marks are doubtful, always
    return [(certainty, corners) for certainty, corners in told if certainty != "guess"]


def errors_of(scan, quadrilaterals):
    """How far off each is; infinite where there is no card for it."""
    found = [Found(corners) for corners in quadrilaterals]
    owner = {j: i for i, j, _ in pair(scan.cards, found, scan.size)}
    return [offset(scan.cards[owner[j]].corners, corners, scan.size) if j in owner else inf
            for j, corners in enumerate(quadrilaterals)]


def reports_of(tool, command, pictures):
    done = subprocess.run([tool, *command, "--detect-only", "--json", "--jobs", "1", *pictures], capture_output=True)
    if done.returncode not in (0, 1):
        raise SystemExit(done.stderr.decode(errors="replace"))
    return json.loads(done.stdout)


def measure(tool, drawing, methods, name, first, count, scratch):
    """(method, set, certainty, whether off) of each claim on some scans of a set."""
    with tempfile.TemporaryDirectory(dir=scratch) as folder:
        subprocess.run([drawing, "--set", name, "--first", str(first), "--count", str(count), "--out", folder],
                       check=True, stdout=subprocess.DEVNULL)
        scans = [Scan.read(json.loads(line)) for line in (Path(folder) / "truth.jsonl").read_text().splitlines()]
        pictures = [str(Path(folder) / scan.picture) for scan in scans]
        rows = []
        for method in methods:
            for scan, report in zip(scans, reports_of(tool, COMMANDS[method], pictures)):
                claims = claims_of(report)
                errors = errors_of(scan, [corners for _, corners in claims])
                rows += [(method, name, certainty, error > OFF) for (certainty, _), error in zip(claims, errors)]
        return rows, sum(len(scan.cards) for scan in scans)


def cell(claimed, off):
    return f"{off} of {claimed}" if claimed else "-"


def table(rows):
    """By method, and for auto by set, how many claims of each certainty are off."""
    counts = Counter((method, certainty, off) for method, _, certainty, off in rows)
    sets = Counter((name, certainty, off) for method, name, certainty, off in rows if method == "auto")

    def line(counted, key):
        cells = [cell(counted[key, c, True] + counted[key, c, False], counted[key, c, True]) for c in CERTAINTIES]
        return f"| {' | '.join([key, *cells])} |"

    head = ["| | done | likely | doubtful |", "| --- | --- | --- | --- |"]
    lines = ["By method, claims off of claims made:", "", *head, *(line(counts, method) for method in COMMANDS)]
    lines += ["", "Of `auto`, by the set of scans:", "", *head]
    return lines + [line(sets, name) for name in dict.fromkeys(row[1] for row in rows)]


def promise_holds(rows):
    """For each method, at most one sure claim in 200 is off; of fewer than 200 one alone may be."""
    for method in COMMANDS:
        sure = [off for by, _, certainty, off in rows if by == method and certainty == "sure"]
        if sum(sure) > max(1, len(sure) / MOST_WRONG):
            print(f"{method}: {sum(sure)} of {len(sure)} sure claims are off", file=sys.stderr)
            return False
    return True


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--count", type=int, default=COUNT, help="scans of each set, for every method (default: %(default)s)")
    parser.add_argument("--auto", type=int, default=AUTO, help="scans of each set for the method auto (default: %(default)s)")
    parser.add_argument("--first", type=int, default=sources.FIRST_SEED, help="the first seed")
    parser.add_argument("--sets", nargs="+", choices=sources.SETS, default=[s for s in sources.SETS if s != sources.LARGE])
    parser.add_argument("--tool", type=Path, help="the tool, instead of building it")
    parser.add_argument("--drawing", type=Path, help="the program that draws scans, instead of building it")
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--write", action="store_true", help="write docs/claims.md even with other than the defaults")
    options = parser.parse_args()
    if not options.tool:
        building.build("vantrel_tool")
    tool = (options.tool or building.RELEASE / "cli" / "vantrel").resolve()
    drawing = (options.drawing or building.drawer()).resolve()
    share, most = 10, max(options.count, options.auto)
    tasks = [(COMMANDS if done < options.count else ("auto",), name, options.first + done, share)
             for name in options.sets for done in range(0, most, share)]
    building.FOLDER.mkdir(parents=True, exist_ok=True)
    with tempfile.TemporaryDirectory(dir=building.FOLDER) as scratch, ThreadPoolExecutor(options.jobs) as pool:
        parts = list(pool.map(lambda task: measure(tool, drawing, *task, scratch), tasks))
    rows = [row for part, _ in parts for row in part]
    text = "\n".join([f"{most} scans of each set with {sum(cards for _, cards in parts)} cards for auto, the first "
                      f"{options.count} for the other methods.", "", *table(rows)])
    print(text)
    if options.write or (options.count, options.auto) == (COUNT, AUTO):
        page = PAGE.read_text()
        PAGE.write_text(page[: page.index(START) + len(START)] + f"\n\n{text}\n\n" + page[page.index(END):])
    return 0 if promise_holds(rows) else 1


if __name__ == "__main__":
    sys.exit(main())
