/**
 * @file warp.h
 * @brief Filling a rectangle of an image by inverse mapping with bilinear sampling.
 *
 * `rect` is x-min, y-min, x-max, y-max, inclusive, y counted from the top; it is written from column 0 of the
 * destination, its last row in memory row 0. What would lie outside the destination is not written.
 * `depth` is 8, or anything else for three bytes a pixel; both images must have that depth.
 */
#ifndef VANTREL_AUTOCLIP_WARP_H
#define VANTREL_AUTOCLIP_WARP_H

#include "vantrel.h"

/**
 * Maps every position of `rect` with `coeffs` (see SolveMultiUnknownFunc) into the source and samples it there.
 *
 * @param dst an image of the source's width, which also gives its stride.
 * @return true.
 */
VANTREL_API bool ConvertImg2(BITMAPPTR* src, BITMAPPTR* dst, double* coeffs, double* rect, int depth);

/** As ConvertImg2 into an image of the rectangle's width. */
VANTREL_API bool ConvertImg(BITMAPPTR* src, BITMAPPTR* dst, double* coeffs, double* rect, int depth);

/**
 * Copies `rect` into an image of the rectangle's width, without mapping. With 8 bits the rectangle's y counts memory
 * rows and comes out upside down; otherwise y counts from the top and the picture stays upright. Positions outside the
 * source are left as they are in `dst`.
 */
VANTREL_API bool ConvertImg3(BITMAPPTR* src, BITMAPPTR* dst, double* coeffs, double* rect, int depth);

/**
 * Samples one byte a pixel at a fractional position, rows counted as in memory. Positions beyond the last row or column
 * repeat it; between -1 and 0 they extrapolate, so the result may be negative.
 *
 * @param depth unused.
 * @return the value, at most 255.
 */
VANTREL_API int Bilinear(float col, float row, unsigned char* plane, int rows, int cols, int stride, int depth);

#endif
