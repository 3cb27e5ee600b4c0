"""The ratchet itself: it must fail on what is worse, and only then."""

from ratchet import compare, rounded_up, tightened

EXPECTED = {"code": 1, "verdict": "corners found", "corner_error": 1.5, "sides": {"top": True, "left": False}}


def changed(**values):
    return {**EXPECTED, **values}


def test_the_same_answer_is_neither_worse_nor_better():
    assert compare(EXPECTED, changed(corner_error=1.4999)) == ([], [])


def test_a_greater_error_is_worse():
    worse, better = compare(EXPECTED, changed(corner_error=1.5001))
    assert worse == ["corner_error: 1.51, expected at most 1.5"] and not better


def test_a_smaller_error_is_better():
    worse, better = compare(EXPECTED, changed(corner_error=0.7))
    assert not worse and better == ["corner_error: 0.7, expected 1.5"]


def test_another_code_or_verdict_is_worse():
    assert compare(EXPECTED, changed(code=0))[0] == ["code: 0, expected 1"]
    assert compare(EXPECTED, changed(verdict="too small"))[0]


def test_a_lost_visible_border_is_worse_and_a_gained_one_better():
    lost = compare(EXPECTED, changed(sides={"top": False, "left": False}), ("top", "left"))
    assert lost == (["top border: not found"], [])
    gained = compare(EXPECTED, changed(sides={"top": True, "left": True}), ("top", "left"))
    assert gained == ([], ["left border: found"])


def test_a_border_found_where_none_is_visible_is_worse():
    assert compare(EXPECTED, changed(sides={"top": True, "left": True}), ("top",)) == (["left border: found"], [])


def test_an_error_that_is_no_longer_measured_is_worse():
    measured = changed()
    del measured["corner_error"]
    assert compare(EXPECTED, measured)[0] == ["corner_error: no longer measured, expected 1.5"]


def test_tightening_takes_over_only_what_is_better():
    worse = changed(code=0, corner_error=9.0, sides={"top": False, "left": False})
    assert tightened(EXPECTED, worse, ("top", "left")) == EXPECTED
    better = changed(corner_error=0.701, sides={"top": True, "left": True})
    assert tightened(EXPECTED, better, ("top", "left")) == changed(corner_error=0.71, sides={"top": True, "left": True})


def test_errors_are_kept_to_the_hundredth_above():
    assert [rounded_up(value) for value in (0.0, 0.01, 0.0101, 2.0)] == [0.0, 0.01, 0.02, 2.0]
