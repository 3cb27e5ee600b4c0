/**
 * @file hough.h
 * @brief The Hough vote that all line searches share: centred points, split votes, peaks, lines.
 *
 * A line is x cos(t) + y sin(t) = rho, x a column and y a memory row, both relative to the image's centre; t is in
 * whole degrees, rho in whole pixels.
 */
#ifndef VANTREL_LINES_HOUGH_H
#define VANTREL_LINES_HOUGH_H

#include <span>

#include "lines/border_line.h"
#include "lines/matrix.h"

namespace vantrel {

/** Whole degrees first to last; empty when last < first. */
struct AngleSpan {
  int first = 0;
  int last = -1;
};

/** The angles of a vote or of a search, in increasing order: one span, or two around the vertical. */
struct Angles {
  AngleSpan low;
  AngleSpan high{};
};

/** The caller's sines and cosines of 0 to 179 degrees. */
struct AngleTables {
  const double* sin;
  const double* cos;
};

/** A cell of the accumulator; the default is what a search that sees no vote reports. */
struct Peak {
  int row = 0; /**< rho plus the longer side of the image */
  int angle = 0;
  double score = 0.0;
};

/** Moves points to the image's centre, in place. */
void centre_points(std::span<typePoint> points, int rows, int cols);

/** The votes of centred points for the lines of one image. */
class HoughAccumulator {
 public:
  /** Allocates cells for lines of these angles; tells by `ready` whether there was memory. */
  HoughAccumulator(int rows, int cols, const Angles& voted, const AngleTables& tables);
  HoughAccumulator(const HoughAccumulator&) = delete;
  HoughAccumulator& operator=(const HoughAccumulator&) = delete;
  ~HoughAccumulator();

  bool ready() const { return cells_ != nullptr; }

  /** Gives every point one vote per angle, split between the two distances next to it. */
  void vote(std::span<const typePoint> points);

  /** The first strongest cell of the searched angles, row by row; cells near `excluded` are passed over. */
  Peak strongest(const Angles& searched, const Peak* excluded = nullptr) const;

  /** The distance of a peak's line from the image's origin: the line's c. */
  double distance(const Peak& peak) const;

  /** The line of a peak, every value rounded to single precision. */
  BorderLine line(const Peak& peak) const;

 private:
  int column(int angle) const;

  int rows_;
  int cols_;
  Angles voted_;
  AngleTables tables_;
  int centre_row_; /**< the accumulator row of rho = 0 */
  int row_count_;
  double** cells_ = nullptr;
};

/** The row or column at which a line of this distance is taken to run. */
int crossing(double distance);

}  // namespace vantrel

#endif
