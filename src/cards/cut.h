/**
 * @file cut.h
 * @brief Straightening a quadrilateral of a scan, and copying a rectangle out of an image.
 */
#ifndef VANTREL_CARDS_CUT_H
#define VANTREL_CARDS_CUT_H

#include "cards/target.h"

namespace vantrel::cards {

/** Whether a quadrilateral encloses something, and the margin is one that there is. */
vantrel_status check_cut(const vantrel_quad& corners, double margin);

/** The natural shape of a cut, the arguments having been checked; of sides of 0 when there is none so large. */
Shape natural_cut(const vantrel_quad& corners, double margin, vantrel_format format);

/** Whether something is left of the target between its margins. */
bool leaves_room(const Shape& shape, double margin);

/** Fills the target, which has the scan's format and leaves room. */
void cut(const vantrel_image& scan, const vantrel_quad& corners, double margin, Target& target);

/** Whether a rectangle has pixels, all of which lie within an image. */
bool lies_within(const vantrel_rect& rectangle, const vantrel_image& image);

/** Fills the target, which has the rectangle's size and the image's format, from a rectangle that lies within. */
void crop(const vantrel_image& image, const vantrel_rect& rectangle, Target& target);

}  // namespace vantrel::cards

#endif
