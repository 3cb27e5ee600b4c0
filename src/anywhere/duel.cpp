#include "anywhere/duel.h"

#include <algorithm>

namespace vantrel::anywhere {
namespace {

/** By the final score; of equal ones the one that was likelier on the copy. */
bool is_better(const Finalist& a, const Finalist& b) {
  return a.final_score != b.final_score ? a.final_score > b.final_score : a.rank < b.rank;
}

const Finalist* best_rival(std::span<const Finalist> finalists, const Finalist& one) {
  const Finalist* best = nullptr;
  for (const Finalist& other : finalists)
    if ((best == nullptr || is_better(other, *best)) && are_rivals(one, other)) best = &other;
  return best;
}

}  // namespace

DuelFeatures measure_duel(std::span<const Finalist> finalists, const Finalist& one) {
  DuelFeatures features{};
  double top = one.final_score;
  for (const Finalist& other : finalists) top = std::max(top, other.final_score);
  const Finalist* rival = best_rival(finalists, one);
  features[kFinalScore] = static_cast<float>(one.final_score);
  features[kLead] = static_cast<float>(one.final_score - (rival != nullptr ? rival->final_score : 0.0));
  features[kBehindTop] = static_cast<float>(top - one.final_score);
  const auto own = std::copy(one.features.begin(), one.features.end(), features.begin() + kDuelOnly);
  if (rival == nullptr) return features;
  features[kRivalsArea] = static_cast<float>(area(rival->refined.quad) / std::max(area(one.refined.quad), 1.0));
  for (std::size_t i = 0; i < kFinalFeatures; ++i)
    own[static_cast<std::ptrdiff_t>(i)] = one.features[i] - rival->features[i];
  return features;
}

}  // namespace vantrel::anywhere
