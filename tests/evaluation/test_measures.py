"""The measures of the evaluation, on answers whose measures are known by hand."""

from math import inf, sqrt

import pytest

from evaluation import polygons, summary, tables
from evaluation.judging import JudgedCard, JudgedClaim, JudgedSide, aligned, judge, offset, pair
from evaluation.records import Found, Scan, TrueCard, points
from evaluation.refinement import Corner

SIZE = (400, 300)
CARD = points([(100, 100), (200, 100), (200, 160), (100, 160)])


def moved(corners, x, y):
    return points((a + x, b + y) for a, b in corners)


def scan(*cards):
    return Scan("a.ppm", "singles", 1, *SIZE, cards=tuple(TrueCard(card) for card in cards))


class TestJaccard:
    square = points([(0, 0), (10, 0), (10, 10), (0, 10)])

    def test_of_a_square_with_itself_is_one(self):
        assert polygons.jaccard(self.square, self.square, SIZE) == 1.0

    def test_of_a_square_moved_by_half_is_a_third(self):
        assert polygons.jaccard(self.square, moved(self.square, 5, 0), SIZE) == pytest.approx(1 / 3)

    def test_of_squares_that_touch_is_none(self):
        assert polygons.jaccard(self.square, moved(self.square, 10, 0), SIZE) == 0.0

    def test_does_not_depend_on_the_first_corner_or_the_direction(self):
        found = moved(self.square, 5, 0)
        for turn in range(4):
            turned = found[turn:] + found[:turn]
            assert polygons.jaccard(self.square, turned, SIZE) == pytest.approx(1 / 3)
            assert polygons.jaccard(self.square, turned[::-1], SIZE) == pytest.approx(1 / 3)

    def test_of_a_square_and_the_diamond_in_it_is_a_half(self):
        diamond = points([(5, 0), (10, 5), (5, 10), (0, 5)])
        assert polygons.jaccard(self.square, diamond, SIZE) == pytest.approx(0.5)

    def test_leaves_out_what_lies_beyond_the_frame(self):
        true = points([(-50, 0), (10, 0), (10, 10), (-50, 10)])
        assert polygons.jaccard(true, self.square, SIZE) == pytest.approx(1.0)

    def test_of_a_card_beyond_the_frame_is_none(self):
        assert polygons.jaccard(self.square, moved(self.square, -20, 0), SIZE) == 0.0

    def test_counts_only_the_inside_of_a_hollow_quadrilateral(self):
        arrow = points([(0, 0), (10, 0), (2, 2), (0, 10)])  # the half square less a triangle beside its long side
        assert polygons.jaccard(self.square, arrow, SIZE) == pytest.approx(0.2)


class TestPolygons:
    def test_the_diagonal_of_a_rectangle(self):
        assert polygons.diameter(points([(0, 0), (30, 0), (30, 40), (0, 40)])) == 50.0

    def test_the_distance_to_a_line_that_goes_on(self):
        assert polygons.distance_to_line((100, 3), (0, 0), (10, 0)) == 3.0

    def test_a_segment_is_cut_at_the_frame(self):
        assert polygons.segment_within((-10, 5), (10, 5), SIZE) == ((0, 5), (10, 5))
        assert polygons.segment_within((300, 290), (300, 320), SIZE) == ((300, 290), (300, 300))

    def test_a_segment_beyond_the_frame_or_across_its_corner_alone_is_none(self):
        assert polygons.segment_within((-10, 5), (-1, 50), SIZE) is None
        assert polygons.segment_within((-10, 5), (-10, 50), SIZE) is None
        assert polygons.segment_within((390, -10), (410, 10), SIZE) is None

    def test_how_far_one_reaches_out_of_another(self):
        assert polygons.reach(moved(CARD, 3, 4), CARD) == 5.0
        assert polygons.reach(CARD, CARD) == 0.0


