/**
 * @file announced.h
 * @brief What an image file announces, judged before anything is decoded or memory is taken for it.
 */
#ifndef VANTREL_CLI_ANNOUNCED_H
#define VANTREL_CLI_ANNOUNCED_H

#include <cstdint>
#include <vector>

#include "image_format.h"

namespace tool {

/** The most megapixels of a picture, unless others are asked for: a sheet of A3 at 1200 dots per inch has 279. */
inline constexpr int kMostMegapixels = 300;

/** @throws Failure a picture of that size is larger than allowed. */
void check_size(std::int64_t width, std::int64_t height, int most_megapixels);

/**
 * Judges the header of a file that is not TIFF, whose pages have one each. A header that cannot be read says nothing:
 * the decoder refuses the file.
 *
 * @throws Failure the picture is larger than allowed, or the file too short for it, which a PNM header alone can tell.
 */
void check_announced(Format format, const std::vector<unsigned char>& file, int most_megapixels);

}  // namespace tool

#endif
