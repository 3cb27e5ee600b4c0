// The edge pixels of rows, of which a map need not have all that are asked for.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "lines/verify_density.h"

namespace {

using vantrel::geometry::Side;
using vantrel::lines::EdgeHistogram;

constexpr int kRows = 12, kCols = 20;

/** The counts of a map whose rows 5 and 8 are all edges, and which has some in the rows below. */
EdgeHistogram histogram_of(int in_first_row, int in_second_row) {
  std::array<std::array<unsigned char, kCols>, kRows> edge;
  std::memset(edge.data(), 255, sizeof edge);
  std::memset(edge[0].data(), 0, static_cast<std::size_t>(in_first_row));
  std::memset(edge[1].data(), 0, static_cast<std::size_t>(in_second_row));
  edge[5].fill(0);
  edge[8].fill(0);
  return EdgeHistogram({edge[0].data(), kRows, kCols, kCols}, kCols);
}

TEST(EdgeHistogram, HasNoEdgesInRowsOutsideTheMap) {
  const EdgeHistogram histogram = histogram_of(3, 4);
  ASSERT_TRUE(histogram.ready());
  EXPECT_EQ(histogram[-1], 0);
  EXPECT_EQ(histogram[0], 3);
  EXPECT_EQ(histogram[8], kCols);
  EXPECT_EQ(histogram[kRows], 0);
}

TEST(DenserBeyondFirst, TakesRowsBelowTheMapForEmpty) {
  // Rows 0 to 3 lie below row 5, rows -3 to 0 are held against them.
  EXPECT_TRUE(denser_beyond_first(histogram_of(0, 5), 5, 8, Side::kBottom, kCols));   // 5 to 0
  EXPECT_FALSE(denser_beyond_first(histogram_of(1, 5), 5, 8, Side::kBottom, kCols));  // 6 to 1
}

}  // namespace
