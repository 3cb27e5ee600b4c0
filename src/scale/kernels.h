/**
 * @file kernels.h
 * @brief The innermost loops of this room, of which there are several forms.
 */
#ifndef VANTREL_SCALE_KERNELS_H
#define VANTREL_SCALE_KERNELS_H

#include <cstdint>

namespace vantrel::scale {

/** Four rows of bytes, or of values between their pixels: what the cubic kernel takes in. */
using ByteTaps = const unsigned char* const[4];
using ValueTaps = const std::int16_t* const[4];

/** Results lie apart from what they are made of. */
struct Kernels {
  /** Rounded means of two bytes. */
  void (*means)(const unsigned char* a, const unsigned char* b, int count, unsigned char* result);

  /** Rounded means of two neighbours in each of two rows, `step` bytes apart. */
  void (*means_of_four)(const unsigned char* a, const unsigned char* b, int step, int count, unsigned char* result);

  /** The cubic kernel's values, not clamped. */
  void (*cubic_values)(const ByteTaps& taps, int count, std::int16_t* result);

  /** The same as bytes, of bytes and of values; and such values themselves. */
  void (*cubic_of_bytes)(const ByteTaps& taps, int count, unsigned char* result);
  void (*cubic_of_values)(const ValueTaps& taps, int count, unsigned char* result);
  void (*clamp)(const std::int16_t* values, int count, unsigned char* result);

  /** Pixels of one byte, and of three, from two rows in turn: `pairs` of each. */
  void (*interleave_1)(const unsigned char* even, const unsigned char* odd, int pairs, unsigned char* result);
  void (*interleave_3)(const unsigned char* even, const unsigned char* odd, int pairs, unsigned char* result);
};

/** The form for this processor. */
extern const Kernels* kernels;

namespace plain {

void means(const unsigned char* a, const unsigned char* b, int count, unsigned char* result);
void means_of_four(const unsigned char* a, const unsigned char* b, int step, int count, unsigned char* result);
void cubic_values(const ByteTaps& taps, int count, std::int16_t* result);
void cubic_of_bytes(const ByteTaps& taps, int count, unsigned char* result);
void cubic_of_values(const ValueTaps& taps, int count, unsigned char* result);
void clamp(const std::int16_t* values, int count, unsigned char* result);
void interleave_1(const unsigned char* even, const unsigned char* odd, int pairs, unsigned char* result);
void interleave_3(const unsigned char* even, const unsigned char* odd, int pairs, unsigned char* result);

inline constexpr Kernels kKernels{means,           means_of_four, cubic_values, cubic_of_bytes,
                                  cubic_of_values, clamp,         interleave_1, interleave_3};

}  // namespace plain
}  // namespace vantrel::scale

#endif
