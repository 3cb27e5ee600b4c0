#include "cards/quad.h"

#include <cmath>
#include <limits>

namespace vantrel::cards {
namespace {

vantrel_point point_of(geometry::Point<float> point) { return {point.x, point.y}; }

geometry::Point<float> single_precision(vantrel_point point) {
  return {static_cast<float>(point.x), static_cast<float>(point.y)};
}

/** Calls `change(point)` on each corner. */
template <class Change>
vantrel_quad changed(const vantrel_quad& quad, Change change) {
  return {change(quad.top_left), change(quad.top_right), change(quad.bottom_right), change(quad.bottom_left)};
}

double length(vantrel_point from, vantrel_point to) {
  const double x = to.x - from.x;
  const double y = to.y - from.y;
  return std::sqrt(x * x + y * y);
}

double direction(vantrel_point from, vantrel_point to) { return cards::direction(to.x - from.x, to.y - from.y); }

/** Twice the signed area of a triangle. */
double twice_area(vantrel_point a, vantrel_point b, vantrel_point c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool fits_single_precision(vantrel_point point) {
  constexpr double kMost = std::numeric_limits<float>::max();
  return point.x >= -kMost && point.x <= kMost && point.y >= -kMost && point.y <= kMost;
}

/**
 * The arctangent of a tangent from 0 to 1, in degrees: the angle is halved three times, which leaves less than six
 * degrees, for which eight terms of the power series are enough for double precision.
 */
double arctangent(double tangent) {
  constexpr int kHalvings = 3;
  constexpr int kTerms = 8;
  constexpr double kDegrees = 57.29577951308232;
  for (int i = 0; i < kHalvings; ++i) tangent /= 1.0 + std::sqrt(1.0 + tangent * tangent);
  const double square = tangent * tangent;
  double sum = 0.0;
  for (int term = kTerms - 1; term >= 0; --term) sum = 1.0 / (2 * term + 1) - square * sum;
  return (1 << kHalvings) * tangent * sum * kDegrees;
}

}  // namespace

vantrel_quad quad_of(const geometry::Quadrilateral<float>& corners) {
  return {point_of(corners.top_left), point_of(corners.top_right), point_of(corners.bottom_right),
          point_of(corners.bottom_left)};
}

geometry::Quadrilateral<float> single_precision(const vantrel_quad& quad) {
  return {single_precision(quad.top_left), single_precision(quad.top_right), single_precision(quad.bottom_left),
          single_precision(quad.bottom_right)};
}

vantrel_quad quad_of(const vantrel_rect& rectangle) {
  const double left = rectangle.left;
  const double top = rectangle.top;
  const double right = rectangle.right;
  const double bottom = rectangle.bottom;
  return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

vantrel_quad scaled(const vantrel_quad& quad, double factor) {
  return changed(quad, [=](vantrel_point point) { return vantrel_point{point.x * factor, point.y * factor}; });
}

vantrel_quad moved(const vantrel_quad& quad, double right, double down) {
  return changed(quad, [=](vantrel_point point) { return vantrel_point{point.x + right, point.y + down}; });
}

bool is_finite(const vantrel_quad& quad) {
  return fits_single_precision(quad.top_left) && fits_single_precision(quad.top_right) &&
         fits_single_precision(quad.bottom_right) && fits_single_precision(quad.bottom_left);
}

std::array<double, 4> edge_lengths(const vantrel_quad& quad) {
  std::array<double, 4> lengths{};
  lengths[VANTREL_SIDE_TOP] = length(quad.top_left, quad.top_right);
  lengths[VANTREL_SIDE_BOTTOM] = length(quad.bottom_left, quad.bottom_right);
  lengths[VANTREL_SIDE_LEFT] = length(quad.top_left, quad.bottom_left);
  lengths[VANTREL_SIDE_RIGHT] = length(quad.top_right, quad.bottom_right);
  return lengths;
}

double area(const vantrel_quad& quad) {
  return (twice_area(quad.top_left, quad.top_right, quad.bottom_right) +
          twice_area(quad.top_left, quad.bottom_right, quad.bottom_left)) /
         2;
}

double tilt(const vantrel_quad& quad) {
  return (direction(quad.top_left, quad.top_right) + direction(quad.bottom_left, quad.bottom_right)) / 2;
}

double direction(double x, double y) {
  const double across = std::abs(x);
  const double down = std::abs(y);
  if (across == 0.0 && down == 0.0) return 0.0;
  const double acute = down > across ? 90.0 - arctangent(across / down) : arctangent(down / across);
  const double turned = x < 0.0 ? 180.0 - acute : acute;
  return y < 0.0 ? -turned : turned;
}

}  // namespace vantrel::cards
