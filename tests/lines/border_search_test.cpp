// The search for the border of one side.
#include <gtest/gtest.h>

#include "lines/border_scan.h"
#include "lines/exports.h"

namespace {

using namespace border_scan;

// ---- Horizontal sides ----

TEST(ComputeHoughAngle2, FindsNothingAmongFewerThanFiftyPoints) {
  Scan few(300, 160);
  few.level(290, 49);
  EXPECT_EQ(few.search2(0), 0);
  EXPECT_TRUE(few.nothing_written());
  EXPECT_EQ(few.points()[7].row, 290.0f);  // not even shifted
  EXPECT_EQ(few.points()[7].col, 7.0f);
  Scan enough(300, 160);
  enough.level(290, 50);
  EXPECT_EQ(enough.search2(0), 1);
}

TEST(ComputeHoughAngle2, ShiftsThePointsToTheMiddle) {
  Scan scan(301, 401);
  scan.level(290, 200);
  EXPECT_EQ(scan.search2(0), 1);
  EXPECT_EQ(scan.points()[0].row, 140.0f);
  EXPECT_EQ(scan.points()[0].col, -200.0f);
  EXPECT_EQ(scan.points()[7].col, -193.0f);
}

TEST(ComputeHoughAngle2, WritesALevelLineExactly) {
  for (const Tables& tables : {Tables(), Tables::exact()}) {
    Scan top(300, 400, tables), bottom(300, 400, tables);
    EXPECT_EQ(top.level(290, 200).search2(0), 1);
    EXPECT_EQ(top.line(0), (Line{0, 1, 290}));
    for (const int side : {1, 2, 3}) EXPECT_EQ(top.line(side), kNothing);
    EXPECT_EQ(bottom.level(10, 200).search2(1), 1);
    EXPECT_EQ(bottom.line(1), (Line{0, 1, 10}));
    for (const int side : {0, 2, 3}) EXPECT_EQ(bottom.line(side), kNothing);
  }
}

TEST(ComputeHoughAngle2, NeedsAQuarterOfTheWidth) {
  Scan below(300, 400), exactly(300, 400), odd(300, 403);
  EXPECT_EQ(below.level(290, 99).search2(0), 0);
  EXPECT_TRUE(below.nothing_written());
  EXPECT_EQ(exactly.level(290, 100).search2(0), 1);
  EXPECT_EQ(odd.level(290, 100).search2(0), 1);  // 403 / 4 = 100
}

TEST(ComputeHoughAngle2, WritesATiltedLineInSinglePrecision) {
  Scan scan(300, 400);
  scan.rising(270, 3);
  const double sine = scan.tables().sin[93], cosine = scan.tables().cos[93];
  EXPECT_EQ(scan.search2(0), 1);
  EXPECT_EQ(scan.line(0), (Line{single(cosine), single(sine), single(120 + 150 * sine + 200 * cosine)}));
}

TEST(ComputeHoughAngle2, TestsTheRowOfTheLinesDistance) {
  // the distance of the line that crosses the middle at row 270 is 259: the dark rows count from there
  Scan scan(300, 400), brighter(300, 400);
  scan.rising(270, 3).bright().paint(259, 272, 0);
  EXPECT_EQ(scan.search2(0), 1);
  brighter.rising(270, 3).bright().paint(259, 271, 0);  // 13 rows of 42
  EXPECT_EQ(brighter.search2(0), 0);
}

TEST(ComputeHoughAngle2, RejectsABandAsBrightAsTheWholeImage) {
  for (const int side : {0, 1}) {
    const int row = side == 0 ? 290 : 10;
    for (const int brightness : {0, 1, 2}) {
      Scan dark(300, 400);
      EXPECT_EQ(dark.level(row, 200).search2(side, brightness), brightness == 2 ? 0 : 1);
    }
  }
}

TEST(ComputeHoughAngle2, LeavesTheNormalOfARejectedClearLine) {
  Scan scan(300, 400);
  EXPECT_EQ(scan.level(290, 200).search2(0, 2), 0);
  EXPECT_EQ(scan.line(0), (Line{0, 1, kUnwritten}));
}

TEST(ComputeHoughAngle2, RejectsABandThatIsNotDark) {
  Scan top(300, 400), bottom(300, 400);
  EXPECT_EQ(top.level(290, 200).bright().search2(0), 0);
  EXPECT_EQ(bottom.level(10, 200).bright().search2(1), 0);
  // only the band counts
  Scan dark_top(300, 400), dark_bottom(300, 400);
  EXPECT_EQ(dark_top.level(290, 200).bright().paint(290, 299, 127).search2(0), 1);
  EXPECT_EQ(dark_bottom.level(10, 200).bright().paint(0, 9, 127).search2(1), 1);
}

TEST(ComputeHoughAngle2, DoesNotTestTheDarknessBeyondTheFrame) {
  Scan first(300, 400), second(300, 400), last(300, 400), before_last(300, 400);
  EXPECT_EQ(first.level(0, 200).bright().search2(1), 1);
  EXPECT_EQ(second.level(1, 200).bright().search2(1), 0);
  EXPECT_EQ(last.level(299, 200).bright().search2(0), 1);
  EXPECT_EQ(before_last.level(298, 200).bright().search2(0), 0);
}

TEST(ComputeHoughAngle2, RejectsAModeratelyClutteredBand) {
  Scan scan(300, 400);
  scan.level(290, 200).component(10, 10, 0, 290, 4);  // 400 of 6800 pixels
  EXPECT_EQ(scan.search2(0), 0);
}

TEST(ComputeHoughAngle2, RejectsALineThatCutsManyComponents) {
  Scan scan(300, 400);
  scan.level(290, 200).component(20, 12, 0, 280, 7);  // before the band, cut at row 286
  EXPECT_EQ(scan.search2(0), 0);
}

TEST(ComputeHoughAngle2, FindsARunnerUpTenBinsAway) {
  Scan ten(300, 400), nine(300, 400);
  EXPECT_EQ(ten.level(280, 200).level(270, 150).search2(0), 2);
  EXPECT_EQ(ten.line(0), (Line{0, 1, 280}));
  EXPECT_EQ(nine.level(280, 200).level(271, 150).search2(0), 1);
  EXPECT_EQ(nine.line(0), (Line{0, 1, 280}));
}

TEST(ComputeHoughAngle2, PrefersTheRunnerUpWhenTheRowsBeyondTheStrongestAreDense) {
  Scan kept(300, 400), changed(300, 400);
  EXPECT_EQ(kept.level(280, 200).level(250, 150).search2(0), 2);
  EXPECT_EQ(kept.line(0), (Line{0, 1, 280}));
  EXPECT_EQ(changed.level(280, 200).level(250, 150).dense_beyond(280, 250).search2(0), 2);
  EXPECT_EQ(changed.line(0), (Line{0, 1, 250}));
}

TEST(ComputeHoughAngle2, KeepsTheStrongestOfTwiceTheVotes) {
  Scan half(300, 400), more(300, 400);
  EXPECT_EQ(half.level(280, 200).level(250, 100).dense_beyond(280, 250).search2(0), 2);
  EXPECT_EQ(half.line(0), (Line{0, 1, 280}));
  EXPECT_EQ(more.level(280, 200).level(250, 101).dense_beyond(280, 250).search2(0), 2);
  EXPECT_EQ(more.line(0), (Line{0, 1, 250}));
}

TEST(ComputeHoughAngle2, IgnoresARunnerUpOfLessThanAQuarterOfTheWidth) {
  Scan scan(300, 400);
  EXPECT_EQ(scan.level(280, 150).level(250, 99).dense_beyond(280, 250).search2(0), 1);
  EXPECT_EQ(scan.line(0), (Line{0, 1, 280}));
}

TEST(ComputeHoughAngle2, PrefersTheRunnerUpToAFullWidthLineOnTheFrame) {
  const struct {
    int side, row, count, other, expected;
  } cases[] = {
      {1, 2, 390, 20, 20},     {1, 3, 390, 20, 20},     {1, 4, 390, 20, 4},  // the first four rows
      {1, 2, 381, 20, 20},     {1, 2, 380, 20, 2},                           // more than 95 %
      {0, 297, 390, 270, 270}, {0, 296, 390, 270, 296},                      // the last three rows
      {0, 299, 400, 270, 270}, {1, 0, 399, 20, 20},
  };
  for (const auto& c : cases) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(c.row, c.count).level(c.other, 201).search2(c.side), 2);
    EXPECT_EQ(scan.line(c.side), (Line{0, 1, static_cast<double>(c.expected)})) << "row " << c.row << ", " << c.count;
  }
}

