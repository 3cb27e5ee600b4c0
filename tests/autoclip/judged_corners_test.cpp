// The order, the limits and the judgement of four corners.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "autoclip/exports.h"

namespace {

using FloatCorners = std::array<float, 8>;

constexpr float kUnjudged = -123.5f;

/** Top-left, top-right, bottom-left, bottom-right of a rectangle in rows counted from the top. */
FloatCorners rectangle(float left, float top, float right, float bottom) {
  return {left, top, right, top, left, bottom, right, bottom};
}

/** The same corners in memory rows. */
FloatCorners in_memory(FloatCorners corners, int rows) {
  for (std::size_t i = 1; i < 8; i += 2) corners[i] = static_cast<float>(rows) - corners[i];
  return corners;
}

struct Judged {
  bool accepted;
  FloatCorners corners;
  FloatCorners box;
};

/** Judges corners given in rows counted from the top. */
Judged judge(const FloatCorners& from_top, int rows, int cols) {
  Judged judged{false, in_memory(from_top, rows), {}};
  judged.box.fill(kUnjudged);
  judged.accepted = VerifyCorrectLoc(judged.corners.data(), judged.box.data(), rows, cols);
  return judged;
}

Judged judge_m(const FloatCorners& corners, int rows, int cols) {
  Judged judged{false, corners, {}};
  judged.box.fill(kUnjudged);
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
  FloatCorners corners{10, 95, 70, 94, 11, 5, 71, 4}, box;  // memory rows
  EXPECT_TRUE(VerifyCorrectLoc(corners.data(), box.data(), 100, 80));
  EXPECT_EQ(corners, (FloatCorners{10, 5, 70, 6, 11, 95, 71, 96}));  // 100 - y, not 99 - y
}

TEST(VerifyCorrectLoc, OrdersCornersGivenInAnyOrder) {
  const FloatCorners expected{10.25f, 5, 70.5f, 6, 11.75f, 95, 71, 96};
  std::array<std::size_t, 4> order{0, 1, 2, 3};
  do {
    FloatCorners shuffled;
    for (std::size_t i = 0; i < 4; ++i) {
      shuffled[2 * i] = expected[2 * order[i]];
      shuffled[2 * i + 1] = expected[2 * order[i] + 1];
    }
    const Judged judged = judge(shuffled, 100, 80);
    EXPECT_TRUE(judged.accepted);
    EXPECT_EQ(judged.corners, expected);
    EXPECT_EQ(judged.box, (FloatCorners{10, 5, 71, 5, 10, 96, 71, 96}));
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST(VerifyCorrectLoc, TakesTheHigherTwoForTheTopWhateverTheirSide) {
  // a diamond: the two highest are the top and the right one
  const Judged judged = judge({40, 5, 75, 45, 5, 50, 40, 95}, 100, 80);
  EXPECT_EQ(judged.corners, (FloatCorners{40, 5, 75, 45, 5, 50, 40, 95}));
}

TEST(VerifyCorrectLoc, PutsTheLowerOfTwoCornersInOneColumnLeft) {
  // the second in the order of rows becomes the left one
  const Judged judged = judge({40, 5, 40, 10, 30, 90, 30, 95}, 100, 80);
  EXPECT_EQ(judged.corners, (FloatCorners{40, 10, 40, 5, 30, 95, 30, 90}));
}

TEST(VerifyCorrectLoc, ClampsCornersToTheImage) {
  const Judged judged = judge({-5, -6, 90, -7, -8, 120, 95, 130}, 100, 80);
  EXPECT_TRUE(judged.accepted);
  EXPECT_EQ(judged.corners, (FloatCorners{0, 0, 79, 0, 0, 99, 79, 99}));
  EXPECT_EQ(judged.box, (FloatCorners{0, 0, 79, 0, 0, 99, 79, 99}));
}

TEST(VerifyCorrectLoc, ClampsAtTheLastPixel) {
  const Judged judged = judge({0, 0, 79.25f, 0, 0, 99.25f, 79.5f, 99.5f}, 100, 80);
  EXPECT_EQ(judged.corners, (FloatCorners{0, 0, 79, 0, 0, 99, 79, 99}));
  const Judged inside = judge({0.25f, 0.25f, 79, 0.5f, 0.5f, 98.75f, 78.75f, 99}, 100, 80);
  EXPECT_EQ(inside.corners, (FloatCorners{0.25f, 0.25f, 79, 0.5f, 0.5f, 98.75f, 78.75f, 99}));
}

TEST(VerifyCorrectLoc, ClampsEachCornerOnItsOwnSidesOnly) {
  // all corners right of the image: the left ones stay there
  const Judged right = judge({200, 10, 300, 11, 210, 90, 310, 91}, 100, 80);
  EXPECT_EQ(right.corners, (FloatCorners{200, 10, 79, 11, 210, 90, 79, 91}));
  EXPECT_FALSE(right.accepted);
  // all corners left of the image: the right ones stay there
  const Judged left = judge({-300, 10, -200, 11, -310, 90, -210, 91}, 100, 80);
  EXPECT_EQ(left.corners, (FloatCorners{0, 10, -200, 11, 0, 90, -210, 91}));
  EXPECT_FALSE(left.accepted);
  // all corners below the image: the top ones stay there
  const Judged below = judge({5, 200, 70, 201, 6, 210, 71, 211}, 100, 80);
  EXPECT_EQ(below.corners, (FloatCorners{5, 200, 70, 201, 6, 99, 71, 99}));
  EXPECT_FALSE(below.accepted);
  // all corners above the image: the bottom ones stay there
  const Judged above = judge({5, -60, 70, -61, 6, -50, 71, -51}, 100, 80);
  EXPECT_EQ(above.corners, (FloatCorners{5, 0, 70, 0, 6, -50, 71, -51}));
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
  EXPECT_EQ(judged.box, (FloatCorners{8, 5, 70, 5, 8, 90, 70, 90}));
}

TEST(VerifyCorrectLoc, FillsTheBoxOfRejectedCornersToo) {
  const Judged judged = judge(rectangle(20, 30, 30, 40), 100, 80);
  EXPECT_FALSE(judged.accepted);
  EXPECT_EQ(judged.box, (FloatCorners{20, 30, 30, 30, 20, 40, 30, 40}));
}

constexpr float kMost = 2147483648.0f;  // whole numbers of the box end here

/** What becomes of rectangle(5, 5, 70, 90) in 100 x 80 when one of its values is far away. */
struct FarValue {
  std::size_t index;
  FloatCorners corners;
  FloatCorners box;
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
      FloatCorners corners = rectangle(5, 5, 70, 90);
      corners[c.index] = far;
      const Judged judged = judge(corners, 100, 80);
      EXPECT_TRUE(judged.accepted) << c.index;
      EXPECT_EQ(judged.corners, c.corners) << c.index;
      EXPECT_EQ(judged.box, c.box) << c.index;
      const Judged kept = judge_m(corners, 100, 80);  // rows are not clamped there
      EXPECT_TRUE(kept.accepted) << c.index;
      EXPECT_EQ(kept.box, c.index % 2 == 0 ? c.box : rectangle(5, 5, 70, kMost)) << c.index;
    }
    FloatCorners all;
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
      FloatCorners corners = rectangle(5, 5, 70, 90);
      corners[c.index] = far;
      const Judged judged = judge(corners, 100, 80);
      EXPECT_TRUE(judged.accepted) << c.index;
      EXPECT_EQ(judged.corners, c.corners) << c.index;
      EXPECT_EQ(judged.box, c.box) << c.index;
      const Judged kept = judge_m(corners, 100, 80);  // columns go to 1 there, rows are not clamped
      EXPECT_TRUE(kept.accepted) << c.index;
      EXPECT_EQ(kept.box, c.index % 2 == 0 ? rectangle(1, 5, 70, 90) : rectangle(5, -kMost, 70, 90)) << c.index;
    }
    FloatCorners all;
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
    FloatCorners corners = rectangle(5, 5, 70, 90);
    corners[i] = std::nanf("");
    for (const Judged& judged : {judge(corners, 100, 80), judge_m(corners, 100, 80)}) {
      const float w = judged.box[2] - judged.box[0] + 1, h = judged.box[5] - judged.box[1] + 1;
      for (const float value : judged.box) EXPECT_TRUE(value == 0 || value == 5 || value == 70 || value == 90) << value;
      EXPECT_EQ(judged.accepted, w >= 40 && h >= 50 && w + h >= 90) << i;
    }
  }
  FloatCorners none;
  none.fill(std::nanf(""));
  for (const Judged& judged : {judge(none, 100, 80), judge_m(none, 100, 80)}) {
    EXPECT_FALSE(judged.accepted);
    EXPECT_EQ(judged.box, FloatCorners{});
  }
}

TEST(VerifyCorrectLocM, KeepsRowsAsTheyAre) {
  const Judged judged = judge_m({71, 96, 11, 95, 70, 6, 10, 5}, 100, 80);
  EXPECT_TRUE(judged.accepted);
  EXPECT_EQ(judged.corners, (FloatCorners{10, 5, 70, 6, 11, 95, 71, 96}));
  EXPECT_EQ(judged.box, (FloatCorners{10, 5, 71, 5, 10, 96, 71, 96}));
}

TEST(VerifyCorrectLocM, ClampsColumnsOnly) {
  const Judged judged = judge_m({-5, -6, 81, -7, -8, 120, 80, 130}, 100, 80);
  EXPECT_EQ(judged.corners,
            (FloatCorners{1, -6, 79, -7, 1, 120, 80, 130}));  // up to the width itself nothing is clamped
  EXPECT_EQ(judged.box, (FloatCorners{1, -7, 80, -7, 1, 130, 80, 130}));
  EXPECT_TRUE(judged.accepted);
  EXPECT_EQ(judge_m({0, 5, 80.5f, 5, 0, 90, 70, 90}, 100, 80).corners, (FloatCorners{0, 5, 79, 5, 0, 90, 70, 90}));
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
