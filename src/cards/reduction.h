/**
 * @file reduction.h
 * @brief By how much a scan is reduced before it is searched.
 */
#ifndef VANTREL_CARDS_REDUCTION_H
#define VANTREL_CARDS_REDUCTION_H

#include "vantrel_cards.h"

namespace vantrel::cards {

/** The whole number that brings a scan nearest to so many dots per inch; 1 when either is not known or nothing would be
 * left. */
int reduction_to(const vantrel_image& scan, double analysis_dpi);

/**
 * The whole number that brings a scan to the resolution at which borders on dark glass are found best. A scan whose
 * resolution is not known is judged by its longer side.
 */
int reduction_for_dark_glass(const vantrel_image& scan);

}  // namespace vantrel::cards

#endif
