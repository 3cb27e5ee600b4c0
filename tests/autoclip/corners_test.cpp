// Edge points of a band, intersections of border lines, and the order and judgement of corners.
#include "autoclip/exports.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "support/image.h"

namespace {

using Corners = std::array<float, 8>;

constexpr float kUnwritten = -123.5f;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// ---- Collecting points ----

struct Maps {
  int rows, cols, stride;
  std::vector<unsigned char> edge, dir;

  Maps(int rows_, int cols_, int stride_)
      : rows(rows_),
        cols(cols_),
        stride(stride_),
        edge(static_cast<std::size_t>(rows * stride), 255),
        dir(static_cast<std::size_t>(rows * stride), 4) {}
  Maps& set(int row, int col, int edge_value, int direction) {
    const auto i = static_cast<std::size_t>(row * stride + col);
    edge[i] = static_cast<unsigned char>(edge_value);
    dir[i] = static_cast<unsigned char>(direction);
    return *this;
  }
};

TEST(CalcPointCenter2, CollectsOneDirectionRowByRow) {
  Maps maps(6, 7, 8);
  maps.set(2, 5, 0, 2).set(2, 3, 0, 2).set(4, 1, 0, 2);
  maps.set(3, 3, 0, 0).set(3, 4, 255, 2).set(3, 5, 1, 2);  // another direction, no edge, no edge
  typePoint points[56] = {};
  int count = 99;
  EXPECT_EQ(CalcPointCenter2(maps.edge.data(), maps.dir.data(), points, count, 0, 6, 0, 7, 8, 2), 1);
  ASSERT_EQ(count, 3);
  const float expected[3][2] = {{2, 3}, {2, 5}, {4, 1}};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(points[i].row, expected[i][0]);
    EXPECT_EQ(points[i].col, expected[i][1]);
  }
}

TEST(CalcPointCenter2, StaysInItsHalfOpenBand) {
  Maps maps(6, 7, 8);
  for (int r = 0; r < 6; ++r) {
    for (int c = 0; c < 8; ++c) maps.set(r, c, 0, 0);
  }
  typePoint points[56] = {};
  int count = 0;
  CalcPointCenter2(maps.edge.data(), maps.dir.data(), points, count, 2, 4, 3, 5, 8, 0);
  ASSERT_EQ(count, 4);
  EXPECT_EQ(points[0].row, 2.0f);
  EXPECT_EQ(points[0].col, 3.0f);
  EXPECT_EQ(points[3].row, 3.0f);
  EXPECT_EQ(points[3].col, 4.0f);
  CalcPointCenter2(maps.edge.data(), maps.dir.data(), points, count, 0, 6, 6, 8, 8, 0);  // into the padding
  EXPECT_EQ(count, 12);
}

TEST(CalcPointCenter2, OfAnEmptyBandIsNothing) {
  int count = 5;
  EXPECT_EQ(CalcPointCenter2(nullptr, nullptr, nullptr, count, 0, 6, 0, 0, 8, 0), 1);
  EXPECT_EQ(count, 0);
  count = 5;
  EXPECT_EQ(CalcPointCenter2(nullptr, nullptr, nullptr, count, 3, 3, 0, 6, 8, 0), 1);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(CalcPointCenter2(nullptr, nullptr, nullptr, count, 3, -3, 6, 0, 8, 0), 1);
  EXPECT_EQ(count, 0);
}

TEST(CalcPointCenter, ReadsRowsWithoutPaddingAndCountsPoints) {
  Maps maps(4, 7, 7);
  maps.set(0, 6, 0, 2).set(1, 0, 0, 2).set(3, 6, 0, 2).set(2, 2, 0, 0).set(2, 3, 255, 2);
  float points[56] = {};
  int count = 99;
  EXPECT_EQ(CalcPointCenter(maps.edge.data(), maps.dir.data(), points, count, 4, 7, 2), 1);
  EXPECT_EQ(count, 3);  // points, not floats
  const float expected[8] = {0, 6, 1, 0, 3, 6, 0, 0};
  for (int i = 0; i < 8; ++i) EXPECT_EQ(points[i], expected[i]) << i;
  EXPECT_EQ(CalcPointCenter(nullptr, nullptr, nullptr, count, 0, 7, 2), 1);
  EXPECT_EQ(count, 0);
}

