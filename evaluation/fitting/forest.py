"""Sums of small decision trees, fitted to give a scan's right quadrilateral the probability.

Gradient boosting (J. Friedman, "Greedy function approximation: a gradient boosting machine", Annals of Statistics 29,
2001) with Newton steps in the leaves and on bins of the features (T. Chen and C. Guestrin, "XGBoost: a scalable tree
boosting system", KDD 2016), on random parts of the groups and features (J. Friedman, "Stochastic gradient boosting",
2002), under the listwise loss.
"""

from dataclasses import dataclass

import numpy as np

from evaluation.fitting.listwise import group_sums, listwise_loss

DEPTH = 4
EDGES = 47  # between the bins of a feature
UNIT = 2048  # leaves are whole numbers of 2048ths, so that a score is exact
RATE = 0.1  # of a full Newton step
GROUPS, FEATURES = 0.6, 0.3  # the shares of groups and features that a tree sees
DAMPING = 3.0  # second derivatives added to a leaf's
LEAST_CURVATURE = 3.0  # and what a leaf has of its own


@dataclass
class Tree:
    """Level by level, the root first: the feature asked for, the greatest bin that goes to the first branch; leaves."""

    feature: np.ndarray
    most: np.ndarray
    value: np.ndarray  # in UNITs

    def leaves(self, bins):
        """Which leaf each row falls into."""
        rows = np.arange(len(bins))
        node = np.zeros(len(bins), dtype=np.int64)
        for _ in range(DEPTH):
            node = 2 * node + 1 + (bins[rows, self.feature[node]] > self.most[node])
        return node - (2**DEPTH - 1)


@dataclass
class Forest:
    edges: np.ndarray  # features x EDGES, rising, infinite where there are fewer
    trees: list

    def bins(self, features):
        columns = [np.searchsorted(edges, features[:, i]) for i, edges in enumerate(self.edges)]
        return np.column_stack(columns).astype(np.uint8)

    def __call__(self, features):
        bins = self.bins(features)
        units = np.zeros(len(bins), dtype=np.int64)
        for tree in self.trees:
            units += tree.value[tree.leaves(bins)]
        return units / UNIT


def place_edges(features):
    """The quantiles of each feature, without what repeats."""
    edges = np.full((features.shape[1], EDGES), np.inf, dtype=np.float32)
    quantiles = np.quantile(features, np.linspace(0, 1, EDGES + 2)[1:-1], axis=0).T.astype(np.float32)
    for placed, values in zip(edges, quantiles):
        distinct = np.unique(values)
        placed[: len(distinct)] = distinct
    return edges


def _gain(slope, curvature):
    return slope**2 / (curvature + DAMPING)


def _split(bins, node, nodes, slope, curvature, columns):
    """For each node of a level the feature and the bin whose split wins most; where none does, all go one way."""
    best = np.full(nodes, 1e-9)
    feature, most = np.zeros(nodes, dtype=np.uint8), np.full(nodes, EDGES, dtype=np.uint8)
    whole, whole_curvature = group_sums(slope, node, nodes)[:, None], group_sums(curvature, node, nodes)[:, None]
    for column in columns:
        cell = node * (EDGES + 1) + bins[:, column]
        low = group_sums(slope, cell, nodes * (EDGES + 1)).reshape(nodes, -1).cumsum(axis=1)
        low_curvature = group_sums(curvature, cell, nodes * (EDGES + 1)).reshape(nodes, -1).cumsum(axis=1)
        high_curvature = whole_curvature - low_curvature
        gain = (_gain(low, low_curvature) + _gain(whole - low, high_curvature) - _gain(whole, whole_curvature))
        gain[np.minimum(low_curvature, high_curvature) < LEAST_CURVATURE] = 0.0
        at = gain.argmax(axis=1)
        won = gain[np.arange(nodes), at]
        better = won > best
        best[better], feature[better], most[better] = won[better], column, at[better]
    return feature, most


def _grow(bins, slope, curvature, columns):
    node = np.zeros(len(bins), dtype=np.int64)
    rows = np.arange(len(bins))
    levels = []
    for level in range(DEPTH):
        feature, most = _split(bins, node, 2**level, slope, curvature, columns)
        levels.append((feature, most))
        node = 2 * node + (bins[rows, feature[node]] > most[node])
    step = -group_sums(slope, node, 2**DEPTH) / (group_sums(curvature, node, 2**DEPTH) + DAMPING)
    value = np.round(RATE * step * UNIT).astype(np.int16)
    return Tree(np.concatenate([f for f, _ in levels]), np.concatenate([m for _, m in levels]), value)


def fit(features, lists, trees=600, seed=1):
    forest = Forest(place_edges(features), [])
    bins = forest.bins(features)
    random = np.random.default_rng(seed)
    count = int(lists.group.max()) + 1
    asked = round(features.shape[1] * FEATURES)
    score = np.zeros(len(bins))
    for _ in range(trees):
        _, slope, curvature = listwise_loss(score, lists, count)
        seen = (random.random(count) < GROUPS)[lists.group]
        columns = np.sort(random.choice(features.shape[1], asked, replace=False))
        tree = _grow(bins[seen], slope[seen], curvature[seen], columns)
        forest.trees.append(tree)
        score += tree.value[tree.leaves(bins)] / UNIT
    return forest


def nothing(features):
    """A forest that tells nothing."""
    return Forest(np.full((features, EDGES), np.inf, dtype=np.float32), [])
