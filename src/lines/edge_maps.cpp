#include "lines/edge_maps.h"

#include <cstring>

#include "lines/kernels.h"

namespace vantrel::lines {

EdgeMaps::EdgeMaps(image::ConstPixels gray)
    : gray_(gray),
      stride_(static_cast<std::ptrdiff_t>(image::stride_bytes(gray.cols, 8))),
      edge_(static_cast<std::size_t>(stride_) * static_cast<std::size_t>(gray.rows)),
      direction_(edge_.ready() ? edge_.size() : 0) {}

/** Clears what mark_edges leaves alone: the first row and column, the last two of each, and the padding. */
void EdgeMaps::clear_frame(image::WorkArray<unsigned char>& map, int none) const {
  const std::ptrdiff_t end = stride_ * gray_.rows;
  const auto clear = [&](std::ptrdiff_t from, std::ptrdiff_t to) {
    from = std::max<std::ptrdiff_t>(from, 0);
    if (from < to) std::memset(map.get() + from, none, static_cast<std::size_t>(to - from));
  };
  const std::ptrdiff_t marked_rows = std::max(gray_.rows - 2, 1);
  const std::ptrdiff_t marked_cols = std::max(gray_.cols - 2, 1);
  clear(0, std::min(stride_ + 1, end));
  // From behind a row's marked columns to the first one of the next row.
  for (std::ptrdiff_t r = 1; r < marked_rows; ++r) clear(r * stride_ + marked_cols, (r + 1) * stride_ + 1);
  clear(marked_rows * stride_, end);
}

void EdgeMaps::detect(const geometry::Rect& interior) {
  clear_frame(edge_, kNoEdge);
  clear_frame(direction_, static_cast<int>(Direction::kNone));
  mark_edges(gray_, {edge_.get(), gray_.rows, gray_.cols, stride_}, {direction_.get(), gray_.rows, gray_.cols, stride_},
             interior);
  skipped_ = skipped_by(interior, gray_.rows, gray_.cols);
}

/** What is no edge has a direction byte of its own. */
std::int64_t EdgeMaps::count_points(const geometry::Rect& area, Direction direction) const {
  const auto value = static_cast<unsigned char>(direction);
  const auto next = static_cast<unsigned char>(value + 1);
  std::int64_t count = 0;
  for (int r = area.rows.first; r < area.rows.end; ++r) {
    const unsigned char* row = this->direction().row(r) + area.cols.first;
    count += kernels->count_below(row, area.cols.size(), next);
    if (value > 0) count -= kernels->count_below(row, area.cols.size(), value);
  }
  return count;
}

}  // namespace vantrel::lines