// ---- Two equations ----

TEST(CalcUnknownFun, SolvesTwoEquations) {
  const typePoint p = CalcUnknownFun(2, 1, 1, 3, 5, 10);
  EXPECT_EQ(p.col, 1.0f);
  EXPECT_EQ(p.row, 3.0f);
  const typePoint q = CalcUnknownFun(4, 0, 0, -2, 6, 5);
  EXPECT_EQ(q.col, 1.5f);
  EXPECT_EQ(q.row, -2.5f);
}

TEST(CalcUnknownFun, PutsATinyPivotInTheZerosPlace) {
  // y = 5 and x = 7 with a first pivot of 1e-7
  const typePoint p = CalcUnknownFun(0, 1, 1, 0, 5, 7);
  EXPECT_NEAR(p.col, 7.0f, 1e-5f);
  EXPECT_FLOAT_EQ(p.row, 4.9999993f);
}

TEST(CalcUnknownFun, OfParallelLinesIsFarAway) {
  const typePoint p = CalcUnknownFun(1, 1, 1, 1, 1, 2);  // the second pivot is replaced by 1e-7 too
  EXPECT_EQ(p.row, 1e7f);
  EXPECT_EQ(p.col, -9999999.0f);
}

TEST(CalcUnknownFun, OfValuesThatAreNoNumbersIsSafe) {
  EXPECT_TRUE(std::isnan(CalcUnknownFun(kNan, 1, 1, 3, 5, 10).col));
  const typePoint nowhere =
      CalcUnknownFun(kInfinity, kInfinity, 1, 3, 5, 10);  // the factor 1 / infinity times infinity
  EXPECT_TRUE(std::isnan(nowhere.col));
  EXPECT_TRUE(std::isnan(nowhere.row));
  const typePoint origin = CalcUnknownFun(0, 0, 0, 0, 0, 0);  // 0 / 1e-7
  EXPECT_EQ(origin.col, 0.0f);
  EXPECT_EQ(origin.row, 0.0f);
}

// ---- Intersections ----

/** Lines of the four sides. */
struct Lines {
  double normal[8];
  double distance[4];
  bool intersect(Corners& corners) {
    corners.fill(kUnwritten);
    return CalIntersectPoint(normal, distance, corners.data());
  }
};

/** Level and upright lines at rows 98 and 1 and columns 0 and 78. */
Lines upright_lines() { return {{0, 1, 0, 1, 1, 0, 1, 0}, {98, 1, 0, 78}}; }

TEST(CalIntersectPoint, OfUprightLinesAddsHalfAPixel) {
  Corners corners;
  ASSERT_TRUE(upright_lines().intersect(corners));
  EXPECT_EQ(corners, (Corners{0.5f, 98.5f, 78.5f, 98.5f, 0.5f, 1.5f, 78.5f, 1.5f}));
}

TEST(CalIntersectPoint, TakesTheHalfPixelAlongBesideLevelLines) {
  // y' = 10 / 2 + 0.5 = 5.5; x = (20 - 5.5 * 0.5) / 2 + 0.5; x = (8 + 5.5 * 0.25) / 4 + 0.5
  // y' = 3 / 1 + 0.5 = 3.5; x = (20 - 3.5 * 0.5) / 2 + 0.5; x = (8 + 3.5 * 0.25) / 4 + 0.5
  Lines lines{{0, 2, 0, 1, 2, 0.5, 4, -0.25}, {10, 3, 20, 8}};
  Corners corners;
  ASSERT_TRUE(lines.intersect(corners));
  EXPECT_EQ(corners, (Corners{9.125f, 5.5f, 2.84375f, 5.5f, 9.625f, 3.5f, 2.71875f, 3.5f}));
}

