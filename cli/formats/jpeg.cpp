#include <jerror.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

// jpeglib.h needs the types of stdio before it.
#include <jpeglib.h>

#include "big_endian.h"
#include "colours.h"
#include "formats/codecs.h"
#include "memory.h"

namespace tool {
namespace {

/** Errors and warnings lead out of the codec; nobody is told of anything else. */
struct Errors {
  jpeg_error_mgr manager{};
  std::jmp_buf escape{};

  Errors() {
    jpeg_std_error(&manager);
    manager.error_exit = leave;
    manager.emit_message = leave_at_warning;
    manager.output_message = [](j_common_ptr) {};
  }

  [[noreturn]] static void leave(j_common_ptr codec) { std::longjmp(reinterpret_cast<Errors*>(codec->err)->escape, 1); }
  static void leave_at_warning(j_common_ptr codec, int level) {
    if (level < 0) leave(codec);
  }
};

/** Runs a step of a codec, which must own nothing; false when the codec gave up. */
template <class Step>
[[gnu::noinline]] bool done(Errors& errors, Step step) {
  if (setjmp(errors.escape) != 0) return false;
  step();
  return true;
}

constexpr std::string_view kExifStart("Exif\0\0", 6);
constexpr std::string_view kXmpStart("http://ns.adobe.com/xap/1.0/\0", 29);
constexpr std::string_view kIccStart("ICC_PROFILE\0", 12);

/**
 * What is wanted of the segments APP1 and APP2, by its places in the file. The codec's own list of segments is walked
 * to its end for each that is added: minutes, where a file has some hundred thousand.
 */
class Segments {
 public:
  void take(int marker, std::string_view data) {
    if (marker == JPEG_APP0 + 2) return take_piece(data);
    if (exif_.empty() && data.substr(0, kExifStart.size()) == kExifStart) exif_ = data.substr(kExifStart.size());
    if (xmp_.empty() && data.substr(0, kXmpStart.size()) == kXmpStart) xmp_ = data.substr(kXmpStart.size());
  }

  Metadata metadata() const {
    Metadata found;
    found.exif.assign(exif_.begin(), exif_.end());
    found.xmp.assign(xmp_.begin(), xmp_.end());
    const auto end = pieces_.begin() + count_;
    const auto is_missing = [](std::string_view piece) { return piece.data() == nullptr; };
    // A profile of which a piece is missing is none.
    if (!fit_ || std::any_of(pieces_.begin(), end, is_missing)) return found;
    std::for_each(pieces_.begin(), end,
                  [&](std::string_view piece) { found.icc.insert(found.icc.end(), piece.begin(), piece.end()); });
    return found;
  }

 private:
  /** Of a colour profile: its number, from 1, and how many there are stand before it. */
  void take_piece(std::string_view data) {
    constexpr std::size_t kHead = kIccStart.size() + 2;
    if (data.size() < kHead || data.substr(0, kIccStart.size()) != kIccStart) return;
    const int number = static_cast<unsigned char>(data[kHead - 2]);
    const int count = static_cast<unsigned char>(data[kHead - 1]);
    if (count_ == 0) count_ = count;
    std::string_view* const piece = number > 0 ? &pieces_[static_cast<std::size_t>(number - 1)] : nullptr;
    fit_ = fit_ && count == count_ && number <= count && piece != nullptr && piece->data() == nullptr;
    if (fit_) *piece = data.substr(kHead);
  }

  std::string_view exif_;
  std::string_view xmp_;
  std::array<std::string_view, 255> pieces_;
  int count_ = 0;
  bool fit_ = true;
};

/** In the place of the codec's reader of a segment. The file is all there, as one. */
template <int kMarker>
boolean take_segment(j_decompress_ptr codec) {
  jpeg_source_mgr& source = *codec->src;
  const JOCTET* const at = source.next_input_byte;
  const std::size_t left = source.bytes_in_buffer;
  const std::size_t told = left < 2 ? left + 1 : big_endian(at, 2);
  const std::size_t size = std::max<std::size_t>(told, 2);
  if (size > left) ERREXIT(codec, JERR_INPUT_EOF);
  const std::string_view data(reinterpret_cast<const char*>(at) + 2, size - 2);
  static_cast<Segments*>(codec->client_data)->take(kMarker, data);
  source.next_input_byte += size;
  source.bytes_in_buffer -= size;
  return TRUE;
}

/**
 * A file with thousands of passes over one picture keeps a decoder busy for ever; those that there are have ten. Each
 * coefficient comes once, and then more exactly by a bit at a time; but one that is whole could come again.
 */
struct Passes {
  static constexpr int kMost = 100;
  static constexpr int kMostOfCoefficient = 14;

