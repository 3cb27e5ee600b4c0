/**
 * @file hough.h
 * @brief The words of both Hough transforms: angle spans and peaks.
 *
 * An accumulator has a cell for each line x cos(t) + y sin(t) = rho, indexed by distance (rho) and angle (t); what the
 * indices stand for is said by the accumulator. R. O. Duda and P. E. Hart, "Use of the Hough Transformation to Detect
 * Lines and Curves in Pictures", CACM 15, 1972.
 */
#ifndef VANTREL_GEOMETRY_HOUGH_H
#define VANTREL_GEOMETRY_HOUGH_H

#include <algorithm>

namespace vantrel::geometry {

/** Angle indices first to last, both included; empty when last < first. */
struct AngleSpan {
  int first = 0;
  int last = -1;

  constexpr int size() const { return std::max(last - first + 1, 0); }
};

/** A cell and what was voted for it. The default is what a search that sees no vote reports. */
template <class Votes>
struct Peak {
  int distance = 0;
  int angle = 0;
  Votes votes = 0;
};

}  // namespace vantrel::geometry

#endif
