/**
 * @file sheet_layout.h
 * @brief The scale of a sheet of cards: how far it is reduced, how large a card is then, and whether the cards lie in
 *        one column or two.
 */
#ifndef VANTREL_SEGMENT_SHEET_LAYOUT_H
#define VANTREL_SEGMENT_SHEET_LAYOUT_H

#include "image/view.h"

namespace vantrel::segment {

/** Scans below this resolution are refused. */
inline constexpr float kLeastDotsPerInch = 250.0f;

/** The coarser of two resolutions in pixels per metre, in dots per inch. */
float dots_per_inch(int x_pels_per_metre, int y_pels_per_metre);

/** The factor that brings a scan to about 100 dots per inch; at least 3 for the resolutions that are not refused. */
int reduction_factor(float dots_per_inch);

/** The sizes by which cards are told apart, in rows and columns of the reduced sheet. */
struct CardSize {
  int height;      /**< rows of a card, 2.2 inches */
  int length;      /**< columns of a card, 3.55 inches */
  int bridged_gap; /**< rows from dense to dense row below which a gap lies within a card, 0.18 inches */
  int least_gap;   /**< rows that lie between two cards at least, 0.3 inches */
  int dense_count; /**< black pixels that a dense row exceeds, 1/24 of the length */
};

CardSize card_size(float dots_per_inch, int factor);

/**
 * Whether the sheet is wider than two cards and its middle ten columns are blank in all rows but an eighth of a card's
 * height.
 *
 * @param sheet black (0) and white (255) pixels.
 */
bool has_two_columns(image::ConstPixels sheet, const CardSize& size);

}  // namespace vantrel::segment

#endif
