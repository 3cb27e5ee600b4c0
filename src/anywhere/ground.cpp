#include "anywhere/ground.h"

#include <algorithm>
#include <cstdlib>

namespace vantrel::anywhere {
namespace {

/** A colour within so many levels of a dominant one belongs to it: more than noise and grain, less than most cards. */
constexpr int kTolerance = 10 * kLevel;
/** So many places of the frame are looked at, and each kTryEvery-th is tried as the middle of a dominant colour. */
constexpr int kMostPlaces = 512;
constexpr int kTryEvery = 8;
/** A further colour is the ground's if the frame shows this share of it: a card cut by the frame rarely takes more. */
constexpr double kLeastShare = 0.22;
/** What lies on the ground is a second ground if the scan shows this share of it. */
constexpr double kLeastSheet = 0.1;

/** The colours of the frame at even steps, without those that a dominant colour has taken. */
struct Places {
  int count = 0;
  std::array<Colour, kMostPlaces> colours;
};

Places places_of_frame(const Copy& copy) {
  Places places;
  const int length = frame_length(copy);
  places.count = std::min(length, kMostPlaces);
  for (int i = 0; i < places.count; ++i)
    places.colours[static_cast<std::size_t>(i)] = colour_at(copy, frame_index(copy, length * i / places.count));
  return places;
}

/** The same all over a copy, on a grid that is 16 places wide, and 32 high. */
Places places_all_over(const Copy& copy) {
  constexpr int kAcross = 16;
  constexpr int kDown = kMostPlaces / kAcross;
  Places places;
  for (int i = 0; i < kMostPlaces; ++i) {
    const int row = (i / kAcross * 2 + 1) * copy.rows / (2 * kDown);
    const int col = (i % kAcross * 2 + 1) * copy.cols / (2 * kAcross);
    places.colours[static_cast<std::size_t>(i)] = colour_at(copy, copy.index(row, col));
  }
  places.count = kMostPlaces;
  return places;
}

int count_followers(const Places& places, const Colour& middle) {
  const auto follows = [&](const Colour& colour) { return difference(colour, middle) <= kTolerance; };
  return static_cast<int>(std::count_if(places.colours.begin(), places.colours.begin() + places.count, follows));
}

/** The place with the most followers, and how many these are; 0 without any place. */
int most_followed(const Places& places, Colour& middle) {
  int most = 0;
  for (int i = 0; i < places.count; i += kTryEvery) {
    const Colour& colour = places.colours[static_cast<std::size_t>(i)];
    const int followers = count_followers(places, colour);
    if (followers <= most) continue;
    most = followers;
    middle = colour;
  }
  return most;
}

/** The mean of the colours that follow a place. */
Colour mean_of_followers(const Places& places, const Colour& middle) {
  int count = 0;
  Colour sum{};
  for (int i = 0; i < places.count; ++i) {
    const Colour& colour = places.colours[static_cast<std::size_t>(i)];
    if (difference(colour, middle) > kTolerance) continue;
    ++count;
    for (std::size_t plane = 0; plane < kPlanes; ++plane) sum[plane] += colour[plane];
  }
  for (int& value : sum) value /= count;
  return sum;
}

void take_followers(Places& places, const Colour& middle) {
  const auto follows = [&](const Colour& colour) { return difference(colour, middle) <= kTolerance; };
  const auto end = std::remove_if(places.colours.begin(), places.colours.begin() + places.count, follows);
  places.count = static_cast<int>(end - places.colours.begin());
}

/** The places' dominant colours; all after the first need a share of at least `least` places. */
Ground dominant_colours(Places& places, double least) {
  Ground ground;
  while (ground.count < kMostGroundColours) {
    Colour middle{};
    const int followers = most_followed(places, middle);
    if (followers == 0 || (ground.count > 0 && followers < least)) break;
    ground.colours[ground.count++] = mean_of_followers(places, middle);
    take_followers(places, middle);
  }
  return ground;
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
  Places places = places_of_frame(copy);
  return dominant_colours(places, kLeastShare * places.count);
}

Ground find_sheets(const Copy& copy, const Ground& ground) {
  Places places = places_all_over(copy);
  take_followers(places, ground.colours[0]);
  return dominant_colours(places, kLeastSheet * kMostPlaces);
}

bool belongs_to(const Ground& ground, const Colour& colour) {
  return std::any_of(ground.colours.begin(), ground.colours.begin() + static_cast<std::ptrdiff_t>(ground.count),
                     [&](const Colour& own) { return difference(own, colour) <= kTolerance; });
}

}  // namespace vantrel::anywhere
