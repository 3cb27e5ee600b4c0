#include "lines/edge_maps.h"

#include <cstring>

namespace vantrel::lines {

EdgeMaps::EdgeMaps(image::ConstPixels gray)
    : gray_(gray),
      stride_(static_cast<std::ptrdiff_t>(image::stride_bytes(gray.cols, 8))),
      edge_(static_cast<std::size_t>(stride_) * static_cast<std::size_t>(gray.rows)),
      direction_(edge_.ready() ? edge_.size() : 0) {
  if (!ready()) return;
  std::memset(edge_.get(), kNoEdge, edge_.size());
  std::memset(direction_.get(), static_cast<int>(Direction::kNone), direction_.size());
}

void EdgeMaps::detect(const geometry::Rect& interior) {
  mark_edges(gray_, {edge_.get(), gray_.rows, gray_.cols, stride_}, {direction_.get(), gray_.rows, gray_.cols, stride_},
             interior);
}

bool EdgeMaps::has_points(const geometry::Rect& area, Direction direction, int least) const {
  int count = 0;
  for (int r = area.rows.first; r < area.rows.end && count < least; ++r) {
    for_each_point({{r, r + 1}, area.cols}, direction, [&](int, int) { ++count; });
  }
  return count >= least;
}

}  // namespace vantrel::lines
