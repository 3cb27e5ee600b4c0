"""Sums of piecewise linear curves, fitted to rank the right quadrilateral first.

A generalised additive model (T. Hastie and R. Tibshirani, "Generalized Additive Models", Statistical Science 1, 1986)
under the listwise loss.
"""

from dataclasses import dataclass

import numpy as np
from scipy import optimize, sparse

from evaluation.fitting.listwise import listwise_loss

KNOTS = 8
QUANTILES = (0.01, 0.10, 0.25, 0.40, 0.55, 0.70, 0.85, 0.99)


@dataclass
class Model:
    """The curves: knots and values, features x KNOTS, and what is added to their sum."""

    at: np.ndarray
    value: np.ndarray
    offset: float

    def __call__(self, features):
        score = np.full(len(features), self.offset)
        for i in range(features.shape[1]):
            score += np.interp(features[:, i], self.at[i], self.value[i])
        return score


def place_knots(features):
    """Rising knots at the quantiles of each feature; what takes few values gets knots between and beyond them."""
    at = np.quantile(features, QUANTILES, axis=0).T.astype(np.float32)
    for knots in at:
        distinct = np.unique(knots)
        if len(distinct) < KNOTS:
            low, high = distinct[0], distinct[-1]
            if high - low < 1e-3:
                high = low + 1.0
            knots[:] = np.linspace(low, high, KNOTS)
    return at


def basis(features, at):
    """The weights of the knots' values in each row's sum, as a sparse matrix."""
    rows, count = features.shape
    columns = np.empty((rows, count, 2), dtype=np.int32)
    weights = np.empty((rows, count, 2), dtype=np.float32)
    for i in range(count):
        x = np.clip(features[:, i], at[i, 0], at[i, -1])
        k = np.clip(np.searchsorted(at[i], x, side="right") - 1, 0, KNOTS - 2)
        share = (x - at[i, k]) / (at[i, k + 1] - at[i, k])
        columns[:, i, 0], columns[:, i, 1] = i * KNOTS + k, i * KNOTS + k + 1
        weights[:, i, 0], weights[:, i, 1] = 1 - share, share
    pointers = np.arange(rows + 1, dtype=np.int64) * (2 * count)
    return sparse.csr_matrix((weights.ravel(), columns.ravel(), pointers), shape=(rows, count * KNOTS))


def _penalty_matrix(features):
    """Second differences of each curve's values, and a little of the first: curves stay smooth and small."""
    second = sparse.diags([1.0, -2.0, 1.0], [0, 1, 2], shape=(KNOTS - 2, KNOTS))
    first = 0.3 * sparse.diags([-1.0, 1.0], [0, 1], shape=(KNOTS - 1, KNOTS))
    small = 0.05 * sparse.identity(KNOTS)
    return sparse.block_diag([sparse.vstack([second, first, small])] * features).tocsr()


def fit(features, lists, strength=2.0, start=None, iterations=250):
    """The model with the least penalised loss, by L-BFGS (D. C. Liu and J. Nocedal, 1989)."""
    at = place_knots(features) if start is None else start.at
    matrix = basis(features, at)
    transposed = matrix.T.tocsr()
    penalty = _penalty_matrix(features.shape[1])
    count = int(lists.group.max()) + 1

    def objective(parameters):
        offset, values = parameters[0], parameters[1:]
        loss, slope, _ = listwise_loss(matrix @ values + offset, lists, count)
        rough = penalty @ values
        gradient = transposed @ slope + 2 * strength * (penalty.T @ rough)
        return loss + strength * float(rough @ rough), np.concatenate([[slope.sum()], gradient])

    first = np.zeros(1 + matrix.shape[1])
    if start is not None:
        first[0], first[1:] = start.offset, start.value.ravel()
    result = optimize.minimize(objective, first, jac=True, method="L-BFGS-B", options={"maxiter": iterations})
    value = result.x[1:].reshape(-1, KNOTS)
    return Model(at, value.astype(np.float32), float(result.x[0]))


def flat(features):
    """A model that tells nothing."""
    return Model(np.tile(np.arange(KNOTS, dtype=np.float32), (features, 1)), np.zeros((features, KNOTS), np.float32), 0.0)
