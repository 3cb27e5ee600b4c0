#include "segment/edge_clip.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "image/bitmap.h"

namespace vantrel {
namespace {

/** Marks the columns [0, columns) of row r whose squared gradient exceeds the limit. */
void mark_edges(ConstPixels source, Pixels edge, int r, int columns, int squared_limit) {
  const unsigned char* below = source.row(r - 1);
  const unsigned char* here = source.row(r);
  const unsigned char* above = source.row(r + 1);
  unsigned char* mark = edge.row(r);
  for (std::ptrdiff_t c = 0; c < columns; ++c) {
    const int across = below[c - 1] + 2 * below[c] + below[c + 1] - above[c - 1] - 2 * above[c] - above[c + 1];
    const int along = below[c + 1] + 2 * here[c + 1] + above[c + 1] - below[c - 1] - 2 * here[c - 1] - above[c - 1];
    mark[c] = along * along + across * across > squared_limit ? 255 : mark[c];
  }
}

/** The result is kept in 16 bits, as the rows and thresholds of the clip are. */
std::int16_t in_16_bits(double value) { return static_cast<std::int16_t>(static_cast<int>(value)); }

/** The row of [from, to) with the most edge pixels, the earlier of equals; `row` when none has more than `best`. */
std::int16_t busiest_row(ConstPixels edge, int from, int to, std::int16_t best, std::int16_t row) {
  for (int r = from; r < to; ++r) {
    const unsigned char* mark = edge.row(r);
    const auto count = static_cast<std::int16_t>(edge.cols - std::count(mark, mark + edge.cols, 0));
    if (count > best) {
      best = count;
      row = static_cast<std::int16_t>(r);
    }
  }
  return row;
}

struct Free {
  void operator()(void* block) const { std::free(block); }
};
using EdgeMap = std::unique_ptr<unsigned char[], Free>;

/** A cleared map with the image's geometry, or null. An image without pixels has a map as well. */
EdgeMap cleared_map(ConstPixels image) {
  if (image.rows < 0 || image.cols < 0) return nullptr;
  const std::size_t row_bytes = std::max<std::size_t>(static_cast<std::size_t>(image.stride), 1);
  const std::size_t rows = std::max<std::size_t>(static_cast<std::size_t>(image.rows), 1);
  return EdgeMap(static_cast<unsigned char*>(std::calloc(rows, row_bytes)));
}

}  // namespace
}  // namespace vantrel

int Sobel_Edge(unsigned char* source, unsigned char* edge, int stride, int band1From, int band1To, int band2From,
               short threshold, short band2To, short columns) {
  const vantrel::ConstPixels gray{source, 0, columns, stride};
  const vantrel::Pixels map{edge, 0, columns, stride};
  const int squared_limit = threshold * threshold;
  for (int r = std::max(band1From, 1); r < band1To; ++r) vantrel::mark_edges(gray, map, r, columns, squared_limit);
  for (int r = band2From; r < band2To; ++r) vantrel::mark_edges(gray, map, r, columns, squared_limit);
  return 1;
}

bool ClipImg(BITMAPPTR* image, int& firstRow, int& secondRow) {
  if (image->pInfo == nullptr || image->pInfo->biBitCount != 8) return false;
  const vantrel::ConstPixels gray = vantrel::const_pixels_of(*image);
  const vantrel::EdgeMap map = vantrel::cleared_map(gray);
  if (map == nullptr) return false;

  // The near band: from row 5 to an eighth of the height. The far band: from three quarters to nine tenths.
  const int near_from = 5;
  const int near_to = gray.rows / 8;
  const int far_from = static_cast<int>(gray.rows * 0.75);
  const int far_to = static_cast<int>(gray.rows * 0.9);
  // The first and the last column have a neighbour outside the image. The count of the others is kept in 16 bits:
  // rows that it cannot hold have no edges.
  const auto columns = static_cast<short>(std::max(static_cast<std::int16_t>(gray.cols - 1) - 1, 0));
  Sobel_Edge(image->pBits + 1, map.get() + 1, static_cast<int>(gray.stride), near_from, near_to, far_from, 60,
             static_cast<std::int16_t>(far_to), columns);

  const vantrel::ConstPixels edges{map.get(), gray.rows, gray.cols, gray.stride};
  firstRow = vantrel::busiest_row(edges, near_from, near_to, vantrel::in_16_bits(gray.cols * 0.45), 0);
  secondRow = vantrel::busiest_row(edges, far_from, far_to, vantrel::in_16_bits(gray.cols * 0.75),
                                   static_cast<std::int16_t>(gray.rows - 1));
  return true;
}

void HProjection(unsigned char* pixels, short width, short height, unsigned short* histogram) {
  for (int r = 0; r < height; ++r) {
    const unsigned char* row = pixels + std::ptrdiff_t{r} * width;
    const auto black = width > 0 ? std::count(row, row + width, 0) : 0;
    histogram[r] = static_cast<unsigned short>(histogram[r] + black);
  }
}

void VProjection(unsigned char* pixels, short width, short height, unsigned short* histogram) {
  for (int r = 0; r < height; ++r) {
    const unsigned char* row = pixels + std::ptrdiff_t{r} * width;
    for (int c = 0; c < width; ++c) histogram[c] = static_cast<unsigned short>(histogram[c] + (row[c] == 255));
  }
}
