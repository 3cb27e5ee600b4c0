/**
 * @file gray_copy.h
 * @brief A small gray copy of a scan, to look at what is print and what is paper.
 */
#ifndef VANTREL_CLI_GRAY_COPY_H
#define VANTREL_CLI_GRAY_COPY_H

#include "bitmap.h"

namespace tool {

/** Means over square blocks of the scan. */
struct GrayCopy {
  Bitmap pixels;
  int times; /**< so many times smaller than the scan */

  int width() const { return pixels.width(); }
  int height() const { return pixels.height(); }
  /** One row of levels. */
  const unsigned char* row(int y) const;
};

/** A copy whose longer side has about so many pixels; a smaller scan stays as it is. @throws std::bad_alloc */
GrayCopy gray_copy(const Bitmap& scan, int longer_side);

}  // namespace tool

#endif
