/**
 * @file probe.h
 * @brief What lies along one side of a quadrilateral: edges on it, and colours on both sides of it.
 */
#ifndef VANTREL_ANYWHERE_PROBE_H
#define VANTREL_ANYWHERE_PROBE_H

#include <array>
#include <cstdint>
#include <span>

#include "anywhere/copy.h"
#include "anywhere/edges.h"
#include "anywhere/quad.h"

namespace vantrel::anywhere {

/** A colour of the copy, in levels: light, red-green, blue-yellow. */
struct Levels {
  std::array<double, kPlanes> planes{};

  Levels& operator+=(const Levels& other) {
    for (std::size_t i = 0; i < kPlanes; ++i) planes[i] += other.planes[i];
    return *this;
  }
  friend Levels operator-(Levels a, const Levels& b) {
    for (std::size_t i = 0; i < kPlanes; ++i) a.planes[i] -= b.planes[i];
    return a;
  }
  friend Levels operator*(Levels a, double factor) {
    for (double& value : a.planes) value *= factor;
    return a;
  }
};

inline double dot(const Levels& a, const Levels& b) {
  double sum = 0.0;
  for (std::size_t i = 0; i < kPlanes; ++i) sum += a.planes[i] * b.planes[i];
  return sum;
}

/** What a probe looks at. */
struct Scene {
  const Copy& copy;
  std::span<const Gradient> gradients;
  std::span<const std::uint16_t> barriers; /**< minimum barrier distance of each pixel, in kLevel-ths; or none */
  int edge_threshold;

  bool contains(Point p) const { return p.x >= 0.0 && p.y >= 0.0 && p.x < copy.cols && p.y < copy.rows; }
  /** The colour at a place; beyond the frame that of the frame. */
  Levels colour(Point p) const;
  double barrier(Point p) const;
  /** Whether an edge across this normal lies here or up to a pixel beside, and how strong, in levels a pixel. */
  bool has_edge(Point p, Point normal, double* strength) const;
};

/** What is measured along a side. Shares are of the places looked at, 0 to 1; contrasts are in levels. */
struct SideProbe {
  double size = 0.0;           /**< pixels of the copy */
  double inside_frame = 0.0;   /**< the share of it that lies in the copy, away from its rim */
  double coverage = 0.0;       /**< lies on edges */
  double end_coverage = 0.0;   /**< of the poorer of its ends */
  double overrun = 0.0;        /**< of what lies beyond its ends, on edges */
  double strength = 0.0;       /**< of these edges, levels a pixel */
  double contrast = 0.0;       /**< of the mean colours inside and outside */
  double agreement = 0.0;      /**< of places with a step in the same direction as the mean */
  double outside_spread = 0.0; /**< how uneven the colours outside are */
  double inside_spread = 0.0;
  double outside_edges = 0.0; /**< has a parallel edge a little outside */
  double inside_edges = 0.0;  /**< and inside */
  double outside_barrier = 0.0;
  double inside_barrier = 0.0;
  double drift = 0.0; /**< from just outside to farther outside: a shadow, or the rim of something else */
  Levels inside;
  Levels outside;
};

/** Looks along the side from a to b of a clockwise quadrilateral. */
SideProbe probe_side(const Scene& scene, Point a, Point b);

}  // namespace vantrel::anywhere

#endif
