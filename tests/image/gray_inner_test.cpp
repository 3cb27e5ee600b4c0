#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "image/gray.h"
#include "support/forms.h"
#include "support/random.h"

namespace {

using Bytes = std::vector<unsigned char>;

TEST(GrayRow, IsTheSameInEveryFormForEveryColour) {
  // A row of all blues for each green and red.
  Bytes row(3 * 256), wanted(256), level(256);
  for (int b = 0; b < 256; ++b) row[static_cast<std::size_t>(3 * b)] = static_cast<unsigned char>(b);
  for (int green = 0; green < 256; ++green) {
    for (int red = 0; red < 256; ++red) {
      for (std::size_t i = 0; i < 256; ++i) {
        row[3 * i + 1] = static_cast<unsigned char>(green);
        row[3 * i + 2] = static_cast<unsigned char>(red);
        wanted[i] = static_cast<unsigned char>((2 * static_cast<int>(i) + 9 * green + 5 * red) / 16);
      }
      support::for_each_form([&](const auto& form) {
        form.image.gray_row(row.data(), level.data(), 256);
        ASSERT_EQ(level, wanted) << green << " " << red;
      });
    }
  }
}

TEST(GrayRow, WritesNothingBehindRowsOfAnyLength) {
  support::Random random(7);
  Bytes row(3 * 200);
  for (auto& byte : row) byte = static_cast<unsigned char>(random.pick(0, 255));
  for (int count = 0; count < 200; ++count) {
    // No byte more than the row has: a sanitizer sees what is read behind it.
    const Bytes exact(row.begin(), row.begin() + 3 * count);
    Bytes wanted(201, 77);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
      wanted[i] = vantrel::image::gray_level(row[3 * i], row[3 * i + 1], row[3 * i + 2]);
    }
    support::for_each_form([&](const auto& form) {
      Bytes level(201, 77);
      form.image.gray_row(exact.data(), level.data(), count);
      ASSERT_EQ(level, wanted) << count;
    });
  }
}

}  // namespace
