#include <gtest/gtest.h>

#include <vector>

#include "segment/groups.h"

namespace {

using namespace vantrel::segment;
using Bands = std::vector<Span>;

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
  EXPECT_EQ(merged({{0, 100}, {110, 220}}, 220), (Starts{0, 2}));
  EXPECT_EQ(merged({{0, 100}, {110, 221}}, 220), (Starts{0, 1, 2}));
}

TEST(MergeBands, GreedilyFromTheFirst) {
  EXPECT_EQ(merged({{0, 10}, {20, 30}, {50, 60}, {70, 80}, {95, 100}}, 50), (Starts{0, 2, 5}));
}

TEST(MergeBands, AHighBandStandsAlone) {
  EXPECT_EQ(merged({{0, 10}, {20, 321}, {330, 340}}, 50), (Starts{0, 1, 2, 3}));
}

TEST(MergeBands, FiveGroupsAtMost) {
  EXPECT_EQ(merged({{0, 10}, {100, 110}, {200, 210}, {300, 310}, {400, 410}, {420, 430}, {500, 510}, {600, 610}}, 50),
            (Starts{0, 1, 2, 3, 4, 6}));
}

TEST(MergeBands, NoBandsNoGroups) { EXPECT_EQ(merged({}, 50), (Starts{0})); }

TEST(ReassignByCentre, ABandAtTheLineBelongsToTheUpperGroup) {
  // Centres 38 and 151, line 94; the band's midpoint is 94, then 93.
  EXPECT_EQ(reassigned({{0, 60}, {90, 100}, {101, 202}}, {0, 2, 3}), (Starts{0, 1, 3}));
  EXPECT_EQ(reassigned({{0, 60}, {89, 99}, {101, 202}}, {0, 2, 3}), (Starts{0, 2, 3}));
}

TEST(ReassignByCentre, MovesDownwardsToo) {
  // Centres 4 and 92, line 48; the first band of the upper group has its midpoint at 22.
  EXPECT_EQ(reassigned({{0, 10}, {20, 25}, {90, 120}}, {0, 1, 3}), (Starts{0, 2, 3}));
}

TEST(ReassignByCentre, AGroupWithoutBandsIsDropped) {
  // Centres 75, 150, 241, lines 112 and 195: both bands of the middle group belong to its neighbours.
  const Bands bands{{0, 2}, {60, 100}, {101, 103}, {199, 201}, {202, 282}};
  EXPECT_EQ(merged(bands, 100), (Starts{0, 2, 4, 5}));
  EXPECT_EQ(reassigned(bands, {0, 2, 4, 5}), (Starts{0, 3, 5}));
}

TEST(ReassignByCentre, SumsOfManyRowsDoNotOverflow) {
  EXPECT_EQ(reassigned({{0, 200000}, {290000, 290100}, {400000, 600000}}, {0, 1, 3}), (Starts{0, 2, 3}));
}

TEST(ReassignByCentre, OneGroupOrNoneStays) {
  EXPECT_EQ(reassigned({{0, 10}, {20, 30}}, {0, 2}), (Starts{0, 2}));
  EXPECT_EQ(reassigned({}, {0}), (Starts{0}));
}

TEST(BalanceByMidpoint, DividesAtTheMiddleOfBoth) {
  EXPECT_EQ(balanced_by_midpoint({{0, 10}, {20, 30}, {90, 100}}, {0, 1, 3}), (Starts{0, 2, 3}));
  EXPECT_EQ(balanced_by_midpoint({{0, 10}, {70, 80}, {90, 100}}, {0, 2, 3}), (Starts{0, 1, 3}));
}

TEST(BalanceByMidpoint, ABandAtTheLineGoesUp) {
  // Line 49; midpoints 49 and 48.
  EXPECT_EQ(balanced_by_midpoint({{0, 10}, {45, 55}, {90, 100}}, {0, 2, 3}), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_midpoint({{0, 10}, {44, 54}, {90, 100}}, {0, 1, 3}), (Starts{0, 2, 3}));
}

TEST(BalanceByMidpoint, SweepsBackwardsToo) {
  // The lower pair is settled at first; it moves only after the upper pair has.
  EXPECT_EQ(balanced_by_midpoint({{0, 10}, {19, 29}, {40, 50}, {200, 210}}, {0, 1, 2, 4}), (Starts{0, 2, 3, 4}));
}

