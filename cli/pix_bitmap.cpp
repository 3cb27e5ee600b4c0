#include "pix_bitmap.h"

#include <algorithm>
#include <cstdint>
#include <new>

namespace tool {
namespace {

constexpr l_uint32 kWhite = 0xffffff00;

const l_uint32* words_of_row(const PIX* pix, int y) {
  return pixGetData(const_cast<PIX*>(pix)) + std::ptrdiff_t{pixGetWpl(pix)} * y;
}

/** Byte i of a row, counted from the left. */
unsigned char byte_at(const l_uint32* words, int i) {
  return static_cast<unsigned char>(words[i / 4] >> (24 - 8 * (i % 4)));
}

void put_byte(l_uint32* words, int i, unsigned char value) { words[i / 4] |= l_uint32{value} << (24 - 8 * (i % 4)); }

void bytes_from_words(const l_uint32* words, unsigned char* bytes, int count, unsigned char invert) {
  for (int i = 0; i < count; ++i) bytes[i] = static_cast<unsigned char>(byte_at(words, i) ^ invert);
}

void words_from_bytes(const unsigned char* bytes, l_uint32* words, int count, unsigned char invert) {
  for (int i = 0; i < count; ++i) put_byte(words, i, static_cast<unsigned char>(bytes[i] ^ invert));
}

void colours_from_words(const l_uint32* words, unsigned char* bytes, int pixels) {
  for (int x = 0; x < pixels; ++x) {
    bytes[3 * x] = static_cast<unsigned char>(words[x] >> L_BLUE_SHIFT);
    bytes[3 * x + 1] = static_cast<unsigned char>(words[x] >> L_GREEN_SHIFT);
    bytes[3 * x + 2] = static_cast<unsigned char>(words[x] >> L_RED_SHIFT);
  }
}

void words_from_colours(const unsigned char* bytes, l_uint32* words, int pixels) {
  for (int x = 0; x < pixels; ++x) {
    words[x] = l_uint32{bytes[3 * x]} << L_BLUE_SHIFT | l_uint32{bytes[3 * x + 1]} << L_GREEN_SHIFT |
               l_uint32{bytes[3 * x + 2]} << L_RED_SHIFT;
  }
}

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

}  // namespace

PixPtr checked(PIX* pix) {
  if (pix == nullptr) throw std::bad_alloc();
  return PixPtr(pix);
}

PixPtr to_plain_depth(PixPtr pix, const PixNature& nature) {
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
      return checked(pixConvert24To32(pix.get()));
    case 32:
      return nature.gray ? checked(pixGetRGBComponent(pix.get(), COLOR_RED)) : std::move(pix);
    default:
      return pix;
  }
}

Bitmap to_bitmap(const PIX* pix) {
  const int width = pixGetWidth(pix);
  const int height = pixGetHeight(pix);
  const int depth = pixGetDepth(pix);
  Bitmap bitmap(width, height, depth == 32 ? 24 : depth, per_metre(pixGetXRes(pix)), per_metre(pixGetYRes(pix)));
  for (int y = 0; y < height; ++y) {
    const l_uint32* words = words_of_row(pix, y);
    unsigned char* row = bitmap.row_from_top(y);
    if (depth == 32) {
      colours_from_words(words, row, width);
    } else {
      bytes_from_words(words, row, (width * depth + 7) / 8, depth == 1 ? 0xff : 0);
    }
  }
  return bitmap;
}

PixPtr to_pix(const Bitmap& bitmap) {
  const int width = bitmap.width();
  const int depth = bitmap.depth();
  PixPtr pix = checked(pixCreate(width, bitmap.height(), depth == 24 ? 32 : depth));
  pixSetXRes(pix.get(), bitmap.dpi_x());
  pixSetYRes(pix.get(), bitmap.dpi_y());
  for (int y = 0; y < bitmap.height(); ++y) {
    l_uint32* words = pixGetData(pix.get()) + std::ptrdiff_t{pixGetWpl(pix.get())} * y;
    const unsigned char* row = bitmap.row_from_top(y);
    if (depth == 24) {
      words_from_colours(row, words, width);
    } else {
      words_from_bytes(row, words, (width * depth + 7) / 8, depth == 1 ? 0xff : 0);
    }
  }
  // What lies behind the last pixel of a row is expected to be 0.
  if (depth == 1) pixSetPadBits(pix.get(), 0);
  return pix;
}

}  // namespace tool
