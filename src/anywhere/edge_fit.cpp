#include "anywhere/edge_fit.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

/** Deviations of the point spread, in pixels, that of the sampling included. */
constexpr std::array<double, kBlurs> kBlur = {0.55, 0.7, 0.9, 1.15, 1.45, 1.9};

/** The mean profile has a level at every pixel from so far inside to so far outside. */
constexpr int kInside = 4;
constexpr std::size_t kCount = kInside + kFitOutside + 1;

/** What lies farther than this is print or ground rather than the edge, and weighs less. */
constexpr double kFar = 2.5;
constexpr double kFarWeight = 0.3;

/** Places are tried at multiples of a part of a pixel, up to a pixel to either side of the course. */
constexpr int kParts = 8;
constexpr int kReach = kParts;

/** A shadow: it is as dark as can be up to one distance from the edge, and fades up to another, both in parts. */
struct Shadow {
  int dark;
  int end;
};

/** What is tried: lines of several widths, and shadows that fade from near the edge on. */
constexpr std::array<Shadow, 5> kShadows = {{{4, 16}, {7, 28}, {12, 48}, {24, 96}, {12, 20}}};
constexpr int kWidestShadow = 96;

/** What is darker is no shadow. */
constexpr double kDarkest = 0.9;

/** No profile is explained better than to so much of a squared level, and of its squared range a sample. */
constexpr double kLeastMisfit = 0.5;
constexpr double kPartOfRange = 1e-4;

/** A shadow is believed where it leaves less than this part of the misfit, and explains the profile to so many times
 * what no profile is explained better than. */
constexpr double kBetter = 0.35;
constexpr double kExplained = 10.0;

/** A step from 0 to 1 at 0, blurred by a quadratic B-spline, or the integral of it, at `parts` from the step. */
constexpr double blurred(int parts, double blur, bool integral) {
  const double width = 2.0 * blur;  // of each of three boxes, the spline being one box smoothed by two others
  const double x = static_cast<double>(parts) / kParts;
  if (x >= 1.5 * width) return integral ? x : 1.0;
  constexpr std::array<double, 4> kSigns = {1.0, -3.0, 3.0, -1.0};
  double sum = 0.0;
  for (std::size_t i = 0; i < kSigns.size(); ++i) {
    const double t = x / width + 1.5 - static_cast<double>(i);
    if (t > 0.0) sum += kSigns[i] * (integral ? t * t * t * t : t * t * t);
  }
  return integral ? sum * width / 24.0 : sum / 6.0;
}

constexpr int kFirstPart = -kInside * kParts - kReach - kWidestShadow;
constexpr int kLastPart = kFitOutside * kParts + kReach;
using Table = std::array<double, kLastPart - kFirstPart + 1>;

constexpr std::array<Table, kBlurs> tables(bool integral) {
  std::array<Table, kBlurs> tables{};
  for (std::size_t i = 0; i < kBlurs; ++i) {
    for (int part = kFirstPart; part <= kLastPart; ++part)
      tables[i][static_cast<std::size_t>(part - kFirstPart)] = blurred(part, kBlur[i], integral);
  }
  return tables;
}

constexpr std::array<Table, kBlurs> kSteps = tables(false);
constexpr std::array<Table, kBlurs> kRamps = tables(true);

double entry(const Table& table, int part) { return table[static_cast<std::size_t>(part - kFirstPart)]; }

/** Where a level of the mean profile lies, in parts. */
int part_of(std::size_t i) { return (static_cast<int>(i) - kInside) * kParts; }

using Levels = std::array<double, kCount>;

/** The weighted sum of products. */
double product(const Levels& a, const Levels& b) {
  double far = 0.0;
  double near = 0.0;
  for (std::size_t i = 0; i < kCount; ++i) (std::abs(part_of(i)) > kFar * kParts ? far : near) += a[i] * b[i];
  return near + kFarWeight * far;
}

constexpr Levels ones() {
  Levels ones{};
  for (double& level : ones) level = 1.0;
  return ones;
}

