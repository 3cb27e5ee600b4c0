#include "image/crop.h"

#include <algorithm>
#include <cstring>

namespace vantrel::image {
namespace {

/** Copies what of [left, left + width) lies on the source row, `pixel_bytes` bytes a pixel. */
void copy_pixels(const unsigned char* source, int source_cols, unsigned char* target, int left, int width,
                 int pixel_bytes) {
  const int from = std::max(left, 0);
  const int to = std::min(left + width, source_cols);
  if (from >= to) return;
  std::memcpy(target + std::ptrdiff_t{from - left} * pixel_bytes, source + std::ptrdiff_t{from} * pixel_bytes,
              static_cast<std::size_t>(to - from) * static_cast<std::size_t>(pixel_bytes));
}

void set_white(unsigned char* row, int from, int to) {
  for (int x = from; x < to; ++x) row[x / 8] = static_cast<unsigned char>(row[x / 8] | 0x80 >> x % 8);
}

/**
 * Copies `width` bits that start `left` bits into a bilevel row. Whole bytes are written: the bits behind the width
 * come as they follow in memory, across the row's padding and into the next row; behind the last row they are 0.
 */
void copy_bits(const ConstPixels& source, int r, unsigned char* target, int left, int width) {
  const std::ptrdiff_t end = source.stride * source.rows;
  const std::ptrdiff_t row = source.stride * r;
  const auto byte_at = [&](std::ptrdiff_t i) {
    return i < 0 || row + i >= end ? 0u : static_cast<unsigned>(source.data[row + i]);
  };
  const std::ptrdiff_t first = left >= 0 ? left / 8 : (left - 7) / 8;
  const int shift = static_cast<int>(left - first * 8);
  for (int x = 0; x < width; x += 8) {
    const std::ptrdiff_t i = first + x / 8;
    target[x / 8] = static_cast<unsigned char>(byte_at(i) << shift | byte_at(i + 1) >> (8 - shift));
  }
  set_white(target, 0, std::min(width, -left));
  set_white(target, std::max(0, source.cols - left), width);
}

}  // namespace

void copy_rectangle(ConstPixels source, Pixels target, int left, int first_row, int bit_count) {
  for (int k = 0; k < target.rows; ++k) {
    const int r = first_row + k;
    if (r < 0 || r >= source.rows) continue;
    if (bit_count == 1) {
      copy_bits(source, r, target.row(k), left, target.cols);
    } else {
      whiten_row_end(target, k);
      copy_pixels(source.row(r), source.cols, target.row(k), left, target.cols, bit_count / 8);
    }
  }
}

}  // namespace vantrel::image
