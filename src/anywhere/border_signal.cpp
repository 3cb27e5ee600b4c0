#include "anywhere/border_signal.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

using Planes = std::array<double, kPlanes>;

/** A border is looked for so many samples to either side of its line. */
constexpr double kNear = 1.5;

/** A border is as wide as the scan is blurred; its middle is judged from so many samples to either side. */
constexpr double kFlank = 2.25;

/** A flank that the frame of the scan cuts off nearer than this, in samples, would be judged by its other half. */
constexpr double kWhole = 1.5;

/** Of the places of a side, so many have to be on the scan for a share of them to be told. */
constexpr double kLeastJudged = 0.25;

/** Where so many of the slopes along a line go one way, the others do not belong to it. */
constexpr double kOneWay = 0.75;

/** A bow is believed from so many pixels on, up to this part of half the side, where it leaves so much less misfit. */
constexpr double kLeastBow = 0.25;
constexpr double kMostBow = 0.02;
constexpr double kBetter = 0.6;

struct Range {
  int first;
  int last;
};

/** The samples with a slope that lie within `width` of a place, among those on the scan. */
Range samples_near(const SideProfiles& profiles, std::size_t place, double at, double width) {
  const double low = std::max(at - width, profiles.first[place] + 1.0);
  const double high = std::min(at + width, profiles.last[place] - 1.0);
  if (!(low <= high)) return {0, -1};
  return {static_cast<int>(round_up(low)), static_cast<int>(std::floor(high))};
}

/** The slopes of all planes, in deviations of their noise, where they are steepest near the line. */
Planes steepest(const SideProfiles& profiles, const Noise& noise, std::size_t place, double at) {
  Planes best{};
  double most = 0.0;
  const Range range = samples_near(profiles, place, at, 1.0);
  for (int i = range.first; i <= range.last; ++i) {
    Planes slopes{};
    double square = 0.0;
    for (std::size_t plane = 0; plane < profiles.plane_count; ++plane) {
      slopes[plane] = slope_at(profiles.levels[place][plane], static_cast<std::size_t>(i)) / noise[plane];
      square += slopes[plane] * slopes[plane];
    }
    if (square > most) {
      most = square;
      best = slopes;
    }
  }
  return best;
}

/** The direction in which vectors with this matrix of products vary most, by the power method. */
Planes main_direction(const std::array<Planes, kPlanes>& products) {
  std::size_t largest = 0;
  for (std::size_t i = 1; i < kPlanes; ++i)
    if (products[i][i] > products[largest][largest]) largest = i;
  Planes direction{};
  direction[largest] = 1.0;
  constexpr int kRounds = 12;
  for (int round = 0; round < kRounds; ++round) {
    Planes next{};
    double square = 0.0;
    for (std::size_t i = 0; i < kPlanes; ++i) {
      for (std::size_t j = 0; j < kPlanes; ++j) next[i] += products[i][j] * direction[j];
      square += next[i] * next[i];
    }
    if (!(square > 0.0)) return direction;
    const double size = std::sqrt(square);
    for (std::size_t i = 0; i < kPlanes; ++i) direction[i] = next[i] / size;
  }
  return direction;
}

/** The sample of a profile that a course runs through. */
double sample_of(const SideProfiles& profiles, const BorderCourse& course, std::size_t place) {
  return profiles.centre + course.at(profiles.along[place]) / profiles.step;
}

/** Which way the signal goes along the course: 1, -1, or 0 where it goes the one way here and the other there. */
int way_of(const SideProfiles& profiles, const BorderSignal& signal, const BorderCourse& course) {
  double sum = 0.0;
  double size = 0.0;
  for (int place = 0; place < profiles.places; ++place) {
    const auto at = static_cast<std::size_t>(place);
    const Range range = samples_near(profiles, at, sample_of(profiles, course, at), 0.75);
    double most = 0.0;
    for (int i = range.first; i <= range.last; ++i) {
      const double slope = slope_at(signal.values[at], static_cast<std::size_t>(i));
      if (std::abs(slope) > std::abs(most)) most = slope;
    }
    const double part = most / (std::abs(most) + 3.0);
    sum += part;
    size += std::abs(part);
  }
  constexpr double kLeast = kOneWay * 2 - 1;
  return sum > kLeast * size ? 1 : sum < -kLeast * size ? -1 : 0;
}

