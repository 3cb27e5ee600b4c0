// Reduced gray copies by subsampling.
#include <gtest/gtest.h>

#include "segment/exports.h"
#include "support/image.h"
#include "support/random.h"

namespace {

using support::Image;
using support::Random;
using Bytes = std::vector<unsigned char>;
using Reduction = bool (*)(BITMAPPTR*, BITMAPPTR*, int);

struct Reducer {
  Reduction reduce;
  int depth;
};
constexpr Reducer kReducers[] = {{Color2ScaledGray, 24}, {Gray2ScaledGray, 8}, {Bin2ScaledGray, 1}};

/** The pixels of row r, without its padding. */
Bytes row_of(Image& image, int r) { return {image.row(r), image.row(r) + image.header().biWidth}; }

/** The gray value one colour is reduced to. */
int gray_of(unsigned char blue, unsigned char green, unsigned char red) {
  Image source(1, 1, 24);
  source.at(0, 0) = blue;
  source.at(0, 1) = green;
  source.at(0, 2) = red;
  Image out;
  if (!Color2ScaledGray(source.ptr(), out.ptr(), 1)) return -1;
  return out.at(0, 0);
}

TEST(Reduce, GivesAnEightBitImageOfTruncatedSizeAndResolutionWithTheGrayRamp) {
  for (const Reducer& reducer : kReducers) {
    Image source(11, 8, reducer.depth);
    source.header().biXPelsPerMeter = 11811;
    source.header().biYPelsPerMeter = 23623;
    Image out;
    ASSERT_TRUE(reducer.reduce(source.ptr(), out.ptr(), 3)) << reducer.depth;
    EXPECT_EQ(out.header().biSize, 40U);
    EXPECT_EQ(out.header().biWidth, 3);
    EXPECT_EQ(out.header().biHeight, 2);
    EXPECT_EQ(out.header().biBitCount, 8);
    EXPECT_EQ(out.header().biXPelsPerMeter, 3937);
    EXPECT_EQ(out.header().biYPelsPerMeter, 7874);
    for (int i : {0, 1, 128, 255}) {
      EXPECT_EQ(out.ptr()->pPalette[i].rgbBlue, i);
      EXPECT_EQ(out.ptr()->pPalette[i].rgbGreen, i);
      EXPECT_EQ(out.ptr()->pPalette[i].rgbRed, i);
    }
  }
}

TEST(Reduce, GrayByOneIsACopy) {
  Image source(5, 2, 8, 99);
  const Bytes levels{0, 1, 127, 254, 255, 9, 8, 7, 6, 5};
  for (int r = 0; r < 2; ++r) std::memcpy(source.row(r), &levels[static_cast<std::size_t>(5 * r)], 5);
  Image out;
  ASSERT_TRUE(Gray2ScaledGray(source.ptr(), out.ptr(), 1));
  EXPECT_EQ(out.header().biWidth, 5);
  EXPECT_EQ(out.header().biHeight, 2);
  EXPECT_EQ(row_of(out, 0), (Bytes{0, 1, 127, 254, 255}));
  EXPECT_EQ(row_of(out, 1), (Bytes{9, 8, 7, 6, 5}));
}

TEST(Reduce, ColourByOneIsAGrayConversion) {
  EXPECT_EQ(gray_of(0, 0, 0), 0);
  EXPECT_EQ(gray_of(255, 0, 0), 29);   // 29.07
  EXPECT_EQ(gray_of(0, 255, 0), 149);  // 149.685
  EXPECT_EQ(gray_of(0, 0, 255), 76);   // 76.245
  EXPECT_EQ(gray_of(10, 20, 30), 21);  // 1.14 + 11.74 + 8.97
  EXPECT_EQ(gray_of(255, 255, 0), 178);
}

TEST(Reduce, ColourIsSummedInSinglePrecisionFromBlueToRed) {
  EXPECT_EQ(gray_of(1, 10, 184), 61);  // red first would be 60
  EXPECT_EQ(gray_of(1, 13, 245), 81);
  EXPECT_EQ(gray_of(1, 23, 115), 48);
  EXPECT_EQ(gray_of(1, 160, 234), 164);
  EXPECT_EQ(gray_of(3, 12, 186), 63);
}

TEST(Reduce, EveryGrayKeepsItsLevel) {
  for (int level = 0; level < 256; ++level) {
    const auto byte = static_cast<unsigned char>(level);
    EXPECT_EQ(gray_of(byte, byte, byte), level);
  }
}
TEST(Reduce, BitsByOneAreExpandedToBlackAndWhite) {
  Image source(10, 1, 1);
  source.at(0, 0) = 0b10110001;
  source.at(0, 1) = 0b01111111;
  Image out;
  ASSERT_TRUE(Bin2ScaledGray(source.ptr(), out.ptr(), 1));
  EXPECT_EQ(row_of(out, 0), (Bytes{255, 0, 255, 255, 0, 0, 0, 255, 0, 255}));
}

TEST(Reduce, ThePaletteOfBitsIsNotConsulted) {
  Image source(2, 1, 1);
  source.at(0, 0) = 0b10000000;
  std::swap(source.ptr()->pPalette[0], source.ptr()->pPalette[1]);
  Image out;
  ASSERT_TRUE(Bin2ScaledGray(source.ptr(), out.ptr(), 1));
  EXPECT_EQ(row_of(out, 0), (Bytes{255, 0}));
}

TEST(Reduce, TenColumnsByThreeAreColumnsZeroThreeAndSixOfEveryThirdRow) {
  Image source(10, 7, 8);
  for (int r = 0; r < 7; ++r) {
    for (int c = 0; c < 10; ++c) source.at(r, c) = static_cast<unsigned char>(10 * r + c);
  }
  Image out;
  ASSERT_TRUE(Gray2ScaledGray(source.ptr(), out.ptr(), 3));
  ASSERT_EQ(out.header().biWidth, 3);
  ASSERT_EQ(out.header().biHeight, 2);
  EXPECT_EQ(row_of(out, 0), (Bytes{0, 3, 6}));
  EXPECT_EQ(row_of(out, 1), (Bytes{30, 33, 36}));
}

TEST(Reduce, ColourColumnsAndRowsAreSkippedWhole) {
  Image source(5, 4, 24);
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 5; ++c) source.at(r, 3 * c + 1) = static_cast<unsigned char>(100 * (r / 2) + 10 * c);
    source.at(1, 0) = 255;  // in a row that is dropped
  }
  Image out;
  ASSERT_TRUE(Color2ScaledGray(source.ptr(), out.ptr(), 2));
  EXPECT_EQ(row_of(out, 0), (Bytes{0, 11}));   // green 0 and 20
  EXPECT_EQ(row_of(out, 1), (Bytes{58, 70}));  // green 100 and 120
}

