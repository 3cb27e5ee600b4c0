#include "cards/find.h"

#include <algorithm>

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
  }
  return VANTREL_OK;
}

}  // namespace

vantrel_status find(const vantrel_image& scan, const Request& request, vantrel_cards& found) {
  for (const vantrel_method method : request.methods) {
    // What is asked for twice has nothing new to say.
    if (found.reasons[index_of(method)] != VANTREL_REASON_NOT_TRIED) continue;
    const vantrel_status status = find_by(method, scan, request, found);
    if (status != VANTREL_OK) return status;
    if (found.count > 0) break;
  }
  found.count = std::min(found.count, request.most_cards);
  return VANTREL_OK;
}

}  // namespace vantrel::cards
