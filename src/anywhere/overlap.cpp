#include "anywhere/overlap.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace vantrel::anywhere {
namespace {

/** From this share of the union on, two quadrilaterals are the same card. */
constexpr double kSame = 0.85;
/** What lies within another may look out by so little of its area, and what lies apart may overlap by as little. */
constexpr double kSlack = 0.07;

/** A polygon. A cut adds no more corners than half of those there were, even where it is not convex: of four, four cuts
 * make 6, 9, 13, 19 at most. */
struct Polygon {
  std::array<Point, 19> corners{};
  std::size_t count = 0;

  void add(Point p) { corners[count++] = p; }
};

/** The part of a polygon to the right of the way from a to b. I. E. Sutherland and G. W. Hodgman, CACM 17, 1974. */
Polygon cut(const Polygon& polygon, Point a, Point b) {
  Polygon kept;
  for (std::size_t i = 0; i < polygon.count; ++i) {
    const Point p = polygon.corners[i], q = polygon.corners[(i + 1) % polygon.count];
    const double at_p = cross(b - a, p - a), at_q = cross(b - a, q - a);
    if (at_p >= 0.0) kept.add(p);
    if ((at_p >= 0.0) != (at_q >= 0.0)) kept.add(p + (q - p) * (at_p / (at_p - at_q)));
  }
  return kept;
}

bool boxes_meet(const Quad& a, const Quad& b) {
  const auto [al, ar] = std::minmax({a[0].x, a[1].x, a[2].x, a[3].x});
  const auto [at, ab] = std::minmax({a[0].y, a[1].y, a[2].y, a[3].y});
  const auto [bl, br] = std::minmax({b[0].x, b[1].x, b[2].x, b[3].x});
  const auto [bt, bb] = std::minmax({b[0].y, b[1].y, b[2].y, b[3].y});
  return al < br && bl < ar && at < bb && bt < ab;
}

}  // namespace

double shared_area(const Quad& a, const Quad& b) {
  if (!boxes_meet(a, b)) return 0.0;
  Polygon polygon;
  for (const Point& corner : a.corners) polygon.add(corner);
  for (std::size_t i = 0; i < 4; ++i) polygon = cut(polygon, b[i], b[i + 1]);
  double twice = 0.0;
  for (std::size_t i = 0; i < polygon.count; ++i)
    twice += cross(polygon.corners[i], polygon.corners[(i + 1) % polygon.count]);
  return std::max(0.0, twice / 2);
}

Relation relation(const Quad& a, const Quad& b) {
  const double shared = shared_area(a, b), of_a = area(a), of_b = area(b);
  if (shared <= kSlack * std::min(of_a, of_b)) return Relation::kApart;
  if (shared >= kSame * (of_a + of_b - shared)) return Relation::kSame;
  if (shared >= (1.0 - kSlack) * of_b) return Relation::kAround;
  if (shared >= (1.0 - kSlack) * of_a) return Relation::kWithin;
  return Relation::kAcross;
}

}  // namespace vantrel::anywhere
