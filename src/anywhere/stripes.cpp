#include "anywhere/stripes.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "anywhere/copy.h"

namespace vantrel::anywhere {
namespace {

/** Of each line the medians of three parts are taken, of so many places each. */
constexpr int kParts = 3;
constexpr int kSamples = 31;
/** What a line is compared with: so many lines before and behind it. */
constexpr int kReach = 12;
/** Stripes at least this strong on half of the lines are taken out, in kLevel-ths, and none stronger than the other. */
constexpr int kLeastStripes = kLevel / 5;
constexpr int kMostStripe = 6 * kLevel;

using Parts = std::array<int, kParts>;

/** Values of a part; the last is there for whole vectors, and the same as the one before it. */
using Values = std::array<std::int16_t, kSamples + 1>;

/**
 * The middle one of the values in order: the least that more than half of them do not exceed. It is closed in on by
 * counting, which takes no turns that depend on the values. The last counts twice, on the side where it is.
 */
std::int16_t median(const Values& values) {
  std::int16_t least = values[0], most = values[0];
  for (const std::int16_t value : values) least = std::min(least, value);
  for (const std::int16_t value : values) most = std::max(most, value);
  const std::int16_t doubled = values[kSamples];
  while (least < most) {
    const auto middle = static_cast<std::int16_t>(least + (most - least) / 2);
    std::int16_t within = 0;
    for (const std::int16_t value : values) within = static_cast<std::int16_t>(within + (value <= middle ? 1 : 0));
    if (within - (doubled <= middle ? 1 : 0) > kSamples / 2) {
      most = middle;
    } else {
      least = static_cast<std::int16_t>(middle + 1);
    }
  }
  return least;
}

/** The median of the places of each part of a line. */
Parts medians(const Lattice& plane, int line) {
  Parts result{};
  for (int part = 0; part < kParts; ++part) {
    Values values{};
    for (int i = 0; i < kSamples; ++i) {
      const int place = (part * kSamples + i) * (plane.places - 1) / (kParts * kSamples - 1);
      values[static_cast<std::size_t>(i)] = plane.at(line, place);
    }
    values[kSamples] = values[kSamples - 1];
    result[static_cast<std::size_t>(part)] = median(values);
  }
  return result;
}

/** What all parts agree on: the least of them where they have one sign, else nothing. */
int agreed(const Parts& differences) {
  const auto [least, most] = std::minmax_element(differences.begin(), differences.end());
  if (*least > 0) return *least;
  return *most < 0 ? *most : 0;
}

/** The medians of the lines around one, as a ring that moves on. */
class Around {
 public:
  explicit Around(const Lattice& plane) : plane_(plane) {
    for (int line = 0; line <= std::min(kReach, plane.lines - 1); ++line) add(line, 1);
  }
  /** How the parts of a line differ from the mean of those around it; called for each line in order. */
  Parts differences(int line) {
    Parts result{};
    const Parts& here = ring_[static_cast<std::size_t>(line % kRing)];
    for (std::size_t part = 0; part < kParts; ++part) result[part] = here[part] - sums_[part] / count_;
    if (line >= kReach) add(line - kReach, -1);
    if (line + kReach + 1 < plane_.lines) add(line + kReach + 1, 1);
    return result;
  }

 private:
  static constexpr int kRing = 2 * kReach + 2;

  void add(int line, int sign) {
    Parts& kept = ring_[static_cast<std::size_t>(line % kRing)];
    if (sign > 0) kept = medians(plane_, line);
    for (std::size_t part = 0; part < kParts; ++part) sums_[part] += sign * kept[part];
    count_ += sign;
  }

  const Lattice& plane_;
  std::array<Parts, kRing> ring_{};
  Parts sums_{};
  int count_ = 0;
};

/** Whether half of the lines differ by something. */
bool has_stripes(std::span<const std::int16_t> offsets) {
  const auto strong = std::count_if(offsets.begin(), offsets.end(), [](int v) { return std::abs(v) >= kLeastStripes; });
  return 2 * static_cast<std::size_t>(strong) >= offsets.size();
}

}  // namespace

void remove_stripes(const Lattice& plane, std::span<std::int16_t> offsets) {
  // Of fewer lines each would be compared with itself more than with others.
  if (plane.lines <= 2 * kReach) return;
  Around around(plane);
  for (int line = 0; line < plane.lines; ++line) {
    offsets[static_cast<std::size_t>(line)] =
        static_cast<std::int16_t>(std::clamp(agreed(around.differences(line)), -kMostStripe, kMostStripe));
  }
  if (!has_stripes(offsets)) return;
  for (int line = 0; line < plane.lines; ++line) {
    const int offset = offsets[static_cast<std::size_t>(line)];
    for (int place = 0; place < plane.places; ++place) {
      std::int16_t& value = plane.at(line, place);
      value = static_cast<std::int16_t>(value - offset);
    }
  }
}

}  // namespace vantrel::anywhere
