/**
 * @file contest.h
 * @brief The entries of a contest: one operation (a row), one size, one contender.
 *
 * Every contender allocates its result anew, as a caller of the library gets it, and has it checked before it is timed.
 */
#ifndef VANTREL_BENCHMARKS_CONTEST_H
#define VANTREL_BENCHMARKS_CONTEST_H

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "support/image.h"

#ifdef WITH_OPENCV
#include <opencv2/imgproc.hpp>
#endif

namespace contest {

struct Size {
  int width;
  int height;

  std::int64_t pixels() const { return std::int64_t{width} * height; }
  std::string name() const { return std::to_string(width) + "x" + std::to_string(height); }
};

/** A card at 300 dots per inch, one at 600, and a sheet of A4 at 300. */
inline constexpr Size kCard{1100, 700}, kLargeCard{2200, 1400}, kSheet{2480, 3508};
inline constexpr Size kSizes[] = {kCard, kLargeCard, kSheet};

/** Enters a contender: `run()` does the work once and says whether it was done. Units are pixels, mostly. */
template <class Run>
void enter(const std::string& row, const Size& size, const std::string& contender, std::int64_t units, Run run) {
  const auto time = [units, run](benchmark::State& state) {
    if (!run()) state.SkipWithError("it does not do what is timed");
    for (auto _ : state) {
      benchmark::DoNotOptimize(run());
      benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * units);
  };
  benchmark::RegisterBenchmark((row + "/" + size.name() + "/" + contender).c_str(), time);
}

/** An input that all contenders of a row share. */
template <class Input>
std::shared_ptr<Input> shared(Input input) {
  return std::make_shared<Input>(std::move(input));
}

#ifdef WITH_OPENCV
/** The pixels of an image block, memory row by memory row; nothing is copied. */
inline cv::Mat mat_of(support::Image& image) {
  return {image.height(), image.width(), image.header().biBitCount == 24 ? CV_8UC3 : CV_8UC1, image.ptr()->pBits,
          static_cast<std::size_t>(image.stride())};
}
#endif

void enter_image_rows();
void enter_line_rows();
void enter_warp_rows();
void enter_scale_rows();
void enter_card_rows();

}  // namespace contest

#endif
