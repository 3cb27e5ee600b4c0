/** The corner finders and the whole operation against the plain ones, over drawn scans. */
#include <gtest/gtest.h>

#include "autoclip/exports.h"
#include "reference/autoclip_finder.h"
#include "reference/autoclip_verdict.h"
#include "support/random.h"
#include "support/scans.h"
#include "support/tally.h"
#include "vantrel.h"

namespace {

using reference::autoclip::Judged;
using reference::autoclip::Search;
using reference::autoclip::Spots;
using reference::autoclip::Verdict;
using support::CardScan;
using support::Image;
using support::Picture;
using support::Random;
namespace tally = support::tally;

void expect_same(const Spots& expected, const float* actual, const char* what) {
  for (std::size_t i = 0; i < 4; ++i) {
    ASSERT_EQ(expected.at(i).x, actual[2 * i]) << what << " " << i;
    ASSERT_EQ(expected.at(i).y, actual[2 * i + 1]) << what << " " << i;
  }
}

void compare_finder(Image& image) {
  const Search expected = reference::autoclip::find_corners(Picture(image));
  vantrel_corner_search actual{};
  ASSERT_EQ(vantrel_find_corners(image.ptr(), &actual), expected.verdict == Verdict::kFound ? 1 : 0);
  ASSERT_EQ(static_cast<int>(actual.verdict), verdict_of(expected.verdict));
  for (std::size_t side = 0; side < 4; ++side) {
    ASSERT_EQ(actual.side[side].a, expected.lines.at(side).a) << "side " << side;
    ASSERT_EQ(actual.side[side].b, expected.lines.at(side).b) << "side " << side;
    ASSERT_EQ(actual.side[side].c, expected.lines.at(side).c) << "side " << side;
    ASSERT_EQ(actual.side[side].found, expected.found.at(side) ? 1 : 0) << "side " << side;
  }
  expect_same(expected.corners, actual.corners, "corner");
  expect_same(expected.box, actual.box, "box corner");

  std::array<float, 8> corners{};
  std::array<float, 8> box{};
  ASSERT_EQ(ClipNameCardRedundantImg(image.ptr(), corners.data(), box.data()),
            expected.verdict == Verdict::kFound ? 1 : 0);
  if (expected.verdict != Verdict::kFound) return;
  expect_same(expected.corners, corners.data(), "corner");
  expect_same(expected.box, box.data(), "box corner");
}

/** A tall scan with a second candidate in each of the two level bands: a rule, or a rim of light. */
CardScan scan_with_two_candidates(Random& random) {
  CardScan scan = support::random_scan_of(random, random.pick(50, 90), random.pick(180, 300));
  const int band = scan.rows / 8;
  for (const bool low : {true, false}) {
    const int thick = random.pick(1, 4);
    const int from_rim = random.chance(30) ? 0 : random.pick(0, band - thick);
    const int row = low ? from_rim : scan.rows - thick - from_rim;
    const int margin = from_rim == 0 ? 0 : random.pick(0, scan.cols / 5);
    const double level = random.chance(50) ? random.real(0, 60) : random.real(190, 255);
    scan.bars.push_back({row, margin, thick, scan.cols - 2 * margin, level});
  }
  return scan;
}

/** Most scans are squarish. On a wide one a border is one clear line, on a tall one a band has room for two. */
CardScan scan_of_any_shape(Random& random) {
  const int shape = random.pick(0, 99);
  if (shape < 15) return support::random_scan_of(random, random.pick(240, 360), random.pick(50, 80));
  if (shape < 45) return scan_with_two_candidates(random);
  return support::random_scan(random, 60, 130);
}

TEST(FinderReference, Cards) {
  Random random(81);
  tally::reset();
  for (int round = 0; round < 400; ++round) {
    Image image = support::draw(scan_of_any_shape(random), 8, random);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << image.width() << " x " << image.height());
    compare_finder(image);
    if (HasFatalFailure()) return;
  }
  for (const char* side : {"0", "1", "2", "3"}) {
    tally::expect(std::string("finder: side ") + side + " found", 60);
    tally::expect(std::string("finder: side ") + side + " defaulted", 60);
    tally::expect(std::string("darkness fails on side ") + side, 5);
  }
  for (const char* side : {"0", "1"}) {
    for (const char* branch : {"search gives 1", "search gives 2", "one clear line", "runner-up taken",
                               "strongest of two taken", "brightness passes", "brightness fails"}) {
      tally::expect(std::string(branch) + " on side " + side, 5);
    }
  }
  for (const char* branch : {"V0 side 0, first above: false", "V0 side 0, first below: false",
                             "V0 side 1, first below: false", "V0 side 1, first above: false"}) {
    tally::expect(branch, 2);
  }
  tally::expect("border flag on side 0", 2);
  tally::expect("border flag on side 1", 2);
  for (const char* branch :
       {"V2 clean: true", "V2 moderate: false", "V3 few cut: true", "H0 moderate: false", "H0 else: true",
        "runs: the first owner survives", "runs: the later owner survives", "finder: accepted", "intersect: both slope",
        "intersect: upright side", "intersect: level side"}) {
    tally::expect(branch, 5);
  }
}

