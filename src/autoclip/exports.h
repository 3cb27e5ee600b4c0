/**
 * @file exports.h
 * @brief Doors: the steps of the corner search and of the perspective warp, one by one. (AutoClipRedundantImg,
 *        AutoDetectCorner and vantrel_find_corners are declared in vantrel.h.)
 *
 * In the warps `rect` is x-min, y-min, x-max, y-max, inclusive, y counted from the top; it is written from column 0 of
 * the destination, its last row in memory row 0. What would lie outside the destination is not written. `depth` is 8,
 * or anything else for three bytes a pixel; both images must have that depth.
 *
 * A search takes the time and memory that vantrel.h tells of. A warp takes time in proportion to the pixels that it
 * writes, collecting points in proportion to the band, and neither takes memory.
 */
#ifndef VANTREL_AUTOCLIP_EXPORTS_H
#define VANTREL_AUTOCLIP_EXPORTS_H

#include "lines/exports.h"
#include "vantrel.h"

/**
 * Finds the corners of a card on an 8-bit image.
 *
 * @param corners receives eight floats, (column, row from the top) of top-left, top-right, bottom-left, bottom-right.
 * @param box     receives the bounding box in the same order.
 * @return 1 when four corners were found and accepted, otherwise 0 (the outputs are then not defined).
 */
VANTREL_API short ClipNameCardRedundantImg(BITMAPPTR* gray, float* corners, float* box);

/**
 * Collects the edge pixels of one direction class in rows [rowFrom, rowTo) x columns [colFrom, colTo), row by row.
 * Trusts its arguments; `points` needs room for every pixel of the band.
 *
 * @param edge, dir edge and direction maps, `stride` bytes from row to row.
 * @param count     receives the number of points.
 * @return 1.
 */
VANTREL_API int CalcPointCenter2(unsigned char* edge, unsigned char* dir, typePoint* points, int& count, int rowFrom,
                                 int rowTo, int colFrom, int colTo, int stride, int dirValue);

/** As CalcPointCenter2 over rows x cols pixels without row padding; `points` receives (row, column) pairs of floats. */
VANTREL_API int CalcPointCenter(unsigned char* edge, unsigned char* dir, float* points, int& count, int rows, int cols,
                                int dirValue);

/**
 * Solves a X + b Y = e, c X + d Y = f by Gauss-Jordan elimination; `col` is X and `row` is Y. A singular system gives
 * infinite or undefined values.
 */
VANTREL_API typePoint CalcUnknownFun(double a, double b, double c, double d, double e, double f);

/**
 * Intersects the four border lines.
 *
 * @param lineNormal, lineDistance the lines, laid out as lines/exports.h says.
 * @param corners receives four (column, memory row) pairs, each with half a pixel added: top with left, top with right,
 *                bottom with left, bottom with right.
 * @return false when a pair of lines is degenerate; the corners may then be partly written.
 */
VANTREL_API bool CalIntersectPoint(double* lineNormal, double* lineDistance, float* corners);

/**
 * Turns corners into rows counted from the top, orders them (top-left, top-right, bottom-left, bottom-right), clamps
 * them to the image and judges them.
 *
 * @param corners four (column, memory row) pairs in any order; rewritten in place.
 * @param box     receives the bounding box in whole pixels, four (x, y) pairs in the same order.
 * @return true when the box covers at least half of the width, of the height and of their sum.
 */
VANTREL_API bool VerifyCorrectLoc(float* corners, float* box, int rows, int cols);

/**
 * As VerifyCorrectLoc for corners whose rows already count from the top, clamping only columns: below 0 to 1, above
 * cols to cols - 1.
 */
VANTREL_API bool VerifyCorrectLoc_M(float* box, float* corners, int rows, int cols);

/** Compares the first floats of two 8-byte elements: -1, 0 or 1; 1 when either is not a number. */
VANTREL_API int comp_ycoord(const void* p, const void* q);

/**
 * Solves the eight coefficients of u = (c0 x + c1 y + c2) / D, v = (c3 x + c4 y + c5) / D, D = c6 x + c7 y + 1 (see
 * G. Wolberg, "Digital Image Warping", 1990, on inferring projective mappings).
 *
 * @param coeffs receives the coefficients.
 * @param from   four (x, y) pairs.
 * @param to     the four (u, v) pairs that they map to.
 * @param n      8. With fewer only the first n equations and results count.
 * @return always 1: a singular system gives large coefficients.
 */
VANTREL_API int SolveMultiUnknownFunc(double* coeffs, float* from, float* to, int n);

/** One coordinate of the mapping with its half pixel: (float)((x a + y b + c) / d) + 0.5. The two are the same. */
VANTREL_API float Get_U(double a, double b, double c, double d, int x, int y);
VANTREL_API float Get_V(double a, double b, double c, double d, int x, int y);

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