/** The slope, turned so that a border counts as positive: `way` is 1 or -1, or 0 where it may go either way. */
double turned(double slope, int way) { return way == 0 ? std::abs(slope) : slope * way; }

/** Flat in the middle, so that a border that falls between two samples is not drawn to one of them. */
double flank_weight(double distance) {
  const double size = std::abs(distance);
  return size <= 1.25 ? 1.0 : size >= kFlank ? 0.0 : (kFlank - size) / (kFlank - 1.25);
}

/** The middle of a border near a sample: where the mean of the slopes around it, the near ones weighing more, lies. */
double middle_of(const SideProfiles& profiles, const BorderSignal& signal, std::size_t place, int sample, int way) {
  const auto& values = signal.values[place];
  double at = sample;
  constexpr int kRounds = 4;
  for (int round = 0; round < kRounds; ++round) {
    const int first = std::max(static_cast<int>(round_up(at - kFlank - 0.5)), profiles.first[place]);
    const int last = std::min(static_cast<int>(std::floor(at + kFlank - 0.5)), profiles.last[place] - 1);
    double weights = 0.0;
    double moments = 0.0;
    for (int i = first; i <= last; ++i) {
      const auto k = static_cast<std::size_t>(i);
      const double weight = std::max(0.0, turned(values[k + 1] - values[k], way)) * flank_weight(i + 0.5 - at);
      weights += weight;
      moments += weight * (i + 0.5);
    }
    // There is some weight: first beside the sample, which has a slope, then as a mean has one of its values near it.
    at = moments / weights;
  }
  return at;
}

/** The line in pixels from the side. */
OffsetLine in_pixels(const SideProfiles& profiles, const SampleLine& line) {
  const double first = profiles.along[0];
  const double last = profiles.along[static_cast<std::size_t>(profiles.places - 1)];
  const double begin = (line.begin - profiles.centre) * profiles.step;
  const double end = (line.end - profiles.centre) * profiles.step;
  const double slope = (end - begin) / (last - first);
  return {begin - slope * first, slope};
}

/** The middle of the border that each place shows near the course; returns how many show one. */
std::size_t border_points(const SideProfiles& profiles, const BorderSignal& signal, const BorderCourse& course,
                          std::array<OffsetPoint, kMostPlaces>& points) {
  const int way = way_of(profiles, signal, course);
  std::size_t count = 0;
  for (int place = 0; place < profiles.places; ++place) {
    const auto at = static_cast<std::size_t>(place);
    const Range range = samples_near(profiles, at, sample_of(profiles, course, at), kNear);
    int best = -1;
    double most = 0.0;
    for (int i = range.first; i <= range.last; ++i) {
      const double slope = turned(slope_at(signal.values[at], static_cast<std::size_t>(i)), way);
      if (slope > most) {
        most = slope;
        best = i;
      }
    }
    if (best < 0) continue;
    const double middle = middle_of(profiles, signal, at, best, way);
    if (middle - kWhole < profiles.first[at] || middle + kWhole > profiles.last[at]) continue;
    const double square = most * most;
    points[count++] = {profiles.along[at], (middle - profiles.centre) * profiles.step, square / (square + 9.0)};
  }
  return count;
}

/** The sum of the points' squared distances from a course, each no more than the square of `width`. */
double misfit(std::span<const OffsetPoint> points, const BorderCourse& course, double width) {
  double sum = 0.0;
  for (const OffsetPoint& point : points) {
    const double off = point.offset - course.at(point.along);
    sum += point.weight * std::min(off * off, width * width);
  }
  return sum;
}

