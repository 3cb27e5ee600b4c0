// The three line searches on points laid out by hand.
#include "lines/exports.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iomanip>
#include <limits>
#include <vector>

#include "support/image.h"

namespace {

constexpr double kUnwritten = -123.5;

/** Sines and cosines of whole degrees, as the corner finder tabulates them. */
struct Tables {
  double sin[180];
  double cos[180];

  Tables() {
    for (int t = 0; t < 180; ++t) {
      sin[t] = std::sin(t * 0.01745329251994);
      cos[t] = std::cos(t * 0.01745329251994);
    }
  }
  /** With an exact right angle, so that a level line's votes are whole numbers. */
  static Tables exact() {
    Tables tables;
    tables.cos[90] = 0.0;
    tables.sin[90] = 1.0;
    return tables;
  }
};

struct Line {
  double a, b, c;
  bool operator==(const Line&) const = default;
};
void PrintTo(const Line& line, std::ostream* out) {
  *out << std::setprecision(17) << line.a << " x + " << line.b << " y = " << line.c;
}

constexpr Line kNothing{kUnwritten, kUnwritten, kUnwritten};

/** A scan with everything that the searches take. It is all dark and without edges until painted. */
class Scan {
 public:
  Scan(int rows, int cols, const Tables& tables = Tables::exact())
      : rows_(rows),
        cols_(cols),
        stride_(support::stride_of(cols, 8)),
        tables_(tables),
        gray_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(stride_), 0),
        edge_(gray_.size(), 255) {
    EXPECT_TRUE(list_.Constructor(500, 100));
    line_ = list_.RequestLine(list_.RequestGroup(nullptr, nullptr, MYRECT{}), nullptr, nullptr, MYRECT{});
    for (double& value : normal_) value = kUnwritten;
    for (double& value : distance_) value = kUnwritten;
  }
  Scan(const Scan&) = delete;
  Scan& operator=(const Scan&) = delete;
  ~Scan() { list_.Destructor(); }

  Scan& point(double row, double col) {
    points_.push_back({static_cast<float>(row), static_cast<float>(col)});
    return *this;
  }
  /** `count` points of a memory row. */
  Scan& level(int row, int count) {
    for (int c = 0; c < count; ++c) point(row, c);
    return *this;
  }
  /** `count` points of a column. */
  Scan& upright(int col, int count) {
    for (int r = 0; r < count; ++r) point(r, col);
    return *this;
  }
  /** A point in every column of a line through (row, middle column), rising by `degrees`. */
  Scan& rising(double row, double degrees) {
    for (int c = 0; c < cols_; ++c) point(std::round(row + std::tan(degrees * M_PI / 180) * (c - cols_ / 2)), c);
    return *this;
  }
  /** A point in every row of a line through (first row, col) whose column grows by `degrees` from upright. */
  Scan& leaning(double col, double degrees) {
    for (int r = 0; r < rows_; ++r) point(r, std::round(col + std::tan(degrees * M_PI / 180) * r));
    return *this;
  }
  Scan& paint(int row_from, int row_to, int level) {
    for (int r = row_from; r <= row_to; ++r) {
      for (int c = 0; c < stride_; ++c) gray_[at(r, c)] = static_cast<unsigned char>(level);
    }
    return *this;
  }
  Scan& bright() { return paint(0, rows_ - 1, 255); }
  /** `count` edge pixels in a row of the edge map. */
  Scan& edges(int row, int count) {
    for (int c = 0; c < count; ++c) edge_[at(row, c)] = 0;
    return *this;
  }
  /** Makes the density test prefer row L2 to L1 on side 0. */
  Scan& dense_beyond(int L1, int L2) { return edges(L1, 200).edges(L2, 200).edges(L1 + 1, 20); }
  Scan& component(int width, int height, int left, int bottom, int count = 1) {
    const MYRECT rect{static_cast<std::int16_t>(left), static_cast<std::int16_t>(bottom + height - 1),
                      static_cast<std::int16_t>(left + width - 1), static_cast<std::int16_t>(bottom), 0};
    for (int i = 0; i < count; ++i) last_ = list_.RequestCharacter(line_, last_, nullptr, rect);
    return *this;
  }

  int search(int dir_class) {
    return Compute_Hough_Angle(normal_, distance_, points_.data(), rows_, cols_, static_cast<int>(points_.size()),
                               dir_class, tables_.sin, tables_.cos);
  }
  int search2(int side, int brightness = 0) { return search2(side, brightness, side < 2 ? 0 : 2); }
  int search2(int side, int brightness, int dir_class) {
    return Compute_Hough_Angle2(gray_.data(), line_, edge_.data(), normal_, distance_, points_.data(), rows_, cols_,
                                static_cast<int>(points_.size()), dir_class, tables_.sin, tables_.cos, side,
                                static_cast<short>(brightness));
  }
  int search3(int side, int brightness = 0) { return search3(side, brightness, side < 2 ? 0 : 2); }
  int search3(int side, int brightness, int dir_class) {
    return Compute_Hough_Angle3(gray_.data(), line_, edge_.data(), normal_, distance_, points_.data(), rows_, cols_,
                                static_cast<int>(points_.size()), dir_class, tables_.sin, tables_.cos, side,
                                static_cast<short>(brightness));
  }

