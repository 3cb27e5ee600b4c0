#include "scale/exports.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "image/dib.h"
#include "image/work_array.h"
#include "scale/enlarge.h"

namespace vantrel::scale {
namespace {

using image::ConstPixels;
using image::Pixels;
using image::WorkArray;

using Enlarge = bool(ConstPixels source, Pixels target, int channels);

int channels_of(const BITMAPINFOHEADER& header) { return header.biBitCount == 24 ? 3 : 1; }

/** The pixels of an image, its sides cut to signed 16-bit values. */
ConstPixels narrowed(const BITMAPPTR& image) {
  ConstPixels pixels = image::pixels_of(image);
  pixels.rows = static_cast<std::int16_t>(pixels.rows);
  pixels.cols = static_cast<std::int16_t>(pixels.cols);
  return pixels;
}

/** `factor` times the source, its width rounded up to a multiple of 4, as one stream of bytes. */
Pixels stream(unsigned char* bytes, ConstPixels source, int factor, int channels) {
  const std::int64_t cols = (std::int64_t{source.cols} * factor * 8 + 31) / 32 * 4;
  return {bytes, source.rows * factor, static_cast<int>(cols), static_cast<std::ptrdiff_t>(cols * channels)};
}

/**
 * A copy of a source whose rows, of fewer than 8 bits a pixel, are shorter than the bytes read from them. The reading
 * runs on into the next row; behind the last row it meets white here instead of what lies behind the block.
 */
WorkArray<unsigned char> extended(ConstPixels source, std::size_t available, std::size_t needed) {
  WorkArray<unsigned char> bytes(needed);
  if (bytes.ready()) {
    std::memcpy(bytes.get(), source.data, available);
    std::memset(bytes.get() + available, 0xFF, needed - available);
  }
  return bytes;
}

bool resample(const BITMAPPTR* src, BITMAPPTR* dst, int factor, Enlarge& enlarge) {
  if (src == nullptr || src->pInfo == nullptr || src->pBits == nullptr) return false;
  if (dst == nullptr || dst->pBits == nullptr) return false;
  const BITMAPINFOHEADER& header = *src->pInfo;
  const int channels = channels_of(header);
  ConstPixels source = narrowed(*src);
  if (source.rows < 0) return false;
  const Pixels target = stream(dst->pBits, source, factor, channels);
  if (target.empty()) return true;
  if (header.biWidth < 0 || header.biHeight < 0) return false;

  const std::int64_t needed = (source.rows - 1) * std::int64_t{source.stride} + std::int64_t{source.cols} * channels;
  const std::int64_t available = image::pixel_bytes(header);
  if (needed <= available) return enlarge(source, target, channels);
  const WorkArray<unsigned char> bytes =
      extended(source, static_cast<std::size_t>(available), static_cast<std::size_t>(needed));
  source.data = bytes.get();
  return bytes.ready() && enlarge(source, target, channels);
}

/** The two points in which the entries differ. */
struct Method {
  Enlarge& enlarge;
  bool large_colour_turns_gray;
};

/** The copy that stands in for an image too large to enlarge; a colour image may come back gray. */
int copy_large(const BITMAPPTR& source, BITMAPPTR& out, const Method& method) {
  const bool turns_gray = source.pInfo->biBitCount == 24 && method.large_colour_turns_gray;
  // Made apart, so that without the memory for it `out` stays as it was.
  BITMAPPTR made{};
  if (!(turns_gray ? image::create_gray(source, made) : image::copy(source, made))) return -1;
  out = made;
  return 0;
}

/** Twice the value, as the header stores it. */
int doubled(int value) { return static_cast<int>(2u * static_cast<unsigned>(value)); }

bool create_enlarged(const BITMAPPTR& source, BITMAPPTR& out) {
  image::Shape shape = image::shape_of(source);
  // Twice the width, rounded up to whole groups of 4 pixels at either depth, so that no row needs padding.
  shape.width = (16 * shape.width + 31) / 32 * 4;
  shape.height = 2 * shape.height;
  shape.x_pels_per_metre = doubled(shape.x_pels_per_metre);
  shape.y_pels_per_metre = doubled(shape.y_pels_per_metre);
  return image::create(out, shape, image::Paper::kUnwritten);
}

int enlarge(void** handle, BITMAPPTR* result, const Method& method) {
  BITMAPPTR source;
  if (result == nullptr || !image::adopt(handle, source)) return -1;
  BITMAPPTR& out = *result;
  const BITMAPINFOHEADER& header = *source.pInfo;
  if (header.biBitCount == 1) return image::copy(source, out) ? 0 : -1;
  if (header.biBitCount != 8 && header.biBitCount != 24) return -1;
  if (std::max(header.biWidth, header.biHeight) > kLongestSide) return copy_large(source, out, method);
  if (header.biWidth < 0 || header.biHeight < 0 || !create_enlarged(source, out)) return -1;
  if (resample(&source, &out, 2, method.enlarge)) return 1;
  std::free(out.pInfo);
  out.pInfo = nullptr;
  return -1;
}

}  // namespace
}  // namespace vantrel::scale

namespace scale = vantrel::scale;

bool BiLinearMethod(BITMAPPTR* src, BITMAPPTR* dst, short factor) {
  return factor != 0 && scale::resample(src, dst, factor, scale::enlarge_bilinear);
}

bool BiCubicMethod(BITMAPPTR* src, BITMAPPTR* dst, short /*factor*/) {
  return scale::resample(src, dst, 2, scale::enlarge_bicubic);
}

int BiCubicDir(int a, int b, int c, int d) { return scale::cubic_midpoint(a, b, c, d); }

int BiLinear(void** image, BITMAPPTR* out) {
  return scale::enlarge(image, out, {.enlarge = scale::enlarge_bilinear, .large_colour_turns_gray = true});
}

int BiCubic(void** image, BITMAPPTR* out) {
  return scale::enlarge(image, out, {.enlarge = scale::enlarge_bicubic, .large_colour_turns_gray = false});
}
