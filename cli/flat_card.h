/**
 * @file flat_card.h
 * @brief The upright rectangle of a card on a flat background.
 */
#ifndef VANTREL_CLI_FLAT_CARD_H
#define VANTREL_CLI_FLAT_CARD_H

#include <array>
#include <string>

#include "rectangle.h"

namespace tool {

/** A side that is not found lies where the library's finders put it by default. */
struct FlatCard {
  MYRECT rect;               /**< in memory rows of the searched scan */
  std::array<bool, 4> found; /**< top, bottom, left, right */

  int sides_found() const;
};

/**
 * Searches an 8-bit scan, or a 24-bit one of at least 128 x 128 pixels.
 *
 * @throws Failure another scan; std::bad_alloc.
 */
FlatCard find_flat_card(Bitmap& scan);

/** For each side whether it was found. */
Json sides_of(const FlatCard& card);

}  // namespace tool

#endif