TEST(ComputeHoughAngle2, DoesNotCompareTheRunnerUpsBrightness) {
  Scan runner_up(300, 400), strongest(300, 400);
  EXPECT_EQ(runner_up.level(280, 200).level(250, 150).dense_beyond(280, 250).search2(0, 2), 2);
  EXPECT_EQ(runner_up.line(0), (Line{0, 1, 250}));
  EXPECT_EQ(strongest.level(280, 200).level(250, 150).search2(0, 2), 0);
  EXPECT_TRUE(strongest.nothing_written());  // tested before it is written
}

TEST(ComputeHoughAngle2, LeavesARejectedRunnerUpWritten) {
  Scan scan(300, 400);
  EXPECT_EQ(scan.level(280, 200).level(250, 150).dense_beyond(280, 250).bright().search2(0), 0);
  EXPECT_EQ(scan.line(0), (Line{0, 1, 250}));
}

TEST(ComputeHoughAngle2, TestsTheRunnersUpOwnRow) {
  // of the area from row 250 on, 6800 / 20451 is just above 7 / 22, and 6400 / 20451 just below
  for (const int dark_from : {283, 284}) {
    Scan scan(300, 400);
    scan.level(280, 200).level(250, 150).dense_beyond(280, 250).bright().paint(dark_from, 299, 0);
    EXPECT_EQ(scan.search2(0), dark_from == 283 ? 2 : 0);
  }
  Scan cut(300, 400);
  cut.level(280, 200).level(250, 150).dense_beyond(280, 250).component(20, 12, 0, 240, 7);  // cut at row 246
  EXPECT_EQ(cut.search2(0), 0);
}

