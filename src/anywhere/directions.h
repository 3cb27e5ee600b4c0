/**
 * @file directions.h
 * @brief Directions as one of 256 bins of a half-turn, the same bits on every processor.
 *
 * Only operations that are rounded correctly everywhere are used, so none of the mathematical library.
 */
#ifndef VANTREL_ANYWHERE_DIRECTIONS_H
#define VANTREL_ANYWHERE_DIRECTIONS_H

#include <array>
#include <cstddef>

#include "anywhere/quad.h"

namespace vantrel::anywhere {

/** Bins of a half-turn: bin i stands for normals turned by i * 180 / 256 degrees from the x axis towards y. */
inline constexpr int kDirections = 256;

/** How many bins lie between two directions, the shorter way round. */
constexpr int between(int a, int b) {
  const int apart = a < b ? b - a : a - b;
  return apart <= kDirections / 2 ? apart : kDirections - apart;
}

/** The bin of the line whose normal is (x, y); of a normal and its opposite the same. */
int direction_of(double x, double y);

namespace detail {

// The Taylor series converges to the last bit within this many terms on (-pi / 2, pi / 2).
constexpr double series(double angle, double term, int first) {
  double sum = 0.0;
  for (int k = first; k < first + 28; k += 2) {
    sum += term;
    term *= -angle * angle / (static_cast<double>(k + 1) * static_cast<double>(k + 2));
  }
  return sum;
}

constexpr std::array<Point, kDirections> make_normals() {
  constexpr double kPi = 3.141592653589793;
  std::array<Point, kDirections> normals{};
  for (std::size_t i = 0; i < normals.size(); ++i) {
    // Of the half-turn's middle, where the series is shortest: x = -sin, y = cos.
    const double angle = (static_cast<double>(i) - kDirections / 2) * kPi / kDirections;
    normals[i] = {-series(angle, angle, 1), series(angle, 1.0, 0)};
  }
  return normals;
}

}  // namespace detail

/** The unit normal of each bin. */
inline constexpr std::array<Point, kDirections> kNormals = detail::make_normals();

}  // namespace vantrel::anywhere

#endif
