// The search that reports level borders.
#include <gtest/gtest.h>

#include "lines/border_scan.h"
#include "lines/exports.h"

namespace {

using namespace border_scan;

TEST(ComputeHoughAngle3, ReportsATiltedBorderAsALevelLine) {
  Scan scan(300, 400);
  scan.rising(270, 3);
  const double expected = single(120 + 150 * scan.tables().sin[93] + 200 * scan.tables().cos[93]);
  EXPECT_EQ(scan.search3(0), 1);
  EXPECT_EQ(scan.line(0), (Line{0, 1, expected}));
}

TEST(ComputeHoughAngle3, NeedsAQuarterOfTheWidthOnTheTopSideAndAFifthOnTheBottom) {
  const struct {
    int side, row, count, result;
  } cases[] = {{0, 290, 99, 0}, {0, 290, 100, 1}, {1, 20, 79, 0}, {1, 20, 80, 1}};
  for (const auto& c : cases) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(c.row, c.count).search3(c.side), c.result) << c.count;
  }
}

TEST(ComputeHoughAngle3, TakesARunnerUpOfTheSameShareForASecondCandidate) {
  const struct {
    int side, row, other, count, result;
  } cases[] = {{0, 280, 250, 99, 1}, {0, 280, 250, 100, 2}, {1, 40, 60, 79, 1}, {1, 40, 60, 80, 2}};
  for (const auto& c : cases) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(c.row, 210).level(c.other, c.count).search3(c.side), c.result) << c.count;
    EXPECT_EQ(scan.line(c.side), (Line{0, 1, static_cast<double>(c.row)}));
  }
}

TEST(ComputeHoughAngle3, DoesNotCompareBrightnesses) {
  Scan clear(300, 400), two(300, 400);
  EXPECT_EQ(clear.level(290, 200).search3(0, 2), 1);
  EXPECT_EQ(two.level(280, 200).level(250, 150).search3(0, 2), 2);
}

TEST(ComputeHoughAngle3, RejectsABandThatIsNotDark) {
  Scan top(300, 400), bottom(300, 400), first(300, 400), last(300, 400);
  EXPECT_EQ(top.level(290, 200).bright().search3(0), 0);
  EXPECT_EQ(bottom.level(10, 200).bright().search3(1), 0);
  EXPECT_EQ(first.level(0, 200).bright().search3(1), 1);
  EXPECT_EQ(last.level(299, 200).bright().search3(0), 1);
}

TEST(ComputeHoughAngle3, AcceptsAModeratelyClutteredBand) {
  Scan scan(300, 400);
  EXPECT_EQ(scan.level(290, 200).component(10, 10, 0, 290, 4).search3(0), 1);
}

TEST(ComputeHoughAngle3, RejectsALineThatCutsManyNarrowComponents) {
  Scan many(300, 400), wide(300, 400), wide_for_the_other(300, 400);
  EXPECT_EQ(many.level(290, 200).component(20, 12, 0, 280, 7).search3(0), 0);
  EXPECT_EQ(wide.level(290, 200).component(110, 12, 0, 280, 7).search3(0), 1);
  EXPECT_EQ(wide_for_the_other.level(290, 200).component(110, 12, 0, 280, 7).search2(0), 0);
}

TEST(ComputeHoughAngle3, YieldsToTheRunnerUpNearTheFirstRow) {
  Scan nine(300, 400), ten(300, 400), weak(300, 400);
  EXPECT_EQ(nine.level(9, 200).level(30, 150).search3(1), 2);
  EXPECT_EQ(nine.line(1), (Line{0, 1, 30}));
  EXPECT_EQ(ten.level(10, 200).level(30, 150).search3(1), 2);
  EXPECT_EQ(ten.line(1), (Line{0, 1, 10}));
  EXPECT_EQ(weak.level(9, 200).level(30, 100).search3(1), 2);  // not more than half the votes
  EXPECT_EQ(weak.line(1), (Line{0, 1, 9}));
}

TEST(ComputeHoughAngle3, PrefersARunnerUpNearerThanHalfOnTheBottomSide) {
  const struct { int side, row, other, expected; } cases[] = {{1, 61, 30, 30}, {1, 60, 30, 60}, {0, 61, 30, 61}};
  for (const auto& c : cases) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(c.row, 200).level(c.other, 150).search3(c.side), 2);
    EXPECT_EQ(scan.line(c.side), (Line{0, 1, static_cast<double>(c.expected)})) << "row " << c.row;
  }
}

TEST(ComputeHoughAngle3, PrefersTheRunnerUpOnTheFrameAndByDensity) {
  Scan frame(300, 400), density(300, 400), neither(300, 400);
  EXPECT_EQ(frame.level(297, 390).level(270, 201).search3(0), 2);
  EXPECT_EQ(frame.line(0), (Line{0, 1, 270}));
  EXPECT_EQ(density.level(280, 200).level(250, 150).dense_beyond(280, 250).search3(0), 2);
  EXPECT_EQ(density.line(0), (Line{0, 1, 250}));
  EXPECT_EQ(neither.level(280, 200).level(250, 150).search3(0), 2);
  EXPECT_EQ(neither.line(0), (Line{0, 1, 280}));
}

TEST(ComputeHoughAngle3, TreatsVerticalSidesLikeTheOther) {
  Scan exactly(180, 300), below(180, 300), bright(180, 300), cluttered(200, 300), leaning(200, 300);
  EXPECT_EQ(exactly.upright(10, 80).search3(2), 2);
  EXPECT_EQ(exactly.line(2), (Line{1, 0, 10}));
  EXPECT_EQ(below.upright(10, 79).search3(2), 0);
  EXPECT_EQ(bright.upright(10, 180).bright().search3(2), 0);
  EXPECT_EQ(cluttered.upright(10, 200).component(3, 6, 0, 50, 4).search3(2), 0);
  EXPECT_EQ(leaning.leaning(30, 2).search3(2), 2);
  EXPECT_EQ(leaning.line(2).a, single(leaning.tables().cos[178]));
  EXPECT_EQ(leaning.line(2).b, single(leaning.tables().sin[178]));
}

TEST(ComputeHoughAngle3, StopsLikeTheOther) {
  Scan few(300, 160), direction(300, 400);
  EXPECT_EQ(few.level(290, 49).search3(0), 0);
  EXPECT_TRUE(few.nothing_written());
  EXPECT_EQ(direction.level(290, 200).search3(0, 0, 1), 2);
  EXPECT_TRUE(direction.nothing_written());
}

}  // namespace
