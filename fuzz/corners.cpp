// The corner searches on gray images, against the second implementation.
#include <array>
#include <optional>

#include "autoclip/exports.h"
#include "fuzz/check.h"
#include "fuzz/images.h"
#include "reference/autoclip_finder.h"
#include "reference/autoclip_verdict.h"
#include "support/picture.h"

namespace {

using reference::autoclip::Spots;
using reference::autoclip::Verdict;
using support::Image;
using support::Picture;
using support::Random;

bool same(const Spots& expected, const float* actual) {
  for (std::size_t i = 0; i < 4; ++i) {
    if (expected.at(i).x != actual[2 * i] || expected.at(i).y != actual[2 * i + 1]) return false;
  }
  return true;
}

void by_borders(Image& image) {
  const reference::autoclip::Search expected = reference::autoclip::find_corners(Picture(image));
  vantrel_corner_search actual{};
  FUZZ_CHECK(vantrel_find_corners(image.ptr(), &actual) == (expected.verdict == Verdict::kFound ? 1 : 0));
  FUZZ_CHECK(static_cast<int>(actual.verdict) == verdict_of(expected.verdict));
  for (std::size_t side = 0; side < 4; ++side) {
    FUZZ_CHECK(actual.side[side].a == expected.lines.at(side).a);
    FUZZ_CHECK(actual.side[side].b == expected.lines.at(side).b);
    FUZZ_CHECK(actual.side[side].c == expected.lines.at(side).c);
    FUZZ_CHECK(actual.side[side].found == (expected.found.at(side) ? 1 : 0));
  }
  FUZZ_CHECK(same(expected.corners, actual.corners));
  FUZZ_CHECK(same(expected.box, actual.box));
  std::array<float, 8> corners{}, box{};
  FUZZ_CHECK(ClipNameCardRedundantImg(image.ptr(), corners.data(), box.data()) ==
             (expected.verdict == Verdict::kFound ? 1 : 0));
}

void by_gradient(Image& image) {
  const std::optional<reference::autoclip::Judged> expected = reference::autoclip::detect_by_gradient(Picture(image));
  std::array<float, 8> corners{}, box{};
  FUZZ_CHECK(AutoDetectCorner(image.ptr(), corners.data(), box.data()) == (expected && expected->accepted));
  if (!expected) return;
  FUZZ_CHECK(same(expected->corners, corners.data()));
  FUZZ_CHECK(same(expected->box, box.data()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Random random(data, size);
  const bool gradient = random.one_in(3);
  Image image = fuzz::any_image(random, 8);
  if (image.width() == 0 || image.height() == 0) return 0;
  gradient ? by_gradient(image) : by_borders(image);
  return 0;
}