  jpeg_progress_mgr manager{};
  int seen = 0;
  std::array<int, MAX_COMPONENTS> coefficients{};

  Passes() { manager.progress_monitor = limit; }

  static void limit(j_common_ptr common) {
    const auto codec = reinterpret_cast<j_decompress_ptr>(common);
    Passes& passes = *reinterpret_cast<Passes*>(codec->progress);
    if (codec->input_scan_number == passes.seen) return;
    passes.seen = codec->input_scan_number;
    if (passes.seen > kMost) Errors::leave(common);
    for (int i = 0; i < codec->comps_in_scan; ++i) {
      int& coefficients = passes.coefficients[static_cast<std::size_t>(codec->cur_comp_info[i]->component_index)];
      coefficients += codec->Se - codec->Ss + 1;
      if (coefficients > kMostOfCoefficient * DCTSIZE2) Errors::leave(common);
    }
  }
};

class Decoder {
 public:
  explicit Decoder(const Bytes& file) {
    codec_.err = &errors_.manager;
    ready_ = done(errors_, [&] {
      jpeg_create_decompress(&codec_);
      jpeg_mem_src(&codec_, file.data(), static_cast<unsigned long>(file.size()));
      codec_.client_data = &segments_;
      jpeg_set_marker_processor(&codec_, JPEG_APP0 + 1, take_segment<JPEG_APP0 + 1>);
      jpeg_set_marker_processor(&codec_, JPEG_APP0 + 2, take_segment<JPEG_APP0 + 2>);
      codec_.progress = &passes_.manager;
      jpeg_read_header(&codec_, TRUE);
    });
    if (!ready_) fail();
  }
  ~Decoder() { jpeg_destroy_decompress(&codec_); }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  Picture read(const Limits& limits) {
    const bool gray = codec_.jpeg_color_space == JCS_GRAYSCALE;
    const int width = static_cast<int>(codec_.image_width);
    const int height = static_cast<int>(codec_.image_height);
    check_size(width, height, (gray ? 8 : 24) + bits_of_coefficients(), limits);
    Picture picture;
    picture.metadata = segments_.metadata();
    picture.image = Bitmap(width, height, gray ? VANTREL_FORMAT_GRAY : VANTREL_FORMAT_RGB, resolution());
    if (codec_.num_components == 4) {
      read_cmyk(picture);
    } else {
      codec_.out_color_space = gray ? JCS_GRAYSCALE : JCS_RGB;
      read_rows([&](int y) { return picture.image.row(y); }, [](int) {});
    }
    return picture;
  }

 private:
  [[noreturn]] void fail() {
    const bool memory = errors_.manager.msg_code == JERR_OUT_OF_MEMORY;
    const int code = errors_.manager.msg_code;
    jpeg_destroy_decompress(&codec_);
    if (memory) throw std::bad_alloc();
    if (code == JERR_BAD_PRECISION || code == JERR_ARITH_NOTIMPL || code == JERR_SOF_UNSUPPORTED ||
        code == JERR_CONVERSION_NOTIMPL) {
      refuse_kind(Format::kJpeg, "its coding");
    }
    refuse_damaged(Format::kJpeg);
  }

  /** Reads each row into where `row_at` says, and calls `then` with it. */
  template <class RowAt, class Then>
  void read_rows(RowAt row_at, Then then) {
    const ForeignCode foreign;
    const bool whole = done(errors_, [&] {
      jpeg_start_decompress(&codec_);
      while (codec_.output_scanline < codec_.output_height) {
        const int y = static_cast<int>(codec_.output_scanline);
        JSAMPROW row = row_at(y);
        jpeg_read_scanlines(&codec_, &row, 1);
        then(y);
      }
      jpeg_finish_decompress(&codec_);
    });
    if (!whole) fail();
  }

  void read_cmyk(Picture& picture) {
    codec_.out_color_space = JCS_CMYK;
    const CmykReader reader(picture.metadata.icc, codec_.saw_Adobe_marker != 0);
    picture.metadata.icc.clear();
    std::vector<unsigned char> row(std::size_t{4} * codec_.image_width);
    read_rows([&](int) { return row.data(); },
              [&](int y) { reader.convert(row.data(), picture.image.width(), picture.image.row(y)); });
  }

