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

/** Cells nearer to a peak than this, in both, belong to the same line. */
constexpr int kSameLineDistances = 10;
constexpr int kSameLineAngles = 2;

double single_precision(double value) { return static_cast<double>(static_cast<float>(value)); }

/** Columns lie a little further apart than they are long: powers of two would all meet in a few places of a cache. */
std::size_t cell_stride(int distances) {
  constexpr std::size_t kApart = 17;
  return static_cast<std::size_t>(std::max(distances, 0)) + kApart;
}

/** The distances that an image can have. */
geometry::Span all_distances(int longer_side) {
  constexpr int kMost = std::numeric_limits<int>::max() / 2;
  return {0, longer_side <= kMost ? 2 * longer_side : 0};
}

template <class Found>
void for_each_angle(const Angles& angles, Found found) {
  for (const AngleSpan& span : {angles.low, angles.high}) {
    for (int t = span.first; t <= span.last; ++t) found(t);
  }
}

/** How many cells there are; for an image that has no accumulator, more than there can be memory for. */
std::size_t cell_count(int longer_side, std::size_t stride, const Angles& angles) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  const std::int64_t distances = std::int64_t{2} * longer_side;
  const bool possible = distances >= 0 && distances <= kMost && distances * angles.size() <= kMost;
  return possible ? stride * static_cast<std::size_t>(angles.size()) : std::numeric_limits<std::size_t>::max();
}

}  // namespace

std::int64_t bytes_per_angle(int rows, int cols) {
  return static_cast<std::int64_t>(cell_stride(all_distances(std::max(rows, cols)).size()) * sizeof(double));
}

DegreeTables::DegreeTables() {
  for (int t = 0; t < 180; ++t) {
    const double angle = t * 0.01745329251994;
    sin[t] = std::sin(angle);
    cos[t] = std::cos(angle);
  }
}

void plain::vote(const VoteSheet& sheet, const EdgePoint* points, int count) {
  for (const EdgePoint& point : std::span(points, static_cast<std::size_t>(count))) {
    if (!can_vote(point)) continue;
    const double row = std::trunc(point.row);
    const double col = std::trunc(point.col);
    for (int t = 0; t < sheet.angles; ++t) {
      double* cells = sheet.cells + t * sheet.stride;
      const double rho = col * sheet.cos[t] + row * sheet.sin[t];
      const double below = std::floor(rho);
      const double k = below + sheet.zero;
      // A point outside the image may lie beyond the accumulator; what falls there is not counted.
      if (k >= 0 && k < sheet.distances) cells[static_cast<int>(k)] += below + 1 - rho;
      if (k >= -1 && k < sheet.distances - 1) cells[static_cast<int>(k) + 1] += rho - below;
    }
  }
}

double plain::largest(const double* values, int count) {
  double largest = 0;
  for (int i = 0; i < count; ++i) largest = std::max(largest, values[i]);
  return largest;
}

HoughAccumulator::HoughAccumulator(int rows, int cols, const Angles& voted, const AngleTables& tables,
                                   std::optional<geometry::Rect> area)
    : centre_(rows, cols),
      voted_(voted),
      tables_(tables),
      zero_(std::max(rows, cols)),
      distances_(all_distances(zero_)) {
  for_each_angle(voted, [&](int t) {
    cos_[static_cast<std::size_t>(column(t))] = tables.cos[t];
    sin_[static_cast<std::size_t>(column(t))] = tables.sin[t];
  });
  if (area) distances_ = distances_within(*area);
  stride_ = cell_stride(distances_.size());
  cells_ = image::WorkArray<double>(cell_count(zero_, stride_, voted), image::Fill::kZero);
}

int HoughAccumulator::column(int angle) const {
  return angle <= voted_.low.last ? angle - voted_.low.first : angle - voted_.high.first + voted_.low.size();
}

VoteSheet HoughAccumulator::sheet() {
  return {cells_.get(),      static_cast<std::ptrdiff_t>(stride_),
          distances_.size(), zero_ - distances_.first,
          cos_.data(),       sin_.data(),
          voted_.size()};
}

/**
 * The distances of all lines through points of a box, and those next to them; none when there are some without cells.
 * Rounding keeps order, so no point's distance lies outside what the corners have.
 */
geometry::Span HoughAccumulator::distances_of(const PointBox& box) const {
  geometry::Span reached;
  for (std::size_t t = 0; t < static_cast<std::size_t>(voted_.size()); ++t) {
    const double x[] = {box.col_min * cos_[t], box.col_max * cos_[t]};
    const double y[] = {box.row_min * sin_[t], box.row_max * sin_[t]};
    const double first = std::floor(std::min(x[0], x[1]) + std::min(y[0], y[1])) + zero_;
    const double last = std::floor(std::max(x[0], x[1]) + std::max(y[0], y[1])) + zero_ + 1;
    if (!(first >= distances_.first && last < distances_.end)) return {};
    reached.first = reached.empty() ? static_cast<int>(first) : std::min(reached.first, static_cast<int>(first));
    reached.end = std::max(reached.end, static_cast<int>(last) + 1);
  }
  return reached;
}

/** The distances that lines through the pixels of an area have; all where that is not known. */
geometry::Span HoughAccumulator::distances_within(const geometry::Rect& area) const {
  const auto [rows, cols] = area;
  if (rows.empty() || cols.empty()) return distances_;
  const auto from_centre = [](int place, int centre) { return static_cast<double>(place) - centre; };
  const geometry::Span reached =
      distances_of({from_centre(rows.first, centre_.row), from_centre(rows.last(), centre_.row),
                    from_centre(cols.first, centre_.col), from_centre(cols.last(), centre_.col)});
  return reached.empty() ? distances_ : reached;
}

