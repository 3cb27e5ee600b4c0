// The line through places.
#include <gtest/gtest.h>

#include <initializer_list>

#include "anywhere/axis.h"

namespace {

using vantrel::anywhere::Moments;
using vantrel::anywhere::NormalLine;
using vantrel::anywhere::Point;

Moments moments_of(std::initializer_list<Point> places) {
  Moments moments;
  for (const Point& place : places) moments.add(place);
  return moments;
}

TEST(PrincipalAxis, RunsAlongThePlaces) {
  NormalLine line;
  ASSERT_TRUE(principal_axis(moments_of({{2, 7}, {5, 7}, {9, 7}}), line));
  EXPECT_NEAR(line.normal.x, 0.0, 1e-12);
  EXPECT_NEAR(line.normal.y, 1.0, 1e-12);
  EXPECT_NEAR(line.offset, 7.0, 1e-12);
}

TEST(PrincipalAxis, OfPlacesThatReachAsFarEitherWayIsNone) {
  NormalLine line{{0.6, 0.8}, 5.0};
  EXPECT_FALSE(principal_axis(moments_of({{0, 0}, {4, 0}, {4, 4}, {0, 4}}), line));
  EXPECT_FALSE(principal_axis(moments_of({{3, 8}, {3, 8}}), line));
  EXPECT_FALSE(principal_axis(moments_of({{3, 8}}), line));
  EXPECT_EQ(line.offset, 5.0);
}

}  // namespace
