#include "scale/interleave.h"

#include <cstddef>
#include <cstring>

#include "scale/kernels.h"

namespace vantrel::scale {
namespace {

/** Pixels of so many bytes. */
template <std::ptrdiff_t kChannels>
void interleave(const unsigned char* even, const unsigned char* odd, std::ptrdiff_t pairs, unsigned char* out) {
  for (std::ptrdiff_t i = 0; i < pairs; ++i) {
    std::memcpy(out + 2 * kChannels * i, even + kChannels * i, kChannels);
    std::memcpy(out + 2 * kChannels * i + kChannels, odd + kChannels * i, kChannels);
  }
}

}  // namespace

void plain::interleave_1(const unsigned char* even, const unsigned char* odd, int pairs, unsigned char* result) {
  interleave<1>(even, odd, pairs, result);
}

/** All but the last pair are moved as four bytes at once; what the fourth byte spills over is written next. */
void plain::interleave_3(const unsigned char* even, const unsigned char* odd, int pairs, unsigned char* result) {
  if (pairs == 0) return;
  const std::ptrdiff_t last = pairs - 1;
  for (std::ptrdiff_t i = 0; i < last; ++i) {
    std::memcpy(result + 6 * i, even + 3 * i, 4);
    std::memcpy(result + 6 * i + 3, odd + 3 * i, 4);
  }
  interleave<3>(even + 3 * last, odd + 3 * last, 1, result + 6 * last);
}

void write_row(const Halves& halves, int source_cols, int channels, unsigned char* row, int cols) {
  const int pairs = std::min(source_cols, cols / 2);
  switch (channels) {
    case 1:
      kernels->interleave_1(halves.even, halves.odd, pairs, row);
      break;
    case 3:
      kernels->interleave_3(halves.even, halves.odd, pairs, row);
      break;
    default:
      interleave<4>(halves.even, halves.odd, pairs, row);
  }
  const unsigned char* next = halves.even + std::ptrdiff_t{std::min(pairs, source_cols - 1)} * channels;
  for (std::ptrdiff_t c = std::ptrdiff_t{2} * pairs; c < cols; ++c) std::copy_n(next, channels, row + c * channels);
}

}  // namespace vantrel::scale
