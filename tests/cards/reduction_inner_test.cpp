// By how much a scan is reduced before its borders are looked for.
#include <gtest/gtest.h>

#include "cards/reduction.h"

namespace {

int reduction(int width, int height, double dpi) {
  return vantrel::cards::reduction_for_dark_glass({nullptr, width, height, width, VANTREL_FORMAT_GRAY, dpi});
}

TEST(Reduction, BringsAScanTo140To210DotsPerInch) {
  EXPECT_EQ(reduction(1100, 800, 72), 1);
  EXPECT_EQ(reduction(1100, 800, 200), 1);
  EXPECT_EQ(reduction(1100, 800, 279.9), 1);
  EXPECT_EQ(reduction(1100, 800, 280), 2);
  EXPECT_EQ(reduction(1100, 800, 299.9994), 2);
  EXPECT_EQ(reduction(1100, 800, 420), 2);
  EXPECT_EQ(reduction(1100, 800, 421), 3);
  EXPECT_EQ(reduction(1100, 800, 600), 3);
  EXPECT_EQ(reduction(1100, 800, 1200), 6);
}

TEST(Reduction, LeavesAScanAloneOfWhichNothingWouldBeLeft) {
  EXPECT_EQ(reduction(1100, 8, 2400), 1);
  EXPECT_EQ(reduction(1100, 8, 1e300), 1);
}

TEST(Reduction, GoesByTheLongerSideWhenTheResolutionIsNotKnown) {
  EXPECT_EQ(reduction(1199, 8, 0), 1);
  EXPECT_EQ(reduction(1200, 8, 0), 2);
  EXPECT_EQ(reduction(8, 1601, 0), 3);
}

}  // namespace
