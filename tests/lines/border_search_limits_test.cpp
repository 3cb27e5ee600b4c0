// The three line searches where points lie at the limits of the image, or beyond, or where it has no pixels.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "lines/border_scan.h"
#include "lines/exports.h"

namespace {

using namespace border_scan;

/** Fifteen points in each corner of the image. */
struct CornerPoints : Scan {
  CornerPoints(int rows, int cols) : Scan(rows, cols) {
    for (int i = 0; i < 60; ++i) point(i % 2 * (rows - 1), i / 2 % 2 * (cols - 1));
  }
};

TEST(LineSearches, FindTooFewVotesInTheCornersOfALargeImage) {
  for (const int dir_class : {0, 2}) {  // at most 30 votes a line, for 75, 134 and 60 needed
    CornerPoints first(300, 300), second(300, 300), third(300, 300);
    EXPECT_EQ(first.search(dir_class), 0);
    EXPECT_EQ(second.search2(dir_class), 0);
    EXPECT_EQ(third.search3(dir_class), 0);
    for (const Scan* scan : {&first, &second, &third}) EXPECT_TRUE(scan->nothing_written());
  }
}

TEST(LineSearches, VoteForTheCornersOfASingleRow) {
  // all 60 points on the level line of row 0, where 100 are needed; 30 in the first and 30 in the last column
  EXPECT_EQ(CornerPoints(1, 400).search(0), 0);
  EXPECT_EQ(CornerPoints(1, 400).search2(0), 0);
  EXPECT_EQ(CornerPoints(1, 400).search3(0), 0);
  CornerPoints first(1, 400), second(1, 400), third(1, 400);
  EXPECT_EQ(first.search(2), 1);
  // of the lines that lean left, that of 160 degrees through the last column, at -186.9988, splits its votes the least
  EXPECT_EQ(first.line(2), line_of(first, 160, -187 + 200 * first.tables().cos[160]));
  EXPECT_EQ(first.line(3), (Line{1, 0, 0}));
  EXPECT_EQ(second.search2(2), 2);
  EXPECT_EQ(second.line(2), (Line{1, 0, 0}));
  EXPECT_EQ(third.search3(2), 2);
  EXPECT_EQ(third.line(2), (Line{1, 0, 0}));
}

TEST(LineSearches, VoteForTheCornersOfASingleColumn) {
  // 30 points in the first row and 30 in the last: a line on the frame yields to the other
  CornerPoints first(400, 1), second(400, 1), third(400, 1);
  EXPECT_EQ(first.search(0), 1);
  EXPECT_EQ(first.line(0), (Line{0, 1, 0}));
  EXPECT_EQ(first.line(1), (Line{0, 1, 399}));
  EXPECT_EQ(second.search2(0), 2);
  EXPECT_EQ(second.line(0), (Line{0, 1, 399}));
  EXPECT_EQ(third.search3(0), 2);
  EXPECT_EQ(third.line(0), (Line{0, 1, 399}));
  // all 60 on the upright line of column 0, where 178 and 80 are needed
  EXPECT_EQ(CornerPoints(400, 1).search(2), 0);
  EXPECT_EQ(CornerPoints(400, 1).search2(2), 0);
  EXPECT_EQ(CornerPoints(400, 1).search3(2), 0);
}

TEST(LineSearches, VoteForTheCornersOfTwoRowsAndColumns) {
  // Seen from the centre the points lie at -1 and 0. Beyond 90 degrees the cell of distance 0 gets 15 (4 - 2 sin t)
  // votes, beyond 180 - 20 degrees 15 (4 + 2 cos t): the more, the farther from the level and from the upright.
  CornerPoints first(2, 2), second(2, 2), third(2, 2);
  const auto distance = [&](int t) { return first.tables().sin[t] + first.tables().cos[t]; };
  EXPECT_EQ(first.search(0), 1);
  EXPECT_EQ(first.line(0), line_of(first, 109, distance(109)));
  EXPECT_EQ(first.line(1), line_of(first, 107, distance(107)));  // the next angle but one
  EXPECT_EQ(second.search2(0), 2);
  EXPECT_EQ(second.line(0), line_of(second, 104, distance(104)));
  EXPECT_EQ(third.search3(0), 2);
  EXPECT_EQ(third.line(0), (Line{0, 1, single(distance(102))}));  // a runner-up wins near the first row
  CornerPoints upright(2, 2), upright2(2, 2), upright3(2, 2);
  EXPECT_EQ(upright.search(2), 1);
  EXPECT_EQ(upright.line(2), line_of(upright, 150, distance(150)));
  EXPECT_EQ(upright2.search2(2), 2);
  EXPECT_EQ(upright2.line(2), line_of(upright2, 161, distance(161)));
  EXPECT_EQ(upright3.search3(2), 2);
  EXPECT_EQ(upright3.line(2), line_of(upright3, 161, distance(161)));
}

TEST(LineSearches, VoteForTheSinglePixelAtEveryAngle) {
  CornerPoints first(1, 1), second(1, 1), third(1, 1);
  EXPECT_EQ(first.search(0), 1);
  EXPECT_EQ(first.line(0), line_of(first, 70, 0));
  EXPECT_EQ(first.line(1), line_of(first, 72, 0));
  EXPECT_EQ(second.search2(0), 2);
  EXPECT_EQ(second.line(0), line_of(second, 75, 0));
  EXPECT_EQ(third.search3(0), 2);
  EXPECT_EQ(third.line(0), (Line{0, 1, 0}));
  CornerPoints upright(1, 1), upright2(1, 1), upright3(1, 1);
  EXPECT_EQ(upright.search(2), 1);
  EXPECT_EQ(upright.line(2), line_of(upright, 150, 0));
  EXPECT_EQ(upright.line(3), (Line{1, 0, 0}));
  EXPECT_EQ(upright2.search2(2), 2);
  EXPECT_EQ(upright2.line(2), (Line{1, 0, 0}));
  EXPECT_EQ(upright3.search3(2), 2);
  EXPECT_EQ(upright3.line(2), (Line{1, 0, 0}));
}

/** Of 60 points 20 at (5, 7), 10 in their row and 20 in their column but far away, and 10 far away in both. */
struct FarPoints : Scan {
  explicit FarPoints(double far) : Scan(100, 120) {
    for (int i = 0; i < 60; ++i) point(i % 2 == 0 ? far : 5, i % 3 == 0 ? far : 7);
  }
};

TEST(LineSearches, CountVotesOfPointsOutsideTheImageForLinesInside) {
  for (const double far : {400.0, -400.0, 1e6, -1e6}) {
    SCOPED_TRACE(far);
    FarPoints first(far), second(far), third(far);
    EXPECT_EQ(second.search2(0), 1);  // 30 votes in row 5, where 30 are needed
    EXPECT_EQ(second.line(0), (Line{0, 1, 5}));
    EXPECT_EQ(third.search3(0), 1);
    EXPECT_EQ(third.line(0), (Line{0, 1, 5}));
    EXPECT_EQ(first.search(0), 0);  // no second line
    EXPECT_TRUE(first.nothing_written());
    FarPoints upright(far), upright2(far), upright3(far);
    EXPECT_EQ(upright.search(2), 1);
    EXPECT_EQ(upright.line(3), (Line{1, 0, 7}));
    EXPECT_EQ(upright2.search2(2), 0);  // 40 votes in column 7, where 45 are needed
    EXPECT_EQ(upright3.search3(2), 0);
  }
}

TEST(LineSearches, PassOverPointsThatAreNowhere) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  for (const double far : {1e20, -1e20, infinity, -infinity, std::nan("")}) {
    SCOPED_TRACE(far);
    for (const int dir_class : {0, 2}) {  // 20 votes, where 30 and 45 are needed
      EXPECT_EQ(FarPoints(far).search2(dir_class), 0);
      EXPECT_EQ(FarPoints(far).search3(dir_class), 0);
    }
    EXPECT_EQ(FarPoints(far).search(0), 0);
    FarPoints upright(far);
    EXPECT_EQ(upright.search(2), 1);  // 20 votes in column 7 are enough for the weaker line
    EXPECT_EQ(upright.line(3), (Line{1, 0, 7}));
  }
}

TEST(LineSearches, NeedNoVotesInAnImageWithoutPixels) {
  // no cells: the strongest of none stands at distance and angle 0, and no test finds anything against it
  for (const int dir_class : {0, 2}) {
    Scan first(0, 0), second(0, 0), third(0, 0);
    for (Scan* scan : {&first, &second, &third}) {
      for (int i = 0; i < 60; ++i) scan->point(0, 0);
    }
    EXPECT_EQ(first.search(dir_class), 1);
    EXPECT_EQ(first.line(dir_class), (Line{1, 0, 0}));
    EXPECT_EQ(first.line(dir_class + 1), (Line{1, 0, 0}));
    EXPECT_EQ(second.search2(dir_class), 2);
    EXPECT_EQ(second.line(dir_class), (Line{1, 0, 0}));
    EXPECT_EQ(third.search3(dir_class), 2);
    EXPECT_EQ(third.line(dir_class), dir_class == 0 ? (Line{0, 1, 0}) : (Line{1, 0, 0}));
  }
}

}  // namespace
