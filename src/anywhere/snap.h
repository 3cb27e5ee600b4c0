/**
 * @file snap.h
 * @brief The sides of a rough quadrilateral moved onto the edges near them.
 */
#ifndef VANTREL_ANYWHERE_SNAP_H
#define VANTREL_ANYWHERE_SNAP_H

#include "anywhere/edges.h"
#include "anywhere/quad.h"

namespace vantrel::anywhere {

/** Moves each side onto the edges within `reach` of it; one with few edges stays. */
Quad snap(const Edges& edges, const Quad& quad, double reach);

}  // namespace vantrel::anywhere

#endif
