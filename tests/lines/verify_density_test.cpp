// The tests of candidate border lines by the edges beyond them.
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "lines/exports.h"
#include "support/image.h"

namespace {

// ---- Two horizontal candidates ----

/** An edge map in which row r has `counts[r]` edge pixels. */
class DensityMap {
 public:
  DensityMap(int rows, int cols)
      : rows_(rows),
        cols_(cols),
        stride_(support::stride_of(cols, 8)),
        edge_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(stride_), 255) {}
  DensityMap& set(int from, int to, int count) {
    for (int r = from; r <= to; ++r) {
      for (int c = 0; c < cols_; ++c) at(r, c) = c < count ? 0 : 255;
    }
    return *this;
  }
  DensityMap& set(int row, int count) { return set(row, row, count); }
  unsigned char& at(int r, int c) {
    return edge_[static_cast<std::size_t>(r) * static_cast<std::size_t>(stride_) + static_cast<std::size_t>(c)];
  }
  /** Whether the second candidate is preferred. */
  bool second(int L1, int L2, int side) {
    return VerifyCorrectLineV_0(edge_.data(), nullptr, nullptr, L1, L2, rows_, cols_, side);
  }

 private:
  int rows_, cols_, stride_;
  std::vector<unsigned char> edge_;
};

/** 100 rows of 40 columns, rows L1 and L2 with 30 edge pixels: a tenth of the row length is 4. */
DensityMap two_lines(int L1, int L2) { return DensityMap(100, 40).set(L1, 30).set(L2, 30); }

TEST(VerifyCorrectLineV0, KeepsTheFirstWhenTheTwoAreNineRowsApart) {
  EXPECT_FALSE(two_lines(60, 51).set(61, 69, 20).second(60, 51, 0));
  EXPECT_TRUE(two_lines(60, 50).set(61, 69, 20).second(60, 50, 0));
  EXPECT_FALSE(VerifyCorrectLineV_0(nullptr, nullptr, nullptr, 60, 51, 100, 40, 0));  // without looking
  EXPECT_FALSE(VerifyCorrectLineV_0(nullptr, nullptr, nullptr, 51, 60, 100, 40, 1));
}

TEST(VerifyCorrectLineV0, KeepsTheFirstWhenBothAreNearTheSameEdge) {
  EXPECT_FALSE(VerifyCorrectLineV_0(nullptr, nullptr, nullptr, -1, 9, 100, 40, 1));
  EXPECT_FALSE(VerifyCorrectLineV_0(nullptr, nullptr, nullptr, 90, 100, 100, 40, 0));
}

TEST(VerifyCorrectLineV0, NeedsMoreThanTenTimesAsManyEdgePixels) {
  EXPECT_TRUE(two_lines(60, 40).set(61, 69, 11).set(41, 49, 1).second(60, 40, 0));   // 99 to 9
  EXPECT_FALSE(two_lines(60, 40).set(61, 69, 10).set(41, 49, 1).second(60, 40, 0));  // 90 to 9
  EXPECT_FALSE(two_lines(60, 40).second(60, 40, 0));                                 // 0 to 0
  EXPECT_TRUE(two_lines(60, 40).set(61, 1).second(60, 40, 0));                       // 1 to 0
}

TEST(VerifyCorrectLineV0, AddsRowPairsThatBothDifferFromTheirLines) {
  EXPECT_FALSE(two_lines(60, 40).set(61, 69, 27).set(41, 49, 1).second(60, 40, 0));  // 3 from the line's 30
  EXPECT_TRUE(two_lines(60, 40).set(61, 69, 26).set(41, 49, 1).second(60, 40, 0));
  EXPECT_TRUE(two_lines(60, 40).set(61, 69, 34).set(41, 49, 1).second(60, 40, 0));
  EXPECT_FALSE(two_lines(60, 40).set(61, 69, 33).set(41, 49, 1).second(60, 40, 0));
  EXPECT_FALSE(two_lines(60, 40).set(40, 4).set(61, 69, 20).set(41, 49, 1).second(60, 40, 0));  // 3 from 4
  EXPECT_TRUE(two_lines(60, 40).set(40, 5).set(61, 69, 20).set(41, 49, 1).second(60, 40, 0));
}

TEST(VerifyCorrectLineV0, WalksNineRowsBeyondOnTheTopSide) {
  for (const bool first_is_higher : {true, false}) {
    const int L1 = first_is_higher ? 60 : 40, L2 = first_is_higher ? 40 : 60;
    EXPECT_FALSE(two_lines(L1, L2).set(L1 - 1, 20).second(L1, L2, 0));
    EXPECT_TRUE(two_lines(L1, L2).set(L1 + 1, 20).second(L1, L2, 0));
    EXPECT_TRUE(two_lines(L1, L2).set(L1 + 9, 20).second(L1, L2, 0));
    EXPECT_FALSE(two_lines(L1, L2).set(L1 + 10, 20).second(L1, L2, 0));
    // a row of 2 in the second's range outweighs 20
    EXPECT_FALSE(two_lines(L1, L2).set(L1 + 1, 20).set(L2 + 9, 2).second(L1, L2, 0));
    EXPECT_TRUE(two_lines(L1, L2).set(L1 + 1, 20).set(L2 + 10, 2).second(L1, L2, 0));
  }
}

