#include <gtest/gtest.h>

#include <vector>

#include "segment/groups.h"

namespace {

using namespace vantrel;
using Bands = std::vector<Band>;

/** The starts of the groups' bands and the end of the last, as given or as found. */
using Starts = std::vector<int>;

Groups groups_from(const Starts& starts) {
  Groups groups;
  groups.count = static_cast<int>(starts.size()) - 1;
  std::copy(starts.begin(), starts.end(), groups.start.begin());
  return groups;
}

Starts starts_of(const Groups& groups) { return {groups.start.begin(), groups.start.begin() + groups.count + 1}; }

Starts merged(const Bands& bands, int card_height) { return starts_of(merge_bands(bands, card_height)); }

Starts reassigned(const Bands& bands, const Starts& starts) {
  Groups groups = groups_from(starts);
  reassign_by_centre(bands, groups);
  return starts_of(groups);
}

Starts balanced_by_midpoint(const Bands& bands, const Starts& starts) {
  Groups groups = groups_from(starts);
  balance_by_midpoint(bands, groups);
  return starts_of(groups);
}

Starts balanced_by_height(const Bands& bands, const Starts& starts, int card_height, int least_gap) {
  CardSize size{};
  size.height = card_height;
  size.least_gap = least_gap;
  Groups groups = groups_from(starts);
  balance_by_height(bands, groups, size);
  return starts_of(groups);
}

TEST(MergeBands, UpToTheHeightOfACard) {
  EXPECT_EQ(merged({{0, 99}, {110, 219}}, 220), (Starts{0, 2}));
  EXPECT_EQ(merged({{0, 99}, {110, 220}}, 220), (Starts{0, 1, 2}));
}

TEST(MergeBands, GreedilyFromTheFirst) {
  EXPECT_EQ(merged({{0, 9}, {20, 29}, {50, 59}, {70, 79}, {95, 99}}, 50), (Starts{0, 2, 5}));
}

TEST(MergeBands, AHighBandStandsAlone) { EXPECT_EQ(merged({{0, 9}, {20, 320}, {330, 339}}, 50), (Starts{0, 1, 2, 3})); }

TEST(MergeBands, FiveGroupsAtMost) {
  EXPECT_EQ(merged({{0, 9}, {100, 109}, {200, 209}, {300, 309}, {400, 409}, {420, 429}, {500, 509}, {600, 609}}, 50),
            (Starts{0, 1, 2, 3, 4, 6}));
}

TEST(MergeBands, NoBandsNoGroups) { EXPECT_EQ(merged({}, 50), (Starts{0})); }

TEST(ReassignByCentre, ABandAtTheLineBelongsToTheUpperGroup) {
  // Centres 38 and 151, line 94; the band's midpoint is 94, then 93.
  EXPECT_EQ(reassigned({{0, 59}, {90, 99}, {101, 201}}, {0, 2, 3}), (Starts{0, 1, 3}));
  EXPECT_EQ(reassigned({{0, 59}, {89, 98}, {101, 201}}, {0, 2, 3}), (Starts{0, 2, 3}));
}

TEST(ReassignByCentre, MovesDownwardsToo) {
  // Centres 4 and 92, line 48; the first band of the upper group has its midpoint at 22.
  EXPECT_EQ(reassigned({{0, 9}, {20, 24}, {90, 119}}, {0, 1, 3}), (Starts{0, 2, 3}));
}

TEST(ReassignByCentre, AGroupWithoutBandsIsDropped) {
  // Centres 75, 150, 241, lines 112 and 195: both bands of the middle group belong to its neighbours.
  const Bands bands{{0, 1}, {60, 99}, {101, 102}, {199, 200}, {202, 281}};
  EXPECT_EQ(merged(bands, 100), (Starts{0, 2, 4, 5}));
  EXPECT_EQ(reassigned(bands, {0, 2, 4, 5}), (Starts{0, 3, 5}));
}

TEST(ReassignByCentre, SumsOfManyRowsDoNotOverflow) {
  EXPECT_EQ(reassigned({{0, 199999}, {290000, 290099}, {400000, 599999}}, {0, 1, 3}), (Starts{0, 2, 3}));
}

TEST(ReassignByCentre, OneGroupOrNoneStays) {
  EXPECT_EQ(reassigned({{0, 9}, {20, 29}}, {0, 2}), (Starts{0, 2}));
  EXPECT_EQ(reassigned({}, {0}), (Starts{0}));
}

TEST(BalanceByMidpoint, DividesAtTheMiddleOfBoth) {
  EXPECT_EQ(balanced_by_midpoint({{0, 9}, {20, 29}, {90, 99}}, {0, 1, 3}), (Starts{0, 2, 3}));
  EXPECT_EQ(balanced_by_midpoint({{0, 9}, {70, 79}, {90, 99}}, {0, 2, 3}), (Starts{0, 1, 3}));
}

TEST(BalanceByMidpoint, ABandAtTheLineGoesUp) {
  // Line 49; midpoints 49 and 48.
  EXPECT_EQ(balanced_by_midpoint({{0, 9}, {45, 54}, {90, 99}}, {0, 2, 3}), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_midpoint({{0, 9}, {44, 53}, {90, 99}}, {0, 1, 3}), (Starts{0, 2, 3}));
}

TEST(BalanceByMidpoint, SweepsBackwardsToo) {
  // The lower pair is settled at first; it moves only after the upper pair has.
  EXPECT_EQ(balanced_by_midpoint({{0, 9}, {19, 28}, {40, 49}, {200, 209}}, {0, 1, 2, 4}), (Starts{0, 2, 3, 4}));
}

TEST(BalanceByHeight, LeavesTwoCardsAloneExceptOnThreeGrounds) {
  // Groups of 70 and 53 rows, 11 apart. With the middle band moved they have 53 and 68 rows, 13 apart.
  EXPECT_EQ(balanced_by_height({{0, 52}, {65, 69}, {80, 132}}, {0, 2, 3}, 70, 11), (Starts{0, 2, 3}));
  // Too high.
  EXPECT_EQ(balanced_by_height({{0, 52}, {65, 69}, {80, 132}}, {0, 2, 3}, 69, 11), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 52}, {63, 67}, {80, 132}}, {0, 1, 3}, 70, 11), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 52}, {63, 67}, {80, 132}}, {0, 1, 3}, 69, 11), (Starts{0, 2, 3}));
  // Too close.
  EXPECT_EQ(balanced_by_height({{0, 52}, {65, 69}, {80, 132}}, {0, 2, 3}, 70, 12), (Starts{0, 1, 3}));
  // Too unlike: 52 of 70 rows are less than three quarters, 60 of 80 are not.
  EXPECT_EQ(balanced_by_height({{0, 52}, {65, 69}, {80, 131}}, {0, 2, 3}, 70, 11), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 61}, {75, 79}, {90, 149}}, {0, 2, 3}, 80, 11), (Starts{0, 2, 3}));
}