/** Notes where these points vote; false when that is not all on the sheet. */
bool HoughAccumulator::reach(std::span<const EdgePoint> centred_points) {
  PointBox box{HUGE_VAL, -HUGE_VAL, HUGE_VAL, -HUGE_VAL};
  for (const EdgePoint& point : centred_points) {
    if (!can_vote(point)) return false;
    const double row = std::trunc(point.row);
    const double col = std::trunc(point.col);
    box.row_min = std::min(box.row_min, row);
    box.row_max = std::max(box.row_max, row);
    box.col_min = std::min(box.col_min, col);
    box.col_max = std::max(box.col_max, col);
  }
  const geometry::Span reached = distances_of(box);
  if (reached.empty()) return false;
  reached_ = reached_.empty()
                 ? reached
                 : geometry::Span{std::min(reached_.first, reached.first), std::max(reached_.end, reached.end)};
  return true;
}

void HoughAccumulator::vote(std::span<const EdgePoint> centred_points) {
  const auto count = static_cast<int>(centred_points.size());
  if (count == 0) return;
  if (reach(centred_points)) return kernels->vote(sheet(), centred_points.data(), count);
  reached_ = distances_;
  plain::vote(sheet(), centred_points.data(), count);
}

bool HoughAccumulator::vote(PointMap&& points) {
  std::array<Slant, kMostAngles> slants;
  const auto angles = static_cast<std::size_t>(voted_.size());
  for (std::size_t i = 0; i < angles; ++i) {
    slants[i] = points.slices_are_rows() ? Slant{cos_[i], sin_[i]} : Slant{sin_[i], cos_[i]};
  }
  DenseVotes dense(std::move(points), centre_.row, centre_.col, std::span(slants).first(angles),
                   distances_.first - zero_, distances_.size());
  if (!dense.ready()) return false;
  dense_ = std::move(dense);
  return true;
}

/** Sums the votes for a group of cells. */
void HoughAccumulator::sum_group(int angle, int group) {
  std::array<double, kSumCells> sums;
  const int first = group * kSumCells;
  dense_.sum(column(angle), group, sums.data());
  double* cells = cells_.get() + static_cast<std::size_t>(column(angle)) * stride_ + first;
  std::copy_n(sums.data(), std::min(kSumCells, distances_.size() - first), cells);
}

/** Takes the nearest of an angle's strongest cells if it is stronger than the best, or as strong and nearer. */
void HoughAccumulator::look_in(int angle, geometry::Span distances, Peak& best) const {
  if (distances.empty()) return;
  const double* cells = cells_.get() + static_cast<std::size_t>(column(angle)) * stride_;
  const double* first = cells + (distances.first - distances_.first);
  const double votes = kernels->largest(first, distances.size());
  if (votes == 0 || votes < best.votes) return;
  const auto nearest = distances.first + static_cast<int>(std::find(first, first + distances.size(), votes) - first);
  const bool nearer = nearest < best.distance || (nearest == best.distance && angle < best.angle);
  if (votes > best.votes || nearer) best = {nearest, angle, votes};
}

/** The same, but for cells near one that is excluded. */
void HoughAccumulator::look_around(int angle, geometry::Span distances, const Peak* excluded, Peak& best) const {
  if (excluded == nullptr || std::abs(angle - excluded->angle) >= kSameLineAngles) {
    return look_in(angle, distances, best);
  }
  look_in(angle, {distances.first, std::min(distances.end, excluded->distance - kSameLineDistances + 1)}, best);
  look_in(angle, {std::max(distances.first, excluded->distance + kSameLineDistances), distances.end}, best);
}

void HoughAccumulator::look_in_all(const Angles& searched, const Peak* excluded, Peak& best) const {
  for_each_angle(searched, [&](int t) { look_around(t, reached_, excluded, best); });
}

/**
 * Looks in groups of cells by falling bounds, until what is left can hold less than the best. Where a group's turn
 * comes by a loose bound, those of its angle that have the next turns get closer ones, which may put them off.
 */
void HoughAccumulator::look_in_bounded(const Angles& searched, const Peak* excluded, int least, Peak& best) {
  constexpr int kStep = 64;
  int above = 1;
  for_each_angle(searched, [&](int t) { above = std::max(above, dense_.largest_bound(column(t)) + 1); });
  const auto enough = [&] { return std::max(best.votes, static_cast<double>(least)); };
  while (above > 1 && above - 1 > enough()) {
    const int from = above - std::max(above / kStep, 1);
    for_each_angle(searched, [&](int t) {
      if (dense_.largest_bound(column(t)) < from) return;
      for (int group = 0; group < dense_.groups(); ++group) {
        const auto has_turn = [&] {
          const int bound = dense_.bound_of(column(t), group);
          return bound >= from && bound < above && bound > enough();
        };
        if (!has_turn()) continue;
        if (dense_.is_loose(column(t), group)) {
          dense_.bound(column(t), std::max(static_cast<int>(enough()), above / 2));
          if (!has_turn()) continue;
        }
        if (!dense_.is_summed(column(t), group)) sum_group(t, group);
        const int first = distances_.first + group * kSumCells;
        look_around(t, {first, std::min(first + kSumCells, distances_.end)}, excluded, best);
      }
    });
    above = from;
  }
}

Peak HoughAccumulator::strongest(const Angles& searched, const Peak* excluded, int least) {
  Peak best;
  if (dense_.ready()) {
    look_in_bounded(searched, excluded, least, best);
  } else {
    look_in_all(searched, excluded, best);
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
