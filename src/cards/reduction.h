/**
 * @file reduction.h
 * @brief By how much a scan is reduced before it is searched.
 */
#ifndef VANTREL_CARDS_REDUCTION_H
#define VANTREL_CARDS_REDUCTION_H

#include "vantrel_cards.h"

namespace vantrel::cards {

/** The whole number that brings a scan nearest to so many dots per inch; 1 when either is not known. */
int reduction_to(const vantrel_image& scan, double analysis_dpi);

/**
 * The whole number that brings a scan to the resolution at which borders on dark glass are found best: from 280 dots
 * per inch on, to 140 to 210. A scan whose resolution is not known is judged by its longer side, which of a card with a
 * rim of glass is then 600 to 800 pixels long; it is reduced from 1200 on.
 */
int reduction_for_dark_glass(const vantrel_image& scan);

}  // namespace vantrel::cards

#endif
