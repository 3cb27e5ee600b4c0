/**
 * @file projective.h
 * @brief The plane projective mapping through four point pairs.
 */
#ifndef VANTREL_AUTOCLIP_PROJECTIVE_H
#define VANTREL_AUTOCLIP_PROJECTIVE_H

#include "vantrel.h"

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

#endif
