#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "anywhere/drawn_copy.h"
#include "anywhere/hull.h"
#include "anywhere/outline.h"
#include "anywhere/regions.h"

namespace {

using namespace vantrel::anywhere;
using support::corners_of;

/** A map drawn with digits: the value is ten times the digit. */
struct DrawnMap {
  std::vector<std::uint16_t> values;
  int rows;
  int cols;

  explicit DrawnMap(const std::vector<std::string>& lines)
      : rows(static_cast<int>(lines.size())), cols(static_cast<int>(lines[0].size())) {
    for (const std::string& line : lines)
      for (const char digit : line) values.push_back(static_cast<std::uint16_t>((digit - '0') * 10));
  }
  Relief relief() const { return {values.data(), rows, cols}; }
};

std::vector<std::uint32_t> areas(const DrawnMap& map, int threshold, std::uint32_t least) {
  RegionFinder finder(map.rows, map.cols);
  EXPECT_TRUE(finder.ready());
  std::vector<std::uint32_t> found;
  for (const Region& region : finder.find(map.relief(), threshold, least)) found.push_back(region.area);
  return found;
}

TEST(Regions, AreConnectedBySidesOfPixelsTheLargestFirst) {
  const DrawnMap map({"1100555", "1100505", "0011505", "9000555"});
  EXPECT_EQ(areas(map, 0, 1), (std::vector<std::uint32_t>{12, 4, 1}));
  EXPECT_EQ(areas(map, 10, 1), (std::vector<std::uint32_t>{10, 1}));
  EXPECT_EQ(areas(map, 50, 1), (std::vector<std::uint32_t>{1}));
  EXPECT_EQ(areas(map, 90, 1), (std::vector<std::uint32_t>{}));
  EXPECT_EQ(areas(map, 0, 4), (std::vector<std::uint32_t>{12, 4}));
}

TEST(Regions, JoinArmsThatMeetBelow) {
  EXPECT_EQ(areas(DrawnMap({"10101", "10101", "11111"}), 0, 1), (std::vector<std::uint32_t>{11}));
}

TEST(Regions, OfARowAreItsRunsInEveryPattern) {
  for (unsigned pattern = 0; pattern < 1u << 13; ++pattern) {
    std::string line;
    std::vector<std::uint32_t> runs;
    for (unsigned col = 0; col < 13; ++col) {
      const bool on = pattern >> col & 1;
      line += on ? "6" : "5";
      if (on && (col == 0 || line[col - 1] == '5')) runs.push_back(0);
      if (on) ++runs.back();
    }
    std::sort(runs.rbegin(), runs.rend());
    ASSERT_EQ(areas(DrawnMap({line}), 50, 1), runs) << line;
  }
}

TEST(Regions, OfNothingButNoiseAreNone) {
  std::vector<std::string> lines;
  for (int row = 0; row < 12; ++row) lines.emplace_back(row % 2 == 0 ? "101010101010" : "010101010101");
  EXPECT_EQ(areas(DrawnMap(lines), 0, 1).size(), 0U);  // 72 runs, and room for 48
  for (std::string& line : lines) line.replace(0, 6, "111111");
  EXPECT_EQ(areas(DrawnMap(lines), 0, 1).front(), 78U);  // 42 runs: the left half, and what touches it
}

TEST(Regions, KeepTheLargest80) {
  // 150 single pixels, then a pair.
  std::string line;
  for (int i = 0; i < 150; ++i) line += "10";
  const std::vector<std::uint32_t> found = areas(DrawnMap({line + "11"}), 0, 1);
  ASSERT_EQ(found.size(), 80u);
  EXPECT_EQ(found[0], 2u);
  EXPECT_EQ(found[79], 1u);
}

/** The only region of a map, seen from outside. */
Outline outline_of(const DrawnMap& map) {
  RegionFinder finder(map.rows, map.cols);
  Outline outline(map.rows, map.cols);
  const auto regions = finder.find(map.relief(), 0, 1);
  outline.trace(finder, regions[0]);
  return outline;
}

TEST(Outline, SeesAShapeFromItsFourSides) {
  const Outline outline = outline_of(DrawnMap({"000000", "001110", "010010", "001110"}));
  EXPECT_EQ(outline.left(), 2);
  EXPECT_EQ(outline.right(), 5);
  EXPECT_EQ(outline.top(), 1);
  EXPECT_EQ(outline.bottom(), 4);
  EXPECT_EQ(outline.row_first(2), 4);
  EXPECT_EQ(outline.row_end(2), 5);
  EXPECT_EQ(outline.col_first(3), 1);
  EXPECT_EQ(outline.col_end(3), 4);
  EXPECT_EQ(outline.filled_area(), 7);
}

TEST(Hull, IsConvexAndClockwise) {
  const Outline outline = outline_of(DrawnMap({"0110", "1111", "1001"}));
  Hull hull(3);
  hull.enclose(outline);
  std::vector<std::array<double, 2>> corners;
  for (const Point& corner : hull.corners()) corners.push_back({corner.x, corner.y});
  EXPECT_EQ(corners, (std::vector<std::array<double, 2>>{{3, 0}, {4, 1}, {4, 3}, {0, 3}, {0, 1}, {1, 0}}));
}

TEST(Hull, LosesTheSidesWhoseRemovalAddsLeast) {
  // The two cut corners of the test above are put back.
  const Outline outline = outline_of(DrawnMap({"0110", "1111", "1001"}));
  Hull hull(3);
  hull.enclose(outline);
  EXPECT_EQ(corners_of(hull.reduce_to_quad()), (std::vector<std::array<double, 2>>{{4, 0}, {4, 3}, {0, 3}, {0, 0}}));
}

TEST(Hull, OfFourCornersStays) {
  Hull hull(2);
  hull.enclose(outline_of(DrawnMap({"11"})));
  EXPECT_EQ(corners_of(hull.reduce_to_quad()), (std::vector<std::array<double, 2>>{{2, 0}, {2, 1}, {0, 1}, {0, 0}}));
}

TEST(SmallestRectangle, LiesOnASideOfTheHull) {
  // A square on its tip, one tip cut: 10 x 10 along the diagonals, level it would be 2 * sqrt(50) wide.
  const std::array<Point, 4> tilted = {Point{3, 0}, Point{7, 3}, Point{4, 7}, Point{0, 4}};
  EXPECT_NEAR(area(smallest_rectangle(tilted)), 25.0, 1e-9);
}

TEST(SmallestRectangle, OfATriangleIsTwiceAsLarge) {
  const std::array<Point, 3> triangle = {Point{0, 0}, Point{4, 0}, Point{0, 4}};
  EXPECT_NEAR(area(smallest_rectangle(triangle)), 16.0, 1e-9);
}

}  // namespace
