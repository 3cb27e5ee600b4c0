/**
 * @file certainty.h
 * @brief How much the claim that a card lies somewhere is worth, and what the caller demands of it.
 */
#ifndef VANTREL_CLI_CERTAINTY_H
#define VANTREL_CLI_CERTAINTY_H

#include <vantrel_cards.h>

#include <string>
#include <vector>

namespace tool {

/**
 * A guess is told of and never written. What is sure has a corner off by more than 2 % of the diagonal, or is no card,
 * at most once in 200 claims; `evaluation/claims.py` measures it.
 */
enum class Certainty { kGuess, kDoubtful, kLikely, kSure };

/** "guess", "doubtful", "likely", "sure". */
const char* name_of(Certainty certainty);

/** What is asked of a card: with less it counts as not found. */
struct Demands {
  int sides = 0;
  double confidence = 0;
};

/** What to try where the demands alone refuse a card. */
inline constexpr const char* kDemandLess = "a smaller --min-sides or --min-confidence";

struct Judgement {
  Certainty certainty;
  std::string refusal;   /**< why what a method claims is a guess all the same; empty where nothing more is known */
  bool demanded = false; /**< whether it is one by the caller's demands alone */
};

int sides_found(const vantrel_card& card);

/** Of a card that was found anywhere: by its confidence and its sides. */
Certainty certainty_anywhere(const vantrel_card& card);

/**
 * Of a card by a method that looks for one kind of card and believes in it: what is found anywhere confirms it, or
 * contradicts it, for that looks at every border there is.
 *
 * Where nothing does either, it takes two sides on dark glass; on flat light three, and a guess of the same place.
 *
 * @param anywhere the cards that were found there.
 */
Judgement judged_by(const std::vector<vantrel_card>& anywhere, const vantrel_card& card);

/** A judgement once the demands are considered. */
Judgement held_to(const Demands& demands, const vantrel_card& card, Judgement judgement);

/** The largest distance of a corner to that of the other one, as a share of the diagonal. */
double difference(const vantrel_quad& one, const vantrel_quad& other);

}  // namespace tool

#endif
