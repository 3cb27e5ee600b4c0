#include "image/exports.h"

#include <cstdlib>

#include "image/crop.h"
#include "image/dib.h"
#include "image/gray.h"

namespace image = vantrel::image;

bool CreateImage(BITMAPPTR* img, int width, int height, int bitCount, int xPelsPerMeter, int yPelsPerMeter) {
  return image::create(*img, {width, height, bitCount, xPelsPerMeter, yPelsPerMeter});
}

bool ImageCopy(BITMAPPTR* src, BITMAPPTR* dst) { return image::copy(*src, *dst); }

int FreeCardImg(void** handle) {
  if (handle != nullptr) std::free(*handle);
  return 1;
}

bool Color2Gray(BITMAPPTR* src, BITMAPPTR* dst) { return dst->pInfo == nullptr && image::create_gray(*src, *dst); }

void RawData2RGB(unsigned char* raw, unsigned char* plane0, unsigned char* plane1, unsigned char* plane2, int rows,
                 int cols, int planeStride, int rawStride) {
  image::split_planes({raw, rows, cols, rawStride}, {plane0, plane1, plane2}, planeStride);
}

int CutRectImage(BITMAPPTR* src, BITMAPPTR* dst, MYRECT rect) {
  if (src == nullptr || src->pInfo == nullptr || dst == nullptr) return -1;
  return image::cut(*src, *dst, rect) ? 1 : -1;
}
