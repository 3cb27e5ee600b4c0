/**
 * @file interleave.h
 * @brief Target rows put together from the pixels of their even and of their odd columns.
 */
#ifndef VANTREL_SCALE_INTERLEAVE_H
#define VANTREL_SCALE_INTERLEAVE_H

#include <algorithm>

#include "image/view.h"

namespace vantrel::scale {

using image::ConstPixels;
using image::Pixels;

/** A target row taken apart: the pixels of its even columns and those of its odd columns, one for each of the source.
 */
struct Halves {
  const unsigned char* even;
  const unsigned char* odd;
};

/** Writes a target row of `cols` columns, repeating the last even pixel behind twice the source's columns. */
void write_row(const Halves& halves, int source_cols, int channels, unsigned char* row, int cols);

/**
 * Fills the target. `rows.make(y, between)` gives the row at source row y or, when `between` is set, halfway to the
 * next; y ends with the source's last row, which is repeated.
 */
template <class Rows>
void write_rows(Rows& rows, ConstPixels source, Pixels target, int channels) {
  for (int r = 0; r < target.rows; ++r) {
    const int y = std::min(r / 2, source.rows - 1);
    write_row(rows.make(y, r % 2 != 0), source.cols, channels, target.row(r), target.cols);
  }
}

}  // namespace vantrel::scale

#endif
