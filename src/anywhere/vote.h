/**
 * @file vote.h
 * @brief The Hough vote of edges for lines, which can be taken back.
 */
#ifndef VANTREL_ANYWHERE_VOTE_H
#define VANTREL_ANYWHERE_VOTE_H

#include <array>
#include <cstdint>

#include "anywhere/directions.h"
#include "anywhere/edges.h"
#include "geometry/hough.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** Votes by direction and whole pixels of distance. R. O. Duda and P. E. Hart, CACM 15, 1972. */
class Vote {
 public:
  /** How far from its own direction an edge votes, in bins. */
  static constexpr int kReach = 7;

  Vote(int rows, int cols);

  bool ready() const { return cells_.ready(); }
  /** Adds the votes of an edge, or takes them back. An edge weighs 1 to 4, by its magnitude. */
  void add(const Edge& edge, int threshold) { count(edge, weight(edge, threshold)); }
  void remove(const Edge& edge, int threshold) { count(edge, -weight(edge, threshold)); }
  /** The most voted line; of several the one of the first direction and the least distance. */
  geometry::Peak<int> peak();
  /** The distance from the origin that a cell stands for. */
  double distance(int cell) const { return cell - offset_ + 0.5; }

 private:
  static int weight(const Edge& edge, int threshold);
  void count(const Edge& edge, int weight);
  void look_again(int direction);

  int offset_;
  int distances_;
  image::WorkArray<std::int32_t> cells_;
  // The peak of each direction, and whether its votes changed since.
  std::array<geometry::Peak<int>, kDirections> peaks_{};
  std::array<bool, kDirections> stale_{};
};

}  // namespace vantrel::anywhere

#endif
