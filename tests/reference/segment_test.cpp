#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <random>
#include <vector>

#include "images.h"
#include "reference/segment_cards.h"
#include "reference/segment_reduce.h"
#include "reference/sheet_drawing.h"
#include "segment/reduce.h"

namespace {

using reference::Outcomes;
using reference::Picture;
using reference::SheetDrawing;
using testing_images::Image;
using testing_images::Result;

struct Dice {
  std::mt19937 random;

  int between(int low, int high) { return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1)); }
  bool one_in(int n) { return between(1, n) == 1; }
};

void expect_reached(const Outcomes& seen, std::initializer_list<const char*> names) {
  for (const char* name : names) {
    const auto found = seen.find(name);
    EXPECT_TRUE(found != seen.end() && found->second >= 5) << "not reached often enough: " << name;
    if (found != seen.end()) ::testing::Test::RecordProperty(name, found->second);
  }
}

TEST(SegmentReference, ReductionsOfRandomImages) {
  for (unsigned seed = 0; seed < 1500; ++seed) {
    Dice dice{std::mt19937(seed)};
    const int depth = std::initializer_list<int>{1, 8, 24}.begin()[seed % 3];
    Image image(dice.between(1, 70), dice.between(1, 30), depth);
    randomise(image, dice.random);
    image.header().biXPelsPerMeter = dice.between(-500, 30000);
    image.header().biYPelsPerMeter = dice.between(-500, 30000);
    const int n = dice.between(1, dice.one_in(10) ? 80 : 9);
    Result result;
    const auto reduce = depth == 1 ? Bin2ScaledGray : depth == 8 ? Gray2ScaledGray : Color2ScaledGray;
    ASSERT_TRUE(reduce(image.ptr(), result.ptr(), n));
    const Picture expected = reference::reduced(Picture(*image.ptr()), n);
    ASSERT_EQ(result.header().biWidth, expected.width);
    ASSERT_EQ(result.header().biHeight, expected.height);
    ASSERT_EQ(result.header().biBitCount, 8);
    ASSERT_EQ(result.header().biXPelsPerMeter, image.header().biXPelsPerMeter / n);
    ASSERT_EQ(result.header().biYPelsPerMeter, image.header().biYPelsPerMeter / n);
    ASSERT_EQ(result.pixels(), expected.bytes) << "seed " << seed << ", depth " << depth << ", factor " << n;
  }
}

TEST(SegmentReference, GrayOfManyColours) {
  Image image(512, 512, 24);
  std::mt19937 random(11);
  randomise(image, random);
  Result result;
  ASSERT_TRUE(Color2ScaledGray(image.ptr(), result.ptr(), 1));
  EXPECT_EQ(result.pixels(), reference::reduced(Picture(*image.ptr()), 1).bytes);
}

TEST(SegmentReference, RunningMeans) {
  reference::Binarised counts;
  for (unsigned seed = 0; seed < 1000; ++seed) {
    Dice dice{std::mt19937(seed)};
    const int width = dice.between(1, 90);
    const int rows = dice.between(1, 12);
    const int stride = width + dice.between(0, 9);
    std::vector<unsigned char> pixels(static_cast<std::size_t>(stride * rows));
    const int kind = dice.between(0, 2);
    int level = dice.between(0, 255);
    for (unsigned char& pixel : pixels) {
      if (kind == 0) level = dice.between(0, 255);
      if (kind == 1) level = std::clamp(level + dice.between(-6, 6), 0, 255);
      if (kind == 2 && dice.one_in(9)) level = dice.between(0, 255);
      pixel = static_cast<unsigned char>(level);
    }
    std::vector<unsigned char> expected = pixels;
    reference::moving_average(expected, width, rows, stride, counts);
    ASSERT_TRUE(Moving_Average(pixels.data(), width, rows, stride));
    ASSERT_EQ(pixels, expected) << "seed " << seed;
  }
  EXPECT_GT(counts.black, 10000);
  EXPECT_GT(counts.white, 10000);
}

