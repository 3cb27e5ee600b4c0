// Bounds for all lines at once: every form the same, and none below what a line gets.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "lines/hough.h"
#include "lines/kernels.h"
#include "lines/loose_votes.h"
#include "lines/point_map.h"
#include "support/forms.h"
#include "support/random.h"

namespace {

using namespace vantrel::lines;

/** What a byte gives a line at most that passes so far behind byte 0. */
double vote(int byte, double place, double across) { return std::max(0.0, 1 - std::abs(byte - place) * across); }

TEST(LooseWeight, IsNoLessThanAnyVote) {
  constexpr int kSteps = 64;
  for (int piece = 0; piece < kPieces; ++piece) {
    for (int step = 0; step <= kSteps * (kPieces + 1) / kPieces; ++step) {
      // Places are known a little less exactly than that.
      const double place = piece / double{kPieces} + step / double{kSteps} + 1 / 2048.0;
      for (const double across : {kLeastAcross, 0.9, 0.95, 1.0}) {
        double all = 0;
        for (int byte = -4; byte < 8; ++byte) {
          const bool counts = byte >= kFirstLoose && byte < kFirstLoose + kLooseBytes;
          const int weight = counts ? loose_weight(piece, byte) : 0;
          EXPECT_GE(weight, kLooseParts * vote(byte, place, across)) << piece << " " << byte;
          all += vote(byte, place, across);
        }
        EXPECT_GE(kMostLooseParts, kLooseParts * all) << piece;
      }
    }
  }
}

TEST(LooseWeight, IsLessThanAPartTooMuch) {
  constexpr int kWeights[kPieces][kLooseBytes] = {{2, 11, 11, 7, 0}, {0, 7, 11, 11, 2}};
  for (int piece = 0; piece < kPieces; ++piece) {
    for (int i = 0; i < kLooseBytes; ++i) {
      EXPECT_EQ(loose_weight(piece, kFirstLoose + i), kWeights[piece][i]) << piece;
    }
  }
  EXPECT_EQ(kMostLooseParts, 14);
}

/** A row for each piece, one behind the other, with some bytes around them. */
struct SpreadRows {
  std::vector<unsigned char> bytes;
  int steps;

