#include "scale/interleave.h"

#include <cstddef>
#include <cstring>

namespace vantrel::scale {
namespace {

/** Pixels of one byte, or of four. */
template <std::ptrdiff_t kChannels>
void interleave(const Halves& halves, std::ptrdiff_t pairs, unsigned char* out) {
  const auto [even, odd] = halves;
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    std::memcpy(out + 2 * kChannels * i, even + kChannels * i, kChannels);
    std::memcpy(out + 2 * kChannels * i + kChannels, odd + kChannels * i, kChannels);
  }
}

/**
 * Pixels of three bytes, all but the last pair moved as four bytes at once; what the fourth byte spills over is written
 * next.
 */
template <>
void interleave<3>(const Halves& halves, std::ptrdiff_t pairs, unsigned char* out) {
  if (pairs == 0) return;
  const auto [even, odd] = halves;
  const std::ptrdiff_t last = pairs - 1;
  for (std::ptrdiff_t i = 0; i < last; ++i) {
    std::memcpy(out + 6 * i, even + 3 * i, 4);
    std::memcpy(out + 6 * i + 3, odd + 3 * i, 4);
  }
  std::memcpy(out + 6 * last, even + 3 * last, 3);
  std::memcpy(out + 6 * last + 3, odd + 3 * last, 3);
}

}  // namespace

void write_row(const Halves& halves, int source_cols, int channels, unsigned char* row, int cols) {
  const int pairs = std::min(source_cols, cols / 2);
  const auto fill = channels == 3 ? interleave<3> : channels == 4 ? interleave<4> : interleave<1>;
  fill(halves, pairs, row);
  const unsigned char* next = halves.even + std::ptrdiff_t{std::min(pairs, source_cols - 1)} * channels;
  for (std::ptrdiff_t c = std::ptrdiff_t{2} * pairs; c < cols; ++c) std::copy_n(next, channels, row + c * channels);
}

}  // namespace vantrel::scale
