#include "image/bitmap.h"

#include <cstring>
#include <limits>

namespace vantrel {
namespace {

/** The largest row or pixel block: sizes and offsets stay within signed 32 bits on every platform. */
constexpr std::int64_t kMaxBytes = std::numeric_limits<std::int32_t>::max();

/** The bytes of a whole block, or 0 when its sizes are negative or too large. */
std::size_t block_bytes(std::int64_t width, std::int64_t height, int bit_count, std::int64_t colours) {
  if (width < 0 || height < 0 || bit_count < 0 || bit_count > std::numeric_limits<std::uint16_t>::max()) return 0;
  const std::int64_t stride = stride_bytes(width, bit_count);
  if (stride > kMaxBytes || stride * height > kMaxBytes) return 0;
  const std::int64_t bytes = kHeaderBytes + 4 * colours + stride * height;
  return bytes > kMaxBytes ? 0 : static_cast<std::size_t>(bytes);
}

/** Points the record at a fresh block of that many bytes; null for 0 bytes or no memory. */
bool allocate(BITMAPPTR& image, std::size_t bytes, std::uint32_t colours) {
  image.pInfo = bytes == 0 ? nullptr : static_cast<BITMAPINFOHEADER*>(std::malloc(bytes));
  if (image.pInfo == nullptr) return false;
  auto* block = reinterpret_cast<unsigned char*>(image.pInfo);
  image.pPalette = reinterpret_cast<RGBQUAD*>(block + kHeaderBytes);
  image.pBits = block + kHeaderBytes + 4 * std::size_t{colours};
  return true;
}

/** Black and white, or the gray ramp. The reserved bytes of the former and all other palettes stay unwritten. */
void write_palette(RGBQUAD* palette, int bit_count) {
  if (bit_count == 1) {
    palette[0].rgbBlue = palette[0].rgbGreen = palette[0].rgbRed = 0;
    palette[1].rgbBlue = palette[1].rgbGreen = palette[1].rgbRed = 255;
  } else if (bit_count == 8) {
    for (int i = 0; i < 256; ++i) {
      const auto level = static_cast<std::uint8_t>(i);
      palette[i] = {level, level, level, 0};
    }
  }
}

}  // namespace

bool adopt(void** handle, BITMAPPTR& image) {
  if (handle == nullptr || *handle == nullptr) return false;
  image.pInfo = static_cast<BITMAPINFOHEADER*>(*handle);
  image.pInfo->biClrUsed = palette_entries(image.pInfo->biBitCount);
  auto* block = static_cast<unsigned char*>(*handle);
  image.pPalette = reinterpret_cast<RGBQUAD*>(block + kHeaderBytes);
  image.pBits = block + kHeaderBytes + 4 * std::size_t{image.pInfo->biClrUsed};
  return true;
}

}  // namespace vantrel

bool CreateImage(BITMAPPTR* img, int width, int height, int bitCount, int xPelsPerMeter, int yPelsPerMeter) {
  const std::uint32_t colours = bitCount < 0 ? 0 : vantrel::palette_entries(bitCount);
  if (!vantrel::allocate(*img, vantrel::block_bytes(width, height, bitCount, colours), colours)) return false;

  BITMAPINFOHEADER& header = *img->pInfo;
  header.biSize = vantrel::kHeaderBytes;
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = static_cast<std::uint16_t>(bitCount);
  header.biCompression = 0;
  header.biXPelsPerMeter = xPelsPerMeter;
  header.biYPelsPerMeter = yPelsPerMeter;
  header.biClrUsed = colours;
  header.biClrImportant = 0;
  const auto pixels = static_cast<std::size_t>(vantrel::pixel_bytes(header));
  header.biSizeImage = static_cast<std::uint32_t>(pixels);
  vantrel::write_palette(img->pPalette, bitCount);
  std::memset(img->pBits, 0xFF, pixels);
  return true;
}

bool ImageCopy(BITMAPPTR* src, BITMAPPTR* dst) {
  const BITMAPINFOHEADER& header = *src->pInfo;
  const std::size_t bytes =
      vantrel::block_bytes(header.biWidth, header.biHeight, header.biBitCount, std::int64_t{header.biClrUsed});
  BITMAPPTR copy = *dst;
  const bool allocated = vantrel::allocate(copy, bytes, header.biClrUsed);
  if (allocated) {
    std::memcpy(copy.pInfo, src->pInfo, vantrel::kHeaderBytes);
    if (header.biClrUsed != 0) std::memcpy(copy.pPalette, src->pPalette, 4 * std::size_t{header.biClrUsed});
    std::memcpy(copy.pBits, src->pBits, static_cast<std::size_t>(vantrel::pixel_bytes(header)));
  }
  *dst = copy;
  return allocated;
}

int FreeCardImg(void** handle) {
  if (handle != nullptr) std::free(*handle);
  return 1;
}
