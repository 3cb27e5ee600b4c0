#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "segment/card_window.h"
#include "segment/sheets.h"

namespace {

using namespace vantrel::segment;
using testing_sheets::Sheet;

Window window_of(const Sheet& sheet, Span rows, int length) {
  // Longer than the strip, and full of what an earlier group left.
  std::vector<int> profile(static_cast<std::size_t>(sheet.view().cols) + 5);
  std::iota(profile.rbegin(), profile.rend(), 100);
  return fullest_window(sheet.view(), rows, length, profile);
}

/** The window's first column. */
int window(const Sheet& sheet, Span rows, int length) { return window_of(sheet, rows, length).cols.first; }

TEST(FullestWindow, HasMostBlackPixels) {
  Sheet sheet(3, 12);
  sheet.blacken(0, 6, 10).blacken(1, 6, 10).blacken(2, 0, 3);
  EXPECT_EQ(window(sheet, {0, 3}, 4), 6);
}

TEST(FullestWindow, IsTheMeanOfEqualOnes) {
  Sheet sheet(1, 10);
  sheet.blacken(0, 5, 6);
  EXPECT_EQ(window(sheet, {0, 1}, 4), 3);  // starts 2, 3, 4, 5
  EXPECT_EQ(window(Sheet(1, 10), {0, 1}, 4), 3);
  Sheet apart(1, 10);
  apart.blacken(0, 0, 2).blacken(0, 8, 10);
  EXPECT_EQ(window(apart, {0, 1}, 2), 4);  // starts 0 and 8
}

TEST(FullestWindow, ReachesTheFirstAndTheLastColumn) {
  EXPECT_EQ(window(Sheet(1, 10).blacken(0, 0, 4), {0, 1}, 4), 0);
  EXPECT_EQ(window(Sheet(1, 10).blacken(0, 6, 10), {0, 1}, 4), 6);
}

TEST(FullestWindow, LooksAtTheGivenRowsOnly) {
  Sheet sheet(5, 10);
  sheet.blacken(0, 0, 3).blacken(1, 7, 8).blacken(3, 9, 10).blacken(4, 0, 3);
  EXPECT_EQ(window(sheet, {1, 4}, 3), 7);
}

TEST(FullestWindow, IsTheWholeOfANarrowStrip) {
  EXPECT_EQ(window(Sheet(1, 3).blacken(0, 2, 3), {0, 1}, 4), 0);
  EXPECT_EQ(window(Sheet(1, 4).blacken(0, 2, 3), {0, 1}, 4), 0);
}

TEST(FullestWindow, EndsWithItsLengthOrTheStrip) {
  EXPECT_EQ(window_of(Sheet(1, 10).blacken(0, 6, 10), {0, 1}, 4).cols, (Span{6, 10}));
  EXPECT_EQ(window_of(Sheet(1, 3).blacken(0, 2, 3), {0, 1}, 4).cols, (Span{0, 3}));
}

TEST(FullestWindow, HoldsAShareOfTheBlackPixels) {
  EXPECT_EQ(window_of(Sheet(1, 10).blacken(0, 3, 6), {0, 1}, 4).share, 1.0);
  // Four of the five pixels lie in columns 6 to 9.
  EXPECT_EQ(window_of(Sheet(2, 10).blacken(0, 0, 1).blacken(1, 6, 10), {0, 2}, 4).share, 0.8);
  EXPECT_EQ(window_of(Sheet(1, 10), {0, 1}, 4).share, 0.0);
  // Halfway between two equal runs there may be nothing.
  EXPECT_EQ(window_of(Sheet(1, 10).blacken(0, 0, 2).blacken(0, 8, 10), {0, 1}, 2).share, 0.0);
}

TEST(CompleteHeight, LeavesAFullCard) {
  EXPECT_EQ(complete_height({10, 30}, 20, {50, true}, {50, true}), (Span{10, 30}));
  EXPECT_EQ(complete_height({10, 40}, 20, {50, true}, {50, true}), (Span{10, 40}));
}

TEST(CompleteHeight, SharesWhatIsMissing) {
  EXPECT_EQ(complete_height({100, 110}, 20, {50, false}, {60, false}), (Span{95, 115}));
  // Of an odd number the second side gets the larger half: above, then below.
  EXPECT_EQ(complete_height({100, 110}, 21, {50, false}, {60, false}), (Span{95, 116}));
  EXPECT_EQ(complete_height({100, 110}, 21, {60, false}, {50, false}), (Span{94, 115}));
}

TEST(CompleteHeight, StartsBelowWhenBothSidesAreEqual) {
  EXPECT_EQ(complete_height({100, 110}, 21, {50, false}, {50, false}), (Span{95, 116}));
}

TEST(CompleteHeight, LeavesANeighbourHalfOfTheRoom) {
  EXPECT_EQ(complete_height({100, 110}, 30, {7, false}, {40, false}), (Span{97, 127}));
  EXPECT_EQ(complete_height({100, 110}, 60, {7, false}, {40, false}), (Span{97, 130}));
  EXPECT_EQ(complete_height({100, 110}, 60, {40, false}, {7, false}), (Span{80, 113}));
}

TEST(CompleteHeight, TakesAllRoomToTheEdge) {
  EXPECT_EQ(complete_height({7, 17}, 30, {7, true}, {40, false}), (Span{0, 30}));
  EXPECT_EQ(complete_height({7, 17}, 90, {7, true}, {40, true}), (Span{0, 57}));
}

TEST(CompleteHeight, WithoutRoomNothingGrows) {
  EXPECT_EQ(complete_height({0, 10}, 20, {0, true}, {0, true}), (Span{0, 10}));
  EXPECT_EQ(complete_height({5, 10}, 20, {1, false}, {1, false}), (Span{5, 10}));
}

TEST(CompleteHeights, ReachToTheCompletedCardBelowAndToTheGroupAboveAsItIs) {
  const std::vector<Span> bands{{10, 20}, {40, 50}, {70, 80}};
  Groups groups;
  groups.count = 3;
  groups.start = {0, 1, 2, 3};
  const auto cards = complete_heights(bands, groups, 40, 100);
  EXPECT_EQ(cards[0], (Span{0, 30}));    // room 10 to the edge and 21 to row 40, of which half is used
  EXPECT_EQ(cards[1], (Span{35, 60}));   // room 11 to row 29 and 21 to row 70
  EXPECT_EQ(cards[2], (Span{65, 100}));  // room 11 to row 59 and 20 to the edge
}

TEST(CompleteHeights, OneGroupReachesToBothEdges) {
  const std::vector<Span> bands{{4, 6}};
  Groups groups;
  groups.count = 1;
  groups.start = {0, 1};
  EXPECT_EQ(complete_heights(bands, groups, 100, 12)[0], (Span{0, 12}));
}

}  // namespace
