#include "components/components.h"

#include <algorithm>

#include "components/extract.h"
#include "components/kernels.h"

namespace vantrel::components {
namespace {

using geometry::Rect;
using geometry::Span;

/** A component while rows are still to come; given up, it waits in a chain to be used again. */
struct Slot {
  Rect box;
  int label; /**< in the order of creation, from 1; 0 when given up */
  Slot* next_free;
};

/** The components found so far. */
class SlotStore {
 public:
  explicit SlotStore(std::span<Slot> slots) : slots_(slots) {}

  Slot* create(Span run, int row) {
    Slot* slot = free_;
    if (slot != nullptr) {
      free_ = slot->next_free;
    } else if (used_ < slots_.size()) {
      slot = &slots_[used_++];
    } else {
      return nullptr;
    }
    *slot = {{{row, row + 1}, run}, ++label_, nullptr};
    return slot;
  }

  void extend(Slot& slot, Span run, int row) {
    slot.box.rows.end = row + 1;
    widen(slot.box.cols, run);
  }

  int first_row(const Slot& slot) const { return slot.box.rows.first; }

  // The survivor is about to be extended by the row at hand, which is the last row of both.
  void absorb(Slot& survivor, Slot& absorbed) {
    widen(survivor.box.cols, absorbed.box.cols);
    absorbed.label = 0;
    absorbed.next_free = free_;
    free_ = &absorbed;
  }

  /** Writes the boxes in the order of creation; returns their number. */
  std::size_t list(Rect* boxes) {
    const auto used = slots_.first(used_);
    const auto end = std::remove_if(used.begin(), used.end(), [](const Slot& slot) { return slot.label == 0; });
    std::sort(used.begin(), end, [](const Slot& a, const Slot& b) { return a.label < b.label; });
    std::transform(used.begin(), end, boxes, [](const Slot& slot) { return slot.box; });
    return static_cast<std::size_t>(end - used.begin());
  }

 private:
  static void widen(Span& span, Span by) {
    span.first = std::min(span.first, by.first);
    span.end = std::max(span.end, by.end);
  }

  std::span<Slot> slots_;
  std::size_t used_ = 0;
  Slot* free_ = nullptr;
  int label_ = 0;
};

/** Components that a map of this size can have at once, as far as they are kept. */
std::size_t most_components(image::ConstPixels edge) {
  const std::int64_t most = ((std::int64_t{edge.rows} + 1) / 2) * ((std::int64_t{edge.cols} + 1) / 2);
  return static_cast<std::size_t>(std::min<std::int64_t>(most, kMostComponents));
}

}  // namespace

void plain::find_foreground(const unsigned char* bytes, int count, std::uint64_t* foreground) {
  std::fill_n(foreground, (count + 63) / 64, 0);
  for (int i = 0; i < count; ++i) foreground[i / 64] |= std::uint64_t{bytes[i] == 0} << i % 64;
}

ComponentBoxes::ComponentBoxes(image::ConstPixels edge) : boxes_(most_components(edge)) {
  image::WorkArray<Slot> slots(boxes_.size());
  RunBuffers<Slot> runs(edge.cols);
  if (!boxes_.ready() || !slots.ready() || !runs.ready()) return;
  SlotStore store(slots.all());
  const auto runs_of = [&](int row, auto found) __attribute__((always_inline)) {
    for_each_run_of_bytes(edge.row(row), edge.cols, found);
  };
  runs.extract(edge.rows, store, runs_of);
  count_ = store.list(boxes_.get());
  ready_ = true;
}

}  // namespace vantrel::components
