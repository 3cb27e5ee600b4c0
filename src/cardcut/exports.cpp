#include "cardcut/exports.h"

#include "cardcut/difference.h"
#include "cardcut/find_card.h"
#include "image/dib.h"

namespace vantrel::cardcut {
namespace {

/** A bound is cut to 16 bits. */
std::int16_t bound(std::int64_t value) { return static_cast<std::int16_t>(value); }

void write(const Rect& card, MYRECT& rect) {
  rect.left = bound(card.cols.first);
  rect.top = bound(std::int64_t{card.rows.end} - 1);
  rect.right = bound(std::int64_t{card.cols.end} - 1);
  rect.bottom = bound(card.rows.first);
}

/** Finds the card by gray levels in an image of 8 or 24 bits; `rect` stays as it is for others. */
bool find_by_levels(const BITMAPPTR& scan, MYRECT& rect) {
  const BITMAPINFOHEADER& header = *scan.pInfo;
  const bool colour = header.biBitCount == 24;
  if (header.biBitCount != 8 && !colour) return false;
  // What is too large for a gray image of its own is refused, though none is made.
  if (!image::fits_block(header.biWidth, header.biHeight, 8)) {
    write(default_gray_card(header.biHeight, header.biWidth), rect);
    return false;
  }
  const ConstPixels pixels = image::pixels_of(scan);
  const FlatCard card = colour ? find_card_by_gray_levels(pixels) : find_card(pixels);
  write(card.rect, rect);
  return card.ready;
}

/** Finds the card by colours in an image of 24 bits that is large enough; `rect` stays as it is for others. */
bool find_by_colours(const BITMAPPTR& scan, MYRECT& rect) {
  const BITMAPINFOHEADER& header = *scan.pInfo;
  if (header.biBitCount != 24 || header.biWidth < kLeastColourSide || header.biHeight < kLeastColourSide) return false;
  const FlatCard card = find_colour_card(image::pixels_of(scan));
  write(card.rect, rect);
  return card.ready;
}

/** Finds the card in the way that suits the depth of the scan. */
bool find(const BITMAPPTR& scan, MYRECT& rect) {
  return scan.pInfo->biBitCount == 24 ? find_by_colours(scan, rect) : find_by_levels(scan, rect);
}

/** The scan that is analysed and the scan that is cut, which may be the same. */
struct Scans {
  BITMAPPTR analysed;
  BITMAPPTR cut;
};

/** Adopts both scans; a scale of 1 or less makes no use of the second. */
bool adopt(void** analysed, void** high_res, int scale, Scans& scans) {
  if (!image::adopt(analysed, scans.analysed)) return false;
  return image::adopt(high_res != nullptr && scale > 1 ? high_res : analysed, scans.cut);
}

MYRECT scaled(const MYRECT& rect, int scale) {
  const auto product = [scale](std::int16_t value) { return bound(std::int64_t{value} * scale); };
  return {product(rect.left), product(rect.top), product(rect.right), product(rect.bottom), rect.reserved};
}

}  // namespace
}  // namespace vantrel::cardcut

namespace cardcut = vantrel::cardcut;

bool CutCard(BITMAPPTR* image, MYRECT& rect) {
  return image != nullptr && image->pInfo != nullptr && cardcut::find_by_levels(*image, rect);
}

bool CutCard24(BITMAPPTR* image, MYRECT& rect) {
  return image != nullptr && image->pInfo != nullptr && cardcut::find_by_colours(*image, rect);
}

int ColorDiff(unsigned char r1, unsigned char g1, unsigned char b1, unsigned char r2, unsigned char g2,
              unsigned char b2) {
  const unsigned char first[] = {b1, g1, r1};
  const unsigned char second[] = {b2, g2, r2};
  return cardcut::ColourPixel::difference(first, second);
}

int AutoClipRedundantImg_ORVA(void** image, void** highResImage, BITMAPPTR* result, int scale) {
  cardcut::Scans scans;
  MYRECT card{};
  if (!cardcut::adopt(image, highResImage, scale, scans) || result == nullptr) return -1;
  if (!cardcut::find(scans.analysed, card)) return -1;
  return vantrel::image::cut(scans.cut, *result, cardcut::scaled(card, scale)) ? 1 : -1;
}

int AutoClipImg_Rect_ORVA(void** image, void** highResImage, int /*unused1*/, int /*unused2*/, int /*unused3*/,
                          int /*unused4*/, int scale) {
  cardcut::Scans scans;
  MYRECT card{};
  if (!cardcut::adopt(image, highResImage, scale, scans)) return -1;
  return cardcut::find(scans.analysed, card) ? 1 : -1;
}