TEST(BalanceByHeight, OnlyDownwardsOrOnlyUpwards) {
  EXPECT_EQ(balanced_by_height({{0, 39}, {60, 99}, {110, 119}}, {0, 2, 3}, 100, 10), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 9}, {20, 59}, {80, 119}}, {0, 1, 3}, 100, 10), (Starts{0, 2, 3}));
}

TEST(BalanceByHeight, AGroupKeepsOneBand) {
  EXPECT_EQ(balanced_by_height({{0, 9}, {20, 119}}, {0, 1, 2}, 100, 10), (Starts{0, 1, 2}));
}

TEST(BalanceByHeight, OfTwoMovesTheBetterOneIsMade) {
  // Boundaries 1, 2, 3 of one card of 100 rows split too closely at 2: ratios of 40/55 and 70/25, then the other way.
  EXPECT_EQ(balanced_by_height({{0, 39}, {45, 59}, {61, 70}, {76, 99}}, {0, 2, 4}, 100, 5), (Starts{0, 1, 4}));
  EXPECT_EQ(balanced_by_height({{0, 23}, {29, 38}, {40, 54}, {60, 99}}, {0, 2, 4}, 100, 5), (Starts{0, 3, 4}));
}

TEST(BalanceByHeight, OfTwoEqualMovesNoneIsMade) {
  EXPECT_EQ(balanced_by_height({{0, 39}, {45, 48}, {51, 54}, {60, 99}}, {0, 2, 4}, 100, 5), (Starts{0, 2, 4}));
}

TEST(BalanceByHeight, AMoveMustLeaveTheGap) {
  EXPECT_EQ(balanced_by_height({{0, 65}, {73, 79}, {81, 149}}, {0, 2, 3}, 100, 8), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 65}, {73, 79}, {81, 149}}, {0, 2, 3}, 100, 9), (Starts{0, 2, 3}));
}

TEST(BalanceByHeight, AMoveMayCostAQuarterOfTheRatio) {
  // Two groups of 80 rows, 2 apart. Moving the middle band leaves 66 and 88 rows, exactly three quarters; then 65.
  EXPECT_EQ(balanced_by_height({{0, 65}, {73, 79}, {81, 160}}, {0, 2, 3}, 100, 5), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 64}, {73, 79}, {81, 160}}, {0, 2, 3}, 100, 5), (Starts{0, 2, 3}));
}

TEST(BalanceByHeight, EndsWhenAMoveIsTakenBackInEveryRound) {
  EXPECT_EQ(balanced_by_height({{0, 39}, {60, 99}, {120, 159}}, {0, 1, 3}, 50, 10), (Starts{0, 1, 3}));
}

TEST(BalanceByHeight, MakesTwelveMovesAtMost) {
  // Even heights are 30 bands away; six rounds of two sweeps each move 12.
  Bands bands;
  for (int i = 0; i < 60; ++i) bands.push_back({20 * i, 20 * i + 9});
  EXPECT_EQ(balanced_by_height(bands, {0, 1, 60}, 2000, 10), (Starts{0, 13, 60}));
}

TEST(Groups, RowsIncludeTheGaps) {
  const Bands bands{{5, 9}, {20, 24}, {40, 41}};
  EXPECT_EQ(rows_of(bands, groups_from({0, 2, 3}), 0), (Band{5, 24}));
  EXPECT_EQ(rows_of(bands, groups_from({0, 2, 3}), 1), (Band{40, 41}));
}

}  // namespace
