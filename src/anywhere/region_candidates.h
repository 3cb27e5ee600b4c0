/**
 * @file region_candidates.h
 * @brief Candidates from regions that stand out from what lies along the frame.
 */
#ifndef VANTREL_ANYWHERE_REGION_CANDIDATES_H
#define VANTREL_ANYWHERE_REGION_CANDIDATES_H

#include <array>
#include <cstdint>

#include "anywhere/copy.h"
#include "anywhere/quad.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** How far each pixel of a copy stands out from the ground: its minimum barrier distance to the frame, in kLevel-ths.
 */
struct BarrierMap {
  image::WorkArray<std::uint16_t> distances;

  bool ready() const { return distances.ready(); }
};

BarrierMap barrier_map(const Copy& copy);

/** The most candidates from regions. */
inline constexpr int kMostRegions = 64;

/** Quadrilaterals in the coordinates of the copy. */
struct RegionCandidates {
  bool ready = false;
  int count = 0;
  std::array<Quad, kMostRegions> quads{};
};

RegionCandidates region_candidates(const Copy& copy, const BarrierMap& map);

}  // namespace vantrel::anywhere

#endif
