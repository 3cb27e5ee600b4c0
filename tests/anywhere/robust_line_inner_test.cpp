// A straight line through points some of which do not belong to it.
#include <gtest/gtest.h>

#include <vector>

#include "anywhere/robust_line.h"

namespace {

using namespace vantrel::anywhere;

/** 40 points on offset = 2 + along / 100. */
std::vector<OffsetPoint> points_on_a_line() {
  std::vector<OffsetPoint> points;
  for (int i = 0; i < 40; ++i) points.push_back({1000.0 + 10 * i, 12.0 + 0.1 * i, 1.0});
  return points;
}

TEST(RobustLine, RunsThroughPointsOnALine) {
  const OffsetLine line = robust_line(points_on_a_line(), {13.0, 0.0}, 10.0);
  EXPECT_NEAR(line.slope, 0.01, 1e-12);
  EXPECT_NEAR(line.base, 2.0, 1e-9);
}

TEST(RobustLine, LeavesOutPointsFarFromTheOthers) {
  std::vector<OffsetPoint> points = points_on_a_line();
  for (std::size_t i = 0; i < points.size(); i += 4) points[i].offset += 3.0;
  const OffsetLine line = robust_line(points, {2.0, 0.01}, 2.0);
  EXPECT_NEAR(line.slope, 0.01, 1e-12);
  EXPECT_NEAR(line.base, 2.0, 1e-9);
}

TEST(RobustLine, HeedsTheWeights) {
  std::vector<OffsetPoint> points = points_on_a_line();
  for (std::size_t i = 0; i < points.size(); i += 2) points[i] = {points[i].along, 0.0, 0.0};
  EXPECT_NEAR(robust_line(points, {2.0, 0.01}, 20.0).base, 2.0, 1e-9);
}

TEST(RobustLine, StaysWhereTooFewPointsAreNear) {
  const std::vector<OffsetPoint> points = points_on_a_line();
  const OffsetLine far = robust_line(points, {100.0, 0.0}, 2.0);
  EXPECT_EQ(far.base, 100.0);
  EXPECT_EQ(far.slope, 0.0);
  const OffsetLine two = robust_line(std::span(points).first(2), {2.5, 0.01}, 2.0);
  EXPECT_EQ(two.base, 2.5);
  const std::vector<OffsetPoint> same(5, {1000.0, 12.0, 1.0});
  EXPECT_EQ(robust_line(same, {11.0, 0.0}, 5.0).base, 11.0);
}

}  // namespace
