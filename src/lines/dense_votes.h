/**
 * @file dense_votes.h
 * @brief The votes of so many points that most cells are better bounded than summed.
 */
#ifndef VANTREL_LINES_DENSE_VOTES_H
#define VANTREL_LINES_DENSE_VOTES_H

#include <cstdint>

#include "lines/kernels.h"
#include "lines/point_map.h"

namespace vantrel::lines {

/** How the lines of an angle lie on a map: distance = across * byte + along * slice, both counted from the centre. */
struct Slant {
  double across; /**< cosine of 30 degrees at least, or at most its negative: cells lie about a byte apart */
  double along;
};

/**
 * What cells can hold at most, by weights for points whose place is known to a 64th of a pixel, and what they hold.
 *
 * The cells of an angle lie in groups of kSumCells by increasing distance. Where distances decrease from byte to byte,
 * a line is taken by its opposite normal, at the negative distance: all signs of the arithmetic turn, and nothing else.
 */
class DenseVotes {
 public:
  /** None, and not ready. */
  DenseVotes() = default;

  /** For so many angles with so many cells each; check `ready` before use. */
  DenseVotes(PointMap&& points, int centre_row, int centre_col, int angles, int cells);

  bool ready() const { return points_.ready() && bounds_.ready() && weights_.ready(); }
  bool slices_are_rows() const { return points_.slices_are_rows(); }
  int groups() const { return groups_; }

  /** Bounds the cells of an angle, the first of which has that distance. */
  void bound(int angle, Slant slant, int first_distance);

  /** More than any cell of the group holds, however its sum is rounded; 0 when they hold nothing. */
  int bound_of(int angle, int group) const { return bounds_[index(angle, group)].votes; }
  bool is_summed(int angle, int group) const { return bounds_[index(angle, group)].summed; }
  void note_sum(int angle, int group) { bounds_[index(angle, group)].summed = true; }
  int largest_bound() const;

  /** Sums the votes for kSumCells cells from that distance on, each in the order of the points' rows and columns. */
  void sum(Slant slant, int first_distance, double* sums) const;

 private:
  struct Bound {
    int votes;
    bool summed;
  };

  std::size_t index(int angle, int group) const {
    return static_cast<std::size_t>(angle) * static_cast<std::size_t>(groups_) + static_cast<std::size_t>(group);
  }
  void bound_block(Slant slant, int first_distance, unsigned* sums) const;
  void fill_weights(double across);

  PointMap points_;
  double first_across_ = 0; /**< byte 0 and slice 0, counted from the centre */
  double first_along_ = 0;
  int groups_ = 0;
  int taps_ = 0; /**< see BoundedSlices */
  image::WorkArray<Bound> bounds_;
  image::WorkArray<unsigned char> weights_;
};

}  // namespace vantrel::lines

#endif
