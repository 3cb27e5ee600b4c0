/**
 * @file components.h
 * @brief The eight-connected components of an edge map, as boxes.
 */
#ifndef VANTREL_COMPONENTS_COMPONENTS_H
#define VANTREL_COMPONENTS_COMPONENTS_H

#include <span>

#include "geometry/span.h"
#include "image/view.h"
#include "image/work_array.h"

namespace vantrel::components {

/** The nodes of a block list's pool. */
inline constexpr int kPoolNodes = 10'000;

/** So many components are kept at once: of the pool's nodes two go to the group and the line that hold the others. */
inline constexpr int kMostComponents = kPoolNodes - 2;

/** The longest side of an edge map: boxes have signed 16-bit bounds. */
inline constexpr int kLongestSide = 32767;

/** The components of an edge map. */
class ComponentBoxes {
 public:
  /**
   * Finds the components; check `ready` before use. Runs that touch no component while there is no room for another one
   * are dropped.
   *
   * @param edge 0 = foreground; no side longer than kLongestSide.
   */
  explicit ComponentBoxes(image::ConstPixels edge);

  bool ready() const { return ready_; }

  /** The box of each, in the order in which they were met: by ascending first row. */
  std::span<const geometry::Rect> all() const { return boxes_.all().first(count_); }

 private:
  bool ready_ = false;
  std::size_t count_ = 0;
  image::WorkArray<geometry::Rect> boxes_;
};

}  // namespace vantrel::components

#endif
