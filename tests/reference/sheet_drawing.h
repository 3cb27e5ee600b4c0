/**
 * @file sheet_drawing.h
 * @brief Sheets of cards, drawn at the reduced scale at which they are searched.
 */
#ifndef VANTREL_TESTS_REFERENCE_SHEET_DRAWING_H
#define VANTREL_TESTS_REFERENCE_SHEET_DRAWING_H

#include <algorithm>
#include <cstddef>
#include <random>
#include <vector>

#include "images.h"

namespace reference {

/** Black marks on a white sheet. */
class SheetDrawing {
 public:
  SheetDrawing(int width, int height)
      : width_(width), height_(height), black_(static_cast<std::size_t>(width * height), 0) {}

  /** Columns x0..x1-1 of rows y0..y1-1; what lies outside is left out. */
  void bar(int x0, int x1, int y0, int y1) {
    for (int y = std::max(y0, 0); y < std::min(y1, height_); ++y) {
      for (int x = std::max(x0, 0); x < std::min(x1, width_); ++x) black_[index(x, y)] = 1;
    }
  }

  /**
   * The full-size image whose every n-th pixel of every n-th row is the drawing; the pixels between them are set to
   * what the search must not look at. `rest` more columns and rows follow that no whole step reaches.
   */
  testing_images::Image image(int bits, int n, int rest, int x_per_metre, int y_per_metre, std::mt19937& random) const {
    testing_images::Image image(width_ * n + rest, height_ * n + rest, bits, static_cast<unsigned char>(random()));
    image.header().biXPelsPerMeter = x_per_metre;
    image.header().biYPelsPerMeter = y_per_metre;
    const int dark = static_cast<int>(random() % 80);
    const int light = 180 + static_cast<int>(random() % 76);
    for (int y = 0; y < height_; ++y) {
      unsigned char* row = image.row(y * n);
      for (int x = 0; x < width_; ++x) {
        const bool black = black_[index(x, y)] != 0;
        if (bits == 1) {
          const int mask = 128 >> (x * n % 8);
          unsigned char& byte = row[x * n / 8];
          byte = static_cast<unsigned char>(black ? byte & ~mask : byte | mask);
        } else {
          const auto level = static_cast<unsigned char>(black ? dark : light);
          for (int k = 0; k < bits / 8; ++k) row[x * n * (bits / 8) + k] = level;
        }
      }
    }
    return image;
  }

  int width() const { return width_; }
  int height() const { return height_; }

 private:
  std::size_t index(int x, int y) const { return static_cast<std::size_t>(y * width_ + x); }

  int width_;
  int height_;
  std::vector<unsigned char> black_;
};

}  // namespace reference

#endif
