// The two enlarging entries.
#include <gtest/gtest.h>

#include <limits>
#include <tuple>
#include <utility>

#include "support/image.h"
#include "support/random.h"
#include "vantrel.h"

namespace {

using support::Image;
using support::Random;

using Entry = int (*)(void**, BITMAPPTR*);

/** Both entries, which are one procedure but for colour images over the limit. */
class EnlargingEntry : public ::testing::TestWithParam<Entry> {
 protected:
  int enlarge(Image& image, Image& out) { return GetParam()(image.handle(), out.ptr()); }
};

INSTANTIATE_TEST_SUITE_P(Both, EnlargingEntry, ::testing::Values(&BiLinear, &BiCubic),
                         [](const auto& entry) { return entry.index == 0 ? "BiLinear" : "BiCubic"; });

void expect_size(Image& out, int width, int height, int depth) {
  ASSERT_FALSE(out.empty());
  EXPECT_EQ(out.header().biWidth, width);
  EXPECT_EQ(out.header().biHeight, height);
  EXPECT_EQ(out.header().biBitCount, depth);
}

bool same_pixels(Image& image, Image& out) { return out.pixels() == image.pixels(); }

TEST_P(EnlargingEntry, RefusesANullBlock) {
  void* nothing = nullptr;
  Image out;
  EXPECT_EQ(GetParam()(&nothing, out.ptr()), -1);
  EXPECT_TRUE(out.empty());
}

TEST_P(EnlargingEntry, CopiesBilevelImages) {
  for (const auto& [width, height] : {std::pair{1, 1}, std::pair{37, 20}, std::pair{2001, 5}}) {
    Image image(width, height, 1, 0xA7, 4000);
    image.header().biClrUsed = 0;
    Image out;
    EXPECT_EQ(enlarge(image, out), 0);
    EXPECT_EQ(image.header().biClrUsed, 2u);
    expect_size(out, width, height, 1);
    EXPECT_TRUE(same_pixels(image, out));
    EXPECT_EQ(out.header().biXPelsPerMeter, 4000) << "the resolution is not doubled";
    EXPECT_EQ(std::memcmp(out.ptr()->pInfo, image.ptr()->pInfo, 48), 0) << "header and palette are copied";
  }
}

TEST_P(EnlargingEntry, RefusesOtherDepthsAndLeavesTheOutput) {
  const struct {
    int depth;
    std::uint32_t colours;
  } cases[] = {{4, 16}, {16, 0}, {32, 0}};
  for (const auto& c : cases) {
    Image image(20, 20, c.depth, 3);
    image.header().biClrUsed = 99;
    BITMAPINFOHEADER header{};
    BITMAPPTR out{&header, nullptr, nullptr};
    EXPECT_EQ(GetParam()(image.handle(), &out), -1);
    EXPECT_EQ(out.pInfo, &header);
    EXPECT_EQ(image.header().biClrUsed, c.colours) << "adopted all the same";
  }
}

TEST_P(EnlargingEntry, RoundsTheWidthUpToAMultipleOfFour) {
  for (const int width : {5, 6}) {
    for (const int depth : {8, 24}) {
      Image image(width, 3, depth, 50);
      Image out;
      ASSERT_EQ(enlarge(image, out), 1);
      expect_size(out, 12, 6, depth);
    }
  }
}

TEST_P(EnlargingEntry, EnlargesImagesWithoutPixels) {
  for (const auto& [width, height, wider] : {std::tuple{0, 5, 0}, std::tuple{5, 0, 12}, std::tuple{0, 0, 0}}) {
    for (const int depth : {8, 24}) {
      Image image(width, height, depth);
      Image out;
      ASSERT_EQ(enlarge(image, out), 1) << width << " x " << height;
      expect_size(out, wider, 2 * height, depth);
    }
  }
}

TEST_P(EnlargingEntry, DoublesTheResolution) {
  for (const int depth : {8, 24}) {
    Image image(6, 3, depth, 50);
    image.header().biXPelsPerMeter = 3937;
    image.header().biYPelsPerMeter = 7874;
    Image out;
    ASSERT_EQ(enlarge(image, out), 1);
    EXPECT_EQ(out.header().biXPelsPerMeter, 7874);
    EXPECT_EQ(out.header().biYPelsPerMeter, 15748);
  }
}

TEST_P(EnlargingEntry, EnlargesUpToTwoThousandPixels) {
  for (const auto& [width, height] : {std::pair{2000, 100}, std::pair{100, 2000}}) {
    Image image(width, height, 8, 50);
    Image out;
    EXPECT_EQ(enlarge(image, out), 1);
    expect_size(out, 2 * width, 2 * height, 8);
    EXPECT_EQ(out.at(0, 0), 50);
    EXPECT_EQ(out.at(2 * height - 1, 2 * width - 1), 50);
  }
}

TEST_P(EnlargingEntry, CopiesGrayImagesOverTwoThousandPixels) {
  Random random(1);
  for (const auto& [width, height] : {std::pair{2001, 100}, std::pair{100, 2001}}) {
    Image image(width, height, 8);
    randomise(image, random);
    Image out;
    EXPECT_EQ(enlarge(image, out), 0);
    expect_size(out, width, height, 8);
    EXPECT_TRUE(same_pixels(image, out));
    EXPECT_EQ(out.header().biXPelsPerMeter, image.header().biXPelsPerMeter);
  }
}

TEST_P(EnlargingEntry, RefusesToCopyWhatIsNoImage) {
  constexpr int kMost = std::numeric_limits<int>::max();
  for (const auto& [width, height] : {std::pair{2001, -1}, std::pair{-1, 2001}, std::pair{kMost, 0}}) {
    for (const int bit_count : {8, 24}) {
      Image image(4, 4, bit_count);
      image.header().biWidth = width;
      image.header().biHeight = height;
      Image out;
      EXPECT_EQ(GetParam()(image.handle(), out.ptr()), -1) << width << " x " << height << ", " << bit_count;
      ASSERT_TRUE(out.empty());
      EXPECT_EQ(FreeCardImg(reinterpret_cast<void**>(&out.ptr()->pInfo)), 1);
    }
  }
}

TEST_P(EnlargingEntry, KeepsColour) {
  Image image(4, 4, 24);
  for (int y = 0; y < 4; ++y) {
    for (int b = 0; b < 12; ++b) image.at(y, b) = static_cast<unsigned char>(b % 3 * 100 + 5);
  }
  Image out;
  ASSERT_EQ(enlarge(image, out), 1);
  expect_size(out, 8, 8, 24);
  for (int y = 0; y < 8; ++y) {
    for (int b = 0; b < 24; ++b) ASSERT_EQ(out.at(y, b), b % 3 * 100 + 5);
  }
}

TEST_P(EnlargingEntry, OverwritesTheRecordAndOnlyReadsPixels) {
  Image image(8, 8, 8);
  Random random(2);
  randomise(image, random);
  const Image before(image);
  BITMAPINFOHEADER stale{};
  BITMAPPTR out{&stale, nullptr, nullptr};
  ASSERT_EQ(GetParam()(image.handle(), &out), 1);
  EXPECT_NE(out.pInfo, &stale);
  EXPECT_EQ(image.block(), before.block());
  EXPECT_EQ(FreeCardImg(reinterpret_cast<void**>(&out.pInfo)), 1);
}

TEST_P(EnlargingEntry, RewritesTheColoursOfTheSource) {
  Image image(8, 8, 8, 50);
  image.header().biClrUsed = 0;
  Image out;
  EXPECT_EQ(enlarge(image, out), 1);
  EXPECT_EQ(image.header().biClrUsed, 256u);
}

TEST(BiLinear, InterpolatesByMeans) {
  Image image(4, 4, 8, 0);
  for (int y = 0; y < 4; ++y) image.at(y, 2) = image.at(y, 3) = 255;
  Image out;
  ASSERT_EQ(BiLinear(image.handle(), out.ptr()), 1);
  const int row[] = {0, 0, 0, 128, 255, 255, 255, 255};
  for (int r = 0; r < 8; ++r) {
    for (int q = 0; q < 8; ++q) EXPECT_EQ(out.at(r, q), row[q]);
  }
}

TEST(BiCubic, RepeatsBorderRowsWhereBiLinearInterpolates) {
  Image image(4, 4, 8, 0);
  for (int y = 0; y < 4; ++y) image.at(y, 2) = image.at(y, 3) = 255;
  Image out;
  ASSERT_EQ(BiCubic(image.handle(), out.ptr()), 1);
  for (int r = 0; r < 8; ++r) EXPECT_EQ(out.at(r, 3), r == 2 || r == 3 ? 128 : 0) << r;
}

TEST(BiLinear, GivesTheGrayVersionOfLargeColourImages) {
  Image image(2400, 1600, 24, 255);
  image.at(7, 0) = image.at(7, 1) = 0;
  image.at(7, 3) = image.at(7, 5) = 0;
  image.at(7, 7) = image.at(7, 8) = 0;
  Image out;
  ASSERT_EQ(BiLinear(image.handle(), out.ptr()), 0);
  expect_size(out, 2400, 1600, 8);
  EXPECT_EQ(out.at(7, 0), 79) << "red";
  EXPECT_EQ(out.at(7, 1), 143) << "green";
  EXPECT_EQ(out.at(7, 2), 31) << "blue";
  EXPECT_EQ(out.at(7, 3), 255);
  EXPECT_EQ(out.header().biXPelsPerMeter, 11811);
}

TEST(BiCubic, CopiesLargeColourImages) {
  Image image(2001, 3, 24);
  Random random(3);
  randomise(image, random);
  Image out;
  ASSERT_EQ(BiCubic(image.handle(), out.ptr()), 0);
  expect_size(out, 2001, 3, 24);
  EXPECT_TRUE(same_pixels(image, out));
  EXPECT_EQ(out.header().biXPelsPerMeter, 11811);
}

}  // namespace
