// Cutting a rectangle out of an image.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/image.h"

namespace {

using Bytes = std::vector<unsigned char>;
using support::Image;

MYRECT rect(int left, int top, int right, int bottom) {
  return {static_cast<std::int16_t>(left), static_cast<std::int16_t>(top), static_cast<std::int16_t>(right),
          static_cast<std::int16_t>(bottom), -99};
}

/** Gray levels 10 * row + column. */
Image numbered_gray(int width, int height) {
  Image image(width, height, 8);
  for (int row = 0; row < height; ++row) {
    for (int col = 0; col < width; ++col) image.at(row, col) = static_cast<unsigned char>(10 * row + col);
  }
  return image;
}

TEST(CutRectImage, CopiesTheInclusiveRectangleFromMemoryRowBottom) {
  Image source = numbered_gray(9, 6);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(2, 4, 6, 3)), 1);
  EXPECT_EQ(cut.header().biWidth, 5);
  EXPECT_EQ(cut.header().biHeight, 2);
  EXPECT_EQ(cut.pixels(), (Bytes{32, 33, 34, 35, 36, 255, 255, 255, 42, 43, 44, 45, 46, 255, 255, 255}));
}

TEST(CutRectImage, KeepsDepthAndResolution) {
  Image source(9, 6, 24, 0, 500);
  source.header().biYPelsPerMeter = 700;
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(0, 1, 1, 0)), 1);
  EXPECT_EQ(cut.header().biBitCount, 24);
  EXPECT_EQ(cut.header().biXPelsPerMeter, 500);
  EXPECT_EQ(cut.header().biYPelsPerMeter, 700);
}

TEST(CutRectImage, OfOnePointIsOnePixel) {
  Image source = numbered_gray(9, 6);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(7, 3, 7, 3)), 1);
  EXPECT_EQ(cut.header().biWidth, 1);
  EXPECT_EQ(cut.header().biHeight, 1);
  EXPECT_EQ(cut.at(0, 0), 37);
}

TEST(CutRectImage, HasTheSameHeightWhicheverBoundIsLarger) {
  Image source = numbered_gray(4, 9);
  Image up, down;
  ASSERT_EQ(CutRectImage(source.ptr(), up.ptr(), rect(0, 6, 3, 4)), 1);
  ASSERT_EQ(CutRectImage(source.ptr(), down.ptr(), rect(0, 2, 3, 4)), 1);
  EXPECT_EQ(up.header().biHeight, 3);
  EXPECT_EQ(up.pixels(), (Bytes{40, 41, 42, 43, 50, 51, 52, 53, 60, 61, 62, 63}));
  EXPECT_EQ(down.header().biHeight, 3);
  EXPECT_EQ(down.pixels(), up.pixels());
}

TEST(CutRectImage, CopiesWholeColourPixels) {
  Image source(4, 2, 24);
  for (int row = 0; row < 2; ++row) {
    for (int byte = 0; byte < 12; ++byte) source.at(row, byte) = static_cast<unsigned char>(100 * row + byte);
  }
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(1, 1, 2, 0)), 1);
  EXPECT_EQ(cut.pixels(), (Bytes{3, 4, 5, 6, 7, 8, 255, 255, 103, 104, 105, 106, 107, 108, 255, 255}));
}

TEST(CutRectImage, ShiftsBilevelRowsByTheLeftColumnsBits) {
  Image source(40, 1, 1);
  const unsigned char bits[8] = {0x12, 0x34, 0x56, 0x78, 0x9A, 0, 0, 0};
  std::memcpy(source.row(0), bits, 8);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(13, 0, 28, 0)), 1);  // 16 pixels
  EXPECT_EQ(cut.header().biBitCount, 1);
  // (0x34 << 5 | 0x56 >> 3), (0x56 << 5 | 0x78 >> 3), each kept to 8 bits
  EXPECT_EQ(cut.at(0, 0), 0x8A);
  EXPECT_EQ(cut.at(0, 1), 0xCF);
  EXPECT_EQ(cut.at(0, 2), 0xFF);
  EXPECT_EQ(cut.at(0, 3), 0xFF);
}

