#include <benchmark/benchmark.h>

#include "cardcut/exports.h"
#include "measure.h"
#include "scans.h"

namespace {

using benchmark_scans::measure;
using benchmark_scans::work_on;
using support::Image;

/** A business card at 300 dots per inch on a slightly larger scan, and one at 600; before them, a small scan. */
void card_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"width", "height"})->Args({300, 200})->Args({1200, 800})->Args({2400, 1600});
  benchmark->Unit(benchmark::kMicrosecond);
}

template <bool (*find)(BITMAPPTR*, MYRECT&), int bit_count>
void find_card(benchmark::State& state) {
  Image scan = benchmark_scans::card_scan(state, bit_count);
  MYRECT rect{};
  measure(state, work_on(scan), [&] { return find(scan.ptr(), rect); });
  state.counters["left"] = rect.left;
  state.counters["top"] = rect.top;
  state.counters["right"] = rect.right;
  state.counters["bottom"] = rect.bottom;
}

template <int bit_count>
void clip(benchmark::State& state) {
  Image scan = benchmark_scans::card_scan(state, bit_count);
  measure(state, work_on(scan), [&] {
    Image card;
    return AutoClipRedundantImg_ORVA(scan.handle(), nullptr, card.ptr(), 1) == 1 && card.width() < scan.width();
  });
}

template <int bit_count>
void tell(benchmark::State& state) {
  Image scan = benchmark_scans::card_scan(state, bit_count);
  measure(state, work_on(scan), [&] { return AutoClipImg_Rect_ORVA(scan.handle(), nullptr, 0, 0, 0, 0, 1) == 1; });
}

}  // namespace

BENCHMARK(find_card<CutCard, 8>)->Name("CutCard/gray")->Apply(card_sizes);
BENCHMARK(find_card<CutCard, 24>)->Name("CutCard/colour")->Apply(card_sizes);
BENCHMARK(find_card<CutCard24, 24>)->Name("CutCard24")->Apply(card_sizes);
BENCHMARK(clip<8>)->Name("AutoClipRedundantImg_ORVA/gray")->Apply(card_sizes);
BENCHMARK(clip<24>)->Name("AutoClipRedundantImg_ORVA/colour")->Apply(card_sizes);
BENCHMARK(tell<8>)->Name("AutoClipImg_Rect_ORVA/gray")->Apply(card_sizes);
BENCHMARK(tell<24>)->Name("AutoClipImg_Rect_ORVA/colour")->Apply(card_sizes);
