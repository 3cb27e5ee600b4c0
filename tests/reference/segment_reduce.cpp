#include "reference/segment_reduce.h"

#include <cstddef>
#include <cstdint>

#include "support/tally.h"

namespace reference {
namespace {

int gray_of(const Picture& source, int row, int column) {
  if (source.bits == 8) return source.at(row, column);
  if (source.bits == 1) {
    const int byte = source.at(row, column / 8);
    const int mask = 128 >> (column % 8);
    return (byte & mask) != 0 ? 255 : 0;
  }
  const float blue = 0.114f * static_cast<float>(source.at(row, 3 * column));
  const float green = 0.587f * static_cast<float>(source.at(row, 3 * column + 1));
  const float red = 0.299f * static_cast<float>(source.at(row, 3 * column + 2));
  const float blue_green = blue + green;
  return static_cast<int>(blue_green + red);
}

}  // namespace

Picture reduced(const Picture& source, int n) {
  Picture result(source.cols / n, source.rows / n, 8, 255);
  for (int j = 0; j < result.rows; ++j) {
    for (int i = 0; i < result.cols; ++i) result.at(j, i) = static_cast<unsigned char>(gray_of(source, j * n, i * n));
  }
  return result;
}

void moving_average(std::vector<unsigned char>& pixels, int width, int rows, int stride, Binarised& counts) {
  std::vector<int> stored(static_cast<std::size_t>(width));
  int s = 256 * pixels.at(0);
  for (int row = 0; row < rows; ++row) {
    for (int step = 0; step < width; ++step) {
      const int column = row % 2 == 0 ? step : width - 1 - step;
      const auto at = static_cast<std::size_t>(row * stride + column);
      const auto i = static_cast<std::size_t>(column);
      const int p = pixels.at(at);
      s = s + p - s / 256;
      const int limit = row == 0 ? 27 * s / 8192 : 27 * (s + stored.at(i)) / 16384;
      stored.at(i) = s;
      pixels.at(at) = p < limit ? 0 : 255;
      (p < limit ? counts.black : counts.white) += 1;
    }
  }
}

namespace {

bool is_edge(const Picture& image, int r, int q) {
  const auto p = [&](int i, int j) { return image.at(i, j); };
  const int gy =
      p(r - 1, q - 1) + 2 * p(r - 1, q) + p(r - 1, q + 1) - p(r + 1, q - 1) - 2 * p(r + 1, q) - p(r + 1, q + 1);
  const int gx =
      p(r - 1, q + 1) + 2 * p(r, q + 1) + p(r + 1, q + 1) - p(r - 1, q - 1) - 2 * p(r, q - 1) - p(r + 1, q - 1);
  return gx * gx + gy * gy > 60 * 60;
}

/** The first row of from..to-1 with the most edges, when they are more than `share` of the width. */
int best_row(const Picture& image, int from, int to, double share, int fallback) {
  int best = static_cast<int>(image.cols * share);
  int row = fallback;
  for (int r = from; r < to; ++r) {
    int count = 0;
    for (int q = 1; q <= image.cols - 2; ++q) {
      if (is_edge(image, r, q)) ++count;
    }
    if (count > best) {
      best = count;
      row = r;
    }
  }
  return row;
}

}  // namespace

ClipRows clip_rows(const Picture& image) {
  const int h = image.rows;
  ClipRows rows{};
  rows.second = best_row(image, static_cast<int>(h * 0.75), static_cast<int>(h * 0.9), 0.75, h - 1);
  rows.first = best_row(image, 5, h / 8, 0.45, 0);
  support::tally::count(rows.first != 0 ? "near row found" : "near row by default");
  support::tally::count(rows.second != h - 1 ? "far row found" : "far row by default");
  return rows;
}

}  // namespace reference
