/**
 * @file tiff_file.h
 * @brief A TIFF file in memory, as libtiff sees it.
 */
#ifndef VANTREL_CLI_FORMATS_TIFF_FILE_H
#define VANTREL_CLI_FORMATS_TIFF_FILE_H

#include <tiffio.h>

#include <cstdint>
#include <memory>

#include "metadata.h"

namespace tool {

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffPtr = std::unique_ptr<TIFF, CloseTiff>;

/** Bytes that libtiff reads from, or writes to. It must outlive what is opened on it. */
struct TiffMemory {
  const Bytes* reading = nullptr;
  Bytes written;
  std::uint64_t position = 0;

  std::uint64_t size() const { return reading != nullptr ? reading->size() : written.size(); }
};

/** Null when the file is damaged. */
TiffPtr open_tiff(TiffMemory& memory);

/** A file that is empty so far. @throws std::bad_alloc */
TiffPtr create_tiff(TiffMemory& memory);

/** A number that a tag gives, or its default. */
std::uint32_t tiff_number(TIFF* tiff, std::uint32_t tag);
std::uint16_t tiff_short(TIFF* tiff, std::uint32_t tag);

}  // namespace tool

#endif
