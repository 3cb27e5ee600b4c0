#include "anywhere/regions.h"

#include <algorithm>
#include <cstring>

namespace vantrel::anywhere {
namespace {

/** The most regions of one threshold. */
constexpr std::size_t kMostAtOnce = 80;

/** A run for every fourth pixel, and a row more: what is cut into smaller pieces is noise. */
std::size_t most_runs(int rows, int cols) {
  return static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols / 4) + static_cast<std::size_t>(cols);
}

/** Tells four values at once apart: a lane's highest bit is set where its value is above the threshold. */
class FourAbove {
 public:
  explicit FourAbove(int threshold) : lift_(kLanes * static_cast<std::uint64_t>(0x7fff - threshold)) {}

  bool none(const std::uint16_t* values) const { return above(values) == 0; }
  bool all(const std::uint16_t* values) const { return above(values) == kHighest; }

 private:
  static constexpr std::uint64_t kLanes = 0x0001000100010001;
  static constexpr std::uint64_t kHighest = 0x8000800080008000;
  std::uint64_t above(const std::uint16_t* values) const {
    std::uint64_t four = 0;
    std::memcpy(&four, values, sizeof(four));
    return (four + lift_) & kHighest;
  }

  std::uint64_t lift_;
};

}  // namespace

RegionFinder::RegionFinder(int rows, int cols) : runs_(most_runs(rows, cols)), regions_(kMostAtOnce) {}

std::uint32_t RegionFinder::first_of(std::uint32_t run) {
  while (runs_[run].parent != run) {
    runs_[run].parent = runs_[runs_[run].parent].parent;
    run = runs_[run].parent;
  }
  return run;
}

void RegionFinder::join(std::uint32_t a, std::uint32_t b) {
  a = first_of(a);
  b = first_of(b);
  if (a < b) {
    runs_[b].parent = a;
  } else {
    runs_[a].parent = b;
  }
}

/** Joins the runs [above, above_end) of a row to those of the next, [above_end, below_end), that touch them. */
void RegionFinder::join_row(std::uint32_t above, std::uint32_t above_end, std::uint32_t below_end) {
  std::uint32_t below = above_end;
  const std::uint32_t last = above_end;
  while (above < last && below < below_end) {
    if (runs_[above].first < runs_[below].end && runs_[below].first < runs_[above].end) join(above, below);
    if (runs_[above].end < runs_[below].end) {
      ++above;
    } else {
      ++below;
    }
  }
}

/** False: there are too many. */
bool RegionFinder::collect_runs(const Relief& relief, int threshold) {
  count_ = 0;
  std::uint32_t row_before = 0;
  const std::uint16_t* value = relief.values;
  const FourAbove four(threshold);
  for (int row = 0; row < relief.rows; ++row, value += relief.cols) {
    const std::uint32_t row_start = count_;
    int col = 0;
    while (true) {
      while (col + 4 <= relief.cols && four.none(value + col)) col += 4;
      while (col < relief.cols && value[col] <= threshold) ++col;
      if (col == relief.cols) break;
      if (count_ == runs_.size()) return false;
      const int first = col;
      while (col + 4 <= relief.cols && four.all(value + col)) col += 4;
      while (col < relief.cols && value[col] > threshold) ++col;
      runs_[count_] = {static_cast<std::uint16_t>(row),
                       static_cast<std::uint16_t>(first),
                       static_cast<std::uint16_t>(col),
                       count_,
                       kNoRun,
                       0};
      ++count_;
    }
    join_row(row_before, row_start, count_);
    row_before = row_start;
  }
  return true;
}

/** Links the runs of each region, in their order, and sums their areas up. */
void RegionFinder::chain() {
  for (std::uint32_t i = count_; i-- > 0;) {
    Run& first = runs_[first_of(i)];
    first.area += static_cast<std::uint32_t>(runs_[i].end - runs_[i].first);
    if (&first == &runs_[i]) continue;
    runs_[i].next = first.next;
    first.next = i;
  }
}

std::span<const Region> RegionFinder::find(const Relief& relief, int threshold, std::uint32_t least_area) {
  if (!collect_runs(relief, threshold)) return {};
  chain();
  const auto larger = [](const Region& a, const Region& b) {
    return a.area != b.area ? a.area > b.area : a.first < b.first;
  };
  // A heap of the largest so far, the smallest of them on top.
  Region* const heap = regions_.get();
  std::size_t kept = 0;
  for (std::uint32_t i = 0; i < count_; ++i) {
    if (runs_[i].parent != i || runs_[i].area < least_area) continue;
    const Region region{i, runs_[i].area};
    if (kept == kMostAtOnce) {
      if (!larger(region, heap[0])) continue;
      std::pop_heap(heap, heap + kept, larger);
      --kept;
    }
    heap[kept++] = region;
    std::push_heap(heap, heap + kept, larger);
  }
  std::sort_heap(heap, heap + kept, larger);
  return {heap, kept};
}

}  // namespace vantrel::anywhere
