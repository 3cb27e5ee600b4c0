"""Finalists beside their rivals: what the duel's model is asked about, and what the finder would claim."""

import numpy as np


def _scans(table):
    starts = table.starts()
    return (slice(start, end) for start, end in zip(starts, starts[1:]))


def _areas(corners):
    x, y = corners[:, 0::2].astype(float), corners[:, 1::2].astype(float)
    return np.abs((x * np.roll(y, -1, axis=1) - y * np.roll(x, -1, axis=1)).sum(axis=1)) / 2


def best_rivals(table, score):
    """The row of each finalist's best rival, of equal ones the first; its own where there is none."""
    best = np.arange(len(table.scan))
    for rows in _scans(table):
        count = rows.stop - rows.start
        if count:
            among = np.where(table.rivals[rows, :count], score[rows], -np.inf)
            at = among.argmax(axis=1)
            has = among[np.arange(count), at] > -np.inf
            best[rows][has] = rows.start + at[has]
    return best


def duels(table, score):
    """The features of each finalist beside its best rival, as src/anywhere/duel.cpp measures them."""
    rival = best_rivals(table, score)
    alone = rival == np.arange(len(rival))
    lead = np.where(alone, score, score - score[rival])
    top = np.full(len(table.seeds), -np.inf)
    np.maximum.at(top, table.scan, score)
    area = _areas(table.corners)
    ratio = np.where(alone, 0.0, area[rival] / np.maximum(area, 1.0))
    own = np.column_stack([score, lead, top[table.scan] - score, ratio]).astype(np.float32)
    return np.column_stack([own, table.features, table.features - table.features[rival]])


def leads(table, score):
    """How far each finalist is ahead of its best rival, and of "no card here", which is 0."""
    rival = best_rivals(table, score)
    return score - np.where(rival == np.arange(len(rival)), 0.0, np.maximum(score[rival], 0.0))


def claims(table, score, most=12):
    """The rows of the cards picked on each scan, the best first, none overlapping another."""
    picked = []
    for rows in _scans(table):
        here = []
        for at in np.argsort(-score[rows], kind="stable"):
            if len(here) == most or (here and score[rows.start + at] <= 0):
                break
            if not table.overlaps[rows.start + at, here].any():
                here.append(int(at))
        picked.extend(rows.start + at for at in here)
    return np.array(picked, dtype=int)
