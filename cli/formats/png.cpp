#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include "formats/codecs.h"
#include "formats/on_white.h"
#include "memory.h"

namespace tool {
namespace {

constexpr char kXmpKey[] = "XML:com.adobe.xmp";

/** What a file may ask for beside its pixels, twice what it holds and so much for what grows of it, such as profiles.
 */
constexpr std::size_t kBytesAside = std::size_t{32} << 20;

/** What is compressed is unpacked before its length is known: a text or profile this far, and so many texts. */
constexpr png_alloc_size_t kLargestAside = 8'000'000;
constexpr png_uint_32 kMostTexts = 20;
constexpr png_uint_32 kEndOfCount = 2;  // the codec counts down to one

/** Texts and palettes that nobody asks for, each with its end; XMP stands in iTXt. */
constexpr std::size_t kNameAndEnd = 5;
constexpr std::array<png_byte, 3 * kNameAndEnd> kLeftOut{'t', 'E', 'X', 't', 0,   'z', 'T', 'X',
                                                         't', 0,   's', 'P', 'L', 'T', 0};

/** libpng's record for reading or writing, how much it may ask for, and whether it gave up for want of memory. */
struct Codec {
  png_structp png = nullptr;
  png_infop info = nullptr;
  std::size_t allowed = std::numeric_limits<std::size_t>::max();
  bool no_memory = false;
};

[[noreturn]] void leave(png_structp png, png_const_charp) { png_longjmp(png, 1); }
void ignore(png_structp, png_const_charp) {}

png_voidp take(png_structp png, png_alloc_size_t bytes) {
  Codec& codec = *static_cast<Codec*>(png_get_mem_ptr(png));
  // A few bytes say how long a text is; what the codec needs for itself is small.
  constexpr std::size_t kSmall = std::size_t{1} << 16;
  if (bytes > std::max(kSmall, codec.allowed)) return nullptr;
  codec.allowed -= std::min<std::size_t>(bytes, codec.allowed);
  void* const block = std::malloc(bytes);
  if (block == nullptr) codec.no_memory = true;
  return block;
}
void give_back(png_structp, png_voidp block) { std::free(block); }

/** Runs a step of the codec, which must own nothing; false when the codec gave up. */
template <class Step>
[[gnu::noinline]] bool done(Codec& codec, Step step) {
  if (setjmp(png_jmpbuf(codec.png)) != 0) return false;
  step();
  return true;
}

struct Source {
  const Bytes& file;
  std::size_t end; /**< of what may be read */
  std::size_t position = 0;
};

void read_from(png_structp png, png_bytep into, std::size_t count) {
  auto& source = *static_cast<Source*>(png_get_io_ptr(png));
  if (count > source.end - source.position) png_error(png, "truncated");
  std::memcpy(into, source.file.data() + source.position, count);
  source.position += count;
}

class Decoder {
 public:
  explicit Decoder(const Bytes& file) : source_{file, file.size()} {
    codec_.allowed = 2 * file.size() + kBytesAside;
    codec_.png = png_create_read_struct_2(PNG_LIBPNG_VER_STRING, nullptr, leave, ignore, &codec_, take, give_back);
    if (codec_.png == nullptr) throw std::bad_alloc();
    codec_.info = png_create_info_struct(codec_.png);
  }
  ~Decoder() { png_destroy_read_struct(&codec_.png, &codec_.info, nullptr); }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  Picture read(const Limits& limits) {
    step([&] {
      png_set_read_fn(codec_.png, &source_, read_from);
      png_set_user_limits(codec_.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
      // The limits are ours; a damaged profile, say, is no reason to refuse the picture.
      png_set_benign_errors(codec_.png, 1);
      png_set_chunk_malloc_max(codec_.png, kLargestAside);
      png_set_chunk_cache_max(codec_.png, kMostTexts + kEndOfCount);
      png_set_keep_unknown_chunks(codec_.png, PNG_HANDLE_CHUNK_NEVER, kLeftOut.data(), kLeftOut.size() / kNameAndEnd);
      png_read_info(codec_.png, codec_.info);
    });
    const auto width = static_cast<int>(png_get_image_width(codec_.png, codec_.info));
    const auto height = static_cast<int>(png_get_image_height(codec_.png, codec_.info));
    const vantrel_format format = format_and_transformations();
    check_size(width, height, vantrel_format_bits(format), limits);
    constexpr std::size_t kBytesOfColumn = 4 * 8;  // a few rows of the largest pixels there are
    codec_.allowed += kBytesOfColumn * static_cast<std::size_t>(width);
    Picture picture;
    picture.sample_bits = png_get_bit_depth(codec_.png, codec_.info);
    picture.image = Bitmap(width, height, format);
    read_pixels(picture.image);
    read_rest(picture);
    return picture;
  }

 private:
  /** What the picture becomes, which libpng is told. */
  vantrel_format format_and_transformations() {
    const int type = png_get_color_type(codec_.png, codec_.info);
    const int bits = png_get_bit_depth(codec_.png, codec_.info);
    const bool palette = type == PNG_COLOR_TYPE_PALETTE;
    const bool clear = png_get_valid(codec_.png, codec_.info, PNG_INFO_tRNS) != 0;
    opacity_ = clear || (type & PNG_COLOR_MASK_ALPHA) != 0;
    gray_palette_ = palette && !opacity_ && is_gray_palette();
    step([&] { png_set_interlace_handling(codec_.png); });
    if (bits == 1 && !opacity_ && (type == PNG_COLOR_TYPE_GRAY || (gray_palette_ && is_black_and_white()))) {
      inverted_ = palette && palette_[0].red == 255;
      gray_palette_ = false;
      return VANTREL_FORMAT_BILEVEL;
    }
    step([&] {
      png_set_expand(codec_.png);
      png_set_strip_16(codec_.png);
    });
    const bool gray = (type & PNG_COLOR_MASK_COLOR) == 0 || gray_palette_;
    return gray ? VANTREL_FORMAT_GRAY : VANTREL_FORMAT_RGB;
  }

  bool is_gray_palette() {
    png_colorp colours = nullptr;
    int count = 0;
    png_get_PLTE(codec_.png, codec_.info, &colours, &count);
    palette_ = {colours, colours + count};
    return std::all_of(colours, colours + count,
                       [](const png_color& c) { return c.red == c.green && c.green == c.blue; });
  }

  bool is_black_and_white() const {
    return palette_.size() == 2 && (palette_[0].red ^ palette_[1].red) == 255 &&
           (palette_[0].red == 0 || palette_[0].red == 255);
  }

  /** A row as it is, or through a buffer where there are more samples than the picture keeps. */
  void read_pixels(Bitmap& image) {
    step([&] { png_read_update_info(codec_.png, codec_.info); });
    const bool interlaced = png_get_interlace_type(codec_.png, codec_.info) != PNG_INTERLACE_NONE;
    const std::size_t stored = png_get_rowbytes(codec_.png, codec_.info);
    const bool direct = !opacity_ && !gray_palette_;
    const auto bytes_of_rows = [&](std::size_t rows) { return Bytes(direct ? 0 : stored * rows); };
    Bytes work = bytes_of_rows(interlaced ? static_cast<std::size_t>(image.height()) : 1);
    const auto row_at = [&](int y) {
      return direct ? image.row(y) : work.data() + (interlaced ? stored * static_cast<std::size_t>(y) : 0);
    };
    const int passes = interlaced ? 7 : 1;
    step([&] {
      for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < image.height(); ++y) {
          if (pass == passes - 1 && y == image.height() - 1) hold_to_row(stored);
          png_read_row(codec_.png, row_at(y), nullptr);
          if (!direct && pass == passes - 1) keep(row_at(y), image, y);
        }
      }
      source_.end = source_.file.size();
    });
    if (inverted_) {
      std::for_each(image.row(0), image.row(image.height()), [](unsigned char& byte) { byte ^= 0xff; });
    }
  }

