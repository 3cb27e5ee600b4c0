/**
 * @file cardcut_drawing.h
 * @brief Cards on a flat ground, drawn for the card finders.
 */
#ifndef VANTREL_TESTS_REFERENCE_CARDCUT_DRAWING_H
#define VANTREL_TESTS_REFERENCE_CARDCUT_DRAWING_H

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

#include "images.h"

namespace reference {

/** Blue, green, red. */
using Ink = std::array<int, 3>;

/** A drawing in columns and memory rows; what is drawn later covers what was there. */
class CutDrawing {
 public:
  CutDrawing(int width, int height, Ink ground)
      : width_(width), height_(height), ground_(ground), pixels_(static_cast<std::size_t>(width * height), ground) {}

  /** Columns x0..x1-1 of rows y0..y1-1; what lies outside is left out. */
  void fill(int x0, int x1, int y0, int y1, Ink ink) {
    for (int y = std::max(y0, 0); y < std::min(y1, height_); ++y) {
      for (int x = std::max(x0, 0); x < std::min(x1, width_); ++x) at(x, y) = ink;
    }
  }

  /** Four rows of one ink, four of the other, and so on: every pixel changes strongly across the rows. */
  void ladder(int x0, int x1, int y0, int y1, Ink one, Ink other) {
    for (int y = y0; y < y1; ++y) fill(x0, x1, y, y + 1, (y - y0) % 8 < 4 ? one : other);
  }

  /** Columns x0..x1-1 in stripes one column wide and one apart. */
  void stripes(int x0, int x1, int y0, int y1, int wide, Ink ink) {
    for (int x = x0; x < x1; x += 2 * wide) fill(x, std::min(x + wide, x1), y0, y1, ink);
  }

  /** Columns x0..x1-1 from a slanted border (its row at the drawing's centre column) up to row y1-1. */
  void slab(int x0, int x1, double border, double slope, int y1, Ink ink) {
    for (int x = std::max(x0, 0); x < std::min(x1, width_); ++x) {
      fill(x, x + 1, static_cast<int>(std::floor(border + slope * (x - width_ / 2) + 0.5)), y1, ink);
    }
  }

  /** A rectangle with round corners, turned by `angle` about its centre, its edges one pixel soft. */
  void card(double cx, double cy, double half_width, double half_height, double radius, double angle, Ink ink) {
    const double co = std::cos(angle);
    const double si = std::sin(angle);
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x) {
        const double u = std::abs((x - cx) * co + (y - cy) * si) - half_width + radius;
        const double v = std::abs((y - cy) * co - (x - cx) * si) - half_height + radius;
        if (u < -1.0 && v < -1.0 && radius >= 0.0) {
          at(x, y) = ink;
          continue;
        }
        const double outside = std::sqrt(std::max(u, 0.0) * std::max(u, 0.0) + std::max(v, 0.0) * std::max(v, 0.0)) +
                               std::min(std::max(u, v), 0.0) - radius;
        blend(at(x, y), ink, std::clamp(0.5 - outside, 0.0, 1.0));
      }
    }
  }

  /** The same shift for all three inks of a pixel, up to `amplitude` either way. */
  void noise(std::mt19937& random, int amplitude) {
    auto state = static_cast<std::uint32_t>(random());
    const auto range = static_cast<std::uint32_t>(2 * amplitude + 1);
    for (Ink& pixel : pixels_) {
      state = state * 1664525u + 1013904223u;
      const int shift = static_cast<int>((state >> 16) * range >> 16) - amplitude;
      for (int& ink : pixel) ink = ink + shift < 0 ? 0 : ink + shift > 255 ? 255 : ink + shift;
    }
  }

  /** As an image of 24 bits, or of 8 bits by its green. Padding bytes are odd values that nothing should read. */
  testing_images::Image image(int bits) const {
    testing_images::Image image(width_, height_, bits, 0xA5);
    for (int y = 0; y < height_; ++y) {
      unsigned char* row = image.row(y);
      for (int x = 0; x < width_; ++x) {
        const Ink& pixel = pixels_[static_cast<std::size_t>(y * width_ + x)];
        if (bits == 8) {
          row[x] = static_cast<unsigned char>(pixel[1]);
        } else {
          for (std::size_t k = 0; k < 3; ++k) row[3 * x + static_cast<int>(k)] = static_cast<unsigned char>(pixel[k]);
        }
      }
    }
    return image;
  }

  int width() const { return width_; }
  int height() const { return height_; }
  Ink ground() const { return ground_; }

 private:
  Ink& at(int x, int y) { return pixels_[static_cast<std::size_t>(y * width_ + x)]; }
  static void blend(Ink& under, const Ink& over, double share) {
    for (std::size_t k = 0; k < 3; ++k) {
      under[k] = static_cast<int>(under[k] + (over[k] - under[k]) * share + 0.5);
    }
  }

  int width_;
  int height_;
  Ink ground_;
  std::vector<Ink> pixels_;
};

}  // namespace reference

#endif
