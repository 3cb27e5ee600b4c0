#include "anywhere/robust_line.h"

namespace vantrel::anywhere {
namespace {

constexpr int kRounds = 6;

/** Weighted sums of a least-squares line; along is taken from the first point, which keeps the sums small. */
struct Moments {
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
};

double biweight(double distance, double width) {
  const double part = distance / width;
  const double rest = 1.0 - part * part;
  return rest > 0.0 ? rest * rest : 0.0;
}

}  // namespace

OffsetLine robust_line(std::span<const OffsetPoint> points, const OffsetLine& start, double width) {
  OffsetLine line = start;
  if (points.size() < 3) return line;
  const double origin = points.front().along;
  for (int round = 0; round < kRounds; ++round) {
    Moments sums;
    for (const OffsetPoint& point : points) {
      const double weight = point.weight * biweight(point.offset - line.at(point.along), width);
      if (weight > 0.0) sums.add(point.along - origin, point.offset, weight);
    }
    if (sums.count < 3) return start;
    const double determinant = sums.weight * sums.along_along - sums.along * sums.along;
    if (!(determinant > 1e-9 * sums.weight * sums.weight)) return start;
    line.slope = (sums.weight * sums.along_offset - sums.along * sums.offset) / determinant;
    line.base = (sums.offset - line.slope * sums.along) / sums.weight - line.slope * origin;
  }
  return line;
}

}  // namespace vantrel::anywhere
