// The tests of candidate border lines.
#include "lines/exports.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/image.h"

namespace {

/** A line of components, destroyed at the end of the scope. */
class Components {
 public:
  Components() {
    EXPECT_TRUE(list_.Constructor(500, 100));
    line_ = list_.RequestLine(list_.RequestGroup(nullptr, nullptr, MYRECT{}), nullptr, nullptr, MYRECT{});
  }
  Components(const Components&) = delete;
  Components& operator=(const Components&) = delete;
  ~Components() { list_.Destructor(); }

  /** `count` components of width x height pixels whose first column and first memory row are given. */
  Components& add(int width, int height, int left, int bottom, int count = 1) {
    const MYRECT rect{static_cast<std::int16_t>(left), static_cast<std::int16_t>(bottom + height - 1),
                      static_cast<std::int16_t>(left + width - 1), static_cast<std::int16_t>(bottom), 0};
    for (int i = 0; i < count; ++i) last_ = list_.RequestCharacter(line_, last_, nullptr, rect);
    return *this;
  }
  _BNODE* line() { return line_; }

 private:
  _BLIST list_{};
  _BNODE* line_ = nullptr;
  _BNODE* last_ = nullptr;
};

// ---- The band beyond a horizontal line ----

/** Beyond row 380 of 400 x 200 on side 0: the band begins at row 370 and has 6000 pixels. */
bool clean_above(Components& components, int cols = 200) {
  return VerifyCorrectLineV_2(components.line(), 380, 400, cols, 0, 0);
}

TEST(VerifyCorrectLineV2, AcceptsABandWithoutComponents) {
  Components none;
  for (const int side : {0, 1, 2, 3}) {
    EXPECT_TRUE(VerifyCorrectLineV_2(none.line(), 20, 400, 200, side, 0));
    EXPECT_TRUE(VerifyCorrectLineV_2(none.line(), 0, 400, 200, side, 1));
    EXPECT_TRUE(VerifyCorrectLineV_2(none.line(), 399, 400, 200, side, 2));
  }
}

TEST(VerifyCorrectLineV2, AcceptsUpToAFiftiethOfTheBand) {
  EXPECT_TRUE(clean_above(Components().add(10, 12, 0, 380)));   // 50 * 120 = 6000
  EXPECT_FALSE(clean_above(Components().add(11, 11, 0, 380)));  // 50 * 121
}

TEST(VerifyCorrectLineV2, CountsComponentsBeyondTheLineOnly) {
  EXPECT_TRUE(clean_above(Components().add(11, 11, 0, 370)));  // a fortieth of the rows before the line
  EXPECT_FALSE(clean_above(Components().add(11, 11, 0, 371)));
}

TEST(VerifyCorrectLineV2, RejectsModerateClutterOnly) {
  // below 3 / 10 of 6000
  EXPECT_FALSE(clean_above(Components().add(12, 15, 0, 380, 9).add(10, 17, 0, 380)));  // 1790 in 10 components
  // 1800 in 10 components, 10 being a twentieth of the columns
  EXPECT_TRUE(clean_above(Components().add(12, 15, 0, 380, 10)));
  // 1800 in 9 components: too few, unless they cover half
  EXPECT_FALSE(clean_above(Components().add(10, 20, 0, 380, 9)));
  EXPECT_FALSE(clean_above(Components().add(30, 50, 0, 380).add(30, 49, 0, 380)));  // 2970
  EXPECT_TRUE(clean_above(Components().add(30, 50, 0, 380, 2)));                    // 3000
}

TEST(VerifyCorrectLineV2, IgnoresComponentsOfFourPixels) {
  EXPECT_TRUE(clean_above(Components().add(2, 2, 0, 380, 40)));
  EXPECT_FALSE(clean_above(Components().add(1, 5, 0, 380, 40)));
}

TEST(VerifyCorrectLineV2, IgnoresComponentsOfMoreThanAQuarterOfTheBand) {
  EXPECT_FALSE(clean_above(Components().add(30, 50, 0, 380)));  // 1500
  EXPECT_TRUE(clean_above(Components().add(31, 49, 0, 380)));   // 1519
}

TEST(VerifyCorrectLineV2, IgnoresComponentsWiderOrHigherThanHalfTheImage) {
  EXPECT_FALSE(clean_above(Components().add(50, 14, 0, 380), 100));
  EXPECT_TRUE(clean_above(Components().add(51, 14, 0, 380), 100));
  Components half, more;
  EXPECT_FALSE(VerifyCorrectLineV_2(half.add(20, 20, 0, 5).line(), 5, 40, 200, 0, 0));
  EXPECT_TRUE(VerifyCorrectLineV_2(more.add(20, 21, 0, 5).line(), 5, 40, 200, 0, 0));
}

TEST(VerifyCorrectLineV2, IgnoresStrokes) {
  EXPECT_FALSE(clean_above(Components().add(4, 40, 0, 380)));     // ten times as high as wide
  EXPECT_TRUE(clean_above(Components().add(4, 41, 0, 380)));      //
  EXPECT_FALSE(clean_above(Components().add(2, 16, 0, 380, 5)));  // eight times when two wide
  EXPECT_TRUE(clean_above(Components().add(2, 17, 0, 380, 8)));   //
  EXPECT_FALSE(clean_above(Components().add(35, 5, 0, 380)));     // seven times as wide as high
  EXPECT_TRUE(clean_above(Components().add(36, 5, 0, 380)));      //
  EXPECT_FALSE(clean_above(Components().add(10, 2, 0, 380, 7)));  // five times when two high
  EXPECT_TRUE(clean_above(Components().add(11, 2, 0, 380, 7)));   //
}

TEST(VerifyCorrectLineV2, MeasuresTheBandBelowOnTheOtherSides) {
  // rows 0 to 20 + 10: 31 * 200 = 6200
  for (const int side : {1, 2, 3}) {
    Components a, b, c, d;
    EXPECT_TRUE(VerifyCorrectLineV_2(a.add(10, 10, 0, 0).add(4, 6, 0, 0).line(), 20, 400, 200, side, 0));   // 124
    EXPECT_FALSE(VerifyCorrectLineV_2(b.add(10, 10, 0, 0).add(5, 5, 0, 0).line(), 20, 400, 200, side, 0));  // 125
    EXPECT_FALSE(VerifyCorrectLineV_2(c.add(12, 12, 0, 18).line(), 20, 400, 200, side, 0));  // top 29 < 20 + 10
    EXPECT_TRUE(VerifyCorrectLineV_2(d.add(12, 12, 0, 19).line(), 20, 400, 200, side, 0));   // top 30
  }
}

TEST(VerifyCorrectLineV2, IsTheSameForEveryBrightness) {
  for (const short brightness : {short{0}, short{1}, short{2}}) {
    Components a, b;
    EXPECT_TRUE(VerifyCorrectLineV_2(a.add(10, 12, 0, 380).line(), 380, 400, 200, 0, brightness));
    EXPECT_FALSE(VerifyCorrectLineV_2(b.add(11, 11, 0, 380).line(), 380, 400, 200, 0, brightness));
  }
}

// ---- Components cut by a horizontal line ----

/** Row 50 of 140 x 100: the rows at which components are cut are 48 and 52. */
bool uncut(Components& components) { return VerifyCorrectLineV_3(components.line(), 50, 140, 100, 0, 0); }

TEST(VerifyCorrectLineV3, AcceptsALineThatCutsNothing) {
  Components none;
  EXPECT_TRUE(VerifyCorrectLineV_3(none.line(), 50, 140, 100, 0, 0));
  EXPECT_TRUE(uncut(Components().add(20, 10, 0, 60, 20)));
}

TEST(VerifyCorrectLineV3, RejectsMoreThanSixPiecesWiderThanAThird) {
  EXPECT_FALSE(uncut(Components().add(5, 10, 0, 45, 7)));                      // 35
  EXPECT_TRUE(uncut(Components().add(5, 10, 0, 45, 5).add(4, 10, 0, 45, 2)));  // 33
  EXPECT_TRUE(uncut(Components().add(6, 10, 0, 45, 6)));                       // 36, but six
}

TEST(VerifyCorrectLineV3, RejectsMoreThanTwoPiecesWiderThanFourFifths) {
  EXPECT_FALSE(uncut(Components().add(27, 10, 0, 45, 3)));                    // 81
  EXPECT_TRUE(uncut(Components().add(27, 10, 0, 45, 2).add(26, 10, 0, 45)));  // 80
  EXPECT_TRUE(uncut(Components().add(50, 10, 0, 45, 2)));                     // 100, but two
}

TEST(VerifyCorrectLineV3, CutsStrictlyInside) {
  const struct {
    int bottom, height;
    bool cut;
  } cases[] = {{47, 2, false}, {47, 3, true},  {48, 5, false}, {48, 6, true},  {49, 4, false},
               {51, 3, true},  {51, 2, false}, {52, 5, false}, {44, 5, false}, {44, 6, true}};
  for (const auto& c : cases) {
    EXPECT_EQ(uncut(Components().add(27, c.height, 0, c.bottom, 3)), !c.cut) << c.bottom << " + " << c.height;
  }
}

TEST(VerifyCorrectLineV3, IgnoresPiecesHigherThanAThirdOrWiderThanHalf) {
  EXPECT_FALSE(uncut(Components().add(50, 46, 0, 30, 3)));
  EXPECT_TRUE(uncut(Components().add(50, 47, 0, 30, 3)));
  EXPECT_TRUE(uncut(Components().add(51, 46, 0, 30, 3)));
}

TEST(VerifyCorrectLineV3, HasNoAreaRule) {
  EXPECT_FALSE(uncut(Components().add(5, 3, 0, 47, 7)));
  Components flat;  // rows 48 .. 52 of 140 rows, single columns
  EXPECT_FALSE(VerifyCorrectLineV_3(flat.add(1, 3, 0, 47, 40).line(), 50, 140, 100, 0, 0));
}

TEST(VerifyCorrectLineV3, CutsAtRowOneNearTheFirstRow) {
  Components a, b, c;
  EXPECT_FALSE(VerifyCorrectLineV_3(a.add(27, 3, 0, 0, 3).line(), 1, 140, 100, 1, 0));  // rows 0 to 2 around row 1
  EXPECT_TRUE(VerifyCorrectLineV_3(b.add(27, 3, 0, 0, 3).line(), 2, 140, 100, 1, 0));   // around row 0
  EXPECT_FALSE(VerifyCorrectLineV_3(c.add(27, 3, 0, 0, 3).line(), 0, 140, 100, 1, 0));
}

TEST(VerifyCorrectLineV3, CutsAtTheLastRowNearTheEnd) {
  Components a, b;
  // 141 > 140 rows: cut at 139 instead
  EXPECT_FALSE(VerifyCorrectLineV_3(a.add(27, 3, 0, 138, 3).line(), 139, 140, 100, 0, 0));
  // 140 is not more than the rows: cut at 140
  EXPECT_TRUE(VerifyCorrectLineV_3(b.add(27, 3, 0, 138, 3).line(), 138, 140, 100, 0, 0));
}

TEST(VerifyCorrectLineV3, IsTheSameForEverySideAndBrightness) {
  for (int side = 0; side < 4; ++side) {
    for (short brightness = 0; brightness < 3; ++brightness) {
      Components a, b;
      EXPECT_FALSE(VerifyCorrectLineV_3(a.add(27, 10, 0, 45, 3).line(), 50, 140, 100, side, brightness));
      EXPECT_TRUE(VerifyCorrectLineV_3(b.add(50, 10, 0, 45, 2).line(), 50, 140, 100, side, brightness));
    }
  }
}

bool uncut_orva(Components& components) { return VerifyCorrectLineV_3_ORVA(components.line(), 50, 140, 100, 0, 0); }

TEST(VerifyCorrectLineV3Orva, ConsidersComponentsUpToAQuarterOfTheWidth) {
  EXPECT_FALSE(uncut_orva(Components().add(25, 10, 0, 45, 6)));
  EXPECT_TRUE(uncut_orva(Components().add(26, 10, 0, 45, 6)));
  EXPECT_TRUE(uncut_orva(Components().add(25, 47, 0, 30, 6)));
  EXPECT_FALSE(uncut_orva(Components().add(25, 46, 0, 30, 6)));
}

TEST(VerifyCorrectLineV3Orva, NeedsMoreThanFivePiecesWiderThanFourFifths) {
  EXPECT_FALSE(uncut_orva(Components().add(14, 10, 0, 45, 6)));                       // 84
  EXPECT_TRUE(uncut_orva(Components().add(14, 10, 0, 45, 2).add(13, 10, 0, 45, 4)));  // 80
  EXPECT_TRUE(uncut_orva(Components().add(17, 10, 0, 45, 5)));                        // 85, but five
  EXPECT_FALSE(uncut(Components().add(17, 10, 0, 45, 5)));
}

TEST(VerifyCorrectLineV3Orva, RejectsMoreThanSixPiecesWiderThanAThird) {
  EXPECT_FALSE(uncut_orva(Components().add(5, 10, 0, 45, 7)));
  EXPECT_TRUE(uncut_orva(Components().add(5, 10, 0, 45, 5).add(4, 10, 0, 45, 2)));
}

TEST(VerifyCorrectLineV3Orva, CutsAtRowOneNearTheFirstRow) {
  Components a, b;
  EXPECT_FALSE(VerifyCorrectLineV_3_ORVA(a.add(20, 3, 0, 0, 6).line(), 1, 140, 100, 1, 0));
  EXPECT_TRUE(VerifyCorrectLineV_3_ORVA(b.add(20, 3, 0, 0, 6).line(), 2, 140, 100, 1, 0));
}

// ---- The band beyond a vertical line ----

/** Left of column 17 of 100 x 140: columns up to 19, 2000 pixels. */
bool clean_left(Components& components) { return VerifyCorrectLineH_0(components.line(), 17, 100, 140, 2, 0); }

/** Left of column 57: 6000 pixels. */
bool clean_far_left(Components& components) { return VerifyCorrectLineH_0(components.line(), 57, 100, 140, 2, 0); }

TEST(VerifyCorrectLineH0, AcceptsABandWithoutComponents) {
  Components none;
  for (const int side : {2, 3, 0, 1}) {
    EXPECT_TRUE(VerifyCorrectLineH_0(none.line(), 17, 100, 140, side, 0));
    EXPECT_TRUE(VerifyCorrectLineH_0(none.line(), 0, 100, 140, side, 1));
    EXPECT_TRUE(VerifyCorrectLineH_0(none.line(), 139, 100, 140, side, 2));
  }
}

TEST(VerifyCorrectLineH0, RejectsMoreThanTwoPiecesOfMoreThanAFiftieth) {
  EXPECT_FALSE(clean_left(Components().add(2, 7, 0, 0, 3)));                 // 42
  EXPECT_TRUE(clean_left(Components().add(2, 7, 0, 0, 2).add(2, 6, 0, 0)));  // 40
  EXPECT_TRUE(clean_left(Components().add(5, 10, 0, 0, 2)));                 // 100, but two
}

TEST(VerifyCorrectLineH0, RejectsABandCoveredByFewPieces) {
  EXPECT_FALSE(clean_left(Components().add(5, 15, 0, 0, 14)));  // 1050 of 2000
  EXPECT_TRUE(clean_left(Components().add(7, 10, 0, 0, 15)));   // the same in 15 pieces
  EXPECT_FALSE(clean_left(Components().add(10, 40, 0, 0, 3)));  // 1200
  EXPECT_TRUE(clean_left(Components().add(10, 25, 0, 0, 4)));   // exactly half
}

TEST(VerifyCorrectLineH0, IgnoresComponentsOfFourPixels) {
  EXPECT_TRUE(clean_left(Components().add(2, 2, 0, 0, 30)));
  EXPECT_FALSE(clean_left(Components().add(1, 5, 0, 0, 30)));
}

TEST(VerifyCorrectLineH0, TakesPiecesUpToTenTimesAsLongAsWide) {
  EXPECT_FALSE(clean_left(Components().add(1, 10, 0, 0, 5)));
  EXPECT_TRUE(clean_left(Components().add(1, 11, 0, 0, 5)));
  EXPECT_FALSE(clean_left(Components().add(10, 1, 0, 0, 5)));
  EXPECT_TRUE(clean_left(Components().add(11, 1, 0, 0, 5)));
}

TEST(VerifyCorrectLineH0, TakesLargePiecesWhenUprightAndNotTooNarrow) {
  // more than a quarter of the band each; two small ones make three
  EXPECT_FALSE(clean_left(Components().add(19, 47, 0, 0).add(2, 7, 0, 0, 2)));      // 5 * 19 > 2 * 47
  EXPECT_TRUE(clean_left(Components().add(19, 48, 0, 0).add(2, 7, 0, 0, 2)));       // 5 * 19 < 2 * 48
  EXPECT_FALSE(clean_far_left(Components().add(40, 50, 0, 0).add(2, 7, 0, 0, 2)));  // upright
  EXPECT_TRUE(clean_far_left(Components().add(50, 40, 0, 0).add(2, 7, 0, 0, 2)));   // lying
  EXPECT_TRUE(clean_far_left(Components().add(44, 44, 0, 0).add(2, 7, 0, 0, 2)));   // square
  EXPECT_FALSE(clean_far_left(Components().add(49, 60, 0, 0).add(2, 7, 0, 0, 2)));  // 2940
  EXPECT_TRUE(clean_far_left(Components().add(50, 60, 0, 0).add(2, 7, 0, 0, 2)));   // half the band
}

TEST(VerifyCorrectLineH0, TakesLyingPiecesUpToAQuarterOfTheBand) {
  EXPECT_FALSE(clean_far_left(Components().add(50, 30, 0, 0).add(2, 7, 0, 0, 2)));  // 1500
  EXPECT_TRUE(clean_far_left(Components().add(49, 31, 0, 0).add(2, 7, 0, 0, 2)));   // 1519
}

TEST(VerifyCorrectLineH0, CountsComponentsBeyondTheLineOnly) {
  EXPECT_FALSE(clean_left(Components().add(2, 7, 17, 0, 3)));  // right 18 < 17 + 2
  EXPECT_TRUE(clean_left(Components().add(2, 7, 18, 0, 3)));
  // right of column 123: columns from 121, 1900 pixels
  for (const int side : {3, 0, 1}) {
    Components a, b, c;
    EXPECT_FALSE(VerifyCorrectLineH_0(a.add(2, 7, 122, 0, 3).line(), 123, 100, 140, side, 0));
    EXPECT_TRUE(VerifyCorrectLineH_0(b.add(2, 7, 121, 0, 3).line(), 123, 100, 140, side, 0));
    EXPECT_TRUE(VerifyCorrectLineH_0(c.add(2, 6, 122, 0, 2).add(2, 7, 122, 0).line(), 123, 100, 140, side, 0));  // 38
  }
}

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

// ---- Lines beyond the image ----

constexpr int kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();

/** Five pieces at the first corner, one far before it and one as large as a rectangle can be. */
void add_pieces_anywhere(Components& components) {
  components.add(10, 10, 0, 0, 5).add(32767, 32767, 0, 0).add(10, 10, -32768, -32768);
}

TEST(VerifyCorrectLineV2, TakesAnyLinePosition) {
  // 400 x 200, a margin of 10 rows; the largest piece is never clutter
  const struct {
    int L;
    bool top, others;
  } cases[] = {{kLeast, true, true},  // all six in a vast band; a negative band without pieces
               {-40000, true, true},  //
               {-1, true, false},     // five, 500 of 82200; the one before the image, 100 of 2000
               {0, true, false},      // 500 of 82000; all six, 600 of 2200
               {50, true, false},     // none; 600 of 12200
               {40000, true, true},   // a negative band without pieces; 600 of a vast one
               {kMost, true, true}};
  Components components;
  add_pieces_anywhere(components);
  for (const auto& c : cases) {
    EXPECT_EQ(VerifyCorrectLineV_2(components.line(), c.L, 400, 200, 0, 0), c.top) << c.L;
    for (const int side : {1, 2, 3}) {
      EXPECT_EQ(VerifyCorrectLineV_2(components.line(), c.L, 400, 200, side, 0), c.others) << c.L << ", side " << side;
    }
  }
}

TEST(VerifyCorrectLineV3, TakesAnyLinePosition) {
  // seven pieces in rows 0 to 9, together wider than the image, cut at row 1 by every line whose margin of 5 ends
  // before the first row
  Components components;
  components.add(50, 10, 0, 0, 7).add(32767, 32767, 0, 0).add(10, 10, -32768, -32768);
  for (const int L : {kLeast, -40000, -1, 0, 4, 50, 40000, kMost}) {
    for (int side = 0; side < 4; ++side) {
      EXPECT_EQ(VerifyCorrectLineV_3(components.line(), L, 400, 200, side, 0), L > 4) << L;
      EXPECT_EQ(VerifyCorrectLineV_3_ORVA(components.line(), L, 400, 200, side, 0), L > 4) << L;
    }
  }
}

TEST(VerifyCorrectLineH0, TakesAnyLinePosition) {
  // 400 x 200, a margin of 2 columns
  const struct {
    int L;
    bool left, others;
  } cases[] = {{kLeast, false, true},  // a negative band; all seven pieces in a vast one, the largest too
               {-40000, false, true},  // six, 600 of 16080800
               {-1, true, true},       // only the one before the image; five, 500 of 81200
               {0, true, true},        // 500 of 80800
               {50, false, true},      // six, 600 of 21200; none
               {40000, true, false},   // 600 of 16001200; a negative band
               {kMost, true, false}};
  Components components;
  add_pieces_anywhere(components);
  for (const auto& c : cases) {
    EXPECT_EQ(VerifyCorrectLineH_0(components.line(), c.L, 400, 200, 2, 0), c.left) << c.L;
    for (const int side : {0, 1, 3}) {
      EXPECT_EQ(VerifyCorrectLineH_0(components.line(), c.L, 400, 200, side, 0), c.others) << c.L << ", side " << side;
    }
  }
}

}  // namespace
