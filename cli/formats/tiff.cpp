#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "colours.h"
#include "formats/codecs.h"
#include "formats/on_white.h"
#include "formats/tiff_file.h"
#include "formats/tiff_judgement.h"
#include "memory.h"

namespace tool {
namespace {

/** How the samples of a page are stored. */
struct Layout {
  int width = 0;
  int height = 0;
  int bits = 1;    /**< a sample */
  int samples = 1; /**< a pixel */
  std::uint16_t kind = SAMPLEFORMAT_UINT;
  std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
  bool contiguous = true; /**< the samples of a pixel lie side by side */
  bool premultiplied = false;
  bool gray_palette = false;    /**< all of its colours are gray */
  bool black_and_white = false; /**< its two colours are these */

  bool levels() const { return photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE; }
  bool gray() const { return levels() || gray_palette; }
  /** They are taken as they are. */
  bool bits_alone() const { return contiguous && kind == SAMPLEFORMAT_UINT && levels() && samples == 1 && bits == 1; }
  /** Bits a pixel of what is read. */
  int depth() const { return bits_alone() ? 1 : gray() ? 8 : 24; }
};

/** Ends the reading of a page with the reason. */
[[noreturn]] void fail(const ForeignCode& foreign) {
  if (foreign.missed_memory()) throw std::bad_alloc();
  refuse_damaged(Format::kTiff);
}

/** Looks at the colours of a palette, of which libtiff takes the high bytes. */
void judge_palette(TIFF* tiff, Layout& layout) {
  std::array<std::uint16_t*, 3> map{};
  if (layout.bits > 8 || TIFFGetField(tiff, TIFFTAG_COLORMAP, map.data(), map.data() + 1, map.data() + 2) != 1) return;
  const auto level = [&](std::size_t colour, int entry) { return map[colour][entry] >> 8; };
  layout.gray_palette = true;
  for (int entry = 0; entry < 1 << layout.bits; ++entry) {
    if (level(0, entry) != level(1, entry) || level(1, entry) != level(2, entry)) layout.gray_palette = false;
  }
  layout.black_and_white = layout.gray_palette && layout.bits == 1 && (level(0, 0) ^ level(0, 1)) == 255 &&
                           (level(0, 0) == 0 || level(0, 0) == 255);
}

Layout layout_of(TIFF* tiff) {
  Layout layout;
  layout.width = static_cast<int>(std::min(tiff_number(tiff, TIFFTAG_IMAGEWIDTH), 0x7fffffffU));
  layout.height = static_cast<int>(std::min(tiff_number(tiff, TIFFTAG_IMAGELENGTH), 0x7fffffffU));
  layout.bits = tiff_short(tiff, TIFFTAG_BITSPERSAMPLE);
  layout.samples = tiff_short(tiff, TIFFTAG_SAMPLESPERPIXEL);
  layout.kind = tiff_short(tiff, TIFFTAG_SAMPLEFORMAT);
  layout.photometric = tiff_short(tiff, TIFFTAG_PHOTOMETRIC);
  layout.contiguous = layout.samples == 1 || tiff_short(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_CONTIG;
  std::uint16_t count = 0;
  std::uint16_t* kinds = nullptr;
  if (TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) == 1 && count > 0) {
    layout.premultiplied = kinds[0] == EXTRASAMPLE_ASSOCALPHA;
  }
  if (layout.photometric == PHOTOMETRIC_PALETTE) judge_palette(tiff, layout);
  return layout;
}

/** Strips or tiles, decoded one at a time. */
class Pieces {
 public:
  explicit Pieces(TIFF* tiff) : tiff_(tiff), tiled_(TIFFIsTiled(tiff) != 0) {
    width_ = tiff_number(tiff, tiled_ ? TIFFTAG_TILEWIDTH : TIFFTAG_IMAGEWIDTH);
    height_ = tiled_ ? tiff_number(tiff, TIFFTAG_TILELENGTH)
                     : std::min(tiff_number(tiff, TIFFTAG_ROWSPERSTRIP), tiff_number(tiff, TIFFTAG_IMAGELENGTH));
  }

  std::int64_t width() const { return width_; }
  std::int64_t height() const { return height_; }

