/**
 * @file find_cards.h
 * @brief The cards (3.55 x 2.2 inches, lying) on one scanned sheet, in one or two columns of up to five.
 */
#ifndef VANTREL_SEGMENT_FIND_CARDS_H
#define VANTREL_SEGMENT_FIND_CARDS_H

#include <array>
#include <span>

#include "geometry/span.h"
#include "image/view.h"
#include "segment/groups.h"

namespace vantrel::segment {

/** A card on a sheet. */
struct Card {
  geometry::Rect rect; /**< in pixels of the scan, from and to those that the reduced sheet has */
  /**
   * Of the black pixels in the rows of the card's group, the part that lies within the card's columns: 0 to 1. Less
   * than 1 when the marks reach further than a card is long.
   */
  double share = 0.0;
};

/** The cards of a column, from the bottom of the picture upwards. */
struct Column {
  int count = 0;
  std::array<Card, kMostGroups> cards{};

  std::span<const Card> found() const { return std::span(cards).first(static_cast<std::size_t>(count)); }
};

/** The cards of a sheet. */
struct CardSheet {
  bool ready = false;       /**< There was memory. */
  bool two_columns = false; /**< Otherwise all cards are in the first. */
  std::array<Column, 2> columns{};
};

/** Whether the cards on a scan of that depth can be looked for. */
constexpr bool is_segmented(int bit_count) { return bit_count == 1 || bit_count == 8 || bit_count == 24; }

/**
 * Finds the cards.
 *
 * @param bit_count     of a pixel of the scan: 1, 8 or 24.
 * @param dots_per_inch at least kLeastDotsPerInch.
 */
CardSheet find_cards(ConstPixels scan, int bit_count, float dots_per_inch);

}  // namespace vantrel::segment

#endif
