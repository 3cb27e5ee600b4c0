/**
 * @file sheets.h
 * @brief Small black-and-white sheets for the steps of card segmentation.
 */
#ifndef VANTREL_TESTS_SEGMENT_SHEETS_H
#define VANTREL_TESTS_SEGMENT_SHEETS_H

#include <vector>

#include "image/bitmap.h"

namespace testing_sheets {

/** A white sheet on which pixels are blackened. Its rows are longer than the sheet; what is behind them is black. */
class Sheet {
 public:
  Sheet(int rows, int cols)
      : rows_(rows), cols_(cols), pixels_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols + kPadding)) {
    for (int r = 0; r < rows; ++r) {
      for (int c = 0; c < cols; ++c) at(r, c) = 255;
    }
  }

  /** Blackens columns [from, to) of memory row r. */
  Sheet& blacken(int r, int from, int to) {
    for (int c = from; c < to; ++c) at(r, c) = 0;
    return *this;
  }

  vantrel::ConstPixels view() const { return {pixels_.data(), rows_, cols_, cols_ + kPadding}; }

 private:
  static constexpr int kPadding = 3;
  unsigned char& at(int r, int c) { return pixels_[static_cast<std::size_t>(r * (cols_ + kPadding) + c)]; }

  int rows_;
  int cols_;
  std::vector<unsigned char> pixels_;
};

}  // namespace testing_sheets

#endif
