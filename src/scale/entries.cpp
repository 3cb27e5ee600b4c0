#include <algorithm>

#include "image/bitmap.h"
#include "image/convert.h"
#include "scale/resample.h"

namespace vantrel::scale {
namespace {

/** The longest side that is enlarged. */
constexpr int kLongestSide = 2000;

/** The two points in which the entries differ. */
struct Method {
  bool (*resample)(BITMAPPTR* src, BITMAPPTR* dst, short factor);
  bool large_colour_turns_gray;
};

/** The copy that stands in for an image too large to enlarge; a colour image may come back gray. */
int copy_large(BITMAPPTR& source, BITMAPPTR& out, const Method& method) {
  const bool colour = source.pInfo->biBitCount == 24;
  if (colour && !method.large_colour_turns_gray) {
    ImageCopy(&source, &out);
    return 0;
  }
  // Made apart, so that without the memory for it `out` stays as it was.
  WorkImage work;
  const bool made = colour ? Color2Gray(&source, work.get()) : ImageCopy(&source, work.get());
  if (!made) return -1;
  ImageCopy(work.get(), &out);
  return 0;
}

/** Twice the value, as the header stores it. */
int doubled(int value) { return static_cast<int>(2u * static_cast<unsigned>(value)); }

bool create_enlarged(const BITMAPINFOHEADER& header, BITMAPPTR& out) {
  // Twice the width, rounded up to whole groups of 4 pixels at either depth, so that no row needs padding.
  const int width = (16 * header.biWidth + 31) / 32 * 4;
  return CreateImage(&out, width, 2 * header.biHeight, header.biBitCount, doubled(header.biXPelsPerMeter),
                     doubled(header.biYPelsPerMeter));
}

int enlarge(void** image, BITMAPPTR* result, const Method& method) {
  BITMAPPTR source;
  if (result == nullptr || !adopt(image, source)) return -1;
  BITMAPPTR& out = *result;
  const BITMAPINFOHEADER& header = *source.pInfo;
  if (header.biBitCount == 1) return ImageCopy(&source, &out) ? 0 : -1;
  if (header.biBitCount != 8 && header.biBitCount != 24) return -1;
  if (std::max(header.biWidth, header.biHeight) > kLongestSide) return copy_large(source, out, method);
  if (header.biWidth < 0 || header.biHeight < 0 || !create_enlarged(header, out)) return -1;
  if (method.resample(&source, &out, 2)) return 1;
  std::free(out.pInfo);
  return -1;
}

}  // namespace
}  // namespace vantrel::scale

int BiLinear(void** image, BITMAPPTR* out) {
  return vantrel::scale::enlarge(image, out, {.resample = BiLinearMethod, .large_colour_turns_gray = true});
}

int BiCubic(void** image, BITMAPPTR* out) {
  return vantrel::scale::enlarge(image, out, {.resample = BiCubicMethod, .large_colour_turns_gray = false});
}
