// Cards wherever they lie on a scan.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "cards/scans.h"

namespace {

using pictures::Cards;
using pictures::Colour;
using pictures::Memory;
using pictures::Only;
using pictures::Rows;
using support::Corners;

/** White cards with hard borders on a flat ground. */
Memory cards_on(int level, const std::vector<Corners>& cards, vantrel_format format = VANTREL_FORMAT_GRAY,
                Rows rows = Rows::kFromTop, int width = 1000, int height = 800) {
  std::vector<std::array<support::Border, 4>> borders;
  for (const Corners& c : cards) {
    borders.push_back({support::Border(c[0], c[1], c[2], c[3]), support::Border(c[2], c[3], c[6], c[7]),
                       support::Border(c[6], c[7], c[4], c[5]), support::Border(c[4], c[5], c[0], c[1])});
  }
  Memory memory(width, height, format, rows, 5);
  return memory.draw([&](int x, int y) {
    const auto holds = [&](const std::array<support::Border, 4>& sides) {
      return std::all_of(sides.begin(), sides.end(),
                         [&](const support::Border& side) { return side.distance(x + 0.5, y + 0.5) >= 0; });
    };
    return std::any_of(borders.begin(), borders.end(), holds) ? Colour{255, 255, 255, 9}
                                                              : Colour{level, level, level, 9};
  });
}

/** A card of 500 x 300 pixels that is turned by 10 degrees clockwise, well inside a scan. */
const Corners kTilted = support::turned_card(520, 390, 500, 300, 10);

void expect_card(const vantrel_card& card, const Corners& expected, double tolerance = 1) {
  const auto found = pictures::coordinates(card.corners);
  const std::array<double, 8> round = {expected[0], expected[1], expected[2], expected[3],
                                       expected[6], expected[7], expected[4], expected[5]};
  for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(found[i], round[i], tolerance) << i;
}

TEST(Anywhere, FindsATiltedCardOnGrayAndOnBlack) {
  const Only options(VANTREL_METHOD_ANYWHERE);
  for (const int level : {128, 0}) {
    const Memory memory = cards_on(level, {kTilted});
    const Cards cards(memory.image(), &options);
    ASSERT_EQ(cards.count(), 1u) << level;
    expect_card(cards[0], kTilted);
    EXPECT_NEAR(cards[0].tilt, 10, 0.3);
    EXPECT_GE(cards[0].confidence, 0.5);
    EXPECT_EQ(cards[0].method, VANTREL_METHOD_ANYWHERE);
    EXPECT_EQ(cards.reason(VANTREL_METHOD_ANYWHERE), VANTREL_REASON_FOUND);
  }
}

TEST(Anywhere, FindsTheSameInEveryFormatAndOrderOfRows) {
  const Only options(VANTREL_METHOD_ANYWHERE);
  for (const vantrel_format format : pictures::kFormats) {
    for (const Rows rows : {Rows::kFromTop, Rows::kFromBottom}) {
      const Memory memory = cards_on(0, {kTilted}, format, rows);
      const Cards cards(memory.image(), &options);
      ASSERT_EQ(cards.count(), 1u) << format;
      expect_card(cards[0], kTilted);
    }
  }
}

TEST(Anywhere, TellsASideFoundByItsConfidence) {
  const Only options(VANTREL_METHOD_ANYWHERE);
  const Memory memory = cards_on(0, {kTilted});
  const Cards cards(memory.image(), &options);
  ASSERT_EQ(cards.count(), 1u);
  for (const vantrel_side& side : cards[0].sides) EXPECT_EQ(side.found, side.confidence >= 0.8 ? 1 : 0);
}

TEST(Anywhere, TakesNothingForSureOnABlankScan) {
  const Only options(VANTREL_METHOD_ANYWHERE);
  for (const int level : {0, 128, 255}) {
    const Memory memory = cards_on(level, {});
    const Cards cards(memory.image(), &options);
    ASSERT_EQ(cards.status(), VANTREL_OK);
    for (std::size_t i = 0; i < cards.count(); ++i) EXPECT_LT(cards[i].confidence, 0.5);
    EXPECT_EQ(cards.reason(VANTREL_METHOD_ANYWHERE),
              cards.count() == 0 ? VANTREL_REASON_NOTHING_LIKE_A_CARD : VANTREL_REASON_FOUND);
  }
}

// The lower one of the first row is the left one.
const std::vector<Corners> kThree = {support::turned_card(700, 220, 420, 240, -6),
                                     support::turned_card(230, 250, 380, 230, 8),
                                     support::turned_card(480, 590, 430, 250, 3)};

TEST(Anywhere, TellsOfSeveralCardsInReadingOrder) {
  const Only options(VANTREL_METHOD_ANYWHERE);
  const Memory memory = cards_on(60, kThree);
  const Cards cards(memory.image(), &options);
  ASSERT_EQ(cards.count(), 3u);
  expect_card(cards[0], kThree[1]);
  expect_card(cards[1], kThree[0]);
  expect_card(cards[2], kThree[2]);
}

TEST(Anywhere, TellsOfCardsInOneLineFromTheLeft) {
  const Only options(VANTREL_METHOD_ANYWHERE);
  const Corners left = support::turned_card(260, 400, 360, 220, 0);
  const Corners right = support::turned_card(740, 400, 360, 220, 0);
  const Memory memory = cards_on(60, {right, left});
  const Cards cards(memory.image(), &options);
  ASSERT_EQ(cards.count(), 2u);
  expect_card(cards[0], left);
  expect_card(cards[1], right);
}

TEST(Anywhere, TellsOfCardsAboveEachOtherBesideATallOneFromTheTop) {
  const Only options(VANTREL_METHOD_ANYWHERE);
  const Corners tall = {30, 20, 250, 20, 30, 350, 250, 350};
  const Corners upper = {290, 170, 460, 170, 290, 250, 460, 250};
  const Corners lower = {290, 280, 460, 280, 290, 360, 460, 360};
  const Memory memory = cards_on(60, {lower, upper, tall}, VANTREL_FORMAT_GRAY, Rows::kFromTop, 500, 400);
  const Cards cards(memory.image(), &options);
  ASSERT_EQ(cards.count(), 3u);
  expect_card(cards[0], tall);
  expect_card(cards[1], upper);
  expect_card(cards[2], lower);
  // In one row, and just as far to the right.
  EXPECT_EQ(cards[1].corners.top_left.x + cards[1].corners.bottom_right.x, 750.0);
  EXPECT_EQ(cards[2].corners.top_left.x + cards[2].corners.bottom_right.x, 750.0);
}

TEST(Anywhere, FindsTwoCardsOnASheet) {
  const Only options(VANTREL_METHOD_ANYWHERE);
  const Memory memory = cards_on(128, {kThree[0], kThree[2]});
  const Cards cards(memory.image(), &options);
  ASSERT_EQ(cards.count(), 2u);
  expect_card(cards[0], kThree[0]);
  expect_card(cards[1], kThree[2]);
}

TEST(Anywhere, FindsNoMoreCardsThanAskedFor) {
  Only options(VANTREL_METHOD_ANYWHERE);
  const Memory memory = cards_on(60, kThree);
  for (const int most : {1, 2, 3, 1000}) {
    options.most_cards = most;
    EXPECT_EQ(Cards(memory.image(), &options).count(), static_cast<std::size_t>(std::min(most, 3)));
  }
}

TEST(Anywhere, LooksAtTheResolutionAskedFor) {
  Only options(VANTREL_METHOD_ANYWHERE);
  options.analysis_dpi = 150;
  const Memory memory = cards_on(0, {kTilted}, VANTREL_FORMAT_RGB);
  const Cards cards(memory.image(300), &options);
  ASSERT_EQ(cards.count(), 1u);
  expect_card(cards[0], kTilted, 2);
  // Bits are looked at as they are.
  const Memory bits = cards_on(0, {kTilted}, VANTREL_FORMAT_BILEVEL);
  const Cards bilevel(bits.image(300), &options);
  ASSERT_EQ(bilevel.count(), 1u);
  expect_card(bilevel[0], kTilted);
}

TEST(Anywhere, RefusesScansThatAreTooSmallOrTooLarge) {
  const Only options(VANTREL_METHOD_ANYWHERE);
  const auto reason = [&](int width, int height) {
    const Memory memory = cards_on(0, {}, VANTREL_FORMAT_GRAY, Rows::kFromTop, width, height);
    return Cards(memory.image(), &options).reason(VANTREL_METHOD_ANYWHERE);
  };
  EXPECT_EQ(reason(1, 1), VANTREL_REASON_SCAN_TOO_SMALL);
  EXPECT_EQ(reason(23, 400), VANTREL_REASON_SCAN_TOO_SMALL);
  EXPECT_NE(reason(24, 400), VANTREL_REASON_SCAN_TOO_SMALL);
  EXPECT_EQ(reason(47, 1000), VANTREL_REASON_SCAN_TOO_SMALL);  // 23 columns of the copy that is looked at
  EXPECT_EQ(reason(128000, 1), VANTREL_REASON_SCAN_TOO_SMALL);
  EXPECT_EQ(reason(128001, 1), VANTREL_REASON_SCAN_TOO_LARGE);
}

TEST(Anywhere, TellsOfAlternativesWhereThereAreSome) {
  const Only options(VANTREL_METHOD_ANYWHERE);
  const Memory memory = cards_on(0, {kTilted});
  const Cards cards(memory.image(), &options);
  ASSERT_EQ(cards.count(), 1u);
  vantrel_card other = VANTREL_CARD_INIT;
  std::size_t count = 0;
  double likelihood = 1;
  for (; vantrel_cards_alternative(cards.get(), 0, count, &other) == VANTREL_OK; ++count) {
    EXPECT_EQ(other.method, VANTREL_METHOD_ANYWHERE);
    EXPECT_LE(other.confidence, likelihood);
    likelihood = other.confidence;
  }
  EXPECT_LE(count, 5u);
  EXPECT_EQ(vantrel_cards_alternative(cards.get(), 0, count, &other), VANTREL_ERROR_ABSENT);
  EXPECT_EQ(vantrel_cards_alternative(cards.get(), 1, 0, &other), VANTREL_ERROR_ABSENT);
  EXPECT_EQ(vantrel_cards_alternative(cards.get(), 0, 0, nullptr), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_cards_alternative(nullptr, 0, 0, &other), VANTREL_ERROR_NULL);
}

TEST(Anywhere, AloneHasAlternatives) {
  const Memory memory = pictures::card_on_glass();
  const Only glass(VANTREL_METHOD_DARK_GLASS);
  const Cards cards(memory.image(), &glass);
  ASSERT_EQ(cards.count(), 1u);
  vantrel_card other = VANTREL_CARD_INIT;
  EXPECT_EQ(vantrel_cards_alternative(cards.get(), 0, 0, &other), VANTREL_ERROR_ABSENT);
}

TEST(Surest, IsWhatLiesAnywhereBeforeACardOnDarkGlass) {
  const Memory memory = Memory(640, 480, VANTREL_FORMAT_GRAY).draw([](int x, int y) {
    const bool card = x >= 80 && x < 560 && y >= 60 && y < 420;
    return card ? Colour{190, 190, 190, 255} : Colour{35, 35, 35, 255};
  });
  const Only glass(VANTREL_METHOD_DARK_GLASS);
  ASSERT_EQ(Cards(memory.image(), &glass).count(), 1u);
  const Cards cards(memory.image());
  ASSERT_EQ(cards.count(), 1u);
  EXPECT_EQ(cards[0].method, VANTREL_METHOD_ANYWHERE);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_DARK_GLASS), VANTREL_REASON_NOT_TRIED);
}

