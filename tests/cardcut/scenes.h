/**
 * @file scenes.h
 * @brief Hand-made scenes for the card finders.
 */
#ifndef VANTREL_TESTS_CARDCUT_SCENES_H
#define VANTREL_TESTS_CARDCUT_SCENES_H

#include <algorithm>
#include <array>

#include "images.h"

namespace scenes {

using testing_images::Image;

/** Sets columns [x0, x1) of memory rows [y0, y1) to one value in every channel. */
inline void paint(Image& image, int x0, int x1, int y0, int y1, int value) {
  const int bytes = image.header().biBitCount / 8;
  for (int y = y0; y < y1; ++y) {
    std::fill(image.row(y) + x0 * bytes, image.row(y) + x1 * bytes, static_cast<unsigned char>(value));
  }
}

/** A filled disk of every pixel whose centre lies within `radius` of (cx, cy). */
inline void disk(Image& image, int cx, int cy, int radius, int value) {
  for (int y = cy - radius; y <= cy + radius; ++y) {
    for (int x = cx - radius; x <= cx + radius; ++x) {
      if ((x - cx) * (x - cx) + (y - cy) * (y - cy) <= radius * radius) paint(image, x, x + 1, y, y + 1, value);
    }
  }
}

/** Columns [x0, x1) of memory rows [y0, y1) in bars of four dark and four light rows: every pixel of it is an edge. */
inline void ladder(Image& image, int x0, int x1, int y0, int y1) {
  for (int y = y0; y < y1; ++y) paint(image, x0, x1, y, y + 1, (y - y0) % 8 < 4 ? 0 : 255);
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
    const int value = ground + (card - ground) * step / 5;
    paint(image, left + radius, right - radius, low, top, value);
    paint(image, left, right, low + radius, top, value);
    disk(image, left + radius, low + radius, radius, value);
    disk(image, right - 1 - radius, low + radius, radius, value);
  }
}

/** left, top, right, bottom. */
using Bounds = std::array<int, 4>;

inline Bounds bounds_of(const MYRECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

}  // namespace scenes

#endif
