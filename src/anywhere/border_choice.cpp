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

/** A shadow is at most so wide, in samples, and one that fades outward is narrower. */
constexpr int kWidestShadow = 6;
constexpr int kWidestFading = 4;

/** Of a shadow, the flank on the card's edge is about as steep as the other at least; or it is the narrower one by so
 * much, and this part as steep. The dark rim of a card or a film has the steeper one outside. */
constexpr double kSteeper = 0.9;
constexpr double kNarrower = 1.3;
constexpr double kPartOfFlank = 0.33;

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

/** The slopes beside a line at every half sample, from some way inside of the widest shadow to some way outside. */
constexpr std::size_t kOnLine = 2 * (kWidestShadow + 2);
using FlankSlopes = std::array<double, kOnLine + 8>;

void add_slopes(const SideProfiles& profiles, const BorderSignal& signal, const SampleLine& line, std::size_t first,
                std::size_t end, FlankSlopes& slopes) {
  for (std::size_t i = first; i < end; ++i)
    slopes[i] = slope_beside(profiles, signal, line, (static_cast<double>(i) - static_cast<double>(kOnLine)) / 2);
}

/** How wide a flank is, in half samples: its height by its steepest slope. */
double flank_width(const FlankSlopes& slopes, std::size_t steepest) {
  constexpr std::size_t kWidest = 6;
  const double most = slopes[steepest];
  double sum = most;
  for (std::size_t i = 1; i <= kWidest && i <= steepest && slopes[steepest - i] * most > 0.0; ++i)
    sum += slopes[steepest - i];
  for (std::size_t i = 1; i <= kWidest && steepest + i < slopes.size() && slopes[steepest + i] * most > 0.0; ++i)
    sum += slopes[steepest + i];
  return sum / most;
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
  FlankSlopes slopes{};
  add_slopes(profiles, signal, line, kOnLine - 2, kOnLine + 3, slopes);
  std::size_t outer = kOnLine - 2;
  for (std::size_t i = outer; i <= kOnLine + 2; ++i)
    if (slopes[i] > slopes[outer]) outer = i;
  if (slopes[kOnLine] * 2 < slopes[outer] || slopes[outer] <= 0.0) return line;
  add_slopes(profiles, signal, line, 0, kOnLine - 2, slopes);
  std::size_t inner = kOnLine - 2;
  for (std::size_t i = inner; i + 2 * kWidestShadow >= outer; --i)
    if (slopes[i] < slopes[inner]) inner = i;
  // What is still getting steeper is no flank of so narrow a shadow.
  if (slopes[inner - 1] <= slopes[inner]) return line;
  if (-slopes[inner] < kPartOfFlank * slopes[outer]) return line;
  add_slopes(profiles, signal, line, kOnLine + 3, slopes.size(), slopes);
  const bool fades = flank_width(slopes, outer) > kNarrower * flank_width(slopes, inner);
  const bool narrow = outer - inner <= 2 * kWidestFading;
  const double steep = -slopes[inner] / slopes[outer];
  if (steep < (narrow && fades ? kPartOfFlank : kSteeper)) return line;
  const double shift = (static_cast<double>(inner) - static_cast<double>(kOnLine)) / 2;
  return {line.begin + shift, line.end + shift, line.evidence};
}

}  // namespace vantrel::anywhere