TEST(CutRectImage, CopiesWholeBilevelBytesWhenTheLeftColumnIsAligned) {
  Image source(40, 1, 1);
  const unsigned char bits[8] = {0x12, 0x34, 0x56, 0x78, 0x9A, 0, 0, 0};
  std::memcpy(source.row(0), bits, 8);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(8, 0, 31, 0)), 1);
  EXPECT_EQ(cut.pixels(), (Bytes{0x34, 0x56, 0x78, 0xFF}));
}

TEST(CutRectImage, DoesNotMaskTheBilevelBitsBehindTheLastColumn) {
  Image source(40, 1, 1);
  const unsigned char bits[8] = {0x12, 0x34, 0x56, 0x78, 0x9A, 0, 0, 0};
  std::memcpy(source.row(0), bits, 8);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(13, 0, 21, 0)), 1);  // 9 pixels: one bit of the second byte
  EXPECT_EQ(cut.at(0, 0), 0x8A);
  EXPECT_EQ(cut.at(0, 1), 0xCF);
}

TEST(CutRectImage, FillsTheLastBilevelByteFromTheNextRowAndBehindTheLastRowWithZeros) {
  Image source(32, 2, 1);
  const unsigned char bits[8] = {0, 0, 0, 0x05, 0xFF, 0, 0, 0x05};
  std::memcpy(source.row(0), bits, 8);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(29, 1, 31, 0)), 1);  // the last 3 pixels of both rows
  EXPECT_EQ(cut.at(0, 0), 0xBF);  // 0x05 << 5 = 0xA0, and 0xFF of the next row >> 3
  EXPECT_EQ(cut.at(1, 0), 0xA0);
}

TEST(CutRectImage, RefusesOtherDepthsButLeavesAWhiteImage) {
  for (const int bit_count : {2, 4, 16, 32}) {
    Image source(8, 8, bit_count, 0x00);
    Image cut;
    EXPECT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(1, 4, 5, 2)), -1);
    ASSERT_FALSE(cut.empty());
    EXPECT_EQ(cut.header().biWidth, 5);
    EXPECT_EQ(cut.header().biHeight, 3);
    EXPECT_EQ(cut.header().biBitCount, bit_count);
    for (const unsigned char byte : cut.pixels()) EXPECT_EQ(byte, 0xFF);
  }
}

TEST(CutRectImage, LeavesWhatLiesOutsideTheSourceWhite) {
  Image source = numbered_gray(3, 2);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(-2, 2, 3, -1)), 1);
  EXPECT_EQ(cut.header().biWidth, 6);
  EXPECT_EQ(cut.header().biHeight, 4);
  EXPECT_EQ(cut.pixels(), (Bytes{255, 255, 255, 255, 255, 255, 255, 255,  //
                                 255, 255, 0,   1,   2,   255, 255, 255,  //
                                 255, 255, 10,  11,  12,  255, 255, 255,  //
                                 255, 255, 255, 255, 255, 255, 255, 255}));
}

TEST(CutRectImage, LeavesColourOutsideTheSourceWhite) {
  Image source(2, 1, 24, 7);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(-1, 0, 2, 0)), 1);
  EXPECT_EQ(cut.pixels(), (Bytes{255, 255, 255, 7, 7, 7, 7, 7, 7, 255, 255, 255}));
}

TEST(CutRectImage, LeavesBilevelColumnsOutsideTheSourceWhite) {
  Image source(16, 1, 1, 0x00);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(-8, 0, 31, 0)), 1);
  EXPECT_EQ(cut.header().biWidth, 40);
  EXPECT_EQ(Bytes(cut.row(0), cut.row(0) + 5), (Bytes{0xFF, 0x00, 0x00, 0xFF, 0xFF}));
}

TEST(CutRectImage, LeavesBilevelColumnsLeftOfTheSourceWhiteBetweenBytesToo) {
  Image source(16, 1, 1, 0x00);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(-3, 0, 12, 0)), 1);
  EXPECT_EQ(cut.at(0, 0), 0xE0);
  EXPECT_EQ(cut.at(0, 1), 0x00);
}

