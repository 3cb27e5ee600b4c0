#include "image/dib.h"

#include <cstdlib>
#include <cstring>
#include <limits>

#include "image/crop.h"
#include "image/gray.h"

namespace vantrel::image {
namespace {

/** Palette entries of a full palette: 2^bit_count up to 8 bits, none above. */
constexpr std::uint32_t palette_entries(int bit_count) { return bit_count > 8 ? 0u : 1u << bit_count; }

/** The bytes of a whole block, or 0 when its sizes are negative or too large. */
std::size_t block_bytes(std::int64_t width, std::int64_t height, int bit_count, std::int64_t colours) {
  if (width < 0 || height < 0 || bit_count < 0 || bit_count > std::numeric_limits<std::uint16_t>::max()) return 0;
  const std::int64_t stride = stride_bytes(width, bit_count);
  if (stride > kMaxBytes || stride * height > kMaxBytes) return 0;
  const std::int64_t bytes = kHeaderBytes + 4 * colours + stride * height;
  return bytes > kMaxBytes ? 0 : static_cast<std::size_t>(bytes);
}

/**
 * Points the record at a fresh block of that many bytes; null for 0 bytes or no memory. Its head comes as zeros: what
 * nobody writes there, as in most palettes, would else carry old contents of the heap to whoever gets the image.
 */
bool allocate(BITMAPPTR& image, std::size_t bytes, std::uint32_t colours) {
  image.pInfo = bytes == 0 ? nullptr : static_cast<BITMAPINFOHEADER*>(std::malloc(bytes));
  if (image.pInfo == nullptr) return false;
  std::memset(image.pInfo, 0, kHeaderBytes + 4 * std::size_t{colours});
  auto* block = reinterpret_cast<unsigned char*>(image.pInfo);
  image.pPalette = reinterpret_cast<RGBQUAD*>(block + kHeaderBytes);
  image.pBits = block + kHeaderBytes + 4 * std::size_t{colours};
  return true;
}

/** Black and white, or the gray ramp. The reserved bytes of the former and all other palettes stay as allocated. */
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

/** Whitens what lies behind the pixels of each row, which no caller writes and a host may compare. */
void whiten_padding(Pixels pixels) {
  if (pixels.cols == 0) return;  // there may be 2^31 rows without a byte
  for (int r = 0; r < pixels.rows; ++r) whiten_row_end(pixels, r);
}

}  // namespace

bool fits_block(int width, int height, int bit_count) {
  return block_bytes(width, height, bit_count, palette_entries(bit_count)) != 0;
}

bool adopt(void** handle, BITMAPPTR& image) {
  if (handle == nullptr || *handle == nullptr) return false;
  image.pInfo = static_cast<BITMAPINFOHEADER*>(*handle);
  image.pInfo->biClrUsed = palette_entries(image.pInfo->biBitCount);
  auto* block = static_cast<unsigned char*>(*handle);
  image.pPalette = reinterpret_cast<RGBQUAD*>(block + kHeaderBytes);
  image.pBits = block + kHeaderBytes + 4 * std::size_t{image.pInfo->biClrUsed};
  return true;
}

bool create(BITMAPPTR& image, const Shape& shape, Paper paper) {
  const auto& [width, height, bit_count, x_pels_per_metre, y_pels_per_metre] = shape;
  const std::uint32_t colours = bit_count < 0 ? 0 : palette_entries(bit_count);
  if (!allocate(image, block_bytes(width, height, bit_count, colours), colours)) return false;

  BITMAPINFOHEADER& header = *image.pInfo;
  header.biSize = kHeaderBytes;
  header.biWidth = width;
  header.biHeight = height;
  header.biPlanes = 1;
  header.biBitCount = static_cast<std::uint16_t>(bit_count);
  header.biCompression = 0;
  header.biXPelsPerMeter = x_pels_per_metre;
  header.biYPelsPerMeter = y_pels_per_metre;
  header.biClrUsed = colours;
  header.biClrImportant = 0;
  const auto pixels = static_cast<std::size_t>(pixel_bytes(header));
  header.biSizeImage = static_cast<std::uint32_t>(pixels);
  write_palette(image.pPalette, bit_count);
  if (paper == Paper::kWhite) {
    std::memset(image.pBits, 0xFF, pixels);
  } else if (paper == Paper::kUnwritten) {
    whiten_padding(pixels_of(image));
  }
  return true;
}

bool copy(const BITMAPPTR& src, BITMAPPTR& dst) {
  const BITMAPINFOHEADER& header = *src.pInfo;
  const std::size_t bytes =
      block_bytes(header.biWidth, header.biHeight, header.biBitCount, std::int64_t{header.biClrUsed});
  BITMAPPTR block = dst;
  const bool allocated = allocate(block, bytes, header.biClrUsed);
  if (allocated) {
    std::memcpy(block.pInfo, src.pInfo, kHeaderBytes);
    if (header.biClrUsed != 0) std::memcpy(block.pPalette, src.pPalette, 4 * std::size_t{header.biClrUsed});
    std::memcpy(block.pBits, src.pBits, static_cast<std::size_t>(pixel_bytes(header)));
  }
  dst = block;
  return allocated;
}

bool create_gray(const BITMAPPTR& colour, BITMAPPTR& gray) {
  Shape shape = shape_of(colour);
  shape.bit_count = 8;
  if (!create(gray, shape, Paper::kUnwritten)) return false;
  // The rows of an image without columns are nothing to walk through, be they millions.
  if (!pixels_of(gray).empty()) to_gray(pixels_of(colour), pixels_of(gray));
  return true;
}

bool cut(const BITMAPPTR& src, BITMAPPTR& dst, const MYRECT& rect) {
  Shape shape = shape_of(src);
  // The size wraps to 16 bits as the rectangle's members do.
  shape.height = static_cast<std::int16_t>(std::abs(rect.top - rect.bottom) + 1);
  shape.width = static_cast<std::int16_t>(rect.right - rect.left + 1);
  const ConstPixels source = pixels_of(src);
  const int depth = shape.bit_count;
  const bool all_written = (depth == 8 || depth == 24) && rect.left >= 0 && rect.bottom >= 0 &&
                           rect.left + shape.width <= source.cols && rect.bottom + shape.height <= source.rows;
  if (!create(dst, shape, all_written ? Paper::kBare : Paper::kWhite)) return false;
  if (depth != 1 && depth != 8 && depth != 24) return false;
  copy_rectangle(source, pixels_of(dst), rect.left, rect.bottom, depth);
  return true;
}

}  // namespace vantrel::image