TEST(Surest, LooksNoFurtherThanAnywhereForACardThatIsPlainToSee) {
  const Memory memory = cards_on(128, {kTilted});
  const Cards cards(memory.image());
  ASSERT_EQ(cards.count(), 1u);
  EXPECT_EQ(cards[0].method, VANTREL_METHOD_ANYWHERE);
  expect_card(cards[0], kTilted);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_DARK_GLASS), VANTREL_REASON_NOT_TRIED);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_NOT_TRIED);
}

/** A gray scan of a card on dark glass, as `is_card` says where it lies, with noise of up to so many levels. */
template <class IsCard>
Memory card_on_dark_glass(IsCard is_card, int noise = 0) {
  Memory memory(400, 300, VANTREL_FORMAT_GRAY);
  unsigned seed = 1;
  return memory.draw([&](int x, int y) {
    seed = seed * 1664525 + 1013904223;
    const int level = (is_card(x, y) ? 190 : 35) + static_cast<int>(seed >> 16) % (2 * noise + 1) - noise;
    const auto pixel = std::clamp(level, 0, 255);
    return Colour{pixel, pixel, pixel, 9};
  });
}

/** Whether a pixel lies on a card of 340 x 260 pixels in the middle of 400 x 300, so far from its border or farther. */
bool is_inside(int x, int y, int margin) {
  return x >= 30 + margin && x < 370 - margin && y >= 20 + margin && y < 280 - margin;
}

