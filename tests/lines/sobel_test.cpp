// Sobel edge and direction maps.
#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "lines/exports.h"
#include "support/image.h"

namespace {

using support::stride_of;

constexpr unsigned char kUntouched = 77;

/** A gray image and its two maps, prefilled with a value that the operator never writes. */
struct Maps {
  int rows;
  int cols;
  int stride;
  std::vector<unsigned char> gray, edge, dir;

  Maps(int rows_, int cols_)
      : rows(rows_),
        cols(cols_),
        stride(stride_of(cols_, 8)),
        gray(static_cast<std::size_t>(rows * stride), 0),
        edge(gray.size(), kUntouched),
        dir(gray.size(), kUntouched) {}

  std::size_t at(int r, int c) const { return static_cast<std::size_t>(r * stride + c); }
  template <class Level>
  void paint(Level level) {
    for (int r = 0; r < rows; ++r) {
      for (int c = 0; c < cols; ++c) gray[at(r, c)] = static_cast<unsigned char>(level(r, c));
    }
  }
  /** Without an interior: its left bound lies right of its right bound. */
  void run(MYRECT interior = {30000, 30000, -30000, -30000, 0}) {
    Sobel_Operator(gray.data(), edge.data(), dir.data(), rows, cols, stride, interior);
  }
};

struct Pixel {
  int edge;
  int dir;
  bool operator==(const Pixel&) const = default;
};
void PrintTo(const Pixel& p, std::ostream* out) { *out << "edge " << p.edge << ", direction " << p.dir; }

constexpr Pixel kNone{255, 4};

/** The result at the centre of a 3 x 3 window, first row first. */
Pixel centre_of(const std::array<int, 9>& window) {
  Maps maps(4, 4);  // only the pixel in row 1 and column 1 is visited
  maps.paint([&](int r, int c) { return r < 3 && c < 3 ? window[static_cast<std::size_t>(3 * r + c)] : 0; });
  maps.run();
  return {maps.edge[maps.at(1, 1)], maps.dir[maps.at(1, 1)]};
}

TEST(SobelOperator, DoesNotVisitImagesOfFewerThanFourRowsOrColumns) {
  const struct {
    int rows, cols;
  } cases[] = {{0, 0}, {0, 50}, {1, 50}, {2, 50}, {3, 50}, {50, 0}, {50, 1}, {50, 2}, {50, 3}, {3, 3}};
  for (const auto& c : cases) {
    Maps maps(c.rows, c.cols);
    maps.paint([](int r, int col) { return (r + col) % 2 * 255; });
    maps.run();
    for (const unsigned char byte : maps.edge) EXPECT_EQ(byte, kUntouched);
    for (const unsigned char byte : maps.dir) EXPECT_EQ(byte, kUntouched);
  }
}

TEST(SobelOperator, VisitsAllButTheFirstAndTheLastTwoRowsAndColumns) {
  Maps maps(7, 9);
  maps.paint([](int, int c) { return c % 4 < 2 ? 0 : 255; });
  maps.run();
  for (int r = 0; r < maps.rows; ++r) {
    for (int c = 0; c < maps.stride; ++c) {
      const bool visited = r >= 1 && r <= 4 && c >= 1 && c <= 6;
      EXPECT_EQ(maps.edge[maps.at(r, c)], visited ? 0 : kUntouched) << r << ", " << c;
      EXPECT_EQ(maps.dir[maps.at(r, c)], visited ? 2 : kUntouched) << r << ", " << c;
    }
  }
}

TEST(SobelOperator, FindsNothingInAUniformImage) {
  for (const int level : {0, 128, 255}) {
    Maps maps(6, 6);
    maps.paint([level](int, int) { return level; });
    maps.run();
    for (int r = 1; r <= 3; ++r) {
      for (int c = 1; c <= 3; ++c) {
        EXPECT_EQ(maps.edge[maps.at(r, c)], 255);
        EXPECT_EQ(maps.dir[maps.at(r, c)], 4);
      }
    }
  }
}

TEST(SobelOperator, ClassesHorizontalAndVerticalSteps) {
  for (const bool bright_first : {true, false}) {
    Maps across(12, 12), along(12, 12);
    across.paint([&](int r, int) { return (r < 5) == bright_first ? 200 : 50; });
    across.run();
    along.paint([&](int, int c) { return (c < 5) == bright_first ? 200 : 50; });
    along.run();
    for (int r = 1; r <= 9; ++r) {
      for (int c = 1; c <= 9; ++c) {
        const bool row_edge = r == 4 || r == 5;
        EXPECT_EQ(across.edge[across.at(r, c)], row_edge ? 0 : 255);
        EXPECT_EQ(across.dir[across.at(r, c)], row_edge ? 0 : 4);
        const bool col_edge = c == 4 || c == 5;
        EXPECT_EQ(along.edge[along.at(r, c)], col_edge ? 0 : 255);
        EXPECT_EQ(along.dir[along.at(r, c)], col_edge ? 2 : 4);
      }
    }
  }
}

TEST(SobelOperator, ClassesTheDiagonals) {
  EXPECT_EQ(centre_of({0, 255, 255, 0, 0, 255, 0, 0, 0}), (Pixel{0, 1}));  // both gradients positive
  EXPECT_EQ(centre_of({0, 0, 0, 255, 0, 0, 255, 255, 0}), (Pixel{0, 1}));  // both negative
  EXPECT_EQ(centre_of({255, 255, 0, 255, 0, 0, 0, 0, 0}), (Pixel{0, 3}));
  EXPECT_EQ(centre_of({0, 0, 0, 0, 0, 255, 0, 255, 255}), (Pixel{0, 3}));
}

TEST(SobelOperator, NeedsAMagnitudeAbove200) {
  EXPECT_EQ(centre_of({50, 50, 50, 0, 0, 0, 0, 0, 0}), kNone);           // exactly 200
  EXPECT_EQ(centre_of({51, 50, 50, 0, 0, 0, 0, 0, 0}), (Pixel{0, 0}));   // (201, -1)
  EXPECT_EQ(centre_of({50, 50, 50, 0, 0, 10, 0, 0, 0}), kNone);          // (200, 20): 200.998 truncates
  EXPECT_EQ(centre_of({50, 50, 50, 0, 0, 11, 0, 0, 0}), (Pixel{0, 0}));  // (200, 22): 201.2
}

TEST(SobelOperator, WeighsTheMiddleTwiceAndTheCentreNotAtAll) {
  EXPECT_EQ(centre_of({0, 100, 0, 0, 255, 0, 0, 0, 0}), kNone);
  EXPECT_EQ(centre_of({0, 101, 0, 0, 255, 0, 0, 0, 0}), (Pixel{0, 0}));
  EXPECT_EQ(centre_of({0, 0, 0, 101, 255, 0, 0, 0, 0}), (Pixel{0, 2}));
  EXPECT_EQ(centre_of({0, 0, 0, 0, 255, 101, 0, 0, 0}), (Pixel{0, 2}));
  EXPECT_EQ(centre_of({0, 0, 0, 0, 255, 0, 0, 101, 0}), (Pixel{0, 0}));
  EXPECT_EQ(centre_of({142, 0, 0, 0, 0, 0, 0, 0, 0}), kNone);          // 200.8
  EXPECT_EQ(centre_of({143, 0, 0, 0, 0, 0, 0, 0, 0}), (Pixel{0, 3}));  // 202.2
}

TEST(SobelOperator, DividesTheClassesAtTruncatedEighthsOfPi) {
  // across 577, along 239: 0.3926973, short of pi / 8 = 0.3926991 but not below 0.39269
  EXPECT_EQ(centre_of({144, 144, 145, 0, 0, 119, 0, 0, 0}), (Pixel{0, 1}));
  // across 338, along 816: 1.1780954, short of 3 pi / 8 = 1.1780972 but not below 1.17809
  EXPECT_EQ(centre_of({0, 67, 255, 0, 0, 255, 0, 0, 51}), (Pixel{0, 2}));
  // across 400, along 164 and 166: 0.38909 and 0.39347
  EXPECT_EQ(centre_of({100, 100, 100, 0, 0, 82, 0, 0, 0}), (Pixel{0, 0}));
  EXPECT_EQ(centre_of({100, 100, 100, 0, 0, 83, 0, 0, 0}), (Pixel{0, 1}));
}

TEST(SobelOperator, FoldsNegativeGradientsIntoHalfATurn) {
  EXPECT_EQ(centre_of({0, 0, 0, 0, 0, 0, 255, 255, 255}), (Pixel{0, 0}));  // pi
  EXPECT_EQ(centre_of({0, 0, 0, 1, 0, 0, 255, 255, 255}), (Pixel{0, 0}));  // just above -pi
  EXPECT_EQ(centre_of({0, 0, 0, 0, 0, 1, 255, 255, 255}), (Pixel{0, 0}));  // just below pi
  EXPECT_EQ(centre_of({255, 255, 255, 1, 0, 0, 0, 0, 0}), (Pixel{0, 0}));  // just below 0
  EXPECT_EQ(centre_of({255, 0, 0, 255, 0, 0, 255, 0, 0}), (Pixel{0, 2}));  // -pi / 2
  EXPECT_EQ(centre_of({0, 0, 255, 0, 0, 255, 0, 0, 255}), (Pixel{0, 2}));  // pi / 2
}

TEST(SobelOperator, SkipsTheInteriorBehindItsMargins) {
  Maps maps(30, 50);  // margins of 30 / 15 = 2 rows and 50 / 25 = 2 columns
  maps.paint([](int, int c) { return c % 4 < 2 ? 0 : 255; });
  maps.run({10, 5, 40, 20, 0});
  for (int r = 1; r <= 27; ++r) {
    for (int c = 1; c <= 47; ++c) {
      const bool skipped = r > 7 && r < 18 && c > 12 && c < 38;
      EXPECT_EQ(maps.edge[maps.at(r, c)], skipped ? 255 : 0) << r << ", " << c;
      EXPECT_EQ(maps.dir[maps.at(r, c)], skipped ? 4 : 2) << r << ", " << c;
    }
  }
}

TEST(SobelOperator, ComputesPixelsOnTheInteriorsBoundary) {
  Maps maps(30, 50);
  maps.paint([](int, int c) { return c % 4 < 2 ? 0 : 255; });
  maps.run({10, 5, 40, 20, 0});
  EXPECT_EQ(maps.edge[maps.at(5 + 30 / 15, 25)], 0);
  EXPECT_EQ(maps.edge[maps.at(5 + 30 / 15 + 1, 25)], 255);
  EXPECT_EQ(maps.edge[maps.at(20 - 30 / 15, 25)], 0);
  EXPECT_EQ(maps.edge[maps.at(12, 10 + 50 / 25)], 0);
  EXPECT_EQ(maps.edge[maps.at(12, 40 - 50 / 25)], 0);
}

TEST(SobelOperator, IgnoresTheFifthMemberOfTheInterior) {
  Maps a(30, 50), b(30, 50);
  for (Maps* maps : {&a, &b}) maps->paint([](int, int c) { return c % 4 < 2 ? 0 : 255; });
  a.run({10, 5, 40, 20, 0});
  b.run({10, 5, 40, 20, 12345});
  EXPECT_EQ(a.edge, b.edge);
  EXPECT_EQ(a.dir, b.dir);
}

TEST(SobelOperator, LeavesTheImageAlone) {
  Maps maps(20, 20);
  maps.paint([](int r, int c) { return (r * 31 + c * 17) % 256; });
  const std::vector<unsigned char> before = maps.gray;
  maps.run();
  EXPECT_EQ(maps.gray, before);
}

}  // namespace
