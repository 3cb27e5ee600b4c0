#include "autoclip/warp.h"

#include <algorithm>
#include <cmath>

namespace vantrel::autoclip {
namespace {

using image::ConstPixels;
using image::Pixels;

int whole(double value) {
  constexpr double kMost = 1 << 30;
  return std::isnan(value) ? 0 : static_cast<int>(std::clamp(value, -kMost, kMost));
}

/** Visits every position (x, y) of the area that has a place in the target; `fill(x, y, pixel)` writes the pixel. */
template <class Fill>
void walk(const WarpArea& area, const Pixels& target, int channels, Fill fill) {
  const std::int64_t last_x = std::min<std::int64_t>(area.x_max, std::int64_t{area.x_min} + target.cols - 1);
  const std::int64_t top_row = area.height - 1;  // the memory row of y_min
  const std::int64_t first_y = std::max<std::int64_t>(area.y_min, area.y_min + top_row - (target.rows - 1));
  const std::int64_t last_y = std::min<std::int64_t>(area.y_max, area.y_min + top_row);
  for (std::int64_t y = first_y; y <= last_y; ++y) {
    unsigned char* pixel = target.row(static_cast<int>(top_row - (y - area.y_min)));
    for (std::int64_t x = area.x_min; x <= last_x; ++x, pixel += channels) {
      fill(static_cast<int>(x), static_cast<int>(y), pixel);
    }
  }
}

template <Rim kRim>
AxisPosition locate_with(float position, int count) {
  return locate(kRim == Rim::kRepeated ? std::max(position, 0.0f) : position, count);
}

template <int kChannels, Rim kRim>
void warp_pixels(const ConstPixels& source, const Pixels& target, const Mapping& c, const WarpArea& area) {
  const auto last_row = static_cast<float>(source.rows - 1);
  walk(area, target, kChannels, [&](int x, int y, unsigned char* pixel) {
    const double d = x * c[6] + (y * c[7] + 1.0);
    const float u = map_coordinate(c[0], c[1], c[2], d, x, y);
    const float v = map_coordinate(c[3], c[4], c[5], d, x, y);
    const AxisPosition row = locate_with<kRim>(last_row - v, source.rows);
    const AxisPosition col = locate_with<kRim>(u, source.cols);
    const unsigned char* before = source.row(row.first);
    const unsigned char* after = source.row(row.second);
    const std::ptrdiff_t left = std::ptrdiff_t{col.first} * kChannels;
    const std::ptrdiff_t right = std::ptrdiff_t{col.second} * kChannels;
    for (int k = 0; k < kChannels; ++k) {
      pixel[k] = static_cast<unsigned char>(
          interpolate(before[left + k], before[right + k], after[left + k], after[right + k], col.weight, row.weight));
    }
  });
}

template <Rim kRim>
void warp_with(const ConstPixels& source, const Pixels& target, int channels, const Mapping& mapping,
               const WarpArea& area) {
  switch (channels) {
    case 1:
      return warp_pixels<1, kRim>(source, target, mapping, area);
    case 3:
      return warp_pixels<3, kRim>(source, target, mapping, area);
    default:
      return warp_pixels<4, kRim>(source, target, mapping, area);
  }
}

}  // namespace

AxisPosition locate(float position, int count) {
  // Everything this far out, infinite or no number at all, is sampled at the nearest end.
  constexpr float kFar = 1 << 30;
  if (!(position > -kFar)) position = -1.0f;
  if (position > kFar) position = kFar;
  const int first = static_cast<int>(position);
  AxisPosition at{first, first + 1, position - static_cast<float>(first)};
  if (at.second >= count) {
    at.first = at.second = count - 1;
  } else if (at.first < 0) {
    at.first = at.second = 0;
  }
  return at;
}

int interpolate(int top_left, int top_right, int bottom_left, int bottom_right, float fx, float fy) {
  const float top = static_cast<float>(top_left) + fx * static_cast<float>(top_right - top_left);
  const float bottom = static_cast<float>(bottom_left) + fx * static_cast<float>(bottom_right - bottom_left);
  const float value = top + fy * (bottom - top);
  return std::min(static_cast<int>(static_cast<double>(value) + 0.5), 255);
}

int sample(ConstPixels plane, float col, float row) {
  if (plane.empty()) return 255;
  const AxisPosition r = locate(row, plane.rows);
  const AxisPosition c = locate(col, plane.cols);
  const unsigned char* before = plane.row(r.first);
  const unsigned char* after = plane.row(r.second);
  return interpolate(before[c.first], before[c.second], after[c.first], after[c.second], c.weight, r.weight);
}

WarpArea WarpArea::between(double x_min, double y_min, double x_max, double y_max) {
  return {whole(x_min), whole(y_min), whole(x_max), whole(y_max), whole(x_max - x_min + 1), whole(y_max - y_min + 1)};
}

void warp(ConstPixels source, Pixels target, int channels, const Mapping& mapping, const WarpArea& area, Rim rim) {
  if (source.empty()) return;
  if (rim == Rim::kRepeated) return warp_with<Rim::kRepeated>(source, target, channels, mapping, area);
  warp_with<Rim::kExtrapolated>(source, target, channels, mapping, area);
}

void copy_area(ConstPixels source, Pixels target, int channels, const WarpArea& area, bool upside_down) {
  walk(area, target, channels, [&](int x, int y, unsigned char* pixel) {
    const int row = upside_down ? y : source.rows - 1 - y;
    if (x < 0 || x >= source.cols || row < 0 || row >= source.rows) return;
    std::copy_n(source.row(row) + std::ptrdiff_t{x} * channels, channels, pixel);
  });
}

}  // namespace vantrel::autoclip
