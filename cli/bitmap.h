/**
 * @file bitmap.h
 * @brief An image block of the library, owned.
 */
#ifndef VANTREL_CLI_BITMAP_H
#define VANTREL_CLI_BITMAP_H

#include <cstddef>
#include <new>
#include <utility>

#include "image/bitmap.h"
#include "vantrel.h"

namespace tool {

/** Pixels per metre of a resolution in dots per inch, and back, rounded. */
inline int per_metre(int dpi) { return static_cast<int>(dpi / 0.0254 + 0.5); }
inline int per_inch(int pels_per_metre) { return static_cast<int>(pels_per_metre * 0.0254 + 0.5); }

/** Owns the block behind a BITMAPPTR. A moved-from or fresh one is empty. */
class Bitmap {
 public:
  Bitmap() = default;
  /** A white image. */
  Bitmap(int width, int height, int depth, int x_pels_per_metre, int y_pels_per_metre) {
    if (!CreateImage(&record_, width, height, depth, x_pels_per_metre, y_pels_per_metre)) throw std::bad_alloc();
  }
  Bitmap(Bitmap&& other) noexcept : record_(std::exchange(other.record_, {})) {}
  Bitmap& operator=(Bitmap&& other) noexcept {
    std::swap(record_, other.record_);
    return *this;
  }
  ~Bitmap() { FreeCardImg(handle()); }

  bool empty() const { return record_.pInfo == nullptr; }
  int width() const { return record_.pInfo->biWidth; }
  int height() const { return record_.pInfo->biHeight; }
  int depth() const { return record_.pInfo->biBitCount; }
  int dpi_x() const { return per_inch(record_.pInfo->biXPelsPerMeter); }
  int dpi_y() const { return per_inch(record_.pInfo->biYPelsPerMeter); }
  void set_dpi(int dpi) { record_.pInfo->biXPelsPerMeter = record_.pInfo->biYPelsPerMeter = per_metre(dpi); }

  /** Row y, counted from the top of the picture. */
  unsigned char* row_from_top(int y) const {
    return record_.pBits + vantrel::stride_bytes(width(), depth()) * (height() - 1 - y);
  }

  /** For the library: as an input, as an output, as a packed handle. */
  BITMAPPTR* record() { return &record_; }
  const BITMAPPTR* record() const { return &record_; }
  void** handle() { return reinterpret_cast<void**>(&record_.pInfo); }

 private:
  BITMAPPTR record_{};
};

}  // namespace tool

#endif
