#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "lines/hough.h"

namespace vantrel {
namespace {

struct Tables {
  double sin[180];
  double cos[180];
  Tables() {
    for (int t = 0; t < 180; ++t) {
      sin[t] = std::sin(t * 0.01745329251994);
      cos[t] = std::cos(t * 0.01745329251994);
    }
  }
  AngleTables view() const { return {sin, cos}; }
};

constexpr Angles kAll{{0, 89}, {90, 179}};

TEST(CentrePoints, SubtractsIntegerHalves) {
  typePoint points[] = {{10.0f, 20.0f}};
  centre_points(points, 5, 9);
  EXPECT_EQ(points[0].row, 8.0f);
  EXPECT_EQ(points[0].col, 16.0f);
}

TEST(HoughAccumulator, GivesEveryPointOneVotePerAngleSplitBetweenTwoDistances) {
  const Tables tables;
  HoughAccumulator votes(100, 100, {{30, 30}}, tables.view());
  ASSERT_TRUE(votes.ready());
  const typePoint point{7.0f, 3.0f};
  votes.vote({&point, 1});
  const double rho = 3.0 * tables.cos[30] + 7.0 * tables.sin[30];
  const double share = rho - std::floor(rho);
  const Peak best = votes.strongest({{30, 30}});
  EXPECT_EQ(best.row, 100 + static_cast<int>(std::floor(rho)) + (share > 0.5 ? 1 : 0));
  EXPECT_EQ(best.score, share > 0.5 ? share : std::floor(rho) + 1 - rho);
}

TEST(HoughAccumulator, TruncatesPointsTowardTheCentre) {
  const Tables tables;
  HoughAccumulator votes(20, 20, {{0, 0}}, tables.view());
  const typePoint points[] = {{0.0f, -3.9f}, {0.0f, -3.0f}};
  votes.vote(points);
  EXPECT_EQ(votes.strongest({{0, 0}}).score, 2.0);
}

TEST(HoughAccumulator, KeepsTheFirstOfEquals) {
  const Tables tables;
  HoughAccumulator votes(40, 40, {{0, 0}, {179, 179}}, tables.view());
  const typePoint points[] = {{0.0f, -5.0f}, {0.0f, 5.0f}};
  votes.vote(points);
  const Peak best = votes.strongest({{0, 0}});
  EXPECT_EQ(best.row, 35);
  EXPECT_EQ(best.angle, 0);
}

TEST(HoughAccumulator, PassesOverTheNeighbourhoodOfAPeak) {
  const Tables tables;
  HoughAccumulator votes(100, 100, {{0, 0}}, tables.view());
  const std::vector<typePoint> points = {{0, 0}, {0, 0}, {0, 0}, {0, 9}, {0, 9}, {0, 10}};
  votes.vote(points);
  const Peak first = votes.strongest({{0, 0}});
  EXPECT_EQ(first.row, 100);
  const Peak second = votes.strongest({{0, 0}}, &first);
  EXPECT_EQ(second.row, 110);
  EXPECT_EQ(second.score, 1.0);
}

TEST(HoughAccumulator, IgnoresPointsThatCannotBeOnTheImage) {
  const Tables tables;
  HoughAccumulator votes(10, 10, kAll, tables.view());
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  constexpr float kInf = std::numeric_limits<float>::infinity();
  const typePoint points[] = {{kNan, 0}, {0, kInf}, {-kInf, kNan}, {1e30f, 1e30f}, {500.0f, 500.0f}, {-500.0f, 0.0f}};
  votes.vote(points);
  // The two finite ones still vote for the angles at which they pass near the centre, and for nothing outside.
  EXPECT_LE(votes.strongest(kAll).score, 2.0);
}

TEST(HoughAccumulator, ReportsTheFirstCellWhenThereAreNoVotes) {
  const Tables tables;
  HoughAccumulator votes(10, 10, kAll, tables.view());
  const Peak best = votes.strongest(kAll);
  EXPECT_EQ(best.row, 0);
  EXPECT_EQ(best.angle, 0);
  EXPECT_EQ(best.score, 0.0);
}

TEST(HoughAccumulator, RefusesSizesThatCannotBe) {
  const Tables tables;
  EXPECT_FALSE(HoughAccumulator(std::numeric_limits<int>::max(), 5, kAll, tables.view()).ready());
  EXPECT_FALSE(HoughAccumulator(-5, -5, kAll, tables.view()).ready());
}

TEST(HoughAccumulator, MakesLevelAndUprightLinesExact) {
  const Tables tables;
  const HoughAccumulator votes(31, 41, kAll, tables.view());
  const BorderLine level = votes.line({41 + 3, 90, 1.0});
  EXPECT_EQ(level.a, 0.0);
  EXPECT_EQ(level.b, 1.0);
  EXPECT_EQ(level.c, 3.0 + 15.0);
  const BorderLine upright = votes.line({41 - 2, 0, 1.0});
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
}  // namespace vantrel
