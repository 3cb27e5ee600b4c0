// Headers of any content over blocks without pixels, and any arguments: whatever needs no pixels ends, and ends at
// once.
#include <array>
#include <cstdlib>
#include <limits>

#include "autoclip/exports.h"
#include "cardcut/exports.h"
#include "fuzz/check.h"
#include "image/exports.h"
#include "lines/exports.h"
#include "scale/exports.h"
#include "segment/exports.h"
#include "support/image.h"
#include "support/random.h"

namespace {

using support::Image;
using support::Random;

int any_number(Random& random) {
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr std::array kSpecial = {
      0,     0,     0,     1,        -1,       -8,        2000,          2001,      32767, 32768,  65535,
      65536, 65537, 40000, 16777215, 16777217, 268435456, kMost / 8 + 1, kMost - 1, kMost, -kMost, -kMost - 1};
  return random.one_in(4) ? static_cast<int>(random.bits()) : kSpecial[random.bits() % kSpecial.size()];
}

/** A header that announces no pixels: a side is 0 or less, or the depth is 0. */
Image hollow(Random& random) {
  constexpr std::array kDepths = {0, 1, 4, 8, 8, 24, 24, 32};
  Image image(0, 0, 24);
  BITMAPINFOHEADER& header = image.header();
  header.biBitCount = static_cast<std::uint16_t>(kDepths[random.bits() % kDepths.size()]);
  header.biWidth = any_number(random);
  header.biHeight = any_number(random);
  header.biXPelsPerMeter = any_number(random);
  header.biYPelsPerMeter = any_number(random);
  if (header.biWidth > 0 && header.biHeight > 0) (random.one_in(2) ? header.biWidth : header.biHeight) = 0;
  // The palette that such a header announces lies behind it.
  Image with_palette(0, 0, header.biBitCount > 8 ? 24 : header.biBitCount);
  const std::uint32_t colours = with_palette.header().biClrUsed;
  with_palette.header() = header;
  with_palette.header().biClrUsed = colours;
  return with_palette;
}

void verify(Random& random) {
  _BNODE line{};
  const auto wb = static_cast<short>(any_number(random));
  const int L = any_number(random);
  const int rows = any_number(random);
  const int cols = any_number(random);
  const int side = random.pick(0, 3);
  VerifyCorrectLineV_2(&line, L, rows, cols, side, wb);
  VerifyCorrectLineV_3(&line, L, rows, cols, side, wb);
  VerifyCorrectLineV_3_ORVA(&line, L, rows, cols, side, wb);
  VerifyCorrectLineH_0(&line, L, rows, cols, side, wb);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Random random(data, size);
  verify(random);
  Image image = hollow(random);
  Image second = hollow(random);
  const int scale = any_number(random);
  BITMAPPTR out{};
  const auto release = [&] {
    FUZZ_CHECK(FreeCardImg(reinterpret_cast<void**>(&out.pInfo)) == 1);
    out = {};
  };
  AutoClipRedundantImg(image.handle(), second.handle(), &out, scale);
  release();
  vantrel_auto_clip(image.handle(), second.handle(), &out, scale);
  release();
  MYRECT rect{};
  const bool is_card = image.header().biBitCount == 24 ? CutCard24(image.ptr(), rect) : CutCard(image.ptr(), rect);
  FUZZ_CHECK(AutoClipImg_Rect_ORVA(image.handle(), second.handle(), 0, 0, 0, 0, scale) == (is_card ? 1 : -1));
  BiLinear(image.handle(), &out);
  release();
  BiCubic(image.handle(), &out);
  release();
  ImageCopy(image.ptr(), &out);
  release();
  RectRegions regions{};
  CardSeg(image.ptr(), regions);
  int first = 0;
  int last = 0;
  ClipImg(image.ptr(), first, last);
  std::array<float, 8> corners{}, box{};
  AutoDetectCorner(image.ptr(), corners.data(), box.data());
  vantrel_corner_search search{};
  FUZZ_CHECK(vantrel_find_corners(image.ptr(), &search) == 0 || image.header().biBitCount == 8);
  return 0;
}
