/**
 * @file hough.h
 * @brief A Hough transform for nearly horizontal lines.
 */
#ifndef VANTREL_CARDCUT_HOUGH_H
#define VANTREL_CARDCUT_HOUGH_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "cardcut/kernels.h"
#include "geometry/hough.h"
#include "geometry/span.h"
#include "image/work_array.h"

namespace vantrel::cardcut {

/** Angle indices count half degrees from 85 to 95. */
inline constexpr int kAngles = 21;
inline constexpr int kHorizontal = 10;
inline constexpr geometry::AngleSpan kAllAngles = {0, kAngles - 1};

/** The line (x - centre column) * cos + y * sin = distance, x a column and y a memory row. */
using Peak = geometry::Peak<std::int32_t>;

/** The line along the image's lowest row: what a side has for its border when none is found. */
inline constexpr Peak kLowestLine = {0, kHorizontal, 0};

/**
 * Counts for each line the pixels that voted for it.
 *
 * Distances and rows are computed in single precision, then rounded by adding 0.5 in double precision and
 * truncating: another precision or order would move votes from one line to the next.
 */
class HoughAccumulator {
 public:
  /**
   * For an image of that size and votes from these bands of its rows, one band at a time.
   *
   * Only the distances of the lines through a band have counters, so that the memory stays in proportion to the band.
   * Not ready when there is no memory for the largest band. The size must be one that an accumulator `reaches`.
   */
  HoughAccumulator(int rows, int cols, std::span<const geometry::Span> bands);

  /** Whether there are accumulators for images of that size at all: not when the diagonal is too long. */
  static bool reaches(int rows, int cols);

  bool ready() const { return counters_.ready(); }

  /** Forgets all votes and makes room for those of the rows of a band. */
  void clear(geometry::Span band);

  /**
   * The line of smallest distance that has more than 1 / `share` of the image's width in votes and at least as many as
   * its neighbour at the next distance.
   */
  std::optional<Peak> lowest_peak(int share) const;
  /** The same from above: the line of largest distance, its neighbour that at the distance before. */
  std::optional<Peak> highest_peak(int share) const;

  /** The row in which a line crosses a column. */
  int row_at(Peak line, int column) const;
  int centre_row(Peak line) const { return row_at(line, centre_); }

 private:
  friend class RowVotes;

  /** The distances that have votes from a band. */
  geometry::Span distances_of(geometry::Span band) const;
  std::size_t counters_for(std::span<const geometry::Span> bands) const;
  std::size_t counter(int distance, int angle) const {
    return static_cast<std::size_t>(distance - distances_.first) * kAngles + static_cast<std::size_t>(angle);
  }
  std::int32_t votes(int distance, int angle) const;
  Peak strongest(int distance) const;
  std::optional<Peak> peak(int distance, int neighbour, int share) const;

  int cols_;
  int centre_;
  int diagonal_;  // in whole pixels: no distance is longer
  std::array<float, kAngles> sine_;
  std::array<float, kAngles> cosine_;
  geometry::Span distances_;                 // those that have counters at present
  image::WorkArray<std::int32_t> counters_;  // those of one distance lie together
};

/**
 * A distance rounded without double precision: the number below a half, added in single precision before truncation,
 * gives the same whole number as a half in double precision. Not so below -2^23, but distances below 0 count nothing.
 */
constexpr int rounded_distance(float value) { return static_cast<int>(value + kBelowHalf); }

/**
 * Collects the votes of one row's pixels: each votes for the lines through it, one at each angle. Columns are added in
 * increasing order.
 */
class RowVotes {
 public:
  RowVotes(HoughAccumulator& accumulator, int row, geometry::AngleSpan angles);
  RowVotes(const RowVotes&) = delete;
  RowVotes& operator=(const RowVotes&) = delete;
  ~RowVotes() { count_all(); }

  void add(int column) {
    if (waiting_ == columns_.size()) count_all();
    columns_[waiting_++] = column;
  }

  /** Adds columns of which none lies kMostCounted or further behind the first. */
  void add(std::span<const int> columns);

 private:
  using Distances = std::array<int, kAngles>;
  static constexpr std::size_t kMostWaiting = 8;

  Distances distances_at(float across) const;
  void count_run(std::span<const int> columns);
  void count(int angle, int distance, int votes);
  void count_all();

  HoughAccumulator& accumulator_;
  geometry::AngleSpan angles_;
  std::array<float, kAngles> row_part_;    // what the row adds to the distances
  std::array<int, kMostWaiting> columns_;  // that wait to be counted
  std::size_t waiting_ = 0;
};

}  // namespace vantrel::cardcut

#endif
