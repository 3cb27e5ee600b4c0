/**
 * @file contest.h
 * @brief The entries of a contest: one operation (a row), one size, one contender.
 *
 * Every contender allocates its result anew, as a caller of the library gets it, and has it checked before it is timed.
 */
#ifndef VANTREL_BENCHMARKS_CONTEST_H
#define VANTREL_BENCHMARKS_CONTEST_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "heap.h"
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

/** A contender as it is run by itself: once, in a process that has done nothing yet. */
struct Entry {
  std::string name;
  std::int64_t units;
  std::function<bool()> run;
};
inline std::vector<Entry> entries;

/** Where set, only this entry's row and size take part: others need not be drawn. */
inline std::string only;

inline bool takes_part(const std::string& row, const Size& size) {
  return only.empty() || only.starts_with(row + "/" + size.name() + "/");
}

/**
 * Enters a contender: `run()` does the work once and says whether it was done. Units are pixels, mostly.
 *
 * @param result bytes a unit of what the caller gets: the most heap that is taken beside it is told.
 */
template <class Run>
void enter(const std::string& row, const Size& size, const std::string& contender, std::int64_t units, Run run,
           double result = 0.0) {
  const std::string name = row + "/" + size.name() + "/" + contender;
  const auto time = [units, run, result](benchmark::State& state) {
    heap::most_taken();
    const std::int64_t before = heap::taken();
    if (!run()) state.SkipWithError("it does not do what is timed");
    const double most = static_cast<double>(heap::most_taken() - before) / static_cast<double>(units);
    for (auto _ : state) {
      benchmark::DoNotOptimize(run());
      benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * units);
    state.counters["heap"] = std::max(most - result, 0.0);
  };
  entries.push_back({name, units, run});
  benchmark::RegisterBenchmark(name.c_str(), time);
}

/** An input that all contenders of a row share. */
template <class Input>
std::shared_ptr<Input> shared(Input input) {
  return std::make_shared<Input>(std::move(input));
}

/**
 * Enters the limit of a row, a loop that reads so many bytes and writes so many: no operation that has to is faster.
 * What is only read, or only written, goes to a block that stays in the nearest cache, or comes from it.
 */
inline void enter_limit(const std::string& row, const Size& size, std::int64_t units, std::int64_t read,
                        std::int64_t written) {
  constexpr std::size_t kNear = 8192;
  using Block = std::vector<unsigned char>;
  const auto source = shared(Block(static_cast<std::size_t>(read), 1));
  const auto target = shared(Block(static_cast<std::size_t>(written), 1));
  const auto near = shared(Block(kNear, 1));
  enter(row, size, "limit", units, [=] {
    for (std::size_t at = 0; at < std::max(source->size(), target->size()); at += kNear) {
      const bool reads = at < source->size(), writes = at < target->size();
      const std::size_t count =
          std::min({kNear, reads ? source->size() - at : kNear, writes ? target->size() - at : kNear});
      std::memcpy(writes ? target->data() + at : near->data(), reads ? source->data() + at : near->data(), count);
      benchmark::ClobberMemory();
    }
    return true;
  });
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