TEST(VerifyCorrectLineV0, StopsBeforeTheLastRowOnTheTopSide) {
  EXPECT_TRUE(two_lines(95, 40).set(98, 20).second(95, 40, 0));
  EXPECT_FALSE(two_lines(95, 40).set(99, 20).second(95, 40, 0));
  EXPECT_TRUE(two_lines(40, 90).set(48, 20).second(40, 90, 0));   // with row 98
  EXPECT_FALSE(two_lines(40, 90).set(49, 20).second(40, 90, 0));  // with row 99
  EXPECT_TRUE(two_lines(40, 89).set(49, 20).second(40, 89, 0));   // with row 98
}

TEST(VerifyCorrectLineV0, WalksTheRowsBeforeOnTheOtherSides) {
  for (const int side : {1, 2, 3}) {
    // the first nearer to the edge: rows 30 to 38 with rows 49 to 57
    EXPECT_FALSE(two_lines(40, 60).set(29, 20).second(40, 60, side));
    EXPECT_TRUE(two_lines(40, 60).set(30, 20).second(40, 60, side));
    EXPECT_TRUE(two_lines(40, 60).set(38, 20).second(40, 60, side));
    EXPECT_FALSE(two_lines(40, 60).set(39, 20).second(40, 60, side));
    EXPECT_FALSE(two_lines(40, 60).set(30, 20).set(49, 2).second(40, 60, side));
    EXPECT_FALSE(two_lines(40, 60).set(30, 20).set(57, 2).second(40, 60, side));
    EXPECT_TRUE(two_lines(40, 60).set(30, 20).set(48, 2).second(40, 60, side));
    EXPECT_TRUE(two_lines(40, 60).set(30, 20).set(58, 2).second(40, 60, side));
    // the second nearer to the edge: rows 50 to 58 with rows 30 to 38
    EXPECT_FALSE(two_lines(60, 40).set(49, 20).second(60, 40, side));
    EXPECT_TRUE(two_lines(60, 40).set(50, 20).second(60, 40, side));
    EXPECT_TRUE(two_lines(60, 40).set(58, 20).second(60, 40, side));
    EXPECT_FALSE(two_lines(60, 40).set(59, 20).second(60, 40, side));
    EXPECT_FALSE(two_lines(60, 40).set(50, 20).set(30, 2).second(60, 40, side));
    EXPECT_FALSE(two_lines(60, 40).set(50, 20).set(38, 2).second(60, 40, side));
    EXPECT_TRUE(two_lines(60, 40).set(50, 20).set(29, 2).second(60, 40, side));
    EXPECT_TRUE(two_lines(60, 40).set(50, 20).set(39, 2).second(60, 40, side));
  }
}

TEST(VerifyCorrectLineV0, DoesNotShiftThePartnerOfAClampedStart) {
  // the second at row 5: rows 0 to 3 with rows 50 to 53
  EXPECT_TRUE(two_lines(60, 5).set(50, 20).second(60, 5, 1));
  EXPECT_TRUE(two_lines(60, 5).set(53, 20).second(60, 5, 1));
  EXPECT_FALSE(two_lines(60, 5).set(54, 20).second(60, 5, 1));
  // the first at row 5: rows 0 to 3 with rows 49 to 52
  EXPECT_FALSE(two_lines(5, 60).set(0, 20).set(49, 2).second(5, 60, 1));
  EXPECT_FALSE(two_lines(5, 60).set(0, 20).set(52, 2).second(5, 60, 1));
  EXPECT_TRUE(two_lines(5, 60).set(0, 20).set(53, 2).second(5, 60, 1));
}

TEST(VerifyCorrectLineV0, CountsPaddingBytesOfZero) {
  DensityMap map(100, 37);  // three bytes of padding
  map.set(60, 30).set(40, 30).set(41, 2);
  EXPECT_FALSE(map.second(60, 40, 0));
  for (int r = 61; r <= 69; ++r) {
    for (int c = 37; c < 40; ++c) map.at(r, c) = 0;
  }
  EXPECT_TRUE(map.second(60, 40, 0));  // 27 to 2
}

TEST(VerifyCorrectLineV0, WrapsCountsAtSixteenBits) {
  DensityMap map(40, 65540);
  map.set(25, 30000).set(5, 30000);
  EXPECT_TRUE(DensityMap(map).set(26, 65535).second(25, 5, 0));
  EXPECT_FALSE(DensityMap(map).set(26, 65536).second(25, 5, 0));  // counted as none
}

TEST(VerifyCorrectLineV0, KeepsTheFirstForLinesBeyondTheImage) {
  // two such lines are near the same edge, or too near each other, or leave no row between a line and its edge
  constexpr int least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
  DensityMap map(100, 40);
  map.set(0, 99, 17);
  for (const int L1 : {least, -1000, -11, -10, -1, 0, 5, 99, 100, 101, 110, 1000, most}) {
    for (const int L2 : {least, -1000, -11, -10, -1, 0, 5, 99, 100, 101, 110, 1000, most}) {
      for (const int side : {0, 1}) EXPECT_FALSE(map.second(L1, L2, side)) << L1 << ", " << L2 << ", side " << side;
    }
  }
}

