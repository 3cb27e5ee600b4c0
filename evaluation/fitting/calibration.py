"""From scores to probabilities."""

import numpy as np
from scipy import optimize

from evaluation.fitting.additive import KNOTS

LOG_ODDS = (-4.0, -2.0, -1.0, 0.0, 1.0, 2.0, 3.5, 6.0)  # where the curve has its knots
assert len(LOG_ODDS) == KNOTS

# The curve of a model that tells nothing.
NOTHING = (np.arange(KNOTS, dtype=np.float32), np.zeros(KNOTS))


def _probability(log_odds):
    return 1 / (1 + np.exp(-log_odds))


def confidence_curve(score, right):
    """Knots and values of the probability that what has such a score is right: a logistic curve (J. Platt,
    "Probabilistic outputs for support vector machines", 1999), as straight pieces."""

    def loss(parameters):
        log_odds = parameters[0] * score + parameters[1]
        return np.logaddexp(0, np.where(right > 0.5, -log_odds, log_odds)).sum()

    slope, offset = optimize.minimize(loss, [1.0, 0.0], method="Nelder-Mead").x
    log_odds = np.array(LOG_ODDS)
    return (log_odds - offset) / slope, _probability(log_odds)
