#include "segment/exports.h"

#include "image/dib.h"
#include "segment/find_cards.h"
#include "segment/reduce.h"
#include "segment/sheet_layout.h"

namespace vantrel::segment {
namespace {

constexpr int kDone = 1;
constexpr int kNoMemory = -1;
constexpr int kWrongDepth = -2;
constexpr int kTooCoarse = -3;

using Reduction = void(ConstPixels source, Pixels target, int n);

bool reduce_into(const BITMAPPTR* src, BITMAPPTR* dst, int n, Reduction& reduction) {
  if (src == nullptr || src->pInfo == nullptr || dst == nullptr || dst->pInfo != nullptr || n <= 0) return false;
  const auto [width, height, bit_count, x_pels_per_metre, y_pels_per_metre] = image::shape_of(*src);
  if (!image::create(*dst, {width / n, height / n, 8, x_pels_per_metre / n, y_pels_per_metre / n})) return false;
  reduction(image::pixels_of(*src), image::pixels_of(*dst), n);
  return true;
}

/** The bounds keep their low 16 bits, the fifth member stays. */
void write(const geometry::Rect& card, MYRECT& rect) {
  rect.left = static_cast<std::int16_t>(card.cols.first);
  rect.right = static_cast<std::int16_t>(card.cols.last());
  rect.bottom = static_cast<std::int16_t>(card.rows.first);
  rect.top = static_cast<std::int16_t>(card.rows.last());
}

std::int32_t write(const Column& column, MYRECT (&rectangles)[kMostGroups]) {
  MYRECT* rect = rectangles;
  for (const Card& card : column.found()) write(card.rect, *rect++);
  return column.count;
}

int segment(const BITMAPPTR& scan, RectRegions& regions) {
  const BITMAPINFOHEADER& header = *scan.pInfo;
  const float resolution = dots_per_inch(header.biXPelsPerMeter, header.biYPelsPerMeter);
  if (resolution < kLeastDotsPerInch) return kTooCoarse;
  if (!is_segmented(header.biBitCount)) return kWrongDepth;
  // A scan is refused whose reduced image no block could hold.
  const int factor = reduction_factor(resolution);
  if (!image::fits_block(header.biWidth / factor, header.biHeight / factor, 8)) return kNoMemory;

  const CardSheet sheet = find_cards(image::pixels_of(scan), header.biBitCount, resolution);
  if (!sheet.ready) return kNoMemory;
  regions.firstCount = write(sheet.columns[0], regions.firstColumn);
  regions.secondCount = write(sheet.columns[1], regions.secondColumn);
  return kDone;
}

}  // namespace
}  // namespace vantrel::segment

namespace segment = vantrel::segment;

bool Color2ScaledGray(BITMAPPTR* src, BITMAPPTR* dst, int n) {
  return segment::reduce_into(src, dst, n, segment::reduce_colour);
}

bool Gray2ScaledGray(BITMAPPTR* src, BITMAPPTR* dst, int n) {
  return segment::reduce_into(src, dst, n, segment::reduce_gray);
}

bool Bin2ScaledGray(BITMAPPTR* src, BITMAPPTR* dst, int n) {
  return segment::reduce_into(src, dst, n, segment::reduce_bits);
}

bool Moving_Average(unsigned char* pixels, int width, int rows, int stride) {
  return segment::binarise({pixels, rows, width, stride});
}

int CardSeg(BITMAPPTR* image, RectRegions& regions) {
  regions.firstCount = regions.secondCount = 0;
  return image == nullptr || image->pInfo == nullptr ? segment::kNoMemory : segment::segment(*image, regions);
}