TEST(ComputeHoughAngle2, KeepsTheFirstRowOfATie) {
  Scan scan(300, 400), three(300, 400);
  EXPECT_EQ(scan.level(280, 150).level(260, 150).search2(0), 2);
  EXPECT_EQ(scan.line(0), (Line{0, 1, 260}));
  three.level(280, 200).level(260, 150).level(240, 150).dense_beyond(280, 240).edges(260, 200);
  EXPECT_EQ(three.search2(0), 2);
  EXPECT_EQ(three.line(0), (Line{0, 1, 240}));
}

TEST(ComputeHoughAngle2, KeepsTheFirstAngleOfATie) {
  Tables same;
  for (int t = 75; t <= 104; ++t) {
    same.cos[t] = t * 1e-30;  // tells the angles apart without moving a vote
    same.sin[t] = 1.0;
  }
  Scan scan(300, 400, same);
  EXPECT_EQ(scan.level(290, 200).search2(0), 2);
  EXPECT_EQ(scan.line(0), (Line{single(75e-30), 1, 290}));
}

TEST(ComputeHoughAngle2, LooksAtThirtyAngles) {
  for (const int degrees : {-15, -14, 14, 15}) {  // lines of 75, 76, 104 and 105 degrees
    Scan scan(400, 400);
    scan.rising(200, degrees);
    EXPECT_EQ(scan.search2(0), degrees == 15 ? 0 : 1) << degrees;
    if (degrees != 15) {
      EXPECT_EQ(scan.line(0).b, single(scan.tables().sin[90 + degrees]));
    }
  }
}

// ---- Vertical sides ----

TEST(ComputeHoughAngle2, WritesAnUprightLineExactly) {
  Scan left(200, 300), right(200, 300);
  EXPECT_EQ(left.upright(10, 200).search2(2), 2);
  EXPECT_EQ(left.line(2), (Line{1, 0, 10}));
  EXPECT_EQ(right.upright(290, 200).search2(3), 2);
  EXPECT_EQ(right.line(3), (Line{1, 0, 290}));
}

