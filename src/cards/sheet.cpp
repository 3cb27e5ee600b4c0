#include <algorithm>

#include "cards/dark_glass.h"
#include "cards/find.h"
#include "cards/format.h"
#include "cards/limits.h"
#include "cards/quad.h"
#include "cards/reduce.h"
#include "cards/reduction.h"
#include "cards/source.h"
#include "segment/find_cards.h"
#include "segment/sheet_layout.h"

namespace vantrel::cards {
namespace {

/** Of a card's surroundings, in inches: enough for its borders to lie in the bands where they are looked for. */
constexpr double kMarginBeside = 0.35;
constexpr double kMarginAbove = 0.2;

/** With fewer sides found the place on the sheet is as good. */
constexpr int kSidesToStraighten = 3;

/** A card on the sheet before its own borders are looked for. */
struct Place {
  vantrel_rect rect;
  int column;
  double share;
};

/** A column's cards from the top down, one at a time; the finder's are in order from the bottom upwards. */
class FromTop {
 public:
  FromTop(const segment::Column& column, int number, int rows) : cards_(column.found()), number_(number), rows_(rows) {}

  bool empty() const { return cards_.empty(); }
  Place first() const {
    const segment::Card& card = cards_.back();
    return {rect_in_scan(card.rect, rows_, 1), number_, card.share};
  }
  Place take() {
    const Place place = first();
    cards_ = cards_.first(cards_.size() - 1);
    return place;
  }

 private:
  std::span<const segment::Card> cards_;
  int number_;
  int rows_;
};

/** Whether the left card comes first: it lies beside the right one, or above it. */
bool left_first(const FromTop& left, const FromTop& right) {
  if (left.empty() || right.empty()) return right.empty();
  const vantrel_rect& beside = right.first().rect;
  return left.first().rect.top <= (beside.top + beside.bottom - 1) / 2;
}

/** Whole dots per inch: what files say in dots per metre is a little beside them. */
int whole_dpi(double dpi) { return static_cast<int>(dpi + 0.5); }

vantrel_rect surroundings(const vantrel_rect& place, const vantrel_image& scan) {
  const int dpi = whole_dpi(scan.dpi);
  const auto beside = static_cast<int>(kMarginBeside * dpi);
  const auto above = static_cast<int>(kMarginAbove * dpi);
  return {std::max(0, place.left - beside), std::max(0, place.top - above), std::min(scan.width, place.right + beside),
          std::min(scan.height, place.bottom + above)};
}

vantrel_card card_of(const Place& place) {
  vantrel_card card = VANTREL_CARD_INIT;
  card.corners = quad_of(place.rect);
  card.confidence = place.share;
  card.method = VANTREL_METHOD_SHEET;
  return card;
}

/** Looks for a card's own borders around its place; without them the card stays as it is. */
vantrel_status straighten(const vantrel_image& scan, const Request& request, vantrel_sheet_card& details,
                          vantrel_card& card) {
  if (scan.format == VANTREL_FORMAT_BILEVEL) return VANTREL_OK;
  const vantrel_rect part = surroundings(details.place, scan);
  details.searched = part;
  vantrel_image around = part_of(scan, part);
  DarkGlass search;
  const vantrel_status status = search_dark_glass(around, reduction_to(around, request.analysis_dpi), search);
  if (status != VANTREL_OK || search.reason != VANTREL_REASON_FOUND) return status;
  if (count_found(search.card.sides) < kSidesToStraighten) return VANTREL_OK;
  details.straightened = 1;
  card = search.card;
  card.corners = moved(card.corners, part.left, part.top);
  card.method = VANTREL_METHOD_SHEET;
  return VANTREL_OK;
}

vantrel_status add_place(const vantrel_image& scan, const Request& request, const Place& place, vantrel_cards& found) {
  vantrel_sheet_card& details = found.sheet.cards[found.count];
  details.place = place.rect;
  details.column = place.column;
  vantrel_card card = card_of(place);
  const vantrel_status status = request.straighten ? straighten(scan, request, details, card) : VANTREL_OK;
  add_card(found, card);
  return status;
}

/** Adds the cards in reading order: from the top down, and of two side by side the left one first. */
vantrel_status add_places(const vantrel_image& scan, const Request& request, const segment::CardSheet& sheet,
                          vantrel_cards& found) {
  FromTop left(sheet.columns[0], 1, scan.height);
  FromTop right(sheet.columns[1], 2, scan.height);
  while ((!left.empty() || !right.empty()) && found.count < request.most_cards) {
    const Place place = left_first(left, right) ? left.take() : right.take();
    const vantrel_status status = add_place(scan, request, place, found);
    if (status != VANTREL_OK) return status;
  }
  return VANTREL_OK;
}

/** The format in which a sheet is segmented. */
vantrel_format sheet_format(vantrel_format format) { return is_colour(format) ? VANTREL_FORMAT_BGR : format; }

/**
 * As cards are measured: from the whole pixels per metre that files and image blocks keep, so that a scan is segmented
 * the same however it came. So many dots that nothing is left of the scan are as good as more.
 */
float measured_dpi(double dpi) {
  constexpr double kMost = 5e7;
  const auto per_metre = static_cast<int>(std::min(dpi, kMost) / 0.0254 + 0.5);
  return segment::dots_per_inch(per_metre, per_metre);
}

vantrel_reason refusal(double dpi) {
  if (dpi == 0.0) return VANTREL_REASON_RESOLUTION_UNKNOWN;
  return measured_dpi(dpi) < segment::kLeastDotsPerInch ? VANTREL_REASON_RESOLUTION_TOO_LOW : VANTREL_REASON_FOUND;
}

}  // namespace

vantrel_status find_on_sheet(const vantrel_image& scan, const Request& request, vantrel_cards& found) {
  vantrel_reason& reason = found.reasons[index_of(VANTREL_METHOD_SHEET)];
  reason = refusal(scan.dpi);
  if (reason != VANTREL_REASON_FOUND) return VANTREL_OK;

  const float dpi = measured_dpi(scan.dpi);
  const vantrel_format format = sheet_format(scan.format);
  const Copy copy(scan, format, 1);
  if (!copy.ready()) return VANTREL_ERROR_MEMORY;
  const segment::CardSheet sheet = segment::find_cards(copy.memory_rows(), bits_of(format), dpi);
  if (!sheet.ready) return VANTREL_ERROR_MEMORY;

  found.sheet.size = sizeof found.sheet;
  found.sheet.reduction = segment::reduction_factor(dpi);
  found.sheet.columns = sheet.two_columns ? 2 : 1;
  const vantrel_status status = add_places(scan, request, sheet, found);
  if (found.count == 0) reason = VANTREL_REASON_NO_MARKS;
  return status;
}

}  // namespace vantrel::cards