/** A card whose corners were cut off: its four sides are seen, its corners are not. */
bool is_card_without_corners(int x, int y) {
  return is_inside(x, y, 0) && (is_inside(x, 150, 40) || is_inside(200, y, 40));
}

double greatest_confidence(const Cards& cards) {
  double greatest = 0;
  for (std::size_t i = 0; i < cards.count(); ++i) greatest = std::max(greatest, cards[i].confidence);
  return greatest;
}

bool has_all_sides(const Cards& cards) {
  if (cards.count() == 0) return false;
  const vantrel_card card = cards[0];
  return std::all_of(std::begin(card.sides), std::end(card.sides), [](const vantrel_side& s) { return s.found == 1; });
}

/** Which of the two the rule at vantrel_find prefers, from what each of them answers alone. */
vantrel_method preferred(const Cards& anywhere, const Cards& glass) {
  const double confidence = greatest_confidence(anywhere);
  if (confidence >= 0.9) return VANTREL_METHOD_ANYWHERE;
  if (has_all_sides(glass)) return VANTREL_METHOD_DARK_GLASS;
  return confidence >= 0.5 ? VANTREL_METHOD_ANYWHERE : VANTREL_METHOD_DARK_GLASS;
}

void expect_preferred(const Memory& memory) {
  const Only everywhere(VANTREL_METHOD_ANYWHERE);
  const Only on_glass(VANTREL_METHOD_DARK_GLASS);
  const Cards anywhere(memory.image(), &everywhere);
  const Cards glass(memory.image(), &on_glass);
  const Cards surest(memory.image());
  const vantrel_method method = preferred(anywhere, glass);
  const Cards& expected = method == VANTREL_METHOD_ANYWHERE ? anywhere : glass;
  ASSERT_GT(surest.count(), 0u);
  ASSERT_EQ(surest.count(), expected.count());
  EXPECT_EQ(surest[0].method, method);
  EXPECT_EQ(pictures::coordinates(surest[0].corners), pictures::coordinates(expected[0].corners));
  EXPECT_EQ(surest[0].confidence, expected[0].confidence);
}