/** Marks that become bands of rows: lines of print as on cards, or heights and gaps of every kind. */
void draw_bands(SheetDrawing& sheet, int x0, int x1, Dice& dice) {
  const bool cards = dice.one_in(2);
  int row = dice.between(0, dice.one_in(2) ? 10 : 150);
  while (row < sheet.height()) {
    const int height = cards ? dice.between(2, 40) : dice.between(1, dice.one_in(4) ? 240 : 60);
    const int ink = dice.one_in(12) ? dice.between(5, 12) : dice.between(13, x1 - x0);
    const int left = x0 + dice.between(0, x1 - x0 - ink);
    sheet.bar(left, left + ink, row, row + height);
    const int between_cards = dice.one_in(3) ? dice.between(20, 40) : dice.between(30, 160);
    const bool stay = cards ? !dice.one_in(4) : dice.one_in(2);
    row += height + (stay ? dice.between(1, 34) : between_cards);
  }
}

/**
 * Two cards of nearly a card's height whose facing ends are small bands, closer to each other than cards can be, so
 * that either end may go over to the other card. `unit` is the number of reduced pixels in an inch.
 */
void draw_facing_ends(SheetDrawing& sheet, double unit, Dice& dice) {
  const auto about = [&](double inches, int spread) {
    return static_cast<int>(unit * inches) + dice.between(0, spread);
  };
  const bool alike = dice.one_in(2);
  const int body = about(1.68, 4);
  const int inner_gap = about(0.3, 2);
  const int end = dice.between(1, 3);
  int row = dice.between(0, 20);
  const auto band = [&](int height, int gap) {
    sheet.bar(0, sheet.width(), row, row + height);
    row += height + gap;
  };
  band(body, inner_gap);
  band(end, about(0.18, 2));
  band(alike ? end : dice.between(1, 3), alike ? inner_gap : about(0.3, 2));
  band(alike ? body : about(1.68, 4) - dice.between(0, 20), 0);
}

/** Narrow bands in gaps of every width: which card each belongs to is settled in several rounds. */
void draw_scattered_bands(SheetDrawing& sheet, double unit, Dice& dice) {
  const auto inches = [&](int hundredths) { return static_cast<int>(unit * hundredths / 100); };
  int row = dice.between(0, 10);
  while (row < sheet.height()) {
    const int height = inches(dice.between(2, 36));
    sheet.bar(0, sheet.width(), row, row + height);
    row += height + inches(dice.between(19, 108));
  }
}

void compare_sheet(Image& image, Outcomes& seen) {
  RectRegions library;
  std::memset(&library, 0x5A, sizeof library);
  RectRegions expected = library;
  const BITMAPINFOHEADER& header = image.header();
  const int code =
      reference::card_seg(Picture(*image.ptr()), header.biXPelsPerMeter, header.biYPelsPerMeter, expected, seen);
  const Image before(image);
  ASSERT_EQ(CardSeg(image.ptr(), library), code);
  ASSERT_EQ(library.firstCount, expected.firstCount);
  ASSERT_EQ(library.secondCount, expected.secondCount);
  for (int i = 0; i < 10; ++i) {
    const MYRECT& a = i < 5 ? library.firstColumn[i] : library.secondColumn[i - 5];
    const MYRECT& b = i < 5 ? expected.firstColumn[i] : expected.secondColumn[i - 5];
    ASSERT_EQ(std::memcmp(&a, &b, sizeof a), 0)
        << "card " << i << ": (" << a.left << ", " << a.top << ", " << a.right << ", " << a.bottom << ") instead of ("
        << b.left << ", " << b.top << ", " << b.right << ", " << b.bottom << ")";
  }
  ASSERT_EQ(image.block(), Image(before).block()) << "the sheet is only read";
}

/** A resolution in pixels per metre and the factor by which its sheets are reduced. */
struct Scan {
  int per_metre;
  int n;
};

Scan some_scan(Dice& dice) {
  static constexpr Scan kScans[] = {{9843, 3}, {10236, 3}, {11811, 3}, {13779, 3}, {13780, 4}, {15748, 4}};
  return kScans[static_cast<std::size_t>(dice.between(0, 5))];
}

