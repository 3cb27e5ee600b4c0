#include "scale/row_stream.h"

#include <cstring>
#include <new>

#include "image/bitmap.h"

namespace vantrel::scale {
namespace {

/**
 * Rows of fewer than 8 bits a pixel are shorter than the bytes read from them: the reading runs on into the next row.
 * Behind the last row it meets white here instead of what lies behind the block.
 */
bool extend(Source& source, std::size_t available, std::size_t needed) {
  source.extended.reset(new (std::nothrow) unsigned char[needed]);
  if (source.extended == nullptr) return false;
  std::memcpy(source.extended.get(), source.pixels, available);
  std::memset(source.extended.get() + available, 0xFF, needed - available);
  source.pixels = source.extended.get();
  return true;
}

/** Gray: pixels of one byte. */
void interleave_gray(const Halves& halves, std::ptrdiff_t pixels, unsigned char* out) {
  const auto [even, odd] = halves;
  for (std::ptrdiff_t i = 0; i < pixels; ++i) {
    out[2 * i] = even[i];
    out[2 * i + 1] = odd[i];
  }
}

/**
 * Colour: pixels of three bytes, all but the last pair moved as four bytes at once; what the fourth byte spills over is
 * written next.
 */
void interleave_colour(const Halves& halves, std::ptrdiff_t pixels, unsigned char* out) {
  const auto [even, odd] = halves;
  const std::ptrdiff_t last = pixels - 1;
  for (std::ptrdiff_t i = 0; i < last; ++i) {
    std::memcpy(out + 6 * i, even + 3 * i, 4);
    std::memcpy(out + 6 * i + 3, odd + 3 * i, 4);
  }
  std::memcpy(out + 6 * last, even + 3 * last, 3);
  std::memcpy(out + 6 * last + 3, odd + 3 * last, 3);
}

}  // namespace

bool present(const BITMAPPTR* src, const BITMAPPTR* dst) {
  return src != nullptr && src->pInfo != nullptr && src->pBits != nullptr && dst != nullptr && dst->pBits != nullptr;
}

Source source_of(const BITMAPPTR& image) {
  const BITMAPINFOHEADER& header = *image.pInfo;
  Source source;
  source.pixels = image.pBits;
  source.stride = static_cast<std::ptrdiff_t>(stride_bytes(header.biWidth, header.biBitCount));
  source.rows = static_cast<std::int16_t>(header.biHeight);
  source.cols = static_cast<std::int16_t>(header.biWidth);
  source.channels = header.biBitCount == 24 ? 3 : 1;
  return source;
}

bool make_readable(const BITMAPPTR& image, Source& source) {
  const BITMAPINFOHEADER& header = *image.pInfo;
  if (header.biWidth < 0 || header.biHeight < 0 || source.cols <= 0) return false;
  const std::int64_t needed = (source.rows - 1) * std::int64_t{source.stride} + source.row_bytes();
  const std::int64_t available = pixel_bytes(header);
  return needed <= available || extend(source, static_cast<std::size_t>(available), static_cast<std::size_t>(needed));
}

OutputSize enlarged(const Source& source, int factor) {
  return {std::int64_t{source.rows} * factor, (std::int64_t{source.cols} * factor * 8 + 31) / 32 * 4};
}

unsigned char* write_row(const Halves& halves, const Source& source, std::int64_t cols, unsigned char* out) {
  const auto pairs = static_cast<std::ptrdiff_t>(std::min<std::int64_t>(source.cols, cols / 2));
  const auto interleave = source.channels == 3 ? interleave_colour : interleave_gray;
  interleave(halves, pairs, out);
  unsigned char* end = out + cols * source.channels;
  const unsigned char* last = halves.even + source.row_bytes() - source.channels;
  for (out += 2 * pairs * source.channels; out < end; out += source.channels) {
    std::copy_n(last, source.channels, out);
  }
  return end;
}

}  // namespace vantrel::scale
