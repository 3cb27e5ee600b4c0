#include <benchmark/benchmark.h>

#include "measure.h"
#include "scale/exports.h"
#include "scans.h"

namespace {

using benchmark_scans::measure;
using benchmark_scans::work_on;
using support::Image;

/** A stamp, and a business card at 200 and at 400 dots per inch, gray and in colour. */
void sizes_to_enlarge(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"width", "height", "bits"})->Unit(benchmark::kMicrosecond);
  for (const int bits : {8, 24}) benchmark->Args({180, 110, bits})->Args({720, 440, bits})->Args({1440, 880, bits});
}

Image drawn(const benchmark::State& state) {
  return benchmark_scans::card_scan(state, static_cast<int>(state.range(2)));
}

/** The widths are multiples of 4, so that the result is exactly twice as wide. */
Image room_for_twice(const Image& scan) {
  return {2 * scan.width(), 2 * scan.height(), scan.header().biBitCount, 0xFF};
}

/** Pixels and bytes are those of the result, also below. */
template <int (*enlarge)(void**, BITMAPPTR*)>
void enlarge_card(benchmark::State& state) {
  Image scan = drawn(state);
  measure(state, work_on(room_for_twice(scan)), [&] {
    Image result;
    return enlarge(scan.handle(), result.ptr()) == 1;
  });
}

template <bool (*resample)(BITMAPPTR*, BITMAPPTR*, short)>
void resample_card(benchmark::State& state) {
  Image scan = drawn(state);
  Image result = room_for_twice(scan);
  measure(state, work_on(result), [&] { return resample(scan.ptr(), result.ptr(), 2) && result.at(0, 0) != 0xFF; });
}

}  // namespace

BENCHMARK(enlarge_card<BiLinear>)->Name("BiLinear")->Apply(sizes_to_enlarge);
BENCHMARK(enlarge_card<BiCubic>)->Name("BiCubic")->Apply(sizes_to_enlarge);
BENCHMARK(resample_card<BiLinearMethod>)->Name("BiLinearMethod")->Apply(sizes_to_enlarge);
BENCHMARK(resample_card<BiCubicMethod>)->Name("BiCubicMethod")->Apply(sizes_to_enlarge);
