"""What the evaluation makes of scans, truths and answers before they are measured."""

import ctypes
import math

import library as binding
import numpy as np
import pytest

from evaluation import sources
from evaluation.methods import found_of
from evaluation.records import Answer, Found, Scan, TrueCard, points
from evaluation.running import Result, checksum

CORNERS = points([(1, 2), (30, 3), (29, 20), (2, 21)])
SCAN = Scan("a.ppm", "singles", 1000001, 40, 30, 300.0, "dark glass", "plain", "free", ("jpeg",),
            (TrueCard(CORNERS, (True, True, False, True)),))


class TestRecords:
    def test_sides_of_the_interface_are_put_in_the_order_of_the_corners(self):
        card = binding.Card(ctypes.sizeof(binding.Card))
        card.quad[:] = [1, 2, 30, 3, 29, 20, 2, 21]
        for index, share in enumerate((0.1, 0.2, 0.3, 0.4)):  # top, bottom, left, right
            card.side[index].confidence = share
        card.confidence = 0.7
        assert found_of(card) == Found(CORNERS, (0.1, 0.4, 0.2, 0.3), 0.7)

    def test_a_result_is_the_same_after_having_been_kept(self):
        found = Found(CORNERS, (0.9, 0.8, 0.1, 0.5), 0.75, (Found(CORNERS[::-1], confidence=0.2),))
        result = Result(SCAN, {"anywhere": Answer((found,), 1234)})
        assert Result.read(result.json()) == result


class TestChecksum:
    @staticmethod
    def of(found, nanoseconds=0):
        return checksum([Result(SCAN, {"anywhere": Answer((found,), nanoseconds)})], "anywhere")

    def test_does_not_depend_on_the_time(self):
        assert self.of(Found(CORNERS), 1) == self.of(Found(CORNERS), 2)

    def test_sees_the_last_bit_of_every_number(self):
        plain = Found(CORNERS, alternatives=(Found(CORNERS, (0.5,) * 4, 0.5),))
        changed = [Found(((math.nextafter(1, 2), 2.0), *CORNERS[1:]), alternatives=plain.alternatives),
                   Found(CORNERS, (1.0, 1.0, 1.0, math.nextafter(1, 0)), alternatives=plain.alternatives),
                   Found(CORNERS, confidence=math.nextafter(1, 0), alternatives=plain.alternatives),
                   Found(CORNERS, alternatives=(Found(CORNERS, (0.5,) * 4, math.nextafter(0.5, 1)),)),
                   Found(CORNERS)]
        assert len({self.of(found) for found in (plain, *changed)}) == 6


class TestSources:
    def test_sets_are_drawn_in_shares(self):
        shares = sources.drawn("draw", ("white", "fine"), 12, "scratch")
        assert [(share.set, share.first, share.count) for share in shares] == [
            ("white", 1000001, 8), ("white", 1000009, 4), ("fine", 1000001, 2), ("fine", 1000003, 1)]

    def test_a_given_truth_is_scaled_to_the_picture(self):
        entry = {"picture": "a.png", "size": [100, 50], "cards": [[[-10, 5], [50, 5], [50, 40], [-10, 40]]]}
        scan = sources.given_scan("folder", 3, entry, np.zeros((100, 200, 3), np.uint8), 0.0)
        assert (scan.set, scan.seed, scan.size) == ("folder", 3, (200, 100))
        assert scan.cards[0].corners == ((-20, 10), (100, 10), (100, 80), (-20, 80))
        assert scan.cards[0].visible == (True, True, True, False)

    def test_a_truth_of_another_shape_is_refused(self):
        with pytest.raises(ValueError, match="another shape"):
            sources.given_scan("folder", 0, {"picture": "a.png", "size": [50, 100], "cards": []},
                               np.zeros((50, 100, 3), np.uint8), 0.0)
