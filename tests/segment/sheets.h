/**
 * @file sheets.h
 * @brief Small black-and-white sheets for the steps of card segmentation.
 */
#ifndef VANTREL_TESTS_SEGMENT_SHEETS_H
#define VANTREL_TESTS_SEGMENT_SHEETS_H

#include "image/view.h"
#include "support/drawing.h"

namespace testing_sheets {

/** A white sheet on which pixels are blackened. Its rows are longer than the sheet; what is behind them is black. */
class Sheet {
 public:
  Sheet(int rows, int cols) : cols_(cols), image_(cols + kPadding, rows, 8) {
    support::fill(image_, 0, cols, 0, rows, 255);
  }

  /** Blackens columns [from, to) of memory row r. */
  Sheet& blacken(int r, int from, int to) {
    support::fill(image_, from, to, r, r + 1, 0);
    return *this;
  }

  vantrel::image::ConstPixels view() const { return {image_.record().pBits, image_.height(), cols_, image_.stride()}; }

 private:
  static constexpr int kPadding = 3;

  int cols_;
  support::Image image_;
};

}  // namespace testing_sheets

#endif
