/**
 * @file verify.h
 * @brief Tests that accept or reject a candidate border line by what lies between it and the image's edge.
 *
 * L is the candidate's memory row (sides 0 and 1) or column (sides 2 and 3). `line` is the line node whose children
 * are the components of the edge map. All functions only read.
 */
#ifndef VANTREL_LINES_VERIFY_H
#define VANTREL_LINES_VERIFY_H

#include "components/block_list.h"

/** Horizontal: accepts a band that is clean, or so cluttered that it cannot be background; rejects in between. */
VANTREL_API bool VerifyCorrectLineV_2(_BNODE* line, int L, int rows, int cols, int side, short wbClass);

/** Horizontal: rejects a line that cuts through many or wide components. `side` and `wbClass` are unused. */
VANTREL_API bool VerifyCorrectLineV_3(_BNODE* line, int L, int rows, int cols, int side, short wbClass);

/** As VerifyCorrectLineV_3, over components up to a quarter of the width, and laxer about few wide ones. */
VANTREL_API bool VerifyCorrectLineV_3_ORVA(_BNODE* line, int L, int rows, int cols, int side, short wbClass);

/** Vertical: rejects a band with moderate clutter, and one covered by few large components. `wbClass` is unused. */
VANTREL_API bool VerifyCorrectLineH_0(_BNODE* line, int L, int rows, int cols, int side, short wbClass);

/**
 * Horizontal: prefers the second of two candidates when the rows beyond the first hold more than ten times as many
 * edge pixels. The two line arrays are not read. False also when there is no memory.
 *
 * @param edge rows x cols edge map, rows padded to whole 32-bit words; padding bytes of 0 count as edge pixels.
 */
VANTREL_API bool VerifyCorrectLineV_0(unsigned char* edge, double* lineNormal, double* lineDistance, int L1, int L2,
                                      int rows, int cols, int side);

/**
 * Horizontal: rejects a line beyond which between 1/22 and 1/16 of the band are edge pixels. The two float arrays are
 * not read. False also when there is no memory.
 *
 * @param edge rows of rowBytes bytes without gaps.
 */
VANTREL_API bool VerifyCorrectLineV_1(unsigned char* edge, float* a, float* b, int L, int rows, int rowBytes, int side);

#endif
