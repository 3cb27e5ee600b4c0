// Doors of vantrel_cards.h that need no scan: versions, texts, limits, images and quadrilaterals.
#include <cstdlib>

#include "cards/limits.h"
#include "cards/quad.h"
#include "cards/source.h"
#include "cards/texts.h"

namespace cards = vantrel::cards;

#define VANTREL_TEXT_OF_(number) #number
#define VANTREL_TEXT_OF(number) VANTREL_TEXT_OF_(number)

const char* vantrel_version(void) {
  return VANTREL_TEXT_OF(VANTREL_VERSION_MAJOR) "." VANTREL_TEXT_OF(VANTREL_VERSION_MINOR) "." VANTREL_TEXT_OF(
      VANTREL_VERSION_PATCH);
}

int32_t vantrel_version_number(void) { return VANTREL_VERSION_NUMBER; }

const char* vantrel_status_text(vantrel_status status) { return cards::text_of(status); }

const char* vantrel_reason_text(vantrel_reason reason) { return cards::text_of(reason); }

const char* vantrel_method_name(vantrel_method method) { return cards::name_of(method); }

int32_t vantrel_format_bits(vantrel_format format) { return cards::bits_of(format); }

int32_t vantrel_limit_value(vantrel_limit limit) {
  switch (limit) {
    case VANTREL_LIMIT_FINDER_SIDE:
      return cards::kMostFinderSide;
    case VANTREL_LIMIT_COLOUR_SIDE:
      return cards::kLeastColourSide;
    case VANTREL_LIMIT_SHEET_DPI:
      return cards::kLeastSheetDpi;
    case VANTREL_LIMIT_SHEET_CARDS:
      return cards::kMostSheetCards;
    case VANTREL_LIMIT_ENLARGED_SIDE:
      return cards::kMostEnlargedSide;
    case VANTREL_LIMIT_CARDS:
      return cards::kMostCards;
  }
  return 0;
}

vantrel_status vantrel_image_check(const vantrel_image* image) { return cards::check(image); }

void vantrel_picture_release(vantrel_picture* picture) {
  if (picture == nullptr || picture->block == nullptr) return;
  std::free(picture->block);
  *picture = {};
}

vantrel_status vantrel_quad_scale(const vantrel_quad* quad, double factor, vantrel_quad* result) {
  if (quad == nullptr || result == nullptr) return VANTREL_ERROR_NULL;
  if (!(factor > 0.0)) return VANTREL_ERROR_OPTION;
  const vantrel_quad scaled = cards::scaled(*quad, factor);
  if (!cards::is_finite(*quad) || !cards::is_finite(scaled)) return VANTREL_ERROR_GEOMETRY;
  *result = scaled;
  return VANTREL_OK;
}
