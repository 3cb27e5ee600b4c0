// The search for pairs of lines.
#include <gtest/gtest.h>

#include "lines/border_scan.h"
#include "lines/exports.h"

namespace {

using namespace border_scan;

TEST(ComputeHoughAngle, NeedsTwoPoints) {
  Scan none(300, 400), one(300, 400);
  EXPECT_EQ(none.search(0), 0);
  EXPECT_EQ(one.point(10, 20).search(0), 0);
  EXPECT_EQ(one.points()[0].row, 10.0f);
  EXPECT_TRUE(one.nothing_written());
}

TEST(ComputeHoughAngle, WritesTheStrongerLevelLineFirst) {
  for (const bool high_is_stronger : {true, false}) {
    Scan scan(300, 400);
    scan.level(280, high_is_stronger ? 200 : 150).level(10, high_is_stronger ? 150 : 200);
    EXPECT_EQ(scan.search(0), 1);
    EXPECT_EQ(scan.line(0), (Line{0, 1, high_is_stronger ? 280.0 : 10.0}));
    EXPECT_EQ(scan.line(1), (Line{0, 1, high_is_stronger ? 10.0 : 280.0}));
    EXPECT_EQ(scan.line(2), kNothing);
    EXPECT_EQ(scan.line(3), kNothing);
  }
}

TEST(ComputeHoughAngle, NeedsAQuarterOfTheWidthInTheWeakerLine) {
  Scan below(300, 400), exactly(300, 400);
  EXPECT_EQ(below.level(280, 200).level(10, 99).search(0), 0);
  EXPECT_TRUE(below.nothing_written());
  EXPECT_EQ(exactly.level(280, 200).level(10, 100).search(0), 1);
}

TEST(ComputeHoughAngle, TakesLinesCloserThanTenBinsForOne) {
  Scan nine(300, 400), ten(300, 400);
  EXPECT_EQ(nine.level(280, 200).level(271, 150).search(0), 0);
  EXPECT_EQ(ten.level(280, 200).level(270, 150).search(0), 1);
  EXPECT_EQ(ten.line(1), (Line{0, 1, 270}));
}

TEST(ComputeHoughAngle, LooksAtTwentyDegreesAroundTheLevel) {
  for (const int degrees : {-20, -19, 19, 20}) {  // lines of 70, 71, 109 and 110 degrees
    Scan scan(400, 400);
    scan.rising(150, degrees).rising(250, degrees);
    EXPECT_EQ(scan.search(0), degrees == 20 ? 0 : 1) << degrees;
    if (degrees == 20) continue;
    for (const int side : {0, 1}) {
      EXPECT_EQ(scan.line(side).a, single(scan.tables().cos[90 + degrees]));
      EXPECT_EQ(scan.line(side).b, single(scan.tables().sin[90 + degrees]));
    }
  }
}

TEST(ComputeHoughAngle, TellsVerticalBordersApartByTheirLean) {
  Scan scan(200, 300);
  EXPECT_EQ(scan.leaning(20, 5).upright(250, 150).search(2), 1);
  EXPECT_EQ(scan.line(2).a, single(scan.tables().cos[175]));
  EXPECT_EQ(scan.line(2).b, single(scan.tables().sin[175]));
  EXPECT_EQ(scan.line(3), (Line{1, 0, 250}));
  EXPECT_EQ(scan.line(0), kNothing);
  EXPECT_EQ(scan.line(1), kNothing);
  // the lean decides, not the position
  Scan swapped(200, 300);
  EXPECT_EQ(swapped.leaning(200, 5).upright(20, 150).search(2), 1);
  EXPECT_EQ(swapped.line(2).a, single(swapped.tables().cos[175]));
  EXPECT_EQ(swapped.line(3), (Line{1, 0, 20}));
}

TEST(ComputeHoughAngle, NeedsAFifthOfTheHeightInTheLineOfSmallAngle) {
  Scan exactly(200, 300), below(200, 300);
  EXPECT_EQ(exactly.upright(250, 40).search(2), 1);
  EXPECT_EQ(exactly.line(3), (Line{1, 0, 250}));
  EXPECT_NE(exactly.line(2), kNothing);  // whatever is strongest among the other angles
  EXPECT_EQ(below.upright(250, 39).search(2), 0);
  EXPECT_TRUE(below.nothing_written());
}

TEST(ComputeHoughAngle, WritesNothingForAnotherDirection) {
  for (const int dir_class : {1, 3, 4, -1}) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(290, 200).search(dir_class), 1);
    EXPECT_TRUE(scan.nothing_written());
    EXPECT_EQ(scan.points()[0].row, 140.0f);
    EXPECT_EQ(scan.points()[0].col, -200.0f);
  }
}

}  // namespace
