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

  vantrel_card card; /**< as seen, where any side was found */

  bool searched() const { return seen.reduction != 0; }
  int sides_found() const;
};

/** A card on flat light whose sides that were not found lie on the frame of the scan; any other as it is. */
vantrel_card on_frame(const vantrel_card& card, const Bitmap& scan);

/** Searches a scan for the card; a side not found is the frame of the scan. @throws Failure, std::bad_alloc */
FlatCard find_flat_card(const Bitmap& scan);

/** For each side whether it was found. */
Json sides_of(const FlatCard& card);

}  // namespace tool

#endif
