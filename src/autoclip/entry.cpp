#include "autoclip/corner_finder.h"
#include "autoclip/projective.h"
#include "autoclip/warp.h"
#include "image/bitmap.h"
#include "image/convert.h"

namespace vantrel {
namespace {

/** Makes the gray image on which the corners are looked for. Fails for depths other than 8 and 24, and without memory.
 */
bool make_gray(BITMAPPTR& scan, BITMAPPTR& gray) {
  switch (scan.pInfo->biBitCount) {
    case 8:
      return ImageCopy(&scan, &gray);
    case 24:
      return Color2Gray(&scan, &gray);
    default:
      return false;
  }
}

/** Maps the quadrilateral of these corners onto the frame of a new image of the scan's size. */
int clip(BITMAPPTR& scan, float* corners, BITMAPPTR* out) {
  const BITMAPINFOHEADER& header = *scan.pInfo;
  // The card fills the frame from (1, 1) to (w - 2, h - 2), and is written from the first column and the bottom row.
  const float right = static_cast<float>(header.biWidth - 2.0);
  const float low = static_cast<float>(header.biHeight - 2.0);
  float frame[8] = {1, 1, right, 1, 1, low, right, low};
  double rect[4] = {1.0, 1.0, header.biWidth - 2.0, header.biHeight - 2.0};
  // Beyond 2^24 single precision no longer tells the frame from the image.
  if (!(right < static_cast<float>(header.biWidth - 1.0)) || !(low < static_cast<float>(header.biHeight - 1.0))) {
    return -1;
  }
  double coeffs[8];
  SolveMultiUnknownFunc(coeffs, frame, corners, 8);
  if (!CreateImage(out, header.biWidth, header.biHeight, header.biBitCount, header.biXPelsPerMeter,
                   header.biYPelsPerMeter)) {
    return -1;
  }
  return ConvertImg2(&scan, out, coeffs, rect, header.biBitCount) ? 1 : -1;
}

}  // namespace
}  // namespace vantrel

int AutoClipRedundantImg(void** analyseImage, void** cutImage, BITMAPPTR* out, int scale) {
  if (out == nullptr) return -1;
  BITMAPPTR analysed{};
  if (!vantrel::adopt(analyseImage, analysed)) return -1;
  BITMAPPTR scan = analysed;
  if (scale != 1 && !vantrel::adopt(cutImage, scan)) return -1;
  // A bilevel scan has no levels to look for a card in.
  if (analysed.pInfo->biBitCount == 1) return ImageCopy(&scan, out) ? 0 : -1;

  vantrel::WorkImage gray;
  if (!vantrel::make_gray(analysed, *gray)) return -1;
  float corners[8];
  float box[8];
  if (ClipNameCardRedundantImg(gray.get(), corners, box) == 0) return ImageCopy(&analysed, out) ? 0 : -1;
  if (scan.pInfo->biBitCount != analysed.pInfo->biBitCount) return -1;
  for (float& coordinate : corners) coordinate *= static_cast<float>(scale);
  return vantrel::clip(scan, corners, out);
}
