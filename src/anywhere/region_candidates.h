/**
 * @file region_candidates.h
 * @brief Candidates from regions that stand out from what lies along the frame.
 */
#ifndef VANTREL_ANYWHERE_REGION_CANDIDATES_H
#define VANTREL_ANYWHERE_REGION_CANDIDATES_H

#include <array>

#include "anywhere/barrier_map.h"
#include "anywhere/copy.h"
#include "anywhere/quad.h"

namespace vantrel::anywhere {

/** The most candidates from regions. */
inline constexpr std::size_t kMostRegions = 128;

/** Quadrilaterals in the coordinates of the copy, clockwise, the most plausible first. */
struct RegionCandidates {
  bool ready = false; /**< false: there was not enough memory */
  int count = 0;
  std::array<Quad, kMostRegions> quads{};
};

/** Puts quadrilaterals around the regions of a map that lie above one of several thresholds. */
RegionCandidates region_candidates(const Copy& copy, const BarrierMap& map, std::size_t most = kMostRegions);

}  // namespace vantrel::anywhere

#endif
