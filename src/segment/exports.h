/**
 * @file exports.h
 * @brief Doors: reduced gray copies by subsampling, and running-mean binarisation. (CardSeg is declared in vantrel.h.)
 *
 * Time is in proportion to the pixels that are made or binarised; besides the results there are eight numbers for each
 * column.
 */
#ifndef VANTREL_SEGMENT_EXPORTS_H
#define VANTREL_SEGMENT_EXPORTS_H

#include "vantrel.h"

/**
 * Make a gray image of every n-th pixel of every n-th row of a 24-, 8- or 1-bit image, with 1/n of its resolution.
 *
 * @param src the depth in the name is trusted.
 * @param dst must be empty (`pInfo` null); receives the image.
 * @param n   the factor; 0 or negative is refused.
 * @return false when `dst` is not empty, `n` is not positive (nothing is touched) or there is no memory.
 *
 * Colour becomes 0.114 blue + 0.587 green + 0.299 red, truncated; a set bit becomes 255, whatever the palette says.
 */
VANTREL_API bool Color2ScaledGray(BITMAPPTR* src, BITMAPPTR* dst, int n);
VANTREL_API bool Gray2ScaledGray(BITMAPPTR* src, BITMAPPTR* dst, int n);
VANTREL_API bool Bin2ScaledGray(BITMAPPTR* src, BITMAPPTR* dst, int n);

/**
 * Binarises gray pixels in place: a pixel below 27/32 of a running mean over a serpentine scan, averaged with the mean
 * stored for its column in the row before, becomes 0, any other 255 (P. D. Wellner, "Adaptive Thresholding for the
 * DigitalDesk", 1993). Trusts its arguments.
 *
 * @param pixels first row; `stride` bytes from row to row.
 * @return false when there is no memory; the pixels are then untouched.
 */
VANTREL_API bool Moving_Average(unsigned char* pixels, int width, int rows, int stride);

#endif
