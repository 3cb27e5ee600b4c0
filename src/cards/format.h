/**
 * @file format.h
 * @brief How pixels lie in the rows of an image, and the conversion of rows.
 */
#ifndef VANTREL_CARDS_FORMAT_H
#define VANTREL_CARDS_FORMAT_H

#include <cstdint>

#include "vantrel_cards.h"

namespace vantrel::cards {

/** The bytes of a pixel of one byte or more: how many, and which is what. Gray has all three colours in one. */
struct Layout {
  int bytes;
  int blue;
  int green;
  int red;
  int opacity; /**< -1: it has none */
};

/** The layout of a format that has one: any but bilevel. */
constexpr Layout layout_of(vantrel_format format) {
  switch (format) {
    case VANTREL_FORMAT_BGR:
      return {3, 0, 1, 2, -1};
    case VANTREL_FORMAT_RGB:
      return {3, 2, 1, 0, -1};
    case VANTREL_FORMAT_BGRA:
      return {4, 0, 1, 2, 3};
    case VANTREL_FORMAT_RGBA:
      return {4, 2, 1, 0, 3};
    default:
      return {1, 0, 0, 0, -1};
  }
}

/** The bits of a pixel; 0 when there is no such format. */
constexpr int bits_of(vantrel_format format) {
  switch (format) {
    case VANTREL_FORMAT_BILEVEL:
      return 1;
    case VANTREL_FORMAT_GRAY:
    case VANTREL_FORMAT_BGR:
    case VANTREL_FORMAT_RGB:
    case VANTREL_FORMAT_BGRA:
    case VANTREL_FORMAT_RGBA:
      return 8 * layout_of(format).bytes;
    default:
      return 0;
  }
}

/** The bytes that the pixels of a row take. */
constexpr std::int64_t row_bytes(std::int64_t width, vantrel_format format) {
  return (width * bits_of(format) + 7) / 8;
}

/** A format's pixels of one byte or more have colours. */
constexpr bool is_colour(vantrel_format format) { return layout_of(format).bytes > 1; }

/** Copies `count` pixels of a row into another format, which is not bilevel. */
void convert_row(const unsigned char* source, vantrel_format from, unsigned char* target, vantrel_format to, int count);

}  // namespace vantrel::cards

#endif
