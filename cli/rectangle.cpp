#include "rectangle.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>

#include "failure.h"

namespace tool {
namespace {

std::int16_t narrow(int bound) {
  if (bound > std::numeric_limits<std::int16_t>::max()) throw Failure("the rectangle reaches beyond 32767 pixels");
  return static_cast<std::int16_t>(bound);
}

}  // namespace

Rectangle from_memory_rows(const MYRECT& rect, int height) {
  return {rect.left, height - 1 - rect.top, rect.right, height - 1 - rect.bottom};
}

bool lies_within(const Rectangle& r, const Bitmap& image) {
  return 0 <= r.left && r.left <= r.right && r.right < image.width() && 0 <= r.top && r.top <= r.bottom &&
         r.bottom < image.height();
}

Rectangle clamped(const Rectangle& r, const Bitmap& image) {
  return {std::max(0, r.left), std::max(0, r.top), std::min(image.width() - 1, r.right),
          std::min(image.height() - 1, r.bottom)};
}

Rectangle widened(const Rectangle& r, int columns, int rows) {
  return {r.left - columns, r.top - rows, r.right + columns, r.bottom + rows};
}

Bitmap crop(Bitmap& image, const Rectangle& r) {
  const int last = image.height() - 1;
  const MYRECT rect{narrow(r.left), narrow(last - r.top), narrow(r.right), narrow(last - r.bottom), 0};
  Bitmap part;
  if (CutRectImage(image.record(), part.record(), rect) != 1) throw std::bad_alloc();
  return part;
}

std::string words_of(const Rectangle& r) {
  return std::to_string(r.width()) + " x " + std::to_string(r.height()) + " at " + std::to_string(r.left) + ", " +
         std::to_string(r.top);
}

Json json_of(const Rectangle& r) {
  return {{"left", r.left}, {"top", r.top}, {"right", r.right}, {"bottom", r.bottom}};
}

}  // namespace tool
