#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <vector>

#include "measure.h"
#include "scans.h"
#include "segment/edgeclip/exports.h"
#include "segment/exports.h"

namespace {

using benchmark_scans::measure;
using benchmark_scans::work_on;
using support::Image;

/** A4 at 75 and at 300 dots per inch. Times are told for each pixel, also where only some of them are read. */
void sheet_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("dpi")->Arg(75)->Arg(300)->Unit(benchmark::kMicrosecond);
}

Image drawn_sheet(const benchmark::State& state, int bit_count) {
  return benchmark_scans::sheet_of_cards(bit_count, static_cast<int>(state.range(0)));
}

template <bool (*reduction)(BITMAPPTR*, BITMAPPTR*, int), int bit_count>
void reduce(benchmark::State& state) {
  Image scan = drawn_sheet(state, bit_count);
  measure(state, work_on(scan), [&] {
    Image reduced;
    return reduction(scan.ptr(), reduced.ptr(), 3) && reduced.width() == scan.width() / 3;
  });
}

bool binarise(Image& gray) { return Moving_Average(gray.ptr()->pBits, gray.width(), gray.height(), gray.stride()); }

/** Each run begins with the gray levels; putting them back is not timed. */
void moving_average(benchmark::State& state) {
  Image scan = drawn_sheet(state, 8);
  const std::vector<unsigned char> gray = scan.pixels();
  binarise(scan);
  const std::vector<unsigned char> levels = scan.pixels();
  if (std::count(levels.begin(), levels.end(), 0) == 0) state.SkipWithError("no marks");
  for (auto _ : state) {
    state.PauseTiming();
    std::copy(gray.begin(), gray.end(), scan.ptr()->pBits);
    state.ResumeTiming();
    benchmark::DoNotOptimize(binarise(scan));
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * work_on(scan).items);
  state.SetBytesProcessed(state.iterations() * work_on(scan).bytes);
}

template <int bit_count>
void segment_sheet(benchmark::State& state) {
  Image scan = benchmark_scans::sheet_of_cards(bit_count);
  RectRegions regions{};
  measure(state, work_on(scan),
          [&] { return CardSeg(scan.ptr(), regions) == 1 && regions.firstCount + regions.secondCount == 8; });
}

void find_border_rows(benchmark::State& state) {
  Image scan = drawn_sheet(state, 8);
  int first = 0;
  int second = 0;
  measure(state, work_on(scan), [&] { return ClipImg(scan.ptr(), first, second) && first > 0; });
}

/** All rows but the outermost, in two bands; the byte before the first column and behind the last is in other rows. */
void mark_edges(benchmark::State& state) {
  Image scan = drawn_sheet(state, 8);
  std::vector<unsigned char> edge(scan.header().biSizeImage);
  const int last = scan.height() - 1;
  const auto columns = static_cast<short>(scan.width());
  measure(
      state, work_on(scan),
      [&] {
        Sobel_Edge(scan.ptr()->pBits, edge.data(), scan.stride(), 1, last / 2, last / 2, 80,
                   static_cast<short>(last - 1), columns);
      },
      [&] { return std::count(edge.begin(), edge.end(), 255) > scan.width(); });
}

/**
 * Counts the pixels of one level on a sheet in black and white, whose widths are multiples of 4 so that its rows have
 * no padding. Black ones are counted for each row, white ones for each column.
 */
template <void (*project)(unsigned char*, short, short, unsigned short*), int level>
void projection(benchmark::State& state) {
  Image scan = drawn_sheet(state, 8);
  binarise(scan);
  const std::vector<unsigned char> levels = scan.pixels();
  std::vector<unsigned short> histogram(static_cast<std::size_t>(level == 0 ? scan.height() : scan.width()));
  measure(
      state, work_on(scan),
      [&] {
        project(scan.ptr()->pBits, static_cast<short>(scan.width()), static_cast<short>(scan.height()),
                histogram.data());
      },
      [&] {
        const auto counted = std::accumulate(histogram.begin(), histogram.end(), std::int64_t{0});
        return counted > 0 && counted == std::count(levels.begin(), levels.end(), level);
      });
}

}  // namespace

BENCHMARK(reduce<Color2ScaledGray, 24>)->Name("Color2ScaledGray")->Apply(sheet_sizes);
BENCHMARK(reduce<Gray2ScaledGray, 8>)->Name("Gray2ScaledGray")->Apply(sheet_sizes);
BENCHMARK(reduce<Bin2ScaledGray, 1>)->Name("Bin2ScaledGray")->Apply(sheet_sizes);
BENCHMARK(moving_average)->Name("Moving_Average")->Apply(sheet_sizes);
BENCHMARK(segment_sheet<1>)->Name("CardSeg/bilevel")->Unit(benchmark::kMillisecond);
BENCHMARK(segment_sheet<8>)->Name("CardSeg/gray")->Unit(benchmark::kMillisecond);
BENCHMARK(segment_sheet<24>)->Name("CardSeg/colour")->Unit(benchmark::kMillisecond);
BENCHMARK(find_border_rows)->Name("ClipImg")->Apply(sheet_sizes);
BENCHMARK(mark_edges)->Name("Sobel_Edge")->Apply(sheet_sizes);
BENCHMARK(projection<HProjection, 0>)->Name("HProjection")->Apply(sheet_sizes);
BENCHMARK(projection<VProjection, 255>)->Name("VProjection")->Apply(sheet_sizes);
