/**
 * @file exports_lines.h
 * @brief The two arrays in which the doors hand over the lines of the four sides.
 */
#ifndef VANTREL_LINES_EXPORTS_LINES_H
#define VANTREL_LINES_EXPORTS_LINES_H

#include "geometry/line.h"

namespace vantrel::lines {

/** The line of side s: a = normal[2s], b = normal[2s + 1], c = distance[s]. */
struct LineArrays {
  double* normal;
  double* distance;

  void write_normal(geometry::Side side, const geometry::Line& line) const {
    double* slot = normal + 2 * static_cast<int>(side);
    slot[0] = line.a;
    slot[1] = line.b;
  }
  void write_distance(geometry::Side side, const geometry::Line& line) const {
    distance[static_cast<int>(side)] = line.c;
  }
  void write(geometry::Side side, const geometry::Line& line) const {
    write_normal(side, line);
    write_distance(side, line);
  }
  geometry::Line read(geometry::Side side) const {
    const double* slot = normal + 2 * static_cast<int>(side);
    return {slot[0], slot[1], distance[static_cast<int>(side)]};
  }
};

}  // namespace vantrel::lines

#endif
