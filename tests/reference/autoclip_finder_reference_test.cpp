/** The corner finders and the whole operation against the plain ones, over drawn scans. */
#include <gtest/gtest.h>

#include "autoclip/corner_finder.h"
#include "reference/autoclip_finder.h"
#include "reference/drawing.h"
#include "reference/image_tally.h"
#include "vantrel.h"

namespace {

using reference::autoclip::Judged;
using reference::autoclip::Search;
using reference::autoclip::Spots;
using reference::autoclip::Verdict;
using reference::drawing::chance;
using reference::drawing::pick;
using reference::drawing::pick_real;
using reference::drawing::Sheet;
using reference::image::Picture;
using testing_images::Image;
using testing_images::Result;
namespace tally = reference::tally;

int verdict_of(Verdict verdict) {
  switch (verdict) {
    case Verdict::kFound:
      return VANTREL_CORNERS_FOUND;
    case Verdict::kTooSmall:
      return VANTREL_CORNERS_TOO_SMALL;
    case Verdict::kDegenerate:
      return VANTREL_LINES_DEGENERATE;
    default:
      return VANTREL_NO_EDGES;
  }
}

void expect_same(const Spots& expected, const float* actual, const char* what) {
  for (std::size_t i = 0; i < 4; ++i) {
    ASSERT_EQ(expected.at(i).x, actual[2 * i]) << what << " " << i;
    ASSERT_EQ(expected.at(i).y, actual[2 * i + 1]) << what << " " << i;
  }
}

void compare_finder(Image& image) {
  const Search expected = reference::autoclip::find_corners(reference::image::picture_of(*image.ptr()));
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
Sheet sheet_with_two_candidates(std::mt19937& random) {
  Sheet sheet = reference::drawing::random_sheet_of(random, pick(random, 50, 90), pick(random, 180, 300));
  const int band = sheet.rows / 8;
  for (const bool low : {true, false}) {
    const int thick = pick(random, 1, 4);
    const int from_rim = chance(random, 30) ? 0 : pick(random, 0, band - thick);
    const int row = low ? from_rim : sheet.rows - thick - from_rim;
    const int margin = from_rim == 0 ? 0 : pick(random, 0, sheet.cols / 5);
    const double level = chance(random, 50) ? pick_real(random, 0, 60) : pick_real(random, 190, 255);
    sheet.bars.push_back({row, margin, thick, sheet.cols - 2 * margin, level});
  }
  return sheet;
}

/** Most scans are squarish. On a wide one a border is one clear line, on a tall one a band has room for two. */
Sheet sheet_of_any_shape(std::mt19937& random) {
  const int shape = pick(random, 0, 99);
  if (shape < 15) return reference::drawing::random_sheet_of(random, pick(random, 240, 360), pick(random, 50, 80));
  if (shape < 45) return sheet_with_two_candidates(random);
  return reference::drawing::random_sheet(random, 60, 130);
}

TEST(FinderReference, Cards) {
  std::mt19937 random(81);
  tally::reset();
  for (int round = 0; round < 400; ++round) {
    Image image = reference::drawing::draw(sheet_of_any_shape(random), 8, random);
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
  std::mt19937 random(82);
  tally::reset();
  for (int round = 0; round < 1500; ++round) {
    const bool tiny = round % 10 != 0;
    Image image(pick(random, 0, tiny ? 12 : 120), pick(random, 0, tiny ? 12 : 120), 8);
    testing_images::randomise(image, random);
    if (chance(random, 20)) std::fill(image.ptr()->pBits, image.block().data() + image.block().size(), 90);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << image.width() << " x " << image.height());
    compare_finder(image);
    if (HasFatalFailure()) return;
  }
  tally::expect("finder: no edges", 200);
  tally::expect("finder: accepted", 200);
}

/** Dots all over, each a component of its own: more than the pool holds. */
TEST(FinderReference, CrowdedScan) {
  std::mt19937 random(83);
  tally::reset();
  for (int round = 0; round < 2; ++round) {
    Image image = reference::drawing::draw(reference::drawing::random_sheet(random, 540, 560), 8, random);
    for (int row = 0; row < image.height(); row += 4) {
      for (int col = 0; col < image.width(); col += 4) image.at(row, col) = image.at(row, col) < 128 ? 255 : 0;
    }
    compare_finder(image);
    if (HasFatalFailure()) return;
  }
  tally::expect("runs: pool exhausted", 100);
}

/** A card whose borders lie in the narrow frame that the gradient search looks at. */
Sheet sheet_with_narrow_frame(std::mt19937& random) {
  Sheet sheet = reference::drawing::random_sheet(random, 60, 200);
  const auto x = [&] { return pick_real(random, 1, sheet.cols / 20.0); };
  const auto y = [&] { return pick_real(random, 1, sheet.rows / 13.0); };
  const double right = sheet.cols - 2;
  const double high = sheet.rows - 2;
  sheet.card = {x(), y(), right - x(), y(), right - x(), high - y(), x(), high - y()};
  return sheet;
}

TEST(FinderReference, GradientSearch) {
  std::mt19937 random(84);
  tally::reset();
  for (int round = 0; round < 250; ++round) {
    const bool tiny = round % 8 == 0;
    Image image = reference::drawing::draw(
        tiny ? reference::drawing::random_sheet(random, 1, 12) : sheet_with_narrow_frame(random), 8, random);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << image.width() << " x " << image.height());
    const std::optional<Judged> expected =
        reference::autoclip::detect_by_gradient(reference::image::picture_of(*image.ptr()));
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
Image second_scan(const Sheet& sheet, int scale, int bits, std::mt19937& random) {
  if (chance(random, 10)) bits = std::array<int, 3>{1, 8, 24}.at(random() % 3);
  Image image(std::max(sheet.cols * scale + (chance(random, 20) ? pick(random, -9, 9) : 0), 1),
              std::max(sheet.rows * scale + (chance(random, 20) ? pick(random, -9, 9) : 0), 1), bits, 0, 23622);
  testing_images::randomise(image, random);
  return image;
}

void compare_clip(Image& analysed, Image& cut, int scale) {
  const reference::autoclip::Clipped expected = reference::autoclip::clip(
      reference::image::picture_of(*analysed.ptr()), reference::image::picture_of(*cut.ptr()), scale);
  const std::vector<unsigned char> analysed_before = analysed.block();
  const std::vector<unsigned char> cut_before = cut.block();
  Result out;
  ASSERT_EQ(AutoClipRedundantImg(analysed.handle(), cut.handle(), out.ptr(), scale), expected.code);
  ASSERT_EQ(analysed.block(), analysed_before);
  ASSERT_EQ(cut.block(), cut_before);
  ASSERT_EQ(out.empty(), !expected.picture.has_value());
  if (out.empty()) return;
  ASSERT_EQ(reference::image::difference(*expected.picture, reference::image::picture_of(*out.ptr())), "");
}

TEST(FinderReference, WholeOperation) {
  std::mt19937 random(85);
  tally::reset();
  for (int round = 0; round < 180; ++round) {
    const Sheet sheet = chance(random, 10) ? reference::drawing::random_sheet(random, 1, 12)
                                           : reference::drawing::random_sheet(random, 60, 110);
    const int bits = chance(random, 60) ? 8 : 24;
    const int scale = chance(random, 70) ? 1 : pick(random, 2, 3);
    Image analysed = reference::drawing::draw(sheet, bits, random);
    Image cut = second_scan(sheet, scale == 1 ? 1 : scale, bits, random);
    SCOPED_TRACE(testing::Message() << "round " << round << ": " << sheet.cols << " x " << sheet.rows << " x " << bits
                                    << ", scale " << scale);
    compare_clip(analysed, cut, scale);
    if (HasFatalFailure()) return;
  }
  for (const int bits : {1, 4, 32}) {
    for (int round = 0; round < 10; ++round) {
      Image analysed(pick(random, 1, 40), pick(random, 1, 40), bits);
      testing_images::randomise(analysed, random);
      Image cut(pick(random, 1, 40), pick(random, 1, 40), bits);
      testing_images::randomise(cut, random);
      compare_clip(analysed, cut, pick(random, 1, 2));
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
