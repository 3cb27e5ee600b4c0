#include "reference/autoclip_warp.h"

#include <cmath>

#include "reference/image_convert.h"
#include "support/tally.h"

namespace reference::autoclip {

Coefficients solve_eight(const Spots& from, const Spots& to) {
  constexpr std::array<std::size_t, 8> kRowOfEquation{0, 3, 1, 4, 2, 5, 6, 7};
  std::array<std::array<double, 8>, 8> m{};
  Coefficients right{};
  for (std::size_t i = 0; i < 8; ++i) {
    const double x = from.at(i / 2).x;
    const double y = from.at(i / 2).y;
    const bool even = i % 2 == 0;
    const double t = even ? to.at(i / 2).x : to.at(i / 2).y;
    auto& row = m.at(kRowOfEquation.at(i));
    if (even) {
      row = {x, y, 1, 0, 0, 0, -x * t, -y * t};
    } else {
      row = {0, 0, 0, x, y, 1, -x * t, -y * t};
    }
    right.at(kRowOfEquation.at(i)) = t;
  }
  for (std::size_t k = 0; k < 8; ++k) {
    for (std::size_t j = 0; j < 8; ++j) {
      if (j == k) continue;
      if (m.at(k).at(k) == 0.0) {
        m.at(k).at(k) = 1e-7;
        support::tally::count("solve eight: zero pivot");
      }
      const double factor = -m.at(j).at(k) / m.at(k).at(k);
      for (std::size_t col = 0; col < 8; ++col) {
        if (col != k && m.at(k).at(col) != 0) m.at(j).at(col) += m.at(k).at(col) * factor;
      }
      m.at(j).at(k) = 0;
      right.at(j) += factor * right.at(k);
    }
  }
  for (std::size_t i = 0; i < 8; ++i) {
    if (m.at(i).at(i) == 0.0) m.at(i).at(i) = 1e-7;
    right.at(i) /= m.at(i).at(i);
  }
  return right;
}

float coordinate(double a, double b, double c, double d, int x, int y) {
  return static_cast<float>((x * a + y * b + c) / d) + 0.5f;
}

namespace {

/** A place between two pixels of a line of them: the two, and how far it is from the first to the second. */
struct Between {
  int first;
  int second;
  float share;
};

int whole(float place) {
  if (std::isnan(place)) return -1000000000;  // as far before the first as can be
  if (place > 1e9f) return 1000000000;
  if (place < -1e9f) return -1000000000;
  return static_cast<int>(place);
}

Between between(float place, int count) {
  static long& before = support::tally::counter("sample: before the first pixel");
  static long& outside_low = support::tally::counter("sample: far before the first pixel");
  static long& outside_high = support::tally::counter("sample: behind the last pixel");
  Between found{whole(place), whole(place) + 1, 0.0f};
  if (std::isfinite(place)) found.share = place - std::trunc(place);
  if (found.second >= count) {
    found.first = found.second = count - 1;
    ++outside_high;
  } else if (found.first < 0) {
    found.first = found.second = 0;
    ++outside_low;
  } else if (place < 0) {
    ++before;
  }
  return found;
}

}  // namespace

int sample(float col, float row, const Picture& plane) {
  const Between r = between(row, plane.rows);
  const Between c = between(col, plane.cols);
  const auto p = [&plane](int at_row, int at_col) { return static_cast<float>(plane.at(at_row, at_col)); };
  const float top = p(r.first, c.first) + c.share * (p(r.first, c.second) - p(r.first, c.first));
  const float bottom = p(r.second, c.first) + c.share * (p(r.second, c.second) - p(r.second, c.first));
  const float value = top + r.share * (bottom - top);
  const int result = static_cast<int>(static_cast<double>(value) + 0.5);
  static long& negative = support::tally::counter("sample: negative");
  static long& too_large = support::tally::counter("sample: above 255");
  if (result < 0) ++negative;
  if (result >= 256) ++too_large;
  return result >= 256 ? 255 : result;
}

namespace {

/** Columns of the target that exist; the rest of a fractional rectangle is not written. */
int target_cols(const Picture& target, const Rect& rect, Frame frame) {
  return frame == Frame::kSource ? target.cols : static_cast<int>(rect.at(2) - rect.at(0) + 1);
}

int row_count(const Rect& rect) { return static_cast<int>(rect.at(3) - rect.at(1) + 1); }

}  // namespace

void warp(const Picture& source, Picture& target, const Coefficients& coeffs, const Rect& rect, Frame frame) {
  const int channels = source.bits == 8 ? 1 : 3;
  std::vector<Picture> planes{source};
  if (channels == 3) {
    planes = {image::plane_of(source, 0), image::plane_of(source, 1), image::plane_of(source, 2)};
  }
  const int x_min = static_cast<int>(rect.at(0));
  const int y_min = static_cast<int>(rect.at(1));
  const int cols = target_cols(target, rect, frame);
  support::tally::count(channels == 1 ? "warp: gray" : "warp: colour");
  for (int y = y_min; y <= static_cast<int>(rect.at(3)); ++y) {
    for (int x = x_min; x <= static_cast<int>(rect.at(2)); ++x) {
      const double d = x * coeffs.at(6) + (y * coeffs.at(7) + 1.0);
      const float u = static_cast<float>((x * coeffs.at(0) + y * coeffs.at(1) + coeffs.at(2)) / d) + 0.5f;
      const float v = static_cast<float>((x * coeffs.at(3) + y * coeffs.at(4) + coeffs.at(5)) / d) + 0.5f;
      const int target_row = (row_count(rect) - 1) - (y - y_min);
      const int target_col = x - x_min;
      if (target_row < 0 || target_row >= target.rows || target_col >= cols) continue;
      for (int channel = 0; channel < channels; ++channel) {
        const Picture& plane = planes.at(static_cast<std::size_t>(channel));
        const int value = sample(u, static_cast<float>(source.rows - 1) - v, plane);
        target.at(target_row, channels * target_col + channel) = static_cast<unsigned char>(value);
      }
    }
  }
}

void copy_rect(const Picture& source, Picture& target, const Rect& rect) {
  const int channels = source.bits == 8 ? 1 : 3;
  const int x_min = static_cast<int>(rect.at(0));
  const int y_min = static_cast<int>(rect.at(1));
  const int cols = target_cols(target, rect, Frame::kRect);
  for (int y = y_min; y <= static_cast<int>(rect.at(3)); ++y) {
    const int source_row = channels == 1 ? y : source.rows - 1 - y;
    const int target_row = (row_count(rect) - 1) - (y - y_min);
    if (target_row < 0 || target_row >= target.rows) continue;
    if (source_row < 0 || source_row >= source.rows) continue;
    for (int x = x_min; x <= static_cast<int>(rect.at(2)); ++x) {
      if (x < 0 || x >= source.cols || x - x_min >= cols) continue;
      for (int channel = 0; channel < channels; ++channel) {
        target.at(target_row, channels * (x - x_min) + channel) = source.at(source_row, channels * x + channel);
      }
    }
  }
}

}  // namespace reference::autoclip
