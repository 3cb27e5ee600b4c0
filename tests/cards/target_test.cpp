// Where pictures go: into the caller's memory, or into a block of the library's.
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "cards/pictures.h"

namespace {

using pictures::Memory;
using pictures::Picture;
using pictures::Rows;

/** 4 x 3 pixels, 10 in the first column and row, 1 more a column and 10 more a row. */
Memory numbers(Rows rows = Rows::kFromTop) {
  Memory memory(4, 3, VANTREL_FORMAT_GRAY, rows, 2);
  return memory.draw([](int x, int y) {
    const int level = 10 + x + 10 * y;
    return pictures::Colour{level, level, level};
  });
}

constexpr vantrel_rect kInner = {1, 1, 4, 3};
const std::vector<int> kInnerLevels = {21, 22, 23, 31, 32, 33};

TEST(CardsTarget, IsABlockOfTheLibraryWithoutMemoryOfTheCaller) {
  const Memory memory = numbers();
  const vantrel_image image = memory.image();
  vantrel_picture picture = {};
  ASSERT_EQ(vantrel_crop(&image, &kInner, &picture), VANTREL_OK);
  EXPECT_NE(picture.data, nullptr);
  EXPECT_EQ(picture.data, picture.block);
  EXPECT_EQ(picture.width, 3);
  EXPECT_EQ(picture.height, 2);
  EXPECT_EQ(picture.stride, 3);
  EXPECT_EQ(picture.format, VANTREL_FORMAT_GRAY);
  vantrel_picture_release(&picture);
  EXPECT_EQ(picture.data, nullptr);
  EXPECT_EQ(picture.block, nullptr);
  EXPECT_EQ(picture.width, 0);
  EXPECT_EQ(static_cast<int>(picture.format), 0);
}

TEST(CardsTarget, MayBeReleasedWithoutABlock) {
  vantrel_picture_release(nullptr);
  Memory memory(4, 3, VANTREL_FORMAT_GRAY);
  vantrel_picture picture = memory.picture();
  vantrel_picture_release(&picture);
  EXPECT_EQ(picture.data, memory.row(0));
  EXPECT_EQ(picture.width, 4);
}

TEST(CardsTarget, TakesRowsInAnyOrderFromRowsInAnyOrder) {
  for (const Rows from : {Rows::kFromTop, Rows::kFromBottom}) {
    for (const Rows to : {Rows::kFromTop, Rows::kFromBottom}) {
      const Memory memory = numbers(from);
      const vantrel_image image = memory.image();
      Memory own(3, 2, VANTREL_FORMAT_GRAY, to, 5);
      Picture picture(own.picture());
      ASSERT_EQ(vantrel_crop(&image, &kInner, &picture), VANTREL_OK);
      EXPECT_EQ(picture.block, nullptr);
      EXPECT_EQ(picture.data, own.row(0));
      EXPECT_EQ(picture.bytes(), kInnerLevels);
      const auto pixels = std::count_if(own.bytes().begin(), own.bytes().end(),
                                        [](unsigned char byte) { return byte != Memory::kGuard; });
      EXPECT_EQ(pixels, 6);
    }
  }
}

TEST(CardsTarget, MayAskForTheNaturalShapeByName) {
  const Memory memory = numbers();
  const vantrel_image image = memory.image();
  for (const int width : {0, 3}) {
    for (const int height : {0, 2}) {
      for (const int format : {0, 1}) {
        Picture picture;
        picture.width = width;
        picture.height = height;
        picture.format = pictures::number<vantrel_format>(format);
        picture.stride = -77;  // plays no part
        ASSERT_EQ(vantrel_crop(&image, &kInner, &picture), VANTREL_OK);
        EXPECT_EQ(picture.bytes(), kInnerLevels);
      }
    }
  }
}

/** What a request for a block, or a target of the caller's, comes to; nothing is written when it is refused. */
vantrel_status crop_into(const vantrel_picture& target) {
  const Memory memory = numbers();
  const vantrel_image image = memory.image();
  vantrel_picture picture = target;
  const vantrel_status status = vantrel_crop(&image, &kInner, &picture);
  EXPECT_NE(status, VANTREL_OK);
  EXPECT_EQ(picture.data, target.data);
  EXPECT_EQ(picture.block, target.block);
  EXPECT_EQ(picture.width, target.width);
  EXPECT_EQ(picture.height, target.height);
  return status;
}

TEST(CardsTarget, IsRefusedInAnotherShape) {
  EXPECT_EQ(crop_into({nullptr, 4, 0, 0, VANTREL_FORMAT_GRAY, nullptr}), VANTREL_ERROR_TARGET);
  EXPECT_EQ(crop_into({nullptr, 0, 3, 0, VANTREL_FORMAT_GRAY, nullptr}), VANTREL_ERROR_TARGET);
  EXPECT_EQ(crop_into({nullptr, 0, 0, 0, VANTREL_FORMAT_BGR, nullptr}), VANTREL_ERROR_TARGET);
  EXPECT_EQ(crop_into({nullptr, -3, 0, 0, VANTREL_FORMAT_GRAY, nullptr}), VANTREL_ERROR_SIZE);
  EXPECT_EQ(crop_into({nullptr, 0, 0, 0, pictures::number<vantrel_format>(7), nullptr}), VANTREL_ERROR_FORMAT);
}

TEST(CardsTarget, OfEveryOperationHasItsShape) {
  const Memory memory(6, 4, VANTREL_FORMAT_BGR);
  const vantrel_image image = memory.image();
  // Asks for a width, a height and a format other than the natural ones; 0 asks for that.
  const auto expect_refusals = [](const auto& make, int width, int height, vantrel_format format) {
    for (const auto& [w, h, f] : {std::tuple{width, 0, 0}, {0, height, 0}, {0, 0, static_cast<int>(format)}}) {
      vantrel_picture target{nullptr, w, h, 0, pictures::number<vantrel_format>(f), nullptr};
      EXPECT_EQ(make(&target), VANTREL_ERROR_TARGET) << w << " x " << h << ", " << f;
      EXPECT_EQ(target.data, nullptr);
    }
  };
  expect_refusals([&](auto* target) { return vantrel_reduce(&image, 2, target); }, 4, 3, VANTREL_FORMAT_RGB);
  expect_refusals([&](auto* target) { return vantrel_enlarge(&image, VANTREL_ENLARGE_CUBIC, target); }, 11, 9,
                  VANTREL_FORMAT_GRAY);
  expect_refusals([&](auto* target) { return vantrel_convert(&image, target); }, 7, 3, VANTREL_FORMAT_BILEVEL);
}

TEST(CardsTarget, OfTheCallerIsCheckedLikeAnImage) {
  Memory own(3, 2, VANTREL_FORMAT_GRAY, Rows::kFromTop, 30);
  const auto with = [&](auto change) {
    vantrel_picture picture = own.picture();
    change(picture);
    return crop_into(picture);
  };
  EXPECT_EQ(with([](auto& picture) { picture.stride = 2; }), VANTREL_ERROR_STRIDE);
  EXPECT_EQ(with([](auto& picture) { picture.width = 0; }), VANTREL_ERROR_SIZE);
  EXPECT_EQ(with([](auto& picture) { picture.height = 0; }), VANTREL_ERROR_SIZE);
  EXPECT_EQ(with([](auto& picture) { picture.format = pictures::number<vantrel_format>(0); }), VANTREL_ERROR_FORMAT);
  EXPECT_EQ(with([](auto& picture) { picture.width = 4; }), VANTREL_ERROR_TARGET);
  EXPECT_EQ(with([](auto& picture) { picture.height = 1; }), VANTREL_ERROR_TARGET);
  EXPECT_EQ(with([](auto& picture) { picture.format = VANTREL_FORMAT_RGBA; }), VANTREL_ERROR_TARGET);
  EXPECT_TRUE(
      std::all_of(own.bytes().begin(), own.bytes().end(), [](unsigned char byte) { return byte == Memory::kGuard; }));
}

TEST(CardsTarget, IsRefusedWhileItHoldsABlock) {
  const Memory memory = numbers();
  const vantrel_image image = memory.image();
  Picture picture;
  ASSERT_EQ(vantrel_crop(&image, &kInner, &picture), VANTREL_OK);
  EXPECT_EQ(vantrel_crop(&image, &kInner, &picture), VANTREL_ERROR_TARGET);
  EXPECT_EQ(picture.bytes(), kInnerLevels);
}

TEST(CardsTarget, IsRefusedWhenItIsMissing) {
  const Memory memory = numbers();
  const vantrel_image image = memory.image();
  const vantrel_quad corners = pictures::upright(0, 0, 2, 2);
  EXPECT_EQ(vantrel_crop(&image, &kInner, nullptr), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_cut(&image, &corners, 0, nullptr), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_enlarge(&image, VANTREL_ENLARGE_LINEAR, nullptr), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_reduce(&image, 1, nullptr), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_convert(&image, nullptr), VANTREL_ERROR_NULL);
}

TEST(CardsTarget, IsRefusedWhereNoBlockIsSoLarge) {
  const Memory memory = numbers();
  const vantrel_image image = memory.image();
  const vantrel_quad corners = pictures::upright(0, 0, 2, 2);
  Picture picture;
  picture.width = picture.height = 60000;
  EXPECT_EQ(vantrel_cut(&image, &corners, 0, &picture), VANTREL_ERROR_SIZE);
  EXPECT_EQ(picture.data, nullptr);
}

}  // namespace
