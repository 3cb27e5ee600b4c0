// Quadrilaterals, and what is cut out along them.
#include <gtest/gtest.h>

#include "cards/pictures.h"
#include "support/numbers.h"

namespace {

using pictures::Colour;
using pictures::Memory;
using pictures::Picture;
using pictures::Rows;
using pictures::upright;
using support::kInfinite;
using support::kNoNumber;

TEST(CardsQuad, ScalesEveryCorner) {
  vantrel_quad quad = {{1, 2}, {9, 3}, {8, 7.5}, {-1, 6}};
  ASSERT_EQ(vantrel_quad_scale(&quad, 2.5, &quad), VANTREL_OK);
  EXPECT_EQ(pictures::coordinates(quad), (std::array<double, 8>{2.5, 5, 22.5, 7.5, 20, 18.75, -2.5, 15}));
}

TEST(CardsQuad, IsNotScaledToNothing) {
  const vantrel_quad quad = upright(0, 0, 10, 10);
  vantrel_quad result = upright(1, 2, 3, 4);
  EXPECT_EQ(vantrel_quad_scale(nullptr, 1, &result), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_quad_scale(&quad, 1, nullptr), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_quad_scale(&quad, 0, &result), VANTREL_ERROR_OPTION);
  EXPECT_EQ(vantrel_quad_scale(&quad, -1, &result), VANTREL_ERROR_OPTION);
  EXPECT_EQ(vantrel_quad_scale(&quad, kNoNumber, &result), VANTREL_ERROR_OPTION);
  EXPECT_EQ(vantrel_quad_scale(&quad, kInfinite, &result), VANTREL_ERROR_GEOMETRY);
  EXPECT_EQ(vantrel_quad_scale(&quad, 1e38, &result), VANTREL_ERROR_GEOMETRY);
  const vantrel_quad endless = upright(0, 0, kInfinite, 10);
  EXPECT_EQ(vantrel_quad_scale(&endless, 1, &result), VANTREL_ERROR_GEOMETRY);
  EXPECT_EQ(pictures::coordinates(result), (std::array<double, 8>{1, 2, 3, 2, 3, 4, 1, 4}));
}

/** Width and height, or minus the status. */
std::array<int, 2> cut_size(const vantrel_quad& quad, double margin) {
  std::int32_t width = -77, height = -77;
  const vantrel_status status = vantrel_cut_size(&quad, margin, &width, &height);
  if (status == VANTREL_OK) return {width, height};
  EXPECT_EQ(width, -77);
  EXPECT_EQ(height, -77);
  return {-status, -status};
}

TEST(CardsCutSize, IsTheRoundedMeanOfOppositeEdges) {
  EXPECT_EQ(cut_size(upright(10, 20, 110, 70), 0), (std::array{100, 50}));
  EXPECT_EQ(cut_size(upright(10, 20, 110.4, 70.5), 0), (std::array{100, 51}));
  EXPECT_EQ(cut_size({{0, 0}, {100, 0}, {103, 40}, {0, 44}}, 0), (std::array{102, 42}));
  // edges of 50 and 10, turned by the angle of a 3-4-5 triangle
  EXPECT_EQ(cut_size({{8, 0}, {48, 30}, {42, 38}, {2, 8}}, 0), (std::array{50, 10}));
}

TEST(CardsCutSize, GrowsByPositiveMargins) {
  const vantrel_quad quad = upright(10, 20, 110, 70);
  EXPECT_EQ(cut_size(quad, VANTREL_MARGIN_TIGHT), (std::array{100, 50}));
  EXPECT_EQ(cut_size(quad, -20), (std::array{100, 50}));
  EXPECT_EQ(cut_size(quad, 10), (std::array{120, 70}));
  EXPECT_EQ(cut_size(quad, 2.5), (std::array{105, 55}));
  EXPECT_EQ(cut_size(quad, 2.6), (std::array{106, 56}));
  EXPECT_EQ(cut_size(quad, VANTREL_MARGIN_MOST), (std::array{20100, 20050}));
}

TEST(CardsCutSize, RefusesWhatEnclosesNothing) {
  constexpr std::array kGeometry = {-VANTREL_ERROR_GEOMETRY, -VANTREL_ERROR_GEOMETRY};
  EXPECT_EQ(cut_size(upright(10, 20, 10.4, 70), 0), kGeometry);
  EXPECT_EQ(cut_size(upright(10, 20, 110, 20.4), 0), kGeometry);
  EXPECT_EQ(cut_size(upright(10, 20, 10.5, 20.5), 0), (std::array{1, 1}));
  // all on one line, and crossed in the middle
  EXPECT_EQ(cut_size({{0, 0}, {100, 100}, {150, 150}, {50, 50}}, 0), kGeometry);
  EXPECT_EQ(cut_size({{0, 0}, {100, 50}, {100, 0}, {0, 50}}, 0), kGeometry);
  EXPECT_EQ(cut_size(upright(kNoNumber, 0, 10, 10), 0), kGeometry);
  EXPECT_EQ(cut_size(upright(0, 0, 10, kInfinite), 0), kGeometry);
  EXPECT_EQ(cut_size(upright(0, 0, 1e39, 10), 0), kGeometry);
}

TEST(CardsCutSize, RefusesEveryCoordinateThatIsTooFar) {
  for (std::size_t place = 0; place < 8; ++place) {
    for (const double far : {1e39, -1e39, kInfinite, -kInfinite, kNoNumber}) {
      std::array<double, 8> at = {10, 20, 110, 20, 110, 70, 10, 70};
      at.at(place) = far;
      const vantrel_quad quad = {{at[0], at[1]}, {at[2], at[3]}, {at[4], at[5]}, {at[6], at[7]}};
      EXPECT_EQ(cut_size(quad, 0), (std::array{-VANTREL_ERROR_GEOMETRY, -VANTREL_ERROR_GEOMETRY})) << place;
    }
  }
}

TEST(CardsCutSize, RefusesMarginsAndSizesThatThereAreNot) {
  constexpr std::array kOption = {-VANTREL_ERROR_OPTION, -VANTREL_ERROR_OPTION};
  constexpr std::array kSize = {-VANTREL_ERROR_SIZE, -VANTREL_ERROR_SIZE};
  const vantrel_quad quad = upright(10, 20, 110, 70);
  for (const double margin : {10000.1, -10000.1, kInfinite, kNoNumber}) EXPECT_EQ(cut_size(quad, margin), kOption);
  EXPECT_EQ(cut_size(upright(0, 0, 3e9, 10), 0), kSize);
  EXPECT_EQ(cut_size(upright(0, 0, 10, 3e38), 0), kSize);
  std::int32_t size = 0;
  EXPECT_EQ(vantrel_cut_size(nullptr, 0, &size, &size), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_cut_size(&quad, 0, nullptr, &size), VANTREL_ERROR_NULL);
  EXPECT_EQ(vantrel_cut_size(&quad, 0, &size, nullptr), VANTREL_ERROR_NULL);
}

/** Blue is ten times the column, green ten times the row. */
Memory ramps(int width, int height, vantrel_format format, Rows rows = Rows::kFromTop) {
  Memory memory(width, height, format, rows, 3);
  return memory.draw([](int x, int y) { return Colour{10 * x, 10 * y, 90, 120}; });
}

std::vector<int> cut(const Memory& memory, const vantrel_quad& corners, double margin, int width = 0, int height = 0) {
  const vantrel_image image = memory.image();
  Picture picture;
  picture.width = width;
  picture.height = height;
  EXPECT_EQ(vantrel_cut(&image, &corners, margin, &picture), VANTREL_OK);
  EXPECT_EQ(picture.format, image.format);
  return picture.bytes();
}

TEST(CardsCut, LaysCornersOnTheCornersOfTheTarget) {
  for (const Rows rows : {Rows::kFromTop, Rows::kFromBottom}) {
    EXPECT_EQ(cut(ramps(8, 8, VANTREL_FORMAT_BGR, rows), upright(2, 3, 5, 5), 0),
              (std::vector<int>{20, 30, 90, 30, 30, 90, 40, 30, 90, 20, 40, 90, 30, 40, 90, 40, 40, 90}));
    EXPECT_EQ(cut(ramps(8, 8, VANTREL_FORMAT_GRAY, rows), upright(2, 3, 5, 5), 0),
              (std::vector<int>{30, 30, 30, 40, 40, 40}));
    EXPECT_EQ(cut(ramps(8, 8, VANTREL_FORMAT_RGBA, rows), upright(2, 3, 4, 4), 0),
              (std::vector<int>{90, 30, 20, 120, 90, 30, 30, 120}));
    EXPECT_EQ(cut(ramps(8, 8, VANTREL_FORMAT_RGB, rows), upright(2, 3, 4, 4), 0),
              (std::vector<int>{90, 30, 20, 90, 30, 30}));
    EXPECT_EQ(cut(ramps(8, 8, VANTREL_FORMAT_BGRA, rows), upright(2, 3, 4, 4), 0),
              (std::vector<int>{20, 30, 90, 120, 30, 30, 90, 120}));
  }
}

TEST(CardsCut, ShowsTheMarginAroundTheCorners) {
  EXPECT_EQ(cut(ramps(8, 8, VANTREL_FORMAT_GRAY), upright(2, 3, 4, 4), 1),
            (std::vector<int>{20, 20, 20, 20, 30, 30, 30, 30, 40, 40, 40, 40}));
  // Half a pixel of the target lies outside on either side: the four pixels of the scan would fill four of it.
  EXPECT_EQ(cut(ramps(16, 8, VANTREL_FORMAT_GRAY), upright(2, 2, 3, 6), -0.5, 1, 3), (std::vector<int>{25, 35, 45}));
}

TEST(CardsCut, SamplesBetweenPixels) {
  EXPECT_EQ(cut(ramps(8, 8, VANTREL_FORMAT_GRAY), upright(2, 2.5, 3, 4.5), 0), (std::vector<int>{25, 35}));
  EXPECT_EQ(cut(ramps(8, 8, VANTREL_FORMAT_GRAY), upright(2, 3, 4, 5), 0, 1, 4), (std::vector<int>{28, 33, 38, 43}));
}

TEST(CardsCut, TurnsAndMirrorsAsTheCornersSay) {
  const Memory memory = ramps(8, 8, VANTREL_FORMAT_GRAY);
  // the upper left corner of the target is the lower left one of the scan, and so round
  EXPECT_EQ(cut(memory, {{2, 5}, {2, 3}, {5, 3}, {5, 5}}, 0), (std::vector<int>{40, 30, 40, 30, 40, 30}));
  EXPECT_EQ(cut(memory, {{2, 5}, {4, 5}, {4, 3}, {2, 3}}, 0), (std::vector<int>{40, 40, 30, 30}));
}

TEST(CardsCut, RepeatsPixelsBeyondTheScan) {
  EXPECT_EQ(cut(ramps(3, 3, VANTREL_FORMAT_GRAY), upright(0, -2, 1, 5), 0),
            (std::vector<int>{0, 0, 0, 10, 20, 20, 20}));
}

TEST(CardsCut, RepeatsTheOutermostHalfPixelToo) {
  const auto gray = [](int level) { return Colour{level, level, level, 0}; };
  // Before the middle of the first pixel the cut is black as that is, not what the step to white would lead to.
  for (const Rows rows : {Rows::kFromTop, Rows::kFromBottom}) {
    Memory across(2, 1, VANTREL_FORMAT_GRAY, rows, 3);
    across.draw([&](int x, int) { return gray(x == 0 ? 0 : 255); });
    EXPECT_EQ(cut(across, upright(0, 0, 2, 1), 0, 8, 1), (std::vector<int>{0, 0, 32, 96, 159, 223, 255, 255}));
    EXPECT_EQ(cut(across, upright(-0.5, 0, 0.5, 1), 0, 2, 1), (std::vector<int>{0, 0}));
    Memory down(1, 2, VANTREL_FORMAT_GRAY, rows, 3);
    down.draw([&](int, int y) { return gray(y == 0 ? 255 : 0); });
    EXPECT_EQ(cut(down, upright(0, 0, 1, 2), 0, 1, 8), (std::vector<int>{255, 255, 223, 159, 96, 32, 0, 0}));
  }
}

TEST(CardsCut, IsTheSameFromAPartOfAScan) {
  const Memory memory = ramps(12, 12, VANTREL_FORMAT_BGR, Rows::kFromBottom);
  vantrel_image part = memory.image();
  part.data = static_cast<const unsigned char*>(part.data) + 2 * part.stride + 3 * 3;
  part.width = 7;
  part.height = 8;
  const vantrel_quad inner = {{1, 1}, {5, 2}, {5, 6}, {1, 5}};
  Picture picture;
  ASSERT_EQ(vantrel_cut(&part, &inner, 0, &picture), VANTREL_OK);
  EXPECT_EQ(picture.bytes(), cut(memory, {{4, 3}, {8, 4}, {8, 8}, {4, 7}}, 0));
}

TEST(CardsCut, RefusesWhatItDoesNotTake) {
  Memory memory = ramps(8, 8, VANTREL_FORMAT_GRAY);
  const vantrel_image image = memory.image();
  const vantrel_quad quad = upright(2, 2, 6, 6);
  const auto status = [&](const vantrel_quad* corners, double margin, int width, int height, int format = 0) {
    Picture picture;
    picture.width = width;
    picture.height = height;
    picture.format = pictures::number<vantrel_format>(format);
    const vantrel_status result = vantrel_cut(&image, corners, margin, &picture);
    EXPECT_EQ(result == VANTREL_OK, picture.data != nullptr);
    return result;
  };
  EXPECT_EQ(status(nullptr, 0, 0, 0), VANTREL_ERROR_NULL);
  EXPECT_EQ(status(&quad, 10001, 0, 0), VANTREL_ERROR_OPTION);
  EXPECT_EQ(status(&quad, kNoNumber, 0, 0), VANTREL_ERROR_OPTION);
  EXPECT_EQ(status(&quad, 0, 0, 0, VANTREL_FORMAT_BGR), VANTREL_ERROR_TARGET);
  // nothing is left between the margins
  EXPECT_EQ(status(&quad, 5, 10, 20), VANTREL_ERROR_TARGET);
  EXPECT_EQ(status(&quad, 5, 20, 10), VANTREL_ERROR_TARGET);
  EXPECT_EQ(status(&quad, 5, 11, 11), VANTREL_OK);
  const vantrel_quad flat = upright(2, 2, 6, 2);
  EXPECT_EQ(status(&flat, 0, 5, 5), VANTREL_ERROR_GEOMETRY);
  const vantrel_quad wide = upright(-2e9, 2, 2e9, 6);
  EXPECT_EQ(status(&wide, 0, 0, 0), VANTREL_ERROR_SIZE);
  EXPECT_EQ(status(&wide, 0, 3, 3), VANTREL_OK);
  const Memory bits(8, 8, VANTREL_FORMAT_BILEVEL);
  const vantrel_image bilevel = bits.image();
  Picture picture;
  EXPECT_EQ(vantrel_cut(&bilevel, &quad, 0, &picture), VANTREL_ERROR_FORMAT);
}

}  // namespace
