#include "autoclip/warp.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "image/bitmap.h"

namespace vantrel {
namespace {

/** A sampling position along one axis: the two neighbours, kept inside the image, and the weight of the second. */
struct AxisPosition {
  int first;
  int second;
  float weight;
};

/** The weight is taken before clamping, so a position between -1 and 0 extrapolates. */
AxisPosition locate(float position, int count) {
  // Everything this far out, infinite or no number at all, is sampled at the nearest end.
  constexpr float kFar = 1 << 30;
  if (!(position > -kFar)) position = -1.0f;
  if (position > kFar) position = kFar;
  const int whole = static_cast<int>(position);
  AxisPosition at{whole, whole + 1, position - static_cast<float>(whole)};
  if (at.second >= count) {
    at.first = at.second = count - 1;
  } else if (at.first < 0) {
    at.first = at.second = 0;
  }
  return at;
}

/** The value between four bytes; at most 255, but not kept from falling below 0. */
int interpolate(int top_left, int top_right, int bottom_left, int bottom_right, float fx, float fy) {
  const float top = static_cast<float>(top_left) + fx * static_cast<float>(top_right - top_left);
  const float bottom = static_cast<float>(bottom_left) + fx * static_cast<float>(bottom_right - bottom_left);
  const float value = top + fy * (bottom - top);
  return std::min(static_cast<int>(static_cast<double>(value) + 0.5), 255);
}

/** The rectangle to fill, in whole pixels. */
struct OutputRect {
  int x_min;
  int y_min;
  int x_max;
  int y_max;
  std::int64_t width; /**< trunc(x-max - x-min + 1): with fractional bounds not always that of the whole pixels */
  std::int64_t height;

  explicit OutputRect(const double* rect)
      : x_min(whole(rect[0])),
        y_min(whole(rect[1])),
        x_max(whole(rect[2])),
        y_max(whole(rect[3])),
        width(whole(rect[2] - rect[0] + 1)),
        height(whole(rect[3] - rect[1] + 1)) {}

 private:
  static int whole(double value) {
    constexpr double kMost = 1 << 30;
    return std::isnan(value) ? 0 : static_cast<int>(std::clamp(value, -kMost, kMost));
  }
};

/** An image to write into, addressed by the stride of another width; it ends where the image's own pixels end. */
Pixels target_with_stride(const BITMAPPTR& image, std::int64_t width, int bytes) {
  const BITMAPINFOHEADER& header = *image.pInfo;
  const std::int64_t stride = stride_bytes(std::max<std::int64_t>(width, 0), 8 * bytes);
  if (stride == 0) return {image.pBits, 0, 0, 0};
  const std::int64_t rows = std::min<std::int64_t>(header.biHeight, pixel_bytes(header) / stride);
  const std::int64_t cols = std::min<std::int64_t>(header.biWidth, stride / bytes);
  return {image.pBits, static_cast<int>(rows), static_cast<int>(cols), static_cast<std::ptrdiff_t>(stride)};
}

/**
 * Visits every position (x, y) of the rectangle that has a place in the target: x_min at column 0, y_max (or what the
 * height makes of it) in memory row 0. `fill(x, y, pixel)` writes the pixel.
 */
template <class Fill>
void walk(const OutputRect& rect, const Pixels& target, int pixel_bytes, Fill fill) {
  const std::int64_t last_x = std::min<std::int64_t>(rect.x_max, std::int64_t{rect.x_min} + target.cols - 1);
  const std::int64_t top_row = rect.height - 1;  // the memory row of y_min
  const std::int64_t first_y = std::max<std::int64_t>(rect.y_min, rect.y_min + top_row - (target.rows - 1));
  const std::int64_t last_y = std::min<std::int64_t>(rect.y_max, rect.y_min + top_row);
  for (std::int64_t y = first_y; y <= last_y; ++y) {
    unsigned char* pixel = target.row(static_cast<int>(top_row - (y - rect.y_min)));
    for (std::int64_t x = rect.x_min; x <= last_x; ++x, pixel += pixel_bytes) {
      fill(static_cast<int>(x), static_cast<int>(y), pixel);
    }
  }
}

/** Fills the rectangle by mapping every position into the source and sampling there. */
template <int kPixelBytes>
void warp(const ConstPixels& source, const Pixels& target, const double* c, const OutputRect& rect) {
  if (source.rows <= 0 || source.cols <= 0) return;
  const auto last_row = static_cast<float>(source.rows - 1);
  walk(rect, target, kPixelBytes, [&](int x, int y, unsigned char* pixel) {
    const double d = x * c[6] + (y * c[7] + 1.0);
    const float u = static_cast<float>((x * c[0] + y * c[1] + c[2]) / d) + 0.5f;
    const float v = static_cast<float>((x * c[3] + y * c[4] + c[5]) / d) + 0.5f;
    const AxisPosition row = locate(last_row - v, source.rows);
    const AxisPosition col = locate(u, source.cols);
    const unsigned char* top = source.row(row.first);
    const unsigned char* bottom = source.row(row.second);
    const std::ptrdiff_t left = std::ptrdiff_t{col.first} * kPixelBytes;
    const std::ptrdiff_t right = std::ptrdiff_t{col.second} * kPixelBytes;
    for (int k = 0; k < kPixelBytes; ++k) {
      pixel[k] = static_cast<unsigned char>(
          interpolate(top[left + k], top[right + k], bottom[left + k], bottom[right + k], col.weight, row.weight));
    }
  });
}

/** Dispatches on the depth: 8 bits, or else three bytes a pixel. */
void warp(const BITMAPPTR& src, const Pixels& target, const double* coeffs, const OutputRect& rect, int depth) {
  if (depth == 8) {
    warp<1>(const_pixels_of(src), target, coeffs, rect);
  } else {
    warp<3>(const_pixels_of(src), target, coeffs, rect);
  }
}

constexpr int bytes_of_depth(int depth) { return depth == 8 ? 1 : 3; }

}  // namespace
}  // namespace vantrel