  /** Having read the last row, the codec unpacks whatever else there is in the place of rows, however much it becomes.
   */
  void hold_to_row(std::size_t bytes) {
    constexpr std::size_t kAround = std::size_t{64} << 10;
    source_.end = std::min(source_.file.size(), source_.position + 2 * bytes + kAround);
  }

  void keep(const unsigned char* row, Bitmap& image, int y) const {
    if (opacity_) {
      row_on_white<on_white>(row, image.width(), image.depth() / 8, image.row(y));
    } else {
      for (int x = 0; x < image.width(); ++x) image.row(y)[x] = row[3 * x];
    }
  }

  /** The end of the file, and what stands beside the pixels on either side of them. */
  void read_rest(Picture& picture) {
    step([&] { png_read_end(codec_.png, codec_.info); });
    png_uint_32 x = 0;
    png_uint_32 y = 0;
    int unit = PNG_RESOLUTION_UNKNOWN;
    png_get_pHYs(codec_.png, codec_.info, &x, &y, &unit);
    if (unit == PNG_RESOLUTION_METER) {
      const auto dpi = [](png_uint_32 per_metre) { return static_cast<int>(std::min(per_metre / 39.37 + 0.5, 1e9)); };
      picture.image.set_resolution({dpi(x), dpi(y)});
    }
    picture.metadata = metadata();
  }

