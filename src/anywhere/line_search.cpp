#include "anywhere/line_search.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

/** A slope so small is never a border, however clean the scan: half a level of the rounding of its pixels. */
constexpr float kLeastNoise = 0.25F;

/** The chance that a slope of pure noise is below a quarter of its slopes lies at this part of its deviation. */
constexpr float kQuarterOfNormal = 0.3186F;

/** The deviation of a difference of two. */
constexpr float kRootOfTwo = 1.4142136F;

constexpr float kNoiseResolution = 64.0F;

/** The squared slope, in deviations of the noise, up to which there is no evidence, and what gives half of all. */
constexpr float kNoEvidence = 3.0F;
constexpr float kHalfEvidence = 12.0F;

/** Counts slopes by their size, to find the one that a quarter of them does not reach. */
class SlopeCounts {
 public:
  void add(float slope) {
    const auto size = static_cast<std::size_t>(std::abs(slope) * kNoiseResolution);
    ++counts_[std::min(size, counts_.size() - 1)];
    ++count_;
  }
  float quartile() const {
    int below = 0;
    std::size_t i = 0;
    while (i + 1 < counts_.size() && (below += counts_[i]) * 4 < count_) ++i;
    return (static_cast<float>(i) + 0.5F) / kNoiseResolution;
  }

 private:
  std::array<int, 2048> counts_{};
  int count_ = 0;
};

/** The squared slopes of a profile, each in deviations of its plane's noise, summed over the planes. */
void squared_slopes(const SideProfiles& profiles, std::size_t place, const Noise& noise,
                    std::array<float, kMostSamples>& squares) {
  squares.fill(0.0F);
  for (std::size_t plane = 0; plane < profiles.plane_count; ++plane) {
    const auto& levels = profiles.levels[place][plane];
    for (int i = profiles.first[place] + 1; i < profiles.last[place]; ++i) {
      const auto at = static_cast<std::size_t>(i);
      const float slope = slope_at(levels, at) / noise[plane];
      squares[at] += slope * slope;
    }
  }
}

int evidence_of(float square) {
  const float excess = square - kNoEvidence;
  return excess <= 0.0F ? 0 : static_cast<int>(kFullEvidence * excess / (excess + kHalfEvidence));
}

/** The sum along a line that runs from one sample to another, both in 65536ths. */
int sum_along(const Evidence& evidence, std::int32_t begin, std::int32_t end) {
  const std::int32_t step = (end - begin) / (evidence.places - 1);
  std::int32_t at = begin + 32768;
  int sum = 0;
  for (int place = 0; place < evidence.places; ++place, at += step)
    sum += evidence.values[static_cast<std::size_t>(place)][static_cast<std::size_t>(at >> 16)];
  return sum;
}

/** The same, between the samples. */
double sum_between(const Evidence& evidence, double begin, double end) {
  const double step = (end - begin) / (evidence.places - 1);
  double sum = 0.0;
  for (int place = 0; place < evidence.places; ++place) {
    const double at = begin + step * place;
    const auto i = static_cast<std::size_t>(at);
    const double part = at - static_cast<double>(i);
    const auto& values = evidence.values[static_cast<std::size_t>(place)];
    sum += values[i] * (1.0 - part) + values[i + 1] * part;
  }
  return sum;
}

SampleLine search_finely(const Evidence& evidence, const SampleLine& coarse) {
  constexpr int kSteps = 4;
  SampleLine best = coarse;
  double most = -1.0;
  for (int i = -kSteps; i <= kSteps; ++i) {
    for (int j = -kSteps; j <= kSteps; ++j) {
      const double begin = coarse.begin + static_cast<double>(i) / kSteps;
      const double end = coarse.end + static_cast<double>(j) / kSteps;
      const double sum = sum_between(evidence, begin, end);
      if (sum > most) {
        most = sum;
        best = {begin, end, 0.0};
      }
    }
  }
  best.evidence = most / (kFullEvidence * evidence.places);
  return best;
}

}  // namespace

double evidence_along(const Evidence& evidence, const SampleLine& line) {
  if (std::min(line.begin, line.end) < 0.0 || std::max(line.begin, line.end) > evidence.samples - 2.0) return 0.0;
  return sum_between(evidence, line.begin, line.end) / (kFullEvidence * evidence.places);
}

Noise noise_of(const SideProfiles& profiles) {
  Noise noise{};
  for (std::size_t plane = 0; plane < profiles.plane_count; ++plane) {
    SlopeCounts counts;
    for (std::size_t place = 1; place < static_cast<std::size_t>(profiles.places); ++place) {
      const auto& before = profiles.levels[place - 1][plane];
      const auto& here = profiles.levels[place][plane];
      const int first = std::max(profiles.first[place - 1], profiles.first[place]) + 1;
      const int last = std::min(profiles.last[place - 1], profiles.last[place]) - 1;
      for (int i = first; i <= last; ++i) {
        const auto at = static_cast<std::size_t>(i);
        counts.add(slope_at(here, at) - slope_at(before, at));
      }
    }
    noise[plane] = std::max(kLeastNoise, counts.quartile() / (kQuarterOfNormal * kRootOfTwo));
  }
  // The colours of compressed scans are smooth, and their borders soft, while those of lightness are crisp.
  for (float& plane : noise) plane = std::max(plane, noise[kLight]);
  return noise;
}

void gather_evidence(const SideProfiles& profiles, const Noise& noise, Evidence& evidence) {
  evidence.places = profiles.places;
  evidence.samples = profiles.samples;
  std::array<float, kMostSamples> squares;
  for (std::size_t place = 0; place < static_cast<std::size_t>(profiles.places); ++place) {
    auto& values = evidence.values[place];
    values.fill(0);
    squared_slopes(profiles, place, noise, squares);
    for (int i = profiles.first[place] + 1; i < profiles.last[place]; ++i) {
      const auto at = static_cast<std::size_t>(i);
      if (squares[at] < squares[at - 1] || squares[at] < squares[at + 1]) continue;
      const int full = evidence_of(squares[at]);
      // The steepest place may be half a sample off, and a line that is not quite straight is still one.
      const auto half = static_cast<std::int16_t>(full * 5 / 8);
      values[at] = std::max(values[at], static_cast<std::int16_t>(full));
      values[at - 1] = std::max(values[at - 1], half);
      values[at + 1] = std::max(values[at + 1], half);
    }
  }
}

SampleLine search_line(const Evidence& evidence, int centre, int reach) {
  // One sample is kept to either side for the finer search.
  reach = std::clamp(reach, 0, std::min(centre, evidence.samples - 1 - centre) - 2);
  SampleLine best{static_cast<double>(centre), static_cast<double>(centre), 0.0};
  int most = 0;
  for (int begin = centre - reach; begin <= centre + reach; ++begin) {
    for (int end = centre - reach; end <= centre + reach; ++end) {
      const int sum = sum_along(evidence, begin * 65536, end * 65536);
      if (sum > most) {
        most = sum;
        best = {static_cast<double>(begin), static_cast<double>(end), 0.0};
      }
    }
  }
  if (most == 0) return best;
  return search_finely(evidence, best);
}

}  // namespace vantrel::anywhere
