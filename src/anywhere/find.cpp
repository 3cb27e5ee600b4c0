#include "anywhere/find.h"

#include <algorithm>
#include <array>
#include <span>

#include "anywhere/analysis.h"
#include "anywhere/finalists.h"
#include "anywhere/overlap.h"

namespace vantrel::anywhere {
namespace {

/** What is less likely than this is not told of. */
constexpr double kLeastConfidence = 0.1;

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

/** Some of the finalists. */
struct Chosen {
  std::size_t count = 0;
  std::array<const Finalist*, kMostCards> items{};

  void add(const Finalist& finalist) { items[count++] = &finalist; }
  std::span<const Finalist*> all() { return {items.data(), count}; }
  void sort_by_confidence() {
    const auto surer = [](const Finalist* a, const Finalist* b) {
      return a->confidence != b->confidence ? a->confidence > b->confidence : a->rank < b->rank;
    };
    std::sort(items.begin(), items.begin() + static_cast<std::ptrdiff_t>(count), surer);
  }
};

/** Of the finalists that are the same card the surest: its sides are the most exact. */
const Finalist& surest_alike(std::span<const Finalist> finalists, const Finalist& card) {
  const Finalist* surest = &card;
  for (const Finalist& finalist : finalists) {
    if (finalist.confidence > surest->confidence &&
        relation(finalist.refined.quad, card.refined.quad) == Relation::kSame)
      surest = &finalist;
  }
  return *surest;
}

/** The cards: of finalists that overlap the better one; the surest first. */
Chosen choose_cards(std::span<const Finalist> finalists) {
  Chosen cards;
  for (const Finalist& finalist : finalists) {
    if (cards.count == kMostCards) break;
    if (finalist.confidence < kLeastConfidence) continue;
    const auto is_apart = [&](const Finalist* card) {
      return relation(finalist.refined.quad, card->refined.quad) == Relation::kApart;
    };
    const auto before = cards.all();
    if (std::all_of(before.begin(), before.end(), is_apart)) cards.add(finalist);
  }
  for (const Finalist*& card : cards.all()) card = &surest_alike(finalists, *card);
  cards.sort_by_confidence();
  return cards;
}

/** What else a card might be: the best finalists that overlap it, each unlike the others; the likeliest first. */
Chosen choose_alternatives(std::span<const Finalist> finalists, const Finalist& card) {
  Chosen others;
  for (const Finalist& finalist : finalists) {
    if (others.count == kMostAlternatives) break;
    const Quad& quad = finalist.refined.quad;
    const Relation to_card = relation(quad, card.refined.quad);
    if (to_card == Relation::kApart || to_card == Relation::kSame) continue;
    const auto is_same = [&](const Finalist* other) { return relation(quad, other->refined.quad) == Relation::kSame; };
    const auto before = others.all();
    if (std::none_of(before.begin(), before.end(), is_same)) others.add(finalist);
  }
  others.sort_by_confidence();
  return others;
}

void tell(std::span<const Finalist> finalists, const Finalist& card, FoundCard& told) {
  told.card = proposal_of(card);
  Chosen others = choose_alternatives(finalists, card);
  for (const Finalist* other : others.all())
    told.alternatives[static_cast<std::size_t>(told.alternative_count++)] = proposal_of(*other);
}

}  // namespace

void find_anywhere(const Scan& scan, int most_cards, Findings& found) {
  found = Findings{};
  Analysis analysis;
  if (!analyse(scan, analysis)) return;
  Finalists finalists;
  if (!choose_finalists(scan, analysis, finalists)) return;
  found.ready = true;
  Chosen cards = choose_cards(finalists.all());
  found.count = std::min(most_cards, static_cast<int>(cards.count));
  for (std::size_t i = 0; i < static_cast<std::size_t>(found.count); ++i)
    tell(finalists.all(), *cards.items[i], found.cards[i]);
}

}  // namespace vantrel::anywhere
