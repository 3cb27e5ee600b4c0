/**
 * @file side_fit.h
 * @brief A quadrilateral's sides laid onto the borders along the outline of the region that it encloses.
 */
#ifndef VANTREL_ANYWHERE_SIDE_FIT_H
#define VANTREL_ANYWHERE_SIDE_FIT_H

#include <array>

#include "anywhere/copy.h"
#include "anywhere/outline.h"
#include "anywhere/quad.h"

namespace vantrel::anywhere {

/** How well a quadrilateral describes a region. */
struct Plausibility {
  double mean_share = 0.0;  /**< of the places along the sides, those that have a border on the side's line */
  double least_share = 0.0; /**< of the worst side */
  double fill = 0.0;        /**< the region's area, holes filled, over the quadrilateral's */

  double score() const;
};

/** A place of the outline: where along an axis, and where across. */
struct Place {
  int along = 0;
  double across = 0.0;
};

/** At most so many places of a side are looked at, evenly spread. */
inline constexpr int kMostOutlinePlaces = 40;

/** A side of a quadrilateral and the outline beside it. */
struct SidePlaces {
  bool level = false; /**< the axis is x, and y runs across; else the other way round */
  int count = 0;
  std::array<Place, kMostOutlinePlaces> places;
};

/** The outline beside the side from one corner to the next, but for a share of it at each end: corners may be round. */
SidePlaces side_places(const Outline& outline, Point from, Point to);

/** Moves places to the strongest step of the copy nearby, to a fraction of a pixel. Those at the frame stay. */
void snap(const Copy& copy, SidePlaces& side);

/** A line through most of a side's places, none too far from the line through its corners; false if there is none. */
bool fit_line(const SidePlaces& side, Point from, Point to, NormalLine& line);

/**
 * Moves each side of a quadrilateral around a region onto the border there; those without one stay.
 *
 * @return how well it describes the region then; all 0 where it does not come near from the start.
 */
Plausibility fit_sides(const Copy& copy, const Outline& outline, Quad& quad);

}  // namespace vantrel::anywhere

#endif
