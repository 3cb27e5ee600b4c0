/**
 * @file border_search.h
 * @brief The search for card borders among edge points: three acceptances over one Hough vote.
 *
 * Points are shifted in place to the image's centre (rows / 2, cols / 2). The angle tables hold the sine and cosine of
 * whole degrees 0 to 179. Lines are written to the slots described at vantrel::BorderLines, each value rounded to
 * single precision.
 */
#ifndef VANTREL_LINES_BORDER_SEARCH_H
#define VANTREL_LINES_BORDER_SEARCH_H

#include "components/block_list.h"
#include "lines/border_line.h"

/**
 * Finds the two strongest near-horizontal (dirClass 0: sides 0 and 1) or the two near-vertical borders (dirClass 2:
 * side 2 with normals of 150 to 179 degrees, side 3 with 0 to 29) without looking at the image.
 *
 * @param count number of points; fewer than 2 find nothing.
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

#endif
