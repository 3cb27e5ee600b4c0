/**
 * @file refine.h
 * @brief A quadrilateral laid onto the borders of the scan itself, to a fraction of a pixel.
 */
#ifndef VANTREL_ANYWHERE_REFINE_H
#define VANTREL_ANYWHERE_REFINE_H

#include <array>

#include "anywhere/quad.h"
#include "anywhere/scan.h"

namespace vantrel::anywhere {

/** A quadrilateral on the scan, and what speaks for each of its sides. */
struct Refined {
  Quad quad;
  std::array<double, 4>
      shares{}; /**< 0 to 1: of the places looked at along a side, those that show a border on its line */
  std::array<double, 4> contrasts{}; /**< levels between inside and outside, the median over the side */
};

/**
 * Moves each side of a quadrilateral onto the border that runs near it.
 *
 * @param start in the coordinates of the scan, good to about `reach` pixels.
 * @param reach how far from its side a border is looked for, in pixels of the scan.
 *
 * Corners are where the straight sides would meet, also where they are round; sides bowed as those of a curled card are
 * followed to their ends, and the lines between these meet. Of a thin dark line around a card the inner flank is the
 * card's edge where the line is a shadow, and the outer one where it is the card's own dark rim.
 *
 * A side without a border stays where it is, with a share of 0. A side on the frame of the scan, or beyond it, stays.
 */
Refined refine(const Scan& scan, const Quad& start, double reach);

}  // namespace vantrel::anywhere

#endif
