/**
 * @file corners.h
 * @brief Geometry of the corner search: collecting edge points, intersecting border lines, judging corners.
 */
#ifndef VANTREL_AUTOCLIP_CORNERS_H
#define VANTREL_AUTOCLIP_CORNERS_H

#include "lines/border_line.h"
#include "vantrel.h"

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
 * @param lineNormal, lineDistance the lines, laid out as vantrel::BorderLines says.
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

#endif
