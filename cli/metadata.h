/**
 * @file metadata.h
 * @brief What an image file tells beside pixels: how and when the picture was taken, and what its colours mean.
 */
#ifndef VANTREL_CLI_METADATA_H
#define VANTREL_CLI_METADATA_H

#include <vector>

#include "bitmap.h"

namespace tool {

using Bytes = std::vector<unsigned char>;

/** Each part as the formats embed it; empty when there is none. */
struct Metadata {
  Bytes exif; /**< a TIFF structure without a prefix */
  Bytes xmp;  /**< a packet of XML */
  Bytes icc;  /**< a colour profile */
};

/** What EXIF data say of the picture that they came with. */
struct ExifFacts {
  int orientation = 1;   /**< one of EXIF's eight numbers */
  Resolution resolution; /**< 0 where none is given, and for 72, which stands for that */
};

/** Of damaged data those of none. */
ExifFacts facts_of(const Bytes& exif);

/** EXIF data that tell what is kept of a TIFF file's tags. */
Bytes exif_of_tiff(const Bytes& file);

/**
 * EXIF data of an output: upright, with its size and resolution, without a thumbnail and without what is known of the
 * input file alone. Empty when nothing is left, or when the data are damaged.
 */
Bytes exif_for(const Bytes& exif, const Bitmap& output);

/** An XMP packet for an upright picture. */
Bytes xmp_for(Bytes xmp);

/** A TIFF file with EXIF data and an XMP packet put into it; the file as it is when they are damaged. */
Bytes with_metadata(Bytes tiff, const Bytes& exif, const Bytes& xmp);

}  // namespace tool

#endif
