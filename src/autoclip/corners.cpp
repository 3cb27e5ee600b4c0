#include "autoclip/corners.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "autoclip/elimination.h"

namespace vantrel::autoclip {
namespace {

using geometry::Side;

/** Whole pixels; what does not fit is the nearest that does, and what is no number is 0. */
int truncate(double value) {
  if (value != value) return 0;
  constexpr double kMin = std::numeric_limits<int>::min();
  constexpr double kMax = std::numeric_limits<int>::max();
  return static_cast<int>(std::clamp(value, kMin, kMax));
}

/** Intersects a horizontal border that is not exactly level with a vertical border. */
std::optional<Corner> intersect_tilted(const Line& horizontal, const Line& vertical) {
  if (vertical.b != 0.0) {
    const Corner at = solve_two(horizontal.a, horizontal.b, vertical.a, vertical.b, horizontal.c, vertical.c);
    return Corner{at.x + 0.5f, at.y + 0.5f};
  }
  if (vertical.a == 0.0 || horizontal.b == 0.0) return std::nullopt;
  // Beside an exactly upright border the half pixel of x enters the computation of y.
  const auto x = static_cast<float>(vertical.c / vertical.a + 0.5);
  const double y = (horizontal.c - static_cast<double>(x) * horizontal.a) / horizontal.b + 0.5;
  return Corner{x, static_cast<float>(y)};
}

/** Intersects an exactly level border with a vertical one. The half pixel of y enters the computation of x. */
std::optional<Corner> intersect_level(const Line& level, const Line& vertical) {
  if (level.b == 0.0 || vertical.a == 0.0) return std::nullopt;
  const auto y = static_cast<float>(level.c / level.b + 0.5);
  return Corner{static_cast<float>((vertical.c - static_cast<double>(y) * vertical.b) / vertical.a + 0.5), y};
}

/** Appends a horizontal border's corners with the left and the right one; false when one is degenerate. */
bool append_corners(const Line& horizontal, const Line& left, const Line& right, Intersections& found) {
  const bool level = horizontal.a == 0.0;
  const auto meet = level ? intersect_level : intersect_tilted;
  const std::optional<Corner> first = meet(horizontal, left);
  const std::optional<Corner> second = meet(horizontal, right);
  // Of a level border both corners are known or none.
  if (first && (second || !level)) found.corners[static_cast<std::size_t>(found.count++)] = *first;
  if (!first || !second) return false;
  found.corners[static_cast<std::size_t>(found.count++)] = *second;
  return true;
}

}  // namespace

Corner solve_two(double a, double b, double c, double d, double e, double f) {
  double matrix[2][2] = {{a, b}, {c, d}};
  double rhs[2] = {e, f};
  eliminate(matrix, rhs);
  return {static_cast<float>(rhs[0] / matrix[0][0]), static_cast<float>(rhs[1] / matrix[1][1])};
}

Intersections intersect(const PerSide<Line>& lines) {
  const Line& left = lines[Side::kLeft];
  const Line& right = lines[Side::kRight];
  Intersections found;
  if (append_corners(lines[Side::kTop], left, right, found)) append_corners(lines[Side::kBottom], left, right, found);
  return found;
}

int compare_y(float a, float b) {
  if (a < b) return -1;
  return a == b ? 0 : 1;
}

Corners in_reading_order(const CornerList& corners) {
  CornerList sorted;
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    // An insertion sort: stable, and the same on every C library.
    std::size_t at = i;
    for (; at > 0 && compare_y(sorted[at - 1].y, corners[i].y) > 0; --at) sorted[at] = sorted[at - 1];
    sorted[at] = corners[i];
  }
  // Of two equally far to the right, the later one is the left corner.
  const auto left_of = [](const Corner& a, const Corner& b) { return a.x < b.x ? a : b; };
  const auto right_of = [](const Corner& a, const Corner& b) { return a.x < b.x ? b : a; };
  return {left_of(sorted[0], sorted[1]), right_of(sorted[0], sorted[1]), left_of(sorted[2], sorted[3]),
          right_of(sorted[2], sorted[3])};
}

bool CornerBox::covers_half(int rows, int cols) const {
  const std::int64_t w = std::int64_t{right} - left + 1;
  const std::int64_t h = std::int64_t{bottom} - top + 1;
  return w + h >= (std::int64_t{rows} + cols) / 2 && w >= cols / 2 && h >= rows / 2;
}

CornerBox bounding_box(const Corners& corners) {
  const auto& [top_left, top_right, bottom_left, bottom_right] = corners;
  // The two cases round differently.
  const int top = top_right.y > top_left.y ? truncate(static_cast<double>(top_left.y) + 0.5) : truncate(top_right.y);
  return {truncate(std::min(top_left.x, bottom_left.x)), top, truncate(std::max(top_right.x, bottom_right.x)),
          truncate(std::max(bottom_left.y, bottom_right.y))};
}

Corners placed_in_image(const CornerList& corners, int rows, int cols) {
  CornerList from_top = corners;
  // The last memory row becomes 1, not 0: rows are subtracted from their number.
  for (Corner& corner : from_top) corner.y = static_cast<float>(rows) - corner.y;
  Corners placed = in_reading_order(from_top);

  const auto last_row = static_cast<float>(rows - 1);
  const auto last_col = static_cast<float>(cols - 1);
  for (float* low : {&placed.top_left.x, &placed.top_left.y, &placed.top_right.y, &placed.bottom_left.x}) {
    if (*low < 0) *low = 0;
  }
  for (float* far : {&placed.top_right.x, &placed.bottom_right.x}) {
    if (*far > last_col) *far = last_col;
  }
  for (float* low : {&placed.bottom_left.y, &placed.bottom_right.y}) {
    if (*low > last_row) *low = last_row;
  }
  return placed;
}

Corners moved_into_columns(const CornerList& corners, int cols) {
  Corners placed = in_reading_order(corners);
  for (float* low : {&placed.top_left.x, &placed.bottom_left.x}) {
    if (*low < 0) *low = 1;
  }
  for (float* far : {&placed.top_right.x, &placed.bottom_right.x}) {
    if (*far > static_cast<float>(cols)) *far = static_cast<float>(cols - 1);
  }
  return placed;
}

}  // namespace vantrel::autoclip
