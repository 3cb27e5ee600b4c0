#include "cards/texts.h"

namespace vantrel::cards {

const char* text_of(vantrel_status status) {
  switch (status) {
    case VANTREL_OK:
      return "done";
    case VANTREL_ERROR_NULL:
      return "a pointer is missing, or a handle is not one of the library's";
    case VANTREL_ERROR_SIZE:
      return "a picture has no pixels, or too many";
    case VANTREL_ERROR_STRIDE:
      return "the rows of a picture overlap";
    case VANTREL_ERROR_FORMAT:
      return "the format is unknown, or not one that this function takes";
    case VANTREL_ERROR_RESOLUTION:
      return "the dots per inch are not a number from 0 on";
    case VANTREL_ERROR_OPTION:
      return "an option has a value, or a record a size, that there is not";
    case VANTREL_ERROR_GEOMETRY:
      return "the corners enclose nothing, or the rectangle is not within the image";
    case VANTREL_ERROR_TARGET:
      return "the target's size or format does not fit, or it holds a block already";
    case VANTREL_ERROR_ABSENT:
      return "there is no such card, or the method was not tried";
    case VANTREL_ERROR_MEMORY:
      return "not enough memory";
  }
  return "an unknown status";
}

const char* text_of(vantrel_reason reason) {
  switch (reason) {
    case VANTREL_REASON_FOUND:
      return "a card was found";
    case VANTREL_REASON_NOT_TRIED:
      return "the method was not tried";
    case VANTREL_REASON_BLANK:
      return "no edge near the border of the scan: it is blank";
    case VANTREL_REASON_NO_SIDE:
      return "no side of a card was found";
    case VANTREL_REASON_TOO_SMALL:
      return "the corners found span less than half of the scan";
    case VANTREL_REASON_DEGENERATE:
      return "the border lines found do not meet in four corners";
    case VANTREL_REASON_NO_MARKS:
      return "no card was found on the sheet";
    case VANTREL_REASON_BILEVEL:
      return "a bilevel scan has no levels to search";
    case VANTREL_REASON_SCAN_TOO_SMALL:
      return "the scan is too small to be searched";
    case VANTREL_REASON_SCAN_TOO_LARGE:
      return "a side of the scan is too long to be searched";
    case VANTREL_REASON_RESOLUTION_UNKNOWN:
      return "the resolution is not known";
    case VANTREL_REASON_RESOLUTION_TOO_LOW:
      return "the resolution is too low";
    case VANTREL_REASON_NOTHING_LIKE_A_CARD:
      return "nothing on the scan is bordered like a card";
  }
  return "an unknown reason";
}

const char* name_of(vantrel_method method) {
  switch (method) {
    case VANTREL_METHOD_DARK_GLASS:
      return "dark-glass";
    case VANTREL_METHOD_FLAT_LIGHT:
      return "flat-light";
    case VANTREL_METHOD_SHEET:
      return "sheet";
    case VANTREL_METHOD_ANYWHERE:
      return "anywhere";
  }
  return nullptr;
}

}  // namespace vantrel::cards
