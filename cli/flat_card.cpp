#include "flat_card.h"

#include "library.h"
#include "words.h"

namespace tool {

int FlatCard::sides_found() const {
  int count = 0;
  for (const vantrel_side& side : seen.sides) count += side.found;
  return count;
}

FlatCard find_flat_card(const Bitmap& scan) {
  const Cards cards = find(scan.view(), VANTREL_METHOD_FLAT_LIGHT);
  return {vantrel_cards_reason(cards.get(), VANTREL_METHOD_FLAT_LIGHT), flat_light_of(cards)};
}

Json sides_of(const FlatCard& card) {
  Json sides;
  for (std::size_t side = 0; side < 4; ++side) sides[kSideNames[side]] = card.seen.sides[side].found != 0;
  return sides;
}

}  // namespace tool