TEST(Surest, IsDarkGlassWhereAllSidesAreSeenAndAnywhereIsLessSure) {
  expect_preferred(card_on_dark_glass(is_card_without_corners));
  for (const int noise : {20, 40, 60}) {
    SCOPED_TRACE(noise);
    expect_preferred(card_on_dark_glass([](int x, int y) { return is_inside(x, y, 0); }, noise));
  }
}

TEST(Surest, IsWhatDarkGlassSeesInPartWhereNothingElseIsLikely) {
  const Memory memory = card_on_dark_glass([](int x, int y) { return is_inside(x, y, 0) && !is_inside(x, y, 2); });
  expect_preferred(memory);
  const Cards cards(memory.image());
  EXPECT_EQ(cards[0].method, VANTREL_METHOD_DARK_GLASS);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_NOT_TRIED);
}

/** A gray scan of 240 x 300 whose `light` says how light each pixel is, from 0, the ground's 100, to 1, 140. */
template <class Light>
Memory on_flat_ground(Light light) {
  Memory memory(240, 300, VANTREL_FORMAT_GRAY);
  return memory.draw([&](int x, int y) {
    const auto level = static_cast<int>(100.0 + 40.0 * std::clamp(light(x, y), 0.0, 1.0));
    return Colour{level, level, level};
  });
}

