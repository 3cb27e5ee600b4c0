/**
 * @file image_convert.h
 * @brief Gray conversion, plane splitting and cropping, plainly.
 */
#ifndef VANTREL_TESTS_REFERENCE_IMAGE_CONVERT_H
#define VANTREL_TESTS_REFERENCE_IMAGE_CONVERT_H

#include <optional>

#include "support/picture.h"

namespace reference::image {

using support::Picture;

/** The 8-bit gray picture of a 24-bit one. */
Picture gray_of(const Picture& colour);

/** One of the three bytes of every pixel of a 24-bit picture. */
Picture plane_of(const Picture& colour, int channel);

/** Whether every pixel of a rectangle lies inside a picture. */
bool inside(const Picture& source, MYRECT rect);

/** What a crop makes: nothing for a negative size; a white picture and code -1 for depths without a crop. */
struct Crop {
  int code = -1;
  std::optional<Picture> picture;
};
Crop crop(const Picture& source, MYRECT rect);

/** Pixel `col` of a row of a 1-bit picture. */
int bit_at(const Picture& bilevel, int row, int col);

}  // namespace reference::image

#endif
