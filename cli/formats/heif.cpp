#ifdef VANTREL_WITH_HEIF
#include <libheif/heif.h>

#include <cstring>
#include <memory>
#include <new>

#include "big_endian.h"
#include "formats/codecs.h"
#include "formats/heif_items.h"
#include "formats/on_white.h"
#include "memory.h"

namespace tool {
namespace {

/** What decoding takes at most: without pixels, and for each in several forms of up to two bytes a sample. */
constexpr std::int64_t kBytesAside = 64 * Budget::kMega;
constexpr std::int64_t kBytesOfPixel = 40;

struct Release {
  void operator()(heif_context* context) const { heif_context_free(context); }
  void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
  void operator()(heif_image* image) const { heif_image_release(image); }
};

void check(const heif_error& error) {
  if (error.code == heif_error_Ok) return;
  if (error.subcode == heif_suberror_Security_limit_exceeded) refuse_kind(Format::kHeif, "one of such a size");
  if (error.code == heif_error_Memory_allocation_error) throw std::bad_alloc();
  const bool kind = error.code == heif_error_Unsupported_feature || error.code == heif_error_Unsupported_filetype ||
                    error.code == heif_error_Decoder_plugin_error;
  if (kind) refuse_kind(Format::kHeif, "its coding");
  refuse_damaged(Format::kHeif);
}

Metadata metadata_of(const heif_image_handle* handle) {
  Metadata metadata;
  heif_item_id id = 0;
  if (heif_image_handle_get_list_of_metadata_block_IDs(handle, "Exif", &id, 1) == 1) {
    Bytes data(heif_image_handle_get_metadata_size(handle, id));
    // Four bytes say how many more stand before the data.
    constexpr std::size_t kHead = 4;
    if (data.size() > kHead && heif_image_handle_get_metadata(handle, id, data.data()).code == heif_error_Ok) {
      const std::size_t skipped = kHead + big_endian(data.data(), kHead);
      if (skipped < data.size()) metadata.exif.assign(data.data() + skipped, data.data() + data.size());
    }
  }
  Bytes profile(heif_image_handle_get_raw_color_profile_size(handle));
  if (!profile.empty() && heif_image_handle_get_raw_color_profile(handle, profile.data()).code == heif_error_Ok) {
    metadata.icc = std::move(profile);
  }
  return metadata;
}

/** Judges the picture by what the file says of it; how much memory decoding may take beyond what it took to open it. */
std::int64_t check_picture(const heif_image_handle* handle, const std::optional<AssembledSize>& assembled,
                           const Limits& limits) {
  const int bits = heif_image_handle_has_alpha_channel(handle) != 0 ? 32 : 24;
  check_size(heif_image_handle_get_width(handle), heif_image_handle_get_height(handle), bits, limits);
  // Before it was turned and cut.
  const std::int64_t width = heif_image_handle_get_ispe_width(handle);
  const std::int64_t height = heif_image_handle_get_ispe_height(handle);
  if (assembled && (assembled->width != width || assembled->height != height)) refuse_damaged(Format::kHeif);
  check_size(width, height, bits, limits);
  return kBytesOfPixel * width * height;
}

Bitmap bitmap_of(const heif_image* image, bool opacity) {
  int stride = 0;
  const std::uint8_t* const pixels = heif_image_get_plane_readonly(image, heif_channel_interleaved, &stride);
  const int width = heif_image_get_width(image, heif_channel_interleaved);
  const int height = heif_image_get_height(image, heif_channel_interleaved);
  if (pixels == nullptr || width <= 0 || height <= 0) refuse_damaged(Format::kHeif);
  Bitmap bitmap(width, height, VANTREL_FORMAT_RGB);
  for (int y = 0; y < height; ++y) {
    const std::uint8_t* const row = pixels + std::ptrdiff_t{stride} * y;
    if (opacity) {
      row_on_white<on_white>(row, width, 3, bitmap.row(y));
    } else {
      std::memcpy(bitmap.row(y), row, std::size_t{3} * static_cast<std::size_t>(width));
    }
  }
  return bitmap;
}

}  // namespace

Picture read_heif(const Bytes& file, const Limits& limits) {
  const std::optional<AssembledSize> assembled = check_heif_items(file, limits);
  Budget budget(kBytesAside + 8 * static_cast<std::int64_t>(file.size()), limits.megabytes);
  const ForeignCode foreign(Large::kCrashes);
  const std::unique_ptr<heif_context, Release> context(heif_context_alloc());
  check(heif_context_read_from_memory_without_copy(context.get(), file.data(), file.size(), nullptr));
  heif_image_handle* opened = nullptr;
  check(heif_context_get_primary_image_handle(context.get(), &opened));
  const std::unique_ptr<heif_image_handle, Release> handle(opened);
  budget.allow(check_picture(handle.get(), assembled, limits));
  const bool opacity = heif_image_handle_has_alpha_channel(handle.get()) != 0;
  heif_image* decoded = nullptr;
  check(heif_decode_image(handle.get(), &decoded, heif_colorspace_RGB,
                          opacity ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, nullptr));
  const std::unique_ptr<heif_image, Release> image(decoded);
  Picture picture;
  picture.image = bitmap_of(image.get(), opacity);
  picture.metadata = metadata_of(handle.get());
  picture.orientation = 1;  // the decoder has turned it
  picture.sample_bits = heif_image_handle_get_luma_bits_per_pixel(handle.get());
  return picture;
}

}  // namespace tool
#endif
