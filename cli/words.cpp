#include "words.h"

#include <array>
#include <cstdio>

namespace tool {
namespace {

std::string limit(vantrel_limit limit) { return std::to_string(vantrel_limit_value(limit)); }

}  // namespace

std::string rounded(double value, const char* format) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), format, value);
  return text.data();
}

std::string words_of(vantrel_reason reason) {
  switch (reason) {
    case VANTREL_REASON_SCAN_TOO_LARGE:
      return "a side is longer than " + limit(VANTREL_LIMIT_FINDER_SIDE) + " pixels";
    case VANTREL_REASON_SCAN_TOO_SMALL: {
      const std::string least = limit(VANTREL_LIMIT_COLOUR_SIDE);
      return "a colour scan must be at least " + least + " x " + least;
    }
    case VANTREL_REASON_BLANK:
      return "no edge near the border of the scan";
    default:
      return vantrel_reason_text(reason);
  }
}

std::string advice_for(vantrel_reason reason) {
  switch (reason) {
    case VANTREL_REASON_BLANK:
    case VANTREL_REASON_TOO_SMALL:
      return "vantrel auto, which looks anywhere on the scan";
    case VANTREL_REASON_NO_SIDE:
    case VANTREL_REASON_DEGENERATE:
      return "vantrel auto, or --scale 2 where the scan is noisy";
    case VANTREL_REASON_NO_MARKS:
      return "vantrel auto, or --dpi with the true resolution";
    case VANTREL_REASON_BILEVEL:
      return "vantrel auto, or a scan in gray or colour";
    case VANTREL_REASON_SCAN_TOO_SMALL:
      return "a scan of a higher resolution";
    case VANTREL_REASON_SCAN_TOO_LARGE:
      return "vantrel auto, or a scan of a lower resolution";
    case VANTREL_REASON_RESOLUTION_UNKNOWN:
    case VANTREL_REASON_RESOLUTION_TOO_LOW:
      return "vantrel auto, which needs no resolution";
    case VANTREL_REASON_NOTHING_LIKE_A_CARD:
      return "a lid that is darker than the card, or vantrel crop around the card first";
    default:
      return "";
  }
}

}  // namespace tool
