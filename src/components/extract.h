/**
 * @file extract.h
 * @brief Eight-connected components by run-length coding in one pass over the rows.
 *
 * The procedure exists once; how components are kept is the store's business. A store names components by `Owner*` and
 * offers
 *
 *     Owner* create(const RunOf& run, int row)            a component of one run, or null when there is no room for it
 *     void extend(Owner& owner, const RunOf& run, int row) a run in a further row
 *     int first_row(const Owner& owner)
 *     void absorb(Owner& survivor, Owner& absorbed)       the two are one; the absorbed one is given up
 *
 * The runs of a row are records with the members start, end (inclusive) and node (an Owner*).
 */
#ifndef VANTREL_COMPONENTS_EXTRACT_H
#define VANTREL_COMPONENTS_EXTRACT_H

#include <algorithm>
#include <cstddef>
#include <utility>

#include "geometry/span.h"
#include "image/work_array.h"

namespace vantrel::components {

/** Calls `found(columns)` for every run of foreground bits (0, most significant first) of a row. */
template <class Found>
void for_each_run_of_bits(const unsigned char* bits, int width, Found found) {
  constexpr int kNone = -1;
  int start = kNone;
  const auto open_at = [&](int column) {
    if (start == kNone) start = column;
  };
  const auto close_at = [&](int column) {
    if (start != kNone) found(geometry::Span{start, column});
    start = kNone;
  };
  for (int column = 0; column < width; column += 8) {
    const unsigned byte = bits[column / 8];
    const int count = std::min(8, width - column);
    if (count == 8 && byte == 0) {
      open_at(column);
    } else if (count == 8 && byte == 0xFF) {
      close_at(column);
    } else {
      for (int bit = 0; bit < count; ++bit) {
        if ((byte & 0x80u >> bit) != 0) {
          close_at(column + bit);
        } else {
          open_at(column + bit);
        }
      }
    }
  }
  close_at(width);
}

/** Calls `found(columns)` for every run of foreground bytes (0) of a row. */
template <class Found>
void for_each_run_of_bytes(const unsigned char* bytes, int width, Found found) {
  const unsigned char* const end = bytes + width;
  for (const unsigned char* at = std::find(bytes, end, 0); at != end;) {
    const unsigned char* const stop = std::find_if(at, end, [](unsigned char byte) { return byte != 0; });
    found(geometry::Span{static_cast<int>(at - bytes), static_cast<int>(stop - bytes)});
    at = std::find(stop, end, 0);
  }
}

/** The runs of two neighbouring rows, and how far those of the row before have been looked at. */
template <class Run>
struct RowRuns {
  Run* previous;
  Run* current;
  unsigned short previous_count;
  unsigned short& previous_index;
  unsigned short& current_count;
};

template <class Run, class Owner>
void rename_runs(Run* runs, unsigned short count, const Owner* from, Owner* to) {
  for (Run* run = runs; run != runs + count; ++run) {
    if (run->node == from) run->node = to;
  }
}

/**
 * Adds a run of row `row` to the component that it touches in the row before, merging components that it connects, or
 * to a new one; false when there was no room for that.
 */
template <class Run, class Store>
bool add_run(geometry::Span run, int row, RowRuns<Run> rows, Store& store) {
  decltype(Run::node) owner = nullptr;
  auto& [previous, current, previous_count, previous_index, current_count] = rows;
  // Diagonal neighbours touch: a run of the row before may start one column behind this one's last, or end one before
  // its first.
  for (; previous_index < previous_count && run.end >= previous[previous_index].start; ++previous_index) {
    const Run& before = previous[previous_index];
    if (run.first > before.end + 1) continue;
    if (owner == nullptr) {
      owner = before.node;
    } else if (before.node != owner) {
      auto* survivor = store.first_row(*before.node) < store.first_row(*owner) ? before.node : owner;
      auto* absorbed = survivor == owner ? before.node : owner;
      rename_runs(previous, previous_count, absorbed, survivor);
      rename_runs(current, current_count, absorbed, survivor);
      store.absorb(*survivor, *absorbed);
      owner = survivor;
    }
    // A run that reaches further right may touch the next run of this row too.
    if (before.end >= run.last()) {
      if (before.end == run.last()) ++previous_index;
      break;
    }
  }

  if (owner != nullptr) {
    store.extend(*owner, run, row);
  } else {
    owner = store.create(run, row);
    if (owner == nullptr) return false;
  }
  current[current_count++] = {static_cast<unsigned short>(run.first), static_cast<unsigned short>(run.last()), owner};
  return true;
}

/** The runs of two rows, which swap roles from row to row. A row of that width has at most (width + 1) / 2 runs. */
template <class Run>
class RunBuffers {
 public:
  explicit RunBuffers(int width)
      : most_((static_cast<std::size_t>(width) + 1) / 2), runs_(2 * most_), previous_(runs_.get()) {
    current_ = ready() ? previous_ + most_ : nullptr;
  }

  bool ready() const { return runs_.ready(); }

  /** Goes through the rows; `for_each_run(row, found)` calls found for every run of one. */
  template <class Store, class ForEachRun>
  void extract(int height, Store& store, ForEachRun for_each_run) {
    for (int row = 0; row < height; ++row) {
      unsigned short previous_index = 0;
      unsigned short current_count = 0;
      for_each_run(row, [&](geometry::Span run) {
        // A run for which there is no room is dropped.
        add_run<Run>(run, row, {previous_, current_, previous_count_, previous_index, current_count}, store);
      });
      std::swap(previous_, current_);
      previous_count_ = current_count;
    }
  }

 private:
  std::size_t most_;
  image::WorkArray<Run> runs_;
  Run* previous_;
  Run* current_;
  unsigned short previous_count_ = 0;
};

}  // namespace vantrel::components

#endif
