#include "anywhere/hull.h"

#include <limits>

namespace vantrel::anywhere {
namespace {

Point point(int x, int y) { return {static_cast<double>(x), static_cast<double>(y)}; }

/** The corner that lies farthest along a direction, from `from` on around the hull. */
std::size_t advance(std::span<const Point> hull, std::size_t from, Point direction) {
  const std::size_t count = hull.size();
  // Never: around what has an area the way turns back.
  for (std::size_t turns = 0; turns < count; ++turns) {
    const std::size_t next = (from + 1) % count;
    if (dot(hull[next] - hull[from], direction) < 0) break;
    from = next;
  }
  return from;
}

}  // namespace

void Hull::add(Point corner, std::size_t chain_start) {
  while (count_ >= chain_start + 2) {
    const Point last = corners_[count_ - 1];
    if (cross(last - corners_[count_ - 2], corner - last) > 0) break;
    --count_;
  }
  corners_[count_++] = corner;
}

void Hull::enclose(const Outline& outline) {
  count_ = 0;
  for (int row = outline.top(); row < outline.bottom(); ++row) {
    add(point(outline.row_end(row), row), 0);
    add(point(outline.row_end(row), row + 1), 0);
  }
  const std::size_t left_start = count_;
  for (int row = outline.bottom() - 1; row >= outline.top(); --row) {
    add(point(outline.row_first(row), row + 1), left_start);
    add(point(outline.row_first(row), row), left_start);
  }
}

/** Where the neighbours of a side meet, and the area that lies between; false if they do not meet beyond it. */
bool Hull::without_side(std::size_t side, Point& corner, double& added) const {
  const Point from = corners_[side];
  const Point to = corners_[(side + 1) % count_];
  const Point before = from - corners_[(side + count_ - 1) % count_];
  const Point after = to - corners_[(side + 2) % count_];
  const double turn = cross(before, after);
  // Clockwise corners: the neighbours meet beyond the side where they turn by less than a half-turn.
  if (!(turn < 0)) return false;
  corner = from + before * (cross(to - from, after) / turn);
  added = std::abs(cross(to - from, corner - from)) / 2;
  return true;
}

void Hull::remove_cheapest_side() {
  std::size_t cheapest = 0;
  double least = std::numeric_limits<double>::max();
  Point corner{};
  for (std::size_t side = 0; side < count_; ++side) {
    Point meeting{};
    double added = 0.0;
    if (!without_side(side, meeting, added) || added >= least) continue;
    least = added;
    cheapest = side;
    corner = meeting;
  }
  corners_[cheapest] = corner;
  for (std::size_t i = (cheapest + 1) % count_; i + 1 < count_; ++i) corners_[i] = corners_[i + 1];
  --count_;
}

Quad Hull::reduce_to_quad() {
  // Around a polygon one turns once: of more than four sides the neighbours of some turn by less than half of that.
  while (count_ > 4) remove_cheapest_side();
  Quad quad;
  for (std::size_t i = 0; i < 4; ++i) quad.corners[i] = corners_[i];
  return quad;
}

Quad smallest_rectangle(std::span<const Point> hull) {
  Quad quad;
  double least = std::numeric_limits<double>::max();
  std::size_t right = 0;
  std::size_t far = 0;
  std::size_t left = 0;
  for (std::size_t i = 0; i < hull.size(); ++i) {
    const Point along = hull[(i + 1) % hull.size()] - hull[i];
    const Point unit = along * (1 / length(along));
    const Point inward = {-unit.y, unit.x};
    right = advance(hull, i == 0 ? 1 % hull.size() : right, unit);
    far = advance(hull, i == 0 ? right : far, inward);
    left = advance(hull, i == 0 ? far : left, unit * -1.0);
    const double from = dot(hull[left] - hull[i], unit);
    const double to = dot(hull[right] - hull[i], unit);
    const double depth = dot(hull[far] - hull[i], inward);
    if (!((to - from) * depth < least)) continue;
    least = (to - from) * depth;
    const Point first = hull[i] + unit * from;
    const Point second = hull[i] + unit * to;
    quad.corners = {first, second, second + inward * depth, first + inward * depth};
  }
  return quad;
}

}  // namespace vantrel::anywhere