  /** Calls `use(row, x, y, width)` with each row of every piece, as far as it lies in the picture. */
  template <class Use>
  void read(const Layout& layout, const ForeignCode& foreign, Use use) const {
    const tmsize_t size = tiled_ ? TIFFTileSize(tiff_) : TIFFStripSize(tiff_);
    const tmsize_t stride = tiled_ ? TIFFTileRowSize(tiff_) : TIFFScanlineSize(tiff_);
    if (size <= 0 || stride <= 0 || size < stride * static_cast<tmsize_t>(height_)) fail(foreign);
    Bytes work(static_cast<std::size_t>(size));
    std::uint32_t piece = 0;
    for (std::int64_t top = 0; top < layout.height; top += height_) {
      for (std::int64_t left = 0; left < layout.width; left += width_, ++piece) {
        const tmsize_t wanted = tiled_ ? size : std::min<tmsize_t>(size, stride * (layout.height - top));
        const tmsize_t count = tiled_ ? TIFFReadEncodedTile(tiff_, piece, work.data(), wanted)
                                      : TIFFReadEncodedStrip(tiff_, piece, work.data(), wanted);
        if (count < 0) fail(foreign);
        const int width = static_cast<int>(std::min<std::int64_t>(width_, layout.width - left));
        const int rows = static_cast<int>(std::min<std::int64_t>(height_, layout.height - top));
        for (int y = 0; y < rows; ++y) {
          use(work.data() + stride * y, static_cast<int>(left), static_cast<int>(top) + y, width);
        }
      }
    }
  }