TEST(BalanceByHeight, LeavesTwoCardsAloneExceptOnThreeGrounds) {
  // Groups of 70 and 53 rows, 11 apart. With the middle band moved they have 53 and 68 rows, 13 apart.
  EXPECT_EQ(balanced_by_height({{0, 53}, {65, 70}, {80, 133}}, {0, 2, 3}, 70, 11), (Starts{0, 2, 3}));
  // Too high.
  EXPECT_EQ(balanced_by_height({{0, 53}, {65, 70}, {80, 133}}, {0, 2, 3}, 69, 11), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 53}, {63, 68}, {80, 133}}, {0, 1, 3}, 70, 11), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 53}, {63, 68}, {80, 133}}, {0, 1, 3}, 69, 11), (Starts{0, 2, 3}));
  // Too close.
  EXPECT_EQ(balanced_by_height({{0, 53}, {65, 70}, {80, 133}}, {0, 2, 3}, 70, 12), (Starts{0, 1, 3}));
  // Too unlike: 52 of 70 rows are less than three quarters, 60 of 80 are not.
  EXPECT_EQ(balanced_by_height({{0, 53}, {65, 70}, {80, 132}}, {0, 2, 3}, 70, 11), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 62}, {75, 80}, {90, 150}}, {0, 2, 3}, 80, 11), (Starts{0, 2, 3}));
}

TEST(BalanceByHeight, OnlyDownwardsOrOnlyUpwards) {
  EXPECT_EQ(balanced_by_height({{0, 40}, {60, 100}, {110, 120}}, {0, 2, 3}, 100, 10), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 10}, {20, 60}, {80, 120}}, {0, 1, 3}, 100, 10), (Starts{0, 2, 3}));
}

TEST(BalanceByHeight, AGroupKeepsOneBand) {
  EXPECT_EQ(balanced_by_height({{0, 10}, {20, 120}}, {0, 1, 2}, 100, 10), (Starts{0, 1, 2}));
}

TEST(BalanceByHeight, OfTwoMovesTheBetterOneIsMade) {
  // Boundaries 1, 2, 3 of one card of 100 rows split too closely at 2: ratios of 40/55 and 70/25, then the other way.
  EXPECT_EQ(balanced_by_height({{0, 40}, {45, 60}, {61, 71}, {76, 100}}, {0, 2, 4}, 100, 5), (Starts{0, 1, 4}));
  EXPECT_EQ(balanced_by_height({{0, 24}, {29, 39}, {40, 55}, {60, 100}}, {0, 2, 4}, 100, 5), (Starts{0, 3, 4}));
}

TEST(BalanceByHeight, OfTwoEqualMovesNoneIsMade) {
  EXPECT_EQ(balanced_by_height({{0, 40}, {45, 49}, {51, 55}, {60, 100}}, {0, 2, 4}, 100, 5), (Starts{0, 2, 4}));
}

TEST(BalanceByHeight, AMoveMustLeaveTheGap) {
  EXPECT_EQ(balanced_by_height({{0, 66}, {73, 80}, {81, 150}}, {0, 2, 3}, 100, 8), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 66}, {73, 80}, {81, 150}}, {0, 2, 3}, 100, 9), (Starts{0, 2, 3}));
}

TEST(BalanceByHeight, AMoveMayCostAQuarterOfTheRatio) {
  // Two groups of 80 rows, 2 apart. Moving the middle band leaves 66 and 88 rows, exactly three quarters; then 65.
  EXPECT_EQ(balanced_by_height({{0, 66}, {73, 80}, {81, 161}}, {0, 2, 3}, 100, 5), (Starts{0, 1, 3}));
  EXPECT_EQ(balanced_by_height({{0, 65}, {73, 80}, {81, 161}}, {0, 2, 3}, 100, 5), (Starts{0, 2, 3}));
}

TEST(BalanceByHeight, EndsWhenAMoveIsTakenBackInEveryRound) {
  EXPECT_EQ(balanced_by_height({{0, 40}, {60, 100}, {120, 160}}, {0, 1, 3}, 50, 10), (Starts{0, 1, 3}));
}

TEST(BalanceByHeight, MakesTwelveMovesAtMost) {
  // Even heights are 30 bands away; six rounds of two sweeps each move 12.
  Bands bands;
  for (int i = 0; i < 60; ++i) bands.push_back({20 * i, 20 * i + 10});
  EXPECT_EQ(balanced_by_height(bands, {0, 1, 60}, 2000, 10), (Starts{0, 13, 60}));
}

TEST(Groups, RowsIncludeTheGaps) {
  const Bands bands{{5, 10}, {20, 25}, {40, 42}};
  EXPECT_EQ(rows_of(bands, groups_from({0, 2, 3}), 0), (Span{5, 25}));
  EXPECT_EQ(rows_of(bands, groups_from({0, 2, 3}), 1), (Span{40, 42}));
}

}  // namespace
