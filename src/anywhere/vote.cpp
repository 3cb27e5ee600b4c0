#include "anywhere/vote.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

int diagonal(int rows, int cols) {
  return static_cast<int>(std::sqrt(static_cast<double>(rows) * rows + static_cast<double>(cols) * cols)) + 2;
}

}  // namespace

// A normal points up to a half-turn from the x axis towards y, so a distance is at least -cols.
Vote::Vote(int rows, int cols)
    : offset_(cols + 1),
      distances_(offset_ + diagonal(rows, cols)),
      cells_(static_cast<std::size_t>(kDirections) * static_cast<std::size_t>(distances_), image::Fill::kZero) {
  stale_.fill(true);
}

int Vote::weight(const Edge& edge, int threshold) {
  return std::clamp(edge.magnitude / std::max(1, 2 * threshold) + 1, 1, 4);
}

void Vote::count(const Edge& edge, int weight) {
  for (int turn = -kReach; turn <= kReach; ++turn) {
    const int direction = (edge.direction + turn + kDirections) % kDirections;
    const Point& normal = kNormals[static_cast<std::size_t>(direction)];
    const int distance = static_cast<int>(normal.x * edge.x + normal.y * edge.y + offset_);
    // The farther from the edge's own direction, the less.
    const int share = 2 * kReach - std::abs(turn);
    cells_[static_cast<std::size_t>(direction) * static_cast<std::size_t>(distances_) +
           static_cast<std::size_t>(distance)] += weight * share;
    stale_[static_cast<std::size_t>(direction)] = true;
  }
}

void Vote::look_again(int direction) {
  const auto at = static_cast<std::size_t>(direction);
  const std::int32_t* row = cells_.get() + at * static_cast<std::size_t>(distances_);
  const std::int32_t* greatest = std::max_element(row, row + distances_);
  peaks_[at] = {static_cast<int>(greatest - row), direction, *greatest};
  stale_[at] = false;
}

geometry::Peak<int> Vote::peak() {
  geometry::Peak<int> best;
  for (int direction = 0; direction < kDirections; ++direction) {
    const auto at = static_cast<std::size_t>(direction);
    if (stale_[at]) look_again(direction);
    if (peaks_[at].votes > best.votes) best = peaks_[at];
  }
  return best;
}

}  // namespace vantrel::anywhere
