// Several cards on one sheet.
#include <gtest/gtest.h>

#include "cards/scans.h"

namespace {

using pictures::Block;
using pictures::bounds;
using pictures::Cards;
using pictures::coordinates;
using pictures::Memory;
using pictures::Only;
using pictures::Rows;
using pictures::sheet_with;

using Numbers = std::array<double, 8>;

vantrel_sheet sheet_of(const Cards& cards) {
  vantrel_sheet details = {};
  details.size = sizeof details;
  EXPECT_EQ(vantrel_cards_sheet(cards.get(), &details), VANTREL_OK);
  return details;
}

// At 300 dots per inch a sheet is reduced by 3; a card is then 355 x 220 pixels.
const std::vector<Block> kThreeBlocks = {{60, 240, 1125, 900}, {60, 1290, 1125, 1950}, {1260, 840, 2325, 1500}};

TEST(Sheet, FindsCardsInReadingOrderInEveryOrderOfRows) {
  const Only options(VANTREL_METHOD_SHEET);
  for (const Rows rows : {Rows::kFromTop, Rows::kFromBottom}) {
    const Memory memory = sheet_with(2400, 2100, kThreeBlocks, VANTREL_FORMAT_BILEVEL, rows);
    const Cards cards(memory.image(300), &options);
    ASSERT_EQ(cards.count(), 3u);
    // What is found ends with the first of the three rows and columns that a reduced one stands for.
    EXPECT_EQ(coordinates(cards[0].corners), (Numbers{60, 242, 1123, 242, 1123, 900, 60, 900}));
    EXPECT_EQ(coordinates(cards[1].corners), (Numbers{1260, 842, 2323, 842, 2323, 1500, 1260, 1500}));
    EXPECT_EQ(coordinates(cards[2].corners), (Numbers{60, 1292, 1123, 1292, 1123, 1950, 60, 1950}));
    const vantrel_sheet details = sheet_of(cards);
    EXPECT_EQ(details.reduction, 3);
    EXPECT_EQ(details.columns, 2);
    EXPECT_EQ(bounds(details.cards[0].place), (std::array{60, 242, 1123, 900}));
    EXPECT_EQ(details.cards[0].column, 1);
    EXPECT_EQ(details.cards[1].column, 2);
    EXPECT_EQ(details.cards[2].column, 1);
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(details.cards[i].straightened, 0);
      EXPECT_EQ(bounds(details.cards[i].searched), (std::array{0, 0, 0, 0}));
      EXPECT_EQ(cards[i].confidence, 1.0);
      EXPECT_EQ(cards[i].tilt, 0.0);
      EXPECT_EQ(cards[i].sides[VANTREL_SIDE_TOP].found, 0);
      EXPECT_EQ(cards[i].method, VANTREL_METHOD_SHEET);
    }
  }
}

TEST(Sheet, GoesOnWithOneColumnWhereTheOtherEnds) {
  const Memory memory =
      sheet_with(2400, 2100, {{60, 240, 1125, 900}, {1260, 240, 2325, 900}, {1260, 1290, 2325, 1950}});
  const Only options(VANTREL_METHOD_SHEET);
  const Cards cards(memory.image(300), &options);
  ASSERT_EQ(cards.count(), 3u);
  EXPECT_EQ(coordinates(cards[0].corners), (Numbers{60, 242, 1123, 242, 1123, 900, 60, 900}));
  EXPECT_EQ(coordinates(cards[1].corners), (Numbers{1260, 242, 2323, 242, 2323, 900, 1260, 900}));
  EXPECT_EQ(coordinates(cards[2].corners), (Numbers{1260, 1292, 2323, 1292, 2323, 1950, 1260, 1950}));
}

TEST(Sheet, IsMeasuredInWholePixelsPerMetre) {
  // 360 dots per inch are 14173 pixels per metre, 359.995 dots per inch: 2.2 inches are 197 rows of a copy reduced by
  // 4, not 198.
  const Memory memory = sheet_with(1600, 1500, {{100, 500, 1300, 900}});
  const Only options(VANTREL_METHOD_SHEET);
  const Cards cards(memory.image(360), &options);
  ASSERT_EQ(cards.count(), 1u);
  const vantrel_rect place = sheet_of(cards).cards[0].place;
  EXPECT_EQ(place.bottom - place.top, 4 * 196 + 1);
}

TEST(Sheet, FindsNoMoreCardsThanAskedFor) {
  const Memory memory = sheet_with(2400, 2100, kThreeBlocks);
  for (const int most : {1, 2, 3, 4}) {
    Only options(VANTREL_METHOD_SHEET);
    options.most_cards = most;
    const Cards cards(memory.image(300), &options);
    ASSERT_EQ(cards.count(), static_cast<std::size_t>(std::min(most, 3)));
    EXPECT_EQ(cards[0].corners.top_left.y, 242);
    EXPECT_EQ(sheet_of(cards).cards[static_cast<std::size_t>(most) % 10].column, 0);
  }
}

TEST(Sheet, FindsTheSameInEveryFormat) {
  std::vector<Block> strokes;
  for (int x = 180; x < 1245; x += 15) strokes.push_back({x, 540, x + 3, 1200});
  const Only options(VANTREL_METHOD_SHEET);
  for (const vantrel_format format : pictures::kByteFormats) {
    const Memory memory = sheet_with(1500, 1500, strokes, format);
    const Cards cards(memory.image(300), &options);
    ASSERT_EQ(cards.count(), 1u);
    EXPECT_EQ(coordinates(cards[0].corners), (Numbers{174, 542, 1237, 542, 1237, 1200, 174, 1200}));
    EXPECT_EQ(sheet_of(cards).columns, 1);
  }
}

