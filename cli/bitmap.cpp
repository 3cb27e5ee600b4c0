#include "bitmap.h"

#include <algorithm>
#include <limits>
#include <new>

#include "memory.h"

namespace tool {
namespace {

constexpr l_uint32 kWhite = 0xffffff00;

/** Lays colours that are multiplied with their opacity on white: what the opacity lacks is white. */
PixPtr on_white_premultiplied(PixPtr pix) {
  for (int y = 0; y < pixGetHeight(pix.get()); ++y) {
    l_uint32* words = pixGetData(pix.get()) + std::ptrdiff_t{pixGetWpl(pix.get())} * y;
    for (int x = 0; x < pixGetWidth(pix.get()); ++x) {
      const l_uint32 lacking = 255 - (words[x] >> L_ALPHA_SHIFT & 0xff);
      l_uint32 blended = 0;
      for (const int shift : {L_RED_SHIFT, L_GREEN_SHIFT, L_BLUE_SHIFT}) {
        blended |= std::min(l_uint32{255}, (words[x] >> shift & 0xff) + lacking) << shift;
      }
      words[x] = blended;
    }
  }
  pixSetSpp(pix.get(), 3);
  return pix;
}

PixPtr created(int width, int height, int depth) {
  const ForeignCode foreign;
  return checked(pixCreate(width, height, depth));
}

/** A picture of another depth with the size and resolution of this one; Leptonica's own conversions crash without
 * memory. */
PixPtr created_like(PIX* pix, int depth) {
  PixPtr result = created(pixGetWidth(pix), pixGetHeight(pix), depth);
  pixSetResolution(result.get(), pixGetXRes(pix), pixGetYRes(pix));
  return result;
}

l_uint8* row_of_24(PIX* pix, int y) {
  return reinterpret_cast<l_uint8*>(pixGetData(pix) + std::ptrdiff_t{pixGetWpl(pix)} * y);
}

l_uint32* row_of_32(PIX* pix, int y) { return pixGetData(pix) + std::ptrdiff_t{pixGetWpl(pix)} * y; }

/** Red, green and blue bytes from words. */
PixPtr to_24(PIX* pix) {
  PixPtr result = created_like(pix, 24);
  for (int y = 0; y < pixGetHeight(pix); ++y) {
    const l_uint32* from = row_of_32(pix, y);
    l_uint8* to = row_of_24(result.get(), y);
    for (int x = 0; x < pixGetWidth(pix); ++x) {
      for (const int shift : {L_RED_SHIFT, L_GREEN_SHIFT, L_BLUE_SHIFT}) *to++ = from[x] >> shift & 0xff;
    }
  }
  return result;
}

PixPtr to_32(PIX* pix) {
  PixPtr result = created_like(pix, 32);
  for (int y = 0; y < pixGetHeight(pix); ++y) {
    const l_uint8* from = row_of_24(pix, y);
    l_uint32* to = row_of_32(result.get(), y);
    for (int x = 0; x < pixGetWidth(pix); ++x, from += 3) {
      to[x] = l_uint32{from[0]} << L_RED_SHIFT | l_uint32{from[1]} << L_GREEN_SHIFT | l_uint32{from[2]} << L_BLUE_SHIFT;
    }
  }
  return result;
}

/** Turns black into white in a bilevel picture. */
void exchange_levels(PIX* pix) {
  if (pixInvert(pix, pix) == nullptr) throw std::bad_alloc();
}

}  // namespace

PixPtr checked(PIX* pix) {
  if (pix == nullptr) throw std::bad_alloc();
  return PixPtr(pix);
}

PixPtr to_plain_depth(PixPtr pix, const PixNature& nature) {
  const ForeignCode foreign;
  if (pixGetColormap(pix.get()) != nullptr) pix = checked(pixRemoveColormap(pix.get(), REMOVE_CMAP_BASED_ON_SRC));
  if (pixGetDepth(pix.get()) == 32 && pixGetSpp(pix.get()) == 4) {
    pix = nature.premultiplied ? on_white_premultiplied(std::move(pix))
                               : checked(pixAlphaBlendUniform(pix.get(), kWhite));
  }
  switch (pixGetDepth(pix.get())) {
    case 2:
    case 4:
      return checked(pixConvertTo8(pix.get(), 0));
    case 16:
      return checked(pixConvert16To8(pix.get(), L_MS_BYTE));
    case 24:
      return to_32(pix.get());
    case 32:
      return nature.gray ? checked(pixGetRGBComponent(pix.get(), COLOR_RED)) : std::move(pix);
    default:
      return pix;
  }
}

Bitmap::Bitmap(int width, int height, vantrel_format format, Resolution resolution)
    : pix_(created(width, height, vantrel_format_bits(format))) {
  set_resolution(resolution);
}

Bitmap::Bitmap(PixPtr pix) : pix_(std::move(pix)) {
  const ForeignCode foreign;
  if (depth() == 32) {
    // Of its own kinds only that of 24 bits lies in memory byte by byte.
    pix_ = to_24(pix_.get());
  } else {
    if (depth() == 1) exchange_levels(pix_.get());
    pixEndianByteSwap(pix_.get());
  }
  set_resolution(resolution());
}

PixPtr Bitmap::to_pix() const {
  const ForeignCode foreign;
  if (depth() == 24) return to_32(pix_.get());
  PixPtr pix = checked(pixEndianByteSwapNew(pix_.get()));
  if (depth() == 1) {
    exchange_levels(pix.get());
    // What lies behind the last pixel of a row is expected to be 0.
    pixSetPadBits(pix.get(), 0);
  }
  return pix;
}

vantrel_format Bitmap::format() const {
  switch (depth()) {
    case 1:
      return VANTREL_FORMAT_BILEVEL;
    case 8:
      return VANTREL_FORMAT_GRAY;
    default:
      return VANTREL_FORMAT_RGB;
  }
}

void Bitmap::set_resolution(Resolution resolution) {
  // Some files say less than nothing, and twice of what others say would be no number.
  const auto plausible = [](int value) { return std::clamp(value, 0, std::numeric_limits<int>::max() / 2); };
  pixSetXRes(pix_.get(), plausible(resolution.x));
  pixSetYRes(pix_.get(), plausible(resolution.y));
}

vantrel_image Bitmap::view() const {
  const auto [x, y] = resolution();
  return {pixGetData(pix_.get()), width(), height(), stride(), format(), static_cast<double>(std::min(x, y))};
}

vantrel_picture Bitmap::target() { return {pixGetData(pix_.get()), width(), height(), stride(), format(), nullptr}; }

Bitmap bilevel_of(const Bitmap& gray) {
  const ForeignCode foreign;
  constexpr int kHalf = 128;
  return Bitmap(checked(pixThresholdToBinary(gray.to_pix().get(), kHalf)));
}

Bitmap turned(const Bitmap& picture, int quarters) {
  const ForeignCode foreign;
  Bitmap result(checked(pixRotateOrth(picture.to_pix().get(), quarters)));
  const auto [x, y] = picture.resolution();
  result.set_resolution(quarters % 2 == 0 ? Resolution{x, y} : Resolution{y, x});
  return result;
}

}  // namespace tool
