/**
 * @file exports.h
 * @brief Doors: the two resamplers behind BiLinear and BiCubic. (These and BiCubicDir are declared in vantrel.h.)
 *
 * Both fill an existing image of twice the source's height and twice its width rounded up to a multiple of 4, of the
 * source's depth (24 bits, or anything else as one byte a pixel), as one stream of bytes. The source's width and height
 * are taken as signed 16-bit values. Distinct images may be resampled at the same time.
 *
 * Time is in proportion to the pixels made, memory to a row of them.
 */
#ifndef VANTREL_SCALE_EXPORTS_H
#define VANTREL_SCALE_EXPORTS_H

#include "vantrel.h"

/**
 * Rounded means of the two or four nearest source pixels.
 *
 * @param factor sets the size of the output; 0 is refused. Positions are halved whatever it is.
 * @return false when an image is missing, `factor` is 0, or there is no memory; nothing is then written.
 */
VANTREL_API bool BiLinearMethod(BITMAPPTR* src, BITMAPPTR* dst, short factor);

/**
 * The four-tap kernel (-1, 9, 9, -1) / 16, first along rows, then along columns; repeats pixels at the border.
 *
 * @param factor ignored: the enlargement is always two.
 * @return false when an image is missing or there is no memory; nothing is then written.
 */
VANTREL_API bool BiCubicMethod(BITMAPPTR* src, BITMAPPTR* dst, short factor);

#endif