TEST(CalIntersectPoint, TakesTheHalfPixelAlongBesideUprightLines) {
  // x' = 6 / 2 + 0.5 = 3.5; y = (20 - 3.5) / 2 + 0.5 and (12 - 3.5 * 0.5) / 4 + 0.5
  // x' = 8 / 1 + 0.5 = 8.5; y = (20 - 8.5) / 2 + 0.5 and (12 - 8.5 * 0.5) / 4 + 0.5
  Lines lines{{1, 2, 0.5, 4, 2, 0, 1, 0}, {20, 12, 6, 8}};
  Corners corners;
  ASSERT_TRUE(lines.intersect(corners));
  EXPECT_EQ(corners, (Corners{3.5f, 8.75f, 8.5f, 6.25f, 3.5f, 3.0625f, 8.5f, 2.4375f}));
}

TEST(CalIntersectPoint, SolvesTiltedLines) {
  // x + y = 10 and x + 2 y = 5 with x - y = 2 and 2 x - y = 8
  Lines lines{{1, 1, 1, 2, 1, -1, 2, -1}, {10, 5, 2, 8}};
  Corners corners;
  ASSERT_TRUE(lines.intersect(corners));
  EXPECT_EQ(corners, (Corners{6.5f, 4.5f, 6.5f, 4.5f, 3.5f, 1.5f, 4.7f, 0.9f}));
}

TEST(CalIntersectPoint, MixesTheWaysPerSide) {
  // level top, tilted bottom; upright left, tilted right
  Lines lines{{0, 1, 1, 2, 1, 0, 2, -1}, {10, 5, 2, 8}};
  Corners corners;
  ASSERT_TRUE(lines.intersect(corners));
  EXPECT_EQ(corners, (Corners{2.5f, 10.5f, 9.75f, 10.5f, 2.5f, 1.75f, 4.7f, 0.9f}));
}

TEST(CalIntersectPoint, ComputesFromTheStoredSinglePrecision) {
  // x' = 1/3 + 0.5 is 0.8333333134651184 in single precision: ten million times its error is 0.2
  Lines upright{{1e7, 1, 1e7, 1, 3, 0, 3, 0}, {1e7, 1e7, 1, 1}};
  Corners corners;
  ASSERT_TRUE(upright.intersect(corners));
  for (int i = 0; i < 8; i += 2) {
    EXPECT_EQ(corners[static_cast<std::size_t>(i)], 0.8333333f);
    EXPECT_EQ(corners[static_cast<std::size_t>(i) + 1], 1666667.375f);  // from the double it would be .125
  }
  Lines level{{0, 3, 0, 3, 1, 1e7, 1, 1e7}, {1, 1, 1e7, 1e7}};
  ASSERT_TRUE(level.intersect(corners));
  for (int i = 0; i < 8; i += 2) {
    EXPECT_EQ(corners[static_cast<std::size_t>(i)], 1666667.375f);
    EXPECT_EQ(corners[static_cast<std::size_t>(i) + 1], 0.8333333f);
  }
}