TEST(Reduce, BitsByThreeWalkThroughThePositionsOfEachByte) {
  // Bits 0, 3, 6 of the first byte, 1, 4, 7 of the second, 2, 5 of the third, and from the start again.
  Image sampled_set(48, 3, 1);
  const unsigned char set[] = {0b10010010, 0b01001001, 0b00100100, 0b10010010, 0b01001001, 0b00100100};
  std::memcpy(sampled_set.row(0), set, sizeof set);
  Image all_white;
  ASSERT_TRUE(Bin2ScaledGray(sampled_set.ptr(), all_white.ptr(), 3));
  EXPECT_EQ(row_of(all_white, 0), Bytes(16, 255));

  Image sampled_clear(48, 3, 1);
  for (int i = 0; i < 6; ++i) sampled_clear.at(0, i) = static_cast<unsigned char>(~set[i]);
  Image all_black;
  ASSERT_TRUE(Bin2ScaledGray(sampled_clear.ptr(), all_black.ptr(), 3));
  EXPECT_EQ(row_of(all_black, 0), Bytes(16, 0));
}

TEST(Reduce, BitsOfEachReducedRowStartAtTheFirstBit) {
  const unsigned char bits[] = {0b00000010, 0b01000001, 0b00000100, 0b10000000};
  Image upper(27, 6, 1, 0xFF);
  std::memcpy(upper.row(3), bits, sizeof bits);
  Image second;
  ASSERT_TRUE(Bin2ScaledGray(upper.ptr(), second.ptr(), 3));
  EXPECT_EQ(row_of(second, 1), (Bytes{0, 0, 255, 255, 0, 255, 0, 255, 255}));
}

TEST(Reduce, BitsByMoreThanAByteSkipWholeBytes) {
  Image source(60, 20, 1);
  source.at(0, 2) = 0b00001000;  // bit 20
  source.at(0, 5) = 0b10000000;  // bit 40
  Image out;
  ASSERT_TRUE(Bin2ScaledGray(source.ptr(), out.ptr(), 20));
  EXPECT_EQ(row_of(out, 0), (Bytes{0, 255, 255}));
}

TEST(Reduce, AFilledDestinationIsRefusedUntouched) {
  for (const Reducer& reducer : kReducers) {
    Image source(4, 4, reducer.depth, 255);
    Image filled(2, 2, 8, 77);
    const Bytes before = filled.block();
    const BITMAPPTR record = *filled.ptr();
    EXPECT_FALSE(reducer.reduce(source.ptr(), filled.ptr(), 1)) << reducer.depth;
    EXPECT_EQ(filled.block(), before);
    EXPECT_EQ(filled.ptr()->pInfo, record.pInfo);
    EXPECT_EQ(filled.ptr()->pPalette, record.pPalette);
    EXPECT_EQ(filled.ptr()->pBits, record.pBits);
  }
}

TEST(Reduce, AFactorOfZeroOrLessIsRefusedAndNothingIsCreated) {
  for (const Reducer& reducer : kReducers) {
    for (int factor : {0, -1, -3, INT32_MIN}) {
      Image source(4, 4, reducer.depth);
      Image out;
      EXPECT_FALSE(reducer.reduce(source.ptr(), out.ptr(), factor)) << reducer.depth << " by " << factor;
      EXPECT_TRUE(out.empty());
      EXPECT_EQ(out.ptr()->pBits, nullptr);
    }
  }
}

TEST(Reduce, AFactorLargerThanTheImageGivesAnImageOfNoPixels) {
  for (const Reducer& reducer : kReducers) {
    for (int factor : {5, 100, INT32_MAX}) {
      Image source(4, 4, reducer.depth);
      Image out;
      EXPECT_TRUE(reducer.reduce(source.ptr(), out.ptr(), factor)) << reducer.depth << " by " << factor;
      ASSERT_FALSE(out.empty());
      EXPECT_EQ(out.header().biWidth, 0);
      EXPECT_EQ(out.header().biHeight, 0);
      EXPECT_EQ(out.header().biBitCount, 8);
    }
  }
}

TEST(Reduce, TheSourceIsOnlyRead) {
  for (const Reducer& reducer : kReducers) {
    Random random(7);
    Image source(13, 9, reducer.depth);
    support::randomise(source, random);
    const Bytes before = source.block();
    Image out;
    ASSERT_TRUE(reducer.reduce(source.ptr(), out.ptr(), 2));
    EXPECT_EQ(source.block(), before);
  }
}

}  // namespace
