/**
 * @file card_window.h
 * @brief The rectangle of a card from the rows of its group: the columns with most of its marks, and the rows that it
 *        lacks to a card's height.
 */
#ifndef VANTREL_SEGMENT_CARD_WINDOW_H
#define VANTREL_SEGMENT_CARD_WINDOW_H

#include <span>

#include "segment/bands.h"
#include "segment/groups.h"

namespace vantrel::segment {

/** A run of columns, and which part of the black pixels in the rows looked at it holds: 0 to 1, 0 when there are none.
 */
struct Window {
  Span cols;
  double share = 0.0;
};

/**
 * The run of `length` columns with the most black pixels in the given rows; of several such runs the one that starts at
 * the mean of their starts. A strip narrower than `length` is one run.
 *
 * @param profile work memory, one entry a column of the strip.
 */
Window fullest_window(ConstPixels strip, Span rows, int length, std::span<int> profile);

/** What lies between a card and its neighbour, or the image's edge, on one side. */
struct FreeRows {
  int rows;
  bool to_edge;

  /** A neighbour is left its half. */
  int usable() const { return to_edge ? rows : rows / 2; }
};

/**
 * Grows a card that is lower than `height`: first on the side with fewer free rows (below, when equal) by up to half of
 * what is missing, then on the other by up to the rest.
 */
Span complete_height(Span card, int height, FreeRows below, FreeRows above);

/**
 * The completed rows of each group, from the bottom up. Free rows below reach to the completed card there, free rows
 * above to the group there as it is; at the ends they reach to the sheet's edge.
 */
std::array<Span, kMostGroups> complete_heights(std::span<const Span> bands, const Groups& groups, int height,
                                               int sheet_rows);

}  // namespace vantrel::segment

#endif
