#include "jaccard.h"

#include <algorithm>
#include <cmath>

namespace vantrel::evaluation {
namespace {

using anywhere::cross;
using anywhere::operator+;
using anywhere::operator-;
using anywhere::operator*;
using Polygon = std::vector<Point>;

double polygon_area(const Polygon& polygon) {
  double twice = 0.0;
  for (std::size_t i = 0; i < polygon.size(); ++i) twice += cross(polygon[i], polygon[(i + 1) % polygon.size()]);
  return twice / 2;
}

/** The part of a polygon inside a convex, clockwise one: I. E. Sutherland and G. W. Hodgman, CACM 17, 1974. */
Polygon common(Polygon polygon, const Polygon& window) {
  for (std::size_t i = 0; i < window.size() && !polygon.empty(); ++i) {
    const Point from = window[i], way = window[(i + 1) % window.size()] - from;
    Polygon kept;
    for (std::size_t j = 0; j < polygon.size(); ++j) {
      const Point a = polygon[j], b = polygon[(j + 1) % polygon.size()];
      const double at_a = cross(way, a - from), at_b = cross(way, b - from);
      if (at_a >= 0) kept.push_back(a);
      if ((at_a >= 0) != (at_b >= 0)) kept.push_back(a + (b - a) * (at_a / (at_a - at_b)));
    }
    polygon = std::move(kept);
  }
  return polygon;
}

Polygon clockwise(const Quad& quad) {
  Polygon polygon(quad.corners.begin(), quad.corners.end());
  if (polygon_area(polygon) < 0) std::reverse(polygon.begin(), polygon.end());
  return polygon;
}

}  // namespace

double jaccard(const Quad& a, const Quad& b, double cols, double rows) {
  const Polygon frame = {{0, 0}, {cols, 0}, {cols, rows}, {0, rows}};
  // Cut to the frame both are convex still, so that one can cut the other.
  const Polygon p = common(clockwise(a), frame), q = common(clockwise(b), frame);
  if (p.size() < 3 || q.size() < 3) return 0.0;
  const double shared = polygon_area(common(p, q));
  const double all = polygon_area(p) + polygon_area(q) - shared;
  return all > 0.0 ? shared / all : 0.0;
}

double corner_distance(const Quad& a, const Quad& b) {
  double best = 1e9;
  for (std::size_t turn = 0; turn < 4; ++turn) {
    double farthest = 0.0;
    for (std::size_t i = 0; i < 4; ++i) farthest = std::max(farthest, anywhere::length(a[i] - b[i + turn]));
    best = std::min(best, farthest);
  }
  return best;
}

}  // namespace vantrel::evaluation
