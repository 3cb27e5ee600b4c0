/**
 * @file regions.h
 * @brief The connected regions of a map above a threshold.
 */
#ifndef VANTREL_ANYWHERE_REGIONS_H
#define VANTREL_ANYWHERE_REGIONS_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "image/work_array.h"

namespace vantrel::anywhere {

/** A map of `rows` x `cols` values below 32768: the larger, the likelier a card. */
struct Relief {
  const std::uint16_t* values = nullptr;
  int rows = 0;
  int cols = 0;

  std::size_t size() const { return static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols); }
  int at(int row, int col) const {
    return values[static_cast<std::size_t>(row) * static_cast<std::size_t>(cols) + static_cast<std::size_t>(col)];
  }
};

/** Neighbouring pixels of a row that lie above the threshold: [first, end). */
struct Run {
  std::uint16_t row;
  std::uint16_t first;
  std::uint16_t end;
  std::uint32_t parent; /**< a run of the same region, none later than this; itself for the first */
  std::uint32_t next;   /**< the region's next run */
  std::uint32_t area;   /**< of the region, where this is its first run */
};

/** A region: its first run, from which `Run::next` leads on, row by row. */
struct Region {
  std::uint32_t first = 0;
  std::uint32_t area = 0;
};

inline constexpr std::uint32_t kNoRun = 0xffffffff;

/** Finds regions, threshold by threshold, in the same memory. */
class RegionFinder {
 public:
  RegionFinder(int rows, int cols);

  bool ready() const { return runs_.ready() && regions_.ready(); }
  /**
   * The largest regions of at least `least_area` pixels above a threshold, the largest first; none where the map is
   * nothing but noise there. Valid until next time.
   */
  std::span<const Region> find(const Relief& relief, int threshold, std::uint32_t least_area);
  const Run& run(std::uint32_t i) const { return runs_[i]; }

 private:
  bool collect_runs(const Relief& relief, int threshold);
  void join_row(std::uint32_t above, std::uint32_t above_end, std::uint32_t below_end);
  std::uint32_t first_of(std::uint32_t run);
  void join(std::uint32_t a, std::uint32_t b);
  void chain();

  image::WorkArray<Run> runs_;
  image::WorkArray<Region> regions_;
  std::uint32_t count_ = 0;
};

}  // namespace vantrel::anywhere

#endif
