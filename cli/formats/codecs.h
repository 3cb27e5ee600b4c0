/**
 * @file codecs.h
 * @brief Image files in memory, a pair of functions for each format.
 *
 * Readers judge what a file announces before they take memory for it. They throw Failure with the reason: no such page,
 * a picture too large, a file truncated or damaged, a kind of file that is not read; and std::bad_alloc. What a codec
 * warns of counts as damage.
 */
#ifndef VANTREL_CLI_FORMATS_CODECS_H
#define VANTREL_CLI_FORMATS_CODECS_H

#include <cstdint>
#include <string>
#include <vector>

#include "bitmap.h"
#include "image_format.h"
#include "metadata.h"
#include "size_limits.h"

namespace tool {

/** What was read, as it is stored. */
struct Picture {
  Bitmap image;
  Metadata metadata;
  int orientation = 0; /**< one of EXIF's numbers; 0: what the EXIF data say */
  int sample_bits = 8; /**< in the file; more than 8 were reduced */
  int pages = 1;
};

struct Encoding {
  int quality = 95;   /**< of lossy formats, 1 to 100 */
  bool lossy = false; /**< where a format is either */
  bool quick = false; /**< rather than small */
};

/** What the size of a page is reckoned by where a picture tells no resolution. */
inline constexpr int kPageDotsPerInch = 300;

/** A page of a PDF file: one picture at its true size, encoded. */
struct PdfPage {
  Bytes data;
  bool jpeg = false; /**< else the compressed rows of a PNG file */
  int width = 0;
  int height = 0;
  int depth = 0;
  Resolution resolution{kPageDotsPerInch, kPageDotsPerInch};
  Bytes icc;
};

Picture read_jpeg(const Bytes& file, const Limits& limits);
Picture read_png(const Bytes& file, const Limits& limits);
Picture read_tiff(const Bytes& file, int page, const Limits& limits);

/** To be called before: looks over the fonts of the machine, which may take longer than a page. */
void prepare_pdf();

int count_tiff_pages(const Bytes& file);
int count_pdf_pages(const Bytes& file, const Limits& limits);

/** A page of a PDF file that may be drawn. */
struct JudgedPage {
  int pages = 0;            /**< of the file */
  std::int64_t samples = 0; /**< of all its images */
  Bytes mended;             /**< the file as it was judged, if it was damaged */
};

/** Of a damaged file those that can be made out. */
int pages_of_pdf(const Bytes& file);

/** Judges what a page is drawn with. */
JudgedPage check_pdf_page(const Bytes& file, int page, const Limits& limits);

Picture read_webp(const Bytes& file, const Limits& limits);
Picture read_bmp(const Bytes& file, const Limits& limits);
Picture read_pnm(const Bytes& file, const Limits& limits);

Picture read_jpeg2000(const Bytes& file, const Limits& limits);

// Only where the build found their libraries.
Picture read_gif(const Bytes& file, const Limits& limits);
Picture read_heif(const Bytes& file, const Limits& limits);
Picture read_pdf(const Bytes& file, int page, const Limits& limits);

Bytes write_jpeg(const Bitmap& image, const Metadata& metadata, const Encoding& encoding);
Bytes write_png(const Bitmap& image, const Metadata& metadata, const Encoding& encoding);
Bytes write_tiff(const Bitmap& image, const Metadata& metadata);
Bytes write_webp(const Bitmap& image, const Metadata& metadata, const Encoding& encoding);
Bytes write_bmp(const Bitmap& image);
Bytes write_pnm(const Bitmap& image);

/** With loss, as JPEG, where the encoding says so. */
PdfPage page_of(const Bitmap& image, const Metadata& metadata, const Encoding& encoding);
Bytes write_pdf(std::vector<PdfPage> pages);

/** One text for each reason. */
[[noreturn]] void refuse_damaged(Format format);
[[noreturn]] void refuse_kind(Format format, const std::string& kind);
[[noreturn]] void refuse_format(Format format);
[[noreturn]] void refuse_page(int page, int pages);
[[noreturn]] void refuse_to_write(Format format);

}  // namespace tool

#endif
