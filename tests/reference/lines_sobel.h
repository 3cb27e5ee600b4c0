/**
 * @file lines_sobel.h
 * @brief Edge and direction maps and the two level estimates, plainly.
 */
#ifndef VANTREL_TESTS_REFERENCE_LINES_SOBEL_H
#define VANTREL_TESTS_REFERENCE_LINES_SOBEL_H

#include "support/picture.h"

namespace reference::lines {

using support::Picture;

/** Edge map (0 edge, 255 none) and direction map (0 to 3, 4 none) of a gray picture. */
struct EdgeMaps {
  Picture edge;
  Picture dir;
};

/** Maps in which nothing is marked yet. */
EdgeMaps blank_maps(const Picture& gray);

/** Marks the edges outside the interior rectangle. */
void sobel(const Picture& gray, MYRECT interior, EdgeMaps& maps);

/** 1 mostly bright, 2 mostly dark, 0 neither. Bytes that lie beyond the last row count as neither. */
int brightness(const Picture& gray, int row_from, int row_to, int col_from, int col_to);

/** Whether more than 7/22 of a rectangle is dark. Bytes that lie beyond the last row are not dark. */
bool dark(const Picture& gray, int row_from, int row_to, int col_from, int col_to);

}  // namespace reference::lines

#endif