/** The mean of the profiles around a course, at every pixel of distance. False where too few places show all of it. */
bool mean_profile(const SideProfiles& profiles, const BorderCourse& course, double cosine,
                  std::array<Levels, kPlanes>& mean) {
  mean = {};
  int places = 0;
  for (std::size_t place = 0; place < static_cast<std::size_t>(profiles.places); ++place) {
    const double edge = profiles.centre + course.at(profiles.along[place]);
    if (!(edge - kInside / cosine >= profiles.first[place])) continue;
    if (!(edge + kFitOutside / cosine < profiles.last[place])) continue;
    for (std::size_t i = 0; i < kCount; ++i) {
      const double at = edge + (static_cast<double>(i) - kInside) / cosine;
      const auto below = static_cast<std::size_t>(at);
      const double part = at - static_cast<double>(below);
      for (std::size_t plane = 0; plane < profiles.plane_count; ++plane) {
        const auto& levels = profiles.levels[place][plane];
        mean[plane][i] += levels[below] * (1.0 - part) + levels[below + 1] * part;
      }
    }
    ++places;
  }
  if (places == 0 || places * 2 < profiles.places) return false;
  for (Levels& levels : mean)
    for (double& level : levels) level /= places;
  return true;
}

/** The mean profile in the form in which it is fitted. */
struct Target {
  std::array<Levels, kPlanes> levels{}; /**< without the innermost level */
  Levels darkened{};                    /**< their sum, each times the level of the ground */
  double ground = 0.0;                  /**< the squared levels of the ground */
  double least = 0.0;                   /**< the misfit that means nothing */
};

Target target_of(const std::array<Levels, kPlanes>& mean) {
  Target target;
  target.least = kLeastMisfit;
  for (std::size_t plane = 0; plane < kPlanes; ++plane) {
    const Levels& from = mean[plane];
    const double ground = (from[kCount - 1] + from[kCount - 2]) / 2.0;
    const auto [low, high] = std::minmax_element(from.begin(), from.end());
    target.least += kPartOfRange * kCount * (*high - *low) * (*high - *low);
    target.ground += ground * ground;
    for (std::size_t i = 0; i < kCount; ++i) {
      target.levels[plane][i] = from[i] - from[0];
      target.darkened[i] += ground * target.levels[plane][i];
    }
  }
  return target;
}

/** All that a level on either side of an edge at some place leaves unexplained. */
class EdgeAt {
 public:
  EdgeAt(const Target& target, std::size_t blur, int at) : target_(target), blur_(blur), at_(at) {
    constexpr Levels kOnes = ones();
    for (std::size_t i = 0; i < kCount; ++i) step_[i] = entry(kSteps[blur], part_of(i) - at);
    weight_ = product(kOnes, kOnes);
    steps_ = product(step_, kOnes);
    squares_ = product(step_, step_);
    for (const Levels& levels : target.levels) misfit_ += left_over(levels, levels);
  }
  double misfit() const { return std::max(misfit_, 0.0); }
  /** The same with a shadow outside the edge; false where it is none, but light, or black. */
  bool with_shadow(const Shadow& shape, double& misfit) const {
    const Table& ramp = kRamps[blur_];
    Levels shadow;
    for (std::size_t i = 0; i < kCount; ++i) {
      const int part = part_of(i) - at_;
      const double faded = entry(ramp, part - shape.dark) - entry(ramp, part - shape.end);
      shadow[i] = step_[i] - faded * kParts / (shape.end - shape.dark);
    }
    const double square = left_over(shadow, shadow) * target_.ground;
    const double fit = -left_over(shadow, target_.darkened);
    if (!(square > 0.0) || !(fit > 0.0) || fit > kDarkest * square) return false;
    misfit = std::max(misfit_ - fit * fit / square, 0.0);
    return true;
  }

