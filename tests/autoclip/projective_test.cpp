// The plane projective mapping through four point pairs.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

#include "autoclip/exports.h"

namespace {

using Points = std::array<float, 8>;
using Coefficients = std::array<double, 8>;

Coefficients solve(Points from, Points to) {
  Coefficients coefficients;
  coefficients.fill(-99);
  EXPECT_EQ(SolveMultiUnknownFunc(coefficients.data(), from.data(), to.data(), 8), 1);
  return coefficients;
}

/** The greatest distance of a mapped point from where it belongs. */
double residual(const Coefficients& c, const Points& from, const Points& to) {
  double worst = 0;
  for (std::size_t i = 0; i < 8; i += 2) {
    const double x = from[i], y = from[i + 1];
    const double d = c[6] * x + c[7] * y + 1;
    worst = std::max(worst, std::abs((c[0] * x + c[1] * y + c[2]) / d - to[i]));
    worst = std::max(worst, std::abs((c[3] * x + c[4] * y + c[5]) / d - to[i + 1]));
  }
  return worst;
}

constexpr Points kFrame{1, 1, 98, 1, 1, 78, 98, 78};

TEST(SolveMultiUnknownFunc, OfUnmovedCornersIsTheIdentity) {
  const Coefficients c = solve(kFrame, kFrame);
  const Coefficients identity{1, 0, 0, 0, 1, 0, 0, 0};
  for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(c[i], identity[i], 1e-12) << i;
}

TEST(SolveMultiUnknownFunc, FindsAffineMappings) {
  // u = 2 x - y + 10, v = x + 3 y - 5
  Points to;
  for (std::size_t i = 0; i < 8; i += 2) {
    to[i] = 2 * kFrame[i] - kFrame[i + 1] + 10;
    to[i + 1] = kFrame[i] + 3 * kFrame[i + 1] - 5;
  }
  const Coefficients c = solve(kFrame, to), expected{2, -1, 10, 1, 3, -5, 0, 0};
  for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(c[i], expected[i], 1e-10) << i;
}

TEST(SolveMultiUnknownFunc, FindsPerspective) {
  // u = x / (y / 64 + 1), v = y / (y / 64 + 1): exact in single precision at y = 0 and y = 64
  const Points from{0, 0, 64, 0, 0, 64, 64, 64}, to{0, 0, 64, 0, 0, 32, 32, 32};
  const Coefficients c = solve(from, to), expected{1, 0, 0, 0, 1, 0, 0, 1.0 / 64};
  for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(c[i], expected[i], 1e-6) << i;
}

TEST(SolveMultiUnknownFunc, PutsATinyPivotInTheZerosPlace) {
  // a first pair at x = 0 starts with a pivot of zero: its equation c2 = 0 is solved as 1e-7 c0 + c2 = 0
  const Points square{0, 0, 64, 0, 0, 64, 64, 64};
  const Coefficients c = solve(square, square);
  EXPECT_NEAR(c[2], -1e-7, 1e-9);
  EXPECT_LT(residual(c, square, square), 1e-6);
}

TEST(SolveMultiUnknownFunc, OfPointsInOnePlaceDividesByATinyPivot) {
  // every equation is c2 = 64 or c5 = 32; what is left of the others has no pivot
  const Coefficients c = solve({0, 0, 0, 0, 0, 0, 0, 0}, {64, 32, 64, 32, 64, 32, 64, 32});
  for (std::size_t i = 0; i < 8; ++i) EXPECT_TRUE(std::isfinite(c[i])) << i;
}

TEST(SolveMultiUnknownFunc, ReadsNoFartherThanAnOddNumberOfEquations) {
  Coefficients c;
  c.fill(-99);
  // exactly as long as they have to be, for the address sanitizer
  std::vector<float> from = {3, 4, 5, 6, 70, 8, 9};
  std::vector<float> to = {1, 2, 3, 4, 50, 6, 7};
  EXPECT_EQ(SolveMultiUnknownFunc(c.data(), from.data(), to.data(), 7), 1);
  EXPECT_NE(c[6], -99);
  EXPECT_EQ(c[7], -99);
}

TEST(SolveMultiUnknownFunc, WorksInDoublePrecision) {
  const Points from{1, 1, 8190, 1, 1, 5460, 8190, 5460};
  const Points to{413.34375f, 1029.171875f, 7913.8125f, 233.4375f, 777.40625f, 5033.28125f, 7531.71875f, 4891.15625f};
  EXPECT_LT(residual(solve(from, to), from, to), 1e-7);  // products in single precision would leave about 1e-3
}

TEST(SolveMultiUnknownFunc, GoesOnWithATinyPivotForCollinearCorners) {
  const Points from{1, 1, 1, 1, 1, 1, 1, 1};
  const Coefficients same = solve(from, kFrame);
  for (const double value : same) EXPECT_NE(value, -99);
  const Points collinear{0, 0, 10, 10, 20, 20, 0, 30};
  const Coefficients line = solve(collinear, kFrame);
  for (const double value : line) EXPECT_NE(value, -99);
  const Points zero{};
  for (const double value : solve(zero, zero)) EXPECT_NE(value, -99);
  for (const double value : solve(zero, kFrame)) EXPECT_NE(value, -99);
}

TEST(SolveMultiUnknownFunc, SpreadsAValueThatIsNoNumberToAllCoefficients) {
  // its equation is subtracted from all others, and zero times infinity is no number either
  for (const float value : {std::nanf(""), std::numeric_limits<float>::infinity()}) {
    for (std::size_t i = 0; i < 8; ++i) {
      Points changed = kFrame;
      changed[i] = value;
      for (const double c : solve(kFrame, changed)) EXPECT_TRUE(std::isnan(c)) << i;
      for (const double c : solve(changed, kFrame)) EXPECT_TRUE(std::isnan(c)) << i;
    }
  }
}

TEST(SolveMultiUnknownFunc, OfTheLargestValuesIsFinite) {
  for (std::size_t i = 0; i < 8; ++i) {
    Points changed = kFrame;
    changed[i] = 3e38f;
    for (const double c : solve(kFrame, changed)) EXPECT_TRUE(std::isfinite(c)) << i;
    for (const double c : solve(changed, kFrame)) EXPECT_TRUE(std::isfinite(c)) << i;
  }
}

TEST(GetUAndGetV, MapOneCoordinateWithItsHalfPixel) {
  for (const auto get : {Get_U, Get_V}) {
    EXPECT_EQ(get(2, 3, 4, 2, 5, 6), 16.5f);               // (10 + 18 + 4) / 2 + 0.5
    EXPECT_EQ(get(0, 0, 16777217, 1, 0, 0), 16777216.0f);  // to single precision first, then half a pixel
    EXPECT_EQ(get(0, 0, -1.5, 1, 7, 7), -1.0f);
    EXPECT_EQ(get(1, 0, 0, -2, 3, 0), -1.0f);
    EXPECT_EQ(get(0, 0, 1, 0, 0, 0), std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(get(0, 0, 0, 0, 0, 0)));
  }
}

}  // namespace
