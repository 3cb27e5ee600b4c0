/**
 * @file jaccard.h
 * @brief How well one quadrilateral covers another.
 */
#ifndef VANTREL_EVALUATION_JACCARD_H
#define VANTREL_EVALUATION_JACCARD_H

#include <vector>

#include "anywhere/quad.h"

namespace vantrel::evaluation {

using anywhere::Point;
using anywhere::Quad;

/** Intersection over union of two quadrilaterals, both cut to a frame of `cols` x `rows`. */
double jaccard(const Quad& a, const Quad& b, double cols, double rows);

/** The greatest distance of a corner of `a` from its counterpart in `b`, by the best turn. */
double corner_distance(const Quad& a, const Quad& b);

}  // namespace vantrel::evaluation

#endif
