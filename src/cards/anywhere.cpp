#include <algorithm>
#include <cstdlib>
#include <new>
#include <span>

#include "anywhere/analysis.h"
#include "anywhere/copy.h"
#include "anywhere/find.h"
#include "cards/find.h"
#include "cards/limits.h"
#include "cards/quad.h"
#include "cards/reduce.h"
#include "cards/reduction.h"
#include "image/work_array.h"

namespace vantrel::cards {
namespace {

using anywhere::FoundCard;

anywhere::Layout layout_of_pixels(vantrel_format format) {
  // Never: a scan that was checked has one of these.
  switch (format) {
    case VANTREL_FORMAT_BGR:
      return anywhere::Layout::kBgr;
    case VANTREL_FORMAT_RGB:
      return anywhere::Layout::kRgb;
    case VANTREL_FORMAT_BGRA:
      return anywhere::Layout::kBgra;
    case VANTREL_FORMAT_RGBA:
      return anywhere::Layout::kRgba;
    case VANTREL_FORMAT_BILEVEL:
      return anywhere::Layout::kBilevel;
    case VANTREL_FORMAT_GRAY:
      break;
  }
  return anywhere::Layout::kGray;
}

vantrel_point point_of(anywhere::Point point) { return {point.x, point.y}; }

vantrel_side side_of(double share) { return {share >= anywhere::kFoundShare ? 1 : 0, share}; }

/** A card on a scan so many times larger. */
vantrel_card card_of(const anywhere::Proposal& proposal, int times) {
  const auto& corners = proposal.quad.corners;
  vantrel_card card = VANTREL_CARD_INIT;
  card.corners =
      scaled({point_of(corners[0]), point_of(corners[1]), point_of(corners[2]), point_of(corners[3])}, times);
  card.sides[VANTREL_SIDE_TOP] = side_of(proposal.shares[0]);
  card.sides[VANTREL_SIDE_RIGHT] = side_of(proposal.shares[1]);
  card.sides[VANTREL_SIDE_BOTTOM] = side_of(proposal.shares[2]);
  card.sides[VANTREL_SIDE_LEFT] = side_of(proposal.shares[3]);
  card.tilt = tilt(card.corners);
  card.confidence = proposal.confidence;
  card.method = VANTREL_METHOD_ANYWHERE;
  return card;
}

Alternatives alternatives_of(const FoundCard& card, int times) {
  Alternatives alternatives{};
  alternatives.count = card.alternative_count;
  for (std::size_t i = 0; i < static_cast<std::size_t>(card.alternative_count); ++i) {
    alternatives.cards[i] = card_of(card.alternatives[i], times);
  }
  return alternatives;
}

double middle_x(const FoundCard& card) { return (card.card.quad[0].x + card.card.quad[2].x) / 2; }
double middle_y(const FoundCard& card) { return (card.card.quad[0].y + card.card.quad[2].y) / 2; }

/** How far down the middle of the lower side lies. */
double bottom(const FoundCard& card) { return (card.card.quad[2].y + card.card.quad[3].y) / 2; }

/** Sorts into reading order: a row is the highest card that is left and those whose middle lies above its lower side.
 */
void sort_for_reading(std::span<FoundCard> cards) {
  // Also of cards in one line, so that the order is the same whoever sorts.
  const auto higher = [](const FoundCard& a, const FoundCard& b) {
    return middle_y(a) != middle_y(b) ? middle_y(a) < middle_y(b) : middle_x(a) < middle_x(b);
  };
  const auto more_left = [](const FoundCard& a, const FoundCard& b) {
    return middle_x(a) != middle_x(b) ? middle_x(a) < middle_x(b) : middle_y(a) < middle_y(b);
  };
  std::sort(cards.begin(), cards.end(), higher);
  while (!cards.empty()) {
    const double row_bottom = bottom(cards.front());
    const auto rest = std::find_if(cards.begin() + 1, cards.end(),
                                   [=](const FoundCard& card) { return middle_y(card) >= row_bottom; });
    std::sort(cards.begin(), rest, more_left);
    cards = {rest, cards.end()};
  }
}

/** Why a scan cannot be searched, or that it can. */
vantrel_reason refusal(int width, int height) {
  const int longer = std::max(width, height);
  if (longer > kMostAnywhereSide) return VANTREL_REASON_SCAN_TOO_LARGE;
  const int copied = std::min(width, height) / anywhere::reduction_factor(height, width);
  return copied < anywhere::kLeastCopySide ? VANTREL_REASON_SCAN_TOO_SMALL : VANTREL_REASON_FOUND;
}

/** Adds cards in reading order, with their alternatives. */
vantrel_status add_cards(std::span<FoundCard> cards, int times, vantrel_cards& found) {
  found.alternatives = static_cast<Alternatives*>(std::malloc(cards.size() * sizeof(Alternatives)));
  if (found.alternatives == nullptr) return VANTREL_ERROR_MEMORY;
  sort_for_reading(cards);
  for (const FoundCard& card : cards) {
    new (found.alternatives + found.count) Alternatives(alternatives_of(card, times));
    add_card(found, card_of(card.card, times));
  }
  return VANTREL_OK;
}

}  // namespace

vantrel_status find_anywhere(const vantrel_image& scan, const Request& request, vantrel_cards& found) {
  vantrel_reason& reason = found.reasons[index_of(VANTREL_METHOD_ANYWHERE)];
  // Bits are not reduced: no means can be taken of them.
  const bool bilevel = scan.format == VANTREL_FORMAT_BILEVEL;
  const int times = bilevel ? 1 : reduction_to(scan, request.analysis_dpi);
  reason = refusal(scan.width / times, scan.height / times);
  if (reason != VANTREL_REASON_FOUND) return VANTREL_OK;

  const Copy copy(scan, scan.format, times);
  // Too large a record for the stack of a caller's thread.
  image::WorkArray<anywhere::Findings> findings(1);
  if (!copy.ready() || !findings.ready()) return VANTREL_ERROR_MEMORY;
  anywhere::Findings& seen = *new (findings.get()) anywhere::Findings;
  const anywhere::Scan looked_at = {copy.memory_rows().upside_down(), layout_of_pixels(scan.format)};
  const auto most = static_cast<int>(std::min<std::size_t>(request.most_cards, anywhere::kMostCards));
  anywhere::find_anywhere(looked_at, most, seen);
  if (!seen.ready) return VANTREL_ERROR_MEMORY;
  if (seen.count == 0) {
    reason = VANTREL_REASON_NOTHING_LIKE_A_CARD;
    return VANTREL_OK;
  }
  return add_cards({seen.cards.data(), static_cast<std::size_t>(seen.count)}, times, found);
}

}  // namespace vantrel::cards
