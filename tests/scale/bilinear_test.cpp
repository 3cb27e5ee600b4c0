// Enlarging by rounded means.
#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "scale/exports.h"
#include "support/image.h"
#include "support/random.h"

namespace {

using support::Image;
using support::Random;
using Bytes = std::vector<unsigned char>;

/** A gray image of `width` columns, given as its rows in memory order. Its padding bytes are 99. */
Image gray(int width, std::initializer_list<int> levels) {
  const int height = static_cast<int>(levels.size()) / width;
  Image image(width, height, 8, 99);
  for (int i = 0; i < width * height; ++i) {
    image.at(i / width, i % width) = static_cast<unsigned char>(levels.begin()[i]);
  }
  return image;
}

/** The first `bytes` bytes of the output; whatever is written behind them fails the test. */
Bytes enlarged(Image& image, std::size_t bytes, short factor = 2) {
  Bytes out(bytes + 64, 0xEE);
  BITMAPINFOHEADER header{};
  BITMAPPTR record{&header, nullptr, out.data()};
  EXPECT_TRUE(BiLinearMethod(image.ptr(), &record, factor));
  EXPECT_EQ(Bytes(out.end() - 64, out.end()), Bytes(64, 0xEE)) << "written beyond the output";
  out.resize(bytes);
  return out;
}

TEST(BiLinearMethod, FillsFourByTwoFromASinglePixel) {
  Image image = gray(1, {42});
  EXPECT_EQ(enlarged(image, 8), Bytes(8, 42));
}

TEST(BiLinearMethod, PutsRoundedMeansBetweenPixels) {
  Image image = gray(2, {0, 255,  //
                         0, 0});
  EXPECT_EQ(enlarged(image, 16), (Bytes{0, 128, 255, 255,  //
                                        0, 64, 128, 128,   //
                                        0, 0, 0, 0,        //
                                        0, 0, 0, 0}));
}

TEST(BiLinearMethod, RoundsHalvesUpwards) {
  Image image = gray(2, {1, 2,  //
                         2, 1});
  // (1 + 2 + 2 + 1 + 2) / 4 is 2, (1 + 2 + 1) / 2 is 2.
  EXPECT_EQ(enlarged(image, 16), (Bytes{1, 2, 2, 2,  //
                                        2, 2, 2, 2,  //
                                        2, 2, 1, 1,  //
                                        2, 2, 1, 1}));
}

TEST(BiLinearMethod, RepeatsTheLastColumnInTheRoundingColumns) {
  Image image = gray(3, {10, 20, 30});
  EXPECT_EQ(enlarged(image, 16), (Bytes{10, 15, 20, 25, 30, 30, 30, 30,  //
                                        10, 15, 20, 25, 30, 30, 30, 30}));
}

TEST(BiLinearMethod, RepeatsTheLastRow) {
  Image image = gray(2, {0, 4,   //
                         8, 12,  //
                         16, 20});
  const Bytes out = enlarged(image, 24);
  EXPECT_EQ(Bytes(out.begin() + 16, out.begin() + 20), (Bytes{16, 18, 20, 20}));
  EXPECT_EQ(Bytes(out.begin() + 20, out.end()), (Bytes{16, 18, 20, 20}));
}

TEST(BiLinearMethod, KeepsTheSourcePixelsAtEvenPlaces) {
  Image image(7, 6, 8);
  Random random(1);
  randomise(image, random);
  const Bytes out = enlarged(image, 16 * 12);
  for (int y = 0; y < 6; ++y) {
    for (int x = 0; x < 7; ++x) EXPECT_EQ(out[static_cast<std::size_t>(2 * y * 16 + 2 * x)], image.at(y, x));
  }
}

TEST(BiLinearMethod, MixesEachColourByItself) {
  Image image(3, 1, 24, 99);
  const Bytes pixels{0, 100, 200, 10, 110, 210, 21, 121, 221};
  std::copy(pixels.begin(), pixels.end(), image.row(0));
  const Bytes row{0,  100, 200, 5,  105, 205, 10, 110, 210, 16, 116, 216,  //
                  21, 121, 221, 21, 121, 221, 21, 121, 221, 21, 121, 221};
  const Bytes out = enlarged(image, 48);
  EXPECT_EQ(Bytes(out.begin(), out.begin() + 24), row);
  EXPECT_EQ(Bytes(out.begin() + 24, out.end()), row);
}

TEST(BiLinearMethod, HalvesPlacesWhateverTheFactor) {
  Image image = gray(4, {0, 10, 20, 30,  //
                         40, 50, 60, 70});
  EXPECT_EQ(enlarged(image, 8, 1), (Bytes{0, 5, 10, 15,  //
                                          20, 25, 30, 35}));
  // Three times: the columns run to 11 and stay on the last from 6 on, the rows to 5 and stay on the last from 2 on.
  EXPECT_EQ(enlarged(image, 72, 3), (Bytes{0,  5,  10, 15, 20, 25, 30, 30, 30, 30, 30, 30,  //
                                           20, 25, 30, 35, 40, 45, 50, 50, 50, 50, 50, 50,  //
                                           40, 45, 50, 55, 60, 65, 70, 70, 70, 70, 70, 70,  //
                                           40, 45, 50, 55, 60, 65, 70, 70, 70, 70, 70, 70,  //
                                           40, 45, 50, 55, 60, 65, 70, 70, 70, 70, 70, 70,  //
                                           40, 45, 50, 55, 60, 65, 70, 70, 70, 70, 70, 70}));
}

TEST(BiLinearMethod, RefusesAFactorOfZero) {
  Image image = gray(2, {1, 2});
  Bytes out(64, 0xEE);
  BITMAPINFOHEADER header{};
  BITMAPPTR record{&header, nullptr, out.data()};
  EXPECT_FALSE(BiLinearMethod(image.ptr(), &record, 0));
  EXPECT_EQ(out, Bytes(64, 0xEE));
}

TEST(BiLinearMethod, RefusesMissingImages) {
  Image image = gray(2, {1, 2});
  Bytes out(64, 0xEE);
  BITMAPINFOHEADER header{};
  BITMAPPTR record{&header, nullptr, out.data()};
  BITMAPPTR no_header{nullptr, nullptr, image.ptr()->pBits};
  BITMAPPTR no_bits{image.ptr()->pInfo, nullptr, nullptr};
  BITMAPPTR no_output{&header, nullptr, nullptr};
  EXPECT_FALSE(BiLinearMethod(nullptr, &record, 2));
  EXPECT_FALSE(BiLinearMethod(&no_header, &record, 2));
  EXPECT_FALSE(BiLinearMethod(&no_bits, &record, 2));
  EXPECT_FALSE(BiLinearMethod(image.ptr(), nullptr, 2));
  EXPECT_FALSE(BiLinearMethod(image.ptr(), &no_output, 2));
  EXPECT_EQ(out, Bytes(64, 0xEE));
}

TEST(BiLinearMethod, DoesNotReadTheOutputsHeader) {
  Image image = gray(1, {42});
  Bytes out(8);
  BITMAPPTR record{nullptr, nullptr, out.data()};
  EXPECT_TRUE(BiLinearMethod(image.ptr(), &record, 2));
  EXPECT_EQ(out, Bytes(8, 42));
}

TEST(BiLinearMethod, TakesWidthAndHeightInSixteenBits) {
  Image image(65536 + 2, 1, 8, 7);
  image.at(0, 0) = 0;
  image.at(0, 1) = 255;
  EXPECT_EQ(enlarged(image, 8), (Bytes{0, 128, 255, 255, 0, 128, 255, 255}));
  Image high(4, 65536 + 1, 8, 9);
  EXPECT_EQ(enlarged(high, 16), Bytes(16, 9));
}

TEST(BiLinearMethod, WritesNothingForASideThatIsNegativeInSixteenBits) {
  for (const auto& [width, height] : {std::pair{40000, 1}, std::pair{1, 40000}, std::pair{65536, 1}}) {
    Image image(width, height, 8, 9);
    Bytes out(64, 0xEE);
    BITMAPINFOHEADER header{};
    BITMAPPTR record{&header, nullptr, out.data()};
    // no columns are no work, a negative number of rows is none that could be allocated
    EXPECT_EQ(BiLinearMethod(image.ptr(), &record, 2), height == 1);
    EXPECT_EQ(out, Bytes(64, 0xEE)) << width << " x " << height;
  }
}

TEST(BiLinearMethod, RefusesANegativeWidthOrHeightThatIsPositiveInSixteenBits) {
  for (const auto& [width, height] : {std::pair{-65535, 1}, std::pair{1, -65535}}) {
    Image image(1, 1, 8, 9);
    image.header().biWidth = width;
    image.header().biHeight = height;
    Bytes out(64, 0xEE);
    BITMAPINFOHEADER header{};
    BITMAPPTR record{&header, nullptr, out.data()};
    EXPECT_FALSE(BiLinearMethod(image.ptr(), &record, 2)) << width << " x " << height;
    EXPECT_EQ(out, Bytes(64, 0xEE));
  }
}

TEST(BiLinearMethod, ReadsShallowRowsAsBytesAndMeetsWhiteBehindTheLast) {
  // Rows of 8 pixels of 4 bits are 4 bytes long; taken as 8 bytes, each runs on into the next one.
  Image image(8, 2, 4);
  for (int i = 0; i < 8; ++i) image.at(i / 4, i % 4) = static_cast<unsigned char>(10 * (i + 1));
  const Bytes out = enlarged(image, 64);
  const Bytes first(out.begin(), out.begin() + 16);
  EXPECT_EQ(first, (Bytes{10, 15, 20, 25, 30, 35, 40, 45, 50, 55, 60, 65, 70, 75, 80, 80}));
  const Bytes last(out.end() - 16, out.end());
  EXPECT_EQ(last, (Bytes{50, 55, 60, 65, 70, 75, 80, 168, 255, 255, 255, 255, 255, 255, 255, 255}));
}

}  // namespace
