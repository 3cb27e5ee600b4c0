"""Marks speak of the line that they stand at; too many of them are as wrong as too few."""

from marks import complaints, marks_of


def test_a_mark_speaks_of_its_line_or_of_the_one_below_it():
    text = """int f(int x) {
  // Never: callers pass no zero,
  // not even at first.
  if (x == 0) return 1;
  return x > 1 ? 2 : 3;  // Never (2): neither.
}
"""
    assert marks_of(text) == {4: 1, 5: 2}


def test_a_comment_that_only_contains_the_word_is_no_mark():
    assert marks_of("// It never ends.\nint x;\n// What is: Never: said.\nint y;\n") == {}


def test_two_marks_of_a_line_add_up():
    text = "// Never: this.\n// Never (3): that.\nif (a && b) f();\n"
    assert marks_of(text) == {3: 4}


def test_what_is_reached_needs_no_mark():
    assert complaints({1: 5}, {(1, 2, 0): 3, (1, 2, 1): 2}, {}) == []


def test_a_line_that_does_not_run_is_told_with_or_without_a_mark():
    assert complaints({7: 0}, {(7, 2, 0): 0}, {}) == [(7, "line")]
    assert (7, "line") in complaints({7: 0}, {(7, 2, 0): 0}, {7: 1})


def test_a_branch_that_is_not_taken_is_told_unless_it_is_marked():
    branches = {(4, 2, 0): 0, (4, 2, 1): 9}
    assert complaints({4: 9}, branches, {}) == [(4, "branch 1 of 2")]
    assert complaints({4: 9}, branches, {4: 1}) == []


def test_more_branches_than_are_marked_are_told():
    branches = {(4, 4, 0): 0, (4, 4, 1): 9, (4, 4, 2): 0, (4, 4, 3): 1}
    assert complaints({4: 9}, branches, {4: 1}) == [(4, "branch 1 of 4, branch 3 of 4, of which 1 marked")]


def test_a_mark_of_a_branch_that_is_taken_is_told():
    branches = {(4, 2, 0): 1, (4, 2, 1): 9}
    assert complaints({4: 9}, branches, {4: 1}) == [
        (4, "marked: 1 branches never taken, but only 0 are not")]


def test_a_mark_where_there_is_no_branch_is_told():
    assert complaints({4: 9}, {}, {5: 1}) == [(5, "marked: 1 branches never taken, but only 0 are not")]
