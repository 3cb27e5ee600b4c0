// Corners by gradient direction alone.
#include <gtest/gtest.h>

#include <array>

#include "support/scans.h"

namespace {

using support::Corners;
using support::Image;
using support::scan_of;

/**
 * Inside a frame of 20 rows and 20 columns of 500 x 300. The left border leans to the right going up and the right
 * border to the left, each by two degrees: that is what tells them apart.
 */
constexpr Corners kCard{18, 12, 481, 12, 8, 290, 491, 290};

TEST(AutoDetectCorner, FindsACardWithinTheFrame) {
  Image scan = scan_of(kCard, 500, 300);
  std::array<float, 8> corners{}, box{};
  ASSERT_TRUE(AutoDetectCorner(scan.ptr(), corners.data(), box.data()));
  for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(static_cast<double>(corners[i]), kCard[i], 2.5) << i;
  EXPECT_NEAR(box[0], 8, 2.5);
  EXPECT_NEAR(box[1], 12, 2.5);
  EXPECT_NEAR(box[6], 491, 2.5);
  EXPECT_NEAR(box[7], 290, 2.5);
  for (const float value : box) EXPECT_EQ(value, std::floor(value));
}

TEST(AutoDetectCorner, PutsLevelBordersExactlyOnTheirRows) {
  Image scan = scan_of(kCard, 500, 300);
  std::array<float, 8> corners{}, box{};
  ASSERT_TRUE(AutoDetectCorner(scan.ptr(), corners.data(), box.data()));
  // level lines at whole rows, half a pixel added: both top corners, and both bottom corners, in one row
  EXPECT_EQ(corners[1], corners[3]);
  EXPECT_EQ(corners[5], corners[7]);
  EXPECT_EQ(corners[1] - std::floor(corners[1]), 0.5f);
  EXPECT_EQ(corners[5] - std::floor(corners[5]), 0.5f);
}

TEST(AutoDetectCorner, DoesNotSeeBordersInsideTheFrame) {
  Image scan = scan_of({68, 62, 431, 62, 58, 240, 441, 240}, 500, 300);
  std::array<float, 8> corners{}, box{};
  EXPECT_FALSE(AutoDetectCorner(scan.ptr(), corners.data(), box.data()));
}

TEST(AutoDetectCorner, FindsNothingWithoutEdges) {
  for (const int level : {0, 128, 255}) {
    Image blank(500, 300, 8, static_cast<unsigned char>(level));
    std::array<float, 8> corners{}, box{};
    EXPECT_FALSE(AutoDetectCorner(blank.ptr(), corners.data(), box.data()));
  }
}

TEST(AutoDetectCorner, FindsNothingWithoutVerticalBorders) {
  Image scan = scan_of({-100, 12, 600, 12, -100, 290, 600, 290}, 500, 300);
  std::array<float, 8> corners{}, box{};
  EXPECT_FALSE(AutoDetectCorner(scan.ptr(), corners.data(), box.data()));
}

TEST(AutoDetectCorner, RefusesOtherDepths) {
  for (const int bit_count : {1, 4, 24, 32}) {
    Image image = bit_count == 24 ? scan_of(kCard, 500, 300, 24) : Image(500, 300, bit_count, 0x5A);
    std::array<float, 8> corners{}, box{};
    EXPECT_FALSE(AutoDetectCorner(image.ptr(), corners.data(), box.data())) << bit_count;
  }
}

TEST(FindGradientCorners, FindsWhatTheEntryFinds) {
  Image scan = scan_of(kCard, 500, 300), blank(500, 300, 8, 9), colour(500, 300, 24);
  std::array<float, 8> corners{}, box{}, same_corners{}, same_box{};
  ASSERT_TRUE(AutoDetectCorner(scan.ptr(), corners.data(), box.data()));
  EXPECT_EQ(vantrel_find_gradient_corners(scan.ptr(), same_corners.data(), same_box.data()), 1);
  EXPECT_EQ(same_corners, corners);
  EXPECT_EQ(same_box, box);
  EXPECT_EQ(vantrel_find_gradient_corners(blank.ptr(), corners.data(), box.data()), 0);
  EXPECT_EQ(vantrel_find_gradient_corners(colour.ptr(), corners.data(), box.data()), 0);
  EXPECT_EQ(vantrel_find_gradient_corners(nullptr, corners.data(), box.data()), 0);
}

TEST(AutoDetectCorner, RefusesNoImageAndAnEmptyRecord) {
  std::array<float, 8> corners{}, box{};
  EXPECT_FALSE(AutoDetectCorner(nullptr, corners.data(), box.data()));
  BITMAPPTR empty{};
  EXPECT_FALSE(AutoDetectCorner(&empty, corners.data(), box.data()));
}

TEST(AutoDetectCorner, DoesNotSeePadding) {
  Image even = scan_of(kCard, 500, 300), odd = scan_of(kCard, 499, 300), bright = scan_of(kCard, 499, 300);
  for (int r = 0; r < 300; ++r) bright.at(r, 499) = 255;
  std::array<float, 8> corners{}, bright_corners{}, box{};
  ASSERT_TRUE(AutoDetectCorner(odd.ptr(), corners.data(), box.data()));
  ASSERT_TRUE(AutoDetectCorner(bright.ptr(), bright_corners.data(), box.data()));
  EXPECT_EQ(corners, bright_corners);
}

TEST(AutoDetectCorner, OnlyReadsTheImage) {
  Image scan = scan_of(kCard, 500, 300);
  const std::vector<unsigned char> before = scan.block();
  std::array<float, 8> corners{}, box{};
  AutoDetectCorner(scan.ptr(), corners.data(), box.data());
  EXPECT_EQ(scan.block(), before);
}

TEST(AutoDetectCorner, FindsNothingInSmallImages) {
  // Up to 14 rows and 24 columns there is no frame; with 16 rows it is row 1, where all gradients of the checks are
  // diagonal.
  for (const int rows : {0, 1, 3, 4, 5, 8, 16}) {
    for (const int cols : {0, 1, 3, 4, 5, 8, 16}) {
      Image checked(cols, rows, 8);
      for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < checked.stride(); ++c) checked.at(r, c) = (r / 2 + c / 2) % 2 == 0 ? 0 : 255;
      }
      std::array<float, 8> corners{}, box{};
      EXPECT_FALSE(AutoDetectCorner(checked.ptr(), corners.data(), box.data())) << rows << " x " << cols;
    }
  }
}

TEST(AutoDetectCorner, RefusesNegativeSizes) {
  Image image(8, 8, 8, 0);
  std::array<float, 8> corners{}, box{};
  image.header().biWidth = -8;
  EXPECT_FALSE(AutoDetectCorner(image.ptr(), corners.data(), box.data()));
  image.header().biWidth = 8;
  image.header().biHeight = -8;
  EXPECT_FALSE(AutoDetectCorner(image.ptr(), corners.data(), box.data()));
  image.header().biWidth = -8;
  EXPECT_FALSE(AutoDetectCorner(image.ptr(), corners.data(), box.data()));
}

TEST(AutoDetectCorner, IsSafeForSidesAbove32767) {
  for (const bool tall : {true, false}) {
    Image image(tall ? 8 : 70000, tall ? 70000 : 8, 8, 0);
    image.at(3, 3) = 255;
    std::array<float, 8> corners{}, box{};
    EXPECT_FALSE(AutoDetectCorner(image.ptr(), corners.data(), box.data()));
  }
}

}  // namespace
