/**
 * @file image.h
 * @brief Image blocks for tests and benchmarks: made, filled, compared and released in a line each.
 */
#ifndef VANTREL_TESTS_SUPPORT_IMAGE_H
#define VANTREL_TESTS_SUPPORT_IMAGE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "support/random.h"
#include "vantrel.h"

namespace support {

/** Bytes from row to row. */
inline int stride_of(int width, int bit_count) { return (width * bit_count + 31) / 32 * 4; }

/**
 * The owner of an image block and the record over it; the block is freed at the end of the scope. An empty one receives
 * a result of the library.
 */
class Image {
 public:
  Image() = default;

  /**
   * A block laid out by hand, not by the library's CreateImage. Every byte of the palette and the pixels is defined:
   * the palette is the gray ramp, the pixels are `fill`.
   */
  Image(int width, int height, int bit_count, unsigned char fill = 0, int resolution = 11811) {
    const std::size_t colours = bit_count > 8 ? 0 : std::size_t{1} << bit_count;
    const std::size_t bytes = static_cast<std::size_t>(stride_of(width, bit_count)) * static_cast<std::size_t>(height);
    allocate(40 + 4 * colours + bytes);
    BITMAPINFOHEADER header{};
    header.biSize = 40;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<std::uint16_t>(bit_count);
    header.biSizeImage = static_cast<std::uint32_t>(bytes);
    header.biXPelsPerMeter = header.biYPelsPerMeter = resolution;
    header.biClrUsed = static_cast<std::uint32_t>(colours);
    std::memcpy(made_, &header, sizeof header);
    for (std::size_t i = 0; i < colours; ++i) {
      const auto level = static_cast<unsigned char>(colours == 1 ? 0 : i * 255 / (colours - 1));
      const unsigned char entry[4] = {level, level, level, 0};
      std::memcpy(made_ + 40 + 4 * i, entry, 4);
    }
    bind(colours);
    std::memset(record_.pBits, fill, bytes);
  }

  Image(const Image& other) {
    if (other.empty()) return;
    const std::vector<unsigned char> copied = other.block();
    allocate(copied.size());
    std::memcpy(made_, copied.data(), copied.size());
    bind(static_cast<std::size_t>(other.record_.pBits - other.start() - 40) / 4);
  }
  Image(Image&& other) noexcept
      : made_(std::exchange(other.made_, nullptr)),
        made_bytes_(other.made_bytes_),
        record_(std::exchange(other.record_, {})) {}
  Image& operator=(const Image&) = delete;
  ~Image() { std::free(start()); }

  BITMAPPTR* ptr() { return &record_; }
  const BITMAPPTR& record() const { return record_; }
  BITMAPINFOHEADER& header() { return *record_.pInfo; }
  const BITMAPINFOHEADER& header() const { return *record_.pInfo; }
  bool empty() const { return record_.pInfo == nullptr; }
  int width() const { return header().biWidth; }
  int height() const { return header().biHeight; }
  int stride() const { return stride_of(width(), header().biBitCount); }

  /** Memory row r. */
  unsigned char* row(int r) { return record_.pBits + static_cast<std::ptrdiff_t>(r) * stride(); }
  const unsigned char* row(int r) const { return record_.pBits + static_cast<std::ptrdiff_t>(r) * stride(); }
  /** Byte `c` of memory row r. */
  unsigned char& at(int r, int c) { return row(r)[c]; }
  unsigned char at(int r, int c) const { return row(r)[c]; }
  /** Behind the last byte of the last row. */
  unsigned char* end() { return start() + bytes(); }

  /** The packed handle: valid as long as this image. */
  void** handle() {
    packed_ = start();
    return &packed_;
  }

  /** Copies, for comparisons: of the whole block, and of its rows. */
  std::vector<unsigned char> block() const { return {start(), start() + bytes()}; }
  std::vector<unsigned char> pixels() const { return {record_.pBits, start() + bytes()}; }

 private:
  /** The block, also when a test has changed the record over a block made here. */
  unsigned char* start() const { return made_ != nullptr ? made_ : reinterpret_cast<unsigned char*>(record_.pInfo); }
  std::size_t bytes() const {
    if (made_ != nullptr) return made_bytes_;
    return static_cast<std::size_t>(record_.pBits - start()) +
           static_cast<std::size_t>(stride()) * static_cast<std::size_t>(height());
  }
  void allocate(std::size_t bytes) {
    made_ = static_cast<unsigned char*>(std::malloc(bytes));
    if (made_ == nullptr) std::abort();
    made_bytes_ = bytes;
  }
  void bind(std::size_t colours) {
    record_.pInfo = reinterpret_cast<BITMAPINFOHEADER*>(made_);
    record_.pPalette = reinterpret_cast<RGBQUAD*>(made_ + 40);
    record_.pBits = made_ + 40 + 4 * colours;
  }

  unsigned char* made_ = nullptr;
  std::size_t made_bytes_ = 0;
  BITMAPPTR record_{};
  void* packed_ = nullptr;
};

/** left, top, right, bottom. */
using Bounds = std::array<int, 4>;

inline Bounds bounds_of(const MYRECT& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }

/** Fills every pixel byte, padding included, with random values. */
inline void randomise(Image& image, Random& random) {
  for (unsigned char* byte = image.ptr()->pBits; byte != image.end(); ++byte) *byte = random.byte();
}

}  // namespace support

#endif
