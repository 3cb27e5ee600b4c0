// Colour to gray, and interleaved colour to planes.
#include <gtest/gtest.h>

#include "image/exports.h"
#include "support/image.h"

namespace {

using support::Image;

void set_pixel(Image& image, int row, int col, int blue, int green, int red) {
  image.at(row, 3 * col) = static_cast<unsigned char>(blue);
  image.at(row, 3 * col + 1) = static_cast<unsigned char>(green);
  image.at(row, 3 * col + 2) = static_cast<unsigned char>(red);
}

TEST(Color2Gray, WeighsBlueGreenAndRedBySixteenths) {
  const struct {
    int blue, green, red, gray;
  } cases[] = {{0, 0, 0, 0}, {255, 255, 255, 255}, {0, 0, 255, 79},  {0, 255, 0, 143},  {255, 0, 0, 31}, {7, 0, 0, 0},
               {8, 0, 0, 1}, {0, 0, 3, 0},         {0, 0, 4, 1},     {0, 1, 0, 0},      {1, 1, 0, 0},    {1, 1, 1, 1},
               {3, 1, 0, 0}, {4, 1, 0, 1},         {10, 20, 30, 21}, {200, 100, 50, 96}};
  for (const auto& c : cases) {
    Image source(1, 1, 24);
    set_pixel(source, 0, 0, c.blue, c.green, c.red);
    Image gray;
    ASSERT_TRUE(Color2Gray(source.ptr(), gray.ptr()));
    EXPECT_EQ(gray.at(0, 0), c.gray) << c.blue << ' ' << c.green << ' ' << c.red;
  }
}

TEST(Color2Gray, MakesAnEightBitImageOfTheSameSizeAndResolution) {
  Image source(5, 3, 24, 0, 1000);
  source.header().biYPelsPerMeter = 2000;
  Image gray;
  ASSERT_TRUE(Color2Gray(source.ptr(), gray.ptr()));
  EXPECT_EQ(gray.header().biWidth, 5);
  EXPECT_EQ(gray.header().biHeight, 3);
  EXPECT_EQ(gray.header().biBitCount, 8);
  EXPECT_EQ(gray.header().biXPelsPerMeter, 1000);
  EXPECT_EQ(gray.header().biYPelsPerMeter, 2000);
  EXPECT_EQ(gray.header().biClrUsed, 256u);
}

TEST(Color2Gray, WalksBothImagesByTheirOwnStrides) {
  Image source(5, 3, 24, 0xEE);  // 16 bytes a row, 8 in the gray image
  for (int row = 0; row < 3; ++row) {
    for (int col = 0; col < 5; ++col) set_pixel(source, row, col, 16 * row, 16 * col, 0);
  }
  Image gray;
  ASSERT_TRUE(Color2Gray(source.ptr(), gray.ptr()));
  EXPECT_EQ(gray.pixels(), (std::vector<unsigned char>{0, 9,  18, 27, 36, 255, 255, 255,  //
                                                       2, 11, 20, 29, 38, 255, 255, 255,  //
                                                       4, 13, 22, 31, 40, 255, 255, 255}));
}

TEST(Color2Gray, LeavesADestinationThatHoldsAnImageAlone) {
  Image source(4, 4, 24, 0x11);
  Image held(2, 2, 8, 0x77);
  const std::vector<unsigned char> before = held.block();
  const BITMAPPTR record = *held.ptr();
  EXPECT_FALSE(Color2Gray(source.ptr(), held.ptr()));
  EXPECT_EQ(held.block(), before);
  EXPECT_EQ(held.ptr()->pInfo, record.pInfo);
  EXPECT_EQ(held.ptr()->pPalette, record.pPalette);
  EXPECT_EQ(held.ptr()->pBits, record.pBits);
}

TEST(Color2Gray, FailsWhenTheGrayImageCannotBeMade) {
  for (const int width : {-1, -1000}) {
    Image source(4, 4, 24);
    source.header().biWidth = width;
    Image gray;
    EXPECT_FALSE(Color2Gray(source.ptr(), gray.ptr()));
    EXPECT_TRUE(gray.empty());
  }
}

TEST(Color2Gray, ConvertsImagesWithoutPixels) {
  Image source(0, 0, 24);
  Image gray;
  ASSERT_TRUE(Color2Gray(source.ptr(), gray.ptr()));
  EXPECT_EQ(gray.header().biSizeImage, 0u);
}

TEST(RawData2RGB, SendsTheBytesOfAPixelToThePlanesInOrder) {
  unsigned char raw[2 * 8] = {1, 2, 3, 4, 5, 6, 99, 99, 7, 8, 9, 10, 11, 12, 99, 99};
  unsigned char first[6], second[6], third[6];
  for (unsigned char* plane : {first, second, third}) std::memset(plane, 200, 6);
  RawData2RGB(raw, first, second, third, 2, 2, 3, 8);
  const unsigned char expected_first[6] = {1, 4, 200, 7, 10, 200};
  const unsigned char expected_second[6] = {2, 5, 200, 8, 11, 200};
  const unsigned char expected_third[6] = {3, 6, 200, 9, 12, 200};
  EXPECT_EQ(std::memcmp(first, expected_first, 6), 0);
  EXPECT_EQ(std::memcmp(second, expected_second, 6), 0);
  EXPECT_EQ(std::memcmp(third, expected_third, 6), 0);
}

TEST(RawData2RGB, DoesNothingWithoutRowsOrColumns) {
  RawData2RGB(nullptr, nullptr, nullptr, nullptr, 0, 5, 5, 15);
  unsigned char raw[3] = {1, 2, 3};
  unsigned char planes[3] = {9, 9, 9};
  RawData2RGB(raw, planes, planes + 1, planes + 2, 1, 0, 1, 3);
  RawData2RGB(raw, planes, planes + 1, planes + 2, -1, -1, 1, 3);
  for (const unsigned char byte : planes) EXPECT_EQ(byte, 9);
}

}  // namespace
