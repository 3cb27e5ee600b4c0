// Which images are taken, and that every function refuses the others in the same way.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <limits>

#include "cards/pictures.h"
#include "support/numbers.h"

namespace {

using pictures::Memory;
using support::kInfinite;
using support::kNoNumber;

vantrel_status check(int width, int height, std::ptrdiff_t stride, int format, double dpi = 0) {
  static const unsigned char byte = 0;
  const vantrel_image image = {&byte, width, height, stride, pictures::number<vantrel_format>(format), dpi};
  return vantrel_image_check(&image);
}

TEST(CardsVersion, IsThatOfTheHeader) {
  EXPECT_STREQ(vantrel_version(), "0.1.0");
  EXPECT_EQ(vantrel_version_number(), 100);
  EXPECT_EQ(VANTREL_VERSION_NUMBER, 100);
}

TEST(CardsTexts, AreThereForEveryValueAndDiffer) {
  std::vector<std::string> texts;
  for (int status = -1; status <= 10; ++status) {
    texts.emplace_back(vantrel_status_text(pictures::number<vantrel_status>(status)));
  }
  for (int reason = -1; reason <= 12; ++reason) {
    texts.emplace_back(vantrel_reason_text(pictures::number<vantrel_reason>(reason)));
  }
  std::sort(texts.begin(), texts.end());
  EXPECT_EQ(std::adjacent_find(texts.begin(), texts.end()), texts.end());
  EXPECT_STREQ(vantrel_status_text(pictures::number<vantrel_status>(11)), "an unknown status");
  EXPECT_STREQ(vantrel_reason_text(pictures::number<vantrel_reason>(13)), "an unknown reason");
}

TEST(CardsTexts, NameTheMethods) {
  EXPECT_STREQ(vantrel_method_name(VANTREL_METHOD_DARK_GLASS), "dark-glass");
  EXPECT_STREQ(vantrel_method_name(VANTREL_METHOD_FLAT_LIGHT), "flat-light");
  EXPECT_STREQ(vantrel_method_name(VANTREL_METHOD_SHEET), "sheet");
  EXPECT_STREQ(vantrel_method_name(VANTREL_METHOD_ANYWHERE), "anywhere");
  EXPECT_EQ(vantrel_method_name(pictures::number<vantrel_method>(0)), nullptr);
  EXPECT_EQ(vantrel_method_name(pictures::number<vantrel_method>(5)), nullptr);
}

TEST(CardsLimits, AreToldByName) {
  EXPECT_EQ(vantrel_limit_value(VANTREL_LIMIT_FINDER_SIDE), 32767);
  EXPECT_EQ(vantrel_limit_value(VANTREL_LIMIT_COLOUR_SIDE), 128);
  EXPECT_EQ(vantrel_limit_value(VANTREL_LIMIT_SHEET_DPI), 250);
  EXPECT_EQ(vantrel_limit_value(VANTREL_LIMIT_SHEET_CARDS), 10);
  EXPECT_EQ(vantrel_limit_value(VANTREL_LIMIT_ENLARGED_SIDE), 2000);
  EXPECT_EQ(vantrel_limit_value(VANTREL_LIMIT_CARDS), 64);
  EXPECT_EQ(vantrel_limit_value(pictures::number<vantrel_limit>(0)), 0);
  EXPECT_EQ(vantrel_limit_value(pictures::number<vantrel_limit>(7)), 0);
}

TEST(CardsImage, HasSoManyBitsAPixel) {
  const int bits[] = {0, 8, 24, 24, 32, 32, 1, 0};
  for (int format = 0; format < 8; ++format) {
    EXPECT_EQ(vantrel_format_bits(pictures::number<vantrel_format>(format)), bits[format]) << format;
  }
}

TEST(CardsImage, IsTakenWithRowsInEitherOrder) {
  EXPECT_EQ(check(3, 2, 3, VANTREL_FORMAT_GRAY), VANTREL_OK);
  EXPECT_EQ(check(3, 2, -3, VANTREL_FORMAT_GRAY), VANTREL_OK);
  EXPECT_EQ(check(3, 2, 9, VANTREL_FORMAT_BGR), VANTREL_OK);
  EXPECT_EQ(check(3, 2, -9, VANTREL_FORMAT_RGB), VANTREL_OK);
  EXPECT_EQ(check(3, 2, 12, VANTREL_FORMAT_BGRA), VANTREL_OK);
  EXPECT_EQ(check(3, 2, 1000, VANTREL_FORMAT_RGBA), VANTREL_OK);
  EXPECT_EQ(check(8, 2, 1, VANTREL_FORMAT_BILEVEL), VANTREL_OK);
  EXPECT_EQ(check(9, 2, -2, VANTREL_FORMAT_BILEVEL), VANTREL_OK);
}

TEST(CardsImage, IsRefusedWithRowsThatOverlap) {
  EXPECT_EQ(check(3, 2, 2, VANTREL_FORMAT_GRAY), VANTREL_ERROR_STRIDE);
  EXPECT_EQ(check(3, 2, -2, VANTREL_FORMAT_GRAY), VANTREL_ERROR_STRIDE);
  EXPECT_EQ(check(3, 2, 0, VANTREL_FORMAT_GRAY), VANTREL_ERROR_STRIDE);
  EXPECT_EQ(check(3, 2, 8, VANTREL_FORMAT_RGB), VANTREL_ERROR_STRIDE);
  EXPECT_EQ(check(3, 2, 11, VANTREL_FORMAT_RGBA), VANTREL_ERROR_STRIDE);
  EXPECT_EQ(check(9, 2, 1, VANTREL_FORMAT_BILEVEL), VANTREL_ERROR_STRIDE);
}

TEST(CardsImage, IsRefusedWithoutPixels) {
  EXPECT_EQ(check(0, 2, 3, VANTREL_FORMAT_GRAY), VANTREL_ERROR_SIZE);
  EXPECT_EQ(check(3, 0, 3, VANTREL_FORMAT_GRAY), VANTREL_ERROR_SIZE);
  EXPECT_EQ(check(-3, 2, 3, VANTREL_FORMAT_GRAY), VANTREL_ERROR_SIZE);
  EXPECT_EQ(check(3, std::numeric_limits<int>::min(), 3, VANTREL_FORMAT_GRAY), VANTREL_ERROR_SIZE);
}

TEST(CardsImage, IsRefusedWithTooManyBytes) {
  constexpr int kMost = std::numeric_limits<std::int32_t>::max();
  EXPECT_EQ(check(kMost, 1, kMost, VANTREL_FORMAT_GRAY), VANTREL_OK);
  EXPECT_EQ(check(kMost, 1, kMost, VANTREL_FORMAT_BGRA), VANTREL_ERROR_SIZE);
  EXPECT_EQ(check(kMost, kMost, kMost, VANTREL_FORMAT_BGRA), VANTREL_ERROR_SIZE);
  EXPECT_EQ(check(kMost, 8, 1 << 28, VANTREL_FORMAT_BILEVEL), VANTREL_ERROR_SIZE);
  EXPECT_EQ(check(1, 2, 1 << 30, VANTREL_FORMAT_GRAY), VANTREL_ERROR_SIZE);
  EXPECT_EQ(check(1, 2, (1 << 30) - 1, VANTREL_FORMAT_GRAY), VANTREL_OK);
  EXPECT_EQ(check(1, 2, 1 - (1 << 30), VANTREL_FORMAT_GRAY), VANTREL_OK);
  EXPECT_EQ(check(1, 2, -(1 << 30), VANTREL_FORMAT_GRAY), VANTREL_ERROR_SIZE);
  EXPECT_EQ(check(1, 2, std::numeric_limits<std::ptrdiff_t>::min(), VANTREL_FORMAT_GRAY), VANTREL_ERROR_SIZE);
  EXPECT_EQ(check(1, 2, std::numeric_limits<std::ptrdiff_t>::max(), VANTREL_FORMAT_GRAY), VANTREL_ERROR_SIZE);
}

TEST(CardsImage, IsRefusedInAnotherFormat) {
  for (const int format : {0, 7, -1, 1000}) EXPECT_EQ(check(3, 2, 100, format), VANTREL_ERROR_FORMAT) << format;
}

TEST(CardsImage, IsRefusedWithAnImpossibleResolution) {
  EXPECT_EQ(check(3, 2, 3, VANTREL_FORMAT_GRAY, 299.9994), VANTREL_OK);
  EXPECT_EQ(check(3, 2, 3, VANTREL_FORMAT_GRAY, std::numeric_limits<double>::max()), VANTREL_OK);
  for (const double dpi : {-1.0, kInfinite, -kInfinite, kNoNumber}) {
    EXPECT_EQ(check(3, 2, 3, VANTREL_FORMAT_GRAY, dpi), VANTREL_ERROR_RESOLUTION) << dpi;
  }
}

/** Every function that reads an image, called with good arguments but for the image. */
std::vector<std::function<vantrel_status(const vantrel_image*)>> readers() {
  static const vantrel_quad corners = pictures::upright(0, 0, 2, 2);
  static const vantrel_rect rectangle = {0, 0, 1, 1};
  const auto released = [](auto call) {
    return [call](const vantrel_image* image) {
      pictures::Picture picture;
      const vantrel_status status = call(image, &picture);
      EXPECT_TRUE(status == VANTREL_OK || (picture.data == nullptr && picture.width == 0));
      return status;
    };
  };
  return {vantrel_image_check,
          [](const vantrel_image* image) {
            static char elsewhere = 0;
            auto* cards = reinterpret_cast<vantrel_cards*>(&elsewhere);
            const vantrel_status status = vantrel_find(image, nullptr, &cards);
            EXPECT_EQ(cards == nullptr, status != VANTREL_OK);
            vantrel_cards_release(cards);
            return status;
          },
          released([](auto* image, auto* target) { return vantrel_cut(image, &corners, 0, target); }),
          released([](auto* image, auto* target) { return vantrel_crop(image, &rectangle, target); }),
          released([](auto* image, auto* target) { return vantrel_enlarge(image, VANTREL_ENLARGE_CUBIC, target); }),
          released([](auto* image, auto* target) { return vantrel_reduce(image, 1, target); }),
          released([](auto* image, auto* target) { return vantrel_convert(image, target); })};
}

TEST(CardsImage, IsRefusedByEveryFunctionAlike) {
  Memory memory(3, 2, VANTREL_FORMAT_GRAY);
  const vantrel_image good = memory.image();
  for (const auto& read : readers()) {
    EXPECT_EQ(read(&good), VANTREL_OK);
    EXPECT_EQ(read(nullptr), VANTREL_ERROR_NULL);
    const auto with = [&](auto change) {
      vantrel_image image = good;
      change(image);
      return read(&image);
    };
    EXPECT_EQ(with([](vantrel_image& image) { image.data = nullptr; }), VANTREL_ERROR_NULL);
    EXPECT_EQ(with([](vantrel_image& image) { image.width = 0; }), VANTREL_ERROR_SIZE);
    EXPECT_EQ(with([](vantrel_image& image) { image.stride = 2; }), VANTREL_ERROR_STRIDE);
    EXPECT_EQ(with([](vantrel_image& image) { image.format = pictures::number<vantrel_format>(9); }),
              VANTREL_ERROR_FORMAT);
    EXPECT_EQ(with([](vantrel_image& image) { image.dpi = -1; }), VANTREL_ERROR_RESOLUTION);
  }
}

}  // namespace
