/**
 * @file segment_cards.h
 * @brief The card rectangles of a sheet, the naive way.
 */
#ifndef VANTREL_TESTS_REFERENCE_SEGMENT_CARDS_H
#define VANTREL_TESTS_REFERENCE_SEGMENT_CARDS_H

#include "support/picture.h"
#include "vantrel.h"

namespace reference {

/** The code and rectangles of a sheet with the given resolution in pixels per metre. Trusts that memory suffices. */
int card_seg(const support::Picture& sheet, int x_per_metre, int y_per_metre, RectRegions& regions);

}  // namespace reference

#endif