TEST(ComputeHoughAngle2, NeedsFourNinthsOfTheHeight) {
  Scan exactly(180, 300), below(180, 300);
  EXPECT_EQ(exactly.upright(10, 80).search2(2), 2);
  EXPECT_EQ(below.upright(10, 79).search2(2), 0);
  EXPECT_TRUE(below.nothing_written());
}

TEST(ComputeHoughAngle2, RejectsABrightBandBesideTheLine) {
  Scan left(200, 300), right(200, 300), first(200, 300), last(200, 300), before_last(200, 300);
  EXPECT_EQ(left.upright(10, 200).bright().search2(2), 0);
  EXPECT_TRUE(left.nothing_written());
  EXPECT_EQ(right.upright(290, 200).bright().search2(3), 0);
  EXPECT_EQ(first.upright(0, 200).bright().search2(2), 2);
  EXPECT_EQ(last.upright(299, 200).bright().search2(3), 2);
  EXPECT_EQ(before_last.upright(298, 200).bright().search2(3), 0);
}

TEST(ComputeHoughAngle2, RejectsAModeratelyClutteredBandBesideTheLine) {
  Scan scan(200, 300), clean(200, 300);
  EXPECT_EQ(scan.upright(10, 200).component(3, 6, 0, 50, 4).search2(2), 0);  // 72 of 3000 pixels
  EXPECT_TRUE(scan.nothing_written());
  EXPECT_EQ(clean.upright(10, 200).component(3, 6, 0, 50, 3).search2(2), 2);
}

TEST(ComputeHoughAngle2, DoesNotCompareBrightnessesOnVerticalSides) {
  for (const int brightness : {0, 1, 2}) {
    Scan scan(200, 300);
    EXPECT_EQ(scan.upright(10, 200).search2(2, brightness), 2);
  }
}

TEST(ComputeHoughAngle2, TakesTheMagnitudeOfANegativeDistance) {
  Scan dark(200, 300), bright(200, 300);
  EXPECT_EQ(dark.leaning(30, 2).search2(2), 2);
  EXPECT_EQ(dark.line(2).a, single(dark.tables().cos[178]));
  EXPECT_EQ(dark.line(2).b, single(dark.tables().sin[178]));
  EXPECT_NEAR(dark.line(2).c, -30, 0.7);
  EXPECT_EQ(bright.leaning(30, 2).bright().search2(2), 0);  // column 30 beyond the frame would not be tested
}

TEST(ComputeHoughAngle2, VotesAtButDoesNotSearch160Degrees) {
  Scan at_160(200, 300), at_161(200, 300), at_19(200, 300);
  EXPECT_EQ(at_160.leaning(100, 20).search2(2), 0);
  EXPECT_TRUE(at_160.nothing_written());
  EXPECT_EQ(at_161.leaning(100, 19).search2(2), 2);
  EXPECT_EQ(at_161.line(2).a, single(at_161.tables().cos[161]));
  EXPECT_EQ(at_19.leaning(200, -19).search2(2), 2);
  EXPECT_EQ(at_19.line(2).a, single(at_19.tables().cos[19]));
}

// ---- Both kinds of sides ----

TEST(ComputeHoughAngle2, WritesNothingForAnotherDirection) {
  for (const int dir_class : {1, 3, 4, -1}) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(290, 200).search2(0, 0, dir_class), 2);
    EXPECT_TRUE(scan.nothing_written());
    EXPECT_EQ(scan.points()[0].row, 140.0f);
    EXPECT_EQ(scan.points()[0].col, -200.0f);
  }
}

TEST(ComputeHoughAngle2, LooksAtNoComponentsForAnotherDirection) {
  Tables tables;
  std::vector<typePoint> points(50, {3, 3});
  double normal[8] = {}, distance[4] = {};
  unsigned char bytes[8 * 8] = {};
  // Nothing lies at that address.
  auto* nowhere = reinterpret_cast<_BNODE*>(sizeof(_BNODE));
  for (auto* const search : {Compute_Hough_Angle2, Compute_Hough_Angle3}) {
    EXPECT_EQ(search(bytes, nowhere, bytes, normal, distance, points.data(), 8, 8, 50, 1, tables.sin, tables.cos, 0, 0),
              2);
  }
}

}  // namespace
