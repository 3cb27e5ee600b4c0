// Views over the pixels of an image.
#include <gtest/gtest.h>

#include <array>

#include "image/view.h"

namespace {

using vantrel::image::ConstPixels;

TEST(View, UpsideDownBeginsWithTheLastRow) {
  const std::array<unsigned char, 12> bytes = {1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0};
  const ConstPixels view = ConstPixels(bytes.data(), 3, 3, 4).upside_down();
  EXPECT_EQ(view.row(0)[0], 7);
  EXPECT_EQ(view.row(2)[2], 3);
  EXPECT_EQ(view.upside_down().data, bytes.data());
}

TEST(View, UpsideDownOfNothingStaysWhereItIs) {
  const std::array<unsigned char, 4> bytes{};
  for (const ConstPixels& nothing : {ConstPixels(bytes.data(), 0, 3, 4), ConstPixels(bytes.data(), 3, 0, 4)}) {
    EXPECT_EQ(nothing.upside_down().data, bytes.data());
    EXPECT_EQ(nothing.upside_down().stride, 4);
    EXPECT_TRUE(nothing.upside_down().empty());
  }
}

}  // namespace
