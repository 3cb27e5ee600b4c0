#include "cardcut/hough.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

namespace vantrel::cardcut {

using geometry::Span;

namespace {

// Not the full constant: the last bits of the tabulated sines and cosines decide where votes fall.
constexpr double kPi = 3.14159265;

/** The longest diagonal for which counters of all distances stay within the library's limit of 2^31 - 1 bytes. */
constexpr std::int64_t kLongestDiagonal =
    std::numeric_limits<std::int32_t>::max() / (kAngles * std::int64_t{sizeof(std::int32_t)}) - 1;

/** The diagonal in whole pixels. */
std::int64_t diagonal(std::int64_t cols, std::int64_t rows) {
  const auto square = static_cast<std::uint64_t>(cols * cols) + static_cast<std::uint64_t>(rows * rows);
  return static_cast<std::int64_t>(std::sqrt(static_cast<double>(square)) + 0.5);
}

int rounded(float value) { return static_cast<int>(static_cast<double>(value) + 0.5); }

using Trigonometry = double(double);

std::array<float, kAngles> table_of(Trigonometry& function) {
  std::array<float, kAngles> table{};
  for (int k = 0; k < kAngles; ++k) {
    const double angle = ((k - kHorizontal) * 0.5 + 90.0) * kPi / 180.0;
    table[static_cast<std::size_t>(k)] = static_cast<float>(function(angle));
  }
  return table;
}

}  // namespace

bool HoughAccumulator::reaches(int rows, int cols) { return diagonal(cols, rows) <= kLongestDiagonal; }

HoughAccumulator::HoughAccumulator(int rows, int cols, std::span<const Span> bands)
    : cols_(cols),
      centre_(cols / 2),
      diagonal_(static_cast<int>(diagonal(cols, rows))),
      sine_(table_of(std::sin)),
      cosine_(table_of(std::cos)),
      counters_(counters_for(bands)) {}

std::size_t HoughAccumulator::counters_for(std::span<const Span> bands) const {
  int distances = 0;
  for (const Span band : bands) distances = std::max(distances, distances_of(band).size());
  return static_cast<std::size_t>(distances) * kAngles;
}

Span HoughAccumulator::distances_of(Span band) const {
  if (band.empty() || cols_ <= 0) return {};
  // Rounding keeps the order of what it rounds, so the corners of the band have the extreme distances at each angle.
  int least = std::numeric_limits<int>::max();
  int most = 0;
  for (std::size_t k = 0; k < kAngles; ++k) {
    for (const int row : {band.first, band.last()}) {
      for (const int column : {0, cols_ - 1}) {
        const int distance =
            rounded(static_cast<float>(column - centre_) * cosine_[k] + static_cast<float>(row) * sine_[k]);
        least = std::min(least, distance);
        most = std::max(most, distance);
      }
    }
  }
  return geometry::common({least, most + 1}, {0, diagonal_ + 1});
}

void HoughAccumulator::clear(Span band) {
  distances_ = distances_of(band);
  std::fill_n(counters_.get(), std::ptrdiff_t{distances_.size()} * kAngles, 0);
}

std::int32_t HoughAccumulator::votes(int distance, int angle) const {
  if (!distances_.contains(distance)) return 0;
  return counters_[counter(distance, angle)];
}

Peak HoughAccumulator::strongest(int distance) const {
  Peak best = {distance, kHorizontal, 0};
  for (int k = 0; k < kAngles; ++k) {
    if (votes(distance, k) > best.votes) best = {distance, k, votes(distance, k)};
  }
  return best;
}

std::optional<Peak> HoughAccumulator::peak(int distance, int neighbour, int share) const {
  const Peak best = strongest(distance);
  if (std::int64_t{share} * best.votes <= cols_ || votes(neighbour, best.angle) > best.votes) return std::nullopt;
  return best;
}

// Of the distances from 0 to the diagonal neither search looks at the last, nor the upper one at the first.

std::optional<Peak> HoughAccumulator::lowest_peak(int share) const {
  const Span searched = geometry::common(distances_, {0, diagonal_});
  for (int distance = searched.first; distance < searched.end; ++distance) {
    if (const auto line = peak(distance, distance + 1, share)) return line;
  }
  return std::nullopt;
}

std::optional<Peak> HoughAccumulator::highest_peak(int share) const {
  const Span searched = geometry::common(distances_, {1, diagonal_});
  for (int distance = searched.last(); distance >= searched.first; --distance) {
    if (const auto line = peak(distance, distance - 1, share)) return line;
  }
  return std::nullopt;
}

int HoughAccumulator::row_at(Peak line, int column) const {
  const auto angle = static_cast<std::size_t>(line.angle);
  const float across = static_cast<float>(column - centre_) * cosine_[angle];
  return rounded((static_cast<float>(line.distance) - across) / sine_[angle]);
}

RowVotes::RowVotes(HoughAccumulator& accumulator, int row, geometry::AngleSpan angles)
    : accumulator_(accumulator), angles_(angles) {
  for (std::size_t k = 0; k < kAngles; ++k) row_part_[k] = static_cast<float>(row) * accumulator.sine_[k];
}

RowVotes::Distances RowVotes::distances_at(float across) const {
  Distances distances;
  for (std::size_t k = 0; k < kAngles; ++k) {
    distances[k] = rounded_distance(across * accumulator_.cosine_[k] + row_part_[k]);
  }
  return distances;
}

void RowVotes::count(int angle, int distance, int votes) {
  const geometry::Span counted = accumulator_.distances_;
  if (counted.contains(distance)) accumulator_.counters_[accumulator_.counter(distance, angle)] += votes;
}

void plain::count_distances(const CountedColumns& columns, int places, int* counts) {
  std::fill_n(counts, places, 0);
  for (const float across : std::span(columns.across, kMostCounted)) {
    const int distance = rounded_distance(across * columns.cosine + columns.row_part);
    const int place = (distance - columns.first) * columns.step;
    if (place >= 0 && place < places) ++counts[place];
  }
}

void RowVotes::add(std::span<const int> columns) {
  // As many as are counted at once make up for those that are not there.
  constexpr std::size_t kMany = 12;
  if (columns.size() >= kMany) return count_run(columns);
  for (const int column : columns) add(column);
}

/** Angles lie within 5 degrees of the horizontal, so that the columns of a run have 7 distances at most. */
void RowVotes::count_run(std::span<const int> columns) {
  static_assert((kMostCounted - 1) * 0.0872 + 2 < kMostDistances);
  const auto voters = static_cast<int>(columns.size());
  std::array<float, kMostCounted> across;
  const auto place = [&](int column) { return static_cast<float>(column - accumulator_.centre_); };
  const auto rest = std::transform(columns.begin(), columns.end(), across.begin(), place);
  // Where there are fewer, the last stands in for the others.
  std::fill(rest, across.end(), place(columns.back()));
  const Distances first = distances_at(across.front());
  const Distances last = distances_at(across.back());
  for (int k = angles_.first; k <= angles_.last; ++k) {
    const auto at = static_cast<std::size_t>(k);
    if (first[at] == last[at]) {
      count(k, first[at], voters);
      continue;
    }
    const int step = first[at] < last[at] ? 1 : -1;
    const int places = std::abs(last[at] - first[at]);
    std::array<int, kMostDistances> counts;
    kernels->count_distances({across.data(), accumulator_.cosine_[at], row_part_[at], first[at], step}, places,
                             counts.data());
    // Whoever is not counted, and all that stand in, have the last column's distance.
    int left = voters;
    for (int i = 0; i < places; ++i) {
      const int counted = counts[static_cast<std::size_t>(i)];
      count(k, first[at] + i * step, counted);
      left -= counted;
    }
    count(k, last[at], left);
  }
}

/**
 * Rounding keeps the order of what it rounds, so where the first and the last column have one distance, those between
 * have it too, and where these are neighbours, each column has one of the two. At these angles that is mostly so.
 */
void RowVotes::count_all() {
  if (waiting_ == 0) return;
  const std::size_t waiting = std::exchange(waiting_, 0);
  std::array<float, kMostWaiting> across;
  for (std::size_t i = 0; i < across.size(); ++i) {
    // Where fewer wait, the last stands in for the others.
    across[i] = static_cast<float>(columns_[std::min(i, waiting - 1)] - accumulator_.centre_);
  }
  const Distances first = distances_at(across.front());
  const Distances last = distances_at(across.back());
  for (int k = angles_.first; k <= angles_.last; ++k) {
    const auto at = static_cast<std::size_t>(k);
    if (first[at] == last[at]) {
      count(k, first[at], static_cast<int>(waiting));
      continue;
    }
    std::array<int, kMostWaiting> distances;
    for (std::size_t i = 0; i < across.size(); ++i) {
      distances[i] = rounded_distance(across[i] * accumulator_.cosine_[at] + row_part_[at]);
    }
    if (std::abs(first[at] - last[at]) == 1) {
      int nearer = 0;
      for (const int distance : distances) nearer += distance == first[at] ? 1 : 0;
      count(k, first[at], nearer);
      count(k, last[at], static_cast<int>(waiting) - nearer);
    } else {
      for (std::size_t i = 0; i < waiting; ++i) count(k, distances[i], 1);
    }
  }
}

}  // namespace vantrel::cardcut
