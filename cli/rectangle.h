/**
 * @file rectangle.h
 * @brief Upright rectangles in rows from the top, and between them and the library's rows from the bottom.
 */
#ifndef VANTREL_CLI_RECTANGLE_H
#define VANTREL_CLI_RECTANGLE_H

#include <string>

#include "bitmap.h"
#include "report.h"

namespace tool {

/** Columns and rows from the top, bounds included. */
struct Rectangle {
  int left;
  int top;
  int right;
  int bottom;

  int width() const { return right - left + 1; }
  int height() const { return bottom - top + 1; }
};

/** @param height of the image. */
Rectangle from_memory_rows(const MYRECT& rect, int height);

/** Whether it is not empty and lies inside an image. */
bool lies_within(const Rectangle& rectangle, const Bitmap& image);

/** The part of a rectangle inside an image. */
Rectangle clamped(const Rectangle& rectangle, const Bitmap& image);

/** A rectangle with so many more columns on the left and right and rows above and below. */
Rectangle widened(const Rectangle& rectangle, int columns, int rows);

/**
 * Cuts a rectangle that lies within a 1-, 8- or 24-bit image.
 *
 * @throws Failure a bound exceeds the library's 16 bits; std::bad_alloc.
 */
Bitmap crop(Bitmap& image, const Rectangle& rectangle);

/** "630 x 396 at 35, 22". */
std::string words_of(const Rectangle& rectangle);

Json json_of(const Rectangle& rectangle);

}  // namespace tool

#endif
