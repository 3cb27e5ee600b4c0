"""From scores to probabilities."""

import numpy as np

from evaluation.fitting.additive import KNOTS


def rising(score, right):
    """The share of right ones at each score, never falling: pool adjacent violators (M. Ayer and others, 1955)."""
    order = np.argsort(score, kind="stable")
    blocks = []  # (share, count, greatest score)
    for place in order:
        blocks.append([float(right[place]), 1, score[place]])
        while len(blocks) > 1 and blocks[-2][0] >= blocks[-1][0]:
            share, count, last = blocks.pop()
            before = blocks[-1]
            before[0] = (before[0] * before[1] + share * count) / (before[1] + count)
            before[1] += count
            before[2] = last
    return blocks


def confidence_curve(score, right):
    """Knots and values of the probability that what has such a score is right.

    A knot lies at each of KNOTS quantiles of the rare, wrong side as much as of the right one; its value is the share of
    right ones around it, with one more of either kind than were seen, so that it never claims to be certain.
    """
    low, high = np.quantile(score, (0.01, 0.99))
    wrong = np.quantile(score[right < 0.5], (0.1, 0.5, 0.9, 0.98)) if (right < 0.5).any() else np.full(4, low)
    at = np.unique(np.concatenate([[low, high], wrong, np.quantile(score[right > 0.5], (0.05, 0.4))]).astype(np.float32))
    if len(at) < KNOTS:
        at = np.linspace(low, high, KNOTS).astype(np.float32)
    smooth = _logistic_rise(score, right, at)
    return at, smooth


def _logistic_rise(score, right, at):
    """The maximum-likelihood curve through the knots, by Newton-like steps on rising increments."""
    from scipy import optimize

    def curve(parameters):
        steps = np.concatenate([[parameters[0]], np.exp(parameters[1:])])
        return np.cumsum(steps)

    def loss(parameters):
        logit = np.interp(score, at, curve(parameters))
        likelihood = np.logaddexp(0, np.where(right > 0.5, -logit, logit)).sum()
        ends = curve(parameters)
        prior = np.logaddexp(0, -ends).sum() * 0.5 + np.logaddexp(0, ends).sum() * 0.5
        return likelihood + prior

    first = np.concatenate([[-2.0], np.zeros(len(at) - 1)])
    best = optimize.minimize(loss, first, method="L-BFGS-B")
    return 1 / (1 + np.exp(-curve(best.x)))


# The curve of a model that tells nothing.
NOTHING = (np.arange(KNOTS, dtype=np.float32), np.zeros(KNOTS))
