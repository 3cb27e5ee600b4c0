#include <benchmark/benchmark.h>

#include "autoclip/exports.h"
#include "scans.h"

namespace {

/** A scan of a card that nearly fills its dark glass, at 150, 300 and 600 dots per inch. */
void scan_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"width", "height"})
      ->Args({650, 450})
      ->Args({1300, 900})
      ->Args({2600, 1800})
      ->Unit(benchmark::kMillisecond);
}

support::Image drawn(const benchmark::State& state, int bit_count) {
  return benchmark_scans::card_scan(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), bit_count,
                                    benchmark_scans::kDarkGlass);
}

template <int bit_count>
void auto_clip(benchmark::State& state) {
  support::Image scan = drawn(state, bit_count);
  for (auto _ : state) {
    support::Image out;
    if (AutoClipRedundantImg(scan.handle(), nullptr, out.ptr(), 1) != 1) state.SkipWithError("not clipped");
  }
  state.SetBytesProcessed(state.iterations() * scan.header().biSizeImage);
}

void find_corners(benchmark::State& state) {
  support::Image scan = drawn(state, 8);
  vantrel_corner_search found{};
  for (auto _ : state) {
    if (vantrel_find_corners(scan.ptr(), &found) != 1) state.SkipWithError("no corners");
  }
  int sides = 0;
  for (const vantrel_border& side : found.side) sides += side.found;
  state.counters["sides found"] = sides;
  state.SetBytesProcessed(state.iterations() * scan.header().biSizeImage);
}

template <int bit_count>
void warp(benchmark::State& state) {
  support::Image scan = drawn(state, bit_count);
  const auto w = static_cast<float>(state.range(0));
  const auto h = static_cast<float>(state.range(1));
  float frame[8] = {1, 1, w - 2, 1, 1, h - 2, w - 2, h - 2};
  float corners[8] = {40, 30, w - 30, 50, 30, h - 50, w - 40, h - 30};
  double coeffs[8];
  double rect[4] = {1, 1, w - 2.0, h - 2.0};
  SolveMultiUnknownFunc(coeffs, frame, corners, 8);
  support::Image out(static_cast<int>(w), static_cast<int>(h), bit_count, 0xFF);
  for (auto _ : state) ConvertImg2(scan.ptr(), out.ptr(), coeffs, rect, bit_count);
  state.SetBytesProcessed(state.iterations() * scan.header().biSizeImage);
}

}  // namespace

BENCHMARK(auto_clip<8>)->Name("AutoClipRedundantImg/gray")->Apply(scan_sizes);
BENCHMARK(auto_clip<24>)->Name("AutoClipRedundantImg/colour")->Apply(scan_sizes);
BENCHMARK(find_corners)->Name("vantrel_find_corners")->Apply(scan_sizes);
BENCHMARK(warp<8>)->Name("ConvertImg2/gray")->Apply(scan_sizes);
BENCHMARK(warp<24>)->Name("ConvertImg2/colour")->Apply(scan_sizes);
