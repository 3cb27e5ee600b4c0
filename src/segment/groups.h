/**
 * @file groups.h
 * @brief Bands gathered into groups, one a card, and the three ways of moving bands between neighbouring groups.
 */
#ifndef VANTREL_SEGMENT_GROUPS_H
#define VANTREL_SEGMENT_GROUPS_H

#include <array>
#include <span>

#include "segment/bands.h"
#include "segment/sheet_layout.h"

namespace vantrel::segment {

/** Cards in one column at most; what lies further up the sheet is dropped. */
inline constexpr int kMostGroups = 5;

/** Groups of consecutive bands: group k has the bands start[k] to start[k + 1] - 1, at least one. */
struct Groups {
  int count = 0;
  std::array<int, kMostGroups + 1> start{};

  bool operator==(const Groups&) const = default;
};

/** The rows of group k, from its first band to its last, with the gaps between them. */
Span rows_of(std::span<const Span> bands, const Groups& groups, int k);

/** Gathers the bands from the first one on into groups of no more than `card_height` rows; a single band may be higher.
 */
Groups merge_bands(std::span<const Span> bands, int card_height);

/**
 * Deals the bands out anew by lines halfway between the centres of neighbouring groups, a centre being the mean of all
 * rows in the group's bands. A group that gets none is dropped.
 */
void reassign_by_centre(std::span<const Span> bands, Groups& groups);

/**
 * Divides the bands of each two neighbouring groups by the line halfway through the rows of both; six rounds forwards
 * and backwards through the pairs at most.
 */
void balance_by_midpoint(std::span<const Span> bands, Groups& groups);

/**
 * Moves one band across the boundary of two neighbouring groups that are too close, too high or too unlike in height,
 * where that leaves enough of a gap and makes their heights not much less alike; rounds as above.
 */
void balance_by_height(std::span<const Span> bands, Groups& groups, const CardSize& size);

}  // namespace vantrel::segment

#endif
