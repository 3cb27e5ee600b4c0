#include "flat_card.h"

#include <algorithm>
#include <new>

#include "cardcut/card_cut.h"
#include "failure.h"

namespace tool {
namespace {

constexpr std::array kSideNames = {"top", "bottom", "left", "right"};
constexpr int kSmallestColourSide = 128;
constexpr int kLongestSide = 32767;  // bounds have 16 bits

/** Where the finders leave the sides that they do not find. */
MYRECT default_rect(const Bitmap& scan) {
  const auto cols = static_cast<std::int16_t>(scan.width());
  const auto rows = static_cast<std::int16_t>(scan.height());
  const auto less = [](std::int16_t bound, int by) { return static_cast<std::int16_t>(bound - by); };
  // In colour no card begins above the lowest fifth: there a bound is moved to the lowest sixth, the default too.
  const std::int16_t bottom = rows / 5 < 50 ? static_cast<std::int16_t>(rows / 6) : std::int16_t{50};
  if (scan.depth() == 24) return {10, less(rows, 30), less(cols, 10), bottom, 0};
  return {0, less(rows, 1), less(cols, 1), 0, 0};
}

}  // namespace

int FlatCard::sides_found() const { return static_cast<int>(std::count(found.begin(), found.end(), true)); }

FlatCard find_flat_card(Bitmap& scan) {
  if (scan.depth() == 1) throw Failure("a bilevel scan has no levels to search");
  if (scan.depth() == 24 && std::min(scan.width(), scan.height()) < kSmallestColourSide) {
    throw Failure("a colour scan must be at least 128 x 128");
  }
  if (std::max(scan.width(), scan.height()) > kLongestSide) throw Failure("a side is longer than 32767 pixels");
  FlatCard card{};
  const bool done = scan.depth() == 24 ? CutCard24(scan.record(), card.rect) : CutCard(scan.record(), card.rect);
  if (!done) throw std::bad_alloc();
  const MYRECT frame = default_rect(scan);
  card.found = {card.rect.top != frame.top, card.rect.bottom != frame.bottom, card.rect.left != frame.left,
                card.rect.right != frame.right};
  return card;
}

Json sides_of(const FlatCard& card) {
  Json sides;
  for (std::size_t side = 0; side < 4; ++side) sides[kSideNames[side]] = card.found[side];
  return sides;
}

}  // namespace tool
