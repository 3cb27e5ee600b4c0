"""Which candidates compete with which: a group for each true card, and one for each scan without any."""

import numpy as np

from evaluation.fitting.listwise import Lists

RIGHT = 0.9  # a quadrilateral with a greater Jaccard index has found its card
MOST_WRONG = 120  # wrong candidates in a group; more teach nothing new
EMPTY_WEIGHT = 1.0
MOST_CARDS = 8  # a scan of more cards counts as so many


def wholly(jaccard):
    """Right is right."""
    return np.ones(len(jaccard))


def by_exactness(jaccard):
    """What is right is the more so the better it covers its card."""
    return (jaccard - RIGHT) / (1 - RIGHT)


def compete(table, right, wrong, worth=wholly, seed=1, most_wrong=MOST_WRONG):
    """The rows that compete, as indices into the table, and their groups.

    A row is right with a Jaccard index above `right`, as much as `worth` tells of it, and wrong below `wrong`; what lies
    between is not taught.
    """
    random = np.random.default_rng(seed)
    starts = table.starts()
    index, group, is_right, weight = [], [], [], []
    for scan, cards in enumerate(table.cards):
        rows = np.arange(starts[scan], starts[scan + 1])
        bad_rows = rows[table.jaccard[rows] < wrong]
        for card in range(max(cards, 1)):
            good = rows[(table.jaccard[rows] > right) & (table.card[rows] == card)]
            if cards and not len(good):
                continue  # a card without a right candidate teaches nothing here
            bad = bad_rows if len(bad_rows) <= most_wrong else random.choice(bad_rows, most_wrong, replace=False)
            taken = np.concatenate([good, bad])
            if not len(taken):
                continue
            index.append(taken)
            group.append(np.full(len(taken), len(weight)))
            is_right.append(np.concatenate([worth(table.jaccard[good]), np.zeros(len(bad))]))
            weight.append(EMPTY_WEIGHT if cards == 0 else min(1.0, MOST_CARDS / cards))
    lists = Lists(np.concatenate(group), np.concatenate(is_right), np.array(weight))
    return np.concatenate(index), lists


def shares_right(table, score, ranks=(1, 5, 24)):
    """By set: the share of cards for which a right candidate is among the so many best, and how many there could be."""
    starts = table.starts()
    found = {}
    for scan, cards in enumerate(table.cards):
        rows = np.arange(starts[scan], starts[scan + 1])
        order = rows[np.argsort(-score[rows], kind="stable")]
        for card in range(cards):
            good = (table.jaccard[order] > RIGHT) & (table.card[order] == card)
            # Other cards of the scan are no rivals.
            rivals = good | (table.jaccard[order] <= RIGHT)
            places = np.flatnonzero(good[rivals])
            found.setdefault(table.sets[scan], []).append(places[0] if len(places) else 10**6)
    report = {}
    for name, places in found.items():
        places = np.array(places)
        report[name] = [float((places < rank).mean()) for rank in ranks] + [float((places < 10**6).mean()), len(places)]
    return report
