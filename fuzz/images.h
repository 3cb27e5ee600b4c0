/**
 * @file images.h
 * @brief Images of all depths, sizes and contents, by what an input says.
 */
#ifndef VANTREL_FUZZ_IMAGES_H
#define VANTREL_FUZZ_IMAGES_H

#include <algorithm>
#include <array>

#include "support/drawing.h"
#include "support/image.h"
#include "support/random.h"
#include "support/scans.h"

namespace fuzz {

using support::Image;
using support::Random;

/** A side of an image: mostly small, for speed; now and then none, or up to 300. */
inline int any_side(Random& random) {
  const int kind = random.pick(0, 63);
  if (kind == 0) return 0;
  if (kind < 40) return random.pick(1, 24);
  if (kind < 62) return random.pick(1, 64);
  return random.pick(1, 300);
}

inline int any_resolution(Random& random) {
  constexpr std::array kUsual = {0, 1, -1, 2835, 7874, 9842, 9843, 11811, 23622};
  return random.one_in(4) ? static_cast<int>(random.bits()) : kUsual[random.bits() % kUsual.size()];
}

/** Levels that a few bytes give: flat, noise, two levels, stripes or checks. */
inline void fill_with_pattern(Image& image, Random& random) {
  unsigned char* const end = image.end();
  const int kind = random.pick(0, 4);
  const unsigned char one = random.byte();
  const unsigned char other = random.byte();
  const int period = random.pick(1, 16);
  if (kind == 0) return std::fill(image.ptr()->pBits, end, one);
  if (kind == 1) return support::randomise(image, random);
  for (int row = 0; row < image.height(); ++row) {
    for (int at = 0; at < image.stride(); ++at) {
      const bool odd = kind == 2   ? row / period % 2 != 0
                       : kind == 3 ? at / period % 2 != 0
                                   : (row / period + at / period) % 2 != 0;
      image.at(row, at) = odd ? other : one;
    }
  }
}

/** An image of that depth: a drawn card on its ground, or a pattern. */
inline Image any_image(Random& random, int bit_count) {
  if ((bit_count == 8 || bit_count == 24) && random.one_in(3)) {
    const int cols = random.pick(8, 70);
    return support::draw(support::random_scan_of(random, cols, random.pick(8, 70)), bit_count, random);
  }
  const int width = any_side(random);
  const int height = any_side(random);
  Image image(width, height, bit_count, 0, any_resolution(random));
  image.header().biYPelsPerMeter = random.one_in(4) ? any_resolution(random) : image.header().biXPelsPerMeter;
  fill_with_pattern(image, random);
  return image;
}

inline int any_depth(Random& random) {
  constexpr std::array kDepths = {1, 4, 8, 8, 8, 8, 24, 24, 24, 16, 32};
  return kDepths[random.bits() % kDepths.size()];
}

}  // namespace fuzz

#endif
