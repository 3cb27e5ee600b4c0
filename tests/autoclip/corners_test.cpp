// Edge points of a band, and intersections of border lines.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "autoclip/exports.h"
#include "support/image.h"

namespace {

using FloatCorners = std::array<float, 8>;

constexpr float kUnwritten = -123.5f;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();

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
      CalcUnknownFun(kInfinite, kInfinite, 1, 3, 5, 10);  // the factor 1 / infinity times infinity
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
  bool intersect(FloatCorners& corners) {
    corners.fill(kUnwritten);
    return CalIntersectPoint(normal, distance, corners.data());
  }
};

/** Level and upright lines at rows 98 and 1 and columns 0 and 78. */
Lines upright_lines() { return {{0, 1, 0, 1, 1, 0, 1, 0}, {98, 1, 0, 78}}; }

TEST(CalIntersectPoint, OfUprightLinesAddsHalfAPixel) {
  FloatCorners corners;
  ASSERT_TRUE(upright_lines().intersect(corners));
  EXPECT_EQ(corners, (FloatCorners{0.5f, 98.5f, 78.5f, 98.5f, 0.5f, 1.5f, 78.5f, 1.5f}));
}

TEST(CalIntersectPoint, TakesTheHalfPixelAlongBesideLevelLines) {
  // y' = 10 / 2 + 0.5 = 5.5; x = (20 - 5.5 * 0.5) / 2 + 0.5; x = (8 + 5.5 * 0.25) / 4 + 0.5
  // y' = 3 / 1 + 0.5 = 3.5; x = (20 - 3.5 * 0.5) / 2 + 0.5; x = (8 + 3.5 * 0.25) / 4 + 0.5
  Lines lines{{0, 2, 0, 1, 2, 0.5, 4, -0.25}, {10, 3, 20, 8}};
  FloatCorners corners;
  ASSERT_TRUE(lines.intersect(corners));
  EXPECT_EQ(corners, (FloatCorners{9.125f, 5.5f, 2.84375f, 5.5f, 9.625f, 3.5f, 2.71875f, 3.5f}));
}

TEST(CalIntersectPoint, TakesTheHalfPixelAlongBesideUprightLines) {
  // x' = 6 / 2 + 0.5 = 3.5; y = (20 - 3.5) / 2 + 0.5 and (12 - 3.5 * 0.5) / 4 + 0.5
  // x' = 8 / 1 + 0.5 = 8.5; y = (20 - 8.5) / 2 + 0.5 and (12 - 8.5 * 0.5) / 4 + 0.5
  Lines lines{{1, 2, 0.5, 4, 2, 0, 1, 0}, {20, 12, 6, 8}};
  FloatCorners corners;
  ASSERT_TRUE(lines.intersect(corners));
  EXPECT_EQ(corners, (FloatCorners{3.5f, 8.75f, 8.5f, 6.25f, 3.5f, 3.0625f, 8.5f, 2.4375f}));
}

TEST(CalIntersectPoint, SolvesTiltedLines) {
  // x + y = 10 and x + 2 y = 5 with x - y = 2 and 2 x - y = 8
  Lines lines{{1, 1, 1, 2, 1, -1, 2, -1}, {10, 5, 2, 8}};
  FloatCorners corners;
  ASSERT_TRUE(lines.intersect(corners));
  EXPECT_EQ(corners, (FloatCorners{6.5f, 4.5f, 6.5f, 4.5f, 3.5f, 1.5f, 4.7f, 0.9f}));
}

TEST(CalIntersectPoint, MixesTheWaysPerSide) {
  // level top, tilted bottom; upright left, tilted right
  Lines lines{{0, 1, 1, 2, 1, 0, 2, -1}, {10, 5, 2, 8}};
  FloatCorners corners;
  ASSERT_TRUE(lines.intersect(corners));
  EXPECT_EQ(corners, (FloatCorners{2.5f, 10.5f, 9.75f, 10.5f, 2.5f, 1.75f, 4.7f, 0.9f}));
}

TEST(CalIntersectPoint, ComputesFromTheStoredSinglePrecision) {
  // x' = 1/3 + 0.5 is 0.8333333134651184 in single precision: ten million times its error is 0.2
  Lines upright{{1e7, 1, 1e7, 1, 3, 0, 3, 0}, {1e7, 1e7, 1, 1}};
  FloatCorners corners;
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
    FloatCorners corners;
    EXPECT_FALSE(lines.intersect(corners)) << "case " << i;
    for (std::size_t k = 2 * static_cast<std::size_t>(cases[i].written); k < 8; ++k) {
      EXPECT_EQ(corners[k], kUnwritten) << "case " << i << ", value " << k;
    }
  }
}

TEST(CalIntersectPoint, TakesMinusZeroForZero) {
  Lines lines{{-0.0, 1, -0.0, 1, 1, -0.0, 1, -0.0}, {98, 1, 0, 78}};
  FloatCorners corners;
  ASSERT_TRUE(lines.intersect(corners));
  EXPECT_EQ(corners, (FloatCorners{0.5f, 98.5f, 78.5f, 98.5f, 0.5f, 1.5f, 78.5f, 1.5f}));
  Lines degenerate{{-0.0, -0.0, 0, 1, 1, 0, 1, 0}, {98, 1, 0, 78}};
  EXPECT_FALSE(degenerate.intersect(corners));
}

TEST(CalIntersectPoint, TakesNotANumberForAnythingButZero) {
  for (const int index : {0, 1, 2, 3, 4, 5, 6, 7}) {
    Lines lines{{1, 1, 1, 2, 1, -1, 2, -1}, {10, 5, 2, 8}};
    lines.normal[index] = kNan;
    FloatCorners corners;
    EXPECT_TRUE(lines.intersect(corners)) << index;
  }
  Lines level = upright_lines();
  level.normal[0] = kNan;  // no longer level: the left line is upright
  FloatCorners corners;
  EXPECT_TRUE(level.intersect(corners));
  EXPECT_EQ(corners[0], 0.5f);
  EXPECT_TRUE(std::isnan(corners[1]));
}

}  // namespace
