#include "segment/reduce.h"

#include <memory>
#include <new>

#include "image/bitmap.h"

namespace vantrel {
namespace {

/**
 * The frame of the three reductions: the gray image of the pixels at multiples of n, what is left over at the right and
 * the top is dropped. `level_at(row, column)` gives the gray level of a source pixel.
 */
template <class LevelAt>
bool reduce(const BITMAPPTR& src, BITMAPPTR& dst, int n, LevelAt level_at) {
  if (dst.pInfo != nullptr || n <= 0) return false;
  const BITMAPINFOHEADER& header = *src.pInfo;
  if (!CreateImage(&dst, header.biWidth / n, header.biHeight / n, 8, header.biXPelsPerMeter / n,
                   header.biYPelsPerMeter / n)) {
    return false;
  }
  const ConstPixels source = const_pixels_of(src);
  const Pixels target = pixels_of(dst);
  for (int r = 0; r < target.rows; ++r) {
    const unsigned char* from = source.row(r * n);
    unsigned char* to = target.row(r);
    std::ptrdiff_t column = 0;
    for (int c = 0; c < target.cols; ++c, column += n) to[c] = level_at(from, column);
  }
  return true;
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
void binarise_first_row(unsigned char* row, int width, int& sum, int* sums) {
  for (int c = 0; c < width; ++c) {
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
}  // namespace vantrel

bool Color2ScaledGray(BITMAPPTR* src, BITMAPPTR* dst, int n) {
  return vantrel::reduce(*src, *dst, n, vantrel::colour_level);
}

bool Gray2ScaledGray(BITMAPPTR* src, BITMAPPTR* dst, int n) {
  return vantrel::reduce(*src, *dst, n, vantrel::gray_level);
}

bool Bin2ScaledGray(BITMAPPTR* src, BITMAPPTR* dst, int n) {
  return vantrel::reduce(*src, *dst, n, vantrel::bit_level);
}

bool Moving_Average(unsigned char* pixels, int width, int rows, int stride) {
  if (width <= 0 || rows <= 0) return true;
  const std::unique_ptr<int[]> sums(new (std::nothrow) int[static_cast<std::size_t>(width)]);
  if (sums == nullptr) return false;

  int sum = 256 * pixels[0];
  vantrel::binarise_first_row(pixels, width, sum, sums.get());
  for (int r = 1; r < rows; ++r) {
    unsigned char* row = pixels + std::ptrdiff_t{r} * stride;
    // The scan turns round at the end of each row, so that the mean carries on from a neighbour.
    if (r % 2 == 1) {
      for (int c = width - 1; c >= 0; --c) vantrel::binarise_pixel(row[c], sum, sums[static_cast<std::size_t>(c)]);
    } else {
      for (int c = 0; c < width; ++c) vantrel::binarise_pixel(row[c], sum, sums[static_cast<std::size_t>(c)]);
    }
  }
  return true;
}
