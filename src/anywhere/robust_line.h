/**
 * @file robust_line.h
 * @brief A straight line through points some of which do not belong to it.
 */
#ifndef VANTREL_ANYWHERE_ROBUST_LINE_H
#define VANTREL_ANYWHERE_ROBUST_LINE_H

#include <span>

namespace vantrel::anywhere {

/** offset = base + slope * along. */
struct OffsetLine {
  double base = 0.0;
  double slope = 0.0;

  constexpr double at(double along) const { return base + slope * along; }
};

/** Weighted sums over points, from which the line of least squares follows. Along is best taken from near the points.
 */
struct LineSums {
  double weight = 0.0;
  double along = 0.0;
  double offset = 0.0;
  double along_along = 0.0;
  double along_offset = 0.0;
  int count = 0;

  void add(double t, double y, double w) {
    weight += w;
    along += w * t;
    offset += w * y;
    along_along += w * t * t;
    along_offset += w * t * y;
    ++count;
  }
  /** 0 where the points lie all at one; then there is no line. */
  double determinant() const { return weight * along_along - along * along; }
  /** The line, when along was counted from `origin`. */
  OffsetLine line(double origin) const {
    const double slope = (weight * along_offset - along * offset) / determinant();
    return {(offset - slope * along) / weight - slope * origin, slope};
  }
};

/** A point, and how much it is to be trusted. */
struct OffsetPoint {
  double along;
  double offset;
  double weight;
};

/**
 * Fits a line by least squares, reweighted by J. W. Tukey's biweight (P. J. Huber: Robust statistics, 1981).
 *
 * @param start a line that lies near the one to be found.
 * @param width points farther than this from the line have no say.
 * @return start where too few points lie near it.
 */
OffsetLine robust_line(std::span<const OffsetPoint> points, const OffsetLine& start, double width);

}  // namespace vantrel::anywhere

#endif
