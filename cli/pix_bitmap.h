/**
 * @file pix_bitmap.h
 * @brief Between Leptonica's images and the library's.
 *
 * Leptonica keeps rows from the top in 32-bit words (the leftmost pixel in the highest bits, whatever the machine), a
 * set bit for black, and red in the highest byte of a colour word. The library keeps rows from the bottom in bytes, a
 * set bit for white, and blue first.
 */
#ifndef VANTREL_CLI_PIX_BITMAP_H
#define VANTREL_CLI_PIX_BITMAP_H

#include <allheaders.h>

#include <memory>

#include "bitmap.h"

namespace tool {

struct PixRelease {
  void operator()(PIX* pix) const { pixDestroy(&pix); }
};
using PixPtr = std::unique_ptr<PIX, PixRelease>;

/** Takes what a Leptonica function returned; a null pointer is its way to say that memory ran out. */
PixPtr checked(PIX* pix);

/** What a decoded picture does not say of itself. */
struct PixNature {
  bool gray = false;          /**< its colours are all gray */
  bool premultiplied = false; /**< its colours are multiplied with their opacity already */
};

/**
 * Brings a picture to 1 bit, 8 bits of gray or 32 bits of colour: palettes and transparency are resolved on white,
 * 2 and 4 bits become 8, 16 bits keep their high byte.
 */
PixPtr to_plain_depth(PixPtr pix, const PixNature& nature);

/** @param pix 1, 8 (without palette) or 32 bits. */
Bitmap to_bitmap(const PIX* pix);

/** @param bitmap 1, 8 or 24 bits. */
PixPtr to_pix(const Bitmap& bitmap);

}  // namespace tool

#endif
