/**
 * @file border_signal.h
 * @brief The profiles of a side in the one mixture of lightness and colour in which its border shows.
 */
#ifndef VANTREL_ANYWHERE_BORDER_SIGNAL_H
#define VANTREL_ANYWHERE_BORDER_SIGNAL_H

#include <array>

#include "anywhere/line_search.h"
#include "anywhere/robust_line.h"
#include "anywhere/side_profiles.h"

namespace vantrel::anywhere {

/** Profiles in units of the noise of their slopes. */
struct BorderSignal {
  double lightness = 0.0; /**< 0 to 1: how far the mixture is lightness rather than colour; light counts as more */
  std::array<std::array<float, kMostSamples>, kMostPlaces> values;
};

/** Mixes the planes as the slopes along a line do; their noise comes to 1 again. */
void mix_planes(const SideProfiles& profiles, const Noise& noise, const SampleLine& line, BorderSignal& signal);

/** The border along a line, to a fraction of a sample, in pixels from the side, outward. */
OffsetLine locate_border(const SideProfiles& profiles, const BorderSignal& signal, const SampleLine& line);

/** The share of the places whose steepest slope near a line, in pixels from the side, lies on it. */
double share_on_line(const SideProfiles& profiles, const BorderSignal& signal, const OffsetLine& line);

/** The median difference between inside and outside. */
double contrast_at(const SideProfiles& profiles, const OffsetLine& line);

}  // namespace vantrel::anywhere

#endif
