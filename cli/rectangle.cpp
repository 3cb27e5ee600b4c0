#include "rectangle.h"

#include <algorithm>

namespace tool {

bool lies_within(const vantrel_rect& r, const Bitmap& image) {
  return 0 <= r.left && r.left < r.right && r.right <= image.width() && 0 <= r.top && r.top < r.bottom &&
         r.bottom <= image.height();
}

vantrel_rect clamped(const vantrel_rect& r, const Bitmap& image) {
  return {std::max(0, r.left), std::max(0, r.top), std::min(image.width(), r.right),
          std::min(image.height(), r.bottom)};
}

std::string words_of(const vantrel_rect& r) {
  return std::to_string(r.right - r.left) + " x " + std::to_string(r.bottom - r.top) + " at " + std::to_string(r.left) +
         ", " + std::to_string(r.top);
}

Json json_of(const vantrel_rect& r) {
  return {{"left", r.left}, {"top", r.top}, {"right", r.right - 1}, {"bottom", r.bottom - 1}};
}

}  // namespace tool
