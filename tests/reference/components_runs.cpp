#include <algorithm>

#include "reference/components_flood.h"
#include "support/tally.h"

namespace reference::components {

namespace {

/** A run of a row and the number of the character that it belongs to; `end` is inclusive. */
struct Run {
  int start;
  int end;
  int owner;
};

constexpr int kNone = -1;

/** The characters made so far, the absorbed ones included, and the runs of the two live rows. */
struct State {
  std::vector<Character> made;
  std::vector<bool> alive;
  int living = 0;
  int room = 0;
  int next_label = 1;
  std::vector<Run> previous;
  std::vector<Run> current;

  Character& character(int number) { return made.at(static_cast<std::size_t>(number)); }
};

void rename(std::vector<Run>& runs, int from, int to) {
  for (Run& run : runs) {
    if (run.owner == from) run.owner = to;
  }
}

/** Joins two characters; the one that began in the lower row survives, on a tie the one that was met first. */
int merge(State& state, int first, int second) {
  const bool second_is_older = state.character(second).bottom < state.character(first).bottom;
  const int survivor = second_is_older ? second : first;
  const int absorbed = second_is_older ? first : second;
  support::tally::count(second_is_older ? "runs: the later owner survives" : "runs: the first owner survives");
  Character& kept = state.character(survivor);
  const Character& gone = state.character(absorbed);
  kept.left = std::min(kept.left, gone.left);
  kept.right = std::max(kept.right, gone.right);
  kept.pixels += gone.pixels;
  rename(state.previous, absorbed, survivor);
  rename(state.current, absorbed, survivor);
  state.alive.at(static_cast<std::size_t>(absorbed)) = false;
  --state.living;
  return survivor;
}

/** A new character for a run that touches nothing, or none when the pool has no node left. */
int make(State& state, int start, int last, int row) {
  if (state.living >= state.room) {
    support::tally::count("runs: pool exhausted");
    return kNone;
  }
  state.made.push_back({start, last, row, row, last - start + 1, state.next_label});
  state.alive.push_back(true);
  ++state.next_label;
  ++state.living;
  return static_cast<int>(state.made.size()) - 1;
}

/** The run [start, end) of a row; `position` is the scan position among the runs of the row before. */
void close_run(State& state, int start, int end, int row, std::size_t& position) {
  const int last = end - 1;
  int owner = kNone;
  while (position < state.previous.size() && end >= state.previous.at(position).start) {
    const Run above = state.previous.at(position);
    if (start <= above.end + 1) {
      if (owner == kNone) {
        owner = above.owner;
      } else if (above.owner != owner) {
        owner = merge(state, owner, above.owner);
      }
      if (above.end >= last) {
        if (above.end == last) ++position;
        break;
      }
    }
    ++position;
  }
  if (owner != kNone) {
    Character& grown = state.character(owner);
    grown.top = row;
    grown.left = std::min(grown.left, start);
    grown.right = std::max(grown.right, last);
    grown.pixels += end - start;
  } else {
    owner = make(state, start, last, row);
    if (owner == kNone) return;
  }
  state.current.push_back({start, last, owner});
}

}  // namespace

std::vector<Character> by_runs(const Picture& edge, int room) {
  State state;
  state.room = room;
  for (int row = 0; row < edge.rows; ++row) {
    state.current.clear();
    std::size_t position = 0;
    int start = kNone;
    for (int col = 0; col < edge.cols; ++col) {
      const bool foreground = edge.at(row, col) == 0;
      if (foreground && start == kNone) start = col;
      if (!foreground && start != kNone) {
        close_run(state, start, col, row, position);
        start = kNone;
      }
    }
    if (start != kNone) close_run(state, start, edge.cols, row, position);
    std::swap(state.previous, state.current);
  }
  std::vector<Character> survivors;
  for (std::size_t i = 0; i < state.made.size(); ++i) {
    if (state.alive.at(i)) survivors.push_back(state.made.at(i));
  }
  return survivors;
}

}  // namespace reference::components
