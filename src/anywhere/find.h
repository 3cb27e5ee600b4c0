/**
 * @file find.h
 * @brief Finds cards wherever they lie on a scan.
 */
#ifndef VANTREL_ANYWHERE_FIND_H
#define VANTREL_ANYWHERE_FIND_H

#include <array>

#include "anywhere/quad.h"
#include "anywhere/scan.h"

namespace vantrel::anywhere {

/** The most cards on a scan, and the most other quadrilaterals that are told of beside each. */
inline constexpr int kMostCards = 64;
inline constexpr int kMostAlternatives = 5;

/** A side's share of places that show a border: from here on it counts as found, or as weak; below, it is a guess. */
inline constexpr double kFoundShare = 0.8;
inline constexpr double kWeakShare = 0.5;

/** A quadrilateral on the scan that is likely a card's border. */
struct Proposal {
  Quad quad;                      /**< in the coordinates of the scan, the first corner the one that lies top left */
  std::array<double, 4> shares{}; /**< of side i, from corner i to i + 1: top, right, bottom, left */
  double confidence = 0.0;        /**< 0 to 1: how likely it is a card's border */
};

/** A card, and the nested or rival quadrilaterals that it was preferred to, the likeliest first. */
struct FoundCard {
  Proposal card;
  int alternative_count = 0;
  std::array<Proposal, kMostAlternatives> alternatives{};
};

/** What was found, the surest card first. */
struct Findings {
  bool ready = false; /**< false: there was not enough memory */
  int count = 0;
  std::array<FoundCard, kMostCards> cards{};
};

/** Looks for at most `most_cards` cards on a scan of any size. */
void find_anywhere(const Scan& scan, int most_cards, Findings& found);

}  // namespace vantrel::anywhere

#endif
