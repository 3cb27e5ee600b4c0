#include <benchmark/benchmark.h>

#include "cardcut/exports.h"
#include "scans.h"

namespace {

/** A business card at 300 dots per inch on a slightly larger scan, and one at 600. */
void scan_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"width", "height"})->Args({1200, 800})->Args({2400, 1600})->Unit(benchmark::kMicrosecond);
}

template <bool (*find)(BITMAPPTR*, MYRECT&), int bit_count>
void find_card(benchmark::State& state) {
  support::Image scan =
      benchmark_scans::card_scan(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), bit_count);
  MYRECT rect{};
  for (auto _ : state) {
    if (!find(scan.ptr(), rect)) state.SkipWithError("no rectangle");
    benchmark::DoNotOptimize(rect);
  }
  state.counters["left"] = rect.left;
  state.counters["top"] = rect.top;
  state.counters["right"] = rect.right;
  state.counters["bottom"] = rect.bottom;
  state.SetBytesProcessed(state.iterations() * scan.header().biSizeImage);
}

}  // namespace

BENCHMARK(find_card<CutCard, 8>)->Name("CutCard")->Apply(scan_sizes);
BENCHMARK(find_card<CutCard24, 24>)->Name("CutCard24")->Apply(scan_sizes);
