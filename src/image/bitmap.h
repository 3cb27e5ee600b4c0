/**
 * @file bitmap.h
 * @brief Image blocks: making, copying, adopting and releasing them, and views over their pixels.
 */
#ifndef VANTREL_IMAGE_BITMAP_H
#define VANTREL_IMAGE_BITMAP_H

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "vantrel.h"

/**
 * Makes a white image in a new block from malloc.
 *
 * @param img overwritten, not freed. On failure `pInfo` becomes null and the other pointers stay.
 * @param xPelsPerMeter, yPelsPerMeter resolution, stored as given.
 * @return false when there is no memory or the sizes are negative or too large for a block.
 *
 * Palettes: 2 entries (black, white) for 1 bit, the gray ramp for 8 bits; for other depths up to 8 the 2^bitCount
 * entries are left unwritten, above there are none.
 */
VANTREL_API bool CreateImage(BITMAPPTR* img, int width, int height, int bitCount, int xPelsPerMeter, int yPelsPerMeter);

/**
 * Copies an image into a new block from malloc: header, as many palette entries as biClrUsed says, pixels.
 *
 * @param dst overwritten, not freed. On failure `pInfo` becomes null and the other pointers stay.
 * @return false when there is no memory or the header's sizes make no block.
 */
VANTREL_API bool ImageCopy(BITMAPPTR* src, BITMAPPTR* dst);

namespace vantrel {

inline constexpr int kHeaderBytes = 40;

/** Bytes from one row to the next: rows are padded to whole 32-bit words. */
constexpr std::int64_t stride_bytes(std::int64_t width, int bit_count) { return (width * bit_count + 31) / 32 * 4; }

/** Bytes of the pixel rows that the header announces. */
inline std::int64_t pixel_bytes(const BITMAPINFOHEADER& header) {
  return stride_bytes(header.biWidth, header.biBitCount) * header.biHeight;
}

/** Palette entries of a full palette: 2^bit_count up to 8 bits, none above. */
constexpr std::uint32_t palette_entries(int bit_count) { return bit_count > 8 ? 0u : 1u << bit_count; }

/**
 * Takes a caller's packed handle as an image, writing the full palette's size into its header.
 *
 * @return false when the handle or its block is null; `image` is then untouched.
 */
bool adopt(void** handle, BITMAPPTR& image);

/**
 * Pixels of an image with one byte or three bytes a pixel: rows x cols, `stride` bytes from row to row, memory rows.
 * A view owns nothing.
 */
template <class Byte>
struct PixelView {
  Byte* data;
  int rows;
  int cols;
  std::ptrdiff_t stride;

  Byte* row(int r) const { return data + r * stride; }
};

using Pixels = PixelView<unsigned char>;
using ConstPixels = PixelView<const unsigned char>;

/** The pixels of an image in its own geometry. */
inline Pixels pixels_of(const BITMAPPTR& image) {
  const BITMAPINFOHEADER& header = *image.pInfo;
  return {image.pBits, header.biHeight, header.biWidth,
          static_cast<std::ptrdiff_t>(stride_bytes(header.biWidth, header.biBitCount))};
}

inline ConstPixels const_pixels_of(const BITMAPPTR& image) {
  const Pixels pixels = pixels_of(image);
  return {pixels.data, pixels.rows, pixels.cols, pixels.stride};
}

/** A work image that is released at the end of its scope. Starts empty. */
class WorkImage {
 public:
  WorkImage() = default;
  WorkImage(const WorkImage&) = delete;
  WorkImage& operator=(const WorkImage&) = delete;
  ~WorkImage() { std::free(image_.pInfo); }

  BITMAPPTR* get() { return &image_; }
  BITMAPPTR& operator*() { return image_; }

 private:
  BITMAPPTR image_{};
};

}  // namespace vantrel

#endif
