/**
 * @file view.h
 * @brief Views over the pixels of an image: what the core works on.
 */
#ifndef VANTREL_IMAGE_VIEW_H
#define VANTREL_IMAGE_VIEW_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace vantrel::image {

/** The largest row or pixel block: sizes and offsets stay within signed 32 bits on every platform. */
inline constexpr std::int64_t kMaxBytes = std::numeric_limits<std::int32_t>::max();

/** Bytes from one row to the next in an image block: rows are padded to whole 32-bit words. */
constexpr std::int64_t stride_bytes(std::int64_t width, int bit_count) { return (width * bit_count + 31) / 32 * 4; }

/**
 * The pixels of an image: rows x cols, `stride` bytes from row to row (negative where memory runs the other way). A
 * pixel has one byte, three, four, or a bit; whoever takes a view says which. A view owns nothing.
 */
template <class Byte>
struct View {
  Byte* data = nullptr;
  int rows = 0;
  int cols = 0;
  std::ptrdiff_t stride = 0;

  constexpr View() = default;
  constexpr View(Byte* first, int row_count, int col_count, std::ptrdiff_t row_stride)
      : data(first), rows(row_count), cols(col_count), stride(row_stride) {}
  /** Pixels that may be written may be read. */
  template <class Other>
  requires(std::is_const_v<Byte>&& std::is_same_v<const Other, Byte>) constexpr View(const View<Other>& other)
      : View(other.data, other.rows, other.cols, other.stride) {}

  constexpr Byte* row(int r) const { return data + r * stride; }
  constexpr bool empty() const { return rows <= 0 || cols <= 0; }
  /** The same pixels, the last row first. */
  constexpr View upside_down() const { return empty() ? *this : View(row(rows - 1), rows, cols, -stride); }
};

using Pixels = View<unsigned char>;
using ConstPixels = View<const unsigned char>;

}  // namespace vantrel::image

#endif
