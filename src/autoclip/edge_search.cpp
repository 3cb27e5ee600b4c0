#include "autoclip/edge_search.h"

#include <cmath>
#include <cstring>

#include "autoclip/corners.h"
#include "lines/sobel.h"

namespace vantrel {

DegreeTables::DegreeTables() {
  for (int t = 0; t < 180; ++t) {
    const double angle = t * 0.01745329251994;
    sin[t] = std::sin(angle);
    cos[t] = std::cos(angle);
  }
}

EdgeMaps::EdgeMaps(const ConstPixels& gray)
    : gray_(gray),
      size_(static_cast<std::size_t>(gray.stride) * static_cast<std::size_t>(gray.rows)),
      edge_(size_),
      dir_(edge_.ready() ? size_ : 0) {
  if (!ready()) return;
  std::memset(edge_.get(), kNoEdge, size_);
  std::memset(dir_.get(), kNoDirection, size_);
}

void EdgeMaps::detect(const MYRECT& interior) {
  // The operator only reads the image.
  Sobel_Operator(const_cast<unsigned char*>(gray_.data), edge_.get(), dir_.get(), gray_.rows, gray_.cols,
                 static_cast<int>(gray_.stride), interior);
}

int EdgeMaps::collect(const Region& region, int direction, typePoint* points) const {
  int count = 0;
  CalcPointCenter2(edge_.get(), dir_.get(), points, count, region.row_from, region.row_to, region.col_from,
                   region.col_to, static_cast<int>(gray_.stride), direction);
  return count;
}

}  // namespace vantrel
