/**
 * @file sobel.h
 * @brief Sobel edge and direction maps.
 */
#ifndef VANTREL_LINES_SOBEL_H
#define VANTREL_LINES_SOBEL_H

#include "vantrel.h"

/**
 * Marks the edge pixels outside an interior rectangle. Trusts its arguments.
 *
 * Visits rows 1 to rows - 3 and columns 1 to cols - 3; all other pixels of the maps stay as they were.
 *
 * @param gray     rows x cols gray levels, `stride` bytes from row to row.
 * @param edge     same geometry; receives 0 for an edge pixel (gradient magnitude above 200), otherwise 255.
 * @param dir      same geometry; receives the gradient's direction class: 0 across the rows, 2 along the rows, 1 and 3
 *                 between them, 4 for no edge.
 * @param interior columns `left` to `right`, rows `top` to `bottom` (here top < bottom). Pixels more than rows / 15
 *                 rows and cols / 25 columns inside it are marked as no edge without being looked at.
 *
 * The operator is I. Sobel and G. Feldman's 3 x 3 gradient ("A 3x3 Isotropic Gradient Operator", 1968).
 */
VANTREL_API void Sobel_Operator(unsigned char* gray, unsigned char* edge, unsigned char* dir, int rows, int cols,
                                int stride, MYRECT interior);

namespace vantrel {

inline constexpr unsigned char kEdge = 0;
inline constexpr unsigned char kNoEdge = 255;
inline constexpr unsigned char kNoDirection = 4;

/** The direction class 0 to 3 of a gradient: its angle folded into half a turn and rounded to a quarter of it. */
int direction_class(int across_rows, int along_rows);

}  // namespace vantrel

#endif
