// Quadrilaterals of four lines, and the order of their corners.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <vector>

#include "anywhere/candidates.h"
#include "anywhere/drawn_copy.h"
#include "anywhere/slanted_card.h"

namespace {

using namespace vantrel::anywhere;
using support::SlantedCard;
using support::worst_corner;

/** A card of 200 x 100 around (300, 200), turned clockwise by so many degrees; corner 0 is its own top left. */
Quad turned_card(double degrees) {
  const double angle = degrees * std::acos(-1.0) / 180, c = std::cos(angle), s = std::sin(angle);
  const auto at = [&](double u, double v) { return Point{300 + u * c - v * s, 200 + u * s + v * c}; };
  return {{at(-100, -50), at(100, -50), at(100, 50), at(-100, 50)}};
}

/** Edges one a pixel from a to b. */
void add_run(std::vector<Edge>& places, Point a, Point b) {
  const NormalLine line = line_through(a, b);
  const auto direction = static_cast<std::uint8_t>(direction_of(line.normal.x, line.normal.y));
  const double size = length(b - a);
  for (double at = 0; at < size; at += 1.0) {
    const Point p = a + (b - a) * (at / size);
    places.push_back({static_cast<float>(p.x), static_cast<float>(p.y), 500, direction});
  }
}

TEST(TopSide, BeginsAtTheCornerThatLiesTopLeft) {
  for (const auto& [degrees, first] : {std::pair{0.0, 0},
                                       {30.0, 0},
                                       {-30.0, 0},
                                       {44.0, 0},
                                       {-44.0, 0},
                                       {46.0, 3},
                                       {-46.0, 1},
                                       {90.0, 3},
                                       {-90.0, 1},
                                       {134.0, 3},
                                       {136.0, 2},
                                       {180.0, 2},
                                       {-134.0, 1},
                                       {-136.0, 2}}) {
    EXPECT_EQ(top_side(turned_card(degrees)), static_cast<std::size_t>(first)) << degrees;
  }
}

TEST(TopSide, DoesNotDependOnTheOrderGiven) {
  for (const double degrees : {-44.0, -30.0, 0.0, 30.0, 44.0, 46.0, 90.0, 170.0}) {
    const Quad card = turned_card(degrees);
    for (std::size_t turn = 0; turn < 4; ++turn) {
      const Quad turned{{card[turn], card[turn + 1], card[turn + 2], card[turn + 3]}};
      EXPECT_EQ((turn + top_side(turned)) % 4, top_side(card)) << degrees;
    }
  }
}

TEST(TopSide, IsNotMisledByPerspective) {
  // The upper side rises by 50 degrees, the lower one by 20.
  const Quad card{{Point{0, 119}, {100, 0}, {120, 150}, {20, 186}}};
  EXPECT_EQ(top_side(card), 0u);
}

TEST(TopSide, AnswersAPoint) {
  const Quad point{{Point{5, 6}, {5, 6}, {5, 6}, {5, 6}}};
  EXPECT_EQ(top_side(point), 0u);
}

TEST(NearlySame, IsAQuadrilateralInEveryTurn) {
  const Quad card = turned_card(20);
  for (std::size_t turn = 0; turn < 4; ++turn) {
    const Quad turned{{card[turn], card[turn + 1], card[turn + 2], card[turn + 3]}};
    EXPECT_TRUE(nearly_same(card, turned, 0.0));
    EXPECT_TRUE(nearly_same(turned, card, 0.0));
  }
}

TEST(NearlySame, ReachesAsFarAsItSays) {
  const Quad card = turned_card(0);
  for (std::size_t corner = 0; corner < 4; ++corner) {
    for (const Point way : {Point{2.5, 0}, Point{0, -2.5}, Point{-2.5, 2.5}}) {
      Quad moved = card;
      moved.corners[corner] = card[corner] + way;
      EXPECT_TRUE(nearly_same(card, moved, 2.5));
      EXPECT_FALSE(nearly_same(card, moved, 2.49));
    }
  }
}

TEST(NearlySame, TurnsTheSameWay) {
  const Quad card = turned_card(0);
  EXPECT_FALSE(nearly_same(card, {{card[0], card[3], card[2], card[1]}}, 90.0));
}

TEST(AlikeInSize, ComparesLongerAndShorterSides) {
  const Quad card{{Point{0, 0}, {100, 0}, {100, 50}, {0, 50}}};
  EXPECT_TRUE(alike_in_size(card, {{Point{7, 7}, {7, 115}, {-39, 115}, {-39, 7}}}));  // 108 x 46, upright
  EXPECT_FALSE(alike_in_size(card, {{Point{0, 0}, {112, 0}, {112, 50}, {0, 50}}}));
  EXPECT_FALSE(alike_in_size(card, {{Point{0, 0}, {100, 0}, {100, 44}, {0, 44}}}));
}

TEST(Candidates, AreKeptOnceAndWhileThereIsRoom) {
  Candidates candidates(2);
  ASSERT_TRUE(candidates.ready());
  Candidate one, other, third;
  one.quad = {{Point{0, 0}, {100, 0}, {100, 50}, {0, 50}}};
  other.quad = {{Point{0, 3}, {100, 3}, {100, 53}, {0, 53}}};
  third.quad = {{Point{50, 0}, {100, 0}, {100, 50}, {50, 50}}};
  candidates.add(one, 2.5);
  candidates.add(one, 2.5);
  EXPECT_EQ(candidates.count(), 1U);
  EXPECT_FALSE(candidates.has(other.quad, 2.5));
  EXPECT_TRUE(candidates.has(other.quad, 3.0));
  candidates.add(other, 2.5);
  candidates.add(third, 2.5);
  EXPECT_EQ(candidates.count(), 2U);
  EXPECT_FALSE(Candidates().ready());
}

/** The candidates of a drawing, and the lines that they come from. */
struct Found {
  Lines lines;
  std::unique_ptr<Candidates> candidates = std::make_unique<Candidates>(Candidates::kMost);

