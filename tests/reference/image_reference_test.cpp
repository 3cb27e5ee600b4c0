/** Gray conversion, plane splitting and cropping against the plain ones. */
#include <gtest/gtest.h>

#include "image/exports.h"
#include "reference/image_convert.h"
#include "support/random.h"
#include "support/scans.h"
#include "support/tally.h"

namespace {

using support::Image;
using support::Picture;
using support::Random;
namespace tally = support::tally;

Image random_image(Random& random, int bits, int most) {
  Image image(random.pick(0, most), random.pick(0, most), bits, 0, random.pick(0, 20000));
  support::randomise(image, random);
  return image;
}

TEST(ImageReference, GrayConversion) {
  Random random(11);
  for (int round = 0; round < 1000; ++round) {
    Image colour = random_image(random, 24, 30);
    Image gray;
    ASSERT_TRUE(Color2Gray(colour.ptr(), gray.ptr()));
    const Picture expected = reference::image::gray_of(Picture(colour));
    ASSERT_EQ(support::difference(expected, Picture(gray)), "") << round;
  }
}

TEST(ImageReference, PlaneSplitting) {
  Random random(12);
  for (int round = 0; round < 500; ++round) {
    Image colour = random_image(random, 24, 30);
    const Picture source(colour);
    std::array<Picture, 3> planes;
    for (Picture& plane : planes) plane = Picture(source.cols, source.rows, 8, 0);
    RawData2RGB(colour.ptr()->pBits, planes[0].bytes.data(), planes[1].bytes.data(), planes[2].bytes.data(),
                source.rows, source.cols, planes[0].stride(), source.stride());
    for (int channel = 0; channel < 3; ++channel) {
      const Picture expected = reference::image::plane_of(source, channel);
      ASSERT_EQ(support::difference(expected, planes.at(static_cast<std::size_t>(channel))), "");
    }
  }
}

MYRECT random_rect(Random& random, const Image& image) {
  const auto number = [&random](int low, int high) { return static_cast<short>(random.pick(low, high)); };
  const int slack = random.pick(0, 99) < 60 ? 0 : 12;
  MYRECT rect{number(-slack, image.width() - 1 + slack), number(-slack, image.height() - 1 + slack), 0,
              number(-slack, image.height() - 1 + slack), number(-9, 9)};
  rect.right = number(rect.left - (slack > 0 ? 3 : 0), std::max<int>(rect.left, image.width() - 1 + slack));
  if (rect.top < rect.bottom) std::swap(rect.top, rect.bottom);
  return rect;
}

/** Whole rectangles agree to the bit, padding included; of others every pixel agrees. */
void expect_same_crop(const Picture& expected, const Picture& actual, bool whole) {
  if (expected.bits != 1 || whole) {
    ASSERT_EQ(support::difference(expected, actual), "");
    return;
  }
  ASSERT_EQ(expected.rows, actual.rows);
  ASSERT_EQ(expected.cols, actual.cols);
  for (int row = 0; row < expected.rows; ++row) {
    for (int col = 0; col < expected.cols; ++col) {
      ASSERT_EQ(reference::image::bit_at(expected, row, col), reference::image::bit_at(actual, row, col))
          << "row " << row << " column " << col;
    }
  }
}

TEST(ImageReference, Crop) {
  Random random(13);
  tally::reset();
  for (int round = 0; round < 4000; ++round) {
    constexpr std::array<int, 5> kDepths{1, 1, 8, 24, 4};
    const int bits = kDepths.at(random.bits() % kDepths.size());
    Image image(random.pick(1, 60), random.pick(1, 25), bits, 0, random.pick(0, 20000));
    support::randomise(image, random);
    MYRECT rect = random_rect(random, image);
    if (random.pick(0, 9) == 0) std::swap(rect.top, rect.bottom);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << image.width() << " x " << image.height() << " x "
                                    << bits << ", rectangle " << rect.left << " " << rect.top << " " << rect.right
                                    << " " << rect.bottom);
    const Picture source(image);
    const reference::image::Crop expected = reference::image::crop(source, rect);
    Image result;
    ASSERT_EQ(CutRectImage(image.ptr(), result.ptr(), rect), expected.code);
    ASSERT_EQ(result.empty(), !expected.picture.has_value());
    if (result.empty()) continue;
    expect_same_crop(*expected.picture, Picture(result), reference::image::inside(source, rect));
    if (HasFatalFailure()) return;
  }
  tally::expect("crop: negative size", 20);
  tally::expect("crop: other depth", 100);
  tally::expect("crop: bits inside", 400);
  tally::expect("crop: bits partly outside", 100);
}

}  // namespace