class TestCorners:
    def test_are_paired_whichever_comes_first(self):
        found = moved(CARD, 0.3, 0.4)
        for turn in range(4):
            assert aligned(CARD, found[turn:] + found[:turn]) == list(found)
            assert aligned(CARD, (found[turn:] + found[:turn])[::-1]) == list(found)

    def test_errors_are_distances(self):
        found = Found(moved(CARD, 3, 4)[2:] + moved(CARD, 3, 4)[:2])
        assert judge(scan(CARD), (found,)).cards[0].corner_errors == (5.0,) * 4

    def test_beside_a_side_that_is_not_visible_are_left_out(self):
        true = TrueCard(CARD, (True, True, True, False))  # without the left side the corners at it do not count
        picture = Scan("a.ppm", "singles", 1, *SIZE, cards=(true,))
        corners = (CARD[0], (203.0, 100.0), (200.0, 161.0), CARD[3])
        assert judge(picture, (Found(corners),)).cards[0].corner_errors == (3.0, 1.0)

    def test_of_a_missed_card_are_infinite(self):
        assert judge(scan(CARD), ()).cards[0].corner_errors == (inf,) * 4
        far = Found(moved(CARD, 50, 0))  # a Jaccard index of 1/3
        judged = judge(scan(CARD), (far,)).cards[0]
        assert (judged.jaccard, judged.corner_errors) == (pytest.approx(1 / 3), (inf,) * 4)

    def test_shares_are_of_those_found_and_of_all(self):
        cards = [JudgedCard(1.0, 1.0, (0.1, 0.3, 0.4, 2.0)), JudgedCard(0.0, 0.0, (inf,) * 4)]
        exact = summary.corners(cards)
        assert (exact.count, exact.found) == (8, 4)
        assert exact.median == pytest.approx(0.35)
        assert exact.ninetieth == pytest.approx(0.4 + 0.7 * 1.6)
        assert exact.within_found == (0.5, 0.75, 0.75)
        assert exact.within_all == (0.25, 0.375, 0.375)


class TestSides:
    def test_error_is_the_largest_distance_to_the_line(self):
        corners = points([(100, 100), (200, 110), (200, 160), (100, 160)])  # the top falls by one in ten
        top, right, bottom, left = judge(scan(CARD), (Found(corners, (0.9, 0.8, 0.7, 0.6)),)).sides
        assert (top.share, top.error) == (0.9, pytest.approx(8.5 / sqrt(1.01)))
        assert [(side.share, side.error) for side in (right, bottom, left)] == [(0.8, 0), (0.7, 0), (0.6, 0)]

    def test_shares_follow_the_corners(self):
        for turn in range(4):
            corners, shares = CARD[turn:] + CARD[:turn], (0.1, 0.2, 0.3, 0.4)
            expected = [shares[(side - turn) % 4] for side in range(4)]
            assert [side.share for side in judge(scan(CARD), (Found(corners, shares),)).sides] == expected

    def test_shares_follow_corners_that_run_the_other_way(self):
        corners = (CARD[0], CARD[3], CARD[2], CARD[1])  # left, bottom, right, top
        sides = judge(scan(CARD), (Found(corners, (0.1, 0.2, 0.3, 0.4)),)).sides
        assert [side.share for side in sides] == [0.4, 0.3, 0.2, 0.1]

    def test_beyond_the_frame_are_left_out(self):
        true = moved(CARD, -150, 0)  # the left side lies beyond the frame
        found = Found(points([(0, 100), (50, 100), (50, 160), (0, 160)]), (0.9, 0.8, 0.7, 0.0))
        assert [side.share for side in judge(scan(true), (found,)).sides] == [0.9, 0.8, 0.7]

    def test_bins_by_share(self):
        sides = [JudgedSide(1.0, 0.1), JudgedSide(0.8, 3.0), JudgedSide(0.79, 0.5), JudgedSide(0.5, 2.0),
                 JudgedSide(0.0, 2.1)]
        found = [(part.least, len(part.values), right, wrong) for part, right, wrong in summary.side_bins(sides)]
        assert found == [(0.0, 1, 0.0, 1.0), (0.5, 1, 0.0, 0.0), (0.6, 1, 1.0, 0.0), (0.8, 2, 0.5, 0.5)]


class TestCards:
    def test_pairs_are_the_best_and_each_is_used_once(self):
        truths = [TrueCard(CARD), TrueCard(moved(CARD, 0, 70))]
        found = [Found(moved(CARD, 10, 70)), Found(moved(CARD, 0, 1)), Found(moved(CARD, 2, 0))]
        pairs = pair(truths, found, SIZE)
        assert [(true, card) for true, card, _ in pairs] == [(0, 1), (1, 0)]
        assert [index for _, _, index in pairs] == [pytest.approx(59 / 61), pytest.approx(90 / 110)]

    def test_a_scan_of_one_card_is_judged_by_the_surest(self):
        wrong, right = Found(moved(CARD, 150, 100), confidence=0.8), Found(CARD, confidence=0.7)
        judged = judge(scan(CARD), (wrong, right))
        assert judged.cards[0].jaccard == 0.0
        assert [(claim.jaccard, claim.off) for claim in judged.claims] == [(0.0, inf), (1.0, 0.0)]

    def test_alternatives_are_looked_at(self):
        found = Found(moved(CARD, 50, 0), alternatives=(Found(CARD),))
        assert judge(scan(CARD), (found,)).cards[0].reachable == 1.0

    def test_overlap_counts_what_is_above(self):
        cards = [JudgedCard(index, index, ()) for index in (1.0, 0.96, 0.9, 0.0)]
        found = summary.overlap(cards)
        assert (found.cards, found.mean) == (4, pytest.approx(0.715))
        assert (found.above, found.reachable) == ((0.5, 0.5, 0.25), 0.5)

    def test_nothing_to_measure_is_told_as_none(self):
        assert summary.overlap([]).mean is None
        assert summary.corners([]).within_all == (None, None, None)