/** Bends a course to the points: by turns the bow to what the line leaves, and the line to what the bow leaves. */
BorderCourse bend(std::span<const OffsetPoint> points, BorderCourse course, double width) {
  std::array<OffsetPoint, kMostPlaces> straight;
  constexpr int kRounds = 5;
  for (int round = 0; round < kRounds; ++round) {
    double products = 0.0;
    double squares = 0.0;
    for (const OffsetPoint& point : points) {
      const double off = point.offset - course.at(point.along);
      if (std::abs(off) > width) continue;
      const double t = (point.along - course.middle) / course.half;
      const double shape = t * t - 1.0 / 3.0;
      products += point.weight * off * shape;
      squares += point.weight * shape * shape;
    }
    if (!(squares > 0.0)) return course;
    course.bow += products / squares;
    if (std::abs(course.bow) < kLeastBow / 2) return course;
    for (std::size_t i = 0; i < points.size(); ++i)
      straight[i] = {points[i].along, points[i].offset - course.off_line(points[i].along), points[i].weight};
    course.line = robust_line({straight.data(), points.size()}, course.line, width);
  }
  return course;
}

/** The slopes around a line at some place: at whole samples from the line, which runs between samples. */
constexpr int kAround = 3;
constexpr int kLeastAround = 4;
using Slopes = std::array<double, 2 * kAround + 1>;

bool slopes_around(const SideProfiles& profiles, const BorderSignal& signal, std::size_t place, double at,
                   Slopes& slopes) {
  const int below = static_cast<int>(std::floor(at));
  const double part = at - below;
  slopes.fill(0.0);
  int seen = 0;
  for (int i = -kAround; i <= kAround; ++i) {
    if (below + i <= profiles.first[place] || below + i + 1 >= profiles.last[place]) {
      if (i >= -1 && i <= 1) return false;
      continue;
    }
    const auto& values = signal.values[place];
    const int sample_below = below + i;
    const int of_slopes = i + kAround;
    const auto sample = static_cast<std::size_t>(sample_below);
    slopes[static_cast<std::size_t>(of_slopes)] =
        slope_at(values, sample) * (1.0 - part) + slope_at(values, sample + 1) * part;
    ++seen;
  }
  // Beside the frame of the scan the outer ones may be missing.
  return seen >= kLeastAround;
}

/** Whether the steepest of the slopes that go the line's way, sums over some places, is that on the line, and no noise.
 */
bool shows_border(const Slopes& slopes, int way, double least) {
  std::size_t steepest = 0;
  for (std::size_t i = 1; i < slopes.size(); ++i)
    if (turned(slopes[i], way) > turned(slopes[steepest], way)) steepest = i;
  const int off = static_cast<int>(steepest) - kAround;
  return off >= -1 && off <= 1 && turned(slopes[steepest], way) > least;
}

}  // namespace

void mix_planes(const SideProfiles& profiles, const Noise& noise, const SampleLine& line, BorderSignal& signal) {
  std::array<Planes, kPlanes> products{};
  for (int place = 0; place < profiles.places; ++place) {
    const Planes slopes =
        steepest(profiles, noise, static_cast<std::size_t>(place), sample_at(line, place, profiles.places));
    double square = 9.0;
    for (const double slope : slopes) square += slope * slope;
    for (std::size_t i = 0; i < kPlanes; ++i)
      for (std::size_t j = 0; j < kPlanes; ++j) products[i][j] += slopes[i] * slopes[j] / square;
  }
  Planes direction = main_direction(products);
  if (direction[kLight] < 0.0)
    for (double& part : direction) part = -part;
  signal.lightness = direction[kLight] * direction[kLight];
  std::array<float, kPlanes> factors{};
  for (std::size_t plane = 0; plane < profiles.plane_count; ++plane)
    factors[plane] = static_cast<float>(direction[plane] / noise[plane]);
  for (std::size_t place = 0; place < static_cast<std::size_t>(profiles.places); ++place) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(profiles.samples); ++i) {
      float sum = 0.0F;
      for (std::size_t plane = 0; plane < profiles.plane_count; ++plane)
        sum += factors[plane] * profiles.levels[place][plane][i];
      signal.values[place][i] = sum;
    }
  }
}

