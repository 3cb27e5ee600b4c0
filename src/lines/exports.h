/**
 * @file exports.h
 * @brief Doors: edge maps, brightness, the searches for card borders, and the tests of a candidate border.
 *
 * Lines are laid out in two arrays: that of side s (0 top, 1 bottom, 2 left, 3 right of the picture) is a * x + b * y =
 * c with a = lineNormal[2s], b = lineNormal[2s + 1], c = lineDistance[s], x a column and y a memory row; every value is
 * rounded to single precision. The angle tables hold the sine and cosine of whole degrees 0 to 179.
 *
 * `line` is the line node of a block list whose children are the components of the edge map. In the tests L is the
 * candidate's memory row (sides 0 and 1) or column (sides 2 and 3); they only read.
 *
 * Marking and classifying take time in proportion to the area, a search in proportion to the points, the angles it
 * tries (180 at most) and the cells it votes for (two for each angle and each pixel of the longer side), a test in
 * proportion to the components or to the rows and columns it looks at. None takes memory but the cells and a number for
 * each row.
 */
#ifndef VANTREL_LINES_EXPORTS_H
#define VANTREL_LINES_EXPORTS_H

#include "components/exports.h"
#include "vantrel.h"

/** An edge point: memory row and column. */
struct typePoint {
  float row;
  float col;
};

/**
 * Marks the edge pixels outside an interior rectangle. Trusts its arguments.
 *
 * Visits rows 1 to rows - 3 and columns 1 to cols - 3; all other pixels of the maps stay as they were.
 *
 * @param gray     rows x cols gray levels, `stride` bytes from row to row.
 * @param edge     same geometry; receives 0 for an edge pixel (a gradient of kLeastEdgeMagnitude or more), otherwise
 * 255.
 * @param dir      same geometry; receives the gradient's direction class: 0 across the rows, 2 along the rows, 1 and 3
 *                 between them, 4 for no edge.
 * @param interior columns `left` to `right`, rows `top` to `bottom` (here top < bottom). Pixels more than rows / 15
 *                 rows and cols / 25 columns inside it are marked as no edge without being looked at.
 *
 * The operator is I. Sobel and G. Feldman's 3 x 3 gradient ("A 3x3 Isotropic Gradient Operator", 1968).
 */
VANTREL_API void Sobel_Operator(unsigned char* gray, unsigned char* edge, unsigned char* dir, int rows, int cols,
                                int stride, MYRECT interior);

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

/** Makes a zero-filled matrix; row k starts k * cols doubles into the block. Null: no memory, or negative sizes. */
VANTREL_API double** MakeMatrix(int rows, int cols);

/** Releases a matrix from MakeMatrix; not null. */
VANTREL_API void FreeMatrix(double** m);

/**
 * Finds the two strongest near-horizontal (dirClass 0: sides 0 and 1) or the two near-vertical borders (dirClass 2:
 * side 2 with normals of 150 to 179 degrees, side 3 with 0 to 29) without looking at the image.
 *
 * @param points moved in place to the image's centre (rows / 2, cols / 2), here and in the two searches below.
 * @param count  number of points; fewer than 2 find nothing.
 * @return 1 when both were found and written (any other dirClass: 1, nothing written), 0 otherwise.
 */
VANTREL_API int Compute_Hough_Angle(double* lineNormal, double* lineDistance, typePoint* points, int rows, int cols,
                                    int count, int dirClass, double* sinTable, double* cosTable);

/**
 * Finds the border line of one side and accepts it after tests of the area beyond it.
 *
 * @param gray     rows x cols gray image, rows padded to whole 32-bit words.
 * @param line     the line node whose children are the components of the edge map.
 * @param edge     the edge map, in the gray image's geometry.
 * @param count    number of points; fewer than 50 find nothing.
 * @param dirClass 0 for sides 0 and 1, 2 for sides 2 and 3.
 * @param wbClass  EstimateWB of the whole image.
 * @return 0: no acceptable line; the side's slots may have been partly written. 1: one clear horizontal line. 2: one of
 *         two horizontal candidates, or a vertical line (any other dirClass: 2, nothing written).
 */
VANTREL_API int Compute_Hough_Angle2(unsigned char* gray, _BNODE* line, unsigned char* edge, double* lineNormal,
                                     double* lineDistance, typePoint* points, int rows, int cols, int count,
                                     int dirClass, double* sinTable, double* cosTable, int side, short wbClass);

/**
 * As Compute_Hough_Angle2, but horizontal borders are reported as level lines, need fewer votes on side 1, yield sooner
 * to the runner-up, and are tested by the darkness beyond them and VerifyCorrectLineV_3_ORVA alone.
 */
VANTREL_API int Compute_Hough_Angle3(unsigned char* gray, _BNODE* line, unsigned char* edge, double* lineNormal,
                                     double* lineDistance, typePoint* points, int rows, int cols, int count,
                                     int dirClass, double* sinTable, double* cosTable, int side, short wbClass);

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
