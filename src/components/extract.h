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
 * The runs of a row are records with the members start and end (inclusive), and a name of their component.
 */
#ifndef VANTREL_COMPONENTS_EXTRACT_H
#define VANTREL_COMPONENTS_EXTRACT_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "components/components.h"
#include "components/kernels.h"
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

/** Calls `found(columns)` for every run of foreground bytes (0) of a row, which is no longer than kLongestSide. */
template <class Found>
[[gnu::always_inline]] inline void for_each_run_of_bytes(const unsigned char* bytes, int width, Found found) {
  std::uint64_t foreground[kLongestSide / 64 + 1];
  kernels->find_foreground(bytes, width, foreground);
  if (width % 64 == 0) foreground[width / 64] = 0;  // where a run that reaches the row's end ends
  bool open = false;                                // whether a run goes on behind the word before
  int start = 0;
  for (int column = 0; column <= width; column += 64) {
    const std::uint64_t word = foreground[column / 64];
    const std::uint64_t shifted = word << 1 | (open ? 1 : 0);
    std::uint64_t starts = word & ~shifted;
    for (std::uint64_t ends = shifted & ~word; ends != 0; ends &= ends - 1) {
      if (!open) {
        start = column + std::countr_zero(starts);
        starts &= starts - 1;
      }
      open = false;
      found(geometry::Span{start, column + std::countr_zero(ends)});
    }
    if (starts != 0) start = column + std::countr_zero(starts);
    open = word >> 63 != 0;
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

/**
 * Adds a run of row `row` to the component that it touches in the row before, merging components that it connects, or
 * to a new one; false when there was no room for that.
 *
 * @param names how the runs of both rows say whose they are: `of(run)` is the name of a run's component, null for none,
 * `owner(name)` the component, `unite(survivor, absorbed, rows)` makes the absorbed one's runs the survivor's, and
 * `add(run, name, owner, rows)` appends a run to the row, of a new component where the name is null.
 */
template <class Run, class Store, class Names>
[[gnu::always_inline]] inline bool add_run(geometry::Span run, int row, RowRuns<Run> rows, Store& store, Names names) {
  decltype(names.of(*rows.previous)) name = nullptr;
  auto& [previous, current, previous_count, kept_index, current_count] = rows;
  unsigned short previous_index = kept_index;
  // Diagonal neighbours touch: a run of the row before may start one column behind this one's last, or end one before
  // its first.
  for (; previous_index < previous_count && run.end >= previous[previous_index].start; ++previous_index) {
    Run& before = previous[previous_index];
    if (run.first > before.end + 1) continue;
    const auto touched = names.of(before);
    if (name == nullptr) {
      name = touched;
    } else if (touched != name) {
      const bool earlier = store.first_row(*names.owner(touched)) < store.first_row(*names.owner(name));
      const auto survivor = earlier ? touched : name;
      const auto absorbed = earlier ? name : touched;
      auto* kept = names.owner(survivor);
      auto* given_up = names.owner(absorbed);
      name = names.unite(survivor, absorbed, rows);
      store.absorb(*kept, *given_up);
    }
    // A run that reaches further right may touch the next run of this row too.
    if (before.end >= run.last()) {
      if (before.end == run.last()) ++previous_index;
      break;
    }
  }
  kept_index = previous_index;

  auto* owner = name == nullptr ? store.create(run, row) : names.owner(name);
  if (owner == nullptr) return false;
  if (name != nullptr) store.extend(*owner, run, row);
  names.add(run, name, owner, rows);
  ++current_count;
  return true;
}

/** Runs that name their component itself, as a host's records do: uniting two renames the runs of both rows. */
struct OwnNames {
  template <class Run>
  static auto of(const Run& run) {
    return run.node;
  }
  template <class Owner>
  static Owner* owner(Owner* name) {
    return name;
  }
  template <class Run, class Owner>
  static Owner* unite(Owner* survivor, const Owner* absorbed, const RowRuns<Run>& rows) {
    const auto rename = [&](Run* runs, unsigned short count) {
      for (Run* run = runs; run != runs + count; ++run) {
        if (run->node == absorbed) run->node = survivor;
      }
    };
    rename(rows.previous, rows.previous_count);
    rename(rows.current, rows.current_count);
    return survivor;
  }
  template <class Run, class Owner>
  static void add(geometry::Span run, const Owner*, Owner* owner, const RowRuns<Run>& rows) {
    rows.current[rows.current_count] = {static_cast<unsigned short>(run.first), static_cast<unsigned short>(run.last()),
                                        owner};
  }
};

/**
 * A run that names another run of its component, up to one that names itself and knows the component: merging two
 * components then costs the same however many runs they have (R. E. Tarjan, "Efficiency of a Good But Not Linear Set
 * Union Algorithm", JACM 22, 1975).
 */
template <class Owner>
struct LinkedRun {
  unsigned short start;
  unsigned short end;
  LinkedRun* same_as;
  Owner* owner; /**< where the run names itself */
};

/** The names of such runs: the run that names itself. A run never names one of the row before its own. */
struct LinkedNames {
  template <class Run>
  static Run* of(Run& run) {
    Run* at = &run;
    while (at->same_as != at) at = at->same_as = at->same_as->same_as;  // halves the way for the next time
    return at;
  }
  template <class Run>
  static auto* owner(Run* name) {
    return name->owner;
  }
  template <class Run>
  static Run* unite(Run* survivor, Run* absorbed, const RowRuns<Run>& rows) {
    auto* owner = survivor->owner;
    if (is_current(absorbed, rows)) std::swap(survivor, absorbed);  // a run of the row before is soon forgotten
    absorbed->same_as = survivor;
    survivor->owner = owner;
    return survivor;
  }
  template <class Run, class Owner>
  static void add(geometry::Span run, Run* name, Owner* owner, const RowRuns<Run>& rows) {
    Run* added = rows.current + rows.current_count;
    *added = {static_cast<unsigned short>(run.first), static_cast<unsigned short>(run.last()), added, owner};
    if (name == nullptr) return;
    if (is_current(name, rows)) {
      added->same_as = name;
    } else {
      name->same_as = added;
    }
  }

 private:
  template <class Run>
  static bool is_current(const Run* run, const RowRuns<Run>& rows) {
    return run >= rows.current && run < rows.current + rows.current_count;
  }
};

/** The runs of two rows, which swap roles from row to row. A row of that width has at most (width + 1) / 2 runs. */
template <class Owner>
class RunBuffers {
  using Run = LinkedRun<Owner>;

 public:
  explicit RunBuffers(int width)
      : most_((static_cast<std::size_t>(width) + 1) / 2), runs_(2 * most_), previous_(runs_.get()) {
    current_ = ready() ? previous_ + most_ : nullptr;
  }

  bool ready() const { return runs_.ready(); }

  /**
   * Goes through the rows; `for_each_run(row, found)` calls found for every run of one. Where all of that is inlined,
   * how far the rows have been looked at stays in registers, which saves a third of the time.
   */
  template <class Store, class ForEachRun>
  void extract(int height, Store& store, ForEachRun for_each_run) {
    for (int row = 0; row < height; ++row) {
      unsigned short previous_index = 0;
      unsigned short current_count = 0;
      const RowRuns<Run> rows{previous_, current_, previous_count_, previous_index, current_count};
      const auto join = [&](geometry::Span run) __attribute__((always_inline)) {
        // A run for which there is no room is dropped.
        add_run<Run>(run, row, rows, store, LinkedNames());
      };
      for_each_run(row, join);
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
