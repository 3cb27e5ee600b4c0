// The corners of drawn cards.
#include <gtest/gtest.h>

#include <array>

#include "autoclip/exports.h"
#include "support/scans.h"

namespace {

using support::Corners;
using support::Image;
using support::scan_of;
using support::turned_card;

struct Found {
  int accepted;
  std::array<float, 8> corners;
  std::array<float, 8> box;
};

Found find(Image& gray) {
  Found found{};
  found.accepted = ClipNameCardRedundantImg(gray.ptr(), found.corners.data(), found.box.data());
  return found;
}

/** The four corners of the frame when every side has its default line. */
std::array<float, 8> frame(int rows, int cols) {
  const float right = static_cast<float>(cols) - 1.5f, bottom = static_cast<float>(rows) - 1.5f;
  return {0.5f, 1.5f, right, 1.5f, 0.5f, bottom, right, bottom};
}

void expect_near(const std::array<float, 8>& found, const Corners& card, double tolerance) {
  for (std::size_t i = 0; i < 8; ++i) EXPECT_NEAR(static_cast<double>(found[i]), card[i], tolerance) << "value " << i;
}

TEST(ClipNameCard, TakesTheFrameWhenNoSideHasALine) {
  for (const auto& [rows, cols] : {std::pair{300, 400}, std::pair{301, 403}, std::pair{97, 61}}) {
    Image speck(cols, rows, 8, 0);
    speck.at(5, 5) = 255;
    const Found found = find(speck);
    EXPECT_EQ(found.accepted, 1);
    EXPECT_EQ(found.corners, frame(rows, cols));
    const float right = static_cast<float>(cols - 2), bottom = static_cast<float>(rows - 2);
    EXPECT_EQ(found.box, (std::array<float, 8>{0, 1, right, 1, 0, bottom, right, bottom}));
  }
}

TEST(ClipNameCard, FindsNothingOnABlankPage) {
  for (const int level : {0, 46, 180, 181, 255}) {
    Image blank(400, 300, 8, static_cast<unsigned char>(level));
    EXPECT_EQ(find(blank).accepted, 0);
  }
}

TEST(ClipNameCard, FindsNothingBehindTheBands) {
  // a speck in the interior, where nothing is computed
  Image speck(400, 300, 8, 0);
  speck.at(150, 200) = 255;
  EXPECT_EQ(find(speck).accepted, 0);
}

TEST(ClipNameCard, FindsAnUprightCard) {
  const Corners card{30, 20, 370, 20, 30, 280, 370, 280};
  Image scan = scan_of(card, 400, 300);
  const Found found = find(scan);
  ASSERT_EQ(found.accepted, 1);
  expect_near(found.corners, card, 1.0);
  // borders between two rows of edge pixels or two columns of them: half a pixel away
  for (const float value : found.corners) EXPECT_EQ(value - std::floor(value), 0.5f);
}

TEST(ClipNameCard, FindsTurnedCards) {
  for (const double degrees : {-6.0, -4.0, -3.0, -1.0, 0.0, 1.0, 2.0, 4.0, 6.0}) {
    const Corners card = turned_card(400, 300, 680, 480, degrees);
    Image scan = scan_of(card, 800, 600);
    const Found found = find(scan);
    ASSERT_EQ(found.accepted, 1) << degrees;
    SCOPED_TRACE(degrees);
    expect_near(found.corners, card, 4.0);
  }
}

TEST(ClipNameCard, FindsACardInPerspective) {
  const Corners card{60, 40, 745, 60, 40, 560, 765, 550};
  Image scan = scan_of(card, 800, 600);
  const Found found = find(scan);
  ASSERT_EQ(found.accepted, 1);
  expect_near(found.corners, card, 4.0);
}

TEST(ClipNameCard, ReadsWidthsThatNeedPadding) {
  for (const int cols : {797, 798, 799}) {
    const Corners card = turned_card(400, 300, 680, 480, 2);
    Image scan = scan_of(card, cols, 600);
    for (int r = 0; r < 600; ++r) {  // bright padding must not be seen
      for (int c = cols; c < scan.stride(); ++c) scan.at(r, c) = 255;
    }
    const Found found = find(scan);
    ASSERT_EQ(found.accepted, 1);
    expect_near(found.corners, card, 3.0);
  }
}

TEST(ClipNameCard, SubstitutesTheFrameWhereTheCardLeavesTheScan) {
  // the card crosses the left edge of the image
  const Corners card{-50, 20, 370, 20, -50, 280, 370, 280};
  Image scan = scan_of(card, 400, 300);
  const Found found = find(scan);
  ASSERT_EQ(found.accepted, 1);
  expect_near(found.corners, {0.5, 20, 370, 20, 0.5, 280, 370, 280}, 1.0);
  EXPECT_EQ(found.corners[0], 0.5f);
  EXPECT_EQ(found.corners[4], 0.5f);
}

TEST(ClipNameCard, LeavesTheImageAlone) {
  Image scan = scan_of(turned_card(400, 300, 680, 480, 2), 800, 600);
  const std::vector<unsigned char> before = scan.block();
  find(scan);
  EXPECT_EQ(scan.block(), before);
}

TEST(ClipNameCard, HasAnEmptyLeftBandBelowFiveColumns) {
  Image narrow(4, 100, 8, 0);
  for (int r = 0; r < 100; ++r) narrow.at(r, 2) = narrow.at(r, 3) = 255;  // an upright edge in column 1
  const Found found = find(narrow);
  EXPECT_EQ(found.accepted, 1);
  EXPECT_EQ(found.corners[0], 0.5f);
  EXPECT_EQ(found.corners[4], 0.5f);
}

TEST(ClipNameCard, AcceptsImagesOfAnySize) {
  for (const int rows : {0, 1, 2, 3, 4, 5, 7, 8, 9, 16}) {
    for (const int cols : {0, 1, 2, 3, 4, 5, 7, 8, 9, 16}) {
      Image checked(cols, rows, 8);
      for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < checked.stride(); ++c) checked.at(r, c) = (r / 2 + c / 2) % 2 == 0 ? 0 : 255;
      }
      const Found found = find(checked);
      if (rows < 4 || cols < 4) {
        EXPECT_EQ(found.accepted, 0) << rows << " x " << cols;  // no pixel is looked at
      }
    }
  }
}

TEST(ClipNameCard, RefusesSidesAbove32767) {
  for (const bool tall : {true, false}) {
    Image longest(tall ? 4 : 32767, tall ? 32767 : 4, 8, 0);
    longest.at(2, 2) = 255;
    EXPECT_EQ(find(longest).accepted, 1);
    Image too_long(tall ? 4 : 32768, tall ? 32768 : 4, 8, 0);
    too_long.at(2, 2) = 255;
    EXPECT_EQ(find(too_long).accepted, 0);
    Image wrapping(tall ? 4 : 65540, tall ? 65540 : 4, 8, 0);
    wrapping.at(2, 2) = 255;
    EXPECT_EQ(find(wrapping).accepted, 0);
  }
}

TEST(ClipNameCard, RefusesNegativeSizes) {
  const struct {
    int width, height;
  } cases[] = {{-1, 8}, {8, -1}, {-8, -8}, {-2147483647 - 1, 8}, {8, -2147483647 - 1}};
  for (const auto& c : cases) {
    Image image(8, 8, 8, 0);
    image.header().biWidth = c.width;
    image.header().biHeight = c.height;
    EXPECT_EQ(find(image).accepted, 0);
  }
}

}  // namespace
