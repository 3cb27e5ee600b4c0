/**
 * @file corner_search.h
 * @brief The search for one card on dark glass: made, put into words, into JSON and onto an overlay.
 */
#ifndef VANTREL_CLI_CORNER_SEARCH_H
#define VANTREL_CLI_CORNER_SEARCH_H

#include <string>

#include "bitmap.h"
#include "canvas.h"
#include "library.h"
#include "report.h"

namespace tool {

/** On what the borders are looked for. */
enum class Analysis {
  kReduced, /**< on a copy in the resolution that the library prefers */
  kAsItIs   /**< on the very scan */
};

struct CornerSearch {
  vantrel_reason reason;
  vantrel_dark_glass seen;
  int scale; /**< from the searched scan to the scan that is cut */

  bool has_card() const { return reason == VANTREL_REASON_FOUND; }
  int sides_found() const;
  /** Corners in the scan that is cut. */
  vantrel_quad corners() const;
};

/** Asks the library for an analysis; the view may get another resolution for it. */
void choose_analysis(Analysis analysis, vantrel_image& view, vantrel_find_options& options);

/** What was seen on dark glass, after it was looked for there. */
CornerSearch corner_search_of(const Cards& cards, const Bitmap& scan, int scale);

/** Searches a scan for the corners of a card. @throws Failure, std::bad_alloc */
CornerSearch search_corners(const Bitmap& scan, Analysis analysis, int scale);

/** " (top, left: the frame of the scan)", or nothing with all sides found. */
std::string words_of_frame(const CornerSearch& search);

/** "4 of 4 sides found, tilt 3.1 degrees" with a card, otherwise the reason why there is none. */
std::string words_of(const CornerSearch& search);

/** result, verdict, sides, corners, box, tilt. */
Json json_of(const CornerSearch& search);

/** The corners by name. */
Json json_of(const vantrel_quad& corners);

/** Shades the bands that were searched, draws found lines green and frame lines amber, and numbers the corners. */
void draw(const CornerSearch& search, Canvas& canvas);

}  // namespace tool

#endif
