/**
 * @file pair_search.h
 * @brief The search for two opposite borders at once, without looking at the image.
 */
#ifndef VANTREL_LINES_PAIR_SEARCH_H
#define VANTREL_LINES_PAIR_SEARCH_H

#include <span>

#include "lines/hough.h"

namespace vantrel::lines {

/** Fewer edge points than this make no pair of borders. */
inline constexpr int kLeastPairPoints = 2;

/** Top and bottom, or left and right. */
struct BorderPair {
  bool found = false;
  geometry::Line first{};
  geometry::Line second{};
};

/**
 * A search for the two strongest near-horizontal borders, or for two near-vertical ones: the left one's normal at 150
 * to 179 degrees, the right one's at 0 to 29.
 */
class PairSearch {
 public:
  PairSearch(int rows, int cols, bool horizontal, const AngleTables& tables);

  bool ready() const { return votes_.ready(); }
  void vote(std::span<const EdgePoint> centred_points) { votes_.vote(centred_points); }
  BorderPair find() const;

 private:
  /** Where to vote, where to look for each border, and the votes that the second needs. */
  struct Rules {
    Angles voted;
    Angles first;
    Angles second;
    int quorum;
  };
  static Rules rules_for(int rows, int cols, bool horizontal);

  Rules rules_;
  HoughAccumulator votes_;
};

}  // namespace vantrel::lines

#endif
