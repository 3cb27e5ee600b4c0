#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <vector>

#include "autoclip/exports.h"
#include "edges.h"
#include "measure.h"
#include "scans.h"

namespace {

using benchmark_scans::EdgeMaps;
using benchmark_scans::measure;
using benchmark_scans::Passed;
using benchmark_scans::work_on;
using support::Image;

void slow_scan_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark_scans::scan_sizes(benchmark);
  benchmark->Unit(benchmark::kMillisecond);
}

/** A scan of a card that nearly fills its dark glass. */
Image drawn_card(const benchmark::State& state, int bit_count) {
  return benchmark_scans::card_scan(state, bit_count, benchmark_scans::kDarkGlass);
}

template <auto Clip, int bit_count>
void auto_clip(benchmark::State& state) {
  Image scan = drawn_card(state, bit_count);
  measure(state, work_on(scan), [&] {
    Image out;
    return Clip(scan.handle(), nullptr, out.ptr(), 1) == 1;
  });
}

/** Corners that were searched for along the scan's sides; the scan's own are a failure to find any. */
template <class Search>
void find_corners(benchmark::State& state, Search search) {
  Image scan = drawn_card(state, 8);
  measure(state, work_on(scan), [&] { return search(scan.ptr()); });
}

bool find_with_record(BITMAPPTR* gray) {
  vantrel_corner_search found{};
  const bool is_card = vantrel_find_corners(gray, &found) == 1;
  return is_card && std::all_of(found.side, found.side + 4, [](const vantrel_border& side) { return side.found == 1; });
}

bool find_without_record(BITMAPPTR* gray) {
  std::array<float, 8> corners{}, box{};
  return ClipNameCardRedundantImg(gray, corners.data(), box.data()) == 1 && corners[0] > 10;
}

template <auto Find>
void find_by_gradient(benchmark::State& state) {
  Image scan = benchmark_scans::leaning_card(state);
  std::array<float, 8> corners{}, box{};
  measure(state, work_on(scan), [&] { return Find(scan.ptr(), corners.data(), box.data()) == 1; });
}

/** Pixels are those of the edge map, which is the scan's with its padding; bytes those of both maps. */
template <class Collect>
void collect_points(benchmark::State& state, Collect collect_from) {
  EdgeMaps maps(drawn_card(state, 8), Passed::kNothing);
  const auto bytes = static_cast<std::int64_t>(maps.edge.size());
  int count = 0;
  measure(
      state, {bytes, 2 * bytes}, [&] { collect_from(maps, count); }, [&] { return count > maps.rows; });
  state.counters["points"] = count;
}

void collect_pairs(benchmark::State& state) {
  std::vector<float> pairs;
  collect_points(state, [&](EdgeMaps& maps, int& count) {
    pairs.resize(2 * maps.edge.size());
    CalcPointCenter(maps.edge.data(), maps.direction.data(), pairs.data(), count, maps.rows, maps.stride, 0);
  });
}

void collect_records(benchmark::State& state) {
  std::vector<typePoint> points;
  collect_points(state, [&](EdgeMaps& maps, int& count) {
    points.resize(maps.edge.size());
    CalcPointCenter2(maps.edge.data(), maps.direction.data(), points.data(), count, 0, maps.rows, 0, maps.cols,
                     maps.stride, 0);
  });
}

/** All but the outermost pixels; `narrow` is for a result as wide as they are. */
template <auto convert, int bit_count, bool narrow>
void warp(benchmark::State& state) {
  Image scan = drawn_card(state, bit_count);
  const auto w = static_cast<float>(state.range(0));
  const auto h = static_cast<float>(state.range(1));
  float frame[8] = {1, 1, w - 2, 1, 1, h - 2, w - 2, h - 2};
  float corners[8] = {40, 30, w - 30, 50, 30, h - 50, w - 40, h - 30};
  double coeffs[8];
  double rect[4] = {1, 1, w - 2.0, h - 2.0};
  SolveMultiUnknownFunc(coeffs, frame, corners, 8);
  Image out(scan.width() - (narrow ? 2 : 0), scan.height(), bit_count, 0xFF);
  const int middle = out.width() / 2 * bit_count / 8;
  measure(
      state, work_on(scan), [&] { convert(scan.ptr(), out.ptr(), coeffs, rect, bit_count); },
      [&] { return out.at(0, middle) != 0xFF && out.at(scan.height() - 3, middle) != 0xFF; });
}

/** Every pixel's own place, moved by a fraction. Items are samples. */
void sample(benchmark::State& state) {
  Image scan = drawn_card(state, 8);
  const auto sum = [&](float by) {
    std::int64_t levels = 0;
    for (int r = 0; r < scan.height(); ++r) {
      for (int c = 0; c < scan.width(); ++c) {
        levels += Bilinear(static_cast<float>(c) + by, static_cast<float>(r) + by, scan.ptr()->pBits, scan.height(),
                           scan.width(), scan.stride(), 8);
      }
    }
    return levels;
  };
  std::int64_t expected = 0;
  for (int r = 0; r < scan.height(); ++r) expected = std::accumulate(scan.row(r), scan.row(r) + scan.width(), expected);
  if (sum(0) != expected) {
    state.SkipWithError("whole places are not their pixels");
    return;
  }
  measure(state, work_on(scan), [&] { return sum(0.375f) != 0; });
}

}  // namespace

BENCHMARK(auto_clip<AutoClipRedundantImg, 8>)->Name("AutoClipRedundantImg/gray")->Apply(slow_scan_sizes);
BENCHMARK(auto_clip<AutoClipRedundantImg, 24>)->Name("AutoClipRedundantImg/colour")->Apply(slow_scan_sizes);
BENCHMARK(auto_clip<vantrel_auto_clip, 8>)->Name("vantrel_auto_clip")->Apply(slow_scan_sizes);
BENCHMARK_CAPTURE(find_corners, record, find_with_record)->Name("vantrel_find_corners")->Apply(slow_scan_sizes);
BENCHMARK_CAPTURE(find_corners, plain, find_without_record)->Name("ClipNameCardRedundantImg")->Apply(slow_scan_sizes);
BENCHMARK(find_by_gradient<AutoDetectCorner>)->Name("AutoDetectCorner")->Apply(benchmark_scans::leaning_sizes);
BENCHMARK(find_by_gradient<vantrel_find_gradient_corners>)
    ->Name("vantrel_find_gradient_corners")
    ->Apply(benchmark_scans::leaning_sizes);
BENCHMARK(collect_pairs)->Name("CalcPointCenter")->Apply(slow_scan_sizes);
BENCHMARK(collect_records)->Name("CalcPointCenter2")->Apply(slow_scan_sizes);
BENCHMARK(warp<ConvertImg, 8, true>)->Name("ConvertImg/gray")->Apply(slow_scan_sizes);
BENCHMARK(warp<ConvertImg, 24, true>)->Name("ConvertImg/colour")->Apply(slow_scan_sizes);
BENCHMARK(warp<ConvertImg2, 8, false>)->Name("ConvertImg2/gray")->Apply(slow_scan_sizes);
BENCHMARK(warp<ConvertImg2, 24, false>)->Name("ConvertImg2/colour")->Apply(slow_scan_sizes);
BENCHMARK(warp<ConvertImg3, 8, true>)->Name("ConvertImg3/gray")->Apply(slow_scan_sizes);
BENCHMARK(warp<ConvertImg3, 24, true>)->Name("ConvertImg3/colour")->Apply(slow_scan_sizes);
BENCHMARK(sample)->Name("Bilinear")->Apply(slow_scan_sizes);
