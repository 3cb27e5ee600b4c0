#include "leptonica_pix.h"

#include <cstring>
#include <new>

#include "memory.h"

namespace tool {
namespace {

PixPtr to_plain_depth(PixPtr pix) {
  if (pixGetColormap(pix.get()) != nullptr) pix = checked(pixRemoveColormap(pix.get(), REMOVE_CMAP_BASED_ON_SRC));
  switch (pixGetDepth(pix.get())) {
    case 2:
    case 4:
      return checked(pixConvertTo8(pix.get(), 0));
    case 16:
      return checked(pixConvert16To8(pix.get(), L_MS_BYTE));
    default:
      return pix;
  }
}

vantrel_format format_of(PIX* pix) {
  switch (pixGetDepth(pix)) {
    case 1:
      return VANTREL_FORMAT_BILEVEL;
    case 8:
      return VANTREL_FORMAT_GRAY;
    default:
      return VANTREL_FORMAT_RGB;
  }
}

l_uint32* words_of(PIX* pix, int y) { return pixGetData(pix) + std::ptrdiff_t{pixGetWpl(pix)} * y; }

/** Red, green and blue bytes from words, and back. */
void copy_colours(const l_uint32* from, int width, unsigned char* to) {
  for (int x = 0; x < width; ++x, to += 3) {
    to[0] = static_cast<unsigned char>(from[x] >> L_RED_SHIFT);
    to[1] = static_cast<unsigned char>(from[x] >> L_GREEN_SHIFT);
    to[2] = static_cast<unsigned char>(from[x] >> L_BLUE_SHIFT);
  }
}
void copy_colours(const unsigned char* from, int width, l_uint32* to) {
  for (int x = 0; x < width; ++x, from += 3) {
    to[x] = l_uint32{from[0]} << L_RED_SHIFT | l_uint32{from[1]} << L_GREEN_SHIFT | l_uint32{from[2]} << L_BLUE_SHIFT;
  }
}

PixPtr created_like(const Bitmap& picture, int depth) {
  const ForeignCode foreign;
  PixPtr pix = checked(pixCreateNoInit(picture.width(), picture.height(), depth));
  pixSetResolution(pix.get(), picture.resolution().x, picture.resolution().y);
  return pix;
}

}  // namespace

PixPtr checked(PIX* pix) {
  if (pix == nullptr) throw std::bad_alloc();
  return PixPtr(pix);
}

Bitmap bitmap_of(PixPtr pix) {
  const ForeignCode foreign;
  pix = to_plain_depth(std::move(pix));
  const int depth = pixGetDepth(pix.get());
  Bitmap picture(pixGetWidth(pix.get()), pixGetHeight(pix.get()), format_of(pix.get()),
                 {pixGetXRes(pix.get()), pixGetYRes(pix.get())});
  if (depth == 1 && pixInvert(pix.get(), pix.get()) == nullptr) throw std::bad_alloc();
  if (depth <= 8) pixEndianByteSwap(pix.get());
  for (int y = 0; y < picture.height(); ++y) {
    if (depth == 32) {
      copy_colours(words_of(pix.get(), y), picture.width(), picture.row(y));
    } else {
      std::memcpy(picture.row(y), words_of(pix.get(), y), static_cast<std::size_t>(picture.stride()));
    }
  }
  return picture;
}

PixPtr pix_of(const Bitmap& picture) {
  if (picture.depth() == 24) return colour_pix_of(picture);
  const ForeignCode foreign;
  PixPtr pix = created_like(picture, picture.depth());
  for (int y = 0; y < picture.height(); ++y) {
    std::memcpy(words_of(pix.get(), y), picture.row(y), static_cast<std::size_t>(picture.stride()));
  }
  pixEndianByteSwap(pix.get());
  if (picture.depth() == 1) {
    if (pixInvert(pix.get(), pix.get()) == nullptr) throw std::bad_alloc();
    // What lies behind the last pixel of a row is expected to be 0.
    pixSetPadBits(pix.get(), 0);
  }
  return pix;
}

PixPtr colour_pix_of(const Bitmap& picture) {
  if (picture.depth() != 24) {
    const PixPtr pix = pix_of(picture);
    const ForeignCode foreign;
    return checked(pixConvertTo32(pix.get()));
  }
  PixPtr pix = created_like(picture, 32);
  for (int y = 0; y < picture.height(); ++y) {
    copy_colours(picture.row(y), picture.width(), words_of(pix.get(), y));
  }
  return pix;
}

}  // namespace tool