int Bilinear(float col, float row, unsigned char* plane, int rows, int cols, int stride, int /*depth*/) {
  if (rows <= 0 || cols <= 0) return 255;  // nothing to sample: white, as everything outside an image
  const vantrel::AxisPosition r = vantrel::locate(row, rows);
  const vantrel::AxisPosition c = vantrel::locate(col, cols);
  const unsigned char* top = plane + std::ptrdiff_t{r.first} * stride;
  const unsigned char* bottom = plane + std::ptrdiff_t{r.second} * stride;
  return vantrel::interpolate(top[c.first], top[c.second], bottom[c.first], bottom[c.second], c.weight, r.weight);
}

bool ConvertImg2(BITMAPPTR* src, BITMAPPTR* dst, double* coeffs, double* rect, int depth) {
  const vantrel::Pixels target = vantrel::target_with_stride(*dst, src->pInfo->biWidth, vantrel::bytes_of_depth(depth));
  vantrel::warp(*src, target, coeffs, vantrel::OutputRect(rect), depth);
  return true;
}

bool ConvertImg(BITMAPPTR* src, BITMAPPTR* dst, double* coeffs, double* rect, int depth) {
  const vantrel::OutputRect output(rect);
  const vantrel::Pixels target = vantrel::target_with_stride(*dst, output.width, vantrel::bytes_of_depth(depth));
  vantrel::warp(*src, target, coeffs, output, depth);
  return true;
}

bool ConvertImg3(BITMAPPTR* src, BITMAPPTR* dst, double* /*coeffs*/, double* rect, int depth) {
  const vantrel::OutputRect output(rect);
  const int pixel_bytes = vantrel::bytes_of_depth(depth);
  const vantrel::Pixels target = vantrel::target_with_stride(*dst, output.width, pixel_bytes);
  const vantrel::ConstPixels source = vantrel::const_pixels_of(*src);
  vantrel::walk(output, target, pixel_bytes, [&](int x, int y, unsigned char* pixel) {
    // With 8 bits y is a memory row, so that the rows come out reversed; in colour it counts from the top.
    const int row = pixel_bytes == 1 ? y : source.rows - 1 - y;
    if (x < 0 || x >= source.cols || row < 0 || row >= source.rows) return;
    std::copy_n(source.row(row) + std::ptrdiff_t{x} * pixel_bytes, pixel_bytes, pixel);
  });
  return true;
}