  Line line(int side) const { return {normal_[2 * side], normal_[2 * side + 1], distance_[side]}; }
  bool nothing_written() const {
    for (int side = 0; side < 4; ++side) {
      if (line(side) != kNothing) return false;
    }
    return true;
  }
  const std::vector<typePoint>& points() const { return points_; }
  const Tables& tables() const { return tables_; }

 private:
  std::size_t at(int r, int c) const {
    return static_cast<std::size_t>(r) * static_cast<std::size_t>(stride_) + static_cast<std::size_t>(c);
  }

  int rows_, cols_, stride_;
  Tables tables_;
  std::vector<unsigned char> gray_, edge_;
  std::vector<typePoint> points_;
  _BLIST list_{};
  _BNODE* line_ = nullptr;
  _BNODE* last_ = nullptr;
  double normal_[8], distance_[4];
};

double single(double value) { return static_cast<double>(static_cast<float>(value)); }

// ---- Horizontal sides ----

TEST(ComputeHoughAngle2, FindsNothingAmongFewerThanFiftyPoints) {
  Scan few(300, 160);
  few.level(290, 49);
  EXPECT_EQ(few.search2(0), 0);
  EXPECT_TRUE(few.nothing_written());
  EXPECT_EQ(few.points()[7].row, 290.0f);  // not even shifted
  EXPECT_EQ(few.points()[7].col, 7.0f);
  Scan enough(300, 160);
  enough.level(290, 50);
  EXPECT_EQ(enough.search2(0), 1);
}

TEST(ComputeHoughAngle2, ShiftsThePointsToTheMiddle) {
  Scan scan(301, 401);
  scan.level(290, 200);
  EXPECT_EQ(scan.search2(0), 1);
  EXPECT_EQ(scan.points()[0].row, 140.0f);
  EXPECT_EQ(scan.points()[0].col, -200.0f);
  EXPECT_EQ(scan.points()[7].col, -193.0f);
}

TEST(ComputeHoughAngle2, WritesALevelLineExactly) {
  for (const Tables& tables : {Tables(), Tables::exact()}) {
    Scan top(300, 400, tables), bottom(300, 400, tables);
    EXPECT_EQ(top.level(290, 200).search2(0), 1);
    EXPECT_EQ(top.line(0), (Line{0, 1, 290}));
    for (const int side : {1, 2, 3}) EXPECT_EQ(top.line(side), kNothing);
    EXPECT_EQ(bottom.level(10, 200).search2(1), 1);
    EXPECT_EQ(bottom.line(1), (Line{0, 1, 10}));
    for (const int side : {0, 2, 3}) EXPECT_EQ(bottom.line(side), kNothing);
  }
}

TEST(ComputeHoughAngle2, NeedsAQuarterOfTheWidth) {
  Scan below(300, 400), exactly(300, 400), odd(300, 403);
  EXPECT_EQ(below.level(290, 99).search2(0), 0);
  EXPECT_TRUE(below.nothing_written());
  EXPECT_EQ(exactly.level(290, 100).search2(0), 1);
  EXPECT_EQ(odd.level(290, 100).search2(0), 1);  // 403 / 4 = 100
}

TEST(ComputeHoughAngle2, WritesATiltedLineInSinglePrecision) {
  Scan scan(300, 400);
  scan.rising(270, 3);
  const double sine = scan.tables().sin[93], cosine = scan.tables().cos[93];
  EXPECT_EQ(scan.search2(0), 1);
  EXPECT_EQ(scan.line(0), (Line{single(cosine), single(sine), single(120 + 150 * sine + 200 * cosine)}));
}

TEST(ComputeHoughAngle2, TestsTheRowOfTheLinesDistance) {
  // the distance of the line that crosses the middle at row 270 is 259: the dark rows count from there
  Scan scan(300, 400), brighter(300, 400);
  scan.rising(270, 3).bright().paint(259, 272, 0);
  EXPECT_EQ(scan.search2(0), 1);
  brighter.rising(270, 3).bright().paint(259, 271, 0);  // 13 rows of 42
  EXPECT_EQ(brighter.search2(0), 0);
}

TEST(ComputeHoughAngle2, RejectsABandAsBrightAsTheWholeImage) {
  for (const int side : {0, 1}) {
    const int row = side == 0 ? 290 : 10;
    for (const int brightness : {0, 1, 2}) {
      Scan dark(300, 400);
      EXPECT_EQ(dark.level(row, 200).search2(side, brightness), brightness == 2 ? 0 : 1);
    }
  }
}

TEST(ComputeHoughAngle2, LeavesTheNormalOfARejectedClearLine) {
  Scan scan(300, 400);
  EXPECT_EQ(scan.level(290, 200).search2(0, 2), 0);
  EXPECT_EQ(scan.line(0), (Line{0, 1, kUnwritten}));
}

TEST(ComputeHoughAngle2, RejectsABandThatIsNotDark) {
  Scan top(300, 400), bottom(300, 400);
  EXPECT_EQ(top.level(290, 200).bright().search2(0), 0);
  EXPECT_EQ(bottom.level(10, 200).bright().search2(1), 0);
  // only the band counts
  Scan dark_top(300, 400), dark_bottom(300, 400);
  EXPECT_EQ(dark_top.level(290, 200).bright().paint(290, 299, 127).search2(0), 1);
  EXPECT_EQ(dark_bottom.level(10, 200).bright().paint(0, 9, 127).search2(1), 1);
}

