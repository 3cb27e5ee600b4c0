/**
 * @file corners.h
 * @brief From border lines to the corners of a card: intersecting, ordering, judging.
 */
#ifndef VANTREL_AUTOCLIP_CORNERS_H
#define VANTREL_AUTOCLIP_CORNERS_H

#include <array>
#include <optional>

#include "geometry/line.h"

namespace vantrel::autoclip {

using geometry::Line;
using geometry::PerSide;

using Corner = geometry::Point<float>;
using Corners = geometry::Quadrilateral<float>;

/** Four corners in any order. */
using CornerList = std::array<Corner, 4>;

/** Solves a X + b Y = e, c X + d Y = f; a singular system gives infinite or undefined values. */
Corner solve_two(double a, double b, double c, double d, double e, double f);

/** Corners as far as they were computed: `count` of them, or none of the pair in which it failed. */
struct Intersections {
  CornerList corners{};
  int count = 0;

  bool complete() const { return count == 4; }
};

/**
 * Intersects the border lines: top with left, top with right, bottom with left, bottom with right. y is a memory row,
 * and half a pixel is added to both coordinates. Ends at the first pair of lines that is degenerate.
 */
Intersections intersect(const PerSide<Line>& lines);

/** Below 0, 0 or above 0 as the first y is less, equal or more; above 0 when one is no number. */
int compare_y(float a, float b);

/** Orders corners whose y counts from the top: the upper two, then the lower two, each left before right. */
Corners in_reading_order(const CornerList& corners);

/** The bounding box of ordered corners, in whole pixels. */
struct CornerBox {
  int left;
  int top;
  int right;
  int bottom;

  /** Whether it covers at least half of the width, of the height and of their sum. */
  bool covers_half(int rows, int cols) const;
};

CornerBox bounding_box(const Corners& corners);

/** Turns memory rows into rows counted from the top, orders the corners and moves them into the image. */
Corners placed_in_image(const CornerList& corners, int rows, int cols);

/**
 * Orders corners whose y counts from the top already, and moves their columns into the image: below 0 to 1, above cols
 * to cols - 1.
 */
Corners moved_into_columns(const CornerList& corners, int cols);

}  // namespace vantrel::autoclip

#endif
