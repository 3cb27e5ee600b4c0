#include "lines/verify_components.h"

#include <algorithm>
#include <cstdlib>

namespace vantrel::lines {
namespace {

using geometry::Rect;
using geometry::Side;

/** The extent of a component; its sides wrap to 16 bits, which is what they are kept in. */
struct Extent {
  int w;
  int h;
  std::int64_t area;
};

Extent extent_of(const Rect& box) {
  const auto w = static_cast<std::int16_t>(box.cols.size());
  // A box handed in from outside may have its rows the wrong way round.
  const auto h = static_cast<std::int16_t>(std::abs(box.rows.last() - box.rows.first) + 1);
  return {w, h, std::int64_t{w} * h};
}

/**
 * The pixels of a band, which is nonsense but no overflow for sizes that no image has. Far above any sum of components,
 * one bound is as good as another.
 */
std::int64_t pixels_of(std::int64_t breadth, int length) {
  constexpr std::int64_t kMost = std::int64_t{1} << 56;
  std::int64_t pixels = 0;
  if (__builtin_mul_overflow(breadth, length, &pixels)) return (breadth < 0) == (length < 0) ? kMost : -kMost;
  return std::clamp(pixels, -kMost, kMost);
}

/** Clutter that may be background: neither a speck, nor a large piece, nor a thin long one. */
bool is_clutter(const Extent& e, std::int64_t band, int rows, int cols) {
  if (e.area < 5 || e.area > band / 4) return false;
  if (e.w > cols / 2 || e.h > rows / 2) return false;
  if (e.h > 10 * e.w || (e.w <= 2 && e.h > 8 * e.w)) return false;
  return e.w <= 7 * e.h && !(e.h <= 2 && e.w > 5 * e.h);
}

/** The same beside a vertical line, where an upright, moderately narrow piece counts up to half the band. */
bool is_side_clutter(const Extent& e, std::int64_t band) {
  if (e.area <= 4) return false;
  if (e.area <= band / 4 && e.h <= 10 * e.w && e.w <= 10 * e.h) return true;
  return e.area < band / 2 && e.w < e.h && 5 * e.w > 2 * e.h;
}

}  // namespace

BandClutter::BandClutter(int L, int rows, int cols, Side side)
    : line_(L),
      rows_(rows),
      cols_(cols),
      margin_(rows / 40),
      top_(side == Side::kTop),
      band_(pixels_of(top_ ? std::int64_t{rows} - L + margin_ : std::int64_t{L} + margin_ + 1, cols)) {}

void BandClutter::add(const Rect& box) {
  const bool beyond = top_ ? box.rows.first > line_ - margin_ : box.rows.last() < line_ + margin_;
  const Extent extent = extent_of(box);
  if (!beyond || !is_clutter(extent, band_, rows_, cols_)) return;
  ++count_;
  area_ += extent.area;
}

bool BandClutter::accepts() const {
  // Moderate clutter, between 1/50 and 3/10 of the band, speaks against the line; less is a clean band, and more (in
  // many pieces or very much of it) cannot be the scanner's background.
  if (band_ >= 50 * area_) return true;
  if (10 * area_ < 3 * band_) return false;
  return count_ >= cols_ / 20 || band_ <= 2 * area_;
}

CutComponents::CutComponents(int L, int rows, int cols, const CutRules& rules)
    : rows_(rows), cols_(cols), rules_(rules) {
  const int margin = rows / 70;
  high_ = std::int64_t{L} + margin > rows ? std::int64_t{rows} - 1 : std::int64_t{L} + margin;
  // Not 0 when the margin leaves the image: a component that starts in row 0 still counts as cut.
  low_ = std::int64_t{L} - margin >= 0 ? std::int64_t{L} - margin : 1;
}

void CutComponents::add(const Rect& box) {
  const Extent extent = extent_of(box);
  if (extent.h > rows_ / 3 || extent.w > cols_ / rules_.width_share) return;
  const auto runs_through = [&](std::int64_t row) { return box.rows.first < row && row < box.rows.last(); };
  if (!runs_through(low_) && !runs_through(high_)) return;
  ++count_;
  width_ += extent.w;
}

bool CutComponents::accepts() const {
  return !(count_ > 6 && cols_ < 3 * width_) && !(count_ > rules_.few && 5 * width_ > std::int64_t{4} * cols_);
}

SideClutter::SideClutter(int L, int rows, int cols, Side side)
    : line_(L),
      margin_(cols / 70),
      left_(side == Side::kLeft),
      band_(pixels_of(left_ ? std::int64_t{L} + margin_ + 1 : std::int64_t{cols} - L + margin_, rows)) {}

void SideClutter::add(const Rect& box) {
  const bool beyond = left_ ? box.cols.last() < line_ + margin_ : box.cols.first > line_ - margin_;
  const Extent extent = extent_of(box);
  if (!beyond || !is_side_clutter(extent, band_)) return;
  ++count_;
  area_ += extent.area;
}

bool SideClutter::accepts() const {
  if (band_ < 50 * area_ && band_ > 2 * area_ && count_ > 2) return false;
  return !(band_ < 2 * area_ && count_ <= 14);
}

}  // namespace vantrel::lines
