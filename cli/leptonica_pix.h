/**
 * @file leptonica_pix.h
 * @brief The way between the tool's pictures and Leptonica's, which keeps gray and bilevel pixels in words of the
 *        machine, colours in 32 bits, and a set bit for black.
 */
#ifndef VANTREL_CLI_LEPTONICA_PIX_H
#define VANTREL_CLI_LEPTONICA_PIX_H

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

/** Palettes are resolved, 2 and 4 bits become 8, 16 bits keep their high byte. @throws std::bad_alloc */
Bitmap bitmap_of(PixPtr pix);

/** A copy in 1, 8 or 32 bits. @throws std::bad_alloc */
PixPtr pix_of(const Bitmap& picture);

/** A copy in 32 bits. @throws std::bad_alloc */
PixPtr colour_pix_of(const Bitmap& picture);

}  // namespace tool

#endif
