/**
 * @file enlarge.h
 * @brief Enlarging an image to twice its width and height.
 */
#ifndef VANTREL_SCALE_ENLARGE_H
#define VANTREL_SCALE_ENLARGE_H

#include "image/view.h"

namespace vantrel::scale {

/** The longest side that is worth enlarging: a larger scan has detail enough. */
inline constexpr int kLongestSide = 2000;

/**
 * Enlarges by rounded means of the two or four nearest pixels.
 *
 * Pixel (r, c) of the target lies at (r / 2, c / 2) of the source. Behind the source's last row and last column the
 * last ones are repeated, however large the target is; a smaller target is a part of the picture.
 *
 * @param channels bytes in a pixel of both: 1, 3 or 4.
 * @return false when there is no memory; the target is then untouched. So it is by a source without pixels.
 */
bool enlarge_bilinear(image::ConstPixels source, image::Pixels target, int channels);

/**
 * Enlarges with the four-tap kernel (-1, 9, 9, -1) / 16, first along rows, then along columns; as above. Where the
 * kernel reaches out of the source, the pixel before is repeated.
 */
bool enlarge_bicubic(image::ConstPixels source, image::Pixels target, int channels);

/** The kernel's rounded value halfway between b and c, not clamped. Sums beyond 32 bits wrap. */
constexpr int cubic_midpoint(int a, int b, int c, int d) {
  const auto inner = static_cast<unsigned>(b) + static_cast<unsigned>(c);
  const auto outer = static_cast<unsigned>(a) + static_cast<unsigned>(d);
  return static_cast<int>(9 * inner - outer + 8) >> 4;
}

}  // namespace vantrel::scale

#endif
