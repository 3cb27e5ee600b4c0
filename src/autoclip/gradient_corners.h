/**
 * @file gradient_corners.h
 * @brief Finding the corners of a card by gradient direction alone, in a narrow frame along the image's edges.
 */
#ifndef VANTREL_AUTOCLIP_GRADIENT_CORNERS_H
#define VANTREL_AUTOCLIP_GRADIENT_CORNERS_H

#include "autoclip/corners.h"
#include "image/view.h"

namespace vantrel::autoclip {

/** The four lines, as far as there are any, where they meet, and whether there was memory. */
struct GradientSearch {
  bool complete = true;
  bool has_lines = false;
  Intersections corners{}; /**< memory rows, when there are lines */
};

GradientSearch find_gradient_corners(image::ConstPixels gray);

}  // namespace vantrel::autoclip

#endif
