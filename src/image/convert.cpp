#include "image/convert.h"

#include "image/bitmap.h"

bool Color2Gray(BITMAPPTR* src, BITMAPPTR* dst) {
  if (dst->pInfo != nullptr) return false;
  const BITMAPINFOHEADER& header = *src->pInfo;
  if (!CreateImage(dst, header.biWidth, header.biHeight, 8, header.biXPelsPerMeter, header.biYPelsPerMeter)) {
    return false;
  }
  const vantrel::ConstPixels colour = vantrel::const_pixels_of(*src);
  const vantrel::Pixels gray = vantrel::pixels_of(*dst);
  for (int r = 0; r < gray.rows; ++r) {
    const unsigned char* pixel = colour.row(r);
    unsigned char* level = gray.row(r);
    for (int c = 0; c < gray.cols; ++c, pixel += 3) {
      // The weights are sixteenths, coarser than the usual luminance weights; their sum keeps the level within a byte.
      level[c] = static_cast<unsigned char>((2 * pixel[0] + 9 * pixel[1] + 5 * pixel[2]) / 16);
    }
  }
  return true;
}

void RawData2RGB(unsigned char* raw, unsigned char* plane0, unsigned char* plane1, unsigned char* plane2, int rows,
                 int cols, int planeStride, int rawStride) {
  for (int r = 0; r < rows; ++r) {
    const unsigned char* pixel = raw + std::ptrdiff_t{r} * rawStride;
    const std::ptrdiff_t row = std::ptrdiff_t{r} * planeStride;
    for (int c = 0; c < cols; ++c, pixel += 3) {
      plane0[row + c] = pixel[0];
      plane1[row + c] = pixel[1];
      plane2[row + c] = pixel[2];
    }
  }
}
