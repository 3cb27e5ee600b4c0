#include "flat_card.h"

#include "library.h"
#include "words.h"

namespace tool {

int FlatCard::sides_found() const {
  int count = 0;
  for (const vantrel_side& side : seen.sides) count += side.found;
  return count;
}

vantrel_card on_frame(const vantrel_card& card, const Bitmap& scan) {
  if (card.method != VANTREL_METHOD_FLAT_LIGHT) return card;
  vantrel_card framed = card;
  const auto found = [&](vantrel_side_index side) { return card.sides[side].found != 0; };
  vantrel_quad& q = framed.corners;
  if (!found(VANTREL_SIDE_TOP)) q.top_left.y = q.top_right.y = 0;
  if (!found(VANTREL_SIDE_BOTTOM)) q.bottom_left.y = q.bottom_right.y = scan.height();
  if (!found(VANTREL_SIDE_LEFT)) q.top_left.x = q.bottom_left.x = 0;
  if (!found(VANTREL_SIDE_RIGHT)) q.top_right.x = q.bottom_right.x = scan.width();
  return framed;
}

FlatCard find_flat_card(const Bitmap& scan) {
  const Cards cards = find(scan.view(), VANTREL_METHOD_FLAT_LIGHT);
  FlatCard flat{vantrel_cards_reason(cards.get(), VANTREL_METHOD_FLAT_LIGHT), flat_light_of(cards), VANTREL_CARD_INIT};
  if (!flat.searched()) return flat;
  if (vantrel_cards_count(cards.get()) > 0) flat.card = on_frame(card_at(cards, 0), scan);
  // The method keeps a margin where it found nothing, which a slip at the edge of the glass does not have.
  vantrel_rect& r = flat.seen.rectangle;
  const auto found = [&](vantrel_side_index side) { return flat.seen.sides[side].found != 0; };
  if (!found(VANTREL_SIDE_TOP)) r.top = 0;
  if (!found(VANTREL_SIDE_BOTTOM)) r.bottom = scan.height();
  if (!found(VANTREL_SIDE_LEFT)) r.left = 0;
  if (!found(VANTREL_SIDE_RIGHT)) r.right = scan.width();
  return flat;
}

Json sides_of(const FlatCard& card) {
  Json sides;
  for (std::size_t side = 0; side < 4; ++side) sides[kSideNames[side]] = card.seen.sides[side].found != 0;
  return sides;
}

}  // namespace tool
