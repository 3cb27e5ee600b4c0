/**
 * @file image_picture.h
 * @brief The reference's own image record, and its exchange with the blocks of the library.
 */
#ifndef VANTREL_TESTS_REFERENCE_IMAGE_PICTURE_H
#define VANTREL_TESTS_REFERENCE_IMAGE_PICTURE_H

#include <string>
#include <vector>

#include "images.h"

namespace reference::image {

/** Pixel rows in memory order, each padded to whole 32-bit words. Every access is checked. */
struct Picture {
  int cols = 0;
  int rows = 0;
  int bits = 8;
  int x_resolution = 0;
  int y_resolution = 0;
  std::vector<unsigned char> bytes;

  int stride() const { return (cols * bits + 31) / 32 * 4; }
  unsigned char& at(int row, int byte) { return bytes.at(index(row, byte)); }
  unsigned char at(int row, int byte) const { return bytes.at(index(row, byte)); }

  /** The byte that lies `byte` bytes behind the start of a row, wherever that is; `outside` beyond the last row. */
  unsigned char flat(int row, int byte, unsigned char outside) const {
    const std::size_t place = index(row, byte);
    return place < bytes.size() ? bytes.at(place) : outside;
  }
  bool holds(int row, int byte) const { return index(row, byte) < bytes.size(); }

 private:
  std::size_t index(int row, int byte) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(stride()) + static_cast<std::size_t>(byte);
  }
};

/** A picture of one byte value. */
inline Picture filled(int cols, int rows, int bits, unsigned char fill) {
  Picture picture;
  picture.cols = cols;
  picture.rows = rows;
  picture.bits = bits;
  picture.bytes.assign(static_cast<std::size_t>(picture.stride()) * static_cast<std::size_t>(rows), fill);
  return picture;
}

/** A copy of an image block's pixels and measures. */
inline Picture picture_of(const BITMAPPTR& image) {
  const BITMAPINFOHEADER& header = *image.pInfo;
  Picture picture = filled(header.biWidth, header.biHeight, header.biBitCount, 0);
  picture.x_resolution = header.biXPelsPerMeter;
  picture.y_resolution = header.biYPelsPerMeter;
  if (!picture.bytes.empty()) std::memcpy(picture.bytes.data(), image.pBits, picture.bytes.size());
  return picture;
}

/** An image block with a picture's pixels and measures. */
inline testing_images::Image block_of(const Picture& picture) {
  testing_images::Image image(picture.cols, picture.rows, picture.bits);
  image.header().biXPelsPerMeter = picture.x_resolution;
  image.header().biYPelsPerMeter = picture.y_resolution;
  if (!picture.bytes.empty()) std::memcpy(image.ptr()->pBits, picture.bytes.data(), picture.bytes.size());
  return image;
}

/** Where two pictures differ first, in words; empty when they are the same, padding included. */
inline std::string difference(const Picture& left, const Picture& right) {
  if (left.cols != right.cols || left.rows != right.rows || left.bits != right.bits) return "other size or depth";
  if (left.x_resolution != right.x_resolution || left.y_resolution != right.y_resolution) return "other resolution";
  for (int row = 0; row < left.rows; ++row) {
    for (int byte = 0; byte < left.stride(); ++byte) {
      if (left.at(row, byte) == right.at(row, byte)) continue;
      return "row " + std::to_string(row) + " byte " + std::to_string(byte) + ": " +
             std::to_string(left.at(row, byte)) + " and " + std::to_string(right.at(row, byte));
    }
  }
  return "";
}

}  // namespace reference::image

#endif
