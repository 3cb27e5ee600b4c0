#include "cards/find.h"

#include <algorithm>
#include <utility>

#include "cards/reduce.h"

namespace vantrel::cards {
namespace {

// No default: of a method that is not listed here the compiler warns.
vantrel_status find_by(vantrel_method method, const vantrel_image& scan, const Request& request, vantrel_cards& found) {
  switch (method) {
    case VANTREL_METHOD_DARK_GLASS:
      return find_on_dark_glass(scan, request, found);
    case VANTREL_METHOD_FLAT_LIGHT:
      return find_on_flat_light(scan, request, found);
    case VANTREL_METHOD_SHEET:
      return find_on_sheet(scan, request, found);
    case VANTREL_METHOD_ANYWHERE:
      return find_anywhere(scan, request, found);
  }
  return VANTREL_OK;
}

/** Tries methods in turn until one finds a card. */
vantrel_status find_in_turn(std::span<const vantrel_method> methods, const vantrel_image& scan, const Request& request,
                            vantrel_cards& found) {
  for (const vantrel_method method : methods) {
    // What is asked for twice has nothing new to say.
    if (found.reasons[index_of(method)] != VANTREL_REASON_NOT_TRIED) continue;
    const vantrel_status status = find_by(method, scan, request, found);
    if (status != VANTREL_OK || found.count > 0) return status;
  }
  return VANTREL_OK;
}

/** From this confidence on a card found anywhere is preferred to what the other methods make of a scan. */
constexpr double kSure = 0.5;

bool has_sure_card(const vantrel_cards& found) {
  const auto end = found.cards.begin() + static_cast<std::ptrdiff_t>(found.count);
  return std::any_of(found.cards.begin(), end, [](const vantrel_card& card) { return card.confidence >= kSure; });
}

/**
 * A card all of whose sides were seen on dark glass, else what is found anywhere for sure, else what the methods make
 * of the scan in turn: those that expect one scene find cards that are hardly to be seen, and also some that are none.
 */
vantrel_status find_surest(const vantrel_image& scan, const Request& request, vantrel_cards& found) {
  vantrel_status status = find_on_dark_glass(scan, request, found);
  if (status != VANTREL_OK) return status;
  const bool on_glass = found.count > 0;
  const vantrel_card glass = found.cards[0];
  if (on_glass && count_found(glass.sides) == 4) return VANTREL_OK;

  found.count = 0;
  status = find_anywhere(scan, request, found);
  if (status != VANTREL_OK || has_sure_card(found)) return status;
  if (on_glass) {
    found.count = 0;
    add_card(found, glass);
    return VANTREL_OK;
  }
  // Its guesses stay where they are until another method writes over them.
  const std::size_t guesses = std::exchange(found.count, 0);
  constexpr std::array kOthers = {VANTREL_METHOD_FLAT_LIGHT, VANTREL_METHOD_SHEET};
  status = find_in_turn(kOthers, scan, request, found);
  if (found.count == 0) found.count = guesses;
  return status;
}

}  // namespace

vantrel_status find(const vantrel_image& scan, const Request& request, vantrel_cards& found) {
  const vantrel_status status =
      request.methods.empty() ? find_surest(scan, request, found) : find_in_turn(request.methods, scan, request, found);
  found.count = std::min(found.count, request.most_cards);
  return status;
}

}  // namespace vantrel::cards
