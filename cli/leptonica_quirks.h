/**
 * @file leptonica_quirks.h
 * @brief Kinds of files that Leptonica reads wrongly, made right.
 *
 * Whether the Leptonica at hand has a fault is found out by letting it decode a file of one pixel, so a version in
 * which it is mended is left alone.
 */
#ifndef VANTREL_CLI_LEPTONICA_QUIRKS_H
#define VANTREL_CLI_LEPTONICA_QUIRKS_H

#include <vector>

#include "bitmap.h"
#include "image_format.h"

namespace tool {

/**
 * Repairs what Leptonica decoded from a file: gray PNM files of 16 bits, whose bytes come exchanged, and BMP files of
 * 32 bits, whose red and blue come exchanged.
 *
 * @throws Failure a BMP file of 16 bits: its colours come as one gray level.
 */
PixPtr repaired(PixPtr pix, Format format, const std::vector<unsigned char>& file);

}  // namespace tool

#endif
