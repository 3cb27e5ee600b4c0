/**
 * @file overlap.h
 * @brief How two quadrilaterals lie to each other.
 */
#ifndef VANTREL_ANYWHERE_OVERLAP_H
#define VANTREL_ANYWHERE_OVERLAP_H

#include "anywhere/quad.h"

namespace vantrel::anywhere {

/** The area that two convex, clockwise quadrilaterals share. */
double shared_area(const Quad& a, const Quad& b);

enum class Relation : unsigned char { kApart, kAround, kWithin, kSame, kAcross };

/** How `a` lies to `b`: around it, within it, ... */
Relation relation(const Quad& a, const Quad& b);

}  // namespace vantrel::anywhere

#endif
