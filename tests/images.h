/**
 * @file images.h
 * @brief Images for tests: made, filled, compared and released in a line each.
 */
#ifndef VANTREL_TESTS_IMAGES_H
#define VANTREL_TESTS_IMAGES_H

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

#include "vantrel.h"

namespace testing_images {

/** Bytes from row to row. */
inline int stride_of(int width, int bit_count) { return (width * bit_count + 31) / 32 * 4; }

/**
 * An image block of its own, laid out by hand (not by the library's CreateImage), and the record over it. Every byte of
 * the palette and the pixels is defined: the palette is the gray ramp, the pixels are `fill`.
 */
class Image {
 public:
  Image(int width, int height, int bit_count, unsigned char fill = 0, int resolution = 11811) {
    const std::size_t colours = bit_count > 8 ? 0 : std::size_t{1} << bit_count;
    const std::size_t bytes = static_cast<std::size_t>(stride_of(width, bit_count)) * static_cast<std::size_t>(height);
    block_.assign(40 + 4 * colours + bytes, fill);
    BITMAPINFOHEADER header{};
    header.biSize = 40;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<std::uint16_t>(bit_count);
    header.biSizeImage = static_cast<std::uint32_t>(bytes);
    header.biXPelsPerMeter = header.biYPelsPerMeter = resolution;
    header.biClrUsed = static_cast<std::uint32_t>(colours);
    std::memcpy(block_.data(), &header, sizeof header);
    for (std::size_t i = 0; i < colours; ++i) {
      const auto level = static_cast<unsigned char>(colours == 1 ? 0 : i * 255 / (colours - 1));
      const unsigned char entry[4] = {level, level, level, 0};
      std::memcpy(block_.data() + 40 + 4 * i, entry, 4);
    }
    rebind();
  }
  Image(const Image& other) : block_(other.block_) { rebind(); }
  Image& operator=(const Image&) = delete;

  BITMAPPTR* ptr() { return &record_; }
  BITMAPINFOHEADER& header() { return *record_.pInfo; }
  int width() const { return record_.pInfo->biWidth; }
  int height() const { return record_.pInfo->biHeight; }
  int stride() const { return stride_of(width(), record_.pInfo->biBitCount); }
  /** Memory row r. */
  unsigned char* row(int r) { return record_.pBits + static_cast<std::ptrdiff_t>(r) * stride(); }
  /** Byte `c` of memory row r. */
  unsigned char& at(int r, int c) { return row(r)[c]; }
  /** The packed handle: valid as long as this image. */
  void** handle() {
    packed_ = block_.data();
    return &packed_;
  }
  std::vector<unsigned char>& block() { return block_; }

 private:
  void rebind() {
    record_.pInfo = reinterpret_cast<BITMAPINFOHEADER*>(block_.data());
    record_.pPalette = reinterpret_cast<RGBQUAD*>(block_.data() + 40);
    record_.pBits = block_.data() + 40 + 4 * std::size_t{record_.pInfo->biClrUsed};
  }
  std::vector<unsigned char> block_;
  BITMAPPTR record_{};
  void* packed_ = nullptr;
};

/** A result record that frees its block at the end of the scope. */
class Result {
 public:
  Result() = default;
  Result(const Result&) = delete;
  Result& operator=(const Result&) = delete;
  ~Result() { std::free(record_.pInfo); }
  BITMAPPTR* ptr() { return &record_; }
  BITMAPINFOHEADER& header() { return *record_.pInfo; }
  bool empty() const { return record_.pInfo == nullptr; }
  int stride() const { return stride_of(record_.pInfo->biWidth, record_.pInfo->biBitCount); }
  unsigned char* row(int r) { return record_.pBits + static_cast<std::ptrdiff_t>(r) * stride(); }
  unsigned char& at(int r, int c) { return row(r)[c]; }
  std::vector<unsigned char> pixels() const {
    const std::size_t bytes = static_cast<std::size_t>(stride()) * static_cast<std::size_t>(record_.pInfo->biHeight);
    return {record_.pBits, record_.pBits + bytes};
  }

 private:
  BITMAPPTR record_{};
};

/** Fills every pixel byte, padding included, with random values. */
inline void randomise(Image& image, std::mt19937& random) {
  unsigned char* bits = image.ptr()->pBits;
  unsigned char* end = image.block().data() + image.block().size();
  for (; bits != end; ++bits) *bits = static_cast<unsigned char>(random());
}

}  // namespace testing_images

#endif
