#include "segment/edgeclip/exports.h"

#include <algorithm>
#include <limits>

#include "image/dib.h"
#include "segment/edgeclip/edge_clip.h"

namespace image = vantrel::image;
namespace segment = vantrel::segment;

int Sobel_Edge(unsigned char* source, unsigned char* edge, int stride, int band1From, int band1To, int band2From,
               short threshold, short band2To, short columns) {
  const image::ConstPixels gray{source, 0, columns, stride};
  const image::Pixels map{edge, 0, columns, stride};
  segment::mark_edges(gray, map, {std::max(band1From, 1), band1To}, threshold);
  segment::mark_edges(gray, map, {band2From, band2To}, threshold);
  return 1;
}

bool ClipImg(BITMAPPTR* image, int& firstRow, int& secondRow) {
  if (image == nullptr || image->pInfo == nullptr) return false;
  const BITMAPPTR& scan = *image;
  const BITMAPINFOHEADER& header = *scan.pInfo;
  if (header.biBitCount != 8 || header.biWidth < 0 || header.biHeight < 0) return false;
  if (image::pixel_bytes(header) > std::numeric_limits<std::int32_t>::max()) return false;
  const segment::BorderRows rows = segment::find_border_rows(image::pixels_of(scan));
  firstRow = rows.near;
  secondRow = rows.far;
  return true;
}

void HProjection(unsigned char* pixels, short width, short height, unsigned short* histogram) {
  segment::add_black_per_row({pixels, height, width, width}, histogram);
}

void VProjection(unsigned char* pixels, short width, short height, unsigned short* histogram) {
  segment::add_white_per_column({pixels, height, width, width}, histogram);
}
