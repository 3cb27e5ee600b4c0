// The record of the corner search, held against its plain form.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "autoclip/exports.h"
#include "support/scans.h"

namespace {

using support::Corners;
using support::Image;
using support::scan_of;
using support::turned_card;

/** A record in which every byte was something else before. */
vantrel_corner_search search(const BITMAPPTR& gray, int expected) {
  vantrel_corner_search result;
  std::memset(&result, 0x5A, sizeof result);
  EXPECT_EQ(vantrel_find_corners(&gray, &result), expected);
  EXPECT_EQ(result.verdict == VANTREL_CORNERS_FOUND, expected == 1);
  return result;
}

void expect_no_lines(const vantrel_corner_search& result) {
  for (const vantrel_border& side : result.side) {
    EXPECT_EQ(side.a, 0.0);
    EXPECT_EQ(side.b, 0.0);
    EXPECT_EQ(side.c, 0.0);
    EXPECT_EQ(side.found, 0);
  }
  for (const float value : result.corners) EXPECT_EQ(value, 0.0f);
  for (const float value : result.box) EXPECT_EQ(value, 0.0f);
}

void expect_line(const vantrel_border& side, double a, double b, double c, int found) {
  EXPECT_EQ(side.a, a);
  EXPECT_EQ(side.b, b);
  EXPECT_EQ(side.c, c);
  EXPECT_EQ(side.found, found);
}

TEST(FindCorners, AgreesWithThePlainSearch) {
  const Corners cards[] = {turned_card(400, 300, 680, 480, 0),  turned_card(400, 300, 680, 480, -5),
                           turned_card(400, 300, 680, 480, 3),  turned_card(380, 310, 660, 500, 1.5),
                           turned_card(300, 300, 680, 480, 2),  turned_card(400, 200, 680, 480, 2),
                           turned_card(400, 300, 200, 100, 10), {60, 40, 745, 60, 40, 560, 765, 550}};
  for (const Corners& card : cards) {
    Image scan = scan_of(card, 800, 600);
    std::array<float, 8> corners{}, box{};
    const int accepted = ClipNameCardRedundantImg(scan.ptr(), corners.data(), box.data());
    const vantrel_corner_search result = search(*scan.ptr(), accepted);
    if (accepted == 0) continue;
    for (std::size_t i = 0; i < 8; ++i) {
      EXPECT_EQ(result.corners[i], corners[i]);
      EXPECT_EQ(result.box[i], box[i]);
    }
  }
}

TEST(FindCorners, TellsTheFourLinesOfACard) {
  Image scan = scan_of({30, 20, 370, 20, 30, 280, 370, 280}, 400, 300);
  const vantrel_corner_search result = search(*scan.ptr(), 1);
  // borders lie between memory rows 19 and 20, 279 and 280, and between columns 29 and 30, 369 and 370
  const struct { double a, b, before; } expected[4] = {{0, 1, 279}, {0, 1, 19}, {1, 0, 29}, {1, 0, 369}};
  for (std::size_t side = 0; side < 4; ++side) {
    EXPECT_EQ(result.side[side].found, 1);
    EXPECT_EQ(result.side[side].a, expected[side].a);
    EXPECT_EQ(result.side[side].b, expected[side].b);
    EXPECT_GE(result.side[side].c, expected[side].before);
    EXPECT_LE(result.side[side].c, expected[side].before + 1);
  }
  // the corners are the lines' intersections
  EXPECT_EQ(result.corners[0], static_cast<float>(result.side[2].c) + 0.5f);
  EXPECT_EQ(result.corners[1], 300 - (static_cast<float>(result.side[0].c) + 0.5f));
  EXPECT_EQ(result.corners[6], static_cast<float>(result.side[3].c) + 0.5f);
  EXPECT_EQ(result.corners[7], 300 - (static_cast<float>(result.side[1].c) + 0.5f));
}

TEST(FindCorners, TellsFoundFromDefaultedSides) {
  const struct {
    Corners card;
    std::array<int, 4> found;
  } cases[] = {{{-50, 20, 370, 20, -50, 280, 370, 280}, {1, 1, 0, 1}},
               {{30, 20, 450, 20, 30, 280, 450, 280}, {1, 1, 1, 0}},
               {{30, -50, 370, -50, 30, 280, 370, 280}, {0, 1, 1, 1}},
               {{30, 20, 370, 20, 30, 350, 370, 350}, {1, 0, 1, 1}}};
  for (const auto& c : cases) {
    Image scan = scan_of(c.card, 400, 300);
    const vantrel_corner_search result = search(*scan.ptr(), 1);
    for (std::size_t side = 0; side < 4; ++side) EXPECT_EQ(result.side[side].found, c.found[side]) << side;
    if (c.found[0] == 0) expect_line(result.side[0], 0, 1, 298, 0);
    if (c.found[1] == 0) expect_line(result.side[1], 0, 1, 1, 0);
    if (c.found[2] == 0) expect_line(result.side[2], 1, 0, 0, 0);
    if (c.found[3] == 0) expect_line(result.side[3], 1, 0, 398, 0);
  }
}

TEST(FindCorners, AcceptsTheFrameWhenNothingWasFound) {
  Image speck(400, 300, 8, 0);
  speck.at(5, 5) = 255;
  const vantrel_corner_search result = search(*speck.ptr(), 1);
  EXPECT_EQ(result.verdict, VANTREL_CORNERS_FOUND);
  expect_line(result.side[0], 0, 1, 298, 0);
  expect_line(result.side[1], 0, 1, 1, 0);
  expect_line(result.side[2], 1, 0, 0, 0);
  expect_line(result.side[3], 1, 0, 398, 0);
  const float corners[8] = {0.5f, 1.5f, 398.5f, 1.5f, 0.5f, 298.5f, 398.5f, 298.5f};
  const float box[8] = {0, 1, 398, 1, 0, 298, 398, 298};
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(result.corners[i], corners[i]);
    EXPECT_EQ(result.box[i], box[i]);
  }
}