TEST(ComputeHoughAngle2, DoesNotTestTheDarknessBeyondTheFrame) {
  Scan first(300, 400), second(300, 400), last(300, 400), before_last(300, 400);
  EXPECT_EQ(first.level(0, 200).bright().search2(1), 1);
  EXPECT_EQ(second.level(1, 200).bright().search2(1), 0);
  EXPECT_EQ(last.level(299, 200).bright().search2(0), 1);
  EXPECT_EQ(before_last.level(298, 200).bright().search2(0), 0);
}

TEST(ComputeHoughAngle2, RejectsAModeratelyClutteredBand) {
  Scan scan(300, 400);
  scan.level(290, 200).component(10, 10, 0, 290, 4);  // 400 of 6800 pixels
  EXPECT_EQ(scan.search2(0), 0);
}

TEST(ComputeHoughAngle2, RejectsALineThatCutsManyComponents) {
  Scan scan(300, 400);
  scan.level(290, 200).component(20, 12, 0, 280, 7);  // before the band, cut at row 286
  EXPECT_EQ(scan.search2(0), 0);
}

TEST(ComputeHoughAngle2, FindsARunnerUpTenBinsAway) {
  Scan ten(300, 400), nine(300, 400);
  EXPECT_EQ(ten.level(280, 200).level(270, 150).search2(0), 2);
  EXPECT_EQ(ten.line(0), (Line{0, 1, 280}));
  EXPECT_EQ(nine.level(280, 200).level(271, 150).search2(0), 1);
  EXPECT_EQ(nine.line(0), (Line{0, 1, 280}));
}

TEST(ComputeHoughAngle2, PrefersTheRunnerUpWhenTheRowsBeyondTheStrongestAreDense) {
  Scan kept(300, 400), changed(300, 400);
  EXPECT_EQ(kept.level(280, 200).level(250, 150).search2(0), 2);
  EXPECT_EQ(kept.line(0), (Line{0, 1, 280}));
  EXPECT_EQ(changed.level(280, 200).level(250, 150).dense_beyond(280, 250).search2(0), 2);
  EXPECT_EQ(changed.line(0), (Line{0, 1, 250}));
}

TEST(ComputeHoughAngle2, KeepsTheStrongestOfTwiceTheVotes) {
  Scan half(300, 400), more(300, 400);
  EXPECT_EQ(half.level(280, 200).level(250, 100).dense_beyond(280, 250).search2(0), 2);
  EXPECT_EQ(half.line(0), (Line{0, 1, 280}));
  EXPECT_EQ(more.level(280, 200).level(250, 101).dense_beyond(280, 250).search2(0), 2);
  EXPECT_EQ(more.line(0), (Line{0, 1, 250}));
}

TEST(ComputeHoughAngle2, IgnoresARunnerUpOfLessThanAQuarterOfTheWidth) {
  Scan scan(300, 400);
  EXPECT_EQ(scan.level(280, 150).level(250, 99).dense_beyond(280, 250).search2(0), 1);
  EXPECT_EQ(scan.line(0), (Line{0, 1, 280}));
}

TEST(ComputeHoughAngle2, PrefersTheRunnerUpToAFullWidthLineOnTheFrame) {
  const struct {
    int side, row, count, other, expected;
  } cases[] = {
      {1, 2, 390, 20, 20},     {1, 3, 390, 20, 20},     {1, 4, 390, 20, 4},  // the first four rows
      {1, 2, 381, 20, 20},     {1, 2, 380, 20, 2},                           // more than 95 %
      {0, 297, 390, 270, 270}, {0, 296, 390, 270, 296},                      // the last three rows
      {0, 299, 400, 270, 270}, {1, 0, 399, 20, 20},
  };
  for (const auto& c : cases) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(c.row, c.count).level(c.other, 201).search2(c.side), 2);
    EXPECT_EQ(scan.line(c.side), (Line{0, 1, static_cast<double>(c.expected)})) << "row " << c.row << ", " << c.count;
  }
}

TEST(ComputeHoughAngle2, DoesNotCompareTheRunnerUpsBrightness) {
  Scan runner_up(300, 400), strongest(300, 400);
  EXPECT_EQ(runner_up.level(280, 200).level(250, 150).dense_beyond(280, 250).search2(0, 2), 2);
  EXPECT_EQ(runner_up.line(0), (Line{0, 1, 250}));
  EXPECT_EQ(strongest.level(280, 200).level(250, 150).search2(0, 2), 0);
  EXPECT_TRUE(strongest.nothing_written());  // tested before it is written
}

TEST(ComputeHoughAngle2, LeavesARejectedRunnerUpWritten) {
  Scan scan(300, 400);
  EXPECT_EQ(scan.level(280, 200).level(250, 150).dense_beyond(280, 250).bright().search2(0), 0);
  EXPECT_EQ(scan.line(0), (Line{0, 1, 250}));
}

