#include "segment/edgeclip/edge_clip.h"

#include <algorithm>

namespace vantrel::segment {
namespace {

using geometry::Span;
using image::ConstPixels;
using image::Pixels;

/** A row and its neighbours in memory. */
struct Rows {
  const unsigned char* before;
  const unsigned char* here;
  const unsigned char* after;

  int squared_gradient(std::ptrdiff_t c) const {
    const int down = before[c - 1] + 2 * before[c] + before[c + 1] - after[c - 1] - 2 * after[c] - after[c + 1];
    const int along = before[c + 1] + 2 * here[c + 1] + after[c + 1] - before[c - 1] - 2 * here[c - 1] - after[c - 1];
    return along * along + down * down;
  }
};

Rows rows_at(ConstPixels image, int r) { return {image.row(r - 1), image.row(r), image.row(r + 1)}; }

int count_edges(ConstPixels image, int r, int threshold) {
  const Rows rows = rows_at(image, r);
  const int squared_limit = threshold * threshold;
  int edges = 0;
  for (std::ptrdiff_t c = 0; c < image.cols; ++c) edges += rows.squared_gradient(c) > squared_limit;
  return edges;
}

/** The result is kept in 16 bits, as the rows and thresholds of the clip are. */
std::int16_t in_16_bits(double value) { return static_cast<std::int16_t>(static_cast<int>(value)); }

/**
 * The row of a band with the most edges, the earlier of equals; `row` when none has more than `best`.
 *
 * @param looked_at the rows whose edges count; others have none.
 */
std::int16_t busiest_row(ConstPixels image, Span band, Span looked_at, int best, std::int16_t row) {
  for (int r = band.first; r < band.end; ++r) {
    const int edges = looked_at.contains(r) ? count_edges(image, r, kEdgeThreshold) : 0;
    if (edges > best) {
      best = edges;
      row = static_cast<std::int16_t>(r);
    }
    if (image.cols == 0) break;  // All rows are alike.
  }
  return row;
}

/** The pixels that have a neighbour on each side. Their number is kept in 16 bits: rows that it cannot hold have none.
 */
ConstPixels inner_columns(ConstPixels image) {
  const int cols = std::max(static_cast<std::int16_t>(image.cols - 1) - 1, 0);
  return {image.data + 1, image.rows, cols, image.stride};
}

}  // namespace

BorderRows find_border_rows(ConstPixels gray) {
  const Span near = {5, gray.rows / 8};
  const Span far = {static_cast<int>(gray.rows * 0.75), static_cast<int>(gray.rows * 0.9)};
  // Edges are looked for up to a row kept in 16 bits; the busiest row is looked for in the whole band.
  const Span far_edges = {far.first, static_cast<std::int16_t>(far.end)};
  const ConstPixels inner = inner_columns(gray);
  return {
      busiest_row(inner, near, near, in_16_bits(gray.cols * kNearShare), 0),
      busiest_row(inner, far, far_edges, in_16_bits(gray.cols * kFarShare), static_cast<std::int16_t>(gray.rows - 1))};
}

void mark_edges(ConstPixels source, Pixels edge, Span rows, int threshold) {
  const int squared_limit = threshold * threshold;
  for (int r = rows.first; r < rows.end; ++r) {
    const Rows around = rows_at(source, r);
    unsigned char* mark = edge.row(r);
    for (std::ptrdiff_t c = 0; c < edge.cols; ++c) {
      mark[c] = around.squared_gradient(c) > squared_limit ? 255 : mark[c];
    }
  }
}

void add_black_per_row(ConstPixels image, std::uint16_t* counters) {
  if (image.empty()) return;
  for (int r = 0; r < image.rows; ++r) {
    const unsigned char* row = image.row(r);
    counters[r] = static_cast<std::uint16_t>(counters[r] + std::count(row, row + image.cols, 0));
  }
}

void add_white_per_column(ConstPixels image, std::uint16_t* counters) {
  if (image.empty()) return;
  for (int r = 0; r < image.rows; ++r) {
    const unsigned char* row = image.row(r);
    for (int c = 0; c < image.cols; ++c) counters[c] = static_cast<std::uint16_t>(counters[c] + (row[c] == 255));
  }
}

}  // namespace vantrel::segment
