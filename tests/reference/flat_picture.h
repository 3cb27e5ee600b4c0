/**
 * @file flat_picture.h
 * @brief What the naive second implementations read images through, and how they tell which way they went.
 */
#ifndef VANTREL_TESTS_REFERENCE_FLAT_PICTURE_H
#define VANTREL_TESTS_REFERENCE_FLAT_PICTURE_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "vantrel.h"

namespace reference {

/** How often each outcome of a procedure was reached, by its name. */
using Outcomes = std::map<std::string, int>;

/** A copy of an image's pixel bytes. Every read is checked: one outside throws. */
struct Picture {
  int width;
  int height;
  int depth;
  int stride;
  std::vector<unsigned char> bytes;

  Picture(int columns, int rows, int bits)
      : width(columns), height(rows), depth(bits), stride((columns * bits + 31) / 32 * 4) {
    bytes.assign(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height), 0xFF);
  }

  explicit Picture(const BITMAPPTR& image)
      : Picture(image.pInfo->biWidth, image.pInfo->biHeight, image.pInfo->biBitCount) {
    bytes.assign(image.pBits, image.pBits + bytes.size());
  }

  /** Byte `offset` of memory row `row`. */
  int at(int row, int offset) const {
    return bytes.at(static_cast<std::size_t>(row) * static_cast<std::size_t>(stride) +
                    static_cast<std::size_t>(offset));
  }
  void set(int row, int offset, int value) {
    bytes.at(static_cast<std::size_t>(row) * static_cast<std::size_t>(stride) + static_cast<std::size_t>(offset)) =
        static_cast<unsigned char>(value);
  }
};

}  // namespace reference

#endif