TEST(ComputeHoughAngle2, TestsTheRunnersUpOwnRow) {
  // of the area from row 250 on, 6800 / 20451 is just above 7 / 22, and 6400 / 20451 just below
  for (const int dark_from : {283, 284}) {
    Scan scan(300, 400);
    scan.level(280, 200).level(250, 150).dense_beyond(280, 250).bright().paint(dark_from, 299, 0);
    EXPECT_EQ(scan.search2(0), dark_from == 283 ? 2 : 0);
  }
  Scan cut(300, 400);
  cut.level(280, 200).level(250, 150).dense_beyond(280, 250).component(20, 12, 0, 240, 7);  // cut at row 246
  EXPECT_EQ(cut.search2(0), 0);
}

TEST(ComputeHoughAngle2, KeepsTheFirstRowOfATie) {
  Scan scan(300, 400), three(300, 400);
  EXPECT_EQ(scan.level(280, 150).level(260, 150).search2(0), 2);
  EXPECT_EQ(scan.line(0), (Line{0, 1, 260}));
  three.level(280, 200).level(260, 150).level(240, 150).dense_beyond(280, 240).edges(260, 200);
  EXPECT_EQ(three.search2(0), 2);
  EXPECT_EQ(three.line(0), (Line{0, 1, 240}));
}

TEST(ComputeHoughAngle2, KeepsTheFirstAngleOfATie) {
  Tables same;
  for (int t = 75; t <= 104; ++t) {
    same.cos[t] = t * 1e-30;  // tells the angles apart without moving a vote
    same.sin[t] = 1.0;
  }
  Scan scan(300, 400, same);
  EXPECT_EQ(scan.level(290, 200).search2(0), 2);
  EXPECT_EQ(scan.line(0), (Line{single(75e-30), 1, 290}));
}

TEST(ComputeHoughAngle2, LooksAtThirtyAngles) {
  for (const int degrees : {-15, -14, 14, 15}) {  // lines of 75, 76, 104 and 105 degrees
    Scan scan(400, 400);
    scan.rising(200, degrees);
    EXPECT_EQ(scan.search2(0), degrees == 15 ? 0 : 1) << degrees;
    if (degrees != 15) {
      EXPECT_EQ(scan.line(0).b, single(scan.tables().sin[90 + degrees]));
    }
  }
}

// ---- Vertical sides ----

TEST(ComputeHoughAngle2, WritesAnUprightLineExactly) {
  Scan left(200, 300), right(200, 300);
  EXPECT_EQ(left.upright(10, 200).search2(2), 2);
  EXPECT_EQ(left.line(2), (Line{1, 0, 10}));
  EXPECT_EQ(right.upright(290, 200).search2(3), 2);
  EXPECT_EQ(right.line(3), (Line{1, 0, 290}));
}

TEST(ComputeHoughAngle2, NeedsFourNinthsOfTheHeight) {
  Scan exactly(180, 300), below(180, 300);
  EXPECT_EQ(exactly.upright(10, 80).search2(2), 2);
  EXPECT_EQ(below.upright(10, 79).search2(2), 0);
  EXPECT_TRUE(below.nothing_written());
}

TEST(ComputeHoughAngle2, RejectsABrightBandBesideTheLine) {
  Scan left(200, 300), right(200, 300), first(200, 300), last(200, 300), before_last(200, 300);
  EXPECT_EQ(left.upright(10, 200).bright().search2(2), 0);
  EXPECT_TRUE(left.nothing_written());
  EXPECT_EQ(right.upright(290, 200).bright().search2(3), 0);
  EXPECT_EQ(first.upright(0, 200).bright().search2(2), 2);
  EXPECT_EQ(last.upright(299, 200).bright().search2(3), 2);
  EXPECT_EQ(before_last.upright(298, 200).bright().search2(3), 0);
}

TEST(ComputeHoughAngle2, RejectsAModeratelyClutteredBandBesideTheLine) {
  Scan scan(200, 300), clean(200, 300);
  EXPECT_EQ(scan.upright(10, 200).component(3, 6, 0, 50, 4).search2(2), 0);  // 72 of 3000 pixels
  EXPECT_TRUE(scan.nothing_written());
  EXPECT_EQ(clean.upright(10, 200).component(3, 6, 0, 50, 3).search2(2), 2);
}

TEST(ComputeHoughAngle2, DoesNotCompareBrightnessesOnVerticalSides) {
  for (const int brightness : {0, 1, 2}) {
    Scan scan(200, 300);
    EXPECT_EQ(scan.upright(10, 200).search2(2, brightness), 2);
  }
}

TEST(ComputeHoughAngle2, TakesTheMagnitudeOfANegativeDistance) {
  Scan dark(200, 300), bright(200, 300);
  EXPECT_EQ(dark.leaning(30, 2).search2(2), 2);
  EXPECT_EQ(dark.line(2).a, single(dark.tables().cos[178]));
  EXPECT_EQ(dark.line(2).b, single(dark.tables().sin[178]));
  EXPECT_NEAR(dark.line(2).c, -30, 0.7);
  EXPECT_EQ(bright.leaning(30, 2).bright().search2(2), 0);  // column 30 beyond the frame would not be tested
}

TEST(ComputeHoughAngle2, VotesAtButDoesNotSearch160Degrees) {
  Scan at_160(200, 300), at_161(200, 300), at_19(200, 300);
  EXPECT_EQ(at_160.leaning(100, 20).search2(2), 0);
  EXPECT_TRUE(at_160.nothing_written());
  EXPECT_EQ(at_161.leaning(100, 19).search2(2), 2);
  EXPECT_EQ(at_161.line(2).a, single(at_161.tables().cos[161]));
  EXPECT_EQ(at_19.leaning(200, -19).search2(2), 2);
  EXPECT_EQ(at_19.line(2).a, single(at_19.tables().cos[19]));
}

