/**
 * @file tiff_pages.h
 * @brief What must be known of a TIFF file beside what Leptonica tells.
 *
 * Leptonica fills what a damaged page lacks with whatever it has, does not say how transparency is stored, and takes a
 * resolution without a unit as dots per inch.
 */
#ifndef VANTREL_CLI_TIFF_PAGES_H
#define VANTREL_CLI_TIFF_PAGES_H

#include <cstdint>
#include <vector>

namespace tool {

struct TiffPage {
  bool complete = false;       /**< every strip or tile lies within the file and can be decoded */
  bool gray = false;           /**< the samples are levels of gray, with or without transparency */
  bool premultiplied = false;  /**< Leptonica hands out colours that are multiplied with their opacity already */
  bool has_resolution = false; /**< in inches or centimetres */
};

/** The number of pages whose directories can be read; 0 when the file is damaged. */
int tiff_page_count(const std::vector<unsigned char>& file);

/** The size of a page (from 1), or of one of its tiles where that is larger; 0 x 0 when there is no such page. */
struct TiffSize {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};
TiffSize tiff_size(const std::vector<unsigned char>& file, int page);

/** Looks at a page (from 1); an incomplete one when there is no such page. */
TiffPage tiff_page(const std::vector<unsigned char>& file, int page);

}  // namespace tool

#endif
