/**
 * @file exports.h
 * @brief Doors: the upright rectangle of a card on a flat scanner background. (Cutting it out is declared in
 * vantrel.h.)
 *
 * Rectangles are in columns and memory rows, bounds inclusive, bottom <= top.
 *
 * Time is in proportion to the pixels: each is compared, and an edge pixel votes once for each angle of a search.
 * Memory is for a gray copy of a coloured image, and for the cells of one search, in proportion to the longer side.
 */
#ifndef VANTREL_CARDCUT_EXPORTS_H
#define VANTREL_CARDCUT_EXPORTS_H

#include "vantrel.h"

/**
 * Finds the card's rectangle by gray levels.
 *
 * @param image 8 or 24 bits; only read.
 * @param rect  receives the rectangle; bounds that were not found lie on the image's border.
 * @return false: a missing image or another depth (`rect` untouched) or no memory (`rect` is the whole image).
 */
VANTREL_API bool CutCard(BITMAPPTR* image, MYRECT& rect);

/**
 * Finds the card's rectangle by colour differences.
 *
 * @param image 24 bits, at least 128 x 128; only read.
 * @param rect  receives the rectangle; bounds that were not found are (10, height - 30, width - 10, 50).
 * @return false: a missing or another image (`rect` untouched) or no memory (`rect` holds the defaults).
 */
VANTREL_API bool CutCard24(BITMAPPTR* image, MYRECT& rect);

/**
 * The Euclidean distance of two colours, truncated; negative when the second is darker by the sum of its channels.
 */
VANTREL_API int ColorDiff(unsigned char r1, unsigned char g1, unsigned char b1, unsigned char r2, unsigned char g2,
                          unsigned char b2);

#endif
