// Cutting a card out of a scan, or out of a second, larger scan.
#include <gtest/gtest.h>

#include "support/drawing.h"
#include "support/random.h"
#include "vantrel.h"

namespace {

using support::Image;
using support::Random;

/** A scan whose card is found at (10, 200, 300, 20). */
Image scan() {
  Image image(330, 250, 8, 50);
  soft_slab(image, 10, 301, 20, 199, 50, 200);
  fill(image, 322, 330, 22, 199, 200);
  return image;
}

TEST(CutEntry, RefusesANullBlock) {
  void* nothing = nullptr;
  Image result;
  EXPECT_EQ(AutoClipRedundantImg_ORVA(&nothing, nullptr, result.ptr(), 1), -1);
  EXPECT_TRUE(result.empty());
  EXPECT_EQ(AutoClipImg_Rect_ORVA(&nothing, nullptr, 1, 2, 3, 4, 1), -1);
}

TEST(CutEntry, RefusesANullSecondBlockWhenItWouldBeCut) {
  Image image(100, 100, 8, 128);
  void* nothing = nullptr;
  Image result;
  EXPECT_EQ(AutoClipRedundantImg_ORVA(image.handle(), &nothing, result.ptr(), 2), -1);
  EXPECT_TRUE(result.empty());
  EXPECT_EQ(AutoClipImg_Rect_ORVA(image.handle(), &nothing, 1, 2, 3, 4, 2), -1);
}

TEST(CutEntry, DoesNotLookAtTheSecondImageUpToScaleOne) {
  for (const int scale : {1, 0}) {
    Image image(100, 100, 8, 128);
    void* nothing = nullptr;
    Image result;
    EXPECT_EQ(AutoClipRedundantImg_ORVA(image.handle(), &nothing, result.ptr(), scale), 1) << scale;
    EXPECT_EQ(AutoClipImg_Rect_ORVA(image.handle(), &nothing, 1, 2, 3, 4, scale), 1) << scale;
  }
}

TEST(CutEntry, RefusesOtherDepthsAfterAdoptingThem) {
  const struct {
    int depth;
    std::uint32_t colours;
  } cases[] = {{1, 2}, {4, 16}, {16, 0}, {32, 0}};
  for (const auto& c : cases) {
    Image image(200, 200, c.depth, 128);
    image.header().biClrUsed = 99;
    Image result;
    EXPECT_EQ(AutoClipRedundantImg_ORVA(image.handle(), nullptr, result.ptr(), 1), -1);
    EXPECT_TRUE(result.empty());
    EXPECT_EQ(image.header().biClrUsed, c.colours);
    image.header().biClrUsed = 99;
    EXPECT_EQ(AutoClipImg_Rect_ORVA(image.handle(), nullptr, 1, 2, 3, 4, 1), -1);
    EXPECT_EQ(image.header().biClrUsed, c.colours);
  }
}

TEST(CutEntry, RefusesSmallColourImages) {
  Image image(100, 100, 24, 128);
  Image result;
  EXPECT_EQ(AutoClipRedundantImg_ORVA(image.handle(), nullptr, result.ptr(), 1), -1);
  EXPECT_TRUE(result.empty());
  EXPECT_EQ(AutoClipImg_Rect_ORVA(image.handle(), nullptr, 1, 2, 3, 4, 1), -1);
}

TEST(CutEntry, CopiesAPlainGrayImageWhole) {
  Image image(101, 60, 8, 128);
  image.header().biXPelsPerMeter = 100;
  image.header().biYPelsPerMeter = 200;
  image.header().biClrUsed = 0;
  for (int y = 0; y < 60; ++y) image.at(y, 50) = static_cast<unsigned char>(128 + y % 3);
  Image result;
  ASSERT_EQ(AutoClipRedundantImg_ORVA(image.handle(), nullptr, result.ptr(), 1), 1);
  EXPECT_EQ(image.header().biClrUsed, 256u);
  EXPECT_EQ(result.header().biWidth, 101);
  EXPECT_EQ(result.header().biHeight, 60);
  EXPECT_EQ(result.header().biBitCount, 8);
  EXPECT_EQ(result.header().biXPelsPerMeter, 100);
  EXPECT_EQ(result.header().biYPelsPerMeter, 200);
  for (int y = 0; y < 60; ++y) {
    for (int x = 0; x < 101; ++x) ASSERT_EQ(result.at(y, x), image.at(y, x));
  }
}

TEST(CutEntry, CutsTheDefaultsOutOfAPlainColourImage) {
  Image image(300, 400, 24, 128);
  for (int x = 0; x < 300; ++x) image.at(50, 3 * x) = static_cast<unsigned char>(128 + x % 16);
  Image result;
  ASSERT_EQ(AutoClipRedundantImg_ORVA(image.handle(), nullptr, result.ptr(), 1), 1);
  EXPECT_EQ(result.header().biWidth, 281);
  EXPECT_EQ(result.header().biHeight, 321);
  EXPECT_EQ(result.header().biBitCount, 24);
  for (int x = 0; x < 281; ++x) ASSERT_EQ(result.at(0, 3 * x), image.at(50, 3 * (x + 10)));
}

TEST(CutEntry, CutsTheScaledRectangleOutOfTheSecondImage) {
  Image image = scan();
  Image large(990, 750, 24);
  large.header().biXPelsPerMeter = 7;
  large.header().biYPelsPerMeter = 9;
  Random random(1);
  randomise(large, random);
  large.header().biClrUsed = 5;
  Image result;
  ASSERT_EQ(AutoClipRedundantImg_ORVA(image.handle(), large.handle(), result.ptr(), 3), 1);
  EXPECT_EQ(large.header().biClrUsed, 0u);
  EXPECT_EQ(result.header().biWidth, 871);
  EXPECT_EQ(result.header().biHeight, 541);
  EXPECT_EQ(result.header().biBitCount, 24);
  EXPECT_EQ(result.header().biXPelsPerMeter, 7);
  EXPECT_EQ(result.header().biYPelsPerMeter, 9);
  for (int y = 0; y < 541; ++y) {
    for (int b = 0; b < 3 * 871; ++b) ASSERT_EQ(result.at(y, b), large.at(60 + y, 90 + b));
  }
}

TEST(CutEntry, CutsABilevelSecondImage) {
  Image image = scan();
  Image large(990, 750, 1);
  Random random(2);
  randomise(large, random);
  Image result;
  ASSERT_EQ(AutoClipRedundantImg_ORVA(image.handle(), large.handle(), result.ptr(), 3), 1);
  EXPECT_EQ(result.header().biWidth, 871);
  EXPECT_EQ(result.header().biHeight, 541);
  EXPECT_EQ(result.header().biBitCount, 1);
  for (int x = 0; x < 871; ++x) {
    const bool cut = (result.at(2, x / 8) & (128 >> x % 8)) != 0;
    ASSERT_EQ(cut, (large.at(62, (30 + x) / 8) & (128 >> (30 + x) % 8)) != 0) << x;
  }
}

TEST(CutEntry, LeavesAWhiteImageForASecondImageOfAnotherDepth) {
  for (const int depth : {4, 32}) {
    Image image = scan();
    Image large(990, 750, depth, 0);
    Image result;
    EXPECT_EQ(AutoClipRedundantImg_ORVA(image.handle(), large.handle(), result.ptr(), 3), -1);
    ASSERT_FALSE(result.empty());
    EXPECT_EQ(result.header().biWidth, 871);
    EXPECT_EQ(result.header().biHeight, 541);
    EXPECT_EQ(result.header().biBitCount, depth);
    EXPECT_EQ(result.at(0, 0), 255);
    EXPECT_EQ(result.at(540, 100), 255);
  }
}

TEST(CutEntry, CutsTheScaledRectangleOutOfTheFirstImageWithoutASecond) {
  Image image = scan();
  Image result;
  ASSERT_EQ(AutoClipRedundantImg_ORVA(image.handle(), nullptr, result.ptr(), 2), 1);
  ASSERT_EQ(result.header().biWidth, 581);
  ASSERT_EQ(result.header().biHeight, 361);
  EXPECT_EQ(result.at(0, 0), image.at(40, 20));
  EXPECT_EQ(result.at(209, 309), image.at(249, 329));
  EXPECT_EQ(result.at(0, 310), 255) << "beyond the last column";
  EXPECT_EQ(result.at(210, 0), 255) << "beyond the last row";
}

TEST(CutEntry, ScalesByNothingToTheFirstPixel) {
  Image image = scan();
  image.at(0, 0) = 77;
  Image result;
  ASSERT_EQ(AutoClipRedundantImg_ORVA(image.handle(), nullptr, result.ptr(), 0), 1);
  EXPECT_EQ(result.header().biWidth, 1);
  EXPECT_EQ(result.header().biHeight, 1);
  EXPECT_EQ(result.at(0, 0), 77);
}

TEST(CutEntry, KeepsTheLowSixteenBitsOfScaledBounds) {
  // 2000 x 20 is -25536 in sixteen bits: the width is negative and no image can be made.
  Image wide(2001, 20, 8, 128);
  Image nothing;
  EXPECT_EQ(AutoClipRedundantImg_ORVA(wide.handle(), nullptr, nothing.ptr(), 20), -1);
  EXPECT_TRUE(nothing.empty());
  // 3277 x 20 is 4.
  Image wider(3278, 2, 8, 128);
  for (int x = 0; x < 5; ++x) wider.at(0, x) = static_cast<unsigned char>(120 + x);
  Image result;
  ASSERT_EQ(AutoClipRedundantImg_ORVA(wider.handle(), nullptr, result.ptr(), 20), 1);
  EXPECT_EQ(result.header().biWidth, 5);
  EXPECT_EQ(result.header().biHeight, 21);
  for (int x = 0; x < 5; ++x) EXPECT_EQ(result.at(0, x), 120 + x);
}

TEST(CutEntry, MultipliesBeyondThirtyTwoBits) {
  // The low sixteen bits of 9 x 1000000007 are 6719, those of 9 x 477218589 = 2^32 + 5 are 5.
  Image image(10, 1, 8, 128);
  Image result;
  ASSERT_EQ(AutoClipRedundantImg_ORVA(image.handle(), nullptr, result.ptr(), 1000000007), 1);
  EXPECT_EQ(result.header().biWidth, 6720);
  EXPECT_EQ(result.header().biHeight, 1);
  Image five;
  ASSERT_EQ(AutoClipRedundantImg_ORVA(image.handle(), nullptr, five.ptr(), 477218589), 1);
  EXPECT_EQ(five.header().biWidth, 6);
  EXPECT_EQ(five.header().biHeight, 1);
}

TEST(CutEntry, DoesNotChangePixelsOfItsInputs) {
  Image image = scan();
  Image large(990, 750, 8, 1);
  const Image image_before(image);
  const Image large_before(large);
  Image result;
  ASSERT_EQ(AutoClipRedundantImg_ORVA(image.handle(), large.handle(), result.ptr(), 3), 1);
  EXPECT_EQ(image.block(), image_before.block());
  EXPECT_EQ(large.block(), large_before.block());
}

TEST(RectangleEntry, TellsThatARectangleWasDetermined) {
  Image image = scan();
  image.header().biClrUsed = 0;
  EXPECT_EQ(AutoClipImg_Rect_ORVA(image.handle(), nullptr, 1, 2, 3, 4, 1), 1);
  EXPECT_EQ(image.header().biClrUsed, 256u);
  Image colour(128, 128, 24, 128);
  EXPECT_EQ(AutoClipImg_Rect_ORVA(colour.handle(), nullptr, -1, -2, -3, -4, 1), 1);
}

TEST(RectangleEntry, AdoptsTheHeaderOfTheSecondImage) {
  const struct {
    int depth;
    std::uint32_t colours;
  } cases[] = {{1, 2}, {4, 16}, {8, 256}, {24, 0}, {32, 0}};
  for (const auto& c : cases) {
    Image image(100, 100, 8, 128);
    Image large(10, 10, c.depth, 128);
    large.header().biClrUsed = 99;
    EXPECT_EQ(AutoClipImg_Rect_ORVA(image.handle(), large.handle(), 1, 2, 3, 4, 1), 1);
    EXPECT_EQ(large.header().biClrUsed, 99u) << "not used at scale 1";
    EXPECT_EQ(AutoClipImg_Rect_ORVA(image.handle(), large.handle(), 1, 2, 3, 4, 2), 1);
    EXPECT_EQ(large.header().biClrUsed, c.colours);
  }
}

}  // namespace
