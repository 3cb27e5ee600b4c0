#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "edges.h"
#include "lines/exports.h"
#include "measure.h"
#include "scans.h"

namespace {

using benchmark_scans::EdgeMaps;
using benchmark_scans::leaning_sizes;
using benchmark_scans::measure;
using benchmark_scans::Passed;
using benchmark_scans::scan_sizes;
using benchmark_scans::work_on;

support::Image dark_glass(const benchmark::State& state) {
  return benchmark_scans::card_scan(state, 8, benchmark_scans::kDarkGlass);
}

template <Passed passed>
void mark_edges(benchmark::State& state) {
  EdgeMaps maps(passed == Passed::kFrame ? benchmark_scans::leaning_card(state) : dark_glass(state), passed);
  std::fill(maps.edge.begin(), maps.edge.end(), static_cast<unsigned char>(255));
  measure(
      state, work_on(maps.gray), [&] { maps.detect(); }, [&] { return maps.edges() > maps.cols; });
}

/** A whole scan, of which rather more is light than dark: neither class. */
void brightness(benchmark::State& state) {
  support::Image scan = dark_glass(state);
  measure(state, work_on(scan),
          [&] { return EstimateWB(scan.ptr()->pBits, 0, scan.height(), 0, scan.width(), scan.stride()) == 0; });
}

void darkness(benchmark::State& state) {
  support::Image scan = dark_glass(state);
  measure(state, work_on(scan), [&] {
    return EstimateBlkPixel(scan.ptr()->pBits, 0, scan.height(), 0, scan.width(), scan.stride(), 0) == 1;
  });
}

/** Two full rows of edges; the ten rows beyond the first are half full, those beyond the second empty. */
void compare_densities(benchmark::State& state) {
  EdgeMaps maps(dark_glass(state), Passed::kInside);
  const int first = maps.rows / 2;
  const int second = first + 20;
  for (const int row : {first, second}) {
    maps.mark_row(row, maps.stride);
    for (int beyond = 1; beyond < 11; ++beyond) maps.mark_row(row + beyond, row == first ? maps.stride / 2 : 0);
  }
  measure(state, work_on(maps.gray), [&] {
    return VerifyCorrectLineV_0(maps.edge.data(), nullptr, nullptr, first, second, maps.rows, maps.cols, 0);
  });
}

/** Every eighteenth pixel of the band is an edge: dense enough to be refused. */
void test_density(benchmark::State& state) {
  EdgeMaps maps(dark_glass(state), Passed::kInside);
  const int line = maps.rows / 8;
  for (int r = 0; r < line; ++r) maps.mark_row(r, maps.stride / 18);
  measure(state, work_on(maps.gray),
          [&] { return !VerifyCorrectLineV_1(maps.edge.data(), nullptr, nullptr, line, maps.rows, maps.stride, 1); });
}

/** What the searches take beside their points. */
struct Tables {
  std::array<double, 180> sin;
  std::array<double, 180> cos;
  std::array<double, 8> normal{};
  std::array<double, 4> distance{};

  Tables() {
    for (std::size_t t = 0; t < 180; ++t) {
      sin[t] = std::sin(static_cast<double>(t) * 0.01745329251994);
      cos[t] = std::cos(static_cast<double>(t) * 0.01745329251994);
    }
  }
};

/** Times a search on fresh points each time, since it moves them; the copy is a small part. Items are points. */
template <class Search>
void measure_search(benchmark::State& state, const std::vector<typePoint>& points, Search search) {
  std::vector<typePoint> moved(points.size());
  const auto count = static_cast<std::int64_t>(points.size());
  state.counters["points"] = static_cast<double>(count);
  measure(state, {count, count * static_cast<std::int64_t>(sizeof(typePoint))}, [&] {
    std::copy(points.begin(), points.end(), moved.begin());
    return search(moved.data(), static_cast<int>(count));
  });
}

template <int dir_class>
void find_pair(benchmark::State& state) {
  EdgeMaps maps(benchmark_scans::leaning_card(state), Passed::kFrame);
  Tables tables;
  measure_search(state, maps.points(0, maps.rows, 0, maps.cols, dir_class), [&](typePoint* points, int count) {
    return Compute_Hough_Angle(tables.normal.data(), tables.distance.data(), points, maps.rows, maps.cols, count,
                               dir_class, tables.sin.data(), tables.cos.data()) == 1;
  });
}

/** The bottom (side 1) or left (side 2) border by the points of its band, as the corner finder looks for it. */
template <auto search, int side>
void find_border(benchmark::State& state) {
  EdgeMaps maps(dark_glass(state), Passed::kInside);
  benchmark_scans::ComponentList components;
  if (!components.ready() || !Gray2Bin(maps.edge.data(), components.list(), maps.rows, maps.cols)) {
    state.SkipWithError("no components");
    return;
  }
  constexpr int kDirClass = side < 2 ? 0 : 2;
  const std::vector<typePoint> points = side == 1 ? maps.points(0, maps.rows / 8, 0, maps.cols, kDirClass)
                                                  : maps.points(0, maps.rows, 0, maps.cols / 5, kDirClass);
  Tables tables;
  measure_search(state, points, [&](typePoint* moved, int count) {
    return search(maps.gray.ptr()->pBits, components.line(), maps.edge.data(), tables.normal.data(),
                  tables.distance.data(), moved, maps.rows, maps.cols, count, kDirClass, tables.sin.data(),
                  tables.cos.data(), side, 0) > 0;
  });
}

}  // namespace

BENCHMARK(mark_edges<Passed::kNothing>)->Name("Sobel_Operator/everywhere")->Apply(scan_sizes);
BENCHMARK(mark_edges<Passed::kInside>)->Name("Sobel_Operator/bands")->Apply(scan_sizes);
BENCHMARK(mark_edges<Passed::kFrame>)->Name("Sobel_Operator/frame")->Apply(leaning_sizes);
BENCHMARK(brightness)->Name("EstimateWB")->Apply(scan_sizes);
BENCHMARK(darkness)->Name("EstimateBlkPixel")->Apply(scan_sizes);
BENCHMARK(compare_densities)->Name("VerifyCorrectLineV_0")->Apply(scan_sizes);
BENCHMARK(test_density)->Name("VerifyCorrectLineV_1")->Apply(scan_sizes);
BENCHMARK(find_pair<0>)->Name("Compute_Hough_Angle/level")->Apply(leaning_sizes);
BENCHMARK(find_pair<2>)->Name("Compute_Hough_Angle/upright")->Apply(leaning_sizes);
BENCHMARK(find_border<Compute_Hough_Angle2, 1>)->Name("Compute_Hough_Angle2/level")->Apply(scan_sizes);
BENCHMARK(find_border<Compute_Hough_Angle2, 2>)->Name("Compute_Hough_Angle2/upright")->Apply(scan_sizes);
BENCHMARK(find_border<Compute_Hough_Angle3, 1>)->Name("Compute_Hough_Angle3/level")->Apply(scan_sizes);
BENCHMARK(find_border<Compute_Hough_Angle3, 2>)->Name("Compute_Hough_Angle3/upright")->Apply(scan_sizes);
