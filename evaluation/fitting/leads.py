"""What the finder would claim: the cards that it picks among the finalists, and how far each is ahead of its rivals."""

import numpy as np

from evaluation import polygons

SLACK = 0.07  # of the smaller area: two quadrilaterals that share less lie apart
SAME_BORDER = 0.015  # of the diagonal: with nearer corners they are the same border, and no rivals


def _apart(a, b):
    common = polygons.cut(a, b)
    shared = abs(polygons.signed_area(common)) if len(common) > 2 else 0.0
    return shared <= SLACK * min(abs(polygons.signed_area(a)), abs(polygons.signed_area(b)))


def _same(a, b, reach):
    return any(all(abs(a[i][0] - b[(i + turn) % 4][0]) <= reach and abs(a[i][1] - b[(i + turn) % 4][1]) <= reach
                   for i in range(4)) for turn in range(4))


def _lead(rows, at, quads, score):
    quad = quads[at]
    reach = SAME_BORDER * polygons.distance(quad[0], quad[2])
    best = 0.0
    for other in rows:
        if score[other] <= best or other == at or _same(quad, quads[other], reach):
            continue
        if not _apart(quad, quads[other]):
            best = score[other]
    return score[at] - best


def claims(table, score, most=12):
    """(row, lead) of the cards picked on each scan, the best first, none overlapping another."""
    quads = [tuple((float(c[i]), float(c[i + 1])) for i in (0, 2, 4, 6)) for c in table.corners]
    starts = np.searchsorted(table.scan, np.arange(len(table.seeds) + 1))
    for scan in range(len(table.seeds)):
        rows = np.arange(starts[scan], starts[scan + 1])
        order = rows[np.argsort(-score[rows], kind="stable")]
        picked = []
        for at in order:
            if len(picked) == most or (picked and score[at] <= 0):
                break
            if all(_apart(quads[at], quads[other]) for other in picked):
                picked.append(at)
                yield at, _lead(order, at, quads, score)
