/**
 * @file drawing.h
 * @brief What the tests draw with, on images of 8 and 24 bits in columns and memory rows: later shapes cover earlier
 * ones, and what lies outside the image is left out.
 */
#ifndef VANTREL_TESTS_SUPPORT_DRAWING_H
#define VANTREL_TESTS_SUPPORT_DRAWING_H

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "support/image.h"
#include "support/random.h"

namespace support {

/** Blue, green, red; a single level is gray. An image of 8 bits takes the green. */
struct Ink {
  Ink(int gray = 0) : levels{gray, gray, gray} {}
  Ink(int blue, int green, int red) : levels{blue, green, red} {}

  int& operator[](std::size_t channel) { return levels[channel]; }
  int operator[](std::size_t channel) const { return levels[channel]; }

  std::array<int, 3> levels;
};

/** Bytes of a pixel, and the ink's level for one of them. */
inline int channels_of(const Image& image) { return image.header().biBitCount / 8; }
inline int level_of(const Ink& ink, int channels, int channel) {
  return ink[channels == 1 ? 1 : static_cast<std::size_t>(channel)];
}

/** Columns x0..x1-1 of rows y0..y1-1. */
inline void fill(Image& image, int x0, int x1, int y0, int y1, const Ink& ink) {
  const int channels = channels_of(image);
  for (int y = std::max(y0, 0); y < std::min(y1, image.height()); ++y) {
    for (int x = std::max(x0, 0); x < std::min(x1, image.width()); ++x) {
      for (int k = 0; k < channels; ++k) {
        image.at(y, x * channels + k) = static_cast<unsigned char>(level_of(ink, channels, k));
      }
    }
  }
}

/** Every pixel whose centre lies within `radius` of (cx, cy). */
inline void disk(Image& image, int cx, int cy, int radius, const Ink& ink) {
  for (int y = cy - radius; y <= cy + radius; ++y) {
    for (int x = cx - radius; x <= cx + radius; ++x) {
      if ((x - cx) * (x - cx) + (y - cy) * (y - cy) <= radius * radius) fill(image, x, x + 1, y, y + 1, ink);
    }
  }
}

/** Four dark rows, four light ones, and so on: every pixel changes strongly across the rows. */
inline void ladder(Image& image, int x0, int x1, int y0, int y1) {
  for (int y = y0; y < y1; ++y) fill(image, x0, x1, y, y + 1, (y - y0) % 8 < 4 ? 0 : 255);
}

/** Columns x0..x1-1 in stripes `wide` columns wide and as far apart. */
inline void stripes(Image& image, int x0, int x1, int y0, int y1, int wide, const Ink& ink) {
  for (int x = x0; x < x1; x += 2 * wide) fill(image, x, std::min(x + wide, x1), y0, y1, ink);
}

/** Columns x0..x1-1 from a slanted border (its row at the image's centre column) up to row y1-1. */
inline void slab(Image& image, int x0, int x1, double border, double slope, int y1, const Ink& ink) {
  for (int x = std::max(x0, 0); x < std::min(x1, image.width()); ++x) {
    fill(image, x, x + 1, static_cast<int>(std::floor(border + slope * (x - image.width() / 2) + 0.5)), y1, ink);
  }
}

/**
 * A slab over columns [x0, x1) from row `bottom` up to `top`, its lower corners round. Its level rises from the
 * ground's in five steps from its border inwards: gradients then have many directions, as on a scan, where a hard edge
 * has two.
 */
inline void soft_slab(Image& image, int x0, int x1, int bottom, int top, int ground, int card) {
  constexpr int kRadius = 10;
  for (int step = 1; step <= 5; ++step) {
    const int inset = step - 1;
    const int left = x0 + inset;
    const int right = x1 - inset;
    const int low = bottom + inset;
    const int radius = kRadius - inset;
    const int level = ground + (card - ground) * step / 5;
    fill(image, left + radius, right - radius, low, top, level);
    fill(image, left, right, low + radius, top, level);
    disk(image, left + radius, low + radius, radius, level);
    disk(image, right - 1 - radius, low + radius, radius, level);
  }
}

/** A rectangle with round corners, turned about its centre. */
struct RoundCard {
  double cx;
  double cy;
  double half_width;
  double half_height;
  double radius;
  double angle;
};

/** Draws the card, its edges one pixel soft. */
inline void round_card(Image& image, const RoundCard& card, const Ink& ink) {
  const double co = std::cos(card.angle);
  const double si = std::sin(card.angle);
  const int channels = channels_of(image);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const double u = std::abs((x - card.cx) * co + (y - card.cy) * si) - card.half_width + card.radius;
      const double v = std::abs((y - card.cy) * co - (x - card.cx) * si) - card.half_height + card.radius;
      const double outside = std::sqrt(std::max(u, 0.0) * std::max(u, 0.0) + std::max(v, 0.0) * std::max(v, 0.0)) +
                             std::min(std::max(u, v), 0.0) - card.radius;
      const double share = std::clamp(0.5 - outside, 0.0, 1.0);
      for (int k = 0; k < channels; ++k) {
        unsigned char& under = image.at(y, x * channels + k);
        under = static_cast<unsigned char>(under + (level_of(ink, channels, k) - under) * share + 0.5);
      }
    }
  }
}

/** The same shift for all levels of a pixel, up to `amplitude` either way. */
inline void noise(Image& image, Random& random, int amplitude) {
  std::uint32_t state = random.bits();
  const auto range = static_cast<std::uint32_t>(2 * amplitude + 1);
  const int channels = channels_of(image);
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      state = state * 1664525u + 1013904223u;
      const int shift = static_cast<int>((state >> 16) * range >> 16) - amplitude;
      for (int k = 0; k < channels; ++k) {
        unsigned char& level = image.at(y, x * channels + k);
        level = static_cast<unsigned char>(std::clamp(level + shift, 0, 255));
      }
    }
  }
}

/** How a sheet drawn at the scale at which it is searched becomes a full-size scan. */
struct Enlargement {
  int bits;
  int step;  // every step-th pixel of every step-th row is the drawing's
  int rest;  // more columns and rows that no whole step reaches
  int x_per_metre;
  int y_per_metre;
};

/**
 * The full-size scan of an 8-bit drawing in black and white. The pixels between the drawing's are set to what a search
 * must not look at.
 */
inline Image enlarged(const Image& marks, const Enlargement& to, Random& random) {
  const int n = to.step;
  Image scan(marks.width() * n + to.rest, marks.height() * n + to.rest, to.bits, random.byte());
  scan.header().biXPelsPerMeter = to.x_per_metre;
  scan.header().biYPelsPerMeter = to.y_per_metre;
  const int dark = random.pick(0, 79);
  const int light = random.pick(180, 255);
  for (int y = 0; y < marks.height(); ++y) {
    for (int x = 0; x < marks.width(); ++x) {
      const bool black = marks.at(y, x) == 0;
      if (to.bits == 1) {
        const int mask = 128 >> (x * n % 8);
        unsigned char& byte = scan.at(y * n, x * n / 8);
        byte = static_cast<unsigned char>(black ? byte & ~mask : byte | mask);
      } else {
        fill(scan, x * n, x * n + 1, y * n, y * n + 1, black ? dark : light);
      }
    }
  }
  return scan;
}

}  // namespace support

#endif
