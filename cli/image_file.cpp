#include "image_file.h"

#include <tiff.h>

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <string>

#include "announced.h"
#include "console.h"
#include "failure.h"
#include "leptonica_quirks.h"
#include "memory.h"
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
  const ForeignCode foreign;
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

[[noreturn]] void refuse_page(int page, int pages) {
  throw Failure("no page " + std::to_string(page) + " (it has " + std::to_string(pages) + ")");
}

[[noreturn]] void refuse_damaged(Format format) {
  throw Failure("the " + name_of(format) + " data is truncated or damaged, or of an unknown kind");
}

/** Reads the picture as Leptonica has it. A JPEG codec's warning counts as damage. */
PixPtr decode(Format format, const Bytes& file, int page) {
  const QuietCodecs quiet;
  const ForeignCode foreign;
  PixPtr pix(format == Format::kTiff ? pixReadMemTiff(file.data(), file.size(), page - 1)
                                     : pixReadMem(file.data(), file.size()));
  if (!pix) {
    if (foreign.missed_memory()) throw std::bad_alloc();
    refuse_damaged(format);
  }
  return repaired(std::move(pix), format, file);
}

/** Whether a PNG file is gray, which Leptonica hands out as colour when there is transparency. */
bool is_gray_png(const Bytes& file) {
  const ForeignCode foreign;
  l_int32 samples = 0;
  l_int32 palette = 0;
  return readHeaderMemPng(file.data(), file.size(), nullptr, nullptr, nullptr, &samples, &palette) == 0 &&
         samples <= 2 && palette == 0;
}

Scan decode_tiff(Bytes file, int page, int most_megapixels) {
  const ForeignCode foreign;
  const int pages = tiff_page_count(file);
  if (pages > 0 && page > pages) refuse_page(page, pages);
  const TiffSize size = tiff_size(file, page);
  check_size(size.width, size.height, most_megapixels);
  const TiffPage facts = tiff_page(file, page);
  if (!facts.complete) {
    if (foreign.missed_memory()) throw std::bad_alloc();
    refuse_damaged(Format::kTiff);
  }
  PixPtr plain = to_plain_depth(decode(Format::kTiff, file, page), {facts.gray, facts.premultiplied});
  Scan scan{Bitmap(std::move(plain)), Format::kTiff, page, pages, std::move(file)};
  if (!facts.has_resolution) scan.image.set_resolution({0, 0});
  return scan;
}

struct NumaRelease {
  void operator()(NUMA* numbers) const { numaDestroy(&numbers); }
};
struct SarrayRelease {
  void operator()(SARRAY* strings) const { sarrayDestroy(&strings); }
};

/** TIFF tags that Leptonica writes over its own. */
class TiffTags {
 public:
  void add(int tag, const char* value, const char* type) {
    numaAddNumber(tags_.get(), static_cast<l_float32>(tag));
    sarrayAddString(values_.get(), value, L_COPY);
    sarrayAddString(types_.get(), type, L_COPY);
  }
  NUMA* tags() { return tags_.get(); }
  SARRAY* values() { return values_.get(); }
  SARRAY* types() { return types_.get(); }

 private:
  std::unique_ptr<NUMA, NumaRelease> tags_{numaCreate(0)};
  std::unique_ptr<SARRAY, SarrayRelease> values_{sarrayCreate(0)};
  std::unique_ptr<SARRAY, SarrayRelease> types_{sarrayCreate(0)};
};

/** Leptonica would invent a resolution where there is none: then it is written as square pixels without a unit. */
l_ok write_tiff(PIX* pix, l_uint8** data, std::size_t* size) {
  const int compression = pixGetDepth(pix) == 1 ? IFF_TIFF_G4 : IFF_TIFF_LZW;
  if (pixGetXRes(pix) != 0) return pixWriteMemTiff(data, size, pix, compression);
  TiffTags tags;
  tags.add(TIFFTAG_XRESOLUTION, "1.0", "l_float64");
  tags.add(TIFFTAG_YRESOLUTION, "1.0", "l_float64");
  tags.add(TIFFTAG_RESOLUTIONUNIT, "1", "l_uint16");
  return pixWriteMemTiffCustom(data, size, pix, compression, tags.tags(), tags.values(), tags.types(), nullptr);
}

}  // namespace

Scan decode_image(Bytes file, int page, int most_megapixels) {
  const Format format = format_of_content(file);
  if (format == Format::kTiff) return decode_tiff(std::move(file), page, most_megapixels);
  if (page > 1) refuse_page(page, 1);
  {
    const QuietCodecs quiet;
    const ForeignCode foreign;
    check_announced(format, file, most_megapixels);
  }
  const PixNature nature{format == Format::kPng && is_gray_png(file), false};
  return {Bitmap(to_plain_depth(decode(format, file, page), nature)), format, page, 1, std::move(file)};
}

Bytes encode_image(const Bitmap& image, Format format) {
  const PixPtr pix = image.to_pix();
  const QuietCodecs quiet;
  const ForeignCode foreign(Large::kCrashes);
  l_uint8* data = nullptr;
  std::size_t size = 0;
  const auto write = [&]() -> l_ok {
    switch (format) {
      case Format::kPng:
        return pixWriteMemPng(&data, &size, pix.get(), 0.0F);
      case Format::kJpeg:
        return pixWriteMemJpeg(&data, &size, pix.get(), kJpegQuality, 0);
      case Format::kTiff:
        return write_tiff(pix.get(), &data, &size);
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
