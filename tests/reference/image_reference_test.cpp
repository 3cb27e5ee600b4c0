/** Gray conversion, plane splitting and cropping against the plain ones. */
#include <gtest/gtest.h>

#include "image/convert.h"
#include "reference/drawing.h"
#include "reference/image_convert.h"
#include "reference/image_tally.h"

namespace {

using reference::drawing::pick;
using reference::image::Picture;
using testing_images::Image;
using testing_images::Result;
namespace tally = reference::tally;

Image random_image(std::mt19937& random, int bits, int most) {
  Image image(pick(random, 0, most), pick(random, 0, most), bits, 0, pick(random, 0, 20000));
  testing_images::randomise(image, random);
  return image;
}

TEST(ImageReference, GrayConversion) {
  std::mt19937 random(11);
  for (int round = 0; round < 1000; ++round) {
    Image colour = random_image(random, 24, 30);
    Result gray;
    ASSERT_TRUE(Color2Gray(colour.ptr(), gray.ptr()));
    const Picture expected = reference::image::gray_of(reference::image::picture_of(*colour.ptr()));
    ASSERT_EQ(reference::image::difference(expected, reference::image::picture_of(*gray.ptr())), "") << round;
  }
}

TEST(ImageReference, PlaneSplitting) {
  std::mt19937 random(12);
  for (int round = 0; round < 500; ++round) {
    Image colour = random_image(random, 24, 30);
    const Picture source = reference::image::picture_of(*colour.ptr());
    std::array<Picture, 3> planes;
    for (Picture& plane : planes) plane = reference::image::filled(source.cols, source.rows, 8, 0);
    RawData2RGB(colour.ptr()->pBits, planes[0].bytes.data(), planes[1].bytes.data(), planes[2].bytes.data(),
                source.rows, source.cols, planes[0].stride(), source.stride());
    for (int channel = 0; channel < 3; ++channel) {
      const Picture expected = reference::image::plane_of(source, channel);
      ASSERT_EQ(reference::image::difference(expected, planes.at(static_cast<std::size_t>(channel))), "");
    }
  }
}

MYRECT random_rect(std::mt19937& random, const Image& image) {
  const auto number = [&random](int low, int high) { return static_cast<short>(pick(random, low, high)); };
  const int slack = pick(random, 0, 99) < 60 ? 0 : 12;
  MYRECT rect{number(-slack, image.width() - 1 + slack), number(-slack, image.height() - 1 + slack), 0,
              number(-slack, image.height() - 1 + slack), number(-9, 9)};
  rect.right = number(rect.left - (slack > 0 ? 3 : 0), std::max<int>(rect.left, image.width() - 1 + slack));
  if (rect.top < rect.bottom) std::swap(rect.top, rect.bottom);
  return rect;
}

/** Whole rectangles agree to the bit, padding included; of others every pixel agrees. */
void expect_same_crop(const Picture& expected, const Picture& actual, bool whole) {
  if (expected.bits != 1 || whole) {
    ASSERT_EQ(reference::image::difference(expected, actual), "");
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
  std::mt19937 random(13);
  tally::reset();
  for (int round = 0; round < 4000; ++round) {
    constexpr std::array<int, 5> kDepths{1, 1, 8, 24, 4};
    const int bits = kDepths.at(random() % kDepths.size());
    Image image(pick(random, 1, 60), pick(random, 1, 25), bits, 0, pick(random, 0, 20000));
    testing_images::randomise(image, random);
    MYRECT rect = random_rect(random, image);
    if (pick(random, 0, 9) == 0) std::swap(rect.top, rect.bottom);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << image.width() << " x " << image.height() << " x "
                                    << bits << ", rectangle " << rect.left << " " << rect.top << " " << rect.right
                                    << " " << rect.bottom);
    const Picture source = reference::image::picture_of(*image.ptr());
    const reference::image::Crop expected = reference::image::crop(source, rect);
    Result result;
    ASSERT_EQ(CutRectImage(image.ptr(), result.ptr(), rect), expected.code);
    ASSERT_EQ(result.empty(), !expected.picture.has_value());
    if (result.empty()) continue;
    expect_same_crop(*expected.picture, reference::image::picture_of(*result.ptr()),
                     reference::image::inside(source, rect));
    if (HasFatalFailure()) return;
  }
  tally::expect("crop: negative size", 20);
  tally::expect("crop: other depth", 100);
  tally::expect("crop: bits inside", 400);
  tally::expect("crop: bits partly outside", 100);
}

}  // namespace
