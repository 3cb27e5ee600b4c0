#include <webp/decode.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <vector>

#include "formats/codecs.h"
#include "formats/on_white.h"
#include "memory.h"

namespace tool {
namespace {

struct MuxRelease {
  void operator()(WebPMux* mux) const { WebPMuxDelete(mux); }
};
using Mux = std::unique_ptr<WebPMux, MuxRelease>;

struct OwnData {
  WebPData data{};
  OwnData() = default;
  OwnData(const OwnData&) = delete;
  OwnData& operator=(const OwnData&) = delete;
  ~OwnData() { WebPDataClear(&data); }
};

WebPData data_of(const Bytes& bytes) { return {bytes.data(), bytes.size()}; }

Metadata metadata_of(const Bytes& file) {
  Metadata metadata;
  const WebPData data = data_of(file);
  const Mux mux(WebPMuxCreate(&data, 0));
  if (!mux) return metadata;
  const auto chunk = [&](const char* name) {
    WebPData found{};
    if (WebPMuxGetChunk(mux.get(), name, &found) != WEBP_MUX_OK) return Bytes();
    return Bytes(found.bytes, found.bytes + found.size);
  };
  metadata = {chunk("EXIF"), chunk("XMP "), chunk("ICCP")};
  // Some writers keep the prefix that JPEG files need.
  constexpr std::array<unsigned char, 6> kPrefix = {'E', 'x', 'i', 'f', 0, 0};
  Bytes& exif = metadata.exif;
  if (exif.size() > kPrefix.size() && std::equal(kPrefix.begin(), kPrefix.end(), exif.begin())) {
    exif.erase(exif.begin(), exif.begin() + kPrefix.size());
  }
  return metadata;
}

[[noreturn]] void fail(VP8StatusCode status, const ForeignCode& foreign) {
  if (status == VP8_STATUS_OUT_OF_MEMORY || foreign.missed_memory()) throw std::bad_alloc();
  if (status == VP8_STATUS_UNSUPPORTED_FEATURE) refuse_kind(Format::kWebp, "an animation");
  refuse_damaged(Format::kWebp);
}

/** Of a pixel in the picture, before it is laid on white, and in the decoder, which keeps some kinds. */
int bits_of(const WebPBitstreamFeatures& file) {
  constexpr int kLossless = 2;
  const int with_opacity = file.has_alpha != 0 ? 32 : 0;
  const int kept = file.format == kLossless ? 32 : file.has_alpha != 0 ? 8 : 0;
  return 24 + with_opacity + kept;
}

/** Decodes all rows into memory of so many bytes a row. */
void decode(const Bytes& file, WebPDecoderConfig& config, WEBP_CSP_MODE mode, unsigned char* into, std::size_t stride) {
  const ForeignCode foreign;
  config.output.colorspace = mode;
  config.output.is_external_memory = 1;
  config.output.u.RGBA.rgba = into;
  config.output.u.RGBA.stride = static_cast<int>(stride);
  config.output.u.RGBA.size = stride * static_cast<std::size_t>(config.input.height);
  const VP8StatusCode status = WebPDecode(file.data(), file.size(), &config);
  if (status != VP8_STATUS_OK) fail(status, foreign);
}

struct Encoder {
  WebPPicture picture{};
  WebPMemoryWriter writer{};

  Encoder() { WebPMemoryWriterInit(&writer); }
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;
  ~Encoder() {
    WebPPictureFree(&picture);
    WebPMemoryWriterClear(&writer);
  }
};

/** Three bytes a pixel of any picture. */
Bytes colours_of(const Bitmap& image) {
  Bytes colours(std::size_t{3} * static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()));
  unsigned char* to = colours.data();
  for (int y = 0; y < image.height(); ++y) {
    const unsigned char* const row = image.row(y);
    for (int x = 0; x < image.width(); ++x, to += 3) {
      const int level = image.depth() == 1 ? 255 * (row[x / 8] >> (7 - x % 8) & 1) : row[x];
      std::fill_n(to, 3, static_cast<unsigned char>(level));
    }
  }
  return colours;
}

Bytes with_chunks(const WebPData& plain, const Metadata& metadata) {
  const Mux mux(WebPMuxCreate(&plain, 0));
  if (!mux) refuse_to_write(Format::kWebp);
  const auto put = [&](const char* name, const Bytes& bytes) {
    const WebPData data = data_of(bytes);
    if (!bytes.empty() && WebPMuxSetChunk(mux.get(), name, &data, 0) != WEBP_MUX_OK) refuse_to_write(Format::kWebp);
  };
  put("EXIF", metadata.exif);
  put("XMP ", metadata.xmp);
  put("ICCP", metadata.icc);
  OwnData whole;
  if (WebPMuxAssemble(mux.get(), &whole.data) != WEBP_MUX_OK) refuse_to_write(Format::kWebp);
  return {whole.data.bytes, whole.data.bytes + whole.data.size};
}

}  // namespace

Picture read_webp(const Bytes& file, const Limits& limits) {
  const ForeignCode foreign;
  WebPDecoderConfig config{};
  WebPInitDecoderConfig(&config);
  const VP8StatusCode status = WebPGetFeatures(file.data(), file.size(), &config.input);
  if (status != VP8_STATUS_OK) fail(status, foreign);
  if (config.input.has_animation != 0) refuse_kind(Format::kWebp, "an animation");
  const int width = config.input.width;
  const int height = config.input.height;
  check_size(width, height, bits_of(config.input), limits);
  Picture picture;
  picture.image = Bitmap(width, height, VANTREL_FORMAT_RGB);
  picture.metadata = metadata_of(file);
  if (config.input.has_alpha == 0) {
    decode(file, config, MODE_RGB, picture.image.row(0), static_cast<std::size_t>(picture.image.stride()));
    return picture;
  }
  const std::size_t stride = std::size_t{4} * static_cast<std::size_t>(width);
  Bytes pixels(stride * static_cast<std::size_t>(height));
  decode(file, config, MODE_RGBA, pixels.data(), stride);
  for (int y = 0; y < height; ++y) {
    row_on_white<on_white>(pixels.data() + stride * static_cast<std::size_t>(y), width, 3, picture.image.row(y));
  }
  return picture;
}

Bytes write_webp(const Bitmap& image, const Metadata& metadata, const Encoding& encoding) {
  const ForeignCode foreign(Large::kCrashes);
  WebPConfig config{};
  Encoder encoder;
  WebPPicture& picture = encoder.picture;
  if (WebPConfigInit(&config) == 0 || WebPPictureInit(&picture) == 0) refuse_to_write(Format::kWebp);
  config.lossless = encoding.lossy ? 0 : 1;
  config.quality = static_cast<float>(encoding.lossy ? encoding.quality : 70);
  picture.use_argb = config.lossless;
  picture.width = image.width();
  picture.height = image.height();
  picture.writer = WebPMemoryWrite;
  picture.custom_ptr = &encoder.writer;
  const bool colour = image.depth() == 24;
  const Bytes levels = colour ? Bytes() : colours_of(image);
  const int imported = colour ? WebPPictureImportRGB(&picture, image.row(0), static_cast<int>(image.stride()))
                              : WebPPictureImportRGB(&picture, levels.data(), 3 * image.width());
  if (imported == 0 || WebPEncode(&config, &picture) == 0) refuse_to_write(Format::kWebp);
  const WebPData plain{encoder.writer.mem, encoder.writer.size};
  if (metadata.exif.empty() && metadata.xmp.empty() && metadata.icc.empty()) {
    return {plain.bytes, plain.bytes + plain.size};
  }
  return with_chunks(plain, metadata);
}

}  // namespace tool
