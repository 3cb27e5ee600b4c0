"""Marks of branches that no test can take, and what is wrong with them or missing.

A comment that begins with a mark stands behind the code of a line or right above it, and goes on with the reason:

    // Never: two corners of the hull are distinct.
    // Never (2): ...                              two branches of the line

As many branches of a line are not taken as its marks say, neither more nor fewer. No mark excuses a line: what is never
run is not there.
"""

import re
from collections import defaultdict

MARK = re.compile(r"//\s*Never(?: \((\d+)\))?:")
COMMENT = re.compile(r"\s*(?://|/\*|\*)|\s*$")


def marks_of(text):
    """How many branches are marked, by the number of the line of code that they belong to."""
    found, waiting = {}, 0
    for number, line in enumerate(text.splitlines(), 1):
        waiting += sum(int(count or 1) for count in MARK.findall(line))
        if waiting and not COMMENT.match(line):
            found[number] = waiting
            waiting = 0
    return found


def complaints(lines, branches, marks):
    """What a file has that is not reached and not marked, or is marked and reached.

    lines    how often each line ran, by its number
    branches how often each branch was taken, by its line, the number of the line's branches and its place among them
    """
    found = [(number, "line") for number, count in lines.items() if count == 0]
    missed = defaultdict(list)
    for (number, ways, place), count in sorted(branches.items()):
        if count == 0 and lines[number] > 0:
            missed[number].append(f"branch {place + 1} of {ways}")
    for number in missed.keys() | marks.keys():
        mark, names = marks.get(number, 0), missed[number]
        if len(names) > mark:
            found.append((number, ", ".join(names) + (f", of which {mark} marked" if mark else "")))
        elif len(names) < mark:
            found.append((number, f"marked: {mark} branches never taken, but only {len(names)} are not"))
    return sorted(found)
