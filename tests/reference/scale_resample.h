/**
 * @file scale_resample.h
 * @brief The two enlargements, the naive way: every output byte by its own rule.
 */
#ifndef VANTREL_TESTS_REFERENCE_SCALE_RESAMPLE_H
#define VANTREL_TESTS_REFERENCE_SCALE_RESAMPLE_H

#include <vector>

#include "support/picture.h"

namespace reference {

using support::Picture;

/** How many bilinear samples each rule made. */
struct BilinearRules {
  int source_pixel = 0;
  int mean_of_two_rows = 0;
  int mean_of_two_columns = 0;
  int mean_of_four = 0;
  int last_row_repeated = 0;
  int last_column_repeated = 0;
};

/** How many values each range had before its clamp. */
struct ClampedRange {
  int below_0 = 0;
  int within = 0;
  int above_255 = 0;
};

/** How many bicubic samples each rule made. */
struct BicubicRules {
  int rounding_column = 0;
  int border_row = 0;
  int border_column = 0;
  int source_pixel = 0;
  ClampedRange new_column;
  ClampedRange new_row;
  ClampedRange both;
  /** Samples one of whose four row values was out of range, which must not be clamped yet. */
  int row_value_below_0 = 0;
  int row_value_above_255 = 0;
};

/** The whole stream of output bytes. */
std::vector<unsigned char> bilinear(const Picture& source, int factor, BilinearRules& rules);
std::vector<unsigned char> bicubic(const Picture& source, BicubicRules& rules);

int cubic_kernel(int a, int b, int c, int d);

}  // namespace reference

#endif
