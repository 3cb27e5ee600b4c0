#include "cards/target.h"

#include <utility>

namespace vantrel::cards {
namespace {

/** The rows of a block of the library's lie one behind the other. */
vantrel_picture make_block(const Shape& shape) {
  const auto stride = static_cast<std::ptrdiff_t>(row_bytes(shape.width, shape.format));
  // Cleared: what lies behind the last bit of a bilevel row is written by nobody.
  void* block = std::calloc(static_cast<std::size_t>(shape.height), static_cast<std::size_t>(stride));
  return {block, shape.width, shape.height, stride, shape.format, block};
}

}  // namespace

vantrel_status requested_shape(const vantrel_picture& picture, const Shape& natural, Shape& shape) {
  shape = {picture.width, picture.height, picture.format};
  // A block of the library's that was not given back would be lost.
  if (picture.block != nullptr) return VANTREL_ERROR_TARGET;
  if (picture.data != nullptr) return check_rows(shape, picture.stride);
  if (shape.width == 0) shape.width = natural.width;
  if (shape.height == 0) shape.height = natural.height;
  if (static_cast<int>(shape.format) == 0) shape.format = natural.format;
  return check_rows(shape, static_cast<std::ptrdiff_t>(row_bytes(shape.width, shape.format)));
}

Target::Target(const vantrel_picture& picture, const Shape& shape)
    : made_(picture.data != nullptr ? picture : make_block(shape)), block_(made_.block) {}

void Target::hand_over(vantrel_picture& picture) {
  picture = made_;
  block_ = nullptr;
}

}  // namespace vantrel::cards
