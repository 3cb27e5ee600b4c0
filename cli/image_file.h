/**
 * @file image_file.h
 * @brief Image files in memory, decoded into the library's images and encoded from them.
 */
#ifndef VANTREL_CLI_IMAGE_FILE_H
#define VANTREL_CLI_IMAGE_FILE_H

#include "bitmap.h"
#include "formats/codecs.h"
#include "image_format.h"
#include "metadata.h"
#include "size_limits.h"

namespace tool {

/** A decoded input. */
struct Scan {
  Bitmap image; /**< upright, of 1, 8 or 24 bits; resolution 0 when the file has none */
  Format format;
  int page;          /**< from 1 */
  int pages;         /**< in the file */
  Bytes file;        /**< the file as it was read */
  bool reduced;      /**< from more than 8 bits a sample */
  Metadata metadata; /**< as it is in the file */
};

/**
 * Decodes one page (from 1) of an image file.
 *
 * Bilevel pictures stay 1 bit, gray ones 8 bits, everything else becomes 24 bits; palettes and transparency are
 * resolved on white, more than 8 bits a sample reduced to 8, and the picture is brought upright.
 *
 * @throws Failure no image, a truncated or damaged one, one too large, or no such page.
 */
Scan decode_image(Bytes file, int page, const Limits& limits);

/** How many pages a file has. @throws Failure no image, or a damaged one. */
int count_pages(const Bytes& file, const Limits& limits);

/**
 * Encodes a 1-, 8- or 24-bit image with its resolution, and with the metadata of the scan that it comes from, as far as
 * the format holds them; colours of a profile that it does not hold are converted to sRGB.
 *
 * TIFF is compressed by CCITT group 4 for 1 bit and LZW otherwise; PDF gets one page.
 *
 * @throws Failure the format cannot hold the image.
 */
Bytes encode_image(const Bitmap& image, Format format, const Metadata& metadata, const Encoding& encoding = {});

/** As above, a page of a PDF file, which keeps the profile alone. */
PdfPage encode_page(const Bitmap& image, const Metadata& metadata, const Encoding& encoding);

}  // namespace tool

#endif
