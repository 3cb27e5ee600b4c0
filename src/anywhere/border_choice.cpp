#include "anywhere/border_choice.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

/** An outer line is preferred from this part of the evidence on, and this much of the most there can be. */
constexpr double kPartOfBest = 0.7;
constexpr double kLeastOuter = 0.3;

/** Lines nearer than this are one, in samples. */
constexpr int kApart = 3;

/** A shadow is at most so wide, in samples, and its inner flank at least this part as plain as its outer one. */
constexpr int kWidestShadow = 6;
constexpr double kPartOfFlank = 0.5;

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

/** The median over the places of the slope beside a line. */
double slope_beside(const SideProfiles& profiles, const BorderSignal& signal, const SampleLine& line, double shift) {
  std::array<double, kMostPlaces> slopes{};
  std::size_t count = 0;
  for (int place = 0; place < profiles.places; ++place) {
    const auto at = static_cast<std::size_t>(place);
    const double sample = sample_at(line, place, profiles.places) + shift;
    const double below = std::floor(sample);
    if (!(below - 1 >= profiles.first[at] && below + 2 <= profiles.last[at])) continue;
    const auto i = static_cast<std::size_t>(below);
    const double part = sample - below;
    const auto& values = signal.values[at];
    slopes[count++] = slope_at(values, i) * (1.0 - part) + slope_at(values, i + 1) * part;
  }
  if (count * 2 < static_cast<std::size_t>(profiles.places)) return 0.0;
  const auto middle = slopes.begin() + static_cast<std::ptrdiff_t>(count / 2);
  std::nth_element(slopes.begin(), middle, slopes.begin() + static_cast<std::ptrdiff_t>(count));
  return *middle;
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
  double outer = 0.0;
  for (int halves = -2; halves <= 2; ++halves)
    outer = std::max(outer, slope_beside(profiles, signal, line, halves / 2.0));
  if (slope_beside(profiles, signal, line, 0.0) * 2 < outer || outer <= 0.0) return line;
  double shift = 0.0;
  double least = -kPartOfFlank * outer;
  for (int halves = 2; halves <= 2 * kWidestShadow; ++halves) {
    const double slope = slope_beside(profiles, signal, line, -halves / 2.0);
    if (slope < least) {
      least = slope;
      shift = -halves / 2.0;
    }
  }
  return {line.begin + shift, line.end + shift, line.evidence};
}

}  // namespace vantrel::anywhere
