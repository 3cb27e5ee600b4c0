#include "anywhere/robust_line.h"

namespace vantrel::anywhere {
namespace {

constexpr int kRounds = 6;

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
    LineSums sums;
    for (const OffsetPoint& point : points) {
      const double weight = point.weight * biweight(point.offset - line.at(point.along), width);
      if (weight > 0.0) sums.add(point.along - origin, point.offset, weight);
    }
    if (sums.count < 3) return start;
    if (!(sums.determinant() > 1e-9 * sums.weight * sums.weight)) return start;
    line = sums.line(origin);
  }
  return line;
}

}  // namespace vantrel::anywhere