/** How far within a card from 20, 60 to 220, 260 a pixel lies. */
double depth(int x, int y) { return std::min({x - 20, 219 - x, y - 60, 259 - y}); }

TEST(Surest, IsAnUprightCardOnFlatGroundWithAllItsSides) {
  const Memory memory = on_flat_ground([](int x, int y) { return (depth(x, y) + 2.5) / 5.0; });
  const Only everywhere(VANTREL_METHOD_ANYWHERE);
  const Cards unsure(memory.image(), &everywhere);
  ASSERT_EQ(unsure.count(), 1u);
  EXPECT_LT(unsure[0].confidence, 0.5);
  const Cards cards(memory.image());
  ASSERT_EQ(cards.count(), 1u);
  EXPECT_EQ(cards[0].method, VANTREL_METHOD_FLAT_LIGHT);
  EXPECT_TRUE(has_all_sides(cards));
}

TEST(Surest, IsNotWhatFlatGroundShowsInPart) {
  const Memory memory = on_flat_ground([](int x, int y) { return depth(x, y) + 0.5; });
  const Only flat(VANTREL_METHOD_FLAT_LIGHT);
  ASSERT_EQ(Cards(memory.image(), &flat).count(), 1u);
  EXPECT_FALSE(has_all_sides(Cards(memory.image(), &flat)));
  const Only everywhere(VANTREL_METHOD_ANYWHERE);
  const Cards unsure(memory.image(), &everywhere);
  const Cards cards(memory.image());
  ASSERT_EQ(cards.count(), 1u);
  EXPECT_LT(cards[0].confidence, 0.5);
  EXPECT_EQ(cards[0].method, VANTREL_METHOD_ANYWHERE);
  EXPECT_EQ(pictures::coordinates(cards[0].corners), pictures::coordinates(unsure[0].corners));
  EXPECT_EQ(cards.reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_FOUND);
}

TEST(Surest, IsNothingWhereFlatGroundAloneShowsSomething) {
  // A band across the scan: two borders.
  const Memory memory = on_flat_ground([](int, int y) { return y >= 60 && y < 260 ? 1.0 : 0.0; });
  const Cards cards(memory.image());
  EXPECT_EQ(cards.count(), 0u);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_FOUND);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_ANYWHERE), VANTREL_REASON_NOTHING_LIKE_A_CARD);
}

TEST(Surest, IsAPlaceOnASheetWhereNothingElseIsSeen) {
  const Memory memory = Memory(1150, 600, VANTREL_FORMAT_GRAY).draw([](int x, int y) {
    const bool stroke = y >= 250 && y < 300 && x >= 300 && x < 800 && (x - 300) % 7 == 0;
    return stroke ? Colour{0, 0, 0} : Colour{255, 255, 255};
  });
  const Cards cards(memory.image(300));
  ASSERT_EQ(cards.count(), 1u);
  EXPECT_EQ(cards[0].method, VANTREL_METHOD_SHEET);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_NO_SIDE);
}

TEST(Surest, IsTakenOnlyWithoutAListOfMethods) {
  const vantrel_method methods[] = {VANTREL_METHOD_FLAT_LIGHT, VANTREL_METHOD_ANYWHERE};
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.methods = methods;
  options.method_count = 2;
  const Memory memory = pictures::copy_of(pictures::card_on_flat_ground(), VANTREL_FORMAT_BGR);
  const Cards cards(memory.image(), &options);
  ASSERT_EQ(cards.count(), 1u);
  EXPECT_EQ(cards[0].method, VANTREL_METHOD_FLAT_LIGHT);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_ANYWHERE), VANTREL_REASON_NOT_TRIED);
}

}  // namespace
