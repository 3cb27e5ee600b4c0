#include "drawing/geometry.h"

#include <cmath>

namespace vantrel::drawing {
namespace {

double cross(Point a, Point b) { return a.x * b.y - a.y * b.x; }

}  // namespace

double length(Point a) { return std::sqrt(a.x * a.x + a.y * a.y); }

Point unit(double angle) { return {std::cos(angle), std::sin(angle)}; }

Point turned(Point a, double angle) {
  const Point axis = unit(angle);
  return {a.x * axis.x - a.y * axis.y, a.x * axis.y + a.y * axis.x};
}

Quad rectangle(Point middle, double width, double height, double angle) {
  const Point across = unit(angle) * (width / 2), down = turned({0, height / 2}, angle);
  return {middle - across - down, middle + across - down, middle + across + down, middle - across + down};
}

Quad grown(const Quad& quad, double by) {
  Quad result = quad;
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t other : {(i + 1) % 4, (i + 3) % 4}) {
      const Point along = quad[i] - quad[other];
      result[i] = result[i] + along * (by / length(along));
    }
  }
  return result;
}

Point middle_of(const Quad& quad) { return (quad[0] + quad[1] + quad[2] + quad[3]) * 0.25; }

bool contains(const Quad& quad, Point point) {
  for (std::size_t i = 0; i < 4; ++i) {
    if (cross(quad[(i + 1) % 4] - quad[i], point - quad[i]) < 0) return false;
  }
  return true;
}

bool convex(const Quad& quad) {
  for (std::size_t i = 0; i < 4; ++i) {
    if (cross(quad[(i + 1) % 4] - quad[i], quad[(i + 2) % 4] - quad[(i + 1) % 4]) <= 0) return false;
  }
  return true;
}

Point Mapping::operator()(Point p) const {
  const double below = m[6] * p.x + m[7] * p.y + m[8];
  return {(m[0] * p.x + m[1] * p.y + m[2]) / below, (m[3] * p.x + m[4] * p.y + m[5]) / below};
}

// The adjugate: a projective mapping has no scale of its own.
Mapping Mapping::inverse() const {
  Mapping result;
  result.m = {m[4] * m[8] - m[5] * m[7], m[2] * m[7] - m[1] * m[8], m[1] * m[5] - m[2] * m[4],
              m[5] * m[6] - m[3] * m[8], m[0] * m[8] - m[2] * m[6], m[2] * m[3] - m[0] * m[5],
              m[3] * m[7] - m[4] * m[6], m[1] * m[6] - m[0] * m[7], m[0] * m[4] - m[1] * m[3]};
  return result;
}

// Of the unit square first: Heckbert, "Fundamentals of texture mapping and image warping", 1989, section 2.2.3.
Mapping Mapping::from_rectangle(double width, double height, const Quad& quad) {
  const Point sum = quad[0] - quad[1] + quad[2] - quad[3];
  const Point first = quad[1] - quad[2], second = quad[3] - quad[2];
  const double area = cross(first, second);
  const double g = cross(sum, second) / area, h = cross(first, sum) / area;
  Mapping result;
  result.m = {(quad[1].x - quad[0].x + g * quad[1].x) / width,
              (quad[3].x - quad[0].x + h * quad[3].x) / height,
              quad[0].x,
              (quad[1].y - quad[0].y + g * quad[1].y) / width,
              (quad[3].y - quad[0].y + h * quad[3].y) / height,
              quad[0].y,
              g / width,
              h / height,
              1};
  return result;
}

Mapping Mapping::turn(double angle, double scale, Point shift) {
  const Point axis = unit(angle) * scale;
  Mapping result;
  result.m = {axis.x, -axis.y, shift.x, axis.y, axis.x, shift.y, 0, 0, 1};
  return result;
}

Mapping operator*(const Mapping& outer, const Mapping& inner) {
  Mapping result;
  for (std::size_t row = 0; row < 3; ++row) {
    for (std::size_t column = 0; column < 3; ++column) {
      double sum = 0;
      for (std::size_t i = 0; i < 3; ++i) sum += outer.m[row * 3 + i] * inner.m[i * 3 + column];
      result.m[row * 3 + column] = sum;
    }
  }
  return result;
}

}  // namespace vantrel::drawing
