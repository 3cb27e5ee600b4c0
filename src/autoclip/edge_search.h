/**
 * @file edge_search.h
 * @brief What both corner finders share: the edge maps of a scan, its edge points and the angle tables.
 */
#ifndef VANTREL_AUTOCLIP_EDGE_SEARCH_H
#define VANTREL_AUTOCLIP_EDGE_SEARCH_H

#include <cstddef>

#include "image/bitmap.h"
#include "image/work_array.h"
#include "lines/border_line.h"
#include "lines/levels.h"

namespace vantrel {

/** Sines and cosines of 0 to 179 degrees. */
struct DegreeTables {
  double sin[180];
  double cos[180];

  DegreeTables();
};

/** The edge and direction maps of a gray image, in its geometry. */
class EdgeMaps {
 public:
  /** Allocates maps without an edge; check `ready` before use. */
  explicit EdgeMaps(const ConstPixels& gray);

  bool ready() const { return edge_.ready() && dir_.ready(); }

  /** Marks the edges outside the interior rectangle (see Sobel_Operator). */
  void detect(const MYRECT& interior);

  /** Collects the edge points of a band and one direction class; returns their number. */
  int collect(const Region& region, int direction, typePoint* points) const;

  unsigned char* edge() const { return edge_.get(); }

 private:
  ConstPixels gray_;
  std::size_t size_;
  WorkArray<unsigned char> edge_;
  WorkArray<unsigned char> dir_;
};

}  // namespace vantrel

#endif
