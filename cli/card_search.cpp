#include "card_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "library.h"
#include "words.h"

namespace tool {
namespace {

/** From here on a card found anywhere is no guess, and a side of it is no guess either. */
constexpr double kSure = 0.5;

enum class SideState { kFound, kWeak, kGuessed };

SideState state_of(const vantrel_side& side) {
  if (side.found != 0) return SideState::kFound;
  return side.confidence >= kSure ? SideState::kWeak : SideState::kGuessed;
}

const char* name_of(SideState state) {
  constexpr std::array kNames = {"found", "weak", "guessed"};
  return kNames[static_cast<std::size_t>(state)];
}

Colour colour_of(SideState state) {
  constexpr std::array kColours = {kGreen, kAmber, kRed};
  return kColours[static_cast<std::size_t>(state)];
}

int sides_found(const vantrel_card& card) {
  int count = 0;
  for (const vantrel_side& side : card.sides) count += side.found;
  return count;
}

/**
 * Whether a card may be cut. On dark glass, and on a flat ground that was asked for, one side is enough, since the
 * method says what stands in for the others. A flat ground that was not asked for is a guess, for a page of text has
 * such a rectangle too; and the place of a card on a sheet is none of a single card's.
 */
bool is_sure(const vantrel_card& card, const CardRequest& request) {
  switch (card.method) {
    case VANTREL_METHOD_ANYWHERE:
      return card.confidence >= kSure;
    case VANTREL_METHOD_FLAT_LIGHT:
      return request.method && sides_found(card) > 0;
    case VANTREL_METHOD_SHEET:
      return false;
    default:
      return true;
  }
}

std::string rounded(double value, const char* format) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

double thousandths(double value) { return std::round(value * 1000) / 1000; }

/** " (left: weak, top: guessed)", or nothing with all sides found. */
std::string words_of_sides(const vantrel_card& card) {
  std::string names;
  for (std::size_t side = 0; side < 4; ++side) {
    const SideState state = state_of(card.sides[side]);
    if (state == SideState::kFound) continue;
    names += (names.empty() ? "" : ", ") + std::string(kSideNames[side]) + ": " + name_of(state);
  }
  return names.empty() ? "" : " (" + names + ")";
}

std::string words_of_card(const vantrel_card& card) {
  return std::to_string(sides_found(card)) + " of 4 sides found" + words_of_sides(card) + ", tilt " +
         rounded(card.tilt, "%.1f") + " degrees, confidence " + rounded(card.confidence, "%.2f");
}

/** Why there is no card that is sure: on dark glass, or else anywhere; and what is only a guess. */
std::string words_without_card(const CardSearch& search) {
  const bool on_glass = search.glass && search.glass->reason != VANTREL_REASON_BILEVEL;
  if (on_glass && search.cards.empty()) return words_of(search.glass->reason);
  if (search.cards.empty()) return words_of(search.reason);
  const vantrel_card& card = search.cards.front().card;
  const std::string guess = card.method == VANTREL_METHOD_SHEET ? "only marks, as on a sheet of cards that is split"
                                                                : "only a guess (" + words_of_card(card) + ")";
  return on_glass && !search.glass->has_card() ? words_of(search.glass->reason) + "; " + guess : guess;
}

Json json_of_card(const vantrel_card& card, const CardSearch& search) {
  Json sides;
  for (std::size_t side = 0; side < 4; ++side) {
    sides[kSideNames[side]] = {{"state", name_of(state_of(card.sides[side]))},
                               {"confidence", thousandths(card.sides[side].confidence)}};
  }
  return {{"confidence", thousandths(card.confidence)},
          {"tilt", thousandths(card.tilt)},
          {"corners", json_of(search.corners(card))},
          {"sides", sides}};
}

Json json_of_found(const FoundCard& found, const CardSearch& search) {
  Json json = {{"method", vantrel_method_name(found.card.method)}, {"sure", found.sure}};
  json.update(json_of_card(found.card, search));
  json["alternatives"] = Json::array();
  for (const vantrel_card& other : found.alternatives) json["alternatives"].push_back(json_of_card(other, search));
  return json;
}

/** The bounding box in whole pixels. */
Json box_of(const vantrel_quad& q) {
  const auto [left, right] = std::minmax({q.top_left.x, q.top_right.x, q.bottom_right.x, q.bottom_left.x});
  const auto [top, bottom] = std::minmax({q.top_left.y, q.top_right.y, q.bottom_right.y, q.bottom_left.y});
  const auto first = [](double position) { return static_cast<int>(std::floor(position)); };
  const auto last = [](double position) { return static_cast<int>(std::ceil(position)) - 1; };
  return {{"left", first(left)}, {"top", first(top)}, {"right", last(right)}, {"bottom", last(bottom)}};
}

/** The members that describe one card, for another method than that for dark glass. */
Json members_of(const FoundCard* found, const CardSearch& search) {
  Json json = {{"result", found != nullptr ? 1 : 0},
               {"verdict", found != nullptr ? Json("corners-found") : Json()},
               {"sides_found", found != nullptr ? sides_found(found->card) : 0},
               {"sides", Json()},
               {"corners", Json()},
               {"box", Json()},
               {"tilt", Json()},
               {"scale", search.scale},
               {"searched", {{"width", search.width}, {"height", search.height}}}};
  if (found != nullptr) {
    json["corners"] = json_of(search.corners(found->card));
    json["box"] = box_of(search.corners(found->card));
    json["tilt"] = thousandths(found->card.tilt);
  }
  return json;
}

/** Whether it is the search on dark glass that counts: its card was taken, or no other one. */
bool glass_counts(const CardSearch& search) {
  const FoundCard* first = search.first_sure();
  return search.glass && (first == nullptr || first->card.method == VANTREL_METHOD_DARK_GLASS);
}

/** Draws the four sides, each in a colour of `colour_of(side)`. */
template <class ColourOf>
void draw_sides(const vantrel_quad& q, Canvas& canvas, Stroke stroke, ColourOf colour_of_side) {
  const auto side = [&](const vantrel_point& a, const vantrel_point& b, std::size_t index) {
    canvas.line(a.x, a.y, b.x, b.y, colour_of_side(index), stroke);
  };
  side(q.top_left, q.top_right, VANTREL_SIDE_TOP);
  side(q.bottom_left, q.bottom_right, VANTREL_SIDE_BOTTOM);
  side(q.top_left, q.bottom_left, VANTREL_SIDE_LEFT);
  side(q.top_right, q.bottom_right, VANTREL_SIDE_RIGHT);
}

void draw_card(const FoundCard& found, const std::string& text, const CardSearch& search, Canvas& canvas) {
  for (const vantrel_card& other : found.alternatives) {
    draw_sides(search.corners(other), canvas, Stroke::kThin, [](std::size_t) { return kBlue; });
  }
  const vantrel_quad q = search.corners(found.card);
  draw_sides(q, canvas, Stroke::kThick, [&](std::size_t side) { return colour_of(state_of(found.card.sides[side])); });
  canvas.label((q.top_left.x + q.bottom_right.x) / 2, (q.top_left.y + q.bottom_right.y) / 2, text,
               found.sure ? kGreen : kRed);
}

vantrel_find_options options_of(const CardRequest& request) {
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.most_cards = request.most_cards;
  return options;
}

}  // namespace

std::size_t CardSearch::sure_cards() const {
  return static_cast<std::size_t>(
      std::count_if(cards.begin(), cards.end(), [](const FoundCard& found) { return found.sure; }));
}

const FoundCard* CardSearch::first_sure() const {
  const auto first = std::find_if(cards.begin(), cards.end(), [](const FoundCard& found) { return found.sure; });
  return first == cards.end() ? nullptr : &*first;
}

vantrel_quad CardSearch::corners(const vantrel_card& card) const { return scaled(card.corners, scale); }

CardSearch search_cards(const Bitmap& scan, const CardRequest& request) {
  vantrel_image view = scan.view();
  vantrel_find_options options = options_of(request);
  choose_analysis(request.analysis, view, options);
  const Cards cards = find(view, request.method, options);
  CardSearch search{{},
                    vantrel_cards_reason(cards.get(), request.method.value_or(VANTREL_METHOD_ANYWHERE)),
                    {},
                    scan.width(),
                    scan.height(),
                    request.scale};
  if (vantrel_cards_reason(cards.get(), VANTREL_METHOD_DARK_GLASS) != VANTREL_REASON_NOT_TRIED) {
    search.glass = corner_search_of(cards, scan, request.scale);
  }
  for (std::size_t i = 0; i < vantrel_cards_count(cards.get()); ++i) {
    const vantrel_card card = card_at(cards, i);
    std::vector<vantrel_card> others = alternatives_of(cards, i);
    others.resize(std::min(others.size(), static_cast<std::size_t>(request.alternatives)));
    search.cards.push_back({card, std::move(others), is_sure(card, request)});
  }
  return search;
}

std::string words_of(const CardSearch& search) {
  const std::size_t sure = search.sure_cards();
  if (sure == 0) return words_without_card(search);
  const FoundCard& first = *search.first_sure();
  if (sure > 1) return std::to_string(sure) + " cards";
  return first.card.method == VANTREL_METHOD_DARK_GLASS ? words_of(*search.glass) : words_of_card(first.card);
}

std::string words_of_guesses(const CardSearch& search) {
  const std::size_t guesses = search.cards.size() - search.sure_cards();
  if (guesses == 0) return "";
  return std::to_string(guesses) + (guesses == 1 ? " guess" : " guesses") + " left out";
}

Json json_of_cards(const CardSearch& search) {
  Json json = Json::array();
  for (const FoundCard& found : search.cards) json.push_back(json_of_found(found, search));
  return json;
}

Json json_of(const CardSearch& search) {
  const FoundCard* first = search.first_sure();
  Json json = glass_counts(search) ? json_of(*search.glass) : members_of(first, search);
  json["method"] = first != nullptr ? Json(vantrel_method_name(first->card.method)) : Json();
  json["confidence"] = first != nullptr ? Json(thousandths(first->card.confidence)) : Json();
  json["cards"] = json_of_cards(search);
  return json;
}

void draw_cards(const CardSearch& search, Canvas& canvas) {
  int number = 0;
  for (const FoundCard& found : search.cards) {
    const std::string place = search.cards.size() > 1 ? std::to_string(++number) + ": " : "";
    draw_card(found, place + rounded(found.card.confidence, "%.2f"), search, canvas);
  }
}

void draw(const CardSearch& search, Canvas& canvas) {
  const bool glass = glass_counts(search);
  if (glass) draw(*search.glass, canvas);
  // The card on dark glass is what the lines of its sides show.
  if (!glass || search.sure_cards() == 0) draw_cards(search, canvas);
}

}  // namespace tool
