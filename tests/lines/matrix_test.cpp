// The matrix of doubles.
#include <gtest/gtest.h>

#include <limits>

#include "lines/exports.h"

namespace {

TEST(MakeMatrix, PointsItsRowsIntoOneBlockOfZeros) {
  double** const m = MakeMatrix(5, 7);
  ASSERT_NE(m, nullptr);
  for (int r = 0; r < 5; ++r) {
    EXPECT_EQ(m[r], m[0] + 7 * r);
    for (int c = 0; c < 7; ++c) EXPECT_EQ(m[r][c], 0.0);
  }
  m[4][6] = 1.5;
  EXPECT_EQ(m[0][34], 1.5);
  FreeMatrix(m);
}

TEST(MakeMatrix, IsZeroAgainAfterUse) {
  for (int round = 0; round < 3; ++round) {
    double** const m = MakeMatrix(100, 180);
    ASSERT_NE(m, nullptr);
    for (int i = 0; i < 100 * 180; ++i) {
      ASSERT_EQ(m[0][i], 0.0);
      m[0][i] = 1.0;
    }
    FreeMatrix(m);
  }
}

TEST(MakeMatrix, RefusesNegativeAndOverflowingSizes) {
  constexpr int most = std::numeric_limits<int>::max();
  EXPECT_EQ(MakeMatrix(-1, 180), nullptr);
  EXPECT_EQ(MakeMatrix(180, -1), nullptr);
  EXPECT_EQ(MakeMatrix(-1, -1), nullptr);
  EXPECT_EQ(MakeMatrix(std::numeric_limits<int>::min(), std::numeric_limits<int>::min()), nullptr);
  EXPECT_EQ(MakeMatrix(most, most), nullptr);
}

TEST(MakeMatrix, WithoutCellsIsAMatrixAllTheSame) {
  const struct { int rows, cols; } cases[] = {{0, 0}, {0, 180}, {5, 0}};
  for (const auto& c : cases) {
    double** const m = MakeMatrix(c.rows, c.cols);
    ASSERT_NE(m, nullptr) << c.rows << " x " << c.cols;
    for (int r = 1; r < c.rows; ++r) EXPECT_EQ(m[r], m[0]);  // rows of no length begin where the first does
    FreeMatrix(m);
  }
}

}  // namespace
