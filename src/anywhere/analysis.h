/**
 * @file analysis.h
 * @brief Everything that is known of a scan before it is judged.
 */
#ifndef VANTREL_ANYWHERE_ANALYSIS_H
#define VANTREL_ANYWHERE_ANALYSIS_H

#include <cstddef>
#include <cstdint>

#include "anywhere/candidates.h"
#include "anywhere/copy.h"
#include "anywhere/edges.h"
#include "anywhere/features.h"
#include "anywhere/lines.h"
#include "anywhere/region_candidates.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** What is kept of a coarser copy. */
struct CoarseLevel {
  Copy copy;
  image::WorkArray<Gradient> gradients;
  int edge_threshold = 0;

  Scene scene() const { return {copy, gradients.all(), {}, edge_threshold}; }
};

/** The steps in their order, each made from those before it. */
struct Analysis {
  Copy copy;
  CoarseLevel half;    /**< of half the copy's size */
  CoarseLevel quarter; /**< and of a quarter of it */
  image::WorkArray<Gradient> gradients;
  Edges edges;
  BarrierMap barriers;
  Lines lines;
  Candidates candidates;
  image::WorkArray<Features> features; /**< of each candidate */

  Scene scene() const { return {copy, gradients.all(), barriers.distances.all(), edges.threshold}; }
  CoarseScenes coarser() const { return {half.scene(), quarter.scene()}; }
};

/** The least side of a copy on which anything can be found. */
inline constexpr int kLeastCopySide = 24;

/** Looks at a scan; false where there was not enough memory. A scan too small has no candidates. */
bool analyse(const Scan& scan, Analysis& analysis);

}  // namespace vantrel::anywhere

#endif
