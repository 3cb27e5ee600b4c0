/**
 * @file edge_fit.h
 * @brief Where a card's edge lies beside which a shadow begins, from the mean profile of a side.
 */
#ifndef VANTREL_ANYWHERE_EDGE_FIT_H
#define VANTREL_ANYWHERE_EDGE_FIT_H

#include <array>
#include <cstddef>
#include <span>

#include "anywhere/border_signal.h"
#include "anywhere/side_profiles.h"

namespace vantrel::anywhere {

/** How far outside of a side its profiles have to be seen, in pixels. */
inline constexpr int kFitOutside = 6;

/** A scan's point spread is unknown, but the same on all sides of a card: so many deviations of it are tried. */
inline constexpr std::size_t kBlurs = 6;

/** What a blur makes of a side. */
struct EdgeFit {
  double offset = 0.0; /**< of the edge, outward of the course, in pixels */
  double misfit = 0.0; /**< above 0 where there was a profile to be fitted */
};
using EdgeFits = std::array<EdgeFit, kBlurs>;

/**
 * Fits an edge to the mean profile around a course, once for each blur.
 *
 * @param profiles of samples of one pixel.
 * @param cosine   of the side that was sampled.
 *
 * A shadow is darkest at the card's edge, and the middle of the flank that both make is not the edge. So the profile is
 * explained as a step and, if that is much better, a step with a shadow outside it: the ground's own colour, darkened
 * in all planes alike. Where no shadow is seen the edge is left on the course.
 */
EdgeFits fit_edge(const SideProfiles& profiles, const BorderCourse& course, double cosine);

/** The blur that explains all sides best; kBlurs where no side has a profile. */
std::size_t best_blur(std::span<const EdgeFits* const> sides);

}  // namespace vantrel::anywhere

#endif
