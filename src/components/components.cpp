#include "components/components.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include "image/bitmap.h"
#include "image/work_array.h"

namespace vantrel {
namespace {

/** Packs eight bytes into bits, most significant first: set where the byte is not 0. */
unsigned char pack_background(const unsigned char* bytes, int count) {
  unsigned bits = 0;
  for (int i = 0; i < count; ++i) bits |= (bytes[i] != 0 ? 0x80u : 0u) >> i;
  return static_cast<unsigned char>(bits);
}

/** Writes one row of the edge map as a row of bits; the bits behind the last column stay as they are. */
void pack_row(const unsigned char* edge, unsigned char* bits, int cols) {
  const int whole = cols / 8;
  for (int i = 0; i < whole; ++i) bits[i] = pack_background(edge + std::ptrdiff_t{i} * 8, 8);
  if (cols % 8 != 0) bits[whole] = pack_background(edge + std::ptrdiff_t{whole} * 8, cols % 8);
}

/** Calls `found(start, end)` for every run [start, end) of foreground bits (0) of a row. */
template <class Found>
void for_each_run(const unsigned char* bits, unsigned width, Found found) {
  constexpr unsigned kNone = ~0u;
  unsigned start = kNone;
  const auto open_at = [&](unsigned column) {
    if (start == kNone) start = column;
  };
  const auto close_at = [&](unsigned column) {
    if (start != kNone) found(start, column);
    start = kNone;
  };
  for (unsigned column = 0; column < width; column += 8) {
    const unsigned byte = bits[column / 8];
    const unsigned count = std::min(8u, width - column);
    if (count == 8 && byte == 0) {
      open_at(column);
    } else if (count == 8 && byte == 0xFF) {
      close_at(column);
    } else {
      for (unsigned bit = 0; bit < count; ++bit) {
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

/** The runs of two rows, which swap roles from row to row. A row of that width has at most (width + 1) / 2 runs. */
class RunRows {
 public:
  explicit RunRows(unsigned width) : most_((std::size_t{width} + 1) / 2), runs_(2 * most_) {
    previous = runs_.get();
    current = ready() ? previous + most_ : nullptr;
  }

  bool ready() const { return runs_.ready(); }
  void next_row() {
    std::swap(previous, current);
    previous_count = std::exchange(current_count, static_cast<unsigned short>(0));
  }

  _RUN* previous;
  _RUN* current;
  unsigned short previous_count = 0;
  unsigned short current_count = 0;

 private:
  std::size_t most_;
  WorkArray<_RUN> runs_;
};

/** Absorbs a component into another that it touches and returns it to the list. */
void absorb(_BLIST& list, _BNODE* survivor, _BNODE* absorbed, _BNODE*& last_character) {
  survivor->rect.left = std::min(survivor->rect.left, absorbed->rect.left);
  survivor->rect.right = std::max(survivor->rect.right, absorbed->rect.right);
  survivor->pixelCount += absorbed->pixelCount;
  absorbed->label = survivor->label;
  if (last_character == absorbed) last_character = absorbed->prev;
  list.ReturnCharacter(absorbed);
}

void rename_runs(_RUN* runs, unsigned short count, const _BNODE* from, _BNODE* to) {
  for (_RUN* run = runs; run != runs + count; ++run) {
    if (run->node == from) run->node = to;
  }
}

}  // namespace
}  // namespace vantrel

int ECC_SetRunComponent(unsigned short start, unsigned short end, unsigned short row, _RUN* prevRuns, _RUN* curRuns,
                        unsigned short prevCount, unsigned short& prevIndex, unsigned short& curCount, _BLIST& list,
                        _BNODE* line, _BNODE*& lastChar, unsigned short /*width*/, int& label) {
  const int last = end - 1;
  _BNODE* owner = nullptr;
  // Diagonal neighbours touch: a run of the row before may start one column behind this one's last, or end one before
  // its first.
  for (; prevIndex < prevCount && end >= prevRuns[prevIndex].start; ++prevIndex) {
    const _RUN& above = prevRuns[prevIndex];
    if (start > above.end + 1) continue;
    if (owner == nullptr) {
      owner = above.node;
    } else if (above.node != owner) {
      _BNODE* survivor = above.node->rect.bottom < owner->rect.bottom ? above.node : owner;
      _BNODE* absorbed = survivor == owner ? above.node : owner;
      vantrel::rename_runs(prevRuns, prevCount, absorbed, survivor);
      vantrel::rename_runs(curRuns, curCount, absorbed, survivor);
      vantrel::absorb(list, survivor, absorbed, lastChar);
      owner = survivor;
    }
    // A run that reaches further right may touch the next run of this row too.
    if (above.end >= last) {
      if (above.end == last) ++prevIndex;
      break;
    }
  }

  const auto pixels = static_cast<std::uint32_t>(end - start);
  const auto left = static_cast<std::int16_t>(start);
  const auto right = static_cast<std::int16_t>(last);
  if (owner != nullptr) {
    owner->rect.top = static_cast<std::int16_t>(row);
    owner->rect.left = std::min(owner->rect.left, left);
    owner->rect.right = std::max(owner->rect.right, right);
    owner->pixelCount += pixels;
  } else {
    const auto at = static_cast<std::int16_t>(row);
    owner = list.RequestCharacter(line, lastChar, nullptr, {left, at, right, at, 0});
    if (owner == nullptr) return 0;
    owner->pixelCount = pixels;
    owner->label = label++;
    lastChar = owner;
  }
  curRuns[curCount++] = {start, static_cast<unsigned short>(last), owner};
  return 1;
}

int Extract_Eight_Connected_Components(BITMAPPTR bitmap, _BLIST& list) {
  const auto width = static_cast<unsigned short>(bitmap.pInfo->biWidth);
  const auto height = static_cast<unsigned short>(bitmap.pInfo->biHeight);
  vantrel::RunRows runs(width);
  if (!runs.ready()) return 0;
  _BNODE* group = list.RequestGroup(nullptr, nullptr, {});
  if (group == nullptr) return 0;
  _BNODE* line = list.RequestLine(group, nullptr, nullptr, {});
  if (line == nullptr) return 0;

  const vantrel::ConstPixels bits = vantrel::const_pixels_of(bitmap);
  _BNODE* last_character = nullptr;
  int label = 1;
  for (unsigned row = 0; row < height; ++row) {
    unsigned short scan_position = 0;
    vantrel::for_each_run(bits.row(static_cast<int>(row)), width, [&](unsigned start, unsigned end) {
      // A run for which the pool has no node is dropped.
      ECC_SetRunComponent(static_cast<unsigned short>(start), static_cast<unsigned short>(end),
                          static_cast<unsigned short>(row), runs.previous, runs.current, runs.previous_count,
                          scan_position, runs.current_count, list, line, last_character, width, label);
    });
    runs.next_row();
  }
  if (line->child != nullptr) return 1;
  list.ReturnGroup(group);
  return 0;
}

bool Gray2Bin(unsigned char* edge, _BLIST& list, int rows, int cols) {
  constexpr int kLongest = std::numeric_limits<std::int16_t>::max();  // rectangles hold no more
  if (rows < 0 || cols < 0 || rows > kLongest || cols > kLongest) return false;
  vantrel::WorkImage work;
  if (!CreateImage(work.get(), cols, rows, 1, 0, 0)) return false;
  const vantrel::Pixels bits = vantrel::pixels_of(*work);
  const std::ptrdiff_t edge_stride = vantrel::stride_bytes(cols, 8);
  for (int r = 0; r < rows; ++r) vantrel::pack_row(edge + r * edge_stride, bits.row(r), cols);
  return Extract_Eight_Connected_Components(*work, list) != 0;
}
