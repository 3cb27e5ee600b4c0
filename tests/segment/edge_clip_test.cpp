// Border rows from edge counts, and the two projections.
#include <gtest/gtest.h>

#include <numeric>
#include <utility>

#include "segment/edgeclip/exports.h"
#include "support/image.h"

namespace {

using support::Image;
using Bytes = std::vector<unsigned char>;

struct Rows {
  bool done;
  int first;
  int second;
};

Rows clip(Image& image) {
  Rows rows{false, -77, -78};
  rows.done = ClipImg(image.ptr(), rows.first, rows.second);
  return rows;
}

/** Expects the call to succeed with these rows. */
void expect_rows(Image& image, int first, int second) {
  const Rows rows = clip(image);
  EXPECT_TRUE(rows.done);
  EXPECT_EQ(rows.first, first);
  EXPECT_EQ(rows.second, second);
}

/** Blackens columns [from, to) of memory row r. */
void draw_line(Image& image, int r, int from, int to) {
  for (int c = from; c < to; ++c) image.at(r, c) = 0;
}
void draw_line(Image& image, int r) { draw_line(image, r, 0, image.width()); }

TEST(ClipImg, WithoutStrongEdgesTheExtremeRowsAreGiven) {
  for (int level : {0, 128, 255}) {
    Image flat(200, 160, 8, static_cast<unsigned char>(level));
    expect_rows(flat, 0, 159);
  }
  // A slope of 5 levels a row is a gradient of 40.
  Image slope(200, 40, 8);
  for (int r = 0; r < 40; ++r) std::memset(slope.row(r), 5 * r, 200);
  expect_rows(slope, 0, 39);
}

TEST(ClipImg, AnImageWithoutPixelsHasItsExtremeRowsToo) {
  Image narrow(0, 40, 8);
  expect_rows(narrow, 0, 39);
  Image low(40, 0, 8);
  expect_rows(low, 0, -1);
}

TEST(ClipImg, AThinLineIsReportedByTheRowBeforeIt) {
  for (int height : {96, 104, 160}) {
    Image scan(200, height, 8, 255);
    draw_line(scan, 10);
    expect_rows(scan, 9, height - 1);
  }
}

TEST(ClipImg, BothBandsAreSearched) {
  Image scan(200, 200, 8, 255);
  draw_line(scan, 15);
  draw_line(scan, 160);
  expect_rows(scan, 14, 159);
}

TEST(ClipImg, AnImageShorterThan48RowsHasNoNearBand) {
  for (int height : {8, 24, 40, 47}) {
    Image scan(200, height, 8, 255);
    for (int r = 0; r < height / 2; r += 4) draw_line(scan, r);
    expect_rows(scan, 0, height - 1);
  }
  Image tall(200, 48, 8, 255);  // one row more: row 5 alone
  draw_line(tall, 6);
  expect_rows(tall, 5, 47);
}

TEST(ClipImg, TheNearBandRunsFromRowFiveToAnEighthOfTheHeight) {
  for (int line : {3, 16, 17, 30}) {  // gradients on rows 2 and 4, or 15 and 17, ...
    Image scan(200, 120, 8, 255);
    draw_line(scan, line);
    expect_rows(scan, line == 3 || line > 15 ? 0 : line - 1, 119);
  }
  Image first(200, 120, 8, 255);
  draw_line(first, 4);
  expect_rows(first, 5, 119);
  Image last(200, 120, 8, 255);
  draw_line(last, 15);
  expect_rows(last, 14, 119);
}

TEST(ClipImg, TheFarBandRunsFromThreeQuartersToNineTenthsOfTheHeight) {
  const struct {
    int line;
    int row;
  } cases[] = {{148, 199}, {149, 150}, {150, 151}, {151, 150}, {179, 178}, {180, 179}, {181, 199}};
  for (const auto& [line, row] : cases) {
    Image scan(200, 200, 8, 255);
    draw_line(scan, line);
    expect_rows(scan, 0, row);
  }
}

TEST(ClipImg, ARowNeedsMoreThanItsShareOfTheWidth) {
  // A line over columns 0 to n - 1 has gradients in n columns: column 0 is left out, and one behind its end has one.
  // Near band: more than 90 of 200; far band: more than 150.
  const struct {
    int length;
    int near;
    int far;
  } cases[] = {{90, 0, 199}, {91, 19, 199}, {150, 19, 199}, {151, 19, 159}};
  for (const auto& [length, near, far] : cases) {
    Image scan(200, 200, 8, 255);
    draw_line(scan, 20, 0, length);
    draw_line(scan, 160, 0, length);
    expect_rows(scan, near, far);
  }
}

TEST(ClipImg, TheFirstAndLastColumnAreLeftOut) {
  // Columns 1 to 198 of 200 can be edges; a line over 140 columns inside them has gradients in 142.
  Image inside(200, 200, 8, 255);
  draw_line(inside, 20, 100, 189);  // 99 to 189: 91 columns
  expect_rows(inside, 19, 199);
  Image at_right(200, 200, 8, 255);
  draw_line(at_right, 20, 109, 200);  // 108 to 198: 91 columns
  expect_rows(at_right, 19, 199);
  Image shorter(200, 200, 8, 255);
  draw_line(shorter, 20, 110, 200);  // 109 to 198: 90 columns
  expect_rows(shorter, 0, 199);
}

TEST(ClipImg, TheRowWithMostEdgesWins) {
  Image scan(200, 200, 8, 255);
  draw_line(scan, 10, 0, 120);
  draw_line(scan, 20, 0, 180);
  draw_line(scan, 155, 0, 160);
  draw_line(scan, 170, 0, 200);
  expect_rows(scan, 19, 169);
}

TEST(ClipImg, AGradientOfSixtyIsNotAnEdge) {
  for (int step : {15, 16}) {  // a step is weighted by 4
    Image scan(200, 200, 8, 100);
    for (int r = 0; r <= 10; ++r) std::memset(scan.row(r), 100 + step, 200);
    expect_rows(scan, step == 15 ? 0 : 10, 199);
  }
}

TEST(ClipImg, WidthsThatAreNoMultipleOfFourAreCountedInTheirOwnRows) {
  for (int width : {97, 98, 99, 101}) {
    Image scan(width, 200, 8, 255);
    draw_line(scan, 20);
    draw_line(scan, 160);
    expect_rows(scan, 19, 159);
  }
}

TEST(ClipImg, OtherDepthsAreRefusedWithTheOutputsUntouched) {
  for (int depth : {1, 4, 24}) {
    Image scan(64, 64, depth, 255);
    const Rows rows = clip(scan);
    EXPECT_FALSE(rows.done) << depth;
    EXPECT_EQ(rows.first, -77);
    EXPECT_EQ(rows.second, -78);
  }
}

TEST(ClipImg, NegativeSizesAreRefusedWithTheOutputsUntouched) {
  for (const auto& [width, height] : {std::pair(-1, 64), std::pair(64, -1), std::pair(-64, -64)}) {
    Image scan(64, 64, 8, 255);
    scan.header().biWidth = width;
    scan.header().biHeight = height;
    const Rows rows = clip(scan);
    EXPECT_FALSE(rows.done) << width << " x " << height;
    EXPECT_EQ(rows.first, -77);
    EXPECT_EQ(rows.second, -78);
  }
}

TEST(ClipImg, TheImageIsOnlyRead) {
  Image scan(101, 200, 8, 255);
  draw_line(scan, 20);
  const Bytes before = scan.block();
  clip(scan);
  EXPECT_EQ(scan.block(), before);
}

/** Rows of a 16-byte stride, with two more before the first for the reads in front of it, and their edge map. */
struct EdgeMap {
  static constexpr int kStride = 16;
  Bytes source = Bytes(16 * 22, 100);
  Bytes edge = Bytes(16 * 20, 7);
  unsigned char& at(int r, int c) { return first_row()[kStride * r + c]; }
  unsigned char* first_row() { return source.data() + 2 * kStride; }
  /** Runs with one band of rows [from, to) and another of none. */
  int run(int from, int to, short threshold, short columns) {
    return Sobel_Edge(first_row(), edge.data(), kStride, from, to, 15, threshold, 15, columns);
  }
  /** Indices of the bytes of the map that changed, all of them to 255. */
  std::vector<int> marked() const {
    std::vector<int> found;
    for (int i = 0; i < static_cast<int>(edge.size()); ++i) {
      const unsigned char byte = edge[static_cast<std::size_t>(i)];
      if (byte != 7) {
        EXPECT_EQ(byte, 255);
        found.push_back(i);
      }
    }
    return found;
  }
};

TEST(SobelEdge, MarksTheNeighboursOfAPointAndLeavesTheRest) {
  EdgeMap map;
  map.at(5, 6) = 200;
  EXPECT_EQ(map.run(1, 10, 60, 15), 1);
  EXPECT_EQ(map.marked(), (std::vector<int>{69, 70, 71, 85, 87, 101, 102, 103}));
}

TEST(SobelEdge, TheMagnitudeMustExceedTheThreshold) {
  // A point 15 brighter: 30 beside it, and 15 in both directions (21.2) at its diagonals.
  const struct {
    short threshold;
    std::vector<int> marked;
  } cases[] = {{30, {}}, {29, {70, 85, 87, 102}}, {22, {70, 85, 87, 102}}, {21, {69, 70, 71, 85, 87, 101, 102, 103}}};
  for (const auto& expected : cases) {
    EdgeMap map;
    map.at(5, 6) = 115;
    map.run(1, 10, expected.threshold, 15);
    EXPECT_EQ(map.marked(), expected.marked) << expected.threshold;
  }
}

TEST(SobelEdge, TheBandsAndColumnsEndBeforeTheirBounds) {
  EdgeMap map;
  map.at(5, 6) = 200;
  map.run(5, 6, 60, 7);  // row 5, columns 0 to 6
  EXPECT_EQ(map.marked(), (std::vector<int>{85}));
}

TEST(SobelEdge, TheFirstBandStartsAtRowOneAtTheEarliest) {
  EdgeMap map;
  map.at(0, 6) = 200;
  map.run(0, 3, 60, 15);
  EXPECT_EQ(map.marked(), (std::vector<int>{21, 22, 23}));
}

TEST(SobelEdge, TheSecondBandIsProcessedToo) {
  EdgeMap map;
  map.at(10, 6) = 200;
  EXPECT_EQ(Sobel_Edge(map.first_row(), map.edge.data(), 16, 1, 3, 9, 60, 11, 15), 1);
  EXPECT_EQ(map.marked(), (std::vector<int>{149, 150, 151, 165, 167}));
}

TEST(SobelEdge, TheSecondBandIsNotRaisedToRowOne) {
  EdgeMap map;
  map.at(1, 6) = 200;
  Sobel_Edge(map.first_row(), map.edge.data(), 16, 5, 5, 0, 60, 1, 15);
  EXPECT_EQ(map.marked(), (std::vector<int>{5, 6, 7}));
}

TEST(SobelEdge, TheLeftNeighbourOfColumnZeroIsTheByteBeforeTheRow) {
  EdgeMap map;
  map.at(4, 15) = 200;
  map.run(5, 6, 60, 1);
  EXPECT_EQ(map.marked(), (std::vector<int>{80}));
}

TEST(Projections, RowsCountBlackAndColumnsCountWhite) {
  Bytes pixels{0, 255, 0, 255, 255, 0};
  unsigned short rows[3] = {0, 0, 9};
  unsigned short columns[4] = {0, 0, 0, 9};
  HProjection(pixels.data(), 3, 2, rows);
  VProjection(pixels.data(), 3, 2, columns);
  EXPECT_EQ((std::vector<int>(rows, rows + 3)), (std::vector<int>{2, 1, 9}));
  EXPECT_EQ((std::vector<int>(columns, columns + 4)), (std::vector<int>{1, 2, 0, 9}));
}

TEST(Projections, CountsAreAddedToTheHistogram) {
  Bytes pixels{0, 255, 0, 255, 255, 0};
  unsigned short rows[2] = {100, 65535};
  unsigned short columns[3] = {10, 20, 30};
  HProjection(pixels.data(), 3, 2, rows);
  VProjection(pixels.data(), 3, 2, columns);
  EXPECT_EQ((std::vector<int>(rows, rows + 2)), (std::vector<int>{102, 0}));
  EXPECT_EQ((std::vector<int>(columns, columns + 3)), (std::vector<int>{11, 22, 30}));
}

TEST(Projections, OtherLevelsAreNotCounted) {
  Bytes pixels{1, 254, 128, 127};
  unsigned short histogram[2] = {0, 0};
  HProjection(pixels.data(), 2, 2, histogram);
  VProjection(pixels.data(), 2, 2, histogram);
  EXPECT_EQ(histogram[0], 0);
  EXPECT_EQ(histogram[1], 0);
}

}  // namespace