TEST(CutRectImage, LeavesBilevelRowsOutsideTheSourceWhite) {
  Image source(16, 1, 1, 0x00);
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(0, 1, 15, -1)), 1);
  EXPECT_EQ(Bytes(cut.row(0), cut.row(0) + 2), (Bytes{0xFF, 0xFF}));
  EXPECT_EQ(Bytes(cut.row(1), cut.row(1) + 2), (Bytes{0x00, 0x00}));
  EXPECT_EQ(Bytes(cut.row(2), cut.row(2) + 2), (Bytes{0xFF, 0xFF}));
}

/** Whether every pixel is white; in the last byte of a bilevel row only the bits of pixels count. */
void expect_white(Image& image) {
  const BITMAPINFOHEADER& header = image.header();
  const int bits = header.biWidth * header.biBitCount;
  for (int row = 0; row < header.biHeight; ++row) {
    for (int byte = 0; byte < (bits + 7) / 8; ++byte) {
      const int unused = std::max(0, 8 * byte + 8 - bits);
      ASSERT_EQ(image.at(row, byte) >> unused, 0xFF >> unused) << "row " << row << ", byte " << byte;
    }
  }
}

TEST(CutRectImage, IsWhiteWhenAllOfItLiesOutside) {
  const MYRECT far_rects[] = {rect(100, 5, 120, 0),     rect(-120, 5, -100, 0),     rect(0, 120, 5, 100),
                              rect(0, -100, 5, -120),   rect(-32768, 3, -32700, 0), rect(32700, 3, 32767, 0),
                              rect(0, 32767, 3, 32760), rect(-33, 5, -14, 0),       rect(13, 5, 30, 0)};
  for (const int bit_count : {1, 8, 24}) {
    for (const MYRECT& far_rect : far_rects) {
      Image source(8, 8, bit_count, 0x00);
      Image cut;
      EXPECT_EQ(CutRectImage(source.ptr(), cut.ptr(), far_rect), 1);
      expect_white(cut);
    }
  }
}

TEST(CutRectImage, OfASourceWithoutPixelsIsWhite) {
  for (const int bit_count : {1, 8, 24}) {
    Image source(0, 0, bit_count);
    Image cut;
    EXPECT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(0, 3, 9, 0)), 1);
    expect_white(cut);
  }
}

TEST(CutRectImage, OfAnEmptyWidthIsAnImageWithoutPixels) {
  for (const int bit_count : {1, 8, 24}) {
    Image source(8, 8, bit_count);
    Image cut;
    EXPECT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(5, 4, 4, 2)), 1);
    ASSERT_FALSE(cut.empty());
    EXPECT_EQ(cut.header().biWidth, 0);
    EXPECT_EQ(cut.header().biHeight, 3);
  }
}

TEST(CutRectImage, FailsForANegativeSize) {
  Image source(8, 8, 8);
  Image cut;
  EXPECT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(5, 4, 3, 2)), -1);  // width -1
  EXPECT_TRUE(cut.empty());
}

TEST(CutRectImage, KeepsSizesToSixteenBits) {
  Image source(8, 8, 8);
  Image wide, tall, wrapped;
  EXPECT_EQ(CutRectImage(source.ptr(), wide.ptr(), rect(-20000, 0, 20000, 0)), -1);  // 40001 is -25535
  EXPECT_TRUE(wide.empty());
  EXPECT_EQ(CutRectImage(source.ptr(), tall.ptr(), rect(0, 30000, 0, -30000)), -1);  // 60001 is -5535
  EXPECT_TRUE(tall.empty());
  EXPECT_EQ(CutRectImage(source.ptr(), wrapped.ptr(), rect(-32768, 0, 32767, 0)), 1);  // 65536 is 0
  EXPECT_EQ(wrapped.header().biWidth, 0);
}

TEST(CutRectImage, LeavesTheSourceAlone) {
  Image source = numbered_gray(9, 6);
  const Bytes before = source.block();
  Image cut;
  ASSERT_EQ(CutRectImage(source.ptr(), cut.ptr(), rect(2, 4, 6, 3)), 1);
  EXPECT_EQ(source.block(), before);
}

}  // namespace
