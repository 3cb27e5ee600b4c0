#include "anywhere/border_choice.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

/** An outer line is preferred from this part of the evidence on, and this much of the most there can be. */
constexpr double kPartOfBest = 0.6;
constexpr double kLeastOuter = 0.3;

/** Lines nearer than this are one, in samples. */
constexpr int kApart = 3;

/** A shadow is at most so wide, in samples, and its inner flank at least this part as plain as its outer one. */
constexpr double kWidestShadow = 6.0;
constexpr double kPartOfFlank = 0.4;

/** The most evidence along a line shifted by `shift` samples, or along one that turns a little beside it. */
SampleLine best_near(const Evidence& evidence, const SampleLine& line, double shift) {
  SampleLine best;
  best.evidence = -1.0;
  for (int i = -1; i <= 1; ++i) {
    for (int j = -1; j <= 1; ++j) {
      SampleLine other{line.begin + shift + i * 0.5, line.end + shift + j * 0.5, 0.0};
      other.evidence = evidence_along(evidence, other);
      if (other.evidence > best.evidence) best = other;
    }
  }
  return best;
}

/** The mean over the places of which way the signal goes: -1 to 1 each, the farther from 0 the steeper. */
double way_at(const SideProfiles& profiles, const BorderSignal& signal, const SampleLine& line, double shift) {
  double sum = 0.0;
  for (int place = 0; place < profiles.places; ++place) {
    const auto at = static_cast<std::size_t>(place);
    const double sample = sample_at(line, place, profiles.places) + shift;
    const double below = std::floor(sample);
    if (!(below - 1 >= profiles.first[at] && below + 2 <= profiles.last[at])) continue;
    const auto i = static_cast<std::size_t>(below);
    const double part = sample - below;
    const auto& values = signal.values[at];
    const double slope = slope_at(values, i) * (1.0 - part) + slope_at(values, i + 1) * part;
    sum += slope / (std::abs(slope) + 3.0);
  }
  return sum / profiles.places;
}

}  // namespace

SampleLine outermost_line(const Evidence& evidence, const SampleLine& line, int centre, int reach) {
  const double room = centre + reach - std::max(line.begin, line.end);
  const double least = std::max(kPartOfBest * line.evidence, kLeastOuter);
  SampleLine chosen = line;
  SampleLine before = line;
  for (int shift = 1; shift <= room; ++shift) {
    const SampleLine here = best_near(evidence, line, shift);
    const bool apart = shift >= kApart;
    const bool peak =
        here.evidence >= before.evidence && here.evidence >= best_near(evidence, line, shift + 1).evidence;
    if (apart && peak && here.evidence >= least) chosen = here;
    before = here;
  }
  return chosen;
}

SampleLine inner_flank(const SideProfiles& profiles, const BorderSignal& signal, const SampleLine& line) {
  if (signal.lightness < 0.5) return line;
  const double outer = way_at(profiles, signal, line, 0.0);
  if (outer <= 0.0) return line;
  double shift = 0.0;
  double least = -kPartOfFlank * outer;
  for (double inward = 1.0; inward <= kWidestShadow; inward += 0.5) {
    const double way = way_at(profiles, signal, line, -inward);
    if (way < least) {
      least = way;
      shift = -inward;
    }
  }
  return {line.begin + shift, line.end + shift, line.evidence};
}

}  // namespace vantrel::anywhere
