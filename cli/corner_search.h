/**
 * @file corner_search.h
 * @brief The corner finder's record on one scan: searched, put into words, into JSON and onto an overlay.
 */
#ifndef VANTREL_CLI_CORNER_SEARCH_H
#define VANTREL_CLI_CORNER_SEARCH_H

#include <array>
#include <string>

#include "bitmap.h"
#include "canvas.h"
#include "report.h"

namespace tool {

/** Four (column, row from the top) pairs: top-left, top-right, bottom-left, bottom-right. */
using Corners = std::array<float, 8>;

struct CornerSearch {
  vantrel_corner_search found;
  int width;  /**< of the searched image */
  int height; /**< of the searched image */
  int scale;  /**< from the searched image to the scan that is cut */

  int sides_found() const;
  /** Whether there is a card: accepted corners, and at least one side that is not just the frame of the scan. */
  bool has_card() const;
  /** Corners in the scan that is cut; pixel i covers [i, i + 1). */
  Corners corners() const;
  /** What AutoClipRedundantImg returns for it. */
  int result() const { return found.verdict == VANTREL_CORNERS_FOUND ? 1 : 0; }
};

/**
 * Searches an 8- or 24-bit image for the corners of a card.
 *
 * @throws std::bad_alloc
 */
CornerSearch search_corners(Bitmap& image, int scale);

/** "4 of 4 sides found, tilt 3.1 degrees" with a card, otherwise the reason why there is none. */
std::string words_of(const CornerSearch& search);

/** result, verdict, sides, corners, box, tilt. */
Json json_of(const CornerSearch& search);

/** The corners by name. */
Json json_of_corners(const Corners& corners);

/** Shades the bands that were searched, draws found lines green and frame lines amber, and numbers the corners. */
void draw(const CornerSearch& search, Canvas& canvas);

}  // namespace tool

#endif