// ---- Both ----

TEST(ComputeHoughAngle2, WritesNothingForAnotherDirection) {
  for (const int dir_class : {1, 3, 4, -1}) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(290, 200).search2(0, 0, dir_class), 2);
    EXPECT_TRUE(scan.nothing_written());
    EXPECT_EQ(scan.points()[0].row, 140.0f);
    EXPECT_EQ(scan.points()[0].col, -200.0f);
  }
}

/** Fifteen points in each corner of the image. */
struct CornerPoints : Scan {
  CornerPoints(int rows, int cols) : Scan(rows, cols) {
    for (int i = 0; i < 60; ++i) point(i % 2 * (rows - 1), i / 2 % 2 * (cols - 1));
  }
};

/** The line of one whole degree at a distance, as the searches round it. */
Line line_of(const Scan& scan, int degrees, double distance) {
  const auto t = static_cast<std::size_t>(degrees);
  return {degrees == 90 ? 0.0 : single(scan.tables().cos[t]), degrees == 0 ? 0.0 : single(scan.tables().sin[t]),
          single(distance)};
}

TEST(LineSearches, FindTooFewVotesInTheCornersOfALargeImage) {
  for (const int dir_class : {0, 2}) {  // at most 30 votes a line, for 75, 134 and 60 needed
    CornerPoints first(300, 300), second(300, 300), third(300, 300);
    EXPECT_EQ(first.search(dir_class), 0);
    EXPECT_EQ(second.search2(dir_class), 0);
    EXPECT_EQ(third.search3(dir_class), 0);
    for (const Scan* scan : {&first, &second, &third}) EXPECT_TRUE(scan->nothing_written());
  }
}

TEST(LineSearches, VoteForTheCornersOfASingleRow) {
  // all 60 points on the level line of row 0, where 100 are needed; 30 in the first and 30 in the last column
  EXPECT_EQ(CornerPoints(1, 400).search(0), 0);
  EXPECT_EQ(CornerPoints(1, 400).search2(0), 0);
  EXPECT_EQ(CornerPoints(1, 400).search3(0), 0);
  CornerPoints first(1, 400), second(1, 400), third(1, 400);
  EXPECT_EQ(first.search(2), 1);
  // of the lines that lean left, that of 160 degrees through the last column, at -186.9988, splits its votes the least
  EXPECT_EQ(first.line(2), line_of(first, 160, -187 + 200 * first.tables().cos[160]));
  EXPECT_EQ(first.line(3), (Line{1, 0, 0}));
  EXPECT_EQ(second.search2(2), 2);
  EXPECT_EQ(second.line(2), (Line{1, 0, 0}));
  EXPECT_EQ(third.search3(2), 2);
  EXPECT_EQ(third.line(2), (Line{1, 0, 0}));
}

TEST(LineSearches, VoteForTheCornersOfASingleColumn) {
  // 30 points in the first row and 30 in the last: a line on the frame yields to the other
  CornerPoints first(400, 1), second(400, 1), third(400, 1);
  EXPECT_EQ(first.search(0), 1);
  EXPECT_EQ(first.line(0), (Line{0, 1, 0}));
  EXPECT_EQ(first.line(1), (Line{0, 1, 399}));
  EXPECT_EQ(second.search2(0), 2);
  EXPECT_EQ(second.line(0), (Line{0, 1, 399}));
  EXPECT_EQ(third.search3(0), 2);
  EXPECT_EQ(third.line(0), (Line{0, 1, 399}));
  // all 60 on the upright line of column 0, where 178 and 80 are needed
  EXPECT_EQ(CornerPoints(400, 1).search(2), 0);
  EXPECT_EQ(CornerPoints(400, 1).search2(2), 0);
  EXPECT_EQ(CornerPoints(400, 1).search3(2), 0);
}

TEST(LineSearches, VoteForTheCornersOfTwoRowsAndColumns) {
  // Seen from the centre the points lie at -1 and 0. Beyond 90 degrees the cell of distance 0 gets 15 (4 - 2 sin t)
  // votes, beyond 180 - 20 degrees 15 (4 + 2 cos t): the more, the farther from the level and from the upright.
  CornerPoints first(2, 2), second(2, 2), third(2, 2);
  const auto distance = [&](int t) { return first.tables().sin[t] + first.tables().cos[t]; };
  EXPECT_EQ(first.search(0), 1);
  EXPECT_EQ(first.line(0), line_of(first, 109, distance(109)));
  EXPECT_EQ(first.line(1), line_of(first, 107, distance(107)));  // the next angle but one
  EXPECT_EQ(second.search2(0), 2);
  EXPECT_EQ(second.line(0), line_of(second, 104, distance(104)));
  EXPECT_EQ(third.search3(0), 2);
  EXPECT_EQ(third.line(0), (Line{0, 1, single(distance(102))}));  // a runner-up wins near the first row
  CornerPoints upright(2, 2), upright2(2, 2), upright3(2, 2);
  EXPECT_EQ(upright.search(2), 1);
  EXPECT_EQ(upright.line(2), line_of(upright, 150, distance(150)));
  EXPECT_EQ(upright2.search2(2), 2);
  EXPECT_EQ(upright2.line(2), line_of(upright2, 161, distance(161)));
  EXPECT_EQ(upright3.search3(2), 2);
  EXPECT_EQ(upright3.line(2), line_of(upright3, 161, distance(161)));
}

