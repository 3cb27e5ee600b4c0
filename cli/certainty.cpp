#include "certainty.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tool {
namespace {

/** From here on a card found anywhere is no guess. */
constexpr double kLeastDoubtful = 0.5;
/** From here on the library prefers it to every other method. */
constexpr double kLeastLikely = 0.9;
/** From here on, with all four sides. */
constexpr double kLeastSure = 0.988;
/** So far apart, as shares of the diagonal, two findings are the same card, and two different claims. */
constexpr double kSame = 0.01;
constexpr double kNear = 0.02;

constexpr int kAllSides = 4;
/** Of a card by a method for one kind of scan, where no card found anywhere confirms it. */
constexpr int kLeastSidesGlass = 2;
constexpr int kLeastSidesFlat = 3;

double distance(const vantrel_point& a, const vantrel_point& b) { return std::hypot(a.x - b.x, a.y - b.y); }

bool is_sure_anywhere(const vantrel_card& card) {
  return card.confidence >= kLeastSure && sides_found(card) == kAllSides;
}

}  // namespace

const char* name_of(Certainty certainty) {
  constexpr std::array kNames = {"guess", "doubtful", "likely", "sure"};
  return kNames[static_cast<std::size_t>(certainty)];
}

int sides_found(const vantrel_card& card) {
  int count = 0;
  for (const vantrel_side& side : card.sides) count += side.found;
  return count;
}

double difference(const vantrel_quad& one, const vantrel_quad& other) {
  const double diagonal = distance(one.top_left, one.bottom_right);
  const double most =
      std::max({distance(one.top_left, other.top_left), distance(one.top_right, other.top_right),
                distance(one.bottom_right, other.bottom_right), distance(one.bottom_left, other.bottom_left)});
  return diagonal > 0 ? most / diagonal : HUGE_VAL;
}

Certainty certainty_anywhere(const vantrel_card& card) {
  if (card.confidence < kLeastDoubtful) return Certainty::kGuess;
  if (card.confidence < kLeastLikely) return Certainty::kDoubtful;
  return is_sure_anywhere(card) ? Certainty::kSure : Certainty::kLikely;
}

Judgement judged_by(const std::vector<vantrel_card>& anywhere, const vantrel_card& card) {
  const int sides = sides_found(card);
  if (sides == 0) return {Certainty::kGuess, ""};
  const bool flat = card.method == VANTREL_METHOD_FLAT_LIGHT;
  const double contradiction = sides == kAllSides && !flat ? kLeastLikely : kLeastDoubtful;
  bool guessed = false;
  bool contradicted = false;
  for (const vantrel_card& other : anywhere) {
    const double apart = difference(card.corners, other.corners);
    if (apart <= kSame && is_sure_anywhere(other) && sides == kAllSides) return {Certainty::kSure, ""};
    if (apart <= kNear && other.confidence >= kLeastDoubtful) return {Certainty::kLikely, ""};
    guessed = guessed || apart <= kNear;
    contradicted = contradicted || other.confidence >= contradiction;
  }
  if (contradicted) return {Certainty::kGuess, "the borders on the scan are those of another place"};
  // Text that stands in a block has such a rectangle too, and no border.
  if (flat && !guessed) return {Certainty::kGuess, "no border on the scan confirms it"};
  if (sides < (flat ? kLeastSidesFlat : kLeastSidesGlass)) return {Certainty::kGuess, "too few of its sides were seen"};
  return {Certainty::kDoubtful, ""};
}

Judgement held_to(const Demands& demands, const vantrel_card& card, Judgement judgement) {
  if (judgement.certainty == Certainty::kGuess) return judgement;
  if (sides_found(card) < demands.sides) {
    return {Certainty::kGuess, "fewer sides than the " + std::to_string(demands.sides) + " of --min-sides", true};
  }
  if (card.confidence < demands.confidence)
    return {Certainty::kGuess, "less sure than --min-confidence asks for", true};
  return judgement;
}

}  // namespace tool
