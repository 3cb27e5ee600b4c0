#include "anywhere/barrier_map.h"

#include <algorithm>

namespace vantrel::anywhere {
namespace {

using image::WorkArray;

/** Raster passes, alternately from the top left and from the bottom right. */
constexpr int kPasses = 3;

/** The extremes of a path that reaches no ground; their difference still fits 16 bits. */
constexpr std::int16_t kUnreached = 16000;

/** The extremes of one plane along the best path known to each pixel. */
struct Paths {
  WorkArray<std::int16_t> highs;
  WorkArray<std::int16_t> lows;

  explicit Paths(std::size_t size) : highs(size), lows(size) {}
  bool ready() const { return highs.ready() && lows.ready(); }
};

/** The values of a plane and the paths to them, seen from one row on. */
struct Row {
  const std::int16_t* values;
  std::int16_t* highs;
  std::int16_t* lows;
};

Row row_of(const Copy& copy, std::size_t plane, Paths& paths, int row) {
  const std::size_t start = copy.index(row, 0);
  return {copy.planes[plane].get() + start, paths.highs.get() + start, paths.lows.get() + start};
}

constexpr std::int16_t barrier(std::int16_t high, std::int16_t low) { return static_cast<std::int16_t>(high - low); }

/** Lets the pixels of a row take the paths of the row beside it. */
void extend_across(const Row& from, const Row& to, int cols) {
  for (int i = 0; i < cols; ++i) {
    const std::int16_t high = std::max(from.highs[i], to.values[i]);
    const std::int16_t low = std::min(from.lows[i], to.values[i]);
    const bool better = barrier(high, low) < barrier(to.highs[i], to.lows[i]);
    to.highs[i] = better ? high : to.highs[i];
    to.lows[i] = better ? low : to.lows[i];
  }
}

/** Lets the pixels of a row take the paths of their neighbours in it, one after the other from `first` on. */
void extend_along(const Row& row, int first, int count, int step) {
  std::int16_t last_high = row.highs[first];
  std::int16_t last_low = row.lows[first];
  for (int n = 1, i = first + step; n < count; ++n, i += step) {
    const std::int16_t high = std::max(last_high, row.values[i]);
    const std::int16_t low = std::min(last_low, row.values[i]);
    const bool better = barrier(high, low) < barrier(row.highs[i], row.lows[i]);
    last_high = better ? high : row.highs[i];
    last_low = better ? low : row.lows[i];
    row.highs[i] = last_high;
    row.lows[i] = last_low;
  }
}

void sweep_down(const Copy& copy, std::size_t plane, Paths& paths) {
  for (int row = 0; row < copy.rows; ++row) {
    const Row here = row_of(copy, plane, paths, row);
    if (row > 0) extend_across(row_of(copy, plane, paths, row - 1), here, copy.cols);
    extend_along(here, 0, copy.cols, 1);
  }
}

void sweep_up(const Copy& copy, std::size_t plane, Paths& paths) {
  for (int row = copy.rows - 1; row >= 0; --row) {
    const Row here = row_of(copy, plane, paths, row);
    if (row + 1 < copy.rows) extend_across(row_of(copy, plane, paths, row + 1), here, copy.cols);
    extend_along(here, copy.cols - 1, copy.cols, -1);
  }
}

/** Paths begin at the pixels of the frame that show the ground. */
void begin(const Copy& copy, const Ground& ground, std::size_t plane, Paths& paths) {
  std::fill_n(paths.highs.get(), copy.size(), kUnreached);
  std::fill_n(paths.lows.get(), copy.size(), static_cast<std::int16_t>(-kUnreached));
  const int length = frame_length(copy);
  for (int i = 0; i < length; ++i) {
    const std::size_t index = frame_index(copy, i);
    if (belongs_to(ground, colour_at(copy, index))) paths.highs[index] = paths.lows[index] = copy.planes[plane][index];
  }
}

void keep_larger(const Paths& paths, BarrierMap& map) {
  const std::size_t size = map.distances.size();
  for (std::size_t i = 0; i < size; ++i) {
    const auto distance = static_cast<std::uint16_t>(paths.highs[i] - paths.lows[i]);
    map.distances[i] = std::max(map.distances[i], distance);
  }
}

}  // namespace

BarrierMap barrier_map(const Copy& copy) {
  BarrierMap map{{}, WorkArray<std::uint16_t>(copy.size(), image::Fill::kZero)};
  if (!map.ready() || copy.rows < 2 || copy.cols < 2) return map;
  Paths paths(copy.size());
  if (!paths.ready()) {
    map.distances = WorkArray<std::uint16_t>();  // no memory: not ready
    return map;
  }
  map.ground = find_ground(copy);
  for (std::size_t plane = 0; plane < copy.plane_count; ++plane) {
    begin(copy, map.ground, plane, paths);
    for (int pass = 0; pass < kPasses; ++pass) {
      if (pass % 2 == 0) {
        sweep_down(copy, plane, paths);
      } else {
        sweep_up(copy, plane, paths);
      }
    }
    keep_larger(paths, map);
  }
  return map;
}

}  // namespace vantrel::anywhere
