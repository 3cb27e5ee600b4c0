#include "cards/find.h"

#include <algorithm>
#include <utility>

#include "cards/reduce.h"

namespace vantrel::cards {
namespace {

// No default: of a method that is not listed here the compiler warns.
vantrel_status find_by(vantrel_method method, const vantrel_image& scan, const Request& request, vantrel_cards& found) {
  // Never: a request has none but these.
  switch (method) {
    case VANTREL_METHOD_DARK_GLASS:
      return find_on_dark_glass(scan, request, found);
    case VANTREL_METHOD_FLAT_LIGHT:
      return find_on_flat_light(scan, request, found);
    case VANTREL_METHOD_SHEET:
      return find_on_sheet(scan, request, found);
    case VANTREL_METHOD_ANYWHERE:
      break;
  }
  return find_anywhere(scan, request, found);
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

/** From this confidence on a card found anywhere is preferred to all that the other methods make of a scan. */
constexpr double kSurest = 0.9;

/** From this confidence on it is preferred to what they see only in part. */
constexpr double kSure = 0.5;

double greatest_confidence(const vantrel_cards& found) {
  double greatest = 0.0;
  for (std::size_t i = 0; i < found.count; ++i) greatest = std::max(greatest, found.cards[i].confidence);
  return greatest;
}

/** Takes back the cards that were left out, over the first of which another method may have written. */
void take_back(vantrel_cards& found, const vantrel_card& first, std::size_t count) {
  found.cards[0] = first;
  found.count = count;
}

/**
 * What is found anywhere for sure, which places borders most exactly; else a card all of whose sides were seen on dark
 * glass, else what is likely to lie anywhere, else what the methods make of the scan in turn: those that expect one
 * scene find cards that are hardly to be seen, and also some that are none.
 */
vantrel_status find_surest(const vantrel_image& scan, const Request& request, vantrel_cards& found) {
  vantrel_status status = find_anywhere(scan, request, found);
  const double confidence = greatest_confidence(found);
  if (status != VANTREL_OK || confidence >= kSurest) return status;

  // A card on dark glass is written over the first one, those of the other methods are the last to be written.
  const vantrel_card first = found.cards[0];
  const std::size_t anywhere = std::exchange(found.count, 0);
  status = find_on_dark_glass(scan, request, found);
  if (status != VANTREL_OK) return status;
  const bool on_glass = found.count > 0;
  if (on_glass && count_found(found.cards[0].sides) == 4) return VANTREL_OK;
  if (confidence >= kSure) take_back(found, first, anywhere);
  if (found.count > 0) return VANTREL_OK;

  constexpr std::array kOthers = {VANTREL_METHOD_FLAT_LIGHT, VANTREL_METHOD_SHEET};
  status = find_in_turn(kOthers, scan, request, found);
  // A page of text has an upright rectangle too: it is believed with all its sides, and where something like a card is
  // seen as well.
  const bool on_flat_ground = found.count > 0 && found.cards[0].method == VANTREL_METHOD_FLAT_LIGHT;
  const bool unlikely = on_flat_ground && (anywhere == 0 || count_found(found.cards[0].sides) < 4);
  if (found.count == 0 || unlikely) take_back(found, first, anywhere);
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
