// Doors of vantrel_cards.h that write pictures.
#include <algorithm>

#include "cards/cut.h"
#include "cards/limits.h"
#include "cards/reduce.h"
#include "cards/target.h"
#include "scale/enlarge.h"

namespace cards = vantrel::cards;

namespace {

using cards::Shape;
using cards::Target;

/** An image that is read and has whole bytes a pixel. */
vantrel_status check_levels(const vantrel_image* image) {
  const vantrel_status status = cards::check(image);
  if (status != VANTREL_OK) return status;
  return image->format == VANTREL_FORMAT_BILEVEL ? VANTREL_ERROR_FORMAT : VANTREL_OK;
}

/**
 * Makes a picture: of the shape that is asked for where `fits(shape)`, else of none. `fill(target)` writes the pixels
 * and tells whether there was memory for it.
 */
template <class Fits, class Fill>
vantrel_status make(vantrel_picture& picture, const Shape& natural, Fits fits, Fill fill) {
  Shape shape;
  const vantrel_status status = cards::requested_shape(picture, natural, shape);
  if (status != VANTREL_OK) return status;
  if (!fits(shape)) return VANTREL_ERROR_TARGET;
  Target target(picture, shape);
  if (!target.ready() || !fill(target)) return VANTREL_ERROR_MEMORY;
  target.hand_over(picture);
  return VANTREL_OK;
}

/** A picture of exactly the natural shape. */
template <class Fill>
vantrel_status make_natural(vantrel_picture& picture, const Shape& natural, Fill fill) {
  return make(
      picture, natural,
      [&](const Shape& shape) {
        return shape.width == natural.width && shape.height == natural.height && shape.format == natural.format;
      },
      [&](Target& target) {
        fill(target);
        return true;
      });
}

bool is_enlargement(vantrel_enlargement method) {
  return method == VANTREL_ENLARGE_LINEAR || method == VANTREL_ENLARGE_CUBIC;
}

bool enlarge(const vantrel_image& image, vantrel_enlargement method, const Target& target) {
  const auto enlarge_by =
      method == VANTREL_ENLARGE_LINEAR ? vantrel::scale::enlarge_bilinear : vantrel::scale::enlarge_bicubic;
  return enlarge_by(cards::memory_rows(image), target.memory_rows(), cards::layout_of(image.format).bytes);
}

}  // namespace

vantrel_status vantrel_cut_size(const vantrel_quad* corners, double margin, int32_t* width, int32_t* height) {
  if (corners == nullptr || width == nullptr || height == nullptr) return VANTREL_ERROR_NULL;
  const vantrel_status status = cards::check_cut(*corners, margin);
  if (status != VANTREL_OK) return status;
  const Shape natural = cards::natural_cut(*corners, margin, VANTREL_FORMAT_GRAY);
  if (natural.width == 0) return VANTREL_ERROR_SIZE;
  *width = natural.width;
  *height = natural.height;
  return VANTREL_OK;
}

vantrel_status vantrel_cut(const vantrel_image* scan, const vantrel_quad* corners, double margin,
                           vantrel_picture* target) {
  if (corners == nullptr || target == nullptr) return VANTREL_ERROR_NULL;
  const vantrel_status image = check_levels(scan);
  if (image != VANTREL_OK) return image;
  const vantrel_status checked = cards::check_cut(*corners, margin);
  if (checked != VANTREL_OK) return checked;
  const Shape natural = cards::natural_cut(*corners, margin, scan->format);
  return make(
      *target, natural,
      [&](const Shape& shape) { return shape.format == scan->format && cards::leaves_room(shape, margin); },
      [&](Target& made) {
        cards::cut(*scan, *corners, margin, made);
        return true;
      });
}

vantrel_status vantrel_crop(const vantrel_image* image, const vantrel_rect* rectangle, vantrel_picture* target) {
  if (rectangle == nullptr || target == nullptr) return VANTREL_ERROR_NULL;
  const vantrel_status status = cards::check(image);
  if (status != VANTREL_OK) return status;
  if (!cards::lies_within(*rectangle, *image)) return VANTREL_ERROR_GEOMETRY;
  const Shape natural = {rectangle->right - rectangle->left, rectangle->bottom - rectangle->top, image->format};
  return make_natural(*target, natural, [&](Target& made) { cards::crop(*image, *rectangle, made); });
}

vantrel_status vantrel_enlarge(const vantrel_image* image, vantrel_enlargement method, vantrel_picture* target) {
  if (target == nullptr) return VANTREL_ERROR_NULL;
  const vantrel_status status = check_levels(image);
  if (status != VANTREL_OK) return status;
  if (!is_enlargement(method)) return VANTREL_ERROR_OPTION;
  if (std::max(image->width, image->height) > cards::kMostEnlargedSide) return VANTREL_ERROR_SIZE;
  const Shape natural = {2 * image->width, 2 * image->height, image->format};
  return make(
      *target, natural,
      [&](const Shape& shape) {
        return shape.width >= natural.width && shape.height == natural.height && shape.format == natural.format;
      },
      [&](const Target& made) { return enlarge(*image, method, made); });
}

vantrel_status vantrel_reduce(const vantrel_image* image, int32_t times, vantrel_picture* target) {
  if (target == nullptr) return VANTREL_ERROR_NULL;
  const vantrel_status status = check_levels(image);
  if (status != VANTREL_OK) return status;
  if (times < 1 || times > cards::kMostTimes) return VANTREL_ERROR_OPTION;
  if (std::min(image->width, image->height) < times) return VANTREL_ERROR_SIZE;
  const Shape natural = {image->width / times, image->height / times, image->format};
  return make_natural(*target, natural, [&](Target& made) { cards::reduce(*image, times, made); });
}

vantrel_status vantrel_convert(const vantrel_image* image, vantrel_picture* target) {
  if (target == nullptr) return VANTREL_ERROR_NULL;
  const vantrel_status status = cards::check(image);
  if (status != VANTREL_OK) return status;
  const Shape natural = {image->width, image->height, VANTREL_FORMAT_GRAY};
  return make(
      *target, natural,
      [&](const Shape& shape) {
        const bool to_bilevel = shape.format == VANTREL_FORMAT_BILEVEL;
        return shape.width == natural.width && shape.height == natural.height &&
               (!to_bilevel || image->format == VANTREL_FORMAT_BILEVEL);
      },
      [&](Target& made) {
        cards::convert(*image, made);
        return true;
      });
}
