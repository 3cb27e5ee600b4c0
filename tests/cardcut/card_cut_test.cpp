// The card rectangle by gray levels.
#include <gtest/gtest.h>

#include "cardcut/exports.h"
#include "support/drawing.h"

namespace {

using support::Bounds;
using support::bounds_of;
using support::Image;

constexpr int kGround = 50;
constexpr int kCard = 200;

Bounds cut(Image& image) {
  MYRECT rect{-1, -2, -3, -4, -5};
  EXPECT_TRUE(CutCard(image.ptr(), rect));
  EXPECT_EQ(rect.reserved, -5);
  return bounds_of(rect);
}

TEST(CutCard, GivesTheWholeOfAUniformImage) {
  Image gray(200, 100, 8, 128);
  EXPECT_EQ(cut(gray), (Bounds{0, 99, 199, 0}));
  Image colour(200, 100, 24, 128);
  EXPECT_EQ(cut(colour), (Bounds{0, 99, 199, 0}));
}

TEST(CutCard, RefusesOtherDepths) {
  for (const int depth : {1, 4, 16, 32}) {
    Image image(200, 100, depth, 128);
    MYRECT rect{1, 2, 3, 4, 5};
    EXPECT_FALSE(CutCard(image.ptr(), rect)) << depth;
    EXPECT_EQ(bounds_of(rect), (Bounds{1, 2, 3, 4})) << depth;
    EXPECT_EQ(rect.reserved, 5);
  }
}

TEST(CutCard, KeepsTheLowSixteenBitsOfABound) {
  Image wide(40000, 1, 8);
  EXPECT_EQ(cut(wide), (Bounds{0, 0, -25537, 0}));
  Image high(1, 33000, 8);
  EXPECT_EQ(cut(high), (Bounds{0, -32537, 0, 0}));
}

TEST(CutCard, CannotSizeTheWorkBlockOfAnImpossibleImage) {
  Image image(8, 8, 8);
  image.header().biWidth = 2147483647;
  image.header().biHeight = 2147483647;
  MYRECT rect{1, 2, 3, 4, 5};
  EXPECT_FALSE(CutCard(image.ptr(), rect));
  EXPECT_EQ(bounds_of(rect), (Bounds{0, -2, -2, 0})) << "the low sixteen bits of 2147483646";
  EXPECT_EQ(rect.reserved, 5);
}

TEST(CutCard, TakesImagesTooSmallForTheBands) {
  for (int width = 1; width <= 12; ++width) {
    for (int height = 1; height <= 20; ++height) {
      Image image(width, height, 8, 255);
      fill(image, 0, width, height / 2, height, 0);
      const Bounds bounds = cut(image);
      EXPECT_EQ(bounds[0], 0);
      EXPECT_EQ(bounds[2], width - 1);
      EXPECT_GE(bounds[1], bounds[3]);
    }
  }
}

/** A bright card whose lower border rises by one row in 40 columns, with rounded lower corners. */
Image tilted_card() {
  Image image(400, 240, 8, kGround);
  soft_slab(image, 24, 376, 36, 190, kGround, kCard);
  for (int x = 0; x < 400; ++x) {
    const int lift = x / 40;
    for (int y = 239; y >= 0; --y) image.at(y, x) = y >= lift ? image.at(y - lift, x) : kGround;
  }
  return image;
}

TEST(CutCard, FindsATiltedCardWithItsCorners) {
  Image image = tilted_card();
  EXPECT_EQ(cut(image), (Bounds{24, 195, 375, 40}));
}

TEST(CutCard, AveragesTheRowsAtTheQuarterColumns) {
  Image image(120, 150, 8, kGround);
  fill(image, 0, 120, 30, 150, kCard);
  EXPECT_EQ(cut(image), (Bounds{0, 149, 119, 28}));
}

TEST(CutCard, TakesTheCentreRowOfALoneLeftLine) {
  Image image(120, 150, 8, kGround);
  fill(image, 0, 40, 20, 60, kCard);
  EXPECT_EQ(cut(image), (Bounds{0, 149, 119, 16}));
}

TEST(CutCard, TakesTheCentreRowOfALoneRightLine) {
  Image image(120, 150, 8, kGround);
  fill(image, 80, 120, 20, 60, kCard);
  EXPECT_EQ(cut(image), (Bounds{0, 149, 119, 16}));
}

/** A card whose lower border lies `step` rows higher on the right half, with rounded lower corners. */
Image stepped_card(int step) {
  Image image(240, 300, 8, kGround);
  soft_slab(image, 10, 230, 20, 300, kGround, kCard);
  for (int x = 120; x < 240; ++x) {
    for (int y = 299; y >= 0; --y) image.at(y, x) = y >= step ? image.at(y - step, x) : kGround;
  }
  return image;
}

TEST(CutCard, LooksForCornersOnlyAlongLinesThatAgree) {
  Image near = stepped_card(33);
  EXPECT_EQ(cut(near), (Bounds{10, 299, 220, 35}));
  Image far = stepped_card(34);
  EXPECT_EQ(cut(far), (Bounds{0, 299, 239, 31}));
}

TEST(CutCard, TakesTheCentreRowOfALoneMiddleLine) {
  Image image(120, 150, 8, kGround);
  fill(image, 40, 80, 20, 60, kCard);
  EXPECT_EQ(cut(image), (Bounds{0, 149, 119, 18}));
}

TEST(CutCard, WantsMoreChangeAcrossRowsThanColumnsInTheMiddle) {
  Image image(120, 150, 8, kGround);
  fill(image, 40, 80, 20, 60, kCard);
  for (int x = 40; x < 80; x += 4) fill(image, x, x + 2, 0, 60, 255);
  EXPECT_EQ(cut(image), (Bounds{0, 149, 119, 0}));
}

/** 30 of 120 columns of a third full of edges: enough votes for a candidate, one column too few for its check. */
Image ladders(bool right) {
  Image image(120, 150, 8, 128);
  ladder(image, 45, 75, 0, 80);
  if (right) ladder(image, 84, 114, 0, 80);
  return image;
}

TEST(CutCard, CarriesTheRightCheckCountIntoTheMiddleCheck) {
  Image carried = ladders(true);
  EXPECT_EQ(cut(carried), (Bounds{0, 149, 119, 6}));
  Image alone = ladders(false);
  EXPECT_EQ(cut(alone), (Bounds{0, 149, 119, 0}));
}

TEST(CutCard, RefusesAnImageWhoseVotesDoNotFitInABlock) {
  Image wide(25565281, 1, 8);  // 25565282 distances of 21 counters of 4 bytes are 41 bytes more than 2^31 - 1
  MYRECT rect{};
  EXPECT_FALSE(CutCard(wide.ptr(), rect));
}

TEST(CutCard, CountsDifferencesFromElevenLevels) {
  Image weak(120, 150, 8, kGround);
  fill(weak, 0, 120, 30, 60, kGround + 10);
  EXPECT_EQ(cut(weak), (Bounds{0, 149, 119, 0}));
  Image enough(120, 150, 8, kGround);
  fill(enough, 0, 120, 30, 60, kGround + 11);
  EXPECT_EQ(cut(enough), (Bounds{0, 149, 119, 28}));
}

TEST(CutCard, TakesTheLowestLowerAndTheHighestUpperBorder) {
  Image image(120, 200, 8, kGround);
  fill(image, 0, 120, 20, 21, kCard);
  fill(image, 0, 120, 50, 51, kCard);
  fill(image, 0, 120, 153, 154, kCard);
  fill(image, 0, 120, 166, 167, kCard);
  EXPECT_EQ(cut(image), (Bounds{0, 168, 119, 18}));
}

TEST(CutCard, LooksForTheUpperBorderBelowSeventeenTwentieths) {
  Image image(120, 200, 8, kGround);
  fill(image, 0, 120, 174, 200, kCard);
  EXPECT_EQ(cut(image), (Bounds{0, 199, 119, 0}));
  Image inside(120, 200, 8, kGround);
  fill(inside, 0, 120, 172, 200, kCard);
  EXPECT_EQ(cut(inside), (Bounds{0, 170, 119, 0}));
}

/** An upper border at row 158 under a row of `bars` bars that differ by `contrast` from the ground. */
Image printed(int bars, int contrast) {
  Image image(240, 200, 8, kGround);
  fill(image, 0, 240, 158, 200, kCard);
  for (int i = 0; i < bars; ++i) fill(image, 40 + 10 * i, 41 + 10 * i, 166, 200, kCard - contrast);
  return image;
}

TEST(CutCard, StopsTheUpperScanAtRowsOfPrint) {
  Image four = printed(4, 30);
  EXPECT_EQ(cut(four), (Bounds{0, 199, 239, 0}));
  Image three = printed(3, 30);
  EXPECT_EQ(cut(three), (Bounds{0, 159, 239, 0}));
  Image seven = printed(3, 30);
  fill(seven, 29, 30, 166, 200, kCard - 30);
  EXPECT_EQ(cut(seven), (Bounds{0, 159, 239, 0}));
  Image faint = printed(4, 29);
  EXPECT_EQ(cut(faint), (Bounds{0, 159, 239, 0}));
}

TEST(CutCard, LetsTheStoppingRowVote) {
  Image image(240, 200, 8, kGround);
  fill(image, 30, 150, 170, 200, kCard);
  EXPECT_EQ(cut(image), (Bounds{0, 169, 239, 0}));
  for (int i = 0; i < 4; ++i) fill(image, 160 + 10 * i, 161 + 10 * i, 160, 200, kGround + 40);
  EXPECT_EQ(cut(image), (Bounds{0, 170, 239, 0}));
}

/** A card of an image of the given width with corners two columns from its sides. */
Image edge_to_edge(int width) {
  Image image(width, 150, 8, kGround);
  soft_slab(image, 2, width - 2, 20, 60, kGround, kCard);
  return image;
}

TEST(CutCard, NeedsEightyEightColumnsForALeftCorner) {
  Image narrow = edge_to_edge(87);
  EXPECT_EQ(cut(narrow)[0], 0);
  Image enough = edge_to_edge(88);
  EXPECT_EQ(cut(enough)[0], 10);
}

TEST(CutCard, NeedsAHundredAndSixtyOneColumnsForARightCorner) {
  Image narrow(160, 150, 8, kGround);
  soft_slab(narrow, 2, 152, 20, 60, kGround, kCard);
  EXPECT_EQ(cut(narrow)[2], 159);
  Image enough(161, 150, 8, kGround);
  soft_slab(enough, 2, 152, 20, 60, kGround, kCard);
  EXPECT_EQ(cut(enough)[2], 141);
}

TEST(CutCard, MeasuresCornersBeyondThirtyTwoBits) {
  Image image(240, 150, 8, 128);
  for (int y = 20; y < 60; ++y) {
    for (int x = 0; x < 240; ++x) image.at(y, x) = (x + y) % 8 < 4 ? 0 : 255;
  }
  EXPECT_EQ(cut(image), (Bounds{0, 149, 239, 19}));
}

TEST(CutCard, ReadsNothingBelowTheImageForCorners) {
  Image image(240, 150, 8, kGround);
  soft_slab(image, 10, 230, 9, 60, kGround, kCard);
  EXPECT_EQ(cut(image), (Bounds{10, 149, 220, 9}));
}

TEST(CutCard, ReadsColourAsGray) {
  Image gray = tilted_card();
  Image colour(400, 240, 24);
  for (int y = 0; y < 240; ++y) {
    for (int x = 0; x < 400; ++x) fill(colour, x, x + 1, y, y + 1, gray.at(y, x));
  }
  EXPECT_EQ(cut(colour), cut(gray));
}

}  // namespace
