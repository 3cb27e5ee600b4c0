/**
 * @file tiff_judgement.h
 * @brief What the strips or tiles of a page say of themselves, judged before one of them is unpacked.
 */
#ifndef VANTREL_CLI_FORMATS_TIFF_JUDGEMENT_H
#define VANTREL_CLI_FORMATS_TIFF_JUDGEMENT_H

#include <tiffio.h>

#include "metadata.h"
#include "size_limits.h"

namespace tool {

/**
 * Whether each lies within the file, and becomes no more than its part of the picture.
 * @throws Failure one of them takes more memory than a picture may, or they become far more than the picture.
 */
bool sound_tiff_pieces(TIFF* tiff, const Bytes& file, const Limits& limits);

}  // namespace tool

#endif
