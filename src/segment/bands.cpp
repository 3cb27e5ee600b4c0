#include "segment/bands.h"

#include <algorithm>

namespace vantrel::segment {

void classify_rows(ConstPixels strip, int limit, std::span<RowClass> rows) {
  for (int r = 0; r < strip.rows; ++r) {
    const unsigned char* pixels = strip.row(r);
    const auto black = std::count(pixels, pixels + strip.cols, 0);
    rows[static_cast<std::size_t>(r)] = black > limit ? RowClass::kDense : RowClass::kSparse;
  }
}

void bridge_gaps(std::span<RowClass> rows, int gap) {
  auto last_dense = rows.end();
  for (auto row = rows.begin(); row != rows.end(); ++row) {
    if (*row != RowClass::kDense) continue;
    if (last_dense != rows.end() && row - last_dense < gap) std::fill(last_dense, row, RowClass::kDense);
    last_dense = row;
  }
}

std::span<Span> collect_bands(std::span<const RowClass> rows, std::span<Span> room) {
  std::size_t count = 0;
  auto row = rows.begin();
  while ((row = std::find(row, rows.end(), RowClass::kDense)) != rows.end()) {
    const auto end = std::find(row, rows.end(), RowClass::kSparse);
    room[count++] = {static_cast<int>(row - rows.begin()), static_cast<int>(end - rows.begin())};
    row = end;
  }
  return room.first(count);
}

}  // namespace vantrel::segment
