/**
 * @file corner_finder.h
 * @brief Finding the four corners of a card on a gray scan.
 */
#ifndef VANTREL_AUTOCLIP_CORNER_FINDER_H
#define VANTREL_AUTOCLIP_CORNER_FINDER_H

#include "image/bitmap.h"

/**
 * Finds the corners of a card on an 8-bit image.
 *
 * @param corners receives eight floats, (column, row from the top) of top-left, top-right, bottom-left, bottom-right.
 * @param box     receives the bounding box in the same order.
 * @return 1 when four corners were found and accepted, otherwise 0 (the outputs are then not defined).
 */
VANTREL_API short ClipNameCardRedundantImg(BITMAPPTR* gray, float* corners, float* box);

namespace vantrel {

/** The search behind ClipNameCardRedundantImg and vantrel_find_corners, with all it saw. */
vantrel_corner_search find_corners(const ConstPixels& gray);

}  // namespace vantrel

#endif
