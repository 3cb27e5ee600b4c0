/**
 * @file difference.h
 * @brief How pixels differ, in gray and in colour: one pair at a time, and a run of a row at a time.
 */
#ifndef VANTREL_CARDCUT_DIFFERENCE_H
#define VANTREL_CARDCUT_DIFFERENCE_H

#include <cstdint>

#include "cardcut/card_cut.h"

namespace vantrel::cardcut {

/** Pixels of one gray level. */
struct GrayPixel {
  static constexpr int kBytes = 1;
  static int difference(const unsigned char* a, const unsigned char* b) { return *a - *b; }
};

/** Pixels of blue, green and red. */
struct ColourPixel {
  static constexpr int kBytes = 3;
  static int difference(const unsigned char* a, const unsigned char* b) {
    return ColorDiff(a[2], a[1], a[0], b[2], b[1], b[0]);
  }
};

/** The first of some consecutive pixels of a row, and those two rows later and two rows earlier in memory. */
struct Run {
  const unsigned char* later;
  const unsigned char* here;
  const unsigned char* earlier;
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