TEST(CalIntersectPoint, FailsForDegenerateLines) {
  const struct {
    Lines lines;
    int written;  // corners computed before
  } cases[] = {
      {{{0, 0, 0, 1, 1, 0, 1, 0}, {98, 1, 0, 78}}, 0},  // a top line without direction
      {{{0, 1, 0, 1, 0, 1, 1, 0}, {98, 1, 0, 78}}, 0},  // level top and left
      {{{0, 1, 0, 1, 1, 0, 0, 1}, {98, 1, 0, 78}}, 0},  // level top and right
      {{{1, 1, 0, 1, 0, 0, 1, 0}, {98, 1, 0, 78}}, 0},  // a left line without direction
      {{{1, 0, 0, 1, 1, 0, 1, 1}, {98, 1, 0, 78}}, 0},  // upright top and left
      {{{1, 1, 0, 1, 1, 0, 0, 0}, {98, 1, 0, 78}}, 1},  // a right line without direction
      {{{1, 0, 0, 1, 1, 1, 1, 0}, {98, 1, 0, 78}}, 1},  // upright top and right
      {{{0, 1, 0, 0, 1, 0, 1, 0}, {98, 1, 0, 78}}, 2},  // a bottom line without direction
      {{{1, 1, 0, 1, 0, 1, 1, 0}, {98, 1, 0, 78}}, 2},  // level bottom and left
      {{{1, 1, 0, 1, 1, 0, 0, 1}, {98, 1, 0, 78}}, 2},  // level bottom and right
      {{{1, 1, 1, 0, 1, 0, 1, 1}, {98, 1, 0, 78}}, 2},  // upright bottom and left
      {{{1, 1, 1, 0, 1, 1, 1, 0}, {98, 1, 0, 78}}, 3},  // upright bottom and right
  };
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    Lines lines = cases[i].lines;
    Corners corners;
    EXPECT_FALSE(lines.intersect(corners)) << "case " << i;
    for (std::size_t k = 2 * static_cast<std::size_t>(cases[i].written); k < 8; ++k) {
      EXPECT_EQ(corners[k], kUnwritten) << "case " << i << ", value " << k;
    }
  }
}

TEST(CalIntersectPoint, TakesMinusZeroForZero) {
  Lines lines{{-0.0, 1, -0.0, 1, 1, -0.0, 1, -0.0}, {98, 1, 0, 78}};
  Corners corners;
  ASSERT_TRUE(lines.intersect(corners));
  EXPECT_EQ(corners, (Corners{0.5f, 98.5f, 78.5f, 98.5f, 0.5f, 1.5f, 78.5f, 1.5f}));
  Lines degenerate{{-0.0, -0.0, 0, 1, 1, 0, 1, 0}, {98, 1, 0, 78}};
  EXPECT_FALSE(degenerate.intersect(corners));
}

TEST(CalIntersectPoint, TakesNotANumberForAnythingButZero) {
  for (const int index : {0, 1, 2, 3, 4, 5, 6, 7}) {
    Lines lines{{1, 1, 1, 2, 1, -1, 2, -1}, {10, 5, 2, 8}};
    lines.normal[index] = kNan;
    Corners corners;
    EXPECT_TRUE(lines.intersect(corners)) << index;
  }
  Lines level = upright_lines();
  level.normal[0] = kNan;  // no longer level: the left line is upright
  Corners corners;
  EXPECT_TRUE(level.intersect(corners));
  EXPECT_EQ(corners[0], 0.5f);
  EXPECT_TRUE(std::isnan(corners[1]));
}

// ---- Judging corners ----

/** Top-left, top-right, bottom-left, bottom-right of a rectangle in rows counted from the top. */
Corners rectangle(float left, float top, float right, float bottom) {
  return {left, top, right, top, left, bottom, right, bottom};
}

/** The same corners in memory rows. */
Corners in_memory(Corners corners, int rows) {
  for (std::size_t i = 1; i < 8; i += 2) corners[i] = static_cast<float>(rows) - corners[i];
  return corners;
}

struct Judged {
  bool accepted;
  Corners corners;
  Corners box;
};

/** Judges corners given in rows counted from the top. */
Judged judge(const Corners& from_top, int rows, int cols) {
  Judged judged{false, in_memory(from_top, rows), {}};
  judged.box.fill(kUnwritten);
  judged.accepted = VerifyCorrectLoc(judged.corners.data(), judged.box.data(), rows, cols);
  return judged;
}

Judged judge_m(const Corners& corners, int rows, int cols) {
  Judged judged{false, corners, {}};
  judged.box.fill(kUnwritten);
  judged.accepted = VerifyCorrectLoc_M(judged.box.data(), judged.corners.data(), rows, cols);
  return judged;
}