  /** What a pixel takes beside itself: of a picture that comes in several passes all coefficients are kept. */
  int bits_of_coefficients() {
    if (jpeg_has_multiple_scans(&codec_) == FALSE) return 0;
    std::int64_t blocks = 0;
    for (int i = 0; i < codec_.num_components; ++i) {
      const jpeg_component_info& component = codec_.comp_info[i];
      blocks += std::int64_t{component.width_in_blocks} * component.height_in_blocks;
    }
    const std::int64_t pixels = std::int64_t{codec_.image_width} * codec_.image_height;
    return static_cast<int>(blocks * static_cast<std::int64_t>(8 * sizeof(JBLOCK)) / pixels);
  }

  Resolution resolution() const {
    constexpr int kInch = 1;
    constexpr int kCentimetre = 2;
    const auto dpi = [&](int density) {
      if (codec_.density_unit == kInch) return density;
      return codec_.density_unit == kCentimetre ? static_cast<int>(2.54 * density + 0.5) : 0;
    };
    return {dpi(codec_.X_density), dpi(codec_.Y_density)};
  }

  const ForeignCode foreign_;
  Errors errors_;
  Segments segments_;
  Passes passes_;
  jpeg_decompress_struct codec_{};
  bool ready_ = false;
};

struct Encoded {
  unsigned char* data = nullptr;
  unsigned long size = 0;
  ~Encoded() { std::free(data); }
};

/** An APP1 marker; data too long for one are left out. */
void write_app1(j_compress_ptr codec, std::string_view start, const Bytes& data, Bytes& work) {
  constexpr std::size_t kMostOfMarker = 65533;
  if (data.empty() || start.size() + data.size() > kMostOfMarker) return;
  work.assign(start.begin(), start.end());
  work.insert(work.end(), data.begin(), data.end());
  jpeg_write_marker(codec, JPEG_APP0 + 1, work.data(), static_cast<unsigned int>(work.size()));
}

}  // namespace

Picture read_jpeg(const Bytes& file, const Limits& limits) { return Decoder(file).read(limits); }

Bytes write_jpeg(const Bitmap& image, const Metadata& metadata, const Encoding& encoding) {
  const ForeignCode foreign(Large::kCrashes);
  Errors errors;
  // What is merely warned of in writing does no harm.
  errors.manager.emit_message = [](j_common_ptr, int) {};
  Encoded file;
  jpeg_compress_struct codec{};
  codec.err = &errors.manager;
  Bytes work;
  work.reserve(0xffff);
  std::vector<unsigned char> levels(image.depth() == 1 ? static_cast<std::size_t>(image.width()) : 0);
  const auto row_at = [&](int y) {
    const unsigned char* const row = image.row(y);
    for (std::size_t x = 0; x < levels.size(); ++x) levels[x] = (row[x / 8] >> (7 - x % 8) & 1) != 0 ? 255 : 0;
    return levels.empty() ? const_cast<unsigned char*>(row) : levels.data();
  };
  const bool whole = done(errors, [&] {
    jpeg_create_compress(&codec);
    jpeg_mem_dest(&codec, &file.data, &file.size);
    codec.image_width = static_cast<JDIMENSION>(image.width());
    codec.image_height = static_cast<JDIMENSION>(image.height());
    codec.input_components = image.depth() == 24 ? 3 : 1;
    codec.in_color_space = image.depth() == 24 ? JCS_RGB : JCS_GRAYSCALE;
    jpeg_set_defaults(&codec);
    jpeg_set_quality(&codec, encoding.quality, TRUE);
    if (const auto [x, y] = image.resolution(); x > 0 && y > 0 && x <= 0xffff && y <= 0xffff) {
      codec.density_unit = 1;
      codec.X_density = static_cast<UINT16>(x);
      codec.Y_density = static_cast<UINT16>(y);
    }
    jpeg_start_compress(&codec, TRUE);
    write_app1(&codec, kExifStart, metadata.exif, work);
    write_app1(&codec, kXmpStart, metadata.xmp, work);
    if (!metadata.icc.empty()) {
      jpeg_write_icc_profile(&codec, metadata.icc.data(), static_cast<unsigned int>(metadata.icc.size()));
    }
    while (codec.next_scanline < codec.image_height) {
      JSAMPROW row = row_at(static_cast<int>(codec.next_scanline));
      jpeg_write_scanlines(&codec, &row, 1);
    }
    jpeg_finish_compress(&codec);
  });
  jpeg_destroy_compress(&codec);
  if (!whole && errors.manager.msg_code == JERR_OUT_OF_MEMORY) throw std::bad_alloc();
  if (!whole) refuse_to_write(Format::kJpeg);
  return {file.data, file.data + file.size};
}

}  // namespace tool
