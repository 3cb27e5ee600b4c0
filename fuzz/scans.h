/**
 * @file scans.h
 * @brief Small scans with a few shapes on them, by what an input says.
 */
#ifndef VANTREL_FUZZ_SCANS_H
#define VANTREL_FUZZ_SCANS_H

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "anywhere/scan.h"
#include "support/random.h"

namespace fuzz {

using vantrel::anywhere::Layout;
using vantrel::anywhere::Scan;
using Bytes = std::vector<unsigned char>;

/** A ground with a few convex shapes on it, in gray, and a grain. */
inline Bytes any_levels(support::Random& random, int rows, int cols) {
  Bytes levels(static_cast<std::size_t>(rows * cols), random.byte());
  for (int shape = random.pick(0, 4); shape > 0; --shape) {
    const double x = random.real(0, cols);
    const double y = random.real(0, rows);
    const double turn = random.real(-1.6, 1.6);
    const double right = std::cos(turn);
    const double down = std::sin(turn);
    const double half_width = random.real(1, 40);
    const double half_height = random.real(1, 30);
    const unsigned char level = random.byte();
    const double slope = random.one_in(3) ? random.real(-0.3, 0.3) : 0.0;
    for (int row = 0; row < rows; ++row) {
      for (int col = 0; col < cols; ++col) {
        const double along = right * (col - x) + down * (row - y);
        const double across = right * (row - y) - down * (col - x);
        if (std::abs(along) > half_width || std::abs(across) > half_height + slope * along) continue;
        levels[static_cast<std::size_t>(row * cols + col)] = level;
      }
    }
  }
  const int grain = random.one_in(2) ? random.pick(0, 40) : 0;
  if (grain == 0) return levels;
  std::uint32_t noise = random.bits();
  for (unsigned char& level : levels) {
    noise = noise * 1664525u + 1013904223u;
    level = static_cast<unsigned char>(level + static_cast<int>((noise >> 16) % static_cast<unsigned>(grain)));
  }
  return levels;
}

/** The bytes of a row. */
inline int row_bytes(Layout layout, int cols) {
  if (layout == Layout::kBilevel) return (cols + 7) / 8;
  return layout == Layout::kGray ? cols : layout == Layout::kBgr || layout == Layout::kRgb ? 3 * cols : 4 * cols;
}

/** A scan of that layout and size, with its pixels. */
class DrawnScan {
 public:
  DrawnScan(support::Random& random, Layout layout, int rows, int cols)
      : layout_(layout), rows_(rows), cols_(cols), stride_(row_bytes(layout, cols)) {
    const Bytes levels = any_levels(random, rows, cols);
    // Exactly as large as the pixels, so that the address sanitizer sees what is read around them.
    pixels_.resize(static_cast<std::size_t>(rows * stride_));
    if (layout == Layout::kBilevel) {
      set_bits(levels);
      return;
    }
    const std::size_t channels = pixels_.size() / levels.size();
    for (std::size_t i = 0; i < pixels_.size(); ++i) pixels_[i] = levels[i / channels];
    if (channels > 1 && random.one_in(3)) {
      for (std::size_t i = 0; i < pixels_.size(); i += 4) pixels_[i] = static_cast<unsigned char>(pixels_[i] ^ 0x55);
    }
  }

  Scan scan() const { return {{pixels_.data(), rows_, cols_, stride_}, layout_}; }

 private:
  void set_bits(const Bytes& levels) {
    for (int row = 0; row < rows_; ++row) {
      for (int col = 0; col < cols_; ++col) {
        if (levels[static_cast<std::size_t>(row * cols_ + col)] < 128) continue;
        pixels_[static_cast<std::size_t>(row * stride_ + col / 8)] |= static_cast<unsigned char>(0x80 >> col % 8);
      }
    }
  }

  Layout layout_;
  int rows_;
  int cols_;
  std::ptrdiff_t stride_;
  Bytes pixels_;
};

}  // namespace fuzz

#endif
