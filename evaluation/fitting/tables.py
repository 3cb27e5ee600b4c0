"""What vantrel_measure_candidates wrote, as arrays."""

from dataclasses import dataclass

import numpy as np

HEAD = 12  # seed, true card, Jaccard index, distance, four corners
MOST_FINALISTS = 96
BITS = 16  # marks in a number
MARKS = MOST_FINALISTS // BITS  # numbers that mark some of a scan's finalists


@dataclass
class Table:
    """Candidates of many scans. `scan` numbers the scans from 0 on, in order."""

    features: np.ndarray
    scan: np.ndarray
    card: np.ndarray
    jaccard: np.ndarray
    distance: np.ndarray
    corners: np.ndarray  # x and y of four
    overlaps: np.ndarray  # which of the scan's finalists overlap it: rows x MOST_FINALISTS
    rivals: np.ndarray  # and which of these are more than the same border
    seeds: np.ndarray  # of each scan
    cards: np.ndarray  # how many each scan truly has
    sets: list  # the name of each scan's set

    OF_ROWS = ("features", "card", "jaccard", "distance", "corners", "overlaps", "rivals")
    OF_SCANS = ("seeds", "cards")

    def rows(self, chosen):
        """The part of it in which `chosen` scans are; a mask over scans."""
        keep = chosen[self.scan]
        number = np.cumsum(chosen) - 1
        return Table(scan=number[self.scan[keep]], sets=[name for name, taken in zip(self.sets, chosen) if taken],
                     **{name: getattr(self, name)[keep] for name in self.OF_ROWS},
                     **{name: getattr(self, name)[chosen] for name in self.OF_SCANS})

    def starts(self):
        """Where each scan's rows begin, and where the last one's end."""
        return np.searchsorted(self.scan, np.arange(len(self.seeds) + 1))


def _marked(numbers):
    bits = numbers.astype(np.uint16)[:, :, None] >> np.arange(BITS, dtype=np.uint16)
    return (bits & 1).astype(bool).reshape(len(numbers), -1)


def read(path, features, name):
    """Of candidates of the copy `overlaps` and `rivals` are without columns."""
    data = np.fromfile(path, dtype=np.float32).reshape(-1, HEAD + features)
    heads = data[:, 1] == -2
    rows = data[~heads]
    return Table(features=rows[:, HEAD:], scan=(np.cumsum(heads) - 1)[~heads], card=rows[:, 1].astype(int),
                 jaccard=rows[:, 2], distance=rows[:, 3], corners=rows[:, 4:HEAD], overlaps=_marked(rows[:, :0]),
                 rivals=_marked(rows[:, :0]), seeds=data[heads, 0].astype(int), cards=data[heads, 2].astype(int),
                 sets=[name] * int(heads.sum()))


def read_finalists(path, features, name):
    table = read(path, features + 2 * MARKS, name)
    marks = table.features[:, features:]
    table.overlaps, table.rivals = _marked(marks[:, :MARKS]), _marked(marks[:, MARKS:])
    table.features = np.ascontiguousarray(table.features[:, :features])
    return table


def joined(tables):
    offsets = np.cumsum([0] + [len(table.seeds) for table in tables])
    return Table(scan=np.concatenate([t.scan + o for t, o in zip(tables, offsets)]),
                 sets=[name for table in tables for name in table.sets],
                 **{name: np.concatenate([getattr(t, name) for t in tables]) for name in Table.OF_ROWS + Table.OF_SCANS})
