/**
 * @file picture.h
 * @brief A plain copy of an image's pixels for the naive second implementations: a value, and every access is checked.
 */
#ifndef VANTREL_TESTS_SUPPORT_PICTURE_H
#define VANTREL_TESTS_SUPPORT_PICTURE_H

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

#include "support/image.h"

namespace support {

/** Pixel rows in memory order, each padded to whole 32-bit words. An access outside them throws. */
struct Picture {
  int cols = 0;
  int rows = 0;
  int bits = 8;
  int x_resolution = 0;
  int y_resolution = 0;
  std::vector<unsigned char> bytes;

  Picture() = default;
  /** A picture of one byte value. */
  Picture(int columns, int row_count, int depth, unsigned char fill) : cols(columns), rows(row_count), bits(depth) {
    bytes.assign(static_cast<std::size_t>(stride()) * static_cast<std::size_t>(rows), fill);
  }
  explicit Picture(const Image& image) : Picture(image.width(), image.height(), image.header().biBitCount, 0) {
    x_resolution = image.header().biXPelsPerMeter;
    y_resolution = image.header().biYPelsPerMeter;
    if (!bytes.empty()) std::memcpy(bytes.data(), image.record().pBits, bytes.size());
  }

  int stride() const { return stride_of(cols, bits); }
  /** Byte `byte` of memory row `row`. */
  unsigned char& at(int row, int byte) { return bytes.at(index(row, byte)); }
  unsigned char at(int row, int byte) const { return bytes.at(index(row, byte)); }

  /** The byte that lies `byte` bytes behind the start of a row, wherever that is; `outside` beyond the last row. */
  unsigned char flat(int row, int byte, unsigned char outside) const {
    return holds(row, byte) ? at(row, byte) : outside;
  }
  bool holds(int row, int byte) const { return index(row, byte) < bytes.size(); }

 private:
  std::size_t index(int row, int byte) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(stride()) + static_cast<std::size_t>(byte);
  }
};

/** An image block with a picture's pixels and measures. */
inline Image image_of(const Picture& picture) {
  Image image(picture.cols, picture.rows, picture.bits);
  image.header().biXPelsPerMeter = picture.x_resolution;
  image.header().biYPelsPerMeter = picture.y_resolution;
  if (!picture.bytes.empty()) std::memcpy(image.ptr()->pBits, picture.bytes.data(), picture.bytes.size());
  return image;
}

/** Where two pictures differ first, in words; empty when they are the same, padding included. */
inline std::string difference(const Picture& left, const Picture& right) {
  if (left.cols != right.cols || left.rows != right.rows || left.bits != right.bits) return "other size or depth";
  if (left.x_resolution != right.x_resolution || left.y_resolution != right.y_resolution) return "other resolution";
  for (int row = 0; row < left.rows; ++row) {
    for (int byte = 0; byte < left.stride(); ++byte) {
      if (left.at(row, byte) == right.at(row, byte)) continue;
      return "row " + std::to_string(row) + " byte " + std::to_string(byte) + ": " +
             std::to_string(left.at(row, byte)) + " and " + std::to_string(right.at(row, byte));
    }
  }
  return "";
}

}  // namespace support

#endif
