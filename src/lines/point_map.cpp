#include "lines/point_map.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace vantrel::lines {
namespace {

using geometry::Rect;
using geometry::Span;

constexpr int blocks_of(int slices) { return (slices + PointMap::kBlock - 1) / PointMap::kBlock; }
/** Most of most maps is empty, which is seen for so many columns at once. */
constexpr int kStretch = 64;

bool has_edges(const image::ConstPixels& directions, const Rect& area) {
  unsigned any = 0;
  for (int r = area.rows.first; r < area.rows.end; ++r) {
    const unsigned char* row = directions.row(r) + area.cols.first;
    const auto look = [&](int count) {
      for (int i = 0; i < count; ++i) any |= row[i] ^ static_cast<unsigned>(Direction::kNone);
    };
    // A whole stretch is looked at in vectors.
    if (area.cols.size() == kStretch) {
      look(kStretch);
    } else {
      look(area.cols.size());
    }
  }
  return any != 0;
}

constexpr int tiles_of(int bytes) { return (bytes + PointMap::kTile - 1) / PointMap::kTile; }

/** Each half interleaved with the other moves the bits of a place round by one; three times that, and rows are columns.
 */
template <class Tile>
void transpose(Tile& tile) {
  constexpr int kHalf = PointMap::kTile * PointMap::kTile / 2;
  static_assert(kHalf == 1 << 5);
  for (int i = 0; i < 3; ++i) {
    Tile mixed;
    for (int k = 0; k < kHalf; ++k) {
      mixed.bytes[2 * k] = tile.bytes[k];
      mixed.bytes[2 * k + 1] = tile.bytes[k + kHalf];
    }
    tile = mixed;
  }
}

}  // namespace

PointMap::PointMap(const EdgeMaps& maps, const Rect& area, Direction direction)
    : area_(area),
      slices_are_rows_(direction == Direction::kAlongRows),
      stride_(std::ptrdiff_t{across().size()} + kMargin),
      tiles_across_(tiles_of(across().size())),
      // A margin behind a slice is the next one's; behind the last there is room for the rest of a tile.
      bytes_(static_cast<std::size_t>(stride_) * static_cast<std::size_t>(slices().size() + kTile) + kMargin,
             image::Fill::kZero),
      tiles_(static_cast<std::size_t>(blocks_of(slices().size())) * static_cast<std::size_t>(tiles_across_ + 1),
             image::Fill::kZero) {
  if (!ready()) return;
  for (int r = area.rows.first; r < area.rows.end; r += kTile) {
    const Span rows{r, std::min(r + kTile, area.rows.end)};
    const auto [skipped_rows, skipped] = maps.skipped();
    const bool skips = skipped_rows.first <= rows.first && rows.end <= skipped_rows.end;
    for (int c = area.cols.first; c < area.cols.end; c += kStretch) {
      const Rect part{rows, {c, std::min(c + kStretch, area.cols.end)}};
      if (skips && skipped.first <= part.cols.first && part.cols.end <= skipped.end) continue;
      if (has_edges(maps.direction(), part)) copy_tiles(maps.direction(), part, direction);
    }
  }
  count_tiles();
}

/** Copies the points of some tiles side by side, and notes those that have any. */
void PointMap::copy_tiles(const image::ConstPixels& directions, const Rect& from, Direction direction) {
  const auto value = static_cast<unsigned char>(direction);
  for (int col = from.cols.first; col < from.cols.end; col += kTile) {
    Tile tile{};
    const int cols = std::min(kTile, from.cols.end - col);
    for (int r = 0; r < from.rows.size(); ++r) {
      const unsigned char* row = directions.row(from.rows.first + r) + col;
      for (int c = 0; c < cols; ++c) tile.bytes[r * kTile + c] = row[c] == value ? 255 : 0;
    }
    const int down = from.rows.first - area_.rows.first, right = col - area_.cols.first;
    if (slices_are_rows_) {
      put_tile(tile, down, right);
    } else {
      transpose(tile);
      put_tile(tile, right, down);
    }
  }
}

void PointMap::put_tile(const Tile& tile, int first_slice, int first_byte) {
  if (std::all_of(std::begin(tile.bytes), std::end(tile.bytes), [](unsigned char byte) { return byte == 0; })) return;
  unsigned char* slice = bytes_.get() + kMargin + first_slice * stride_ + first_byte;
  for (int i = 0; i < kTile; ++i, slice += stride_) std::memcpy(slice, tile.bytes + i * kTile, kTile);
  int* tiles = tiles_.get() + std::ptrdiff_t{first_slice / kBlock} * (tiles_across_ + 1);
  tiles[first_byte / kTile + 1] = 1;
}

void PointMap::count_tiles() {
  int* row = tiles_.get();
  for (int left = blocks_of(slices().size()); left > 0; --left, row += tiles_across_ + 1) {
    for (int i = 0; i < tiles_across_; ++i) row[i + 1] += row[i];
  }
}

bool PointMap::is_empty(int block, Span bytes) const {
  const Span inside = geometry::common(bytes, {0, across().size()});
  if (inside.empty()) return true;
  const int* before = tiles_before(block);
  return before[inside.last() / kTile + 1] == before[inside.first / kTile];
}

}  // namespace vantrel::lines
