// Looking for cards: options, the handle, and the order of the methods.
#include <gtest/gtest.h>

#include <limits>

#include "cards/scans.h"
#include "support/numbers.h"

namespace {

using pictures::card_on_glass;
using pictures::Cards;
using pictures::Memory;
using pictures::Only;
using support::kInfinite;
using support::kNoNumber;

template <class Change>
vantrel_status status_with(Change change) {
  const Memory memory = card_on_glass();
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  change(options);
  const Cards cards(memory.image(), &options);
  EXPECT_EQ(cards.get() == nullptr, cards.status() != VANTREL_OK);
  return cards.status();
}

TEST(CardsFind, TakesOptionsThatThereAre) {
  const vantrel_method methods[] = {VANTREL_METHOD_SHEET, VANTREL_METHOD_SHEET, VANTREL_METHOD_DARK_GLASS};
  EXPECT_EQ(status_with([](auto&) {}), VANTREL_OK);
  EXPECT_EQ(status_with([](auto& options) { options.most_cards = 1000; }), VANTREL_OK);
  EXPECT_EQ(status_with([](auto& options) { options.straighten = 1; }), VANTREL_OK);
  EXPECT_EQ(status_with([](auto& options) { options.analysis_dpi = 1e300; }), VANTREL_OK);
  EXPECT_EQ(status_with([&](auto& options) {
              options.methods = methods;
              options.method_count = 3;
            }),
            VANTREL_OK);
}

TEST(CardsFind, RefusesOptionsThatThereAreNot) {
  const vantrel_method unknown[] = {VANTREL_METHOD_SHEET, pictures::number<vantrel_method>(5)};
  const auto methods = [&](const vantrel_method* first, std::size_t count) {
    return status_with([&](auto& options) {
      options.methods = first;
      options.method_count = count;
    });
  };
  EXPECT_EQ(methods(unknown, 1), VANTREL_OK);
  EXPECT_EQ(methods(unknown, 2), VANTREL_ERROR_OPTION);
  EXPECT_EQ(methods(unknown, 0), VANTREL_ERROR_OPTION);
  EXPECT_EQ(methods(nullptr, 1), VANTREL_ERROR_NULL);
  EXPECT_EQ(status_with([](auto& options) { options.most_cards = -1; }), VANTREL_ERROR_OPTION);
  EXPECT_EQ(status_with([](auto& options) { options.straighten = 2; }), VANTREL_ERROR_OPTION);
  for (const double dpi : {-1.0, kInfinite, kNoNumber}) {
    EXPECT_EQ(status_with([dpi](auto& options) { options.analysis_dpi = dpi; }), VANTREL_ERROR_RESOLUTION);
  }
}

TEST(CardsFind, RefusesOptionsOfAnotherSize) {
  for (const std::size_t size : {std::size_t{0}, sizeof(vantrel_find_options) - 1, sizeof(vantrel_find_options) + 8}) {
    EXPECT_EQ(status_with([size](auto& options) { options.size = size; }), VANTREL_ERROR_OPTION) << size;
  }
}

TEST(CardsFind, NeedsSomewhereToPutTheHandle) {
  const Memory memory = card_on_glass();
  const vantrel_image image = memory.image();
  EXPECT_EQ(vantrel_find(&image, nullptr, nullptr), VANTREL_ERROR_NULL);
}

TEST(CardsFind, StopsAtTheFirstMethodThatFindsACard) {
  const vantrel_method methods[] = {VANTREL_METHOD_DARK_GLASS, VANTREL_METHOD_FLAT_LIGHT, VANTREL_METHOD_SHEET,
                                    VANTREL_METHOD_ANYWHERE};
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.methods = methods;
  options.method_count = 4;
  const Memory memory = card_on_glass();
  const Cards cards(memory.image(), &options);
  EXPECT_EQ(cards.count(), 1u);
  EXPECT_EQ(cards[0].method, VANTREL_METHOD_DARK_GLASS);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_DARK_GLASS), VANTREL_REASON_FOUND);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_NOT_TRIED);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_SHEET), VANTREL_REASON_NOT_TRIED);
  EXPECT_EQ(cards.reason(VANTREL_METHOD_ANYWHERE), VANTREL_REASON_NOT_TRIED);
  vantrel_flat_light flat = {};
  flat.size = sizeof flat;
  EXPECT_EQ(vantrel_cards_flat_light(cards.get(), &flat), VANTREL_ERROR_ABSENT);
  vantrel_sheet sheet = {};
  sheet.size = sizeof sheet;
  EXPECT_EQ(vantrel_cards_sheet(cards.get(), &sheet), VANTREL_ERROR_ABSENT);
}

TEST(CardsFind, TellsWhyEachMethodFoundNothing) {
  Memory blank(400, 300, VANTREL_FORMAT_GRAY);
  std::fill(blank.bytes().begin(), blank.bytes().end(), static_cast<unsigned char>(30));
  const Cards unknown(blank.image());
  EXPECT_EQ(unknown.status(), VANTREL_OK);
  EXPECT_EQ(unknown.count(), 0u);
  EXPECT_EQ(unknown.reason(VANTREL_METHOD_DARK_GLASS), VANTREL_REASON_BLANK);
  EXPECT_EQ(unknown.reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_NO_SIDE);
  EXPECT_EQ(unknown.reason(VANTREL_METHOD_SHEET), VANTREL_REASON_RESOLUTION_UNKNOWN);
  EXPECT_EQ(unknown.reason(VANTREL_METHOD_ANYWHERE), VANTREL_REASON_NOTHING_LIKE_A_CARD);
  const Cards coarse(blank.image(249.9));
  EXPECT_EQ(coarse.reason(VANTREL_METHOD_SHEET), VANTREL_REASON_RESOLUTION_TOO_LOW);
  const Cards fine(blank.image(250));
  EXPECT_EQ(fine.reason(VANTREL_METHOD_SHEET), VANTREL_REASON_NO_MARKS);
  const Cards finest(blank.image(1e300));
  EXPECT_EQ(finest.reason(VANTREL_METHOD_SHEET), VANTREL_REASON_NO_MARKS);
  Memory bits(400, 300, VANTREL_FORMAT_BILEVEL);
  std::fill(bits.bytes().begin(), bits.bytes().end(), static_cast<unsigned char>(0));
  const Cards bilevel(bits.image());
  EXPECT_EQ(bilevel.reason(VANTREL_METHOD_DARK_GLASS), VANTREL_REASON_BILEVEL);
  EXPECT_EQ(bilevel.reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_BILEVEL);
}

