/**
 * @file edge_maps.h
 * @brief The edge and direction maps of a scan, and the edge points collected from them.
 */
#ifndef VANTREL_LINES_EDGE_MAPS_H
#define VANTREL_LINES_EDGE_MAPS_H

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "components/kernels.h"
#include "geometry/span.h"
#include "image/view.h"
#include "image/work_array.h"
#include "lines/edges.h"

namespace vantrel::lines {

/** An edge point: memory row and column. */
struct EdgePoint {
  float row;
  float col;
};

/** Calls `found(row, column)` for every edge pixel of one direction byte in an area, row by row. */
template <class Found>
void for_each_edge(image::ConstPixels edge, image::ConstPixels direction, const geometry::Rect& area, int value,
                   Found found) {
  static_assert(kEdge == 0);  // as the foreground of components
  constexpr int kWord = 64;
  for (int r = area.rows.first; r < area.rows.end; ++r) {
    for (int from = area.cols.first; from < area.cols.end; from += kWord) {
      std::uint64_t edges = 0;
      components::kernels->find_foreground(edge.row(r) + from, std::min(kWord, area.cols.end - from), &edges);
      for (; edges != 0; edges &= edges - 1) {
        const int c = from + std::countr_zero(edges);
        if (direction.row(r)[c] == value) found(r, c);
      }
    }
  }
}

/** The edge and direction maps of a gray image. Their rows are padded to whole 32-bit words, the padding no edge. */
class EdgeMaps {
 public:
  /** Allocates maps that show nothing yet; check `ready` before use. */
  explicit EdgeMaps(image::ConstPixels gray);

  bool ready() const { return edge_.ready() && direction_.ready(); }

  /** Marks the edges outside the interior rectangle (see mark_edges). */
  void detect(const geometry::Rect& interior);

  /** Pixels among which none is an edge. */
  const geometry::Rect& skipped() const { return skipped_; }

  /** Calls `found(row, column)` for every edge pixel of a direction in an area, row by row. */
  template <class Found>
  void for_each_point(const geometry::Rect& area, Direction direction, Found found) const {
    for_each_edge(edge(), this->direction(), area, static_cast<int>(direction), found);
  }

  /** How many of them there are. */
  std::int64_t count_points(const geometry::Rect& area, Direction direction) const;

  image::ConstPixels edge() const { return {edge_.get(), gray_.rows, gray_.cols, stride_}; }
  image::ConstPixels direction() const { return {direction_.get(), gray_.rows, gray_.cols, stride_}; }

 private:
  void clear_frame(image::WorkArray<unsigned char>& map, int none) const;

  image::ConstPixels gray_;
  std::ptrdiff_t stride_;
  geometry::Rect skipped_{};
  image::WorkArray<unsigned char> edge_;
  image::WorkArray<unsigned char> direction_;
};

}  // namespace vantrel::lines

#endif
