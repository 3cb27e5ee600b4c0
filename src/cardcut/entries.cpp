#include "cardcut/card_cut.h"
#include "image/bitmap.h"

namespace vantrel::cardcut {
namespace {

/** The scan that is analysed and the scan that is cut, which may be the same. */
struct Scans {
  BITMAPPTR analysed;
  BITMAPPTR cut;
};

/** Adopts both scans; a scale of 1 or less makes no use of the second. */
bool adopt_scans(void** image, void** high_res, int scale, Scans& scans) {
  if (!adopt(image, scans.analysed)) return false;
  return adopt(high_res != nullptr && scale > 1 ? high_res : image, scans.cut);
}

bool find_card(BITMAPPTR& scan, MYRECT& rect) {
  switch (scan.pInfo->biBitCount) {
    case 8:
      return CutCard(&scan, rect);
    case 24:
      return CutCard24(&scan, rect);
    default:
      return false;
  }
}

/** The product's low 16 bits. */
std::int16_t scaled(std::int16_t value, int scale) { return static_cast<std::int16_t>(std::int64_t{value} * scale); }

MYRECT scaled(const MYRECT& rect, int scale) {
  return {scaled(rect.left, scale), scaled(rect.top, scale), scaled(rect.right, scale), scaled(rect.bottom, scale),
          rect.reserved};
}

}  // namespace
}  // namespace vantrel::cardcut

int AutoClipRedundantImg_ORVA(void** image, void** highResImage, BITMAPPTR* result, int scale) {
  vantrel::cardcut::Scans scans;
  MYRECT card{};
  if (!vantrel::cardcut::adopt_scans(image, highResImage, scale, scans)) return -1;
  if (!vantrel::cardcut::find_card(scans.analysed, card)) return -1;
  return CutRectImage(&scans.cut, result, vantrel::cardcut::scaled(card, scale));
}

int AutoClipImg_Rect_ORVA(void** image, void** highResImage, int /*unused1*/, int /*unused2*/, int /*unused3*/,
                          int /*unused4*/, int scale) {
  vantrel::cardcut::Scans scans;
  MYRECT card{};
  if (!vantrel::cardcut::adopt_scans(image, highResImage, scale, scans)) return -1;
  return vantrel::cardcut::find_card(scans.analysed, card) ? 1 : -1;
}
