#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <vector>

#include "reference/segment_cards.h"
#include "reference/segment_reduce.h"
#include "segment/exports.h"
#include "support/drawing.h"
#include "support/image.h"
#include "support/random.h"
#include "support/tally.h"

namespace {

using support::Image;
using support::Picture;
using support::Random;
namespace tally = support::tally;

TEST(SegmentReference, ReductionsOfRandomImages) {
  for (unsigned seed = 0; seed < 1500; ++seed) {
    Random random(seed);
    const int depth = std::initializer_list<int>{1, 8, 24}.begin()[seed % 3];
    Image image(random.pick(1, 70), random.pick(1, 30), depth);
    randomise(image, random);
    image.header().biXPelsPerMeter = random.pick(-500, 30000);
    image.header().biYPelsPerMeter = random.pick(-500, 30000);
    const int n = random.pick(1, random.one_in(10) ? 80 : 9);
    Image result;
    const auto reduce = depth == 1 ? Bin2ScaledGray : depth == 8 ? Gray2ScaledGray : Color2ScaledGray;
    ASSERT_TRUE(reduce(image.ptr(), result.ptr(), n));
    const Picture expected = reference::reduced(Picture(image), n);
    ASSERT_EQ(result.header().biWidth, expected.cols);
    ASSERT_EQ(result.header().biHeight, expected.rows);
    ASSERT_EQ(result.header().biBitCount, 8);
    ASSERT_EQ(result.header().biXPelsPerMeter, image.header().biXPelsPerMeter / n);
    ASSERT_EQ(result.header().biYPelsPerMeter, image.header().biYPelsPerMeter / n);
    ASSERT_EQ(result.pixels(), expected.bytes) << "seed " << seed << ", depth " << depth << ", factor " << n;
  }
}

TEST(SegmentReference, GrayOfManyColours) {
  Image image(512, 512, 24);
  Random random(11);
  randomise(image, random);
  Image result;
  ASSERT_TRUE(Color2ScaledGray(image.ptr(), result.ptr(), 1));
  EXPECT_EQ(result.pixels(), reference::reduced(Picture(image), 1).bytes);
}

TEST(SegmentReference, RunningMeans) {
  reference::Binarised counts;
  for (unsigned seed = 0; seed < 1000; ++seed) {
    Random random(seed);
    const int width = random.pick(1, 90);
    const int rows = random.pick(1, 12);
    const int stride = width + random.pick(0, 9);
    std::vector<unsigned char> pixels(static_cast<std::size_t>(stride * rows));
    const int kind = random.pick(0, 2);
    int level = random.pick(0, 255);
    for (unsigned char& pixel : pixels) {
      if (kind == 0) level = random.pick(0, 255);
      if (kind == 1) level = std::clamp(level + random.pick(-6, 6), 0, 255);
      if (kind == 2 && random.one_in(9)) level = random.pick(0, 255);
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
void draw_bands(Image& sheet, int x0, int x1, Random& random) {
  const bool cards = random.one_in(2);
  int row = random.pick(0, random.one_in(2) ? 10 : 150);
  while (row < sheet.height()) {
    const int height = cards ? random.pick(2, 40) : random.pick(1, random.one_in(4) ? 240 : 60);
    const int ink = random.one_in(12) ? random.pick(5, 12) : random.pick(13, x1 - x0);
    const int left = x0 + random.pick(0, x1 - x0 - ink);
    fill(sheet, left, left + ink, row, row + height, 0);
    const int between_cards = random.one_in(3) ? random.pick(20, 40) : random.pick(30, 160);
    const bool stay = cards ? !random.one_in(4) : random.one_in(2);
    row += height + (stay ? random.pick(1, 34) : between_cards);
  }
}

/**
 * Two cards of nearly a card's height whose facing ends are small bands, closer to each other than cards can be, so
 * that either end may go over to the other card. `unit` is the number of reduced pixels in an inch.
 */
void draw_facing_ends(Image& sheet, double unit, Random& random) {
  const auto about = [&](double inches, int spread) {
    return static_cast<int>(unit * inches) + random.pick(0, spread);
  };
  const bool alike = random.one_in(2);
  const int body = about(1.68, 4);
  const int inner_gap = about(0.3, 2);
  const int end = random.pick(1, 3);
  int row = random.pick(0, 20);
  const auto band = [&](int height, int gap) {
    fill(sheet, 0, sheet.width(), row, row + height, 0);
    row += height + gap;
  };
  band(body, inner_gap);
  band(end, about(0.18, 2));
  band(alike ? end : random.pick(1, 3), alike ? inner_gap : about(0.3, 2));
  band(alike ? body : about(1.68, 4) - random.pick(0, 20), 0);
}

/** Narrow bands in gaps of every width: which card each belongs to is settled in several rounds. */
void draw_scattered_bands(Image& sheet, double unit, Random& random) {
  const auto inches = [&](int hundredths) { return static_cast<int>(unit * hundredths / 100); };
  int row = random.pick(0, 10);
  while (row < sheet.height()) {
    const int height = inches(random.pick(2, 36));
    fill(sheet, 0, sheet.width(), row, row + height, 0);
    row += height + inches(random.pick(19, 108));
  }
}

void compare_sheet(Image& image) {
  RectRegions library;
  std::memset(&library, 0x5A, sizeof library);
  RectRegions expected = library;
  const BITMAPINFOHEADER& header = image.header();
  const int code = reference::card_seg(Picture(image), header.biXPelsPerMeter, header.biYPelsPerMeter, expected);
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
  ASSERT_EQ(image.block(), before.block()) << "the sheet is only read";
}

/** A resolution in pixels per metre and the factor by which its sheets are reduced. */
struct Scan {
  int per_metre;
  int n;
};

Scan some_scan(Random& random) {
  static constexpr Scan kScans[] = {{9843, 3}, {10236, 3}, {11811, 3}, {13779, 3}, {13780, 4}, {15748, 4}};
  return kScans[static_cast<std::size_t>(random.pick(0, 5))];
}

Image as_image(const Image& sheet, Scan scan, int bits, Random& random) {
  const int more = random.one_in(2) ? random.pick(0, 3000) : 0;
  const bool wider = random.one_in(2);
  return support::enlarged(sheet,
                           {bits, scan.n, random.pick(0, scan.n - 1), scan.per_metre + (wider ? more : 0),
                            scan.per_metre + (wider ? 0 : more)},
                           random);
}

TEST(SegmentReference, BandsAndGroupsOfNarrowSheets) {
  tally::reset();
  for (unsigned seed = 0; seed < 1500; ++seed) {
    Random random(seed);
    const bool scattered = seed % 10 >= 1 && seed % 10 < 6;
    const int height = scattered ? random.pick(500, 900) : random.pick(50, random.one_in(3) ? 1400 : 600);
    Image sheet(scattered ? 20 : random.pick(20, 45), height, 8, 255);
    const Scan scan = some_scan(random);
    const double unit = scan.per_metre / 39.37 / scan.n;
    if (seed % 10 == 0) {
      draw_facing_ends(sheet, unit, random);
    } else if (scattered) {
      draw_scattered_bands(sheet, unit, random);
    } else {
      draw_bands(sheet, 0, sheet.width(), random);
    }
    Image image = as_image(sheet, scan, 1, random);
    compare_sheet(image);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  tally::expect({"gap bridged",
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
                 "groups: 5"},
                5);
}

TEST(SegmentReference, WindowsInWideSheets) {
  tally::reset();
  for (unsigned seed = 0; seed < 90; ++seed) {
    Random random(50000 + seed);
    Image sheet(random.pick(300, 560), random.pick(150, 450), 8, 255);
    const int left = random.pick(0, sheet.width() - 30);
    draw_bands(sheet, left, std::min(sheet.width(), left + random.pick(20, 330)), random);
    Image image = as_image(sheet, some_scan(random), 1, random);
    compare_sheet(image);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  tally::expect({"several best windows", "one best window", "right bound at the image's edge", "one column: narrow"},
                5);
}

TEST(SegmentReference, SheetsOfTwoColumns) {
  tally::reset();
  for (unsigned seed = 0; seed < 90; ++seed) {
    Random random(60000 + seed);
    Image sheet(random.pick(592, 760), random.pick(120, 400), 8, 255);
    const int half = sheet.width() / 2;
    const int gutter = random.pick(0, 8);
    draw_bands(sheet, random.pick(0, 40), half - gutter, random);
    draw_bands(sheet, half + gutter, sheet.width() - random.pick(0, 40), random);
    if (random.one_in(5)) fill(sheet, half - 1, half, 20, 20 + random.pick(15, 35), 0);
    Image image = as_image(sheet, some_scan(random), 1, random);
    compare_sheet(image);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  tally::expect({"two columns", "one column: no clear gutter", "one column: narrow"}, 5);
}

TEST(SegmentReference, GrayAndColourSheets) {
  tally::reset();
  for (unsigned seed = 0; seed < 60; ++seed) {
    Random random(70000 + seed);
    const bool wide = random.one_in(4);
    Image sheet(wide ? random.pick(600, 700) : random.pick(30, 120), random.pick(100, wide ? 250 : 700), 8, 255);
    draw_bands(sheet, 0, sheet.width() / 2, random);
    if (random.one_in(2)) draw_bands(sheet, sheet.width() / 2, sheet.width(), random);
    Image image = as_image(sheet, some_scan(random), seed % 2 == 0 ? 8 : 24, random);
    compare_sheet(image);
    ASSERT_FALSE(HasFatalFailure()) << "seed " << seed;
  }
  tally::expect({"groups: 2", "groups: 3", "two columns"}, 5);
}

TEST(SegmentReference, NoiseOfEverySmallSizeAndScale) {
  tally::reset();
  Random random(12);
  for (int round = 0; round < 900; ++round) {
    const int depth = std::initializer_list<int>{1, 8, 24, 4}.begin()[round % 4];
    Image image(1 + static_cast<int>(random.bits() % 90), 1 + static_cast<int>(random.bits() % 90), depth, 0,
                9700 + static_cast<int>(random.bits() % 30000));
    randomise(image, random);
    compare_sheet(image);
    ASSERT_FALSE(HasFatalFailure()) << "round " << round;
  }
}

TEST(SegmentReference, ClipRows) {
  tally::reset();
  for (unsigned seed = 0; seed < 600; ++seed) {
    Random random(80000 + seed);
    Image image(random.pick(1, 70), random.pick(1, 130), 8, static_cast<unsigned char>(random.pick(0, 255)));
    const int kind = random.pick(0, 3);
    if (kind == 0) randomise(image, random);
    for (int line = 0; kind > 0 && line < 6; ++line) {
      const int from = random.pick(0, image.width() / 2);
      const int row = random.pick(0, image.height() - 1);
      const int to = random.pick(from, image.width());
      std::fill(image.row(row) + from, image.row(row) + to, static_cast<unsigned char>(random.pick(0, 255)));
      if (random.one_in(3)) image.at(row, from) = 255;
    }
    int first = -7;
    int second = -7;
    ASSERT_TRUE(ClipImg(image.ptr(), first, second));
    const reference::ClipRows expected = reference::clip_rows(Picture(image));
    ASSERT_EQ(first, expected.first) << "seed " << seed << ", " << image.width() << " x " << image.height();
    ASSERT_EQ(second, expected.second) << "seed " << seed << ", " << image.width() << " x " << image.height();
  }
  tally::expect({"near row found", "near row by default", "far row found", "far row by default"}, 5);
}

TEST(SegmentReference, Projections) {
  Random random(13);
  for (int round = 0; round < 300; ++round) {
    const int width = random.pick(0, 30);
    const int height = random.pick(0, 30);
    std::vector<unsigned char> pixels;
    for (int i = 0; i < width * height; ++i) pixels.push_back(random.one_in(2) ? 0 : random.one_in(2) ? 255 : 127);
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
