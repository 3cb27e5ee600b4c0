// The entries of vantrel.h on images of all kinds, against the second implementation.
#include <algorithm>
#include <optional>
#include <vector>

#include "autoclip/exports.h"
#include "cardcut/exports.h"
#include "fuzz/check.h"
#include "fuzz/images.h"
#include "image/exports.h"
#include "reference/autoclip_finder.h"
#include "reference/cardcut_finders.h"
#include "reference/image_convert.h"
#include "reference/scale_resample.h"
#include "reference/segment_cards.h"
#include "scale/exports.h"
#include "segment/exports.h"
#include "support/picture.h"

namespace {

using fuzz::any_depth;
using fuzz::any_image;
using support::Image;
using support::Picture;
using support::Random;

bool is_any(const Image& image, std::initializer_list<int> depths) {
  return std::find(depths.begin(), depths.end(), image.header().biBitCount) != depths.end();
}

bool same(const Image& image, const Picture& picture) {
  return !image.empty() && support::difference(picture, Picture(image)).empty();
}

/** The image has pixels; the plain implementations are not asked about others. */
bool has_pixels(const Image& image) { return image.width() > 0 && image.height() > 0; }

void clip(Random& random) {
  const int depth = any_depth(random);
  Image analysed = any_image(random, depth);
  Image cut = any_image(random, random.one_in(4) ? any_depth(random) : depth);
  const int scale = random.one_in(2) ? 1 : random.pick(-3, 40);
  const std::vector<unsigned char> analysed_before = analysed.block();
  const std::vector<unsigned char> cut_before = cut.block();
  Image out;
  const int code = AutoClipRedundantImg(analysed.handle(), cut.handle(), out.ptr(), scale);
  FUZZ_CHECK(analysed.block() == analysed_before && cut.block() == cut_before);
  FUZZ_CHECK(out.empty() == (code == -1));
  Image named;
  FUZZ_CHECK(vantrel_auto_clip(analysed.handle(), cut.handle(), named.ptr(), scale) == code);
  FUZZ_CHECK(out.empty() || out.pixels() == named.pixels());
  if (!has_pixels(analysed) || !has_pixels(cut) || scale < 1) return;
  const reference::autoclip::Clipped expected = reference::autoclip::clip(Picture(analysed), Picture(cut), scale);
  FUZZ_CHECK(code == expected.code);
  FUZZ_CHECK(out.empty() || same(out, *expected.picture));
}

bool same_rect(const MYRECT& a, const MYRECT& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

void cut_card(Random& random) {
  Image image = any_image(random, any_depth(random));
  const bool by_colours = random.one_in(2);
  MYRECT rect{1, 2, 3, 4, 5};
  MYRECT expected = rect;
  const bool found = by_colours ? CutCard24(image.ptr(), rect) : CutCard(image.ptr(), rect);
  FUZZ_CHECK(rect.reserved == 5);
  if (!has_pixels(image)) return;
  const Picture picture(image);
  FUZZ_CHECK(found == (by_colours ? reference::cut_card24(picture, expected) : reference::cut_card(picture, expected)));
  FUZZ_CHECK(same_rect(rect, expected));
}

void cut_entries(Random& random) {
  const int depth = any_depth(random);
  Image image = any_image(random, depth);
  Image larger = any_image(random, random.one_in(4) ? any_depth(random) : depth);
  // Large factors make large crops, which are slow.
  const int scale = random.one_in(16) ? random.pick(-3, 40) : random.pick(-1, 3);
  Image out;
  const int code = AutoClipRedundantImg_ORVA(image.handle(), larger.handle(), out.ptr(), scale);
  FUZZ_CHECK(code == 1 || code == -1);
  const int found = AutoClipImg_Rect_ORVA(image.handle(), larger.handle(), 1, 2, 3, 4, scale);
  FUZZ_CHECK(found == 1 || (found == -1 && code == -1));
  MYRECT rect{};
  FUZZ_CHECK((found == 1) == (depth == 24 ? CutCard24(image.ptr(), rect) : CutCard(image.ptr(), rect)));
}

void enlarge(Random& random) {
  Image image = any_image(random, any_depth(random));
  const bool cubic = random.one_in(2);
  Image out;
  const int code = cubic ? BiCubic(image.handle(), out.ptr()) : BiLinear(image.handle(), out.ptr());
  FUZZ_CHECK(out.empty() == (code == -1));
  FUZZ_CHECK(code == (image.header().biBitCount == 1 ? 0 : is_any(image, {8, 24}) ? 1 : -1));
  if (code != 1 || !has_pixels(image)) return;
  reference::BilinearRules linear_rules;
  reference::BicubicRules cubic_rules;
  const Picture picture(image);
  FUZZ_CHECK(out.pixels() ==
             (cubic ? reference::bicubic(picture, cubic_rules) : reference::bilinear(picture, 2, linear_rules)));
}

void crop(Random& random) {
  Image image = any_image(random, any_depth(random));
  const auto bound = [&] {
    return static_cast<short>(random.one_in(8) ? static_cast<int>(random.bits() & 0xffff) : random.pick(-9, 70));
  };
  MYRECT rect{};
  for (short* member : {&rect.left, &rect.top, &rect.right, &rect.bottom}) *member = bound();
  // What cannot be small takes its time, and is found by the allocation tests.
  if (std::abs(rect.top - rect.bottom) > 300 || rect.right - rect.left > 300) return;
  Image out;
  const int code = CutRectImage(image.ptr(), out.ptr(), rect);
  if (!has_pixels(image)) return;
  const Picture picture(image);
  const reference::image::Crop expected = reference::image::crop(picture, rect);
  FUZZ_CHECK(code == expected.code);
  FUZZ_CHECK(out.empty() == !expected.picture.has_value());
  if (out.empty()) return;
  if (image.header().biBitCount != 1 || reference::image::inside(picture, rect))
    FUZZ_CHECK(same(out, *expected.picture));
}

void segment(Random& random) {
  constexpr std::array kDepths = {1, 8, 24, 32};
  Image sheet = any_image(random, kDepths[random.bits() % kDepths.size()]);
  if (random.one_in(2)) sheet.header().biXPelsPerMeter = sheet.header().biYPelsPerMeter = random.pick(9700, 16000);
  RectRegions regions{};
  const int code = CardSeg(sheet.ptr(), regions);
  FUZZ_CHECK(code == 1 || code == -1 || code == -2 || code == -3);
  if (!has_pixels(sheet) || sheet.header().biXPelsPerMeter > 100000 || sheet.header().biYPelsPerMeter > 100000) return;
  RectRegions expected{};
  const BITMAPINFOHEADER& header = sheet.header();
  FUZZ_CHECK(code == reference::card_seg(Picture(sheet), header.biXPelsPerMeter, header.biYPelsPerMeter, expected));
  FUZZ_CHECK(regions.firstCount == expected.firstCount && regions.secondCount == expected.secondCount);
  for (int i = 0; i < 5; ++i) {
    FUZZ_CHECK(same_rect(regions.firstColumn[i], expected.firstColumn[i]));
    FUZZ_CHECK(same_rect(regions.secondColumn[i], expected.secondColumn[i]));
  }
}

void gray(Random& random) {
  Image image = any_image(random, 24);
  Image out;
  FUZZ_CHECK(Color2Gray(image.ptr(), out.ptr()));
  FUZZ_CHECK(!Color2Gray(image.ptr(), out.ptr()));
  if (has_pixels(image)) FUZZ_CHECK(same(out, reference::image::gray_of(Picture(image))));
}

void edge_clip(Random& random) {
  Image image = any_image(random, any_depth(random));
  int first = -7;
  int second = -8;
  const bool done = ClipImg(image.ptr(), first, second);
  FUZZ_CHECK(done == (image.header().biBitCount == 8));
  if (!done) {
    FUZZ_CHECK(first == -7 && second == -8);
    return;
  }
  FUZZ_CHECK(first >= 0 && first <= image.height() / 8 && second < std::max(image.height(), 1));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Random random(data, size);
  switch (random.pick(0, 8)) {
    case 0:
    case 1:
      clip(random);
      break;
    case 2:
      cut_card(random);
      break;
    case 3:
      cut_entries(random);
      break;
    case 4:
      enlarge(random);
      break;
    case 5:
      crop(random);
      break;
    case 6:
      segment(random);
      break;
    case 7:
      gray(random);
      break;
    default:
      edge_clip(random);
      break;
  }
  return 0;
}
