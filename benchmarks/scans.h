/**
 * @file scans.h
 * @brief Images to measure on: a light card with print on a darker, slightly noisy scanner background.
 */
#ifndef VANTREL_BENCHMARKS_SCANS_H
#define VANTREL_BENCHMARKS_SCANS_H

#include "support/image.h"
#include "support/random.h"

namespace benchmark_scans {

/** The background's level, how gently the card's borders rise (by 1 in `run`), and where the card ends above. */
struct Ground {
  int level;
  int run;
  int top_tenths;
};

inline constexpr Ground kFlatGround{120, 57, 8};
inline constexpr Ground kDarkGlass{46, 1 << 14, 9};

/**
 * A card that covers the image but for a tenth below, a sixteenth at the sides and what the ground leaves above,
 * with lines of print in its middle. 8 or 24 bits, 300 dots per inch.
 */
inline support::Image card_scan(int width, int height, int bit_count, const Ground& ground = kFlatGround) {
  support::Image scan(width, height, bit_count);
  support::Random random(20);
  const int channels = bit_count / 8;
  const int border = height / 10;
  const int side = width / 16;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const int v = y - x / ground.run;
      const int u = x + y / ground.run;
      const bool card = v >= border && v < ground.top_tenths * height / 10 && u >= side && u < width - side;
      const bool text = v > height / 4 && v < 7 * height / 10 && u > width / 5 && u < 3 * width / 4 && v / 24 % 2 == 0;
      const bool ink = text && (u / 3 * 7 + v / 4 * 5) % 11 < 4;
      for (int c = 0; c < channels; ++c) {
        const int level = !card ? ground.level + 10 * c : ink ? 40 + 25 * c : 235 - 5 * c;
        scan.at(y, x * channels + c) = static_cast<unsigned char>(level + random.pick(-3, 3));
      }
    }
  }
  return scan;
}

}  // namespace benchmark_scans

#endif
