#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "lines/hough.h"

namespace vantrel::lines {
namespace {

constexpr Angles kAll{{0, 89}, {90, 179}};

TEST(Centre, SubtractsIntegerHalves) {
  const EdgePoint point = Centre(5, 9).relative({10.0f, 20.0f});
  EXPECT_EQ(point.row, 8.0f);
  EXPECT_EQ(point.col, 16.0f);
}

/** Counts what it is handed. */
struct Listener {
  std::vector<EdgePoint> points;
  int calls = 0;
  void vote(std::span<const EdgePoint> some) {
    points.insert(points.end(), some.begin(), some.end());
    ++calls;
  }
};

TEST(PointFeed, HandsOnEveryPointInOrderInBlocks) {
  Listener listener;
  {
    PointFeed feed(listener, 20, 40);
    for (int i = 0; i < 300; ++i) feed.add({static_cast<float>(i), 25.0f});
    EXPECT_EQ(listener.calls, 1);
  }
  EXPECT_EQ(listener.calls, 2);
  ASSERT_EQ(listener.points.size(), 300u);
  EXPECT_EQ(listener.points[0].row, -10.0f);
  EXPECT_EQ(listener.points[299].row, 289.0f);
  EXPECT_EQ(listener.points[299].col, 5.0f);
}

TEST(HoughAccumulator, GivesEveryPointOneVotePerAngleSplitBetweenTwoDistances) {
  const DegreeTables tables;
  HoughAccumulator votes(100, 100, {{30, 30}}, tables);
  ASSERT_TRUE(votes.ready());
  const EdgePoint point{7.0f, 3.0f};
  votes.vote({&point, 1});
  const double rho = 3.0 * tables.cos[30] + 7.0 * tables.sin[30];
  const double share = rho - std::floor(rho);
  const Peak best = votes.strongest({{30, 30}});
  EXPECT_EQ(best.distance, 100 + static_cast<int>(std::floor(rho)) + (share > 0.5 ? 1 : 0));
  EXPECT_EQ(best.votes, share > 0.5 ? share : std::floor(rho) + 1 - rho);
}

TEST(HoughAccumulator, HasNoMoreCellsThanIntsCount) {
  const DegreeTables tables;
  const HoughAccumulator votes(10, 1 << 29, {{75, 104}}, tables);  // 2^30 distances fit, but not for 30 angles
  EXPECT_FALSE(votes.ready());
}

TEST(HoughAccumulator, HasCellsForAllDistancesWhereTheAreaTellsOfNone) {
  const DegreeTables tables;
  const EdgePoint point{-40.0f, 30.0f};
  using vantrel::geometry::Rect;
  // No rows, no columns, more than the image.
  for (const Rect& area : {Rect{{5, 5}, {0, 100}}, Rect{{0, 100}, {7, 7}}, Rect{{0, 900}, {0, 100}}}) {
    HoughAccumulator votes(100, 100, {{90, 90}}, tables, area);
    ASSERT_TRUE(votes.ready());
    votes.vote({&point, 1});
    EXPECT_EQ(votes.strongest({{90, 90}}).distance, 100 - 40);
  }
}

TEST(HoughAccumulator, TruncatesPointsTowardTheCentre) {
  const DegreeTables tables;
  HoughAccumulator votes(20, 20, {{0, 0}}, tables);
  const EdgePoint points[] = {{0.0f, -3.9f}, {0.0f, -3.0f}};
  votes.vote(points);
  EXPECT_EQ(votes.strongest({{0, 0}}).votes, 2.0);
}

TEST(HoughAccumulator, KeepsTheFirstOfEquals) {
  const DegreeTables tables;
  HoughAccumulator votes(40, 40, {{0, 0}, {179, 179}}, tables);
  const EdgePoint points[] = {{0.0f, -5.0f}, {0.0f, 5.0f}};
  votes.vote(points);
  const Peak best = votes.strongest({{0, 0}});
  EXPECT_EQ(best.distance, 35);
  EXPECT_EQ(best.angle, 0);
}

TEST(HoughAccumulator, PassesOverTheNeighbourhoodOfAPeak) {
  const DegreeTables tables;
  HoughAccumulator votes(100, 100, {{0, 0}}, tables);
  const std::vector<EdgePoint> points = {{0, 0}, {0, 0}, {0, 0}, {0, 9}, {0, 9}, {0, 10}};
  votes.vote(points);
  const Peak first = votes.strongest({{0, 0}});
  EXPECT_EQ(first.distance, 100);
  const Peak second = votes.strongest({{0, 0}}, &first);
  EXPECT_EQ(second.distance, 110);
  EXPECT_EQ(second.votes, 1.0);
}

TEST(HoughAccumulator, HasTheSamePeaksWithCellsForThePointsOfAnAreaOnly) {
  const DegreeTables tables;
  constexpr int kRows = 61, kCols = 90;
  const geometry::Rect areas[] = {
      {{0, 7}, {0, kCols}}, {{54, kRows}, {0, kCols}}, {{0, kRows}, {80, kCols}}, {{3, 4}, {5, 6}}};
  const Angles angles[] = {{{75, 104}}, {{0, 19}, {160, 179}}, kAll};
  for (const geometry::Rect& area : areas) {
    for (const Angles& voted : angles) {
      HoughAccumulator all(kRows, kCols, voted, tables), some(kRows, kCols, voted, tables, area);
      for (HoughAccumulator* votes : {&all, &some}) {
        ASSERT_TRUE(votes->ready());
        PointFeed feed(*votes, kRows, kCols);
        for (int r = area.rows.first; r < area.rows.end; ++r) {
          for (int c = area.cols.first; c < area.cols.end; ++c) {
            const bool corner =
                (r == area.rows.first || r == area.rows.last()) && (c == area.cols.first || c == area.cols.last());
            if (corner || (r * 7 + c * c) % 5 == 0) feed.add({static_cast<float>(r), static_cast<float>(c)});
          }
        }
      }
      const Peak wanted = all.strongest(voted), found = some.strongest(voted);
      const Peak second = all.strongest(voted, &wanted), second_found = some.strongest(voted, &found);
      for (const auto& [a, b] : {std::pair(wanted, found), {second, second_found}}) {
        EXPECT_EQ(a.distance, b.distance);
        EXPECT_EQ(a.angle, b.angle);
        EXPECT_EQ(a.votes, b.votes);
        EXPECT_EQ(all.distance(a), some.distance(b));
      }
    }
  }
}

TEST(HoughAccumulator, IgnoresPointsThatCannotBeOnTheImage) {
  const DegreeTables tables;
  HoughAccumulator votes(10, 10, kAll, tables);
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  constexpr float kInf = std::numeric_limits<float>::infinity();
  const EdgePoint points[] = {{kNan, 0}, {0, kInf}, {-kInf, kNan}, {1e30f, 1e30f}, {500.0f, 500.0f}, {-500.0f, 0.0f}};
  votes.vote(points);
  // The two finite ones still vote for the angles at which they pass near the centre, and for nothing outside.
  EXPECT_LE(votes.strongest(kAll).votes, 2.0);
}

TEST(HoughAccumulator, ReportsTheFirstCellWhenThereAreNoVotes) {
  const DegreeTables tables;
  HoughAccumulator votes(10, 10, kAll, tables);
  const Peak best = votes.strongest(kAll);
  EXPECT_EQ(best.distance, 0);
  EXPECT_EQ(best.angle, 0);
  EXPECT_EQ(best.votes, 0.0);
}

TEST(HoughAccumulator, RefusesSizesThatCannotBe) {
  const DegreeTables tables;
  EXPECT_FALSE(HoughAccumulator(std::numeric_limits<int>::max(), 5, kAll, tables).ready());
  EXPECT_FALSE(HoughAccumulator(-5, -5, kAll, tables).ready());
}

TEST(HoughAccumulator, MakesLevelAndUprightLinesExact) {
  const DegreeTables tables;
  const HoughAccumulator votes(31, 41, kAll, tables);
  const geometry::Line level = votes.line({41 + 3, 90, 1.0});
  EXPECT_EQ(level.a, 0.0);
  EXPECT_EQ(level.b, 1.0);
  EXPECT_EQ(level.c, 3.0 + 15.0);
  const geometry::Line upright = votes.line({41 - 2, 0, 1.0});
  EXPECT_EQ(upright.a, 1.0);
  EXPECT_EQ(upright.b, 0.0);
  EXPECT_EQ(upright.c, -2.0 + 20.0);
}

TEST(Crossing, TruncatesAndDropsTheSign) {
  EXPECT_EQ(crossing(7.9), 7);
  EXPECT_EQ(crossing(-7.9), 7);
  EXPECT_EQ(crossing(-0.5), 0);
  EXPECT_EQ(crossing(1e300), std::numeric_limits<int>::max());
}

}  // namespace
}  // namespace vantrel::lines