TEST(VerifyCorrectLoc, AcceptsHalfOfTheWidthOfTheHeightAndOfTheirSum) {
  EXPECT_TRUE(judge(rectangle(20, 30, 59, 79), 100, 80).accepted);   // 40 x 50
  EXPECT_FALSE(judge(rectangle(20, 30, 58, 79), 100, 80).accepted);  // 39 x 50
  EXPECT_FALSE(judge(rectangle(20, 30, 58, 80), 100, 80).accepted);  // 39 x 51: the sum alone is not enough
  EXPECT_FALSE(judge(rectangle(20, 30, 60, 78), 100, 80).accepted);  // 41 x 49
  EXPECT_TRUE(judge(rectangle(20, 30, 59, 79), 101, 80).accepted);   // halves are truncated
  EXPECT_TRUE(judge(rectangle(20, 30, 59, 79), 100, 81).accepted);
  EXPECT_FALSE(judge(rectangle(20, 30, 59, 79), 101, 81).accepted);  // 90 of 91
  EXPECT_FALSE(judge(rectangle(20, 30, 59, 79), 102, 80).accepted);  // 51 rows needed
  EXPECT_FALSE(judge(rectangle(20, 30, 59, 79), 100, 82).accepted);  // 41 columns needed
}

TEST(VerifyCorrectLoc, RejectsLessThanHalfTheWidthWhateverTheHeight) {
  EXPECT_FALSE(judge(rectangle(0, 0, 38, 99), 100, 80).accepted);
  EXPECT_TRUE(judge(rectangle(0, 0, 39, 99), 100, 80).accepted);
}

TEST(VerifyCorrectLoc, CountsRowsFromTheTop) {
  Corners corners{10, 95, 70, 94, 11, 5, 71, 4}, box;  // memory rows
  EXPECT_TRUE(VerifyCorrectLoc(corners.data(), box.data(), 100, 80));
  EXPECT_EQ(corners, (Corners{10, 5, 70, 6, 11, 95, 71, 96}));  // 100 - y, not 99 - y
}

