/**
 * @file measure.h
 * @brief Times an operation after having seen that it does what is timed.
 */
#ifndef VANTREL_BENCHMARKS_MEASURE_H
#define VANTREL_BENCHMARKS_MEASURE_H

#include <benchmark/benchmark.h>

#include <cstdint>

#include "support/image.h"

namespace benchmark_scans {

/** What one run works on: items, which are pixels unless a benchmark says otherwise, and bytes. */
struct Work {
  std::int64_t items;
  std::int64_t bytes;
};

inline Work work_on(const support::Image& image) {
  return {std::int64_t{image.width()} * image.height(), std::int64_t{image.stride()} * image.height()};
}

/** Runs an operation once, has the outcome judged, and only then times it. */
template <class Run, class Done>
void measure(benchmark::State& state, const Work& work, Run run, Done done) {
  run();
  if (!done()) {
    state.SkipWithError("it does not do what is timed");
    return;
  }
  for (auto _ : state) {
    run();
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * work.items);
  state.SetBytesProcessed(state.iterations() * work.bytes);
}

/** The same for an operation that tells by itself whether it was done. */
template <class Run>
void measure(benchmark::State& state, const Work& work, Run run) {
  bool done = false;
  measure(
      state, work, [&] { benchmark::DoNotOptimize(done = run()); }, [&] { return done; });
}

}  // namespace benchmark_scans

#endif
