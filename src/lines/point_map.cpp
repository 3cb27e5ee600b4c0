#include "lines/point_map.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>

namespace vantrel::lines {
namespace {

constexpr int blocks_of(int slices) { return (slices + PointMap::kBlock - 1) / PointMap::kBlock; }
constexpr int tiles_of(int bytes) { return (bytes + PointMap::kTile - 1) / PointMap::kTile; }

}  // namespace

PointMap::PointMap(const EdgeMaps& maps, const geometry::Rect& area, Direction direction)
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
    for (int c = area.cols.first; c < area.cols.end; c += kTile) copy_tile(maps, r, c, direction);
  }
  count_tiles();
}

/** Copies the points of a tile, and notes it if there are any: most tiles of most maps have none. */
void PointMap::copy_tile(const EdgeMaps& maps, int row, int col, Direction direction) {
  const int rows = std::min(kTile, area_.rows.end - row);
  const int cols = std::min(kTile, area_.cols.end - col);
  const image::ConstPixels directions = maps.direction();
  constexpr auto kNone = static_cast<unsigned char>(Direction::kNone);
  unsigned char tile[kTile][kTile];
  std::memset(tile, kNone, sizeof tile);
  bool flat = true;
  for (int r = 0; r < rows; ++r) {
    if (cols == kTile) {
      std::memcpy(tile[r], directions.row(row + r) + col, kTile);
    } else {
      std::memcpy(tile[r], directions.row(row + r) + col, static_cast<std::size_t>(cols));
    }
    std::uint64_t line;
    std::memcpy(&line, tile[r], sizeof line);
    flat = flat && line == kNone * 0x0101010101010101;
  }
  if (flat) return;
  unsigned char any = 0;
  for (unsigned char& byte : std::span(tile[0], std::size_t{kTile} * kTile)) {
    byte = byte == static_cast<unsigned char>(direction) ? 255 : 0;
    any |= byte;
  }
  if (any == 0) return;
  const int down = row - area_.rows.first;
  const int right = col - area_.cols.first;
  const int first_slice = slices_are_rows_ ? down : right;
  const int first_byte = slices_are_rows_ ? right : down;
  unsigned char* slice = bytes_.get() + kMargin + first_slice * stride_ + first_byte;
  for (int i = 0; i < kTile; ++i, slice += stride_) {
    unsigned char line[kTile];
    for (int j = 0; j < kTile; ++j) line[j] = slices_are_rows_ ? tile[i][j] : tile[j][i];
    std::memcpy(slice, line, sizeof line);
  }
  int* tiles = tiles_.get() + std::ptrdiff_t{first_slice / kBlock} * (tiles_across_ + 1);
  tiles[first_byte / kTile + 1] = 1;
}

void PointMap::count_tiles() {
  int* row = tiles_.get();
  for (int left = blocks_of(slices().size()); left > 0; --left, row += tiles_across_ + 1) {
    for (int i = 0; i < tiles_across_; ++i) row[i + 1] += row[i];
  }
}

bool PointMap::is_empty(int block, geometry::Span bytes) const {
  const geometry::Span inside = geometry::common(bytes, {0, across().size()});
  if (inside.empty()) return true;
  const int* before = tiles_before(block);
  return before[inside.last() / kTile + 1] == before[inside.first / kTile];
}

}  // namespace vantrel::lines
