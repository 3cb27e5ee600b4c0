/**
 * @file convert.h
 * @brief Colour to gray, and interleaved colour to planes.
 */
#ifndef VANTREL_IMAGE_CONVERT_H
#define VANTREL_IMAGE_CONVERT_H

#include "vantrel.h"

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
