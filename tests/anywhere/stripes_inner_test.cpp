// Stripes of a scanner are taken out of a plane; what lies on the glass stays.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "anywhere/stripes.h"

namespace {

using vantrel::anywhere::Lattice;
using vantrel::anywhere::remove_stripes;

constexpr int kRows = 120;
constexpr int kCols = 90;

/** A plane of one level, 200 in sixteenths of 12.5 levels. */
std::vector<std::int16_t> level_plane() { return std::vector<std::int16_t>(kRows * kCols, 200); }

std::vector<std::int16_t> without_row_stripes(std::vector<std::int16_t> plane) {
  std::vector<std::int16_t> offsets(kRows);
  remove_stripes({plane.data(), kRows, kCols, kCols, 1}, offsets);
  return plane;
}

std::vector<std::int16_t> without_column_stripes(std::vector<std::int16_t> plane) {
  std::vector<std::int16_t> offsets(kCols);
  remove_stripes({plane.data(), kCols, kRows, 1, kCols}, offsets);
  return plane;
}

/** Every row brighter or darker in turn, by 20 in sixteenths of a level. */
std::vector<std::int16_t> striped(std::vector<std::int16_t> plane) {
  for (int row = 0; row < kRows; ++row)
    for (int col = 0; col < kCols; ++col)
      plane[static_cast<std::size_t>(row * kCols + col)] =
          static_cast<std::int16_t>(plane[static_cast<std::size_t>(row * kCols + col)] + (row / 2 % 2 == 0 ? 20 : -20));
  return plane;
}

/** A card of 60 more in rows 40 to 79 and columns 10 to 21, less than half of a part. */
std::vector<std::int16_t> with_card(std::vector<std::int16_t> plane) {
  for (int row = 40; row < 80; ++row)
    for (int col = 10; col < 22; ++col) plane[static_cast<std::size_t>(row * kCols + col)] += 60;
  return plane;
}

/** The greatest difference of two planes away from the first and last rows. */
int worst(const std::vector<std::int16_t>& a, const std::vector<std::int16_t>& b) {
  int most = 0;
  for (std::size_t i = 15 * kCols; i < a.size() - 15 * kCols; ++i) most = std::max(most, std::abs(a[i] - b[i]));
  return most;
}

TEST(Stripes, AreTakenOutOfAnEmptyPlane) {
  EXPECT_LE(worst(without_row_stripes(striped(level_plane())), level_plane()), 2);
}

TEST(Stripes, AreTakenOutBesideACardAndOnIt) {
  EXPECT_LE(worst(without_row_stripes(striped(with_card(level_plane()))), with_card(level_plane())), 4);
}

TEST(Stripes, OfRowsAreNotThoseOfColumns) {
  const std::vector<std::int16_t> plane = striped(level_plane());
  EXPECT_EQ(without_column_stripes(plane), plane);
}

TEST(Stripes, AreNotSeenInAPlaneWithoutThem) {
  const std::vector<std::int16_t> plane = with_card(level_plane());
  EXPECT_EQ(without_row_stripes(plane), plane);
  EXPECT_EQ(without_column_stripes(plane), plane);
}

TEST(Stripes, AreNotSeenInTheBorderOfASheetAsWideAsThePlane) {
  std::vector<std::int16_t> plane = level_plane();
  std::fill(plane.begin() + 50 * kCols, plane.end(), std::int16_t{900});
  EXPECT_EQ(without_row_stripes(plane), plane);
}

TEST(Stripes, NeedMoreLinesThanTheyAreComparedWith) {
  std::vector<std::int16_t> plane(24 * kCols);
  for (int row = 0; row < 24; ++row)
    for (int col = 0; col < kCols; ++col)
      plane[static_cast<std::size_t>(row * kCols + col)] = static_cast<std::int16_t>(row % 2 == 0 ? 0 : 40);
  std::vector<std::int16_t> offsets(24), same = plane;
  remove_stripes({same.data(), 24, kCols, kCols, 1}, offsets);
  EXPECT_EQ(same, plane);
}

}  // namespace
