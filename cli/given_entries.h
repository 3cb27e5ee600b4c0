/**
 * @file given_entries.h
 * @brief What only the entries of vantrel.h answer: two detectors of single features, and the card stretched onto the
 *        frame of its scan.
 *
 * They take an image as a packed block of its own layout, which is made for each call.
 */
#ifndef VANTREL_CLI_GIVEN_ENTRIES_H
#define VANTREL_CLI_GIVEN_ENTRIES_H

#include <optional>

#include "bitmap.h"

namespace tool {

/** The corners that AutoDetectCorner finds on the scan's gray levels. @throws std::bad_alloc */
std::optional<vantrel_quad> gradient_corners(const Bitmap& scan);

/** Rows from the top; the first and the last where there is no border. */
struct BorderRows {
  int upper;
  int lower;
};

/** The border rows that ClipImg finds on the scan's gray levels. @throws std::bad_alloc */
BorderRows border_rows(const Bitmap& scan);

/**
 * The card on the frame of the scan, as AutoClipRedundantImg stretches it.
 *
 * @param analysed scan on which a card was found; `scale` times smaller.
 * @throws std::bad_alloc
 */
Bitmap stretched_card(const Bitmap& analysed, const Bitmap& scan, int scale);

}  // namespace tool

#endif
