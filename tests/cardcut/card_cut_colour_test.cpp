// The card rectangle by colour distances.
#include <gtest/gtest.h>

#include <utility>

#include "cardcut/exports.h"
#include "support/drawing.h"

namespace {

using support::Bounds;
using support::bounds_of;
using support::Image;

constexpr int kGroundOfColour = 50;
constexpr int kCardOfColour = 200;

Bounds cut_in_colour(Image& image) {
  MYRECT rect{-1, -2, -3, -4, -5};
  EXPECT_TRUE(CutCard24(image.ptr(), rect));
  EXPECT_EQ(rect.reserved, -5);
  return bounds_of(rect);
}

TEST(ColorDiff, IsTheTruncatedDistanceWithTheSignOfTheSum) {
  EXPECT_EQ(ColorDiff(0, 0, 0, 255, 255, 255), 441);
  EXPECT_EQ(ColorDiff(255, 255, 255, 0, 0, 0), -441);
  EXPECT_EQ(ColorDiff(10, 20, 30, 13, 16, 30), -5);
  EXPECT_EQ(ColorDiff(13, 16, 30, 10, 20, 30), 5);
  EXPECT_EQ(ColorDiff(7, 7, 7, 7, 7, 7), 0);
  EXPECT_EQ(ColorDiff(0, 4, 0, 3, 1, 0), 4) << "a sum of zero counts as brighter";
  EXPECT_EQ(ColorDiff(0, 0, 0, 1, 1, 0), 1) << "the root of 2";
}

TEST(CutCard24, RefusesOtherDepths) {
  for (const int depth : {1, 4, 8, 16, 32}) {
    Image image(200, 200, depth, 128);
    MYRECT rect{1, 2, 3, 4, 5};
    EXPECT_FALSE(CutCard24(image.ptr(), rect)) << depth;
    EXPECT_EQ(bounds_of(rect), (Bounds{1, 2, 3, 4})) << depth;
    EXPECT_EQ(rect.reserved, 5);
  }
}

TEST(CutCard24, RefusesImagesBelowAHundredAndTwentyEight) {
  for (const auto& [width, height] : {std::pair{127, 300}, std::pair{300, 127}}) {
    Image image(width, height, 24, 128);
    MYRECT rect{1, 2, 3, 4, 5};
    EXPECT_FALSE(CutCard24(image.ptr(), rect));
    EXPECT_EQ(bounds_of(rect), (Bounds{1, 2, 3, 4}));
  }
}

TEST(CutCard24, CannotSizeTheWorkBlockOfAnImpossibleImage) {
  Image image(8, 8, 24);
  image.header().biWidth = 2147483647;
  image.header().biHeight = 2147483647;
  MYRECT rect{1, 2, 3, 4, 5};
  EXPECT_FALSE(CutCard24(image.ptr(), rect));
  EXPECT_EQ(bounds_of(rect), (Bounds{10, -31, -11, 50})) << "the low sixteen bits of the defaults";
}

TEST(CutCard24, GivesTheDefaultsForAUniformImage) {
  Image image(300, 400, 24, 128);
  EXPECT_EQ(cut_in_colour(image), (Bounds{10, 370, 290, 50}));
  Image limit(300, 250, 24, 128);
  EXPECT_EQ(cut_in_colour(limit), (Bounds{10, 220, 290, 50}));
}

TEST(CutCard24, ClampsTheDefaultBottomOfLowImages) {
  Image image(128, 128, 24, 128);
  EXPECT_EQ(cut_in_colour(image), (Bounds{10, 98, 118, 21}));
  Image limit(300, 249, 24, 128);
  EXPECT_EQ(cut_in_colour(limit), (Bounds{10, 219, 290, 41}));
}

TEST(CutCard24, ClampsALowerBorderAboveAFifthOfTheHeight) {
  Image below(150, 400, 24, kGroundOfColour);
  fill(below, 0, 150, 81, 200, kCardOfColour);
  EXPECT_EQ(cut_in_colour(below)[3], 80);
  Image above(150, 400, 24, kGroundOfColour);
  fill(above, 0, 150, 82, 200, kCardOfColour);
  EXPECT_EQ(cut_in_colour(above)[3], 66);
}

TEST(CutCard24, LooksForTheLowerBorderFromRowFifty) {
  Image image(150, 400, 24, kGroundOfColour);
  fill(image, 0, 150, 48, 200, kCardOfColour);
  EXPECT_EQ(cut_in_colour(image), (Bounds{10, 370, 140, 50}));
  Image inside(150, 400, 24, kGroundOfColour);
  fill(inside, 0, 150, 60, 200, kCardOfColour);
  EXPECT_EQ(cut_in_colour(inside), (Bounds{10, 370, 140, 58}));
}

TEST(CutCard24, TakesTheCentreRowOfALoneLine) {
  Image left(150, 400, 24, kGroundOfColour);
  fill(left, 0, 50, 60, 200, kCardOfColour);
  EXPECT_EQ(cut_in_colour(left)[3], 55);
  Image right(150, 400, 24, kGroundOfColour);
  fill(right, 100, 150, 60, 200, kCardOfColour);
  EXPECT_EQ(cut_in_colour(right)[3], 55);
}

TEST(CutCard24, AveragesTheCentreRowsOfLinesFarApart) {
  Image image(150, 480, 24, kGroundOfColour);
  fill(image, 0, 50, 54, 300, kCardOfColour);
  fill(image, 100, 150, 94, 300, kCardOfColour);
  EXPECT_EQ(cut_in_colour(image)[3], 69);
}

TEST(CutCard24, CountsDistancesFromTwentyOne) {
  // A change of all three channels by 12 is a distance of 20, of 12, 12 and 13 one of 21.
  Image weak(150, 400, 24, kGroundOfColour);
  fill(weak, 0, 150, 60, 200, kGroundOfColour + 12);
  EXPECT_EQ(cut_in_colour(weak)[3], 50);
  Image enough(150, 400, 24, kGroundOfColour);
  fill(enough, 0, 150, 60, 200, kGroundOfColour + 12);
  for (int y = 60; y < 200; ++y) {
    for (int x = 0; x < 150; ++x) enough.at(y, 3 * x + 2) = kGroundOfColour + 13;
  }
  EXPECT_EQ(cut_in_colour(enough)[3], 58);
}

/** The border of the right third changes the blue of even columns and the red of odd ones. */
Image two_coloured_border(int width) {
  Image image(width, 400, 24, kGroundOfColour);
  for (int y = 60; y < 200; ++y) {
    for (int x = 2 * width / 3 - 2; x < width; ++x) image.at(y, 3 * x + (x % 2 == 0 ? 0 : 2)) = kGroundOfColour + 40;
  }
  return image;
}

TEST(CutCard24, ReadsTheRightThirdAlignedOnlyForWidthsDivisibleByThree) {
  // Read a byte or two late, every other pixel is made of two unchanged channels and the neighbour's third.
  Image aligned = two_coloured_border(150);
  EXPECT_EQ(cut_in_colour(aligned)[3], 55);
  Image two_late = two_coloured_border(151);
  EXPECT_EQ(cut_in_colour(two_late)[3], 50);
  Image one_late = two_coloured_border(152);
  EXPECT_EQ(cut_in_colour(one_late)[3], 50);
}

TEST(CutCard24, ReadsTheMiddleThirdANinthOfTheWidthToTheLeft) {
  Image centred(180, 400, 24, kGroundOfColour);
  fill(centred, 60, 121, 60, 200, kCardOfColour);
  EXPECT_EQ(cut_in_colour(centred)[3], 50) << "only 40 of its 60 columns vote";
  Image left(180, 400, 24, kGroundOfColour);
  fill(left, 40, 101, 60, 200, kCardOfColour);
  EXPECT_EQ(cut_in_colour(left)[3], 58);
}

TEST(CutCard24, AcceptsAMiddleLineOverAFifthOfTheWidth) {
  Image image(180, 400, 24, kGroundOfColour);
  fill(image, 35, 97, 60, 200, kCardOfColour);
  EXPECT_EQ(cut_in_colour(image)[3], 58) << "37 columns from 60 on";
  Image short_line(180, 400, 24, kGroundOfColour);
  fill(short_line, 35, 96, 60, 200, kCardOfColour);
  EXPECT_EQ(cut_in_colour(short_line)[3], 50) << "36 columns from 60 on";
}

TEST(CutCard24, CountsTheMiddleCheckFromZero) {
  // 45 columns of the right third are enough votes for a candidate and one column too few for its check. They are not
  // added to the 36 of the middle line.
  Image image(180, 400, 24, kGroundOfColour);
  fill(image, 35, 96, 60, 200, kCardOfColour);
  ladder(image, 130, 175, 0, 90);
  EXPECT_EQ(cut_in_colour(image)[3], 50);
}

/** An upper border that changes the blue of even columns and the red of odd ones, in `columns` columns. */
Image two_coloured_upper_border(int width, int columns) {
  Image image(width, 400, 24, kGroundOfColour);
  for (int y = 340; y < 400; ++y) {
    for (int x = width / 5; x < width / 5 + columns; ++x)
      image.at(y, 3 * x + (x % 2 == 0 ? 0 : 2)) = kGroundOfColour + 40;
  }
  return image;
}

TEST(CutCard24, ReadsTheUpperBandAlignedOnlyForSomeWidths) {
  for (const int width : {160, 161, 162}) {
    Image image = two_coloured_upper_border(width, 90);
    EXPECT_EQ(cut_in_colour(image)[1], 341) << width;
  }
  for (const int width : {163, 164, 165, 166, 167}) {
    Image image = two_coloured_upper_border(width, 90);
    EXPECT_EQ(cut_in_colour(image)[1], 370) << width;
  }
}

TEST(CutCard24, LooksForTheUpperBorderFromEighteenTwentieths) {
  Image image(150, 400, 24, kGroundOfColour);
  fill(image, 0, 150, 362, 400, kCardOfColour);
  EXPECT_EQ(cut_in_colour(image)[1], 360);
  Image above(150, 400, 24, kGroundOfColour);
  fill(above, 0, 150, 363, 400, kCardOfColour);
  EXPECT_EQ(cut_in_colour(above)[1], 370);
}

/** An upper border at row 320 under four bars that change one channel by `contrast`. */
Image printed(int contrast) {
  Image image(240, 400, 24, kGroundOfColour);
  fill(image, 0, 240, 320, 400, kCardOfColour);
  for (int i = 0; i < 4; ++i) {
    for (int y = 340; y < 400; ++y)
      image.at(y, 3 * (40 + 10 * i) + 1) = static_cast<unsigned char>(kCardOfColour - contrast);
  }
  return image;
}

TEST(CutCard24, StopsTheUpperScanAtRowsOfPrint) {
  Image strong = printed(60);
  EXPECT_EQ(cut_in_colour(strong)[1], 370);
  Image faint = printed(59);
  EXPECT_EQ(cut_in_colour(faint)[1], 321);
}

TEST(CutCard24, FindsACardWithItsCorners) {
  Image image(300, 400, 24, kGroundOfColour);
  soft_slab(image, 22, 280, 60, 345, kGroundOfColour, kCardOfColour);
  EXPECT_EQ(cut_in_colour(image), (Bounds{22, 346, 279, 60}));
}

TEST(CutCard24, LooksForCornersTenRowsAboveABottomThatWasNotFound) {
  Image image(300, 400, 24, kGroundOfColour);
  soft_slab(image, 22, 60, 60, 100, kGroundOfColour, kCardOfColour);
  soft_slab(image, 240, 278, 60, 100, kGroundOfColour, kCardOfColour);
  EXPECT_EQ(cut_in_colour(image), (Bounds{23, 370, 276, 50}));
}

TEST(CutCard24, TakesTheOutermostOfSeveralCorners) {
  Image image(400, 400, 24, kGroundOfColour);
  soft_slab(image, 20, 42, 60, 100, kGroundOfColour, kCardOfColour);
  soft_slab(image, 360, 382, 60, 100, kGroundOfColour, kCardOfColour);
  EXPECT_EQ(cut_in_colour(image), (Bounds{21, 370, 380, 50}));
  soft_slab(image, 43, 65, 60, 100, kGroundOfColour, kCardOfColour);
  soft_slab(image, 337, 359, 60, 100, kGroundOfColour, kCardOfColour);
  EXPECT_EQ(cut_in_colour(image), (Bounds{21, 370, 380, 50}));
  fill(image, 20, 42, 60, 100, kGroundOfColour);
  fill(image, 360, 382, 60, 100, kGroundOfColour);
  EXPECT_EQ(cut_in_colour(image), (Bounds{10, 370, 390, 50}));
}

TEST(CutCard24, MeasuresCornersBeyondThirtyTwoBits) {
  // Falling stripes all over the right corner's windows: both gradients are extreme and equal, which is no corner.
  Image image(300, 400, 24, 128);
  for (int y = 40; y < 80; ++y) {
    for (int x = 255; x < 300; ++x) fill(image, x, x + 1, y, y + 1, (x + 400 - y) % 8 < 4 ? 0 : 250);
  }
  EXPECT_EQ(cut_in_colour(image)[2], 290);
}

TEST(CutCard24, LooksForCornersFromRowSeventeenOn) {
  // The left line comes down to row 12 at the left side; the small slab there is seen only from row 17.
  Image image(5400, 800, 24, kGroundOfColour);
  for (int x = 400; x < 1820; ++x) {
    const int border = 14 + (x - 10) * 175 / 2000;
    fill(image, x, x + 1, border, 780, kCardOfColour);
  }
  EXPECT_EQ(cut_in_colour(image)[0], 10);
  soft_slab(image, 20, 42, 17, 60, kGroundOfColour, kCardOfColour);
  EXPECT_EQ(cut_in_colour(image)[0], 21);
}

}  // namespace
