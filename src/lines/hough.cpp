#include "lines/hough.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace vantrel::lines {
namespace {

/** Points this far out, infinite ones and those that are no numbers cannot vote. */
bool can_vote(const EdgePoint& point) {
  constexpr float kFar = 1 << 24;
  return std::abs(point.row) < kFar && std::abs(point.col) < kFar;
}

/** Cells this near to a peak belong to the same line. */
bool same_line(const Peak& peak, int distance, int angle) {
  return std::abs(distance - peak.distance) < 10 && std::abs(angle - peak.angle) < 2;
}

double single_precision(double value) { return static_cast<double>(static_cast<float>(value)); }

/** How many cells there are; for an image that has no accumulator, more than there can be memory for. */
std::size_t cell_count(int longer_side, const Angles& angles) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  const std::int64_t distances = std::int64_t{2} * longer_side;
  const bool possible = distances >= 0 && distances <= kMost && distances * angles.size() <= kMost;
  return possible ? static_cast<std::size_t>(distances * angles.size()) : std::numeric_limits<std::size_t>::max();
}

}  // namespace

DegreeTables::DegreeTables() {
  for (int t = 0; t < 180; ++t) {
    const double angle = t * 0.01745329251994;
    sin[t] = std::sin(angle);
    cos[t] = std::cos(angle);
  }
}

HoughAccumulator::HoughAccumulator(int rows, int cols, const Angles& voted, const AngleTables& tables)
    : centre_(rows, cols),
      voted_(voted),
      tables_(tables),
      zero_(std::max(rows, cols)),
      cells_(cell_count(zero_, voted), image::Fill::kZero),
      distances_(cells_.ready() ? 2 * zero_ : 0) {}

int HoughAccumulator::column(int angle) const {
  return angle <= voted_.low.last ? angle - voted_.low.first : angle - voted_.high.first + voted_.low.size();
}

std::size_t HoughAccumulator::index(int distance, int angle) const {
  return static_cast<std::size_t>(distance) * static_cast<std::size_t>(voted_.size()) +
         static_cast<std::size_t>(column(angle));
}

void HoughAccumulator::vote(std::span<const EdgePoint> centred_points) {
  for (const EdgePoint& point : centred_points) {
    if (!can_vote(point)) continue;
    const double row = std::trunc(point.row);
    const double col = std::trunc(point.col);
    for (const AngleSpan& span : {voted_.low, voted_.high}) {
      for (int t = span.first; t <= span.last; ++t) {
        const double rho = col * tables_.cos[t] + row * tables_.sin[t];
        const double below = std::floor(rho);
        const double k = below + zero_;
        // A point outside the image may lie beyond the accumulator; what falls there is not counted.
        if (k >= 0 && k < distances_) cells_[index(static_cast<int>(k), t)] += below + 1 - rho;
        if (k >= -1 && k < distances_ - 1) cells_[index(static_cast<int>(k) + 1, t)] += rho - below;
      }
    }
  }
}

Peak HoughAccumulator::strongest(const Angles& searched, const Peak* excluded) const {
  Peak best;
  for (int k = 0; k < distances_; ++k) {
    for (const AngleSpan& span : {searched.low, searched.high}) {
      for (int t = span.first; t <= span.last; ++t) {
        const double votes = cells_[index(k, t)];
        if (votes > best.votes && !(excluded != nullptr && same_line(*excluded, k, t))) best = {k, t, votes};
      }
    }
  }
  return best;
}

double HoughAccumulator::distance(const Peak& peak) const {
  return (peak.distance - zero_) + centre_.row * tables_.sin[peak.angle] + centre_.col * tables_.cos[peak.angle];
}

geometry::Line HoughAccumulator::line(const Peak& peak) const {
  // Level and upright lines are exact, whatever the tables' last digits say.
  return {peak.angle == 90 ? 0.0 : single_precision(tables_.cos[peak.angle]),
          peak.angle == 0 ? 0.0 : single_precision(tables_.sin[peak.angle]), single_precision(distance(peak))};
}

int crossing(double distance) {
  constexpr double kMax = std::numeric_limits<int>::max();
  const double magnitude = std::abs(std::trunc(distance));
  return magnitude < kMax ? static_cast<int>(magnitude) : std::numeric_limits<int>::max();
}

}  // namespace vantrel::lines
