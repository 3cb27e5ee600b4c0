"""One method's answer held against the truth of one scan."""

from dataclasses import dataclass
from math import inf

from evaluation import polygons

RIGHT = 0.9  # a Jaccard index above this: the card was found
NEAR = 0.8  # above this: the corners and sides that were found are the card's, and can be measured
PLACES = (0.15, 0.5, 0.85)  # of a side's length: where its distance is taken; corners may be round


@dataclass(frozen=True)
class JudgedCard:
    """How a true card was found."""

    jaccard: float  # 0 where it was missed
    reachable: float  # the best Jaccard index of what was found for it and the alternatives to that
    corner_errors: tuple  # pixels, of each corner with two visible sides; infinite where the card was missed


@dataclass(frozen=True)
class JudgedClaim:
    """How right a reported card is."""

    confidence: float
    jaccard: float  # 0 where it belongs to no true card
    off: float  # see `offset`


@dataclass(frozen=True)
class JudgedSide:
    """How exact a side of a card that was found is."""

    share: float
    error: float  # pixels


@dataclass(frozen=True)
class Judgement:
    cards: tuple
    claims: tuple
    sides: tuple


def aligned(truth, found):
    """The found corners, clockwise and in the turn that suits the true ones best."""
    ring = polygons.clockwise(found)
    turns = [ring[turn:] + ring[:turn] for turn in range(4)]
    return min(turns, key=lambda turn: sum(polygons.distance(a, b) for a, b in zip(truth, turn)))


def pair(truths, found, size):
    """The pairs (true, found, Jaccard index) by index, the best first; each occurs in one pair at most."""
    ranked = sorted(((polygons.jaccard(true.corners, card.corners, size), -i, -j)
                     for i, true in enumerate(truths) for j, card in enumerate(found)), reverse=True)
    pairs, used_true, used_found = [], set(), set()
    for index, i, j in ranked:
        if index > 0 and -i not in used_true and -j not in used_found:
            pairs.append((-i, -j, index))
            used_true.add(-i)
            used_found.add(-j)
    return pairs


def corner_errors(truth, found):
    """Of each corner with two visible sides the distance to the found one; infinite where nothing was found."""
    measured = [i for i in range(4) if truth.visible[i - 1] and truth.visible[i]]
    if found is None:
        return tuple(inf for _ in measured)
    corners = aligned(truth.corners, found.corners)
    return tuple(polygons.distance(truth.corners[i], corners[i]) for i in measured)


def offset(truth, found, size):
    """How far off a found card is, as a share of the diagonal of what the scan shows of the true one.

    The largest distance of a true corner within the frame to the found one; beside that, for what the frame cuts off
    differently, how far one of the two reaches out of the other within the frame.
    """
    frame = polygons.frame_of(size)
    true_part = polygons.cut(polygons.clockwise(truth), frame)
    found_part = polygons.cut(polygons.clockwise(found), frame)
    corners = aligned(truth, found)
    worst = max((polygons.distance(a, b) for a, b in zip(truth, corners) if polygons.within(a, size)), default=0.0)
    worst = max(worst, polygons.reach(true_part, found_part), polygons.reach(found_part, true_part))
    shown = polygons.diameter(true_part)
    return worst / shown if shown > 0 else inf


def side_errors(truth, found, size):
    """Each side of a found card whose true one lies on the scan: its share, and its largest distance in pixels."""
    corners = aligned(truth.corners, found.corners)
    turn = polygons.clockwise(found.corners).index(corners[0])
    flipped = polygons.signed_area(found.corners) < 0
    for i in range(4):
        part = polygons.segment_within(truth.corners[i], truth.corners[(i + 1) % 4], size)
        if part is None:
            continue
        (ax, ay), (bx, by) = part
        places = [(ax + (bx - ax) * at, ay + (by - ay) * at) for at in PLACES]
        line = corners[i], corners[(i + 1) % 4]
        share = found.shares[(3 - i - turn) % 4 if flipped else (i + turn) % 4]
        yield JudgedSide(share, max(polygons.distance_to_line(place, *line) for place in places))


def judge_card(truth, found, index, size):
    """A true card and what was found for it, if anything."""
    if found is None:
        return JudgedCard(0.0, 0.0, corner_errors(truth, None))
    others = [polygons.jaccard(truth.corners, other.corners, size) for other in found.alternatives]
    return JudgedCard(index, max([index, *others]), corner_errors(truth, found if index > NEAR else None))


def judge(scan, found):
    """An answer. A scan with one card is judged by the surest one reported: a caller who wants one takes that."""
    considered = found[:1] if len(scan.cards) == 1 else found
    partner = {i: (considered[j], index) for i, j, index in pair(scan.cards, considered, scan.size)}
    cards = [judge_card(true, *partner.get(i, (None, 0.0)), scan.size) for i, true in enumerate(scan.cards)]
    sides = [side for i, (card, index) in sorted(partner.items(), key=lambda item: item[0]) if index > NEAR
             for side in side_errors(scan.cards[i], card, scan.size)]
    owner = {j: (i, index) for i, j, index in pair(scan.cards, found, scan.size)}
    claims = []
    for j, card in enumerate(found):
        i, index = owner.get(j, (None, 0.0))
        off = inf if i is None else offset(scan.cards[i].corners, card.corners, scan.size)
        claims.append(JudgedClaim(card.confidence, index, off))
    return Judgement(tuple(cards), tuple(claims), tuple(sides))
