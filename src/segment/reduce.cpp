#include "segment/reduce.h"

#include <algorithm>

#include "image/work_array.h"

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

/** 256 times a mean over about the last 256 pixels, after one more pixel. */
int next_sum(int sum, int level) { return sum + level - (sum >> 8); }

unsigned char black_if(bool black) { return black ? 0 : 255; }

/**
 * Black is what is darker than 27/32 of the mean: 27 * sum >> 13. With the sum of the same column in the row before
 * added, 27 * (sum + before) >> 14 takes the same share of the average of both means.
 */
void binarise_first_row(unsigned char* row, int& sum, std::span<int> sums) {
  for (std::size_t c = 0; c < sums.size(); ++c) {
    sum = next_sum(sum, row[c]);
    sums[c] = sum;
    row[c] = black_if(row[c] < (27 * sum) >> 13);
  }
}

void binarise_pixel(unsigned char& pixel, int& sum, int& before) {
  sum = next_sum(sum, pixel);
  pixel = black_if(pixel < (27 * (sum + before)) >> 14);
  before = sum;
}

}  // namespace

void reduce_colour(ConstPixels source, Pixels target, int n) { reduce(source, target, n, colour_level); }

void reduce_gray(ConstPixels source, Pixels target, int n) { reduce(source, target, n, gray_level); }

void reduce_bits(ConstPixels source, Pixels target, int n) { reduce(source, target, n, bit_level); }

bool binarise(Pixels image) {
  if (image.empty()) return true;
  image::WorkArray<int> sums(static_cast<std::size_t>(image.cols));
  if (!sums.ready()) return false;

  int sum = 256 * image.data[0];
  binarise_first_row(image.data, sum, sums.all());
  for (int r = 1; r < image.rows; ++r) {
    unsigned char* row = image.row(r);
    // The scan turns round at the end of each row, so that the mean carries on from a neighbour.
    if (r % 2 == 1) {
      for (int c = image.cols - 1; c >= 0; --c) binarise_pixel(row[c], sum, sums[static_cast<std::size_t>(c)]);
    } else {
      for (int c = 0; c < image.cols; ++c) binarise_pixel(row[c], sum, sums[static_cast<std::size_t>(c)]);
    }
  }
  return true;
}

}  // namespace vantrel::segment
