/**
 * @file point_map.h
 * @brief The edge points of one direction in an area, as a map that lies along the lines they vote for.
 */
#ifndef VANTREL_LINES_POINT_MAP_H
#define VANTREL_LINES_POINT_MAP_H

#include <cstddef>

#include "geometry/span.h"
#include "image/work_array.h"
#include "lines/edge_maps.h"
#include "lines/kernels.h"

namespace vantrel::lines {

/**
 * A byte for each pixel, 255 where a point is and 0 elsewhere, in slices across the lines: a slice is a column for
 * near- level lines and a row for near-upright ones, so that neighbouring lines pass through neighbouring bytes of it.
 */
class PointMap {
 public:
  /** So many bytes before and behind every slice are 0. */
  static constexpr int kMargin = 128;

  /** So many slices, and so many pixels of each, are known to be empty or not together. */
  static constexpr int kBlock = kMostSlices;
  static constexpr int kTile = 8;

  /** None, and not ready. */
  PointMap() = default;

  /** Check `ready` before use. */
  PointMap(const EdgeMaps& maps, const geometry::Rect& area, Direction direction);

  bool ready() const { return bytes_.ready() && tiles_.ready(); }
  bool slices_are_rows() const { return slices_are_rows_; }

  /** Rows or columns of the image. */
  geometry::Span slices() const { return slices_are_rows_ ? area_.rows : area_.cols; }
  /** The places across, that is columns or rows. */
  geometry::Span across() const { return slices_are_rows_ ? area_.cols : area_.rows; }

  std::ptrdiff_t stride() const { return stride_; }
  /** The first byte of a slice, counted from 0. */
  const unsigned char* slice(int index) const { return bytes_.get() + kMargin + index * stride_; }

  /** Whether some bytes are all 0, counted from 0, in every slice of a block; a true one may be missed. */
  bool is_empty(int block, geometry::Span bytes) const;

  /** Calls `found(bytes)` for spans of bytes in a block of slices, in order: outside all of them, it is empty. */
  template <class Found>
  void for_each_span(int block, Found found) const {
    const int* before = tiles_before(block);
    for (int i = 0; i < tiles_across_; ++i) {
      const int first = i;
      while (i < tiles_across_ && before[i + 1] != before[i]) ++i;
      if (i > first) found(geometry::Span{first * kTile, i * kTile});
    }
  }

 private:
  struct Tile {
    unsigned char bytes[kTile * kTile];
  };

  void copy_tiles(const image::ConstPixels& directions, const geometry::Rect& from, Direction direction);
  void put_tile(const Tile& tile, int first_slice, int first_byte);
  void count_tiles();
  const int* tiles_before(int block) const { return tiles_.get() + std::ptrdiff_t{block} * (tiles_across_ + 1); }

  geometry::Rect area_{};
  bool slices_are_rows_ = false;
  std::ptrdiff_t stride_ = 0;
  int tiles_across_ = 0;
  image::WorkArray<unsigned char> bytes_;
  image::WorkArray<int> tiles_; /**< of each block of slices: how many tiles before this one have points */
};

}  // namespace vantrel::lines

#endif
