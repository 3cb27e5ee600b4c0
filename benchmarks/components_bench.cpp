#include <benchmark/benchmark.h>

#include "components/exports.h"
#include "edges.h"
#include "measure.h"
#include "scans.h"

namespace {

using benchmark_scans::ComponentList;
using benchmark_scans::EdgeMaps;
using benchmark_scans::Passed;
using benchmark_scans::scan_sizes;

/** Times an extraction with the return of its nodes: the next one needs an empty list. */
template <class Extract>
void extract(benchmark::State& state, const support::Image& map, Extract extract_into) {
  ComponentList components;
  if (!components.ready() || !extract_into(components.list())) {
    state.SkipWithError("no components");
    return;
  }
  state.counters["components"] = static_cast<double>(components.list().TotalCharacters());
  components.clear();
  benchmark_scans::measure(state, benchmark_scans::work_on(map),
                           [&] { return extract_into(components.list()) && components.clear(); });
}

/** With nothing passed over, the print's edges are components too; with its inside passed over there are few. */
template <Passed passed>
void of_edges(benchmark::State& state) {
  EdgeMaps maps(benchmark_scans::card_scan(state, 8, benchmark_scans::kDarkGlass), passed);
  extract(state, maps.gray, [&](_BLIST& list) { return Gray2Bin(maps.edge.data(), list, maps.rows, maps.cols); });
}

void of_bits(benchmark::State& state) {
  support::Image scan = benchmark_scans::card_scan(state, 1);
  extract(state, scan, [&](_BLIST& list) { return Extract_Eight_Connected_Components(*scan.ptr(), list) == 1; });
}

}  // namespace

BENCHMARK(of_edges<Passed::kInside>)->Name("Gray2Bin/border")->Apply(scan_sizes);
BENCHMARK(of_edges<Passed::kNothing>)->Name("Gray2Bin/print")->Apply(scan_sizes);
BENCHMARK(of_bits)->Name("Extract_Eight_Connected_Components")->Apply(scan_sizes);
