/**
 * @file scans.h
 * @brief Images to measure on: a light card with print on a darker, slightly noisy scanner background, and sheets of
 * cards. A picture is drawn once and then copied: the library that measures asks for it many times.
 */
#ifndef VANTREL_BENCHMARKS_SCANS_H
#define VANTREL_BENCHMARKS_SCANS_H

#include <benchmark/benchmark.h>

#include <compare>
#include <map>
#include <tuple>
#include <utility>

#include "support/image.h"
#include "support/random.h"
#include "support/scans.h"

namespace benchmark_scans {

/** Card scans from a thumbnail that stays in the processor's caches to one at 600 dots per inch. */
inline void scan_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"width", "height"})
      ->Args({320, 220})
      ->Args({650, 450})
      ->Args({1300, 900})
      ->Args({2600, 1800})
      ->Unit(benchmark::kMicrosecond);
}

/** The background's level, how gently the card's borders rise (by 1 in `run`), and where the card ends above. */
struct Ground {
  int level;
  int run;
  int top_tenths;
  auto operator<=>(const Ground&) const = default;
};

inline constexpr Ground kFlatGround{120, 57, 8};
inline constexpr Ground kDarkGlass{46, 1 << 14, 9};

inline support::Image draw_card_scan(int width, int height, int bit_count, const Ground& ground) {
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

/** The scan in black and white: a bit is set where the gray level is 128 or above. */
inline support::Image bilevel(const support::Image& gray) {
  support::Image scan(gray.width(), gray.height(), 1);
  for (int y = 0; y < gray.height(); ++y) {
    for (int x = 0; x < gray.width(); ++x) {
      if (gray.at(y, x) >= 128) scan.at(y, x / 8) |= static_cast<unsigned char>(128 >> x % 8);
    }
  }
  return scan;
}

/**
 * A card that covers the image but for a tenth below, a sixteenth at the sides and what the ground leaves above,
 * with lines of print in its middle. 1, 8 or 24 bits, 300 dots per inch.
 */
inline support::Image card_scan(int width, int height, int bit_count, const Ground& ground = kFlatGround) {
  static std::map<std::tuple<int, int, int, Ground>, support::Image> drawn;
  const auto known = drawn.find({width, height, bit_count, ground});
  if (known != drawn.end()) return known->second;
  support::Image scan = bit_count == 1 ? bilevel(draw_card_scan(width, height, 8, ground))
                                       : draw_card_scan(width, height, bit_count, ground);
  return drawn.try_emplace({width, height, bit_count, ground}, std::move(scan)).first->second;
}

/** The same of a benchmark's first two arguments, its width and height. */
inline support::Image card_scan(const benchmark::State& state, int bit_count, const Ground& ground = kFlatGround) {
  return card_scan(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), bit_count, ground);
}

/** Scans of one shape for the card below. */
inline void leaning_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"width", "height"})->Args({500, 300})->Args({1000, 600})->Args({2000, 1200});
  benchmark->Unit(benchmark::kMicrosecond);
}

/** A card that leans by two degrees, all of its borders within the frame in which gradients alone are looked at. */
inline support::Image leaning_card(const benchmark::State& state) {
  const auto width = static_cast<int>(state.range(0));
  support::Corners card{18, 12, 481, 12, 8, 290, 491, 290};
  for (double& place : card) place *= width / 500.0;
  return support::scan_of(card, width, static_cast<int>(state.range(1)));
}

/** A block of text on a sheet: its columns and rows at 300 dots per inch, as mostly dark noise. */
inline void draw_block(support::Image& sheet, int dpi, const support::Bounds& at, support::Random& random) {
  const int bits = sheet.header().biBitCount;
  const auto placed = [dpi](int pixels) { return pixels * dpi / 300; };
  const auto [left, top, right, bottom] = at;
  for (int r = placed(bottom); r < placed(top); ++r) {
    for (int i = placed(left) * bits / 8; i < placed(right) * bits / 8; ++i)
      sheet.at(r, i) = static_cast<unsigned char>(random.pick(0, 159));
  }
}

/** A sheet of A4: eight cards in two columns, each two blocks of text on white. 1, 8 or 24 bits. */
inline support::Image sheet_of_cards(int bit_count, int dpi = 300) {
  support::Image sheet(2480 * dpi / 300, 3508 * dpi / 300, bit_count, 0xFF);
  support::Random random(1);
  for (int column = 0; column < 2; ++column) {
    for (int row = 0; row < 4; ++row) {
      const int left = 100 + column * 1240;
      const int bottom = 120 + row * 850;
      draw_block(sheet, dpi, {left, bottom + 200, left + 900, bottom}, random);
      draw_block(sheet, dpi, {left + 40, bottom + 520, left + 700, bottom + 300}, random);
    }
  }
  return sheet;
}

}  // namespace benchmark_scans

#endif
