#include "anywhere/side_profiles.h"

#include <algorithm>
#include <cmath>

namespace vantrel::anywhere {
namespace {

/** Corners may be round: a fifteenth of a side is left out at either end. */
constexpr double kLeftOut = 1.0 / 15.0;

/** A profile is the mean of at most so many neighbouring lines of pixels, which tells more than one. */
constexpr int kMostTaps = 8;

/** Samples beyond the reach on either side, so that a border there still has two flanks. */
constexpr int kMargin = 3;

/** Where a pixel lies between two is counted in these. */
constexpr int kFraction = 256;

/** Sample by sample sums of the planes, each times its kPlaneParts. */
struct Sums {
  std::array<std::array<int, kMostSamples>, kPlanes> planes{};
};

template <class Pixels>
PlaneSums planes_of(const unsigned char* pixel) {
  return plane_sums(pixel[Pixels::kBlue], pixel[Pixels::kGreen], pixel[Pixels::kRed]);
}

/** Reads the levels of a line of pixels, which is counted outward: pixel i of the line is i * outward of the axis. */
template <class Pixels>
class LineReader {
 public:
  LineReader(const image::ConstPixels& pixels, bool steep, int along, int outward)
      : pixels_(pixels), steep_(steep), along_(along), outward_(outward) {
    if constexpr (Pixels::kBytes > 0) {
      first_ = steep ? pixels.row(along) : pixels.data + along * Pixels::kBytes;
      stride_ = (steep ? Pixels::kBytes : pixels.stride) * outward;
    }
  }
  PlaneSums at(int i) const {
    if constexpr (Pixels::kBytes > 0) return planes_of<Pixels>(first_ + i * stride_);
    const int across = i * outward_;
    const int level =
        steep_ ? BilevelPixels::level(pixels_.row(along_), across) : BilevelPixels::level(pixels_.row(across), along_);
    return {4 * level, 0, 0};
  }

