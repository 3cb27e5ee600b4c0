/**
 * @file tiff_judgement.h
 * @brief What the strips or tiles of a page say of themselves, judged before one of them is unpacked.
 */
#ifndef VANTREL_CLI_FORMATS_TIFF_JUDGEMENT_H
#define VANTREL_CLI_FORMATS_TIFF_JUDGEMENT_H

#include <tiffio.h>

#include "metadata.h"

namespace tool {

/** Whether each lies within the file, and becomes no more than its part of the picture. */
bool sound_tiff_pieces(TIFF* tiff, const Bytes& file);

}  // namespace tool

#endif
