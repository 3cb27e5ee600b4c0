#include <gtest/gtest.h>

#include "cardcut/hough.h"

namespace {

using namespace vantrel::cardcut;
using vantrel::geometry::Span;

constexpr int kRows = 100;
constexpr int kCols = 40;
constexpr Span kBands[] = {{10, 30}, {70, 75}};

void vote_along_row(HoughAccumulator& votes, int row, Span columns) {
  RowVotes row_votes(votes, row, kAllAngles);
  for (int x = columns.first; x < columns.end; ++x) row_votes.add(x);
}

TEST(HoughAccumulator, ALevelRowIsALineAtItsDistance) {
  HoughAccumulator votes(kRows, kCols, kBands);
  ASSERT_TRUE(votes.ready());
  votes.clear(kBands[0]);
  vote_along_row(votes, 20, {0, 40});
  for (const auto& line : {votes.lowest_peak(2), votes.highest_peak(2)}) {
    ASSERT_TRUE(line);
    EXPECT_EQ(line->distance, 20);
    EXPECT_EQ(line->angle, 8) << "the first of the angles at which all 40 votes fall together";
    EXPECT_EQ(line->votes, 40);
    EXPECT_EQ(votes.centre_row(*line), 20);
  }
}

TEST(HoughAccumulator, TheFirstAndTheLastRowOfABandAreCounted) {
  HoughAccumulator votes(kRows, kCols, kBands);
  for (const Span band : kBands) {
    for (const int row : {band.first, band.last()}) {
      votes.clear(band);
      vote_along_row(votes, row, {0, 40});
      const auto line = votes.lowest_peak(2);
      ASSERT_TRUE(line) << row;
      EXPECT_EQ(votes.centre_row(*line), row);
    }
  }
}

TEST(HoughAccumulator, TheLowestAndTheHighestLineAreToldApart) {
  HoughAccumulator votes(kRows, kCols, kBands);
  votes.clear(kBands[0]);
  vote_along_row(votes, 12, {0, 40});
  vote_along_row(votes, 25, {0, 40});
  EXPECT_EQ(votes.centre_row(*votes.lowest_peak(2)), 12);
  EXPECT_EQ(votes.centre_row(*votes.highest_peak(2)), 25);
}

TEST(HoughAccumulator, ALineNeedsMoreThanItsShareOfTheWidth) {
  HoughAccumulator votes(kRows, kCols, kBands);
  votes.clear(kBands[0]);
  vote_along_row(votes, 20, {0, 10});
  EXPECT_FALSE(votes.lowest_peak(4));
  EXPECT_FALSE(votes.highest_peak(4));
  vote_along_row(votes, 20, {10, 11});
  EXPECT_TRUE(votes.lowest_peak(4));
  EXPECT_TRUE(votes.highest_peak(4));
}

TEST(HoughAccumulator, VotesAreForgotten) {
  HoughAccumulator votes(kRows, kCols, kBands);
  votes.clear(kBands[0]);
  vote_along_row(votes, 20, {0, 40});
  votes.clear(kBands[0]);
  EXPECT_FALSE(votes.lowest_peak(2));
  EXPECT_FALSE(votes.highest_peak(2));
}

TEST(HoughAccumulator, ATiltedLineCrossesTheColumnsAtItsAngle) {
  const HoughAccumulator votes(kRows, kCols, kBands);
  constexpr Peak kRising = {20, 20, 0};  // 95 degrees: 0.0875 rows a column
  EXPECT_EQ(votes.centre_row(kRising), 20);
  EXPECT_EQ(votes.row_at(kRising, 0), 18);
  EXPECT_EQ(votes.row_at(kRising, 39), 22);
  EXPECT_EQ(votes.row_at(kLowestLine, 39), 0);
}

TEST(HoughAccumulator, AnImageOfOneEndlessSideNeedsNoCounters) {
  // These would be 2 GB if every distance had counters.
  constexpr Span kNone[] = {{2, -2}};
  HoughAccumulator wide(0, 25000000, kNone);
  ASSERT_TRUE(wide.ready());
  wide.clear(kNone[0]);
  EXPECT_FALSE(wide.lowest_peak(4));
  EXPECT_FALSE(wide.highest_peak(3));
  constexpr Span kHigh[] = {{5, 8000000}};
  HoughAccumulator high(25000000, 0, kHigh);
  ASSERT_TRUE(high.ready());
  high.clear(kHigh[0]);
  EXPECT_FALSE(high.lowest_peak(4));
}

TEST(HoughAccumulator, ReachesDiagonalsWhoseCountersFitABlock) {
  EXPECT_TRUE(HoughAccumulator::reaches(0, 25565279));
  EXPECT_FALSE(HoughAccumulator::reaches(0, 25565281));
  EXPECT_FALSE(HoughAccumulator::reaches(2147483647, 2147483647));
}

}  // namespace
