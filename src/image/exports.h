/**
 * @file exports.h
 * @brief Doors: image blocks made, copied and converted. (CutRectImage and FreeCardImg are declared in vantrel.h.)
 *
 * Time and memory are in proportion to the block that is made or read.
 */
#ifndef VANTREL_IMAGE_EXPORTS_H
#define VANTREL_IMAGE_EXPORTS_H

#include "vantrel.h"

/**
 * Makes a white image in a new block from malloc.
 *
 * @param img overwritten, not freed. On failure `pInfo` becomes null and the other pointers stay.
 * @param xPelsPerMeter, yPelsPerMeter resolution, stored as given.
 * @return false when there is no memory or the sizes are negative or too large for a block.
 *
 * Palettes: 2 entries (black, white) for 1 bit, the gray ramp for 8 bits; for other depths up to 8 the 2^bitCount
 * entries are left unwritten, above there are none.
 */
VANTREL_API bool CreateImage(BITMAPPTR* img, int width, int height, int bitCount, int xPelsPerMeter, int yPelsPerMeter);

/**
 * Copies an image into a new block from malloc: header, as many palette entries as biClrUsed says, pixels.
 *
 * @param dst overwritten, not freed. On failure `pInfo` becomes null and the other pointers stay.
 * @return false when there is no memory or the header's sizes make no block.
 */
VANTREL_API bool ImageCopy(BITMAPPTR* src, BITMAPPTR* dst);

/**
 * Makes the 8-bit gray image of a 24-bit one: (2 blue + 9 green + 5 red) / 16, truncated.
 *
 * @param src a 24-bit image; its depth is not checked.
 * @param dst must be empty (`pInfo` null); receives the gray image.
 * @return false when `dst` is not empty (it is then untouched) or there is no memory.
 */
VANTREL_API bool Color2Gray(BITMAPPTR* src, BITMAPPTR* dst);

/**
 * Splits rows x cols pixels of three bytes into three planes; of a 24-bit image's rows these are blue, green, red.
 * Trusts its arguments.
 *
 * @param planeStride bytes from row to row in each plane.
 * @param rawStride   bytes from row to row in `raw`.
 */
VANTREL_API void RawData2RGB(unsigned char* raw, unsigned char* plane0, unsigned char* plane1, unsigned char* plane2,
                             int rows, int cols, int planeStride, int rawStride);

#endif