 private:
  /** The product of what the levels on either side leave of two profiles. */
  double left_over(const Levels& a, const Levels& b) const {
    constexpr Levels kOnes = ones();
    const double a1 = product(a, kOnes), as = product(a, step_);
    const double b1 = product(b, kOnes), bs = product(b, step_);
    const double determinant = weight_ * squares_ - steps_ * steps_;
    return product(a, b) - (squares_ * a1 * b1 - steps_ * (a1 * bs + as * b1) + weight_ * as * bs) / determinant;
  }

  const Target& target_;
  std::size_t blur_;
  int at_;
  Levels step_{};
  double weight_ = 0.0, steps_ = 0.0, squares_ = 0.0, misfit_ = 0.0;
};

/** The misfit at every place; that of no shadow first, then of each width. Negative where it cannot be. */
constexpr std::size_t kPlaces = 2 * kReach + 1;
using Misfits = std::array<std::array<double, kPlaces>, kShadows.size() + 1>;

Misfits misfits_of(const Target& target, std::size_t blur) {
  Misfits misfits;
  for (std::size_t i = 0; i < kPlaces; ++i) {
    const EdgeAt edge(target, blur, static_cast<int>(i) - kReach);
    misfits[0][i] = edge.misfit();
    for (std::size_t shadow = 0; shadow < kShadows.size(); ++shadow)
      if (!edge.with_shadow(kShadows[shadow], misfits[shadow + 1][i])) misfits[shadow + 1][i] = -1.0;
  }
  return misfits;
}

/** The place of the least misfit, if it lies between others; to a fraction of the steps that were tried. */
bool least_within(const std::array<double, kPlaces>& misfits, double& place, double& least) {
  std::size_t best = kPlaces;
  for (std::size_t i = 0; i < kPlaces; ++i)
    if (misfits[i] >= 0.0 && (best == kPlaces || misfits[i] < misfits[best])) best = i;
  if (best == kPlaces || best == 0 || best + 1 == kPlaces) return false;
  const double before = misfits[best - 1], here = misfits[best], after = misfits[best + 1];
  if (before < 0.0 || after < 0.0) return false;
  // Above 0, as the first of the least is less than what comes before it.
  const double bend = before - 2.0 * here + after;
  place = static_cast<double>(best) + (before - after) / (2.0 * bend);
  least = here;
  return true;
}

EdgeFit fit_with(const Target& target, std::size_t blur) {
  const Misfits misfits = misfits_of(target, blur);
  EdgeFit fit;
  fit.misfit = *std::min_element(misfits[0].begin(), misfits[0].end()) + target.least;
  for (std::size_t shadow = 1; shadow < misfits.size(); ++shadow) {
    double place = 0.0;
    double least = 0.0;
    if (!least_within(misfits[shadow], place, least)) continue;
    if (least > kExplained * target.least) continue;
    const double misfit = (least + target.least) / kBetter;
    if (misfit < fit.misfit) fit = {(place - kReach) / kParts, misfit};
  }
  return fit;
}

}  // namespace

EdgeFits fit_edge(const SideProfiles& profiles, const BorderCourse& course, double cosine) {
  EdgeFits fits{};
  std::array<Levels, kPlanes> mean;
  if (!mean_profile(profiles, course, cosine, mean)) return fits;
  const Target target = target_of(mean);
  for (std::size_t blur = 0; blur < kBlurs; ++blur) fits[blur] = fit_with(target, blur);
  return fits;
}

std::size_t best_blur(std::span<const EdgeFits* const> sides) {
  std::size_t best = kBlurs;
  double least = 0.0;
  for (std::size_t blur = 0; blur < kBlurs; ++blur) {
    double product = 1.0;
    bool any = false;
    for (const EdgeFits* fits : sides) {
      if (!((*fits)[blur].misfit > 0.0)) continue;
      product *= (*fits)[blur].misfit;
      any = true;
    }
    if (any && (best == kBlurs || product < least)) {
      least = product;
      best = blur;
    }
  }
  return best;
}

}  // namespace vantrel::anywhere
