/**
 * @file autoclip_corners.h
 * @brief Corner geometry, plainly.
 */
#ifndef VANTREL_TESTS_REFERENCE_AUTOCLIP_CORNERS_H
#define VANTREL_TESTS_REFERENCE_AUTOCLIP_CORNERS_H

#include <array>
#include <optional>

#include "reference/lines_hough.h"

namespace reference::autoclip {

using lines::Line;
using lines::Point;
using lines::Points;
using support::Picture;

/** A corner or a box corner: a column and a row. */
struct Spot {
  float x = 0;
  float y = 0;

  bool operator==(const Spot&) const = default;
};
using Spots = std::array<Spot, 4>;

/** The edge points of one direction in rows [row_from, row_to) x columns [col_from, col_to). */
Points collect(const Picture& edge, const Picture& dir, int row_from, int row_to, int col_from, int col_to, int value);

/** Solves a X + b Y = e, c X + d Y = f. */
Spot solve_two(double a, double b, double c, double d, double e, double f);

/** The four intersections in memory rows, or none for degenerate lines. */
std::optional<Spots> intersect(const std::array<Line, 4>& lines);

/** Corners put in order, their box, and whether they are accepted. */
struct Judged {
  Spots corners;
  Spots box;
  bool accepted = false;
};

/** From corners in memory rows. */
Judged judge(Spots corners, int rows, int cols);

/** From corners that count from the top already. */
Judged judge_from_top(Spots corners, int rows, int cols);

}  // namespace reference::autoclip

#endif
