#include <benchmark/benchmark.h>

#include "scans.h"

namespace {

/** A business card at 200 and at 400 dots per inch, gray and in colour. */
void scan_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"width", "height", "bits"})->Unit(benchmark::kMicrosecond);
  for (const int bits : {8, 24}) benchmark->Args({720, 440, bits})->Args({1440, 880, bits});
}

/** Bytes are those of the result. */
template <int (*enlarge)(void**, BITMAPPTR*)>
void enlarge_card(benchmark::State& state) {
  support::Image scan = benchmark_scans::card_scan(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                                                   static_cast<int>(state.range(2)));
  std::int64_t bytes = 0;
  for (auto _ : state) {
    support::Image result;
    if (enlarge(scan.handle(), result.ptr()) != 1) {
      state.SkipWithError("not enlarged");
      break;
    }
    benchmark::DoNotOptimize(result.ptr()->pBits);
    bytes = result.header().biSizeImage;
  }
  state.SetBytesProcessed(state.iterations() * bytes);
}

}  // namespace

BENCHMARK(enlarge_card<BiLinear>)->Name("BiLinear")->Apply(scan_sizes);
BENCHMARK(enlarge_card<BiCubic>)->Name("BiCubic")->Apply(scan_sizes);
