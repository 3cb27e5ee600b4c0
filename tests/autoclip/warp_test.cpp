// Bilinear sampling and the warps.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "autoclip/exports.h"
#include "support/drawing.h"
#include "support/image.h"

namespace {

using Bytes = std::vector<unsigned char>;
using Coefficients = std::array<double, 8>;
using Rect = std::array<double, 4>;
using support::Image;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr Coefficients kIdentity{1, 0, 0, 0, 1, 0, 0, 0};

// ---- Sampling ----

/** 2 rows of 2 in a plane with padding: 10 20 over 30 40. */
int sample(float col, float row) {
  unsigned char plane[8] = {10, 20, 99, 99, 30, 40, 99, 99};
  return Bilinear(col, row, plane, 2, 2, 4, 8);
}

/** A single row. */
int sample_row(float col, Bytes row) {
  const int cols = static_cast<int>(row.size());
  return Bilinear(col, 0, row.data(), 1, cols, cols, 8);
}

/** A single column. */
int sample_col(float row, Bytes col) { return Bilinear(0, row, col.data(), static_cast<int>(col.size()), 1, 1, 8); }

TEST(Bilinear, HitsPixelsExactly) {
  EXPECT_EQ(sample(0, 0), 10);
  EXPECT_EQ(sample(1, 0), 20);
  EXPECT_EQ(sample(0, 1), 30);
  EXPECT_EQ(sample(1, 1), 40);
}

TEST(Bilinear, WeighsFourPixelsAndRounds) {
  EXPECT_EQ(sample(0.5f, 0.5f), 25);
  EXPECT_EQ(sample(0.25f, 0.75f), 28);  // 27.5
  EXPECT_EQ(sample(0.25f, 0), 13);      // 12.5
  EXPECT_EQ(sample(0.125f, 0), 11);     // 11.25
  EXPECT_EQ(sample_row(0.75f, {0, 1}), 1);
  EXPECT_EQ(sample_row(0.5f, {0, 1}), 1);
  EXPECT_EQ(sample_row(0.25f, {0, 1}), 0);
  EXPECT_EQ(sample_row(0.5f, {200, 100}), 150);
}

TEST(Bilinear, IgnoresTheDepth) {
  unsigned char plane[8] = {10, 20, 99, 99, 30, 40, 99, 99};
  for (const int depth : {0, 1, 8, 24, -5}) EXPECT_EQ(Bilinear(0.5f, 0.5f, plane, 2, 2, 4, depth), 25);
}

TEST(Bilinear, RepeatsTheLastRowAndColumn) {
  EXPECT_EQ(sample(1.5f, 0), 20);
  EXPECT_EQ(sample(5.75f, 0), 20);
  EXPECT_EQ(sample(0, 1.5f), 30);
  EXPECT_EQ(sample(0, 9.25f), 30);
  EXPECT_EQ(sample(7.5f, 7.5f), 40);
  EXPECT_EQ(sample(1e9f, 0), 20);
  EXPECT_EQ(sample(0.5f, 3e38f), 35);
}

TEST(Bilinear, ExtrapolatesLessThanOnePixelBeforeTheFirst) {
  EXPECT_EQ(sample(-0.5f, 0), 5);
  EXPECT_EQ(sample(0, -0.25f), 5);
  EXPECT_EQ(sample(-0.5f, -0.5f), -4);           // 10 - 5 - 10 + 0.5 = -4.5
  EXPECT_EQ(sample_row(-0.5f, {0, 255}), -127);  // -127.5 + 0.5
  EXPECT_EQ(sample_row(-0.25f, {0, 255}), -63);  // -63.75 + 0.5 = -63.25
  EXPECT_EQ(sample_col(-0.5f, {0, 255}), -127);
  EXPECT_EQ(sample_row(-0.5f, {0, 2}), 0);    // -1 + 0.5
  EXPECT_EQ(sample_row(-0.75f, {0, 2}), -1);  // -1.5 + 0.5
}

TEST(Bilinear, HoldsResultsAbove255) {
  EXPECT_EQ(sample_row(-0.5f, {255, 0}), 255);  // 382.5
  EXPECT_EQ(sample_row(-0.5f, {255, 254}), 255);
  EXPECT_EQ(sample_row(-0.25f, {254, 250}), 255);
  EXPECT_EQ(sample_row(-0.25f, {254, 252}), 255);  // 254.5
  EXPECT_EQ(sample_row(-0.25f, {253, 250}), 254);  // 253.75
}

TEST(Bilinear, RepeatsTheFirstFromOnePixelBeforeItOn) {
  EXPECT_EQ(sample(-1, 0), 10);
  EXPECT_EQ(sample(-1.5f, 0), 10);
  EXPECT_EQ(sample(0, -1.5f), 10);
  EXPECT_EQ(sample(-7.25f, 1), 30);
  EXPECT_EQ(sample(-1e9f, -1e9f), 10);
}

TEST(Bilinear, OfASinglePixelIsThatPixel) {
  for (const float position : {-3.0f, -0.5f, 0.0f, 0.5f, 3.0f}) EXPECT_EQ(sample_row(position, {77}), 77);
}

TEST(Bilinear, TakesTheNearestPositionForInfinities) {
  EXPECT_EQ(sample(kInfinity, 0), 20);
  EXPECT_EQ(sample(-kInfinity, 0), 10);
  EXPECT_EQ(sample(0, kInfinity), 30);
  EXPECT_EQ(sample(0, -kInfinity), 10);
  EXPECT_EQ(sample(kInfinity, kInfinity), 40);
  EXPECT_EQ(sample(3e38f, -3e38f), 20);
}

TEST(Bilinear, OfNotANumberIsAPixelOfThePlane) {
  const float nan = std::nanf("");
  for (const int value : {sample(nan, 0), sample(0, nan), sample(nan, nan), sample(nan, kInfinity)}) {
    EXPECT_TRUE(value == 10 || value == 20 || value == 30 || value == 40) << value;
  }
}

TEST(Bilinear, OfAPlaneWithoutPixelsIsWhite) {
  EXPECT_EQ(Bilinear(0, 0, nullptr, 0, 5, 8, 8), 255);
  EXPECT_EQ(Bilinear(0, 0, nullptr, 5, 0, 0, 8), 255);
}

// ---- Mapping ----

/** A level per pixel, in every byte of it. */
template <class Level>
Image painted(int width, int height, int bit_count, Level level) {
  Image image(width, height, bit_count, 0xEE);
  for (int r = 0; r < height; ++r) {
    for (int c = 0; c < width; ++c) {
      for (int b = 0; b < bit_count / 8; ++b)
        image.at(r, c * bit_count / 8 + b) = static_cast<unsigned char>(level(r, c, b));
    }
  }
  return image;
}

Image white(int width, int height, int bit_count) { return Image(width, height, bit_count, 0xFF); }

bool warp(bool (*convert)(BITMAPPTR*, BITMAPPTR*, double*, double*, int), Image& source, Image& target,
          Coefficients coefficients, Rect rect, int depth) {
  return convert(source.ptr(), target.ptr(), coefficients.data(), rect.data(), depth);
}

TEST(ConvertImg2, ShiftsByHalfAPixelAndPlacesTheRectangleAtTheOrigin) {
  Image source = painted(8, 6, 8, [](int r, int c, int) { return 10 * c + 4 * r; });
  Image target = white(8, 6, 8);
  ASSERT_TRUE(warp(ConvertImg2, source, target, kIdentity, {1, 1, 6, 4}, 8));
  for (int r = 0; r < 6; ++r) {
    for (int c = 0; c < 8; ++c) {
      // row r shows y = 4 - r, column c shows x = c + 1: the mean of four pixels, 10 x + 23 - 4 y
      const int expected = r < 4 && c < 6 ? 10 * (c + 1) + 23 - 4 * (4 - r) : 255;
      EXPECT_EQ(target.at(r, c), expected) << r << ", " << c;
    }
  }
}

TEST(ConvertImg2, WarpsThePlanesOfColourAlike) {
  for (const int depth : {24, 32, 0}) {
    Image source = painted(7, 6, 24, [](int r, int c, int b) { return 10 * c + 4 * r + 50 * b; });
    Image target = white(7, 6, 24);
    ASSERT_TRUE(warp(ConvertImg2, source, target, kIdentity, {1, 1, 5, 4}, depth));
    for (int r = 0; r < 6; ++r) {
      for (int byte = 0; byte < target.stride(); ++byte) {
        const int c = byte / 3, b = byte % 3;
        const int expected = r < 4 && c < 5 ? 10 * (c + 1) + 23 - 4 * (4 - r) + 50 * b : 255;
        EXPECT_EQ(target.at(r, byte), expected) << r << ", " << byte;
      }
    }
  }
}

TEST(ConvertImg2, CountsMappedRowsFromTheTop) {
  // every position is mapped to (2, 1) of 4 rows, less the half pixel: column 2, memory row 2
  Image source = painted(5, 4, 8, [](int r, int c, int) { return 50 * r + c; });
  Image target = white(5, 4, 8);
  ASSERT_TRUE(warp(ConvertImg2, source, target, {0, 0, 1.5, 0, 0, 0.5, 0, 0}, {1, 1, 3, 2}, 8));
  for (int r = 0; r < 2; ++r) {
    for (int c = 0; c < 3; ++c) EXPECT_EQ(target.at(r, c), 102);
  }
}

TEST(ConvertImg2, DividesByTheDenominator) {
  // u = 6 x / (x + 1): 3 at x = 1, 4 at x = 2, 5 at x = 5
  Image source = painted(8, 2, 8, [](int, int c, int) { return 20 * c; });
  Image target = white(8, 2, 8);
  ASSERT_TRUE(warp(ConvertImg2, source, target, {6, 0, 0, 0, 0, 0, 1, 0}, {1, 0, 5, 0}, 8));
  EXPECT_EQ(target.at(0, 0), 70);   // 3.5
  EXPECT_EQ(target.at(0, 1), 90);   // 4.5
  EXPECT_EQ(target.at(0, 2), 100);  // 5
  EXPECT_EQ(target.at(0, 4), 110);  // 5.5
}

TEST(ConvertImg2, StoresTheLowByteOfNegativeValues) {
  // u = x - 2: -0.5 with the half pixel at x = 1
  Image source = painted(6, 3, 8, [](int, int c, int) { return c == 0 ? 0 : 255; });
  Image target = white(6, 3, 8);
  ASSERT_TRUE(warp(ConvertImg2, source, target, {1, 0, -2, 0, 1, 0, 0, 0}, {1, 1, 4, 1}, 8));
  EXPECT_EQ(target.at(0, 0), 129);  // -127
  EXPECT_EQ(target.at(0, 1), 128);  // 127.5
  EXPECT_EQ(target.at(0, 2), 255);
}

TEST(ConvertImg2, DoesNotWriteWhatAFractionalRectanglePutsOutside) {
  // 5.3 rows make 5, but the rows 0 to 5 are walked: the sixth would lie before the first memory row
  Image source = painted(9, 6, 8, [](int, int c, int) { return 10 * c; });
  Image target = white(9, 6, 8);
  ASSERT_TRUE(warp(ConvertImg2, source, target, kIdentity, {0.9, 0.9, 5.2, 5.2}, 8));
  for (int r = 0; r < 6; ++r) {
    for (int c = 0; c < 9; ++c) EXPECT_EQ(target.at(r, c), r < 5 && c < 6 ? 10 * c + 5 : 255) << r << ", " << c;
  }
}

TEST(ConvertImg2, StaysInsideForRectanglesLargerThanTheImage) {
  for (const int bit_count : {8, 24}) {
    Image source = painted(5, 4, bit_count, [](int r, int c, int) { return r + c; });
    Image target = white(5, 4, bit_count);
    EXPECT_TRUE(warp(ConvertImg2, source, target, kIdentity, {-20, -20, 20, 20}, bit_count));
    EXPECT_TRUE(warp(ConvertImg2, source, target, kIdentity, {0, 0, 300, 2}, bit_count));
    EXPECT_TRUE(warp(ConvertImg2, source, target, kIdentity, {0, 0, 2, 300}, bit_count));
  }
}

TEST(ConvertImg2, WritesNothingForAnEmptyRectangle) {
  for (const int bit_count : {8, 24}) {
    Image source(6, 5, bit_count, 0);
    Image target = white(6, 5, bit_count);
    const Bytes before = target.block();
    EXPECT_TRUE(warp(ConvertImg2, source, target, kIdentity, {3, 1, 2, 4}, bit_count));
    EXPECT_TRUE(warp(ConvertImg2, source, target, kIdentity, {1, 3, 4, 2}, bit_count));
    EXPECT_TRUE(warp(ConvertImg2, source, target, kIdentity, {1, 1, -1, -1}, bit_count));
    EXPECT_EQ(target.block(), before);
  }
}

TEST(ConvertImg2, AcceptsImagesWithoutPixels) {
  for (const int bit_count : {8, 24}) {
    Image source(0, 0, bit_count), target(0, 0, bit_count);
    EXPECT_TRUE(warp(ConvertImg2, source, target, kIdentity, {1, 1, -2, -2}, bit_count));
    EXPECT_TRUE(warp(ConvertImg2, source, target, kIdentity, {0, 0, 3, 3}, bit_count));
  }
}

TEST(Warps, AreSafeForDegenerateCoefficients) {
  const double nan = std::nan(""), infinity = static_cast<double>(kInfinity);
  const Coefficients degenerate[] = {{nan, nan, nan, nan, nan, nan, nan, nan},
                                     {infinity, 0, 0, 0, infinity, 0, 0, 0},
                                     {1, 0, 0, 0, 1, 0, -0.5, 0},
                                     {1, 0, 0, 0, 1, 0, 0, -0.5},
                                     {1e300, 1e300, 0, -1e300, 1e300, 0, 0, 0},
                                     {0, 0, 0, 0, 0, 0, 0, 0},
                                     {1, 0, 1e10, 0, 1, -1e10, 0, 0},
                                     {1, 0, 0, 0, 1, 0, infinity, 0},
                                     {1, 0, 0, 0, 1, 0, nan, 0},
                                     {3e38, 3e38, 3e38, 3e38, 3e38, 3e38, 0, 0}};
  for (const Coefficients& coefficients : degenerate) {
    for (const int bit_count : {8, 24}) {
      for (const auto convert : {ConvertImg, ConvertImg2, ConvertImg3}) {
        Image source(7, 6, bit_count, 40);
        Image target = white(7, 6, bit_count);
        EXPECT_TRUE(warp(convert, source, target, coefficients, {1, 1, 5, 4}, bit_count));
      }
      Image source(7, 6, bit_count, 40);
      Image target = white(7, 6, bit_count);
      warp(ConvertImg2, source, target, coefficients, {1, 1, 5, 4}, bit_count);
      EXPECT_EQ(target.at(0, 0), 40);  // wherever it is sampled
    }
  }
}

TEST(Warps, WriteNothingForDegenerateRectangles) {
  const double nan = std::nan(""), infinity = static_cast<double>(kInfinity);
  for (const int bit_count : {8, 24}) {
    for (const auto convert : {ConvertImg, ConvertImg2, ConvertImg3}) {
      for (const Rect& rect : {Rect{1, nan, 5, 4}, Rect{1, 1, nan, 4}, Rect{1, 1, 5, nan}, Rect{nan, nan, nan, nan},
                               Rect{1, 1, -infinity, 4}, Rect{infinity, 1, 5, 4}}) {
        Image source(7, 6, bit_count, 40);
        Image target = white(7, 6, bit_count);
        EXPECT_TRUE(warp(convert, source, target, kIdentity, rect, bit_count));
        EXPECT_EQ(target.block(), white(7, 6, bit_count).block());
      }
    }
  }
}

TEST(Warps, TakeABoundThatIsNoNumberForZero) {
  const Rect rect{std::nan(""), 1, 5, 4};
  for (const int bit_count : {8, 24}) {
    for (const auto convert : {ConvertImg, ConvertImg2, ConvertImg3}) {
      Image source(7, 6, bit_count, 40);
      Image target = white(7, 6, bit_count);
      EXPECT_TRUE(warp(convert, source, target, kIdentity, rect, bit_count));
      // columns 0 to 5 of 4 rows; nothing into an image of the rectangle's width, which is no number
      Image expected = white(7, 6, bit_count);
      if (convert == ConvertImg2) support::fill(expected, 0, 6, 0, 4, 40);
      EXPECT_EQ(target.block(), expected.block());
    }
  }
}

TEST(ConvertImg, FillsAnImageOfTheRectanglesWidth) {
  Image source = painted(12, 6, 8, [](int r, int c, int) { return 10 * c + 4 * r; });
  Image target = white(6, 4, 8);  // 8 bytes a row, 12 in the source
  ASSERT_TRUE(warp(ConvertImg, source, target, kIdentity, {1, 1, 6, 4}, 8));
  for (int r = 0; r < 4; ++r) {
    for (int c = 0; c < 8; ++c) {
      EXPECT_EQ(target.at(r, c), c < 6 ? 10 * (c + 1) + 23 - 4 * (4 - r) : 255) << r << ", " << c;
    }
  }
}

TEST(ConvertImg, FillsColourOfTheRectanglesWidth) {
  Image source = painted(12, 6, 24, [](int r, int c, int b) { return 10 * c + 4 * r + 20 * b; });
  Image target = white(5, 4, 24);
  ASSERT_TRUE(warp(ConvertImg, source, target, kIdentity, {1, 1, 5, 4}, 24));
  for (int r = 0; r < 4; ++r) {
    for (int byte = 0; byte < 16; ++byte) {
      EXPECT_EQ(target.at(r, byte), byte < 15 ? 10 * (byte / 3 + 1) + 23 - 4 * (4 - r) + 20 * (byte % 3) : 255);
    }
  }
}

TEST(ConvertImg3, LeavesWhatLiesBeyondEitherSideOfTheSource) {
  Image source = painted(9, 7, 8, [](int r, int c, int) { return 10 * r + c; });
  Image target = white(12, 1, 8);
  EXPECT_TRUE(warp(ConvertImg3, source, target, kIdentity, {-1, 2, 10, 2}, 8));
  for (int c = 0; c < 12; ++c) EXPECT_EQ(target.at(0, c), c == 0 || c > 9 ? 255 : 20 + c - 1) << c;
}

TEST(ConvertImg3, CropsGrayUpsideDownFromMemoryRows) {
  Image source = painted(9, 7, 8, [](int r, int c, int) { return 10 * r + c; });
  Image target = white(4, 3, 8);
  ASSERT_TRUE(warp(ConvertImg3, source, target, {}, {2, 1, 5, 3}, 8));
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 4; ++c) EXPECT_EQ(target.at(r, c), 10 * (3 - r) + c + 2) << r << ", " << c;
  }
}