TEST(LineSearches, VoteForTheSinglePixelAtEveryAngle) {
  CornerPoints first(1, 1), second(1, 1), third(1, 1);
  EXPECT_EQ(first.search(0), 1);
  EXPECT_EQ(first.line(0), line_of(first, 70, 0));
  EXPECT_EQ(first.line(1), line_of(first, 72, 0));
  EXPECT_EQ(second.search2(0), 2);
  EXPECT_EQ(second.line(0), line_of(second, 75, 0));
  EXPECT_EQ(third.search3(0), 2);
  EXPECT_EQ(third.line(0), (Line{0, 1, 0}));
  CornerPoints upright(1, 1), upright2(1, 1), upright3(1, 1);
  EXPECT_EQ(upright.search(2), 1);
  EXPECT_EQ(upright.line(2), line_of(upright, 150, 0));
  EXPECT_EQ(upright.line(3), (Line{1, 0, 0}));
  EXPECT_EQ(upright2.search2(2), 2);
  EXPECT_EQ(upright2.line(2), (Line{1, 0, 0}));
  EXPECT_EQ(upright3.search3(2), 2);
  EXPECT_EQ(upright3.line(2), (Line{1, 0, 0}));
}

/** Of 60 points 20 at (5, 7), 10 in their row and 20 in their column but far away, and 10 far away in both. */
struct FarPoints : Scan {
  explicit FarPoints(double far) : Scan(100, 120) {
    for (int i = 0; i < 60; ++i) point(i % 2 == 0 ? far : 5, i % 3 == 0 ? far : 7);
  }
};

TEST(LineSearches, CountVotesOfPointsOutsideTheImageForLinesInside) {
  for (const double far : {400.0, -400.0, 1e6, -1e6}) {
    SCOPED_TRACE(far);
    FarPoints first(far), second(far), third(far);
    EXPECT_EQ(second.search2(0), 1);  // 30 votes in row 5, where 30 are needed
    EXPECT_EQ(second.line(0), (Line{0, 1, 5}));
    EXPECT_EQ(third.search3(0), 1);
    EXPECT_EQ(third.line(0), (Line{0, 1, 5}));
    EXPECT_EQ(first.search(0), 0);  // no second line
    EXPECT_TRUE(first.nothing_written());
    FarPoints upright(far), upright2(far), upright3(far);
    EXPECT_EQ(upright.search(2), 1);
    EXPECT_EQ(upright.line(3), (Line{1, 0, 7}));
    EXPECT_EQ(upright2.search2(2), 0);  // 40 votes in column 7, where 45 are needed
    EXPECT_EQ(upright3.search3(2), 0);
  }
}

TEST(LineSearches, PassOverPointsThatAreNowhere) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  for (const double far : {1e20, -1e20, infinity, -infinity, std::nan("")}) {
    SCOPED_TRACE(far);
    for (const int dir_class : {0, 2}) {  // 20 votes, where 30 and 45 are needed
      EXPECT_EQ(FarPoints(far).search2(dir_class), 0);
      EXPECT_EQ(FarPoints(far).search3(dir_class), 0);
    }
    EXPECT_EQ(FarPoints(far).search(0), 0);
    FarPoints upright(far);
    EXPECT_EQ(upright.search(2), 1);  // 20 votes in column 7 are enough for the weaker line
    EXPECT_EQ(upright.line(3), (Line{1, 0, 7}));
  }
}

TEST(LineSearches, NeedNoVotesInAnImageWithoutPixels) {
  // no cells: the strongest of none stands at distance and angle 0, and no test finds anything against it
  for (const int dir_class : {0, 2}) {
    Scan first(0, 0), second(0, 0), third(0, 0);
    for (Scan* scan : {&first, &second, &third}) {
      for (int i = 0; i < 60; ++i) scan->point(0, 0);
    }
    EXPECT_EQ(first.search(dir_class), 1);
    EXPECT_EQ(first.line(dir_class), (Line{1, 0, 0}));
    EXPECT_EQ(first.line(dir_class + 1), (Line{1, 0, 0}));
    EXPECT_EQ(second.search2(dir_class), 2);
    EXPECT_EQ(second.line(dir_class), (Line{1, 0, 0}));
    EXPECT_EQ(third.search3(dir_class), 2);
    EXPECT_EQ(third.line(dir_class), dir_class == 0 ? (Line{0, 1, 0}) : (Line{1, 0, 0}));
  }
}

// ---- Level lines ----

TEST(ComputeHoughAngle3, ReportsATiltedBorderAsALevelLine) {
  Scan scan(300, 400);
  scan.rising(270, 3);
  const double expected = single(120 + 150 * scan.tables().sin[93] + 200 * scan.tables().cos[93]);
  EXPECT_EQ(scan.search3(0), 1);
  EXPECT_EQ(scan.line(0), (Line{0, 1, expected}));
}

