// Directions as bins of a half-turn.
#include <gtest/gtest.h>

#include <cmath>

#include "anywhere/directions.h"

namespace {

using namespace vantrel::anywhere;

TEST(Directions, HaveUnitNormals) {
  for (const Point& normal : kNormals) EXPECT_NEAR(length(normal), 1.0, 1e-15);
}

TEST(Directions, TurnFromTheXAxisTowardsY) {
  EXPECT_NEAR(kNormals[0].x, 1.0, 1e-15);
  EXPECT_NEAR(kNormals[0].y, 0.0, 1e-15);
  EXPECT_NEAR(kNormals[64].x, 0.70710678118654752, 1e-15);
  EXPECT_NEAR(kNormals[64].y, 0.70710678118654752, 1e-15);
  EXPECT_EQ(kNormals[128].x, 0.0);
  EXPECT_EQ(kNormals[128].y, 1.0);
  EXPECT_NEAR(kNormals[192].x, -0.70710678118654752, 1e-15);
  EXPECT_NEAR(kNormals[192].y, 0.70710678118654752, 1e-15);
}

TEST(Directions, OfTheirNormalsAreThemselves) {
  for (int i = 0; i < kDirections; ++i) {
    const Point normal = kNormals[static_cast<std::size_t>(i)];
    EXPECT_EQ(direction_of(normal.x, normal.y), i);
    EXPECT_EQ(direction_of(-normal.x, -normal.y), i);
    EXPECT_EQ(direction_of(9000 * normal.x, 9000 * normal.y), i);
  }
}

TEST(Directions, OfAxesAndDiagonals) {
  EXPECT_EQ(direction_of(0, 0), 0);
  EXPECT_EQ(direction_of(5, 0), 0);
  EXPECT_EQ(direction_of(-5, 0), 0);
  EXPECT_EQ(direction_of(0, 5), 128);
  EXPECT_EQ(direction_of(0, -5), 128);
  EXPECT_EQ(direction_of(3, 3), 64);
  EXPECT_EQ(direction_of(-3, -3), 64);
  EXPECT_EQ(direction_of(-3, 3), 192);
  EXPECT_EQ(direction_of(3, -3), 192);
}

TEST(Directions, ChangeMidwayBetweenTwoNormals) {
  const double bin = std::acos(-1.0) / kDirections;
  for (int i = 0; i < kDirections; ++i) {
    for (const double beside : {-0.499, 0.499}) {
      const double angle = (i + beside) * bin;
      EXPECT_EQ(direction_of(std::cos(angle), std::sin(angle)), i) << beside;
    }
  }
}

TEST(Directions, LieApartByTheShorterWayRound) {
  EXPECT_EQ(between(7, 7), 0);
  EXPECT_EQ(between(0, 255), 1);
  EXPECT_EQ(between(255, 0), 1);
  EXPECT_EQ(between(10, 250), 16);
  EXPECT_EQ(between(0, 128), 128);
  EXPECT_EQ(between(0, 129), 127);
  EXPECT_EQ(between(40, 140), 100);
}

}  // namespace
