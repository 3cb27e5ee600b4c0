/**
 * @file card_image.h
 * @brief The card at its own size, and the reduced copy in which its corners may be searched.
 */
#ifndef VANTREL_CLI_CARD_IMAGE_H
#define VANTREL_CLI_CARD_IMAGE_H

#include "corner_search.h"

namespace tool {

/**
 * Straightens the quadrilateral between the corners into an upright picture of the mean length of its opposite edges,
 * with the scan's depth and resolution.
 *
 * @param scan 8 or 24 bits.
 * @throws Failure the corners enclose nothing; std::bad_alloc.
 */
Bitmap card_image(Bitmap& scan, const Corners& corners);

/**
 * An n times smaller copy of an 8- or 24-bit scan, every pixel the mean of n x n; the remainder at the right and lower
 * edge is left out, so that a position times n is the position in the scan.
 *
 * @throws Failure the scan is smaller than n x n; std::bad_alloc.
 */
Bitmap reduced_copy(const Bitmap& scan, int n);

/** A copy with the other depth: 8 bits from 24 by the library's weights, or 24 bits from 8. */
Bitmap with_depth(const Bitmap& image, int depth);

}  // namespace tool

#endif
