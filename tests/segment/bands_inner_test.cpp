#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "segment/bands.h"
#include "segment/sheets.h"

namespace {

using namespace vantrel::segment;
using testing_sheets::Sheet;

/** Rows from a picture of them: '#' is dense. */
std::vector<RowClass> rows_from(const std::string& picture) {
  std::vector<RowClass> rows;
  for (const char c : picture) rows.push_back(c == '#' ? RowClass::kDense : RowClass::kSparse);
  return rows;
}

std::string picture_of(const std::vector<RowClass>& rows) {
  std::string picture;
  for (const RowClass row : rows) picture += row == RowClass::kDense ? '#' : '.';
  return picture;
}

std::string bridged(const std::string& picture, int gap) {
  std::vector<RowClass> rows = rows_from(picture);
  bridge_gaps(rows, gap);
  return picture_of(rows);
}

std::vector<Span> bands_of(const std::string& picture) {
  std::vector<Span> room(static_cast<std::size_t>(most_bands(static_cast<int>(picture.size()))));
  const std::span<Span> bands = collect_bands(rows_from(picture), room);
  return {bands.begin(), bands.end()};
}

TEST(Bands, ADenseRowHasMoreThanTheLimit) {
  Sheet sheet(4, 10);
  sheet.blacken(0, 0, 3).blacken(1, 6, 10).blacken(3, 0, 1).blacken(3, 4, 5).blacken(3, 8, 10);
  std::vector<RowClass> rows = rows_from("####");
  classify_rows(sheet.view(), 3, rows);
  EXPECT_EQ(picture_of(rows), ".#.#");
}

TEST(Bands, OnlyBlackCounts) {
  std::vector<unsigned char> gray(10, 1);
  std::vector<RowClass> rows = rows_from("#");
  classify_rows({gray.data(), 1, 10, 10}, 0, rows);
  EXPECT_EQ(picture_of(rows), ".");
}

TEST(Bands, GapsBelowTheLimitAreBridged) {
  EXPECT_EQ(bridged("#..#...#....#", 4), "####...#....#");
  EXPECT_EQ(bridged("#..#...#....#", 5), "########....#");
  EXPECT_EQ(bridged("#..#...#....#", 6), "#############");
  EXPECT_EQ(bridged("#..#", 3), "#..#");
}

TEST(Bands, NothingIsBridgedToTheEdges) {
  EXPECT_EQ(bridged(".#.#.", 9), ".###.");
  EXPECT_EQ(bridged("..#..", 9), "..#..");
  EXPECT_EQ(bridged(".....", 9), ".....");
  EXPECT_EQ(bridged("", 9), "");
}

TEST(Bands, AreMaximalRuns) {
  EXPECT_EQ(bands_of("##..###.#"), (std::vector<Span>{{0, 2}, {4, 7}, {8, 9}}));
  EXPECT_EQ(bands_of("...##.."), (std::vector<Span>{{3, 5}}));
  EXPECT_EQ(bands_of("####"), (std::vector<Span>{{0, 4}}));
  EXPECT_TRUE(bands_of("....").empty());
  EXPECT_TRUE(bands_of("").empty());
}

TEST(Bands, EverySecondRowFillsTheRoom) {
  EXPECT_EQ(bands_of("#.#.#").size(), 3u);
  EXPECT_EQ(most_bands(5), 3);
  EXPECT_EQ(most_bands(4), 2);
  EXPECT_EQ(most_bands(0), 0);
}

TEST(Bands, MiddleRowIsRoundedDown) {
  EXPECT_EQ(middle_row({3, 7}), 4);
  EXPECT_EQ(middle_row({4, 7}), 5);
}

}  // namespace