TEST(Sheet, TellsWhichShareOfTheMarksACardHolds) {
  // 100 reduced columns of marks lie beyond the card's length of 355.
  const Memory memory = sheet_with(1500, 1500, {{0, 540, 1365, 1200}});
  const Only options(VANTREL_METHOD_SHEET);
  const Cards cards(memory.image(300), &options);
  ASSERT_EQ(cards.count(), 1u);
  EXPECT_EQ(cards[0].confidence, 355.0 / 455.0);
}

/** Cards with their own borders on black, and print on them that says where they are. */
support::Image card_on_black(double degrees, int bit_count) {
  return support::scan_of(support::turned_card(600, 500, 1065, 660, degrees), 1200, 1000, bit_count);
}

TEST(Sheet, StraightensACardByItsOwnBorders) {
  Only options(VANTREL_METHOD_SHEET);
  options.straighten = 1;
  for (const vantrel_format format : pictures::kByteFormats) {
    const Memory memory = pictures::copy_of(card_on_black(2, 24), format, Rows::kFromBottom);
    const Cards cards(memory.image(300), &options);
    ASSERT_EQ(cards.count(), 1u);
    const vantrel_sheet_card details = sheet_of(cards).cards[0];
    const vantrel_card card = cards[0];
    ASSERT_EQ(details.straightened, 1);
    // 0.35 inches beside the place and 0.2 above and below it, where the scan has them
    EXPECT_EQ(bounds(details.searched),
              (std::array{std::max(0, details.place.left - 105), std::max(0, details.place.top - 60),
                          std::min(1200, details.place.right + 105), std::min(1000, details.place.bottom + 60)}));
    EXPECT_NEAR(card.tilt, 2, 0.2);
    const support::Corners expected = support::turned_card(600, 500, 1065, 660, 2);
    EXPECT_NEAR(card.corners.top_left.x, expected[0], 2);
    EXPECT_NEAR(card.corners.top_left.y, expected[1], 2);
    EXPECT_NEAR(card.corners.bottom_right.x, expected[6], 2);
    EXPECT_NEAR(card.corners.bottom_right.y, expected[7], 2);
    EXPECT_EQ(card.sides[VANTREL_SIDE_TOP].found, 1);
    EXPECT_GT(card.confidence, 0.5);
    EXPECT_EQ(card.method, VANTREL_METHOD_SHEET);
  }
}

TEST(Sheet, IsNotStraightenedByOneSide) {
  // A strip of paper across black glass, with strokes of print.
  const Memory memory = Memory(1200, 1000, VANTREL_FORMAT_GRAY).draw([](int x, int y) {
    const bool stroke = y >= 270 && y < 730 && x >= 168 && x < 1032 && (x - 168) % 15 < 3;
    const int level = stroke ? 0 : y >= 170 && y < 830 ? 200 : 20;
    return pictures::Colour{level, level, level};
  });
  Only options(VANTREL_METHOD_SHEET);
  options.straighten = 1;
  const Cards cards(memory.image(300), &options);
  ASSERT_EQ(cards.count(), 1u);
  const vantrel_sheet_card details = sheet_of(cards).cards[0];
  EXPECT_EQ(bounds(details.searched), (std::array{0, 57, 1200, 835}));
  EXPECT_EQ(details.straightened, 0);
  EXPECT_EQ(coordinates(cards[0].corners), coordinates(pictures::upright(details.place.left, details.place.top,
                                                                         details.place.right, details.place.bottom)));
  // Around it the lower border alone is found.
  vantrel_image part = memory.image(300);
  part.data = static_cast<const unsigned char*>(part.data) + 57 * part.stride;
  part.height = 835 - 57;
  Only glass(VANTREL_METHOD_DARK_GLASS);
  glass.analysis_dpi = 300;
  const Cards around(part, &glass);
  ASSERT_EQ(around.count(), 1u);
  EXPECT_EQ(around[0].sides[VANTREL_SIDE_TOP].found, 0);
  EXPECT_EQ(around[0].sides[VANTREL_SIDE_BOTTOM].found, 1);
}

TEST(Sheet, LeavesACardWithoutBordersInItsPlace) {
  Only options(VANTREL_METHOD_SHEET);
  options.straighten = 1;
  const Memory bits = sheet_with(1500, 1500, {{180, 540, 1245, 1200}});
  const Cards bilevel(bits.image(300), &options);
  ASSERT_EQ(bilevel.count(), 1u);
  EXPECT_EQ(sheet_of(bilevel).cards[0].straightened, 0);
  EXPECT_EQ(bounds(sheet_of(bilevel).cards[0].searched), (std::array{0, 0, 0, 0}));
  std::vector<Block> strokes;
  for (int x = 180; x < 1245; x += 15) strokes.push_back({x, 640, x + 3, 1100});
  const Memory gray = sheet_with(1500, 1500, strokes, VANTREL_FORMAT_GRAY);
  const Cards print(gray.image(300), &options);
  ASSERT_EQ(print.count(), 1u);
  const vantrel_sheet_card details = sheet_of(print).cards[0];
  EXPECT_EQ(details.straightened, 0);
  EXPECT_EQ(bounds(details.searched), (std::array{69, 479, 1342, 1257}));
  EXPECT_EQ(coordinates(print[0].corners), coordinates(pictures::upright(details.place.left, details.place.top,
                                                                         details.place.right, details.place.bottom)));
}

}  // namespace
