/**
 * @file image_file.h
 * @brief Image files in memory, decoded into the library's images and encoded from them.
 */
#ifndef VANTREL_CLI_IMAGE_FILE_H
#define VANTREL_CLI_IMAGE_FILE_H

#include <vector>

#include "bitmap.h"
#include "image_format.h"

namespace tool {

using Bytes = std::vector<unsigned char>;

/** A decoded input. */
struct Scan {
  Bitmap image; /**< 1, 8 or 24 bits; resolution 0 when the file has none */
  Format format;
  int page;   /**< from 1 */
  int pages;  /**< in the file */
  Bytes file; /**< the file as it was read */
};

/**
 * Decodes one page (from 1) of an image file.
 *
 * @param most_megapixels larger pictures are refused before they are decoded.
 *
 * Bilevel pictures stay 1 bit, gray ones 8 bits, everything else becomes 24 bits; palettes and transparency are
 * resolved on white, 16 bits a sample reduced to 8.
 *
 * @throws Failure no image, a truncated or damaged one, one too large, or no such page.
 */
Scan decode_image(Bytes file, int page, int most_megapixels);

/**
 * Encodes a 1-, 8- or 24-bit image with its resolution, as far as the format holds one (PNM and WebP do not).
 *
 * TIFF is compressed by CCITT group 4 for 1 bit and LZW otherwise; WebP is lossless; JPEG has quality 95.
 *
 * @throws Failure the format cannot hold the image.
 */
Bytes encode_image(const Bitmap& image, Format format);

}  // namespace tool

#endif
