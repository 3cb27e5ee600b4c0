// Cards found on drawn sheets.
#include <gtest/gtest.h>

#include "support/image.h"

namespace {

using support::Image;
using Bytes = std::vector<unsigned char>;
using Card = std::vector<int>;  // left, bottom, right, top

// At 300 dots per inch a sheet is reduced by 3; a card is then 355 x 220 pixels.
constexpr int kFactor = 3;
constexpr MYRECT kUntouched{-11, -12, -13, -14, -15};

RectRegions untouched_regions() {
  RectRegions regions{-1, -2, {}, {}};
  for (MYRECT& rect : regions.firstColumn) rect = kUntouched;
  for (MYRECT& rect : regions.secondColumn) rect = kUntouched;
  return regions;
}

/** A white sheet at 300 dots per inch, measured in reduced pixels. */
Image sheet_of(int width, int height, int depth = 1) { return Image(width * kFactor, height * kFactor, depth, 255); }

/** Blackens reduced columns [left, right) of reduced rows [bottom, top). */
void draw(Image& sheet, int left, int right, int bottom, int top) {
  const int depth = sheet.header().biBitCount;
  for (int r = kFactor * bottom; r < kFactor * top; ++r) {
    for (int c = kFactor * left; c < kFactor * right; ++c) {
      if (depth == 1) {
        sheet.at(r, c / 8) = static_cast<unsigned char>(sheet.at(r, c / 8) & ~(0x80 >> (c % 8)));
      } else {
        std::memset(sheet.row(r) + c * depth / 8, 0, static_cast<std::size_t>(depth / 8));
      }
    }
  }
}

Card card(const MYRECT& rect) { return {rect.left, rect.bottom, rect.right, rect.top}; }

/** The cards of a column; what lies beyond the count, and every fifth member, must be as it was. */
std::vector<Card> cards(const MYRECT (&column)[5], int count) {
  std::vector<Card> found;
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(column[i].reserved, -15);
    if (i < count) {
      found.push_back(card(column[i]));
    } else {
      EXPECT_EQ(card(column[i]), card(kUntouched)) << i;
    }
  }
  return found;
}

/** Expects the call to succeed with these cards. */
void expect_cards(Image& sheet, const std::vector<Card>& first, const std::vector<Card>& second) {
  RectRegions regions = untouched_regions();
  const Bytes before = sheet.block();
  EXPECT_EQ(CardSeg(sheet.ptr(), regions), 1);
  EXPECT_EQ(sheet.block(), before);
  EXPECT_EQ(cards(regions.firstColumn, regions.firstCount), first);
  EXPECT_EQ(cards(regions.secondColumn, regions.secondCount), second);
}

/** Expects this failure, with the counts cleared and the rest as it was. */
void expect_failure(Image& sheet, int code) {
  RectRegions regions = untouched_regions();
  EXPECT_EQ(CardSeg(sheet.ptr(), regions), code);
  EXPECT_EQ(regions.firstCount, 0);
  EXPECT_EQ(regions.secondCount, 0);
  cards(regions.firstColumn, 0);
  cards(regions.secondColumn, 0);
}

TEST(CardSeg, ABlankSheetHasNoCards) {
  for (int depth : {1, 8, 24}) {
    Image sheet = sheet_of(800, 400, depth);
    expect_cards(sheet, {}, {});
  }
}

TEST(CardSeg, ALowResolutionIsRefused) {
  for (int depth : {1, 4, 8, 24}) {  // it is judged before the depth
    Image sheet(100, 100, depth, 255, 7874);
    expect_failure(sheet, -3);
  }
}

TEST(CardSeg, TheSmallerResolutionCounts) {
  Image wide(100, 100, 8, 255);
  wide.header().biXPelsPerMeter = 7874;
  expect_failure(wide, -3);
  Image tall(100, 100, 8, 255);
  tall.header().biYPelsPerMeter = 7874;
  expect_failure(tall, -3);
}

TEST(CardSeg, TwoHundredAndFiftyDotsPerInchAreEnough) {
  Image below(100, 100, 8, 255, 9842);  // 249.99
  expect_failure(below, -3);
  Image enough(100, 100, 8, 255, 9843);
  expect_cards(enough, {}, {});
}

TEST(CardSeg, AnEmptyRecordIsNoImage) {
  BITMAPPTR nothing{};
  RectRegions regions = untouched_regions();
  EXPECT_EQ(CardSeg(&nothing, regions), -1);
  EXPECT_EQ(regions.firstCount, 0);
  EXPECT_EQ(regions.secondCount, 0);
}

TEST(CardSeg, OtherDepthsAreRefused) {
  for (int depth : {4, 16, 32}) {
    Image sheet(100, 100, depth, 255);
    expect_failure(sheet, -2);
  }
}

