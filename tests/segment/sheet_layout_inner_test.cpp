#include <gtest/gtest.h>

#include "segment/sheet_layout.h"
#include "segment/sheets.h"

namespace {

using namespace vantrel::segment;
using testing_sheets::Sheet;

TEST(SheetLayout, ResolutionIsTheCoarserOfTwo) {
  EXPECT_EQ(dots_per_inch(11811, 23622), 11811.0f / 39.37f);
  EXPECT_EQ(dots_per_inch(23622, 11811), 11811.0f / 39.37f);
  EXPECT_LT(dots_per_inch(9842, 11811), kLeastDotsPerInch);
  EXPECT_GE(dots_per_inch(9843, 11811), kLeastDotsPerInch);
  EXPECT_LT(dots_per_inch(-5, 11811), 0.0f);
}

TEST(SheetLayout, FactorBringsAScanToAbout100DotsPerInch) {
  EXPECT_EQ(reduction_factor(250.0f), 3);
  EXPECT_EQ(reduction_factor(300.0f), 3);
  EXPECT_EQ(reduction_factor(349.9f), 3);
  EXPECT_EQ(reduction_factor(350.0f), 4);
  EXPECT_EQ(reduction_factor(600.0f), 6);
}

TEST(SheetLayout, CardSizeIsTruncatedToPixels) {
  const CardSize at_300 = card_size(300.0f, 3);
  EXPECT_EQ(at_300.height, 220);
  EXPECT_EQ(at_300.length, 355);
  EXPECT_EQ(at_300.bridged_gap, 18);
  EXPECT_EQ(at_300.least_gap, 29);  // four fifths of 37
  EXPECT_EQ(at_300.dense_count, 14);

  const CardSize at_250 = card_size(250.0f, 3);
  EXPECT_EQ(at_250.height, 183);
  EXPECT_EQ(at_250.length, 295);
  EXPECT_EQ(at_250.bridged_gap, 15);
  EXPECT_EQ(at_250.least_gap, 24);  // four fifths of 31
  EXPECT_EQ(at_250.dense_count, 12);
}

constexpr CardSize kSize{.height = 24, .length = 20, .bridged_gap = 3, .least_gap = 4, .dense_count = 2};

TEST(SheetLayout, OneColumnUnlessWiderThanTwoCards) {
  EXPECT_FALSE(has_two_columns(Sheet(30, 40).view(), kSize));
  EXPECT_TRUE(has_two_columns(Sheet(30, 41).view(), kSize));
}

TEST(SheetLayout, AnEighthOfACardsHeightMayBeMarkedInTheMiddle) {
  Sheet sheet(30, 50);
  for (int r = 0; r < 3; ++r) sheet.blacken(r * 7, 20, 30);
  EXPECT_TRUE(has_two_columns(sheet.view(), kSize));
  sheet.blacken(29, 25, 26);
  EXPECT_FALSE(has_two_columns(sheet.view(), kSize));
}

TEST(SheetLayout, TheMiddleIsTenColumnsWide) {
  const auto marked_at = [](int column) {
    Sheet sheet(30, 51);
    for (int r = 0; r < 30; ++r) sheet.blacken(r, column, column + 1);
    return !has_two_columns(sheet.view(), kSize);
  };
  EXPECT_FALSE(marked_at(19));
  EXPECT_TRUE(marked_at(20));
  EXPECT_TRUE(marked_at(29));
  EXPECT_FALSE(marked_at(30));
}

}  // namespace
