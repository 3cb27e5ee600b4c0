#include <gtest/gtest.h>

#include <vector>

#include "lines/levels.h"

namespace vantrel::lines {
namespace {

TEST(Levels, AnAreaBeyondARowRunsOnIntoTheRowsThatFollow) {
  // Two rows of four pixels, the second dark: columns 4 to 7 of the first row are the second row's.
  const std::vector<unsigned char> bytes = {255, 255, 255, 255, 10, 10, 10, 10};
  const Levels levels = padded_levels({bytes.data(), 2, 4, 4});
  EXPECT_FALSE(mostly_dark(levels, {{0, 1}, {0, 4}}));
  EXPECT_EQ(brightness_of(levels, {{0, 1}, {4, 8}}), Brightness::kDark);
  EXPECT_EQ(brightness_of(levels, {{0, 1}, {0, 8}}), Brightness::kMixed);
}

TEST(Levels, NothingLiesBehindTheLastRow) {
  const std::vector<unsigned char> bytes = {255, 255, 255, 255};
  const Levels levels = padded_levels({bytes.data(), 1, 4, 4});
  EXPECT_EQ(brightness_of(levels, {{0, 3}, {0, 4}}), Brightness::kBright);
  EXPECT_EQ(brightness_of(levels, {{0, 1}, {4, 400}}), Brightness::kMixed);  // empty
}

TEST(Levels, OfAnImageStoredTheOtherWayRoundAreTheSame) {
  const std::vector<unsigned char> up = {1, 2, 255, 255, 255, 255, 9, 9};
  const std::vector<unsigned char> down = {255, 255, 9, 9, 1, 2, 255, 255};
  const Levels upward{{up.data(), 2, 4, 4}, 4};
  const Levels downward{{down.data() + 4, 2, 4, -4}, 4};
  for (int first = 0; first < 6; ++first) {
    for (int end = first; end < 9; ++end) {
      const geometry::Rect area{{0, 2}, {first, end}};
      EXPECT_EQ(brightness_of(upward, area), brightness_of(downward, area)) << first << " " << end;
      EXPECT_EQ(mostly_dark(upward, area), mostly_dark(downward, area)) << first << " " << end;
    }
  }
}

TEST(Levels, AnImageWithoutColumnsIsEmpty) {
  EXPECT_EQ(brightness_of({{nullptr, 5, 0, 0}, 0}, {{0, 5}, {0, 9}}), Brightness::kMixed);
}

}  // namespace
}  // namespace vantrel::lines