  explicit Found(const SlantedCard& card) : lines(0, 0) {
    const support::DrawnCard drawn(card);
    const Copy copy = reduce(drawn.scan());
    const auto gradients = find_gradients(copy);
    lines = find_lines(find_edges(copy, gradients.all()), copy.rows, copy.cols);
    EXPECT_TRUE(add_line_candidates(lines, copy.rows, copy.cols, kMostLineCandidates, *candidates));
  }
  int frame_sides(const Candidate& candidate) const {
    return static_cast<int>(std::count_if(candidate.lines.begin(), candidate.lines.end(), [&](int line) {
      return lines.lines[static_cast<std::size_t>(line)].is_frame;
    }));
  }
};

SlantedCard noise() {
  SlantedCard card;
  card.card = card.ground = {128, 128, 128};
  card.noise = 127;
  return card;
}

SlantedCard lined() {
  SlantedCard card;
  card.frame_inset = 30;
  card.writing = true;
  card.noise = 8;
  return card;
}

TEST(LineCandidates, BeginWithTheCard) {
  for (const double slope : {0.0, 0.1, -0.37}) {
    SlantedCard card;
    card.slope = slope;
    card.half_width = 180;
    const Found found(card);
    ASSERT_GE(found.candidates->count(), 1U);
    const Quad& quad = (*found.candidates)[0].quad;
    const std::size_t top = top_side(quad);
    const Quad upright{{quad[top], quad[top + 1], quad[top + 2], quad[top + 3]}};
    EXPECT_LT(worst_corner(upright, card.quad()), 0.3) << slope;
  }
}

TEST(LineCandidates, NameTheLinesUnderTheirSides) {
  const Found found(lined());
  ASSERT_GE(found.candidates->count(), 10U);
  for (const Candidate& candidate : found.candidates->all()) {
    for (std::size_t i = 0; i < 4; ++i) {
      const NormalLine& line = found.lines.lines[static_cast<std::size_t>(candidate.lines[i])].line;
      EXPECT_NEAR(line.distance(candidate.quad[i]), 0.0, 1e-6);
      EXPECT_NEAR(line.distance(candidate.quad[i + 1]), 0.0, 1e-6);
    }
  }
}

TEST(LineCandidates, AreClockwiseNotTinyAndNearTheScan) {
  for (const SlantedCard& card : {lined(), noise()}) {
    const Found found(card);
    ASSERT_GE(found.candidates->count(), 1U);
    for (const Candidate& candidate : found.candidates->all()) {
      const Quad& quad = candidate.quad;
      EXPECT_GE(area(quad), 0.0);
      for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_GE(length(quad[i + 1] - quad[i]), 8.0 - 1e-6);
        EXPECT_TRUE(quad[i].x >= -128 && quad[i].x <= 768 && quad[i].y >= -96 && quad[i].y <= 576);
      }
    }
  }
}

TEST(LineCandidates, ComeTheMostPlausibleFirstAndAreBounded) {
  SlantedCard card = lined();
  card.noise = 60;
  const Found found(card);
  EXPECT_GE(found.candidates->count(), 50U);
  EXPECT_LE(found.candidates->count(), 200U);
  const auto all = found.candidates->all();
  for (std::size_t i = 1; i < all.size(); ++i) EXPECT_GE(all[i - 1].plausibility, all[i].plausibility);
}

TEST(LineCandidates, HaveNoNearTwins) {
  const Found found(lined());
  const auto all = found.candidates->all();
  ASSERT_GE(all.size(), 10u);
  for (std::size_t i = 0; i < all.size(); ++i)
    for (std::size_t j = 0; j < i; ++j) EXPECT_FALSE(nearly_same(all[i].quad, all[j].quad, 2.5));
}