Image as_image(const SheetDrawing& sheet, Scan scan, int bits, Dice& dice) {
  const int more = dice.one_in(2) ? dice.between(0, 3000) : 0;
  const bool wider = dice.one_in(2);
  return sheet.image(bits, scan.n, dice.between(0, scan.n - 1), scan.per_metre + (wider ? more : 0),
                     scan.per_metre + (wider ? 0 : more), dice.random);
}

TEST(SegmentReference, BandsAndGroupsOfNarrowSheets) {
  Outcomes seen;
  for (unsigned seed = 0; seed < 1500; ++seed) {
    Dice dice{std::mt19937(seed)};
    const bool scattered = seed % 10 >= 1 && seed % 10 < 6;
    const int height = scattered ? dice.between(500, 900) : dice.between(50, dice.one_in(3) ? 1400 : 600);
    SheetDrawing sheet(scattered ? 20 : dice.between(20, 45), height);
    const Scan scan = some_scan(dice);
    const double unit = scan.per_metre / 39.37 / scan.n;
    if (seed % 10 == 0) {
      draw_facing_ends(sheet, unit, dice);
    } else if (scattered) {
      draw_scattered_bands(sheet, unit, dice);
    } else {
      draw_bands(sheet, 0, sheet.width(), dice);
    }
    Image image = as_image(sheet, scan, 1, dice);
    compare_sheet(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  expect_reached(seen, {"gap bridged",
                        "gap not bridged",
                        "bands merged",
                        "groups dropped",
                        "band reassigned upwards",
                        "band reassigned downwards",
                        "midpoint: band to the upper group",
                        "midpoint: band to the lower group",
                        "midpoint: second round changed something",
                        "height: pair left alone",
                        "height: no move acceptable",
                        "height: both moves acceptable",
                        "height: equal moves",
                        "height: band to the upper group",
                        "height: band to the lower group",
                        "height: second round changed something",
                        "height: rounds used up",
                        "window clamped to the strip",
                        "height complete",
                        "completed downwards first",
                        "completed upwards first",
                        "completed with equal rooms",
                        "completed at the lower edge",
                        "completed at the upper edge",
                        "completed against a group below",
                        "completed against a group above",
                        "completion ran out of room",
                        "groups: 0",
                        "groups: 1",
                        "groups: 2",
                        "groups: 3",
                        "groups: 4",
                        "groups: 5"});
}

TEST(SegmentReference, WindowsInWideSheets) {
  Outcomes seen;
  for (unsigned seed = 0; seed < 90; ++seed) {
    Dice dice{std::mt19937(50000 + seed)};
    SheetDrawing sheet(dice.between(300, 560), dice.between(150, 450));
    const int left = dice.between(0, sheet.width() - 30);
    draw_bands(sheet, left, std::min(sheet.width(), left + dice.between(20, 330)), dice);
    Image image = as_image(sheet, some_scan(dice), 1, dice);
    compare_sheet(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  expect_reached(seen,
                 {"several best windows", "one best window", "right bound at the image's edge", "one column: narrow"});
}

TEST(SegmentReference, SheetsOfTwoColumns) {
  Outcomes seen;
  for (unsigned seed = 0; seed < 90; ++seed) {
    Dice dice{std::mt19937(60000 + seed)};
    SheetDrawing sheet(dice.between(592, 760), dice.between(120, 400));
    const int half = sheet.width() / 2;
    const int gutter = dice.between(0, 8);
    draw_bands(sheet, dice.between(0, 40), half - gutter, dice);
    draw_bands(sheet, half + gutter, sheet.width() - dice.between(0, 40), dice);
    if (dice.one_in(5)) sheet.bar(half - 1, half, 20, 20 + dice.between(15, 35));
    Image image = as_image(sheet, some_scan(dice), 1, dice);
    compare_sheet(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  expect_reached(seen, {"two columns", "one column: no clear gutter", "one column: narrow"});
}

TEST(SegmentReference, GrayAndColourSheets) {
  Outcomes seen;
  for (unsigned seed = 0; seed < 60; ++seed) {
    Dice dice{std::mt19937(70000 + seed)};
    const bool wide = dice.one_in(4);
    SheetDrawing sheet(wide ? dice.between(600, 700) : dice.between(30, 120), dice.between(100, wide ? 250 : 700));
    draw_bands(sheet, 0, sheet.width() / 2, dice);
    if (dice.one_in(2)) draw_bands(sheet, sheet.width() / 2, sheet.width(), dice);
    Image image = as_image(sheet, some_scan(dice), seed % 2 == 0 ? 8 : 24, dice);
    compare_sheet(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  expect_reached(seen, {"groups: 2", "groups: 3", "two columns"});
}

TEST(SegmentReference, NoiseOfEverySmallSizeAndScale) {
  Outcomes seen;
  std::mt19937 random(12);
  for (int round = 0; round < 900; ++round) {
    const int depth = std::initializer_list<int>{1, 8, 24, 4}.begin()[round % 4];
    Image image(1 + static_cast<int>(random() % 90), 1 + static_cast<int>(random() % 90), depth, 0,
                9700 + static_cast<int>(random() % 30000));
    randomise(image, random);
    compare_sheet(image, seen);
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
  }
}

TEST(SegmentReference, ClipRows) {
  Outcomes seen;
  for (unsigned seed = 0; seed < 600; ++seed) {
    Dice dice{std::mt19937(80000 + seed)};
    Image image(dice.between(1, 70), dice.between(1, 130), 8, static_cast<unsigned char>(dice.between(0, 255)));
    const int kind = dice.between(0, 3);
    if (kind == 0) randomise(image, dice.random);
    for (int line = 0; kind > 0 && line < 6; ++line) {
      const int from = dice.between(0, image.width() / 2);
      const int row = dice.between(0, image.height() - 1);
      const int to = dice.between(from, image.width());
      std::fill(image.row(row) + from, image.row(row) + to, static_cast<unsigned char>(dice.between(0, 255)));
      if (dice.one_in(3)) image.at(row, from) = 255;
    }
    int first = -7;
    int second = -7;
    ASSERT_TRUE(ClipImg(image.ptr(), first, second));
    const reference::ClipRows expected = reference::clip_rows(Picture(*image.ptr()), seen);
    ASSERT_EQ(first, expected.first) << "seed " << seed << ", " << image.width() << " x " << image.height();
    ASSERT_EQ(second, expected.second) << "seed " << seed << ", " << image.width() << " x " << image.height();
  }
  expect_reached(seen, {"near row found", "near row by default", "far row found", "far row by default"});
}

TEST(SegmentReference, Projections) {
  Dice dice{std::mt19937(13)};
  for (int round = 0; round < 300; ++round) {
    const int width = dice.between(0, 30);
    const int height = dice.between(0, 30);
    std::vector<unsigned char> pixels;
    for (int i = 0; i < width * height; ++i) pixels.push_back(dice.one_in(2) ? 0 : dice.one_in(2) ? 255 : 127);
    std::vector<unsigned short> rows(static_cast<std::size_t>(height) + 1, 65530);
    std::vector<unsigned short> columns(static_cast<std::size_t>(width) + 1, 65530);
    std::vector<unsigned short> expected_rows = rows;
    std::vector<unsigned short> expected_columns = columns;
    for (int i = 0; i < width * height; ++i) {
      const auto at = static_cast<std::size_t>(i);
      if (pixels.at(at) == 0) ++expected_rows.at(at / static_cast<std::size_t>(width));
      if (pixels.at(at) == 255) ++expected_columns.at(at % static_cast<std::size_t>(width));
    }
    HProjection(pixels.data(), static_cast<short>(width), static_cast<short>(height), rows.data());
    VProjection(pixels.data(), static_cast<short>(width), static_cast<short>(height), columns.data());
    ASSERT_EQ(rows, expected_rows);
    ASSERT_EQ(columns, expected_columns);
  }
}

}  // namespace
