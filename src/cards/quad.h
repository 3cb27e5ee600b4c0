/**
 * @file quad.h
 * @brief Quadrilaterals: how long their edges are, how they are turned, the same on a larger scan.
 *
 * Nothing but sums, products, quotients and square roots is used, which every machine computes alike.
 */
#ifndef VANTREL_CARDS_QUAD_H
#define VANTREL_CARDS_QUAD_H

#include <array>

#include "geometry/line.h"
#include "vantrel_cards.h"

namespace vantrel::cards {

/** A quadrilateral from one of the core's, and back in the single precision in which the core maps. */
vantrel_quad quad_of(const geometry::Quadrilateral<float>& corners);
geometry::Quadrilateral<float> single_precision(const vantrel_quad& quad);

/** The upright quadrilateral around the pixels of a rectangle. */
vantrel_quad quad_of(const vantrel_rect& rectangle);

/** The same one, a number of times as far from the origin, then so far to the right and down. */
vantrel_quad scaled(const vantrel_quad& quad, double factor);
vantrel_quad moved(const vantrel_quad& quad, double right, double down);

/** Whether all positions are numbers that single precision holds. */
bool is_finite(const vantrel_quad& quad);

/** The lengths of the edges, by vantrel_side_index. */
std::array<double, 4> edge_lengths(const vantrel_quad& quad);

/** The area, negative when the corners run round the other way. */
double area(const vantrel_quad& quad);

/** How far the middle between the upper and the lower edge is turned, in degrees; positive clockwise. */
double tilt(const vantrel_quad& quad);

/** The direction (x, y) in degrees from that of x towards that of y, more than -180 to 180; 0 when both are 0. */
double direction(double x, double y);

}  // namespace vantrel::cards

#endif
