/**
 * @file border_line.h
 * @brief The records that the line search and the corner finder share: edge points, sides and border lines.
 */
#ifndef VANTREL_LINES_BORDER_LINE_H
#define VANTREL_LINES_BORDER_LINE_H

/** An edge point: memory row and column. */
struct typePoint {
  float row;
  float col;
};

namespace vantrel {

/** Sides of the picture, in the order in which they are searched. */
enum Side : int {
  kTop = 0,    /**< the last memory rows */
  kBottom = 1, /**< the first memory rows */
  kLeft = 2,
  kRight = 3
};

/**
 * Direction classes of edge pixels. Of the four, these two make borders.
 */
inline constexpr int kHorizontalBorder = 0; /**< gradient across the rows */
inline constexpr int kVerticalBorder = 2;   /**< gradient along the rows */

/** The line a * x + b * y = c, x a column and y a memory row. */
struct BorderLine {
  double a;
  double b;
  double c;
};

/**
 * The border lines of the four sides in the arrays that the exported functions take: side s has
 * a = normal[2s], b = normal[2s + 1], c = distance[s].
 */
struct BorderLines {
  double normal[8] = {};
  double distance[4] = {};

  BorderLine get(int side) const { return {normal[2 * side], normal[2 * side + 1], distance[side]}; }
  void set(int side, const BorderLine& line) {
    normal[2 * side] = line.a;
    normal[2 * side + 1] = line.b;
    distance[side] = line.c;
  }
};

}  // namespace vantrel

#endif
