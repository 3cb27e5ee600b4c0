/**
 * @file levels.h
 * @brief How bright or dark a rectangle of a gray image is.
 */
#ifndef VANTREL_LINES_LEVELS_H
#define VANTREL_LINES_LEVELS_H

#include "image/bitmap.h"

/**
 * Classifies the rectangle rows [rowFrom, rowTo) x columns [colFrom, colTo). Trusts its arguments.
 *
 * @return 1: more than three bright pixels (above 180) to a dark one; 2: more than three dark ones to a bright one;
 *         0: neither, or empty.
 */
VANTREL_API int EstimateWB(unsigned char* gray, int rowFrom, int rowTo, int colFrom, int colTo, int stride);

/**
 * Tells whether more than 7/22 of the rectangle is dark (below 128), its area taken as
 * (rowTo - rowFrom + 1) * (colTo - colFrom + 1). Trusts its arguments.
 *
 * @param side unused.
 * @return 1 or 0.
 */
VANTREL_API int EstimateBlkPixel(unsigned char* gray, int rowFrom, int rowTo, int colFrom, int colTo, int stride,
                                 int side);

namespace vantrel {

/** Rows [row_from, row_to) x columns [col_from, col_to). */
struct Region {
  int row_from;
  int row_to;
  int col_from;
  int col_to;
};

/** EstimateWB and EstimateBlkPixel, reading nothing behind the last row of the image. */
int brightness_class(const ConstPixels& gray, const Region& region);
bool mostly_dark(const ConstPixels& gray, const Region& region);

}  // namespace vantrel

#endif