BorderCourse locate_border(const SideProfiles& profiles, const BorderSignal& signal, const SampleLine& line) {
  std::array<OffsetPoint, kMostPlaces> points;
  BorderCourse straight;
  straight.line = in_pixels(profiles, line);
  const double first = profiles.along[0];
  const double last = profiles.along[static_cast<std::size_t>(profiles.places - 1)];
  straight.middle = (first + last) / 2;
  straight.half = std::max((last - first) / 2, 1.0);
  const double width = 1.25 * profiles.step;
  std::size_t count = border_points(profiles, signal, straight, points);
  const std::span<const OffsetPoint> near_line(points.data(), count);
  straight.line = robust_line(near_line, straight.line, 2 * width);
  straight.line = robust_line(near_line, straight.line, width);
  const BorderCourse bowed = bend(near_line, straight, 1.5 * profiles.step);
  if (std::abs(bowed.bow) < kLeastBow || std::abs(bowed.bow) > kMostBow * straight.half) return straight;
  if (misfit(near_line, bowed, width) > kBetter * misfit(near_line, straight, width)) return straight;
  // More of the border is seen near its true course.
  count = border_points(profiles, signal, bowed, points);
  return bend({points.data(), count}, bowed, width);
}

double share_on_course(const SideProfiles& profiles, const BorderSignal& signal, const BorderCourse& course) {
  constexpr int kNeighbours = 2;
  constexpr double kLeastSlope = 2.0;
  const int way = way_of(profiles, signal, course);
  int shown = 0;
  int judged = 0;
  for (int place = 0; place < profiles.places; ++place) {
    Slopes sums{};
    int count = 0;
    const int first = std::max(place - kNeighbours, 0);
    const int last = std::min(place + kNeighbours, profiles.places - 1);
    for (int neighbour = first; neighbour <= last; ++neighbour) {
      const auto at = static_cast<std::size_t>(neighbour);
      Slopes slopes;
      const double sample = sample_of(profiles, course, at);
      if (!slopes_around(profiles, signal, at, sample, slopes)) continue;
      for (std::size_t i = 0; i < sums.size(); ++i) sums[i] += slopes[i];
      ++count;
    }
    judged += count > 0 ? 1 : 0;
    shown += count > 0 && shows_border(sums, way, kLeastSlope * count) ? 1 : 0;
  }
  // What the frame cuts off shows neither that there is a border nor that there is none.
  return shown / std::max<double>(judged, kLeastJudged * profiles.places);
}

double contrast_at(const SideProfiles& profiles, const BorderCourse& course) {
  std::array<double, kMostPlaces> contrasts{};
  std::size_t count = 0;
  for (std::size_t place = 0; place < static_cast<std::size_t>(profiles.places); ++place) {
    const double sample = sample_of(profiles, course, place);
    // Near the frame of the scan there may be no more than the flank itself.
    const int inside = std::max(static_cast<int>(std::floor(sample - 2.0)), profiles.first[place] + 1);
    const int outside = std::min(static_cast<int>(round_up(sample + 2.0)), profiles.last[place] - 1);
    if (inside > sample || outside < sample) continue;
    double square = 0.0;
    for (std::size_t plane = 0; plane < profiles.plane_count; ++plane) {
      const auto& levels = profiles.levels[place][plane];
      const auto in = static_cast<std::size_t>(inside);
      const auto out = static_cast<std::size_t>(outside);
      const double difference = (levels[in] + levels[in - 1] - levels[out] - levels[out + 1]) / 2;
      square += difference * difference;
    }
    contrasts[count++] = std::sqrt(square);
  }
  if (count == 0) return 0.0;
  const auto middle = contrasts.begin() + static_cast<std::ptrdiff_t>(count / 2);
  std::nth_element(contrasts.begin(), middle, contrasts.begin() + static_cast<std::ptrdiff_t>(count));
  return *middle;
}

}  // namespace vantrel::anywhere
