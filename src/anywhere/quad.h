/**
 * @file quad.h
 * @brief Points, quadrilaterals and straight lines as the finder keeps them.
 *
 * Pixel i reaches from i to i + 1, in the scan and in its reduced copy: a position in the copy times the factor of the
 * reduction is the position in the scan. x runs to the right and y down.
 */
#ifndef VANTREL_ANYWHERE_QUAD_H
#define VANTREL_ANYWHERE_QUAD_H

#include <array>
#include <cmath>
#include <cstddef>

#include "geometry/line.h"

namespace vantrel::anywhere {

using Point = geometry::Point<double>;

/** Four corners, clockwise as one sees them; side i runs from corner i to corner i + 1. */
struct Quad {
  std::array<Point, 4> corners{};

  constexpr const Point& operator[](std::size_t i) const { return corners[i % 4]; }
};

constexpr Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
constexpr Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
constexpr Point operator*(Point a, double factor) { return {a.x * factor, a.y * factor}; }
constexpr double dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }
/** Positive where b is clockwise from a. */
constexpr double cross(Point a, Point b) { return a.x * b.y - a.y * b.x; }
inline double length(Point a) { return std::sqrt(dot(a, a)); }

/** The area; positive where the corners run clockwise. */
constexpr double area(const Quad& quad) {
  double twice = 0.0;
  for (std::size_t i = 0; i < 4; ++i) twice += cross(quad[i], quad[i + 1]);
  return twice / 2;
}

/** A straight line: points p with dot(normal, p) = offset; the normal has length 1. */
struct NormalLine {
  Point normal{1.0, 0.0};
  double offset = 0.0;

  constexpr double distance(Point p) const { return dot(normal, p) - offset; }
};

/** Where two lines meet; false where they are all but parallel. */
inline bool intersect(const NormalLine& a, const NormalLine& b, Point& at) {
  const double determinant = cross(a.normal, b.normal);
  if (std::abs(determinant) < 1e-6) return false;
  at = {(a.offset * b.normal.y - b.offset * a.normal.y) / determinant,
        (a.normal.x * b.offset - b.normal.x * a.offset) / determinant};
  return true;
}

/** The line through two points, with the normal to the left of the way from a to b as one sees it: up for a way to the
 * right. */
inline NormalLine line_through(Point a, Point b) {
  const Point way = b - a;
  const double size = length(way);
  if (size == 0.0) return {};
  const Point normal = {way.y / size, -way.x / size};
  return {normal, dot(normal, a)};
}

/**
 * Where four lines meet as the sides of a quadrilateral, side i from corner i on. False where two are all but parallel,
 * or a corner would lie farther than `most` from that of `near`.
 */
bool meet(const std::array<NormalLine, 4>& sides, const Quad& near, double most, Quad& quad);

/** Whether no coordinate of a corner is farther than `reach` from that of the other's, by some turn of the corners. */
bool nearly_same(const Quad& a, const Quad& b, double reach);

/** Whether the sides of two quadrilaterals are about as long, whatever way they lie. */
bool alike_in_size(const Quad& a, const Quad& b);

/** The side of a clockwise quadrilateral that lies on top, and so the corner that lies top left: its outward normal
 * points up most. */
std::size_t top_side(const Quad& clockwise);

}  // namespace vantrel::anywhere

#endif
