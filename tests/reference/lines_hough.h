/**
 * @file lines_hough.h
 * @brief The three searches for border lines, each over a full accumulator of 180 degrees.
 */
#ifndef VANTREL_TESTS_REFERENCE_LINES_HOUGH_H
#define VANTREL_TESTS_REFERENCE_LINES_HOUGH_H

#include <array>
#include <vector>

#include "reference/lines_verify.h"

namespace reference::lines {

/** An edge point; the searches move it to the image's centre. */
struct Point {
  float row = 0;
  float col = 0;

  bool operator==(const Point&) const = default;
};
using Points = std::vector<Point>;

/** a x + b y = c. */
struct Line {
  double a = 0;
  double b = 0;
  double c = 0;

  bool operator==(const Line&) const = default;
};

/** Sine and cosine of a whole degree. */
double sine(int degrees);
double cosine(int degrees);

/** The two lines of a direction class, side by side; 0 when not both were found. */
int two_lines(Points& points, int rows, int cols, int dir_class, std::array<Line, 4>& lines);

/** What the search for the line of one side looks at. */
struct Scene {
  const Picture& gray;
  const Picture& edge;
  const Characters& characters;
  int side = 0;
  int dir_class = 0;
  int wb_class = 0;
};

/** The line of one side: 0 rejected, 1 or 2 accepted. `line` is written as far as the search came. */
int side_line(const Scene& scene, Points& points, Line& line);

/** The variant with level horizontal lines. */
int level_side_line(const Scene& scene, Points& points, Line& line);

}  // namespace reference::lines

#endif
