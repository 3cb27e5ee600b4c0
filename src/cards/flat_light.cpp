#include <algorithm>

#include "cardcut/find_card.h"
#include "cards/find.h"
#include "cards/limits.h"
#include "cards/quad.h"
#include "cards/reduce.h"
#include "cards/reduction.h"
#include "cards/source.h"

namespace vantrel::cards {
namespace {

/** Where the finder leaves the sides that it does not find. */
geometry::Rect default_card(bool colour, int rows, int cols) {
  if (!colour) return cardcut::default_gray_card(rows, cols);
  geometry::Rect rect = cardcut::default_colour_card(rows, cols);
  // In colour no card begins above the lowest fifth: there a bound is moved to the lowest sixth, the default too.
  if (rect.rows.first > rows / 5) rect.rows.first = rows / 6;
  return rect;
}

/** A side was found when it does not lie where it does by default. */
vantrel_side side_of(int bound, int default_bound, const cardcut::SideEvidence& evidence) {
  if (bound == default_bound) return {0, 0.0};
  return {1, evidence.found ? evidence.strength : 0.0};
}

void write_sides(const cardcut::FlatCard& card, const geometry::Rect& unfound, vantrel_side (&sides)[4]) {
  using geometry::Side;
  const auto& [rows, cols] = card.rect;
  sides[VANTREL_SIDE_TOP] = side_of(rows.end, unfound.rows.end, card.sides[Side::kTop]);
  sides[VANTREL_SIDE_BOTTOM] = side_of(rows.first, unfound.rows.first, card.sides[Side::kBottom]);
  sides[VANTREL_SIDE_LEFT] = side_of(cols.first, unfound.cols.first, card.sides[Side::kLeft]);
  sides[VANTREL_SIDE_RIGHT] = side_of(cols.end, unfound.cols.end, card.sides[Side::kRight]);
}

vantrel_card card_of(const vantrel_flat_light& details) {
  vantrel_card card = VANTREL_CARD_INIT;
  card.corners = quad_of(details.rectangle);
  std::copy(std::begin(details.sides), std::end(details.sides), card.sides);
  card.confidence = mean_confidence(card.sides);
  card.method = VANTREL_METHOD_FLAT_LIGHT;
  return card;
}

/** Why a scan cannot be searched, or that it can. */
vantrel_reason refusal(const vantrel_image& scan, int times) {
  if (scan.format == VANTREL_FORMAT_BILEVEL) return VANTREL_REASON_BILEVEL;
  const int width = scan.width / times;
  const int height = scan.height / times;
  if (is_colour(scan.format) && std::min(width, height) < kLeastColourSide) return VANTREL_REASON_SCAN_TOO_SMALL;
  return std::max(width, height) > kMostFinderSide ? VANTREL_REASON_SCAN_TOO_LARGE : VANTREL_REASON_FOUND;
}

}  // namespace

vantrel_status find_on_flat_light(const vantrel_image& scan, const Request& request, vantrel_cards& found) {
  vantrel_reason& reason = found.reasons[index_of(VANTREL_METHOD_FLAT_LIGHT)];
  const int times = reduction_to(scan, request.analysis_dpi);
  reason = refusal(scan, times);
  if (reason != VANTREL_REASON_FOUND) return VANTREL_OK;

  const bool colour = is_colour(scan.format);
  const Copy copy(scan, colour ? VANTREL_FORMAT_BGR : VANTREL_FORMAT_GRAY, times);
  if (!copy.ready()) return VANTREL_ERROR_MEMORY;
  const image::ConstPixels pixels = copy.memory_rows();
  const cardcut::FlatCard card = colour ? cardcut::find_colour_card(pixels) : cardcut::find_card(pixels);
  if (!card.ready) return VANTREL_ERROR_MEMORY;

  vantrel_flat_light& details = found.flat_light;
  details.size = sizeof details;
  details.reduction = times;
  details.rectangle = rect_in_scan(card.rect, pixels.rows, times);
  write_sides(card, default_card(colour, pixels.rows, pixels.cols), details.sides);
  // Whatever is found holds pixels of the scan: the bands of opposite sides are apart, and a line crosses so much of
  // the scan within its band that it has not left it far behind in the middle, where it is told.
  if (count_found(details.sides) > 0) {
    add_card(found, card_of(details));
  } else {
    reason = VANTREL_REASON_NO_SIDE;
  }
  return VANTREL_OK;
}

}  // namespace vantrel::cards
