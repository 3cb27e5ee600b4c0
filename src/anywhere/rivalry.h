/**
 * @file rivalry.h
 * @brief A candidate among the others: what it looks like on the scan, and who rivals it.
 */
#ifndef VANTREL_ANYWHERE_RIVALRY_H
#define VANTREL_ANYWHERE_RIVALRY_H

#include <array>
#include <cstddef>
#include <span>

#include "anywhere/features.h"
#include "anywhere/quad.h"
#include "anywhere/refine.h"

namespace vantrel::anywhere {

/** What is measured of a candidate on the scan and among its rivals; behind these follow its features, measured again.
 */
enum FinalFeature : std::size_t {
  kBehindBest, /**< how far its first score is behind the best */
  kMeanShare,  /**< of the places along seen sides that show a border */
  kLeastShare,
  kSecondShare,
  kMeanStep, /**< the contrast on the scan, in levels */
  kLeastStep,
  kShift,  /**< how far it moved on the scan, in pixels of the copy */
  kAround, /**< how much better the best candidate is that lies around it; with the same below: 0 if there is none */
  kWithin, /**< and the best that lies within it */
  kAcross, /**< and the best that it overlaps otherwise */
  kTiled,  /**< the share of its area that is covered by likely ones within it, side by side; 0 for less than two */
  kTiles,  /**< the most that one around it is covered by it and others */
  kAlikeBeside, /**< how many good candidates of about its size lie beside it */
  kFromRegion,  /**< 1: from a region, 0: from lines */
  kFinalOnly,
  kFinalFeatures = kFinalOnly + kFeatures
};

using FinalFeatures = std::array<float, kFinalFeatures>;

/** A candidate that was laid onto the scan. */
struct Finalist {
  Quad quad;       /**< on the copy, as found */
  Refined refined; /**< on the scan */
  double first_score = 0.0;
  std::size_t rank = 0; /**< by the first score */
  bool from_region = false;
  FinalFeatures features{};
  double final_score = 0.0; /**< by what was measured on the scan */
  double score = 0.0;       /**< and beside its best rival */
  double confidence = 0.0;  /**< 0 to 1 */
};

/** The most finalists. */
inline constexpr std::size_t kMostFinalists = 96;

/** Whether two overlap on the scan and are not the same border. */
bool are_rivals(const Finalist& a, const Finalist& b);

/** Fills in the features of all finalists. */
void measure_finalists(const Context& context, std::span<Finalist> finalists);

}  // namespace vantrel::anywhere

#endif
