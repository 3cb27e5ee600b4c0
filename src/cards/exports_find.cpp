// Doors of vantrel_cards.h: looking for cards, and the handle that tells what was found.
#include <cstdlib>
#include <new>

#include "cards/find.h"
#include "cards/record.h"
#include "cards/source.h"

namespace cards = vantrel::cards;

namespace {

using Methods = std::span<const vantrel_method>;

vantrel_status read_methods(const vantrel_find_options& options, Methods& methods) {
  if (options.methods == nullptr) return options.method_count == 0 ? VANTREL_OK : VANTREL_ERROR_NULL;
  if (options.method_count == 0) return VANTREL_ERROR_OPTION;
  methods = {options.methods, options.method_count};
  for (const vantrel_method method : methods) {
    if (!cards::is_method(method)) return VANTREL_ERROR_OPTION;
  }
  return VANTREL_OK;
}

vantrel_status read(const vantrel_find_options& options, cards::Request& request) {
  // Options that this version does not know might ask for what it cannot do.
  if (options.size != sizeof options) return VANTREL_ERROR_OPTION;
  if (options.most_cards < 0) return VANTREL_ERROR_OPTION;
  if (options.straighten != 0 && options.straighten != 1) return VANTREL_ERROR_OPTION;
  if (!cards::is_resolution(options.analysis_dpi)) return VANTREL_ERROR_RESOLUTION;
  if (options.most_cards > 0) request.most_cards = static_cast<std::size_t>(options.most_cards);
  request.analysis_dpi = options.analysis_dpi;
  request.straighten = options.straighten == 1;
  return read_methods(options, request.methods);
}

void release(vantrel_cards* found) {
  std::free(found->alternatives);
  std::free(found);
}

vantrel_status find(const vantrel_image& scan, const cards::Request& request, vantrel_cards** handle) {
  void* block = std::malloc(sizeof(vantrel_cards));
  if (block == nullptr) return VANTREL_ERROR_MEMORY;
  auto* found = new (block) vantrel_cards;
  const vantrel_status status = cards::find(scan, request, *found);
  if (status == VANTREL_OK) {
    *handle = found;
  } else {
    release(found);
  }
  return status;
}

bool is_handle(const vantrel_cards* found) { return found != nullptr && found->tag == cards::kHandleTag; }

/** Gives what only one method knows, where there is something. */
template <class Details>
vantrel_status give_details(const vantrel_cards* found, Details vantrel_cards::*details, Details* caller) {
  if (!is_handle(found) || caller == nullptr) return VANTREL_ERROR_NULL;
  if ((found->*details).size == 0) return VANTREL_ERROR_ABSENT;
  return cards::give(found->*details, sizeof(Details), *caller);
}

}  // namespace

vantrel_status vantrel_find(const vantrel_image* scan, const vantrel_find_options* options, vantrel_cards** found) {
  if (found == nullptr) return VANTREL_ERROR_NULL;
  *found = nullptr;
  const vantrel_status checked = cards::check(scan);
  if (checked != VANTREL_OK) return checked;
  cards::Request request;
  const vantrel_status read_options = options == nullptr ? VANTREL_OK : read(*options, request);
  return read_options == VANTREL_OK ? find(*scan, request, found) : read_options;
}

void vantrel_cards_release(vantrel_cards* found) {
  if (!is_handle(found)) return;
  found->tag = 0;
  release(found);
}

size_t vantrel_cards_count(const vantrel_cards* found) { return is_handle(found) ? found->count : 0; }

vantrel_status vantrel_cards_get(const vantrel_cards* found, size_t index, vantrel_card* card) {
  if (!is_handle(found) || card == nullptr) return VANTREL_ERROR_NULL;
  if (index >= found->count) return VANTREL_ERROR_ABSENT;
  return cards::give(found->cards[index], sizeof(vantrel_card), *card);
}

vantrel_status vantrel_cards_alternative(const vantrel_cards* found, size_t card, size_t index,
                                         vantrel_card* alternative) {
  if (!is_handle(found) || alternative == nullptr) return VANTREL_ERROR_NULL;
  const cards::Alternatives* alternatives = cards::alternatives_of(*found, card);
  if (alternatives == nullptr || index >= static_cast<size_t>(alternatives->count)) return VANTREL_ERROR_ABSENT;
  return cards::give(alternatives->cards[index], sizeof(vantrel_card), *alternative);
}

vantrel_reason vantrel_cards_reason(const vantrel_cards* found, vantrel_method method) {
  if (!is_handle(found) || !cards::is_method(method)) return VANTREL_REASON_NOT_TRIED;
  return found->reasons[cards::index_of(method)];
}

vantrel_status vantrel_cards_dark_glass(const vantrel_cards* found, vantrel_dark_glass* details) {
  return give_details(found, &vantrel_cards::dark_glass, details);
}

vantrel_status vantrel_cards_flat_light(const vantrel_cards* found, vantrel_flat_light* details) {
  return give_details(found, &vantrel_cards::flat_light, details);
}

vantrel_status vantrel_cards_sheet(const vantrel_cards* found, vantrel_sheet* details) {
  return give_details(found, &vantrel_cards::sheet, details);
}
