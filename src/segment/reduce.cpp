#include "segment/reduce.h"

namespace vantrel::segment {
namespace {

/** `level_at(row, column)` gives the gray level of a source pixel. */
template <class LevelAt>
void reduce(ConstPixels source, Pixels target, int n, LevelAt level_at) {
  if (target.empty()) return;
  for (int r = 0; r < target.rows; ++r) {
    const unsigned char* from = source.row(r * n);
    unsigned char* to = target.row(r);
    std::ptrdiff_t column = 0;
    for (int c = 0; c < target.cols; ++c, column += n) to[c] = level_at(from, column);
  }
}

unsigned char colour_level(const unsigned char* row, std::ptrdiff_t column) {
  const unsigned char* pixel = row + 3 * column;
  // Blue, green, red in this order: the last bit of a single-precision sum depends on it.
  const float level = 0.114f * pixel[0] + 0.587f * pixel[1] + 0.299f * pixel[2];
  return static_cast<unsigned char>(static_cast<int>(level));
}

unsigned char gray_level(const unsigned char* row, std::ptrdiff_t column) { return row[column]; }

unsigned char bit_level(const unsigned char* row, std::ptrdiff_t column) {
  return (row[column / 8] & 0x80 >> column % 8) != 0 ? 255 : 0;
}

}  // namespace

void reduce_colour(ConstPixels source, Pixels target, int n) { reduce(source, target, n, colour_level); }

void reduce_gray(ConstPixels source, Pixels target, int n) { reduce(source, target, n, gray_level); }

void reduce_bits(ConstPixels source, Pixels target, int n) { reduce(source, target, n, bit_level); }

}  // namespace vantrel::segment
