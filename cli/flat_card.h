/**
 * @file flat_card.h
 * @brief The upright rectangle of a card on a flat background.
 */
#ifndef VANTREL_CLI_FLAT_CARD_H
#define VANTREL_CLI_FLAT_CARD_H

#include "bitmap.h"
#include "report.h"

namespace tool {

struct FlatCard {
  vantrel_reason reason;
  vantrel_flat_light seen;

  bool searched() const { return seen.reduction != 0; }
  int sides_found() const;
};

/** Searches a scan for the card. @throws Failure, std::bad_alloc */
FlatCard find_flat_card(const Bitmap& scan);

/** For each side whether it was found. */
Json sides_of(const FlatCard& card);

}  // namespace tool

#endif
