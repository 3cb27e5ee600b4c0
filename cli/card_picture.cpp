#include "card_picture.h"

#include "library.h"
#include "rectangle.h"

namespace tool {
namespace {

/** The pixels of an upright card; on a larger scan its corners are pixels too. */
vantrel_rect rectangle_of(const vantrel_quad& q) {
  const auto whole = [](double position) { return static_cast<int>(position); };
  return {whole(q.top_left.x), whole(q.top_left.y), whole(q.bottom_right.x), whole(q.bottom_right.y)};
}

}  // namespace

Bitmap card_picture(const Bitmap& target, const CardSearch& search, const vantrel_card& card) {
  const vantrel_quad corners = search.corners(card);
  if (card.method != VANTREL_METHOD_FLAT_LIGHT) return cut(target, corners);
  return crop(target, clamped(rectangle_of(corners), target));
}

}  // namespace tool
