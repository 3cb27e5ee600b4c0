#include "image_file.h"

#include <algorithm>
#include <array>
#include <string>

#include "console.h"
#include "failure.h"
#include "pix_bitmap.h"
#include "tiff_pages.h"

namespace tool {
namespace {

constexpr int kJpegQuality = 95;

std::string name_of(Format format) {
  constexpr std::array kNames = {"PNG", "JPEG", "TIFF", "BMP", "PNM", "WebP"};
  return kNames[static_cast<std::size_t>(format)];
}

Format format_of_content(const Bytes& file) {
  if (file.empty()) throw Failure("the file is empty");
  // The longest signature has 12 bytes, and that many are always read.
  std::array<l_uint8, 16> start{};
  std::copy_n(file.begin(), std::min(file.size(), start.size()), start.begin());
  l_int32 found = IFF_UNKNOWN;
  findFileFormatBuffer(start.data(), &found);
  switch (found) {
    case IFF_PNG:
      return Format::kPng;
    case IFF_JFIF_JPEG:
      return Format::kJpeg;
    case IFF_BMP:
      return Format::kBmp;
    case IFF_PNM:
      return Format::kPnm;
    case IFF_WEBP:
      return Format::kWebp;
    default:
      if (L_FORMAT_IS_TIFF(found)) return Format::kTiff;
      throw Failure(std::string("not an image (") + kFormatNames + ")");
  }
}

void check_page(Format format, const Bytes& file, int page, int pages) {
  if (page > pages && pages > 0) {
    throw Failure("no page " + std::to_string(page) + " (it has " + std::to_string(pages) + ")");
  }
  if (format == Format::kTiff && !tiff_page_is_complete(file, page)) {
    throw Failure("the TIFF data is truncated or damaged");
  }
}

/** Reads the picture as Leptonica has it; null when it is damaged. A JPEG codec's warning counts as damage. */
PixPtr decode(Format format, const Bytes& file, int page) {
  const QuietCodecs quiet;
  return PixPtr(format == Format::kTiff ? pixReadMemTiff(file.data(), file.size(), page - 1)
                                        : pixReadMem(file.data(), file.size()));
}

/** Whether the picture is gray although Leptonica hands it out as colour: gray with transparency. */
bool is_gray(Format format, const Bytes& file, int page) {
  if (format == Format::kTiff) return tiff_page_is_gray(file, page);
  l_int32 samples = 0;
  l_int32 palette = 0;
  if (format != Format::kPng) return false;
  return readHeaderMemPng(file.data(), file.size(), nullptr, nullptr, nullptr, &samples, &palette) == 0 &&
         samples <= 2 && palette == 0;
}

}  // namespace

Scan decode_image(Bytes file, int page) {
  const Format format = format_of_content(file);
  const int pages = format == Format::kTiff ? tiff_page_count(file) : 1;
  check_page(format, file, page, pages);
  PixPtr pix = decode(format, file, page);
  if (pix == nullptr) throw Failure("the " + name_of(format) + " data is truncated or damaged");
  const PixPtr plain = to_plain_depth(std::move(pix), is_gray(format, file, page));
  return {to_bitmap(plain.get()), format, page, pages, std::move(file)};
}

Bytes encode_image(const Bitmap& image, Format format) {
  const PixPtr pix = to_pix(image);
  const QuietCodecs quiet;
  l_uint8* data = nullptr;
  std::size_t size = 0;
  const auto write = [&]() -> l_ok {
    switch (format) {
      case Format::kPng:
        return pixWriteMemPng(&data, &size, pix.get(), 0.0F);
      case Format::kJpeg:
        return pixWriteMemJpeg(&data, &size, pix.get(), kJpegQuality, 0);
      case Format::kTiff:
        return pixWriteMemTiff(&data, &size, pix.get(), image.depth() == 1 ? IFF_TIFF_G4 : IFF_TIFF_LZW);
      case Format::kBmp:
        return pixWriteMemBmp(&data, &size, pix.get());
      case Format::kPnm:
        return pixWriteMemPnm(&data, &size, pix.get());
      case Format::kWebp:
        return pixWriteMemWebP(&data, &size, pix.get(), 100, 1);
    }
    return 1;
  };
  const bool written = write() == 0 && data != nullptr;
  Bytes file;
  if (written) file.assign(data, data + size);
  lept_free(data);
  if (!written) throw Failure("the picture cannot be written as " + name_of(format));
  return file;
}

}  // namespace tool
