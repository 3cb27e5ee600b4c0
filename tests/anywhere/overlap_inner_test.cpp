// How two quadrilaterals lie to each other.
#include <gtest/gtest.h>

#include <cmath>

#include "anywhere/drawn_copy.h"
#include "anywhere/overlap.h"
#include "support/random.h"

namespace {

using namespace vantrel::anywhere;
using support::upright;

constexpr double kSide = 10.0;
const Quad kSquare = upright(0, 0, kSide, kSide);

TEST(SharedArea, OfTheSameQuadrilateralIsItsArea) {
  EXPECT_EQ(shared_area(kSquare, kSquare), 100.0);
  const Quad slanted{{Point{1, 0}, {9, 2}, {7, 8}, {0, 6}}};
  EXPECT_NEAR(shared_area(slanted, slanted), area(slanted), 1e-12);
}

TEST(SharedArea, OfAShiftedSquareIsTheRest) {
  EXPECT_EQ(shared_area(kSquare, upright(5, 0, 15, 10)), 50.0);
  EXPECT_EQ(shared_area(kSquare, upright(5, 5, 15, 15)), 25.0);
  EXPECT_EQ(shared_area(upright(5, 5, 15, 15), kSquare), 25.0);
}

TEST(SharedArea, OfASquareOnItsCornerWithinIsThatOne) {
  const Quad on_corner{{Point{5, 0}, {10, 5}, {5, 10}, {0, 5}}};
  EXPECT_EQ(shared_area(kSquare, on_corner), 50.0);
  EXPECT_EQ(shared_area(on_corner, kSquare), 50.0);
}

TEST(SharedArea, OfTwoSquaresTurnedByAnEighthIsAnOctagon) {
  const double half = 5 * std::sqrt(2.0);
  const Quad on_corner{{Point{5, 5 - half}, {5 + half, 5}, {5, 5 + half}, {5 - half, 5}}};
  EXPECT_NEAR(shared_area(kSquare, on_corner), 200 * (std::sqrt(2.0) - 1), 1e-9);
}

TEST(SharedArea, OfWhatLiesApartOrTouchesIsNone) {
  EXPECT_EQ(shared_area(kSquare, upright(20, 0, 30, 10)), 0.0);
  EXPECT_EQ(shared_area(kSquare, upright(0, 11, 10, 20)), 0.0);
  EXPECT_EQ(shared_area(kSquare, upright(10, 0, 20, 10)), 0.0);
  // The boxes around them meet.
  const Quad lower_left{{Point{0, 0}, {10, 10}, {5, 11}, {0, 10}}},
      upper_right{{Point{3, 0}, {9, -2}, {10, 0}, {11, 8}}};
  EXPECT_EQ(shared_area(lower_left, upper_right), 0.0);
}

TEST(SharedArea, WithALineIsNone) {
  EXPECT_EQ(shared_area(kSquare, upright(2, 5, 8, 5)), 0.0);
  EXPECT_EQ(shared_area(upright(2, 5, 8, 5), kSquare), 0.0);
}

bool contains(const Quad& quad, Point p) {
  for (std::size_t i = 0; i < 4; ++i)
    if (cross(quad[i + 1] - quad[i], p - quad[i]) < 0) return false;
  return true;
}

/** A convex quadrilateral: one corner on each quarter of a circle. */
Quad random_quad(support::Random& random) {
  const double x = random.real(30, 70), y = random.real(30, 70), radius = random.real(10, 30);
  const double start = random.real(0, 6.28);
  Quad quad;
  for (std::size_t i = 0; i < 4; ++i) {
    const double angle = start + 1.5707963 * (static_cast<double>(i) + random.real(-0.3, 0.3));
    quad.corners[i] = {x + radius * std::cos(angle), y + radius * std::sin(angle)};
  }
  return quad;
}

TEST(SharedArea, IsWhatAGridOfPointsCounts) {
  support::Random random(17);
  for (int round = 0; round < 60; ++round) {
    const Quad a = random_quad(random), b = random_quad(random);
    ASSERT_GT(area(a), 0.0);
    int count = 0;
    for (int row = 0; row < 400; ++row)
      for (int col = 0; col < 400; ++col) {
        const Point p = {(col + 0.5) / 4, (row + 0.5) / 4};
        count += contains(a, p) && contains(b, p);
      }
    EXPECT_NEAR(shared_area(a, b), count / 16.0, 4.0);
  }
}

TEST(Relation, OfNeighboursIsApart) {
  EXPECT_EQ(relation(kSquare, upright(20, 0, 30, 10)), Relation::kApart);
  EXPECT_EQ(relation(kSquare, upright(9.3, 0, 19.3, 10)), Relation::kApart);  // they share 7 of 100
  EXPECT_EQ(relation(kSquare, upright(9.2, 0, 19.2, 10)), Relation::kAcross);
  EXPECT_EQ(relation(upright(0, 0, 100, 100), upright(99.4, 0, 109.4, 10)), Relation::kApart);
}

TEST(Relation, OfWhatNearlyCoincidesIsTheSame) {
  EXPECT_EQ(relation(kSquare, kSquare), Relation::kSame);
  EXPECT_EQ(relation(kSquare, upright(0, 0, 10, 8.6)), Relation::kSame);
  EXPECT_EQ(relation(upright(0, 0, 10, 8.6), kSquare), Relation::kSame);
}

TEST(Relation, OfWhatLiesWithinTellsWhich) {
  const Quad small = upright(1, 1, 9, 9);
  EXPECT_EQ(relation(kSquare, small), Relation::kAround);
  EXPECT_EQ(relation(small, kSquare), Relation::kWithin);
  EXPECT_EQ(relation(kSquare, upright(0, 0, 10, 8.4)), Relation::kAround);
}

TEST(Relation, OfWhatLooksOutALittleIsStillWithin) {
  EXPECT_EQ(relation(kSquare, upright(5, -0.2, 9, 3.8)), Relation::kAround);  // 5 of 100 look out
  EXPECT_EQ(relation(upright(5, -0.2, 9, 3.8), kSquare), Relation::kWithin);
  EXPECT_EQ(relation(kSquare, upright(5, -0.4, 9, 3.6)), Relation::kAcross);  // 10 of 100
}

TEST(Relation, OfWhatOverlapsOtherwiseIsAcross) {
  EXPECT_EQ(relation(kSquare, upright(5, 5, 15, 15)), Relation::kAcross);
  EXPECT_EQ(relation(upright(0, 3, 30, 7), upright(13, -10, 17, 20)), Relation::kAcross);
}

}  // namespace
