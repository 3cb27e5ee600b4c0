#include "words.h"

namespace tool {
namespace {

std::string limit(vantrel_limit limit) { return std::to_string(vantrel_limit_value(limit)); }

}  // namespace

std::string words_of(vantrel_reason reason) {
  switch (reason) {
    case VANTREL_REASON_SCAN_TOO_LARGE:
      return "a side is longer than " + limit(VANTREL_LIMIT_FINDER_SIDE) + " pixels";
    case VANTREL_REASON_SCAN_TOO_SMALL: {
      const std::string least = limit(VANTREL_LIMIT_COLOUR_SIDE);
      return "a colour scan must be at least " + least + " x " + least;
    }
    default:
      return vantrel_reason_text(reason);
  }
}

}  // namespace tool
