// One upright card on a flat, light background.
#include <gtest/gtest.h>

#include "cards/scans.h"

namespace {

using pictures::Cards;
using pictures::coordinates;
using pictures::copy_of;
using pictures::Memory;
using pictures::Only;
using pictures::Rows;

using Numbers = std::array<double, 8>;

vantrel_flat_light flat_light_of(const Cards& cards) {
  vantrel_flat_light details = {};
  details.size = sizeof details;
  EXPECT_EQ(vantrel_cards_flat_light(cards.get(), &details), VANTREL_OK);
  return details;
}

std::array<int, 4> found(const vantrel_side (&sides)[4]) {
  return {sides[0].found, sides[1].found, sides[2].found, sides[3].found};
}

TEST(FlatLight, FindsTheRectangleInEveryColourFormatAndOrderOfRows) {
  const support::Image drawn = pictures::card_on_flat_ground();
  const Only options(VANTREL_METHOD_FLAT_LIGHT);
  for (const Rows rows : {Rows::kFromTop, Rows::kFromBottom}) {
    for (const vantrel_format format : pictures::kColourFormats) {
      const Memory memory = copy_of(drawn, format, rows, 5);
      const Cards cards(memory.image(), &options);
      ASSERT_EQ(cards.count(), 1u);
      const vantrel_card card = cards[0];
      // columns 22 to 279 and memory rows 60 to 346 of 400
      EXPECT_EQ(coordinates(card.corners), (Numbers{22, 53, 280, 53, 280, 340, 22, 340}));
      EXPECT_EQ(found(card.sides), (std::array{1, 1, 1, 1}));
      EXPECT_EQ(card.tilt, 0.0);
      EXPECT_EQ(card.method, VANTREL_METHOD_FLAT_LIGHT);
      EXPECT_EQ(card.sides[VANTREL_SIDE_LEFT].confidence, 1.0);
      EXPECT_GT(card.sides[VANTREL_SIDE_BOTTOM].confidence, 0.5);
      EXPECT_LE(card.confidence, 1.0);
      const vantrel_flat_light details = flat_light_of(cards);
      EXPECT_EQ(details.reduction, 1);
      EXPECT_EQ(pictures::bounds(details.rectangle), (std::array{22, 53, 280, 340}));
      EXPECT_EQ(found(details.sides), (std::array{1, 1, 1, 1}));
    }
  }
}

TEST(FlatLight, LeavesSidesThatAreNotFoundWhereTheyLieByDefault) {
  support::Image drawn(120, 150, 8, 50);
  support::fill(drawn, 0, 120, 30, 150, 200);
  const Only options(VANTREL_METHOD_FLAT_LIGHT);
  for (const Rows rows : {Rows::kFromTop, Rows::kFromBottom}) {
    const Memory memory = copy_of(drawn, VANTREL_FORMAT_GRAY, rows);
    const Cards cards(memory.image(), &options);
    ASSERT_EQ(cards.count(), 1u);
    EXPECT_EQ(found(cards[0].sides), (std::array{0, 1, 0, 0}));
    // the lower border lies in memory row 28
    EXPECT_EQ(coordinates(cards[0].corners), (Numbers{0, 0, 120, 0, 120, 122, 0, 122}));
    EXPECT_EQ(cards[0].sides[VANTREL_SIDE_TOP].confidence, 0.0);
    EXPECT_EQ(cards[0].confidence, cards[0].sides[VANTREL_SIDE_BOTTOM].confidence / 4);
  }
}

TEST(FlatLight, GivesNoConfidenceToTheRowThatStandsInForABorderTooHighUp) {
  // In colour a lower border above the lowest fifth, row 80, is print: row 66 takes its place.
  const Only options(VANTREL_METHOD_FLAT_LIGHT);
  for (const auto& [edge, bottom, confidence] : {std::array{70.0, 332.0, 0.76}, {90.0, 334.0, 0.0}}) {
    support::Image drawn(300, 400, 24, 200);
    support::fill(drawn, 0, 300, 0, static_cast<int>(edge), 50);
    const Memory memory = copy_of(drawn, VANTREL_FORMAT_BGR);
    const Cards cards(memory.image(), &options);
    ASSERT_EQ(cards.count(), 1u);
    EXPECT_EQ(coordinates(cards[0].corners), (Numbers{10, 29, 291, 29, 291, bottom, 10, bottom}));
    EXPECT_EQ(found(cards[0].sides), (std::array{0, 1, 0, 0}));
    EXPECT_NEAR(cards[0].sides[VANTREL_SIDE_BOTTOM].confidence, confidence, 1e-12);
  }
}

TEST(FlatLight, SeesNoCardWithoutASide) {
  const Only options(VANTREL_METHOD_FLAT_LIGHT);
  // In colour a lower border that is not found lies at the lowest sixth when that is below row 50.
  const std::array<std::array<int, 4>, 2> expected = {{{10, 29, 191, 167}, {10, 29, 191, 250}}};
  int index = 0;
  for (const int height : {200, 300}) {
    Memory memory(200, height, VANTREL_FORMAT_BGR);
    const Cards cards(memory.image(), &options);
    EXPECT_EQ(cards.count(), 0u);
    EXPECT_EQ(cards.reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_NO_SIDE);
    const vantrel_flat_light details = flat_light_of(cards);
    EXPECT_EQ(found(details.sides), (std::array{0, 0, 0, 0}));
    EXPECT_EQ(pictures::bounds(details.rectangle), expected[static_cast<std::size_t>(index++)]);
  }
}

TEST(FlatLight, IsToldInTheCoordinatesOfTheScanAfterAReduction) {
  const support::Image drawn = pictures::card_on_flat_ground();
  const Memory small = copy_of(drawn, VANTREL_FORMAT_RGB);
  const vantrel_image image = small.image();
  Memory memory(600, 800, VANTREL_FORMAT_RGB);
  memory.draw([&](int x, int y) {
    const unsigned char* pixel = static_cast<const unsigned char*>(image.data) + y / 2 * image.stride + x / 2 * 3;
    return pictures::Colour{pixel[2], pixel[1], pixel[0]};
  });
  Only options(VANTREL_METHOD_FLAT_LIGHT);
  options.analysis_dpi = 100;
  const Cards cards(memory.image(200), &options);
  ASSERT_EQ(cards.count(), 1u);
  EXPECT_EQ(coordinates(cards[0].corners), (Numbers{44, 106, 560, 106, 560, 680, 44, 680}));
  EXPECT_EQ(flat_light_of(cards).reduction, 2);
}

TEST(FlatLight, SearchesByColourOnlyWhatHasColours) {
  support::Image drawn(300, 400, 24, 50);
  support::soft_slab(drawn, 22, 280, 60, 345, 50, 200);
  const Only options(VANTREL_METHOD_FLAT_LIGHT);
  const Memory gray = copy_of(drawn, VANTREL_FORMAT_GRAY);
  const Cards cards(gray.image(), &options);
  const vantrel_flat_light details = flat_light_of(cards);
  // the default of a gray scan is the whole of it
  EXPECT_EQ(details.sides[VANTREL_SIDE_TOP].found == 0, details.rectangle.top == 0);
}

}  // namespace
