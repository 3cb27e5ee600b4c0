/**
 * @file line_search.h
 * @brief The straight line across the profiles of a side along which most of them show a border.
 *
 * A side has two places at least here.
 */
#ifndef VANTREL_ANYWHERE_LINE_SEARCH_H
#define VANTREL_ANYWHERE_LINE_SEARCH_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "anywhere/side_profiles.h"

namespace vantrel::anywhere {

/** What the slopes of a plane come to where there is nothing but noise and texture. */
using Noise = std::array<float, kPlanes>;

/** The slope of a profile at a sample that has neighbours, in levels a sample. */
inline float slope_at(const std::array<float, kMostSamples>& levels, std::size_t i) {
  return (levels[i + 1] - levels[i - 1]) / 2;
}

/**
 * The standard deviation of the slopes, judged by how those of neighbouring profiles differ, so that lines along the
 * side do not count, and by the smallest quarter of the differences, which writing is not among.
 */
Noise noise_of(const SideProfiles& profiles);

/** The most evidence that a profile can give: a strong print is worth no more than a border that is plainly seen. */
inline constexpr int kFullEvidence = 256;

/** How much each sample of each profile looks like a border. */
struct Evidence {
  int places = 0;
  int samples = 0;
  std::array<std::array<std::int16_t, kMostSamples>, kMostPlaces> values;
};

void gather_evidence(const SideProfiles& profiles, const Noise& noise, Evidence& evidence);

/** A line from sample `begin` of the first profile to sample `end` of the last, and the mean evidence along it. */
struct SampleLine {
  double begin = 0.0;
  double end = 0.0;
  double evidence = 0.0;
};

/** The place of a profile's sample on the line. */
inline double sample_at(const SampleLine& line, int place, int places) {
  return line.begin + (line.end - line.begin) * place / (places - 1);
}

/** The mean evidence along a line, as a part of the most that there can be; 0 outside the profiles. */
double evidence_along(const Evidence& evidence, const SampleLine& line);

/** The line with the most evidence among those whose ends lie within `reach` samples of the centre. */
SampleLine search_line(const Evidence& evidence, int centre, int reach);

}  // namespace vantrel::anywhere

#endif