  Metadata metadata() {
    Metadata found;
    png_charp name = nullptr;
    int compression = 0;
    png_bytep profile = nullptr;
    png_uint_32 size = 0;
    if (png_get_iCCP(codec_.png, codec_.info, &name, &compression, &profile, &size) != 0) {
      found.icc.assign(profile, profile + size);
    }
    png_bytep exif = nullptr;
    if (png_get_eXIf_1(codec_.png, codec_.info, &size, &exif) != 0 && exif != nullptr) {
      found.exif.assign(exif, exif + size);
    }
    png_textp texts = nullptr;
    int count = 0;
    png_get_text(codec_.png, codec_.info, &texts, &count);
    for (int i = 0; i < count; ++i) {
      if (std::string_view(texts[i].key) != kXmpKey) continue;
      const std::size_t length = texts[i].itxt_length != 0 ? texts[i].itxt_length : texts[i].text_length;
      found.xmp.assign(texts[i].text, texts[i].text + length);
    }
    return found;
  }

  template <class Step>
  void step(Step step) {
    const ForeignCode foreign;
    if (done(codec_, step)) return;
    if (codec_.no_memory) throw std::bad_alloc();
    refuse_damaged(Format::kPng);
  }

  const ForeignCode foreign_;
  Codec codec_;
  Source source_;
  bool opacity_ = false;
  bool gray_palette_ = false;
  bool inverted_ = false; /**< a bilevel picture in which 0 is white */
  std::vector<png_color> palette_;
};

void append(png_structp png, png_bytep from, std::size_t count) {
  auto& file = *static_cast<Bytes*>(png_get_io_ptr(png));
  file.insert(file.end(), from, from + count);
}

void set_metadata(const Codec& codec, const Metadata& metadata) {
  if (!metadata.icc.empty()) {
    png_set_iCCP(codec.png, codec.info, "ICC profile", PNG_COMPRESSION_TYPE_BASE, metadata.icc.data(),
                 static_cast<png_uint_32>(metadata.icc.size()));
  }
  if (!metadata.exif.empty()) {
    png_set_eXIf_1(codec.png, codec.info, static_cast<png_uint_32>(metadata.exif.size()),
                   const_cast<png_bytep>(metadata.exif.data()));
  }
}

/** `text` holds a packet with its end. */
void set_xmp(const Codec& codec, std::string& text) {
  std::array<char, sizeof kXmpKey> key{};
  std::memcpy(key.data(), kXmpKey, sizeof kXmpKey);
  std::array<char, 1> none{};
  png_text record{};
  record.compression = PNG_ITXT_COMPRESSION_NONE;
  record.key = key.data();
  record.text = text.data();
  record.itxt_length = text.size();
  record.lang = none.data();
  record.lang_key = none.data();
  png_set_text(codec.png, codec.info, &record, 1);
}

void set_head(const Codec& codec, const Bitmap& image, const Encoding& encoding) {
  png_set_IHDR(codec.png, codec.info, static_cast<png_uint_32>(image.width()), static_cast<png_uint_32>(image.height()),
               image.depth() == 1 ? 1 : 8, image.depth() == 24 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_GRAY,
               PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  if (const auto [x, y] = image.resolution(); x > 0 && y > 0) {
    const auto per_metre = [](int dpi) { return static_cast<png_uint_32>(dpi * 39.37 + 0.5); };
    png_set_pHYs(codec.png, codec.info, per_metre(x), per_metre(y), PNG_RESOLUTION_METER);
  }
  if (encoding.quick) {
    png_set_compression_level(codec.png, 1);
    // Photographs have few repetitions but runs: looking for others costs most of the time.
    png_set_compression_strategy(codec.png, Z_RLE);
    png_set_filter(codec.png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
  }
}

}  // namespace

Picture read_png(const Bytes& file, const Limits& limits) { return Decoder(file).read(limits); }

Bytes write_png(const Bitmap& image, const Metadata& metadata, const Encoding& encoding) {
  const ForeignCode foreign(Large::kCrashes);
  Codec codec;
  codec.png = png_create_write_struct_2(PNG_LIBPNG_VER_STRING, nullptr, leave, ignore, &codec, take, give_back);
  if (codec.png == nullptr) throw std::bad_alloc();
  codec.info = png_create_info_struct(codec.png);
  Bytes file;
  std::string xmp(metadata.xmp.begin(), metadata.xmp.end());
  const bool whole = done(codec, [&] {
    png_set_write_fn(codec.png, &file, append, nullptr);
    png_set_benign_errors(codec.png, 1);
    set_head(codec, image, encoding);
    set_metadata(codec, metadata);
    if (!xmp.empty()) set_xmp(codec, xmp);
    png_write_info(codec.png, codec.info);
    for (int y = 0; y < image.height(); ++y) png_write_row(codec.png, image.row(y));
    png_write_end(codec.png, codec.info);
  });
  png_destroy_write_struct(&codec.png, &codec.info);
  if (!whole && codec.no_memory) throw std::bad_alloc();
  if (!whole) refuse_to_write(Format::kPng);
  return file;
}

}  // namespace tool