TEST(FindCorners, SaysThatABlankPageHasNoEdges) {
  Image blank(400, 300, 8, 46);
  const vantrel_corner_search result = search(*blank.ptr(), 0);
  EXPECT_EQ(result.verdict, VANTREL_NO_EDGES);
  expect_no_lines(result);
}

TEST(FindCorners, SaysThatAnImageWithoutPixelsHasNoEdges) {
  Image empty(0, 0, 8);
  const vantrel_corner_search result = search(*empty.ptr(), 0);
  EXPECT_EQ(result.verdict, VANTREL_NO_EDGES);
  expect_no_lines(result);
}

TEST(FindCorners, SaysWhenAnImageIsNotGray) {
  for (const int bit_count : {1, 4, 24, 32}) {
    Image image(40, 30, bit_count, 0);
    const vantrel_corner_search result = search(*image.ptr(), 0);
    EXPECT_EQ(result.verdict, VANTREL_NOT_GRAY) << bit_count;
    expect_no_lines(result);
  }
  const vantrel_corner_search result = search(BITMAPPTR{nullptr, nullptr, nullptr}, 0);
  EXPECT_EQ(result.verdict, VANTREL_NOT_GRAY);
  expect_no_lines(result);
}

TEST(FindCorners, SaysWhenASideIsTooLong) {
  for (const bool tall : {true, false}) {
    Image image(tall ? 4 : 32768, tall ? 32768 : 4, 8, 0);
    image.at(2, 2) = 255;
    const vantrel_corner_search result = search(*image.ptr(), 0);
    EXPECT_EQ(result.verdict, VANTREL_SIDE_TOO_LONG);
    expect_no_lines(result);
  }
  for (const int side : {-1, -8}) {
    Image negative(8, 8, 8, 0);
    negative.header().biWidth = side;
    EXPECT_EQ(search(*negative.ptr(), 0).verdict, VANTREL_SIDE_TOO_LONG);
    negative.header().biWidth = 8;
    negative.header().biHeight = side;
    EXPECT_EQ(search(*negative.ptr(), 0).verdict, VANTREL_SIDE_TOO_LONG);
  }
}

TEST(FindCorners, OnlyReadsTheImage) {
  Image scan = scan_of(turned_card(400, 300, 680, 480, 2), 800, 600);
  scan.header().biClrUsed = 0;  // not even the palette's size is rewritten
  const std::vector<unsigned char> before = scan.block();
  search(*scan.ptr(), 1);
  EXPECT_EQ(scan.block(), before);
}

}  // namespace
