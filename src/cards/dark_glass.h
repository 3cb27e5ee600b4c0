/**
 * @file dark_glass.h
 * @brief The search for the borders of one card that nearly fills its dark background.
 */
#ifndef VANTREL_CARDS_DARK_GLASS_H
#define VANTREL_CARDS_DARK_GLASS_H

#include "cards/findings.h"

namespace vantrel::cards {

/** What the search saw, in the coordinates of the scan. */
struct DarkGlass {
  vantrel_reason reason = VANTREL_REASON_FOUND;
  vantrel_dark_glass details{}; /**< its size is 0 when the scan could not be searched */
  vantrel_card card{};          /**< when it was found */
};

/**
 * Searches a copy of the scan, which is not bilevel, so many times smaller.
 *
 * @return VANTREL_OK or VANTREL_ERROR_MEMORY.
 */
vantrel_status search_dark_glass(const vantrel_image& scan, int times, DarkGlass& search);

}  // namespace vantrel::cards

#endif