TEST(ComputeHoughAngle3, NeedsAQuarterOfTheWidthOnTheTopSideAndAFifthOnTheBottom) {
  const struct {
    int side, row, count, result;
  } cases[] = {{0, 290, 99, 0}, {0, 290, 100, 1}, {1, 20, 79, 0}, {1, 20, 80, 1}};
  for (const auto& c : cases) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(c.row, c.count).search3(c.side), c.result) << c.count;
  }
}

TEST(ComputeHoughAngle3, TakesARunnerUpOfTheSameShareForASecondCandidate) {
  const struct {
    int side, row, other, count, result;
  } cases[] = {{0, 280, 250, 99, 1}, {0, 280, 250, 100, 2}, {1, 40, 60, 79, 1}, {1, 40, 60, 80, 2}};
  for (const auto& c : cases) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(c.row, 210).level(c.other, c.count).search3(c.side), c.result) << c.count;
    EXPECT_EQ(scan.line(c.side), (Line{0, 1, static_cast<double>(c.row)}));
  }
}

TEST(ComputeHoughAngle3, DoesNotCompareBrightnesses) {
  Scan clear(300, 400), two(300, 400);
  EXPECT_EQ(clear.level(290, 200).search3(0, 2), 1);
  EXPECT_EQ(two.level(280, 200).level(250, 150).search3(0, 2), 2);
}

TEST(ComputeHoughAngle3, RejectsABandThatIsNotDark) {
  Scan top(300, 400), bottom(300, 400), first(300, 400), last(300, 400);
  EXPECT_EQ(top.level(290, 200).bright().search3(0), 0);
  EXPECT_EQ(bottom.level(10, 200).bright().search3(1), 0);
  EXPECT_EQ(first.level(0, 200).bright().search3(1), 1);
  EXPECT_EQ(last.level(299, 200).bright().search3(0), 1);
}

TEST(ComputeHoughAngle3, AcceptsAModeratelyClutteredBand) {
  Scan scan(300, 400);
  EXPECT_EQ(scan.level(290, 200).component(10, 10, 0, 290, 4).search3(0), 1);
}

TEST(ComputeHoughAngle3, RejectsALineThatCutsManyNarrowComponents) {
  Scan many(300, 400), wide(300, 400), wide_for_the_other(300, 400);
  EXPECT_EQ(many.level(290, 200).component(20, 12, 0, 280, 7).search3(0), 0);
  EXPECT_EQ(wide.level(290, 200).component(110, 12, 0, 280, 7).search3(0), 1);
  EXPECT_EQ(wide_for_the_other.level(290, 200).component(110, 12, 0, 280, 7).search2(0), 0);
}

TEST(ComputeHoughAngle3, YieldsToTheRunnerUpNearTheFirstRow) {
  Scan nine(300, 400), ten(300, 400), weak(300, 400);
  EXPECT_EQ(nine.level(9, 200).level(30, 150).search3(1), 2);
  EXPECT_EQ(nine.line(1), (Line{0, 1, 30}));
  EXPECT_EQ(ten.level(10, 200).level(30, 150).search3(1), 2);
  EXPECT_EQ(ten.line(1), (Line{0, 1, 10}));
  EXPECT_EQ(weak.level(9, 200).level(30, 100).search3(1), 2);  // not more than half the votes
  EXPECT_EQ(weak.line(1), (Line{0, 1, 9}));
}

TEST(ComputeHoughAngle3, PrefersARunnerUpNearerThanHalfOnTheBottomSide) {
  const struct { int side, row, other, expected; } cases[] = {{1, 61, 30, 30}, {1, 60, 30, 60}, {0, 61, 30, 61}};
  for (const auto& c : cases) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(c.row, 200).level(c.other, 150).search3(c.side), 2);
    EXPECT_EQ(scan.line(c.side), (Line{0, 1, static_cast<double>(c.expected)})) << "row " << c.row;
  }
}

TEST(ComputeHoughAngle3, PrefersTheRunnerUpOnTheFrameAndByDensity) {
  Scan frame(300, 400), density(300, 400), neither(300, 400);
  EXPECT_EQ(frame.level(297, 390).level(270, 201).search3(0), 2);
  EXPECT_EQ(frame.line(0), (Line{0, 1, 270}));
  EXPECT_EQ(density.level(280, 200).level(250, 150).dense_beyond(280, 250).search3(0), 2);
  EXPECT_EQ(density.line(0), (Line{0, 1, 250}));
  EXPECT_EQ(neither.level(280, 200).level(250, 150).search3(0), 2);
  EXPECT_EQ(neither.line(0), (Line{0, 1, 280}));
}

TEST(ComputeHoughAngle3, TreatsVerticalSidesLikeTheOther) {
  Scan exactly(180, 300), below(180, 300), bright(180, 300), cluttered(200, 300), leaning(200, 300);
  EXPECT_EQ(exactly.upright(10, 80).search3(2), 2);
  EXPECT_EQ(exactly.line(2), (Line{1, 0, 10}));
  EXPECT_EQ(below.upright(10, 79).search3(2), 0);
  EXPECT_EQ(bright.upright(10, 180).bright().search3(2), 0);
  EXPECT_EQ(cluttered.upright(10, 200).component(3, 6, 0, 50, 4).search3(2), 0);
  EXPECT_EQ(leaning.leaning(30, 2).search3(2), 2);
  EXPECT_EQ(leaning.line(2).a, single(leaning.tables().cos[178]));
  EXPECT_EQ(leaning.line(2).b, single(leaning.tables().sin[178]));
}