TEST(CardSeg, OneCardIsFoundAtItsPlaceAndFullSize) {
  Image sheet = sheet_of(500, 500);
  draw(sheet, 60, 415, 100, 320);
  expect_cards(sheet, {{180, 300, 1242, 957}}, {});
}

TEST(CardSeg, AGrayOrColourCardIsFoundToo) {
  for (int depth : {8, 24}) {
    Image sheet = sheet_of(500, 500, depth);
    for (int c = 60; c < 415; c += 5) draw(sheet, c, c + 1, 100, 320);  // thin strokes, darker than their mean
    RectRegions regions = untouched_regions();
    ASSERT_EQ(CardSeg(sheet.ptr(), regions), 1);
    ASSERT_EQ(regions.firstCount, 1);
    EXPECT_EQ(regions.secondCount, 0);
    // The strokes cover columns 60 to 410: the windows that hold them all start at 56 to 60.
    EXPECT_EQ(card(regions.firstColumn[0]), (Card{174, 300, 1236, 957}));
  }
}

TEST(CardSeg, AShortCardIsCompletedOnBothSides) {
  Image sheet = sheet_of(500, 500);
  draw(sheet, 60, 415, 200, 300);  // 120 rows missing, 60 on either side
  expect_cards(sheet, {{180, 420, 1242, 1077}}, {});
}

TEST(CardSeg, ANarrowPrintIsCenteredInItsCard) {
  Image sheet = sheet_of(700, 500);
  draw(sheet, 200, 455, 100, 320);  // the windows that hold it start at 100 to 200
  expect_cards(sheet, {{450, 300, 1512, 957}}, {});
}

TEST(CardSeg, BlocksCloserThanTheBridgedGapAreOneCard) {
  Image sheet = sheet_of(500, 500);
  draw(sheet, 60, 415, 100, 200);
  draw(sheet, 60, 415, 216, 320);
  expect_cards(sheet, {{180, 300, 1242, 957}}, {});
}

TEST(CardSeg, BlocksFartherApartWithinOneCardsHeightAreMerged) {
  Image sheet = sheet_of(500, 500);
  draw(sheet, 60, 415, 100, 160);
  draw(sheet, 60, 415, 240, 320);
  expect_cards(sheet, {{180, 300, 1242, 957}}, {});
}

TEST(CardSeg, OfSixCardsInAColumnTheFiveLowestAreFound) {
  Image sheet = sheet_of(400, 1700);
  std::vector<Card> expected;
  for (int k = 0; k < 6; ++k) {
    const int bottom = 40 + 270 * k;
    draw(sheet, 20, 375, bottom, bottom + 220);
    if (k < 5) expected.push_back({60, 3 * bottom, 1122, 3 * (bottom + 219)});
  }
  expect_cards(sheet, expected, {});
}

TEST(CardSeg, AFreeMiddleMakesTwoColumns) {
  Image sheet = sheet_of(800, 700);
  draw(sheet, 20, 375, 50, 270);
  draw(sheet, 20, 375, 400, 620);
  draw(sheet, 420, 775, 100, 320);
  expect_cards(sheet, {{60, 150, 1122, 807}, {60, 1200, 1122, 1857}}, {{1260, 300, 2322, 957}});
}

TEST(CardSeg, TheSecondColumnLiesAtOrBeyondTheMiddle) {
  Image sheet = sheet_of(800, 400);
  draw(sheet, 410, 500, 100, 320);  // its windows start at 0 to 10 of the right half
  expect_cards(sheet, {}, {{1215, 300, 2277, 957}});
}

TEST(CardSeg, PrintInTheMiddleStripMakesOneColumn) {
  // Up to 27 rows (an eighth of a card's height) may have print there.
  Image free = sheet_of(800, 400);
  draw(free, 20, 375, 50, 270);
  draw(free, 395, 396, 50, 77);
  expect_cards(free, {{60, 150, 1122, 807}}, {});
  Image second = sheet_of(800, 400);
  draw(second, 430, 785, 50, 270);
  draw(second, 404, 405, 50, 77);
  expect_cards(second, {}, {{1290, 150, 2352, 807}});
  Image crossed = sheet_of(800, 400);
  draw(crossed, 430, 785, 50, 270);
  draw(crossed, 404, 405, 50, 78);
  expect_cards(crossed, {{1290, 150, 2352, 807}}, {});
}

TEST(CardSeg, ASheetOfTwoCardLengthsIsOneColumn) {
  Image narrow = sheet_of(710, 400);
  draw(narrow, 355, 710, 100, 320);
  expect_cards(narrow, {{1065, 300, 2127, 957}}, {});
}

TEST(CardSeg, AStripNarrowerThanACardIsTakenWhole) {
  Image sheet = sheet_of(100, 400);
  draw(sheet, 10, 90, 100, 320);
  expect_cards(sheet, {{0, 300, 297, 957}}, {});
}

}  // namespace
