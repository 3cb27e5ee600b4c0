#include "leptonica_quirks.h"

#include <array>
#include <cstddef>

#include "failure.h"

namespace tool {
namespace {

/** What Leptonica makes of the first pixel of a file. */
template <std::size_t N>
l_uint32 first_pixel(const std::array<l_uint8, N>& file) {
  const PixPtr pix = checked(pixReadMem(file.data(), file.size()));
  l_uint32 value = 0;
  pixGetPixel(pix.get(), 0, 0, &value);
  return value;
}

bool exchanges_bytes_of_gray_pnm() {
  static const bool fault = first_pixel(std::array<l_uint8, 15>{'P', '5', ' ', '1', ' ', '1', ' ', '6', '5', '5', '3',
                                                                '5', '\n', 0x12, 0x34}) != 0x1234;
  return fault;
}

/** One pixel of 32 bits with only its blue byte set. */
constexpr std::array<l_uint8, 58> kBlueBmp = [] {
  std::array<l_uint8, 58> file{};
  file[0] = 'B';
  file[1] = 'M';
  file[2] = file.size();
  file[10] = 54;  // where the pixels begin
  file[14] = 40;  // size of the information header
  file[18] = 1;   // width
  file[22] = 1;   // height
  file[26] = 1;   // planes
  file[28] = 32;  // bits a pixel
  file[34] = 4;   // bytes of pixels
  file[54] = 0xff;
  return file;
}();

bool exchanges_colours_of_bmp() {
  static const bool fault = (first_pixel(kBlueBmp) >> L_RED_SHIFT & 0xff) == 0xff;
  return fault;
}

void exchange_bytes(PIX* pix) {
  for (int y = 0; y < pixGetHeight(pix); ++y) {
    l_uint32* words = pixGetData(pix) + std::ptrdiff_t{pixGetWpl(pix)} * y;
    for (int i = 0; i < pixGetWpl(pix); ++i) words[i] = (words[i] & 0x00ff00ff) << 8 | (words[i] >> 8 & 0x00ff00ff);
  }
}

void exchange_red_and_blue(PIX* pix) {
  for (int y = 0; y < pixGetHeight(pix); ++y) {
    l_uint32* words = pixGetData(pix) + std::ptrdiff_t{pixGetWpl(pix)} * y;
    for (int x = 0; x < pixGetWidth(pix); ++x) {
      const l_uint32 red = words[x] >> L_RED_SHIFT & 0xff;
      const l_uint32 blue = words[x] >> L_BLUE_SHIFT & 0xff;
      words[x] = (words[x] & 0x00ff00ff) | blue << L_RED_SHIFT | red << L_BLUE_SHIFT;
    }
  }
}

bool is_binary_gray_pnm(const std::vector<unsigned char>& file) { return file[1] == '5'; }

int bits_of_bmp(const std::vector<unsigned char>& file) { return file[28] + 256 * file[29]; }

}  // namespace

PixPtr repaired(PixPtr pix, Format format, const std::vector<unsigned char>& file) {
  const int depth = pixGetDepth(pix.get());
  if (format == Format::kPnm && depth == 16 && is_binary_gray_pnm(file) && exchanges_bytes_of_gray_pnm()) {
    exchange_bytes(pix.get());
  }
  if (format == Format::kBmp && depth == 16) throw Failure("BMP files of 16 bits a pixel cannot be read");
  if (format == Format::kBmp && bits_of_bmp(file) == 32 && exchanges_colours_of_bmp()) exchange_red_and_blue(pix.get());
  return pix;
}

}  // namespace tool
