#include "anywhere/outline.h"

#include <algorithm>
#include <limits>

namespace vantrel::anywhere {

void Outline::find_box(const RegionFinder& finder, const Region& region) {
  left_ = std::numeric_limits<int>::max();
  right_ = 0;
  top_ = finder.run(region.first).row;
  for (std::uint32_t i = region.first; i != kNoRun; i = finder.run(i).next) {
    const Run& run = finder.run(i);
    left_ = std::min<int>(left_, run.first);
    right_ = std::max<int>(right_, run.end);
    bottom_ = run.row + 1;
  }
}

void Outline::trace(const RegionFinder& finder, const Region& region) {
  find_box(finder, region);
  constexpr std::uint16_t kNone = std::numeric_limits<std::uint16_t>::max();
  std::fill(row_firsts_.get() + top_, row_firsts_.get() + bottom_, kNone);
  std::fill(row_ends_.get() + top_, row_ends_.get() + bottom_, std::uint16_t{0});
  std::fill(col_firsts_.get() + left_, col_firsts_.get() + right_, kNone);
  for (std::uint32_t i = region.first; i != kNoRun; i = finder.run(i).next) {
    const Run& run = finder.run(i);
    row_firsts_[run.row] = std::min(row_firsts_[run.row], run.first);
    row_ends_[run.row] = std::max(row_ends_[run.row], run.end);
    // Rows come in order: the first that is seen in a column is its topmost, and the last stays.
    const auto below = static_cast<std::uint16_t>(run.row + 1);
    for (std::size_t col = run.first; col < run.end; ++col) {
      col_firsts_[col] = std::min(col_firsts_[col], run.row);
      col_ends_[col] = below;
    }
  }
}

int Outline::filled_area() const {
  int filled = 0;
  for (int row = top_; row < bottom_; ++row) filled += row_end(row) - row_first(row);
  return filled;
}

}  // namespace vantrel::anywhere
