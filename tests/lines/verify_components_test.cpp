// The tests of candidate border lines by the components beyond them.
#include <gtest/gtest.h>

#include <limits>

#include "lines/exports.h"
#include "support/block_list.h"

namespace {

using support::Pieces;

// ---- The band beyond a horizontal line ----

/** Beyond row 380 of 400 x 200 on side 0: the band begins at row 370 and has 6000 pixels. */
bool clean_above(Pieces& components, int cols = 200) {
  return VerifyCorrectLineV_2(components.line(), 380, 400, cols, 0, 0);
}

TEST(VerifyCorrectLineV2, AcceptsABandWithoutComponents) {
  Pieces none;
  for (const int side : {0, 1, 2, 3}) {
    EXPECT_TRUE(VerifyCorrectLineV_2(none.line(), 20, 400, 200, side, 0));
    EXPECT_TRUE(VerifyCorrectLineV_2(none.line(), 0, 400, 200, side, 1));
    EXPECT_TRUE(VerifyCorrectLineV_2(none.line(), 399, 400, 200, side, 2));
  }
}

TEST(VerifyCorrectLineV2, AcceptsUpToAFiftiethOfTheBand) {
  EXPECT_TRUE(clean_above(Pieces().add(10, 12, 0, 380)));   // 50 * 120 = 6000
  EXPECT_FALSE(clean_above(Pieces().add(11, 11, 0, 380)));  // 50 * 121
}

TEST(VerifyCorrectLineV2, CountsComponentsBeyondTheLineOnly) {
  EXPECT_TRUE(clean_above(Pieces().add(11, 11, 0, 370)));  // a fortieth of the rows before the line
  EXPECT_FALSE(clean_above(Pieces().add(11, 11, 0, 371)));
}

TEST(VerifyCorrectLineV2, RejectsModerateClutterOnly) {
  // below 3 / 10 of 6000
  EXPECT_FALSE(clean_above(Pieces().add(12, 15, 0, 380, 9).add(10, 17, 0, 380)));  // 1790 in 10 components
  // 1800 in 10 components, 10 being a twentieth of the columns
  EXPECT_TRUE(clean_above(Pieces().add(12, 15, 0, 380, 10)));
  // 1800 in 9 components: too few, unless they cover half
  EXPECT_FALSE(clean_above(Pieces().add(10, 20, 0, 380, 9)));
  EXPECT_FALSE(clean_above(Pieces().add(30, 50, 0, 380).add(30, 49, 0, 380)));  // 2970
  EXPECT_TRUE(clean_above(Pieces().add(30, 50, 0, 380, 2)));                    // 3000
}

TEST(VerifyCorrectLineV2, IgnoresComponentsOfFourPixels) {
  EXPECT_TRUE(clean_above(Pieces().add(2, 2, 0, 380, 40)));
  EXPECT_FALSE(clean_above(Pieces().add(1, 5, 0, 380, 40)));
}

TEST(VerifyCorrectLineV2, IgnoresComponentsOfMoreThanAQuarterOfTheBand) {
  EXPECT_FALSE(clean_above(Pieces().add(30, 50, 0, 380)));  // 1500
  EXPECT_TRUE(clean_above(Pieces().add(31, 49, 0, 380)));   // 1519
}

TEST(VerifyCorrectLineV2, IgnoresComponentsWiderOrHigherThanHalfTheImage) {
  EXPECT_FALSE(clean_above(Pieces().add(50, 14, 0, 380), 100));
  EXPECT_TRUE(clean_above(Pieces().add(51, 14, 0, 380), 100));
  Pieces half, more;
  EXPECT_FALSE(VerifyCorrectLineV_2(half.add(20, 20, 0, 5).line(), 5, 40, 200, 0, 0));
  EXPECT_TRUE(VerifyCorrectLineV_2(more.add(20, 21, 0, 5).line(), 5, 40, 200, 0, 0));
}

TEST(VerifyCorrectLineV2, IgnoresStrokes) {
  EXPECT_FALSE(clean_above(Pieces().add(4, 40, 0, 380)));     // ten times as high as wide
  EXPECT_TRUE(clean_above(Pieces().add(4, 41, 0, 380)));      //
  EXPECT_FALSE(clean_above(Pieces().add(2, 16, 0, 380, 5)));  // eight times when two wide
  EXPECT_TRUE(clean_above(Pieces().add(2, 17, 0, 380, 8)));   //
  EXPECT_FALSE(clean_above(Pieces().add(35, 5, 0, 380)));     // seven times as wide as high
  EXPECT_TRUE(clean_above(Pieces().add(36, 5, 0, 380)));      //
  EXPECT_FALSE(clean_above(Pieces().add(10, 2, 0, 380, 7)));  // five times when two high
  EXPECT_TRUE(clean_above(Pieces().add(11, 2, 0, 380, 7)));   //
}

TEST(VerifyCorrectLineV2, MeasuresTheBandBelowOnTheOtherSides) {
  // rows 0 to 20 + 10: 31 * 200 = 6200
  for (const int side : {1, 2, 3}) {
    Pieces a, b, c, d;
    EXPECT_TRUE(VerifyCorrectLineV_2(a.add(10, 10, 0, 0).add(4, 6, 0, 0).line(), 20, 400, 200, side, 0));   // 124
    EXPECT_FALSE(VerifyCorrectLineV_2(b.add(10, 10, 0, 0).add(5, 5, 0, 0).line(), 20, 400, 200, side, 0));  // 125
    EXPECT_FALSE(VerifyCorrectLineV_2(c.add(12, 12, 0, 18).line(), 20, 400, 200, side, 0));  // top 29 < 20 + 10
    EXPECT_TRUE(VerifyCorrectLineV_2(d.add(12, 12, 0, 19).line(), 20, 400, 200, side, 0));   // top 30
  }
}

TEST(VerifyCorrectLineV2, IsTheSameForEveryBrightness) {
  for (const short brightness : {short{0}, short{1}, short{2}}) {
    Pieces a, b;
    EXPECT_TRUE(VerifyCorrectLineV_2(a.add(10, 12, 0, 380).line(), 380, 400, 200, 0, brightness));
    EXPECT_FALSE(VerifyCorrectLineV_2(b.add(11, 11, 0, 380).line(), 380, 400, 200, 0, brightness));
  }
}

// ---- Pieces cut by a horizontal line ----

/** Row 50 of 140 x 100: the rows at which components are cut are 48 and 52. */
bool uncut(Pieces& components) { return VerifyCorrectLineV_3(components.line(), 50, 140, 100, 0, 0); }

TEST(VerifyCorrectLineV3, AcceptsALineThatCutsNothing) {
  Pieces none;
  EXPECT_TRUE(VerifyCorrectLineV_3(none.line(), 50, 140, 100, 0, 0));
  EXPECT_TRUE(uncut(Pieces().add(20, 10, 0, 60, 20)));
}

TEST(VerifyCorrectLineV3, RejectsMoreThanSixPiecesWiderThanAThird) {
  EXPECT_FALSE(uncut(Pieces().add(5, 10, 0, 45, 7)));                      // 35
  EXPECT_TRUE(uncut(Pieces().add(5, 10, 0, 45, 5).add(4, 10, 0, 45, 2)));  // 33
  EXPECT_TRUE(uncut(Pieces().add(6, 10, 0, 45, 6)));                       // 36, but six
}

TEST(VerifyCorrectLineV3, RejectsMoreThanTwoPiecesWiderThanFourFifths) {
  EXPECT_FALSE(uncut(Pieces().add(27, 10, 0, 45, 3)));                    // 81
  EXPECT_TRUE(uncut(Pieces().add(27, 10, 0, 45, 2).add(26, 10, 0, 45)));  // 80
  EXPECT_TRUE(uncut(Pieces().add(50, 10, 0, 45, 2)));                     // 100, but two
}

TEST(VerifyCorrectLineV3, CutsStrictlyInside) {
  const struct {
    int bottom, height;
    bool cut;
  } cases[] = {{47, 2, false}, {47, 3, true},  {48, 5, false}, {48, 6, true},  {49, 4, false},
               {51, 3, true},  {51, 2, false}, {52, 5, false}, {44, 5, false}, {44, 6, true}};
  for (const auto& c : cases) {
    EXPECT_EQ(uncut(Pieces().add(27, c.height, 0, c.bottom, 3)), !c.cut) << c.bottom << " + " << c.height;
  }
}

TEST(VerifyCorrectLineV3, IgnoresPiecesHigherThanAThirdOrWiderThanHalf) {
  EXPECT_FALSE(uncut(Pieces().add(50, 46, 0, 30, 3)));
  EXPECT_TRUE(uncut(Pieces().add(50, 47, 0, 30, 3)));
  EXPECT_TRUE(uncut(Pieces().add(51, 46, 0, 30, 3)));
}

TEST(VerifyCorrectLineV3, HasNoAreaRule) {
  EXPECT_FALSE(uncut(Pieces().add(5, 3, 0, 47, 7)));
  Pieces flat;  // rows 48 .. 52 of 140 rows, single columns
  EXPECT_FALSE(VerifyCorrectLineV_3(flat.add(1, 3, 0, 47, 40).line(), 50, 140, 100, 0, 0));
}

TEST(VerifyCorrectLineV3, CutsAtRowOneNearTheFirstRow) {
  Pieces a, b, c;
  EXPECT_FALSE(VerifyCorrectLineV_3(a.add(27, 3, 0, 0, 3).line(), 1, 140, 100, 1, 0));  // rows 0 to 2 around row 1
  EXPECT_TRUE(VerifyCorrectLineV_3(b.add(27, 3, 0, 0, 3).line(), 2, 140, 100, 1, 0));   // around row 0
  EXPECT_FALSE(VerifyCorrectLineV_3(c.add(27, 3, 0, 0, 3).line(), 0, 140, 100, 1, 0));
}

TEST(VerifyCorrectLineV3, CutsAtTheLastRowNearTheEnd) {
  Pieces a, b;
  // 141 > 140 rows: cut at 139 instead
  EXPECT_FALSE(VerifyCorrectLineV_3(a.add(27, 3, 0, 138, 3).line(), 139, 140, 100, 0, 0));
  // 140 is not more than the rows: cut at 140
  EXPECT_TRUE(VerifyCorrectLineV_3(b.add(27, 3, 0, 138, 3).line(), 138, 140, 100, 0, 0));
}

TEST(VerifyCorrectLineV3, IsTheSameForEverySideAndBrightness) {
  for (int side = 0; side < 4; ++side) {
    for (short brightness = 0; brightness < 3; ++brightness) {
      Pieces a, b;
      EXPECT_FALSE(VerifyCorrectLineV_3(a.add(27, 10, 0, 45, 3).line(), 50, 140, 100, side, brightness));
      EXPECT_TRUE(VerifyCorrectLineV_3(b.add(50, 10, 0, 45, 2).line(), 50, 140, 100, side, brightness));
    }
  }
}

bool uncut_orva(Pieces& components) { return VerifyCorrectLineV_3_ORVA(components.line(), 50, 140, 100, 0, 0); }

TEST(VerifyCorrectLineV3Orva, ConsidersComponentsUpToAQuarterOfTheWidth) {
  EXPECT_FALSE(uncut_orva(Pieces().add(25, 10, 0, 45, 6)));
  EXPECT_TRUE(uncut_orva(Pieces().add(26, 10, 0, 45, 6)));
  EXPECT_TRUE(uncut_orva(Pieces().add(25, 47, 0, 30, 6)));
  EXPECT_FALSE(uncut_orva(Pieces().add(25, 46, 0, 30, 6)));
}

TEST(VerifyCorrectLineV3Orva, NeedsMoreThanFivePiecesWiderThanFourFifths) {
  EXPECT_FALSE(uncut_orva(Pieces().add(14, 10, 0, 45, 6)));                       // 84
  EXPECT_TRUE(uncut_orva(Pieces().add(14, 10, 0, 45, 2).add(13, 10, 0, 45, 4)));  // 80
  EXPECT_TRUE(uncut_orva(Pieces().add(17, 10, 0, 45, 5)));                        // 85, but five
  EXPECT_FALSE(uncut(Pieces().add(17, 10, 0, 45, 5)));
}

TEST(VerifyCorrectLineV3Orva, RejectsMoreThanSixPiecesWiderThanAThird) {
  EXPECT_FALSE(uncut_orva(Pieces().add(5, 10, 0, 45, 7)));
  EXPECT_TRUE(uncut_orva(Pieces().add(5, 10, 0, 45, 5).add(4, 10, 0, 45, 2)));
}

TEST(VerifyCorrectLineV3Orva, CutsAtRowOneNearTheFirstRow) {
  Pieces a, b;
  EXPECT_FALSE(VerifyCorrectLineV_3_ORVA(a.add(20, 3, 0, 0, 6).line(), 1, 140, 100, 1, 0));
  EXPECT_TRUE(VerifyCorrectLineV_3_ORVA(b.add(20, 3, 0, 0, 6).line(), 2, 140, 100, 1, 0));
}

// ---- The band beyond a vertical line ----

/** Left of column 17 of 100 x 140: columns up to 19, 2000 pixels. */
bool clean_left(Pieces& components) { return VerifyCorrectLineH_0(components.line(), 17, 100, 140, 2, 0); }

/** Left of column 57: 6000 pixels. */
bool clean_far_left(Pieces& components) { return VerifyCorrectLineH_0(components.line(), 57, 100, 140, 2, 0); }

TEST(VerifyCorrectLineH0, AcceptsABandWithoutComponents) {
  Pieces none;
  for (const int side : {2, 3, 0, 1}) {
    EXPECT_TRUE(VerifyCorrectLineH_0(none.line(), 17, 100, 140, side, 0));
    EXPECT_TRUE(VerifyCorrectLineH_0(none.line(), 0, 100, 140, side, 1));
    EXPECT_TRUE(VerifyCorrectLineH_0(none.line(), 139, 100, 140, side, 2));
  }
}

TEST(VerifyCorrectLineH0, RejectsMoreThanTwoPiecesOfMoreThanAFiftieth) {
  EXPECT_FALSE(clean_left(Pieces().add(2, 7, 0, 0, 3)));                 // 42
  EXPECT_TRUE(clean_left(Pieces().add(2, 7, 0, 0, 2).add(2, 6, 0, 0)));  // 40
  EXPECT_TRUE(clean_left(Pieces().add(5, 10, 0, 0, 2)));                 // 100, but two
}

TEST(VerifyCorrectLineH0, RejectsABandCoveredByFewPieces) {
  EXPECT_FALSE(clean_left(Pieces().add(5, 15, 0, 0, 14)));  // 1050 of 2000
  EXPECT_TRUE(clean_left(Pieces().add(7, 10, 0, 0, 15)));   // the same in 15 pieces
  EXPECT_FALSE(clean_left(Pieces().add(10, 40, 0, 0, 3)));  // 1200
  EXPECT_TRUE(clean_left(Pieces().add(10, 25, 0, 0, 4)));   // exactly half
}

TEST(VerifyCorrectLineH0, IgnoresComponentsOfFourPixels) {
  EXPECT_TRUE(clean_left(Pieces().add(2, 2, 0, 0, 30)));
  EXPECT_FALSE(clean_left(Pieces().add(1, 5, 0, 0, 30)));
}

TEST(VerifyCorrectLineH0, TakesPiecesUpToTenTimesAsLongAsWide) {
  EXPECT_FALSE(clean_left(Pieces().add(1, 10, 0, 0, 5)));
  EXPECT_TRUE(clean_left(Pieces().add(1, 11, 0, 0, 5)));
  EXPECT_FALSE(clean_left(Pieces().add(10, 1, 0, 0, 5)));
  EXPECT_TRUE(clean_left(Pieces().add(11, 1, 0, 0, 5)));
}

TEST(VerifyCorrectLineH0, TakesLargePiecesWhenUprightAndNotTooNarrow) {
  // more than a quarter of the band each; two small ones make three
  EXPECT_FALSE(clean_left(Pieces().add(19, 47, 0, 0).add(2, 7, 0, 0, 2)));      // 5 * 19 > 2 * 47
  EXPECT_TRUE(clean_left(Pieces().add(19, 48, 0, 0).add(2, 7, 0, 0, 2)));       // 5 * 19 < 2 * 48
  EXPECT_FALSE(clean_far_left(Pieces().add(40, 50, 0, 0).add(2, 7, 0, 0, 2)));  // upright
  EXPECT_TRUE(clean_far_left(Pieces().add(50, 40, 0, 0).add(2, 7, 0, 0, 2)));   // lying
  EXPECT_TRUE(clean_far_left(Pieces().add(44, 44, 0, 0).add(2, 7, 0, 0, 2)));   // square
  EXPECT_FALSE(clean_far_left(Pieces().add(49, 60, 0, 0).add(2, 7, 0, 0, 2)));  // 2940
  EXPECT_TRUE(clean_far_left(Pieces().add(50, 60, 0, 0).add(2, 7, 0, 0, 2)));   // half the band
}

TEST(VerifyCorrectLineH0, TakesLyingPiecesUpToAQuarterOfTheBand) {
  EXPECT_FALSE(clean_far_left(Pieces().add(50, 30, 0, 0).add(2, 7, 0, 0, 2)));  // 1500
  EXPECT_TRUE(clean_far_left(Pieces().add(49, 31, 0, 0).add(2, 7, 0, 0, 2)));   // 1519
}

TEST(VerifyCorrectLineH0, CountsComponentsBeyondTheLineOnly) {
  EXPECT_FALSE(clean_left(Pieces().add(2, 7, 17, 0, 3)));  // right 18 < 17 + 2
  EXPECT_TRUE(clean_left(Pieces().add(2, 7, 18, 0, 3)));
  // right of column 123: columns from 121, 1900 pixels
  for (const int side : {3, 0, 1}) {
    Pieces a, b, c;
    EXPECT_FALSE(VerifyCorrectLineH_0(a.add(2, 7, 122, 0, 3).line(), 123, 100, 140, side, 0));
    EXPECT_TRUE(VerifyCorrectLineH_0(b.add(2, 7, 121, 0, 3).line(), 123, 100, 140, side, 0));
    EXPECT_TRUE(VerifyCorrectLineH_0(c.add(2, 6, 122, 0, 2).add(2, 7, 122, 0).line(), 123, 100, 140, side, 0));  // 38
  }
}

// ---- Lines beyond the image ----

constexpr int kLeast = std::numeric_limits<int>::min(), kMost = std::numeric_limits<int>::max();

/** Five pieces at the first corner, one far before it and one as large as a rectangle can be. */
void add_pieces_anywhere(Pieces& components) {
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
  Pieces components;
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
  Pieces components;
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
  Pieces components;
  add_pieces_anywhere(components);
  for (const auto& c : cases) {
    EXPECT_EQ(VerifyCorrectLineH_0(components.line(), c.L, 400, 200, 2, 0), c.left) << c.L;
    for (const int side : {0, 1, 3}) {
      EXPECT_EQ(VerifyCorrectLineH_0(components.line(), c.L, 400, 200, side, 0), c.others) << c.L << ", side " << side;
    }
  }
}

TEST(VerifyCorrectLine, MultipliesNoBandBeyondItsBounds) {
  // A negative band holds no clutter, and its pixels times three are none the more.
  Pieces none;
  EXPECT_TRUE(VerifyCorrectLineV_2(none.line(), 0, 1480000000, -2072768690, 0, 0));
  EXPECT_TRUE(VerifyCorrectLineV_2(none.line(), kLeast, kMost, kMost, 0, 0));
  EXPECT_TRUE(VerifyCorrectLineV_2(none.line(), kLeast, kMost, kLeast, 0, 0));
  EXPECT_TRUE(VerifyCorrectLineV_3(none.line(), 0, kLeast, kMost, 0, 0));
  EXPECT_TRUE(VerifyCorrectLineV_3_ORVA(none.line(), 0, kLeast, kMost, 0, 0));
  EXPECT_TRUE(VerifyCorrectLineH_0(none.line(), kLeast, kMost, kMost, 3, 0));
  EXPECT_FALSE(VerifyCorrectLineH_0(none.line(), kLeast, kLeast, kMost, 3, 0));
}

}  // namespace
