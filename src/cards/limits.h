/**
 * @file limits.h
 * @brief The numbers that bound what is taken, each from the room whose it is.
 */
#ifndef VANTREL_CARDS_LIMITS_H
#define VANTREL_CARDS_LIMITS_H

#include <algorithm>

#include "anywhere/find.h"
#include "autoclip/corner_finder.h"
#include "cardcut/find_card.h"
#include "scale/enlarge.h"
#include "segment/groups.h"
#include "segment/sheet_layout.h"

namespace vantrel::cards {

/** The longest side of a scan that is searched: the finders keep positions in 16 bits. */
inline constexpr int kMostFinderSide = autoclip::kLongestSide;

/** The shortest side of a coloured scan on a flat, light background. */
inline constexpr int kLeastColourSide = cardcut::kLeastColourSide;

/** The least dots per inch of a sheet, and the most cards on one, in two columns. */
inline constexpr int kLeastSheetDpi = static_cast<int>(segment::kLeastDotsPerInch);
inline constexpr int kMostSheetCards = 2 * segment::kMostGroups;

/** The most cards on a scan, by any method. */
inline constexpr int kMostCards = std::max(anywhere::kMostCards, kMostSheetCards);

/** The longest side of a scan on which cards are looked for anywhere: sums down the columns of its blocks have 16 bits.
 */
inline constexpr int kMostAnywhereSide = 128000;

/** The longest side of an image that is enlarged. */
inline constexpr int kMostEnlargedSide = scale::kLongestSide;

}  // namespace vantrel::cards

#endif
