/**
 * @file thresholds.h
 * @brief Thresholds that separate what stands out in a map from its ground.
 */
#ifndef VANTREL_ANYWHERE_THRESHOLDS_H
#define VANTREL_ANYWHERE_THRESHOLDS_H

#include <array>
#include <cstddef>

#include "anywhere/regions.h"

namespace vantrel::anywhere {

inline constexpr std::size_t kThresholds = 8;

/** Ascending thresholds, the first `count` of them. */
struct Thresholds {
  std::size_t count = 0;
  std::array<int, kThresholds> values{};
};

/** Thresholds from just above the ground's noise to just below what stands out most, each a like factor higher. */
Thresholds thresholds_of(const Relief& relief);

/** Thresholds of a map of flatness, from what is all but flat to what has no strong border. */
Thresholds flatness_thresholds_of(const Relief& relief);

}  // namespace vantrel::anywhere

#endif
