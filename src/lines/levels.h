/**
 * @file levels.h
 * @brief How bright or dark a rectangle of a gray image is.
 */
#ifndef VANTREL_LINES_LEVELS_H
#define VANTREL_LINES_LEVELS_H

#include "geometry/span.h"
#include "image/view.h"

namespace vantrel::lines {

/** What most of an area's pixels are. */
enum class Brightness : int {
  kMixed = 0,
  kBright = 1, /**< more than three bright pixels to a dark one */
  kDark = 2    /**< more than three dark pixels to a bright one */
};

/**
 * Gray levels as one run of bytes: columns beyond the end of a row are the first ones of the rows that follow, and
 * whatever would lie behind the last row is not there. An area may reach that far: a tilted line crosses the image's
 * first row or column well outside the image.
 */
struct Levels {
  image::ConstPixels pixels;
  int row_bytes; /**< from the start of a row to its end: of a padded image the padding counts too */
};

/** The levels of an image whose rows are padded, as they lie in memory. */
inline Levels padded_levels(image::ConstPixels pixels) { return {pixels, static_cast<int>(pixels.stride)}; }

/** Classifies an area, an empty one as mixed. Bright is what lies above 180. */
Brightness brightness_of(const Levels& levels, const geometry::Rect& area);

/** Whether more than 7/22 of an area is dark (below 128), taken as one row and one column larger than it is. */
bool mostly_dark(const Levels& levels, const geometry::Rect& area);

}  // namespace vantrel::lines

#endif