TEST(LineCandidates, AreKeptFromThoseThatWereThere) {
  const Found found(SlantedCard{});
  Candidates& again = *found.candidates;
  const std::size_t before = again.count();
  ASSERT_GE(before, 1U);
  ASSERT_LT(before, kMostLineCandidates);
  ASSERT_TRUE(add_line_candidates(found.lines, 480, 640, kMostLineCandidates, again));
  EXPECT_EQ(again.count(), before);
}

TEST(LineCandidates, EndAtTheFrameWhereTheCardDoes) {
  SlantedCard card;
  card.slope = 0;
  card.centre_x = 200;  // 30 columns and 39 rows are not on the scan
  card.centre_y = 101;
  const Found found(card);
  const Quad seen{{Point{0, 0}, {430, 0}, {430, 241}, {0, 241}}};
  const auto is_seen = [&](const Candidate& candidate) { return nearly_same(candidate.quad, seen, 0.3); };
  const auto all = found.candidates->all();
  const auto at = std::find_if(all.begin(), all.end(), is_seen);
  ASSERT_NE(at, all.end());
  EXPECT_EQ(found.frame_sides(*at), 2);
}

TEST(LineCandidates, HaveNoMoreThanTwoSidesOnTheFrame) {
  SlantedCard card;
  card.slope = 0;
  card.half_width = 400;  // its left and right sides are not on the scan, nor is its lower one
  card.centre_y = 400;
  const Found three(card);
  ASSERT_EQ(three.lines.edge_lines(), 1);
  EXPECT_EQ(three.candidates->count(), 0U);
  const Found found(lined());
  for (const Candidate& candidate : found.candidates->all()) EXPECT_LE(found.frame_sides(candidate), 2);
}

TEST(LineCandidates, NeverCrossThemselves) {
  std::vector<Edge> places;
  add_run(places, {50, 90}, {250, 110});  // two lines that cross at (150, 100), 11 degrees apart,
  add_run(places, {50, 110}, {250, 90});
  add_run(places, {50, 20}, {50, 180});  // between two that are parallel
  add_run(places, {250, 20}, {250, 180});
  const Lines lines = find_lines(support::edges_at(places, 100), 200, 300);
  ASSERT_EQ(lines.edge_lines(), 4);
  const auto candidates = std::make_unique<Candidates>(Candidates::kMost);
  ASSERT_TRUE(add_line_candidates(lines, 200, 300, kMostLineCandidates, *candidates));
  for (const Candidate& candidate : candidates->all()) {
    const Quad& q = candidate.quad;
    for (std::size_t i = 0; i < 4; ++i)
      EXPECT_GT(cross(q[i + 1] - q[i], q[i + 2] - q[i + 1]), 0.0)
          << "(" << q[0].x << ", " << q[0].y << ") (" << q[1].x << ", " << q[1].y << ") (" << q[2].x << ", " << q[2].y
          << ") (" << q[3].x << ", " << q[3].y << ")";
  }
}

/** Of a square of 40 pixels whose upper side goes on in a further run, from so many pixels behind its corner on. */
double plausibility_with_run(double from, double to) {
  const Quad square{{Point{100, 100}, {140, 100}, {140, 140}, {100, 140}}};
  std::vector<Edge> places;
  for (std::size_t i = 0; i < 4; ++i) add_run(places, square[i], square[i + 1]);
  add_run(places, {140 + from, 100}, {140 + to, 100});
  const Lines lines = find_lines(support::edges_at(places, 100), 200, 300);
  Candidates candidates(Candidates::kMost);
  EXPECT_TRUE(add_line_candidates(lines, 200, 300, kMostLineCandidates, candidates));
  const auto all = candidates.all();
  const auto at = std::find_if(all.begin(), all.end(),
                               [&](const Candidate& candidate) { return nearly_same(candidate.quad, square, 1.0); });
  EXPECT_NE(at, all.end());
  return at == all.end() ? 0.0 : at->plausibility;
}

TEST(LineCandidates, CountWhatRunsOnForAQuarterOfTheSide) {
  const double alone = plausibility_with_run(100, 108);
  EXPECT_EQ(plausibility_with_run(12, 20), alone);
  EXPECT_LT(plausibility_with_run(3, 9), alone - 0.03);
}

TEST(LineCandidates, AreNoneWithoutLines) {
  Lines lines(40, 60);
  lines = find_lines(support::edges_at({}, 100), 40, 60);
  const auto candidates = std::make_unique<Candidates>(Candidates::kMost);
  ASSERT_TRUE(add_line_candidates(lines, 40, 60, kMostLineCandidates, *candidates));
  EXPECT_EQ(candidates->count(), 0U);
}

}  // namespace