// ---- The stand-alone density test ----

/** Row counts of 100 packed rows of 100 bytes. */
struct PackedMap {
  std::vector<unsigned char> edge = std::vector<unsigned char>(100 * 100, 255);

  PackedMap& set(int row, int count) {
    for (int c = 0; c < 100; ++c) edge[static_cast<std::size_t>(100 * row + c)] = c < count ? 0 : 255;
    return *this;
  }
  bool accepts(int L, int side) { return VerifyCorrectLineV_1(edge.data(), nullptr, nullptr, L, 100, 100, side); }
};

TEST(VerifyCorrectLineV1, RejectsBetweenATwentySecondAndASixteenth) {
  // below row 22: 2000 bytes, counted in rows 0 to 18
  for (const int side : {1, 2, 3}) {
    EXPECT_TRUE(PackedMap().accepts(22, side));
    EXPECT_TRUE(PackedMap().set(0, 90).accepts(22, side));                // 22 * 90 = 1980
    EXPECT_FALSE(PackedMap().set(0, 91).accepts(22, side));               // 22 * 91 = 2002
    EXPECT_FALSE(PackedMap().set(0, 100).set(18, 24).accepts(22, side));  // 16 * 124 = 1984
    EXPECT_TRUE(PackedMap().set(0, 100).set(18, 25).accepts(22, side));   // 16 * 125 = 2000
  }
}

TEST(VerifyCorrectLineV1, RejectsAboveTheLineOnTheTopSide) {
  // above row 77: 2000 bytes, counted in rows 80 to 98
  EXPECT_TRUE(PackedMap().set(80, 90).accepts(77, 0));
  EXPECT_FALSE(PackedMap().set(80, 91).accepts(77, 0));
  EXPECT_FALSE(PackedMap().set(80, 100).set(98, 24).accepts(77, 0));
  EXPECT_TRUE(PackedMap().set(80, 100).set(98, 25).accepts(77, 0));
}

TEST(VerifyCorrectLineV1, LeavesOutTheRowsNextToTheLineAndTheLastRow) {
  EXPECT_FALSE(PackedMap().set(18, 91).accepts(22, 1));
  EXPECT_TRUE(PackedMap().set(19, 91).accepts(22, 1));
  EXPECT_TRUE(PackedMap().set(79, 91).accepts(77, 0));
  EXPECT_FALSE(PackedMap().set(98, 91).accepts(77, 0));
  EXPECT_TRUE(PackedMap().set(99, 91).accepts(77, 0));
}

TEST(VerifyCorrectLineV1, AcceptsLinesWithoutRoomBeyond) {
  PackedMap dense;
  for (int r = 0; r < 100; ++r) dense.set(r, 5);  // a twentieth everywhere
  EXPECT_TRUE(dense.accepts(2, 1));
  EXPECT_TRUE(dense.accepts(3, 1));  // no row, an area of one
  EXPECT_TRUE(dense.accepts(97, 0));
  EXPECT_TRUE(dense.accepts(96, 0));
  EXPECT_FALSE(dense.accepts(50, 0));
  EXPECT_FALSE(dense.accepts(50, 1));
}

TEST(VerifyCorrectLineV1, StaysInsideTheImageForLinesBeyondIt) {
  constexpr int least = std::numeric_limits<int>::min(), most = std::numeric_limits<int>::max();
  PackedMap dense;
  for (int r = 0; r < 100; ++r) dense.set(r, 5);
  // The band grows with the line's distance, 100 bytes a row, the count only up to the image's edge: at most 500 on the
  // bottom side and 495 on the top, which leaves out the last row.
  const struct {
    int L;
    bool top, bottom;
  } cases[] = {{least, true, true},                           // 22 * 495 is far less than the band
               {least + 3, true, true}, {-1000, true, true},  // 22 * 495 = 10890 of 109700
               {-4, false, true},                             // 16 * 495 = 7920, 10890 of 10100
               {-3, false, true},                             // of 10000
               {-1, false, true},                             // 16 * 485 = 7760, 22 * 485 = 10670 of 9800
               {0, false, true},                              // 16 * 480 = 7680, 22 * 480 = 10560 of 9700
               {99, true, false},                             // the same 96 rows
               {100, true, false},                            //
               {103, true, false},                            // 16 * 500 = 8000, 22 * 500 = 11000 of 10100
               {104, true, false},                            // of 10200
               {105, true, false},                            // of 10300
               {1000, true, true},                            // of 99800
               {most - 3, true, true},                        //
               {most, true, true}};
  for (const auto& c : cases) {
    EXPECT_EQ(dense.accepts(c.L, 0), c.top) << c.L;
    EXPECT_EQ(dense.accepts(c.L, 1), c.bottom) << c.L;
  }
}

}  // namespace
