// How quadrilaterals are turned and how records of other versions are filled: what no scan shows exactly.
#include <gtest/gtest.h>

#include <cmath>

#include "cards/quad.h"
#include "cards/record.h"

namespace {

using vantrel::cards::direction;

TEST(Direction, IsExactAlongTheAxes) {
  EXPECT_EQ(direction(1, 0), 0.0);
  EXPECT_EQ(direction(7, 7), 45.0);
  EXPECT_EQ(direction(0, 3), 90.0);
  EXPECT_EQ(direction(-2, 0), 180.0);
  EXPECT_EQ(direction(0, -5), -90.0);
  EXPECT_EQ(direction(0, 0), 0.0);
}

TEST(Direction, AgreesWithTheArctangentAllRound) {
  for (int step = -17999; step <= 18000; ++step) {
    const double degrees = step / 100.0;
    const double x = 812.5 * std::cos(degrees * M_PI / 180);
    const double y = 812.5 * std::sin(degrees * M_PI / 180);
    ASSERT_NEAR(direction(x, y), degrees, 1e-12);
  }
}

TEST(Direction, NeedsNoMiddlingNumbers) {
  EXPECT_NEAR(direction(1e-300, 1e-300), 45.0, 1e-12);
  EXPECT_NEAR(direction(1e300, -1e300), -45.0, 1e-12);
  EXPECT_NEAR(direction(1e300, 1e-300), 0.0, 1e-12);
}

TEST(Tilt, IsTheMeanOfTheUpperAndTheLowerEdge) {
  EXPECT_EQ(vantrel::cards::tilt({{0, 0}, {10, 10}, {20, 30}, {0, 30}}), 22.5);
  EXPECT_EQ(vantrel::cards::tilt({{0, 0}, {10, 0}, {10, 5}, {0, 5}}), 0.0);
}

TEST(Area, HasTheSignOfTheOrderOfCorners) {
  EXPECT_EQ(vantrel::cards::area({{0, 0}, {4, 0}, {4, 3}, {0, 3}}), 12.0);
  EXPECT_EQ(vantrel::cards::area({{4, 0}, {0, 0}, {0, 3}, {4, 3}}), -12.0);
}

/** A record in its second version: `added` came later. */
struct Record {
  std::size_t size;
  int first;
  int second;
  int added;
};
constexpr std::size_t kFirstVersion = offsetof(Record, added);
constexpr Record kKnown = {sizeof(Record), 1, 2, 3};

TEST(GrownRecord, FillsTheMembersThatAnOlderProgramKnows) {
  Record old = {kFirstVersion, -1, -1, -1};
  EXPECT_EQ(vantrel::cards::give(kKnown, kFirstVersion, old), VANTREL_OK);
  EXPECT_EQ(old.size, kFirstVersion);
  EXPECT_EQ(old.first, 1);
  EXPECT_EQ(old.second, 2);
  EXPECT_EQ(old.added, -1);
}

TEST(GrownRecord, FillsTheMembersThatTheLibraryKnows) {
  struct {
    Record record;
    int later;
  } newer = {{sizeof newer, -1, -1, -1}, -1};
  EXPECT_EQ(vantrel::cards::give(kKnown, kFirstVersion, newer.record), VANTREL_OK);
  EXPECT_EQ(newer.record.size, sizeof newer);
  EXPECT_EQ(newer.record.added, 3);
  EXPECT_EQ(newer.later, -1);
}

TEST(GrownRecord, WasNeverSmaller) {
  Record record = {kFirstVersion - 1, -1, -1, -1};
  EXPECT_EQ(vantrel::cards::give(kKnown, kFirstVersion, record), VANTREL_ERROR_OPTION);
  EXPECT_EQ(record.first, -1);
}

}  // namespace
