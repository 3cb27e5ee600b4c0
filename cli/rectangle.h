/**
 * @file rectangle.h
 * @brief Upright rectangles: within images, and in words. People and JSON are told the last column and row included.
 */
#ifndef VANTREL_CLI_RECTANGLE_H
#define VANTREL_CLI_RECTANGLE_H

#include <string>

#include "bitmap.h"
#include "report.h"

namespace tool {

/** Whether it is not empty and lies inside an image. */
bool lies_within(const vantrel_rect& rectangle, const Bitmap& image);

/** The part of a rectangle inside an image. */
vantrel_rect clamped(const vantrel_rect& rectangle, const Bitmap& image);

/** "630 x 396 at 35, 22". */
std::string words_of(const vantrel_rect& rectangle);

Json json_of(const vantrel_rect& rectangle);

}  // namespace tool

#endif
