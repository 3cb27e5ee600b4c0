/**
 * @file features.h
 * @brief What can be measured of a candidate, as numbers for the judgement.
 */
#ifndef VANTREL_ANYWHERE_FEATURES_H
#define VANTREL_ANYWHERE_FEATURES_H

#include <array>
#include <cstddef>
#include <span>

#include "anywhere/candidates.h"
#include "anywhere/probe.h"
#include "anywhere/summary.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** What is measured of a candidate by itself. "Seen" are the sides that do not lie on the frame. */
enum Feature : std::size_t {
  kMeanCoverage, /**< of the seen sides */
  kLeastCoverage,
  kSecondCoverage, /**< the second least */
  kMeanEnds,       /**< coverage at the ends of sides */
  kLeastEnds,
  kMeanOverrun,
  kMostOverrun,
  kMeanStrength, /**< of the edges, by how often they exceed the threshold */
  kLeastStrength,
  kMeanContrast, /**< levels */
  kLeastContrast,
  kSecondContrast,
  kMeanAgreement,
  kLeastAgreement,
  kOutsideSpread, /**< unevenness just outside, over the contrast */
  kInsideSpread,
  kOutsideEdges, /**< parallel edges a little outside: the mean over the sides */
  kMostOutsideEdges,
  kInsideEdges,
  kMostInsideEdges,
  kOutsideBarrier, /**< over the greatest of the picture */
  kInsideBarrier,
  kBarrierStep, /**< inside minus outside, of the side where it is least */
  kAreaBarrier, /**< the mean over the area */
  kLowArea,     /**< the share of the area that hardly differs from the ground */
  kDrift,
  kRingOutside,    /**< the share of the ring along the frame that looks like just outside */
  kRingInside,     /**< and like just inside */
  kSidesUnlike,    /**< how much the colours just outside differ from side to side, over the contrast */
  kInsidesUnlike,  /**< and the colours just inside */
  kSamePolarity,   /**< 1: all steps in the same direction, as of a card on a ground; down to -1 */
  kShareOfPicture, /**< the area */
  kShortSide,      /**< pixels of the copy */
  kElongation,     /**< longer over shorter side */
  kSkew,           /**< how far the corners are from right angles */
  kTaper,          /**< how far opposite sides differ in length */
  kFrameSides,     /**< how many sides lie on the frame */
  kNearFrame,      /**< how many lie close beside it */
  kOutsideCorners, /**< how far corners lie outside the frame */
  kEdgesOutside,   /**< the share of all edges outside, away from the border */
  kEdgesInside,
  kEdgeDensity,        /**< edges inside, for the area */
  kLevelness,          /**< how near the sides are to the directions of the frame */
  kTopContrast,        /**< the greatest contrast of a side */
  kThreshold,          /**< how lively the picture is */
  kCoarseMeanCoverage, /**< on the copy of half the size, where texture and print fade */
  kCoarseLeastCoverage,
  kCoarseSecondCoverage,
  kCoarseLeastAgreement,
  kCoarseMeanOverrun,
  kCoarseMostOutsideEdges,
  kCoarsestMeanCoverage, /**< on the copy of a quarter of the size */
  kCoarsestLeastCoverage,
  kCoarsestSecondCoverage,
  kFeatures
};

using Features = std::array<float, kFeatures>;

/** What copies of half and of a quarter of the size show; their barriers are not looked at. */
struct CoarseScenes {
  Scene half;
  Scene quarter;
};

/** What the features of all candidates of a picture share. */
class Context {
 public:
  Context(const Scene& scene, const CoarseScenes& coarser, const Edges& edges);

  const Scene& scene() const { return scene_; }
  const CoarseScenes& coarser() const { return coarser_; }
  /** The share of the ring along the frame whose colour is near this one. */
  double ring_share(const Levels& colour) const;
  std::span<const Point> sampled_edges() const { return {edges_.data(), edge_count_}; }
  double greatest_barrier() const { return greatest_barrier_; }

 private:
  static constexpr std::size_t kRing = 96;
  static constexpr std::size_t kMostEdges = 768;

  const Scene& scene_;
  CoarseScenes coarser_;
  std::array<Levels, kRing> ring_{};
  std::array<Point, kMostEdges> edges_{};
  std::size_t edge_count_ = 0;
  double greatest_barrier_ = 0.0;
};

/** Which sides of a quadrilateral of the copy do not lie on its frame. */
SeenSides seen_sides(const Scene& scene, const Quad& quad);

/** Measures a quadrilateral of the copy. */
Features measure(const Context& context, const Quad& quad);

}  // namespace vantrel::anywhere

#endif
