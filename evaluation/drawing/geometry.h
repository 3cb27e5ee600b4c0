// Points and the mappings between a flat card and the scan.
#pragma once

#include <array>

#include "drawing/drawn_scan.h"

namespace vantrel::drawing {

inline Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
inline Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
inline Point operator*(Point a, double factor) { return {a.x * factor, a.y * factor}; }
double length(Point a);
Point unit(double angle);  // angles in radians, clockwise as y runs down
Point turned(Point a, double angle);

using Quad = std::array<Point, 4>;  // clockwise from the top left

Quad rectangle(Point middle, double width, double height, double angle);
Quad grown(const Quad& quad, double by);  // each corner away from the middle, along both sides
Point middle_of(const Quad& quad);
bool contains(const Quad& quad, Point point);
bool convex(const Quad& quad);

// A projective mapping (x, y) -> ((a x + b y + c) / (g x + h y + i), (d x + e y + f) / (g x + h y + i)).
struct Mapping {
  std::array<double, 9> m{1, 0, 0, 0, 1, 0, 0, 0, 1};

  Point operator()(Point p) const;
  Mapping inverse() const;
  static Mapping from_rectangle(double width, double height, const Quad& quad);
  static Mapping turn(double angle, double scale, Point shift);
};
Mapping operator*(const Mapping& outer, const Mapping& inner);

}  // namespace vantrel::drawing
