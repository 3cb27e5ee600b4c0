"""Many judgements taken together."""

from dataclasses import dataclass
from math import inf, isfinite

import numpy as np

from evaluation.judging import RIGHT

HIGH = 0.98  # the confidence from which on a caller may cut without asking
LIKELY = 0.5  # the confidence from which on a card is thought to be there
OFF = 0.02  # of the diagonal: a card off by more was cut wrongly

JACCARD_SHARES = (0.9, 0.95, 0.98)
CORNER_SHARES = (0.3, 0.5, 1.0)  # pixels
CONFIDENCES = (0.0, 0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 0.95, 0.98, 0.99, 1.0)
CONTRASTS = (0.0, 8.0, 16.0, 32.0, 64.0, 256.0)  # levels
SIDE_SHARES = (0.0, 0.5, 0.6, 0.8, 1.0)
SIDE_RIGHT, SIDE_WRONG = 0.5, 2.0  # pixels


def share(values, holds):
    """The share of the values that `holds`, or None without any."""
    return sum(map(holds, values)) / len(values) if values else None


@dataclass(frozen=True)
class Overlap:
    """How well true cards were found."""

    cards: int
    mean: float
    above: tuple  # shares, by JACCARD_SHARES
    reachable: float  # share with the right quadrilateral reported, be it as an alternative


def overlap(cards):
    if not cards:
        return Overlap(0, None, (None,) * len(JACCARD_SHARES), None)
    return Overlap(len(cards), sum(card.jaccard for card in cards) / len(cards),
                   tuple(share(cards, lambda card, least=least: card.jaccard > least) for least in JACCARD_SHARES),
                   share(cards, lambda card: card.reachable > RIGHT))


@dataclass(frozen=True)
class Corners:
    """How exact corners are, in pixels of the scan."""

    count: int  # true corners with two visible sides
    found: int  # of cards that were found
    median: float  # of those found
    ninetieth: float
    within_found: tuple  # shares of those found, by CORNER_SHARES
    within_all: tuple  # shares of all, a missed card's counting as missed


def corners(cards):
    errors = [error for card in cards for error in card.corner_errors]
    found = [error for error in errors if isfinite(error)]
    median, ninetieth = np.percentile(found, (50, 90)) if found else (None, None)

    def shares(values):
        return tuple(share(values, lambda error, most=most: error <= most) for most in CORNER_SHARES)

    return Corners(len(errors), len(found), median, ninetieth, shares(found), shares(errors))


def refined(corners):
    """The same of corners whose refinement began at the truth: all are found."""
    errors = [corner.error for corner in corners]
    median, ninetieth = np.percentile(errors, (50, 90)) if errors else (None, None)
    within = tuple(share(errors, lambda error, most=most: error <= most) for most in CORNER_SHARES)
    return Corners(len(errors), len(errors), median, ninetieth, within, within)


@dataclass(frozen=True)
class Bin:
    """Those from `least` to before `most`; the last bin includes its bound."""

    least: float
    most: float
    values: tuple


def binned(values, bounds, key):
    """The values by bins of key(value)."""
    bins = []
    for least, most in zip(bounds, bounds[1:]):
        last = most == bounds[-1]
        inside = tuple(value for value in values if least <= key(value) < most or (last and key(value) == most))
        bins.append(Bin(least, most, inside))
    return bins


def confidence_bins(claims):
    """(bin, mean confidence, share right) for the cards reported on scans."""
    return [(part, np.mean([claim.confidence for claim in part.values]) if part.values else None,
             share(part.values, lambda claim: claim.jaccard > RIGHT))
            for part in binned(claims, CONFIDENCES, lambda claim: claim.confidence)]


def side_bins(sides):
    """(bin, share right, share wrong) of sides by the share of places that show a border."""
    return [(part, share(part.values, lambda side: side.error <= SIDE_RIGHT),
             share(part.values, lambda side: side.error > SIDE_WRONG))
            for part in binned(sides, SIDE_SHARES, lambda side: side.share)]


@dataclass(frozen=True)
class Trust:
    """What comes of cutting every card that is reported with high confidence."""

    claims: int  # with high confidence
    off: int  # of those, off by more than OFF
    one_in: float  # infinite where none was off; None without claims


def trust(claims):
    sure = [claim for claim in claims if claim.confidence >= HIGH]
    off = sum(claim.off > OFF for claim in sure)
    return Trust(len(sure), off, (len(sure) / off if off else inf) if sure else None)


def beside(judgements):
    """Cards reported beside the true ones: likely ones that are none."""
    return sum(claim.confidence >= LIKELY and claim.jaccard <= RIGHT
               for judgement in judgements for claim in judgement.claims)


def false_alarms(judgements, least):
    """Scans without a card on which one is reported with at least such a confidence."""
    return sum(any(claim.confidence >= least for claim in judgement.claims) for judgement in judgements)


def speed(answers):
    """Median and largest nanoseconds a pixel over (scan, answer)."""
    times = [answer.nanoseconds / (scan.width * scan.height) for scan, answer in answers]
    return (float(np.median(times)), max(times)) if times else (None, None)
