#include <array>
#include <cstdint>

#include "image/work_array.h"
#include "scale/enlarge.h"
#include "scale/interleave.h"
#include "scale/kernels.h"

namespace vantrel::scale {
namespace {

unsigned char clamped(int value) { return static_cast<unsigned char>(std::clamp(value, 0, 255)); }

/**
 * Makes the target's rows. Positions without a pixel before them and two behind repeat the source's pixel. The values
 * between the pixels of a row are kept, unclamped, as long as a later row takes them in: four rows of them.
 */
class CubicRows {
 public:
  CubicRows(ConstPixels source, int channels)
      : source_(source),
        step_(channels),
        bytes_(source.cols * channels),
        end_(bytes_ - 2 * step_),
        halves_(2 * static_cast<std::size_t>(bytes_)),
        between_(kTaps * static_cast<std::size_t>(bytes_)) {}

  bool ready() const { return halves_.ready() && between_.ready(); }

  Halves make(int y, bool between_rows) {
    const unsigned char* row = source_.row(y);
    if (y - 1 < 0 || y + 2 >= source_.rows) return {row, row};
    return between_rows ? make_between(y) : make_along(y);
  }

 private:
  static constexpr int kTaps = 4;

  Halves make_along(int y);
  Halves make_between(int y);
  const std::int16_t* between_pixels(int y);
  /** Copies the pixels that are too near to the row's ends for the kernel. */
  void copy_ends(const unsigned char* row, unsigned char* result) const;

  ConstPixels source_;
  int step_;
  int bytes_;  // in a row
  int end_;    // the kernel covers the bytes from `step_` to before `end_`
  image::WorkArray<unsigned char> halves_;
  image::WorkArray<std::int16_t> between_;
  std::array<int, kTaps> kept_ = {-1, -1, -1, -1};  // the row whose values lie in each quarter of `between_`
};

const std::int16_t* CubicRows::between_pixels(int y) {
  const int slot = y % kTaps;
  std::int16_t* values = between_.get() + std::ptrdiff_t{slot} * bytes_;
  int& kept = kept_[static_cast<std::size_t>(slot)];
  if (kept == y) return values;
  kept = y;
  const unsigned char* p = source_.row(y);
  kernels->cubic_values({p, p + step_, p + 2 * step_, p + 3 * step_}, end_ - step_, values + step_);
  return values;
}

void CubicRows::copy_ends(const unsigned char* row, unsigned char* result) const {
  const int first = std::min(step_, bytes_);
  const int last = std::max(end_, first);
  std::copy(row, row + first, result);
  std::copy(row + last, row + bytes_, result + last);
}

Halves CubicRows::make_along(int y) {
  const unsigned char* row = source_.row(y);
  const std::int16_t* values = between_pixels(y);
  unsigned char* odd = halves_.get() + bytes_;
  kernels->clamp(values + step_, end_ - step_, odd + step_);
  copy_ends(row, odd);
  return {row, odd};
}

Halves CubicRows::make_between(int y) {
  const unsigned char* p[kTaps];
  const std::int16_t* h[kTaps];
  for (int t = 0; t < kTaps; ++t) {
    p[t] = source_.row(y - 1 + t) + step_;
    h[t] = between_pixels(y - 1 + t) + step_;
  }
  unsigned char* even = halves_.get();
  unsigned char* odd = even + bytes_;
  kernels->cubic_of_bytes(p, end_ - step_, even + step_);
  kernels->cubic_of_values(h, end_ - step_, odd + step_);
  copy_ends(source_.row(y), even);
  copy_ends(source_.row(y), odd);
  return {even, odd};
}

}  // namespace

void plain::cubic_values(const ByteTaps& p, int count, std::int16_t* result) {
  for (int i = 0; i < count; ++i) {
    result[i] = static_cast<std::int16_t>(cubic_midpoint(p[0][i], p[1][i], p[2][i], p[3][i]));
  }
}

void plain::cubic_of_bytes(const ByteTaps& p, int count, unsigned char* result) {
  for (int i = 0; i < count; ++i) result[i] = clamped(cubic_midpoint(p[0][i], p[1][i], p[2][i], p[3][i]));
}

void plain::cubic_of_values(const ValueTaps& h, int count, unsigned char* result) {
  for (int i = 0; i < count; ++i) result[i] = clamped(cubic_midpoint(h[0][i], h[1][i], h[2][i], h[3][i]));
}

void plain::clamp(const std::int16_t* values, int count, unsigned char* result) {
  for (int i = 0; i < count; ++i) result[i] = clamped(values[i]);
}

bool enlarge_bicubic(ConstPixels source, Pixels target, int channels) {
  if (source.empty()) return true;
  CubicRows rows(source, channels);
  if (!rows.ready()) return false;
  write_rows(rows, source, target, channels);
  return true;
}

}  // namespace vantrel::scale
