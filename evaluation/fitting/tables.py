"""What vantrel_measure_candidates wrote, as arrays."""

from dataclasses import dataclass

import numpy as np

HEAD = 12  # seed, true card, Jaccard index, distance, four corners


@dataclass
class Table:
    """Candidates of many scans. `scan` numbers the scans from 0 on, in order."""

    features: np.ndarray
    scan: np.ndarray
    card: np.ndarray
    jaccard: np.ndarray
    distance: np.ndarray
    corners: np.ndarray  # x and y of four
    seeds: np.ndarray  # of each scan
    cards: np.ndarray  # how many each scan truly has
    sets: list  # the name of each scan's set

    def rows(self, chosen):
        """The part of it in which `chosen` scans are; a mask over scans."""
        keep = chosen[self.scan]
        number = np.cumsum(chosen) - 1
        return Table(self.features[keep], number[self.scan[keep]], self.card[keep], self.jaccard[keep],
                     self.distance[keep], self.corners[keep], self.seeds[chosen], self.cards[chosen],
                     [name for name, taken in zip(self.sets, chosen) if taken])


def read(path, features, name):
    data = np.fromfile(path, dtype=np.float32).reshape(-1, HEAD + features)
    heads = data[:, 1] == -2
    scan = np.cumsum(heads) - 1
    body = ~heads
    rows = data[body]
    return Table(rows[:, HEAD:], scan[body], rows[:, 1].astype(int), rows[:, 2], rows[:, 3], rows[:, 4:HEAD], data[heads, 0].astype(int),
                 data[heads, 2].astype(int), [name] * int(heads.sum()))


def joined(tables):
    offsets = np.cumsum([0] + [len(table.seeds) for table in tables])
    def stack(member):
        return np.concatenate([getattr(table, member) for table in tables])
    return Table(stack("features"), np.concatenate([t.scan + o for t, o in zip(tables, offsets)]), stack("card"),
                 stack("jaccard"), stack("distance"), stack("corners"), stack("seeds"), stack("cards"),
                 [name for table in tables for name in table.sets])
