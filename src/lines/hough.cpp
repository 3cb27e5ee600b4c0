#include "lines/hough.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

namespace vantrel {
namespace {

constexpr int length(const AngleSpan& span) { return std::max(span.last - span.first + 1, 0); }

/** Points this far out, infinite ones and those that are no numbers cannot vote. */
bool can_vote(const typePoint& point) {
  constexpr float kFar = 1 << 24;
  return std::abs(point.row) < kFar && std::abs(point.col) < kFar;
}

/** Cells this near to a peak belong to the same line. */
bool same_line(const Peak& peak, int row, int angle) {
  return std::abs(row - peak.row) < 10 && std::abs(angle - peak.angle) < 2;
}

double single_precision(double value) { return static_cast<double>(static_cast<float>(value)); }

}  // namespace

void centre_points(std::span<typePoint> points, int rows, int cols) {
  const auto row = static_cast<float>(rows / 2);
  const auto col = static_cast<float>(cols / 2);
  for (typePoint& point : points) {
    point.row -= row;
    point.col -= col;
  }
}

HoughAccumulator::HoughAccumulator(int rows, int cols, const Angles& voted, const AngleTables& tables)
    : rows_(rows), cols_(cols), voted_(voted), tables_(tables), centre_row_(std::max(rows, cols)) {
  const std::int64_t rho_count = std::int64_t{2} * centre_row_;
  if (rho_count > std::numeric_limits<int>::max()) return;
  row_count_ = static_cast<int>(rho_count);
  cells_ = MakeMatrix(row_count_, length(voted.low) + length(voted.high));
}

HoughAccumulator::~HoughAccumulator() {
  if (cells_ != nullptr) FreeMatrix(cells_);
}

int HoughAccumulator::column(int angle) const {
  return angle <= voted_.low.last ? angle - voted_.low.first : angle - voted_.high.first + length(voted_.low);
}

void HoughAccumulator::vote(std::span<const typePoint> points) {
  for (const typePoint& point : points) {
    if (!can_vote(point)) continue;
    const double row = std::trunc(point.row);
    const double col = std::trunc(point.col);
    for (const AngleSpan& span : {voted_.low, voted_.high}) {
      for (int t = span.first; t <= span.last; ++t) {
        const double rho = col * tables_.cos[t] + row * tables_.sin[t];
        const double below = std::floor(rho);
        const double k = below + centre_row_;
        // A point outside the image may lie beyond the accumulator; what falls there is not counted.
        if (k >= 0 && k < row_count_) cells_[static_cast<int>(k)][column(t)] += below + 1 - rho;
        if (k >= -1 && k < row_count_ - 1) cells_[static_cast<int>(k) + 1][column(t)] += rho - below;
      }
    }
  }
}

Peak HoughAccumulator::strongest(const Angles& searched, const Peak* excluded) const {
  Peak best;
  for (int k = 0; k < row_count_; ++k) {
    for (const AngleSpan& span : {searched.low, searched.high}) {
      for (int t = span.first; t <= span.last; ++t) {
        const double score = cells_[k][column(t)];
        if (score > best.score && !(excluded != nullptr && same_line(*excluded, k, t))) best = {k, t, score};
      }
    }
  }
  return best;
}

double HoughAccumulator::distance(const Peak& peak) const {
  return (peak.row - centre_row_) + (rows_ / 2) * tables_.sin[peak.angle] + (cols_ / 2) * tables_.cos[peak.angle];
}

BorderLine HoughAccumulator::line(const Peak& peak) const {
  // Level and upright lines are exact, whatever the tables' last digits say.
  return {peak.angle == 90 ? 0.0 : single_precision(tables_.cos[peak.angle]),
          peak.angle == 0 ? 0.0 : single_precision(tables_.sin[peak.angle]), single_precision(distance(peak))};
}

int crossing(double distance) {
  constexpr double kMax = std::numeric_limits<int>::max();
  const double magnitude = std::abs(std::trunc(distance));
  return magnitude < kMax ? static_cast<int>(magnitude) : std::numeric_limits<int>::max();
}

}  // namespace vantrel
