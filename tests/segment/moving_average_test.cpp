// Binarisation by a running mean.
#include <gtest/gtest.h>

#include <algorithm>

#include "segment/exports.h"

namespace {

using Bytes = std::vector<unsigned char>;

/** The pixels, `width` to a row without padding, binarised. */
Bytes binarised(Bytes pixels, int width) {
  EXPECT_TRUE(Moving_Average(pixels.data(), width, static_cast<int>(pixels.size()) / width, width));
  return pixels;
}

TEST(MovingAverage, OfNothingIsDone) {
  EXPECT_TRUE(Moving_Average(nullptr, 0, 5, 0));
  EXPECT_TRUE(Moving_Average(nullptr, 5, 0, 8));
}

TEST(MovingAverage, AUniformlyGrayAreaIsWhite) {
  for (int level : {0, 1, 2, 37, 128, 254, 255}) {
    EXPECT_EQ(binarised(Bytes(40 * 7, static_cast<unsigned char>(level)), 40), Bytes(40 * 7, 255)) << level;
  }
}

TEST(MovingAverage, ADarkPixelInABrightAreaIsBlack) {
  for (std::size_t dark : {1U, 8U, 9U, 14U, 22U, 34U}) {
    Bytes pixels(35, 220);
    pixels[dark] = 30;
    Bytes expected(35, 255);
    expected[dark] = 0;
    EXPECT_EQ(binarised(pixels, 7), expected) << dark;
  }
}

TEST(MovingAverage, TheFirstPixelIsItsOwnMean) {
  EXPECT_EQ(binarised({10, 200, 200}, 3), (Bytes{255, 255, 255}));
  EXPECT_EQ(binarised({200, 10}, 2), (Bytes{255, 0}));
}

TEST(MovingAverage, APixelAtTheThresholdIsWhiteAndBelowItBlack) {
  // The mean stays near 200, of which 27/32 are 168.
  EXPECT_EQ(binarised({200, 168}, 2), (Bytes{255, 255}));
  EXPECT_EQ(binarised({200, 167}, 2), (Bytes{255, 0}));
  EXPECT_EQ(binarised({200, 200, 200, 168}, 2), (Bytes{255, 255, 255, 255}));
  EXPECT_EQ(binarised({200, 200, 200, 167}, 2), (Bytes{255, 255, 255, 0}));
}

TEST(MovingAverage, ASingleRowIsScannedFromLeftToRightAndNothingBehindIt) {
  Bytes pixels{200, 200, 100, 200, 1, 2, 3, 4};
  EXPECT_TRUE(Moving_Average(pixels.data(), 4, 1, 4));
  EXPECT_EQ(pixels, (Bytes{255, 255, 0, 255, 1, 2, 3, 4}));
}

TEST(MovingAverage, RowsAreScannedToAndFro) {
  // Row 1 ends on its bright half, at the left, so row 2 meets a high mean and is black throughout. Were every row
  // scanned from the left, its last 67 pixels would be white.
  Bytes pixels(3 * 400, 200);
  std::fill(pixels.begin() + 600, pixels.begin() + 800, static_cast<unsigned char>(100));
  std::fill(pixels.begin() + 800, pixels.end(), static_cast<unsigned char>(120));
  Bytes expected(3 * 400, 255);
  std::fill(expected.begin() + 600, expected.end(), static_cast<unsigned char>(0));
  EXPECT_EQ(binarised(pixels, 400), expected);
}

TEST(MovingAverage, TheMeanIsAveragedWithTheOneOfTheRowBefore) {
  // The running mean alone, would leave all of row 1 white.
  Bytes pixels(600, 250);
  std::fill(pixels.begin() + 300, pixels.end(), static_cast<unsigned char>(50));
  pixels.resize(1200, 140);
  const Bytes out = binarised(pixels, 600);
  Bytes expected(600, 255);
  std::fill(expected.begin(), expected.begin() + 365, static_cast<unsigned char>(0));
  EXPECT_EQ(Bytes(out.begin() + 600, out.end()), expected);
}
TEST(MovingAverage, PaddingIsNeitherReadNorWritten) {
  for (const unsigned char padding : Bytes{0, 99, 255}) {
    Bytes pixels{200, 200, 100, padding, 200, 100, 200, padding, 100, 200, 200, padding};
    EXPECT_TRUE(Moving_Average(pixels.data(), 3, 3, 4));
    EXPECT_EQ(pixels, (Bytes{255, 255, 0, padding, 255, 0, 255, padding, 0, 255, 255, padding}));
  }
}

}  // namespace
