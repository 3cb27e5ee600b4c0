// The search for a pair of borders with cells for some angles at a time: the same pair as with cells for all of them.
#include <gtest/gtest.h>

#include <vector>

#include "lines/pair_search.h"
#include "support/random.h"

namespace {

using namespace vantrel::lines;
using vantrel::geometry::Line;

bool same(const Line& a, const Line& b) { return a.a == b.a && a.b == b.b && a.c == b.c; }

/** Points of two level or two upright, leaning lines, and strewn ones. */
std::vector<EdgePoint> points_of(support::Random& random, int rows, int cols, bool horizontal, int strewn) {
  std::vector<EdgePoint> points;
  const int length = horizontal ? cols : rows;
  const int breadth = horizontal ? rows : cols;
  for (const int at : {random.pick(0, breadth - 1), random.pick(0, breadth - 1)}) {
    const double lean = random.real(-0.2, 0.2);
    for (int i = 0; i < length; ++i) {
      const auto along = static_cast<float>(i);
      const auto across = static_cast<float>(static_cast<int>(at + lean * i));
      points.push_back(horizontal ? EdgePoint{across, along} : EdgePoint{along, across});
    }
  }
  for (int i = 0; i < strewn; ++i) {
    const auto row = static_cast<float>(random.pick(0, rows - 1));
    points.push_back({row, static_cast<float>(random.pick(0, cols - 1))});
  }
  const Centre centre(rows, cols);
  for (EdgePoint& point : points) point = centre.relative(point);
  return points;
}

TEST(SlicedPairSearch, FindsTheSamePair) {
  support::Random random(11);
  const DegreeTables tables;
  int found = 0;
  for (int round = 0; round < 120; ++round) {
    const int rows = random.pick(2, 200);
    const int cols = random.pick(2, 200);
    const bool horizontal = random.one_in(2);
    const std::vector<EdgePoint> points = points_of(random, rows, cols, horizontal, random.pick(0, 50));
    PairSearch whole(rows, cols, horizontal, tables);
    ASSERT_TRUE(whole.ready());
    whole.vote(points);
    const BorderPair expected = whole.find();
    found += expected.found ? 1 : 0;
    for (const int angles : {1, 2, 7, 40, 60}) {
      const SlicedPairSearch sliced(rows, cols, horizontal, tables, angles, [&](auto& votes) { votes.vote(points); });
      bool ready = false;
      const BorderPair pair = sliced.find(ready);
      ASSERT_TRUE(ready);
      ASSERT_EQ(pair.found, expected.found) << round << " by " << angles;
      if (!pair.found) continue;
      EXPECT_TRUE(same(pair.first, expected.first)) << round << " by " << angles;
      EXPECT_TRUE(same(pair.second, expected.second)) << round << " by " << angles;
    }
  }
  EXPECT_GE(found, 30);
}

TEST(SlicedPairSearch, TakesTheNearestOfEqualCellsLikeTheWholeSearch) {
  // Two points on one level row: many cells have two votes or next to it, and most of them tie.
  const DegreeTables tables;
  const std::vector<EdgePoint> points = {{0, 0}, {0, 0}, {3, 1}, {3, 1}};
  for (const bool horizontal : {true, false}) {
    PairSearch whole(8, 4, horizontal, tables);
    whole.vote(points);
    const BorderPair expected = whole.find();
    ASSERT_TRUE(expected.found);
    const SlicedPairSearch sliced(8, 4, horizontal, tables, 1, [&](auto& votes) { votes.vote(points); });
    bool ready = false;
    const BorderPair pair = sliced.find(ready);
    ASSERT_TRUE(ready && pair.found);
    EXPECT_TRUE(same(pair.first, expected.first));
    EXPECT_TRUE(same(pair.second, expected.second));
  }
}

}  // namespace
