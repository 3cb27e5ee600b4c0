/**
 * @file outline.h
 * @brief A region as one sees it from the four sides: what it hides within does not matter.
 */
#ifndef VANTREL_ANYWHERE_OUTLINE_H
#define VANTREL_ANYWHERE_OUTLINE_H

#include <cstdint>

#include "anywhere/regions.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/**
 * The first and the end of a region in each row and each column of its box, rows [top, bottom) and columns
 * [left, right).
 */
class Outline {
 public:
  Outline(int rows, int cols)
      : row_firsts_(size(rows)), row_ends_(size(rows)), col_firsts_(size(cols)), col_ends_(size(cols)) {}

  bool ready() const { return row_firsts_.ready() && row_ends_.ready() && col_firsts_.ready() && col_ends_.ready(); }
  void trace(const RegionFinder& finder, const Region& region);

  int left() const { return left_; }
  int top() const { return top_; }
  int right() const { return right_; }
  int bottom() const { return bottom_; }
  int row_first(int row) const { return row_firsts_[size(row)]; }
  int row_end(int row) const { return row_ends_[size(row)]; }
  int col_first(int col) const { return col_firsts_[size(col)]; }
  int col_end(int col) const { return col_ends_[size(col)]; }
  /** The pixels between the ends of the rows. */
  int filled_area() const;

 private:
  static std::size_t size(int value) { return static_cast<std::size_t>(value); }
  void find_box(const RegionFinder& finder, const Region& region);

  image::WorkArray<std::uint16_t> row_firsts_;
  image::WorkArray<std::uint16_t> row_ends_;
  image::WorkArray<std::uint16_t> col_firsts_;
  image::WorkArray<std::uint16_t> col_ends_;
  int left_ = 0;
  int top_ = 0;
  int right_ = 0;
  int bottom_ = 0;
};

}  // namespace vantrel::anywhere

#endif