TEST(ComputeHoughAngle3, StopsLikeTheOther) {
  Scan few(300, 160), direction(300, 400);
  EXPECT_EQ(few.level(290, 49).search3(0), 0);
  EXPECT_TRUE(few.nothing_written());
  EXPECT_EQ(direction.level(290, 200).search3(0, 0, 1), 2);
  EXPECT_TRUE(direction.nothing_written());
}

// ---- Pairs of lines ----

TEST(ComputeHoughAngle, NeedsTwoPoints) {
  Scan none(300, 400), one(300, 400);
  EXPECT_EQ(none.search(0), 0);
  EXPECT_EQ(one.point(10, 20).search(0), 0);
  EXPECT_EQ(one.points()[0].row, 10.0f);
  EXPECT_TRUE(one.nothing_written());
}

TEST(ComputeHoughAngle, WritesTheStrongerLevelLineFirst) {
  for (const bool high_is_stronger : {true, false}) {
    Scan scan(300, 400);
    scan.level(280, high_is_stronger ? 200 : 150).level(10, high_is_stronger ? 150 : 200);
    EXPECT_EQ(scan.search(0), 1);
    EXPECT_EQ(scan.line(0), (Line{0, 1, high_is_stronger ? 280.0 : 10.0}));
    EXPECT_EQ(scan.line(1), (Line{0, 1, high_is_stronger ? 10.0 : 280.0}));
    EXPECT_EQ(scan.line(2), kNothing);
    EXPECT_EQ(scan.line(3), kNothing);
  }
}

TEST(ComputeHoughAngle, NeedsAQuarterOfTheWidthInTheWeakerLine) {
  Scan below(300, 400), exactly(300, 400);
  EXPECT_EQ(below.level(280, 200).level(10, 99).search(0), 0);
  EXPECT_TRUE(below.nothing_written());
  EXPECT_EQ(exactly.level(280, 200).level(10, 100).search(0), 1);
}

TEST(ComputeHoughAngle, TakesLinesCloserThanTenBinsForOne) {
  Scan nine(300, 400), ten(300, 400);
  EXPECT_EQ(nine.level(280, 200).level(271, 150).search(0), 0);
  EXPECT_EQ(ten.level(280, 200).level(270, 150).search(0), 1);
  EXPECT_EQ(ten.line(1), (Line{0, 1, 270}));
}

TEST(ComputeHoughAngle, LooksAtTwentyDegreesAroundTheLevel) {
  for (const int degrees : {-20, -19, 19, 20}) {  // lines of 70, 71, 109 and 110 degrees
    Scan scan(400, 400);
    scan.rising(150, degrees).rising(250, degrees);
    EXPECT_EQ(scan.search(0), degrees == 20 ? 0 : 1) << degrees;
    if (degrees == 20) continue;
    for (const int side : {0, 1}) {
      EXPECT_EQ(scan.line(side).a, single(scan.tables().cos[90 + degrees]));
      EXPECT_EQ(scan.line(side).b, single(scan.tables().sin[90 + degrees]));
    }
  }
}

TEST(ComputeHoughAngle, TellsVerticalBordersApartByTheirLean) {
  Scan scan(200, 300);
  EXPECT_EQ(scan.leaning(20, 5).upright(250, 150).search(2), 1);
  EXPECT_EQ(scan.line(2).a, single(scan.tables().cos[175]));
  EXPECT_EQ(scan.line(2).b, single(scan.tables().sin[175]));
  EXPECT_EQ(scan.line(3), (Line{1, 0, 250}));
  EXPECT_EQ(scan.line(0), kNothing);
  EXPECT_EQ(scan.line(1), kNothing);
  // the lean decides, not the position
  Scan swapped(200, 300);
  EXPECT_EQ(swapped.leaning(200, 5).upright(20, 150).search(2), 1);
  EXPECT_EQ(swapped.line(2).a, single(swapped.tables().cos[175]));
  EXPECT_EQ(swapped.line(3), (Line{1, 0, 20}));
}

TEST(ComputeHoughAngle, NeedsAFifthOfTheHeightInTheLineOfSmallAngle) {
  Scan exactly(200, 300), below(200, 300);
  EXPECT_EQ(exactly.upright(250, 40).search(2), 1);
  EXPECT_EQ(exactly.line(3), (Line{1, 0, 250}));
  EXPECT_NE(exactly.line(2), kNothing);  // whatever is strongest among the other angles
  EXPECT_EQ(below.upright(250, 39).search(2), 0);
  EXPECT_TRUE(below.nothing_written());
}

TEST(ComputeHoughAngle, WritesNothingForAnotherDirection) {
  for (const int dir_class : {1, 3, 4, -1}) {
    Scan scan(300, 400);
    EXPECT_EQ(scan.level(290, 200).search(dir_class), 1);
    EXPECT_TRUE(scan.nothing_written());
    EXPECT_EQ(scan.points()[0].row, 140.0f);
    EXPECT_EQ(scan.points()[0].col, -200.0f);
  }
}

}  // namespace