TEST(CardsFind, RefusesSidesThatAreTooLongOrTooShort) {
  Memory wide(32768, 2, VANTREL_FORMAT_GRAY);
  vantrel_dark_glass glass = {};
  glass.size = sizeof glass;
  const Cards reduced(wide.image());  // of two rows nothing would be left by a reduction
  EXPECT_EQ(reduced.reason(VANTREL_METHOD_DARK_GLASS), VANTREL_REASON_SCAN_TOO_LARGE);
  EXPECT_EQ(reduced.reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_SCAN_TOO_LARGE);
  EXPECT_EQ(vantrel_cards_dark_glass(reduced.get(), &glass), VANTREL_ERROR_ABSENT);
  Memory narrow(127, 400, VANTREL_FORMAT_BGR);
  EXPECT_EQ(Cards(narrow.image()).reason(VANTREL_METHOD_FLAT_LIGHT), VANTREL_REASON_SCAN_TOO_SMALL);
  Memory pixel(1, 1, VANTREL_FORMAT_GRAY);
  const Cards least(pixel.image(300));
  EXPECT_EQ(least.status(), VANTREL_OK);
  EXPECT_EQ(least.count(), 0u);
}

TEST(CardsHandle, IsReleasedOnce) {
  vantrel_cards_release(nullptr);
  EXPECT_EQ(vantrel_cards_count(nullptr), 0u);
  EXPECT_EQ(vantrel_cards_reason(nullptr, VANTREL_METHOD_SHEET), VANTREL_REASON_NOT_TRIED);
  vantrel_card card = VANTREL_CARD_INIT;
  vantrel_dark_glass glass = {};
  EXPECT_EQ(vantrel_cards_get(nullptr, 0, &card), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_cards_dark_glass(nullptr, &glass), VANTREL_ERROR_NULL);
}

TEST(CardsHandle, IsToldFromOtherMemory) {
  std::array<std::max_align_t, 1024> other{};
  auto* cards = reinterpret_cast<vantrel_cards*>(other.data());
  vantrel_card card = VANTREL_CARD_INIT;
  vantrel_dark_glass glass = {};
  glass.size = sizeof glass;
  EXPECT_EQ(vantrel_cards_count(cards), 0u);
  EXPECT_EQ(vantrel_cards_get(cards, 0, &card), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_cards_dark_glass(cards, &glass), VANTREL_ERROR_NULL);
  vantrel_cards_release(cards);
}

TEST(CardsHandle, TellsOfNoCardThatThereIsNot) {
  const Memory memory = card_on_glass();
  const Only glass(VANTREL_METHOD_DARK_GLASS);
  const Cards cards(memory.image(), &glass);
  vantrel_card card = VANTREL_CARD_INIT;
  EXPECT_EQ(vantrel_cards_get(cards.get(), 0, nullptr), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_cards_get(cards.get(), 1, &card), VANTREL_ERROR_ABSENT);
  EXPECT_EQ(vantrel_cards_get(cards.get(), std::numeric_limits<std::size_t>::max(), &card), VANTREL_ERROR_ABSENT);
  EXPECT_EQ(vantrel_cards_dark_glass(cards.get(), nullptr), VANTREL_ERROR_NULL);
  EXPECT_EQ(static_cast<int>(card.method), 0);
  EXPECT_EQ(cards.reason(pictures::number<vantrel_method>(0)), VANTREL_REASON_NOT_TRIED);
  EXPECT_EQ(cards.reason(pictures::number<vantrel_method>(5)), VANTREL_REASON_NOT_TRIED);
}

TEST(CardsHandle, FillsRecordsOfThisSizeOrLarger) {
  const Memory memory = card_on_glass();
  const Only glass(VANTREL_METHOD_DARK_GLASS);
  const Cards cards(memory.image(), &glass);
  for (const std::size_t more : {0u, 8u, 1000u}) {
    vantrel_card card = VANTREL_CARD_INIT;
    card.size += more;
    EXPECT_EQ(vantrel_cards_get(cards.get(), 0, &card), VANTREL_OK);
    EXPECT_EQ(card.size, sizeof card + more);
    EXPECT_EQ(card.method, VANTREL_METHOD_DARK_GLASS);
  }
  for (const std::size_t size : {std::size_t{0}, sizeof(std::size_t), sizeof(vantrel_card) - 1}) {
    vantrel_card card = VANTREL_CARD_INIT;
    card.size = size;
    EXPECT_EQ(vantrel_cards_get(cards.get(), 0, &card), VANTREL_ERROR_OPTION);
    EXPECT_EQ(static_cast<int>(card.method), 0);
    vantrel_dark_glass glass = {};
    glass.size = size;
    EXPECT_EQ(vantrel_cards_dark_glass(cards.get(), &glass), VANTREL_ERROR_OPTION);
    EXPECT_EQ(glass.reduction, 0);
  }
}

}  // namespace