  explicit SpreadRows(int steps)
      : bytes(static_cast<std::size_t>(kPieces * (steps + 1) * kLooseStep), 99), steps(steps) {}
  unsigned char* row(int piece) { return bytes.data() + (piece * (steps + 1)) * kLooseStep + 7; }
};

TEST(Spread, IsTheSameInEveryForm) {
  support::Random random(3);
  for (const int steps : {0, 1, 2, 5}) {
    for (const int share : {1, 2, 9}) {
      std::vector<unsigned char> points(static_cast<std::size_t>(steps * kLooseStep + kLooseBytes));
      for (unsigned char& point : points) point = random.pick(0, share) == 0 ? 255 : 0;
      const auto spread = [&](const Kernels& form) {
        SpreadRows rows(steps);
        unsigned char* to[kPieces] = {rows.row(0), rows.row(1)};
        form.spread(points.data() - kFirstLoose, steps, to);
        return rows.bytes;
      };
      const std::vector<unsigned char> wanted = spread(plain::kKernels);
      support::for_each_form([&](const auto& form) { EXPECT_EQ(spread(form.lines), wanted) << steps; });
    }
  }
}

TEST(Spread, GivesASingleByteItsWeights) {
  std::array<unsigned char, 2 * kLooseStep> points{};
  points[10] = 255;
  SpreadRows rows(1);
  unsigned char* to[kPieces] = {rows.row(0), rows.row(1)};
  plain::spread(points.data() + 4, 1, to);
  EXPECT_EQ(rows.row(0)[6], 11);
  EXPECT_EQ(rows.row(0)[5], 11);
  EXPECT_EQ(rows.row(0)[4], 7);
  EXPECT_EQ(rows.row(0)[7], 2);
  EXPECT_EQ(rows.row(1)[3], 2);
  EXPECT_EQ(std::count(rows.row(1), rows.row(1) + kLooseStep, 0), kLooseStep - 4);
}

TEST(AddRows, IsTheSameInEveryForm) {
  support::Random random(4);
  for (const int steps : {0, 1, 2, 3, 6}) {
    for (const int slices : {1, 7, kLooseSlices}) {
      std::vector<unsigned char> bytes(static_cast<std::size_t>(kLooseSlices * 3 + (steps + 1) * kLooseStep));
      for (unsigned char& byte : bytes) byte = static_cast<unsigned char>(random.pick(0, kMostLooseParts));
      LooseRows rows{bytes.data(), {}, slices};
      for (int i = 0; i < slices; ++i) rows.offsets[i] = 3 * i;
      const auto add = [&](const Kernels& form) {
        // Some sums run over.
        std::vector<std::uint16_t> sums(static_cast<std::size_t>((steps + 1) * kLooseStep), 65450);
        form.add_rows(rows, 5, steps, sums.data());
        return sums;
      };
      const std::vector<std::uint16_t> wanted = add(plain::kKernels);
      EXPECT_EQ(std::count(wanted.begin(), wanted.begin() + 5, 65450), 5);
      EXPECT_EQ(std::count(wanted.end() - kLooseStep + 5, wanted.end(), 65450), kLooseStep - 5);
      EXPECT_TRUE(std::all_of(wanted.begin(), wanted.end(), [](int sum) { return sum >= 65450; }));
      support::for_each_form([&](const auto& form) { EXPECT_EQ(add(form.lines), wanted) << steps; });
    }
  }
}

/** What a line gets loosely, slice by slice, that passes slice 0 behind a byte. */
int loose_bound(const PointMap& points, Slant slant, int line) {
  int sum = 0;
  for (int slice = 0; slice < points.slices().size(); ++slice) {
    const double position = -slant.along / slant.across * slice;
    const double whole = std::floor(position);
    const int piece = static_cast<int>((position - whole) * kPieces);
    int votes = 0;
    for (int byte = kFirstLoose; byte < kFirstLoose + kLooseBytes; ++byte) {
      const int at = line + static_cast<int>(whole) + byte;
      const bool point = at >= 0 && at < points.across().size() && points.slice(slice)[at] != 0;
      votes += point ? loose_weight(piece, byte) : 0;
    }
    sum += std::min<int>(votes, kMostLooseParts);
  }
  return sum == 0 ? 0 : sum / kLooseParts + 1;
}

/** Heaps of specks with nothing between them, and now and then specks all over. */
std::vector<unsigned char> heaps(support::Random& random, int rows, int cols) {
  std::vector<unsigned char> gray(static_cast<std::size_t>(rows * cols));
  for (int heaps = random.pick(1, 6); heaps > 0; --heaps) {
    const int top = random.pick(0, rows - 1), left = random.pick(0, cols - 1), size = random.pick(1, 80);
    for (int r = top; r < std::min(top + size, rows); ++r) {
      for (int c = left; c < std::min(left + size, cols); ++c) {
        gray[static_cast<std::size_t>(r * cols + c)] = random.pick(0, 1) == 0 ? 0 : 255;
      }
    }
  }
  return gray;
}

/** Holds the loose bounds of all lines of a picture's edges against each line's own. */
void expect_every_line(const std::vector<unsigned char>& gray, int rows, int cols, Direction direction) {
  // Steps from slice to slice that have no rounding.
  constexpr std::array<Slant, 6> kSlants = {
      {{1, 0}, {1, 1 / 64.0}, {1, -0.25}, {1, 0.5625}, {-1, 0.5625}, {-1, 0.375}}};
  EdgeMaps maps({gray.data(), rows, cols, cols});
  ASSERT_TRUE(maps.ready());
  maps.detect({});
  const PointMap points(maps, {{0, rows}, {0, cols}}, direction);
  const LooseVotes votes(points, kSlants);
  ASSERT_TRUE(votes.ready());
  for (std::size_t i = 0; i < kSlants.size(); ++i) {
    for (int line = -rows - cols; line < rows + cols; ++line) {
      ASSERT_EQ(votes.most(static_cast<int>(i), line + 0.25, line + 0.75), loose_bound(points, kSlants.at(i), line));
    }
    EXPECT_EQ(votes.most(static_cast<int>(i), -1e12, -1e11), 0);
  }
}

TEST(LooseVotes, CountEverySliceOfEveryLineOnce) {
  support::Random random(5);
  for (int round = 0; round < 40; ++round) {
    const int rows = random.pick(8, 420), cols = random.pick(8, 420);
    const bool level = random.pick(0, 1) == 0;
    expect_every_line(heaps(random, rows, cols), rows, cols, level ? Direction::kAcrossRows : Direction::kAlongRows);
  }
}

TEST(LooseVotes, CountMoreHeapsSideBySideThanAreKeptApart) {
  support::Random random(6);
  constexpr int kRows = 24, kCols = 3300, kHeaps = 20, kApart = 160, kSize = 10;
  std::vector<unsigned char> gray(kRows * kCols);
  for (int heap = 0; heap < kHeaps; ++heap) {
    for (int i = 0; i < kSize * kSize; ++i) {
      const int row = 7 + i / kSize, col = heap * kApart + i % kSize;
      gray[static_cast<std::size_t>(row * kCols + col)] = random.pick(0, 1) == 0 ? 0 : 255;
    }
  }
  expect_every_line(gray, kRows, kCols, Direction::kAlongRows);
}

TEST(LooseVotes, TellNoneOfTheStrongestLinesOfLongMapsApart) {
  constexpr int kRows = 64, kCols = 5200;
  std::vector<unsigned char> gray;
  for (int i = 0; i < kRows * kCols; ++i) gray.push_back(i / kCols / 2 % 2 == 0 ? 0 : 255);
  EdgeMaps maps({gray.data(), kRows, kCols, kCols});
  ASSERT_TRUE(maps.ready());
  maps.detect({});
  const PointMap points(maps, {{0, kRows}, {0, kCols}}, Direction::kAcrossRows);
  const LooseVotes votes(points, std::array{Slant{1, 0}});
  ASSERT_TRUE(votes.ready());
  // Fourteen elevenths of a vote for each column, those at the ends included.
  EXPECT_EQ(votes.most(0, 30.5, 30.5), 6619);
  // Of the last row with points, two elevenths for each of the 5197 columns that have any.
  EXPECT_EQ(votes.most(0, 62.5, 62.5), 945);
}

}  // namespace
