#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "segment/card_window.h"
#include "segment/sheets.h"

namespace {

using namespace vantrel;
using testing_sheets::Sheet;

int window(const Sheet& sheet, Band rows, int length) {
  // Longer than the strip, and full of what an earlier group left.
  std::vector<int> profile(static_cast<std::size_t>(sheet.view().cols) + 5);
  std::iota(profile.rbegin(), profile.rend(), 100);
  return fullest_window(sheet.view(), rows, length, profile);
}

TEST(FullestWindow, HasMostBlackPixels) {
  Sheet sheet(3, 12);
  sheet.blacken(0, 6, 10).blacken(1, 6, 10).blacken(2, 0, 3);
  EXPECT_EQ(window(sheet, {0, 2}, 4), 6);
}

TEST(FullestWindow, IsTheMeanOfEqualOnes) {
  Sheet sheet(1, 10);
  sheet.blacken(0, 5, 6);
  EXPECT_EQ(window(sheet, {0, 0}, 4), 3);  // starts 2, 3, 4, 5
  EXPECT_EQ(window(Sheet(1, 10), {0, 0}, 4), 3);
  Sheet apart(1, 10);
  apart.blacken(0, 0, 2).blacken(0, 8, 10);
  EXPECT_EQ(window(apart, {0, 0}, 2), 4);  // starts 0 and 8
}

TEST(FullestWindow, ReachesTheFirstAndTheLastColumn) {
  EXPECT_EQ(window(Sheet(1, 10).blacken(0, 0, 4), {0, 0}, 4), 0);
  EXPECT_EQ(window(Sheet(1, 10).blacken(0, 6, 10), {0, 0}, 4), 6);
}

TEST(FullestWindow, LooksAtTheGivenRowsOnly) {
  Sheet sheet(5, 10);
  sheet.blacken(0, 0, 3).blacken(1, 7, 8).blacken(3, 9, 10).blacken(4, 0, 3);
  EXPECT_EQ(window(sheet, {1, 3}, 3), 7);
}

TEST(FullestWindow, IsTheWholeOfANarrowStrip) {
  EXPECT_EQ(window(Sheet(1, 3).blacken(0, 2, 3), {0, 0}, 4), 0);
  EXPECT_EQ(window(Sheet(1, 4).blacken(0, 2, 3), {0, 0}, 4), 0);
}

TEST(CompleteHeight, LeavesAFullCard) {
  EXPECT_EQ(complete_height({10, 29}, 20, {50, true}, {50, true}), (Band{10, 29}));
  EXPECT_EQ(complete_height({10, 39}, 20, {50, true}, {50, true}), (Band{10, 39}));
}

TEST(CompleteHeight, SharesWhatIsMissing) {
  EXPECT_EQ(complete_height({100, 109}, 20, {50, false}, {60, false}), (Band{95, 114}));
  // Of an odd number the second side gets the larger half: above, then below.
  EXPECT_EQ(complete_height({100, 109}, 21, {50, false}, {60, false}), (Band{95, 115}));
  EXPECT_EQ(complete_height({100, 109}, 21, {60, false}, {50, false}), (Band{94, 114}));
}

TEST(CompleteHeight, StartsBelowWhenBothSidesAreEqual) {
  EXPECT_EQ(complete_height({100, 109}, 21, {50, false}, {50, false}), (Band{95, 115}));
}

TEST(CompleteHeight, LeavesANeighbourHalfOfTheRoom) {
  EXPECT_EQ(complete_height({100, 109}, 30, {7, false}, {40, false}), (Band{97, 126}));
  EXPECT_EQ(complete_height({100, 109}, 60, {7, false}, {40, false}), (Band{97, 129}));
  EXPECT_EQ(complete_height({100, 109}, 60, {40, false}, {7, false}), (Band{80, 112}));
}

TEST(CompleteHeight, TakesAllRoomToTheEdge) {
  EXPECT_EQ(complete_height({7, 16}, 30, {7, true}, {40, false}), (Band{0, 29}));
  EXPECT_EQ(complete_height({7, 16}, 90, {7, true}, {40, true}), (Band{0, 56}));
}

TEST(CompleteHeight, WithoutRoomNothingGrows) {
  EXPECT_EQ(complete_height({0, 9}, 20, {0, true}, {0, true}), (Band{0, 9}));
  EXPECT_EQ(complete_height({5, 9}, 20, {1, false}, {1, false}), (Band{5, 9}));
}

TEST(CompleteHeights, ReachToTheCompletedCardBelowAndToTheGroupAboveAsItIs) {
  const std::vector<Band> bands{{10, 19}, {40, 49}, {70, 79}};
  Groups groups;
  groups.count = 3;
  groups.start = {0, 1, 2, 3};
  const auto cards = complete_heights(bands, groups, 40, 100);
  EXPECT_EQ(cards[0], (Band{0, 29}));   // room 10 to the edge and 21 to row 40, of which half is used
  EXPECT_EQ(cards[1], (Band{35, 59}));  // room 11 to row 29 and 21 to row 70
  EXPECT_EQ(cards[2], (Band{65, 99}));  // room 11 to row 59 and 20 to the edge
}

TEST(CompleteHeights, OneGroupReachesToBothEdges) {
  const std::vector<Band> bands{{4, 5}};
  Groups groups;
  groups.count = 1;
  groups.start = {0, 1};
  EXPECT_EQ(complete_heights(bands, groups, 100, 12)[0], (Band{0, 11}));
}

}  // namespace
