/**
 * @file border_signal.h
 * @brief The profiles of a side in the one mixture of lightness and colour in which its border shows.
 *
 * A side has two places at least here.
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

/** Where a border runs, in pixels from the side, outward: along a line, or bowed as the sides of curled cards are. */
struct BorderCourse {
  OffsetLine line; /**< the straight line nearest to it */
  double bow = 0.0;
  double middle = 0.0; /**< along, of the profiles */
  double half = 1.0;

  /** How far the course lies off its line. */
  double off_line(double along) const {
    const double t = (along - middle) / half;
    return bow * (t * t - 1.0 / 3.0);
  }
  double at(double along) const { return line.at(along) + off_line(along); }
};

/** The border along a line, to a fraction of a sample. */
BorderCourse locate_border(const SideProfiles& profiles, const BorderSignal& signal, const SampleLine& line);

/** The share of the places on the scan whose steepest slope near a course lies on it. */
double share_on_course(const SideProfiles& profiles, const BorderSignal& signal, const BorderCourse& course);

/** The median difference between inside and outside. */
double contrast_at(const SideProfiles& profiles, const BorderCourse& course);

}  // namespace vantrel::anywhere

#endif
