"""What the judgement is fitted to, and the parts of the fit that can be known by hand."""

import numpy as np
import pytest

from evaluation.fitting import competitions, forest, leads, listwise, tables


def table_of(rivals, features=((0.0,),), **members):
    """Finalists of one scan whose rivals are the listed pairs."""
    count = len(next(iter(members.values()))) if members else len(features)
    marks = np.zeros((count, tables.MOST_FINALISTS), dtype=bool)
    for a, b in rivals:
        marks[a, b] = marks[b, a] = True
    square = np.array([0, 0, 10, 0, 10, 10, 0, 10], dtype=np.float32)
    row = {"features": np.array(features, dtype=np.float32), "card": np.zeros(count, int), "jaccard": np.zeros(count),
           "distance": np.ones(count), "corners": np.tile(square, (count, 1))} | members
    return tables.Table(scan=np.zeros(count, int), overlaps=marks, rivals=marks, seeds=np.array([7]),
                        cards=np.array([1]), sets=["singles"], **row)


class TestListwiseLoss:
    def test_is_of_the_probability_of_the_right_one_beside_none(self):
        lists = listwise.Lists(np.array([0, 0]), np.array([1.0, 0.0]), np.array([1.0]))
        loss, slope, curvature = listwise.listwise_loss(np.zeros(2), lists, 1)
        assert loss == pytest.approx(np.log(3))
        assert slope == pytest.approx([1 / 3 - 1, 1 / 3])
        assert curvature == pytest.approx([2 / 9, 2 / 9])

    def test_without_a_right_one_is_of_none_of_them(self):
        lists = listwise.Lists(np.array([0]), np.array([0.0]), np.array([2.0]))
        loss, slope, _ = listwise.listwise_loss(np.array([np.log(3)]), lists, 1)
        assert loss == pytest.approx(2 * np.log(4))
        assert slope == pytest.approx([2 * 0.75])

    def test_prefers_the_more_exact_of_two(self):
        lists = listwise.Lists(np.array([0, 0]), np.array([1.0, 0.5]), np.array([1.0]))
        _, slope, _ = listwise.listwise_loss(np.zeros(2), lists, 1)
        assert slope[0] == pytest.approx(1 / 3 - 2 / 3) and slope[1] == pytest.approx(0)


class TestForest:
    @pytest.fixture
    def pairs(self):
        """Groups of two: right is what has a greater sum of two features, if it is above 1; a third feature is noise."""
        random = np.random.default_rng(5)
        features = random.random((6000, 3)).astype(np.float32)
        total = features[:, 0] + features[:, 1]
        group = np.repeat(np.arange(3000), 2)
        first = total[0::2] > total[1::2]
        right = (np.column_stack([first, ~first]).ravel() & (total > 1)).astype(float)
        return features, listwise.Lists(group, right, np.ones(3000))

    def test_finds_the_right_one_of_scans_it_has_not_seen(self, pairs):
        features, lists = pairs
        seen = lists.group < 1500
        fitted = forest.fit(features[seen], listwise.Lists(lists.group[seen], lists.right[seen], np.ones(1500)), 80)
        score = fitted(features[~seen]).reshape(-1, 2)
        right = lists.right[~seen].reshape(-1, 2)
        has = right.any(axis=1)
        assert (score.argmax(axis=1) == right.argmax(axis=1))[has].mean() > 0.93
        assert (score.max(axis=1) < 0)[~has].mean() > 0.75

    def test_is_the_same_each_time(self, pairs):
        first, second = (forest.fit(*pairs, 5) for _ in range(2))
        for a, b in zip(first.trees, second.trees):
            assert (a.feature == b.feature).all() and (a.most == b.most).all() and (a.value == b.value).all()

    def test_scores_are_whole_units(self, pairs):
        score = forest.fit(*pairs, 5)(pairs[0]) * forest.UNIT
        assert (score == np.round(score)).all()

    def test_walks_by_bins(self):
        edges = np.full((2, forest.EDGES), np.inf, dtype=np.float32)
        edges[0, :2], edges[1, :1] = (1, 2), (5,)
        # The second feature at the root, the first one below it on the right, all else to the left.
        feature, most = np.zeros(15, dtype=np.uint8), np.full(15, 47, dtype=np.uint8)
        feature[0], most[0], most[2] = 1, 0, 1
        tree = forest.Tree(feature, most, np.arange(16) * 2048)
        rows = np.array([[9, 5], [2, 5.5], [2.5, 5.5], [1, 4]], dtype=np.float32)
        assert forest.Forest(edges, [tree])(rows).tolist() == [0, 8, 12, 0]


class TestRivals:
    def test_best_is_by_score_and_the_first_of_equal_ones(self):
        table = table_of([(0, 1), (0, 2), (2, 3)], features=[[0]] * 5)
        assert leads.best_rivals(table, np.array([1.0, 3, 3, 2, 9])).tolist() == [1, 0, 3, 2, 4]

    def test_lead_is_of_the_rival_or_of_no_card(self):
        table = table_of([(0, 1), (2, 3)], features=[[0]] * 5)
        assert leads.leads(table, np.array([1.0, 3, 4, -2, -1])).tolist() == [-2, 2, 4, -6, -1]

    def test_duel_tells_what_differs(self):
        corners = np.array([[0, 0, 10, 0, 10, 10, 0, 10], [0, 0, 20, 0, 20, 10, 0, 10], [50, 0, 60, 0, 60, 10, 50, 10]])
        table = table_of([(0, 1)], features=[[1, 5], [4, 3], [2, 2]], corners=corners.astype(np.float32))
        assert leads.duels(table, np.array([1.0, 3, 2])).tolist() == [[1, -2, 2, 2, 1, 5, -3, 2],
                                                                      [3, 2, 0, 0.5, 4, 3, 3, -2],
                                                                      [2, 2, 1, 0, 2, 2, 0, 0]]

    def test_claims_are_the_best_that_do_not_overlap(self):
        table = table_of([(0, 1), (1, 2)], features=[[0]] * 4)
        assert leads.claims(table, np.array([1.0, 3, 2, -1])).tolist() == [1]
        assert leads.claims(table, np.array([3.0, 2, 1, -1])).tolist() == [0, 2]


def test_marks_are_read_sixteen_to_a_number(tmp_path):
    marks = np.zeros(2 * tables.MARKS)
    marks[0], marks[tables.MARKS + 1] = 0b101, 1 << 15
    rows = np.array([[7, -2, 1] + [0] * (tables.HEAD - 3 + 2 + 2 * tables.MARKS),
                     [7, 0, 0.5, 0.25, *range(8), 11, 12, *marks]], dtype=np.float32)
    rows.tofile(tmp_path / "t.bin")
    table = tables.read_finalists(tmp_path / "t.bin", 2, "singles")
    assert table.features.tolist() == [[11, 12]]
    assert np.flatnonzero(table.overlaps[0]).tolist() == [0, 2]
    assert np.flatnonzero(table.rivals[0]).tolist() == [31]
    assert table.corners.tolist() == [list(range(8))] and table.cards.tolist() == [1]


def test_right_ones_compete_with_wrong_ones_alone():
    table = table_of([], features=[[0]] * 3, jaccard=np.array([0.95, 0.85, 0.5]))
    index, lists = competitions.compete(table, 0.9, 0.9, competitions.by_exactness)
    assert index.tolist() == [0, 1, 2] and lists.right == pytest.approx([0.5, 0, 0])
    index, lists = competitions.compete(table, 0.9, 0.8)
    assert index.tolist() == [0, 2] and lists.right.tolist() == [1, 0]