class TestOffset:
    def test_is_a_share_of_the_diagonal(self):
        true = points([(100, 100), (180, 100), (180, 160), (100, 160)])  # a diagonal of 100
        found = points([(100, 100), (183, 104), (180, 160), (100, 160)])
        assert offset(true, found, SIZE) == pytest.approx(0.05)

    def test_does_not_ask_for_corners_beyond_the_frame(self):
        true = points([(-40, 100), (80, 100), (80, 160), (-40, 160)])  # 80 x 60 are on the scan
        assert offset(true, points([(0, 100), (80, 100), (80, 160), (0, 160)]), SIZE) == 0.0
        assert offset(true, points([(6, 100), (80, 100), (80, 160), (6, 160)]), SIZE) == pytest.approx(0.06)


class TestConfidence:
    claims = [JudgedClaim(0.95, 0.99, 0.001), JudgedClaim(0.9, 0.5, 0.3), JudgedClaim(0.92, 0.95, 0.021),
              JudgedClaim(1.0, 0.98, 0.02), JudgedClaim(0.4, 0.0, inf)]

    def test_bins(self):
        bins = {part.least: (len(part.values), mean, right)
                for part, mean, right in summary.confidence_bins(self.claims)}
        assert bins[0.9] == (2, pytest.approx(0.91), 0.5)
        assert bins[0.95] == (1, 0.95, 1.0)
        assert bins[0.99] == (1, 1.0, 1.0)
        assert bins[0.4] == (1, 0.4, 0.0)
        assert bins[0.5] == (0, None, None)

    def test_high_confidence_that_is_off(self):
        claims = [JudgedClaim(0.985, 0.99, 0.001), JudgedClaim(0.98, 0.5, 0.3), JudgedClaim(0.99, 0.95, 0.021),
                  JudgedClaim(1.0, 0.98, 0.02), JudgedClaim(0.97, 0.0, inf)]
        trust = summary.trust(claims)
        assert (trust.claims, trust.off, trust.one_in) == (4, 2, 2.0)
        assert summary.trust(claims[:1]).one_in == inf
        assert summary.trust([]).one_in is None

    def test_false_alarms_are_scans(self):
        empty = [judge(scan(), (Found(CARD, confidence=0.6), Found(moved(CARD, 0, 100), confidence=0.5))),
                 judge(scan(), (Found(CARD, confidence=0.49),)), judge(scan(), ())]
        assert summary.false_alarms(empty, summary.LIKELY) == 1
        assert summary.false_alarms(empty, summary.HIGH) == 0

    def test_cards_reported_beside_the_true_ones(self):
        found = (Found(CARD), Found(moved(CARD, 150, 0)), Found(moved(CARD, 0, 100), confidence=0.3))
        assert summary.beside([judge(scan(CARD), found)]) == 1


def test_refinement_is_told_by_set_and_by_contrast():
    corners = {"singles": (Corner(0.3, 64.0), Corner(2.0, 7.9)), "white": (Corner(0.5, 8.0), Corner(1.1, 8.0))}
    rows = [line for line in tables.refinement(corners).splitlines() if line.startswith("| ")][2:]
    assert rows == [
        "| singles | 2 | 1.15 | 1.83 | 50.0 | 50.0 | 50.0 |",
        "| white | 2 | 0.80 | 1.04 | 0.0 | 50.0 | 50.0 |",
        "| a contrast of 0 to 8 | 1 | 2.00 | 2.00 | 0.0 | 0.0 | 0.0 |",
        "| a contrast of 8 to 16 | 2 | 0.80 | 1.04 | 0.0 | 50.0 | 50.0 |",
        "| a contrast of 16 to 32 | 0 | - | - | - | - | - |",
        "| a contrast of 32 to 64 | 0 | - | - | - | - | - |",
        "| a contrast of 64 to 256 | 1 | 0.30 | 0.30 | 100.0 | 100.0 | 100.0 |",
    ]
