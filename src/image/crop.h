/**
 * @file crop.h
 * @brief Copying a rectangle out of an image.
 */
#ifndef VANTREL_IMAGE_CROP_H
#define VANTREL_IMAGE_CROP_H

#include "image/view.h"

namespace vantrel::image {

/**
 * Copies to `target` the pixels of `source` from column `left` and memory row `first_row` on. What lies outside the
 * source stays as it is in whole bytes; of bilevel rows inside the source the columns outside become white.
 *
 * @param bit_count of both images: 1, or a multiple of 8.
 */
void copy_rectangle(ConstPixels source, Pixels target, int left, int first_row, int bit_count);

}  // namespace vantrel::image

#endif
