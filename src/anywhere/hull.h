/**
 * @file hull.h
 * @brief The convex hull of a region, and quadrilaterals around it.
 */
#ifndef VANTREL_ANYWHERE_HULL_H
#define VANTREL_ANYWHERE_HULL_H

#include <cstddef>
#include <span>

#include "anywhere/outline.h"
#include "anywhere/quad.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** A convex polygon; its corners run clockwise as one sees them. Around pixels they are four at least. */
class Hull {
 public:
  /** Room for the hull of any region of a map with so many rows. */
  explicit Hull(int rows) : corners_(static_cast<std::size_t>(rows) * 4 + 4) {}

  bool ready() const { return corners_.ready(); }
  /** Encloses the pixels of a region: A. M. Andrew's monotone chains (1979), down its right and up its left. */
  void enclose(const Outline& outline);
  std::span<const Point> corners() const { return {corners_.get(), count_}; }

  /**
   * Takes side after side away, each time that which adds least area when its neighbours are prolonged (D. Dori and
   * M. Ben-Bassat, 1983), until four are left.
   */
  Quad reduce_to_quad();

 private:
  void add(Point corner, std::size_t chain_start);
  void remove_cheapest_side();
  bool without_side(std::size_t side, Point& corner, double& added) const;

  image::WorkArray<Point> corners_;
  std::size_t count_ = 0;
};

/** The smallest rectangle around a hull that has an area, by rotating calipers (G. Toussaint, 1983). */
Quad smallest_rectangle(std::span<const Point> hull);

}  // namespace vantrel::anywhere

#endif