TEST(VerifyCorrectLoc, OrdersCornersGivenInAnyOrder) {
  const Corners expected{10.25f, 5, 70.5f, 6, 11.75f, 95, 71, 96};
  std::array<std::size_t, 4> order{0, 1, 2, 3};
  do {
    Corners shuffled;
    for (std::size_t i = 0; i < 4; ++i) {
      shuffled[2 * i] = expected[2 * order[i]];
      shuffled[2 * i + 1] = expected[2 * order[i] + 1];
    }
    const Judged judged = judge(shuffled, 100, 80);
    EXPECT_TRUE(judged.accepted);
    EXPECT_EQ(judged.corners, expected);
    EXPECT_EQ(judged.box, (Corners{10, 5, 71, 5, 10, 96, 71, 96}));
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST(VerifyCorrectLoc, TakesTheHigherTwoForTheTopWhateverTheirSide) {
  // a diamond: the two highest are the top and the right one
  const Judged judged = judge({40, 5, 75, 45, 5, 50, 40, 95}, 100, 80);
  EXPECT_EQ(judged.corners, (Corners{40, 5, 75, 45, 5, 50, 40, 95}));
}

TEST(VerifyCorrectLoc, PutsTheLowerOfTwoCornersInOneColumnLeft) {
  // the second in the order of rows becomes the left one
  const Judged judged = judge({40, 5, 40, 10, 30, 90, 30, 95}, 100, 80);
  EXPECT_EQ(judged.corners, (Corners{40, 10, 40, 5, 30, 95, 30, 90}));
}

TEST(VerifyCorrectLoc, ClampsCornersToTheImage) {
  const Judged judged = judge({-5, -6, 90, -7, -8, 120, 95, 130}, 100, 80);
  EXPECT_TRUE(judged.accepted);
  EXPECT_EQ(judged.corners, (Corners{0, 0, 79, 0, 0, 99, 79, 99}));
  EXPECT_EQ(judged.box, (Corners{0, 0, 79, 0, 0, 99, 79, 99}));
}

TEST(VerifyCorrectLoc, ClampsAtTheLastPixel) {
  const Judged judged = judge({0, 0, 79.25f, 0, 0, 99.25f, 79.5f, 99.5f}, 100, 80);
  EXPECT_EQ(judged.corners, (Corners{0, 0, 79, 0, 0, 99, 79, 99}));
  const Judged inside = judge({0.25f, 0.25f, 79, 0.5f, 0.5f, 98.75f, 78.75f, 99}, 100, 80);
  EXPECT_EQ(inside.corners, (Corners{0.25f, 0.25f, 79, 0.5f, 0.5f, 98.75f, 78.75f, 99}));
}

TEST(VerifyCorrectLoc, ClampsEachCornerOnItsOwnSidesOnly) {
  // all corners right of the image: the left ones stay there
  const Judged right = judge({200, 10, 300, 11, 210, 90, 310, 91}, 100, 80);
  EXPECT_EQ(right.corners, (Corners{200, 10, 79, 11, 210, 90, 79, 91}));
  EXPECT_FALSE(right.accepted);
  // all corners left of the image: the right ones stay there
  const Judged left = judge({-300, 10, -200, 11, -310, 90, -210, 91}, 100, 80);
  EXPECT_EQ(left.corners, (Corners{0, 10, -200, 11, 0, 90, -210, 91}));
  EXPECT_FALSE(left.accepted);
  // all corners below the image: the top ones stay there
  const Judged below = judge({5, 200, 70, 201, 6, 210, 71, 211}, 100, 80);
  EXPECT_EQ(below.corners, (Corners{5, 200, 70, 201, 6, 99, 71, 99}));
  EXPECT_FALSE(below.accepted);
  // all corners above the image: the bottom ones stay there
  const Judged above = judge({5, -60, 70, -61, 6, -50, 71, -51}, 100, 80);
  EXPECT_EQ(above.corners, (Corners{5, 0, 70, 0, 6, -50, 71, -51}));
  EXPECT_FALSE(above.accepted);
}

TEST(VerifyCorrectLoc, RoundsTheTopOfTheBoxInOneCaseOnly) {
  EXPECT_EQ(judge({5, 10.75f, 70, 10.5f, 5, 90, 70, 90}, 100, 80).box[1], 10.0f);   // truncated right
  EXPECT_EQ(judge({5, 10.75f, 70, 10.75f, 5, 90, 70, 90}, 100, 80).box[1], 10.0f);  // also when equal
  EXPECT_EQ(judge({5, 10.75f, 70, 12, 5, 90, 70, 90}, 100, 80).box[1], 11.0f);      // rounded left
  EXPECT_EQ(judge({5, 10.25f, 70, 12, 5, 90, 70, 90}, 100, 80).box[1], 10.0f);
}

TEST(VerifyCorrectLoc, RoundsTheTopInDoublePrecision) {
  // 8388609.5 has no single-precision neighbour: there it would round to 8388610
  const Judged judged = judge({5, 8388609, 70, 8388620, 5, 8388690, 70, 8388690}, 8388700, 80);
  EXPECT_EQ(judged.box[1], 8388609.0f);
  const Judged tiny = judge_m({5, 0.49999997f, 70, 20, 5, 90, 70, 90}, 100, 80);
  EXPECT_EQ(tiny.box[1], 0.0f);
}

TEST(VerifyCorrectLoc, TakesTheOutermostCornersForTheBox) {
  const Judged judged = judge({9.75f, 5.5f, 69.75f, 5, 8.75f, 90.25f, 70.75f, 89.5f}, 100, 80);
  EXPECT_EQ(judged.box, (Corners{8, 5, 70, 5, 8, 90, 70, 90}));
}

TEST(VerifyCorrectLoc, FillsTheBoxOfRejectedCornersToo) {
  const Judged judged = judge(rectangle(20, 30, 30, 40), 100, 80);
  EXPECT_FALSE(judged.accepted);
  EXPECT_EQ(judged.box, (Corners{20, 30, 30, 30, 20, 40, 30, 40}));
}

constexpr float kMost = 2147483648.0f;  // whole numbers of the box end here

/** What becomes of rectangle(5, 5, 70, 90) in 100 x 80 when one of its values is far away. */
struct FarValue {
  std::size_t index;
  Corners corners;
  Corners box;
};

TEST(VerifyCorrectLoc, PutsCornersFarRightAndBelowAtTheLastColumnAndRow) {
  const FarValue cases[] = {
      {0, {70, 5, 79, 5, 5, 90, 70, 90}, rectangle(5, 5, 79, 90)},
      {1, {5, 90, 70, 5, 5, 99, 70, 90}, rectangle(5, 5, 70, 99)},  // the lower left corner is now among the upper two
      {2, {5, 5, 79, 5, 5, 90, 70, 90}, rectangle(5, 5, 79, 90)},
      {3, {5, 90, 5, 5, 70, 99, 70, 90}, rectangle(5, 5, 70, 99)},
      {4, {5, 5, 70, 5, 70, 90, 79, 90}, rectangle(5, 5, 79, 90)},
      {5, {5, 5, 70, 5, 5, 99, 70, 90}, rectangle(5, 5, 70, 99)},
      {6, {5, 5, 70, 5, 5, 90, 79, 90}, rectangle(5, 5, 79, 90)},
      {7, {5, 5, 70, 5, 5, 90, 70, 99}, rectangle(5, 5, 70, 99)},
  };
  for (const float far : {1e30f, std::numeric_limits<float>::infinity()}) {
    for (const FarValue& c : cases) {
      Corners corners = rectangle(5, 5, 70, 90);
      corners[c.index] = far;
      const Judged judged = judge(corners, 100, 80);
      EXPECT_TRUE(judged.accepted) << c.index;
      EXPECT_EQ(judged.corners, c.corners) << c.index;
      EXPECT_EQ(judged.box, c.box) << c.index;
      const Judged kept = judge_m(corners, 100, 80);  // rows are not clamped there
      EXPECT_TRUE(kept.accepted) << c.index;
      EXPECT_EQ(kept.box, c.index % 2 == 0 ? c.box : rectangle(5, 5, 70, kMost)) << c.index;
    }
    Corners all;
    all.fill(far);
    const Judged judged = judge(all, 100, 80), kept = judge_m(all, 100, 80);
    EXPECT_FALSE(judged.accepted);
    EXPECT_EQ(judged.box, rectangle(kMost, kMost, 79, 99));
    EXPECT_FALSE(kept.accepted);
    EXPECT_EQ(kept.box, rectangle(kMost, kMost, 79, kMost));
  }
}

TEST(VerifyCorrectLoc, PutsCornersFarLeftAndAboveAtTheFirstColumnAndRow) {
  const FarValue cases[] = {
      {0, {0, 5, 70, 5, 5, 90, 70, 90}, rectangle(0, 5, 70, 90)},
      {1, {5, 0, 70, 5, 5, 90, 70, 90}, rectangle(5, 0, 70, 90)},
      {2, {0, 5, 5, 5, 5, 90, 70, 90}, rectangle(0, 5, 70, 90)},
      {3, {5, 5, 70, 0, 5, 90, 70, 90}, rectangle(5, 0, 70, 90)},
      {4, {5, 5, 70, 5, 0, 90, 70, 90}, rectangle(0, 5, 70, 90)},
      {5, {5, 5, 5, 0, 70, 90, 70, 5}, rectangle(5, 0, 70, 90)},  // the upper right corner is now among the lower two
      {6, {5, 5, 70, 5, 0, 90, 5, 90}, rectangle(0, 5, 70, 90)},
      {7, {5, 5, 70, 0, 5, 90, 70, 5}, rectangle(5, 0, 70, 90)},
  };
  for (const float far : {-1e30f, -std::numeric_limits<float>::infinity()}) {
    for (const FarValue& c : cases) {
      Corners corners = rectangle(5, 5, 70, 90);
      corners[c.index] = far;
      const Judged judged = judge(corners, 100, 80);
      EXPECT_TRUE(judged.accepted) << c.index;
      EXPECT_EQ(judged.corners, c.corners) << c.index;
      EXPECT_EQ(judged.box, c.box) << c.index;
      const Judged kept = judge_m(corners, 100, 80);  // columns go to 1 there, rows are not clamped
      EXPECT_TRUE(kept.accepted) << c.index;
      EXPECT_EQ(kept.box, c.index % 2 == 0 ? rectangle(1, 5, 70, 90) : rectangle(5, -kMost, 70, 90)) << c.index;
    }
    Corners all;
    all.fill(far);
    const Judged judged = judge(all, 100, 80), kept = judge_m(all, 100, 80);
    EXPECT_FALSE(judged.accepted);
    EXPECT_EQ(judged.box, rectangle(0, 0, -kMost, -kMost));
    EXPECT_FALSE(kept.accepted);
    EXPECT_EQ(kept.box, rectangle(1, -kMost, -kMost, -kMost));
  }
}

TEST(VerifyCorrectLoc, GivesABoxOfWholeNumbersForValuesThatAreNone) {
  for (std::size_t i = 0; i < 8; ++i) {
    Corners corners = rectangle(5, 5, 70, 90);
    corners[i] = std::nanf("");
    for (const Judged& judged : {judge(corners, 100, 80), judge_m(corners, 100, 80)}) {
      const float w = judged.box[2] - judged.box[0] + 1, h = judged.box[5] - judged.box[1] + 1;
      for (const float value : judged.box) EXPECT_TRUE(value == 0 || value == 5 || value == 70 || value == 90) << value;
      EXPECT_EQ(judged.accepted, w >= 40 && h >= 50 && w + h >= 90) << i;
    }
  }
  Corners none;
  none.fill(std::nanf(""));
  for (const Judged& judged : {judge(none, 100, 80), judge_m(none, 100, 80)}) {
    EXPECT_FALSE(judged.accepted);
    EXPECT_EQ(judged.box, Corners{});
  }
}

TEST(VerifyCorrectLocM, KeepsRowsAsTheyAre) {
  const Judged judged = judge_m({71, 96, 11, 95, 70, 6, 10, 5}, 100, 80);
  EXPECT_TRUE(judged.accepted);
  EXPECT_EQ(judged.corners, (Corners{10, 5, 70, 6, 11, 95, 71, 96}));
  EXPECT_EQ(judged.box, (Corners{10, 5, 71, 5, 10, 96, 71, 96}));
}

TEST(VerifyCorrectLocM, ClampsColumnsOnly) {
  const Judged judged = judge_m({-5, -6, 81, -7, -8, 120, 80, 130}, 100, 80);
  EXPECT_EQ(judged.corners, (Corners{1, -6, 79, -7, 1, 120, 80, 130}));  // up to the width itself nothing is clamped
  EXPECT_EQ(judged.box, (Corners{1, -7, 80, -7, 1, 130, 80, 130}));
  EXPECT_TRUE(judged.accepted);
  EXPECT_EQ(judge_m({0, 5, 80.5f, 5, 0, 90, 70, 90}, 100, 80).corners, (Corners{0, 5, 79, 5, 0, 90, 70, 90}));
}

TEST(VerifyCorrectLocM, JudgesLikeTheOther) {
  EXPECT_TRUE(judge_m(rectangle(20, 30, 59, 79), 100, 80).accepted);
  EXPECT_FALSE(judge_m(rectangle(20, 30, 58, 79), 100, 80).accepted);
  EXPECT_FALSE(judge_m(rectangle(20, 30, 60, 78), 100, 80).accepted);
}

TEST(CompYcoord, ComparesTheFirstOfTwoFloats) {
  const auto compare = [](float a, float b) {
    const float p[2] = {a, 9}, q[2] = {b, -9};
    return comp_ycoord(p, q);
  };
  const float nan = std::nanf("");
  EXPECT_EQ(compare(1, 2), -1);
  EXPECT_EQ(compare(2, 1), 1);
  EXPECT_EQ(compare(2, 2), 0);
  EXPECT_EQ(compare(0.0f, -0.0f), 0);
  EXPECT_EQ(compare(nan, 1), 1);
  EXPECT_EQ(compare(1, nan), 1);
  EXPECT_EQ(compare(nan, nan), 1);
}

}  // namespace
