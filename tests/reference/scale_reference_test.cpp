#include <gtest/gtest.h>

#include <vector>

#include "reference/scale_resample.h"
#include "scale/exports.h"
#include "support/image.h"
#include "support/random.h"

namespace {

using support::Image;
using support::Picture;
using support::Random;

/** Noise, a few flat levels with hard edges, or black and white; the padding is always noise. */
Image some_image(Random& random, int depth) {
  Image image(random.pick(1, 24), random.pick(1, 24), depth);
  randomise(image, random);
  const int kind = random.pick(0, 2);
  for (int y = 0; kind > 0 && y < image.height(); ++y) {
    unsigned char level = 128;
    for (int x = 0; x < image.width() * (depth / 8); ++x) {
      if (kind == 2 || random.bits() % 3 == 0) level = random.bits() % 2 == 0 ? 0 : 255;
      image.at(y, x) = level;
    }
  }
  return image;
}

/** A record whose bytes are just `size` zeros followed by a guard. */
struct Stream {
  explicit Stream(std::size_t size) : bytes(size + 16, 0x77) {
    record.pInfo = &header;
    record.pBits = bytes.data();
  }
  std::vector<unsigned char> written() const { return {bytes.begin(), bytes.end() - 16}; }
  bool guard_intact() const { return std::vector<unsigned char>(bytes.end() - 16, bytes.end()) == guard; }

  std::vector<unsigned char> bytes;
  std::vector<unsigned char> guard = std::vector<unsigned char>(16, 0x77);
  BITMAPINFOHEADER header{};
  BITMAPPTR record{};
};

constexpr int kDepths[] = {8, 24, 8, 24, 16, 32};

TEST(ScaleReference, BilinearOfRandomImages) {
  reference::BilinearRules rules;
  Random random(1);
  for (int round = 0; round < 1500; ++round) {
    Image image = some_image(random, kDepths[round % 6]);
    const int factor = round % 3 == 0 ? random.pick(1, 5) : 2;
    const std::vector<unsigned char> expected = reference::bilinear(Picture(image), factor, rules);
    Stream out(expected.size());
    ASSERT_TRUE(BiLinearMethod(image.ptr(), &out.record, static_cast<short>(factor)));
    ASSERT_EQ(out.written(), expected) << "round " << round << ", factor " << factor;
    ASSERT_TRUE(out.guard_intact());
  }
  EXPECT_GT(rules.source_pixel, 10000);
  EXPECT_GT(rules.mean_of_two_rows, 10000);
  EXPECT_GT(rules.mean_of_two_columns, 10000);
  EXPECT_GT(rules.mean_of_four, 10000);
  EXPECT_GT(rules.last_row_repeated, 10000);
  EXPECT_GT(rules.last_column_repeated, 10000);
}

TEST(ScaleReference, BicubicOfRandomImages) {
  reference::BicubicRules rules;
  Random random(2);
  for (int round = 0; round < 1500; ++round) {
    Image image = some_image(random, kDepths[round % 6]);
    const std::vector<unsigned char> expected = reference::bicubic(Picture(image), rules);
    Stream out(expected.size());
    ASSERT_TRUE(BiCubicMethod(image.ptr(), &out.record, static_cast<short>(random.pick(-3, 5))));
    ASSERT_EQ(out.written(), expected) << "round " << round << ", " << image.width() << " x " << image.height();
    ASSERT_TRUE(out.guard_intact());
  }
  EXPECT_GT(rules.rounding_column, 1000);
  EXPECT_GT(rules.border_row, 1000);
  EXPECT_GT(rules.border_column, 1000);
  EXPECT_GT(rules.source_pixel, 1000);
  for (const reference::ClampedRange& range : {rules.new_column, rules.new_row, rules.both}) {
    EXPECT_GT(range.below_0, 1000);
    EXPECT_GT(range.within, 1000);
    EXPECT_GT(range.above_255, 1000);
  }
  EXPECT_GT(rules.row_value_below_0, 1000);
  EXPECT_GT(rules.row_value_above_255, 1000);
}

TEST(ScaleReference, SidesBeyondSixteenBitsKeepTheirLowBits) {
  Random random(3);
  for (const int depth : {8, 24}) {
    for (const int width : {65536 + 1, 65536 + 5, 65536 + 6}) {
      Image image(width, 5, depth);
      randomise(image, random);
      reference::BilinearRules linear;
      reference::BicubicRules cubic;
      const std::vector<unsigned char> means = reference::bilinear(Picture(image), 2, linear);
      const std::vector<unsigned char> kernels = reference::bicubic(Picture(image), cubic);
      Stream one(means.size());
      Stream other(kernels.size());
      EXPECT_TRUE(BiLinearMethod(image.ptr(), &one.record, 2));
      EXPECT_TRUE(BiCubicMethod(image.ptr(), &other.record, 2));
      EXPECT_EQ(one.written(), means) << width;
      EXPECT_EQ(other.written(), kernels) << width;
      EXPECT_TRUE(one.guard_intact());
      EXPECT_TRUE(other.guard_intact());
    }
  }
}

TEST(ScaleReference, Kernel) {
  Random random(4);
  for (int round = 0; round < 20000; ++round) {
    int tap[4];
    for (int& value : tap) value = random.pick(-300, 600);
    ASSERT_EQ(BiCubicDir(tap[0], tap[1], tap[2], tap[3]), reference::cubic_kernel(tap[0], tap[1], tap[2], tap[3]));
  }
}

}  // namespace
