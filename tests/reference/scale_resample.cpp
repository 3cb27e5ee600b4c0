#include "reference/scale_resample.h"

#include <algorithm>
#include <cstdint>

namespace reference {
namespace {

/** The source through the 16-bit width and height; channel k of pixel (i, j). */
struct Samples {
  const Picture& picture;
  int w = static_cast<std::int16_t>(picture.cols);
  int h = static_cast<std::int16_t>(picture.rows);
  int channels = picture.bits == 24 ? 3 : 1;

  int operator()(int i, int j, int k) const { return picture.at(i, channels * j + k); }
};

int rounded_up_to_4(int columns) { return (columns + 3) / 4 * 4; }

int bilinear_sample(const Samples& p, int r, int q, int k, BilinearRules& rules) {
  int y0 = r / 2;
  int y1 = y0 + 1;
  if (y1 >= p.h) {
    y0 = p.h - 1;
    y1 = p.h - 1;
    rules.last_row_repeated += 1;
  }
  int x0 = q / 2;
  int x1 = x0 + 1;
  if (x1 >= p.w) {
    x0 = p.w - 1;
    x1 = p.w - 1;
    rules.last_column_repeated += 1;
  }
  const bool new_row = r % 2 == 1;
  const bool new_column = q % 2 == 1;
  if (new_row && new_column) {
    rules.mean_of_four += 1;
    return (p(y0, x0, k) + p(y0, x1, k) + p(y1, x0, k) + p(y1, x1, k) + 2) / 4;
  }
  if (new_row) {
    rules.mean_of_two_rows += 1;
    return (p(y0, x0, k) + p(y1, x0, k) + 1) / 2;
  }
  if (new_column) {
    rules.mean_of_two_columns += 1;
    return (p(y0, x0, k) + p(y0, x1, k) + 1) / 2;
  }
  rules.source_pixel += 1;
  return p(y0, x0, k);
}

int clamped(int value, ClampedRange& range) {
  (value < 0 ? range.below_0 : value > 255 ? range.above_255 : range.within) += 1;
  return std::clamp(value, 0, 255);
}

int along_row(const Samples& p, int i, int x, int k) {
  return cubic_kernel(p(i, x - 1, k), p(i, x, k), p(i, x + 1, k), p(i, x + 2, k));
}

int bicubic_sample(const Samples& p, int r, int q, int k, BicubicRules& rules) {
  const int y = r / 2;
  const int x = q / 2;
  if (x >= p.w) {
    rules.rounding_column += 1;
    return p(y, p.w - 1, k);
  }
  if (y - 1 < 0 || y + 2 >= p.h) {
    rules.border_row += 1;
    return p(y, x, k);
  }
  if (x - 1 < 0 || x + 2 >= p.w) {
    rules.border_column += 1;
    return p(y, x, k);
  }
  const bool new_row = r % 2 == 1;
  const bool new_column = q % 2 == 1;
  if (new_row && new_column) {
    const int h0 = along_row(p, y - 1, x, k);
    const int h1 = along_row(p, y, x, k);
    const int h2 = along_row(p, y + 1, x, k);
    const int h3 = along_row(p, y + 2, x, k);
    if (std::min({h0, h1, h2, h3}) < 0) rules.row_value_below_0 += 1;
    if (std::max({h0, h1, h2, h3}) > 255) rules.row_value_above_255 += 1;
    return clamped(cubic_kernel(h0, h1, h2, h3), rules.both);
  }
  if (new_row) return clamped(cubic_kernel(p(y - 1, x, k), p(y, x, k), p(y + 1, x, k), p(y + 2, x, k)), rules.new_row);
  if (new_column) return clamped(along_row(p, y, x, k), rules.new_column);
  rules.source_pixel += 1;
  return p(y, x, k);
}

}  // namespace

int cubic_kernel(int a, int b, int c, int d) {
  const int sum = 9 * (b + c) - a - d + 8;
  return sum >= 0 ? sum / 16 : -((-sum + 15) / 16);
}

std::vector<unsigned char> bilinear(const Picture& source, int factor, BilinearRules& rules) {
  const Samples samples{source};
  std::vector<unsigned char> out;
  for (int r = 0; r < samples.h * factor; ++r) {
    for (int q = 0; q < rounded_up_to_4(samples.w * factor); ++q) {
      for (int k = 0; k < samples.channels; ++k) {
        out.push_back(static_cast<unsigned char>(bilinear_sample(samples, r, q, k, rules)));
      }
    }
  }
  return out;
}

std::vector<unsigned char> bicubic(const Picture& source, BicubicRules& rules) {
  const Samples samples{source};
  std::vector<unsigned char> out;
  for (int r = 0; r < 2 * samples.h; ++r) {
    for (int q = 0; q < rounded_up_to_4(2 * samples.w); ++q) {
      for (int k = 0; k < samples.channels; ++k) {
        out.push_back(static_cast<unsigned char>(bicubic_sample(samples, r, q, k, rules)));
      }
    }
  }
  return out;
}

}  // namespace reference
