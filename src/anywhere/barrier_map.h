/**
 * @file barrier_map.h
 * @brief How far each pixel of a copy stands out from the ground.
 */
#ifndef VANTREL_ANYWHERE_BARRIER_MAP_H
#define VANTREL_ANYWHERE_BARRIER_MAP_H

#include <cstdint>

#include "anywhere/copy.h"
#include "anywhere/ground.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/**
 * The minimum barrier distance of each pixel to the ground on the frame, in kLevel-ths: along the best path there, the
 * largest minus the smallest value, in the plane where that is most. Unlike a difference of colours it is small
 * wherever the ground changes slowly, or has the same texture up to the frame.
 *
 * J. Zhang and others, "Minimum Barrier Salient Object Detection at 80 FPS", ICCV 2015: a few raster passes come near.
 */
struct BarrierMap {
  Ground ground; /**< what the distances are to */
  image::WorkArray<std::uint16_t> distances;

  bool ready() const { return distances.ready(); }
};

BarrierMap barrier_map(const Copy& copy);

}  // namespace vantrel::anywhere

#endif
