/**
 * @file duel.h
 * @brief A finalist beside its best rival: what tells the one from the other.
 */
#ifndef VANTREL_ANYWHERE_DUEL_H
#define VANTREL_ANYWHERE_DUEL_H

#include <array>
#include <cstddef>
#include <span>

#include "anywhere/rivalry.h"

namespace vantrel::anywhere {

/** What is measured of a finalist and its best rival; behind these follow its own features, and how much greater they
 * are than the rival's: 0 without one. */
enum DuelFeature : std::size_t {
  kFinalScore,
  kLead,       /**< how far its final score is ahead of the rival's; of 0 without one */
  kBehindTop,  /**< how far its final score is behind the best of the scan */
  kRivalsArea, /**< over its own; 0 without one */
  kDuelOnly,
  kDuelFeatures = kDuelOnly + 2 * kFinalFeatures
};

using DuelFeatures = std::array<float, kDuelFeatures>;

/** Measures a finalist beside the rival with the best final score. All have their final scores. */
DuelFeatures measure_duel(std::span<const Finalist> finalists, const Finalist& one);

}  // namespace vantrel::anywhere

#endif
