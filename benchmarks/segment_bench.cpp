#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "segment/exports.h"
#include "support/image.h"
#include "support/random.h"

namespace {

using support::Image;
using support::Random;

/** A4 at 300 dots per inch. */
constexpr int kWidth = 2480;
constexpr int kHeight = 3508;
constexpr int kFactor = 3;

/** Fills columns [left, right) of rows [bottom, top) with noise that is mostly dark. */
void draw_block(Image& sheet, int left, int right, int bottom, int top, Random& random) {
  const int bits = sheet.header().biBitCount;
  for (int r = bottom; r < top; ++r) {
    for (int i = left * bits / 8; i < right * bits / 8; ++i)
      sheet.at(r, i) = static_cast<unsigned char>(random.pick(0, 159));
  }
}

/** Eight cards in two columns, each two blocks of text on white. */
Image sheet_of_cards(int bit_count) {
  Image sheet(kWidth, kHeight, bit_count, 0xFF);
  Random random(1);
  for (int column = 0; column < 2; ++column) {
    for (int row = 0; row < 4; ++row) {
      const int left = 100 + column * (kWidth / 2);
      const int bottom = 120 + row * 850;
      draw_block(sheet, left, left + 900, bottom, bottom + 200, random);
      draw_block(sheet, left + 40, left + 700, bottom + 300, bottom + 520, random);
    }
  }
  return sheet;
}

/** Times are told for each pixel of the scan, also where only some of them are read. */
void count_pixels(benchmark::State& state) {
  state.SetItemsProcessed(std::int64_t{kWidth} * kHeight * state.iterations());
}

using Reduction = bool (*)(BITMAPPTR*, BITMAPPTR*, int);

void reduce(benchmark::State& state, Reduction reduction, int bit_count) {
  Image scan = sheet_of_cards(bit_count);
  for (auto _ : state) {
    Image reduced;
    benchmark::DoNotOptimize(reduction(scan.ptr(), reduced.ptr(), kFactor));
    benchmark::DoNotOptimize(reduced.ptr()->pBits);
  }
  count_pixels(state);
}
BENCHMARK_CAPTURE(reduce, colour, Color2ScaledGray, 24)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(reduce, gray, Gray2ScaledGray, 8)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(reduce, bilevel, Bin2ScaledGray, 1)->Unit(benchmark::kMicrosecond);

void binarise(benchmark::State& state) {
  Image scan = sheet_of_cards(8);
  const std::vector<unsigned char> gray = scan.pixels();
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(gray.begin(), gray.end(), scan.ptr()->pBits);
    state.ResumeTiming();
    benchmark::DoNotOptimize(Moving_Average(scan.ptr()->pBits, kWidth, kHeight, kWidth));
    benchmark::ClobberMemory();
  }
  count_pixels(state);
}
BENCHMARK(binarise)->Unit(benchmark::kMillisecond);

void segment_sheet(benchmark::State& state, int bit_count) {
  Image scan = sheet_of_cards(bit_count);
  RectRegions regions{};
  for (auto _ : state) benchmark::DoNotOptimize(CardSeg(scan.ptr(), regions));
  if (regions.firstCount + regions.secondCount != 8) state.SkipWithError("the eight cards were not found");
  count_pixels(state);
}
BENCHMARK_CAPTURE(segment_sheet, colour, 24)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(segment_sheet, gray, 8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(segment_sheet, bilevel, 1)->Unit(benchmark::kMillisecond);

void clip(benchmark::State& state) {
  Image scan = sheet_of_cards(8);
  int first = 0;
  int second = 0;
  for (auto _ : state) benchmark::DoNotOptimize(ClipImg(scan.ptr(), first, second));
  count_pixels(state);
}
BENCHMARK(clip)->Unit(benchmark::kMillisecond);

}  // namespace
