// Brightness classes and black level of rectangles.
#include <gtest/gtest.h>

#include <vector>

#include "lines/exports.h"

namespace {

/** `count` pixels of one level followed by `other_count` of another, in one row. */
std::vector<unsigned char> row_of(int count, int level, int other_count, int other_level) {
  std::vector<unsigned char> row(static_cast<std::size_t>(count), static_cast<unsigned char>(level));
  row.insert(row.end(), static_cast<std::size_t>(other_count), static_cast<unsigned char>(other_level));
  return row;
}

int class_of(int bright, int dark) {
  std::vector<unsigned char> row = row_of(bright, 181, dark, 180);
  return EstimateWB(row.data(), 0, 1, 0, bright + dark, bright + dark);
}

TEST(EstimateWB, NeedsMoreThanThreeToOne) {
  EXPECT_EQ(class_of(30, 10), 0);  // exactly 3 : 1
  EXPECT_EQ(class_of(31, 10), 1);
  EXPECT_EQ(class_of(10, 30), 0);  // exactly 1 : 3
  EXPECT_EQ(class_of(10, 31), 2);
  EXPECT_EQ(class_of(10, 10), 0);
}

TEST(EstimateWB, OfOneKindOnlyIsDecided) {
  EXPECT_EQ(class_of(5, 0), 1);
  EXPECT_EQ(class_of(0, 5), 2);
}

TEST(EstimateWB, TakesLevelsAbove180ForBright) {
  unsigned char level = 180;
  EXPECT_EQ(EstimateWB(&level, 0, 1, 0, 1, 1), 2);
  level = 181;
  EXPECT_EQ(EstimateWB(&level, 0, 1, 0, 1, 1), 1);
}

TEST(EstimateWB, OfAnEmptyRectangleIsUndecided) {
  unsigned char level = 255;
  EXPECT_EQ(EstimateWB(&level, 0, 0, 0, 1, 1), 0);
  EXPECT_EQ(EstimateWB(&level, 0, 1, 0, 0, 1), 0);
  EXPECT_EQ(EstimateWB(&level, 1, 0, 0, 1, 1), 0);
  EXPECT_EQ(EstimateWB(&level, 5, -5, 5, -5, 1), 0);
  EXPECT_EQ(EstimateWB(nullptr, 0, 0, 0, 0, 0), 0);
}

TEST(EstimateWB, LooksAtItsRectangleOnly) {
  std::vector<unsigned char> gray(10 * 12, 0);
  for (int r = 3; r < 6; ++r) {
    for (int c = 4; c < 8; ++c) gray[static_cast<std::size_t>(12 * r + c)] = 255;
  }
  EXPECT_EQ(EstimateWB(gray.data(), 3, 6, 4, 8, 12), 1);
  EXPECT_EQ(EstimateWB(gray.data(), 3, 7, 4, 8, 12), 0);  // 12 : 4
  EXPECT_EQ(EstimateWB(gray.data(), 0, 3, 0, 12, 12), 2);
  EXPECT_EQ(EstimateWB(gray.data(), 6, 10, 0, 12, 12), 2);
  EXPECT_EQ(EstimateWB(gray.data(), 3, 6, 0, 4, 12), 2);
  EXPECT_EQ(EstimateWB(gray.data(), 3, 6, 8, 12, 12), 2);
}

/** Black level of `rows` x `cols` pixels of which the first `dark` are dark. */
int black(int rows, int cols, int dark, int side = 0) {
  std::vector<unsigned char> gray = row_of(dark, 127, rows * cols - dark, 128);
  return EstimateBlkPixel(gray.data(), 0, rows, 0, cols, cols, side);
}

TEST(EstimateBlkPixel, TakesTheAreaOneLargerInBothDirections) {
  EXPECT_EQ(black(10, 10, 100), 1);  // 100 / 121 * 22 = 18.2
  EXPECT_EQ(black(10, 10, 35), 0);   // 6.36
  EXPECT_EQ(black(10, 10, 38), 0);   // 6.91
  EXPECT_EQ(black(10, 10, 39), 1);   // 7.09
  EXPECT_EQ(black(1, 1, 1), 0);      // a quarter is 5.5
  EXPECT_EQ(black(1, 2, 2), 1);      // a third is 7.33
}

TEST(EstimateBlkPixel, NeedsMoreThanSevenTwentySeconds) {
  EXPECT_EQ(black(10, 21, 77), 0);  // 77 / 242 = 7 / 22
  EXPECT_EQ(black(10, 21, 78), 1);
}

TEST(EstimateBlkPixel, TakesLevelsBelow128ForDark) {
  std::vector<unsigned char> gray(100, 127);
  EXPECT_EQ(EstimateBlkPixel(gray.data(), 0, 10, 0, 10, 10, 0), 1);
  gray.assign(100, 128);
  EXPECT_EQ(EstimateBlkPixel(gray.data(), 0, 10, 0, 10, 10, 0), 0);
}

TEST(EstimateBlkPixel, IsTheSameForEverySide) {
  for (int side = -1; side < 6; ++side) {
    EXPECT_EQ(black(10, 10, 38, side), 0);
    EXPECT_EQ(black(10, 10, 39, side), 1);
  }
}

TEST(EstimateBlkPixel, OfAnEmptyRectangleIsZero) {
  unsigned char level = 0;
  EXPECT_EQ(EstimateBlkPixel(&level, 0, 0, 0, 0, 1, 0), 0);
  EXPECT_EQ(EstimateBlkPixel(&level, 1, 0, 0, 1, 1, 0), 0);  // an area of 0
  EXPECT_EQ(EstimateBlkPixel(&level, 5, -5, 0, 1, 1, 0), 0);
}

TEST(EstimateBlkPixel, LooksAtItsRectangleOnly) {
  std::vector<unsigned char> gray(20 * 24, 255);
  for (int r = 5; r < 15; ++r) {
    for (int c = 6; c < 16; ++c) gray[static_cast<std::size_t>(24 * r + c)] = 0;
  }
  EXPECT_EQ(EstimateBlkPixel(gray.data(), 5, 15, 6, 16, 24, 0), 1);
  EXPECT_EQ(EstimateBlkPixel(gray.data(), 0, 5, 0, 24, 24, 0), 0);
  EXPECT_EQ(EstimateBlkPixel(gray.data(), 15, 20, 0, 24, 24, 0), 0);
  EXPECT_EQ(EstimateBlkPixel(gray.data(), 0, 20, 16, 24, 24, 0), 0);
  EXPECT_EQ(EstimateBlkPixel(gray.data(), 0, 20, 0, 6, 24, 0), 0);
}

}  // namespace
