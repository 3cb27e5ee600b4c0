#include "anywhere/border_choice.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

/** An outer line is preferred from this part of the evidence on, and this much of the most there can be. */
constexpr double kPartOfBest = 0.7;
constexpr double kLeastOuter = 0.3;

/** Lines nearer than this are one, in samples. */
constexpr int kApart = 2;

/** A dark line is at most so wide, in samples. */
constexpr int kWidest = 10;

/** A flank ends where the slope is below this part of its steepest, and the dark line's floor where it is below that.
 */
constexpr double kFlankEnd = 0.2;
constexpr double kFloor = 0.05;

/** The hue of a shadow is that of the ground but for this part of the difference, and so many levels: beside the card
 * the scan's blur mixes in the card's own. */
constexpr double kOtherHue = 0.25;
constexpr double kOtherHueLevels = 4.0;

/** The inner flank is this part as steep as the outer one at least, and gives this part of its evidence. */
constexpr double kPartOfFlank = 0.35;
constexpr double kPartOfEvidence = 0.5;

/** Flanks nearer than this are one, in samples. */
constexpr double kLeastWidth = 0.75;

/** A rim has an outer flank that is steeper by so much; or is too dark for shadows on all sides. */
constexpr double kSteeper = 0.9;
constexpr double kDarkRim = 0.6;

/** What is lighter than this beside all sides of a card are its shadows. */
constexpr double kLightestRim = 0.92;

/** All around a rim is as wide, but for so many samples and this part. */
constexpr double kUneven = 0.5;
constexpr double kUnevenPart = 0.2;

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

using Levels = std::array<double, kPlanes>;

double product(const Levels& a, const Levels& b) {
  double sum = 0.0;
  for (std::size_t plane = 0; plane < kPlanes; ++plane) sum += a[plane] * b[plane];
  return sum;
}

/** The mean levels at whole samples from a line, seen at half of the places at least. */
class Beside {
 public:
  Beside(const SideProfiles& profiles, const SampleLine& line);
  int first() const { return first_; }
  int last() const { return last_; }
  const Levels& operator[](int sample) const { return levels_[index(sample)]; }
  /** How much lighter the next sample outward is. */
  double rise(int sample) const { return (*this)[sample + 1][kLight] - (*this)[sample][kLight]; }
  /** How far the next sample inward departs from the ground's darkening: by its hue, or by being lighter. */
  double departure(int sample, const Levels& ground) const;

 private:
  static constexpr int kInside = kWidest + 6;
  static constexpr int kOutside = 6;
  static constexpr std::size_t index(int sample) {
    const int at = sample + kInside;
    return static_cast<std::size_t>(at);
  }

  int first_ = 0;
  int last_ = -1;
  std::array<Levels, kInside + kOutside + 1> levels_{};
};

Beside::Beside(const SideProfiles& profiles, const SampleLine& line) {
  std::array<int, kInside + kOutside + 1> counts{};
  for (int place = 0; place < profiles.places; ++place) {
    const auto at = static_cast<std::size_t>(place);
    const double sample = sample_at(line, place, profiles.places);
    const int below = static_cast<int>(std::floor(sample));
    const double part = sample - below;
    const int end = std::min(kOutside, profiles.last[at] - 1 - below);
    for (int i = std::max(-kInside, profiles.first[at] - below); i <= end; ++i) {
      const int sample_below = below + i;
      const auto k = static_cast<std::size_t>(sample_below);
      for (std::size_t plane = 0; plane < profiles.plane_count; ++plane) {
        const auto& levels = profiles.levels[at][plane];
        levels_[index(i)][plane] += levels[k] * (1.0 - part) + levels[k + 1] * part;
      }
      ++counts[index(i)];
    }
  }
  for (int i = kOutside; i >= -kInside; --i) {
    const int count = counts[index(i)];
    if (count == 0 || count * 2 < profiles.places) continue;
    for (double& level : levels_[index(i)]) level /= count;
    last_ = std::max(last_, i);
    first_ = i;
  }
}

double Beside::departure(int sample, const Levels& ground) const {
  Levels change;
  for (std::size_t plane = 0; plane < kPlanes; ++plane)
    change[plane] = (*this)[sample][plane] - (*this)[sample + 1][plane];
  const double along = product(change, ground) / product(ground, ground);
  const double lighter = std::max(0.0, change[kLight]);
  for (std::size_t plane = 0; plane < kPlanes; ++plane) change[plane] -= along * ground[plane];
  return std::sqrt(product(change, change) + lighter * lighter);
}

/** What a shadow leaves of the light of the ground, as a part; more than 1 where a level is no shadow of it. */
double shade_of(const Levels& dark, const Levels& ground) {
  const double part = product(dark, ground) / product(ground, ground);
  Levels other, difference;
  for (std::size_t plane = 0; plane < kPlanes; ++plane) {
    other[plane] = dark[plane] - part * ground[plane];
    difference[plane] = dark[plane] - ground[plane];
  }
  const double most = kOtherHue * std::sqrt(product(difference, difference)) + kOtherHueLevels;
  return std::sqrt(product(other, other)) <= most ? part : 2.0;
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

DarkLine dark_line(const SideProfiles& profiles, const Evidence& evidence, const SampleLine& outer) {
  const DarkLine none{outer};
  const Beside beside(profiles, outer);
  if (beside.first() > -4 || beside.last() < 1) return none;
  int flank = -2;
  for (int i = -1; i < std::min(beside.last(), 2); ++i)
    if (beside.rise(i) > beside.rise(flank)) flank = i;
  const double steepest = beside.rise(flank);
  if (!(steepest > 0.0)) return none;
  int ground = flank + 1;
  while (ground < beside.last() && beside.rise(ground) > kFlankEnd * steepest) ++ground;
  int floor = flank;
  while (floor > beside.first() && beside.rise(floor - 1) > kFloor * steepest) --floor;
  const double shade = shade_of(beside[floor], beside[ground]);
  if (flank - floor > kWidest || !(shade <= 1.0)) return none;
  // Inward from there the first place that is steepest is the other flank.
  double before = 0.0;
  for (int i = flank - 1; i > beside.first() && i >= flank - kWidest; --i) {
    const double here = beside.departure(i, beside[ground]);
    const double next = beside.departure(i - 1, beside[ground]);
    if (here >= before && here > next && here > kPartOfFlank * steepest) {
      // Below 0, as the place before is no steeper and the next one less steep.
      const double bend = before - 2.0 * here + next;
      const double between = std::clamp((before - next) / (2.0 * bend), -0.5, 0.5);
      const double shift = i + 0.5 - between;
      if (shift > -kLeastWidth) return none;
      if (best_near(evidence, outer, shift).evidence >= kPartOfEvidence * outer.evidence)
        return {{outer.begin + shift, outer.end + shift, outer.evidence}, -shift, shade, here >= kSteeper * steepest};
    }
    before = here;
  }
  return none;
}

bool is_rim(std::span<const DarkLine> sides) {
  if (sides.size() < 3) return false;
  double narrowest = sides[0].width, widest = narrowest;
  double lightest = sides[0].level;
  bool soft = false;
  for (const DarkLine& side : sides) {
    narrowest = std::min(narrowest, side.width);
    widest = std::max(widest, side.width);
    lightest = std::max(lightest, side.level);
    soft = soft || side.soft;
  }
  if (!(narrowest > 0.0) || widest - narrowest > kUneven + kUnevenPart * narrowest) return false;
  return lightest < (soft ? kDarkRim : kLightestRim);
}

}  // namespace vantrel::anywhere
