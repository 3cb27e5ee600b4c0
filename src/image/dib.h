/**
 * @file dib.h
 * @brief The image block that hosts hand in and get back: making, copying and adopting it, and views over its pixels.
 *
 * This is what the doors of all rooms stand on. The core behind them sees views only.
 */
#ifndef VANTREL_IMAGE_DIB_H
#define VANTREL_IMAGE_DIB_H

#include <cstdint>
#include <cstdlib>

#include "image/view.h"
#include "vantrel.h"

namespace vantrel::image {

inline constexpr int kHeaderBytes = 40;

/** Bytes of the pixel rows that the header announces. */
inline std::int64_t pixel_bytes(const BITMAPINFOHEADER& header) {
  return stride_bytes(header.biWidth, header.biBitCount) * header.biHeight;
}

/** Whether there are images of that size: no side is negative, and neither the pixels nor the block are too large. */
bool fits_block(int width, int height, int bit_count);

/** What CreateImage needs to know of an image. */
struct Shape {
  int width;
  int height;
  int bit_count;
  int x_pels_per_metre;
  int y_pels_per_metre;
};

/** The shape of an existing image. */
inline Shape shape_of(const BITMAPPTR& image) {
  const BITMAPINFOHEADER& header = *image.pInfo;
  return {header.biWidth, header.biHeight, header.biBitCount, header.biXPelsPerMeter, header.biYPelsPerMeter};
}

/** What a new image shows before anything is written to it. */
enum class Paper {
  kWhite,
  kUnwritten, /**< anything but for the rows' padding, which is white: for whole bytes that are all written at once */
  kBare       /**< anything: for whom writes the padding, too */
};

/** Makes a white image: what CreateImage does. */
bool create(BITMAPPTR& image, const Shape& shape, Paper paper = Paper::kWhite);

/** Copies a block: what ImageCopy does. */
bool copy(const BITMAPPTR& src, BITMAPPTR& dst);

/** Makes the gray image of a 24-bit one, of its size and resolution. */
bool create_gray(const BITMAPPTR& colour, BITMAPPTR& gray);

/** Cuts a rectangle into a new image: what CutRectImage does. An image of another depth is made and stays white. */
bool cut(const BITMAPPTR& src, BITMAPPTR& dst, const MYRECT& rect);

/**
 * Takes a caller's packed handle as an image, writing the full palette's size into its header.
 *
 * @return false when the handle or its block is null; `image` is then untouched.
 */
bool adopt(void** handle, BITMAPPTR& image);

/** The pixels of an image in its own geometry. */
inline Pixels pixels_of(BITMAPPTR& image) {
  const BITMAPINFOHEADER& header = *image.pInfo;
  return {image.pBits, header.biHeight, header.biWidth,
          static_cast<std::ptrdiff_t>(stride_bytes(header.biWidth, header.biBitCount))};
}

inline ConstPixels pixels_of(const BITMAPPTR& image) {
  const BITMAPINFOHEADER& header = *image.pInfo;
  return {image.pBits, header.biHeight, header.biWidth,
          static_cast<std::ptrdiff_t>(stride_bytes(header.biWidth, header.biBitCount))};
}

/** A block that is released at the end of its scope. Starts empty. */
class WorkImage {
 public:
  WorkImage() = default;
  WorkImage(const WorkImage&) = delete;
  WorkImage& operator=(const WorkImage&) = delete;
  ~WorkImage() { std::free(image_.pInfo); }

  BITMAPPTR& operator*() { return image_; }

 private:
  BITMAPPTR image_{};
};

}  // namespace vantrel::image

#endif
