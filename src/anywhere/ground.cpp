#include "anywhere/ground.h"

#include <algorithm>
#include <cstdlib>

namespace vantrel::anywhere {
namespace {

/** A colour within so many levels of a dominant one belongs to it: more than noise and grain, less than most cards. */
constexpr int kTolerance = 10 * kLevel;
/** So many places of the frame are tried as the middle of a dominant colour. */
constexpr int kTries = 128;
/** A further colour is the ground's if the frame shows this share of it: a card cut by the frame rarely takes more. */
constexpr double kLeastShare = 0.22;

/** What a colour has on the frame: how many pixels that no colour has taken yet, and their sums. */
struct Followers {
  int count = 0;
  std::array<std::int64_t, kPlanes> sums{};

  Colour mean() const {
    Colour colour{};
    for (std::size_t plane = 0; plane < kPlanes; ++plane) colour[plane] = static_cast<int>(sums[plane] / count);
    return colour;
  }
};

Followers followers_of(const Copy& copy, const Ground& taken, const Colour& middle) {
  Followers followers;
  const int length = frame_length(copy);
  for (int i = 0; i < length; ++i) {
    const Colour colour = colour_at(copy, frame_index(copy, i));
    if (difference(colour, middle) > kTolerance || belongs_to(taken, colour)) continue;
    ++followers.count;
    for (std::size_t plane = 0; plane < kPlanes; ++plane) followers.sums[plane] += colour[plane];
  }
  return followers;
}

Followers most_followed(const Copy& copy, const Ground& taken) {
  Followers best;
  const int length = frame_length(copy);
  const int step = std::max(1, length / kTries);
  for (int i = 0; i < length; i += step) {
    const Colour middle = colour_at(copy, frame_index(copy, i));
    if (belongs_to(taken, middle)) continue;
    const Followers followers = followers_of(copy, taken, middle);
    if (followers.count > best.count) best = followers;
  }
  return best;
}

}  // namespace

int frame_length(const Copy& copy) { return 2 * (copy.rows + copy.cols) - 4; }

std::size_t frame_index(const Copy& copy, int i) {
  const int right = copy.cols - 1;
  const int bottom = copy.rows - 1;
  if (i < right) return copy.index(0, i);
  i -= right;
  if (i < bottom) return copy.index(i, right);
  i -= bottom;
  if (i < right) return copy.index(bottom, right - i);
  return copy.index(bottom - (i - right), 0);
}

Colour colour_at(const Copy& copy, std::size_t index) {
  Colour colour{};
  for (std::size_t plane = 0; plane < copy.plane_count; ++plane) colour[plane] = copy.planes[plane][index];
  return colour;
}

int difference(const Colour& a, const Colour& b) {
  int most = 0;
  for (std::size_t plane = 0; plane < kPlanes; ++plane) most = std::max(most, std::abs(a[plane] - b[plane]));
  return most;
}

Ground find_ground(const Copy& copy) {
  Ground ground;
  while (ground.count < kMostGroundColours) {
    const Followers followers = most_followed(copy, ground);
    if (followers.count == 0) break;
    if (ground.count > 0 && followers.count < kLeastShare * frame_length(copy)) break;
    ground.colours[ground.count++] = followers.mean();
  }
  return ground;
}

bool belongs_to(const Ground& ground, const Colour& colour) {
  return std::any_of(ground.colours.begin(), ground.colours.begin() + static_cast<std::ptrdiff_t>(ground.count),
                     [&](const Colour& own) { return difference(own, colour) <= kTolerance; });
}

}  // namespace vantrel::anywhere
