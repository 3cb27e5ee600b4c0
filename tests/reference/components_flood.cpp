#include "reference/components_flood.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "support/tally.h"

namespace reference::components {

namespace {

using Seen = std::vector<std::vector<bool>>;

Character fill_from(const Picture& edge, int row, int col, Seen& seen) {
  Character found{col, col, row, row, 0, 0};
  std::vector<std::pair<int, int>> open{{row, col}};
  seen.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(col)) = true;
  while (!open.empty()) {
    const auto [r, c] = open.back();
    open.pop_back();
    ++found.pixels;
    found.left = std::min(found.left, c);
    found.right = std::max(found.right, c);
    found.bottom = std::min(found.bottom, r);
    found.top = std::max(found.top, r);
    for (int near_row = std::max(r - 1, 0); near_row <= std::min(r + 1, edge.rows - 1); ++near_row) {
      for (int near_col = std::max(c - 1, 0); near_col <= std::min(c + 1, edge.cols - 1); ++near_col) {
        if (edge.at(near_row, near_col) != 0) continue;
        if (seen.at(static_cast<std::size_t>(near_row)).at(static_cast<std::size_t>(near_col))) continue;
        seen.at(static_cast<std::size_t>(near_row)).at(static_cast<std::size_t>(near_col)) = true;
        open.emplace_back(near_row, near_col);
      }
    }
  }
  return found;
}

}  // namespace

std::vector<Character> flood(const Picture& edge) {
  std::vector<Character> found;
  Seen seen(static_cast<std::size_t>(edge.rows), std::vector<bool>(static_cast<std::size_t>(edge.cols), false));
  for (int row = 0; row < edge.rows; ++row) {
    for (int col = 0; col < edge.cols; ++col) {
      if (edge.at(row, col) != 0) continue;
      if (seen.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(col))) continue;
      found.push_back(fill_from(edge, row, col, seen));
    }
  }
  return found;
}

std::vector<Character> sorted_without_labels(std::vector<Character> all) {
  for (Character& c : all) c.label = 0;
  std::sort(all.begin(), all.end(), [](const Character& p, const Character& q) {
    return std::tie(p.bottom, p.left, p.top, p.right, p.pixels) < std::tie(q.bottom, q.left, q.top, q.right, q.pixels);
  });
  return all;
}

}  // namespace reference::components
