/**
 * @file components_flood.h
 * @brief Eight-connected components of an edge map: once by flood fill, once by the rules for runs.
 */
#ifndef VANTREL_TESTS_REFERENCE_COMPONENTS_FLOOD_H
#define VANTREL_TESTS_REFERENCE_COMPONENTS_FLOOD_H

#include <vector>

#include "support/picture.h"

namespace reference::components {

using support::Picture;

/** A component: columns left to right, memory rows bottom to top, foreground pixels, sequence number. */
struct Character {
  int left = 0;
  int right = 0;
  int bottom = 0;
  int top = 0;
  long pixels = 0;
  int label = 0;

  bool operator==(const Character&) const = default;
};

/** The components of the pixels that are 0, in the order in which a row-wise scan meets them; labels stay 0. */
std::vector<Character> flood(const Picture& edge);

/** For the comparison with a flood fill, to which order and labels do not matter. */
std::vector<Character> sorted_without_labels(std::vector<Character> all);

/** What the run rules yield for a pool that has room for `room` characters: the survivors in their order. */
std::vector<Character> by_runs(const Picture& edge, int room = 9998);

}  // namespace reference::components

#endif
