#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

#include "image/bitmap.h"
#include "segment/reduce.h"

namespace {

/** A4 at 300 dots per inch. */
constexpr int kWidth = 2480;
constexpr int kHeight = 3508;
constexpr int kResolution = 11811;
constexpr int kFactor = 3;

/** An image that owns its block. */
class Scan {
 public:
  explicit Scan(int bit_count) {
    created_ = CreateImage(&image_, kWidth, kHeight, bit_count, kResolution, kResolution);
  }
  Scan(const Scan&) = delete;
  Scan& operator=(const Scan&) = delete;
  ~Scan() { std::free(image_.pInfo); }

  bool created() const { return created_; }
  BITMAPPTR* get() { return &image_; }
  std::size_t bytes() const { return image_.pInfo->biSizeImage; }

 private:
  BITMAPPTR image_{};
  bool created_;
};

/** Fills columns [left, right) of rows [bottom, top) with noise that is mostly dark. */
void draw_block(BITMAPPTR& image, int left, int right, int bottom, int top, std::mt19937& random) {
  const int bits = image.pInfo->biBitCount;
  const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(image.pInfo->biSizeImage / kHeight);
  for (int r = bottom; r < top; ++r) {
    unsigned char* row = image.pBits + r * stride;
    for (int i = left * bits / 8; i < right * bits / 8; ++i) row[i] = static_cast<unsigned char>(random() % 160);
  }
}

/** Eight cards in two columns, each two blocks of text on white. */
void draw_sheet(BITMAPPTR& image) {
  std::mt19937 random(1);
  for (int column = 0; column < 2; ++column) {
    for (int row = 0; row < 4; ++row) {
      const int left = 100 + column * (kWidth / 2);
      const int bottom = 120 + row * 850;
      draw_block(image, left, left + 900, bottom, bottom + 200, random);
      draw_block(image, left + 40, left + 700, bottom + 300, bottom + 520, random);
    }
  }
}

/** Times are told for each pixel of the scan, also where only some of them are read. */
void count_pixels(benchmark::State& state) {
  state.SetItemsProcessed(std::int64_t{kWidth} * kHeight * state.iterations());
}

using Reduction = bool (*)(BITMAPPTR*, BITMAPPTR*, int);

void reduce(benchmark::State& state, Reduction reduction, int bit_count) {
  Scan scan(bit_count);
  if (!scan.created()) return state.SkipWithError("no memory");
  draw_sheet(*scan.get());
  for (auto _ : state) {
    BITMAPPTR reduced{};
    benchmark::DoNotOptimize(reduction(scan.get(), &reduced, kFactor));
    benchmark::DoNotOptimize(reduced.pBits);
    std::free(reduced.pInfo);
  }
  count_pixels(state);
}
BENCHMARK_CAPTURE(reduce, colour, Color2ScaledGray, 24)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(reduce, gray, Gray2ScaledGray, 8)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(reduce, bilevel, Bin2ScaledGray, 1)->Unit(benchmark::kMicrosecond);

void binarise(benchmark::State& state) {
  Scan scan(8);
  if (!scan.created()) return state.SkipWithError("no memory");
  draw_sheet(*scan.get());
  const std::vector<unsigned char> gray(scan.get()->pBits, scan.get()->pBits + scan.bytes());
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(gray.begin(), gray.end(), scan.get()->pBits);
    state.ResumeTiming();
    benchmark::DoNotOptimize(Moving_Average(scan.get()->pBits, kWidth, kHeight, kWidth));
    benchmark::ClobberMemory();
  }
  count_pixels(state);
}
BENCHMARK(binarise)->Unit(benchmark::kMillisecond);

void segment_sheet(benchmark::State& state, int bit_count) {
  Scan scan(bit_count);
  if (!scan.created()) return state.SkipWithError("no memory");
  draw_sheet(*scan.get());
  RectRegions regions{};
  for (auto _ : state) benchmark::DoNotOptimize(CardSeg(scan.get(), regions));
  if (regions.firstCount + regions.secondCount != 8) state.SkipWithError("the eight cards were not found");
  count_pixels(state);
}
BENCHMARK_CAPTURE(segment_sheet, colour, 24)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(segment_sheet, gray, 8)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(segment_sheet, bilevel, 1)->Unit(benchmark::kMillisecond);

void clip(benchmark::State& state) {
  Scan scan(8);
  if (!scan.created()) return state.SkipWithError("no memory");
  draw_sheet(*scan.get());
  int first = 0;
  int second = 0;
  for (auto _ : state) benchmark::DoNotOptimize(ClipImg(scan.get(), first, second));
  count_pixels(state);
}
BENCHMARK(clip)->Unit(benchmark::kMillisecond);

}  // namespace
