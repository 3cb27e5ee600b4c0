#include "card_search.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "blankness.h"
#include "flat_card.h"
#include "library.h"
#include "words.h"

namespace tool {
namespace {

/** From here on a side is no guess. */
constexpr double kWeak = 0.5;

constexpr const char* kCornersFound = "corners-found";

enum class SideState { kFound, kWeak, kGuessed };

SideState state_of(const vantrel_side& side) {
  if (side.found != 0) return SideState::kFound;
  return side.confidence >= kWeak ? SideState::kWeak : SideState::kGuessed;
}

const char* name_of(SideState state) {
  constexpr std::array kNames = {"found", "weak", "guessed"};
  return kNames[static_cast<std::size_t>(state)];
}

Colour colour_of(SideState state) {
  constexpr std::array kColours = {kGreen, kAmber, kRed};
  return kColours[static_cast<std::size_t>(state)];
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

std::string words_of_guess(const FoundCard& found) {
  if (found.card.method == VANTREL_METHOD_SHEET) return "only marks, as on a sheet of cards that is split";
  const std::string why = found.judgement.refusal.empty() ? "" : "; " + found.judgement.refusal;
  return "only a guess (" + words_of_card(found.card) + why + ")";
}

/** Why nothing is claimed, or what is only a guess. */
std::string words_without_card(const CardSearch& search) {
  if (search.blank) return "the scan is blank";
  const bool on_glass = search.glass && search.glass->reason != VANTREL_REASON_BILEVEL;
  // What is surest looks anywhere first: that then says why there is nothing.
  if (search.cards.empty()) return words_of(on_glass && search.asked ? search.glass->reason : search.reason);
  return words_of_guess(search.cards.front());
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
  Json json = {{"method", vantrel_method_name(found.card.method)}, {"certainty", name_of(found.judgement.certainty)}};
  json["refusal"] = found.judgement.refusal.empty() ? Json() : Json(found.judgement.refusal);
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
               {"verdict", found != nullptr ? Json(kCornersFound) : Json()},
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
  const FoundCard* first = search.first_claimed();
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
               found.claimed() ? kGreen : kRed);
}

bool needs_confirmation(vantrel_method method) {
  return method == VANTREL_METHOD_DARK_GLASS || method == VANTREL_METHOD_FLAT_LIGHT;
}

/**
 * A flat ground that was not asked for is a guess, for a page of text has such a rectangle too; and the place of a card
 * on a sheet is none of a single card's.
 */
Judgement judge(const vantrel_card& card, const CardRequest& request, const std::vector<vantrel_card>& anywhere) {
  switch (card.method) {
    case VANTREL_METHOD_ANYWHERE:
      return {certainty_anywhere(card), ""};
    case VANTREL_METHOD_DARK_GLASS:
      return judged_by(anywhere, card);
    case VANTREL_METHOD_FLAT_LIGHT:
      return request.method ? judged_by(anywhere, card) : Judgement{Certainty::kGuess, ""};
    default:
      return {Certainty::kGuess, ""};
  }
}

}  // namespace

std::size_t CardSearch::claimed_cards() const {
  return static_cast<std::size_t>(
      std::count_if(cards.begin(), cards.end(), [](const FoundCard& found) { return found.claimed(); }));
}

const FoundCard* CardSearch::first_claimed() const {
  const auto first = std::find_if(cards.begin(), cards.end(), [](const FoundCard& found) { return found.claimed(); });
  return first == cards.end() ? nullptr : &*first;
}

vantrel_quad CardSearch::corners(const vantrel_card& card) const { return scaled(card.corners, scale); }

Certainty CardSearch::certainty() const {
  Certainty least = Certainty::kSure;
  for (const FoundCard& found : cards) {
    if (found.claimed()) least = std::min(least, found.judgement.certainty);
  }
  return least;
}

double CardSearch::confidence() const {
  double least = claimed_cards() > 0 ? 1 : 0;
  for (const FoundCard& found : cards) {
    if (found.claimed()) least = std::min(least, found.card.confidence);
  }
  return least;
}

CardSearch search_cards(const Bitmap& scan, const CardRequest& request) {
  vantrel_image view = scan.view();
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.most_cards = request.most_cards;
  choose_analysis(request.analysis, view, options);
  const Cards cards = find(view, request.method, options);
  CardSearch search{{},
                    vantrel_cards_reason(cards.get(), request.method.value_or(VANTREL_METHOD_ANYWHERE)),
                    {},
                    scan.width(),
                    scan.height(),
                    request.scale,
                    request.method.has_value(),
                    false};
  if (vantrel_cards_reason(cards.get(), VANTREL_METHOD_DARK_GLASS) != VANTREL_REASON_NOT_TRIED) {
    search.glass = corner_search_of(cards, scan, request.scale);
  }
  std::vector<vantrel_card> found = all_cards(cards);
  const bool unconfirmed = !found.empty() && needs_confirmation(found.front().method);
  const std::vector<vantrel_card> anywhere =
      unconfirmed ? all_cards(find(scan.view(), VANTREL_METHOD_ANYWHERE)) : std::vector<vantrel_card>();
  for (std::size_t i = 0; i < found.size(); ++i) {
    const vantrel_card card = on_frame(found[i], scan);
    std::vector<vantrel_card> others = alternatives_of(cards, i);
    Judgement judgement = held_to(request.demands, card, judge(card, request, anywhere));
    others.resize(std::min(others.size(), static_cast<std::size_t>(request.alternatives)));
    search.cards.push_back({card, std::move(others), std::move(judgement)});
  }
  search.blank = search.claimed_cards() == 0 && is_blank(scan);
  return search;
}

std::string words_of(const CardSearch& search) {
  const std::size_t sure = search.claimed_cards();
  if (sure == 0) return words_without_card(search);
  const FoundCard& first = *search.first_claimed();
  if (sure > 1) return std::to_string(sure) + " cards";
  return first.card.method == VANTREL_METHOD_DARK_GLASS ? words_of(*search.glass) : words_of_card(first.card);
}

std::string brief_words_of(const CardSearch& search) {
  const FoundCard& first = *search.first_claimed();
  const bool on_glass = first.card.method == VANTREL_METHOD_DARK_GLASS;
  const std::string method = on_glass ? " on dark glass" : " by borders";
  const std::string confidence = on_glass ? "" : ", confidence " + rounded(search.confidence(), "%.2f");
  if (search.claimed_cards() > 1) return std::to_string(search.claimed_cards()) + " cards" + method + confidence;
  const int sides = sides_found(first.card);
  const std::string missing = on_glass ? words_of_frame(*search.glass) : words_of_sides(first.card);
  return std::to_string(sides) + (sides < 4 ? " of 4 sides" : " sides") + method + missing + confidence;
}

std::string advice_of(const CardSearch& search) {
  if (search.blank || search.claimed_cards() > 0) return "";
  if (search.glass && search.asked && !search.glass->has_card()) return advice_for(search.glass->reason);
  if (search.cards.empty()) return advice_for(search.reason);
  if (search.cards.front().judgement.demanded) return kDemandLess;
  if (search.asked && needs_confirmation(search.cards.front().card.method)) {
    return advice_for(VANTREL_REASON_TOO_SMALL);
  }
  if (search.cards.front().card.method == VANTREL_METHOD_SHEET) return "split --method sheet";
  return advice_for(VANTREL_REASON_NOTHING_LIKE_A_CARD);
}

std::string words_of_guesses(const CardSearch& search) {
  const std::size_t guesses = search.cards.size() - search.claimed_cards();
  if (guesses == 0) return "";
  return std::to_string(guesses) + (guesses == 1 ? " guess" : " guesses") + " left out";
}

Json json_of_cards(const CardSearch& search) {
  Json json = Json::array();
  for (const FoundCard& found : search.cards) json.push_back(json_of_found(found, search));
  return json;
}

Json json_of(const CardSearch& search) {
  const FoundCard* first = search.first_claimed();
  Json json = glass_counts(search) ? json_of(*search.glass) : members_of(first, search);
  if (first == nullptr && json["verdict"] == kCornersFound) json["verdict"] = "refused";
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
  if (!glass || search.claimed_cards() == 0) draw_cards(search, canvas);
}

}  // namespace tool
