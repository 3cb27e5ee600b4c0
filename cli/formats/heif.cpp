#ifdef VANTREL_WITH_HEIF
#include <libheif/heif.h>

#include <cstring>
#include <memory>
#include <new>

#include "formats/codecs.h"
#include "formats/on_white.h"
#include "memory.h"

namespace tool {
namespace {

struct Release {
  void operator()(heif_context* context) const { heif_context_free(context); }
  void operator()(heif_image_handle* handle) const { heif_image_handle_release(handle); }
  void operator()(heif_image* image) const { heif_image_release(image); }
};

void check(const heif_error& error) {
  if (error.code == heif_error_Ok) return;
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
      const std::size_t skipped = kHead + (std::size_t{data[0]} << 24 | std::size_t{data[1]} << 16 |
                                           std::size_t{data[2]} << 8 | std::size_t{data[3]});
      if (skipped < data.size()) metadata.exif.assign(data.data() + skipped, data.data() + data.size());
    }
  }
  Bytes profile(heif_image_handle_get_raw_color_profile_size(handle));
  if (!profile.empty() && heif_image_handle_get_raw_color_profile(handle, profile.data()).code == heif_error_Ok) {
    metadata.icc = std::move(profile);
  }
  return metadata;
}

}  // namespace

Picture read_heif(const Bytes& file, const Limits& limits) {
  const ForeignCode foreign(Large::kCrashes);
  const std::unique_ptr<heif_context, Release> context(heif_context_alloc());
  check(heif_context_read_from_memory_without_copy(context.get(), file.data(), file.size(), nullptr));
  heif_image_handle* opened = nullptr;
  check(heif_context_get_primary_image_handle(context.get(), &opened));
  const std::unique_ptr<heif_image_handle, Release> handle(opened);
  const bool opacity = heif_image_handle_has_alpha_channel(handle.get()) != 0;
  check_size(heif_image_handle_get_width(handle.get()), heif_image_handle_get_height(handle.get()), opacity ? 32 : 24,
             limits);
  heif_image* decoded = nullptr;
  check(heif_decode_image(handle.get(), &decoded, heif_colorspace_RGB,
                          opacity ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB, nullptr));
  const std::unique_ptr<heif_image, Release> image(decoded);
  int stride = 0;
  const std::uint8_t* const pixels = heif_image_get_plane_readonly(image.get(), heif_channel_interleaved, &stride);
  const int width = heif_image_get_width(image.get(), heif_channel_interleaved);
  const int height = heif_image_get_height(image.get(), heif_channel_interleaved);
  if (pixels == nullptr || width <= 0 || height <= 0) refuse_damaged(Format::kHeif);
  Picture picture;
  picture.image = Bitmap(width, height, VANTREL_FORMAT_RGB);
  picture.metadata = metadata_of(handle.get());
  picture.orientation = 1;  // the decoder has turned it
  picture.sample_bits = heif_image_handle_get_luma_bits_per_pixel(handle.get());
  for (int y = 0; y < height; ++y) {
    const std::uint8_t* const row = pixels + std::ptrdiff_t{stride} * y;
    if (opacity) {
      row_on_white<on_white>(row, width, 3, picture.image.row(y));
    } else {
      std::memcpy(picture.image.row(y), row, std::size_t{3} * static_cast<std::size_t>(width));
    }
  }
  return picture;
}

}  // namespace tool
#endif
