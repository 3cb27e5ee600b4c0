/**
 * @file find_card.h
 * @brief The upright rectangle of a card on a flat scanner background.
 *
 * The card's lower border and its upper border are nearly horizontal lines, found by Hough votes in bands of the image;
 * its left and right bounds are corners along the lower border.
 */
#ifndef VANTREL_CARDCUT_FIND_CARD_H
#define VANTREL_CARDCUT_FIND_CARD_H

#include "geometry/line.h"
#include "geometry/span.h"
#include "image/view.h"

namespace vantrel::cardcut {

using geometry::Rect;
using geometry::Span;
using image::ConstPixels;

/** Where a side of the card comes from. */
struct SideEvidence {
  /** Found in the image. Otherwise the side lies where it does by default. */
  bool found = false;
  /**
   * How strongly, from 0 (not found) to 1. Of the lower and the upper border: the part of the columns looked at in
   * which the line runs over an edge. Of the left and right bounds, which are corners: 1.
   */
  double strength = 0.0;
};

/** The card and what is known of its sides. */
struct FlatCard {
  bool ready = false; /**< There was memory. Otherwise the rectangle is the default one. */
  Rect rect;          /**< Its first row is the lower border, its last column the right bound. */
  geometry::PerSide<SideEvidence> sides;
};

/** The card of a gray scan on which nothing is found: the whole image. */
constexpr Rect default_gray_card(int rows, int cols) { return {{0, rows}, {0, cols}}; }

/** The card of a colour scan on which nothing is found: a narrow margin is given away rather than kept. */
constexpr Rect default_colour_card(int rows, int cols) { return {{50, rows - 29}, {10, cols - 9}}; }

/** A colour scan has at least so many rows and columns. */
inline constexpr int kLeastColourSide = 128;

/** Finds the card on a scan of gray levels. */
FlatCard find_card(ConstPixels gray);

/** Finds the card by the gray levels of a scan of blue, green and red. */
FlatCard find_card_by_gray_levels(ConstPixels bgr);

/** Finds the card by the colours of a scan of blue, green and red, kLeastColourSide or more rows and columns of them.
 */
FlatCard find_colour_card(ConstPixels bgr);

}  // namespace vantrel::cardcut

#endif
