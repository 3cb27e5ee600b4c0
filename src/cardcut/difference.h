/**
 * @file difference.h
 * @brief How pixels differ, in gray and in colour: one pair at a time, and a run of a row at a time.
 */
#ifndef VANTREL_CARDCUT_DIFFERENCE_H
#define VANTREL_CARDCUT_DIFFERENCE_H

#include <cstdint>

namespace vantrel::cardcut {

/** Pixels of one gray level. */
struct GrayPixel {
  static constexpr int kBytes = 1;
  static int difference(const unsigned char* a, const unsigned char* b) { return *a - *b; }
};

/** Pixels of blue, green and red. */
struct ColourPixel {
  static constexpr int kBytes = 3;
  /** The Euclidean distance, truncated; negative when `b` is darker by the sum of its channels. */
  static int difference(const unsigned char* a, const unsigned char* b);
};

/** The first of some consecutive pixels of a row, and those two rows before and two rows after it in memory. */
struct Run {
  const unsigned char* before;
  const unsigned char* here;
  const unsigned char* after;
};

/** The longest run whose contrasts are taken at once. */
inline constexpr int kRunLength = 64;

/**
 * Writes the contrasts of `count` <= kRunLength pixels: how much each changes across rows, less how much it changes
 * across columns. Where neither change exceeds `edge` the contrast may be written as 0. Returns the largest magnitude
 * written, so that flat runs can be passed over.
 */
using Contrasts = int(const Run& run, int count, int edge, std::int16_t* result);

Contrasts gray_row_contrasts;  ///< the changes across rows alone
Contrasts gray_contrasts;
Contrasts colour_contrasts;

}  // namespace vantrel::cardcut

#endif
