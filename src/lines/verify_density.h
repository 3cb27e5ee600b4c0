/**
 * @file verify_density.h
 * @brief Tests of candidate horizontal border lines by the density of edge pixels in the rows beyond them.
 */
#ifndef VANTREL_LINES_VERIFY_DENSITY_H
#define VANTREL_LINES_VERIFY_DENSITY_H

#include <cstdint>

#include "geometry/line.h"
#include "image/view.h"
#include "image/work_array.h"

namespace vantrel::lines {

/** How many bytes of every row of an edge map are edge pixels, modulo 2^16. Rows outside the map have none. */
class EdgeHistogram {
 public:
  /** Counts `row_bytes` bytes of every row; check `ready` before use. */
  EdgeHistogram(image::ConstPixels edge, int row_bytes);

  bool ready() const { return counts_.ready(); }
  int rows() const { return rows_; }
  int operator[](std::int64_t row) const {
    return row >= 0 && row < rows_ ? counts_[static_cast<std::size_t>(row)] : 0;
  }

  /** Edge pixels in rows [from, to). */
  std::int64_t sum(std::int64_t from, std::int64_t to) const;

 private:
  int rows_;
  image::WorkArray<std::uint16_t> counts_;
};

/** Whether two candidates can be told apart at all: they are not one line, and not both at the image's edge. */
bool worth_comparing(std::int64_t L1, std::int64_t L2, int rows);

/** Whether the rows beyond the first of two candidates hold more than ten times as many edge pixels as the second's. */
bool denser_beyond_first(const EdgeHistogram& histogram, std::int64_t L1, std::int64_t L2, geometry::Side side,
                         int row_bytes);

/** Rejects a line beyond which between 1/22 and 1/16 of the band are edge pixels. */
bool clear_beyond(const EdgeHistogram& histogram, std::int64_t L, geometry::Side side, int row_bytes);

}  // namespace vantrel::lines

#endif
