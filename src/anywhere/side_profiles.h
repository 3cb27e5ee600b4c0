/**
 * @file side_profiles.h
 * @brief What a scan shows across a side of a quadrilateral: a profile at each of many places along it.
 */
#ifndef VANTREL_ANYWHERE_SIDE_PROFILES_H
#define VANTREL_ANYWHERE_SIDE_PROFILES_H

#include <array>
#include <cmath>
#include <cstddef>

#include "anywhere/copy.h"
#include "anywhere/quad.h"
#include "anywhere/scan.h"

namespace vantrel::anywhere {

/** The least whole number that is no less. */
inline double round_up(double value) { return -std::floor(-value); }

/** The most places along a side, and the most samples of a profile. */
inline constexpr int kMostPlaces = 110;
inline constexpr int kMostSamples = 48;

/** A side as the line across = base + slope * along; along is the axis, x or y, that it runs along more. */
struct SideLine {
  bool steep = false; /**< along is y, and across x */
  double from = 0.0;  /**< along, at the side's ends; from < to */
  double to = 0.0;
  double base = 0.0;
  double slope = 0.0;
  int outward = 1; /**< 1 where across grows from the inside to the outside, else -1 */

  double across(double along) const { return base + slope * along; }
  /** Pixels of distance from the line to a pixel of across. */
  double cosine() const { return 1.0 / std::sqrt(1.0 + slope * slope); }
  NormalLine line() const;
};

/** The side from a to b of a quadrilateral that runs clockwise. The two points differ. */
SideLine side_line(Point a, Point b);

/** Profiles across a side, each from the inside to the outside, sampled along the axis that is across. */
struct SideProfiles {
  int places = 0;
  int samples = 0;                              /**< of a profile */
  int centre = 0;                               /**< the sample that lies on the side */
  int step = 1;                                 /**< pixels of across from sample to sample; each is their mean */
  std::size_t plane_count = kPlanes;            /**< as in Copy */
  std::array<double, kMostPlaces> along{};      /**< where the profiles are */
  std::array<int, kMostPlaces> first{}, last{}; /**< the samples that lie on the scan; none: last < first */
  std::array<std::array<std::array<float, kMostSamples>, kPlanes>, kMostPlaces> levels; /**< by place and plane */

  /** How many profiles have at least `least` samples. */
  int count_with(int least) const;
};

/** Samples at least `reach` pixels of across to either side of all of a side but its ends. */
void sample_side(const Scan& scan, const SideLine& side, double reach, SideProfiles& profiles);

}  // namespace vantrel::anywhere

#endif
