/**
 * @file line.h
 * @brief Points, straight lines, quadrilaterals and the four sides of a picture.
 */
#ifndef VANTREL_GEOMETRY_LINE_H
#define VANTREL_GEOMETRY_LINE_H

#include <array>
#include <cstddef>

namespace vantrel::geometry {

/** A position: x to the right, y as the function at hand says. */
template <class Scalar>
struct Point {
  Scalar x;
  Scalar y;
};

/** The line a * x + b * y = c, x a column and y a memory row. */
struct Line {
  double a;
  double b;
  double c;
};

/** Four corners in reading order. */
template <class Scalar>
struct Quadrilateral {
  Point<Scalar> top_left;
  Point<Scalar> top_right;
  Point<Scalar> bottom_left;
  Point<Scalar> bottom_right;
};

/**
 * Sides of the picture, in the order in which they are searched and stored. A host may hand over any other number too:
 * what is not told apart by name below is then treated as the last case of each switch says.
 */
enum class Side : int {
  kTop = 0,    /**< the last memory rows */
  kBottom = 1, /**< the first memory rows */
  kLeft = 2,
  kRight = 3
};

inline constexpr std::array<Side, 4> kSides = {Side::kTop, Side::kBottom, Side::kLeft, Side::kRight};

constexpr bool is_horizontal(Side side) { return side == Side::kTop || side == Side::kBottom; }

/** A value for each side. */
template <class Value>
struct PerSide {
  std::array<Value, 4> values{};

  constexpr Value& operator[](Side side) { return values[static_cast<std::size_t>(side)]; }
  constexpr const Value& operator[](Side side) const { return values[static_cast<std::size_t>(side)]; }
};

}  // namespace vantrel::geometry

#endif
