#include "reference/autoclip_corners.h"

#include <algorithm>

#include "support/tally.h"

namespace reference::autoclip {

Points collect(const Picture& edge, const Picture& dir, int row_from, int row_to, int col_from, int col_to, int value) {
  Points points;
  for (int row = row_from; row < row_to; ++row) {
    for (int col = col_from; col < col_to; ++col) {
      if (edge.at(row, col) != 0 || dir.at(row, col) != value) continue;
      points.push_back({static_cast<float>(row), static_cast<float>(col)});
    }
  }
  return points;
}

Spot solve_two(double a, double b, double c, double d, double e, double f) {
  std::array<std::array<double, 2>, 2> m{{{a, b}, {c, d}}};
  std::array<double, 2> right{e, f};
  for (std::size_t k = 0; k < 2; ++k) {
    const std::size_t j = 1 - k;
    if (m.at(k).at(k) == 0.0) {
      m.at(k).at(k) = 1e-7;
      support::tally::count("solve two: zero pivot");
    }
    const double factor = -m.at(j).at(k) / m.at(k).at(k);
    const double entry = m.at(k).at(j);
    if (entry != 0.0) m.at(j).at(j) += entry * factor;
    m.at(j).at(k) = 0;
    right.at(j) += factor * right.at(k);
  }
  return {static_cast<float>(right.at(0) / m.at(0).at(0)), static_cast<float>(right.at(1) / m.at(1).at(1))};
}

namespace {

Spot half_pixel_on(Spot spot) { return {spot.x + 0.5f, spot.y + 0.5f}; }

/** A horizontal side that is not exactly level with a vertical side. */
std::optional<Spot> sloping_corner(const Line& horizontal, const Line& vertical) {
  if (vertical.b != 0) {
    support::tally::count("intersect: both slope");
    return half_pixel_on(solve_two(horizontal.a, horizontal.b, vertical.a, vertical.b, horizontal.c, vertical.c));
  }
  if (vertical.a == 0 || horizontal.b == 0) {
    support::tally::count("intersect: degenerate sloping");
    return std::nullopt;
  }
  support::tally::count("intersect: upright side");
  const auto x = static_cast<float>(vertical.c / vertical.a + 0.5);
  const auto y = static_cast<float>((horizontal.c - x * horizontal.a) / horizontal.b + 0.5);
  return Spot{x, y};
}

Spot level_corner(float y, const Line& vertical) {
  return {static_cast<float>((vertical.c - y * vertical.b) / vertical.a + 0.5), y};
}

/** The two corners of a horizontal side. */
bool corners_of(const Line& side, const Line& left, const Line& right, Spot& with_left, Spot& with_right) {
  if (side.a == 0) {
    if (side.b == 0 || left.a == 0 || right.a == 0) {
      support::tally::count("intersect: degenerate level");
      return false;
    }
    support::tally::count("intersect: level side");
    const auto y = static_cast<float>(side.c / side.b + 0.5);
    with_left = level_corner(y, left);
    with_right = level_corner(y, right);
    return true;
  }
  const std::optional<Spot> first = sloping_corner(side, left);
  if (!first) return false;
  const std::optional<Spot> second = sloping_corner(side, right);
  if (!second) return false;
  with_left = *first;
  with_right = *second;
  return true;
}

}  // namespace

std::optional<Spots> intersect(const std::array<Line, 4>& lines) {
  Spots spots;
  if (!corners_of(lines.at(0), lines.at(2), lines.at(3), spots.at(0), spots.at(1))) return std::nullopt;
  if (!corners_of(lines.at(1), lines.at(2), lines.at(3), spots.at(2), spots.at(3))) return std::nullopt;
  return spots;
}

namespace {

/** Equal rows keep their order, as they do in a merge sort. */
Spots in_order(Spots corners) {
  std::stable_sort(corners.begin(), corners.end(), [](const Spot& p, const Spot& q) { return p.y < q.y; });
  Spots ordered;
  for (const std::size_t pair : {std::size_t{0}, std::size_t{2}}) {
    const bool first_is_right = corners.at(pair).x > corners.at(pair + 1).x;
    if (corners.at(pair).x == corners.at(pair + 1).x) {
      support::tally::count("judge: equal columns");
      ordered.at(pair) = corners.at(pair + 1);
      ordered.at(pair + 1) = corners.at(pair);
    } else {
      ordered.at(pair) = corners.at(first_is_right ? pair + 1 : pair);
      ordered.at(pair + 1) = corners.at(first_is_right ? pair : pair + 1);
    }
  }
  return ordered;
}

bool told(const char* what, bool answer) {
  support::tally::count(what);
  return answer;
}

bool large_enough(int w, int h, int rows, int cols) {
  if (w + h < (rows + cols) / 2) return told("judge: sum too small", false);
  if (w < cols / 2) return told("judge: too narrow", false);
  if (h < rows / 2) return told("judge: too low", false);
  return told("judge: accepted", true);
}

void measure(Judged& judged, int rows, int cols) {
  const Spots& c = judged.corners;
  int top = static_cast<int>(c.at(1).y);
  if (c.at(1).y > c.at(0).y) {
    support::tally::count("judge: left corner higher");
    top = static_cast<int>(static_cast<double>(c.at(0).y) + 0.5);
  } else {
    support::tally::count("judge: right corner higher");
  }
  const int bottom = static_cast<int>(std::max(c.at(2).y, c.at(3).y));
  const int left = static_cast<int>(std::min(c.at(0).x, c.at(2).x));
  const int right = static_cast<int>(std::max(c.at(1).x, c.at(3).x));
  const auto l = static_cast<float>(left);
  const auto t = static_cast<float>(top);
  const auto r = static_cast<float>(right);
  const auto b = static_cast<float>(bottom);
  judged.box = {{{l, t}, {r, t}, {l, b}, {r, b}}};
  judged.accepted = large_enough(right - left + 1, bottom - top + 1, rows, cols);
}

}  // namespace

Judged judge(Spots corners, int rows, int cols) {
  for (Spot& corner : corners) corner.y = static_cast<float>(rows) - corner.y;
  Judged judged;
  judged.corners = in_order(corners);
  Spots& c = judged.corners;
  const auto last_col = static_cast<float>(cols - 1);
  const auto last_row = static_cast<float>(rows - 1);
  if (c.at(0).x < 0) c.at(0).x = 0;
  if (c.at(0).y < 0) c.at(0).y = 0;
  if (c.at(1).y < 0) c.at(1).y = 0;
  if (c.at(2).x < 0) c.at(2).x = 0;
  if (c.at(1).x > last_col) c.at(1).x = last_col;
  if (c.at(3).x > last_col) c.at(3).x = last_col;
  if (c.at(2).y > last_row) c.at(2).y = last_row;
  if (c.at(3).y > last_row) c.at(3).y = last_row;
  measure(judged, rows, cols);
  return judged;
}

Judged judge_from_top(Spots corners, int rows, int cols) {
  Judged judged;
  judged.corners = in_order(corners);
  Spots& c = judged.corners;
  if (c.at(0).x < 0) c.at(0).x = 1;
  if (c.at(2).x < 0) c.at(2).x = 1;
  if (c.at(1).x > static_cast<float>(cols)) c.at(1).x = static_cast<float>(cols - 1);
  if (c.at(3).x > static_cast<float>(cols)) c.at(3).x = static_cast<float>(cols - 1);
  measure(judged, rows, cols);
  return judged;
}

}  // namespace reference::autoclip
