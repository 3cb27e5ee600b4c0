#include "cards/source.h"

#include <limits>

namespace vantrel::cards {

vantrel_status check_rows(const Shape& shape, std::ptrdiff_t stride) {
  if (bits_of(shape.format) == 0) return VANTREL_ERROR_FORMAT;
  if (shape.width < 1 || shape.height < 1) return VANTREL_ERROR_SIZE;
  const std::int64_t bytes = row_bytes(shape.width, shape.format);
  if (bytes > image::kMaxBytes / shape.height) return VANTREL_ERROR_SIZE;
  // The magnitude is taken as a negative number: that of the least stride has no positive one.
  const std::ptrdiff_t magnitude = stride < 0 ? stride : -stride;
  if (magnitude > -bytes) return VANTREL_ERROR_STRIDE;
  if (magnitude < -image::kMaxBytes / shape.height) return VANTREL_ERROR_SIZE;
  return VANTREL_OK;
}

bool is_resolution(double dpi) { return dpi >= 0.0 && dpi <= std::numeric_limits<double>::max(); }

vantrel_status check(const vantrel_image* image) {
  if (image == nullptr || image->data == nullptr) return VANTREL_ERROR_NULL;
  const vantrel_status rows = check_rows({image->width, image->height, image->format}, image->stride);
  if (rows != VANTREL_OK) return rows;
  return is_resolution(image->dpi) ? VANTREL_OK : VANTREL_ERROR_RESOLUTION;
}

vantrel_image part_of(const vantrel_image& image, const vantrel_rect& rectangle) {
  const std::ptrdiff_t left = std::ptrdiff_t{rectangle.left} * layout_of(image.format).bytes;
  vantrel_image part = image;
  part.data = rows_from_top(image).row(rectangle.top) + left;
  part.width = rectangle.right - rectangle.left;
  part.height = rectangle.bottom - rectangle.top;
  return part;
}

}  // namespace vantrel::cards
