#include "anywhere/find.h"

#include <algorithm>
#include <cmath>

#include "anywhere/analysis.h"
#include "anywhere/finalists.h"
#include "anywhere/overlap.h"

namespace vantrel::anywhere {
namespace {

/** What is less likely than this is not told of. */
constexpr double kLeastConfidence = 0.1;
/** A further card is as likely as this. */
constexpr double kLeastFurther = 0.25;

Proposal proposal_of(const Finalist& finalist) {
  Proposal proposal;
  const std::size_t top = top_side(finalist.refined.quad);
  for (std::size_t i = 0; i < 4; ++i) {
    proposal.quad.corners[i] = finalist.refined.quad[top + i];
    proposal.shares[i] = finalist.refined.shares[(top + i) % 4];
  }
  proposal.confidence = finalist.confidence;
  return proposal;
}

/** Whether a finalist lies beside all cards found so far. */
bool lies_apart(const Finalist& finalist, const Findings& found) {
  for (int i = 0; i < found.count; ++i) {
    const Quad& card = found.cards[static_cast<std::size_t>(i)].card.quad;
    if (relation(finalist.refined.quad, card) != Relation::kApart) return false;
  }
  return true;
}

/** Adds what else the card might be: the likeliest finalists that overlap it, each unlike the others. */
void add_alternatives(std::span<const Finalist> finalists, FoundCard& found) {
  for (const Finalist& finalist : finalists) {
    if (found.alternative_count == kMostAlternatives) return;
    const Quad& quad = finalist.refined.quad;
    const auto told = [&](const Proposal& other) { return relation(quad, other.quad) == Relation::kSame; };
    const Relation to_card = relation(quad, found.card.quad);
    if (to_card == Relation::kApart || to_card == Relation::kSame) continue;
    const auto end = found.alternatives.begin() + found.alternative_count;
    if (std::any_of(found.alternatives.begin(), end, told)) continue;
    found.alternatives[static_cast<std::size_t>(found.alternative_count++)] = proposal_of(finalist);
  }
}

}  // namespace

void find_anywhere(const Scan& scan, int most_cards, Findings& found) {
  found = Findings{};
  Analysis analysis;
  if (!analyse(scan, analysis)) return;
  Finalists finalists;
  if (!choose_finalists(scan, analysis, finalists)) return;
  found.ready = true;
  const int most = std::min(most_cards, kMostCards);
  for (const Finalist& finalist : finalists.all()) {
    if (found.count == most) break;
    const double least = found.count == 0 ? kLeastConfidence : kLeastFurther;
    if (finalist.confidence < least || !lies_apart(finalist, found)) continue;
    found.cards[static_cast<std::size_t>(found.count++)].card = proposal_of(finalist);
  }
  for (int i = 0; i < found.count; ++i) add_alternatives(finalists.all(), found.cards[static_cast<std::size_t>(i)]);
}

}  // namespace vantrel::anywhere