 private:
  TIFF* tiff_;
  bool tiled_;
  std::uint32_t width_ = 0;
  std::uint32_t height_ = 0;
};

void invert(unsigned char* bytes, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<unsigned char>(~bytes[i]);
}

Bitmap read_bits(const Pieces& pieces, const Layout& layout, const ForeignCode& foreign) {
  Bitmap image(layout.width, layout.height, VANTREL_FORMAT_BILEVEL);
  pieces.read(layout, foreign, [&](unsigned char* row, int x, int y, int width) {
    // A tile begins at a whole byte: its width is a multiple of 16.
    const auto bytes = static_cast<std::size_t>(width + 7) / 8;
    if (layout.photometric == PHOTOMETRIC_MINISWHITE) invert(row, bytes);
    std::memcpy(image.row(y) + x / 8, row, bytes);
  });
  return image;
}

/** Gray levels of 8 or 16 bits, with or without opacity; and red, green and blue of 8. */
Bitmap read_levels(const Pieces& pieces, const Layout& layout, const ForeignCode& foreign) {
  Bitmap image(layout.width, layout.height, layout.gray() ? VANTREL_FORMAT_GRAY : VANTREL_FORMAT_RGB);
  const auto bytes = static_cast<std::size_t>(image.depth()) / 8;
  pieces.read(layout, foreign, [&](unsigned char* row, int x, int y, int width) {
    unsigned char* const to = image.row(y) + bytes * static_cast<std::size_t>(x);
    if (layout.bits == 16) {
      const auto* const deep = reinterpret_cast<const std::uint16_t*>(row);
      for (int i = 0; i < width; ++i) to[i] = static_cast<unsigned char>(deep[i] >> 8);
    } else if (layout.samples == 2) {
      (layout.premultiplied ? row_on_white<on_white_premultiplied> : row_on_white<on_white>)(row, width, 1, to);
    } else {
      std::memcpy(to, row, bytes * static_cast<std::size_t>(width));
    }
    if (layout.photometric == PHOTOMETRIC_MINISWHITE) invert(to, bytes * static_cast<std::size_t>(width));
  });
  return image;
}

/** A sample in 32 or 64 bits, of any kind. */
double deep_sample(const unsigned char* at, const Layout& layout) {
  const auto as = [&](auto value) {
    std::memcpy(&value, at, sizeof value);
    return static_cast<double>(value);
  };
  if (layout.kind == SAMPLEFORMAT_IEEEFP) return layout.bits == 32 ? as(0.0F) : as(0.0);
  return as(std::uint32_t{0}) / 0xffffffff;
}

/**
 * Floating point, or whole numbers of 32 bits. What stands for white is nowhere written: it is the least of 1, 255 and
 * 65535 that no sample exceeds.
 */
Bitmap read_deep(const Pieces& pieces, const Layout& layout, const ForeignCode& foreign) {
  Bitmap image(layout.width, layout.height, layout.gray() ? VANTREL_FORMAT_GRAY : VANTREL_FORMAT_RGB);
  const int levels = image.depth() / 8;
  const auto sample_bytes = static_cast<std::size_t>(layout.bits) / 8;
  double most = 0;
  pieces.read(layout, foreign, [&](const unsigned char* row, int, int, int width) {
    for (int i = 0; i < width * levels; ++i) {
      const double value = deep_sample(row + sample_bytes * static_cast<std::size_t>(i), layout);
      if (value > most) most = value;
    }
  });
  constexpr std::array kWhites = {1.0, 255.0, 65535.0};
  const auto* const white = std::lower_bound(kWhites.begin(), kWhites.end(), most);
  if (white == kWhites.end()) refuse_kind(Format::kTiff, "samples beyond 65535");
  pieces.read(layout, foreign, [&](const unsigned char* row, int x, int y, int width) {
    unsigned char* const to = image.row(y) + std::ptrdiff_t{levels} * x;
    for (int i = 0; i < width * levels; ++i) {
      const double value = deep_sample(row + sample_bytes * static_cast<std::size_t>(i), layout);
      to[i] = value > 0 ? static_cast<unsigned char>(value / *white * 255 + 0.5) : 0;  // 0 also for no number
    }
    if (layout.photometric == PHOTOMETRIC_MINISWHITE) invert(to, static_cast<std::size_t>(width));
  });
  return image;
}

Bitmap read_cmyk(const Pieces& pieces, const Layout& layout, const ForeignCode& foreign, const Bytes& icc) {
  Bitmap image(layout.width, layout.height, VANTREL_FORMAT_RGB);
  const CmykReader reader(icc, false);
  pieces.read(layout, foreign, [&](const unsigned char* row, int x, int y, int width) {
    reader.convert(row, width, image.row(y) + std::ptrdiff_t{3} * x);
  });
  return image;
}

void rgba_on_white(const std::uint32_t* from, std::size_t width, bool gray, unsigned char* to) {
  for (std::size_t x = 0; x < width; ++x) {
    const int opacity = static_cast<int>(TIFFGetA(from[x]));
    *to++ = on_white_premultiplied(static_cast<int>(TIFFGetR(from[x])), opacity);
    if (gray) continue;
    *to++ = on_white_premultiplied(static_cast<int>(TIFFGetG(from[x])), opacity);
    *to++ = on_white_premultiplied(static_cast<int>(TIFFGetB(from[x])), opacity);
  }
}

/** What libtiff needs to make red, green, blue and opacity of a page. */
class RgbaPage {
 public:
  RgbaPage(TIFF* tiff, const ForeignCode& foreign) {
    std::array<char, 1024> reason{};
    if (TIFFRGBAImageOK(tiff, reason.data()) == 0) refuse_kind(Format::kTiff, reason.data());
    if (TIFFRGBAImageBegin(&page_, tiff, 1, reason.data()) == 0) fail(foreign);
    // The order in which it is stored is left as it is: bringing it upright is for later.
    page_.req_orientation = tiff_short(tiff, TIFFTAG_ORIENTATION);
  }
  ~RgbaPage() { TIFFRGBAImageEnd(&page_); }
  RgbaPage(const RgbaPage&) = delete;
  RgbaPage& operator=(const RgbaPage&) = delete;

  bool read(int top, int rows, std::vector<std::uint32_t>& raster) {
    page_.row_offset = top;
    return TIFFRGBAImageGet(&page_, raster.data(), page_.width, static_cast<std::uint32_t>(rows)) != 0;
  }

