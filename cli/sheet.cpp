#include "sheet.h"

#include "library.h"
#include "rectangle.h"
#include "words.h"

namespace tool {
namespace {

bool has_poor_resolution(const Sheet& sheet) {
  return sheet.reason == VANTREL_REASON_RESOLUTION_UNKNOWN || sheet.reason == VANTREL_REASON_RESOLUTION_TOO_LOW;
}

vantrel_quad moved(const vantrel_quad& q, double x, double y) {
  const auto point = [&](const vantrel_point& p) { return vantrel_point{p.x + x, p.y + y}; };
  return {point(q.top_left), point(q.top_right), point(q.bottom_right), point(q.bottom_left)};
}

}  // namespace

Sheet find_sheet_cards(const Bitmap& scan, const SheetRequest& request) {
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.straighten = request.straighten ? 1 : 0;
  options.most_cards = request.most_cards;
  const Cards cards = find(scan.view(), VANTREL_METHOD_SHEET, options);
  const vantrel_sheet seen = sheet_of(cards);
  Sheet sheet{vantrel_cards_reason(cards.get(), VANTREL_METHOD_SHEET), {}};
  for (std::size_t i = 0; i < vantrel_cards_count(cards.get()); ++i) {
    sheet.cards.push_back({seen.cards[i], card_at(cards, i).corners});
  }
  return sheet;
}

Bitmap take_card(const Bitmap& scan, const SheetCard& card) {
  if (card.seen.straightened == 0) return crop(scan, clamped(card.seen.place, scan));
  // The surroundings of the card are all that it is sampled from: what lies farther out is another card's.
  const vantrel_rect& searched = card.seen.searched;
  return cut(crop(scan, searched), moved(card.corners, -searched.left, -searched.top));
}

Json json_of(const Sheet& sheet) {
  constexpr int kResolutionTooLow = -3;
  Json json = {{"result", has_poor_resolution(sheet) ? kResolutionTooLow : 1}, {"cards", Json::array()}};
  for (const SheetCard& card : sheet.cards) {
    json["cards"].push_back({{"column", card.seen.column}, {"rectangle", json_of(card.seen.place)}});
  }
  return json;
}

std::string reason_without_cards(const Sheet& sheet, const Bitmap& scan) {
  if (!has_poor_resolution(sheet)) return words_of(sheet.reason);
  const std::string resolution =
      sheet.reason == VANTREL_REASON_RESOLUTION_UNKNOWN
          ? words_of(sheet.reason)
          : "the resolution is " + std::to_string(static_cast<int>(scan.view().dpi)) + " dpi";
  return resolution + ": sheets need " + std::to_string(vantrel_limit_value(VANTREL_LIMIT_SHEET_DPI)) +
         " dpi or more (--dpi tells it)";
}

void draw(const Sheet& sheet, Canvas& canvas, Colour colour) {
  int number = 0;
  for (const SheetCard& card : sheet.cards) {
    const vantrel_rect& r = card.seen.place;
    canvas.frame(r, colour);
    canvas.label((r.left + r.right - 1) / 2.0, (r.top + r.bottom - 1) / 2.0, std::to_string(++number), colour);
  }
}

}  // namespace tool
