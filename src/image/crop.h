/**
 * @file crop.h
 * @brief Copying a rectangle out of an image.
 */
#ifndef VANTREL_IMAGE_CROP_H
#define VANTREL_IMAGE_CROP_H

#include <cstddef>
#include <cstring>

#include "image/view.h"

namespace vantrel::image {

/** Whitens the last word of a row of whole words: its padding, and pixels that are yet to be written. */
inline void whiten_row_end(Pixels pixels, int row) {
  constexpr std::ptrdiff_t kWord = 4;
  if (pixels.stride >= kWord) std::memset(pixels.row(row) + pixels.stride - kWord, 0xFF, kWord);
}

/**
 * Copies to `target` the pixels of `source` from column `left` and memory row `first_row` on. What lies outside the
 * source stays as it is in whole bytes, but for the last word of a row, which becomes white first; of bilevel rows
 * inside the source the columns outside become white.
 *
 * @param bit_count of both images: 1, or a multiple of 8.
 */
void copy_rectangle(ConstPixels source, Pixels target, int left, int first_row, int bit_count);

}  // namespace vantrel::image

#endif
