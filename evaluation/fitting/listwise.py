"""What a judgement is fitted to: of all candidates of a scan, and "none of them" with a score of 0, the right ones are to
have the probability (Z. Cao and others, "Learning to rank: from pairwise approach to listwise approach", ICML 2007)."""

from dataclasses import dataclass

import numpy as np


@dataclass
class Lists:
    """Groups of rows that compete: `group` of each row, how `right` it is (0 to 1), and the `weight` of each group."""

    group: np.ndarray
    right: np.ndarray
    weight: np.ndarray


def group_sums(values, group, count):
    return np.bincount(group, weights=values, minlength=count)


def listwise_loss(score, lists, count):
    """The listwise loss and its first and second derivatives by each row's score. Rows may be right in part."""
    top = np.zeros(count)  # the score of "none of them"
    np.maximum.at(top, lists.group, score)
    power = np.exp(score - top[lists.group])
    none = np.exp(-top)
    everything = group_sums(power, lists.group, count) + none
    right = group_sums(power * lists.right, lists.group, count)
    has_right = group_sums(lists.right, lists.group, count) > 0
    wanted = np.where(has_right, right, none) + 1e-12
    loss = float((lists.weight * (np.log(everything) - np.log(wanted))).sum())
    share = power / everything[lists.group]
    wanted_share = np.where(has_right[lists.group], power * lists.right / wanted[lists.group], 0.0)
    weight = lists.weight[lists.group]
    return loss, weight * (share - wanted_share), weight * np.maximum(share * (1 - share), 1e-4)