/** Pure noise of all contrasts: many components, few lines; and images of a few pixels. */
TEST(FinderReference, NoiseAndTinyImages) {
  Random random(82);
  tally::reset();
  for (int round = 0; round < 1500; ++round) {
    const bool tiny = round % 10 != 0;
    Image image(random.pick(0, tiny ? 12 : 120), random.pick(0, tiny ? 12 : 120), 8);
    support::randomise(image, random);
    if (random.chance(20)) std::fill(image.ptr()->pBits, image.end(), 90);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << image.width() << " x " << image.height());
    compare_finder(image);
    if (HasFatalFailure()) return;
  }
  tally::expect("finder: no edges", 200);
  tally::expect("finder: accepted", 200);
}

/** Dots all over, each a component of its own: more than the pool holds. */
TEST(FinderReference, CrowdedScan) {
  Random random(83);
  tally::reset();
  for (int round = 0; round < 2; ++round) {
    Image image = support::draw(support::random_scan(random, 540, 560), 8, random);
    for (int row = 0; row < image.height(); row += 4) {
      for (int col = 0; col < image.width(); col += 4) image.at(row, col) = image.at(row, col) < 128 ? 255 : 0;
    }
    compare_finder(image);
    if (HasFatalFailure()) return;
  }
  tally::expect("runs: pool exhausted", 100);
}

/** A card whose borders lie in the narrow frame that the gradient search looks at. */
CardScan scan_with_narrow_frame(Random& random) {
  CardScan scan = support::random_scan(random, 60, 200);
  const auto x = [&] { return random.real(1, scan.cols / 20.0); };
  const auto y = [&] { return random.real(1, scan.rows / 13.0); };
  const double right = scan.cols - 2;
  const double high = scan.rows - 2;
  scan.card = {x(), y(), right - x(), y(), right - x(), high - y(), x(), high - y()};
  return scan;
}

TEST(FinderReference, GradientSearch) {
  Random random(84);
  tally::reset();
  for (int round = 0; round < 250; ++round) {
    const bool tiny = round % 8 == 0;
    Image image = support::draw(tiny ? support::random_scan(random, 1, 12) : scan_with_narrow_frame(random), 8, random);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << image.width() << " x " << image.height());
    const std::optional<Judged> expected = reference::autoclip::detect_by_gradient(Picture(image));
    std::array<float, 8> corners{};
    std::array<float, 8> box{};
    ASSERT_EQ(AutoDetectCorner(image.ptr(), corners.data(), box.data()), expected && expected->accepted);
    if (!expected) continue;
    expect_same(expected->corners, corners.data(), "corner");
    expect_same(expected->box, box.data(), "box corner");
    if (HasFatalFailure()) return;
  }
  for (const char* branch :
       {"gradient: no lines", "gradient: accepted", "gradient: rejected", "two lines: weaker first vertical"}) {
    tally::expect(branch, 10);
  }
}

/** A second scan of the same scene, `scale` times larger, now and then of another size or depth. */
Image second_scan(const CardScan& scan, int scale, int bits, Random& random) {
  if (random.chance(10)) bits = std::array<int, 3>{1, 8, 24}.at(random.bits() % 3);
  Image image(std::max(scan.cols * scale + (random.chance(20) ? random.pick(-9, 9) : 0), 1),
              std::max(scan.rows * scale + (random.chance(20) ? random.pick(-9, 9) : 0), 1), bits, 0, 23622);
  support::randomise(image, random);
  return image;
}

void compare_clip(Image& analysed, Image& cut, int scale) {
  const reference::autoclip::Clipped expected = reference::autoclip::clip(Picture(analysed), Picture(cut), scale);
  const std::vector<unsigned char> analysed_before = analysed.block();
  const std::vector<unsigned char> cut_before = cut.block();
  Image out;
  ASSERT_EQ(AutoClipRedundantImg(analysed.handle(), cut.handle(), out.ptr(), scale), expected.code);
  ASSERT_EQ(analysed.block(), analysed_before);
  ASSERT_EQ(cut.block(), cut_before);
  ASSERT_EQ(out.empty(), !expected.picture.has_value());
  if (out.empty()) return;
  ASSERT_EQ(support::difference(*expected.picture, Picture(out)), "");
}

TEST(FinderReference, WholeOperation) {
  Random random(85);
  tally::reset();
  for (int round = 0; round < 180; ++round) {
    const CardScan scan =
        random.chance(10) ? support::random_scan(random, 1, 12) : support::random_scan(random, 60, 110);
    const int bits = random.chance(60) ? 8 : 24;
    const int scale = random.chance(70) ? 1 : random.pick(2, 3);
    Image analysed = support::draw(scan, bits, random);
    Image cut = second_scan(scan, scale == 1 ? 1 : scale, bits, random);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << scan.cols << " x " << scan.rows << " x " << bits
                                    << ", scale " << scale);
    compare_clip(analysed, cut, scale);
    if (HasFatalFailure()) return;
  }
  for (const int bits : {1, 4, 32}) {
    for (int round = 0; round < 10; ++round) {
      Image analysed(random.pick(1, 40), random.pick(1, 40), bits);
      support::randomise(analysed, random);
      Image cut(random.pick(1, 40), random.pick(1, 40), bits);
      support::randomise(cut, random);
      compare_clip(analysed, cut, random.pick(1, 2));
      if (HasFatalFailure()) return;
    }
  }
  for (const char* branch :
       {"clip: bilevel copied", "clip: other depth", "clip: copied", "clip: differing depths", "clip: gray warped",
        "clip: colour warped", "sample: before the first pixel", "sample: behind the last pixel"}) {
    tally::expect(branch, 2);
  }
}

}  // namespace
