/**
 * @file findings.h
 * @brief What was found on one scan, and by which method: what a handle points at.
 */
#ifndef VANTREL_CARDS_FINDINGS_H
#define VANTREL_CARDS_FINDINGS_H

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "anywhere/find.h"
#include "cards/limits.h"
#include "vantrel_cards.h"

namespace vantrel::cards {

/** Every method. */
inline constexpr std::array kMethods = {VANTREL_METHOD_DARK_GLASS, VANTREL_METHOD_FLAT_LIGHT, VANTREL_METHOD_SHEET,
                                        VANTREL_METHOD_ANYWHERE};

/** Why each method found nothing, by index_of. */
using Reasons = std::array<vantrel_reason, kMethods.size()>;

inline constexpr Reasons kNothingTried = [] {
  Reasons reasons{};
  reasons.fill(VANTREL_REASON_NOT_TRIED);
  return reasons;
}();

/** Distinguishes a handle from other memory. */
inline constexpr std::uint64_t kHandleTag = 0x76616e7472656c63;

/** The quadrilaterals that one card was preferred to, the likeliest first. */
struct Alternatives {
  int count;
  std::array<vantrel_card, anywhere::kMostAlternatives> cards;
};

}  // namespace vantrel::cards

struct vantrel_cards {
  std::uint64_t tag = vantrel::cards::kHandleTag;
  std::size_t count = 0;
  std::array<vantrel_card, vantrel::cards::kMostCards> cards{};
  vantrel::cards::Reasons reasons = vantrel::cards::kNothingTried;
  // What only one method knows; its `size` stays 0 while there is nothing to tell.
  vantrel_dark_glass dark_glass{};
  vantrel_flat_light flat_light{};
  vantrel_sheet sheet{};
  // Of each card, in a block of their own; null unless the cards were found by the method that knows of them.
  vantrel::cards::Alternatives* alternatives = nullptr;
};

namespace vantrel::cards {

/** Whether there is such a method. */
constexpr bool is_method(vantrel_method method) {
  return std::find(kMethods.begin(), kMethods.end(), method) != kMethods.end();
}

/** Where the reason of a method that there is stands. */
constexpr std::size_t index_of(vantrel_method method) { return static_cast<std::size_t>(method) - 1; }

/** Adds a card; there is room. */
inline void add_card(vantrel_cards& found, const vantrel_card& card) { found.cards[found.count++] = card; }

/** The alternatives of a card; null where there is no such card, or it was found by a method that has none. */
inline const Alternatives* alternatives_of(const vantrel_cards& found, std::size_t card) {
  const bool has_some = card < found.count && found.cards[card].method == VANTREL_METHOD_ANYWHERE;
  return has_some ? found.alternatives + card : nullptr;
}

/** How many sides were found. */
constexpr int count_found(const vantrel_side (&sides)[4]) {
  int count = 0;
  for (const vantrel_side& side : sides) count += side.found;
  return count;
}

/** The mean over the sides. */
constexpr double mean_confidence(const vantrel_side (&sides)[4]) {
  double sum = 0.0;
  for (const vantrel_side& side : sides) sum += side.confidence;
  return sum / 4;
}

}  // namespace vantrel::cards

#endif