TEST(ConvertImg3, CropsColourUprightFromTheTop) {
  Image source = painted(9, 7, 24, [](int r, int c, int b) { return 10 * r + c + 80 * b; });
  Image target = white(4, 3, 24);  // the picture's rows 1 to 3 are the memory rows 5 to 3
  ASSERT_TRUE(warp(ConvertImg3, source, target, {}, {2, 1, 5, 3}, 24));
  for (int r = 0; r < 3; ++r) {
    for (int byte = 0; byte < 12; ++byte) {
      EXPECT_EQ(target.at(r, byte), 10 * (3 + r) + byte / 3 + 2 + 80 * (byte % 3)) << r << ", " << byte;
    }
  }
}

TEST(ConvertImg3, TruncatesAFractionalRectangle) {
  Image source = painted(9, 7, 8, [](int r, int c, int) { return 10 * r + c; });
  Image target = white(4, 3, 8);
  ASSERT_TRUE(warp(ConvertImg3, source, target, {}, {2.75, 1.75, 5.8, 3.8}, 8));  // 4.05 x 3.05
  for (int r = 0; r < 3; ++r) {
    for (int c = 0; c < 4; ++c) EXPECT_EQ(target.at(r, c), 10 * (3 - r) + c + 2) << r << ", " << c;
  }
}

TEST(ConvertImg3, LeavesWhatLiesOutsideTheSource) {
  for (const int bit_count : {8, 24}) {
    Image source(4, 4, bit_count, 7);
    Image target = white(8, 6, bit_count);
    ASSERT_TRUE(warp(ConvertImg3, source, target, {}, {2, 2, 9, 7}, bit_count));
    const int bytes = bit_count / 8;
    for (int r = 0; r < 6; ++r) {
      for (int c = 0; c < 8 * bytes; ++c) {
        const bool inside = r >= 4 && c < 2 * bytes;  // the first two rows of the rectangle
        EXPECT_EQ(target.at(r, c), inside ? 7 : 255) << bit_count << " bits: " << r << ", " << c;
      }
    }
    Image before = white(8, 6, bit_count);
    EXPECT_TRUE(warp(ConvertImg3, source, before, {}, {-9, -9, -2, -4}, bit_count));
    EXPECT_EQ(before.block(), white(8, 6, bit_count).block());
  }
}

}  // namespace
