/**
 * @file axis.h
 * @brief The line through places.
 */
#ifndef VANTREL_ANYWHERE_AXIS_H
#define VANTREL_ANYWHERE_AXIS_H

#include <cmath>

#include "anywhere/quad.h"

namespace vantrel::anywhere {

/** Sums of places, from which a line through them follows. */
struct Moments {
  double n = 0, x = 0, y = 0, xx = 0, xy = 0, yy = 0;

  void add(Point p) {
    n += 1;
    x += p.x;
    y += p.y;
    xx += p.x * p.x;
    xy += p.x * p.y;
    yy += p.y * p.y;
  }
};

/** The principal axis of places: the line with the least squared distances (K. Pearson, 1901). False: there is none. */
inline bool principal_axis(const Moments& m, NormalLine& line) {
  if (m.n < 2) return false;
  const double mx = m.x / m.n, my = m.y / m.n;
  const double xx = m.xx / m.n - mx * mx, xy = m.xy / m.n - mx * my, yy = m.yy / m.n - my * my;
  // (xx - l, xy; xy, yy - l) n = 0 for the lesser l = (xx + yy - root) / 2; of the two rows the longer gives n.
  const double difference = xx - yy;
  const double root = std::sqrt(difference * difference + 4 * xy * xy);
  if (root == 0.0) return false;
  Point normal = difference > 0 ? Point{-2 * xy, difference + root} : Point{root - difference, -2 * xy};
  normal = normal * (1.0 / length(normal));
  line = {normal, normal.x * mx + normal.y * my};
  return true;
}

}  // namespace vantrel::anywhere

#endif