 private:
  TIFFRGBAImage page_{};
};

/** All other kinds: libtiff makes red, green, blue and opacity of them, multiplied; of whole pieces, some at a time. */
Bitmap read_otherwise(TIFF* tiff, const Pieces& pieces, const Layout& layout, const ForeignCode& foreign,
                      const Limits& limits) {
  constexpr std::int64_t kPixels = 1 << 20;
  RgbaPage page(tiff, foreign);
  const std::int64_t together = std::max<std::int64_t>(1, kPixels / layout.width / pieces.height()) * pieces.height();
  const int most_rows = static_cast<int>(std::min<std::int64_t>(together, layout.height));
  if (std::int64_t{layout.width} * most_rows > kPixels) check_size(layout.width, most_rows, 32, limits);
  const auto width = static_cast<std::size_t>(layout.width);
  std::vector<std::uint32_t> raster(width * static_cast<std::size_t>(most_rows));
  Bitmap image(layout.width, layout.height, layout.gray() ? VANTREL_FORMAT_GRAY : VANTREL_FORMAT_RGB);
  for (int top = 0, rows = 0; top < layout.height; top += rows) {
    rows = std::min(most_rows, layout.height - top);
    if (!page.read(top, rows, raster)) fail(foreign);
    for (int y = 0; y < rows; ++y) {
      rgba_on_white(raster.data() + width * static_cast<std::size_t>(y), width, layout.gray(), image.row(top + y));
    }
  }
  return image;
}

bool has_deep_samples(const Layout& layout) {
  const bool floating = layout.kind == SAMPLEFORMAT_IEEEFP && (layout.bits == 32 || layout.bits == 64);
  const bool whole = layout.kind == SAMPLEFORMAT_UINT && layout.bits == 32;
  return (floating || whole) && (layout.gray() ? layout.samples == 1 : layout.samples == 3);
}

Bitmap read_pixels(TIFF* tiff, const Pieces& pieces, const Layout& layout, const ForeignCode& foreign, const Bytes& icc,
                   const Limits& limits) {
  const bool plain = layout.contiguous && layout.kind == SAMPLEFORMAT_UINT;
  const bool rgb = layout.photometric == PHOTOMETRIC_RGB;
  if (layout.contiguous && (layout.levels() || rgb) && has_deep_samples(layout)) {
    return read_deep(pieces, layout, foreign);
  }
  if (layout.kind == SAMPLEFORMAT_IEEEFP) refuse_kind(Format::kTiff, "its floating-point samples");
  if (layout.bits_alone()) return read_bits(pieces, layout, foreign);
  const bool gray_levels = layout.levels() && ((layout.samples == 1 && (layout.bits == 8 || layout.bits == 16)) ||
                                               (layout.samples == 2 && layout.bits == 8));
  if (plain && (gray_levels || (rgb && layout.samples == 3 && layout.bits == 8))) {
    return read_levels(pieces, layout, foreign);
  }
  if (plain && layout.photometric == PHOTOMETRIC_SEPARATED && layout.samples == 4 && layout.bits == 8 && !icc.empty()) {
    return read_cmyk(pieces, layout, foreign, icc);
  }
  Bitmap image = read_otherwise(tiff, pieces, layout, foreign, limits);
  return layout.black_and_white ? bilevel_of(image) : std::move(image);
}

Resolution resolution_of(TIFF* tiff) {
  const std::uint16_t unit = tiff_short(tiff, TIFFTAG_RESOLUTIONUNIT);
  float x = 0;
  float y = 0;
  if (unit == RESUNIT_NONE || TIFFGetField(tiff, TIFFTAG_XRESOLUTION, &x) != 1 ||
      TIFFGetField(tiff, TIFFTAG_YRESOLUTION, &y) != 1) {
    return {};
  }
  const float dots = unit == RESUNIT_CENTIMETER ? 2.54F : 1.0F;
  const auto dpi = [&](float value) { return value >= 0 && value < 1e8F ? static_cast<int>(dots * value + 0.5F) : 0; };
  return {dpi(x), dpi(y)};
}

/** A directory that ends before it tells where the next one is does not count, but can be read. */
int pages_of(TIFF* tiff) { return std::max(1, static_cast<int>(TIFFNumberOfDirectories(tiff))); }

Bytes block_of(TIFF* tiff, std::uint32_t tag) {
  std::uint32_t count = 0;
  const unsigned char* bytes = nullptr;
  if (TIFFGetField(tiff, tag, &count, &bytes) != 1 || bytes == nullptr) return {};
  return {bytes, bytes + count};
}

}  // namespace

Picture read_tiff(const Bytes& file, int page, const Limits& limits) {
  const ForeignCode foreign;
  TiffMemory memory{&file, {}, 0};
  const TiffPtr tiff = open_tiff(memory);
  if (!tiff) fail(foreign);
  Picture picture;
  picture.pages = pages_of(tiff.get());
  if (page > picture.pages) refuse_page(page, picture.pages);
  if (TIFFSetDirectory(tiff.get(), static_cast<tdir_t>(page - 1)) == 0) fail(foreign);
  const Layout layout = layout_of(tiff.get());
  const Pieces pieces(tiff.get());
  if (layout.width <= 0 || layout.height <= 0 || pieces.width() <= 0 || pieces.height() <= 0) fail(foreign);
  check_size(std::max<std::int64_t>(layout.width, pieces.width()),
             std::max<std::int64_t>(layout.height, pieces.height()), layout.depth(), limits);
  if (!sound_tiff_pieces(tiff.get(), file, limits)) fail(foreign);
  picture.metadata = {exif_of_tiff(file), block_of(tiff.get(), TIFFTAG_XMLPACKET),
                      block_of(tiff.get(), TIFFTAG_ICCPROFILE)};
  // The decoder of JBIG bears no null pointer.
  const bool jbig = tiff_short(tiff.get(), TIFFTAG_COMPRESSION) == COMPRESSION_JBIG;
  const ForeignCode decoder(jbig ? Large::kCrashes : Large::kBears);
  picture.image = read_pixels(tiff.get(), pieces, layout, foreign, picture.metadata.icc, limits);
  picture.image.set_resolution(resolution_of(tiff.get()));
  picture.orientation = tiff_short(tiff.get(), TIFFTAG_ORIENTATION);
  picture.sample_bits = layout.bits;
  return picture;
}

int count_tiff_pages(const Bytes& file) {
  const ForeignCode foreign;
  TiffMemory memory{&file, {}, 0};
  const TiffPtr tiff = open_tiff(memory);
  if (!tiff) fail(foreign);
  return pages_of(tiff.get());
}

Bytes write_tiff(const Bitmap& image, const Metadata& metadata) {
  const ForeignCode foreign(Large::kCrashes);
  TiffMemory memory;
  memory.written.reserve(static_cast<std::size_t>(image.stride()) * static_cast<std::size_t>(image.height()) / 4);
  TiffPtr owner = create_tiff(memory);
  TIFF* const tiff = owner.get();
  const auto [x, y] = image.resolution();
  const bool known = x > 0 && y > 0;
  const bool colour = image.depth() == 24;
  bool written =
      TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, image.width()) == 1 &&
      TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, image.height()) == 1 &&
      TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, image.depth() == 1 ? 1 : 8) == 1 &&
      TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, colour ? 3 : 1) == 1 &&
      TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, colour ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK) == 1 &&
      TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == 1 &&
      TIFFSetField(tiff, TIFFTAG_COMPRESSION, image.depth() == 1 ? COMPRESSION_CCITTFAX4 : COMPRESSION_LZW) == 1 &&
      // Where none is known: square pixels without a unit.
      TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, known ? RESUNIT_INCH : RESUNIT_NONE) == 1 &&
      TIFFSetField(tiff, TIFFTAG_XRESOLUTION, known ? static_cast<double>(x) : 1.0) == 1 &&
      TIFFSetField(tiff, TIFFTAG_YRESOLUTION, known ? static_cast<double>(y) : 1.0) == 1 &&
      TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0)) == 1;
  if (written && !metadata.icc.empty()) {
    written = TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(metadata.icc.size()),
                           metadata.icc.data()) == 1;
  }
  // libtiff may change the row that it is given.
  Bytes row(static_cast<std::size_t>(image.stride()));
  for (int line = 0; written && line < image.height(); ++line) {
    std::memcpy(row.data(), image.row(line), row.size());
    written = TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(line), 0) == 1;
  }
  written = written && TIFFFlush(tiff) == 1;
  owner.reset();
  if (!written) refuse_to_write(Format::kTiff);
  return with_metadata(std::move(memory.written), metadata.exif, metadata.xmp);
}

}  // namespace tool
