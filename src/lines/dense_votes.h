/**
 * @file dense_votes.h
 * @brief The votes of so many points that most cells are better bounded than summed.
 */
#ifndef VANTREL_LINES_DENSE_VOTES_H
#define VANTREL_LINES_DENSE_VOTES_H

#include <array>
#include <cstdint>
#include <span>

#include "lines/kernels.h"
#include "lines/loose_votes.h"
#include "lines/point_map.h"

namespace vantrel::lines {

/**
 * What cells can hold at most, by weights for points whose place is known to a 64th of a pixel, and what they hold.
 *
 * The cells of an angle lie in groups of kSumCells by increasing distance. Where distances decrease from byte to byte,
 * a line is taken by its opposite normal, at the negative distance: all signs of the arithmetic turn, and nothing else.
 */
class DenseVotes {
 public:
  /** None, and not ready. */
  DenseVotes() : slants_{}, largest_{} {}

  /** For so many cells of each angle, the first of which has that distance; check `ready` before use. */
  DenseVotes(PointMap&& points, int centre_row, int centre_col, std::span<const Slant> slants, int first_distance,
             int cells);

  bool ready() const { return points_.ready() && bounds_.ready() && weights_.ready(); }
  int groups() const { return groups_; }

  /** More than any cell of the group holds, however its sum is rounded; 0 when they hold nothing. */
  int bound_of(int angle, int group) const { return bounds_[index(angle, group)].votes; }

  int largest_bound(int angle) const { return largest_[static_cast<std::size_t>(angle)]; }

  /** Whether little is known of a group's cells: then `bound` tells more. */
  bool is_loose(int angle, int group) const { return bounds_[index(angle, group)].state == State::kLoose; }

  /** Bounds those cells of an angle closely that loosely may hold so many votes. */
  void bound(int angle, int least);

  bool is_summed(int angle, int group) const { return bounds_[index(angle, group)].state == State::kSummed; }

  /** Sums the votes for a group's kSumCells cells, each in the order of the points' rows and columns. */
  void sum(int angle, int group, double* sums);

 private:
  enum class State : unsigned char { kLoose, kClose, kSummed };
  struct Bound {
    int votes;
    State state;
  };

  std::size_t index(int angle, int group) const {
    return static_cast<std::size_t>(angle) * static_cast<std::size_t>(groups_) + static_cast<std::size_t>(group);
  }
  double place_of(Slant slant, int distance) const;
  void bound_block(Slant slant, int first_distance, unsigned* sums) const;
  void fill_weights(double across);

  PointMap points_;
  double first_across_ = 0; /**< byte 0 and slice 0, counted from the centre */
  double first_along_ = 0;
  std::array<Slant, kMostAngles> slants_;
  std::array<int, kMostAngles> largest_; /**< bound of each angle */
  int angles_ = 0;
  int first_distance_ = 0;
  int groups_ = 0;
  int taps_ = 0; /**< see BoundedSlices */
  image::WorkArray<Bound> bounds_;
  image::WorkArray<unsigned char> weights_;
};

}  // namespace vantrel::lines

#endif
