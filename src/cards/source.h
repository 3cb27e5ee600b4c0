/**
 * @file source.h
 * @brief Images that are read: checked, and seen as the pixels that the core works on.
 */
#ifndef VANTREL_CARDS_SOURCE_H
#define VANTREL_CARDS_SOURCE_H

#include "cards/format.h"
#include "geometry/span.h"
#include "image/view.h"

namespace vantrel::cards {

/** The shape of a picture. */
struct Shape {
  int width;
  int height;
  vantrel_format format;
};

/** Whether rows of a shape can lie `stride` bytes apart. */
vantrel_status check_rows(const Shape& shape, std::ptrdiff_t stride);

/** Whether dots per inch are known or, being 0, not known. */
bool is_resolution(double dpi);

/** What vantrel_image_check returns. */
vantrel_status check(const vantrel_image* image);

/** The pixels of a checked image, the picture's top row first. */
inline image::ConstPixels rows_from_top(const vantrel_image& image) {
  return {static_cast<const unsigned char*>(image.data), image.height, image.width, image.stride};
}

/** The pixels of a checked image in the order of memory rows: the picture's bottom row first. */
inline image::ConstPixels memory_rows(const vantrel_image& image) { return rows_from_top(image).upside_down(); }

/** A rectangle of memory rows in an image of so many rows, on a scan so many times larger. */
constexpr vantrel_rect rect_in_scan(const geometry::Rect& rect, int rows, int times) {
  return {rect.cols.first * times, (rows - rect.rows.end) * times, rect.cols.end * times,
          (rows - rect.rows.first) * times};
}

/** A part of a checked image that has whole bytes a pixel; the rectangle lies within it. */
vantrel_image part_of(const vantrel_image& image, const vantrel_rect& rectangle);

}  // namespace vantrel::cards

#endif