 private:
  const image::ConstPixels& pixels_;
  bool steep_;
  int along_;
  int outward_;
  const unsigned char* first_ = nullptr;
  std::ptrdiff_t stride_ = 0;
};

/** The samples of one line of pixels: where the first begins, between which pixels, and which lie on the scan. */
struct Grid {
  int pixel;    /**< counted outward */
  int fraction; /**< of the way to the next pixel */
  int first;
  int last;
};

constexpr int divide_down(int value, int by) { return value >= 0 ? value / by : -((-value + by - 1) / by); }

Grid grid_at(const SideLine& side, int along, const SideProfiles& profiles, int extent) {
  const double across = (side.across(along + 0.5) - 0.5) * side.outward;
  const double begin = across - profiles.centre * profiles.step - (profiles.step - 1) / 2.0;
  const double whole = std::floor(begin);
  const int pixel = static_cast<int>(whole);
  const int low = side.outward > 0 ? 0 : 1 - extent;
  const int high = low + extent - 1;
  // Sample i is made of the pixels from pixel + i * step to pixel + (i + 1) * step.
  const int first = -divide_down(pixel - low, profiles.step);
  const int last = divide_down(high - pixel, profiles.step) - 1;
  return {pixel, static_cast<int>((begin - whole) * kFraction), std::max(first, 0),
          std::min(last, profiles.samples - 1)};
}

template <class Pixels>
void add_line(const LineReader<Pixels>& line, const Grid& grid, int step, Sums& sums) {
  if (grid.last < grid.first) return;
  const int far = grid.fraction;
  const int near = kFraction - far;
  int pixel = grid.pixel + grid.first * step;
  PlaneSums here = line.at(pixel);
  for (int i = grid.first; i <= grid.last; ++i) {
    const auto at = static_cast<std::size_t>(i);
    for (int j = 0; j < step; ++j) {
      const PlaneSums next = line.at(++pixel);
      sums.planes[kLight][at] += near * here.light + far * next.light;
      if constexpr (Pixels::kBytes > 1) {
        sums.planes[kRedGreen][at] += near * here.red_green + far * next.red_green;
        sums.planes[kBlueYellow][at] += near * here.blue_yellow + far * next.blue_yellow;
      }
      here = next;
    }
  }
}

/** Samples the profile of place `place`, the mean of the `taps` lines of pixels from `along`. */
template <class Pixels>
void sample_place(const Scan& scan, const SideLine& side, int along, int taps, int place, SideProfiles& profiles) {
  const int extent = side.steep ? scan.pixels.cols : scan.pixels.rows;
  const auto at = static_cast<std::size_t>(place);
  Sums sums;
  int first = 0;
  int last = profiles.samples - 1;
  for (int tap = along; tap < along + taps; ++tap) {
    const Grid grid = grid_at(side, tap, profiles, extent);
    add_line<Pixels>({scan.pixels, side.steep, tap, side.outward}, grid, profiles.step, sums);
    first = std::max(first, grid.first);
    last = std::min(last, grid.last);
  }
  profiles.along[at] = along + taps / 2.0;
  profiles.first[at] = first;
  profiles.last[at] = last;
  for (std::size_t plane = 0; plane < profiles.plane_count; ++plane) {
    const float scale = 1.0F / static_cast<float>(kPlaneParts[plane] * kFraction * taps * profiles.step);
    for (std::size_t i = 0; i < static_cast<std::size_t>(profiles.samples); ++i)
      profiles.levels[at][plane][i] = static_cast<float>(sums.planes[plane][i]) * scale;
  }
}

}  // namespace

NormalLine SideLine::line() const {
  const Point a = steep ? Point{across(from), from} : Point{from, across(from)};
  const Point b = steep ? Point{across(to), to} : Point{to, across(to)};
  return line_through(a, b);
}

SideLine side_line(Point a, Point b) {
  SideLine side;
  const Point way = b - a;
  side.steep = std::abs(way.y) > std::abs(way.x);
  // The outside is to the left of the way: above one to the right, and right of one down.
  side.outward = side.steep ? (way.y > 0 ? 1 : -1) : (way.x > 0 ? -1 : 1);
  if (side.steep) {
    a = {a.y, a.x};
    b = {b.y, b.x};
  }
  side.slope = (b.y - a.y) / (b.x - a.x);
  side.base = a.y - side.slope * a.x;
  side.from = std::min(a.x, b.x);
  side.to = std::max(a.x, b.x);
  return side;
}

int SideProfiles::count_with(int least) const {
  int count = 0;
  for (std::size_t i = 0; i < static_cast<std::size_t>(places); ++i) count += last[i] - first[i] + 1 >= least ? 1 : 0;
  return count;
}

void sample_side(const Scan& scan, const SideLine& side, double reach, SideProfiles& profiles) {
  constexpr int kMostHalf = (kMostSamples - 1) / 2;
  profiles.step = std::max(1, static_cast<int>(round_up(reach / (kMostHalf - kMargin))));
  profiles.centre = std::min(kMostHalf, static_cast<int>(round_up(reach / profiles.step)) + kMargin);
  profiles.samples = 2 * profiles.centre + 1;
  profiles.plane_count = has_colour(scan.layout) ? std::size_t{kPlanes} : 1;
  const int extent = side.steep ? scan.pixels.rows : scan.pixels.cols;
  const double left_out = (side.to - side.from) * kLeftOut;
  const int begin = static_cast<int>(round_up(std::max(side.from + left_out, 0.0)));
  const int end = static_cast<int>(std::floor(std::min(side.to - left_out, static_cast<double>(extent))));
  profiles.places = std::clamp(end - begin, 0, kMostPlaces);
  if (profiles.places == 0) return;
  const int taps = std::min(kMostTaps, (end - begin) / profiles.places);
  with_pixels(scan.layout, [&](auto pixels) {
    for (int place = 0; place < profiles.places; ++place) {
      const int room = (end - begin) / profiles.places;
      const int along = begin + (end - begin) * place / profiles.places + (room - taps) / 2;
      sample_place<decltype(pixels)>(scan, side, along, taps, place, profiles);
    }
  });
}

}  // namespace vantrel::anywhere
