#include <array>
#include <cstddef>
#include <new>

#include "formats/codecs.h"
#include "leptonica_pix.h"
#include "memory.h"

// The formats without compression, by Leptonica, and kinds of them that it reads wrongly, made right. Whether the
// Leptonica at hand has a fault is found out by letting it decode a file of one pixel, so that a version in which it is
// mended is left alone.
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

bool is_binary_gray_pnm(const Bytes& file) { return file[1] == '5'; }

int bits_of_bmp(const Bytes& file) { return file[28] + 256 * file[29]; }

/** The least number of bytes that the samples of a PNM file take: packed, or as text with a space between two. */
std::int64_t least_pnm_bytes(int type, std::int64_t width, std::int64_t height, int bits, int samples) {
  switch (type) {
    case 1:  // digits of bits need no space
      return width * height;
    case 2:
    case 3:
      return 2 * width * height * samples - 1;
    case 4:
      return (width + 7) / 8 * height;
    default:
      return width * height * samples * (bits > 8 ? 2 : 1);
  }
}

/** Reads the picture as Leptonica has it. */
PixPtr decoded(Format format, const Bytes& file, const ForeignCode& foreign) {
  PixPtr pix(pixReadMem(file.data(), file.size()));
  if (pix) return pix;
  if (foreign.missed_memory()) throw std::bad_alloc();
  refuse_damaged(format);
}

template <class Write>
Bytes encoded(const Bitmap& image, Format format, Write write) {
  const PixPtr pix = pix_of(image);
  const ForeignCode foreign(Large::kCrashes);
  l_uint8* data = nullptr;
  std::size_t size = 0;
  const bool written = write(&data, &size, pix.get()) == 0 && data != nullptr;
  Bytes file;
  if (written) file.assign(data, data + size);
  lept_free(data);
  if (!written) refuse_to_write(format);
  return file;
}

}  // namespace

Picture read_bmp(const Bytes& file, const Limits& limits) {
  const ForeignCode foreign;
  constexpr std::size_t kHead = 30;
  if (file.size() < kHead) refuse_damaged(Format::kBmp);
  // What is larger than its file, the decoder refuses.
  check_size(static_cast<std::int64_t>(file.size()), 1, 8, limits);
  if (bits_of_bmp(file) == 16) refuse_kind(Format::kBmp, "16 bits a pixel");
  PixPtr pix = decoded(Format::kBmp, file, foreign);
  check_size(pixGetWidth(pix.get()), pixGetHeight(pix.get()), pixGetDepth(pix.get()), limits);
  if (bits_of_bmp(file) == 32 && exchanges_colours_of_bmp()) exchange_red_and_blue(pix.get());
  Picture picture;
  picture.image = bitmap_of(std::move(pix));
  return picture;
}

Picture read_pnm(const Bytes& file, const Limits& limits) {
  const ForeignCode foreign;
  l_int32 width = 0;
  l_int32 height = 0;
  l_int32 depth = 0;
  l_int32 type = 0;
  l_int32 bits = 0;
  l_int32 samples = 0;
  if (readHeaderMemPnm(file.data(), file.size(), &width, &height, &depth, &type, &bits, &samples) == 0) {
    check_size(width, height, depth, limits);
    if (least_pnm_bytes(type, width, height, bits, samples) > static_cast<std::int64_t>(file.size())) {
      refuse_damaged(Format::kPnm);
    }
  }
  PixPtr pix = decoded(Format::kPnm, file, foreign);
  if (pixGetDepth(pix.get()) == 16 && is_binary_gray_pnm(file) && exchanges_bytes_of_gray_pnm()) {
    exchange_bytes(pix.get());
  }
  Picture picture;
  picture.image = bitmap_of(std::move(pix));
  picture.sample_bits = bits;
  return picture;
}

Bytes write_bmp(const Bitmap& image) { return encoded(image, Format::kBmp, pixWriteMemBmp); }

Bytes write_pnm(const Bitmap& image) { return encoded(image, Format::kPnm, pixWriteMemPnm); }

}  // namespace tool
