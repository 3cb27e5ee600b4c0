#include "autoclip/warp.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "autoclip/kernels.h"

namespace vantrel::autoclip {
namespace {

using image::ConstPixels;
using image::Pixels;

int whole(double value) {
  constexpr double kMost = 1 << 30;
  return std::isnan(value) ? 0 : static_cast<int>(std::clamp(value, -kMost, kMost));
}

/** Visits the rows y of the area that have a place in the target; `visit(y, first pixel, how many)`. */
template <class Visit>
void for_each_row(const WarpArea& area, const Pixels& target, Visit visit) {
  const std::int64_t last_x = std::min<std::int64_t>(area.x_max, std::int64_t{area.x_min} + target.cols - 1);
  const std::int64_t top_row = area.height - 1;  // the memory row of y_min
  const std::int64_t first_y = std::max<std::int64_t>(area.y_min, area.y_min + top_row - (target.rows - 1));
  const std::int64_t last_y = std::min<std::int64_t>(area.y_max, area.y_min + top_row);
  const auto count = static_cast<int>(std::max<std::int64_t>(last_x - area.x_min + 1, 0));
  for (std::int64_t y = first_y; y <= last_y; ++y) {
    visit(static_cast<int>(y), target.row(static_cast<int>(top_row - (y - area.y_min))), count);
  }
}

}  // namespace

template <int kChannels>
void plain::warp_stretch(const WarpSource& source, const WarpStretch& stretch) {
  const ConstPixels& pixels = source.pixels;
  const double* c = stretch.mapping;
  const int y = stretch.y;
  const auto last_row = static_cast<float>(pixels.rows - 1);
  unsigned char* pixel = stretch.target;
  for (int i = 0; i < stretch.count; ++i, pixel += kChannels) {
    const int x = stretch.x + i;  // the last one may be the largest there is
    const double d = x * c[6] + (y * c[7] + 1.0);
    const float u = map_coordinate(c[0], c[1], c[2], d, x, y);
    const float v = map_coordinate(c[3], c[4], c[5], d, x, y);
    const AxisPosition row = locate(std::max(last_row - v, source.first_position), pixels.rows);
    const AxisPosition col = locate(std::max(u, source.first_position), pixels.cols);
    const unsigned char* before = pixels.row(row.first);
    const unsigned char* after = pixels.row(row.second);
    const std::ptrdiff_t left = std::ptrdiff_t{col.first} * kChannels;
    const std::ptrdiff_t right = std::ptrdiff_t{col.second} * kChannels;
    for (int k = 0; k < kChannels; ++k) {
      pixel[k] = static_cast<unsigned char>(
          interpolate(before[left + k], before[right + k], after[left + k], after[right + k], col.weight, row.weight));
    }
  }
}

template void plain::warp_stretch<1>(const WarpSource&, const WarpStretch&);
template void plain::warp_stretch<3>(const WarpSource&, const WarpStretch&);
template void plain::warp_stretch<4>(const WarpSource&, const WarpStretch&);

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
  const float first_position = rim == Rim::kRepeated ? 0.0f : -std::numeric_limits<float>::infinity();
  const auto warp_stretch = channels == 1 ? kernels->warp_1 : channels == 3 ? kernels->warp_3 : kernels->warp_4;
  for_each_row(area, target, [&](int y, unsigned char* pixels, int count) {
    warp_stretch({source, first_position}, {mapping.data(), area.x_min, y, count, pixels});
  });
}

void copy_area(ConstPixels source, Pixels target, int channels, const WarpArea& area, bool upside_down) {
  for_each_row(area, target, [&](int y, unsigned char* pixels, int count) {
    const int row = upside_down ? y : source.rows - 1 - y;
    if (row < 0 || row >= source.rows) return;
    for (int i = 0; i < count; ++i) {
      const int x = area.x_min + i;
      if (x < 0 || x >= source.cols) continue;
      std::copy_n(source.row(row) + std::ptrdiff_t{x} * channels, channels, pixels + std::ptrdiff_t{i} * channels);
    }
  });
}

}  // namespace vantrel::autoclip
